#include "editor/parsers/SpellChecker.h"

#include "base/QTx.h"
#include "editor/parsers/MarkedLine.h"

#include <QFile>
#include <QSet>

#include <hunspell.hxx>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

SpellChecker* SpellChecker::s_current = nullptr;

namespace {

QSet<QString>& ignoredWords()
{
    static QSet<QString> words;
    return words;
}

bool isCapital(QChar c) { return c.isUpper() || c == u'\''; }

} // namespace

void SpellChecker::ignore(QStringView word) { ignoredWords().insert(word.toString()); }

qsizetype SpellChecker::ignoredCount() { return ignoredWords().size(); }

bool SpellChecker::isIgnored(QStringView word) { return ignoredWords().contains(word.toString()); }

void SpellChecker::copyWord(MarkedLine& line)
{
    QStringView word = line.rest();
    qsizetype length = 0;
    while (length < word.size() && isWordCharacter(word[length].unicode()))
        ++length;
    word = word.left(length);
    bool wrong = false;
    if (s_current) {
        // Quotes around a word aren't part of it.
        QStringView letters = word;
        while (letters.startsWith(u'\''))
            letters = letters.sliced(1);
        while (letters.endsWith(u'\''))
            letters.chop(1);
        wrong = !std::all_of(letters.begin(), letters.end(), isCapital) && !isIgnored(letters)
            && !s_current->spell(letters);
    }
    if (wrong)
        line.setAttribute(CodeEditParser::SpellingError);
    line.copy(length);
    if (wrong)
        line.clearAttribute(CodeEditParser::SpellingError);
}

HunspellSpellChecker::HunspellSpellChecker(std::unique_ptr<Hunspell> hunspell)
    : m_hunspell(std::move(hunspell))
{
}

HunspellSpellChecker::~HunspellSpellChecker() = default;

std::unique_ptr<HunspellSpellChecker> HunspellSpellChecker::load(const QString& affixFile,
                                                                 const QString& dictionaryFile)
{
    if (!QFile::exists(affixFile) || !QFile::exists(dictionaryFile))
        return nullptr;
    return std::unique_ptr<HunspellSpellChecker>(new HunspellSpellChecker(
        std::make_unique<Hunspell>(QFile::encodeName(affixFile).constData(),
                                   QFile::encodeName(dictionaryFile).constData())));
}

std::unique_ptr<HunspellSpellChecker> HunspellSpellChecker::loadDefault()
{
    const QString own = QTx::rootDirectory() + u"/bin/en_us"_s;
    if (auto checker = load(own + u".aff"_s, own + u".dic"_s))
        return checker;
    const QString system = u"/usr/share/hunspell/en_US"_s;
    return load(system + u".aff"_s, system + u".dic"_s);
}

bool HunspellSpellChecker::spell(QStringView word)
{
    return m_hunspell->spell(word.toLatin1().toStdString());
}

QStringList HunspellSpellChecker::suggestions(QStringView word)
{
    const bool isUtf8 = m_hunspell->get_dict_encoding() == "UTF-8";
    QStringList result;
    for (const std::string& suggestion : m_hunspell->suggest(word.toLatin1().toStdString()))
        result.append(isUtf8 ? QString::fromUtf8(suggestion.c_str())
                             : QString::fromLatin1(suggestion.c_str()));
    return result;
}
