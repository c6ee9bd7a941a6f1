#pragma once

#include "base/XMLElement.h"

/// An element of a memory map or section placement file. What the file says stays in the XML
/// attributes, so that a save writes it back; address and size are computed from them.
class MemoryMapElement : public XMLElement {
public:
    enum ElementType {
        MemorySegment,
        Register,
        ProgramSection,
        Root,
        RegisterGroup,
        BitField,
        Enum,
        Processor,
        Unsupported,
    };

    explicit MemoryMapElement(const QByteArray& tag);

    ElementType type() const { return m_type; }

    /// The address; of a bit field its lowest bit, of an Enum its value. 0 if the text is no
    /// constant expression.
    quint32 address() const { return m_address; }
    /// Bytes; bits of a bit field. 0 if the text is no number but a symbol.
    quint32 size() const { return m_size; }
    bool hasAddress() const { return hasAttribute("start"); }
    bool hasSize() const { return hasAttribute("size"); }
    QString addressText() const { return attribute("start"); }
    QString sizeText() const { return attribute("size"); }

    bool hasName() const { return hasAttribute("name"); }
    bool hasAddressSymbol() const { return hasAttribute("address_symbol"); }
    bool hasSizeSymbol() const { return hasAttribute("size_symbol"); }
    bool hasAlignment() const { return hasAttribute("alignment"); }
    bool hasRunIn() const { return hasAttribute("runin"); }
    bool hasAccessType() const { return hasAttribute("access"); }
    bool hasEndian() const { return hasAttribute("endian"); }
    bool hasInputSections() const { return hasAttribute("inputsections"); }
    bool hasLoad() const { return hasAttribute("load"); }
    bool hasAddressSpace() const { return hasAttribute("addressSpace"); }
    bool hasFill() const { return hasAttribute("fill"); }

    QString name() const { return attribute("name"); }
    /// The linker symbol to define with the address.
    QString addressSymbol() const { return attribute("address_symbol"); }
    /// The linker symbol to define with the size.
    QString sizeSymbol() const { return attribute("size_symbol"); }
    QString alignment() const { return attribute("alignment"); }
    /// The section that this one runs in.
    QString runIn() const { return attribute("runin"); }
    /// "ReadOnly", "WriteOnly", "None" or empty.
    QString accessType() const { return attribute("access"); }
    bool isReadOnly() const { return accessType() == u"ReadOnly"; }
    bool isWriteOnly() const { return accessType() == u"WriteOnly"; }
    bool isNone() const { return accessType() == u"None"; }
    QString endian() const { return attribute("endian"); }
    /// The input sections that go here.
    QString inputSections() const { return attribute("inputsections"); }
    /// "Yes" if the section is loaded.
    QString load() const { return attribute("load"); }
    QString addressSpace() const { return attribute("addressSpace"); }
    QString fill() const { return attribute("fill"); }

    // An empty text removes the attribute.
    void setName(const QString& text) { setText("name", text); }
    /// An expression; with "+" in front, from the group or segment around. Elements within this one
    /// keep their addresses until MemoryMap::fixupAddresses.
    void setAddress(const QString& text);
    void setAddressSymbol(const QString& text) { setText("address_symbol", text); }
    /// A text that begins with a digit is converted and stored in decimal.
    void setSize(const QString& text);
    void setSizeSymbol(const QString& text) { setText("size_symbol", text); }
    /// A text that begins with a digit is converted and stored in decimal.
    void setAlignment(const QString& text);
    void setRunIn(const QString& text) { setText("runin", text); }
    void setAccessType(const QString& text) { setText("access", text); }
    void setEndian(const QString& text) { setText("endian", text); }
    void setInputSections(const QString& text) { setText("inputsections", text); }
    void setLoad(const QString& text) { setText("load", text); }
    void setAddressSpace(const QString& text) { setText("addressSpace", text); }
    void setFill(const QString& text) { setText("fill", text); }

    /// The debugger's expression for a register: a cast of its address, or of the register of a
    /// bank that a "start" in parentheses names, to a type of its bit fields.
    QString getRegisterExpression() const;

    /// The Import element whose place this root of another file has taken, or null.
    XMLElement* import() const { return m_import; }

private:
    friend class MemoryMap;

    MemoryMapElement* parentElement() const { return static_cast<MemoryMapElement*>(parent()); }
    void setText(const char* attribute, const QString& text);
    void setNumber(const char* attribute, const QString& text);
    /// Computes address and size, and the base for what lies within. The parent's must be computed.
    void fixup();
    void updateAddress(quint32 base);
    void updateSize();

    ElementType m_type;
    quint32 m_address = 0;
    quint32 m_size = 0;
    quint32 m_base = 0; ///< what "+" adds to in the children
    XMLElement* m_import = nullptr;
};
