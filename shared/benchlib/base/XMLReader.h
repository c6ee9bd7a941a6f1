#pragma once

#include "base/XMLElement.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <vector>

class XMLDocument;

/// Reads the bytes of a file as nodes of a document. One pass; the depth of the elements costs no
/// stack.
class XMLReader {
public:
    /// What is wrong with the file; the line is 1-based.
    struct Error {
        QString text;
        int line;
    };

    /// Nodes are made by the document and in its pool; nothing else of it is changed. The bytes
    /// must stay until the end.
    XMLReader(XMLDocument& document, QByteArrayView bytes);

    /// Throws an Error.
    void read();

    /// The outermost element, never null.
    XMLElement* documentElement() const { return m_documentElement; }
    const QString& documentType() const { return m_documentType; }
    /// The comments in front of the outermost element and behind it.
    const std::vector<XMLNode*>& prolog() const { return m_prolog; }
    const std::vector<XMLNode*>& epilog() const { return m_epilog; }

private:
    void readProlog();
    void readContent();
    void readEpilog();

    void readDocumentType();
    void readElement();
    void readAttribute(XMLElement& element);
    void readEndTag();
    void readText();
    XMLNode* readComment();
    void readSection(QByteArrayView start);
    void skipInstruction();

    QByteArray resolve(QByteArrayView raw);
    static QString appendReference(QByteArray& out, QByteArrayView name);
    static void checkAttributes(const XMLElement& element, int line);

    bool atEnd() const { return m_at == m_end; }
    bool startsWith(QByteArrayView text) const;
    void skipBlanks();
    QByteArrayView name();
    QByteArray shared(QByteArrayView name);
    /// Takes what stands up to `end`, and `end`.
    QByteArrayView upTo(QByteArrayView end, const char* what);
    void appendNode(XMLNode* node, int line);
    int line();
    [[noreturn]] static void fail(const QString& text, int line) { throw Error{text, line}; }

    XMLDocument& m_document;
    const char* m_at;
    const char* m_end;
    const char* m_counted; ///< lines are counted up to here
    int m_line = 1;
    XMLElement* m_documentElement = nullptr;
    QString m_documentType;
    std::vector<XMLNode*> m_prolog;
    std::vector<XMLNode*> m_epilog;
    XMLElement* m_parent = nullptr;            ///< the innermost open element
    QHash<QByteArrayView, QByteArray> m_names; ///< one copy of each tag and attribute name
};
