#include "editor/widget/CodeEditAccessible.h"

#include "editor/widget/CodeEdit.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QCodeBufferPosition placeOf(const QCodeBuffer& buffer, int offset)
{
    int line = 0;
    for (; line + 1 < buffer.count() && offset > buffer.length(line); ++line)
        offset -= buffer.length(line) + 1;
    return {line, std::clamp(offset, 0, buffer.length(line))};
}

int offsetOf(const QCodeBuffer& buffer, QCodeBufferPosition place)
{
    int offset = 0;
    for (int line = 0; line < place.line; ++line)
        offset += buffer.length(line) + 1;
    return offset + std::min(place.column, buffer.length(place.line));
}

/// The text as one row of characters, as screen readers want it: lines are joined with "\n".
class CodeEditAccessible : public QAccessibleWidget,
                           public QAccessibleTextInterface,
                           public QAccessibleEditableTextInterface {
public:
    explicit CodeEditAccessible(CodeEdit* edit) : QAccessibleWidget(edit, QAccessible::EditableText)
    {
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State result = QAccessibleWidget::state();
        result.editable = edit().canEdit();
        result.readOnly = !edit().canEdit();
        result.multiLine = true;
        result.selectableText = true;
        return result;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name && widget()->accessibleName().isEmpty())
            return edit().editor().filename().fileName();
        if (kind == QAccessible::Value)
            return text(0, characterCount());
        return QAccessibleWidget::text(kind);
    }

    // Text

    QString text(int start, int end) const override
    {
        return buffer().text(placeOf(start), std::max(placeOf(start), placeOf(end)));
    }
    int characterCount() const override
    {
        return offsetOf({std::max(0, buffer().count() - 1),
                         buffer().length(std::max(0, buffer().count() - 1))});
    }
    int cursorPosition() const override { return offsetOf(editor().caret()); }
    void setCursorPosition(int position) override { editor().setCaretPosition(placeOf(position)); }
    int selectionCount() const override { return editor().selecting() ? 1 : 0; }
    void selection(int index, int* start, int* end) const override
    {
        const bool selected = index == 0 && editor().selecting();
        *start = selected ? offsetOf(editor().selection().first()) : 0;
        *end = selected ? offsetOf(editor().selection().last()) : 0;
    }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int) override { editor().setCaretPosition(editor().caret()); }
    void setSelection(int, int start, int end) override
    {
        editor().select({placeOf(start), placeOf(end)});
    }
    void scrollToSubstring(int start, int) override { setCursorPosition(start); }
    QString attributes(int offset, int* start, int* end) const override
    {
        *start = offset;
        *end = offset;
        return {};
    }
    QRect characterRect(int offset) const override
    {
        const QPointF corner = edit().pointOf(placeOf(offset));
        const QPoint global = edit().viewport()->mapToGlobal(corner.toPoint());
        return {
            global,
            QSize(static_cast<int>(edit().fonts().characterWidth()), edit().fonts().lineHeight())};
    }
    int offsetAtPoint(const QPoint& point) const override
    {
        return offsetOf(edit().positionAt(edit().viewport()->mapFromGlobal(point)));
    }

    // Changes

    void deleteText(int start, int end) override
    {
        editor().select({placeOf(start), placeOf(end)});
        editor().del();
    }
    void insertText(int offset, const QString& text) override
    {
        editor().setCaretPosition(placeOf(offset));
        editor().insert(text);
    }
    void replaceText(int start, int end, const QString& text) override
    {
        editor().beginUpdate();
        deleteText(start, end);
        editor().insert(text);
        editor().endUpdate();
    }

private:
    CodeEdit& edit() const { return *static_cast<CodeEdit*>(widget()); }
    CodeEditor& editor() const { return edit().editor(); }
    const QCodeBuffer& buffer() const { return editor().buffer(); }

    QCodeBufferPosition placeOf(int offset) const { return ::placeOf(buffer(), offset); }
    int offsetOf(QCodeBufferPosition place) const { return ::offsetOf(buffer(), place); }
};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object)
{
    if (className == u"CodeEdit")
        return new CodeEditAccessible(static_cast<CodeEdit*>(object));
    return nullptr;
}

} // namespace

void installCodeEditAccessibility()
{
    static const bool installed = (QAccessible::installFactory(makeAccessible), true);
    Q_UNUSED(installed)
}

void tellOfReplacedText(CodeEdit& edit, QCodeBufferPosition position, const QString& removed,
                        const QString& inserted)
{
    if (!QAccessible::isActive())
        return;
    const int offset = offsetOf(edit.editor().buffer(), position);
    if (removed.isEmpty()) {
        QAccessibleTextInsertEvent event(&edit, offset, inserted);
        QAccessible::updateAccessibility(&event);
    } else if (inserted.isEmpty()) {
        QAccessibleTextRemoveEvent event(&edit, offset, removed);
        QAccessible::updateAccessibility(&event);
    } else {
        QAccessibleTextUpdateEvent event(&edit, offset, removed, inserted);
        QAccessible::updateAccessibility(&event);
    }
}

void tellOfChangedText(CodeEdit& edit)
{
    if (!QAccessible::isActive())
        return;
    const CodeEditor& editor = edit.editor();
    QAccessibleValueChangeEvent event(&edit, editor.buffer().text(editor.caret().line));
    QAccessible::updateAccessibility(&event);
}

void tellOfCaret(CodeEdit& edit)
{
    if (!QAccessible::isActive())
        return;
    const QCodeBuffer& buffer = edit.editor().buffer();
    const QSelection& selection = edit.editor().selection();
    if (selection.isValid()) {
        QAccessibleTextSelectionEvent event(&edit, offsetOf(buffer, selection.first()),
                                            offsetOf(buffer, selection.last()));
        event.setCursorPosition(offsetOf(buffer, edit.editor().caret()));
        QAccessible::updateAccessibility(&event);
        return;
    }
    QAccessibleTextCursorEvent event(&edit, offsetOf(buffer, edit.editor().caret()));
    QAccessible::updateAccessibility(&event);
}
