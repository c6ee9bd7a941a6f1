#pragma once

#include <QIODevice>
#include <QString>

#include <memory>

class FSContext;

/// What the text interpreter reads, line by line.
class InputSource {
public:
    InputSource();
    virtual ~InputSource() = default;

    /// Gives the context its next line. False at the end.
    virtual bool refill(FSContext* context) = 0;
    virtual void close() { }
    /// What SOURCE-ID answers: 0 for what a user types, else the file's number.
    virtual qint64 id() const { return 0; }
    /// For messages.
    virtual QString name() const { return {}; }
    /// The number of the current line, from 1; 0 ahead of the first.
    int line() const { return m_line; }

    /// What a later `seek` needs to find the current line again.
    virtual qint64 place() const { return 0; }
    /// Makes the line at a place, with its number, the current one. False if it can't be reached.
    virtual bool seek(FSContext* context, qint64 place, int line);
    /// Tells sources apart, closed ones as well.
    qint64 serial() const { return m_serial; }

protected:
    int m_line = 0;

private:
    qint64 m_serial;
};

/// One text, which it gives once.
class StringSource : public InputSource {
public:
    explicit StringSource(const QString& text) : m_text(text) { }
    bool refill(FSContext* context) override;

private:
    QString m_text;
};

/// An open file: a source, and what the file words work on. Characters are UTF-8, or bytes in
/// binary mode.
class FileSource : public InputSource {
public:
    /// A longer line is an error.
    static constexpr qint64 LongestLine = 1 << 20;

    FileSource(const QString& name, qint64 id, std::unique_ptr<QIODevice> device, bool binary);

    bool refill(FSContext* context) override;
    void close() override { m_device.reset(); }
    qint64 id() const override { return m_id; }
    QString name() const override { return m_name; }
    qint64 place() const override { return m_lineStart; }
    bool seek(FSContext* context, qint64 place, int line) override;

    bool isOpen() const { return m_device != nullptr; }
    QIODevice& device() { return *m_device; }
    /// The next character; -1 at the end. Bytes that aren't UTF-8 come as U+FFFD.
    int readCharacter();
    /// False if it can't be written.
    bool write(const QString& text);

private:
    QString m_name;
    qint64 m_id;
    std::unique_ptr<QIODevice> m_device;
    bool m_binary;
    qint64 m_lineStart = 0;
};
