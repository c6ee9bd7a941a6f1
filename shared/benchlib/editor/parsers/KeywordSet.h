#pragma once

#include <QSet>
#include <QStringList>

/// Words, found without a search through all of them.
class KeywordSet {
public:
    KeywordSet() = default;
    explicit KeywordSet(const QStringList& words) : m_words(words)
    {
        for (const QString& word : m_words)
            m_set.insert(word);
    }
    const QStringList& words() const { return m_words; }
    bool contains(QStringView word) const { return m_set.contains(word); }

private:
    QStringList m_words;
    QSet<QStringView> m_set; ///< of the words above
};
