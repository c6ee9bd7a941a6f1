#include "Session.h"

#include "debugger/expressions/ParserException.h"
#include "objfile/format/TOBFfiles.h"

#include <QFile>

#include <fstream>

namespace {

constexpr const char* Device = "MSP430F449";
constexpr const char* Placement =
    "-TCODE,CONST=1100-ffe0 -TIDATA0,UDATA0=200-a00 -TINTVEC=ffe0-fffd -TRESET=fffe-ffff "
    "-D___RAM_Address=512 -D___RAM_Size=2048";

/// Cycles; a program that runs wild is stopped, which its test notices.
constexpr std::uint64_t LongestRun = 20'000'000;

void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }

/// Rows as "name=value", those within others in braces.
class RowsAsText : public VariableListBuilder {
public:
    void addPrimitive(const QString& name, const QString&, const ExpressionType& value,
                      const QString&, MarkerType*) override
    {
        text += (text.isEmpty() || text.endsWith(u'{') ? QString() : QStringLiteral(" ")) + name
            + u'=' + value.toStr(10);
    }
    void* beginObject(const QString& name, const QString&, const ExpressionType&, const QString&,
                      MarkerType*, unsigned) override
    {
        text += (text.isEmpty() || text.endsWith(u'{') ? QString() : QStringLiteral(" ")) + name
            + QStringLiteral("={");
        return this;
    }
    void endObject(void*) override { text += u'}'; }
    void* beginArray(const QString& name, const QString& expression, const ExpressionType& value,
                     const QString& type, MarkerType* marker, unsigned size) override
    {
        return beginObject(name, expression, value, type, marker, size);
    }
    void endArray(void* handle) override { endObject(handle); }

    QString text;
};

} // namespace

Session::Session(const std::vector<std::string>& sources, const std::string& options)
    : m_debugger(this)
{
    m_program = buildProgram(m_folder, sources, options);
    for (const std::string& source : sources)
        findMarks(source);
    m_monitor.setIdentifyString(Device);
    m_monitor.setRunLimits({.cycles = LongestRun});
    m_monitor.connect(false);
    TOBFModule* const module = TOBFfiles::getModule(Path(m_program));
    m_monitor.loadTOBFModule(module);
    TOBFfiles::release(module);
    m_monitor.reset(true, false);
    TargetIOServer::setHelperFunctions(this);
    TargetIOServer::setTerminal(this);
    TargetIOServer::init({});
    m_debugger.setTargetInterface(&m_monitor);
    m_debugger.loadSymbols(Path(m_program), 0);
}

Session::~Session()
{
    m_debugger.clear();
    TargetIOServer::setHelperFunctions(nullptr);
    TargetIOServer::setTerminal(nullptr);
}

std::string buildProgram(const TestFolder& folder, const std::vector<std::string>& sources,
                         const std::string& options)
{
    const std::string root = GANTRY_ROOT_TREE;
    std::string objects;
    for (const std::string& source : sources) {
        const std::string object = folder / (source + ".kvo");
        run(root + "/bin/kcc -g " + options + " " GANTRY_TEST_DATA "/programs/" + source + " -o "
            + object);
        objects += " " + object;
    }
    for (const char* library : {"libc", "libm", "libdebugio", "libc_targetio_impl",
                                "lib_vfprintf_long", "lib_vfscanf_int", "libc_user_libc"})
        objects += " " + root + "/lib/" + library + "_soft_single.kva";
    const std::string program = folder / "program.kvx";
    run(root + "/bin/kld -g" + objects + " " + Placement + " -o " + program);
    return program;
}

void Session::findMarks(const std::string& source)
{
    const std::string path = std::string(GANTRY_TEST_DATA "/programs/") + source;
    const std::string sign = "/* mark: ";
    std::ifstream in(path);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::size_t at = line.find(sign);
        if (at != std::string::npos)
            m_marks.push_back({line.substr(at + sign.size(), line.rfind(" */") - at - sign.size()),
                               Path(path), number});
    }
}

const Session::Mark& Session::mark(const std::string& name) const
{
    for (const Mark& one : m_marks)
        if (one.name == name)
            return one;
    ADD_FAILURE() << "no mark " << name;
    return m_marks.front();
}

std::pair<Path, int> Session::placeOf(const std::string& name) const
{
    return {mark(name).file, mark(name).line};
}

QString Session::getDebugSourceText(const Path& path, int line)
{
    QFile file(path.osPath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QList<QByteArray> lines = file.readAll().split('\n');
    return line >= 1 && line <= lines.size() ? QString::fromUtf8(lines[line - 1]) : QString();
}

// Running

void Session::waitForStop()
{
    constexpr int MostPolls = 100'000;
    for (int i = 0; i < MostPolls; ++i)
        if (m_debugger.isStopped())
            return;
    ADD_FAILURE() << "the program doesn't stop";
}

DebuggerBreakpoint* Session::breakAt(const std::string& name)
{
    const Mark& at = mark(name);
    try {
        return m_debugger.setBreakpoint(QString(), at.file, at.line, 0, false, false, QString(),
                                        QString());
    } catch (const DebuggerBreakpointFailure& failure) {
        ADD_FAILURE() << name << ": " << failure.text().toStdString();
        return nullptr;
    }
}

DebuggerBreakpoint* Session::breakOn(const std::string& expression, const std::string& trigger)
{
    return m_debugger.setBreakpoint(ExpressionContext(), QString::fromStdString(expression),
                                    QString::fromStdString(trigger), 0, false, false, QString(),
                                    QString());
}

void Session::startTo(const std::string& name)
{
    DebuggerBreakpoint* const breakpoint = breakAt(name);
    m_debugger.start(QString(), false);
    waitForStop();
    m_debugger.clearBreakpoint(breakpoint);
}

void Session::go()
{
    m_debugger.go();
    waitForStop();
}

void Session::stepInto()
{
    m_debugger.stepinto(false);
    waitForStop();
}

void Session::stepOver()
{
    m_debugger.stepover(false);
    waitForStop();
}

void Session::stepInstruction()
{
    m_debugger.stepinto(true);
    waitForStop();
}

void Session::stepOut()
{
    m_debugger.stepout(m_debugger.getFrame(1));
    waitForStop();
}

// What is seen

std::string Session::where(int index)
{
    QString module;
    Path file;
    QString function;
    int line = 0;
    unsigned pc = 0;
    if (!m_debugger.locate(m_debugger.getFrame(index), module, file, function, line, pc))
        return "nowhere";
    std::string name = function.toStdString();
    for (const Mark& one : m_marks)
        if (one.line == line && one.file.fileName() == file.fileName())
            return name + ":" + one.name;
    return name + ":" + std::to_string(line);
}

std::string Session::callStack()
{
    std::string stack;
    for (int i = 0; i < m_debugger.numcalls(); ++i)
        stack += (i > 0 ? " < " : "") + where(i);
    return stack;
}

std::string Session::value(const std::string& expression, int frame)
{
    const ExpressionContext context = {m_debugger.getFrame(frame), Path(), 0};
    try {
        ExpressionType result;
        m_debugger.evaluateExpression(context, QString::fromStdString(expression), result);
        return result.resolved().toStr(10).toStdString();
    } catch (const ParserException& exception) {
        return exception.getCause().toStdString();
    }
}

std::string Session::locals(int frame)
{
    RowsAsText rows;
    m_debugger.getLocalVariables(m_debugger.getFrame(frame), &rows);
    return rows.text.toStdString();
}
