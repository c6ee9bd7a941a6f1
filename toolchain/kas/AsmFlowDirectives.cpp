// The directives that decide which statements come next.

#include "toolchain/kas/AsmDirectives.h"
#include "toolchain/kas/AsmFiles.h"

namespace {

/// Repetitions of one `.rept`; the total of all expansions has its own limit.
constexpr std::int64_t MaximumRepeats = 1'000'000;

} // namespace

void AsmDirectives::collect(const char* end, AsmMacro macro, std::size_t repeats,
                            std::vector<std::string> values)
{
    m_asm.m_collection = Assembler::Collection{end,     0,  std::move(macro), repeats,
                                               std::move(values), {}, m_asm.m_where};
    m_tokens.skipRest();
}

void AsmDirectives::macro(int)
{
    collect(".endm", AsmMacros::parseHeader(m_tokens.rest()), 1, {});
}

void AsmDirectives::endMacro(int)
{
    throw AsmError{"'.endm' without '.macro'"};
}

void AsmDirectives::exitMacro(int)
{
    const auto conditions = m_asm.m_input.leaveMacro();
    if (!conditions)
        throw AsmError{"'.exitm' outside of a macro"};
    m_asm.m_conditions.closeTo(*conditions);
}

void AsmDirectives::repeat(int)
{
    collect(".endr", {}, static_cast<std::size_t>(known("count", 0, MaximumRepeats)), {});
}

/// `NAME, VALUE, …`
void AsmDirectives::repeatFor(int)
{
    std::vector<std::string> values = splitArguments(m_tokens.rest());
    if (values.empty() || values[0].empty())
        throw AsmError{"missing parameter"};
    AsmMacro macro;
    macro.name = values[0];
    values.erase(values.begin());
    collect(".endr", std::move(macro), 1, std::move(values));
}

void AsmDirectives::endRepeat(int)
{
    throw AsmError{"'.endr' without '.rept'"};
}

void AsmDirectives::include(int)
{
    const std::string name = m_tokens.expectString();
    const std::string path = findInclude(name, m_asm.m_line.file->str(), m_asm.m_options.includePaths);
    if (path.empty())
        throw AsmError{"can't find the file '" + name + "'"};
    m_asm.addDependency(path);
    m_asm.m_input.push(splitAssembly(readSource(path), path), AsmInput::Kind::File,
                       m_asm.m_conditions.depth());
}

void AsmDirectives::end(int)
{
    m_asm.m_ended = true;
}

void AsmDirectives::message(int error)
{
    const std::string text = m_tokens.atEnd() ? "stopped by the source" : m_tokens.expectString();
    if (error != 0)
        throw AsmError{text};
    m_asm.m_diagnostics.warning(m_asm.m_where, text);
}
