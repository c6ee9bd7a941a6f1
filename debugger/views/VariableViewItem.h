#pragma once

#include "base/Path.h"
#include "debugger/expressions/ExpressionType.h"
#include "debugger/expressions/MarkerType.h"
#include "debugger/views/ValueFormat.h"

#include <QHash>

#include <memory>
#include <vector>

/// A row of a data view, with the rows below it. Owned by its parent.
class VariableViewItem {
public:
    enum State {
        Unchanged,
        Changed,
        Invalid, ///< not reported since the last update
        Message, ///< a text in place of a value
    };
    enum Column { NameColumn, ValueColumn, TypeColumn };

    /// The background style of a value that has changed.
    static constexpr unsigned ChangedStyle = 0xF07;
    static constexpr unsigned NoStyle = 0;

    VariableViewItem(const QString& name, const QString& expression);
    VariableViewItem(const VariableViewItem&) = delete;
    VariableViewItem& operator=(const VariableViewItem&) = delete;

    State state() const { return m_state; }
    unsigned background(Column column) const
    {
        return column == ValueColumn ? m_valueStyle : NoStyle;
    }
    QString text(Column column) const;
    const QString& name() const { return m_name; }
    /// Gives the value when it is evaluated.
    const QString& expression() const { return m_expression; }
    const QString& type() const { return m_type; }
    const ExpressionType& value() const { return m_value; }
    /// The value before the last change; undefined if there was none.
    const ExpressionType& previousValue() const { return m_previousValue; }
    /// Where the value lies; null for one that lies nowhere.
    const MarkerType* marker() const { return m_marker.get(); }
    /// Of the value, or of all elements or fields.
    unsigned sizeInBytes() const { return m_sizeInBytes; }
    unsigned sizeInBits() const { return m_sizeInBits; }
    /// A DisplayMode.
    int radix() const { return m_radix; }
    /// How many times rows have been made anew since this one was last wanted.
    int generation() const { return m_generation; }
    /// The place of the source in whose scope a watch is read; line -1 for none.
    const Path& file() const { return m_file; }
    int line() const { return m_line; }

    /// Null for the root, which isn't shown.
    VariableViewItem* parent() const { return m_parent; }
    /// Its place below its parent, from 0.
    int row() const { return m_row; }
    const std::vector<std::unique_ptr<VariableViewItem>>& children() const { return m_children; }
    /// The row below this one with that expression, or null.
    VariableViewItem* find(const QString& expression) const;

private:
    friend class VariableView;
    friend class WatchVariableView;
    friend class AutosVariableView;

    /// What was reported for the row. A value that differs from the last one marks it changed; with
    /// `sameStop` an equal one keeps the mark that it has.
    void update(const ExpressionType& value, const QString& type, const MarkerType* marker,
                unsigned sizeInBytes, bool sameStop);
    /// A message in place of the value.
    void update(const QString& message);
    void markAsChanged();
    void markAsUnChanged();
    void invalidate();
    /// The next value isn't compared with the last one.
    void forgetValue();
    void setRadix(int radix);
    void formatValue() { m_valueText = getValueString(m_value, m_radix); }

    void insert(std::size_t at, std::unique_ptr<VariableViewItem> child);
    void erase(std::size_t first, std::size_t last);
    void number(std::size_t from);

    QString m_name;
    QString m_expression;
    QString m_type;
    QString m_valueText;
    ExpressionType m_value;
    ExpressionType m_previousValue;
    std::unique_ptr<MarkerType> m_marker;
    State m_state = Unchanged;
    unsigned m_valueStyle = NoStyle;
    unsigned m_sizeInBytes = 0;
    unsigned m_sizeInBits = 0;
    int m_radix = DefaultDisplay;
    int m_generation = 0;
    Path m_file;
    int m_line = -1;
    VariableViewItem* m_parent = nullptr;
    int m_row = 0;
    std::vector<std::unique_ptr<VariableViewItem>> m_children;
    QHash<QString, VariableViewItem*> m_byExpression; ///< of rows with one, the first one
};
