// gantry script with a program: what a script sees through `Debug`.

#include "Session.h"

#include <filesystem>
#include <fstream>

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
        return run(source, "--program " + m_program + " --device MSP430F449", "/dev/null");
    }
    /// With these options, and standard input from a file.
    Outcome run(const std::string& source, const std::string& options, const std::string& input)
    {
        return command("script " + m_folder.write("script.js", source) + " " + options, input);
    }
    Outcome forth(const std::string& arguments)
    {
        return command("forth " + arguments, "/dev/null");
    }
    const std::string& program() const { return m_program; }

    void build(const std::vector<std::string>& sources, const std::string& options = "-O0")
    {
        m_program = buildProgram(m_folder, sources, options + " -D__MSP430F449__");
    }

    /// 1-based.
    static int lineOf(const std::string& text, const std::string& source = "tour.c")
    {
        std::ifstream in(GANTRY_TEST_DATA "/programs/" + source);
        int number = 1;
        for (std::string line; std::getline(in, line) && line.find(text) == std::string::npos;)
            ++number;
        return number;
    }

    TestFolder m_folder;

private:
    Outcome command(const std::string& arguments, const std::string& input)
    {
        const int status =
            std::system(("HOME=" + (m_folder / "home") + " " GANTRY_ROOT_TREE "/bin/gantry "
                         + arguments + " > " + (m_folder / "output") + " 2>&1 < " + input)
                            .c_str());
        return {WEXITSTATUS(status), m_folder.read("output")};
    }

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
            if (at.line <= loopLine) return;
            var i = value('i', 0);
            check(i >= 0 && i <= 5, 'i');
            for (var j = 0; j < i && j < 5; j++) check(value('squares[' + j + ']', 0) == j * j, 'square');
        }
        if (at.function == 'twice') {
            check(caller == 'main' || caller == 'apply', 'caller of twice');
            check(value('x', 0) == (caller == 'main' ? 24 : 21), 'x');
        }
        if (at.function == 'apply') check(value('argument', 0) == 21, 'argument');
        if (at.function == 'sum' && at.line >= whileLine) {
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
        if (at.line == 0) { // a routine of the library, or main has returned
            if (Debug.callstack().length < 2) break;
            Debug.stepout();
            continue;
        }
        stops++;
        checkStop(at);
    } while (at.line == lastLine ? Debug.stepover() : Debug.step());
    var names = ['apply', 'factorial', 'main', 'other', 'sum', 'twice'], all = '';
    for (var f = 0; f < names.length; f++) if (seen[names[f]]) all += names[f] + ' ';
    WScript.Echo(all + '| ' + (stops > 40) + ' ' + deepest + ' | ' + wrong);
)";

TEST_F(ScriptSession, WalksThroughAWholeProgram)
{
    build({"tour.c", "other.c"});
    const Outcome outcome =
        script("var loopLine = " + std::to_string(lineOf("for (i"))
               + ", lastLine = " + std::to_string(lineOf("printf(")) + ";" + Walk);
    EXPECT_EQ(outcome.output,
              "total 89, counter 53\napply factorial main other sum twice | true 6 | \n");
}

/// The same through optimised code, where variables may be anywhere or nowhere and calls may be
/// gone: what is shown must still be true.
constexpr const char* OptimisedWalk = R"(
    var wrong = '', stops = 0, known = 0;
    function check(holds, what) {
        if (!holds && wrong.length < 500) {
            var at = Debug.location();
            wrong += what + ' at ' + at.function + ':' + at.line + '; ';
        }
    }
    var values = {factorial: {n: '1 2 3 4'}, twice: {x: '24 21', result: '48 42'},
                  apply: {argument: '21'}, sum: {result: '0 10 30 60'}, other: {by: '53'},
                  main: {i: '0 1 2 3 4 5'}};
    var callers = {factorial: 'factorial main', twice: 'apply main', apply: 'main', sum: 'main',
                   other: 'main'};
    function checkStop(at) {
        var stack = Debug.callstack();
        check(at.file == (at.function == 'other' ? 'other.c' : 'tour.c'), 'file ' + at.file);
        check(stack[0].line == at.line && stack[0].address == at.address, 'top of the stack');
        for (var k = 0; stack[k].function != 'main' && k < 6; k++)
            check(callers[stack[k].function].indexOf(stack[k + 1].function) >= 0,
                  stack[k].function + ' called by ' + stack[k + 1].function);
        var expected = values[at.function];
        for (var name in expected) {
            if (!expected.hasOwnProperty(name)) continue;
            var value;
            try { value = Debug.evaluate(name); } catch (e) { continue; }
            known++;
            check((' ' + expected[name] + ' ').indexOf(' ' + value + ' ') >= 0, name + ' = ' + value);
        }
    }
    Debug.breakOn('main');
    Debug.go();
    Debug.clearBreakpoints();
    Debug.step(); // past the entry of main, where nothing has a value yet
    do {
        var at = Debug.location();
        if (at.line == 0) {
            if (Debug.callstack().length < 2) break;
            Debug.stepout();
            continue;
        }
        stops++;
        checkStop(at);
    } while (at.line == lastLine ? Debug.stepover() : Debug.step());
    WScript.Echo((stops > 10) + ' ' + (known > 5) + ' | ' + wrong);
)";

TEST_F(ScriptSession, WalksThroughOptimisedPrograms)
{
    for (const char* optimisation : {"-O1", "-O-9", "-O+9"}) {
        build({"tour.c", "other.c"}, optimisation);
        const Outcome outcome =
            script("var lastLine = " + std::to_string(lineOf("printf(")) + ";" + OptimisedWalk);
        EXPECT_EQ(outcome.output, "total 89, counter 53\ntrue true | \n") << optimisation;
    }
}

/// Bit-fields, unions, reals, arrays of arrays and pointers, at each statement of their program.
TEST_F(ScriptSession, WalksThroughValuesOfEveryKind)
{
    build({"values.c"});
    std::string lines = "var lines = new Object();";
    for (const char* mark : {"negate", "statics", "inner scope", "changed", "end"})
        lines += "lines['" + std::string(mark) + "'] = "
            + std::to_string(lineOf("/* mark: " + std::string(mark) + " */", "values.c")) + ";";
    const Outcome outcome = script(lines + R"(
        var expected = {
            'negate': {x: 42},
            'inner scope': {'flags.ready': 1, 'flags.mode': 5, 'flags.wide': 0x54321,
                'word.value': 0x1234, 'word.bytes[1]': 0x12, 'word.parts.low': 4, single: 1.5,
                large: -1e10, 'grid[1][2]': 6, '*pointer': 5, 'thing.inner[1].ratio': -2,
                'thing.self->self->kind': 7, tiny: -128, truth: 1, local: 1000, mean: -20.25,
                'copy.ratio': -2, 'text[1]': 101},
            'statics': {calls: 10},
            'changed': {'flags.level': 7, 'flags.mode': 5, 'word.value': 0xff34,
                'word.parts.high': 0xff3, 'grid[0][0]': 1001, local: -42},
            'end': {'*pointer': 55, 'grid[1][1]': 55, mean: -40.5, 'copy.name[0]': 84}};
        Debug.breakOn('main');
        Debug.go();
        Debug.clearBreakpoints();
        var seen = '', wrong = '', stops = 0;
        for (;;) {
            var at = Debug.location(), stack = Debug.callstack();
            if (at.line == 0) {
                if (stack.length < 2) break;
                Debug.stepout();
                continue;
            }
            stops++;
            if (at.file != 'values.c' || stack[0].line != at.line) wrong += at.file + at.line + ' ';
            if (at.function != 'main' && stack[1].function != 'main') wrong += 'caller ';
            for (var mark in lines) {
                if (lines[mark] != at.line || seen.indexOf(mark) >= 0) continue;
                seen += mark + ' ';
                for (var name in expected[mark]) {
                    if (!expected[mark].hasOwnProperty(name)) continue;
                    var value = Debug.evaluate(name);
                    if (value != expected[mark][name]) wrong += mark + ': ' + name + ' ' + value + ' ';
                }
            }
            if (!Debug.step()) break;
        }
        WScript.Echo(seen + (stops > 12) + ' ' + wrong);
    )");
    EXPECT_EQ(outcome.output, "negate inner scope changed statics end true \n");
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

/// A copy of a sample: building it writes into its folder.
TEST_F(ScriptSession, StartsAProjectOfASolution)
{
    std::filesystem::copy(GANTRY_ROOT_TREE "/samples/printf", m_folder / "printf");
    m_folder.write("input", "3\n4\n");
    const std::string solution = "--solution " + (m_folder / "printf/printf.kvp");
    const char* const source = R"(
        WScript.Echo(Debug.location().function + ' ' + Debug.cycles());
        Debug.break('average.c', 14);
        for (var stops = 0; Debug.go(); ++stops)
            WScript.Echo(Debug.location().function + ' ' + Debug.evaluate('number'));
        WScript.Echo(stops);
    )";
    Outcome outcome = run(source, solution, m_folder / "input");
    EXPECT_EQ(outcome.output,
              "__reset 0\n"
              "Numbers, please, one on each line:\n"
              "main 3\n"
              "main 4\n"
              "2 numbers, sum 7, average 3\n"
              "2\n");
    EXPECT_EQ(outcome.status, 0);

    // A change is built before the program starts; one that can't be built starts nothing.
    std::string text = m_folder.read("printf/average.c");
    m_folder.write("printf/average.c", text.replace(text.find("There were none"), 15, "Nothing"));
    outcome = run("Debug.go()", solution, "/dev/null");
    EXPECT_EQ(outcome.output, "Numbers, please, one on each line:\nNothing.\n");
    m_folder.write("printf/average.c", text + "int added = ;\n");
    outcome = run("WScript.Echo('runs')", solution, "/dev/null");
    EXPECT_NE(outcome.output.find("expected expression"), std::string::npos) << outcome.output;
    EXPECT_EQ(outcome.output.find("runs"), std::string::npos) << outcome.output;
    EXPECT_EQ(outcome.status, 1);
}

TEST_F(ScriptSession, SaysWhatASolutionHasnt)
{
    std::filesystem::copy(GANTRY_ROOT_TREE "/samples/library", m_folder / "library",
                          std::filesystem::copy_options::recursive);
    const std::string solution = " --solution " + (m_folder / "library/library.kvp");
    const struct {
        std::string options;
        const char* message;
        int status;
    } cases[] = {
        {solution + " --target board", "there is no target board; there are: MSP430 Core Simulator",
         1},
        {solution + " --project x", "there is no project x; there are: mean, median, statistics",
         1},
        {solution + " --configuration x", "there is no configuration x; there are: Debug, Release",
         1},
        {solution + " --project statistics", "No executable to load", 1},
        {" --solution " + (m_folder / "none.kvp"), " - does not exist", 1},
        {" --project x", "need a solution", 2},
        {" --target x", "needs a program or a solution", 2},
        {" --program none.kvx --target board", "there is no target board", 1},
        {solution + " --program x", "don't go together", 2},
    };
    for (const auto& one : cases) {
        const Outcome outcome = run("WScript.Echo('started')", one.options, "/dev/null");
        EXPECT_NE(outcome.output.find(one.message), std::string::npos) << outcome.output;
        EXPECT_EQ(outcome.status, one.status) << one.options;
    }
}

/// The project's own scripts run on the target, with what its target script has defined.
TEST_F(ScriptSession, RunsTheScriptsOfTheProject)
{
    std::filesystem::copy(GANTRY_ROOT_TREE "/samples/printf", m_folder / "printf");
    std::string solution = m_folder.read("printf/printf.kvp");
    const std::string properties = "Target=\"MSP430F449\"";
    solution.replace(solution.find(properties), properties.size(),
                     properties
                         + " target_reset_script=\"prepare(TargetInterface.getProjectProperty("
                           "'msp430_insn_set'))\" target_debug_begin_script=\"nothing()\"");
    const std::string file = "<file file_name=\"average.c\"/>";
    solution.replace(solution.find(file), file.size(),
                     "<file file_name=\"target.js\"><configuration Name=\"Common\" "
                     "file_type=\"Reset Script\"/></file>"
                         + file);
    m_folder.write("printf/printf.kvp", solution);
    m_folder.write("printf/target.js",
                   "function prepare(set) { TargetInterface.pokeUint16("
                   "0x300, set.length); WScript.Echo('prepared'); }");
    const Outcome outcome = run("WScript.Echo(TargetInterface.peekUint16(0x300))",
                                "--solution " + (m_folder / "printf/printf.kvp"), "/dev/null");
    EXPECT_NE(outcome.output.find("gantry: prepared\n"), std::string::npos);
    EXPECT_NE(outcome.output.find("Script Runtime Error: "), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("\n6\n"), std::string::npos) << outcome.output;
}

TEST_F(ScriptSession, ForthDrivesTheProgram)
{
    build({"tour.c", "other.c"});
    const std::string source = m_folder.write(
        "debug.fs",
        "DEBUGGING? . CR DEBUG-STEP-OVER .LOCALS DEBUG-STEP-INTO DEBUG-FRAME-UP DEBUG-FRAME-DOWN\n"
        "DEBUG-SHOW-NEXT DEBUG-GO DEBUG-GO DEBUG-STOP DEBUGGING? . CR DEBUG-GO .LOCALS\n");
    const Outcome outcome = forth("--program " + program() + " --device MSP430F449 " + source);
    EXPECT_EQ(outcome.output.substr(0, 4), "-1 \n");
    EXPECT_NE(outcome.output.find("tour.c("), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("i = "), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("the program has ended with 89"), std::string::npos)
        << outcome.output;
    EXPECT_EQ(outcome.output.substr(outcome.output.size() - 3), "0 \n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(forth("--program").status, 2);
}

} // namespace
