#pragma once

#include "editor/commands/CodeEditor.h"
#include "editor/commands/KeyMap.h"
#include "editor/commands/TextSearch.h"
#include "editor/widget/CodeEditColorScheme.h"
#include "editor/widget/CodeEditFonts.h"
#include "editor/widget/Edit.h"
#include "editor/widget/LinePainter.h"
#include "editor/widget/ShownLines.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QElapsedTimer>

#include <memory>
#include <optional>

class CodeEditHost;
class CodeSyntaxChecker;
class DiagnosticPopup;
class CodeEditFindIncrementalDialog;
struct DiagnosticData;

/// The window of a text: drawing, keys, mouse, input methods, the clipboard, printing.
///
/// What editing means stands in CodeEditor; this class shows one and leads events to its commands.
/// It knows nothing of projects or the debugger: those override what is virtual here.
class CodeEdit : public QAbstractScrollArea,
                 public Edit,
                 public PrintInterface,
                 public SpotlightInterface,
                 public URLInterface {
    Q_OBJECT
public:
    enum class LineNumberMode {
        Off = 0,
        CurrentLine = 1,
        AllLines = 2,
        Every5Lines = 3,
        Every10Lines = 4,
        Addresses = 5,
    };
    /// The shape in the low bits, and whether it blinks.
    enum CaretStyle { UnderlineCaret = 0, BlockCaret = 1, VerticalCaret = 2, BlinkingCaret = 4 };
    enum class BreakpointState { NotApplicable, None, Enabled, Disabled, Invalid };

    explicit CodeEdit(QWidget* parent = nullptr);
    ~CodeEdit() override;

    CodeEditor& editor() { return m_editor; }
    const CodeEditor& editor() const { return m_editor; }
    void execute(EditCommand command) { m_editor.execute(command); }

    // Edit
    qint64 sizeInBytes() const override { return m_editor.sizeInBytes(); }
    int lineCount() const override { return m_editor.count(); }
    QString fileName() const override { return m_editor.filename().osPath(); }
    void setModState(ModState state, bool force) override { m_editor.setModState(state, force); }
    void refreshModState() override { m_editor.refreshModState(); }
    bool load(const Path& path) override;
    /// An empty text is to be saved there, and is in that file's language.
    void startAs(const Path& path);
    bool modified() const override { return m_editor.modified(); }
    bool isReadOnly() const override { return m_editor.isReadOnly(); }
    bool canEdit() const override { return m_editor.canEdit(); }
    QString statusNote() const override { return m_editor.statusNote(); }
    bool save() override { return m_editor.save(); }
    int checkSaved() override { return m_editor.checkSaved(); }
    bool close(bool force) override;
    void setCaption(const QString& text) override { setWindowTitle(text); }
    bool isAvailable(Command command) const override { return m_editor.isAvailable(command); }

    // PrintInterface
    void initParameters(PrintParameters& parameters) override;
    void beginPrinting(const PrintParameters& parameters) override;
    int totalPages() const override;
    void render(int page, QPainter& painter) override;
    void endPrinting() override;
    /// Asks for a printer, or shows a preview, and prints.
    void print();
    void printPreview();

    // SpotlightInterface, URLInterface
    bool findFirst(const QString& text) override;
    bool findNext(const QString& text) override;
    QString url() const override;

    // Look
    void setFonts(const QFont& font);
    const CodeEditFonts& fonts() const { return m_fonts; }
    void changeTextSize(int points);
    void restoreTextSize();
    static void setColorScheme(const CodeEditColorScheme& scheme);
    static const CodeEditColorScheme& colorScheme();
    void setLineNumberMode(LineNumberMode mode);
    void setIconGutter(bool shown);
    void setShowWhitespace(bool shown);
    bool showsWhitespace() const { return m_showWhitespace; }
    void setHighlightCaretLine(bool highlighted);
    /// For inserting and for overwriting.
    void setCaretStyles(int insert, int overwrite);
    /// Of a setting's text, such as "Blinking Vertical Bar".
    static int decodeCaretStyle(const QString& text);
    /// Whether diagnostics pop up, and in bold.
    void setDiagnostics(bool shown, bool bold);
    void setMouseBehaviour(bool dragDrop, bool copyOnSelect, bool pasteOnMiddle);
    /// Of the pointer over the text.
    void setPointerShape(Qt::CursorShape shape);

    KeyMap& keyMap() { return m_keyMap; }
    /// Whether the operators of the numeric keypad are commands; see KeyMap::keypadCommand.
    void setKeypadEdits(bool enabled) { m_keypadEdits = enabled; }
    /// Whether a selection that the mouse has made is followed by a mini toolbar.
    void setMiniToolbar(bool enabled) { m_miniToolbar = enabled; }
    /// The matches of that search are shown; none for one that isn't valid.
    static void setHighlightFind(const TextSearch& search);

    /// One of the registered languages, in their order, or none.
    static constexpr int NoSyntaxHighlight = 0x9999;
    void setSyntaxHighlight(int language);

    void setSyntaxChecker(CodeSyntaxChecker* checker) { m_syntaxChecker = checker; }
    bool canCheckSyntax() const { return m_syntaxChecker != nullptr; }
    void checkSyntax();

    /// A further line of the tip that is being asked for, while one of the signals below is
    /// delivered.
    void appendClientTooltip(const QString& text);

    void showDiagnostic(const DiagnosticData& diagnostic);
    void clearDiagnostic();
    void findIncremental();
    /// Leaves that many pixels between the text and the bottom of the widget.
    void setRoomBelow(int height) { setViewportMargins(0, 0, 0, height); }

    /// The word at the caret, if it is one that the spell checker has marked; else not valid.
    QSelection misspelledWord() const;

    /// In pixels of the viewport.
    QRectF caretRectangle() const;
    QPointF pointOf(QCodeBufferPosition position) const;
    QCodeBufferPosition positionAt(QPointF point) const;
    int marginWidth() const;

signals:
    void finished();
    void editorFocused();
    void error(const QString& text);
    void message(const QString& text);
    void note(const QString& text);
    /// The pointer rests over that word of the line, which counts from 0, or over its margin. A
    /// receiver answers at once by appendClientTooltip.
    void dataTipRequested(CodeEdit* edit, int line, const QString& word);
    void marginTipRequested(CodeEdit* edit, int line);
    /// The user wants to know of the word at the caret.
    void help(const QString& word);
    /// Commands that more than the editor is needed for.
    void commandRequested(EditCommand command);
    void contextMenuRequested(const QPoint& globalPosition, bool overMargin);
    /// At that place of the viewport the mouse has ended a selection.
    void miniToolbarRequested(const QPoint& point);

protected:
    // For editors that know the debugger.
    virtual BreakpointState breakpointState(int line);
    virtual void setBreakpointState(int line, BreakpointState state);
    /// In modes that show addresses; negative for none.
    virtual int lineAddress(int line);
    virtual int addressWidth() const { return 5; }
    virtual int executionLine() const { return -1; }
    virtual void controlClick(QCodeBufferPosition position) { Q_UNUSED(position) }
    /// The pointer moves over the text while Ctrl is down.
    virtual void controlMove(QCodeBufferPosition position) { Q_UNUSED(position) }
    /// The mouse has ended a selection at that place of the viewport.
    virtual void showMiniPalette(QPoint point) { emit miniToolbarRequested(point); }
    /// The pointer rests at that place of the viewport.
    virtual void maybeTip(QPoint point, QPoint globalPoint);

    bool viewportEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    friend class CodeEditHost;
    using Place = QCodeBufferPosition;
    enum class MouseMode { Idle = 0, Characters = 1, Words = 2, Lines = 3, Dragging = 4 };

    void carryOut(EditCommand command);
    void updateScrollBars();
    void updateVisibleSize();
    void showCaret();
    void repaintChanges();
    void repaintLine(int line);
    void viewChanged(bool whole, int caretLineBefore);
    void tellScreenReaders();
    void useLanguageOfFile();

    LinePainter::Look look() const;
    StyledLine styledLine(int line) const;
    bool hasPreedit(int line) const;
    void paintPart(QPainter& painter, const QRectF& clip);
    void paintLine(QPainter& painter, int line, double y, const QRectF& clip);
    void paintMargin(QPainter& painter, int line, double y);
    void paintCaret(QPainter& painter);
    QColor lineBackground(int line) const;
    QList<LinePainter::Highlight> highlights(int line, const StyledLine& styled) const;
    QString lineNumberText(int line);
    double textLeft() const { return marginWidth(); }

    std::optional<EditCommand> commandOf(const QKeyEvent& event) const;
    void pressInMargin(QMouseEvent* event);
    void beginMouseSelection(MouseMode mode);
    void extendByMouse(QPointF point);
    bool canDrop(const QMimeData& data) const;
    void startDrag();
    void mouseTick();
    QString tipWord(QCodeBufferPosition place) const;

    static CodeEditColorScheme s_scheme;
    static TextSearch m_highlightFindRegexp;

    CodeEditor m_editor;
    std::unique_ptr<CodeEditHost> m_host;
    KeyMap m_keyMap;
    CodeEditFonts m_fonts;
    QFont m_configuredFont;
    CodeSyntaxChecker* m_syntaxChecker = nullptr;
    DiagnosticPopup* m_diagnostic = nullptr;
    CodeEditFindIncrementalDialog* m_findBar = nullptr;

    LineNumberMode m_lineNumbers = LineNumberMode::Every10Lines;
    bool m_iconGutter = true;
    bool m_showWhitespace = false;
    bool m_highlightCaretLine = false;
    int m_insertCaret = VerticalCaret | BlinkingCaret;
    int m_overwriteCaret = BlockCaret | BlinkingCaret;
    Qt::CursorShape m_pointerShape = Qt::IBeamCursor;
    bool m_dragDrop = true;
    bool m_copyOnSelect = false;
    bool m_pasteOnMiddle = true;
    bool m_keypadEdits = false;
    bool m_miniToolbar = false;
    bool m_showDiagnostics = true;
    bool m_boldDiagnostics = false;

    QBasicTimer m_blinkTimer;
    bool m_caretShown = true;
    QBasicTimer m_mouseTimer;
    MouseMode m_mouseMode = MouseMode::Idle;
    QPointF m_mousePoint;
    QSelection m_mouseAnchor; ///< the word or line that dragging began with
    bool m_dragPending = false;
    QElapsedTimer m_sinceDoubleClick;
    int m_wheelRest = 0;

    QStringList m_clientTips;
    QString m_preedit;
    int m_changesToTell = 0;  ///< to screen readers, in the update that is under way
    int m_longestColumns = 0; ///< of the lines that have been seen
    /// At the last change of the view, and the margin's width then.
    ShownLines m_shown;
    int m_shownMargin = -1;
    bool m_updatingScrollBars = false;

    struct Printing {
        CodeEditFonts fonts;
        PrintParameters parameters;
    };
    std::optional<Printing> m_printing;
};
