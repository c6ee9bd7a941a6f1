#include "cli/DumpCommand.h"

#include "base/HException.h"
#include "cli/CodeDump.h"
#include "cli/Command.h"
#include "cli/ObjectDump.h"
#include "objfile/loadfiles/LoadFileFactory.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "packages/archive/Archive2.h"

#include <cstdio>
#include <memory>
#include <vector>

namespace {

void loadFileSections(LoadFileInterface& file)
{
    std::printf("%-16s %8s  %s\n", "section", "bytes", "addresses");
    for (const auto& section : file.loadFileSections().sections())
        std::printf("%-16s %8u  %05X-%05X\n", section->name().c_str(), section->length(),
                    section->address(), section->address() + section->length() - 1);
    if (file.hasEntryPoint())
        std::printf("entry point %05lX\n", static_cast<unsigned long>(file.entryPoint()));
}

/// What a load file doesn't have, such as symbols.
void nothing(LoadFileInterface&) { }

struct Part {
    const char* option;
    void (*show)(TOBFModule* module);
    void (*showLoadFile)(LoadFileInterface& file);
};

constexpr Part parts[] = {
    {"--sections", ObjectDump::sections, loadFileSections},
    {"--symbols", ObjectDump::symbols, nothing},
    {"--types", ObjectDump::types, nothing},
    {"--lines", ObjectDump::lines, nothing},
    {"--listing", ObjectDump::listing, nothing},
    {"--disassembly", CodeDump::module, CodeDump::loadFile},
};

struct DumpOptions {
    std::string file;
    std::vector<const Part*> parts;
};

DumpOptions parse(std::span<const std::string> arguments)
{
    DumpOptions options;
    for (const std::string& word : arguments) {
        if (!word.starts_with("--")) {
            if (!options.file.empty())
                throw UsageError{"more than one file"};
            options.file = word;
            continue;
        }
        const Part* found = nullptr;
        for (const Part& part : parts)
            if (word == part.option)
                found = &part;
        if (found == nullptr)
            throw UsageError{"unknown option " + word};
        options.parts.push_back(found);
    }
    if (options.file.empty())
        throw UsageError{"no file"};
    if (options.parts.empty())
        options.parts = {&parts[0], &parts[1]};
    return options;
}

struct Release {
    void operator()(TOBFModule* module) const { TOBFReader::release(module); }
};

void dumpObject(const HByteStream& stream, const std::string& name, const DumpOptions& options)
{
    TOBFMSP430Reader reader(&stream, true);
    const std::unique_ptr<TOBFModule, Release> module(reader.readFile());
    if (module == nullptr)
        throw HException(name + " holds no module");
    for (const Part* part : options.parts)
        part->show(module.get());
}

void dumpLibrary(Archive2& library, const DumpOptions& options)
{
    for (const ArchiveChunk2& member : library.members()) {
        if (member.name.starts_with("__"))
            continue; // the index
        std::vector<unsigned char> bytes;
        if (!library.readMember(member, bytes))
            throw HException("can't read file " + options.file + "(" + member.name + ")");
        std::printf("%s:\n", member.name.c_str());
        dumpObject({bytes.data(), bytes.size()}, member.name, options);
        std::printf("\n");
    }
}

struct DestroyLoadFile {
    void operator()(LoadFileInterface* file) const { LoadFileFactory::instance()->destroy(file); }
};

void dumpLoadFile(const DumpOptions& options, const char* type)
{
    const std::unique_ptr<LoadFileInterface, DestroyLoadFile> file(
        LoadFileFactory::instance()->create(options.file.c_str(), type));
    for (const Part* part : options.parts)
        part->showLoadFile(*file);
}

} // namespace

int dumpCommand(std::span<const std::string> arguments)
{
    const DumpOptions options = parse(arguments);
    std::FILE* file = std::fopen(options.file.c_str(), "rb");
    if (file == nullptr)
        throw HException("can't open file " + options.file);
    Archive2 library;
    if (library.open(file, options.file.c_str()) == 0) {
        dumpLibrary(library, options);
        return 0;
    }
    library.close();
    const char* type = LoadFileFactory::instance()->detect(options.file.c_str());
    if (type != nullptr && std::string_view(type) != "kvx")
        dumpLoadFile(options, type);
    else
        dumpObject(HFileInputByteStream(options.file), options.file, options);
    return 0;
}
