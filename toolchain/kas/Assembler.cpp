#include "toolchain/kas/Assembler.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "toolchain/kas/AsmDirectives.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace {

/// The first word of a statement in lower case, if it is a directive.
std::string leadingDirective(const std::string& text)
{
    std::string word;
    for (const char c : text) {
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '.' && c != '_')
            break;
        word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return word.starts_with('.') ? word : std::string();
}

} // namespace

Assembler::Assembler(AssemblerOptions options, Diagnostics& diagnostics)
    : m_options(std::move(options)),
      m_diagnostics(diagnostics),
      m_module(new TOBFModule),
      m_symbols(m_module),
      m_sections(m_module, m_options.sections),
      m_expressions(m_symbols, m_sections),
      m_instructions(m_expressions, m_sections, m_options.msp430x)
{
}

TOBFModule* Assembler::assemble(AsmLinesPtr source, const std::string& path)
{
    addDependency(path);
    m_input.push(std::move(source), AsmInput::Kind::File, 0);
    while (!m_ended && m_input.next(m_line)) {
        m_where = m_line.where();
        try {
            process(m_line);
        } catch (const AsmError& error) {
            report(error);
        }
    }
    if (m_collection)
        m_diagnostics.error(m_collection->where, "missing '" + m_collection->end + "'");
    m_conditions.finish(m_diagnostics);
    m_sections.finish(m_diagnostics);
    m_symbols.finish(m_diagnostics);
    return m_module;
}

void Assembler::addDependency(const std::string& path)
{
    if (std::find(m_dependencies.begin(), m_dependencies.end(), path) == m_dependencies.end())
        m_dependencies.push_back(path);
}

void Assembler::report(const AsmError& error)
{
    m_diagnostics.error(m_where, error.text);
    for (const SourceLocation& caller : m_input.callers())
        m_diagnostics.note(caller, "called from here");
}

void Assembler::process(const AsmLine& line)
{
    if (m_collection) {
        collect(line);
        return;
    }
    if (!m_conditions.active() && !AsmDirectives::isConditional(leadingDirective(line.text)))
        return;
    AsmTokens tokens(line.text);
    statement(tokens);
}

void Assembler::statement(AsmTokens& tokens)
{
    if (labels(tokens) && tokens.atEnd())
        return;
    if (equate(tokens))
        return;
    if (tokens.peek().kind != AsmToken::Name)
        throw AsmError{"missing instruction before '" + std::string(tokens.peek().text) + "'"};
    const std::string word(tokens.next().text);
    if (const AsmMacro* macro = m_macros.find(word)) {
        callMacro(*macro, tokens);
        return;
    }
    if (!word.starts_with('.')) {
        instruction(word, tokens);
        return;
    }
    if (m_instructions.repeatPending()) {
        m_instructions.dropRepeat();
        throw AsmError{"'rpt' has to stand in front of an instruction"};
    }
    AsmDirectives(*this, tokens).run(word);
}

/// Defines the labels that stand in front; whether there were any.
bool Assembler::labels(AsmTokens& tokens)
{
    bool any = false;
    while (tokens.sees(":", 1)) {
        const AsmToken token = tokens.next();
        tokens.next();
        any = true;
        if (token.kind == AsmToken::Number) {
            m_sections.add(m_symbols.defineNumbered(token.value), AsmSections::Flow::None);
            continue;
        }
        if (token.kind != AsmToken::Name || registerNumber(token.text))
            throw AsmError{"'" + std::string(token.text) + "' can't be a label"};
        const std::string name(token.text);
        TOBFLocus* locus = nullptr;
        if (m_options.debugInformation)
            locus = new TOBFLocus(filename(m_line.file), m_line.line, TAG_SYMBOL_LOCUS);
        TOBFMarker* marker = m_symbols.defineLabel(name, m_where, locus);
        if (m_symbols.isGlobal(name))
            m_sections.beginUnit();
        m_sections.add(marker, AsmSections::Flow::None);
    }
    return any;
}

/// `NAME = VALUE`, `NAME .equ VALUE` and `NAME .set VALUE`.
bool Assembler::equate(AsmTokens& tokens)
{
    if (tokens.peek().kind != AsmToken::Name)
        return false;
    const std::string_view operation = tokens.peek(1).text;
    if (operation != "=" && operation != ".equ" && operation != ".set")
        return false;
    const std::string name(tokens.next().text);
    tokens.next();
    AsmDirectives(*this, tokens).equate(name);
    return true;
}

void Assembler::callMacro(const AsmMacro& macro, AsmTokens& tokens)
{
    const AsmLinesPtr lines = m_macros.expand(macro, tokens.rest());
    m_input.push(lines, AsmInput::Kind::Macro, m_conditions.depth());
}

void Assembler::instruction(const std::string& word, AsmTokens& tokens)
{
    if (m_options.debugInformation)
        recordLine();
    m_instructions.assemble(word, tokens, m_where);
}

/// Puts a line record in front of the first item of a line; a macro's items belong to its call.
void Assembler::recordLine()
{
    const AsmLine& origin = m_input.origin();
    if (origin.file == m_recordedFile && origin.line == m_recordedLine
        && m_sections.fragmentNumber() == m_recordedFragment)
        return;
    m_sections.add(new TOBFLocus(filename(origin.file), origin.line, TAG_LOCUS),
                   AsmSections::Flow::None);
    m_recordedFile = origin.file;
    m_recordedLine = origin.line;
    m_recordedFragment = m_sections.fragmentNumber();
}

/// The file's record; its name is absolute, so that a debugger finds it from anywhere.
TOBFFilename* Assembler::filename(HString* file)
{
    TOBFFilename*& known = m_filenames[file];
    if (known == nullptr) {
        std::error_code error;
        const auto absolute = std::filesystem::absolute(file->str(), error);
        known = new TOBFFilename(
            HString::intern(error ? file->str() : absolute.lexically_normal().string()));
    }
    return known;
}

void Assembler::collect(const AsmLine& line)
{
    const std::string directive = leadingDirective(line.text);
    const bool macro = m_collection->end == ".endm";
    if (macro ? directive == ".macro" : directive == ".rept" || directive == ".irp")
        ++m_collection->nested;
    else if (directive == m_collection->end && m_collection->nested-- == 0)
        return finishCollection();
    m_collection->lines.push_back(line);
}

void Assembler::finishCollection()
{
    Collection collection = std::move(*m_collection);
    m_collection.reset();
    const auto body = std::make_shared<const AsmLines>(std::move(collection.lines));
    if (collection.end == ".endm") {
        collection.macro.body = body;
        m_macros.define(std::move(collection.macro));
    } else if (collection.macro.name.empty()) {
        m_input.push(body, AsmInput::Kind::Macro, m_conditions.depth(), collection.repeats);
    } else {
        auto all = std::make_shared<AsmLines>();
        for (const std::string& value : collection.values) {
            const AsmLinesPtr lines = m_macros.substitute(*body, collection.macro.name, value);
            if (all->size() + lines->size() > AsmInput::MaximumExpansion)
                throw AsmError{"macros expand to too many lines"};
            all->insert(all->end(), lines->begin(), lines->end());
        }
        m_input.push(all, AsmInput::Kind::Macro, m_conditions.depth());
    }
}
