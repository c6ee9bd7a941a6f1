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
            build({"tour.c", "other.c"});
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

    void build(const std::vector<std::string>& sources, const std::string& options = "-O0")
    {
        m_program = buildProgram(m_folder, sources, options + " -D__MSP430F449__");
    }

    /// Of tour.c, 1-based.
    static int lineOf(const std::string& text)
    {
        std::ifstream in(GANTRY_TEST_DATA "/programs/tour.c");
        int number = 1;
        for (std::string line; std::getline(in, line) && line.find(text) == std::string::npos;)
            ++number;
        return number;
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

/// Steps into everything that has source, and checks what must hold at every stop.
constexpr const char* Walk = R"(
    var stops = 0, wrong = '', deepest = 0, seen = new Object();
    function check(holds, what) {
        if (!holds && wrong.length < 500) {
            var at = Debug.location();
            wrong += what + ' at ' + at.function + ':' + at.line + '; ';
        }
    }
    function value(expression, depth) { return Debug.evaluate(expression, depth); }
    // Past the first instructions of a function its locals are in their places.
    function inBody(at) { return at.line > first[at.function]; }
    var first = new Object();
    function note(at) { if (!first[at.function]) first[at.function] = at.line; }

    function checkStop(at) {
        var stack = Debug.callstack();
        note(at);
        seen[at.function] = true;
        if (stack.length > deepest) deepest = stack.length;
        check(at.file == (at.function == 'other' ? 'other.c' : 'tour.c'), 'file');
        check(stack[0].line == at.line && stack[0].address == at.address, 'top of the stack');
        if (!inBody(at)) return;
        var caller = stack[1].function;
        if (at.function == 'factorial') {
            var n = value('n', 0), depth = 4 - n;
            for (var k = 1; k <= depth; k++) {
                check(stack[k].function == 'factorial', 'caller ' + k);
                check(value('n', k) == n + k, 'n of ' + k);
            }
            check(stack[depth + 1].function == 'main', 'outermost caller');
        }
        if (at.function == 'main') {
            var i = value('i', 0);
            check(i >= 0 && i <= 5, 'i');
            for (var j = 0; j < i && j < 5; j++) check(value('squares[' + j + ']', 0) == j * j, 'square');
        }
        if (at.function == 'twice') {
            check(caller == 'main' || caller == 'apply', 'caller of twice');
            check(value('x', 0) == (caller == 'main' ? 24 : 21), 'x');
        }
        if (at.function == 'apply') check(value('argument', 0) == 21, 'argument');
        if (at.function == 'sum') {
            var r = value('result', 0);
            check(r == 0 || r == 10 || r == 30 || r == 60, 'result');
        }
        if (at.function == 'other') check(value('counter', 1) == 53 && value('by', 0) == 53, 'statics');
    }

    Debug.breakOn('main');
    Debug.go();
    Debug.clearBreakpoints();
    do {
        var at = Debug.location();
        if (at.line == 0) break; // main has returned
        stops++;
        checkStop(at);
    } while (at.line == lastLine ? Debug.stepover() : Debug.step());
    var names = '';
    for (var name in seen) names += name + ' ';
    WScript.Echo(names + '| ' + (stops > 40) + ' ' + deepest + ' | ' + wrong);
)";

TEST_F(ScriptSession, WalksThroughAWholeProgram)
{
    build({"tour.c", "other.c"});
    const Outcome outcome =
        script("var lastLine = " + std::to_string(lineOf("printf(")) + ";" + Walk);
    EXPECT_EQ(outcome.output,
              "total 89, counter 53\nmain factorial twice apply sum other | true 6 | \n");
}

TEST_F(ScriptSession, SeesWhatTheTargetRecords)
{
    build({"interrupts.c"});
    const Outcome outcome = script(R"(
        Debug.break('interrupts.c', 26); // the loop
        Debug.go();
        Debug.clearBreakpoints();
        WScript.Echo(Debug.interrupts().length + ' ' + Debug.interrupts()[6]);
        Debug.setTraceEnabled(true);
        Debug.setExecutionCountEnabled(true);
        Debug.resetExecutionCount();
        var before = Debug.cycles();
        Debug.raiseInterrupt(6);
        Debug.breakOn('count');
        Debug.go();
        var stack = Debug.callstack();
        WScript.Echo(stack[0].function + ' ' + stack[1].function + ' ' + stack[2].function);
        var trace = Debug.getTrace();
        var last = trace[trace.length - 1];
        WScript.Echo((last.text.indexOf('CALL') > 0) + ' ' + (last.cycles <= Debug.cycles())
                     + ' ' + (Debug.cycles() > before));
        var counts = Debug.getExecutionCounts(), loops = 0;
        for (var i = 0; i < counts.length; i++)
            if (counts[i].count > loops) loops = counts[i].count;
        WScript.Echo(loops > 1);
        var lines = Debug.disassembly();
        WScript.Echo(lines.length + ' ' + (lines[0].indexOf('SUB') > 0) + ' '
                     + (Debug.disassembly(last.address, 2)[0].indexOf('CALL') >= 0));
        try { Debug.raiseInterrupt(99) } catch (e) { WScript.Echo(e.message) }
        Debug.resetTrace();
        WScript.Echo(Debug.getTrace().length + ' ' + Debug.exceptions()[1]);
        Debug.clearBreakpoints();
        Debug.evaluate('@SP = 0xA00'); // the return address is that of no memory
        WScript.Echo(Debug.go() + ' ' + Debug.lastException());
    )");
    EXPECT_EQ(outcome.output,
              "16 Priority 6 - 0xffec\n"
              "count tick main\n"
              "true true true\n"
              "true\n"
              "10 true true\n"
              "line 26: there is no such interrupt\n"
              "0 Address outside memory range on read\n"
              "gantry: Address outside memory range on read at 0x000000\n"
              "true Address outside memory range on read\n");
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
