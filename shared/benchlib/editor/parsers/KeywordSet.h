#pragma once

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cstdint>

/// Words, found without a search through all of them.
class KeywordSet {
public:
    KeywordSet() = default;
    explicit KeywordSet(const QStringList& words) : m_words(words)
    {
        for (const QString& word : m_words) {
            m_set.insert(word);
            if (!word.isEmpty())
                m_lengths[slot(word)] |= lengthBit(word);
        }
    }
    const QStringList& words() const { return m_words; }
    bool contains(QStringView word) const
    {
        // Most words of a text aren't in the set, and nearly all of them differ in this already.
        return !word.isEmpty() && (m_lengths[slot(word)] & lengthBit(word)) != 0
            && m_set.contains(word);
    }

private:
    static std::size_t slot(QStringView word) { return word[0].unicode() % SlotCount; }
    static std::uint32_t lengthBit(QStringView word)
    {
        return std::uint32_t(1) << std::min<qsizetype>(word.size(), 31);
    }

    static constexpr std::size_t SlotCount = 128;
    /// The lengths of words that begin with a character.
    std::array<std::uint32_t, SlotCount> m_lengths = {};
    QStringList m_words;
    QSet<QStringView> m_set; ///< of the words above
};
