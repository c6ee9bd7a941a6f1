#include "objfile/loadfiles/TOBFLoadFile.h"

#include "base/HException.h"
#include "objfile/format/TOBFfiles.h"
#include "objfile/model/TOBFFragment.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFModule.h"

namespace {

template <typename Visit> void forEachItem(TOBFSection& section, Visit visit)
{
    for (TOBFFragment* fragment : section.fragments())
        for (TOBFInsn* insn : fragment->insns())
            if (const int length = insn->length(); length > 0)
                visit(*insn, static_cast<unsigned>(length));
}

std::uint64_t loadedLength(const TOBFModule& module)
{
    std::uint64_t total = 0;
    for (const auto& [name, section] : module.sectionMap())
        if (section->isLoaded())
            forEachItem(*section, [&](TOBFInsn&, unsigned length) { total += length; });
    return total;
}

} // namespace

TOBFLoadFile::TOBFLoadFile(const char* path)
    : m_module(TOBFfiles::getModule(Path(std::string(path))))
{
    if (m_module == nullptr)
        throw HException(std::string("cannot read ") + path);
}

TOBFLoadFile::~TOBFLoadFile() { TOBFfiles::release(m_module); }

bool TOBFLoadFile::createLoadFileSections()
{
    m_sections.clear();
    m_sections.clearee();
    const std::uint64_t length = loadedLength(*m_module);
    if (length > MaximumContiguousSpan)
        return false;
    m_bytes.resize(length);
    unsigned char* next = m_bytes.data();
    for (const auto& [name, section] : m_module->sectionMap())
        if (section->isLoaded())
            addSection(*section, next);
    return true;
}

/// Adds the runs of contiguous items of one section; their bytes go to `next` and behind.
void TOBFLoadFile::addSection(TOBFSection& section, unsigned char*& next)
{
    const bool eeprom = section.sectionKind() == SectionKind::Eeprom;
    const unsigned lowest = section.lowestAddress();
    unsigned start = lowest == TOBFSection::NoAddress ? 0 : lowest;
    unsigned char* bytes = next;
    const auto close = [&] {
        if (next == bytes)
            return;
        auto run = std::make_unique<StandardLoadFileSection>(
            section.getName()->text(), start, static_cast<unsigned>(next - bytes), bytes);
        if (eeprom)
            m_sections.addee(std::move(run));
        else
            m_sections.add(std::move(run));
    };
    forEachItem(section, [&](TOBFInsn& insn, unsigned length) {
        const auto pc = static_cast<unsigned>(insn.pc());
        if (pc != start + static_cast<unsigned>(next - bytes)) {
            close();
            start = pc;
            bytes = next;
        }
        for (unsigned i = 0; i < length; ++i)
            *next++ = static_cast<unsigned char>(insn.getByte(static_cast<int>(i)));
    });
    close();
}
