#pragma once

#include "objfile/query/ObjectFileInterface.h"

#include <QStringList>

#include <map>
#include <set>

class SymbolicDebug;
class TOBFInsn;
class TOBFModule;
class TOBFScope;
class TOBFSection;
class TOBFSymbol;

/// A native object file or executable, which is read at the first question. One that can't be read
/// shows as a file without symbols and sizes.
class TOBFObjectFileInterface : public ObjectFileInterface {
public:
    explicit TOBFObjectFileInterface(const Path& path) : m_path(path) { }
    ~TOBFObjectFileInterface() override;
    TOBFObjectFileInterface(const TOBFObjectFileInterface&) = delete;
    TOBFObjectFileInterface& operator=(const TOBFObjectFileInterface&) = delete;

    unsigned codeSize() override;
    unsigned dataSize() override;
    unsigned constSize() override;
    void iterateSymbols() override;
    const SymbolInformation* nextSymbol() override;
    /// A segment needs both symbols that the linker writes for it. Throws HException "undefined
    /// symbol NAME" for the first that has no value, when all others are in the list.
    void getSegments(std::vector<SegmentInformation>& segments) override;
    void getSections(std::vector<SectionInformation>& sections) override;
    bool disassemble(const Path& path, unsigned line, FileMappings* mappings) override;

    /// What `disassemble` wrote last.
    const QStringList& disassemblyLines() const { return m_lines; }

private:
    void load();
    void readSymbols();
    void addSizes();
    void addSymbol(TOBFSymbol* symbol, bool access);
    void addScopedSymbols(TOBFScope* root);
    TOBFScope* findScopeFor(TOBFSymbol* symbol) const;
    unsigned sizeOf(TOBFSymbol* symbol) const;
    void collectRuns(TOBFSection* section, std::vector<SectionInformation>& sections) const;
    void disassembleItem(TOBFInsn* item, FileMappings* mappings);

    Path m_path;
    std::vector<SymbolInformation> m_symbols;
    std::size_t m_next = 0;
    TOBFModule* m_module = nullptr;
    unsigned m_codeSize = 0;
    unsigned m_dataSize = 0;
    unsigned m_constSize = 0;
    std::set<TOBFSymbol*> m_added;
    std::map<TOBFSymbol*, TOBFScope*> m_functionScopes;
    bool m_loaded = false;
    SymbolicDebug* m_debug = nullptr;
    QStringList m_lines;
};
