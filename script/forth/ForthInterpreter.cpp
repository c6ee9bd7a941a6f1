#include "script/forth/ForthInterpreter.h"

#include "script/forth/FSContext.h"
#include "script/forth/ForthNumber.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

namespace {

bool isDelimiter(QChar c, QChar delimiter)
{
    return c == delimiter || (delimiter == u' ' && (c.isSpace() || c < u' '));
}

void putLiteral(FSContext* context, const X& value)
{
    if (context->getFSState())
        context->compileNew<PLiteralChild>(value);
    else
        context->push(value);
}

void interpretWord(FSContext* context, const QString& text)
{
    if (PCFA* const word = context->findWord(text)) {
        if (context->getFSState() && !word->isImmediate())
            context->compile(word->reference(context));
        else
            context->call(word);
        return;
    }
    const std::optional<ForthNumber> number = parseNumber(text);
    if (!number)
        throw ForthException(ForthError::UndefinedWord);
    context->setDigitsBehindPoint(number->digitsBehindPoint);
    putLiteral(context, number->low);
    if (number->high)
        putLiteral(context, *number->high);
}

/// Puts the current source away and brings it back.
class SourceScope {
public:
    SourceScope(FSContext* context, const std::shared_ptr<InputSource>& source)
        : m_context(context),
          m_count(context->savedPositions())
    {
        context->save_position(source);
    }
    ~SourceScope() { discard_to(m_context, m_count); }
    SourceScope(const SourceScope&) = delete;
    SourceScope& operator=(const SourceScope&) = delete;

private:
    FSContext* m_context;
    std::size_t m_count;
};

std::shared_ptr<FileSource> openToInterpret(FSContext* context, const QString& name)
{
    std::shared_ptr<FileSource> file;
    int error = ENOENT;
    const QString including = context->source() ? context->source()->name() : QString();
    if (QDir::isRelativePath(name) && including.contains(u'/'))
        error = context->file_open(QFileInfo(including).path() + u'/' + name, QIODevice::ReadOnly,
                                   false, file);
    if (error == ENOENT)
        error = context->file_open(name, QIODevice::ReadOnly, false, file);
    if (error != 0)
        throw ForthException(error == ENOENT ? ForthError::NoFile : ForthError::FileFault,
                             QStringLiteral("i/o error: %1").arg(error))
            .about(name);
    return file;
}

void interpretOpenFile(FSContext* context, const std::shared_ptr<FileSource>& file)
{
    const bool compiling = context->getFSState();
    const auto close = [&] {
        if (file->isOpen())
            context->closeFile(file->id());
    };
    try {
        interpret_source(context, file);
    } catch (...) {
        close();
        if (!compiling)
            context->abandonDefinition();
        throw;
    }
    close();
    if (!compiling && context->getFSState()) {
        context->abandonDefinition();
        ForthException unfinished(ForthError::UnexpectedEnd);
        unfinished.locate(file->name(), file->line(), {});
        throw unfinished;
    }
}

} // namespace

void interpreter(FSContext* context)
{
    QString word;
    try {
        for (;;) {
            context->spend(1);
            word = parseWord(context, u' ', true, false);
            if (!word.isEmpty())
                interpretWord(context, word);
            else if (!context->refill())
                return;
        }
    } catch (ForthException& exception) {
        exception.locate(context->source()->name(), context->source()->line(), word);
        throw;
    }
}

void interpret_source(FSContext* context, const std::shared_ptr<InputSource>& source)
{
    const SourceScope scope(context, source);
    interpreter(context);
}

void interpret_file(FSContext* context, const QString& name)
{
    context->spend(64);
    interpretOpenFile(context, openToInterpret(context, name));
}

void interpret_file(FSContext* context, qint64 id)
{
    context->spend(64);
    interpretOpenFile(context, context->file(id));
}

QString parseWord(FSContext* context, QChar delimiter, bool skipLeading, bool upper)
{
    const QString& line = context->line();
    qsizetype at = context->position();
    while (skipLeading && at < line.size() && isDelimiter(line[at], delimiter))
        ++at;
    const qsizetype start = at;
    while (at < line.size() && !isDelimiter(line[at], delimiter))
        ++at;
    context->setPosition(std::min(at + 1, line.size()));
    context->spend((at - start) / 16);
    const QString word = line.sliced(start, at - start);
    return upper ? word.toUpper() : word;
}

QString parseTo(FSContext* context, QChar delimiter)
{
    return parseWord(context, delimiter, false, false);
}

QString parseName(FSContext* context)
{
    const QString name = parseWord(context, u' ', true, false);
    if (name.isEmpty())
        throw ForthException(ForthError::InvalidArgument, QStringLiteral("name expected"));
    return name;
}

void errorMessage(FSContext* context, const ForthException& exception)
{
    context->print(exception.report() + u'\n');
}

void discard_to(FSContext* context, std::size_t count)
{
    while (context->savedPositions() > count)
        context->restore_position();
}

QString textAt(FSContext* context, const X& address, qint64 count)
{
    if (count == 0)
        return {};
    if (address.isString()) {
        if (count < 0 || count > address.str().size())
            throw ForthException(ForthError::InvalidArgument);
        return address.str().first(count);
    }
    PMemory* const segment = address.segment();
    segment->demand(address.offset(), count);
    context->spend(count / 16);
    QString text;
    text.reserve(count);
    for (qint64 i = 0; i < count; ++i)
        text += characterText(segment->fetch(address.offset() + i).lit());
    return text;
}

QString forthPopString(FSContext* context)
{
    const X top = context->pop();
    return top.isString() ? top.str() : textAt(context, context->pop(), top.lit());
}

QString characterText(qint64 code)
{
    if (code < 0 || code > 0x10FFFF)
        throw ForthException(ForthError::InvalidArgument);
    if (code <= 0xFFFF)
        return QString(QChar(static_cast<char16_t>(code)));
    const auto point = static_cast<char32_t>(code);
    return QString::fromUcs4(&point, 1);
}
