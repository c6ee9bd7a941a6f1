#include "editor/document/TextEncoding.h"

#include <QTextCodec>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

struct ByteOrderMark {
    QByteArrayView bytes;
    const char* codec;
    QStringView name;
};
constexpr ByteOrderMark Marks[] = {
    {"\xFE\xFF", "UTF-16BE", u"ISO-10646-UCS-2"},
    {"\xFF\xFE", "UTF-16LE", u"ISO-10646-UCS-2"},
    {"\xEF\xBB\xBF", "UTF-8", u"utf8"},
};

int chunk(qsizetype size)
{
    constexpr qsizetype most = std::numeric_limits<int>::max() / 4;
    return static_cast<int>(std::min(size, most));
}

} // namespace

TextEncoding TextEncoding::forFile(const QString& name, QByteArrayView firstBytes)
{
    TextEncoding result;
    result.m_name = name.isEmpty() ? Default.toString() : name;
    for (const ByteOrderMark& mark : Marks) {
        if (!firstBytes.startsWith(mark.bytes))
            continue;
        // A name that was chosen is kept to; if it is the mark's own, the mark is kept as well.
        QTextCodec* const chosen = QTextCodec::codecForName(result.m_name.toLatin1());
        QTextCodec* const marked = QTextCodec::codecForName(mark.codec);
        if (result.m_name == Default || chosen == QTextCodec::codecForName(mark.name.toLatin1())) {
            result.m_name = mark.name.toString();
            result.m_codec = marked;
            result.m_mark = mark.bytes.toByteArray();
            return result;
        }
    }
    result.m_codec = QTextCodec::codecForName(result.m_name.toLatin1());
    if (!result.m_codec)
        result.m_codec = QTextCodec::codecForLocale();
    return result;
}

QString TextEncoding::textOf(QByteArrayView bytes)
{
    const TextEncoding encoding =
        forFile(Default.toString(), bytes.first(std::min<qsizetype>(3, bytes.size())));
    bool lossless = true;
    const QString text = encoding.decode(bytes, lossless);
    return withLineFeeds(lossless ? text : QString::fromLatin1(bytes));
}

QString TextEncoding::withLineFeeds(QString text)
{
    text.replace(u"\r\n"_s, u"\n"_s);
    text.replace(u'\r', u'\n');
    return text;
}

TextEncoding TextEncoding::named(const QString& name)
{
    TextEncoding result = forFile(name, {});
    if (result.m_codec && result.m_codec == QTextCodec::codecForName("UTF-16"))
        result = forFile(name, Marks[1].bytes);
    return result;
}

const QStringList& TextEncoding::commonNames()
{
    static const QStringList names = [] {
        QStringList result{Default.toString()};
        for (const char* name :
             {"UTF-8", "UTF-16", "ISO-8859-1", "ISO-8859-15", "windows-1252", "windows-1250",
              "windows-1251", "KOI8-R", "Shift_JIS", "EUC-JP", "GB18030", "Big5", "EUC-KR"})
            if (QTextCodec::codecForName(name))
                result.append(QString::fromLatin1(name));
        return result;
    }();
    return names;
}

QString TextEncoding::commonName(const QString& name)
{
    const QTextCodec* const codec = QTextCodec::codecForName(name.toLatin1());
    for (const QString& common : commonNames())
        if (codec && common != Default && QTextCodec::codecForName(common.toLatin1()) == codec)
            return common;
    return name;
}

QString TextEncoding::decode(QByteArrayView bytes, bool& lossless) const
{
    if (bytes.startsWith(m_mark))
        bytes = bytes.sliced(m_mark.size());
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString text;
    while (!bytes.isEmpty()) {
        const int size = chunk(bytes.size());
        const QString part = m_codec->toUnicode(bytes.data(), size, &state);
        text = text.isEmpty() ? part : text + part;
        bytes = bytes.sliced(size);
    }
    lossless = state.invalidChars == 0 && state.remainingChars == 0;
    return text;
}

bool TextEncoding::canEncode(QStringView text) const
{
    if (!m_codec)
        return true;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    while (!text.isEmpty()) {
        const int size = chunk(text.size());
        m_codec->fromUnicode(reinterpret_cast<const QChar*>(text.utf16()), size, &state);
        text = text.sliced(size);
    }
    return state.invalidChars == 0 && state.remainingChars == 0;
}

struct TextEncoding::Writer::State {
    QTextCodec* codec;
    QTextCodec::ConverterState state{QTextCodec::IgnoreHeader};
    QByteArray mark;
};

TextEncoding::Writer::Writer(const TextEncoding& encoding)
    : m_state(new State{encoding.m_codec, QTextCodec::ConverterState(QTextCodec::IgnoreHeader),
                        encoding.m_mark})
{
}

TextEncoding::Writer::~Writer() { delete m_state; }

void TextEncoding::Writer::write(QStringView text, QByteArray& bytes)
{
    bytes += m_state->mark;
    m_state->mark.clear();
    while (!text.isEmpty()) {
        const int size = chunk(text.size());
        bytes += m_state->codec->fromUnicode(reinterpret_cast<const QChar*>(text.utf16()), size,
                                             &m_state->state);
        text = text.sliced(size);
    }
}
