#pragma once

#include <QMap>
#include <QString>

class PCFA;

/// Words by name, whatever its case. The context owns them.
class WordList {
public:
    /// `number`: what programs know it by, from 1.
    WordList(const QString& name, int number) : m_name(name), m_number(number) { }

    /// Null if there is none. `upper`: the name in upper case.
    PCFA* find(const QString& upper) const { return m_words.value(upper); }
    PCFA* findWord(const QString& name) const { return find(name.toUpper()); }
    /// An older word of that name stays in the definitions that use it.
    void add(PCFA* word);
    const QString& getName() const { return m_name; }
    int number() const { return m_number; }
    const QMap<QString, PCFA*>& words() const { return m_words; }
    void clear() { m_words.clear(); }

private:
    QString m_name;
    int m_number;
    QMap<QString, PCFA*> m_words;
};
