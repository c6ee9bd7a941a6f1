// The directives that decide which statements come next.

#include "toolchain/kas/AsmDirectives.h"
#include "toolchain/kas/AsmFiles.h"

namespace {

/// Repetitions of one `.rept`; the total of all expansions has its own limit.
constexpr std::int64_t MaximumRepeats = 1'000'000;

} // namespace

/// Starts to collect lines. What they are for is set behind this, so that they are collected even
/// if the directive is wrong.
void AsmDirectives::collect(const char* end)
{
    m_asm.m_collection = Assembler::Collection{};
    m_asm.m_collection->end = end;
    m_asm.m_collection->where = m_asm.m_where;
}

void AsmDirectives::macro(int)
{
    const std::string_view header = m_tokens.rest();
    collect(".endm");
    m_tokens.skipRest();
    m_asm.m_collection->macro = AsmMacros::parseHeader(header);
}

void AsmDirectives::endMacro(int) { throw AsmError{"'.endm' without '.macro'"}; }

void AsmDirectives::exitMacro(int)
{
    const auto conditions = m_asm.m_input.leaveMacro();
    if (!conditions)
        throw AsmError{"'.exitm' outside of a macro"};
    m_asm.m_conditions.closeTo(*conditions);
}

void AsmDirectives::repeat(int)
{
    collect(".endr");
    m_asm.m_collection->repeats = static_cast<std::size_t>(known("count", 0, MaximumRepeats));
}

/// `NAME, VALUE, …`
void AsmDirectives::repeatFor(int)
{
    std::vector<std::string> values = splitArguments(m_tokens.rest());
    collect(".endr");
    m_tokens.skipRest();
    if (values.empty() || values[0].empty())
        throw AsmError{"missing parameter"};
    m_asm.m_collection->macro.name = values[0];
    m_asm.m_collection->values.assign(values.begin() + 1, values.end());
}

void AsmDirectives::endRepeat(int) { throw AsmError{"'.endr' without '.rept'"}; }

void AsmDirectives::include(int)
{
    const std::string name = m_tokens.expectString();
    const std::string path =
        findInclude(name, m_asm.m_line.file->str(), m_asm.m_options.includePaths);
    if (path.empty())
        throw AsmError{"can't find the file '" + name + "'"};
    m_asm.addDependency(path);
    m_asm.m_input.push(splitAssembly(readSource(path), path), AsmInput::Kind::File,
                       m_asm.m_conditions.depth());
}

void AsmDirectives::end(int) { m_asm.m_ended = true; }

void AsmDirectives::message(int error)
{
    const std::string text = m_tokens.atEnd() ? "stopped by the source" : m_tokens.expectString();
    if (error != 0)
        throw AsmError{text};
    m_asm.m_diagnostics.warning(m_asm.m_where, text);
}
