#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class QTextCodec;

/// How a file's bytes stand for its text.
class TextEncoding {
public:
    static constexpr QStringView Default = u"Default";

    /// Of that name, or the user's own if there is none; `Default` by the first bytes of a file,
    /// whose byte order mark is remembered and written again.
    static TextEncoding forFile(const QString& name, QByteArrayView firstBytes);
    /// The text of a file in the user's encoding, or that of its mark; in ISO-8859-1, which has a
    /// character for each byte, if some bytes stand for nothing. Lines end with LF.
    static QString textOf(QByteArrayView bytes);
    /// CR LF and CR become LF.
    static QString withLineFeeds(QString text);
    /// For writing. 16-bit ones get a byte order mark, without which nobody could tell them.
    static TextEncoding named(const QString& name);

    /// `Default` and the names of encodings that source files are often in, for a menu.
    static const QStringList& commonNames();
    /// What that list calls an encoding; the name itself if it isn't there.
    static QString commonName(const QString& name);

    /// False if there is no codec at all.
    bool isValid() const { return m_codec != nullptr; }
    /// What was asked for, or what the mark told.
    const QString& name() const { return m_name; }

    /// The text without its byte order mark. `lossless` is false if some bytes stand for nothing:
    /// they became U+FFFD.
    QString decode(QByteArrayView bytes, bool& lossless) const;

    bool canEncode(QStringView text) const;

    /// Encodes a text piece by piece.
    class Writer {
    public:
        explicit Writer(const TextEncoding& encoding);
        ~Writer();
        Writer(const Writer&) = delete;
        Writer& operator=(const Writer&) = delete;
        void write(QStringView text, QByteArray& bytes);

    private:
        struct State;
        State* m_state;
    };

private:
    friend class Writer;

    QString m_name;
    QTextCodec* m_codec = nullptr; ///< Qt owns it
    QByteArray m_mark;
};
