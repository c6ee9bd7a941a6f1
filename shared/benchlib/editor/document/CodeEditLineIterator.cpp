#include "editor/document/CodeEditLineIterator.h"

#include "editor/document/CodeDocument.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

CodeEditLineIterator::CodeEditLineIterator(const CodeDocument* document) : m_document(document) { }

CodeEditLineIterator::CodeEditLineIterator(const Path& path)
    : m_file(std::make_unique<QFile>(path.osPath()))
{
    if (QFileInfo(path.osPath()).isFile() && m_file->open(QIODevice::ReadOnly))
        m_stream = std::make_unique<QTextStream>(m_file.get());
}

CodeEditLineIterator::~CodeEditLineIterator() = default;

bool CodeEditLineIterator::getLine(QString& line)
{
    if (m_document) {
        if (m_next >= m_document->count())
            return false;
        line = m_document->buffer().text(m_next++);
        return true;
    }
    if (!m_stream || m_stream->atEnd())
        return false;
    line = m_stream->readLine();
    return true;
}
