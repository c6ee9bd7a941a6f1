// Executables, addresses and the call stack.

#include "debugger/core/TOBFDebugger.h"

#include "objfile/format/TOBFfiles.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/model/TOBFType.h"
#include "objfile/query/SymbolicDebug.h"
#include "target/HMonitor.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

TOBFDebugger::TOBFDebugger(DebuggerHelperFunctions* helper) : SymbolicDebuggerInterface(helper)
{
    ObjectDisassembler::active = this;
}

TOBFDebugger::~TOBFDebugger()
{
    if (ObjectDisassembler::active == this)
        ObjectDisassembler::active = nullptr;
    for (SymbolicDebug* const one : m_symbols)
        TOBFfiles::release(one);
}

void TOBFDebugger::setTargetInterface(TargetInterface* target)
{
    m_target = target;
    m_monitor = dynamic_cast<HMonitor*>(target);
}

void TOBFDebugger::clear()
{
    for (Breakpoints* const list : {&m_breakpoints, &m_expressionBreakpoints}) {
        if (m_monitor)
            for (const auto& breakpoint : *list)
                m_monitor->removeBreakpoint(breakpoint->breakpoint());
        list->clear();
    }
    m_frames.clear();
    m_frameRegisters.clear();
    m_currentFrame = nullptr;
    m_debugIO.reset();
    m_image = {};
    clearDisassemblyText();
    for (SymbolicDebug* const one : m_symbols)
        TOBFfiles::release(one);
    m_symbols.clear();
    setTargetInterface(nullptr);
    m_stopped = true;
}

// Executables

void TOBFDebugger::loadSymbols(const Path& executable, unsigned)
{
    SymbolicDebug* const loaded = TOBFfiles::getSymbolicDebug(executable);
    if (!loaded)
        return;
    if (std::find(m_symbols.begin(), m_symbols.end(), loaded) != m_symbols.end()) {
        TOBFfiles::release(loaded);
        return;
    }
    // The same path with other contents: the file has changed.
    unloadSymbols(executable);
    m_symbols.push_back(loaded);
}

void TOBFDebugger::unloadSymbols(const Path& executable)
{
    const auto known =
        std::find_if(m_symbols.begin(), m_symbols.end(),
                     [&](const SymbolicDebug* one) { return one->path() == executable; });
    if (known == m_symbols.end())
        return;
    SymbolicDebug* const gone = *known;
    m_symbols.erase(known);
    for (Frame& frame : m_frames)
        if (frame.symbols == gone)
            frame.symbols = symbols(frame.registers->getPC());
    TOBFfiles::release(gone);
}

SymbolicDebug* TOBFDebugger::symbols(unsigned pc)
{
    if (m_symbols.empty())
        return nullptr;
    if (pc != 0)
        for (SymbolicDebug* const one : m_symbols)
            if (one->GetInsn(pc))
                return one;
    return m_symbols.front();
}

QStringList TOBFDebugger::executableNames()
{
    QStringList names;
    for (const SymbolicDebug* const one : m_symbols)
        names << one->path().osPath();
    return names;
}

QStringList TOBFDebugger::sourceFileNames(const QString& executable)
{
    for (const SymbolicDebug* const one : m_symbols)
        if (one->path().osPath() == executable)
            return one->sourceAddressMapping().fileNames();
    return {};
}

void TOBFDebugger::lineNumbers(const QString& executable, const QString& file,
                               std::list<unsigned>& lines)
{
    for (const SymbolicDebug* const one : m_symbols)
        if (one->path().osPath() == executable)
            for (const unsigned line : one->sourceAddressMapping().getLineNumbers(file))
                lines.push_back(line);
}

QStringList TOBFDebugger::symbolNames(const QString& executable, bool functions)
{
    QStringList names;
    for (const SymbolicDebug* const one : m_symbols)
        if (one->path().osPath() == executable)
            for (const auto& [name, symbol] : one->module()->publicSymbols())
                if ((symbol->type() && symbol->type()->isFunction()) == functions)
                    names << QString::fromUtf8(name->text());
    names.sort();
    return names;
}

// Addresses

int TOBFDebugger::getAddressLine(unsigned pc, Path& file)
{
    for (const SymbolicDebug* const one : m_symbols) {
        QString name;
        unsigned line = 0;
        if (one->sourceAddressMapping().AddressToSource(pc, name, line)) {
            file = Path(name);
            return static_cast<int>(line);
        }
    }
    return -1;
}

unsigned TOBFDebugger::getLineAddress(const QString&, const Path& file, int line)
{
    unsigned address = 0;
    for (const SymbolicDebug* const one : m_symbols)
        if (one->sourceAddressMapping().SourceToAddress(file.osPath(), static_cast<unsigned>(line),
                                                        address))
            return address;
    return None;
}

QString TOBFDebugger::formatAddress(unsigned address)
{
    return QString::number(address, 16).rightJustified(2 * getAddressSizeInBytes(), u'0');
}

QString TOBFDebugger::getSymbolicName(unsigned address)
{
    const SymbolicDebug* const debug = symbols(address);
    if (!debug)
        return {};
    const TOBFSymbol* symbol = debug->findCodeSymbol(static_cast<int>(address), true);
    if (!symbol)
        symbol = debug->findDataSymbol(static_cast<int>(address), true);
    return symbol ? QString::fromUtf8(symbol->name()->text()) : QString();
}

TOBFInsn* TOBFDebugger::getInsnAt(unsigned address)
{
    const SymbolicDebug* const debug = symbols(address);
    return debug ? debug->GetInsn(address) : nullptr;
}

TOBFSymbol* TOBFDebugger::findFunctionSymbol(unsigned address, bool exact)
{
    const SymbolicDebug* const debug = symbols(address);
    return debug ? debug->findFunctionSymbol(static_cast<int>(address), exact) : nullptr;
}

bool TOBFDebugger::getAddressRange(unsigned address, unsigned& start, unsigned& length)
{
    const SymbolicDebug* const debug = symbols(address);
    return debug && debug->sourceAddressMapping().AddressToRange(address, start, length);
}

bool TOBFDebugger::getLinkerSymbolValue(const QString& name, unsigned& value)
{
    for (const SymbolicDebug* const one : m_symbols) {
        const TOBFSymbol* const symbol = one->findGlobalSymbol(name);
        if (!symbol || !symbol->definition())
            continue;
        const TOBFValue found = symbol->definition()->evaluate();
        if (found.failed)
            continue;
        value = static_cast<unsigned>(found.value);
        return true;
    }
    return false;
}

bool TOBFDebugger::addressValid(unsigned address)
{
    TargetMemoryInterface* const memory = dataMemory();
    return memory && memory->memoryExists(address, 1);
}

unsigned TOBFDebugger::addressAdd(unsigned address, unsigned by)
{
    if (TargetMemoryInterface* const memory = dataMemory())
        for (const AddressRange& range : memory->addressRanges())
            if (range.contains(address, address))
                return by > range.end - address ? range.end : address + by;
    return address;
}

unsigned TOBFDebugger::addressSubtract(unsigned address, unsigned by)
{
    if (TargetMemoryInterface* const memory = dataMemory())
        for (const AddressRange& range : memory->addressRanges())
            if (range.contains(address, address))
                return by > address - range.start ? range.start : address - by;
    return address;
}

// The call stack

Frame* TOBFDebugger::getFrame(int index)
{
    return index >= 0 && index < numcalls() ? &m_frames[static_cast<std::size_t>(index)] : nullptr;
}

TargetRegisterInterface* TOBFDebugger::liveRegisters() const
{
    return m_frames.empty() ? nullptr : m_frames.front().registers;
}

void TOBFDebugger::locate()
{
    if (m_monitor && m_monitor->registers())
        setFrames(nullptr, m_monitor->registers(), true);
}

void TOBFDebugger::locate(const unsigned* registers)
{
    auto made = createRegisters(registers);
    TargetRegisterInterface* const innermost = made.get();
    setFrames(std::move(made), innermost, false);
}

void TOBFDebugger::locate(unsigned pc)
{
    auto made = createRegisters(pc);
    TargetRegisterInterface* const innermost = made.get();
    setFrames(std::move(made), innermost, false);
}

void TOBFDebugger::setFrames(std::unique_ptr<TargetRegisterInterface> own,
                             TargetRegisterInterface* innermost, bool live)
{
    auto callers = callersOf(innermost);
    m_currentFrame = nullptr;
    m_frames.clear();
    m_frameRegisters.clear();
    m_frames.push_back({symbols(innermost->getPC()), innermost, live});
    if (own)
        m_frameRegisters.push_back(std::move(own));
    for (auto& registers : callers) {
        m_frames.push_back({symbols(registers->getPC()), registers.get(), false});
        m_frameRegisters.push_back(std::move(registers));
    }
    m_currentFrame = &m_frames.front();
}

bool TOBFDebugger::locate(Frame* frame, QString& module, Path& file, QString& function, int& line,
                          unsigned& pc)
{
    if (!frame || !frame->registers)
        return false;
    pc = frame->registers->getPC();
    if (!frame->symbols)
        return true;
    module = frame->symbols->path().osPath();
    QString name;
    unsigned number = 0;
    if (frame->symbols->sourceAddressMapping().AddressToSource(pc, name, number)) {
        file = Path(name);
        line = static_cast<int>(number);
    }
    const TOBFSymbol* symbol = frame->symbols->findFunctionSymbol(static_cast<int>(pc), false);
    if (!symbol)
        symbol = frame->symbols->findClosestSymbol(static_cast<int>(pc));
    if (symbol)
        function = QString::fromUtf8(symbol->name()->text());
    return true;
}

void TOBFDebugger::setNextStatement(Frame*, const Path& file, int line)
{
    TargetRegisterInterface* const registers = liveRegisters();
    unsigned address = 0;
    if (registers && !m_symbols.empty()
        && m_symbols.front()->sourceAddressMapping().SourceToAddress(
            file.osPath(), static_cast<unsigned>(line), address))
        registers->setPC(address);
}

bool TOBFDebugger::atStatement()
{
    const TargetRegisterInterface* const registers = liveRegisters();
    unsigned start = 0;
    unsigned length = 0;
    if (!registers)
        return false;
    const unsigned pc = liveRegisters()->getPC();
    return getAddressRange(pc, start, length) && start == pc;
}
