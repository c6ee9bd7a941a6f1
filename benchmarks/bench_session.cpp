// Debug sessions on a real program of about a megabyte: opening one, stepping, and what the views
// of a window do at a stop. The
// program is made here, with the tools of the installation.

#include "debugger/msp430/MSP430Debugger.h"
#include "debugger/session/DebugSession.h"
#include "debugger/views/LocalsVariableView.h"
#include "debugger/views/WatchVariableView.h"
#include "projects/macros/MacroSystem.h"
#include "target/msp430/MSP430Monitor.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

constexpr int Functions = 1300;
constexpr int Records = 700;

void run(const std::string& command)
{
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error(command);
}

std::string parameterOf(int function)
{
    return "struct record_" + std::to_string(function % Records) + " *";
}

/// Functions with a line a statement, and variables.
void writeFunctions(std::ostream& out)
{
    out << "volatile int sink;\n";
    for (int i = 0; i < Records; ++i) {
        const std::string n = std::to_string(i);
        out << "int variable_" << n << " = " << n << ";\nstruct record_" << n
            << " { int first; char name[8]; struct record_" << n << " *next; };\nstruct record_"
            << n << " object_" << n << ";\n";
    }
    for (int i = 0; i < Functions; ++i)
        out << "int function_" << i << "(int count, " << parameterOf(i)
            << "record)\n{\n    int index = count;\n    int total = sink;\n    total ^= index;\n"
               "    if (record)\n        total += record->first;\n    return total;\n}\n";
}

void writeMain(std::ostream& out)
{
    for (int i = 0; i < Records; ++i)
        out << "extern struct record_" << i << " object_" << i << ";\n";
    for (int i = 0; i < Functions; ++i)
        out << "int function_" << i << "(int, " << parameterOf(i) << ");\n";
    out << "int main(void)\n{\n    int sum = 0;\n    for (;;) {\n";
    for (int i = 0; i < Functions; ++i)
        out << "        sum += function_" << i << "(sum, &object_" << i % Records << ");\n";
    out << "    }\n}\n";
}

/// The executable, made once.
class Program {
public:
    Program()
    {
        const std::string root = GANTRY_ROOT_TREE;
        std::string pattern =
            (std::filesystem::temp_directory_path() / "gantry-bench-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        std::string objects;
        for (const auto& [name, write] :
             {std::pair("/functions", &writeFunctions), std::pair("/main", &writeMain)}) {
            const std::string base = m_folder + name;
            std::ofstream source(base + ".c");
            write(source);
            source.close();
            run(root + "/bin/kcc -g -O-9 " + base + ".c -o " + base + ".kvo");
            objects += " " + base + ".kvo";
        }
        for (const char* library :
             {"libc", "libm", "libdebugio", "libc_targetio_impl", "libc_user_libc"})
            objects += " " + root + "/lib/" + library + "_soft_single.kva";
        run(root + "/bin/kld -g" + objects
            + " -TCODE,CONST=5c00-ff80 -TIDATA0,UDATA0=1c00-5c00 -TINTVEC=ff80-fffd"
              " -TRESET=fffe-ffff -D___RAM_Address=7168 -D___RAM_Size=16384 -o "
            + path());
    }
    ~Program() { std::filesystem::remove_all(m_folder); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::string path() const { return m_folder + "/big.kvx"; }

private:
    std::string m_folder;
};

const Program& program()
{
    static const Program it;
    return it;
}

class Silence : public DebuggerHelperFunctions {
    void displayError(const QString&) override { }
    QString getDebugSourceText(const Path&, int) override { return {}; }
};

/// A session that stands at its program's entry.
class OpenSession {
public:
    OpenSession()
    {
        m_monitor.setIdentifyString("MSP430F5438A");
        m_monitor.connect(false);
        m_session.load(Path(program().path()));
        m_session.reset();
    }

    void runTo(const char* place)
    {
        m_debugger.setBreakpoint(ExpressionContext(), QString::fromLatin1(place), QString(), 0,
                                 false, true, QString(), QString());
        m_debugger.go();
        m_session.waitForStop();
    }
    void step(bool into, bool instruction = false)
    {
        if (into)
            m_debugger.stepinto(instruction);
        else
            m_debugger.stepover(instruction);
        m_session.waitForStop();
    }
    MSP430Debugger& debugger() { return m_debugger; }

private:
    Silence m_helper;
    MSP430Monitor m_monitor;
    MSP430Debugger m_debugger{&m_helper};
    DebugSession m_session{m_debugger, m_monitor, nullptr, {}};
};

void openSession(benchmark::State& state)
{
    state.SetLabel(std::to_string(std::filesystem::file_size(program().path())) + " bytes");
    for ([[maybe_unused]] auto _ : state)
        OpenSession().debugger();
}

/// What a peer does at least: the bytes of the file.
void readFile(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        std::ifstream in(program().path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in),
                                std::istreambuf_iterator<char>()};
        benchmark::DoNotOptimize(bytes.size());
    }
}

/// The views of a window: where the program stands, its locals, and ten watches of all kinds.
class Views : public VariableViewHost {
public:
    explicit Views(MSP430Debugger& debugger)
        : m_debugger(debugger),
          m_locals(debugger, *this),
          m_watches(debugger, *this)
    {
        for (const char* text :
             {"variable_1", "variable_2 + variable_3", "object_4.first", "object_5.name[2]",
              "&object_6", "record->first", "index * 2", "sink", "@R12", "variable_10 == 10"})
            m_watches.watch(QString::fromLatin1(text));
        VariableViewItem* const object = m_watches.watch(QStringLiteral("object_7"));
        update();
        m_watches.itemExpanded(object);
    }

    void update()
    {
        QString module;
        Path file;
        QString function;
        int line = 0;
        unsigned pc = 0;
        for (int call = 0; call < m_debugger.numcalls(); ++call)
            m_debugger.locate(m_debugger.getFrame(call), module, file, function, line, pc);
        m_locals.update(selectedFrame());
        m_watches.update(selectedFrame());
    }

    Frame* selectedFrame() override { return m_debugger.getFrame(0); }
    int selectedCall() override { return 0; }
    void setCall(int) override { }
    bool askNumber(const QString&, const QString&, unsigned, unsigned, unsigned&) override
    {
        return false;
    }
    void locateMemory(unsigned, unsigned) override { }

private:
    MSP430Debugger& m_debugger;
    LocalsVariableView m_locals;
    WatchVariableView m_watches;
};

void refreshAfterAStop(benchmark::State& state)
{
    OpenSession session;
    session.runTo("function_650");
    session.step(true);
    Views views(session.debugger());
    const QString executable = session.debugger().executableNames().first();
    state.SetLabel(std::to_string(session.debugger().symbolNames(executable, true).size()
                                  + session.debugger().symbolNames(executable, false).size())
                   + " symbols");
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        session.step(true);
        state.ResumeTiming();
        views.update();
    }
}

void stepOverAStatement(benchmark::State& state)
{
    OpenSession session;
    session.runTo("function_650");
    session.step(true);
    for ([[maybe_unused]] auto _ : state) // goes round in the program for good
        session.step(true);
}

void stepOverACall(benchmark::State& state)
{
    OpenSession session;
    session.runTo("main");
    for ([[maybe_unused]] auto _ : state)
        session.step(false);
}

void stepAnInstruction(benchmark::State& state)
{
    OpenSession session;
    session.runTo("main");
    for ([[maybe_unused]] auto _ : state)
        session.step(true, true);
}

BENCHMARK(openSession)->Unit(benchmark::kMillisecond);
BENCHMARK(readFile)->Unit(benchmark::kMillisecond);
BENCHMARK(refreshAfterAStop)->Unit(benchmark::kMicrosecond);
BENCHMARK(stepOverAStatement)->Unit(benchmark::kMicrosecond);
BENCHMARK(stepOverACall)->Unit(benchmark::kMicrosecond);
BENCHMARK(stepAnInstruction)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    MacroSystem macros;
    macros.setupDefaultSystemMacros(QStringLiteral(GANTRY_ROOT_TREE));
    macros.setupPackageMacros(QStringLiteral(GANTRY_ROOT_TREE "/packages"));
    macroSystem = &macros;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
