#include "script/objects/ThreadsScriptObject.h"

#include "target/script/ScriptSystem.h"

namespace {

ThreadList& listOf(const ESCall& call)
{
    return static_cast<ThreadsScriptObject*>(call.function->objectClass)->list();
}

ESValue clear(const ESCall& call)
{
    listOf(call).clear();
    return {};
}

ESValue newqueue(const ESCall& call)
{
    listOf(call).newqueue(call.text(0));
    return {};
}

ESValue add(const ESCall& call)
{
    ThreadList::Row row;
    for (int i = 0; i < std::min(call.argc, int(row.size())); ++i)
        row[std::size_t(i)] = call.text(i);
    listOf(call).add(row);
    return {};
}

constexpr ESNative ThreadsFunctions[] = {
    {"clear", 0, clear}, {"newqueue", 1, newqueue}, {"add", 4, add}};

} // namespace

void ThreadList::add(const Row& row)
{
    if (m_queues.empty())
        newqueue(QString());
    m_queues.back().rows.push_back(row);
}

bool ThreadList::evaluateScript(ScriptSystem& system, const QString& text)
{
    clear();
    return system.execute(text, false);
}

ThreadsScriptObject::ThreadsScriptObject(ThreadList& list)
    : ESNativeClass("Threads", ThreadsFunctions),
      m_list(list)
{
}

void ThreadsScriptObject::install(ESContext* context)
{
    ESObject* const object = context->newObject();
    object->objectClass = this;
    installFunctions(context, object, 0);
    ESContext::define(context->global(), "Threads", ESValue(object));
}
