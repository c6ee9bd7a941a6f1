#include "toolchain/kas/AsmSections.h"

#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"

#include <algorithm>

namespace {

/// The smallest alignment of a fragment: instructions and words stand at even addresses.
constexpr int WordAlignment = 2;

bool isLoaded(SectionKind kind)
{
    return kind == SectionKind::Code || kind == SectionKind::Const || kind == SectionKind::Eeprom;
}

unsigned flagsOf(SectionKind kind)
{
    return static_cast<unsigned>(kind) | (isLoaded(kind) ? TOBFSection::LoadFlag : 0);
}

/// Sections that other assemblers name, by their beginnings. What stands behind a further dot says
/// only which function or object it is, and that is what fragments are for.
struct NamePrefix {
    const char* prefix;
    DefaultSection section;
};
constexpr NamePrefix Prefixes[] = {
    {".text", DefaultSection::Code},       {".data", DefaultSection::Data},
    {".bss", DefaultSection::Zeroed},      {".rodata", DefaultSection::Const},
    {".vectors", DefaultSection::Vectors},
};

std::optional<DefaultSection> byPrefix(const std::string& name)
{
    for (const NamePrefix& it : Prefixes) {
        const std::string prefix = it.prefix;
        if (name == prefix || name.starts_with(prefix + "."))
            return it.section;
    }
    return {};
}

/// True for an item that has bytes other than zero.
bool hasContent(TOBFInsn* insn)
{
    switch (insn->kind()) {
    case TOBFKind::ProcessorInsn:
    case TOBFKind::InitInsn: return true;
    case TOBFKind::DefBytesInsn:
        return !insn->operand(0)->isConstant() || insn->operand(0)->evaluate().value != 0;
    case TOBFKind::FillInsn: return insn->getByte(0) != 0;
    default: return false;
    }
}

struct KindOf {
    std::string name;
    SectionKind kind;
};

std::vector<KindOf> knownKinds(const SectionNames& names)
{
    return {{names.code, SectionKind::Code},     {names.data, SectionKind::Data},
            {names.zeroed, SectionKind::Zeroed}, {names.constant, SectionKind::Const},
            {names.vectors, SectionKind::Const}, {"CODE", SectionKind::Code},
            {"IDATA0", SectionKind::Data},       {"UDATA0", SectionKind::Zeroed},
            {"CONST", SectionKind::Const},       {"INTVEC", SectionKind::Const},
            {"RESET", SectionKind::Const}};
}

} // namespace

void AsmSections::select(DefaultSection section)
{
    const struct {
        const std::string& name;
        SectionKind kind;
    } defaults[] = {{m_names.code, SectionKind::Code},
                    {m_names.data, SectionKind::Data},
                    {m_names.zeroed, SectionKind::Zeroed},
                    {m_names.constant, SectionKind::Const},
                    {m_names.vectors, SectionKind::Const}};
    const auto& chosen = defaults[static_cast<int>(section)];
    m_current = &open(chosen.name, flagsOf(chosen.kind));
}

void AsmSections::select(const std::string& name, std::optional<SectionKind> kind)
{
    if (const auto known = byPrefix(name); known && !kind) {
        select(*known);
        return;
    }
    const auto opened = m_sections.find(name);
    if (opened != m_sections.end()) {
        if (kind && *kind != opened->second.section->sectionKind())
            throw AsmError{"section '" + name + "' is of another kind"};
        m_current = &open(name, 0);
        return;
    }
    if (!kind) {
        const std::vector<KindOf> known = knownKinds(m_names);
        const auto it = std::find_if(known.begin(), known.end(),
                                     [&](const KindOf& k) { return k.name == name; });
        if (it == known.end())
            throw AsmError{"section '" + name + "' needs a kind"};
        kind = it->kind;
    }
    m_current = &open(name, flagsOf(*kind));
}

bool AsmSections::isConventional(const std::string& name) { return byPrefix(name).has_value(); }

AsmSections::Section& AsmSections::open(const std::string& name, unsigned flags)
{
    Section& section = m_sections[name];
    if (section.section == nullptr) {
        section.section = new TOBFSection(HString::intern(name));
        section.section->setFlags(flags);
        m_module->addSection(section.section);
    }
    if (section.last != Last::Code && dividable(section))
        section.begun = false;
    return section;
}

AsmSections::Section& AsmSections::required()
{
    if (m_current == nullptr)
        select(DefaultSection::Code);
    return *m_current;
}

void AsmSections::add(TOBFInsn* insn, Flow flow)
{
    Section& section = required();
    if (section.section->sectionKind() == SectionKind::Zeroed && hasContent(insn))
        throw AsmError{"section '" + section.section->name()->str() + "' has no room for contents"};
    if (insn->kind() == TOBFKind::OriginInsn)
        beginAtOrigin(section);
    if (!section.begun)
        beginFragment(section);
    section.section->addInsn(insn);
    follow(section, insn);
    if (insn->kind() == TOBFKind::AlignInsn)
        return;
    if (flow == Flow::None)
        return;
    section.alignment = 0;
    if (flow == Flow::Code)
        section.last = Last::Code;
    else if (flow == Flow::Transfer)
        section.last = Last::Transfer;
    else if (section.last != Last::Code)
        section.last = Last::Data;
}

void AsmSections::beginUnit()
{
    Section& section = required();
    const bool apart = section.last == Last::Transfer || section.last == Last::Data;
    if (apart && dividable(section))
        beginFragment(section);
}

bool AsmSections::dividable(const Section& section) const
{
    return section.openLinkIfs.empty() && !section.fixed;
}

/// A fragment has one origin, and that decides where all of it stands.
void AsmSections::beginAtOrigin(Section& section)
{
    if (!section.openLinkIfs.empty())
        throw AsmError{"'.org' inside of '.linkif'"};
    section.section->newFragment();
    section.begun = section.fixed = true;
    section.last = Last::Nothing;
    section.alignment = 0;
    ++m_fragments;
}

/// The new fragment is aligned as the place is at which it begins, since it may come to stand
/// elsewhere.
void AsmSections::beginFragment(Section& section)
{
    section.section->newFragment();
    section.begun = true;
    section.last = Last::Nothing;
    ++m_fragments;
    const int alignment = std::max(WordAlignment, section.alignment);
    section.alignment = 0;
    if (section.parity != Parity::Odd)
        section.section->addInsn(new TOBFAlignInsn(alignment));
}

/// Keeps track of whether the next address is even.
void AsmSections::follow(Section& section, TOBFInsn* insn)
{
    switch (insn->kind()) {
    case TOBFKind::AlignInsn: {
        const int alignment = static_cast<TOBFAlignInsn*>(insn)->alignment();
        if (alignment > 1) {
            section.parity = Parity::Even;
            section.alignment = std::max(section.alignment, alignment);
        }
        return;
    }
    case TOBFKind::OriginInsn:
        section.parity =
            static_cast<TOBFOriginInsn*>(insn)->origin() % 2 == 0 ? Parity::Even : Parity::Odd;
        return;
    case TOBFKind::SpaceInsn:
        if (!insn->operand(0)->isConstant()) {
            section.parity = Parity::Unknown;
            return;
        }
        break;
    case TOBFKind::InitInsn:
    case TOBFKind::LinkIf: section.parity = Parity::Unknown; return;
    default: break;
    }
    if (insn->length() % 2 != 0 && section.parity != Parity::Unknown)
        section.parity = section.parity == Parity::Even ? Parity::Odd : Parity::Even;
}

bool AsmSections::atOddAddress() const
{
    return m_current != nullptr && m_current->parity == Parity::Odd;
}

bool AsmSections::inCode() const
{
    return m_current == nullptr || m_current->section->sectionKind() == SectionKind::Code;
}

void AsmSections::beginLinkIf(TOBFExpr* condition, const SourceLocation& where)
{
    add(new TOBFLinkIf(condition), Flow::None);
    required().openLinkIfs.push_back(where);
}

void AsmSections::endLinkIf()
{
    if (required().openLinkIfs.empty())
        throw AsmError{"'.endlinkif' without '.linkif' in this section"};
    add(new TOBFEndLinkIf, Flow::None);
    required().openLinkIfs.pop_back();
}

void AsmSections::finish(Diagnostics& diagnostics)
{
    for (const auto& [name, section] : m_sections)
        for (const SourceLocation& where : section.openLinkIfs)
            diagnostics.error(where, "'.linkif' without '.endlinkif'");
}
