#include "toolchain/kld/LinkInputs.h"

#include "base/HException.h"
#include "objfile/format/HFileInputByteStream.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "packages/archive/Archive2.h"
#include "toolchain/common/LibraryIndex.h"

struct LinkInputs::Library {
    std::string path;
    Archive2 archive;
    std::vector<const ArchiveChunk2*> members; ///< objects only
    std::vector<bool> taken;
};

namespace {

bool isLibrary(const std::string& path) { return path.ends_with(".kva"); }

std::vector<std::string_view> splitNames(std::string_view text)
{
    std::vector<std::string_view> names;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(';'), text.size());
        names.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return names;
}

} // namespace

LinkInputs::LinkInputs(Diagnostics& diagnostics) : m_diagnostics(diagnostics) { }

LinkInputs::~LinkInputs()
{
    for (const LinkModule& module : m_modules)
        TOBFReader::release(module.module);
}

void LinkInputs::add(const std::string& path)
{
    if (isLibrary(path)) {
        addLibrary(path);
        return;
    }
    const HFileInputByteStream stream(path);
    addModule(path, {stream.data(), stream.data() + stream.size()}, false);
}

TOBFModule* LinkInputs::read(const std::string& name, const std::vector<unsigned char>& bytes)
{
    const HByteStream stream(bytes.data(), bytes.size());
    TOBFMSP430Reader reader(&stream, true);
    try {
        TOBFModule* module = reader.readFile();
        if (module == nullptr)
            throw HException("it holds no module");
        return module;
    } catch (const HException& error) {
        m_diagnostics.fatal({name, 0}, error.message());
    }
}

void LinkInputs::addModule(std::string name, const std::vector<unsigned char>& bytes,
                           bool fromLibrary)
{
    LinkModule& added = m_modules.emplace_back();
    added.name = std::move(name);
    added.module = read(added.name, bytes);
    if (HString* weak = added.module->attribute(HString::intern("weak")))
        for (const std::string_view symbol : splitNames(weak->view()))
            added.weak.insert(HString::intern(symbol));
    for (const TOBFSymbol* symbol : added.module->allSymbols())
        if (symbol->definition() == nullptr)
            m_owners[symbol] = &added;
    definePublics(added, fromLibrary);
    if (onModule)
        onModule(added);
}

void LinkInputs::definePublics(LinkModule& module, bool fromLibrary)
{
    for (const auto& [name, symbol] : module.module->publicSymbols()) {
        if (symbol->definition() == nullptr)
            continue;
        const Definition definition{symbol, &module, module.weak.contains(name), fromLibrary};
        const auto [it, isNew] = m_definitions.emplace(name, definition);
        Definition& old = it->second;
        if (isNew || old.module == nullptr)
            continue;
        if (old.weak && !definition.weak)
            redefine(old, definition);
        else if (definition.weak)
            symbol->setDefinition(new TOBFSymbolExpr(old.symbol));
        else if (!fromLibrary)
            m_diagnostics.error("symbol " + name->str() + " is defined in " + old.module->name
                                + " and in " + module.name);
    }
}

void LinkInputs::redefine(Definition& old, const Definition& better)
{
    old.symbol->setDefinition(new TOBFSymbolExpr(better.symbol));
    old = better;
}

void LinkInputs::addLibrary(const std::string& path)
{
    auto library = std::make_unique<Library>();
    library->path = path;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr)
        throw HException("can't open file " + path);
    if (library->archive.open(file, path.c_str()) != 0)
        throw HException(path + " isn't a library");
    indexMembers(*library);
    m_libraries.push_back(std::move(library));
}

/// The first library that defines a symbol is the one it comes from.
void LinkInputs::indexMembers(Library& library)
{
    std::vector<unsigned char> bytes;
    const ArchiveChunk2* index = nullptr;
    for (const ArchiveChunk2& chunk : library.archive.members()) {
        if (chunk.name == LibraryIndex::MemberName)
            index = &chunk;
        else
            library.members.push_back(&chunk);
    }
    library.taken.resize(library.members.size());
    if (index != nullptr && library.archive.readMember(*index, bytes)) {
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        for (const LibraryIndex::Entry& entry : LibraryIndex::parse(text))
            if (entry.member < library.members.size())
                m_members.emplace(HString::intern(entry.symbol), Member{&library, entry.member});
        return;
    }
    for (unsigned i = 0; i < library.members.size(); ++i) {
        const std::string name = library.path + "(" + library.members[i]->name + ")";
        if (!library.archive.readMember(*library.members[i], bytes))
            throw HException("can't read file " + name);
        TOBFModule* module = read(name, bytes);
        for (const auto& [symbolName, symbol] : module->publicSymbols())
            m_members.emplace(symbolName, Member{&library, i});
        TOBFReader::release(module);
    }
}

TOBFSymbol* LinkInputs::find(HString* name) const
{
    const auto it = m_definitions.find(name);
    return it != m_definitions.end() ? it->second.symbol : nullptr;
}

TOBFSymbol* LinkInputs::resolve(HString* name)
{
    if (TOBFSymbol* symbol = find(name))
        return symbol;
    const auto it = m_members.find(name);
    if (it == m_members.end())
        return nullptr;
    Library& library = *it->second.library;
    const unsigned number = it->second.number;
    if (library.taken[number])
        return nullptr;
    library.taken[number] = true;
    const std::string memberName = library.path + "(" + library.members[number]->name + ")";
    std::vector<unsigned char> bytes;
    if (!library.archive.readMember(*library.members[number], bytes))
        throw HException("can't read file " + memberName);
    addModule(memberName, bytes, true);
    return find(name);
}

std::string LinkInputs::moduleNameOf(const TOBFSymbol* symbol) const
{
    const auto it = m_owners.find(symbol);
    return it != m_owners.end() ? it->second->name : std::string();
}
