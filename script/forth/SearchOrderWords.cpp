// Word lists and the order in which they are searched.

#include "script/forth/WordSupport.h"

namespace {

/// Puts a vocabulary's list in place of the one searched first.
class PVocabularyRun : public pcode {
public:
    explicit PVocabularyRun(WordList* list) : m_list(list) { }
    void execute(FSContext* context) override { context->searchOrder().setTop(m_list); }
    std::unique_ptr<pcode> copy() const override
    {
        return std::make_unique<PVocabularyRun>(m_list);
    }

private:
    WordList* m_list;
};

void pushFound(FSContext* context, PCFA* word)
{
    context->push(X(static_cast<pcode*>(word)));
    context->push(word->isImmediate() ? 1 : -1);
}

} // namespace

// clang-format off
void FForth::execute(FSContext* context) { context->searchOrder().setTop(context->forth()); }
void FDefinitions::execute(FSContext* context) { context->setCurrent(context->searchOrder().top()); }
void FForthWordlist::execute(FSContext* context) { context->push(context->forth()->number()); }
void FGetCurrent::execute(FSContext* context) { context->push(context->current()->number()); }
void FSetCurrent::execute(FSContext* context) { context->setCurrent(context->wordList(context->popLiteral())); }
void FWordlist::execute(FSContext* context) { context->push(context->newWordList(QString())->number()); }
void FAlso::execute(FSContext* context) { context->searchOrder().pushWordList(context->searchOrder().top()); }
void FPrevious::execute(FSContext* context) { context->searchOrder().popWordList(); }
// clang-format on

void FOnly::execute(FSContext* context)
{
    WordList* const forth = context->forth();
    context->searchOrder().setLists({&forth, 1});
}

void FGetOrder::execute(FSContext* context)
{
    const auto lists = context->searchOrder().lists();
    for (const WordList* list : lists)
        context->push(list->number());
    context->push(static_cast<int>(lists.size()));
}

void FSetOrder::execute(FSContext* context)
{
    const qint64 count = context->popLiteral();
    if (count == -1)
        return FOnly().execute(context);
    if (count < 1)
        throw ForthException(ForthError::SearchOrderUnderflow);
    if (count > SearchOrder::Capacity)
        throw ForthException(ForthError::SearchOrderOverflow);
    std::vector<WordList*> lists(static_cast<std::size_t>(count));
    for (auto list = lists.rbegin(); list != lists.rend(); ++list)
        *list = context->wordList(context->popLiteral());
    context->searchOrder().setLists(lists);
}

void FFind::execute(FSContext* context)
{
    const X name = context->pop();
    if (PCFA* const word = context->findWord(countedText(context, name))) {
        pushFound(context, word);
    } else {
        context->push(name);
        context->push(0);
    }
}

void FSearchWordlist::execute(FSContext* context)
{
    const WordList* const list = context->wordList(context->popLiteral());
    if (PCFA* const word = list->findWord(forthPopString(context)))
        pushFound(context, word);
    else
        context->push(0);
}

void FVocabulary::execute(FSContext* context)
{
    const QString name = parseName(context);
    WordList* const list = context->newWordList(name);
    addDictionary(context, context->make<PVocabularyRun>(list), name, 0);
}

void FWords::execute(FSContext* context)
{
    constexpr qsizetype Width = 78;
    QString line;
    for (const PCFA* word : context->searchOrder().top()->words()) {
        context->spend(1);
        if (!line.isEmpty() && line.size() + word->name().size() > Width)
            context->print(std::exchange(line, {}) + u'\n');
        line += word->name() + u' ';
    }
    context->print(line + u'\n');
}

void FOrder::execute(FSContext* context)
{
    const auto lists = context->searchOrder().lists();
    context->print(QStringLiteral("search: "));
    for (auto list = lists.rbegin(); list != lists.rend(); ++list)
        context->print((*list)->getName() + u' ');
    context->print(QStringLiteral("definitions: ") + context->current()->getName() + u'\n');
}
