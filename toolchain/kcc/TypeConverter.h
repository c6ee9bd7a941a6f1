#pragma once

#include "objfile/model/TOBFType.h"
#include "toolchain/kcc/dwarf/DwarfUnit.h"

#include <map>

class TOBFModule;

/// Turns the types of a compilation into those of the object model. Each is made once.
class TypeConverter {
public:
    TypeConverter(const DwarfUnit& unit, TOBFModule* module) : m_unit(unit), m_module(module) { }

    /// The type that an entry's type attribute names; void if it has none.
    TOBFType* typeOf(const DwarfEntry& entry);
    /// A function type with what the entry returns, still without parameters.
    TOBFFunctionType* makeFunction(const DwarfEntry& entry);

private:
    TOBFType* convert(unsigned index);
    TOBFType* make(unsigned index);
    TOBFType* makeBase(const DwarfEntry& entry);
    TOBFType* makeEnumeration(unsigned index);
    TOBFType* makePointer(unsigned index);
    TOBFType* makeArray(const DwarfEntry& entry);
    TOBFType* makeStructure(unsigned index);
    TOBFType* makeTypedef(const DwarfEntry& entry);
    TOBFType* makeSubroutine(unsigned index);
    void addMember(TOBFStrucType* structure, const DwarfEntry& member);
    TOBFType* voidType();

    const DwarfUnit& m_unit;
    TOBFModule* m_module;
    std::map<unsigned, TOBFType*> m_types;
    TOBFType* m_void = nullptr;
};
