#pragma once

#include "debugger/interface/VariableListBuilder.h"
#include "script/es/ESContext.h"

#include <vector>

/// Makes values of a script from what the debugger finds: numbers, texts, booleans, arrays, and
/// objects by the names of their fields. Pointers are numbers.
class JavaScriptVariableView : public VariableListBuilder {
public:
    /// The context must outlive this object.
    explicit JavaScriptVariableView(ESContext* context);

    /// What was added at the top: an object of all, by name.
    ESObject* all() const { return m_open.front().object; }
    /// The last value that was added at the top; undefined if there is none.
    const ESValue& value() const { return m_last; }

    void addPrimitive(const QString& name, const QString& expression, const ExpressionType& value,
                      const QString& type, MarkerType* marker) override;
    void* beginObject(const QString& name, const QString& expression, const ExpressionType& value,
                      const QString& type, MarkerType* marker, unsigned size) override;
    void endObject(void* handle) override;
    void* beginArray(const QString& name, const QString& expression, const ExpressionType& value,
                     const QString& type, MarkerType* marker, unsigned size) override;
    void endArray(void* handle) override { endObject(handle); }

    static ESValue toScript(ESContext* context, const ExpressionType& value);

private:
    struct Open {
        ESObject* object;
        int elements = -1; ///< of an array, so far
    };

    void add(const QString& name, const ESValue& value);

    ESContext* m_context;
    std::vector<Open> m_open;
    ESValue m_last;
};
