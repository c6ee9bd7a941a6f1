#include "script/es/ESContext.h"

#include "script/es/ESArrayClass.h"
#include "script/es/ESCode.h"
#include "script/es/ESCompiler.h"
#include "script/es/ESNatives.h"

#include <cmath>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int ObjectsPerChunk = 64;

constexpr const char* ErrorNames[] = {"Error",       "RangeError", "ReferenceError",
                                      "SyntaxError", "TypeError",  "EvalError"};

ESString* name(const char* text) { return ESStringPool::intern(QLatin1String(text)); }

/// The element that a number names, or -1.
int elementIndex(double number)
{
    if (!(number >= 0 && number < 2147483647.0))
        return -1;
    const int index = static_cast<int>(number);
    return double(index) == number ? index : -1;
}

/// Puts back what running code changes, however it ends.
template <typename Value> class Restored {
public:
    explicit Restored(Value& value) : m_value(value), m_before(value) { }
    ~Restored() { m_value = m_before; }
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;

private:
    Value& m_value;
    Value m_before;
};

} // namespace

ESContext::ESContext()
{
    m_plainClass = makeObjectClass();
    m_activationClass = std::make_unique<ESClass>(u"activation"_s);
    m_functionClass = makeFunctionClass();
    m_arrayClass = std::make_unique<ESArrayClass>();
    m_arrayFunctions = makeArrayFunctions();
    m_stringClass = makeStringClass();
    m_numberClass = makeNumberClass();
    m_booleanClass = makeBooleanClass();
    m_mathClass = makeMathClass();
    m_globalClass = makeGlobalClass();
    m_dateClass = makeDateClass();
    for (std::size_t i = 0; i < m_errorClasses.size(); ++i)
        m_errorClasses[i] = makeErrorClass(static_cast<ErrorKind>(i), ErrorNames[i]);
    m_global = mkobj(nullptr, m_plainClass.get(), ESValue(name("[object global]")));
    m_frame.thisObject = m_global;
    createPrototypes();
    installLibrary();
}

ESContext::~ESContext()
{
    for (const int code : m_codes)
        releaseFunctionCode(code);
}

void ESContext::createPrototypes()
{
    m_objectPrototype = mkobj(nullptr, m_plainClass.get());
    m_functionPrototype = mkobj(m_objectPrototype, m_functionClass.get());
    m_arrayPrototype = mkobj(m_objectPrototype, m_arrayClass.get());
    m_arrayPrototype->hasElements = true;
    m_stringPrototype = mkobj(m_objectPrototype, m_stringClass.get());
    m_numberPrototype = mkobj(m_objectPrototype, m_numberClass.get());
    m_booleanPrototype = mkobj(m_objectPrototype, m_booleanClass.get());
    m_datePrototype = mkobj(m_objectPrototype, m_dateClass.get(), ESValue(std::nan("")));
    m_global->prototype = m_objectPrototype;
    for (std::size_t i = 0; i < m_errorPrototypes.size(); ++i) {
        ESObject* const base = i == 0 ? m_objectPrototype : m_errorPrototypes[0];
        m_errorPrototypes[i] = mkobj(base, m_errorClasses[i].get());
        define(m_errorPrototypes[i], "name", ESValue(name(ErrorNames[i])));
    }
}

void ESContext::installLibrary()
{
    const auto native = [](const std::unique_ptr<ESClass>& objectClass) {
        return static_cast<ESNativeClass*>(objectClass.get());
    };
    struct Constructor {
        ESNativeClass* functions;
        ESObject* prototype;
    };
    const Constructor constructors[] = {{native(m_plainClass), m_objectPrototype},
                                        {native(m_functionClass), m_functionPrototype},
                                        {native(m_booleanClass), m_booleanPrototype},
                                        {native(m_arrayFunctions), m_arrayPrototype},
                                        {native(m_numberClass), m_numberPrototype},
                                        {native(m_stringClass), m_stringPrototype},
                                        {native(m_dateClass), m_datePrototype}};
    for (const Constructor& one : constructors) {
        one.functions->installConstructor(this, one.prototype);
        one.functions->installFunctions(this, one.prototype, 1);
    }
    for (std::size_t i = 0; i < m_errorClasses.size(); ++i)
        native(m_errorClasses[i])->installConstructor(this, m_errorPrototypes[i]);
    const auto global = [&](const char* text) { return m_global->find(name(text))->value.object; };
    installNumberConstants(global("Number"));
    installStringFunctions(this, global("String"));
    ESObject* math = mkobj(m_objectPrototype, m_mathClass.get());
    define(m_global, "Math", ESValue(math));
    native(m_mathClass)->installFunctions(this, math, 0);
    installMathConstants(math);
    native(m_globalClass)->installFunctions(this, m_global, 0);
    define(m_global, "NaN", ESValue(std::nan("")));
    define(m_global, "Infinity", ESValue(HUGE_VAL));
    define(m_global, "undefined", {});
}

ESValue ESContext::makeFunction(const QString& parameters, const QString& body)
{
    const Restored scope(m_frame.scope);
    m_frame.scope = nullptr;
    std::unique_ptr<ESCode> code;
    try {
        ESCompiler compiler(this);
        code = compiler.parseFunction(parameters, body);
    } catch (const ESSyntaxError& error) {
        throwException(ErrorKind::SyntaxError, error.message);
    }
    return exec(code.get());
}

// Objects

void ESContext::addChunk()
{
    m_memory.charge(ObjectsPerChunk * qsizetype(sizeof(ESObject)));
    m_chunks.push_back(std::make_unique<ESObject[]>(ObjectsPerChunk));
    ESObject* const objects = m_chunks.back().get();
    for (int i = ObjectsPerChunk; i-- > 0;) {
        objects[i].nextFree = m_free;
        m_free = &objects[i];
    }
}

ESObject* ESContext::allocate()
{
    if (!m_free)
        addChunk();
    ESObject* object = m_free;
    m_free = object->nextFree;
    object->nextFree = nullptr;
    return object;
}

ESObject* ESContext::mkobj(ESObject* prototype, ESClass* objectClass, const ESValue& primitive)
{
    ESObject* object = allocate();
    object->prototype = prototype;
    object->objectClass = objectClass;
    object->primitive = primitive;
    return object;
}

ESObject* ESContext::newArray(int count, const ESValue* values)
{
    ESObject* array = mkobj(m_arrayPrototype, m_arrayClass.get());
    array->hasElements = true;
    m_memory.charge(count * qsizetype(sizeof(ESValue)));
    array->elements.assign(values, values + count);
    static ESString* const length = name("length");
    array->append(length, ESProperty::DontEnum | ESProperty::DontDelete, ESValue(double(count)));
    return array;
}

double ESContext::lengthOf(ESObject* array)
{
    constexpr double MostElements = 16'000'000;
    static ESString* const lengthName = name("length");
    const double length = toUint32(toNumber(getProperty(array, lengthName)));
    if (length > MostElements)
        throwException(ErrorKind::RangeError, u"array is too long"_s);
    return length;
}

std::vector<ESValue> ESContext::elementsOf(ESObject* array)
{
    std::vector<ESValue> elements(static_cast<std::size_t>(lengthOf(array)));
    for (std::size_t i = 0; i < elements.size(); ++i)
        elements[i] = getElement(array, double(i));
    return elements;
}

ESObject* ESContext::newFunction(ESCode* code)
{
    captureScope();
    ESObject* function = mkobj(m_functionPrototype, m_functionClass.get());
    m_closures.push_back(std::make_unique<ESClosure>(
        ESClosure{code->parameterCount, code->localCount, code, m_frame.scope}));
    function->callClosure = function->constructClosure = m_closures.back().get();
    static ESString* const length = name("length");
    static ESString* const prototypeName = name("prototype");
    static ESString* const constructor = name("constructor");
    function->append(length, 0, ESValue(double(code->parameterCount)));
    ESObject* prototype = newObject();
    prototype->append(constructor, ESProperty::DontEnum, ESValue(function));
    function->append(prototypeName, 0, ESValue(prototype));
    return function;
}

ESObject* ESContext::biinst(ESObject* holder, const Builtin& builtin, ESClass* objectClass)
{
    ESObject* function = mkobj(m_functionPrototype, objectClass, ESValue(name(builtin.fullName)));
    m_closures.push_back(
        std::make_unique<ESClosure>(ESClosure{builtin.length, 0, nullptr, nullptr}));
    function->callClosure = m_closures.back().get();
    function->nativeIndex = builtin.index;
    define(function, "length", ESValue(double(builtin.length)));
    define(holder, builtin.name, ESValue(function));
    return function;
}

ESObject* ESContext::mkbiobj(const Builtin& builtin, ESObject* prototype, ESClass* objectClass)
{
    ESObject* constructor = biinst(m_global, builtin, objectClass);
    constructor->constructClosure = constructor->callClosure;
    define(constructor, "prototype", ESValue(prototype));
    define(prototype, "constructor", ESValue(constructor), ESProperty::DontEnum);
    return constructor;
}

void ESContext::define(ESObject* object, const char* text, const ESValue& value, unsigned flags)
{
    ESString* const key = name(text);
    if (ESProperty* property = object->find(key))
        property->value = value;
    else
        object->append(key, flags, value);
}

int ESContext::globalSlot(ESString* name, unsigned flags)
{
    ESProperty* known = m_global->find(name);
    if (!known)
        known = &m_global->append(name, flags, {});
    return static_cast<int>(known - m_global->properties.data());
}

// Code of functions

std::vector<std::unique_ptr<ESCode>> ESContext::m_codeVector;
std::vector<int> ESContext::m_freeCodes;

int ESContext::registerFunctionCode(ESCode* code)
{
    if (m_freeCodes.empty()) {
        m_codeVector.emplace_back(code);
        return static_cast<int>(m_codeVector.size()) - 1;
    }
    const int index = m_freeCodes.back();
    m_freeCodes.pop_back();
    m_codeVector[static_cast<std::size_t>(index)].reset(code);
    return index;
}

void ESContext::releaseFunctionCode(int index)
{
    m_codeVector[static_cast<std::size_t>(index)].reset();
    m_freeCodes.push_back(index);
}

int ESContext::adoptFunctionCode(ESCode* code)
{
    m_codes.push_back(registerFunctionCode(code));
    return m_codes.back();
}

ESCode* ESContext::functionCode(int index)
{
    return m_codeVector[static_cast<std::size_t>(index)].get();
}

// Running

ESCompletion ESContext::eval(const QString& source)
{
    const Restored frame(m_frame);
    const Restored frames(m_frames);
    const Restored accumulator(m_a);
    const int stackPointer = m_sp;
    const std::size_t handlers = m_handlers.size();
    if (m_frames == 0)
        m_stopped = false;
    ESCompletion completion;
    std::unique_ptr<ESCode> code;
    try {
        try {
            ESCompiler compiler(this);
            compiler.setSource(source);
            code = compiler.parse();
        } catch (const ESSyntaxError& error) {
            m_line = error.line;
            throwException(ErrorKind::SyntaxError, error.message);
        }
        completion.value = exec(code.get());
    } catch (const ESException& exception) {
        completion.kind = ESCompletion::Exception;
        completion.value = exception.value();
    } catch (...) {
        m_sp = stackPointer;
        m_handlers.resize(handlers);
        throw;
    }
    m_sp = stackPointer;
    m_handlers.resize(handlers);
    return completion;
}

ESValue ESContext::exec(ESCode* code)
{
    const int stackPointer = m_sp;
    estmt(code);
    const ESValue result = m_a;
    m_sp = stackPointer;
    return result;
}

ESValue ESContext::call(ESObject* function, ESObject* thisObject, int argc, const ESValue* argv)
{
    if (!function || !function->isCallable())
        throwTypeError(u"can only call function objects"_s);
    const Restored accumulator(m_a);
    const int stackPointer = m_sp;
    push(m_a);
    for (int i = 0; i < argc; ++i)
        push(argv[i]);
    callOnStack(function, thisObject, argc);
    const ESValue result = m_a;
    m_sp = stackPointer;
    return result;
}

void ESContext::callOnStack(ESObject* function, ESObject* thisObject, int argc)
{
    const ESClosure& closure = *function->callClosure;
    const int passed = argc;
    for (; argc < closure.parameterCount; ++argc)
        push({});
    if (function->nativeIndex >= 0) {
        if (m_frames >= MaximumNesting)
            throw ESFatalError(u"virtual machine stack too small"_s);
        // There is always room for the result.
        if (argc == 0)
            push({});
        const int base = m_sp - std::max(argc, 1);
        ESValue* const argv = &m_stack[static_cast<std::size_t>(base)];
        const Restored frames(m_frames);
        ++m_frames;
        function->objectClass->call(this, function, thisObject, passed, argv);
        m_a = *argv;
        m_sp = base;
        return;
    }
    const Restored frame(m_frame);
    const int base = m_sp - argc;
    m_frame = {closure.scope, thisObject, function, base, argc, passed};
    ESObject* const node = enterFrame(closure, argc);
    estmt(closure.code);
    m_sp = base;
    if (node && !node->captured)
        releaseScope(node);
}

/// Calls a method of a value by its name.
void ESContext::callMethod(const ESValue& value, ESString* key, int argc)
{
    ESObject* const object = toObject(value);
    const ESValue method = object->objectClass->get(this, object, key);
    if (!method.isObject() || !method.object->isCallable())
        throwTypeError(u"not a function object"_s);
    callOnStack(method.object, object, argc);
    // The functions of String and Number don't keep what they are called on.
    if (!value.isObject() && method.object->nativeIndex >= 0
        && method.object->objectClass == object->objectClass)
        release(object);
}

/// Makes the scope of a function with captured variables; null for one without.
ESObject* ESContext::enterFrame(const ESClosure& closure, int argc)
{
    const ESCode& code = *closure.code;
    if (!code.needFrame) {
        for (int i = 0; i < code.localCount; ++i)
            push({});
        return nullptr;
    }
    ESObject* activation = mkobj(nullptr, m_activationClass.get());
    activation->properties.reserve(code.variables.size() + std::size_t(argc));
    const auto parameters = static_cast<std::size_t>(code.parameterCount);
    for (std::size_t i = 0; i < parameters; ++i)
        activation->append(code.variables[i].name, code.variables[i].flags,
                           m_stack[static_cast<std::size_t>(m_frame.base) + i]);
    static ESString* const unnamed = ESStringPool::intern(QString());
    for (int i = code.parameterCount; i < argc; ++i)
        activation->properties.push_back(
            {unnamed, ESProperty::DontEnum, m_stack[static_cast<std::size_t>(m_frame.base + i)]});
    for (std::size_t i = parameters; i < code.variables.size(); ++i)
        activation->append(code.variables[i].name, code.variables[i].flags, {});
    m_frame.scope = scopeNode(activation);
    return m_frame.scope;
}

void ESContext::captureScope()
{
    for (ESObject* node = m_frame.scope; node && !node->captured; node = node->prototype)
        node->captured = true;
}

void ESContext::captureHolder(const ESObject* holder)
{
    for (ESObject* node = m_frame.scope; node; node = node->prototype)
        if (node->primitive.object == holder)
            node->captured = true;
}

/// The scope of a function that has ended, and that nothing refers to.
void ESContext::releaseScope(ESObject* node)
{
    release(node->primitive.object);
    release(node);
}

ESObject* ESContext::scopeNode(ESObject* object)
{
    return mkobj(m_frame.scope, nullptr, ESValue(object));
}

ESObject* ESContext::construct(ESObject* function, int argc, ESValue* argv)
{
    if (function->nativeIndex >= 0)
        return function->objectClass->construct(this, function, argc, argv);
    static ESString* const prototypeName = name("prototype");
    const ESValue prototype = function->objectClass->get(this, function, prototypeName);
    ESObject* made =
        mkobj(prototype.isObject() ? prototype.object : m_objectPrototype, m_plainClass.get());
    const ESValue result = call(function, made, argc, argv);
    return result.isObject() ? result.object : made;
}

// Failures

ESObject* ESContext::makeError(ErrorKind kind, const QString& message)
{
    ESObject* error =
        mkobj(errorPrototype(kind), m_errorClasses[static_cast<std::size_t>(kind)].get());
    define(error, "message", ESValue(ESStringPool::intern(message)));
    return error;
}

void ESContext::throwException(ErrorKind kind, const QString& text)
{
    throw ESException(ESValue(makeError(kind, u"line %1: %2"_s.arg(m_line).arg(text))));
}

QString ESContext::messageOf(const ESCompletion& completion)
{
    static ESString* const message = name("message");
    // A script may have replaced what makes a text of its values.
    try {
        if (iserrorobj(completion.value))
            return toString(getProperty(completion.value, message));
        return u"Uncaught exception: "_s + toString(completion.value);
    } catch (const ESException&) {
        return u"Uncaught exception"_s;
    }
}

// Scopes

bool ESContext::dynamicGet(ESString* key, ESValue& value, ESObject*& holder)
{
    for (ESObject* node = m_frame.scope; node; node = node->prototype) {
        ESObject* const object = node->primitive.object;
        for (ESObject* at = object; at; at = at->prototype)
            if (at->find(key) || (key->element >= 0 && at->element(key->element))) {
                holder = object;
                value = object->objectClass->get(this, object, key);
                return true;
            }
    }
    holder = m_global;
    value = m_global->objectClass->get(this, m_global, key);
    return m_global->find(key) != nullptr;
}

void ESContext::dynamicPut(ESString* key, const ESValue& value)
{
    for (ESObject* node = m_frame.scope; node; node = node->prototype) {
        ESObject* const object = node->primitive.object;
        for (ESObject* at = object; at; at = at->prototype)
            if (at->find(key) || (key->element >= 0 && at->element(key->element))) {
                object->objectClass->put(this, object, key, value);
                return;
            }
    }
    m_global->objectClass->put(this, m_global, key, value);
}

bool ESContext::dynamicDelete(ESString* key)
{
    for (ESObject* node = m_frame.scope; node; node = node->prototype)
        if (node->primitive.object->find(key))
            return deleteProperty(node->primitive.object, key);
    return false;
}

bool ESContext::deleteProperty(ESObject* object, ESString* key)
{
    if (key->element >= 0)
        if (ESValue* element = object->element(key->element)) {
            *element = ESValue::hole();
            return true;
        }
    ESProperty* property = object->find(key);
    if (!property)
        return true;
    if (property->flags & ESProperty::DontDelete)
        return false;
    object->erase(property);
    return true;
}

ESValue ESContext::getProperty(const ESValue& value, ESString* key)
{
    if (value.isString()) {
        static ESString* const length = name("length");
        if (key == length)
            return double(viewOf(value).size());
        return m_stringPrototype->objectClass->get(this, m_stringPrototype, key);
    }
    ESObject* const object = toObject(value);
    return object->objectClass->get(this, object, key);
}

ESValue ESContext::getElement(const ESValue& value, const ESValue& key)
{
    if (value.isObject() && value.object->hasElements && key.isNumber())
        if (const ESValue* element = value.object->element(elementIndex(key.number)))
            return *element;
    return getProperty(value, toEString(key));
}

void ESContext::putElement(const ESValue& value, const ESValue& key, const ESValue& put)
{
    if (value.isObject() && value.object->hasElements && key.isNumber()) {
        const int index = elementIndex(key.number);
        if (ESValue* element = value.object->element(index)) {
            *element = put;
            return;
        }
        if (index >= 0 && ESArrayClass::append(this, value.object, index, put))
            return;
    }
    ESObject* const object = toObject(value);
    object->objectClass->put(this, object, toEString(key), put);
}

bool ESContext::isPrototypeOf(const ESObject* object, const ESValue& value)
{
    if (!value.isObject())
        return false;
    for (const ESObject* at = value.object->prototype; at; at = at->prototype)
        if (at == object)
            return true;
    return false;
}
