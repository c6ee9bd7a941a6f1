#include "debugger/views/TextVariableView.h"

#include "debugger/views/ValueFormat.h"
#include "debugger/views/ViewSettings.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A tool tip is no place for more characters.
constexpr qsizetype LongestText = 2000;

} // namespace

bool TextVariableView::isFull() const { return m_text.size() >= LongestText; }

void TextVariableView::clear()
{
    m_text.clear();
    m_open.clear();
}

VariableListBuilder::pointerEvalMode
TextVariableView::getPointerEvalMode(const QString&, const QString&, unsigned size, unsigned&)
{
    return size == 1 && ViewSettings::displayCharPtrAsString() ? AsString : Value;
}

VariableListBuilder::pointerEvalMode
TextVariableView::getArrayEvalMode(const QString&, const QString&, unsigned& count)
{
    if (isFull())
        return Value;
    const unsigned shown = std::min(count, ViewSettings::maximumArrayElementsDisplayed());
    m_isCut = shown < count;
    count = shown;
    return AsString;
}

VariableListBuilder::pointerEvalMode TextVariableView::getStructEvalMode(const QString&,
                                                                         const QString&)
{
    return isFull() ? Value : Dereference;
}

/// False if there is no room for another one.
bool TextVariableView::beginEntry(const QString& name)
{
    if (m_open.empty()) {
        m_text += (m_text.isEmpty() ? QString() : u"\n"_s) + name + u" = "_s;
        return true;
    }
    Level& level = m_open.back();
    if (isFull()) {
        level.isCut = true;
        return false;
    }
    if (!std::exchange(level.isEmpty, false))
        m_text += u", "_s;
    if (!level.isArray)
        m_text += name + u" = "_s;
    return true;
}

void TextVariableView::addPrimitive(const QString& name, const QString&,
                                    const ExpressionType& value, const QString& type, MarkerType*)
{
    if (!beginEntry(name))
        return;
    const QString text = getValueString(value, DefaultDisplay);
    const bool isText = value.getType() == ExpressionType::String && type == u"char *";
    m_text += isText ? u'"' + text + u'"' : text;
}

void* TextVariableView::begin(const QString& name, bool isArray)
{
    if (beginEntry(name))
        m_text += u'{';
    m_open.push_back({isArray, isArray && m_isCut});
    m_isCut = false;
    return this;
}

void* TextVariableView::beginObject(const QString& name, const QString&, const ExpressionType&,
                                    const QString&, MarkerType*, unsigned)
{
    return begin(name, false);
}

void* TextVariableView::beginArray(const QString& name, const QString&, const ExpressionType&,
                                   const QString&, MarkerType*, unsigned)
{
    return begin(name, true);
}

void TextVariableView::endObject(void*)
{
    const Level level = m_open.back();
    m_open.pop_back();
    if (level.isCut)
        m_text += level.isEmpty ? u"..."_s : u", ..."_s;
    m_text += u'}';
}
