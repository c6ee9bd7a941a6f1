#pragma once

#include "script/es/ESNativeClass.h"

#include <array>
#include <vector>

class ScriptSystem;

/// The threads of a program's own operating system, as a script of the project finds them: queues
/// of rows.
class ThreadList {
public:
    /// Texts, in the columns' order.
    using Row = std::array<QString, 4>;
    struct Queue {
        QString name; ///< empty for rows that came ahead of the first queue
        std::vector<Row> rows;
    };

    const std::vector<Queue>& queues() const { return m_queues; }
    void clear() { m_queues.clear(); }
    void newqueue(const QString& name) { m_queues.push_back({name, {}}); }
    void add(const Row& row);
    /// Empties the list, and has the script fill it. False if the script fails.
    bool evaluateScript(ScriptSystem& system, const QString& text);

private:
    std::vector<Queue> m_queues;
};

/// The global object `Threads`. Must outlive its contexts.
class ThreadsScriptObject : public ESNativeClass {
public:
    /// The list outlives this object.
    explicit ThreadsScriptObject(ThreadList& list);

    void install(ESContext* context);
    ThreadList& list() const { return m_list; }

private:
    ThreadList& m_list;
};
