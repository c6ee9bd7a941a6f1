#include "toolchain/kld/LinkerOptions.h"

#include "base/HException.h"

#include <map>

namespace {

void takeLoaded(LinkerOptions& options, const std::string& value)
{
    const std::size_t equals = value.find('=');
    if (equals == std::string::npos || value.substr(equals + 1) != "L")
        throw HException("bad option -G" + value);
    options.loadedSections.insert(value.substr(0, equals));
}

void takeDefinition(LinkerOptions& options, const std::string& value)
{
    const std::size_t equals = value.find('=');
    const std::string text = equals == std::string::npos ? "1" : value.substr(equals + 1);
    options.definitions.emplace_back(value.substr(0, equals), text);
}

ChecksumRequest parseChecksum(const std::string& value)
{
    static const std::map<std::string, ChecksumAlgorithm> algorithms = {
        {"crc16", ChecksumAlgorithm::Crc16},
        {"crc32", ChecksumAlgorithm::Crc32},
        {"sum", ChecksumAlgorithm::Sum},
        {"xor", ChecksumAlgorithm::Xor},
    };
    const std::size_t equals = value.find('=');
    const auto found =
        algorithms.find(equals == std::string::npos ? "crc16" : value.substr(equals + 1));
    if (found == algorithms.end())
        throw HException("unknown checksum in -H" + value);
    return {parsePlacement(value.substr(0, equals)).sections, found->second};
}

} // namespace

std::vector<ToolOption> linkerOptionTable(LinkerOptions& options)
{
    using Text = const std::string&;
    const auto flag = [](bool& it) { return [&it](Text) { it = true; }; };
    const auto name = [](std::string& it) { return [&it](Text value) { it = value; }; };
    const auto ignore = [](Text) {};
    std::vector<ToolOption> table = {
        {"-o", ToolOption::Separate, "the executable to write", name(options.output)},
        {"-T", ToolOption::Attached, "NAMES=RANGES: the memory of sections",
         [&](Text value) { options.placements.push_back(parsePlacement(value)); }},
        {"-G", ToolOption::Attached, "NAME=L: the section has content that is loaded",
         [&](Text value) { takeLoaded(options, value); }},
        {"-D", ToolOption::Attached, "NAME=VALUE: define a symbol",
         [&](Text value) { takeDefinition(options, value); }},
        {"-K", ToolOption::Attached, "NAME: keep this symbol, used or not",
         [&](Text value) { options.keptSymbols.push_back(value); }},
        {"-H", ToolOption::Attached, "NAMES=crc16|crc32|sum|xor: put a checksum behind sections",
         [&](Text value) { options.checksums.push_back(parseChecksum(value)); }},
        {"-M", ToolOption::Attached, "FILE: write a map", name(options.mapFile)},
        {"-g", ToolOption::Flag, "keep debugging information", flag(options.debugInformation)},
        {"-w", ToolOption::Flag, "no warnings", flag(options.suppressWarnings)},
        {"-we", ToolOption::Flag, "warnings are errors", flag(options.warningsAreErrors)},
        {"-V", ToolOption::Flag, "tell what is done", flag(options.verbose)},
        {"-mcpux", ToolOption::Flag, "the program may use MSP430X instructions",
         flag(options.extendedCore)},
        {"-Oph", ToolOption::Flag, "shorten branches", flag(options.peepholes)},
        {"-Ojt", ToolOption::Flag, "let jumps to jumps go to the end at once",
         flag(options.jumpThreading)},
        {"-Otm", ToolOption::Flag, "merge equal ends of functions", flag(options.tailMerging)},
    };
    // Requests that change nothing here: the compiler has done it, or it has no gain on this
    // target.
    for (const char* const accepted : {"-Oxj", "-Ofl", "-Odc", "-Ojc", "-Ocm", "-Obl", "-Ocp"})
        table.push_back({accepted, ToolOption::Flag, nullptr, ignore});
    for (const char* const accepted : {"-Oxc=", "-Oxcx=", "-Oxcp="})
        table.push_back({accepted, ToolOption::Attached, nullptr, ignore});
    table.push_back({"-fcpu6", ToolOption::Flag, nullptr, ignore});
    return table;
}
