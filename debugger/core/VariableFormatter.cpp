#include "debugger/core/VariableFormatter.h"

#include "debugger/expressions/ParserException.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/model/TOBFType.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr unsigned LongestString = 256;
/// A structure may point at itself, and a builder may want to see everything.
constexpr int DeepestLevel = 32;

TOBFType* withoutQualifiers(TOBFType* type)
{
    while (type && type->isQualified())
        type = type->getElementType();
    return type;
}

QString typeText(TOBFType* type)
{
    HString* const name = type ? type->getName() : nullptr;
    return name ? QString::fromUtf8(name->text()) : QString();
}

MyMarker* markerOf(const ExpressionType& value)
{
    return dynamic_cast<MyMarker*>(value.getMarker());
}

ExpressionType textValue(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return ExpressionType(bytes.constData(), static_cast<int>(bytes.size()));
}

ExpressionType addressOf(const MyMarker& marker)
{
    constexpr unsigned AddressBytes = 4;
    return ExpressionType(static_cast<unsigned long long>(marker.address()), AddressBytes, 0U);
}

/// What an array or a structure shows that isn't opened.
ExpressionType addressSizeString(const MyMarker& marker)
{
    return textValue(
        u"0x%1 (%2 bytes)"_s.arg(marker.address(), 4, 16, QChar(u'0')).arg(marker.size()));
}

/// Counts a level for as long as it lives.
class Level {
public:
    explicit Level(int& depth) : m_depth(++depth) { }
    ~Level() { --m_depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

private:
    int& m_depth;
};

} // namespace

void VariableFormatter::formatSymbol(TOBFSymbol* symbol)
{
    ExpressionType value;
    if (!symbol->type() || !symbol->definition()
        || !m_evaluator.getExpressionType(symbol->type(), symbol->definition(), value, true))
        return;
    const QString name = QString::fromUtf8(symbol->getName()->text());
    formatVariable(name, name, value);
}

void VariableFormatter::formatVariable(const QString& name, const QString& expression,
                                       const ExpressionType& value)
{
    const Row row = {name, expression, markerOf(value)};
    if (!row.marker) {
        m_builder.addPrimitive(name, expression, value, value.TypeToString(), nullptr);
        return;
    }
    try {
        formatType(row, withoutQualifiers(row.marker->type()));
    } catch (const ParserException& exception) {
        addPrimitive(row, textValue(exception.getCause()), row.marker->type());
    }
}

void VariableFormatter::addPrimitive(const Row& row, const ExpressionType& value, TOBFType* type)
{
    m_builder.addPrimitive(row.name, row.expression, value, typeText(type), row.marker);
}

void VariableFormatter::formatType(const Row& row, TOBFType* type)
{
    const Level level(m_depth);
    if (!type || m_depth > DeepestLevel)
        addPrimitive(row, addressOf(*row.marker), type);
    else if (type->isPtr())
        formatPtr(row, type);
    else if (type->isArray() || type->isCountedArray())
        formatArray(row, type);
    else if (type->isStruc())
        formatStruct(row, type, u"."_s);
    else if (type->isFunction())
        addPrimitive(row, addressOf(*row.marker), type);
    else
        addPrimitive(row, m_evaluator.getValue(row.marker), type);
}

void VariableFormatter::formatPtr(const Row& row, TOBFType* type)
{
    unsigned count = 1;
    const auto mode =
        m_builder.getPointerEvalMode(row.name, row.expression, row.marker->size(), count);
    const ExpressionType pointer = m_evaluator.getValue(row.marker);
    if (mode == VariableListBuilder::Value) {
        addPrimitive(row, pointer, type);
        return;
    }
    const ExpressionType target = m_evaluator.getDereference(row.marker, 0U);
    const Row targetRow = {row.name, row.expression, markerOf(target)};
    if (!targetRow.marker) {
        addPrimitive(row, pointer, type);
    } else if (mode == VariableListBuilder::AsString) {
        addString(targetRow, LongestString);
    } else if (mode == VariableListBuilder::AsArray) {
        void* const handle = m_builder.beginArray(row.name, row.expression, pointer, typeText(type),
                                                  row.marker, count * targetRow.marker->size());
        formatElements(row, count);
        m_builder.endArray(handle);
    } else {
        TOBFType* const pointee = withoutQualifiers(targetRow.marker->type());
        if (pointee && pointee->isStruc())
            formatStruct(targetRow, pointee, u"->"_s);
        else
            addPrimitive(targetRow, m_evaluator.getValue(targetRow.marker), pointee);
    }
}

void VariableFormatter::formatArray(const Row& row, TOBFType* type)
{
    const int elementSize = type->getElementType() ? type->getElementType()->size() : 0;
    const unsigned elements =
        elementSize > 0 ? row.marker->size() / static_cast<unsigned>(elementSize) : 0;
    unsigned count = elements;
    switch (m_builder.getArrayEvalMode(row.name, row.expression, count)) {
    case VariableListBuilder::AsArray: {
        void* const handle = m_builder.beginArray(row.name, row.expression, addressOf(*row.marker),
                                                  typeText(type), row.marker, row.marker->size());
        formatElements(row, std::min(count, elements));
        m_builder.endArray(handle);
        break;
    }
    case VariableListBuilder::AsString: addString(row, row.marker->size()); break;
    default: addPrimitive(row, addressSizeString(*row.marker), type);
    }
}

void VariableFormatter::formatElements(const Row& row, unsigned count)
{
    for (unsigned i = 0; i < count; ++i) {
        const QString index = u'[' + QString::number(i) + u']';
        formatVariable(index, u'(' + row.expression + u')' + index,
                       m_evaluator.getDereference(row.marker, i));
    }
}

void VariableFormatter::formatStruct(const Row& row, TOBFType* type, const QString& memberOperator)
{
    if (m_builder.getStructEvalMode(row.name, row.expression) == VariableListBuilder::Value) {
        addPrimitive(row, addressSizeString(*row.marker), type);
        return;
    }
    void* const handle = m_builder.beginObject(row.name, row.expression, addressOf(*row.marker),
                                               typeText(type), row.marker, row.marker->size());
    for (TOBFField* const field : static_cast<TOBFStrucType*>(type)->fields()) {
        if (!field->name())
            continue;
        const QString name = QString::fromUtf8(field->name()->text());
        formatVariable(name, u'(' + row.expression + u')' + memberOperator + name,
                       m_evaluator.getDereference(row.marker, field->name()->text()));
    }
    m_builder.endObject(handle);
}

/// The characters from the marker's place on, up to a zero.
void VariableFormatter::addString(const Row& row, unsigned length)
{
    QByteArray text;
    const MyMarker& marker = *row.marker;
    for (unsigned i = 0; i < std::min(length, LongestString); ++i) {
        const ExpressionType element = m_evaluator.mkExpressionType(
            nullptr, marker.base(), marker.kind(), marker.offset() + i, 1);
        const auto c = static_cast<char>(element.resolved().getUInteger() & 0xFF);
        if (c == 0)
            break;
        text += c;
    }
    m_builder.addPrimitive(row.name, row.expression,
                           ExpressionType(text.constData(), static_cast<int>(text.size())),
                           u"char *"_s, row.marker);
}
