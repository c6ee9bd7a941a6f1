#pragma once

#include "base/Path.h"
#include "editor/buffer/QCodeBuffer.h"
#include "editor/document/DocumentPrompts.h"
#include "editor/document/TextEncoding.h"
#include "editor/document/UndoStack.h"

#include <QDateTime>
#include <QObject>

#include <memory>

/// A text that is being edited: its buffer, caret and selection, what can be undone, and its file.
///
/// The operations here that take `record` are the only road by which a user changes the buffer.
/// They do nothing unless okToModify(). Changes between beginUpdate and endUpdate are undone
/// together.
class CodeDocument : public QObject {
    Q_OBJECT
public:
    enum class LineEnding { CRLF = 0, LF = 1, CR = 2 };
    enum class ModState { Writable = 0, ReadOnly = 1, Locked = 2 };
    enum class UndoMode { Characters = 0, Words = 1, Insertion = 2 };

    /// What an update does besides the changes in it.
    enum UpdateFlag : unsigned {
        Repaint = 0x02, ///< everything
        Extend = 0x08,  ///< the selection, from where the caret was to where it gets
        Deselect = 0x10,
        KeepScroll = 0x20, ///< don't bring the caret into view
        Quiet = 0x40,      ///< don't emit finished
        LinesChanged = 0x80,
    };

    explicit CodeDocument(QObject* parent = nullptr);
    ~CodeDocument() override;

    const QCodeBuffer& buffer() const { return m_buffer; }
    QCodeBuffer& buffer() { return m_buffer; }
    int count() const { return m_buffer.count(); }

    /// Lives as long as the document. Null for one that has no user.
    void setPrompts(DocumentPrompts* prompts);

    /// Gives the text another language, and shows it so.
    void setParser(CodeEditParser* parser);
    CodeEditParser* parser() const { return m_buffer.parser(); }

    // Caret and selection

    QCodeBufferPosition caret() const { return m_caret; }
    /// The place that was asked for: it may lie beyond the text, and vertical motion keeps to its
    /// column.
    QCodeBufferPosition wantedCaret() const { return m_wantedCaret; }
    /// Limits the place to the text, unless virtual space is on or `force` is set.
    virtual void setCaret(QCodeBufferPosition position, bool force = false);
    bool virtualSpace() const { return m_virtualSpace; }
    void setVirtualSpace(bool enabled) { m_virtualSpace = enabled; }

    const QSelection& selection() const { return m_selection; }
    void setSelection(const QSelection& selection);
    void dropSelection() { setSelection({}); }
    bool selecting() const { return m_selection.isValid(); }
    /// Of the selection; null if there is none.
    QString selectedText() const;

    // Changes

    /// Updates nest; the outermost is what is undone. A selection is extended or dropped by the
    /// flags of each, the rest is done by all flags together at the end.
    void beginUpdate(unsigned flags = 0, CodeEditIcon icon = CodeEditIcon::Edit);
    void endUpdate(unsigned flags = 0);
    /// How many updates are open.
    int updateDepth() const { return m_updateDepth; }

    void insertText(QCodeBufferPosition position, const QString& text, bool record = true);
    void deleteText(QCodeBufferPosition begin, QCodeBufferPosition end, bool record = true);
    void deleteText(const QSelection& selection);
    /// The old text stands at the position; neither text holds a line break.
    void replaceText(QCodeBufferPosition position, const QString& oldText, const QString& newText,
                     bool record = true);
    /// Makes the place exist: adds lines and blanks.
    void sync(QCodeBufferPosition position);
    /// Grows with every change of the text.
    qint64 sequenceNumber() const { return m_sequenceNumber; }
    bool needsParsing() const { return m_needsParsing; }
    void setNeedsParsing(bool needed) { m_needsParsing = needed; }

    /// Replaces the text without recording it.
    void setText(const QStringList& lines);
    void setText(const QString& text);
    QStringList getAllText() const;
    /// Empty text, nothing to undo.
    void clear();

    // Undo

    void undo();
    void redo();
    void undoAll();
    void redoAll();
    bool canUndo() const { return !m_undo.isEmpty(); }
    bool canRedo() const { return !m_redo.isEmpty(); }
    const UndoStack& undoActions() const { return m_undo; }
    const UndoStack& redoActions() const { return m_redo; }
    void clearUndoList() { m_undo.clear(); }
    void clearRedoList() { m_redo.clear(); }
    void clearUndoRedoList();
    /// Whether the text differs from what was last loaded or saved, or would be written otherwise.
    bool modified() const { return state() != m_savedState; }
    void resetModified();
    static UndoMode undoMode() { return s_undoMode; }
    static void setUndoMode(UndoMode mode) { s_undoMode = mode; }
    /// Whether that text, typed now, would join the transaction at the head.
    bool canMergeTyping(QStringView text) const;
    /// Joins the transaction at the head with the one before it.
    void mergeTyping();

    // File

    const Path& filename() const { return m_filename; }
    /// False for a document that hasn't been saved yet.
    bool isNamed() const { return m_named; }
    virtual void setFilename(const Path& path, bool named);
    LineEnding lineEnding() const { return m_lineEnding; }
    void setLineEndingCRLF() { setLineEnding(LineEnding::CRLF); }
    void setLineEndingLF() { setLineEnding(LineEnding::LF); }
    void setLineEndingCR() { setLineEnding(LineEnding::CR); }
    /// "Default" for that of the user.
    const QString& encoding() const { return m_encodingName; }
    /// What the file is to be written in.
    void setEncoding(const QString& name);

    ModState modState() const { return m_modState; }
    /// A locked document stays so unless forced.
    void setModState(ModState state, bool force = false);
    void refreshModState();
    bool isReadOnly() const { return m_modState != ModState::Writable; }
    bool editReadOnly() const { return m_editReadOnly; }
    void setEditReadOnly(bool allowed) { m_editReadOnly = allowed; }
    bool canEdit() const;
    /// The same, after the host had its chance to make a read-only file writable.
    virtual bool okToModify();
    /// Flips the right of the file's owner to write it.
    void toggleReadOnly();

    /// A failure leaves the document as it was and is told to the user.
    bool load(const Path& path);
    bool load(const Path& path, const QString& encoding);
    bool save();
    bool saveAs(const Path& path);
    /// Asks for the name.
    bool saveAs();
    bool saveCopyAs(const Path& path);
    /// Whether each line can be written in the document's encoding. If asked, the user may say that
    /// it be written all the same.
    bool checkEncoding(bool ask);
    /// 1 for saved or nothing to do, 0 for not to be saved, -1 for cancelled or failed.
    int checkSaved();
    /// The size of the file when it was loaded or saved.
    qint64 sizeInBytes() const { return m_sizeInBytes; }
    /// Whether another program has written or removed the file since.
    bool changedOnDisk() const;
    /// The text stays, whatever another program did to the file; it counts as modified.
    void keepAgainstDisk();
    static int backupFileDepth() { return s_backupFileDepth; }
    static void setBackupFileDepth(int depth) { s_backupFileDepth = depth; }

signals:
    /// For the status bar.
    void message(const QString& text);
    void error(const QString& text);
    void note(const QString& text);
    /// The outermost update has ended, or a file was loaded or saved.
    void finished();
    /// `delta` lines were added in front of `line`, or -delta removed from it on; 0-based.
    void numberOfLinesChanged(int line, int delta);
    /// At that place `inserted` stands now where `removed` was. A text that is replaced as a whole
    /// isn't told.
    void textReplaced(QCodeBufferPosition position, const QString& removed,
                      const QString& inserted);
    /// Someone wants to edit a read-only file. A receiver may change that.
    void readOnlyFileEdit();
    void modStateChanged();
    void renamed();
    void saved();

protected:
    /// Ahead of writing the file: a place for clean-ups, which are edits.
    virtual void aboutToSave() { }
    /// At the end of the outermost update, ahead of finished.
    virtual void updateFinished(unsigned flags, QCodeBufferPosition caretBefore);
    /// After the file or the number of its lines changed as a whole.
    virtual void linesChanged() { }
    /// What virtual space and the caret's limits depend on.
    virtual int linesBelowText() const { return 0; }
    DocumentPrompts& prompts() const { return *m_prompts; }
    /// In the status bar, unless a sequence of commands is under way.
    void report(const QString& text);

private:
    enum class Saving { Failed, Written, Elsewhere };

    /// What a file is made of.
    struct State {
        qint64 revision = 0; ///< of the text
        LineEnding lineEnding = LineEnding::LF;
        QString encoding;
        bool operator==(const State&) const = default;
    };
    State state() const;
    static constexpr qint64 NoRevision = -1;
    void noteFile();
    void setLineEnding(LineEnding ending);
    void record(std::unique_ptr<CodeEditAction> action);
    void replay(UndoStack& from, UndoStack& to, bool undo);
    void replayAll(UndoStack& from, UndoStack& to, bool undo, const QString& text);
    bool failToOpen(const QString& text, const QString& reason);
    bool readFile(const Path& path, QString& text, QString& warning, bool& binary);
    LineEnding lineEndingOf(QStringView text, bool& consistent) const;
    bool saveFile(const Path& path);
    QByteArray encodedText() const;
    bool makeWritable(bool& elsewhere);
    void createBackupFiles(const Path& path);
    bool finishSaving(const Path& path);

    static UndoMode s_undoMode;
    static int s_backupFileDepth;

    QCodeBuffer m_buffer;
    DocumentPrompts* m_prompts;

    QCodeBufferPosition m_caret;
    QCodeBufferPosition m_wantedCaret;
    QSelection m_selection;
    bool m_virtualSpace = false;

    int m_updateDepth = 0;
    unsigned m_updateFlags = 0;
    QCodeBufferPosition m_updateCaret;
    std::unique_ptr<CodeEditTransaction> m_transaction;
    qint64 m_sequenceNumber = 0;
    bool m_needsParsing = false;

    UndoStack m_undo;
    UndoStack m_redo;
    qint64 m_lastRevision = 0;
    State m_savedState;

    Path m_filename;
    bool m_named = false;
    LineEnding m_lineEnding = LineEnding::LF;
    QString m_encodingName;
    TextEncoding m_encoding;
    ModState m_modState = ModState::Writable;
    bool m_editReadOnly = false;
    QDateTime m_fileTime;
    qint64 m_sizeInBytes = 0;
};
