#include "cli/DebuggedProgram.h"

#include "base/HException.h"
#include "cli/DeviceSelection.h"

#include <QFile>

#include <cstdio>

DebuggedProgram::DebuggedProgram(const std::string& program, const std::string& device,
                                 std::function<bool()> carryOn)
    : m_terminal(std::string()),
      m_debugger(this),
      m_session(m_debugger, m_monitor, &m_terminal,
                {std::move(carryOn), [this] { m_terminal.waitForLine(); },
                 [this](const QString& text) { displayError(text); }}),
      m_object(m_session)
{
    selectDevice(m_monitor, device);
    m_monitor.setTerminal(&m_terminal);
    m_monitor.connect(false);
    m_session.load(Path(program));
    m_session.reset();
}

void DebuggedProgram::install(ESContext* context)
{
    m_object.install(context);
    m_monitor.installScriptObject(context);
}

void DebuggedProgram::displayError(const QString& text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "gantry: %s\n", text.toLocal8Bit().constData());
}

QString DebuggedProgram::getDebugSourceText(const Path& path, int line)
{
    QFile file(path.osPath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (int number = 1; number < line && !file.atEnd(); ++number)
        file.readLine();
    return QString::fromUtf8(file.readLine()).trimmed();
}
