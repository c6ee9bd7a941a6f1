#pragma once

#include "toolchain/kcc/ObjectConverter.h"
#include "toolchain/kcc/TypeConverter.h"
#include "toolchain/kcc/VariableLocations.h"
#include "toolchain/kcc/dwarf/DwarfUnit.h"

/// Gives a converted module its scopes, variables and types.
class DebugConverter {
public:
    explicit DebugConverter(ObjectConverter& converter);

    void convert();

private:
    void convertGlobal(const DwarfEntry& entry);
    void convertFunction(unsigned index);
    void convertBlock(const DwarfEntry& entry, TOBFScope* parent, const FunctionFrame& frame);
    void convertChildren(const DwarfEntry& entry, TOBFScope* scope, const FunctionFrame& frame,
                         TOBFFunctionType* function);
    TOBFSymbol* makeVariable(const DwarfEntry& entry, TOBFScope* scope, const FunctionFrame& frame);
    void setRange(TOBFScope* scope, const std::vector<DwarfRange>& ranges);
    void setLocus(TOBFSymbol* symbol, const DwarfEntry& entry);
    void setFunctionType(TOBFSymbol* symbol, TOBFFunctionType* type, const DwarfEntry& entry,
                         const FunctionFrame& frame);
    /// The entry that holds the name and type of one that is an instance of another.
    const DwarfEntry& described(const DwarfEntry& entry) const;

    ObjectConverter& m_converter;
    DwarfUnit m_unit;
    TypeConverter m_types;
    std::vector<std::string> m_files;
    std::vector<TOBFFilename*> m_filenames;
};
