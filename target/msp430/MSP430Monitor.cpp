#include "target/msp430/MSP430Monitor.h"

#include "base/HException.h"

#include <algorithm>
#include <sstream>

namespace {

constexpr unsigned simulatorCapabilities = 0x2bf;
constexpr unsigned resetVector = 0xFFFE;
constexpr int maxPollInterval = 1000;
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

MSP430Monitor::MSP430Monitor()
    : SimulatedHMonitor(QStringLiteral("MSP430 Core Simulator"), simulatorCapabilities),
      TargetMemoryInterface(Endian::Little, 2, true)
{
}

MSP430Monitor::~MSP430Monitor() = default;

// Connection ------------------------------------------------------------------------------------

void MSP430Monitor::connect(bool)
{
    if (m_connected)
        disconnect();
    selectDevice();
    const MSP430Device& device = m_devices.selected();
    setDeviceId(QString::fromLatin1(device.name));
    setExtendedCore(device.extendedCore);
    m_vectorBase = device.vectorBase();
    m_pending.assign(device.vectors, 0);
    m_registers = MSP430Registers(device.extendedCore);
    addValidRanges(device);
    setDisplayWidthInCharacters(device.mainEnd > 0xFFFF ? wideAddressCharacters : 2 * wordLength());
    const bool multiplier32 = m_hardwareMultiplier != "16-Bit Multiplier";
    m_image = std::make_unique<MemoryImage>(device, addressRanges(), multiplier32);
    m_core = std::make_unique<RunCore>(*this, *m_image, m_registers.values(), device.extendedCore);
    SimulatedHMonitor::connect();
    setExecutionCountRange(0, MemoryImage::Size);
    if (m_peripherals)
        m_peripherals->connect(deviceId());
}

void MSP430Monitor::selectDevice()
{
    m_devices.select(0);
    const std::vector<std::string> names = splitNames(m_identifyString);
    for (int i = 0; i <= m_devices.highestIndex(); ++i)
        if (std::find(names.begin(), names.end(), m_devices.name(i)) != names.end())
            m_devices.select(i);
}

void MSP430Monitor::addValidRanges(const MSP430Device& device)
{
    const bool second = device.ram2End != 0;
    const std::pair<std::uint32_t, std::uint32_t> ranges[] = {
        {device.peripheralStart, device.peripheralEnd},
        {second ? device.ram2Start : device.ramStart, second ? device.ram2End : device.ramEnd},
        {device.infoStart, device.infoEnd},
        {device.mainStart, device.mainEnd},
    };
    addressRanges().clear();
    for (const auto& [start, end] : ranges)
        if (end != 0)
            addressRanges().add(start, end, false);
}

void MSP430Monitor::disconnect()
{
    m_core.reset();
    m_image.reset();
    addressRanges().clear();
    endConnection();
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
    m_lastPoll = 0;
    std::fill(m_pending.begin(), m_pending.end(), static_cast<unsigned char>(0));
    SimulatedHMonitor::reset();
}

void MSP430Monitor::checkReset()
{
    setRegister(MSP430Register::SR, 0);
    loadPC(resetVector);
}

void MSP430Monitor::go()
{
    requireConnection();
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
    return m_matcher.watchesData() ? MSP430InstructionSetSimulator::singleStep()
                                   : m_core->singleStep();
}

unsigned MSP430Monitor::runUnwatched(unsigned passes)
{
    std::uint32_t* const registers = m_registers.values();
    const std::uint64_t deadline =
        std::min(m_lastPoll + static_cast<std::uint64_t>(m_pollInterval), m_limits.cycles);
    const std::span<std::uint32_t> executions = counts();
    const std::uint32_t base = countBase();
    RunCore& core = *m_core;
    const MemoryImage& image = *m_image;
    const bool breakpoints = m_matcher.count() > 0;
    std::uint64_t cycles = m_cycleCount;
    unsigned done = 0;
    while (done < passes && cycles < deadline
           && (registers[MSP430Register::SR] & MSP430Status::CPUOFF) == 0) {
        const std::uint32_t pc = registers[MSP430Register::PC];
        if (!core.isPlainWord(pc))
            break;
        const unsigned word = image.word(pc);
        if (word == SoftwareBreakpoint || (breakpoints && m_matcher.wouldMatchCode(pc)))
            break;
        if (pc - base < executions.size())
            ++executions[pc - base];
        registers[MSP430Register::PC] = pc + 2;
        cycles += core.execute(word);
        ++done;
        if (m_stopped || m_errors.mustStop())
            break;
    }
    m_cycleCount = cycles;
    return done;
}

// Interrupts ------------------------------------------------------------------------------------

void MSP430Monitor::setInterruptPollInterval(int cycles)
{
    m_pollInterval = std::clamp(cycles, 0, maxPollInterval);
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
    const bool pending = std::find(m_pending.begin(), m_pending.end(), 1) != m_pending.end();
    auto& registers = const_cast<MSP430Registers&>(m_registers);
    return (registers.getValue(MSP430Register::SR) & MSP430Status::CPUOFF) != 0 && !pending
        && m_peripherals == nullptr;
}

void MSP430Monitor::checkIRQ()
{
    if (!sleeping() && m_cycleCount - m_lastPoll < static_cast<std::uint64_t>(m_pollInterval))
        return;
    pollPeripherals();
    m_lastPoll = m_cycleCount;
    if (unsigned vector = 0; takePending(vector))
        enterInterrupt(vector);
}

void MSP430Monitor::pollPeripherals()
{
    if (m_peripherals == nullptr || (getRegister(MSP430Register::SR) & MSP430Status::GIE) == 0)
        return;
    const unsigned vector =
        m_peripherals->pollForInterrupts(static_cast<unsigned>(m_cycleCount - m_lastPoll));
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
