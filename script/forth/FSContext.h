#pragma once

#include "script/forth/ControlStack.h"
#include "script/forth/FSFileSystem.h"
#include "script/forth/FSHost.h"
#include "script/forth/InputSource.h"
#include "script/forth/Loop.h"
#include "script/forth/PMemory.h"
#include "script/forth/SearchOrder.h"
#include "script/forth/Stack.h"

#include <memory>
#include <vector>

/// One running instance of the Forth system: stacks, dictionary, memory, input and output. Words
/// that call one another take no room on the stack of the host; only included files do.
///
/// All that a definition is made of belongs to the context and lives as long, so that cells may
/// hold plain pointers. Faults are ForthExceptions.
class FSContext {
public:
    static constexpr std::size_t MostCalls = 16384;   ///< else "return stack overflow"
    static constexpr std::size_t MostLoops = 16384;   ///< else "loop stack overflow"
    static constexpr std::size_t MostCatches = 1024;  ///< else "exception stack overflow"
    static constexpr std::size_t MostIncludes = 64;   ///< sources within one another
    static constexpr std::size_t MostNodes = 2000000; ///< of all definitions

    explicit FSContext(FSHost& host, FSFileSystem& files = FSFileSystem::disk());
    ~FSContext();
    FSContext(const FSContext&) = delete;
    FSContext& operator=(const FSContext&) = delete;

    // Stacks
    Stack& data() { return m_data; }
    Stack& returns() { return m_returns; }
    ControlStack& control() { return m_control; }
    void push(X value) { m_data.push(std::move(value)); }
    X pop() { return m_data.pop(); }
    qint64 popLiteral() { return m_data.pop().lit(); }
    /// Throws -6 unless the running definition has put `count` cells on the return stack.
    void demandReturns(int count) const;

    // Running
    /// Runs code to its end. The host's only way in.
    void call(pcode* code);
    /// Makes a definition the running one; it returns to what is next now.
    void enter(PCFA* definition);
    /// What is executed next; null ends the running definition.
    void branch(pcode* target) { m_running.next = target; }
    /// Runs a word so that an exception comes back as its code, and 0 if there is none.
    void beginCatch(PCFA* word);
    void endCatch();
    /// Counts the work of a word that takes more time than others, so that the host is asked often
    /// enough.
    void spend(qint64 work)
    {
        if ((m_untilPoll -= work) <= 0)
            poll();
    }
    /// Has the host asked before the next node. May be called at any time.
    void pollSoon() { m_untilPoll = 0; }

    void beginLoop(const X& limit, const X& start);
    void endLoop() { m_loops.pop_back(); }
    /// The innermost loop, for its end.
    Loop& currentLoop()
    {
        if (m_loops.empty())
            throw ForthException(ForthError::LoopParameters);
        return m_loops.back();
    }
    /// The loop with `n` others within it.
    const Loop& loopAt(std::size_t n) const
    {
        if (n >= m_loops.size())
            throw ForthException(ForthError::NoLoop);
        return m_loops[m_loops.size() - 1 - n];
    }
    /// A local of the running definition.
    X& local(int index)
    {
        const std::size_t at = m_running.localBase + static_cast<std::size_t>(index);
        if (at >= m_localTop)
            throw ForthException(ForthError::OutOfContext);
        return m_locals[at];
    }
    /// Back to where nothing runs, after a fault: files are left, the return stack is cut to a
    /// depth, an unfinished definition is dropped. The data stack stays.
    void recover(int returns);

    // Compiling
    /// Keeps a node as long as the context lives.
    pcode* own(std::unique_ptr<pcode> code);
    template <class Code, class... Arguments> Code* make(Arguments&&... arguments)
    {
        auto code = std::make_unique<Code>(std::forward<Arguments>(arguments)...);
        Code* const made = code.get();
        own(std::move(code));
        return made;
    }
    /// Appends to the open definition.
    void compile(pcode* code);
    template <class Code, class... Arguments> Code* compileNew(Arguments&&... arguments)
    {
        Code* const code = make<Code>(std::forward<Arguments>(arguments)...);
        compile(code);
        return code;
    }
    PLabel* get_label() { return make<PLabel>(); }
    void openDefinition(PCFA* definition);
    /// Goes on with another body: all locals go out of sight.
    void continueDefinition(PCFA* definition);
    void closeDefinition();
    /// Leaves compiling state, and drops what was open.
    void abandonDefinition();
    void ensureCompilationMode() const;
    void checkDefinitionOpen() const;
    PCFA* definition() const { return m_definition; }
    bool getFSState() const;
    void setFSState(bool compiling);
    /// The address of the cell STATE.
    X stateAddress() { return X(0UL, m_system); }
    void addLocal(const QString& name, bool initialised);

    // Dictionary
    /// Adds to the current word list, as the latest word.
    void addWord(PCFA* word);
    PCFA* latest() const { return m_latest; }
    void setLatest(PCFA* word) { m_latest = word; }
    PCreateChild* latestCreated() const { return m_latestCreated; }
    void setLatestCreated(PCreateChild* word) { m_latestCreated = word; }
    /// A local, or a word of the search order; null if there is none.
    PCFA* findWord(const QString& name) const;
    SearchOrder& searchOrder() { return m_searchOrder; }
    WordList* current() const { return m_current; }
    void setCurrent(WordList* list) { m_current = list; }
    WordList* forth() const { return m_wordLists.front().get(); }
    WordList* newWordList(const QString& name);
    /// By its number; throws -266.
    WordList* wordList(qint64 number) const;

    // Memory
    /// The segment that ALLOT takes cells from, made when it is first needed.
    PMemory* dataArea();

    // Input
    InputSource* source() const { return m_source.get(); }
    bool refill() { return m_source && m_source->refill(this); }
    const QString& line() const { return m_line; }
    void setLine(const QString& line);
    /// Of the last number that was read.
    int digitsBehindPoint() const { return m_digitsBehindPoint; }
    void setDigitsBehindPoint(int count) { m_digitsBehindPoint = count; }
    qsizetype position() const { return m_position; }
    void setPosition(qsizetype position) { m_position = position; }
    /// Puts the current source away and reads another one, until `restore_position`.
    void save_position(std::shared_ptr<InputSource> next);
    void restore_position();
    /// How many sources have been put away.
    std::size_t savedPositions() const { return m_saved.size(); }

    // Files
    FSFileSystem& files() { return m_files; }
    /// Opens a file. 0, or the error of the file system, in which case `file` is null.
    int file_open(const QString& name, QIODevice::OpenMode mode, bool binary,
                  std::shared_ptr<FileSource>& file);
    /// An open file; throws -24 if the number isn't one.
    std::shared_ptr<FileSource> file(qint64 id) const;
    void closeFile(qint64 id);

    // Output
    void print(const QString& text);
    void print(QChar c);
    void flush();

private:
    /// What belongs to the running definition, and comes back when it is left.
    struct Frame {
        pcode* next = nullptr;     ///< what a call of another definition returns to
        int returnBase = 0;        ///< the depth of the return stack at the call
        std::size_t localBase = 0; ///< where the locals begin
        std::size_t loops = 0;     ///< how many loops were running at the call
    };
    /// What a CATCH restores.
    struct Handler {
        Frame running;
        std::size_t frames;
        std::size_t localTop;
        std::size_t loops;
        int data;
        int returns;
    };
    struct SavedInput {
        std::shared_ptr<InputSource> source;
        QString line;
        qsizetype position;
        int returnBase;
    };

    static constexpr qint64 PollInterval = 65536;

    void run();
    void leave();
    bool handle(const ForthException& exception, std::size_t handlers);
    void poll();
    void addLocals(int count);
    void create_data_area();

    FSHost& m_host;
    FSFileSystem& m_files;

    Frame m_running; ///< its `next` is the instruction pointer
    qint64 m_untilPoll = PollInterval;
    std::vector<Frame> m_frames; ///< of the callers
    std::vector<Loop> m_loops;
    std::vector<X> m_locals;
    std::size_t m_localTop = 0; ///< how many locals are in use
    std::vector<Handler> m_handlers;
    PCatchRun m_catchEnd;

    ControlStack m_control;
    PCFA* m_definition = nullptr;
    WordList m_localWords{QString(), 0};

    std::vector<std::unique_ptr<WordList>> m_wordLists;
    SearchOrder m_searchOrder;
    WordList* m_current;
    PCFA* m_latest = nullptr;
    PCreateChild* m_latestCreated = nullptr;

    std::vector<std::unique_ptr<pcode>> m_codes;
    PMemory* m_system;
    PMemory* m_dataArea = nullptr;

    std::shared_ptr<InputSource> m_source;
    QString m_line;
    qsizetype m_position = 0;
    int m_digitsBehindPoint = 0;
    std::vector<SavedInput> m_saved;
    std::vector<std::shared_ptr<FileSource>> m_open; ///< by number, from 1; null where closed

    QString m_output;

    Stack m_data{ForthError::StackUnderflow, ForthError::StackOverflow};
    Stack m_returns{ForthError::ReturnStackUnderflow, ForthError::ReturnStackOverflow};
};
