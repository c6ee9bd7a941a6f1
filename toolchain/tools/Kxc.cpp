#include "toolchain/tools/Kxc.h"

#include "base/HException.h"
#include "objfile/loadfiles/CodeBuffer.h"
#include "objfile/loadfiles/LoadFile.h"
#include "objfile/loadfiles/LoadFileFactory.h"
#include "toolchain/common/OutputFile.h"
#include "toolchain/common/ToolMain.h"
#include "toolchain/kld/Checksums.h"
#include "toolchain/kld/LinkerOptions.h"
#include "toolchain/tools/SparseImage.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>

namespace {

constexpr ToolDescription Description = {
    "kxc", "[options] FILE[@ADDRESS]... [-o OUT]",
    "Merges load files: executables (.kvx), Intel Hex (.hex), S-records (.s19, .srec), TI-TXT "
    "(.txt),\n"
    "plain hex listings (.lst) and binary files (.bin, .rom), which stand at their ADDRESS. Two "
    "files\n"
    "may give an address only the same byte. Addresses are hexadecimal."};

struct Range {
    std::uint32_t first;
    std::uint32_t last; ///< inclusive
};

struct Request {
    std::string output;
    std::string format;
    std::optional<Range> range;
    std::optional<unsigned char> fill;
    std::string checksum;
    bool compare = false;
};

/// An output's ending and the writer of its format.
constexpr std::pair<const char*, const char*> Writers[] = {
    {".hex", "hex"}, {".lst", "lst"}, {".s19", "srec"}, {".srec", "srec"},
    {".bin", "bin"}, {".rom", "bin"}, {".tek", "tek"},  {".txt", "txt"},
};

constexpr std::pair<const char*, ChecksumAlgorithm> Algorithms[] = {
    {"crc16", ChecksumAlgorithm::Crc16},
    {"crc32", ChecksumAlgorithm::Crc32},
    {"sum", ChecksumAlgorithm::Sum},
    {"xor", ChecksumAlgorithm::Xor},
};

std::uint32_t parseHex(const std::string& text, const std::string& whole)
{
    const bool prefixed = text.starts_with("0x") || text.starts_with("0X");
    const char* begin = text.data() + (prefixed ? 2 : 0);
    const char* end = text.data() + text.size();
    std::uint32_t value = 0;
    const auto [stopped, error] = std::from_chars(begin, end, value, 16);
    if (error != std::errc() || stopped != end)
        throw HException("'" + whole + "' has a malformed number");
    return value;
}

Range parseRange(const std::string& text)
{
    const std::size_t dash = text.find('-');
    if (dash == std::string::npos)
        throw HException("'" + text + "' isn't a range, FIRST-LAST");
    const Range range{parseHex(text.substr(0, dash), text), parseHex(text.substr(dash + 1), text)};
    if (range.first > range.last)
        throw HException("'" + text + "' isn't a range, FIRST-LAST");
    return range;
}

unsigned char parseByte(const std::string& text)
{
    const std::uint32_t value = parseHex(text, text);
    if (value > 0xFF)
        throw HException("'" + text + "' doesn't fit a byte");
    return static_cast<unsigned char>(value);
}

void addFile(const std::string& word, const Request& request, SparseImage& image)
{
    const std::size_t at = word.rfind('@');
    const std::string path = word.substr(0, at);
    LoadFileFactory* factory = LoadFileFactory::instance();
    const char* type = factory->detect(path.c_str());
    if (type == nullptr)
        throw HException("the name of " + path + " doesn't tell its format");
    const std::unique_ptr<LoadFileInterface> file(factory->create(path.c_str(), type));
    if (at != std::string::npos && file->hasLoadAddress())
        throw HException("'" + word + "' gives an address to a file that has its own");
    if (at != std::string::npos)
        file->setLoadAddress(parseHex(word.substr(at + 1), word));
    for (const auto& section : file->loadFileSections().sections())
        for (unsigned i = 0; i < section->length(); ++i) {
            const std::uint32_t address = section->address() + i;
            if (request.range && (address < request.range->first || address > request.range->last))
                continue;
            if (!image.put(address, section->data(false)[i])) {
                char text[16];
                std::snprintf(text, sizeof text, "0x%05X", address);
                throw HException(path + " has another byte at " + text
                                 + " than a file in front of it");
            }
        }
}

void fillGaps(SparseImage& image, const Request& request)
{
    const std::vector<SparseImage::Run> runs = image.runs();
    if (!request.fill || (runs.empty() && !request.range))
        return;
    std::uint64_t first = 0, last = 0;
    if (request.range) {
        first = request.range->first;
        last = request.range->last;
    } else {
        first = runs.front().address;
        last = runs.back().address + runs.back().bytes.size() - 1;
    }
    if (last - first >= LoadFileInterface::MaximumContiguousSpan)
        throw HException("the range to fill is too long");
    for (std::uint64_t address = first; address <= last; ++address)
        image.put(static_cast<std::uint32_t>(address), *request.fill);
}

std::string writerFor(const Request& request)
{
    if (!request.format.empty())
        return request.format;
    for (const auto& [ending, format] : Writers)
        if (request.output.ends_with(ending))
            return format;
    throw HException("the name of " + request.output + " doesn't tell its format");
}

void write(const SparseImage& image, const Request& request)
{
    const std::string format = writerFor(request);
    OutputFile out(request.output);
    const std::unique_ptr<CodeBuffer> buffer = CodeBuffer::make(format, out.path());
    if (!buffer)
        throw HException("unknown format " + format);
    for (const SparseImage::Run& run : image.runs()) {
        buffer->setAddress(run.address);
        for (const unsigned char byte : run.bytes)
            buffer->addByte(byte);
    }
    buffer->endRecord(0);
    out.commit();
}

/// Over all bytes by rising address; gaps don't count.
void printChecksum(const SparseImage& image, const std::string& name)
{
    const auto* found = std::find_if(std::begin(Algorithms), std::end(Algorithms),
                                     [&](const auto& it) { return name == it.first; });
    if (found == std::end(Algorithms))
        throw HException("unknown checksum " + name);
    std::vector<unsigned char> bytes;
    for (const SparseImage::Run& run : image.runs())
        bytes.insert(bytes.end(), run.bytes.begin(), run.bytes.end());
    const int digits = name == "crc32" ? 8 : name == "xor" ? 2 : 4;
    std::printf("%s 0x%0*X, %zu bytes\n", name.c_str(), digits,
                computeChecksum(found->second, bytes), bytes.size());
}

void reportDifference(Diagnostics& diagnostics, std::uint32_t first, std::uint32_t last)
{
    char text[64];
    std::snprintf(text, sizeof text, "different in 0x%05X-0x%05X", first, last);
    diagnostics.error(text);
}

/// Reports each run of addresses at which the images differ, a gap counting as a value of its own.
void compare(const SparseImage& a, const SparseImage& b, Diagnostics& diagnostics)
{
    SparseImage different;
    const auto collect = [&different](const SparseImage& from, const SparseImage& other) {
        for (const SparseImage::Run& run : from.runs())
            for (std::size_t i = 0; i < run.bytes.size(); ++i) {
                const auto address = static_cast<std::uint32_t>(run.address + i);
                if (other.at(address) != run.bytes[i])
                    different.put(address, 0);
            }
    };
    collect(a, b);
    collect(b, a);
    for (const SparseImage::Run& run : different.runs())
        reportDifference(diagnostics, run.address,
                         static_cast<std::uint32_t>(run.address + run.bytes.size() - 1));
}

std::vector<ToolOption> optionsFor(Request& request)
{
    using Text = const std::string&;
    return {
        {"-o", ToolOption::Separate, "the file to write", [&](Text v) { request.output = v; }},
        {"-F", ToolOption::Attached,
         "its format: hex, lst, srec, bin, tek or txt; else by its name",
         [&](Text v) { request.format = v; }},
        {"-R", ToolOption::Attached, "FIRST-LAST: leave out what is elsewhere",
         [&](Text v) { request.range = parseRange(v); }},
        {"-f", ToolOption::Attached, "BYTE: fill the gaps, those of the range with -R",
         [&](Text v) { request.fill = parseByte(v); }},
        {"-H", ToolOption::Attached, "print a checksum: crc16, crc32, sum or xor",
         [&](Text v) { request.checksum = v; }},
        {"-c", ToolOption::Flag, "compare two files; a difference is an error",
         [&](Text) { request.compare = true; }},
    };
}

void merge(const std::vector<std::string>& inputs, const Request& request)
{
    SparseImage image;
    for (const std::string& input : inputs)
        addFile(input, request, image);
    fillGaps(image, request);
    if (!request.checksum.empty())
        printChecksum(image, request.checksum);
    if (!request.output.empty())
        write(image, request);
}

} // namespace

void kxc(std::span<const std::string> words, Diagnostics& diagnostics)
{
    Request request;
    const std::vector<ToolOption> options = optionsFor(request);
    if (answerToolHelp(Description, options, words))
        return;
    const std::vector<std::string> inputs = parseToolOptions(words, options);
    if (request.compare) {
        if (inputs.size() != 2)
            throw HException("two files have to be named");
        SparseImage images[2];
        for (std::size_t i = 0; i < 2; ++i)
            addFile(inputs[i], request, images[i]);
        compare(images[0], images[1], diagnostics);
        return;
    }
    if (inputs.empty())
        throw HException("no input file");
    if (request.output.empty() && request.checksum.empty())
        throw HException("nothing to do; name an output with -o or a checksum with -H");
    merge(inputs, request);
}
