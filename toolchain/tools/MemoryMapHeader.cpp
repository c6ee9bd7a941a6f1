#include "toolchain/tools/MemoryMapHeader.h"

#include "base/HException.h"

#include <QFile>
#include <QXmlStreamReader>

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <optional>

class MemoryMapHeader::Element {
public:
    explicit Element(const QXmlStreamReader& xml)
        : m_tag(xml.name().toString().toStdString()),
          m_attributes(xml.attributes()),
          m_line(static_cast<int>(xml.lineNumber()))
    {
    }

    const std::string& tag() const { return m_tag; }
    int line() const { return m_line; }
    std::string attribute(const char* name) const
    {
        return m_attributes.value(QLatin1String(name)).trimmed().toString().toStdString();
    }
    std::string name() const { return attribute("name"); }

    /// A decimal or, behind "0x", hexadecimal number; nothing for another text.
    std::optional<std::uint32_t> number(const char* attributeName) const
    {
        std::string text = attribute(attributeName);
        if (text.starts_with('+'))
            text.erase(0, 1);
        const bool hex = text.starts_with("0x") || text.starts_with("0X");
        const char* begin = text.data() + (hex ? 2 : 0);
        const char* end = text.data() + text.size();
        std::uint32_t value = 0;
        const auto [stopped, error] = std::from_chars(begin, end, value, hex ? 16 : 10);
        if (error != std::errc() || stopped != end)
            return {};
        return value;
    }

private:
    std::string m_tag;
    QXmlStreamAttributes m_attributes;
    int m_line;
};

namespace {

std::string identifier(const std::string& text)
{
    std::string result;
    for (const char c : text)
        result += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    if (result.empty() || std::isdigit(static_cast<unsigned char>(result[0])))
        result.insert(0, 1, '_');
    return result;
}

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", value);
    return text;
}

/// The C type of a register of that many bytes on the MSP430, or null.
const char* registerType(std::uint32_t size)
{
    switch (size) {
    case 1: return "unsigned char";
    case 2: return "unsigned short";
    case 4: return "unsigned long";
    default: return nullptr;
    }
}

} // namespace

void MemoryMapHeader::read(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        throw HException("can't read the file '" + path + "'");
    const std::string outerPath = m_path;
    m_path = path;
    QXmlStreamReader xml(&file);
    readElements(xml);
    if (xml.hasError())
        m_diagnostics.error({path, static_cast<int>(xml.lineNumber())},
                            xml.errorString().toStdString());
    m_path = outerPath;
}

void MemoryMapHeader::readElements(QXmlStreamReader& xml)
{
    const std::size_t outside = m_open.size();
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement())
            open(Element(xml));
        else if (xml.isEndElement())
            m_open.pop_back();
    }
    m_open.resize(outside);
}

void MemoryMapHeader::open(const Element& element)
{
    static constexpr std::pair<const char*, void (MemoryMapHeader::*)(const Element&)> Handlers[] =
        {
            {"MemorySegment", &MemoryMapHeader::segment},
            {"RegisterGroup", &MemoryMapHeader::registerGroup},
            {"Register", &MemoryMapHeader::memoryRegister},
            {"BitField", &MemoryMapHeader::bitField},
            {"Enum", &MemoryMapHeader::enumeration},
            {"Import", &MemoryMapHeader::import},
        };
    Outer outer{element.tag(), identifier(element.name())};
    const std::uint32_t base = m_open.empty() ? 0 : m_open.back().base;
    outer.start = element.number("start").value_or(0);
    // A register's own parts don't count from its address.
    const bool relative = element.attribute("start").starts_with('+');
    outer.base = element.tag() == "Register" || element.attribute("start").empty()
        ? base
        : outer.start + (relative ? base : 0);
    for (const auto& [tag, handler] : Handlers)
        if (element.tag() == tag)
            (this->*handler)(element);
    m_open.push_back(std::move(outer));
}

void MemoryMapHeader::segment(const Element& element)
{
    const auto start = element.number("start");
    const auto size = element.number("size");
    if (element.name().empty() || !start || !size)
        return error(element, "segment without name, start and size");
    m_text += "\n";
    define(identifier(element.name()) + "_START", hex(*start));
    define(identifier(element.name()) + "_SIZE", hex(*size));
}

void MemoryMapHeader::registerGroup(const Element& element)
{
    if (!element.name().empty())
        m_text += "\n/* " + identifier(element.name()) + " */\n";
}

void MemoryMapHeader::memoryRegister(const Element& element)
{
    // One that begins with a bracket is in a bank of registers and has no address.
    if (element.attribute("start").starts_with('('))
        return;
    const auto start = element.number("start");
    const char* type = registerType(element.number("size").value_or(1));
    if (element.name().empty() || !start)
        return error(element, "register without name and start");
    if (type == nullptr)
        return error(element, "register '" + element.name() + "' isn't of 1, 2 or 4 bytes");
    const bool relative = element.attribute("start").starts_with('+');
    const std::uint32_t address = *start + (relative && !m_open.empty() ? m_open.back().base : 0);
    const char* qualifier =
        element.attribute("access") == "ReadOnly" ? "const volatile " : "volatile ";
    define(identifier(element.name()),
           std::string("(*(") + qualifier + type + " *)" + hex(address) + ")");
}

void MemoryMapHeader::bitField(const Element& element)
{
    const std::uint32_t size = element.number("size").value_or(1);
    const auto start = element.number("start");
    if (element.name().empty() || !start || size == 0 || *start >= 32 || size > 32 - *start)
        return error(element, "bit field without name or with bits that a register doesn't have");
    if (m_open.empty() || m_open.back().tag != "Register")
        return error(element, "bit field outside of a register");
    const auto mask = static_cast<std::uint32_t>(((std::uint64_t{1} << size) - 1) << *start);
    define(m_open.back().name + "_" + identifier(element.name()), hex(mask));
}

/// A value of the bit field around, shifted to its place.
void MemoryMapHeader::enumeration(const Element& element)
{
    const auto value = element.number("start");
    if (element.name().empty() || !value)
        return error(element, "value without name and start");
    if (m_open.size() < 2 || m_open.back().tag != "BitField")
        return error(element, "value outside of a bit field");
    const Outer& field = m_open.back();
    const Outer& owner = m_open[m_open.size() - 2];
    define(owner.name + "_" + field.name + "_" + identifier(element.name()),
           hex(field.start < 32 ? *value << field.start : 0));
}

void MemoryMapHeader::import(const Element& element)
{
    const std::string name = element.attribute("filename");
    if (name.empty())
        return error(element, "import without filename");
    if (m_imports >= MaximumImports)
        return error(element, "files import each other too deeply");
    const std::filesystem::path path = std::filesystem::path(m_path).parent_path() / name;
    ++m_imports;
    try {
        read(path.string());
    } catch (const HException& failure) {
        error(element, failure.message());
    }
    --m_imports;
}

void MemoryMapHeader::define(const std::string& name, const std::string& value)
{
    m_text += "#define " + name + " " + value + "\n";
}

void MemoryMapHeader::error(const Element& element, const std::string& text)
{
    m_diagnostics.error({m_path, element.line()}, text);
}

std::string MemoryMapHeader::text(const std::string& source, const std::string& name) const
{
    const std::string guard = identifier(std::filesystem::path(name).filename().string());
    return "/* Made by kmh from " + std::filesystem::path(source).filename().string()
        + "; changes would be lost. */\n\n#ifndef " + guard + "\n#define " + guard + "\n" + m_text
        + "\n#endif\n";
}
