#include "script/forth/ForthException.h"

#include <algorithm>
#include <iterator>

namespace {

struct Row {
    int code;
    const char* text;
};

constexpr Row texts[] = {
    {-1, "abort thrown"},
    {-2, "abort thrown"},
    {-3, "stack underflow"},
    {-4, "stack overflow"},
    {-5, "return stack overflow"},
    {-6, "return stack underflow"},
    {-7, "loop stack overflow"},
    {-9, "invalid address"},
    {-10, "divide by zero"},
    {-12, "argument type mismatch"},
    {-13, "undefined word"},
    {-14, "interpreting a compile-only word"},
    {-17, "string buffer overflow"},
    {-20, "write error"},
    {-21, "unsupported operation"},
    {-22, "control structure mismatch"},
    {-23, "misaligned address"},
    {-24, "invalid argument"},
    {-25, "return stack imbalance"},
    {-26, "loop parameters unavailable"},
    {-27, "invalid recursion"},
    {-28, "user interrupt"},
    {-30, "olsolescent feature"},
    {-31, ">BODY error"},
    {-36, "invalid file position"},
    {-37, "file I/O exception"},
    {-38, "non-existent file"},
    {-39, "unexpected EOF"},
    {-49, "search order overflow"},
    {-50, "search order underflow"},
    {-53, "exception stack overflow"},
    {-57, "receive/transmit exception"},
    {-256, "no current definition"},
    {-257, "LEAVE not in DO"},
    {-264, "no DO loop"},
    {-265, "host execution of this word not supported"},
    {-266, "invalid wordlist"},
    {-267, "unimplemented word"},
    {-268, "no store method defined"},
    {-269, "out of context"},
    {-270, "sealed definition"},
};

} // namespace

QString ForthException::message() const
{
    if (!m_text.isEmpty())
        return m_text;
    const auto row = std::find_if(std::begin(texts), std::end(texts),
                                  [this](const Row& each) { return each.code == m_code; });
    return row != std::end(texts) ? QLatin1StringView(row->text)
                                  : QStringLiteral("%1 THROW undefined").arg(m_code);
}

ForthException ForthException::about(const QString& subject) const
{
    ForthException exception = *this;
    exception.m_subject = subject;
    return exception;
}

void ForthException::locate(const QString& source, int line, const QString& word)
{
    if (m_located)
        return;
    m_located = true;
    m_source = source;
    m_line = line;
    if (m_subject.isEmpty())
        m_subject = word;
}

QString ForthException::report() const
{
    QString text;
    if (!m_source.isEmpty() && m_line > 0)
        text = QStringLiteral("%1:%2: ").arg(m_source, QString::number(m_line));
    text += message();
    return m_subject.isEmpty() ? text : text + QStringLiteral(": ") + m_subject;
}
