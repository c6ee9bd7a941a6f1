#include "script/forth/WordList.h"

#include "script/forth/PCFA.h"

void WordList::add(PCFA* word)
{
    m_words.insert(word->name().toUpper(), word);
    word->setWordList(this);
}
