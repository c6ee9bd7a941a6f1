#include "editor/widget/CodeEditFindIncrementalDialog.h"

#include "editor/widget/CodeEdit.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSet>
#include <QStyle>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace {

QToolButton* makeButton(QWidget* parent, const QString& text, const QString& tip, bool toggles)
{
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    button->setCheckable(toggles);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

/// Whether its key edits the text that is looked for; all others lead back to the editor.
bool isForLine(EditCommand command)
{
    using enum EditCommand;
    static const QSet<EditCommand> commands = {charLeft,
                                               charLeftExtend,
                                               lineStartToggle,
                                               lineStartToggleExtend,
                                               deleteBack,
                                               charRight,
                                               charRightExtend,
                                               lineEnd,
                                               lineEndExtend,
                                               deleteForward,
                                               wordLeft,
                                               wordLeftExtend,
                                               selectAll,
                                               deleteWordLeft,
                                               undo,
                                               wordRight,
                                               wordRightExtend,
                                               copy,
                                               deleteWordRight,
                                               redo,
                                               cut,
                                               paste};
    return commands.contains(command);
}

} // namespace

CodeEditFindIncrementalDialog::CodeEditFindIncrementalDialog(CodeEdit* edit, QWidget* parent)
    : QFrame(parent),
      m_edit(edit),
      m_text(new QLineEdit(this)),
      m_status(new QLabel(this)),
      m_options({{FindOption::MatchCase, makeButton(this, u"Aa"_s, tr("Match case"), true)},
                 {FindOption::WholeWord, makeButton(this, u"W"_s, tr("Match whole word"), true)},
                 {FindOption::RegularExpression,
                  makeButton(this, u".*"_s, tr("Regular expression"), true)}})
{
    setObjectName(u"FindBar"_s);
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(6);
    auto* label = new QLabel(tr("Find:"), this);
    label->setBuddy(m_text);
    m_text->setClearButtonEnabled(true);
    m_text->setMinimumWidth(200);
    m_text->setPlaceholderText(tr("Text to find"));
    m_text->installEventFilter(this);
    m_status->setMinimumWidth(fontMetrics().horizontalAdvance(u"00000 of 00000"_s));
    QToolButton* previous = makeButton(this, {}, tr("Previous match"), false);
    previous->setArrowType(Qt::UpArrow);
    QToolButton* next = makeButton(this, {}, tr("Next match"), false);
    next->setArrowType(Qt::DownArrow);
    QToolButton* close = makeButton(this, {}, tr("Close"), false);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    layout->addWidget(label);
    layout->addWidget(m_text, 1);
    m_options.setOptions(LastSearch::get().options);
    for (QAbstractButton* button : m_options.buttons()) {
        layout->addWidget(button);
        connect(button, &QAbstractButton::toggled, this, [this] { find(m_text->text(), false); });
    }
    layout->addWidget(previous);
    layout->addWidget(next);
    layout->addWidget(m_status);
    layout->addWidget(close);

    connect(m_text, &QLineEdit::textChanged, this,
            [this](const QString& text) { find(text, false); });
    connect(next, &QToolButton::clicked, this, [this] { step(false); });
    connect(previous, &QToolButton::clicked, this, [this] { step(true); });
    connect(close, &QToolButton::clicked, this, [this] { finish(false); });
    hide();
}

void CodeEditFindIncrementalDialog::start()
{
    const CodeEditor& editor = m_edit->editor();
    m_start = editor.selecting() ? editor.selection().first() : editor.caret();
    const QString selected = editor.selectedText();
    // The text gives way: a hit must not be below the bar.
    m_edit->setRoomBelow(sizeHint().height());
    place();
    show();
    m_text->setFocus();
    if (!selected.isEmpty() && !selected.contains(u'\n') && selected != m_text->text())
        m_text->setText(selected);
    else
        find(m_text->text(), false);
    m_text->selectAll();
}

void CodeEditFindIncrementalDialog::place()
{
    const QRect view = m_edit->viewport()->geometry();
    setGeometry(view.left(), view.bottom() + 1, view.width(), sizeHint().height());
}

QString CodeEditFindIncrementalDialog::status() const { return m_status->text(); }

void CodeEditFindIncrementalDialog::showStatus(const QString& text, bool found)
{
    m_status->setText(text);
    QPalette colors = palette();
    if (!found)
        colors.setColor(QPalette::Text, QColor(0xC0, 0x30, 0x30));
    m_text->setPalette(colors);
}

void CodeEditFindIncrementalDialog::find(const QString& text, bool up)
{
    CodeEditor& editor = m_edit->editor();
    if (text.isEmpty()) {
        showStatus({}, true);
        CodeEdit::setHighlightFind({});
        editor.setCaretPosition(m_start);
        return;
    }
    FindOptions options = m_options.options() | FindOption::ShowStatus | FindOption::Wrap;
    options.setFlag(FindOption::SearchUp, up);
    if (!editor.find(m_start, text, options)) {
        editor.setCaretPosition(m_start);
        CodeEdit::setHighlightFind({});
        showStatus(u"0 of 0"_s, false);
        return;
    }
    const int count = editor.countMatches(text, options);
    const int number = editor.matchNumber(text, options, editor.selection().first());
    CodeEdit::setHighlightFind(TextSearch(text, options));
    showStatus(u"%1 of %2"_s.arg(number).arg(count), true);
}

void CodeEditFindIncrementalDialog::step(bool up)
{
    const CodeEditor& editor = m_edit->editor();
    if (!editor.selecting()) {
        find(m_text->text(), up);
        return;
    }
    // From the hit on; the place that an empty text leads back to stays.
    const QCodeBufferPosition start = m_start;
    m_start = up ? editor.selection().first() : editor.selection().last();
    if (up)
        --m_start.column;
    find(m_text->text(), up);
    m_start = start;
}

bool CodeEditFindIncrementalDialog::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(object, event);
    auto* key = static_cast<QKeyEvent*>(event);
    const int code = KeyMap::code(key->key(), key->modifiers());
    const std::optional<EditCommand> command = m_edit->keyMap().command(code);
    const bool shift = key->modifiers().testFlag(Qt::ShiftModifier);
    if (key->key() == Qt::Key_Escape) {
        finish(true);
    } else if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        step(shift);
    } else if (command == EditCommand::findNext || command == EditCommand::findIncremental) {
        step(false);
    } else if (command == EditCommand::findPrev) {
        step(true);
    } else if (command && !isForLine(*command)) {
        finish(false);
        m_edit->execute(*command);
    } else {
        return QFrame::eventFilter(object, event);
    }
    return true;
}

void CodeEditFindIncrementalDialog::finish(bool restoreCaret)
{
    const LastSearch search{m_text->text(), LastSearch::get().replacement, m_options.options()};
    if (!search.text.isEmpty())
        search.remember();
    CodeEdit::setHighlightFind({});
    hide();
    m_edit->setRoomBelow(0);
    if (restoreCaret)
        m_edit->editor().setCaretPosition(m_start);
    m_edit->setFocus();
}
