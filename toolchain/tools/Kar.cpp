#include "toolchain/tools/Kar.h"

#include "base/HException.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "packages/archive/Archive2.h"
#include "toolchain/common/LibraryIndex.h"
#include "toolchain/common/OutputFile.h"
#include "toolchain/common/TemporaryFile.h"
#include "toolchain/common/ToolMain.h"

#include <cstdio>
#include <set>

namespace {

constexpr ToolDescription Description = {
    "kar", "-c LIBRARY OBJECT...  or  kar LIBRARY",
    "Makes a library of object files, or lists the members of one and the symbols they define."};

std::string fileName(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

/// Appends the object's public symbols to the index. Throws HException if it is no object.
void indexObject(const std::string& path, unsigned number, std::string& index)
{
    const HFileInputByteStream stream(path);
    TOBFMSP430Reader reader(&stream, false);
    TOBFModule* module = nullptr;
    try {
        module = reader.readFile();
    } catch (const HException& error) {
        throw HException(path + ", " + error.message());
    }
    if (module == nullptr)
        throw HException(path + " holds no module");
    for (const auto& [name, symbol] : module->publicSymbols())
        if (symbol->definition() != nullptr)
            LibraryIndex::append(index, number, name->view());
    TOBFReader::release(module);
}

void addMember(Archive2& archive, const std::string& path, const std::string& name)
{
    if (!addFileToPackage(path.c_str(), name.c_str(), archive))
        throw HException("can't open file " + path);
}

/// Names of members are told apart by their number, should two objects have the same.
std::string uniqueName(const std::string& path, std::set<std::string>& used)
{
    std::string name = fileName(path);
    for (int i = 2; !used.insert(name).second; ++i)
        name = std::to_string(i) + "-" + fileName(path);
    return name;
}

void create(const std::string& library, std::span<const std::string> objects)
{
    std::string index;
    for (unsigned i = 0; i < objects.size(); ++i)
        indexObject(objects[i], i, index);
    const TemporaryFile indexFile(".txt");
    OutputFile indexOut(indexFile.path());
    indexOut.write(index);
    indexOut.commit();
    Archive2 archive;
    addMember(archive, indexFile.path(), LibraryIndex::MemberName);
    std::set<std::string> used;
    for (const std::string& object : objects)
        addMember(archive, object, uniqueName(object, used));
    OutputFile out(library);
    if (archive.write(out.path().c_str()) != 0)
        throw HException("cannot write " + library);
    out.commit();
}

void list(const std::string& library)
{
    std::FILE* file = std::fopen(library.c_str(), "rb");
    if (file == nullptr)
        throw HException("can't open file " + library);
    Archive2 archive;
    if (archive.open(file, library.c_str()) != 0)
        throw HException(library + " isn't a library");
    std::vector<unsigned char> bytes;
    std::vector<std::string> symbols(archive.members().size());
    if (const ArchiveChunk2* index = archive.findMember(LibraryIndex::MemberName);
        index != nullptr && archive.readMember(*index, bytes)) {
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        for (const LibraryIndex::Entry& entry : LibraryIndex::parse(text))
            if (entry.member < symbols.size())
                symbols[entry.member] += " " + std::string(entry.symbol);
    }
    std::size_t number = 0;
    for (const ArchiveChunk2& member : archive.members())
        if (member.name != LibraryIndex::MemberName)
            std::printf("%s, %d bytes:%s\n", member.name.c_str(), member.length,
                        symbols[number++].c_str());
}

} // namespace

void kar(std::span<const std::string> words, Diagnostics&)
{
    bool creating = false;
    const ToolOption options[] = {
        {"-c", ToolOption::Flag, "create the library",
         [&](const std::string&) { creating = true; }},
        {"-V", ToolOption::Flag, nullptr, [](const std::string&) {}},
    };
    if (answerToolHelp(Description, options, words))
        return;
    const std::vector<std::string> files = parseToolOptions(words, options);
    if (files.empty())
        throw HException("no library has been named");
    if (creating)
        create(files[0], std::span(files).subspan(1));
    else
        list(files[0]);
}
