#pragma once

#include "editor/buffer/WordCharacter.h"
#include "editor/commands/ClipboardRing.h"
#include "editor/commands/CodeEditSettings.h"
#include "editor/commands/CodeEditorHost.h"
#include "editor/commands/CodeTemplate.h"
#include "editor/commands/EditCommand.h"
#include "editor/document/CodeDocument.h"
#include "projects/settings/FindOptions.h"

#include <functional>
#include <optional>

/// A text with all commands for editing it, and the part of it that is looked at. It doesn't need a
/// window: CodeEdit shows it in one.
///
/// Screen columns count what is seen: a tab goes on to the next multiple of the tab size. Columns
/// elsewhere count units of the text.
class CodeEditor : public CodeDocument {
    Q_OBJECT
public:
    explicit CodeEditor(QObject* parent = nullptr);

    /// Lives as long as the editor. Null for none.
    void setHost(CodeEditorHost* host);
    const CodeEditSettings& settings() const { return m_settings; }
    void setSettings(const CodeEditSettings& settings);

    /// Notes the command for a macro and carries it out, as often as the argument says if it moves
    /// the caret.
    void execute(EditCommand command);
    /// False for an editing command while the document can't be edited, and for those that have
    /// nothing to work on.
    bool isAvailable(EditCommand command) const;
    void playRecording();

    /// How often the next motion is carried out; 0 for not set.
    void setArgument(int count);
    bool hasArgument() const { return m_argument > 0; }
    /// The argument, which is used up; 1 if there is none.
    int argument();
    /// A further digit of an argument that is being entered. False if none is.
    bool enterArgumentDigit(int digit);

    /// "Ln 1 Col 1"
    QString statusNote() const;

    static bool overwriteMode() { return s_overwriteMode; }
    static void setOverwriteMode(bool overwrite) { s_overwriteMode = overwrite; }
    static const QList<CodeTemplate>& codeTemplates() { return s_templates; }
    static void setCodeTemplates(const QList<CodeTemplate>& templates) { s_templates = templates; }

    // What is looked at

    int topLine() const { return m_topLine; }
    void setTopLine(int line);
    /// In screen columns.
    int leftColumn() const { return m_leftColumn; }
    void setLeftColumn(int column);
    int visibleLines() const { return m_visibleLines; }
    int visibleColumns() const { return m_visibleColumns; }
    void setVisibleSize(int lines, int columns);
    /// Where the caret is drawn, in units of a column; by default its screen column.
    void setCaretMeasure(const std::function<double()>& measure) { m_caretMeasure = measure; }

    int screenColumn(QCodeBufferPosition position) const;
    /// The place in a line; a column inside a tab belongs to the place behind it.
    QCodeBufferPosition bufferPositionOf(int line, int screenColumn) const;

    /// The word around, or just ahead of the place; not valid if there is none.
    QSelection wordAt(QCodeBufferPosition position) const;
    /// The word, or the run of other characters, that the character at the place belongs to; not
    /// valid behind the end of a line.
    QSelection runAt(QCodeBufferPosition position) const;
    QString wordUnder(QCodeBufferPosition position) const;

    // Commands

#define COMMAND(name, kind) void name();
#define DOCUMENT_COMMAND(name, kind)
#define HOST_COMMAND(name, kind)
#include "editor/commands/EditCommands.inc"

    void gotoLine(int line);
    void setCaretPosition(QCodeBufferPosition position, bool extend = false);
    void select(const QSelection& selection);

    /// What a key press does with its text.
    void typeText(const QString& text);
    /// The same in one step, replacing the selection, without regard to templates and wrapping.
    void insert(const QString& text, CodeEditIcon icon = CodeEditIcon::Paste);
    /// Takes the selection to another place and leaves it selected; nothing if that is inside of
    /// it.
    void moveSelection(QCodeBufferPosition place);
    void surround(const QString& before, const QString& after);
    void cast(const QString& type);

    void lineIndent(int line);
    void lineOutdent(int line);
    void tabify(int firstLine, int lastLine);
    void untabify(int firstLine, int lastLine);
    /// White space of that screen width that begins at that screen column.
    static QString getWhitespaceString(bool useTabs, int tabSize, int width, int startColumn);
    /// The screen width of the white space that a text begins with.
    int whitespaceLength(QStringView text, int startColumn) const;
    int indentLength(int line) const;
    void insertWhitespace(QCodeBufferPosition position, int width);

    /// False if there is no such template.
    bool expandTemplate(const QString& word, QCodeBufferPosition start, QCodeBufferPosition end);
    /// The template that a blank typed at the caret would expand; its word stands alone in the
    /// line.
    std::optional<QSelection> getTemplateParameters() const;

    /// The two ends of the pair whose one end is nearest to the caret, in the line of the caret;
    /// not valid if there is none. Ends within `lineLimit` lines.
    QSelection findDelimiter(int lineLimit) const;
    /// The pair that is shown; not valid for none.
    const QSelection& matchedPair() const { return m_matchedPair; }

    void setBookmark(int line);
    void clearBookmark(int line);
    QList<int> bookmarkLines() const;

    // Searching

    /// From that place on; selects what it finds.
    bool find(QCodeBufferPosition position, const QString& text, FindOptions options);
    /// The last search again; the settings remember it.
    bool findAgain();
    /// Replaces the selection if it is a match, and goes on to the next.
    bool replaceNext(const QString& text, const QString& replacement, FindOptions options);
    /// In the whole text, or the selection. The number of matches.
    int replaceAll(const QString& text, const QString& replacement, FindOptions options,
                   bool inSelection);
    /// Bookmarks the lines with a match. The number of these lines.
    int markAll(const QString& text, FindOptions options, bool inSelection);
    int countMatches(const QString& text, FindOptions options) const;
    /// Which of the matches, from 1 on, stands at that place; 0 if none.
    int matchNumber(const QString& text, FindOptions options, QCodeBufferPosition position) const;

signals:
    void textCut(const QString& text);
    void textCopied(const QString& text);
    /// The text, the caret or what is looked at has changed; everything if `whole`, else the lines
    /// of the caret before and now.
    void viewChanged(bool whole, int caretLineBefore);
    void scrolled();
    void bookmarksChanged();

protected:
    void updateFinished(unsigned flags, QCodeBufferPosition caretBefore) override;
    int linesBelowText() const override { return m_visibleLines - 2; }
    void aboutToSave() override;

private:
    using Place = QCodeBufferPosition;

    /// Moves the caret to a place that depends on where it is.
    void move(Place (CodeEditor::*target)() const, bool extend);
    Place charLeftTarget(bool wrap) const;
    Place charRightTarget(bool wrap) const;
    Place leftOfCaret() const { return charLeftTarget(true); }
    Place rightOfCaret() const { return charRightTarget(true); }
    Place leftInLine() const { return charLeftTarget(false); }
    Place rightInLine() const { return charRightTarget(false); }
    Place wordLeftStart() const;
    Place wordLeftStop() const;
    Place wordRightStart() const;
    Place wordRightStop() const;
    Place verticalTarget(int lines) const;
    Place chunkTarget(int step) const;
    Place chunkAbove() const { return chunkTarget(-1); }
    Place chunkBelow() const { return chunkTarget(1); }
    Place lineAbove() const { return verticalTarget(-1); }
    Place lineBelow() const { return verticalTarget(1); }
    Place startOfNextLine() const;
    Place startToggle() const;
    Place startOfLine() const { return {caret().line, 0}; }
    Place firstNonSpace() const { return {caret().line, firstNonSpaceColumn(caret().line)}; }
    Place endOfLine() const { return {caret().line, buffer().length(caret().line)}; }
    Place endOfNextLine() const;
    Place startOfText() const;
    Place topOfView() const;
    Place bottomOfView() const;
    Place startOfDocument() const { return {0, 0}; }
    Place endOfDocument() const;
    void page(int direction, bool extend);
    int firstNonSpaceColumn(int line) const;
    int clusterAfter(int line, int column) const;
    int clusterBefore(int line, int column) const;
    QChar charAt(Place place) const;

    void ensureCaretVisible(QCodeBufferPosition caretBefore, unsigned& flags);
    void keepFence(QCodeBufferPosition caretBefore, unsigned& flags);
    void scrollBy(int lines);

    QSelection wholeLineSelection() const;
    /// The lines of the selection as a whole; that of the caret if there is none.
    std::pair<int, int> affectedLines() const;
    void deleteRange(Place begin, Place end, CodeEditIcon icon);
    void deleteSelection();
    void fillVirtualSpace();
    void replaceLine(int line, const QString& text);
    void replaceLines(int first, const QStringList& lines, CodeEditIcon icon);
    QStringList linesBetween(int first, int last) const;
    void setIndent(int line, int width);
    void checkIndent(bool force);
    void changeCase(CodeEditIcon icon, QString (*change)(const QString&));
    void sortLines(bool descending);
    void alignLines(int sixths);
    void joinNextLine(QStringView between);
    bool wrapSelection(QChar typed);
    void highlightMate();

    enum class Clip { Selection, Lines, Marked };
    QString clipText(Clip what) const;
    void copyClip(Clip what, bool append);
    void cutClip(Clip what, bool append);
    void pasteText(const QString& text);
    void gotoBookmark(int line);
    bool findSelected(bool up);
    void selectMatch(int line, int column, int length);

    static bool s_overwriteMode;
    static QList<CodeTemplate> s_templates;

    CodeEditorHost* m_host;
    CodeEditSettings m_settings;
    int m_argument = 0;
    bool m_playing = false; ///< a macro
    int m_topLine = 0;
    int m_leftColumn = 0;
    int m_visibleLines = 1;
    int m_visibleColumns = 80;
    std::function<double()> m_caretMeasure;
    QSelection m_matchedPair;
};
