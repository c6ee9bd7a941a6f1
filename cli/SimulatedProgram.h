#pragma once

#include "cli/CommandLineTerminal.h"
#include "cli/RunOptions.h"
#include "objfile/loadfiles/LoadFile.h"
#include "target/msp430/MSP430Monitor.h"

#include <deque>
#include <memory>
#include <optional>

/// What the target and its peripherals say goes to the error stream: standard output is the
/// program's.
class SimulatedProgramLog : public TargetInterfaceHelperFunctions {
public:
    using TargetInterfaceHelperFunctions::message;
    void message(const QString& text) override;
    void error(const QString& text) override;
};

/// One program on the simulator with its debug I/O on the command line.
class SimulatedProgram : public TargetIOServerHelperFunctions {
public:
    static constexpr int CycleLimitStatus = 124;
    static constexpr int StoppedStatus = 125;

    /// Connects the device and loads the program. Throws HException.
    explicit SimulatedProgram(const RunOptions& options);
    ~SimulatedProgram() override;

    /// Runs to the end of the program or to what stops it; returns the exit status.
    int run();
    MSP430Monitor& monitor() { return m_monitor; }

    void errorOccurred(const char* text) override;
    void debugBreakOccurred() override { m_breakRequested = true; }
    void inputRequested() override { m_terminal.waitForLine(); }
    void outputUpdated() override { }
    void exitOccurred(int code) override { m_exitCode = code; }
    void loadSymbols(const char*, unsigned) override { }

private:
    struct DebugIO {
        unsigned control;
        unsigned communication;
    };

    void connect();
    void load();
    void checkFits(LoadFileSectionInterface& section);
    void setStart();
    void setBreakpoints();
    std::optional<unsigned> symbolAddress(const std::string& name);
    bool serveDebugIO();
    int stopped();
    int report(const char* reason, int status);

    const RunOptions& m_options;
    CommandLineTerminal m_terminal;
    SimulatedProgramLog m_log;
    MSP430Monitor m_monitor{&m_log};
    std::unique_ptr<LoadFileInterface> m_file;
    std::deque<HBreakpoint> m_breakpoints;
    std::optional<DebugIO> m_debugIO;
    std::optional<int> m_exitCode;
    bool m_breakRequested = false;
};
