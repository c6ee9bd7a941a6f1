#pragma once

#include "script/es/ESContext.h"

#include <span>

/// What a native function is called with.
struct ESCall {
    ESContext& context;
    ESObject* function;
    ESObject* thisObject;
    int argc;
    ESValue* argv;

    ESValue argument(int index) const { return ESContext::biarg(argc, argv, index); }
    double number(int index) const { return context.toNumber(argument(index)); }
    QString text(int index) const { return context.toString(argument(index)); }
    double integer(int index, double fallback) const
    {
        const ESValue value = argument(index);
        return value.is(ESValue::Undefined) ? fallback
                                            : ESContext::toInteger(context.toNumber(value));
    }
    /// A text as the result of a function.
    ESValue string(const QString& text) const { return context.text(text); }
};

/// A native function of a class's table.
struct ESNative {
    const char* name;
    int length;
    ESValue (*run)(const ESCall& call);
};

/// A standard object: its constructor is the first function of the table, if it has one; the rest
/// are those of its prototype, or of the object itself.
class ESNativeClass : public ESClass {
public:
    ESNativeClass(const char* name, std::span<const ESNative> functions)
        : ESClass(QLatin1String(name)),
          m_name(name),
          m_functions(functions)
    {
    }

    /// Puts the functions on the holder, from that one of the table on.
    void installFunctions(ESContext* context, ESObject* holder, std::size_t from);
    /// Makes the constructor a property of the global object, and links it with the prototype.
    ESObject* installConstructor(ESContext* context, ESObject* prototype);

    void call(ESContext* context, ESObject* function, ESObject* thisObject, int argc,
              ESValue* argv) override;
    ESObject* construct(ESContext* context, ESObject* function, int argc, ESValue* argv) override;

protected:
    /// What `new` makes, by default what the constructor gives as an object.
    virtual ESObject* make(const ESCall& call);

private:
    const char* m_name;
    std::span<const ESNative> m_functions;
};
