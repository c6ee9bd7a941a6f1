#pragma once

#include <QString>
#include <QStringList>

/// Runs texts of JavaScript with the objects of the environment; one at a time.
class ScriptSystem {
public:
    virtual ~ScriptSystem() = default;

    /// True while a script runs.
    virtual bool executing() const = 0;
    virtual void requestStop() = 0;
    virtual bool stopRequested() const = 0;

    /// False if the script fails, which has then been reported. With `processEvents` the windows
    /// live while it runs.
    virtual bool execute(const QString& text, bool processEvents, QStringList& results) = 0;
    bool execute(const QString& text, bool processEvents = true)
    {
        QStringList results;
        return execute(text, processEvents, results);
    }
    /// The elements of the list that the script ends with; none if it fails.
    virtual QStringList executeWithResult(const QString& text) = 0;
};

/// The one in use; null until its owner sets it, and then no script runs.
extern ScriptSystem* scriptSystem;
