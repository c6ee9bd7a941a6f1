#include "debugger/views/AutosVariableView.h"

#include "debugger/expressions/ParserException.h"
#include "debugger/interface/SymbolicDebuggerInterface.h"
#include "debugger/views/AutosParser.h"

#include <algorithm>

namespace {

/// Rows that no line has wanted for so many updates go.
constexpr int OldGeneration = 2;

/// ISO/IEC 9899:2011, 6.4.1, and asm; in order.
constexpr const char16_t* Keywords[] = {
    u"_Alignas",
    u"_Alignof",
    u"_Atomic",
    u"_Bool",
    u"_Complex",
    u"_Generic",
    u"_Imaginary",
    u"_Noreturn",
    u"_Static_assert",
    u"_Thread_local",
    u"asm",
    u"auto",
    u"break",
    u"case",
    u"char",
    u"const",
    u"continue",
    u"default",
    u"do",
    u"double",
    u"else",
    u"enum",
    u"extern",
    u"float",
    u"for",
    u"goto",
    u"if",
    u"inline",
    u"int",
    u"long",
    u"register",
    u"restrict",
    u"return",
    u"short",
    u"signed",
    u"sizeof",
    u"static",
    u"struct",
    u"switch",
    u"typedef",
    u"union",
    u"unsigned",
    u"void",
    u"volatile",
    u"while",
};

} // namespace

bool isCKeyword(const QString& word)
{
    return std::any_of(std::begin(Keywords), std::end(Keywords),
                       [&](const char16_t* it) { return word == QStringView(it); });
}

AutosVariableView::AutosVariableView(SymbolicDebuggerInterface& debugger, VariableViewHost& host,
                                     AutosSource& source)
    : VariableView(debugger, host),
      m_source(source)
{
}

void AutosVariableView::refresh()
{
    sameAutos();
    VariableView::refresh();
}

void AutosVariableView::update(Frame* frame)
{
    m_frame = frame;
    if (!std::exchange(m_sameAutos, false))
        trimGeneration(0);
    addAutos();
    beginUpdate();
    cleanup();
    triggerUpdate();
}

void AutosVariableView::addAutos()
{
    newGeneration();
    AutosParser parser(m_source.currentLine(),
                       [this](const QString& word) { return m_source.isKeyword(word); });
    for (const QString& text : parser.parse())
        watch(text);
    trimGeneration(OldGeneration);
    // Rows of the last line that stay show what they are now.
    for (const auto& item : root().children())
        if (item->generation() > 0 && item->state() != VariableViewItem::Invalid)
            evaluate(item.get(), item->expression());
}

void AutosVariableView::watch(const QString& text)
{
    evaluate(root().find(text), text);
    if (VariableViewItem* const item = root().find(text))
        item->m_generation = 0;
}

/// What has no value, such as a type's name, has no row.
void AutosVariableView::evaluate(VariableViewItem* known, const QString& expression)
{
    if (known)
        known->invalidate();
    beginUpdateOf(known);
    try {
        debugger().evaluateExpression({m_frame, Path(), -1}, expression, expression, this);
    } catch (const ParserException&) {
    }
}
