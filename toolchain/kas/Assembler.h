#pragma once

#include "toolchain/kas/AsmConditions.h"
#include "toolchain/kas/AsmInput.h"
#include "toolchain/kas/AsmInstructions.h"
#include "toolchain/kas/AsmMacros.h"
#include "toolchain/kas/AsmSections.h"
#include "toolchain/kas/AsmSymbols.h"

class TOBFFilename;

struct AssemblerOptions {
    SectionNames sections;
    std::vector<std::string> includePaths;
    bool debugInformation = false; ///< make line records
    bool msp430x = false;          ///< know the MSP430X instructions
};

/// Assembles one source text into a module, whose objects are made in the current pool.
class Assembler {
public:
    Assembler(AssemblerOptions options, Diagnostics& diagnostics);

    /// Every fault is reported to the diagnostics, at its place; with any, the module is of no use.
    TOBFModule* assemble(AsmLinesPtr source, const std::string& path);

    /// The source and all files that it included, each once.
    const std::vector<std::string>& dependencies() const { return m_dependencies; }
    void addDependency(const std::string& path);

private:
    friend class AsmDirectives;

    /// Lines between `.macro`, `.rept` or `.irp` and their end.
    struct Collection {
        std::string end; ///< the directive that ends it
        int nested = 0;
        AsmMacro macro;
        std::size_t repeats = 0;
        std::vector<std::string> values; ///< of `.irp`
        AsmLines lines;
        SourceLocation where;
    };

    void process(const AsmLine& line);
    void statement(AsmTokens& tokens);
    bool labels(AsmTokens& tokens);
    bool equate(AsmTokens& tokens);
    void callMacro(const AsmMacro& macro, AsmTokens& tokens);
    void instruction(const std::string& word, AsmTokens& tokens);
    void recordLine();
    TOBFFilename* filename(HString* file);
    void collect(const AsmLine& line);
    void finishCollection();
    void report(const AsmError& error);

    AssemblerOptions m_options;
    Diagnostics& m_diagnostics;
    TOBFModule* m_module;
    AsmInput m_input;
    AsmConditions m_conditions;
    AsmMacros m_macros;
    AsmSymbols m_symbols;
    AsmSections m_sections;
    AsmExpressions m_expressions;
    AsmInstructions m_instructions;

    AsmLine m_line{{}, nullptr, 0};
    SourceLocation m_where;
    std::optional<Collection> m_collection;
    std::vector<std::string> m_dependencies;
    bool m_ended = false;

    // What the last line record said.
    HString* m_recordedFile = nullptr;
    int m_recordedLine = 0;
    std::size_t m_recordedFragment = 0;
    std::unordered_map<HString*, TOBFFilename*> m_filenames;
};
