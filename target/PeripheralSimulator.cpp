#include "target/PeripheralSimulator.h"

#include "base/HException.h"
#include "base/QTx.h"
#include "target/SimulatedHMonitor.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace {

[[noreturn]] void throwUncaught(ESContext& context, const ESValue& value)
{
    static ESString* const message = ESStringPool::intern(u"message"_s);
    const bool isError =
        ESContext::isPrototypeOf(context.errorPrototype(ESContext::ErrorKind::Error), value);
    const QString text = isError ? context.toString(context.getProperty(value, message))
                                 : u"Uncaught exception: "_s + context.toString(value);
    throw HException(text.toStdString());
}

/// Does what enters the engine, and turns the engine's failures into those of targets.
template <class Work> auto guarded(ESContext& context, Work work)
{
    try {
        return work();
    } catch (const ESException& exception) {
        throwUncaught(context, exception.value());
    } catch (const ESFatalError& error) {
        throw HException(error.text().toStdString());
    }
}

} // namespace

/// The context of the file. Functions are called directly: the engine then compiles nothing for an
/// access of a register.
class PeripheralSimulator::Context : public ESContext {
public:
    explicit Context(SimulatedHMonitor& monitor) : m_monitor(monitor) { }

    bool carryOnExecuting() override
    {
        m_monitor.processEvents();
        return !m_stopRequested;
    }
    void requestStop()
    {
        if (m_frames == 0)
            return;
        m_stopRequested = true;
        pollSoon();
    }

    /// The value of a function, which is looked up by its name in each call since the file may
    /// have put another one there.
    ESValue invoke(ESString* name, int argc, const ESValue* argv)
    {
        const ESProperty* property = global()->find(name);
        if (property == nullptr)
            throwException(ErrorKind::ReferenceError, name->text + u" is not defined"_s);
        ESObject* const function = property->value.isObject() ? property->value.object : nullptr;
        if (m_frames == 0)
            m_stopRequested = m_stopped = false;
        const int stackPointer = m_sp;
        const std::size_t handlers = m_handlers.size();
        try {
            return call(function, global(), argc, argv);
        } catch (...) {
            m_sp = stackPointer;
            m_handlers.resize(handlers);
            throw;
        }
    }

private:
    SimulatedHMonitor& m_monitor;
    bool m_stopRequested = false;
};

/// The script object "Simulator".
class PeripheralSimulator::HostObject : public ESClass {
public:
    explicit HostObject(PeripheralSimulator& owner) : ESClass(u"Simulator"_s), m_owner(owner) { }

    void install(ESContext* context)
    {
        ESObject* const object = context->newObject();
        object->objectClass = this;
        for (std::size_t i = 0; i < std::size(methods); ++i) {
            const QByteArray fullName = QByteArray("Simulator.") + methods[i].name;
            context->biinst(object,
                            {methods[i].name, fullName.constData(), methods[i].length, false,
                             static_cast<int>(i)},
                            this);
        }
        ESContext::define(context->global(), "Simulator", ESValue(object));
    }

    void call(ESContext* context, ESObject* function, ESObject* thisObject, int argc,
              ESValue* argv) override
    {
        const auto index = static_cast<std::size_t>(function->nativeIndex);
        if (index >= std::size(methods))
            context->throwTypeError(u"bad signature in Simulator"_s);
        const ESValue result =
            (this->*methods[index].run)({*context, function, thisObject, argc, argv});
        argv[0] = result;
    }

private:
    ESValue cycleCount(const ESCall&)
    {
        return static_cast<double>(m_owner.m_monitor.cycleCount());
    }

    ESValue quiet(const ESCall& call)
    {
        constexpr double mostCycles = 9e15; // beyond the numbers that a double counts in ones
        const double cycles = call.number(0);
        if (!(cycles > 0))
            m_owner.m_quietUntil = 0;
        else if (cycles > mostCycles)
            m_owner.m_quietUntil = Never;
        else
            m_owner.m_quietUntil =
                m_owner.m_monitor.cycleCount() + static_cast<std::uint64_t>(cycles);
        return {};
    }

    ESValue resetProcessor(const ESCall&)
    {
        m_owner.m_monitor.requestReset();
        return {};
    }

    ESValue send(const ESCall& call)
    {
        if (TargetIOServerTerminalInterface* terminal = m_owner.m_monitor.terminal())
            terminal->addOutput(QString(QChar(ESContext::toUint32(call.number(0)) & 0xFF)));
        return {};
    }

    ESValue receive(const ESCall&)
    {
        TargetIOServerTerminalInterface* terminal = m_owner.m_monitor.terminal();
        if (terminal == nullptr)
            return -2.0;
        if (terminal->inputCharAvailable())
            return static_cast<double>(terminal->getInputChar());
        return terminal->atEnd() ? -2.0 : -1.0;
    }

    ESValue load(const ESCall& call)
    {
        for (const QString& folder : call.context.loadPath()) {
            QFile file(folder + u'/' + call.text(0));
            if (!file.open(QIODevice::ReadOnly))
                continue;
            const ESCompletion completion =
                call.context.eval(QString::fromUtf8(file.readAll()) + u'\n');
            if (completion.kind == ESCompletion::Exception)
                throw ESException(completion.value);
            return ESValue::boolean(true);
        }
        return ESValue::boolean(false);
    }

    struct Method {
        const char* name;
        int length;
        ESValue (HostObject::*run)(const ESCall& call);
    };
    static constexpr Method methods[] = {
        {"cycleCount", 0, &HostObject::cycleCount},
        {"quiet", 1, &HostObject::quiet},
        {"send", 1, &HostObject::send},
        {"receive", 0, &HostObject::receive},
        {"load", 1, &HostObject::load},
        {"reset", 0, &HostObject::resetProcessor},
    };

    PeripheralSimulator& m_owner;
};

PeripheralSimulator::PeripheralSimulator(const QString& path, SimulatedHMonitor& monitor)
    : BuiltinScript([&monitor](const QString& text) { monitor.logMessage(text); }),
      m_monitor(monitor),
      m_host(std::make_unique<HostObject>(*this)),
      m_context(std::make_unique<Context>(monitor))
{
    install(m_context.get());
    monitor.installScriptObject(m_context.get());
    m_host->install(m_context.get());
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        monitor.logError(u"Cannot open "_s + path);
        return;
    }
    m_context->addToLoadPath(QFileInfo(path).absolutePath());
    m_context->addToLoadPath(QTx::rootDirectory() + u"/targets"_s);
    const QString text = QString::fromUtf8(file.readAll()) + u'\n';
    guarded(*m_context, [&] {
        const ESCompletion completion = m_context->eval(text);
        if (completion.kind == ESCompletion::Exception)
            throw ESException(completion.value);
    });
}

PeripheralSimulator::~PeripheralSimulator() = default;

/// The numeric result of a function of the file as an integer; 0 for undefined.
unsigned PeripheralSimulator::run(ESString* function, std::initializer_list<ESValue> arguments)
{
    return guarded(*m_context, [&] {
        const ESValue result =
            m_context->invoke(function, static_cast<int>(arguments.size()), arguments.begin());
        return result.isNumber() ? ESContext::toUint32(result.number) : 0u;
    });
}

void PeripheralSimulator::storePeripheral(unsigned address, unsigned size, unsigned value)
{
    static ESString* const name = ESStringPool::intern(u"storePeripheral"_s);
    m_quietUntil = 0;
    run(name, {double(address), double(size), double(value)});
}

unsigned PeripheralSimulator::loadPeripheral(unsigned address, unsigned size, bool debug)
{
    static ESString* const name = ESStringPool::intern(u"loadPeripheral"_s);
    if (!debug)
        m_quietUntil = 0;
    return run(name, {double(address), double(size), ESValue::boolean(debug)});
}

unsigned PeripheralSimulator::pollForInterrupts(unsigned cycles)
{
    static ESString* const name = ESStringPool::intern(u"pollForInterrupts"_s);
    m_quietUntil = 0;
    return run(name, {double(cycles)});
}

void PeripheralSimulator::reset()
{
    static ESString* const name = ESStringPool::intern(u"reset"_s);
    m_quietUntil = 0;
    run(name, {});
}

void PeripheralSimulator::connect(QString deviceName)
{
    static ESString* const name = ESStringPool::intern(u"connect"_s);
    run(name, {m_context->text(deviceName)});
}

void PeripheralSimulator::requestStop() { m_context->requestStop(); }
