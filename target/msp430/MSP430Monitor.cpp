#include "target/msp430/MSP430Monitor.h"

#include "base/HException.h"

#include <algorithm>
#include <sstream>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr unsigned simulatorCapabilities = 0x2bf;
constexpr unsigned resetVector = 0xFFFE;
constexpr int maxPollInterval = 1000, defaultPollInterval = 100;

const PropertyClass& pollIntervalClass()
{
    static const PropertyClass made(u"interruptPollInterval"_s, PropertyClass::Type::IntegerRange,
                                    0, maxPollInterval, QString(), u"Peripherals"_s,
                                    u"Interrupt poll interval"_s,
                                    u"Poll for interrupts every N cycles."_s, defaultPollInterval);
    return made;
}
constexpr unsigned wideAddressCharacters = 5;

std::vector<std::string> splitNames(const std::string& names)
{
    std::vector<std::string> result;
    std::istringstream stream(names);
    for (std::string name; std::getline(stream, name, ';');)
        result.push_back(name);
    return result;
}

} // namespace

MSP430Monitor::MSP430Monitor(TargetInterfaceHelperFunctions* host)
    : SimulatedHMonitor(u"MSP430 Core Simulator"_s, simulatorCapabilities, host,
                        u"$(BenchDir)/targets/msp430peripherals.js"_s),
      SimulatedFlash(Endian::Little, 2, true),
      m_pollIntervalValue(&pollIntervalClass())
{
}

MSP430Monitor::~MSP430Monitor() = default;

// Connection ------------------------------------------------------------------------------------

void MSP430Monitor::connect(bool)
{
    if (m_connected)
        disconnect();
    try {
        connectDevice();
        SimulatedHMonitor::connect();
        setExecutionCountRange(0, MemoryImage::Size);
        if (m_peripherals)
            m_peripherals->connect(deviceId());
    } catch (...) {
        disconnect();
        throw;
    }
}

void MSP430Monitor::connectDevice()
{
    connectDevices();
    selectDevice();
    const MSP430DevicesInterface& device = *m_devices;
    setDeviceId(QString::fromLatin1(device.selectedName()));
    setExtendedCore(device.extendedRegisters());
    m_vectorBase = 0x10000 - 2 * device.vectors();
    m_pending.assign(device.vectors(), 0);
    m_registers = MSP430Registers(device.extendedRegisters());
    addValidRanges();
    setDisplayWidthInCharacters(device.mainEnd() > 0xFFFF ? wideAddressCharacters
                                                          : 2 * wordLength());
    const QString multiplier = m_hardwareMultiplier.empty()
        ? project().value("build_use_hardware_multiplier")
        : QString::fromStdString(m_hardwareMultiplier);
    m_image =
        std::make_unique<MemoryImage>(device, addressRanges(), multiplier != u"16-Bit Multiplier");
    m_core = std::make_unique<RunCore>(*this, *m_image, m_registers.values(),
                                       device.extendedRegisters());
}

void MSP430Monitor::selectDevice()
{
    m_devices->select(0);
    const std::vector<std::string> names = splitNames(
        m_identifyString.empty() ? project().value("msp430_identify_string").toStdString()
                                 : m_identifyString);
    for (int i = 0; i <= m_devices->highestIndex(); ++i)
        if (std::find(names.begin(), names.end(), m_devices->name(i)) != names.end())
            m_devices->select(i);
}

void MSP430Monitor::addValidRanges()
{
    const MSP430DevicesInterface& device = *m_devices;
    const bool second = device.ram2End() != 0;
    const std::pair<std::uint32_t, std::uint32_t> ranges[] = {
        {device.peripheralStart(), device.peripheralEnd()},
        {second ? device.ram2Start() : device.ramStart(),
         second ? device.ram2End() : device.ramEnd()},
        {device.infoStart(), device.infoEnd()},
        {device.mainStart(), device.mainEnd()},
    };
    addressRanges().clear();
    for (const auto& [start, end] : ranges)
        if (end != 0)
            addressRanges().add(start, end, false);
}

std::vector<std::pair<unsigned, unsigned>> MSP430Monitor::flashRanges() const
{
    requireConnection();
    std::vector<std::pair<unsigned, unsigned>> ranges = {
        {m_devices->mainStart(), m_devices->mainEnd()}};
    if (m_devices->infoEnd() != 0)
        ranges.emplace_back(m_devices->infoStart(), m_devices->infoEnd());
    return ranges;
}

void MSP430Monitor::disconnect()
{
    m_core.reset();
    m_image.reset();
    addressRanges().clear();
    endConnection();
    releaseDevices();
}

bool MSP430Monitor::isCompatibleWith(const QString& processor) const
{
    // Device 0 stands for no device in particular.
    return processor.isEmpty() || !isConnected() || m_devices->find(m_devices->selectedName()) == 0
        || processor.split(u';').contains(deviceId(), Qt::CaseInsensitive);
}

void MSP430Monitor::getProperties(PropertyValueList& list)
{
    SimulatedHMonitor::getProperties(list);
    list.appendUnique(&m_pollIntervalValue);
}

void MSP430Monitor::requireConnection() const
{
    if (!m_connected)
        throw HException("The simulator is not connected");
}

void MSP430Monitor::fillMemory(unsigned char value)
{
    requireConnection();
    std::fill_n(m_image->bytes(), MemoryImage::Size, value);
}

// Running ---------------------------------------------------------------------------------------

void MSP430Monitor::reset()
{
    requireConnection();
    m_lastPoll = m_lastPeripheralPoll = 0;
    SimulatedHMonitor::reset();
}

void MSP430Monitor::checkReset()
{
    std::fill(m_pending.begin(), m_pending.end(), static_cast<unsigned char>(0));
    setRegister(MSP430Register::SR, 0);
    loadPC(resetVector);
}

void MSP430Monitor::go()
{
    requireConnection();
    m_pollInterval = static_cast<std::uint64_t>(interruptPollInterval());
    if (wordAtPC() == SoftwareBreakpoint)
        m_registers.setPC(m_registers.getPC() + 2);
    SimulatedHMonitor::go();
}

void MSP430Monitor::step()
{
    requireConnection();
    SimulatedHMonitor::step();
}

unsigned MSP430Monitor::wordAtPC()
{
    const std::uint32_t pc = m_registers.getPC();
    return (pc & 1) == 0 && pc < MemoryImage::Size ? m_image->word(pc) : 0;
}

unsigned MSP430Monitor::singleStep()
{
    if (sleeping())
        return 1;
    if (wordAtPC() == SoftwareBreakpoint) {
        stopFor(StopReason::SoftwareBreakpoint);
        return 0;
    }
    return m_watchesRegisters ? MSP430InstructionSetSimulator::singleStep() : m_core->singleStep();
}

void MSP430Monitor::breakpointsChanged()
{
    m_watchesRegisters = m_matcher.watchesRegisters();
    if (m_image == nullptr)
        return;
    m_image->unwatchAll();
    m_matcher.forEachSpan(
        false, [&](std::uint32_t first, std::uint32_t last) { m_image->watch(first, last); });
    m_matcher.forEachSpan(true, [&](std::uint32_t first, std::uint32_t last) {
        m_image->markBreakpoint(first, last);
    });
}

bool MSP430Monitor::nothingPending() const
{
    return std::find(m_pending.begin(), m_pending.end(), 1) == m_pending.end();
}

/// The cycle count at which there may be an interrupt to take.
std::uint64_t MSP430Monitor::nextPoll() const
{
    const std::uint64_t regular = m_lastPoll + m_pollInterval;
    if (!nothingPending())
        return regular;
    return m_peripherals ? std::max(regular, m_peripherals->quietUntil())
                         : SimulatedPeripherals::Never;
}

unsigned MSP430Monitor::runUnwatched(unsigned passes)
{
    if (m_watchesRegisters)
        return 0;
    m_runDeadline = std::min(nextPoll(), m_limits.cycles);
    const unsigned done = sleeping() ? sleep(passes)
        : m_traceEnabled             ? execute<true>(passes)
                                     : execute<false>(passes);
    // Polls that could find nothing were left out; the next ones come where they would have come.
    if (m_pollInterval != 0 && m_cycleCount - m_lastPoll > m_pollInterval
        && nextPoll() > m_cycleCount)
        m_lastPoll += (m_cycleCount - m_lastPoll) / m_pollInterval * m_pollInterval;
    return done;
}

/// Passes of a sleeping processor, one cycle each, until something can wake it.
unsigned MSP430Monitor::sleep(unsigned passes)
{
    const std::uint64_t wakes =
        m_peripherals ? m_peripherals->quietUntil() : SimulatedPeripherals::Never;
    const std::uint64_t end = std::min(wakes, m_limits.cycles);
    if (m_traceEnabled || m_cycleCount >= end || !nothingPending())
        return 0;
    const auto done = static_cast<unsigned>(std::min<std::uint64_t>(passes, end - m_cycleCount));
    const std::uint32_t pc = m_registers.getPC();
    if (pc - countBase() < counts().size())
        counts()[pc - countBase()] += done;
    m_cycleCount += done;
    return done;
}

template <bool traced> unsigned MSP430Monitor::execute(unsigned passes)
{
    std::uint32_t* const registers = m_registers.values();
    const std::span<std::uint32_t> executions = counts();
    const std::uint32_t base = countBase();
    RunCore& core = *m_core;
    const MemoryImage& image = *m_image;
    unsigned done = 0;
    while (done < passes && m_cycleCount < m_runDeadline
           && (registers[MSP430Register::SR] & MSP430Status::CPUOFF) == 0) {
        const std::uint32_t pc = registers[MSP430Register::PC];
        if (!core.isPlainWord(pc))
            break;
        const unsigned word = image.word(pc);
        if (word == SoftwareBreakpoint
            || (image.mayHaveBreakpoint(pc) && m_matcher.wouldMatchCode(pc)))
            break;
        if constexpr (traced)
            addToInstructionTrace(pc, 0);
        if (pc - base < executions.size())
            ++executions[pc - base];
        registers[MSP430Register::PC] = pc + 2;
        m_cycleCount += core.execute(word);
        ++done;
        if (m_stopped || m_errors.mustStop() || m_matcher.matched() != nullptr)
            break;
    }
    return done;
}

// Interrupts ------------------------------------------------------------------------------------

int MSP430Monitor::interruptPollInterval() const
{
    return std::clamp(m_pollIntervalValue.toInt(), 0, maxPollInterval);
}

void MSP430Monitor::setInterruptPollInterval(int cycles)
{
    m_pollIntervalValue.setValue(std::clamp(cycles, 0, maxPollInterval));
}

void MSP430Monitor::getInterruptInformation(unsigned index, unsigned& number, QString& name,
                                            QString& description)
{
    number = index;
    const unsigned vector = 0x10000 - 2 * (static_cast<unsigned>(m_pending.size()) - index);
    name = QStringLiteral("Priority %1 - 0x%2").arg(index).arg(vector, 0, 16);
    description = name;
}

void MSP430Monitor::raiseInterrupt(int index)
{
    if (index >= 0 && static_cast<std::size_t>(index) < m_pending.size())
        m_pending[static_cast<std::size_t>(index)] = 1;
}

bool MSP430Monitor::isAsleepForGood() const
{
    auto& registers = const_cast<MSP430Registers&>(m_registers);
    const unsigned sr = registers.getValue(MSP430Register::SR);
    const bool peripheralsQuiet = m_peripherals == nullptr || (sr & MSP430Status::GIE) == 0
        || m_peripherals->quietUntil() == SimulatedPeripherals::Never;
    return (sr & MSP430Status::CPUOFF) != 0 && nothingPending() && peripheralsQuiet;
}

void MSP430Monitor::checkIRQ()
{
    if (!sleeping() && m_cycleCount - m_lastPoll < m_pollInterval)
        return;
    pollPeripherals();
    m_lastPoll = m_cycleCount;
    if (unsigned vector = 0; takePending(vector))
        enterInterrupt(vector);
}

void MSP430Monitor::pollPeripherals()
{
    if (m_peripherals == nullptr || (getRegister(MSP430Register::SR) & MSP430Status::GIE) == 0
        || m_peripherals->quietUntil() > m_cycleCount)
        return;
    const std::uint64_t cycles = m_cycleCount - m_lastPeripheralPoll;
    m_lastPeripheralPoll = m_cycleCount;
    const unsigned vector = m_peripherals->pollForInterrupts(static_cast<unsigned>(cycles));
    if (vector >= m_vectorBase && vector <= 0xFFFE)
        m_pending[(vector - m_vectorBase) / 2] = 1;
}

bool MSP430Monitor::takePending(unsigned& vector)
{
    for (std::size_t i = m_pending.size(); i-- > 0;) {
        if (m_pending[i] == 0)
            continue;
        m_pending[i] = 0;
        vector = m_vectorBase + 2 * static_cast<unsigned>(i);
        return true;
    }
    return false;
}

void MSP430Monitor::enterInterrupt(unsigned vector)
{
    const unsigned sp = getRegister(MSP430Register::SP) - 4;
    const unsigned sr = getRegister(MSP430Register::SR);
    setRegister(MSP430Register::SP, sp);
    storePC(sp + 2);
    writeWord(sp, sr);
    setRegister(MSP430Register::SR, sr & ~(MSP430Status::GIE | MSP430Status::CPUOFF));
    loadPC(vector);
}
