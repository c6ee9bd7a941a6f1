#pragma once

#include "toolchain/kas/Assembler.h"

/// The directives, each working on the tokens behind its name.
class AsmDirectives {
public:
    AsmDirectives(Assembler& assembler, AsmTokens& tokens) : m_asm(assembler), m_tokens(tokens) { }

    /// Throws AsmError, also for an unknown directive.
    void run(const std::string& word);

    /// True for those that are looked at where nothing is assembled.
    static bool isConditional(const std::string& lowerCaseWord);

    /// Gives the name the value that is next.
    void equate(const std::string& name);

private:
    using Handler = void (AsmDirectives::*)(int argument);
    struct Entry {
        const char* name;
        Handler handler;
        int argument;
    };
    static const Entry* find(const std::string& lowerCaseWord);

    // Sections
    void defaultSection(int which);
    void section(int);
    // Data
    void numbers(int size);
    void quads(int);
    void strings(int terminators);
    void space(int);
    void fill(int);
    void align(int powerOfTwo);
    void even(int);
    void origin(int);
    void init(int);
    // Symbols
    void global(int);
    void weak(int);
    void external(int);
    void equ(int);
    void type(int);
    void ignore(int);
    // Conditions when linking
    void linkIf(int);
    void endLinkIf(int);
    // Conditions now
    void ifHolds(int);
    void ifDefined(int defined);
    void elseIf(int);
    void otherwise(int);
    void endIf(int);
    // Macros and files
    void macro(int);
    void endMacro(int);
    void exitMacro(int);
    void repeat(int);
    void repeatFor(int);
    void endRepeat(int);
    void include(int);
    void end(int);
    void message(int error);

    void add(TOBFInsn* insn);
    void addBytes(const std::string& bytes);
    TOBFExpr* expression() { return m_asm.m_expressions.parse(m_tokens, m_asm.m_where); }
    std::int64_t known(const char* what, std::int64_t lowest, std::int64_t highest);
    /// Does something for each of the values between commas, of which there is at least one.
    template <typename Visit> void forEachValue(Visit visit);
    std::optional<SectionKind> sectionKind(bool& conventional);
    void collect(const char* end);

    Assembler& m_asm;
    AsmTokens& m_tokens;
};
