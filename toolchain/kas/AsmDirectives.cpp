#include "toolchain/kas/AsmDirectives.h"

#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"

#include <algorithm>
#include <cctype>

namespace {

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

} // namespace

const AsmDirectives::Entry* AsmDirectives::find(const std::string& word)
{
    using D = AsmDirectives;
    static constexpr Entry Entries[] = {
        {".text", &D::defaultSection, static_cast<int>(DefaultSection::Code)},
        {".data", &D::defaultSection, static_cast<int>(DefaultSection::Data)},
        {".bss", &D::defaultSection, static_cast<int>(DefaultSection::Zeroed)},
        {".rodata", &D::defaultSection, static_cast<int>(DefaultSection::Const)},
        {".vectors", &D::defaultSection, static_cast<int>(DefaultSection::Vectors)},
        {".section", &D::section, 0},
        {".byte", &D::numbers, 1},
        {".short", &D::numbers, 2},
        {".word", &D::numbers, 2},
        {".hword", &D::numbers, 2},
        {".int", &D::numbers, 2},
        {".2byte", &D::numbers, 2},
        {".long", &D::numbers, 4},
        {".4byte", &D::numbers, 4},
        {".quad", &D::quads, 0},
        {".8byte", &D::quads, 0},
        {".ascii", &D::strings, 0},
        {".asciz", &D::strings, 1},
        {".string", &D::strings, 1},
        {".space", &D::space, 0},
        {".skip", &D::space, 0},
        {".zero", &D::space, 0},
        {".fill", &D::fill, 0},
        {".align", &D::align, 0},
        {".balign", &D::align, 0},
        {".p2align", &D::align, 1},
        {".even", &D::even, 0},
        {".org", &D::origin, 0},
        {".init", &D::init, 0},
        {".global", &D::global, 0},
        {".globl", &D::global, 0},
        {".weak", &D::weak, 0},
        {".extern", &D::external, 0},
        {".equ", &D::equ, 0},
        {".set", &D::equ, 0},
        {".type", &D::type, 0},
        {".size", &D::ignore, 0},
        {".file", &D::ignore, 0},
        {".ident", &D::ignore, 0},
        {".linkif", &D::linkIf, 0},
        {".endlinkif", &D::endLinkIf, 0},
        {".if", &D::ifHolds, 0},
        {".ifdef", &D::ifDefined, 1},
        {".ifndef", &D::ifDefined, 0},
        {".elseif", &D::elseIf, 0},
        {".else", &D::otherwise, 0},
        {".endif", &D::endIf, 0},
        {".macro", &D::macro, 0},
        {".endm", &D::endMacro, 0},
        {".exitm", &D::exitMacro, 0},
        {".rept", &D::repeat, 0},
        {".irp", &D::repeatFor, 0},
        {".endr", &D::endRepeat, 0},
        {".include", &D::include, 0},
        {".end", &D::end, 0},
        {".error", &D::message, 1},
        {".warning", &D::message, 0},
    };
    static const auto index = [] {
        std::unordered_map<std::string_view, const Entry*> entries;
        for (const Entry& entry : Entries)
            entries[entry.name] = &entry;
        return entries;
    }();
    const auto it = index.find(word);
    return it != index.end() ? it->second : nullptr;
}

bool AsmDirectives::isConditional(const std::string& word)
{
    return word.starts_with(".if") || word == ".elseif" || word == ".else" || word == ".endif";
}

void AsmDirectives::run(const std::string& word)
{
    const Entry* entry = find(lowerCase(word));
    if (entry == nullptr)
        throw AsmError{"unknown directive '" + word + "'"};
    (this->*entry->handler)(entry->argument);
    m_tokens.expectEnd();
}

std::int64_t AsmDirectives::known(const char* what, std::int64_t lowest, std::int64_t highest)
{
    const std::int64_t value = m_asm.m_expressions.parseKnown(m_tokens, m_asm.m_where, what);
    if (value < lowest || value > highest)
        throw AsmError{std::string(what) + " " + std::to_string(value) + " isn't from "
                       + std::to_string(lowest) + " to " + std::to_string(highest)};
    return value;
}

// Sections.

void AsmDirectives::defaultSection(int which)
{
    m_asm.m_sections.select(static_cast<DefaultSection>(which));
}

/// `NAME`, `NAME, kind`, or `NAME, "flags", @type` as other assemblers have it.
void AsmDirectives::section(int)
{
    const std::string name = m_tokens.peek().kind == AsmToken::Text
        ? m_tokens.expectString()
        : m_tokens.expectName("section name");
    bool conventional = false;
    const std::optional<SectionKind> kind = sectionKind(conventional);
    m_asm.m_sections.select(
        name, conventional && AsmSections::isConventional(name) ? std::nullopt : kind);
}

std::optional<SectionKind> AsmDirectives::sectionKind(bool& conventional)
{
    if (!m_tokens.accept(","))
        return {};
    if (m_tokens.peek().kind == AsmToken::Text) {
        conventional = true;
        const std::string flags = m_tokens.expectString();
        std::string type;
        if (m_tokens.accept(",") && (m_tokens.accept("@") || m_tokens.accept("%")))
            type = m_tokens.expectName("section type");
        if (flags.find('x') != std::string::npos)
            return SectionKind::Code;
        if (flags.find('w') == std::string::npos)
            return SectionKind::Const;
        return type == "nobits" ? SectionKind::Zeroed : SectionKind::Data;
    }
    static constexpr std::pair<const char*, SectionKind> Kinds[] = {
        {"code", SectionKind::Code},     {"data", SectionKind::Data},
        {"bss", SectionKind::Zeroed},    {"const", SectionKind::Const},
        {"eeprom", SectionKind::Eeprom},
    };
    const std::string name = m_tokens.expectName("section kind");
    for (const auto& [text, kind] : Kinds)
        if (lowerCase(name) == text)
            return kind;
    throw AsmError{"unknown section kind '" + name + "'"};
}

// Symbols.

template <typename Visit> void AsmDirectives::forEachValue(Visit visit)
{
    do {
        visit();
    } while (m_tokens.accept(","));
}

void AsmDirectives::global(int)
{
    forEachValue([&] { m_asm.m_symbols.makeGlobal(m_tokens.expectName("symbol")); });
}

void AsmDirectives::weak(int)
{
    forEachValue([&] { m_asm.m_symbols.makeWeak(m_tokens.expectName("symbol")); });
}

/// A name without a definition is external anyway.
void AsmDirectives::external(int)
{
    forEachValue([&] { m_tokens.expectName("symbol"); });
}

void AsmDirectives::equ(int)
{
    const std::string name = m_tokens.expectName("symbol");
    m_tokens.expect(",");
    equate(name);
}

void AsmDirectives::equate(const std::string& name)
{
    if (name == "." || name == "$" || registerNumber(name))
        throw AsmError{"'" + name + "' can't be given a value"};
    m_asm.m_symbols.equate(name, expression(), m_asm.m_where);
    m_tokens.expectEnd();
}

/// `NAME, @function` makes a function for the debugger; other types have no meaning here.
void AsmDirectives::type(int)
{
    const std::string name = m_tokens.expectName("symbol");
    m_tokens.expect(",");
    if (!m_tokens.accept("@"))
        m_tokens.accept("%");
    if (m_tokens.expectName("symbol type") == "function")
        m_asm.m_symbols.makeFunction(name);
}

void AsmDirectives::ignore(int) { m_tokens.skipRest(); }

// Conditions.

void AsmDirectives::linkIf(int) { m_asm.m_sections.beginLinkIf(expression(), m_asm.m_where); }

void AsmDirectives::endLinkIf(int) { m_asm.m_sections.endLinkIf(); }

void AsmDirectives::ifHolds(int)
{
    const bool evaluate = m_asm.m_conditions.active();
    m_asm.m_conditions.begin(false, m_asm.m_where);
    if (evaluate)
        m_asm.m_conditions.alternative(
            m_asm.m_expressions.parseKnown(m_tokens, m_asm.m_where, "condition") != 0);
    else
        m_tokens.skipRest();
}

void AsmDirectives::ifDefined(int defined)
{
    const std::string name = m_tokens.expectName("symbol");
    m_asm.m_conditions.begin(m_asm.m_symbols.isDefined(name) == (defined != 0), m_asm.m_where);
}

void AsmDirectives::elseIf(int)
{
    bool holds = false;
    if (m_asm.m_conditions.wantsAlternative())
        holds = m_asm.m_expressions.parseKnown(m_tokens, m_asm.m_where, "condition") != 0;
    else
        m_tokens.skipRest();
    m_asm.m_conditions.alternative(holds);
}

void AsmDirectives::otherwise(int) { m_asm.m_conditions.otherwise(); }

void AsmDirectives::endIf(int) { m_asm.m_conditions.end(); }
