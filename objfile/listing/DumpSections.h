#pragma once

#include "objfile/model/TOBFModule.h"

#include <string>

class SourceLine;
class TOBFInsn;
class TOBFLocus;

/// Prints a module as a listing: sections with their items, and the source lines between them.
class DumpSections {
public:
    virtual ~DumpSections() = default;

    /// `source` may be null if `withSource` is false. With `withLabels` labels have lines of their
    /// own.
    void doit(TOBFModule* module, SourceLine* source, bool withSource, bool withLabels);

protected:
    /// Takes a line without its end. `insn` is the item that it shows, else null.
    virtual void outputLine(const std::string& line, TOBFInsn* insn) = 0;

private:
    void dumpSection(TOBFSection* section, SourceLine* source);
    void dumpInsn(bool isFirst, TOBFInsn* insn, SourceLine* source, bool withSource,
                  bool withLabels);
    void dumpPosition(TOBFInsn* insn, SourceLine* source);

    bool m_withSource = false;
    bool m_withLabels = false;
    TOBFLocus* m_locus = nullptr;
};
