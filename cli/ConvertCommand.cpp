#include "cli/ConvertCommand.h"

#include "base/HException.h"
#include "cli/Command.h"
#include "objfile/loadfiles/CodeBuffer.h"
#include "objfile/loadfiles/LoadFileFactory.h"
#include "objfile/loadfiles/LoadFileWriter.h"
#include "toolchain/common/OutputFile.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace {

/// A format's id and that of its writer; one is missing where there is no reader or writer.
struct Format {
    const char* id;
    bool readable;
    const char* writer;
};
constexpr Format Formats[] = {
    {"kvx", true, nullptr}, {"bin", true, "bin"}, {"ihex", true, "hex"}, {"tihex", true, "txt"},
    {"srec", true, "srec"}, {"hex", true, "lst"}, {"tek", false, "tek"},
};
constexpr std::uint64_t TIHexAddresses = 0x100000;

struct Request {
    std::string in;
    std::string out;
    std::string from;
    std::string to;
    std::optional<unsigned> address;
    std::optional<unsigned> fill;
};

unsigned parseNumber(const std::string& option, const std::string& text, unsigned highest)
{
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    const char* begin = text.data() + (hex ? 2 : 0);
    const char* end = text.data() + text.size();
    unsigned value = 0;
    const auto [stopped, error] = std::from_chars(begin, end, value, hex ? 16 : 10);
    if (error != std::errc() || stopped != end || value > highest)
        throw UsageError{option + " " + text + " isn't a number from 0 to "
                         + std::to_string(highest)};
    return value;
}

Request parseRequest(std::span<const std::string> arguments)
{
    Request request;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (!word.starts_with("--")) {
            names.push_back(word);
            continue;
        }
        if (i + 1 == arguments.size())
            throw UsageError{"option " + word + " needs a value"};
        const std::string& value = arguments[++i];
        if (word == "--from")
            request.from = value;
        else if (word == "--to")
            request.to = value;
        else if (word == "--address")
            request.address = parseNumber(word, value, 0xFFFFFFFF);
        else if (word == "--fill")
            request.fill = parseNumber(word, value, 0xFF);
        else
            throw UsageError{"unknown option " + word};
    }
    if (names.size() != 2)
        throw UsageError{"convert takes an input and an output file"};
    request.in = names[0];
    request.out = names[1];
    return request;
}

std::string detectFormat(const std::string& path)
{
    if (path.ends_with(".tek") || path.ends_with(".TEK"))
        return "tek";
    const char* type = LoadFileFactory::instance()->detect(path.c_str());
    return type != nullptr ? type : "";
}

/// The format that was named or that the file's name tells.
const Format& chooseFormat(const std::string& named, const std::string& path, const char* option)
{
    const std::string id = named.empty() ? detectFormat(path) : named;
    if (id.empty())
        throw UsageError{"the name of " + path + " doesn't tell its format; give it with "
                         + option};
    const auto* found = std::find_if(std::begin(Formats), std::end(Formats),
                                     [&](const Format& format) { return id == format.id; });
    if (found == std::end(Formats))
        throw UsageError{"unknown format " + id
                         + "; there are kvx, bin, ihex, tihex, srec, hex and tek"};
    return *found;
}

void checkAddresses(const LoadFileSections& sections, const Format& to)
{
    if (std::string_view(to.id) != "tihex")
        return;
    for (const auto& section : sections.sections())
        if (std::uint64_t{section->address()} + section->length() > TIHexAddresses)
            throw HException("addresses above 0xFFFFF can't be written as tihex");
}

void convert(const Request& request)
{
    const Format& from = chooseFormat(request.from, request.in, "--from");
    const Format& to = chooseFormat(request.to, request.out, "--to");
    if (!from.readable)
        throw UsageError{std::string("format ") + from.id + " can only be written"};
    if (to.writer == nullptr)
        throw UsageError{std::string("format ") + to.id + " can only be read"};
    const std::unique_ptr<LoadFileInterface> file(
        LoadFileFactory::instance()->create(request.in.c_str(), from.id));
    if (request.address && file->hasLoadAddress())
        throw UsageError{std::string("--address has no use, as format ") + from.id
                         + " has addresses of its own"};
    if (request.address)
        file->setLoadAddress(*request.address);
    if (request.fill)
        file->makeContiguous(static_cast<unsigned char>(*request.fill));
    checkAddresses(file->loadFileSections(), to);
    OutputFile out(request.out);
    writeLoadFile(*file, *CodeBuffer::make(to.writer, out.path()));
    out.commit();
}

} // namespace

int convertCommand(std::span<const std::string> arguments)
{
    convert(parseRequest(arguments));
    return 0;
}
