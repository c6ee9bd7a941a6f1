#include "cli/TargetCommand.h"

#include "build/workspace/Workspace.h"
#include "cli/Command.h"
#include "cli/DeviceSelection.h"
#include "cli/InterruptFlag.h"
#include "cli/TargetChoice.h"
#include "cli/TargetOptions.h"
#include "objfile/loadfiles/LoadFileFactory.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "target/TargetInterfaceHelperFunctions.h"
#include "target/control/TargetControl.h"
#include "target/control/TargetList.h"
#include "target/control/TargetProgramming.h"
#include "target/msp430/MSP430Monitor.h"

#include <cstdio>
#include <map>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using Kind = TargetAction::Kind;

/// The log of targets: lines go to standard output, failures and the progress to standard error.
class CommandLineHost : public TargetInterfaceHelperFunctions, public TargetControlHost {
public:
    CommandLineHost() { setTargetInterfaceHelperFunctions(this); }
    ~CommandLineHost() override { setTargetInterfaceHelperFunctions(nullptr); }

    void progress(int current, int total, const char*, const char*, bool) override
    {
        if (total >= 0)
            m_total = total;
        if (!isatty(STDERR_FILENO) || m_total <= 0)
            return;
        std::fprintf(stderr, "\r%3d%%", int(100LL * current / m_total));
        m_showsProgress = true;
    }
    void message(const QString& text) override { print(stdout, text); }
    void message(const QString& text, int kind) override
    {
        print(kind == TargetLogKind::Error ? stderr : stdout, text);
    }
    void success(const QString& text) override { print(stdout, text); }
    void error(const QString& text) override { print(stderr, u"gantry: "_s + text); }
    void beginGroup(const QString& title, int) override { print(stdout, title); }
    void endGroup(const QString& text) override { print(stdout, text); }
    bool checkCancelled() override { return InterruptFlag::isSet(); }

    void inform(const QString& text, const QString&) override { print(stdout, text); }
    void logError(const QString& text) override { error(text); }

private:
    /// A null text is no line.
    void print(std::FILE* out, const QString& text)
    {
        if (std::exchange(m_showsProgress, false))
            std::fputs("\r    \r", stderr);
        if (text.isNull())
            return;
        const QByteArray bytes = text.toLocal8Bit();
        std::fprintf(out, "%s\n", bytes.constData());
        std::fflush(out);
    }

    int m_total = 0;
    bool m_showsProgress = false;
};

class TargetSession {
public:
    explicit TargetSession(const TargetOptions& options) : m_options(options) { m_list.load(); }

    int list() const
    {
        for (const TargetListItem& item : m_list)
            std::printf("%s\t%s\n", item.target->title().toLocal8Bit().constData(),
                        item.className.toLocal8Bit().constData());
        return 0;
    }

    int run()
    {
        TargetInterface& target = chooseTarget(m_list, m_options.target);
        if (!m_options.device.empty())
            chooseDevice(target);
        m_control.connectTargetInterface(&target, false, nullptr, QString());
        const QStringList memories = target.allMemoryInterfaces();
        if (!m_options.memory.isEmpty() && !memories.contains(m_options.memory))
            throw missing(u"memory"_s, m_options.memory, memories);
        for (const TargetAction& action : m_options.actions)
            checkLocks(target, action);
        TargetProgramming programming(target, m_control, m_host);
        bool done = true;
        for (const TargetAction& action : m_options.actions)
            done = done && carryOut(programming, action);
        m_control.disconnectTargetInterface();
        return done ? 0 : 1;
    }

private:
    void chooseDevice(TargetInterface& target) const
    {
        auto* const simulator = dynamic_cast<MSP430Monitor*>(&target);
        if (!simulator)
            throw UsageError{"only a simulator can be told its device"};
        selectDevice(*simulator, m_options.device);
    }

    /// A target without locks would only say that it has locked.
    static void checkLocks(const TargetInterface& target, const TargetAction& action)
    {
        using namespace TargetCapability;
        const unsigned needed = action.kind == Kind::Lock ? Lock | LockAllOnly
            : action.kind == Kind::Unlock                 ? Unlock | UnlockAllOnly
                                                          : 0;
        if (needed != 0 && (target.capabilities() & needed) == 0)
            throw HException("the target has no memory that can be locked");
    }

    static QString actionName(const TargetAction& action)
    {
        switch (action.kind) {
        case Kind::Program:
            return !action.verify ? u"Program Only"_s
                : action.eraseAll ? u"Erase All, Program and Verify"_s
                                  : u"Erase, Program and Verify"_s;
        case Kind::Verify: return u"Verify Only"_s;
        case Kind::Erase:
            return !action.file.isEmpty() ? u"Erase Only"_s : u"Erase "_s + extentOf(action);
        case Kind::Lock: return !action.file.isEmpty() ? u"Lock"_s : u"Lock "_s + extentOf(action);
        default: return !action.file.isEmpty() ? u"Unlock"_s : u"Unlock "_s + extentOf(action);
        }
    }
    static QString extentOf(const TargetAction& action)
    {
        return action.size.isEmpty() ? u"All"_s : u"Range"_s;
    }

    bool carryOut(TargetProgramming& programming, const TargetAction& action)
    {
        if (action.kind == Kind::Upload) {
            programming.upload(m_options.memory, action.file, uploadType(action), action.address,
                               action.size);
            return true;
        }
        if (action.kind == Kind::Program && action.eraseAll && !action.verify)
            erase(programming);
        if (programming.doProgrammingAction(m_options.memory, action.file, action.type,
                                            action.address, action.size, actionName(action)))
            return true;
        m_host.logError(action.file + u" differs from what the target holds"_s);
        return false;
    }

    void erase(TargetProgramming& programming)
    {
        programming.doProgrammingAction(m_options.memory, {}, {}, {}, {}, u"Erase All"_s);
    }

    /// By the ids of load files, or by the ends of names.
    static QString uploadType(const TargetAction& action)
    {
        static const std::map<QString, QString> types = {{u"bin"_s, u"Binary"_s},
                                                         {u"ihex"_s, u"Intel Hex"_s},
                                                         {u"hex"_s, u"Hex"_s},
                                                         {u"tihex"_s, u"TI Hex"_s},
                                                         {u"srec"_s, u"Motorola S-Record"_s}};
        const char* const detected =
            LoadFileFactory::instance()->detect(action.file.toLocal8Bit().constData());
        const QString id = action.type.isEmpty() ? QString::fromLatin1(detected) : action.type;
        const auto found = types.find(id);
        if (found == types.end())
            throw UsageError{id.isEmpty() ? "the name of " + action.file.toStdString()
                                     + " doesn't tell its format; give it with --type"
                                          : "unknown format " + id.toStdString()
                                     + "; there are bin, ihex, hex, tihex and srec"};
        return found->second;
    }

    const TargetOptions& m_options;
    CommandLineHost m_host;
    Workspace m_workspace{{}};
    TargetList m_list{m_workspace.settings(), installedTargets()};
    TargetControl m_control{m_workspace.settings(), m_host, &m_list};
};

} // namespace

int targetCommand(std::span<const std::string> arguments)
{
    const TargetOptions options = parseTargetOptions(arguments);
    const InterruptFlag interrupts;
    TargetSession session(options);
    return options.list ? session.list() : session.run();
}
