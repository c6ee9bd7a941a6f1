#pragma once

#include "projects/settings/FindOptions.h"

#include <QRegularExpression>
#include <QString>

/// A pattern to search lines for. Quantifiers of a regular expression take as little as they can.
class TextSearch {
public:
    struct Match {
        int start = -1; ///< -1 for no match
        int length = 0;

        bool isValid() const { return start >= 0; }
        int end() const { return start + length; }
    };

    TextSearch() = default;
    TextSearch(const QString& text, FindOptions options);

    /// False for an empty text, and for an expression that isn't one; see errorText.
    bool isValid() const { return m_valid; }
    QString errorText() const { return m_expression.errorString(); }

    /// The first match that starts at `from` or behind it. Matches of nothing don't count.
    Match next(QStringView line, int from) const;
    /// The last match that starts at `from` or ahead of it.
    Match previous(QStringView line, int from) const;

    /// False only if nothing in a file of these bytes can match, whatever its encoding is among
    /// those whose first 128 characters are those of ASCII. Takes far less time than decoding it.
    bool mayMatch(QByteArrayView bytes) const;

    /// What a match is replaced by; see QTx::expandSearchResults for regular expressions.
    QString expand(const QString& replacement, QStringView line, Match match) const;

private:
    Match findExpression(QStringView line, int from, bool forward) const;
    Match findLiteral(QStringView line, int from, bool forward) const;

    QString m_text;
    QRegularExpression m_expression;
    bool m_regular = false;
    bool m_wholeWord = false;
    bool m_valid = false;
    Qt::CaseSensitivity m_case = Qt::CaseInsensitive;
};

/// What was searched for last, kept in the settings if there are any.
struct LastSearch {
    QString text;
    QString replacement;
    FindOptions options;

    static LastSearch get();
    void remember() const;
};
