#include "cli/SimulatedProgram.h"

#include "base/HException.h"
#include "base/HString.h"
#include "cli/Command.h"
#include "cli/DeviceSelection.h"
#include "objfile/loadfiles/LoadFileFactory.h"
#include "objfile/loadfiles/TOBFLoadFile.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFSymbol.h"
#include "target/TargetIOServer.h"

#include <QFileInfo>

#include <cstdio>

namespace {

constexpr unsigned resetVector = 0xFFFE;

/// The monitor of the running program, for the event function, which takes no argument.
MSP430Monitor* running = nullptr;

/// A processor that nothing can wake would run for ever.
void stopWhenAsleepForGood()
{
    if (running->isAsleepForGood())
        running->stop();
}

std::unique_ptr<LoadFileInterface> openLoadFile(const RunOptions& options)
{
    LoadFileFactory* factory = LoadFileFactory::instance();
    const char* detected = factory->detect(options.program.c_str());
    const std::string type = !options.type.empty() ? options.type
        : detected != nullptr                      ? detected
                                                   : "";
    if (type.empty())
        throw UsageError{"the format of " + options.program + " isn't known; --type names it"};
    std::unique_ptr<LoadFileInterface> file(factory->create(options.program.c_str(), type.c_str()));
    if (file == nullptr)
        throw UsageError{"unknown format " + type};
    if (!file->hasLoadAddress() && !options.address)
        throw UsageError{"a file of format " + type + " needs --address"};
    if (options.address)
        file->setLoadAddress(*options.address);
    return file;
}

std::string hex(unsigned number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", number);
    return text;
}

} // namespace

SimulatedProgram::SimulatedProgram(const RunOptions& options)
    : m_options(options),
      m_terminal(options.input)
{
    connect();
    load();
    setStart();
    setBreakpoints();
    QStringList arguments{QString::fromStdString(options.program)};
    for (const std::string& argument : options.arguments)
        arguments << QString::fromStdString(argument);
    TargetIOServer::setHelperFunctions(this);
    TargetIOServer::setTerminal(&m_terminal);
    TargetIOServer::init(arguments);
}

SimulatedProgram::~SimulatedProgram()
{
    TargetIOServer::init({});
    TargetIOServer::setTerminal(nullptr);
    TargetIOServer::setHelperFunctions(nullptr);
    running = nullptr;
}

void SimulatedProgram::connect()
{
    selectDevice(m_monitor, m_options.device);
    m_monitor.setTerminal(&m_terminal);
    if (!m_options.peripherals.empty()) {
        if (!QFileInfo(QString::fromStdString(m_options.peripherals)).isReadable())
            throw HException("cannot open " + m_options.peripherals);
        m_monitor.setPeripheralFile(QString::fromStdString(m_options.peripherals));
        m_monitor.setEnablePeripheralFile(true);
    }
    try {
        m_monitor.connect(false);
    } catch (const HException& failure) {
        throw m_options.peripherals.empty()
            ? failure
            : HException(m_options.peripherals + ": " + failure.message());
    }
    for (int i = 0; i < m_monitor.numErrors(); ++i)
        m_monitor.setErrorEnabled(m_monitor.getError(i), true);
    if (m_options.trace) {
        m_monitor.setTraceEnabled(true);
        m_monitor.setTraceBufferSize(static_cast<int>(*m_options.trace));
    }
    m_monitor.setRunLimits(m_options.limits);
}

void SimulatedProgram::load()
{
    m_file = openLoadFile(m_options);
    if (m_options.fill)
        m_monitor.fillMemory(static_cast<unsigned char>(*m_options.fill));
    for (const auto& section : m_file->loadFileSections().sections()) {
        if (section->length() == 0 || section->data(false) == nullptr)
            continue;
        checkFits(*section);
        m_monitor.downloadBytes(section->address(), section->length(), section->data(false));
    }
    const auto control = symbolAddress("__debug_io_control");
    const auto communication = symbolAddress("__debug_io_communication");
    if (control && communication)
        m_debugIO = DebugIO{*control, *communication};
}

void SimulatedProgram::checkFits(LoadFileSectionInterface& section)
{
    const std::uint64_t last = std::uint64_t{section.address()} + section.length() - 1;
    AddressRanges merged;
    for (const AddressRange& range : m_monitor.addressRanges())
        merged.add(range.start, range.end, true);
    if (last >= MemoryImage::Size
        || merged.find(section.address(), static_cast<unsigned>(last)) == nullptr)
        throw HException(m_options.program + " doesn't fit the device " + m_options.device
                         + " in range " + hex(section.address()) + " - "
                         + hex(static_cast<unsigned>(last)));
}

void SimulatedProgram::setStart()
{
    const bool hasVector = m_file->loadFileSections().find(resetVector, 2) != nullptr;
    if (!hasVector && !m_options.pc && !m_options.fill)
        throw HException(m_options.program + " has no reset vector; --pc tells where to start");
    m_monitor.reset();
    if (m_options.pc)
        m_monitor.registers()->setPC(*m_options.pc);
}

std::optional<unsigned> SimulatedProgram::symbolAddress(const std::string& name)
{
    const auto* native = dynamic_cast<TOBFLoadFile*>(m_file.get());
    if (native == nullptr || native->module() == nullptr)
        return std::nullopt;
    const auto& symbols = native->module()->publicSymbols();
    for (const std::string& spelling : {name, "_" + name}) {
        const auto found = symbols.find(HString::intern(spelling));
        if (found == symbols.end() || found->second->definition() == nullptr)
            continue;
        const TOBFValue value = found->second->definition()->evaluate();
        if (!value.failed)
            return static_cast<unsigned>(value.value);
    }
    return std::nullopt;
}

void SimulatedProgram::setBreakpoints()
{
    for (const std::string& place : m_options.breakpoints) {
        std::optional<unsigned> address;
        if (const auto number = parseAddress(place))
            address = static_cast<unsigned>(*number);
        else
            address = symbolAddress(place);
        if (!address)
            throw HException("--break " + place + ": "
                             + (m_file->hasSymbols() ? "no such symbol"
                                                     : m_options.program + " has no symbols"));
        m_breakpoints.push_back({.address = *address, .length = 1});
        m_monitor.setBreakpoint(&m_breakpoints.back());
    }
}

int SimulatedProgram::run()
{
    running = &m_monitor;
    if (m_options.limits.cycles == RunLimits::None && m_options.limits.passes == RunLimits::None)
        m_monitor.setProcessEvents(stopWhenAsleepForGood);
    do
        m_monitor.go();
    while (serveDebugIO());
    std::fflush(stdout);
    if (m_exitCode)
        return *m_exitCode & 0xFF;
    return stopped();
}

/// True if the program had stopped for a request that has been served and can go on.
bool SimulatedProgram::serveDebugIO()
{
    if (!m_debugIO || m_monitor.stopReason() != StopReason::SoftwareBreakpoint)
        return false;
    const unsigned operation = m_monitor.peekUint16(m_debugIO->control);
    if (operation == 0)
        return false;
    TargetIOServer::handleOperation(&m_monitor, &m_monitor, operation, m_debugIO->communication);
    if (operation == TargetIOServer::Exit)
        return false;
    m_monitor.pokeUint16(m_debugIO->control, 0);
    return !m_breakRequested && !m_terminal.askedTooOften();
}

int SimulatedProgram::stopped()
{
    if (m_terminal.askedTooOften())
        return report("the program goes on reading behind the end of its input", StoppedStatus);
    unsigned address = 0;
    switch (m_monitor.stopReason()) {
    case StopReason::CycleLimit: return report("cycle limit reached", CycleLimitStatus);
    case StopReason::PassLimit: return report("step count reached", StoppedStatus);
    case StopReason::Breakpoint: return report("breakpoint", StoppedStatus);
    case StopReason::SoftwareBreakpoint: return report("software breakpoint", StoppedStatus);
    case StopReason::Requested:
        return report("the processor is off and nothing can wake it", StoppedStatus);
    case StopReason::Error: break;
    }
    const std::string text = m_monitor.lastError(address);
    return report((text + ": " + hex(address)).c_str(), StoppedStatus);
}

int SimulatedProgram::report(const char* reason, int status)
{
    std::fprintf(stderr, "gantry: stopped at %s: %s\n", hex(m_monitor.registers()->getPC()).c_str(),
                 reason);
    return status;
}

void SimulatedProgramLog::message(const QString& text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

void SimulatedProgramLog::error(const QString& text)
{
    std::fprintf(stderr, "gantry: %s\n", qPrintable(text));
}

void SimulatedProgram::errorOccurred(const char* text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "gantry: %s\n", text);
}
