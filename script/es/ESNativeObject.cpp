// Object, Function, Boolean, the errors, and the functions of the global object.

#include "script/es/ESCode.h"
#include "script/es/ESCompiler.h"
#include "script/es/ESNatives.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

// Object

ESValue object(const ESCall& call)
{
    const ESValue value = call.argument(0);
    return value.isNothing() ? ESValue(call.context.newObject())
                             : ESValue(call.context.toObject(value));
}

ESValue objectToString(const ESCall& call)
{
    const ESClass* objectClass = call.thisObject->objectClass;
    return call.string(u"[object "_s + objectClass->className() + u']');
}

ESValue objectValueOf(const ESCall& call) { return ESValue(call.thisObject); }

bool has(const ESCall& call, ESObject* object, unsigned withoutFlags)
{
    const ESString* const name = call.context.toEString(call.argument(0));
    if (name->element >= 0 && object->element(name->element))
        return true;
    const ESProperty* property = object->find(name);
    return property && !(property->flags & withoutFlags);
}

ESValue hasOwnProperty(const ESCall& call)
{
    return ESValue::boolean(has(call, call.thisObject, 0));
}

ESValue isPrototypeOf(const ESCall& call)
{
    return ESValue::boolean(ESContext::isPrototypeOf(call.thisObject, call.argument(0)));
}

ESValue propertyIsEnumerable(const ESCall& call)
{
    return ESValue::boolean(has(call, call.thisObject, ESProperty::DontEnum));
}

constexpr ESNative ObjectFunctions[] = {{"Object", 1, object},
                                        {"toString", 0, objectToString},
                                        {"toLocaleString", 0, objectToString},
                                        {"valueOf", 0, objectValueOf},
                                        {"hasOwnProperty", 1, hasOwnProperty},
                                        {"isPrototypeOf", 1, isPrototypeOf},
                                        {"propertyIsEnumerable", 1, propertyIsEnumerable}};

// Function

ESValue function(const ESCall& call)
{
    QStringList parameters;
    for (int i = 0; i + 1 < call.argc; ++i)
        parameters << call.text(i);
    const QString body = call.argc > 0 ? call.text(call.argc - 1) : QString();
    return call.context.makeFunction(parameters.join(u','), body);
}

ESValue functionToString(const ESCall& call) { return call.string(u"<<function>>"_s); }

constexpr ESNative FunctionFunctions[] = {{"Function", 1, function},
                                          {"toString", 0, functionToString}};

// Boolean

bool booleanOf(const ESCall& call, const char* name)
{
    const ESValue value = call.thisObject->primitive;
    if (!value.is(ESValue::Boolean))
        call.context.throwTypeError(
            u"Boolean.prototype.%1 called on non-Boolean object"_s.arg(QLatin1String(name)));
    return value.number != 0;
}

ESValue boolean(const ESCall& call)
{
    return ESValue::boolean(ESContext::toBoolean(call.argument(0)));
}

ESValue booleanToString(const ESCall& call)
{
    return call.string(booleanOf(call, "toString") ? u"true"_s : u"false"_s);
}

ESValue booleanValueOf(const ESCall& call) { return ESValue::boolean(booleanOf(call, "valueOf")); }

constexpr ESNative BooleanFunctions[] = {
    {"Boolean", 1, boolean}, {"toString", 0, booleanToString}, {"valueOf", 0, booleanValueOf}};

class ESNativeBoolean : public ESNativeClass {
public:
    ESNativeBoolean() : ESNativeClass("Boolean", BooleanFunctions) { }

protected:
    ESObject* make(const ESCall& call) override { return call.context.hardToObject(boolean(call)); }
};

// Errors

template <ESContext::ErrorKind Kind> ESValue error(const ESCall& call)
{
    return call.context.makeError(Kind, call.argc > 0 ? call.text(0) : QString());
}

using Kind = ESContext::ErrorKind;
template <ESContext::ErrorKind K> constexpr ESNative ErrorFunctions[] = {{"Error", 1, error<K>}};

// The global object

ESValue eval(const ESCall& call)
{
    const ESValue source = call.argument(0);
    if (!source.isString())
        return source;
    const ESCompletion completion = call.context.eval(call.context.toString(source));
    return completion.kind == ESCompletion::Normal ? completion.value : ESValue();
}

ESValue parseInt(const ESCall& call)
{
    QString text = call.text(0).trimmed();
    double sign = 1;
    if (text.startsWith(u'-') || text.startsWith(u'+')) {
        sign = text[0] == u'-' ? -1 : 1;
        text.remove(0, 1);
    }
    int radix = ESContext::toInt32(call.number(1));
    if ((radix == 0 || radix == 16) && text.startsWith(u"0x"_s, Qt::CaseInsensitive)) {
        text.remove(0, 2);
        radix = 16;
    }
    if (radix == 0)
        radix = 10;
    if (radix < 2 || radix > 36)
        return NaN;
    QString problem;
    int digits = 0;
    while (digits < text.size() && problem.isEmpty()) {
        ESLexer::strtoi(text.mid(digits, 1), radix, problem);
        digits += problem.isEmpty();
    }
    problem.clear();
    return sign * ESLexer::strtoi(text.left(digits), radix, problem);
}

ESValue parseFloat(const ESCall& call)
{
    return ESLexer::parsenum(call.text(0).trimmed(), 0, ESLexer::Decimal).value;
}

ESValue isNaN(const ESCall& call) { return ESValue::boolean(std::isnan(call.number(0))); }
ESValue isFinite(const ESCall& call) { return ESValue::boolean(std::isfinite(call.number(0))); }

ESValue load(const ESCall& call)
{
    const QString name = call.text(0);
    QStringList paths = {name};
    for (const QString& folder : call.context.loadPath())
        paths << folder + u'/' + name;
    for (const QString& path : paths) {
        QFile file(path);
        if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
            continue;
        const ESCompletion completion = call.context.eval(QString::fromUtf8(file.readAll()));
        if (completion.kind != ESCompletion::Normal)
            call.context.loadFailed(path, completion);
        return ESValue::boolean(true);
    }
    return ESValue::boolean(false);
}

constexpr ESNative GlobalFunctions[] = {
    {"eval", 1, eval},   {"parseInt", 2, parseInt}, {"parseFloat", 1, parseFloat},
    {"isNaN", 1, isNaN}, {"isFinite", 1, isFinite}, {"load", 1, load}};

} // namespace

std::unique_ptr<ESNativeClass> makeObjectClass()
{
    return std::make_unique<ESNativeClass>("Object", ObjectFunctions);
}

std::unique_ptr<ESNativeClass> makeFunctionClass()
{
    return std::make_unique<ESNativeClass>("Function", FunctionFunctions);
}

std::unique_ptr<ESNativeClass> makeBooleanClass() { return std::make_unique<ESNativeBoolean>(); }

std::unique_ptr<ESNativeClass> makeGlobalClass()
{
    return std::make_unique<ESNativeClass>("global", GlobalFunctions);
}

std::unique_ptr<ESNativeClass> makeErrorClass(ESContext::ErrorKind kind, const char* name)
{
    static constexpr std::span<const ESNative> Tables[] = {
        ErrorFunctions<Kind::Error>,          ErrorFunctions<Kind::RangeError>,
        ErrorFunctions<Kind::ReferenceError>, ErrorFunctions<Kind::SyntaxError>,
        ErrorFunctions<Kind::TypeError>,      ErrorFunctions<Kind::EvalError>};
    return std::make_unique<ESNativeClass>(name, Tables[static_cast<std::size_t>(kind)]);
}
