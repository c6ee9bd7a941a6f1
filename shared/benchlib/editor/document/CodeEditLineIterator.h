#pragma once

#include <QString>

#include <memory>

class CodeDocument;
class Path;
class QTextStream;
class QFile;

/// Gives the lines of a text, one at a time, to whoever reads programs: those of a document as it
/// stands, or of a file.
class CodeEditLineIterator {
public:
    /// The document must outlive the iterator; lines that change meanwhile are given as they are.
    explicit CodeEditLineIterator(const CodeDocument* document);
    /// What isn't a file, or can't be read, has no lines.
    explicit CodeEditLineIterator(const Path& path);
    ~CodeEditLineIterator();

    /// The next line; false, with the text as it was, behind the last.
    bool getLine(QString& line);

private:
    const CodeDocument* m_document = nullptr;
    int m_next = 0;
    std::unique_ptr<QFile> m_file;
    std::unique_ptr<QTextStream> m_stream;
};
