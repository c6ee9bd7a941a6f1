#pragma once

#include "toolchain/kcc/ObjectConverter.h"
#include "toolchain/kcc/ScopeRanges.h"
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
    void convertBlock(const DwarfEntry& entry, std::size_t parent, const FunctionFrame& frame);
    /// `scope` is an index into the scopes of the function.
    void convertChildren(const DwarfEntry& entry, std::size_t scope, const FunctionFrame& frame,
                         TOBFFunctionType* function);
    TOBFSymbol* makeVariable(const DwarfEntry& entry, TOBFScope* scope, const FunctionFrame& frame);
    /// Gives the scope the span of the ranges, which becomes one of the function's scopes too.
    void setRange(TOBFScope* scope, const std::vector<DwarfRange>& ranges, std::size_t parent);
    void setLocus(TOBFSymbol* symbol, const DwarfEntry& entry);
    void setFunctionType(TOBFSymbol* symbol, TOBFFunctionType* type, const DwarfEntry& entry,
                         const FunctionFrame& frame);
    /// The entry that holds the name and type of one that is an instance of another.
    const DwarfEntry& described(const DwarfEntry& entry) const;

    ObjectConverter& m_converter;
    DwarfUnit m_unit;
    TypeConverter m_types;
    std::vector<FunctionScope> m_scopes;     ///< of the function being converted
    std::vector<MovingVariable> m_variables; ///< of that function
    std::vector<std::string> m_files;
    std::vector<TOBFFilename*> m_filenames;
};
