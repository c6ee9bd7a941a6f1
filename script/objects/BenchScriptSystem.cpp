#include "script/objects/BenchScriptSystem.h"

#include "base/HException.h"
#include "base/QTx.h"
#include "script/es/ESContext.h"
#include "script/es/ESErrors.h"
#include "script/host/BuiltinScript.h"

#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString RuntimeError = u"Script Runtime Error"_s;

QStringList resultsOf(ESContext& context, const ESObject& object)
{
    QStringList results;
    for (const ESValue& element : object.elements)
        results << context.toString(element);
    if (object.hasElements)
        return results;
    for (const ESProperty& property : object.properties)
        if (property.name && !(property.flags & ESProperty::DontEnum))
            results << property.name->text;
    return results;
}

} // namespace

class BenchScriptSystem::Context : public ESContext {
public:
    Context(BenchScriptSystem& system, bool processEvents)
        : m_system(system),
          m_processEvents(processEvents)
    {
    }

    bool carryOnExecuting() override
    {
        if (m_processEvents)
            m_system.m_host.processEvents();
        return !m_system.m_stopRequested;
    }
    void loadFailed(const QString& path, const ESCompletion& completion) override
    {
        m_system.m_host.showMessage(RuntimeError, path + u": "_s + messageOf(completion));
    }

private:
    BenchScriptSystem& m_system;
    const bool m_processEvents;
};

bool BenchScriptSystem::execute(const QString& text, bool processEvents, QStringList& results)
{
    if (m_executing) {
        m_host.showMessage(u"Error"_s, u"Script already running."_s);
        return false;
    }
    m_executing = true;
    m_stopRequested = false;
    m_host.scriptRunning(true);
    const auto ended = qScopeGuard([this] {
        m_executing = false;
        m_host.scriptRunning(false);
    });
    try {
        return run(text, processEvents, results);
    } catch (const ESFatalError& error) {
        m_host.showMessage(u"Script Fatal Error"_s, error.text());
    } catch (const ScriptFailure& failure) {
        m_host.showMessage(RuntimeError, failure.text());
    } catch (const HException& failure) {
        m_host.showMessage(RuntimeError, QString::fromStdString(failure.message()));
    }
    return false;
}

bool BenchScriptSystem::run(const QString& text, bool processEvents, QStringList& results)
{
    Context context(*this, processEvents);
    context.addToLoadPath(QTx::rootDirectory() + u"/bin"_s);
    m_host.installScriptObjects(&context);
    const ESCompletion completion = context.eval(text);
    if (completion.kind == ESCompletion::Exception) {
        m_host.showMessage(RuntimeError, context.messageOf(completion));
        return false;
    }
    if (completion.value.isObject())
        results = resultsOf(context, *completion.value.object);
    return true;
}

QStringList BenchScriptSystem::executeWithResult(const QString& text)
{
    QStringList results;
    return execute(text, false, results) ? results : QStringList();
}
