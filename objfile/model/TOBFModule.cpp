#include "objfile/model/TOBFModule.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"

bool TOBFModule::hasHiddenInsns()
{
    for (TOBFSection* section : m_sections)
        for (TOBFFragment* fragment : section->fragments())
            for (const TOBFInsn* insn : fragment->insns())
                if (insn->isHidden())
                    return true;
    return false;
}

void TOBFModule::addSection(TOBFSection* section)
{
    m_sectionMap[section->name()] = section;
    m_sections.push_back(section);
}

TOBFSection* TOBFModule::findSection(HString* name) const
{
    const auto it = m_sectionMap.find(name);
    return it != m_sectionMap.end() ? it->second : nullptr;
}

HString* TOBFModule::attribute(HString* key) const
{
    const auto it = m_attributes.find(key);
    return it != m_attributes.end() ? it->second : nullptr;
}

void TOBFModule::nameMarkers()
{
    for (TOBFSymbol* symbol : m_allSymbols) {
        const TOBFExpr* definition = symbol->definition();
        if (definition == nullptr || definition->kind() != TOBFKind::MarkerExpr)
            continue;
        TOBFMarker* marker = static_cast<const TOBFMarkerExpr*>(definition)->marker();
        marker->setName(symbol->getName());
        marker->setSymbol(symbol);
    }
}
