// Words that read the source, and say what it is.

#include "script/forth/WordSupport.h"

namespace {

constexpr qint64 SavedCells = 4;

QChar popDelimiter(FSContext* context)
{
    const QString text = characterText(context->popLiteral());
    if (text.size() != 1)
        throw ForthException(ForthError::InvalidArgument);
    return text[0];
}

X firstCharacter(const QString& name)
{
    return X(static_cast<long long>(name.first(std::min<qsizetype>(2, name.size())).toUcs4()[0]));
}

} // namespace

void PParen::execute(FSContext* context)
{
    while (context->line().indexOf(u')', context->position()) < 0) {
        context->spend(1);
        if (context->refill())
            continue;
        context->setPosition(context->line().size());
        if (dynamic_cast<FileSource*>(context->source()))
            throw ForthException(ForthError::UnexpectedEnd);
        return;
    }
    parseTo(context, u')');
}

void PBackslash::execute(FSContext* context) { context->setPosition(context->line().size()); }

void PSQuote::execute(FSContext* context)
{
    const X text(parseTo(context, u'"'));
    if (context->getFSState())
        context->compileNew<PLiteralChild>(text);
    else
        context->push(text);
}

void PChar::execute(FSContext* context) { context->push(firstCharacter(parseName(context))); }

void PBracketChar::execute(FSContext* context)
{
    context->ensureCompilationMode();
    context->compileNew<PLiteralChild>(firstCharacter(parseName(context)));
}

void PWord::execute(FSContext* context)
{
    context->push(parseWord(context, popDelimiter(context), true, false));
}

void PParse::execute(FSContext* context) { context->push(parseTo(context, popDelimiter(context))); }

void PRefill::execute(FSContext* context) { context->push(X::flag(context->refill())); }

void PQuery::execute(FSContext* context)
{
    if (!context->refill())
        throw ForthException(ForthError::UnexpectedEnd);
}

void PSourceId::execute(FSContext* context)
{
    context->push(context->source() ? context->source()->id() : 0);
}

void PSaveInput::execute(FSContext* context)
{
    const InputSource& source = *context->source();
    context->push(source.serial());
    context->push(source.place());
    context->push(source.line());
    context->push(qint64(context->position()));
    context->push(SavedCells);
}

void PRestoreInput::execute(FSContext* context)
{
    if (context->popLiteral() != SavedCells)
        throw ForthException(ForthError::InvalidArgument);
    const qint64 position = context->popLiteral();
    const qint64 line = context->popLiteral();
    const qint64 place = context->popLiteral();
    const qint64 serial = context->popLiteral();
    InputSource& source = *context->source();
    const bool restored =
        serial == source.serial() && source.seek(context, place, static_cast<int>(line));
    if (restored)
        context->setPosition(std::clamp<qsizetype>(position, 0, context->line().size()));
    context->push(X::flag(!restored));
}
