#pragma once

#include "base/XMLElement.h"

/// Writes nodes as the lines of a file.
class XMLWriter {
public:
    /// `indent` blanks for each level of depth.
    explicit XMLWriter(int indent) : m_indent(indent) { }

    void writeDocumentType(const QByteArray& name);
    /// A node that stands in no element, and everything in it.
    void write(const XMLNode& top);

    const QByteArray& bytes() const { return m_out; }

private:
    void writeStart(const XMLElement& element);
    void writeEnd(const XMLElement& element);
    void writeText(const XMLNode& node);
    void escape(const QByteArray& text);
    void beginLine();
    void endLine();

    QByteArray m_out;
    int m_indent;
    int m_depth = 0;
    const XMLElement* m_mixed = nullptr; ///< the outermost open element that holds text
};
