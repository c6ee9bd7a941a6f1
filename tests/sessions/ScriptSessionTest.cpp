// gantry script with a program: what a script sees through `Debug`.

#include "Session.h"

#include <fstream>
#include <sstream>

#include <sys/wait.h>

namespace {

struct Outcome {
    int status;
    std::string output;
};

class ScriptSession : public testing::Test {
protected:
    Outcome script(const std::string& source)
    {
        if (m_program.empty())
            m_program = buildProgram(m_folder, {"tour.c", "other.c"}, "-O0");
        const std::string file = m_folder / "script.js";
        const std::string output = m_folder / "output";
        std::ofstream(file) << source;
        const int status =
            std::system((GANTRY_ROOT_TREE "/bin/gantry script " + file + " --program " + m_program
                         + " --device MSP430F449 > " + output + " 2>&1 < /dev/null")
                            .c_str());
        std::ifstream in(output);
        std::ostringstream text;
        text << in.rdbuf();
        return {WEXITSTATUS(status), text.str()};
    }

private:
    TestFolder m_folder;
    std::string m_program;
};

TEST_F(ScriptSession, DrivesTheProgram)
{
    const Outcome outcome = script(R"(
        function here() { var at = Debug.location(); return at.file + ' ' + at.function; }
        Debug.breakOn('factorial');
        WScript.Echo(Debug.go() + ' ' + here());
        Debug.step(); // past what the function's entry does
        var n = Debug.evaluate('n');
        Debug.clearBreakpoints();
        Debug.stepout();
        WScript.Echo(n + ' ' + here() + ' ' + Debug.locals().i);
        Debug.stepover();
        WScript.Echo(Debug.evaluate('total') + ' ' + Debug.evaluate('squares').length
                     + ' ' + Debug.evaluate('squares') + ' ' + Debug.evaluate('corner').y);
        Debug.break('other.c', 6);
        Debug.go();
        var stack = Debug.callstack();
        WScript.Echo(stack[0].function + ' ' + stack[1].function + ' ' + stack[1].depth);
        WScript.Echo(Debug.evaluate('counter') + ' ' + Debug.evaluate('counter', 1));
        WScript.Echo(Debug.registers().PC == Debug.location().address);
        WScript.Echo(TargetInterface.peekUint16(Debug.evaluate('(unsigned)&total')));
        Debug.evaluate('total = 1000');
        try { Debug.evaluate('nothing') } catch (e) { WScript.Echo(e.message) }
        try { Debug.break('other.c', 1) } catch (e) { WScript.Echo(e.message) }
        WScript.Echo(Debug.go() + ' ' + Debug.go());
    )");
    EXPECT_EQ(outcome.output,
              "true tour.c factorial\n"
              "4 tour.c main 5\n"
              "24 5 0,1,4,9,16 -4\n"
              "other main 1\n"
              "100 53\n"
              "true\n"
              "42\n"
              "line 21: nothing symbol not found\n"
              "line 22: No code for breakpoint\n"
              "total 1047, counter 53\n"
              "false false\n");
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
