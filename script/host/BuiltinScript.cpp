#include "script/host/BuiltinScript.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

// WScript

ESValue echo(const ESCall& call)
{
    static_cast<BuiltinScript*>(call.function->objectClass)->echo(call.text(0));
    return {};
}

constexpr ESNative ScriptFunctions[] = {{"Echo", 0, echo}};

// Bench

/// Sleeps in pieces, so that the host can end the script meanwhile.
ESValue delay(const ESCall& call)
{
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::duration<double, std::milli>;
    constexpr double LongestDelay = 24 * 3600 * 1000.0;
    constexpr Milliseconds Piece(20);
    const double wanted = call.integer(0, 0);
    const auto start = Clock::now();
    for (;;) {
        const Milliseconds left =
            Milliseconds(std::clamp(wanted, 0.0, LongestDelay)) - (Clock::now() - start);
        if (left.count() <= 0 || !call.context.carryOnExecuting())
            return {};
        std::this_thread::sleep_for(std::min(left, Piece));
    }
}

ESValue setError(const ESCall& call) { throw ScriptFailure(call.text(0)); }

constexpr ESNative BenchFunctions[] = {{"Delay", 1, delay}, {"SetError", 1, setError}};

/// A global object of the class with its functions.
ESObject* installObject(ESContext* context, const char* name, ESNativeClass* objectClass)
{
    ESObject* const object = context->newObject();
    object->objectClass = objectClass;
    objectClass->installFunctions(context, object, 0);
    ESContext::define(context->global(), name, ESValue(object));
    return object;
}

} // namespace

BuiltinScript::BuiltinScript(Echo echo)
    : ESNativeClass("Script", ScriptFunctions),
      m_echo(std::move(echo))
{
}

void BuiltinScript::install(ESContext* context, const QStringList& arguments)
{
    ESObject* const object = installObject(context, "WScript", this);
    std::vector<ESValue> values;
    for (const QString& argument : arguments)
        values.push_back(context->text(argument));
    ESContext::define(object, "Arguments",
                      context->newArray(static_cast<int>(values.size()), values.data()));
}

BenchScript::BenchScript() : ESNativeClass("Bench", BenchFunctions) { }

void BenchScript::install(ESContext* context) { installObject(context, "Bench", this); }
