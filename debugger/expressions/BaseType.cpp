#include "debugger/expressions/BaseType.h"

#include <algorithm>

namespace {

/// A field of a register may have any name; one that isn't a word stands in quotes.
QString quoted(const std::string& name)
{
    const bool isWord = std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    });
    const QString text = QString::fromStdString(name);
    return isWord && !name.empty() ? text : u'"' + text + u'"';
}

} // namespace

QString SimpleType::dump() const
{
    static constexpr const char* names[] = {"char",      "short", "int",   "long",
                                            "long long", "float", "double"};
    const QString name = QString::fromLatin1(names[m_code]);
    return m_unsigned ? QStringLiteral("unsigned ") + name : name;
}

QString StructType::dump() const
{
    QString text = QStringLiteral("struct {");
    for (const Field& it : m_fields) {
        text += u' ' + it.type->dump();
        if (!it.name.empty())
            text += u' ' + QString::fromStdString(it.name);
        if (it.bits > 0)
            text += QStringLiteral(" : ") + QString::number(it.bits);
        text += u';';
    }
    return text + QStringLiteral(" }");
}

QString RegisterType::dump() const
{
    QString text = QStringLiteral("register ") + QString::number(m_size);
    for (const Field& it : m_fields)
        text += u' ' + quoted(it.name) + u' ' + QString::number(it.bitOffset) + u' '
            + QString::number(it.bits);
    return text + u';';
}

std::vector<ExpressionPtr> ArrayType::expressions() const
{
    std::vector<ExpressionPtr> all = m_element->expressions();
    all.push_back(m_size);
    return all;
}
