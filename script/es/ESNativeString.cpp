// The functions of String.

#include "script/es/ESNatives.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

QString textOf(const ESCall& call) { return call.context.toString(ESValue(call.thisObject)); }

double clamped(double value, double length) { return std::clamp(value, 0.0, length); }

ESValue string(const ESCall& call) { return call.string(call.argc > 0 ? call.text(0) : QString()); }

QString primitiveOf(const ESCall& call, const char* name)
{
    if (!call.thisObject->primitive.isString() || !call.context.isstrobj(ESValue(call.thisObject)))
        call.context.throwTypeError(
            u"String.prototype.%1 called on non-String object"_s.arg(QLatin1String(name)));
    return ESContext::viewOf(call.thisObject->primitive).toString();
}

ESValue toString(const ESCall& call) { return call.string(primitiveOf(call, "toString")); }
ESValue valueOf(const ESCall& call) { return call.string(primitiveOf(call, "valueOf")); }

ESValue charAt(const ESCall& call)
{
    const QString text = textOf(call);
    const double at = call.integer(0, 0);
    return call.string(at >= 0 && at < double(text.size()) ? text.mid(qsizetype(at), 1)
                                                           : QString());
}

ESValue charCodeAt(const ESCall& call)
{
    const QString text = textOf(call);
    const double at = call.integer(0, 0);
    return at >= 0 && at < double(text.size()) ? double(text[qsizetype(at)].unicode())
                                               : std::nan("");
}

ESValue concat(const ESCall& call)
{
    QString text = textOf(call);
    for (int i = 0; i < call.argc; ++i)
        text += call.text(i);
    return call.string(text);
}

ESValue indexOf(const ESCall& call)
{
    const QString text = textOf(call);
    const double from = clamped(call.integer(1, 0), double(text.size()));
    return double(text.indexOf(call.text(0), qsizetype(from)));
}

ESValue lastIndexOf(const ESCall& call)
{
    const QString text = textOf(call);
    const QString wanted = call.text(0);
    const double limit = call.number(1);
    const double from = std::isnan(limit)
        ? double(text.size())
        : clamped(ESContext::toInteger(limit), double(text.size()));
    const double last = double(text.size() - wanted.size());
    if (last < 0)
        return -1.0;
    return double(text.lastIndexOf(wanted, qsizetype(std::min(from, last))));
}

ESValue localeCompare(const ESCall& call)
{
    return double(QString::localeAwareCompare(textOf(call), call.text(0)));
}

// Patterns are texts.

ESValue match(const ESCall& call)
{
    const QString wanted = call.text(0);
    const qsizetype at = textOf(call).indexOf(wanted);
    if (at < 0)
        return ESValue::null();
    const ESValue found = call.string(wanted);
    ESObject* result = call.context.newArray(1, &found);
    ESContext::define(result, "index", double(at));
    return result;
}

ESValue replace(const ESCall& call)
{
    QString text = textOf(call);
    const QString wanted = call.text(0);
    const qsizetype at = text.indexOf(wanted);
    if (at < 0)
        return call.string(text);
    const ESValue replacement = call.argument(1);
    QString by;
    if (replacement.isObject() && replacement.object->isCallable()) {
        const ESValue arguments[] = {call.string(wanted), double(at), call.string(text)};
        by = call.context.toString(
            call.context.call(replacement.object, call.context.global(), 3, arguments));
    } else {
        by = call.text(1);
    }
    return call.string(text.replace(at, wanted.size(), by));
}

ESValue search(const ESCall& call) { return double(textOf(call).indexOf(call.text(0))); }

ESValue slice(const ESCall& call)
{
    const QString text = textOf(call);
    const auto length = double(text.size());
    const auto position = [&](double value) {
        return clamped(value < 0 ? length + value : value, length);
    };
    const double from = position(call.integer(0, 0));
    const double to = position(call.integer(1, length));
    return call.string(text.mid(qsizetype(from), qsizetype(std::max(to - from, 0.0))));
}

ESValue split(const ESCall& call)
{
    const QString text = textOf(call);
    const ESValue separator = call.argument(0);
    std::vector<ESValue> parts;
    if (separator.is(ESValue::Undefined)) {
        parts.push_back(call.string(text));
    } else if (call.text(0).isEmpty()) {
        for (const QChar c : text)
            parts.push_back(call.string(QString(c)));
    } else {
        for (const QString& part : text.split(call.text(0)))
            parts.push_back(call.string(part));
    }
    const ESValue limit = call.argument(1);
    if (!limit.is(ESValue::Undefined))
        parts.resize(
            std::min<std::size_t>(parts.size(), ESContext::toUint32(call.context.toNumber(limit))));
    return call.context.newArray(int(parts.size()), parts.data());
}

ESValue substring(const ESCall& call)
{
    const QString text = textOf(call);
    const auto length = double(text.size());
    const double a = clamped(call.integer(0, 0), length);
    const double b = clamped(call.integer(1, length), length);
    return call.string(text.mid(qsizetype(std::min(a, b)), qsizetype(std::fabs(b - a))));
}

ESValue toLowerCase(const ESCall& call) { return call.string(textOf(call).toLower()); }
ESValue toUpperCase(const ESCall& call) { return call.string(textOf(call).toUpper()); }

constexpr ESNative StringFunctions[] = {{"String", 1, string},
                                        {"toString", 0, toString},
                                        {"valueOf", 0, valueOf},
                                        {"charAt", 1, charAt},
                                        {"charCodeAt", 1, charCodeAt},
                                        {"concat", 0, concat},
                                        {"indexOf", 2, indexOf},
                                        {"lastIndexOf", 2, lastIndexOf},
                                        {"localeCompare", 1, localeCompare},
                                        {"match", 1, match},
                                        {"replace", 2, replace},
                                        {"search", 1, search},
                                        {"slice", 2, slice},
                                        {"split", 2, split},
                                        {"substring", 2, substring},
                                        {"toLowerCase", 0, toLowerCase},
                                        {"toLocaleLowerCase", 0, toLowerCase},
                                        {"toUpperCase", 0, toUpperCase},
                                        {"toLocaleUpperCase", 0, toUpperCase}};

ESValue fromCharCode(const ESCall& call)
{
    QString text;
    for (int i = 0; i < call.argc; ++i)
        text += QChar(ESContext::toUint16(call.number(i)));
    return call.string(text);
}

constexpr ESNative StaticFunctions[] = {{"fromCharCode", 0, fromCharCode}};

/// Texts have a length, which can't be changed.
class ESNativeString : public ESNativeClass {
public:
    ESNativeString() : ESNativeClass("String", StringFunctions) { }

    ESValue get(ESContext* context, ESObject* object, ESString* name) override
    {
        if (name == lengthName() && object->primitive.isString())
            return double(ESContext::viewOf(object->primitive).size());
        return ESNativeClass::get(context, object, name);
    }
    void put(ESContext* context, ESObject* object, ESString* name, const ESValue& value) override
    {
        if (name != lengthName())
            ESNativeClass::put(context, object, name, value);
    }

protected:
    ESObject* make(const ESCall& call) override { return call.context.hardToObject(string(call)); }

private:
    static ESString* lengthName()
    {
        static ESString* const name = ESStringPool::intern(u"length"_s);
        return name;
    }
};

} // namespace

std::unique_ptr<ESNativeClass> makeStringClass() { return std::make_unique<ESNativeString>(); }

void installStringFunctions(ESContext* context, ESObject* constructor)
{
    // These classes hold nothing of a context.
    static ESNativeClass functions("String", StaticFunctions);
    functions.installFunctions(context, constructor, 0);
}
