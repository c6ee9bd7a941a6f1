// The functions of String.

#include "script/es/ESNatives.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The text that a function is called on. That of a String is not copied.
class Text {
public:
    explicit Text(const ESCall& call)
    {
        if (call.context.isstrobj(ESValue(call.thisObject))
            && call.thisObject->primitive.isString()) {
            m_view = ESContext::viewOf(call.thisObject->primitive);
        } else {
            m_own = call.context.toString(ESValue(call.thisObject));
            m_view = m_own;
        }
    }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    QStringView view() const { return m_view; }
    qsizetype size() const { return m_view.size(); }

private:
    QString m_own;
    QStringView m_view;
};

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

/// The position that an argument names, or -1 if there is no character.
qsizetype positionOf(const ESCall& call, const Text& text)
{
    const double at = call.integer(0, 0);
    return at >= 0 && at < double(text.size()) ? qsizetype(at) : -1;
}

ESValue charAt(const ESCall& call)
{
    const Text text(call);
    const qsizetype at = positionOf(call, text);
    return at < 0 ? call.string(QString()) : ESStringPool::character(text.view()[at]);
}

ESValue charCodeAt(const ESCall& call)
{
    const Text text(call);
    const qsizetype at = positionOf(call, text);
    return at < 0 ? std::nan("") : double(text.view()[at].unicode());
}

ESValue concat(const ESCall& call)
{
    ESValue text = call.string(Text(call).view().toString());
    for (int i = 0; i < call.argc; ++i)
        text = call.context.add(text, call.string(call.text(i)));
    return text;
}

ESValue indexOf(const ESCall& call)
{
    const Text text(call);
    const double from = clamped(call.integer(1, 0), double(text.size()));
    return double(text.view().indexOf(call.text(0), qsizetype(from)));
}

ESValue lastIndexOf(const ESCall& call)
{
    const Text text(call);
    const QString wanted = call.text(0);
    const double limit = call.number(1);
    const double from = std::isnan(limit)
        ? double(text.size())
        : clamped(ESContext::toInteger(limit), double(text.size()));
    const double last = double(text.size() - wanted.size());
    if (last < 0)
        return -1.0;
    return double(text.view().lastIndexOf(wanted, qsizetype(std::min(from, last))));
}

ESValue localeCompare(const ESCall& call)
{
    return double(QString::localeAwareCompare(Text(call).view().toString(), call.text(0)));
}

// Patterns are texts.

ESValue match(const ESCall& call)
{
    const QString wanted = call.text(0);
    const qsizetype at = Text(call).view().indexOf(wanted);
    if (at < 0)
        return ESValue::null();
    const ESValue found = call.string(wanted);
    ESObject* result = call.context.newArray(1, &found);
    ESContext::define(result, "index", double(at));
    return result;
}

ESValue replace(const ESCall& call)
{
    QString text = Text(call).view().toString();
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

ESValue search(const ESCall& call) { return double(Text(call).view().indexOf(call.text(0))); }

ESValue slice(const ESCall& call)
{
    const Text text(call);
    const auto length = double(text.size());
    const auto position = [&](double value) {
        return clamped(value < 0 ? length + value : value, length);
    };
    const double from = position(call.integer(0, 0));
    const double to = position(call.integer(1, length));
    return call.string(
        text.view().mid(qsizetype(from), qsizetype(std::max(to - from, 0.0))).toString());
}

ESValue split(const ESCall& call)
{
    const QString text = Text(call).view().toString();
    const ESValue separator = call.argument(0);
    std::vector<ESValue> parts;
    if (separator.is(ESValue::Undefined)) {
        parts.push_back(call.string(text));
    } else if (call.text(0).isEmpty()) {
        for (const QChar c : text)
            parts.push_back(ESStringPool::character(c));
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
    const Text text(call);
    const auto length = double(text.size());
    const double a = clamped(call.integer(0, 0), length);
    const double b = clamped(call.integer(1, length), length);
    return call.string(
        text.view().mid(qsizetype(std::min(a, b)), qsizetype(std::fabs(b - a))).toString());
}

ESValue toLowerCase(const ESCall& call)
{
    return call.string(Text(call).view().toString().toLower());
}
ESValue toUpperCase(const ESCall& call)
{
    return call.string(Text(call).view().toString().toUpper());
}

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
        if (name == lengthName() && context->isstrobj(ESValue(object))
            && object->primitive.isString())
            return double(ESContext::viewOf(object->primitive).size());
        return ESNativeClass::get(context, object, name);
    }
    void put(ESContext* context, ESObject* object, ESString* name, const ESValue& value) override
    {
        if (name != lengthName() || object->isCallable())
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
