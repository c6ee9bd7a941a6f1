#pragma once

#include "base/Pool.h"
#include "base/XMLElement.h"

#include <QByteArray>
#include <QString>

/// An XML document of our own data files: solutions, templates, property groups, memory maps.
///
/// The nodes live in the document's pool and go with it. Text is held as bytes; numeric references
/// stand for bytes. The writing rules are fixed to the byte, so that files don't change from being
/// read and written again.
///
/// Written, every element has a line of its own, but for what stands in an element that holds text
/// or a section: there no blank is added, since it would be text when read again. Text that is
/// nothing but blanks isn't kept. An attribute that an element has twice is an error.
///
/// Documents of any depth are read, written and destroyed without recursion.
class XMLDocument {
public:
    XMLDocument() = default;
    virtual ~XMLDocument() = default;
    XMLDocument(const XMLDocument&) = delete;
    XMLDocument& operator=(const XMLDocument&) = delete;

    /// False with errorText() and errorLine() set; the document is then empty.
    bool load(const QString& path);
    bool loadFromBytes(const QByteArray& bytes);

    /// Writes the document with that many blanks per depth, beside the file first, and puts it in
    /// the file's place when it is whole. False with errorText() set and the old file as it was.
    bool save(const QString& path, int indent);
    QByteArray toBytes(int indent) const;

    const QString& errorText() const { return m_errorText; }
    /// 1-based; 0 if the failure is of no line.
    int errorLine() const { return m_errorLine; }

    const QString& documentType() const { return m_documentType; }
    void setDocumentType(const QString& type) { m_documentType = type; }

    /// Null in an empty document.
    XMLElement* documentElement() const { return m_documentElement; }
    void setDocumentElement(XMLElement* element) { m_documentElement = element; }

    /// Made in the document's pool, in no tree yet.
    XMLElement* createElement(const QByteArray& tag);
    XMLNode* createText(XMLNode::Kind kind, const QByteArray& text);
    /// A copy of the element with all that it holds, lines included.
    XMLElement* copyElement(const XMLElement& element);

    /// The pool of the nodes. Nodes of another document may be taken into this one's tree as long
    /// as that document lives.
    Pool* pool() { return &m_pool; }

    /// The name behind <!DOCTYPE at the start of the file, or a null string; reads no more than
    /// the start.
    static QString xmlDocumentType(const QString& path);

protected:
    /// What the reader and createElement make for a tag; a document of a richer kind of element
    /// answers with its own. Called with the document's pool as the current one.
    virtual XMLElement* newElement(const QByteArray& tag);

    /// Reads the bytes of another file as an element of this document, in no tree yet. Null with
    /// the error set if they aren't well-formed.
    XMLElement* readElement(const QByteArray& bytes, QString& errorText, int& errorLine);

    /// The bytes of an ordinary file: a device or a pipe might never end. False, with the error set
    /// and the document cleared, if they can't be read.
    bool readFile(const QString& path, QByteArray& bytes);

    void clear();
    /// Clears the document, sets the error and answers false.
    bool fail(const QString& text, int line);

private:
    XMLNode* copyNode(const XMLNode& node);

    Pool m_pool;
    XMLElement* m_documentElement = nullptr;
    /// The comments in front of the document element and behind it.
    std::vector<XMLNode*> m_prolog;
    std::vector<XMLNode*> m_epilog;
    QString m_documentType;
    QString m_errorText;
    int m_errorLine = 0;
};
