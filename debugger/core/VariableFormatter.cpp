#include "debugger/core/VariableFormatter.h"

#include "debugger/expressions/ParserException.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/model/TOBFType.h"

#include <algorithm>
#include <cstring>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr unsigned LongestString = 256;
/// Where it isn't known what lies behind a pointer, reads end at multiples of this: so do memories,
/// and a read that goes beyond one gives nothing.
constexpr unsigned ReadBoundary = 128;
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

bool isCharacter(const TOBFType* type) { return type && type->isSimple() && type->size() == 1; }

unsigned bytesToBoundary(unsigned address) { return ReadBoundary - address % ReadBoundary; }

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

ExpressionType VariableFormatter::field(MyMarker* structure, const char* name)
{
    try {
        return m_evaluator.getDereference(structure, name);
    } catch (const ParserException& exception) {
        return textValue(exception.getCause());
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
        formatStruct(row, type);
    else if (type->isFunction())
        addPrimitive(row, addressOf(*row.marker), type);
    else
        addPrimitive(row, m_evaluator.getValue(row.marker), type);
}

void VariableFormatter::formatPtr(const Row& row, TOBFType* type)
{
    const TOBFType* const pointee = withoutQualifiers(type->getElementType());
    unsigned count = 1;
    const auto mode = m_builder.getPointerEvalMode(
        row.name, row.expression, pointee ? static_cast<unsigned>(pointee->size()) : 0, count);
    const ExpressionType pointer = m_evaluator.getValue(row.marker);
    if (mode == VariableListBuilder::Value) {
        addPrimitive(row, pointer, type);
        return;
    }
    const ExpressionType place = m_evaluator.getDereference(row.marker, 0U);
    MyMarker* const target = markerOf(place);
    if (mode == VariableListBuilder::AsString) {
        addString(row, *target, LongestString);
    } else if (mode == VariableListBuilder::AsArray) {
        void* const handle = m_builder.beginArray(row.name, row.expression, pointer, typeText(type),
                                                  row.marker, count * target->size());
        formatElements(row, count);
        m_builder.endArray(handle);
    } else {
        void* const handle = m_builder.beginObject(row.name, row.expression, pointer,
                                                   typeText(type), row.marker, target->size());
        if (target->type()->isStruc())
            formatFields(row, target, u"->"_s);
        else
            formatVariable(u'*' + row.name, u"*("_s + row.expression + u')', place);
        m_builder.endObject(handle);
    }
}

void VariableFormatter::formatArray(const Row& row, TOBFType* type)
{
    const TOBFType* const element = withoutQualifiers(type->getElementType());
    const unsigned elements = element && element->size() > 0
        ? row.marker->size() / static_cast<unsigned>(element->size())
        : 0;
    unsigned count = elements;
    const auto mode = m_builder.getArrayEvalMode(row.name, row.expression, count);
    if (mode == VariableListBuilder::Value) {
        addPrimitive(row, addressSizeString(*row.marker), type);
    } else if (mode == VariableListBuilder::AsString && isCharacter(element)) {
        addString(row, *row.marker, row.marker->size());
    } else {
        void* const handle =
            m_builder.beginArray(row.name, row.expression, addressSizeString(*row.marker),
                                 typeText(type), row.marker, row.marker->size());
        formatElements(row, std::min(count, elements));
        m_builder.endArray(handle);
    }
}

/// Elements of an array, or behind a pointer, that lie side by side are read together.
void VariableFormatter::formatElements(const Row& row, unsigned count)
{
    using OneRead = TOBFExpressionEvaluator::OneRead;
    const bool endIsKnown = row.marker->type()->isArray();
    std::optional<OneRead> together;
    unsigned readUntil = 0; ///< element
    for (unsigned i = 0; i < count; ++i) {
        const ExpressionType place = m_evaluator.getDereference(row.marker, i);
        const MyMarker* const element = markerOf(place);
        if (i >= readUntil && element->isMemory() && element->size() > 0) {
            const unsigned bytes = endIsKnown ? TOBFExpressionEvaluator::LargestWholeValue
                                              : bytesToBoundary(element->address());
            const unsigned elements =
                std::clamp(bytes / element->size(), 1U, std::max(count - i, 1U));
            const ExpressionType all =
                m_evaluator.mkExpressionType(nullptr, element->base(), element->kind(),
                                             element->offset(), elements * element->size());
            together.emplace(m_evaluator, *markerOf(all));
            readUntil = i + elements;
        }
        const QString index = u'[' + QString::number(i) + u']';
        formatVariable(index, u'(' + row.expression + u')' + index, place);
    }
}

void VariableFormatter::formatStruct(const Row& row, TOBFType* type)
{
    if (m_builder.getStructEvalMode(row.name, row.expression) == VariableListBuilder::Value) {
        addPrimitive(row, addressSizeString(*row.marker), type);
        return;
    }
    void* const handle =
        m_builder.beginObject(row.name, row.expression, addressSizeString(*row.marker),
                              typeText(type), row.marker, row.marker->size());
    formatFields(row, row.marker, u"."_s);
    m_builder.endObject(handle);
}

void VariableFormatter::formatFields(const Row& row, MyMarker* structure,
                                     const QString& memberOperator)
{
    const TOBFExpressionEvaluator::OneRead together(m_evaluator, *structure);
    const auto* const type = static_cast<TOBFStrucType*>(withoutQualifiers(structure->type()));
    for (TOBFField* const field : type->fields()) {
        if (!field->name())
            continue;
        const char* const text = field->name()->text();
        const QString name = QString::fromUtf8(text);
        formatVariable(name, u'(' + row.expression + u')' + memberOperator + name,
                       this->field(structure, text));
    }
}

/// The characters at a place, up to a zero.
void VariableFormatter::addString(const Row& row, const MyMarker& text, unsigned length)
{
    QByteArray characters;
    for (unsigned at = 0; at < length;) {
        char piece[ReadBoundary] = {};
        const unsigned size = std::min(length - at, bytesToBoundary(text.address() + at));
        m_evaluator.readBytes(text, at, size, reinterpret_cast<unsigned char*>(piece));
        const auto used = static_cast<unsigned>(strnlen(piece, size));
        characters.append(piece, used);
        if (used < size)
            break;
        at += size;
    }
    m_builder.addPrimitive(
        row.name, row.expression,
        ExpressionType(characters.constData(), static_cast<int>(characters.size())), u"char *"_s,
        row.marker);
}
