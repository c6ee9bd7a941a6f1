#include "toolchain/kld/LinkImage.h"

#include "base/HException.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "toolchain/kld/LinkConditions.h"
#include "toolchain/kld/LinkerSymbols.h"

#include <algorithm>
#include <charconv>

LinkImage* LinkImage::s_binding = nullptr;

namespace {

constexpr const char* EntrySymbol = "__reset";
constexpr const char* ResetSection = "RESET";

/// The value of a -D: a number, or the name of another symbol.
TOBFExpr* definitionValue(const std::string& text)
{
    const bool negative = text.starts_with("-");
    std::string_view digits = std::string_view(text).substr(negative ? 1 : 0);
    int base = 10;
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
        base = 16;
    }
    std::int64_t value = 0;
    const char* last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, value, base);
    if (error == std::errc() && end == last && !digits.empty())
        return new TOBFConstExpr(negative ? -value : value);
    return new TOBFSymbolExpr(new TOBFSymbol(HString::intern(text)));
}

bool isFixed(TOBFFragment* fragment)
{
    return std::any_of(fragment->insns().begin(), fragment->insns().end(),
                       [](TOBFInsn* insn) { return insn->kind() == TOBFKind::OriginInsn; });
}

} // namespace

LinkImage::LinkImage(const LinkerOptions& options, LinkInputs& inputs, Diagnostics& diagnostics)
    : m_options(options),
      m_inputs(inputs),
      m_diagnostics(diagnostics),
      m_module(new TOBFModule)
{
}

void LinkImage::collect()
{
    defineSymbols();
    const SymbolLookup lookup = [this](HString* name) { return m_inputs.find(name); };
    for (const LinkModule& module : m_inputs.modules())
        resolveLinkConditions(module.module, lookup);
    m_inputs.onModule = [&](LinkModule& module) { resolveLinkConditions(module.module, lookup); };
    markRoots();
    std::vector<const LinkModule*> order;
    for (const LinkModule& module : m_inputs.modules())
        order.push_back(&module);
    std::stable_sort(order.begin(), order.end(), [](const LinkModule* a, const LinkModule* b) {
        return a->module->priority() < b->module->priority();
    });
    for (const LinkModule* module : order)
        for (TOBFSection* section : module->module->sections())
            collectSection(*module, section);
    for (const LinkModule* module : order)
        collectSymbols(*module);
}

void LinkImage::defineSymbols()
{
    for (const auto& [name, text] : m_options.definitions) {
        auto* symbol = new TOBFSymbol(HString::intern(name));
        symbol->setDefinition(definitionValue(text));
        m_inputs.define(symbol);
        m_module->makePublic(symbol);
        symbol->setScope(m_module);
    }
}

TOBFSymbol* LinkImage::symbolNamed(const std::string& name)
{
    return m_inputs.resolve(HString::intern(name));
}

void LinkImage::markRoots()
{
    s_binding = this;
    TOBFSymbol::resolve = [](TOBFSymbol* symbol) { s_binding->bind(symbol); };
    for (const auto& [name, symbol] : m_module->publicSymbols())
        symbol->markReachable(true);
    if (TOBFSymbol* entry = symbolNamed(EntrySymbol))
        entry->markReachable(true);
    else
        m_diagnostics.warning(std::string("there is no start-up code, symbol ") + EntrySymbol);
    for (const std::string& name : m_options.keptSymbols) {
        if (TOBFSymbol* symbol = symbolNamed(name))
            symbol->markReachable(true);
        else
            m_diagnostics.warning("symbol " + name + ", to be kept, is not defined");
    }
    // Modules may come in while this goes on.
    for (std::size_t i = 0; i < m_inputs.modules().size(); ++i)
        markFixed(m_inputs.modules()[i]);
    TOBFSymbol::resolve = nullptr;
}

/// What has a fixed address is there for the processor, not for other code: vectors.
void LinkImage::markFixed(const LinkModule& module)
{
    for (TOBFSection* section : module.module->sections())
        for (TOBFFragment* fragment : section->fragments())
            if (section->name()->view() == ResetSection || isFixed(fragment))
                fragment->markReachable(true);
}

void LinkImage::bind(TOBFSymbol* symbol)
{
    if (symbol->definition() != nullptr)
        return;
    HString* name = symbol->name();
    if (TOBFSymbol* definition = m_inputs.resolve(name)) {
        if (definition != symbol)
            symbol->setDefinition(new TOBFSymbolExpr(definition));
        return;
    }
    if (LinkerSymbols::isKnown(name->view())) {
        symbol->setDefinition(new TOBFSymbolExpr(provideSymbol(name->str())));
        return;
    }
    const std::string owner = m_inputs.moduleNameOf(symbol);
    const TOBFLocus* locus = TOBFFragment::lastLocus();
    SourceLocation where;
    if (locus != nullptr && locus->filename()->file() != nullptr)
        where = {locus->filename()->file()->str(), locus->line()};
    m_diagnostics.error(
        where, "undefined symbol " + name->str() + (owner.empty() ? "" : ", needed by " + owner));
    symbol->setDefinition(new TOBFConstExpr(0)); // said once for each module
}

// Collecting.

TOBFSection* LinkImage::sectionLike(TOBFSection* section, const LinkModule& module)
{
    TOBFSection* own = m_module->findSection(section->name());
    if (own == nullptr) {
        own = new TOBFSection(section->name());
        own->setFlags(section->flags());
        if (m_options.loadedSections.contains(section->name()->str()))
            own->setFlags(own->flags() | TOBFSection::LoadFlag);
        m_module->addSection(own);
    } else if (own->sectionKind() != section->sectionKind()
               && section->sectionKind() != SectionKind::Unspecified) {
        m_diagnostics.warning("section " + section->name()->str() + " of " + module.name
                              + " is of another kind than in the files before");
    }
    return own;
}

/// The module becomes a scope of the executable.
void LinkImage::collectSymbols(const LinkModule& module)
{
    for (const auto& [name, symbol] : module.module->publicSymbols())
        if (symbol->isReachable() && m_inputs.find(name) == symbol)
            m_module->makePublic(symbol);
    collectScope(module.module);
    if (!m_options.debugInformation) {
        module.module->children().clear();
        for (const auto& [name, symbol] : module.module->symbols())
            symbol->setType(nullptr);
    }
    if (!module.module->symbols().empty() || !module.module->children().empty())
        module.module->setScope(m_module);
}

void LinkImage::collectSection(const LinkModule& module, TOBFSection* section)
{
    TOBFSection* own = nullptr;
    for (TOBFFragment* fragment : section->fragments()) {
        if (!fragment->isReachable()) {
            ++m_droppedFragments;
            continue;
        }
        if (fragment->insns().empty())
            continue;
        if (own == nullptr)
            own = sectionLike(section, module);
        own->addFragment(fragment);
        m_origins[fragment] = &module;
        tidyFragment(fragment);
    }
}

TOBFFragment* LinkImage::addFragment(const std::string& section, unsigned flags)
{
    HString* name = HString::intern(section);
    TOBFSection* own = m_module->findSection(name);
    if (own == nullptr) {
        own = new TOBFSection(name);
        own->setFlags(flags);
        m_module->addSection(own);
    }
    return own->newFragment();
}

/// Lets an expression name the symbols that define what it needs, in place of those of its own
/// module that only stand for them.
void LinkImage::bindDirectly(TOBFExpr* expr) const
{
    if (expr->kind() == TOBFKind::BinaryExpr) {
        auto* binary = static_cast<TOBFBinaryExpr*>(expr);
        bindDirectly(binary->left());
        if (binary->right() != nullptr)
            bindDirectly(binary->right());
    } else if (expr->kind() == TOBFKind::SymbolExpr) {
        auto* reference = static_cast<TOBFSymbolExpr*>(expr);
        constexpr int LongestChain = 100; // symbols may be defined by each other
        for (int i = 0; i < LongestChain; ++i) {
            TOBFExpr* definition = reference->symbol()->definition();
            if (definition == nullptr || definition->kind() != TOBFKind::SymbolExpr)
                break;
            reference->setSymbol(static_cast<TOBFSymbolExpr*>(definition)->symbol());
        }
    }
}

/// A fragment starts with a break, which is what a reader puts there when it finds an address. One
/// without source positions must not inherit the last one of the fragment before it.
void LinkImage::tidyFragment(TOBFFragment* fragment) const
{
    std::list<TOBFInsn*>& insns = fragment->insns();
    const bool hasPositions = std::any_of(
        insns.begin(), insns.end(), [](TOBFInsn* insn) { return insn->kind() == TOBFKind::Locus; });
    if (hasPositions && !m_options.debugInformation)
        insns.remove_if([](TOBFInsn* insn) { return insn->kind() == TOBFKind::Locus; });
    for (TOBFInsn* insn : insns)
        for (int i = 0; i < 2; ++i)
            if (insn->operand(i) != nullptr)
                bindDirectly(insn->operand(i));
    const auto front = [&](TOBFInsn* insn) {
        insn->setFragment(fragment);
        insns.push_front(insn);
    };
    if (!hasPositions && m_options.debugInformation)
        front(new TOBFResetLocusInsn);
    front(new TOBFBreakInsn);
}

bool LinkImage::isCollected(TOBFExpr* definition) const
{
    if (definition == nullptr)
        return false;
    switch (definition->kind()) {
    case TOBFKind::MarkerExpr: {
        const TOBFFragment* fragment =
            static_cast<TOBFMarkerExpr*>(definition)->marker()->fragment();
        return fragment != nullptr && m_origins.contains(fragment);
    }
    case TOBFKind::SymbolExpr:
        return isCollected(static_cast<TOBFSymbolExpr*>(definition)->symbol()->definition());
    case TOBFKind::BinaryExpr: {
        auto* binary = static_cast<TOBFBinaryExpr*>(definition);
        return isCollected(binary->left())
            && (binary->right() == nullptr || isCollected(binary->right()));
    }
    default: return true;
    }
}

/// Takes out of a scope what belongs to fragments that were dropped.
void LinkImage::collectScope(TOBFScope* scope)
{
    std::vector<TOBFSymbol*> dropped;
    for (const auto& [name, symbol] : scope->symbols())
        if (symbol->definition() != nullptr && !isCollected(symbol->definition()))
            dropped.push_back(symbol);
        else if (symbol->definition() == nullptr && scope->scopeKind() == TAG_SCOPE_MODULE)
            dropped.push_back(symbol);
    for (TOBFSymbol* symbol : dropped)
        scope->remove(symbol);
    scope->children().remove_if([this](TOBFScope* child) {
        return child->start() != nullptr && !isCollected(child->start());
    });
    for (TOBFScope* child : scope->children())
        collectScope(child);
}

const LinkModule* LinkImage::moduleOf(const TOBFFragment* fragment) const
{
    const auto it = m_origins.find(fragment);
    return it != m_origins.end() ? it->second : nullptr;
}

std::string LinkImage::nameOf(TOBFFragment* fragment) const
{
    std::string text = "an item";
    for (TOBFInsn* insn : fragment->insns()) {
        if (insn->kind() == TOBFKind::Marker && insn->name() != nullptr) {
            text = insn->name()->str();
            break;
        }
    }
    const LinkModule* module = moduleOf(fragment);
    return text + (module != nullptr ? " of " + module->name : std::string());
}

TOBFSymbol* LinkImage::provideSymbol(const std::string& name)
{
    TOBFSymbol*& provided = m_linkerSymbols[HString::intern(name)];
    if (provided == nullptr) {
        provided = new TOBFSymbol(HString::intern(name));
        provided->setDefinition(new TOBFConstExpr(0));
        provided->setScope(m_module);
        m_module->makePublic(provided);
    }
    return provided;
}

TOBFSymbol* LinkImage::linkerSymbol(const std::string& name) const
{
    const auto it = m_linkerSymbols.find(HString::intern(name));
    return it != m_linkerSymbols.end() ? it->second : nullptr;
}
