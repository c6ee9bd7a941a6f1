// The script object "TargetInterface".

#include "base/HException.h"
#include "projects/properties/PropertyClass.h"
#include "script/es/ESNativeClass.h"
#include "target/TargetInterface.h"

#include <QFile>

#include <chrono>
#include <iterator>
#include <thread>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Longer arrays are refused: the target has a megabyte.
constexpr unsigned mostElements = 0x100000;

struct TargetCall : ESCall {
    TargetInterface& target;
    TargetInterfaceHelperFunctions& host;

    unsigned address(int index) const { return ESContext::toUint32(number(index)); }
    TargetMemoryInterface& memory() const
    {
        TargetMemoryInterface* const selected = target.getSelectedMemoryInterface();
        if (selected == nullptr || !target.isConnected())
            throw HException("The target is not connected");
        return *selected;
    }
    unsigned count(int index) const
    {
        const unsigned value = address(index);
        if (value > mostElements)
            context.throwException(ESContext::ErrorKind::RangeError, u"array is too long"_s);
        return value;
    }
    template <class Number> ESValue array(const std::vector<Number>& numbers) const
    {
        std::vector<ESValue> values;
        for (const Number number : numbers)
            values.emplace_back(static_cast<double>(number));
        return ESValue(context.newArray(static_cast<int>(values.size()), values.data()));
    }
    /// The elements of an array argument, each cut to its type.
    template <class Number> std::vector<Number> numbers(int index) const
    {
        const ESValue value = argument(index);
        if (!value.isObject() || !value.object->hasElements)
            context.throwTypeError(u"array argument expected"_s);
        static ESString* const name = ESStringPool::intern(u"length"_s);
        const unsigned length =
            ESContext::toUint32(context.toNumber(context.getProperty(value, name)));
        if (length > mostElements)
            context.throwException(ESContext::ErrorKind::RangeError, u"array is too long"_s);
        std::vector<Number> result;
        for (unsigned i = 0; i < length; ++i)
            result.push_back(static_cast<Number>(ESContext::toInt32(
                context.toNumber(context.getElement(value, static_cast<double>(i))))));
        return result;
    }
};

ESValue reset(const TargetCall& call)
{
    call.target.reset(false, false);
    return {};
}

ESValue go(const TargetCall& call)
{
    call.target.go();
    return {};
}

ESValue peekByte(const TargetCall& call) { return double(call.memory().peekByte(call.address(0))); }

ESValue peekUint16(const TargetCall& call)
{
    return double(call.memory().peekUint16(call.address(0)));
}

ESValue peekUint32(const TargetCall& call)
{
    return double(call.memory().peekUint32(call.address(0)));
}

ESValue pokeByte(const TargetCall& call)
{
    call.memory().pokeByte(call.address(0), static_cast<unsigned char>(call.address(1)));
    return {};
}

ESValue pokeUint16(const TargetCall& call)
{
    call.memory().pokeUint16(call.address(0), static_cast<unsigned short>(call.address(1)));
    return {};
}

ESValue pokeUint32(const TargetCall& call)
{
    call.memory().pokeUint32(call.address(0), call.address(1));
    return {};
}

ESValue peekBytes(const TargetCall& call)
{
    std::vector<unsigned char> bytes(call.count(1));
    call.memory().peekBytes(call.address(0), static_cast<unsigned>(bytes.size()), bytes.data());
    return call.array(bytes);
}

ESValue peekMultUint16(const TargetCall& call)
{
    std::vector<unsigned short> words(call.count(1));
    call.memory().peekMultUint16(call.address(0), static_cast<unsigned>(words.size()),
                                 words.data());
    return call.array(words);
}

ESValue peekMultUint32(const TargetCall& call)
{
    std::vector<unsigned> words(call.count(1));
    call.memory().peekMultUint32(call.address(0), static_cast<unsigned>(words.size()),
                                 words.data());
    return call.array(words);
}

/// (address, array) or (address, count, array).
ESValue pokeBytes(const TargetCall& call)
{
    std::vector<unsigned char> bytes = call.numbers<unsigned char>(call.argc > 2 ? 2 : 1);
    if (call.argc > 2)
        bytes.resize(std::min<std::size_t>(bytes.size(), call.count(1)));
    call.memory().pokeBytes(call.address(0), static_cast<unsigned>(bytes.size()), bytes.data());
    return {};
}

ESValue pokeMultUint16(const TargetCall& call)
{
    const auto words = call.numbers<unsigned short>(1);
    call.memory().pokeMultUint16(call.address(0), static_cast<unsigned>(words.size()),
                                 words.data());
    return {};
}

ESValue pokeMultUint32(const TargetCall& call)
{
    const auto words = call.numbers<unsigned>(1);
    call.memory().pokeMultUint32(call.address(0), static_cast<unsigned>(words.size()),
                                 words.data());
    return {};
}

ESValue eraseBytes(const TargetCall& call)
{
    call.memory().eraseBytes(call.address(0), call.address(1), nullptr, nullptr);
    return {};
}

ESValue delay(const TargetCall& call)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(call.address(0)));
    return {};
}

ESValue message(const TargetCall& call)
{
    call.host.message(call.text(0));
    return {};
}

ESValue error(const TargetCall& call)
{
    const QString text = call.text(0);
    call.host.message(u"error: "_s + text);
    throw HException(text.toStdString());
}

ESValue readBinary(const TargetCall& call)
{
    QFile file(call.text(0));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.read(mostElements + 1);
    if (bytes.size() > mostElements)
        call.context.throwException(ESContext::ErrorKind::RangeError, u"array is too long"_s);
    return call.array(std::vector<unsigned char>(bytes.begin(), bytes.end()));
}

ESValue setDeviceTypeProperty(const TargetCall& call)
{
    call.target.setDeviceId(call.text(0));
    return {};
}

ESValue getProjectProperty(const TargetCall& call)
{
    const PropertyClass* found = TargetProject::findPropertyClass(call.text(0));
    if (found == nullptr)
        return {};
    return call.string(call.target.propertyValue(found, true));
}

struct Method {
    const char* name;
    int length;
    ESValue (*run)(const TargetCall& call);
};

constexpr Method methods[] = {
    {"reset", 0, reset},
    {"go", 0, go},
    {"peekByte", 1, peekByte},
    {"peekUint16", 1, peekUint16},
    {"peekUint32", 1, peekUint32},
    {"pokeByte", 2, pokeByte},
    {"pokeUint16", 2, pokeUint16},
    {"pokeUint32", 2, pokeUint32},
    {"peekBytes", 2, peekBytes},
    {"peekMultUint16", 2, peekMultUint16},
    {"peekMultUint32", 2, peekMultUint32},
    {"pokeBytes", 3, pokeBytes},
    {"pokeMultUint16", 2, pokeMultUint16},
    {"pokeMultUint32", 2, pokeMultUint32},
    {"eraseBytes", 2, eraseBytes},
    {"delay", 1, delay},
    {"message", 1, message},
    {"error", 1, error},
    {"readBinary", 1, readBinary},
    {"setDeviceTypeProperty", 1, setDeviceTypeProperty},
    {"getProjectProperty", 1, getProjectProperty},
};

} // namespace

void TargetInterface::installScriptObject(ESContext* context)
{
    ESObject* const object = context->newObject();
    object->objectClass = this;
    for (std::size_t i = 0; i < std::size(methods); ++i) {
        const QByteArray fullName = QByteArray("TargetInterface.") + methods[i].name;
        context->biinst(
            object,
            {methods[i].name, fullName.constData(), methods[i].length, false, static_cast<int>(i)},
            this);
    }
    ESContext::define(context->global(), "TargetInterface", ESValue(object));
}

void TargetInterface::call(ESContext* context, ESObject* function, ESObject* thisObject, int argc,
                           ESValue* argv)
{
    const auto index = static_cast<std::size_t>(function->nativeIndex);
    if (index >= std::size(methods))
        context->throwTypeError(u"bad signature in TargetInterface::call"_s);
    const ESValue result =
        methods[index].run({{*context, function, thisObject, argc, argv}, *this, host()});
    argv[0] = result;
}
