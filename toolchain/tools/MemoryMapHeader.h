#pragma once

#include "toolchain/common/Diagnostics.h"

#include <cstdint>
#include <string>
#include <vector>

class QXmlStreamReader;

/// Turns the elements of a memory map file into the definitions of a C header.
class MemoryMapHeader {
public:
    /// Files that may import one another in a row.
    static constexpr int MaximumImports = 10;

    explicit MemoryMapHeader(Diagnostics& diagnostics) : m_diagnostics(diagnostics) { }

    /// Reads a file. What is wrong with it is reported at its place. Throws HException if it can't
    /// be read.
    void read(const std::string& path);

    /// The header's text; `name` is that of the file that it will be.
    std::string text(const std::string& source, const std::string& name) const;

private:
    /// An element around the current one.
    struct Outer {
        std::string tag;
        std::string name;
        std::uint32_t base = 0;  ///< what "+" in front of a start adds to
        std::uint32_t start = 0; ///< of a bit field: its lowest bit
    };
    class Element;

    void readElements(QXmlStreamReader& xml);
    void open(const Element& element);
    void segment(const Element& element);
    void registerGroup(const Element& element);
    void memoryRegister(const Element& element);
    void bitField(const Element& element);
    void enumeration(const Element& element);
    void import(const Element& element);
    void define(const std::string& name, const std::string& value);
    void error(const Element& element, const std::string& text);

    Diagnostics& m_diagnostics;
    std::string m_path;
    int m_imports = 0;
    std::vector<Outer> m_open;
    std::string m_text;
};
