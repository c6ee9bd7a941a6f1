// gantry script: files, standard input, and the console on a terminal.

#include "CliTestSupport.h"

#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace {

using ScriptTest = CliTest;

TEST_F(ScriptTest, RunsAFileWithItsArguments)
{
    make("other.js", "var loaded = 'from the file beside it';\n");
    make("bad.js", "var x = 1;\nx.y.z = 2;\nvar notReached = 1;\n");
    const std::string script =
        make("main.js",
             "#!/usr/bin/env -S gantry script\n"
             "WScript.Echo(WScript.Arguments.length + WScript.Arguments[1]);\n"
             "WScript.Echo();\n"
             "WScript.Echo(load('other.js') + ' ' + loaded + load('none.js'));\n");
    Outcome outcome = gantry("script " + script + " -- one 'two words'");
    EXPECT_EQ(outcome.output, "2two words\nundefined\ntrue from the file beside itfalse\n");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.status, 0);

    outcome =
        gantry("script " + make("loads.js", "load('bad.js'); WScript.Echo(typeof notReached)"));
    EXPECT_EQ(outcome.output, "undefined\n");
    EXPECT_EQ(outcome.errors,
              "gantry: " + path("bad.js") + ": line 2: can't convert undefined to an object\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST_F(ScriptTest, PrintsTheThreadsThatAScriptHasFound)
{
    const Outcome outcome =
        gantry("script "
               + make("threads.js",
                      "Threads.add('lost'); Threads.clear(); Threads.newqueue('Ready');"
                      "Threads.add('main', 1, 0x200, 'running'); Threads.add('idle', 0);"));
    EXPECT_EQ(outcome.output, "Ready:\nmain\t1\t512\trunning\nidle\t0\t\t\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(ScriptTest, TellsErrorsWithTheirLine)
{
    const struct {
        const char* source;
        const char* message;
    } cases[] = {
        {"var a = 1;\na(2);\n", "line 2: not a function object"},
        {"\n\n)", "line 3: expected an expression, found ')'"},
        {"throw 'mine'", "Uncaught exception: mine"},
        {"throw new Error('text')", "text"},
        {"Bench.SetError('no board'); WScript.Echo('reached')", "no board"},
        {"function f() {\nreturn f() + 1 }\nf()", "line 2: virtual machine stack too small"}};
    for (const auto& one : cases) {
        const std::string file = make("bad.js", one.source);
        const Outcome outcome = gantry("script " + file);
        EXPECT_EQ(outcome.status, 1) << one.source;
        EXPECT_EQ(outcome.output, "") << one.source;
        EXPECT_EQ(outcome.errors, "gantry: " + file + ": " + one.message + "\n");
    }
}

TEST_F(ScriptTest, TakesStandardInputAndRefusesWhatMakesNoSense)
{
    EXPECT_EQ(shell("echo 'WScript.Echo(6 * 7)' | " GANTRY_ROOT_TREE "/bin/gantry script").output,
              "42\n");
    EXPECT_EQ(gantry("script - < /dev/null").status, 0);
    EXPECT_EQ(gantry("script a.js b.js").status, 2);
    EXPECT_EQ(gantry("script --nothing").status, 2);
    const Outcome missing = gantry("script " + path("missing.js"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.errors,
              "gantry: can't read " + path("missing.js") + ": No such file or directory\n");
}

/// A program on a terminal of its own.
class Terminal {
public:
    explicit Terminal(const std::string& home)
    {
        m_pid = forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_pid != 0)
            return;
        setenv("HOME", home.c_str(), 1);
        setenv("TERM", "xterm", 1);
        execl(GANTRY_ROOT_TREE "/bin/gantry", "gantry", "script", nullptr);
        _exit(127);
    }
    ~Terminal()
    {
        close(m_terminal);
        int status = 0;
        waitpid(m_pid, &status, 0);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void type(const std::string& keys) const
    {
        ASSERT_EQ(write(m_terminal, keys.data(), keys.size()), ssize_t(keys.size()));
    }
    /// What is shown up to that text, or up to the end of the program or of patience.
    std::string readUntil(const std::string& text)
    {
        std::string shown;
        while (shown.find(text) == std::string::npos) {
            pollfd wait = {m_terminal, POLLIN, 0};
            char c = 0;
            if (::poll(&wait, 1, 60'000) != 1 || read(m_terminal, &c, 1) != 1)
                return shown + "(end)";
            shown += c;
        }
        return shown;
    }

private:
    int m_terminal = -1;
    pid_t m_pid = -1;
};

TEST_F(ScriptTest, IsAConsoleOnATerminal)
{
    const std::string home = path("home");
    Terminal terminal(home);
    const auto answer = [&](const std::string& keys, const std::string& expected) {
        terminal.type(keys);
        const std::string shown = terminal.readUntil(expected);
        EXPECT_EQ(shown.find("(end)"), std::string::npos) << keys << " showed " << shown;
    };
    terminal.readUntil("> ");
    answer("var n = 20 + 1\r", "> ");
    answer("n * 2\r", "\n42\r\n> ");
    answer("function f() {\r", "... ");
    answer("return 'over' + n }\r", "> ");
    answer("f()\r", "\nover21\r\n> ");
    answer("null.x\r", "can't convert null to an object\r\n> ");
    answer("WScript.Echo('loop'); for (;;);\r", "\nloop\r\n");
    answer("\003", "interrupted\r\n> ");
    answer("n\r", "\n21\r\n> ");
    terminal.type("\004");
    EXPECT_NE(terminal.readUntil("\n(never)").find("(end)"), std::string::npos);
    EXPECT_NE(readFile(home + "/.tamblyn_associates_limited/javascript_history").find("over"),
              std::string::npos);
}

} // namespace
