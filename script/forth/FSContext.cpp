#include "script/forth/FSContext.h"

#include "script/forth/ForthCore.h"

#include <algorithm>

namespace {

constexpr std::size_t MostWordLists = 65536;
constexpr std::size_t MostFiles = 256;
constexpr qsizetype OutputBuffer = 4096;

} // namespace

FSContext::FSContext(FSHost& host, FSFileSystem& files)
    : m_host(host),
      m_files(files),
      m_searchOrder(newWordList(QStringLiteral("FORTH"))),
      m_current(m_wordLists.front().get()),
      m_system(make<PMemory>(QStringLiteral("SYSTEM")))
{
    m_system->allot(1);
    init_core(this);
}

FSContext::~FSContext() = default;

// Running

void FSContext::call(pcode* code)
{
    pcode* const next = std::exchange(m_running.next, code);
    run();
    m_running.next = next;
}

void FSContext::run()
{
    const std::size_t frames = m_frames.size();
    const std::size_t handlers = m_handlers.size();
    for (;;) {
        try {
            for (;;) {
                while (pcode* const node = m_running.next) {
                    m_running.next = node->next();
                    spend(1);
                    node->execute(this);
                }
                if (m_frames.size() == frames)
                    return;
                leave();
            }
        } catch (const ForthException& exception) {
            if (!handle(exception, handlers))
                throw;
        }
    }
}

void FSContext::enter(PCFA* definition)
{
    if (!definition->isClosed())
        throw ForthException(ForthError::OutOfContext);
    if (m_frames.size() >= MostCalls)
        throw ForthException(ForthError::ReturnStackOverflow);
    m_frames.push_back(m_running);
    m_running = {definition->first(), m_returns.depth(), m_localTop, m_loops.size()};
    if (definition->locals() > 0)
        addLocals(definition->locals());
}

void FSContext::addLocals(int count)
{
    const std::size_t top = m_localTop + static_cast<std::size_t>(count);
    if (m_locals.size() < top)
        m_locals.resize(top);
    for (; m_localTop < top; ++m_localTop)
        m_locals[m_localTop] = X();
}

void FSContext::leave()
{
    if (m_returns.depth() != m_running.returnBase)
        throw ForthException(ForthError::ReturnStackImbalance);
    m_localTop = m_running.localBase;
    while (m_loops.size() > m_running.loops)
        m_loops.pop_back();
    m_running = m_frames.back();
    m_frames.pop_back();
}

void FSContext::demandReturns(int count) const
{
    if (m_returns.depth() - m_running.returnBase < count)
        throw ForthException(ForthError::ReturnStackUnderflow);
}

void FSContext::beginCatch(PCFA* word)
{
    if (m_handlers.size() >= MostCatches)
        throw ForthException(ForthError::ExceptionStackOverflow);
    m_handlers.push_back({m_running, m_frames.size(), m_localTop, m_loops.size(), m_data.depth(),
                          m_returns.depth()});
    m_running.next = &m_catchEnd;
    word->execute(this);
}

void FSContext::endCatch()
{
    m_running.next = m_handlers.back().running.next;
    m_handlers.pop_back();
    push(0);
}

bool FSContext::handle(const ForthException& exception, std::size_t handlers)
{
    // A program that could catch the user's interrupt could make itself unstoppable.
    if (m_handlers.size() == handlers || exception.is(ForthError::UserInterrupt))
        return false;
    const Handler handler = m_handlers.back();
    m_handlers.pop_back();
    m_running = handler.running;
    m_frames.resize(handler.frames);
    m_localTop = handler.localTop;
    m_loops.erase(m_loops.begin() + static_cast<std::ptrdiff_t>(handler.loops), m_loops.end());
    m_data.set_depth(handler.data);
    m_returns.set_depth(handler.returns);
    push(exception.code());
    return true;
}

void FSContext::recover(int returns)
{
    while (!m_saved.empty())
        restore_position();
    m_handlers.clear();
    m_frames.clear();
    m_loops.clear();
    m_localTop = 0;
    m_running = {};
    m_returns.set_depth(std::min(returns, m_returns.depth()));
    abandonDefinition();
}

void FSContext::poll()
{
    m_untilPoll = PollInterval;
    flush();
    if (!m_host.carryOnExecuting())
        throw ForthException(ForthError::UserInterrupt);
}

void FSContext::beginLoop(const X& limit, const X& start)
{
    if (m_loops.size() >= MostLoops)
        throw ForthException(ForthError::LoopStackOverflow);
    m_loops.emplace_back(limit, start);
}

// Compiling

pcode* FSContext::own(std::unique_ptr<pcode> code)
{
    if (m_codes.size() >= MostNodes)
        throw ForthException(ForthError::InvalidArgument, QStringLiteral("dictionary full"));
    m_codes.push_back(std::move(code));
    return m_codes.back().get();
}

void FSContext::compile(pcode* code)
{
    checkDefinitionOpen();
    m_definition->addPcode(code);
}

void FSContext::openDefinition(PCFA* definition)
{
    closeDefinition();
    m_control.clear();
    m_definition = definition;
    m_control.open<CSColonSys>(definition);
    setFSState(true);
}

void FSContext::continueDefinition(PCFA* definition)
{
    closeDefinition();
    m_definition = definition;
}

void FSContext::closeDefinition()
{
    m_localWords.clear();
    if (m_definition)
        m_definition->close();
}

void FSContext::abandonDefinition()
{
    m_control.clear();
    m_localWords.clear();
    m_definition = nullptr;
    setFSState(false);
}

void FSContext::ensureCompilationMode() const
{
    if (!getFSState())
        throw ForthException(ForthError::CompileOnly);
    checkDefinitionOpen();
}

void FSContext::checkDefinitionOpen() const
{
    if (!m_definition)
        throw ForthException(ForthError::NoDefinition);
}

bool FSContext::getFSState() const { return m_system->fetch(0).isTrue(); }

void FSContext::setFSState(bool compiling) { m_system->store(0, X::flag(compiling)); }

void FSContext::addLocal(const QString& name, bool initialised)
{
    if (m_definition->isClosed())
        throw ForthException(ForthError::Sealed);
    auto* local = make<PLocalChild>(name, m_definition->addLocal());
    m_localWords.add(local);
    if (initialised)
        compile(own(local->getToMethod()->copy()));
}

// Dictionary

void FSContext::addWord(PCFA* word)
{
    m_current->add(word);
    m_latest = word;
}

PCFA* FSContext::findWord(const QString& name) const
{
    PCFA* const local = m_localWords.findWord(name);
    return local ? local : m_searchOrder.findWord(name);
}

WordList* FSContext::newWordList(const QString& name)
{
    if (m_wordLists.size() >= MostWordLists)
        throw ForthException(ForthError::InvalidWordList);
    const int number = static_cast<int>(m_wordLists.size()) + 1;
    m_wordLists.push_back(std::make_unique<WordList>(
        name.isEmpty() ? QStringLiteral("(WORDLIST#%1)").arg(number) : name, number));
    return m_wordLists.back().get();
}

WordList* FSContext::wordList(qint64 number) const
{
    if (number < 1 || number > static_cast<qint64>(m_wordLists.size()))
        throw ForthException(ForthError::InvalidWordList);
    return m_wordLists[static_cast<std::size_t>(number - 1)].get();
}

// Memory

PMemory* FSContext::dataArea()
{
    if (!m_dataArea)
        create_data_area();
    return m_dataArea;
}

void FSContext::create_data_area()
{
    m_dataArea = make<PMemory>(QStringLiteral("(ANON#%1)").arg(1));
    m_dataArea->allot(0);
}

// Input

void FSContext::setLine(const QString& line)
{
    m_line = line;
    m_position = 0;
}

void FSContext::save_position(std::shared_ptr<InputSource> next)
{
    if (m_saved.size() >= MostIncludes)
        throw ForthException(ForthError::FileFault,
                             QStringLiteral("files include one another too deeply"));
    m_saved.push_back({std::move(m_source), m_line, m_position, m_running.returnBase});
    if (m_saved.back().source)
        m_running.returnBase = m_returns.depth();
    m_source = std::move(next);
    setLine({});
}

void FSContext::restore_position()
{
    SavedInput& saved = m_saved.back();
    m_source = std::move(saved.source);
    m_line = saved.line;
    m_position = saved.position;
    m_running.returnBase = saved.returnBase;
    m_saved.pop_back();
}

// Files

int FSContext::file_open(const QString& name, QIODevice::OpenMode mode, bool binary,
                         std::shared_ptr<FileSource>& file)
{
    file.reset();
    auto slot = std::find(m_open.begin(), m_open.end(), nullptr);
    if (slot == m_open.end() && m_open.size() >= MostFiles)
        return EMFILE;
    std::unique_ptr<QIODevice> device;
    if (const int error = m_files.open(name, mode, device))
        return error;
    if (slot == m_open.end())
        slot = m_open.insert(slot, nullptr);
    file = std::make_shared<FileSource>(name, slot - m_open.begin() + 1, std::move(device), binary);
    *slot = file;
    return 0;
}

std::shared_ptr<FileSource> FSContext::file(qint64 id) const
{
    const bool open = id >= 1 && id <= static_cast<qint64>(m_open.size())
        && m_open[static_cast<std::size_t>(id - 1)];
    if (!open)
        throw ForthException(ForthError::InvalidArgument);
    return m_open[static_cast<std::size_t>(id - 1)];
}

void FSContext::closeFile(qint64 id)
{
    file(id)->close();
    m_open[static_cast<std::size_t>(id - 1)].reset();
}

// Output

void FSContext::print(const QString& text)
{
    m_output += text;
    if (m_output.size() >= OutputBuffer)
        flush();
}

void FSContext::print(QChar c)
{
    m_output += c;
    if (m_output.size() >= OutputBuffer)
        flush();
}

void FSContext::flush()
{
    if (!m_output.isEmpty())
        m_host.output(std::exchange(m_output, {}));
}
