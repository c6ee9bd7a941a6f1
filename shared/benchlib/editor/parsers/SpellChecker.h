#pragma once

#include "editor/parsers/CharacterClass.h"

#include <QStringList>

#include <memory>

class Hunspell;
class MarkedLine;

/// Tells whether words are spelled right.
class SpellChecker {
public:
    virtual ~SpellChecker() = default;
    virtual bool spell(QStringView word) = 0;
    /// Words that may have been meant, the likeliest first.
    virtual QStringList suggestions(QStringView word)
    {
        Q_UNUSED(word)
        return {};
    }

    /// The one that parsers ask; null for none. Not owned.
    static SpellChecker* current() { return s_current; }
    static void setCurrent(SpellChecker* checker) { s_current = checker; }
    /// Words that count as right from then on, in every document.
    static void ignore(QStringView word);
    static bool isIgnored(QStringView word);
    static qsizetype ignoredCount();

    /// Copies a word of letters and apostrophes, framed by marks if it is misspelled. Words all in
    /// capitals are names.
    static void copyWord(MarkedLine& line);
    static bool isWordCharacter(char16_t c)
    {
        return CharacterClass::isAlpha(c) || CharacterClass::low(c) == '\'';
    }

    /// No checker for as long as this object lives.
    class Pause {
    public:
        Pause() : m_kept(s_current) { s_current = nullptr; }
        ~Pause() { s_current = m_kept; }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        SpellChecker* m_kept;
    };

private:
    static SpellChecker* s_current;
};

/// By a dictionary of hunspell.
class HunspellSpellChecker : public SpellChecker {
public:
    /// Null if the files can't be read.
    static std::unique_ptr<HunspellSpellChecker> load(const QString& affixFile,
                                                      const QString& dictionaryFile);
    /// Of the dictionary under the installation, else of the system's American English; null if
    /// there is neither.
    static std::unique_ptr<HunspellSpellChecker> loadDefault();
    ~HunspellSpellChecker() override;

    bool spell(QStringView word) override;
    QStringList suggestions(QStringView word) override;

private:
    explicit HunspellSpellChecker(std::unique_ptr<Hunspell> hunspell);

    std::unique_ptr<Hunspell> m_hunspell;
};
