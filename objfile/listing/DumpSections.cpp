#include "objfile/listing/DumpSections.h"

#include "objfile/listing/SourceLine.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFMarker.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int ShownBytes = 8;

const char* kindName(SectionKind kind)
{
    switch (kind) {
    case SectionKind::Code: return "CODE ";
    case SectionKind::Data: return "DATA ";
    case SectionKind::Zeroed: return "BSS ";
    case SectionKind::Const: return "CONST ";
    case SectionKind::Eeprom: return "EEPROM ";
    default: return "";
    }
}

std::string addressText(std::int32_t pc)
{
    constexpr int Digits = TOBFModule::processorAddressSize() * 2;
    if (pc < 0)
        return std::string(Digits + 2, ' ');
    char text[16];
    std::snprintf(text, sizeof text, "%0*x  ", Digits, static_cast<unsigned>(pc));
    return text;
}

std::string bytesText(TOBFInsn* insn)
{
    std::string result;
    const int count = std::clamp(insn->length(), 0, ShownBytes);
    for (int i = 0; i < count; ++i) {
        char text[4];
        std::snprintf(text, sizeof text, "%02x", static_cast<unsigned>(insn->getByte(i)) & 0xFF);
        result += text;
    }
    result.resize(2 * ShownBytes, ' ');
    return result;
}

bool isShown(const TOBFInsn* insn, bool withLabels)
{
    switch (insn->kind()) {
    case TOBFKind::Locus:
    case TOBFKind::Filename:
    case TOBFKind::BreakInsn:
    case TOBFKind::ResetLocusInsn: return false;
    case TOBFKind::Marker: return withLabels;
    default: return true;
    }
}

} // namespace

void DumpSections::doit(TOBFModule* module, SourceLine* source, bool withSource, bool withLabels)
{
    m_withSource = withSource;
    m_withLabels = withLabels;
    for (TOBFSection* section : module->sections())
        dumpSection(section, source);
}

void DumpSections::dumpSection(TOBFSection* section, SourceLine* source)
{
    outputLine(std::string("SECTION ") + kindName(section->sectionKind()) + section->name()->str()
                   + " [LOAD=" + (section->isLoaded() ? "YES" : "NO") + "]",
               nullptr);
    m_locus = nullptr;
    bool isFirst = true;
    for (TOBFFragment* fragment : section->fragments()) {
        for (TOBFInsn* insn : fragment->insns()) {
            dumpInsn(isFirst, insn, source, m_withSource, m_withLabels);
            isFirst = false;
        }
    }
    outputLine("", nullptr);
}

void DumpSections::dumpInsn(bool isFirst, TOBFInsn* insn, SourceLine* source, bool withSource,
                            bool withLabels)
{
    if (!isShown(insn, withLabels))
        return;
    if (withSource)
        dumpPosition(insn, source);
    const bool isLabel = insn->kind() == TOBFKind::Marker;
    if (isLabel && !isFirst)
        outputLine("", nullptr);
    const std::string text = insn->printString() + (isLabel ? ":" : "");
    outputLine(addressText(insn->pc()) + bytesText(insn) + "  " + text, insn);
}

/// The lines of a statement stand ahead of its first item.
void DumpSections::dumpPosition(TOBFInsn* insn, SourceLine* source)
{
    TOBFLocus* locus = insn->locus();
    if (locus == nullptr || locus == m_locus || insn->length() == 0)
        return;
    m_locus = locus;
    HString* file = locus->filename() != nullptr ? locus->filename()->file() : nullptr;
    if (file == nullptr)
        return;
    char number[16];
    std::snprintf(number, sizeof number, "%4d: ", locus->line());
    outputLine(number + source->getSourceLine(file, locus->line()), nullptr);
}
