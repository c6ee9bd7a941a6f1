#pragma once

#include <QStringList>

/// The texts that were cut and copied last, newest first.
class ClipboardRing {
public:
    /// Environment/Clipboard Ring/Max Entries
    void setMaximumSize(int size);
    const QStringList& texts() const { return m_texts; }
    void setTexts(const QStringList& texts);
    /// Becomes the current text. One that is there already moves to the front.
    void add(const QString& text);
    void clear();
    /// Null when empty.
    QString current() const { return m_texts.value(m_current); }
    /// Goes on to the next older text, and from the last to the first.
    void next();

private:
    QStringList m_texts;
    qsizetype m_current = 0;
    int m_maximumSize = 12;
};

ClipboardRing& clipboardRing();
