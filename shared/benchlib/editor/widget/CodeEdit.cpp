#include "editor/widget/CodeEdit.h"

#include "base/DiagnosticData.h"
#include "editor/parsers/CodeSyntaxChecker.h"
#include "editor/parsers/LanguageRegistry.h"
#include "editor/widget/CodeEditAccessible.h"
#include "editor/widget/CodeEditFindIncrementalDialog.h"
#include "editor/widget/CodeEditHost.h"
#include "editor/widget/DiagnosticPopup.h"
#include "projects/settings/EnvironmentSettings.h"

#include <QApplication>
#include <QFontDatabase>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

CodeEditColorScheme CodeEdit::s_scheme = colorSchemes().first();
TextSearch CodeEdit::m_highlightFindRegexp;

namespace {

/// Room beside the longest line, in columns.
constexpr int RightSlack = 10;
constexpr double SmallestPointSize = 4;
/// Screen readers are told of each change of an update, up to that many.
constexpr int MostChangesTold = 16;
constexpr double LargestPointSize = 96;

} // namespace

CodeEdit::CodeEdit(QWidget* parent)
    : QAbstractScrollArea(parent),
      m_host(std::make_unique<CodeEditHost>(*this)),
      m_configuredFont(QFontDatabase::systemFont(QFontDatabase::FixedFont))
{
    installCodeEditAccessibility();
    m_editor.setHost(m_host.get());
    m_editor.setCaretMeasure([this] {
        return pointOf(m_editor.caret()).x() >= 0
            ? (pointOf(m_editor.caret()).x() - textLeft()) / m_fonts.characterWidth()
                + m_editor.leftColumn()
            : 0.0;
    });
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setFrameShape(QFrame::NoFrame);
    viewport()->setCursor(m_pointerShape);
    viewport()->setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setAcceptDrops(true);
    setFonts(m_configuredFont);

    connect(&m_editor, &CodeEditor::viewChanged, this, &CodeEdit::viewChanged);
    connect(&m_editor, &CodeEditor::scrolled, this, [this] {
        updateScrollBars();
        viewport()->update();
    });
    connect(&m_editor, &CodeEditor::textReplaced, this,
            [this](QCodeBufferPosition position, const QString& removed, const QString& inserted) {
                if (++m_changesToTell <= MostChangesTold)
                    tellOfReplacedText(*this, position, removed, inserted);
            });
    connect(&m_editor, &CodeEditor::renamed, this, &CodeEdit::useLanguageOfFile);
    connect(&m_editor, &CodeEditor::modStateChanged, this, [this] { viewport()->update(); });
    connect(&m_editor, &CodeEditor::finished, this, &CodeEdit::finished);
    connect(&m_editor, &CodeEditor::error, this, &CodeEdit::error);
    connect(&m_editor, &CodeEditor::message, this, &CodeEdit::message);
    connect(&m_editor, &CodeEditor::note, this, &CodeEdit::note);
}

CodeEdit::~CodeEdit() = default;

bool CodeEdit::load(const Path& path)
{
    if (!m_editor.load(path))
        return false;
    useLanguageOfFile();
    m_longestColumns = 0;
    m_editor.setLeftColumn(0);
    m_editor.setTopLine(0);
    updateScrollBars();
    return true;
}

void CodeEdit::startAs(const Path& path)
{
    m_editor.setFilename(path, true);
    useLanguageOfFile();
}

void CodeEdit::setSyntaxHighlight(int language)
{
    m_editor.setParser(language == NoSyntaxHighlight
                           ? nullptr
                           : languages().parserForDescription(
                               languages().registeredParserDescriptions().value(language)));
}

void CodeEdit::useLanguageOfFile()
{
    const QString extension = m_editor.filename().extension();
    m_editor.setParser(languages().parserForExtension(extension));
    m_syntaxChecker = languages().syntaxCheckerForExtension(extension);
}

bool CodeEdit::close(bool force)
{
    if (!force && m_editor.checkSaved() < 0)
        return false;
    return QWidget::close();
}

void CodeEdit::carryOut(EditCommand command)
{
    switch (command) {
    case EditCommand::increaseTextSize: changeTextSize(1); break;
    case EditCommand::decreaseTextSize: changeTextSize(-1); break;
    case EditCommand::restoreTextSize: restoreTextSize(); break;
    case EditCommand::saveTextSize:
        m_configuredFont = m_fonts.base();
        if (environment)
            environment->textEditorFont->setValue(m_configuredFont);
        break;
    case EditCommand::viewWhitespace: setShowWhitespace(!m_showWhitespace); break;
    case EditCommand::checkSyntax: checkSyntax(); break;
    case EditCommand::findIncremental: findIncremental(); break;
    default: emit commandRequested(command);
    }
}

bool CodeEdit::findFirst(const QString& text) { return m_editor.find({0, 0}, text, {}); }

bool CodeEdit::findNext(const QString& text)
{
    return m_editor.find(m_editor.selecting() ? m_editor.selection().last() : m_editor.caret(),
                         text, {});
}

QString CodeEdit::url() const
{
    return u"file:///%1#%2:%3"_s.arg(fileName())
        .arg(m_editor.caret().line + 1)
        .arg(m_editor.caret().column + 1);
}

void CodeEdit::checkSyntax()
{
    if (!m_syntaxChecker)
        return;
    QString text;
    int line = 0;
    int column = 0;
    if (m_syntaxChecker->check(m_editor.getAllText().join(u'\n'), &text, &line, &column, 0)) {
        emit message(u"No syntax errors detected"_s);
        return;
    }
    emit error(u"Syntax error: %1"_s.arg(text));
    m_editor.setCaretPosition({line - 1, std::max(0, column - 1)});
}

QSelection CodeEdit::misspelledWord() const
{
    const Place caret = m_editor.caret();
    const StyledLine styled = styledLine(caret.line);
    for (const StyledLine::Run& run : styled.runs) {
        int start = run.start;
        int end = run.start + run.length;
        if ((run.attributes & CodeEditParser::SpellingError) == 0 || caret.column < start
            || caret.column > end)
            continue;
        // Quotes are copied with the word that they are around.
        while (start < end && styled.text[start] == u'\'')
            ++start;
        while (start < end && styled.text[end - 1] == u'\'')
            --end;
        return {{caret.line, start}, {caret.line, end}};
    }
    return {};
}

void CodeEdit::findIncremental()
{
    if (!m_findBar)
        m_findBar = new CodeEditFindIncrementalDialog(this, this);
    m_findBar->start();
}

void CodeEdit::showDiagnostic(const DiagnosticData& diagnostic)
{
    if (!m_showDiagnostics || diagnostic.level < DiagnosticData::Note)
        return;
    if (!m_diagnostic)
        m_diagnostic = new DiagnosticPopup(viewport());
    const Place place{std::max(0, diagnostic.line - 1), std::max(0, diagnostic.column - 1)};
    m_editor.setCaretPosition(place);
    m_diagnostic->setBold(m_boldDiagnostics);
    m_diagnostic->showMessage(diagnostic, QPointF(textLeft(), pointOf(place).y()).toPoint(),
                              m_fonts.lineHeight());
}

void CodeEdit::clearDiagnostic()
{
    if (m_diagnostic)
        m_diagnostic->hide();
}

// Look

void CodeEdit::setFonts(const QFont& font)
{
    m_configuredFont = font;
    m_fonts = CodeEditFonts(font);
    m_longestColumns = 0;
    updateVisibleSize();
    viewport()->update();
}

void CodeEdit::changeTextSize(int points)
{
    QFont font = m_fonts.base();
    font.setPointSizeF(std::clamp(font.pointSizeF() + points, SmallestPointSize, LargestPointSize));
    m_fonts = CodeEditFonts(font);
    updateVisibleSize();
    viewport()->update();
}

void CodeEdit::restoreTextSize() { setFonts(m_configuredFont); }

void CodeEdit::setColorScheme(const CodeEditColorScheme& scheme)
{
    s_scheme = scheme;
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* edit = qobject_cast<CodeEdit*>(widget))
            edit->viewport()->update();
}

const CodeEditColorScheme& CodeEdit::colorScheme() { return s_scheme; }

void CodeEdit::setHighlightFind(const TextSearch& search)
{
    m_highlightFindRegexp = search;
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* edit = qobject_cast<CodeEdit*>(widget))
            edit->viewport()->update();
}

void CodeEdit::setLineNumberMode(LineNumberMode mode)
{
    m_lineNumbers = mode;
    updateVisibleSize();
    viewport()->update();
}

void CodeEdit::setIconGutter(bool shown)
{
    m_iconGutter = shown;
    updateVisibleSize();
    viewport()->update();
}

void CodeEdit::setShowWhitespace(bool shown)
{
    m_showWhitespace = shown;
    viewport()->update();
}

void CodeEdit::setHighlightCaretLine(bool highlighted)
{
    m_highlightCaretLine = highlighted;
    viewport()->update();
}

int CodeEdit::decodeCaretStyle(const QString& text)
{
    const int shape = text.contains(u"Vertical") ? VerticalCaret
        : text.contains(u"Block")                ? BlockCaret
                                                 : UnderlineCaret;
    return shape + (text.contains(u"Blinking") ? BlinkingCaret : 0);
}

void CodeEdit::setCaretStyles(int insert, int overwrite)
{
    m_insertCaret = insert;
    m_overwriteCaret = overwrite;
    showCaret();
}

void CodeEdit::setDiagnostics(bool shown, bool bold)
{
    m_showDiagnostics = shown;
    m_boldDiagnostics = bold;
}

void CodeEdit::setMouseBehaviour(bool dragDrop, bool copyOnSelect, bool pasteOnMiddle)
{
    m_dragDrop = dragDrop;
    m_copyOnSelect = copyOnSelect;
    m_pasteOnMiddle = pasteOnMiddle;
}

void CodeEdit::setPointerShape(Qt::CursorShape shape)
{
    m_pointerShape = shape;
    viewport()->setCursor(shape);
}

// Scrolling

void CodeEdit::updateVisibleSize()
{
    const int lines = viewport()->height() / m_fonts.lineHeight();
    const auto columns =
        static_cast<int>((viewport()->width() - textLeft()) / m_fonts.characterWidth());
    m_editor.setVisibleSize(lines, columns - 1);
    updateScrollBars();
}

void CodeEdit::updateScrollBars()
{
    if (m_updatingScrollBars)
        return;
    m_updatingScrollBars = true;
    const int top = m_editor.topLine();
    for (int line = top; line < std::min(top + m_editor.visibleLines() + 1, m_editor.count());
         ++line)
        m_longestColumns = std::max(m_longestColumns,
                                    m_editor.screenColumn({line, m_editor.buffer().length(line)}));
    QScrollBar& vertical = *verticalScrollBar();
    // A text that is seen as a whole has nowhere to go.
    const bool fits = top == 0 && m_editor.count() <= m_editor.visibleLines();
    vertical.setRange(0, fits ? 0 : std::max(0, m_editor.count() - 1));
    vertical.setPageStep(std::max(1, m_editor.visibleLines() - 1));
    vertical.setValue(top);
    QScrollBar& horizontal = *horizontalScrollBar();
    const int left = m_editor.leftColumn();
    const int columns = std::max(m_longestColumns + RightSlack, left + m_editor.visibleColumns());
    horizontal.setRange(0,
                        m_longestColumns < m_editor.visibleColumns() && left == 0
                            ? 0
                            : std::max(0, columns - m_editor.visibleColumns()));
    horizontal.setPageStep(m_editor.visibleColumns());
    horizontal.setValue(left);
    m_updatingScrollBars = false;
}

void CodeEdit::scrollContentsBy(int, int)
{
    if (m_updatingScrollBars)
        return;
    m_editor.setTopLine(verticalScrollBar()->value());
    m_editor.setLeftColumn(horizontalScrollBar()->value());
    if (m_diagnostic)
        m_diagnostic->hide();
}

void CodeEdit::viewChanged(bool whole, int caretLineBefore)
{
    updateScrollBars();
    clearDiagnostic();
    if (whole)
        repaintChanges();
    repaintLine(caretLineBefore);
    showCaret();
    updateMicroFocus();
    tellScreenReaders();
}

/// That the text or the caret isn't what it was.
void CodeEdit::tellScreenReaders()
{
    if (m_changesToTell > MostChangesTold)
        tellOfChangedText(*this);
    m_changesToTell = 0;
    tellOfCaret(*this);
}

/// Typing changes a line, and those below only if a comment or the like begins or ends there.
void CodeEdit::repaintChanges()
{
    ShownLines shown(m_editor);
    const int margin = marginWidth();
    if (margin == m_shownMargin && shown.isComparable(m_shown)) {
        for (const int line : shown.changedSince(m_shown))
            repaintLine(line);
    } else {
        viewport()->update();
    }
    m_shown = std::move(shown);
    m_shownMargin = margin;
}

void CodeEdit::repaintLine(int line)
{
    const int y = (line - m_editor.topLine()) * m_fonts.lineHeight();
    viewport()->update(0, y, viewport()->width(), m_fonts.lineHeight());
}

/// Seen from now on for half a period at least.
void CodeEdit::showCaret()
{
    m_caretShown = true;
    const int style = CodeEditor::overwriteMode() ? m_overwriteCaret : m_insertCaret;
    const int period = QApplication::cursorFlashTime();
    if (hasFocus() && (style & BlinkingCaret) != 0 && period > 0)
        m_blinkTimer.start(period / 2, this);
    else
        m_blinkTimer.stop();
    repaintLine(m_editor.caret().line);
}

void CodeEdit::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_blinkTimer.timerId()) {
        m_caretShown = !m_caretShown;
        repaintLine(m_editor.caret().line);
    } else if (event->timerId() == m_mouseTimer.timerId()) {
        mouseTick();
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

void CodeEdit::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateVisibleSize();
    if (m_findBar)
        m_findBar->place();
}

void CodeEdit::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        viewport()->update();
}

void CodeEdit::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    showCaret();
    emit editorFocused();
}

void CodeEdit::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    m_blinkTimer.stop();
    m_caretShown = false;
    clearDiagnostic();
    repaintLine(m_editor.caret().line);
}

// For editors that know the debugger

CodeEdit::BreakpointState CodeEdit::breakpointState(int) { return BreakpointState::NotApplicable; }
void CodeEdit::setBreakpointState(int, BreakpointState) { }
int CodeEdit::lineAddress(int) { return -1; }
