#include "cli/CodeDump.h"

#include "objfile/loadfiles/LoadFile.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"
#include "objfile/msp430/MSP430Disassembler.h"

#include <cstdio>
#include <string>

namespace {

void printNothing() { std::puts("nothing to disassemble"); }

void printLoose(unsigned address, std::span<const unsigned char> bytes)
{
    std::printf("%05X  ", address);
    for (const unsigned char byte : bytes)
        std::printf("%02x", byte);
    std::printf("\n");
}

/// The code of one section of a module.
class SectionDump {
public:
    SectionDump(TOBFModule* module, TOBFSection* section) : m_module(module), m_section(section) { }

    /// False if the section holds no encoded item.
    bool print();

private:
    void printItem(TOBFInsn* item);
    void printLabel(const TOBFMarker* marker);

    TOBFModule* m_module;
    TOBFSection* m_section;
    unsigned m_offset = 0; ///< where an item that isn't placed would be
    bool m_any = false;
    std::string m_labels; ///< whose code is still to come
};

bool SectionDump::print()
{
    for (TOBFFragment* fragment : m_section->fragments())
        for (TOBFInsn* item : fragment->insns()) {
            if (item->kind() == TOBFKind::Marker)
                printLabel(static_cast<TOBFMarker*>(item));
            else if (item->byteCount() > 0)
                printItem(item);
        }
    return m_any;
}

void SectionDump::printLabel(const TOBFMarker* marker)
{
    TOBFSymbol* symbol = marker->symbol();
    if (symbol == nullptr)
        return;
    const bool isFunction = symbol->type() != nullptr && symbol->type()->isFunction();
    if (isFunction || m_module->publicSymbols().contains(symbol->getName()))
        m_labels += symbol->getName()->str() + ":\n";
}

/// Every item starts anew, so that data between the instructions can't put them out of step.
void SectionDump::printItem(TOBFInsn* item)
{
    if (!m_any)
        std::printf("SECTION %s\n", m_section->getName()->text());
    m_any = true;
    std::fputs(m_labels.c_str(), stdout);
    m_labels.clear();
    const auto count = static_cast<unsigned>(item->byteCount());
    const unsigned address = item->pc() >= 0 ? static_cast<unsigned>(item->pc()) : m_offset;
    CodeDump::bytes(address, {item->bytes(), count});
    m_offset += count;
}

} // namespace

void CodeDump::bytes(unsigned address, std::span<const unsigned char> bytes)
{
    const auto at = [&](std::size_t index) { return index < bytes.size() ? bytes[index] : 0U; };
    const MSP430Disassembler disassembler([&](unsigned place) {
        const std::size_t index = place - address;
        return at(index) | at(index + 1) << 8;
    });
    std::size_t done = 0;
    while (done < bytes.size()) {
        const unsigned place = address + static_cast<unsigned>(done);
        if (place % 2 != 0) {
            printLoose(place, bytes.subspan(done++, 1));
            continue;
        }
        const MSP430DisassemblyLine line = disassembler.disassemble(place);
        if (done + line.length > bytes.size())
            return printLoose(place, bytes.subspan(done));
        std::printf("%05X  %s\n", place, line.text.c_str());
        done += line.length;
    }
}

void CodeDump::module(TOBFModule* module)
{
    bool any = false;
    for (TOBFSection* section : module->sections())
        if (section->sectionKind() == SectionKind::Code)
            any |= SectionDump(module, section).print();
    if (!any)
        printNothing();
}

void CodeDump::loadFile(LoadFileInterface& file)
{
    bool any = false;
    for (const auto& section : file.loadFileSections().sections()) {
        if (section->length() == 0 || section->data(false) == nullptr)
            continue;
        if (any)
            std::printf("\n");
        any = true;
        bytes(section->address(), {section->data(false), section->length()});
    }
    if (!any)
        printNothing();
}
