#include "cli/ObjectDump.h"

#include "objfile/listing/DumpSections.h"
#include "objfile/listing/SourceLine.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <vector>

namespace {

constexpr int DeepestScope = 200;

std::string nameOf(TOBFObject* object)
{
    HString* name = object != nullptr ? object->getName() : nullptr;
    return name != nullptr ? name->str() : std::string();
}

std::string locationOf(TOBFSymbol* symbol)
{
    if (symbol->definition() == nullptr)
        return "undefined";
    const TOBFValue value = symbol->definition()->evaluate();
    if (value.failed || value.section == nullptr)
        return symbol->definition()->printString();
    char text[32];
    std::snprintf(text, sizeof text, "%05llX", static_cast<unsigned long long>(value.value));
    return text;
}

std::string declarationOf(TOBFSymbol* symbol)
{
    const TOBFLocus* locus = symbol->locus();
    if (locus == nullptr || locus->filename() == nullptr || locus->filename()->file() == nullptr)
        return {};
    return locus->filename()->file()->str() + ":" + std::to_string(locus->line());
}

void printSymbol(TOBFSymbol* symbol, int depth, bool isPublic)
{
    std::printf("%*s%-10s %c %-24s %-24s %s\n", depth * 2, "", locationOf(symbol).c_str(),
                isPublic ? 'P' : ' ', nameOf(symbol).c_str(), nameOf(symbol->type()).c_str(),
                declarationOf(symbol).c_str());
}

void printScope(TOBFScope* scope, int depth, const std::map<HString*, TOBFSymbol*>& publics)
{
    if (depth > DeepestScope)
        return;
    if (scope->functionSymbol() != nullptr)
        std::printf("%*sfunction %s\n", depth * 2, "", nameOf(scope->functionSymbol()).c_str());
    for (const auto& [name, symbol] : scope->symbols()) {
        const auto it = publics.find(name);
        printSymbol(symbol, depth + 1, it != publics.end() && it->second == symbol);
    }
    for (TOBFScope* child : scope->children())
        printScope(child, depth + 1, publics);
}

void collectTypes(TOBFType* type, std::set<TOBFType*>& types)
{
    std::vector<TOBFType*> pending = {type};
    while (!pending.empty()) {
        TOBFType* next = pending.back();
        pending.pop_back();
        if (next == nullptr || !types.insert(next).second)
            continue;
        pending.push_back(next->getElementType());
        if (next->isStruc())
            for (TOBFField* field : static_cast<TOBFStrucType*>(next)->fields())
                pending.push_back(field->type());
    }
}

void collectTypes(TOBFScope* scope, std::set<TOBFType*>& types, int depth = 0)
{
    if (depth > DeepestScope)
        return;
    for (const auto& [name, symbol] : scope->symbols())
        collectTypes(symbol->type(), types);
    for (TOBFScope* child : scope->children())
        collectTypes(child, types, depth + 1);
}

class ListingPrinter final : public DumpSections {
protected:
    void outputLine(const std::string& line, TOBFInsn*) override { std::puts(line.c_str()); }
};

} // namespace

void ObjectDump::sections(TOBFModule* module)
{
    std::printf("%-16s %-7s %-5s %8s  %s\n", "section", "kind", "load", "bytes", "addresses");
    for (TOBFSection* section : module->sections()) {
        std::printf("%-16s %-7s %-5s %8u", nameOf(section).c_str(),
                    sectionKindName(section->sectionKind()), section->isLoaded() ? "yes" : "no",
                    section->accumulatedSize());
        if (section->lowestAddress() != TOBFSection::NoAddress)
            std::printf("  %05X-%05X", section->lowestAddress(),
                        static_cast<unsigned>(section->highestAddress()));
        std::printf("\n");
    }
}

void ObjectDump::symbols(TOBFModule* module)
{
    for (TOBFSymbol* symbol : module->allSymbols())
        if (symbol->scope() == nullptr && symbol->name()->length() > 0)
            printSymbol(symbol, 1, module->publicSymbols().contains(symbol->getName()));
    printScope(module, 0, module->publicSymbols());
}

void ObjectDump::types(TOBFModule* module)
{
    std::set<TOBFType*> types;
    collectTypes(module, types);
    std::set<std::string> texts;
    for (TOBFType* type : types) {
        std::string text = nameOf(type) + ", " + std::to_string(type->size()) + " bytes";
        if (type->isStruc())
            for (TOBFField* field : static_cast<TOBFStrucType*>(type)->fields())
                text += "\n    " + nameOf(field->type()) + " " + nameOf(field);
        texts.insert(text);
    }
    for (const std::string& text : texts)
        std::puts(text.c_str());
}

void ObjectDump::lines(TOBFModule* module)
{
    for (TOBFSection* section : module->sections())
        for (TOBFFragment* fragment : section->fragments())
            for (TOBFInsn* insn : fragment->insns()) {
                if (insn->kind() != TOBFKind::Locus)
                    continue;
                const auto* locus = static_cast<TOBFLocus*>(insn);
                HString* file = locus->filename() != nullptr ? locus->filename()->file() : nullptr;
                std::printf("%05X  %s:%d\n", static_cast<unsigned>(std::max(locus->pc(), 0)),
                            file != nullptr ? file->text() : "???", locus->line());
            }
}

void ObjectDump::listing(TOBFModule* module)
{
    SourceLine source;
    ListingPrinter().doit(module, &source, true, true);
}
