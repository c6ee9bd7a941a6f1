#include "debugger/views/VariableViewItem.h"

VariableViewItem::VariableViewItem(const QString& name, const QString& expression)
    : m_name(name),
      m_expression(expression)
{
}

QString VariableViewItem::text(Column column) const
{
    switch (column) {
    case NameColumn: return m_name;
    case ValueColumn: return m_valueText;
    default: return m_type;
    }
}

VariableViewItem* VariableViewItem::find(const QString& expression) const
{
    return m_byExpression.value(expression);
}

// States

void VariableViewItem::update(const ExpressionType& value, const QString& type,
                              const MarkerType* marker, unsigned sizeInBytes, bool sameStop)
{
    const bool isFirst = m_value.getType() == ExpressionType::Undefined;
    const bool isEqual = m_value.equiv(value);
    m_type = type;
    m_sizeInBytes = sizeInBytes;
    m_sizeInBits = value.getSizeInBits();
    if (!marker)
        m_marker.reset();
    else if (!m_marker || !m_marker->equiv(marker))
        m_marker = marker->clone();
    if (!isEqual) {
        m_previousValue = m_value;
        m_value = value;
        formatValue();
    }
    if (!isEqual && !isFirst)
        markAsChanged();
    else if (sameStop)
        m_state = m_valueStyle == ChangedStyle ? Changed : Unchanged;
    else
        markAsUnChanged();
}

void VariableViewItem::update(const QString& message)
{
    forgetValue();
    m_state = Message;
    m_valueStyle = NoStyle;
    m_valueText = message;
    m_type.clear();
    m_marker.reset();
    for (const auto& child : m_children)
        child->invalidate();
}

void VariableViewItem::markAsChanged()
{
    for (VariableViewItem* it = this; it; it = it->m_parent) {
        it->m_state = Changed;
        it->m_valueStyle = ChangedStyle;
    }
}

void VariableViewItem::markAsUnChanged()
{
    m_state = Unchanged;
    m_valueStyle = NoStyle;
}

void VariableViewItem::invalidate()
{
    m_state = Invalid;
    for (const auto& child : m_children)
        child->invalidate();
}

void VariableViewItem::forgetValue()
{
    m_value = ExpressionType();
    m_previousValue = ExpressionType();
    m_valueText.clear();
}

void VariableViewItem::setRadix(int radix)
{
    m_radix = radix;
    if (m_state != Message)
        formatValue();
}

// Rows

void VariableViewItem::insert(std::size_t at, std::unique_ptr<VariableViewItem> child)
{
    VariableViewItem* const item = child.get();
    item->m_parent = this;
    m_children.insert(m_children.begin() + static_cast<std::ptrdiff_t>(at), std::move(child));
    if (!m_byExpression.contains(item->m_expression))
        m_byExpression.insert(item->m_expression, item);
    number(at);
}

void VariableViewItem::erase(std::size_t first, std::size_t last)
{
    for (std::size_t i = first; i < last; ++i) {
        const auto known = m_byExpression.constFind(m_children[i]->m_expression);
        if (known != m_byExpression.cend() && *known == m_children[i].get())
            m_byExpression.erase(known);
    }
    m_children.erase(m_children.begin() + static_cast<std::ptrdiff_t>(first),
                     m_children.begin() + static_cast<std::ptrdiff_t>(last));
    number(first);
}

void VariableViewItem::number(std::size_t from)
{
    for (std::size_t i = from; i < m_children.size(); ++i)
        m_children[i]->m_row = static_cast<int>(i);
}
