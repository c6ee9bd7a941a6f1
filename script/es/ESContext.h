#pragma once

#include "script/es/ESClass.h"
#include "script/es/ESErrors.h"
#include "script/es/ESText.h"

#include <QStringList>

#include <array>
#include <memory>
#include <span>
#include <vector>

/// A native function, as it is installed.
struct Builtin {
    const char* name;     ///< of the property
    const char* fullName; ///< such as Object.prototype.toString
    int length;
    bool isConstructor;
    int index; ///< what the class's call switches on
};

/// One running instance of the script engine: an accumulator machine with a stack of values, a
/// chain of scopes, and a heap of objects that live until the context dies. Contexts of one process
/// share strings and the code of functions; all are used from one thread.
class ESContext {
public:
    ESContext();
    virtual ~ESContext();
    ESContext(const ESContext&) = delete;
    ESContext& operator=(const ESContext&) = delete;

    /// Asked between instructions, whenever pollSoon was called and else now and then; false ends
    /// the script.
    virtual bool carryOnExecuting() { return true; }
    /// Has carryOnExecuting asked before the next instruction. May be called at any time.
    void pollSoon() { m_pollCountdown = 1; }

    /// Compiles and runs a text. What the script throws becomes a completion; ESFatalError passes.
    /// The context can be used again after either.
    ESCompletion eval(const QString& source);
    ESValue exec(ESCode* code);
    /// Calls a function from the host. The result of the call, or what it throws as ESException.
    ESValue call(ESObject* function, ESObject* thisObject, int argc, const ESValue* argv);
    ESObject* construct(ESObject* function, int argc, ESValue* argv);

    ESObject* global() { return m_global; }
    /// The slot of a global variable, made if there is none of that name.
    int globalSlot(ESString* name, unsigned flags);

    ESMemory& memory() { return m_memory; }

    // Objects
    ESObject* mkobj(ESObject* prototype, ESClass* objectClass, const ESValue& primitive = {});
    ESObject* newObject() { return mkobj(m_objectPrototype, m_plainClass.get()); }
    ESObject* newArray(int count, const ESValue* values);
    ESObject* newDate(double time)
    {
        return mkobj(m_datePrototype, m_dateClass.get(), ESValue(time));
    }
    ESObject* newFunction(ESCode* code);
    /// A native function on a holder.
    ESObject* biinst(ESObject* holder, const Builtin& builtin, ESClass* objectClass);
    /// A native constructor on the global object, with its prototype.
    ESObject* mkbiobj(const Builtin& builtin, ESObject* prototype, ESClass* objectClass);
    static ESValue biarg(int argc, const ESValue* argv, int index)
    {
        return index < argc ? argv[index] : ESValue();
    }
    static void define(ESObject* object, const char* name, const ESValue& value,
                       unsigned flags = 0);

    // Conversions
    static bool toBoolean(const ESValue& value);
    double toNumber(const ESValue& value)
    {
        return value.isNumber() ? value.number : hardToNumber(value);
    }
    double hardToNumber(const ESValue& value);
    static qint32 toInt32(double number);
    static quint32 toUint32(double number);
    static quint16 toUint16(double number) { return quint16(toUint32(number)); }
    static double toInteger(double number);
    QString toString(const ESValue& value, int radix = 10);
    /// The interned form, as it names a property.
    ESString* toEString(const ESValue& value);
    ESValue toPrimitive(const ESValue& value, int hint);
    ESObject* toObject(const ESValue& value)
    {
        return value.isObject() ? value.object : hardToObject(value);
    }
    ESObject* hardToObject(const ESValue& value);
    static bool identical(const ESValue& left, const ESValue& right);
    bool equal(const ESValue& left, const ESValue& right);
    ESValue add(const ESValue& left, const ESValue& right);
    bool less(const ESValue& left, const ESValue& right, bool orEqual);
    ESValue text(const QString& text) { return ESValue(m_texts.make(text)); }
    static QStringView viewOf(const ESValue& string);
    static bool isPrototypeOf(const ESObject* object, const ESValue& value);

    // What a value is
    static bool isnull(const ESValue& value) { return value.is(ESValue::Null); }
    static bool isstr(const ESValue& value) { return value.isString(); }
    static bool isnum(const ESValue& value) { return value.isNumber(); }
    static bool isobj(const ESValue& value) { return value.isObject(); }
    bool isarray(const ESValue& value) const { return isOf(value, m_arrayClass); }
    bool isstrobj(const ESValue& value) const { return isOf(value, m_stringClass); }
    bool isnumobj(const ESValue& value) const
    {
        return isOf(value, m_numberClass) && value.object->primitive.isNumber();
    }
    bool isboolobj(const ESValue& value) const
    {
        return isOf(value, m_booleanClass) && value.object->primitive.is(ESValue::Boolean);
    }
    bool isdateobj(const ESValue& value) const
    {
        return isOf(value, m_dateClass) && value.object->primitive.isNumber();
    }
    bool iserrorobj(const ESValue& value) const
    {
        return isPrototypeOf(errorPrototype(ErrorKind::Error), value);
    }

    /// The length of an object as of an array. A RangeError if it is longer than any function walks
    /// over.
    double lengthOf(ESObject* array);
    /// The elements of an array up to its length, missing ones as undefined.
    std::vector<ESValue> elementsOf(ESObject* array);

    // Arrays of the host. Each element is taken by toInt32; anything but an array is a TypeError
    // "array argument expected".
    std::vector<quint8> toByteArray(const ESValue& value) { return toArray<quint8>(value); }
    std::vector<quint16> toUint16Array(const ESValue& value) { return toArray<quint16>(value); }
    std::vector<quint32> toUint32Array(const ESValue& value) { return toArray<quint32>(value); }
    ESValue fromByteArray(std::span<const quint8> values) { return fromArray(values); }
    ESValue fromUint16Array(std::span<const quint16> values) { return fromArray(values); }
    ESValue fromUint32Array(std::span<const quint32> values) { return fromArray(values); }

    // Properties
    ESValue getProperty(const ESValue& object, ESString* name);
    ESValue getElement(const ESValue& object, const ESValue& key);
    void putElement(const ESValue& object, const ESValue& key, const ESValue& value);
    bool deleteProperty(ESObject* object, ESString* name);
    bool dynamicGet(ESString* name, ESValue& value, ESObject*& holder);
    void dynamicPut(ESString* name, const ESValue& value);
    bool dynamicDelete(ESString* name);

    enum class ErrorKind { Error, RangeError, ReferenceError, SyntaxError, TypeError, EvalError };
    /// Throws an error whose message is "line N: " and the text.
    [[noreturn]] void throwException(ErrorKind kind, const QString& text);
    [[noreturn]] void throwTypeError(const QString& text)
    {
        throwException(ErrorKind::TypeError, text);
    }
    ESObject* errorPrototype(ErrorKind kind) const
    {
        return m_errorPrototypes[static_cast<std::size_t>(kind)];
    }
    ESObject* makeError(ErrorKind kind, const QString& message);
    int line() const { return m_line; }

    /// A function of the global scope from the texts of its parameters and body.
    ESValue makeFunction(const QString& parameters, const QString& body);
    /// Where `load` looks for files.
    const QStringList& loadPath() const { return m_loadPath; }
    /// Told of a file whose text `load` ran and that ended by an exception. The script goes on.
    virtual void loadFailed(const QString& path, const ESCompletion& completion)
    {
        Q_UNUSED(path)
        Q_UNUSED(completion)
    }
    /// What a user is told of an exception: the message of an Error, else "Uncaught exception: "
    /// and the text of the value.
    QString messageOf(const ESCompletion& completion);
    void addToLoadPath(const QString& path) { m_loadPath << path; }

    /// Takes a function's code over, for the life of this context, and numbers it.
    int adoptFunctionCode(ESCode* code);
    /// Takes a function's code over until it is released. The numbers are those of the process;
    /// released ones are given again.
    static int registerFunctionCode(ESCode* code);
    static void releaseFunctionCode(int index);
    static ESCode* functionCode(int index);
    /// The text of a number, as it names a property.
    static ESString* numberName(double number);
    /// The printed form: six significant digits, or a whole number in the radix.
    static QString numberText(double number, int radix);

protected:
    friend class ESMachine;

    static constexpr int StackSize = 1024;
    /// Instructions between two polls.
    static constexpr int PollInterval = 1024;
    /// Calls within calls; each takes one of C++ as well.
    static constexpr int MaximumNesting = 1100;

    /// What throwing puts back.
    struct Handler {
        int target;
        int stackPointer;
        ESObject* scope;
        ESValue accumulator;
    };

    /// What a running function refers to.
    struct Frame {
        ESObject* scope = nullptr;
        ESObject* thisObject = nullptr;
        ESObject* callee = nullptr;
        int base = 0;   ///< of the arguments on the stack
        int count = 0;  ///< of the arguments, those that were missing included
        int passed = 0; ///< by the caller
    };

    static std::vector<std::unique_ptr<ESCode>> m_codeVector;
    static std::vector<int> m_freeCodes;
    static bool isOf(const ESValue& value, const std::unique_ptr<ESClass>& objectClass)
    {
        return value.isObject() && value.object->objectClass == objectClass.get()
            && !value.object->isCallable();
    }
    template <typename Element> std::vector<Element> toArray(const ESValue& array)
    {
        if (!isarray(array))
            throwTypeError(QStringLiteral("array argument expected"));
        std::vector<Element> result;
        for (const ESValue& value : elementsOf(array.object))
            result.push_back(static_cast<Element>(toInt32(toNumber(value))));
        return result;
    }
    template <typename Element> ESValue fromArray(std::span<const Element> values)
    {
        const std::vector<ESValue> elements(values.begin(), values.end());
        return newArray(static_cast<int>(elements.size()), elements.data());
    }
    void addChunk();
    ESObject* allocate();
    void release(ESObject* object)
    {
        object->clear();
        object->nextFree = m_free;
        m_free = object;
    }
    /// Has all scopes of the running function outlive it.
    void captureScope();
    /// Has a scope object outlive its function: one that becomes the `this` of a call.
    void captureHolder(const ESObject* holder);
    void releaseScope(ESObject* node);
    void callMethod(const ESValue& value, ESString* name, int argc);
    void estmt(ESCode* code);
    /// A call whose arguments are on the stack; the result is in the accumulator.
    void callOnStack(ESObject* function, ESObject* thisObject, int argc);
    ESObject* enterFrame(const ESClosure& closure, int argc);
    void enumerate();
    bool next();
    ESObject* scopeNode(ESObject* object);
    void createPrototypes();
    void installLibrary();
    void push(const ESValue& value)
    {
        if (m_sp == StackSize)
            throw ESFatalError(QStringLiteral("virtual machine stack too small"));
        m_stack[static_cast<std::size_t>(m_sp++)] = value;
    }
    ESValue& top(int below = 0) { return m_stack[static_cast<std::size_t>(m_sp - 1 - below)]; }
    ESValue pop() { return m_stack[static_cast<std::size_t>(--m_sp)]; }

    ESValue m_a;
    std::array<ESValue, StackSize> m_stack;
    int m_sp = 0;
    Frame m_frame;
    ESObject* m_global = nullptr;
    int m_line = 0;
    int m_frames = 0; ///< running estmt
    volatile int m_pollCountdown = PollInterval;
    bool m_stopped = false;
    std::vector<Handler> m_handlers;

    ESObject* m_objectPrototype = nullptr;
    ESObject* m_functionPrototype = nullptr;
    ESObject* m_arrayPrototype = nullptr;
    ESObject* m_stringPrototype = nullptr;
    ESObject* m_numberPrototype = nullptr;
    ESObject* m_booleanPrototype = nullptr;
    ESObject* m_datePrototype = nullptr;
    std::array<ESObject*, 6> m_errorPrototypes = {};
    std::unique_ptr<ESClass> m_plainClass;
    std::unique_ptr<ESClass> m_activationClass;
    std::unique_ptr<ESClass> m_functionClass;
    std::unique_ptr<ESClass> m_arrayClass;
    std::unique_ptr<ESClass> m_arrayFunctions;
    std::unique_ptr<ESClass> m_stringClass;
    std::unique_ptr<ESClass> m_numberClass;
    std::unique_ptr<ESClass> m_booleanClass;
    std::unique_ptr<ESClass> m_mathClass;
    std::unique_ptr<ESClass> m_globalClass;
    std::unique_ptr<ESClass> m_dateClass;
    std::array<std::unique_ptr<ESClass>, 6> m_errorClasses;
    QStringList m_loadPath;

    ESMemory m_memory;
    ESTexts m_texts{m_memory};
    std::vector<std::unique_ptr<ESObject[]>> m_chunks;
    std::vector<std::unique_ptr<ESClosure>> m_closures;
    std::vector<int> m_codes; ///< of functions that this context compiled
    ESObject* m_free = nullptr;
};
