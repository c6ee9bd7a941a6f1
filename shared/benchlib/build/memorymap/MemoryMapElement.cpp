#include "build/memorymap/MemoryMapElement.h"

#include "build/memorymap/SimpleExpressionParser.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace {

constexpr std::string_view Tags[] = {"MemorySegment", "Register", "ProgramSection", "Root",
                                     "RegisterGroup", "BitField", "Enum",           "Processor"};

/// A name as it may stand in a type of the debugger's expressions.
QString fieldName(const QString& name)
{
    static const QRegularExpression identifier(QStringLiteral("^[A-Za-z_$][A-Za-z_0-9$]*$"));
    return identifier.match(name).hasMatch() ? name : u'"' + QString(name).remove(u'"') + u'"';
}

} // namespace

MemoryMapElement::MemoryMapElement(const QByteArray& tag)
    : XMLElement(tag),
      m_type(
          static_cast<ElementType>(std::ranges::find(Tags, tag.toStdString()) - std::begin(Tags)))
{
    static_assert(std::size(Tags) == Unsupported);
}

void MemoryMapElement::setText(const char* attribute, const QString& text)
{
    if (text.isEmpty())
        removeAttribute(attribute);
    else
        setAttribute(attribute, text);
}

void MemoryMapElement::setNumber(const char* attribute, const QString& text)
{
    if (text.isEmpty() || text.at(0) < u'0' || text.at(0) > u'9') {
        setText(attribute, text);
        return;
    }
    const auto number = static_cast<quint32>(std::strtoul(text.toLatin1().constData(), nullptr, 0));
    setText(attribute, QString::number(number));
}

void MemoryMapElement::setAddress(const QString& text)
{
    setText("start", text);
    m_address = 0;
    fixup();
}

void MemoryMapElement::setSize(const QString& text)
{
    setNumber("size", text);
    m_size = 0;
    updateSize();
}

void MemoryMapElement::setAlignment(const QString& text) { setNumber("alignment", text); }

void MemoryMapElement::fixup()
{
    const quint32 base = parent() != nullptr ? parentElement()->m_base : 0;
    m_base = base;
    if (hasAddress()) {
        switch (m_type) {
        case MemorySegment:
        case ProgramSection:
        case RegisterGroup:
            updateAddress(base);
            m_base = m_address;
            break;
        case Register: updateAddress(base); break;
        case BitField:
        case Enum: updateAddress(0); break;
        case Root:
        case Processor:
        case Unsupported: break;
        }
    }
    if (hasSize())
        updateSize();
}

void MemoryMapElement::updateAddress(quint32 base)
{
    const QByteArray text = addressText().trimmed().toUtf8();
    bool ok = false;
    m_address =
        static_cast<quint32>(SimpleExpressionParser::instance().getUInteger(text.constData(), ok));
    if (ok && text.startsWith('+'))
        m_address += base;
}

void MemoryMapElement::updateSize()
{
    const QString text = sizeText().trimmed();
    bool ok = false;
    quint32 number = 0;
    switch (m_type) {
    case MemorySegment:
    case ProgramSection:
    case RegisterGroup:
        number = static_cast<quint32>(
            SimpleExpressionParser::instance().getUInteger(text.toUtf8().constData(), ok));
        break;
    case Register:
    case BitField:
    case Enum: number = text.toUInt(&ok, 0); break;
    case Root:
    case Processor:
    case Unsupported: break;
    }
    if (ok)
        m_size = number;
}

QString MemoryMapElement::getRegisterExpression() const
{
    QString type = QString::number(std::max(m_size, 1U));
    for (const XMLElement& child : children()) {
        const auto& field = static_cast<const MemoryMapElement&>(child);
        if (field.type() == BitField)
            type += QStringLiteral(" %1 %2 %3")
                        .arg(fieldName(field.name()), QString::number(field.address()),
                             QString::number(std::max(field.size(), 1U)));
    }
    const QString start = addressText().trimmed();
    if (start.startsWith(u'('))
        return QStringLiteral("(register ") + type + QStringLiteral(";)") + start;
    return QStringLiteral("*(register ") + type + QStringLiteral(";*)0x")
        + QString::number(m_address, 16);
}
