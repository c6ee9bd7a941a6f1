#pragma once

#include "objfile/model/TOBFInsn.h"

class TOBFSymbol;

/// A place between items: a label.
class TOBFMarker : public TOBFInsn {
public:
    explicit TOBFMarker(HString* name = nullptr) : TOBFMarker(TOBFKind::Marker, name) { }

    /// The symbol that this marker is the definition of, or null.
    TOBFSymbol* symbol() const { return m_symbol; }
    void setSymbol(TOBFSymbol* symbol) { m_symbol = symbol; }

    /// The name, or "@" and a number that the marker takes when it is first asked for one.
    std::string label();

    /// The number under which the writer refers to it, taken on first use.
    std::int32_t markerNumber(TOBFWriter* writer);

    int length() override { return 0; }
    std::string printString() override { return label(); }
    void encode() override { }
    void externalize(TOBFWriter* writer) override;

protected:
    TOBFMarker(TOBFKind kind, HString* name) : TOBFInsn(kind) { setName(name); }

private:
    std::int32_t m_markerNumber = -1;
    std::int32_t m_labelNumber = -1;
    TOBFSymbol* m_symbol = nullptr;

    static std::int32_t m_markCount;
};

/// The name of a source file.
class TOBFFilename final : public TOBFMarker {
public:
    explicit TOBFFilename(HString* file) : TOBFMarker(TOBFKind::Filename, nullptr), m_file(file) { }

    HString* file() const { return m_file; }
    std::string printString() override;
    void externalize(TOBFWriter* writer) override;

private:
    HString* m_file;
};

/// A source position: of the items behind it (TAG_LOCUS), or of a symbol's declaration
/// (TAG_SYMBOL_LOCUS).
class TOBFLocus final : public TOBFMarker {
public:
    TOBFLocus(TOBFFilename* file, int line, TOBFTag tag)
        : TOBFMarker(TOBFKind::Locus, nullptr),
          m_line(line),
          m_tag(tag),
          m_filename(file)
    {
    }

    /// From 1.
    int line() const { return m_line; }
    TOBFFilename* filename() const { return m_filename; }
    std::string printString() override;
    void externalize(TOBFWriter* writer) override;

private:
    std::int32_t m_line;
    TOBFTag m_tag;
    TOBFFilename* m_filename;
};
