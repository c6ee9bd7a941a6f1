#pragma once

#include "base/Path.h"
#include "objfile/query/FileMappings.h"
#include "objfile/query/SymbolInformation.h"

#include <vector>

/// An object or load file as the browsers see it.
class ObjectFileInterface {
public:
    virtual ~ObjectFileInterface() = default;

    /// Bytes of code, of variables and of constants.
    virtual unsigned codeSize() = 0;
    virtual unsigned dataSize() = 0;
    virtual unsigned constSize() = 0;

    /// Goes to the start of the symbols.
    virtual void iterateSymbols() = 0;
    /// The next symbol, owned by this object, or null.
    virtual const SymbolInformation* nextSymbol() = 0;

    virtual void getSegments(std::vector<SegmentInformation>& segments) = 0;
    virtual void getSections(std::vector<SectionInformation>& sections) = 0;

    /// Writes the code of a source line, and adds each line written, counted from 1, to the
    /// mappings. False if the source line has no code.
    virtual bool disassemble(const Path& path, unsigned line, FileMappings* mappings) = 0;
};
