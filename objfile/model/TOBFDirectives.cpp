#include "objfile/model/TOBFDirectives.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFSection.h"
#include "objfile/model/TOBFSymbol.h"

#include <algorithm>
#include <cctype>
#include <limits>

namespace {

std::string withComment(std::string text, std::int64_t value)
{
    text += "\t// " + std::to_string(value);
    if (value >= 0 && value < 128 && std::isprint(static_cast<int>(value)) != 0)
        text += std::string(" '") + static_cast<char>(value) + "'";
    return text;
}

int clampLength(std::int64_t length)
{
    return static_cast<int>(
        std::clamp<std::int64_t>(length, 0, std::numeric_limits<std::int32_t>::max()));
}

} // namespace

std::string TOBFDefBytesInsn::printString()
{
    static const char* const names[] = {"", "\tDB\t", "\tDW\t", "", "\tDL\t"};
    const bool named = m_size == 1 || m_size == 2 || m_size == 4;
    const std::string text = (named ? names[m_size] : "\tDC" + std::to_string(m_size) + "\t")
        + operand(0)->printString();
    const TOBFValue value = operand(0)->evaluate();
    return value.failed ? text : withComment(text, value.value);
}

void TOBFDefBytesInsn::encode()
{
    clearBytes();
    const auto value = static_cast<unsigned>(operand(0)->evaluate().value);
    encodeWord(value, m_size, TOBFModule::processorBigEndian());
}

std::string TOBFDefAddrInsn::printString() { return "\tDA\t" + operand(0)->printString(); }

void TOBFDefAddrInsn::encode()
{
    clearBytes();
    const auto value = static_cast<unsigned>(operand(0)->evaluate().value);
    encodeWord(TOBFModule::processorAddress(value), TOBFModule::processorAddressSize(),
               TOBFModule::processorBigEndian());
}

TOBFSection* (*TOBFInitInsn::findSection)(HString* name) = nullptr;

TOBFSection* TOBFInitInsn::section()
{
    if (m_section == nullptr) {
        if (findSection != nullptr)
            m_section = findSection(m_sectionName);
        else if (m_module != nullptr)
            m_section = m_module->findSection(m_sectionName);
    }
    return m_section;
}

int TOBFInitInsn::length()
{
    if (section() == nullptr || section() == (fragment() ? fragment()->section() : nullptr))
        return 0;
    constexpr unsigned AddressSpace = 0x100000;
    return static_cast<int>(std::min(section()->getSize(), AddressSpace));
}

int TOBFInitInsn::getByte(int index)
{
    if (m_copy == nullptr) {
        m_copySize = length();
        const auto size = static_cast<unsigned>(m_copySize);
        m_copy = static_cast<unsigned char*>(Pool::currentPool()->allocate(size));
        std::fill_n(m_copy, size, static_cast<unsigned char>(0));
        m_section->dump(size, m_copy);
    }
    return index < m_copySize ? m_copy[index] : 0;
}

std::string TOBFInitInsn::printString() { return "\t.INIT\t\"" + m_sectionName->str() + "\""; }

std::string TOBFLinkIf::printString() { return "\tLINKIF\t" + operand(0)->printString(); }
std::string TOBFEndLinkIf::printString() { return "\tENDLINKIF"; }

int TOBFAlignInsn::length()
{
    if (pc() == -1 || m_alignment <= 1)
        return 0;
    const int beyond = pc() % m_alignment;
    return beyond == 0 ? 0 : m_alignment - beyond;
}

std::string TOBFAlignInsn::printString()
{
    return "\t.ALIGN\tBYTE[" + std::to_string(m_alignment) + "]";
}

std::string TOBFOriginInsn::printString() { return "\tORG\t" + std::to_string(m_origin); }

std::string TOBFFillInsn::printString()
{
    return "\t.FILL\t" + std::to_string(m_count) + ", " + std::to_string(m_fill);
}

int TOBFSpaceInsn::length() { return clampLength(operand(0)->evaluate().value); }
std::string TOBFSpaceInsn::printString() { return "\t.SPACE\t" + operand(0)->printString(); }

void TOBFSpaceInsn::markReachable(bool reachable)
{
    if (!mark(reachable))
        return;
    operand(0)->markReachable(reachable);
}

std::string TOBFLocalInsn::printString()
{
    std::string text = "\tLOCAL\t" + operand(0)->printString() + " @ ";
    if (operand(0)->kind() != TOBFKind::SymbolExpr)
        return text;
    const TOBFSymbol* symbol = static_cast<TOBFSymbolExpr*>(operand(0))->symbol();
    return symbol->definition() != nullptr ? text + symbol->definition()->printString() : text;
}
