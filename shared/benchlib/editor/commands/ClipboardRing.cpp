#include "editor/commands/ClipboardRing.h"

ClipboardRing& clipboardRing()
{
    static ClipboardRing ring;
    return ring;
}

void ClipboardRing::setMaximumSize(int size)
{
    m_maximumSize = size;
    setTexts(m_texts);
}

void ClipboardRing::setTexts(const QStringList& texts)
{
    m_texts = texts.mid(0, m_maximumSize);
    m_current = 0;
}

void ClipboardRing::add(const QString& text)
{
    if (text.isEmpty())
        return;
    m_texts.removeAll(text);
    m_texts.prepend(text);
    setTexts(m_texts);
}

void ClipboardRing::clear() { setTexts({}); }

void ClipboardRing::next()
{
    if (!m_texts.isEmpty())
        m_current = (m_current + 1) % m_texts.size();
}
