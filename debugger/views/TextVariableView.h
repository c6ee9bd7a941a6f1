#pragma once

#include "debugger/interface/VariableListBuilder.h"

#include <vector>

/// Makes the text of a tool tip from a value: "node = {value = 3, next = 0x0204}". Arrays are cut
/// off at the number of elements that the user's settings say, and everything after some fields.
class TextVariableView : public VariableListBuilder {
public:
    /// Of all that was added, one line each.
    const QString& text() const { return m_text; }

    pointerEvalMode getPointerEvalMode(const QString& name, const QString& expression,
                                       unsigned size, unsigned& count) override;
    pointerEvalMode getArrayEvalMode(const QString& name, const QString& expression,
                                     unsigned& count) override;
    pointerEvalMode getStructEvalMode(const QString& name, const QString& expression) override;
    void addPrimitive(const QString& name, const QString& expression, const ExpressionType& value,
                      const QString& type, MarkerType* marker) override;
    void* beginObject(const QString& name, const QString& expression, const ExpressionType& value,
                      const QString& type, MarkerType* marker, unsigned size) override;
    void endObject(void* handle) override;
    void* beginArray(const QString& name, const QString& expression, const ExpressionType& value,
                     const QString& type, MarkerType* marker, unsigned size) override;
    void endArray(void* handle) override { endObject(handle); }
    void clear() override;

private:
    struct Level {
        bool isArray;
        bool isCut; ///< there are more elements
        bool isEmpty = true;
    };

    bool isFull() const;
    bool beginEntry(const QString& name);
    void* begin(const QString& name, bool isArray);

    QString m_text;
    std::vector<Level> m_open;
    bool m_isCut = false; ///< the next array has more elements than are shown
};
