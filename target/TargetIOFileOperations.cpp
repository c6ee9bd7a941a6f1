// The operations of the debug I/O server on host files.
#include "target/TargetIOOperations.h"
#include "target/TargetIOPrint.h"
#include "target/TargetIOScan.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <vector>

using Operations = TargetIOServer::Operations;

namespace {

/// One transfer moves no more than there are addresses.
constexpr std::uint64_t largestTransfer = 0x100000;

} // namespace

void Operations::setFileResult(std::int64_t value)
{
    s_lastErrno = errno;
    setResult(value);
}

std::FILE* Operations::file(int handle)
{
    std::FILE* found = files().find(handle);
    errno = 0;
    if (found != nullptr)
        return found;
    errno = EBADF;
    setFileResult(-1);
    return nullptr;
}

std::FILE* Operations::fileArgument() { return file(static_cast<int>(m_arguments.getIntArg())); }

void Operations::open()
{
    const char* name = stringArgument();
    const char* mode = stringArgument();
    errno = 0;
    setFileResult(files().add(std::fopen(name, mode)));
}

void Operations::reopen()
{
    const char* name = stringArgument();
    const char* mode = stringArgument();
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (file(handle) != nullptr)
        setFileResult(files().reopen(name, mode, handle));
}

void Operations::flush()
{
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle))
        return setResult(0);
    if (std::FILE* stream = file(handle))
        setFileResult(std::fflush(stream));
}

void Operations::close()
{
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (file(handle) != nullptr)
        setFileResult(files().close(handle));
}

void Operations::printToFile()
{
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle))
        return print();
    std::FILE* stream = file(handle);
    if (stream == nullptr)
        return;
    const std::string text = printed();
    const std::size_t written = std::fwrite(text.data(), 1, text.size(), stream);
    setFileResult(written == text.size() ? static_cast<std::int64_t>(written) : -1);
}

void Operations::scanFromFile()
{
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle))
        return scanLine();
    std::FILE* stream = file(handle);
    if (stream == nullptr)
        return;
    int left;
    const int items = scanned([&] { return std::fgetc(stream); }, left);
    if (left >= 0)
        std::ungetc(left, stream);
    setFileResult(items);
}

void Operations::getFromFile()
{
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle))
        return getCharacter();
    if (std::FILE* stream = file(handle))
        setFileResult(std::fgetc(stream));
}

void Operations::getsFromFile()
{
    TargetIOArguments forTerminal = m_arguments;
    const std::uint32_t buffer = m_arguments.getPtrArg();
    const auto size = static_cast<unsigned>(m_arguments.getUnsignedArg());
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle)) {
        m_arguments = forTerminal;
        return gets();
    }
    std::FILE* stream = file(handle);
    if (stream == nullptr)
        return;
    std::vector<char> line(std::max(std::min<std::size_t>(size, largestTransfer), std::size_t{1}));
    if (std::fgets(line.data(), static_cast<int>(line.size()), stream) == nullptr)
        return setFileResult(-1);
    storeString(buffer, size, line.data());
    setFileResult(0);
}

void Operations::putToFile()
{
    const auto character = static_cast<int>(m_arguments.getIntArg());
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle)) {
        addOutput({static_cast<char>(character)});
        return setResult(character & 0xFF);
    }
    if (std::FILE* stream = file(handle))
        setFileResult(std::fputc(character, stream));
}

void Operations::putsToFile()
{
    const char* text = stringArgument();
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle)) {
        addOutput(text);
        return setResult(0);
    }
    if (std::FILE* stream = file(handle))
        setFileResult(std::fputs(text, stream) < 0 ? -1 : 0);
}

void Operations::read()
{
    const std::uint32_t buffer = m_arguments.getPtrArg();
    const std::uint64_t size = m_arguments.getUnsignedArg();
    const std::uint64_t count = m_arguments.getUnsignedArg();
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    const std::uint64_t wanted = std::min(size * count, largestTransfer);
    std::string bytes;
    if (TargetIOFiles::isStandard(handle)) {
        if (!takeLine(bytes))
            return refuseForLackOfInput(-1, 0);
        bytes = (bytes + "\n").substr(0, wanted);
    } else {
        std::FILE* stream = file(handle);
        if (stream == nullptr)
            return;
        bytes.resize(wanted);
        bytes.resize(std::fread(bytes.data(), 1, wanted, stream));
    }
    s_data->pokeBytes(buffer, static_cast<unsigned>(bytes.size()),
                      reinterpret_cast<const unsigned char*>(bytes.data()));
    setFileResult(size == 0 ? 0 : static_cast<std::int64_t>(bytes.size() / size));
}

void Operations::write()
{
    const std::uint32_t buffer = m_arguments.getPtrArg();
    const std::uint64_t size = m_arguments.getUnsignedArg();
    const std::uint64_t count = m_arguments.getUnsignedArg();
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    std::string bytes(std::min(size * count, largestTransfer), '\0');
    s_data->peekBytes(buffer, static_cast<unsigned>(bytes.size()),
                      reinterpret_cast<unsigned char*>(bytes.data()));
    std::size_t written = bytes.size();
    if (TargetIOFiles::isStandard(handle)) {
        addOutput(bytes);
    } else {
        std::FILE* stream = file(handle);
        if (stream == nullptr)
            return;
        written = std::fwrite(bytes.data(), 1, bytes.size(), stream);
    }
    setFileResult(size == 0 ? 0 : static_cast<std::int64_t>(written / size));
}

void Operations::seek()
{
    std::FILE* stream = fileArgument();
    const auto offset = static_cast<long>(m_arguments.getIntArg());
    static constexpr int origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    const std::uint64_t whence = m_arguments.getUnsignedArg();
    if (stream == nullptr)
        return;
    if (whence < std::size(origins))
        return setFileResult(std::fseek(stream, offset, origins[whence]));
    errno = EINVAL;
    setFileResult(-1);
}

void Operations::tell()
{
    if (std::FILE* stream = fileArgument())
        setFileResult(std::ftell(stream));
}

void Operations::rewind()
{
    if (std::FILE* stream = fileArgument()) {
        std::rewind(stream);
        setFileResult(0);
    }
}

void Operations::fileLength()
{
    std::FILE* stream = fileArgument();
    if (stream == nullptr)
        return;
    std::fseek(stream, 0, SEEK_END);
    const long length = std::ftell(stream);
    std::fseek(stream, 0, SEEK_SET);
    setFileResult(length);
}

void Operations::clearErrors()
{
    if (std::FILE* stream = fileArgument()) {
        std::clearerr(stream);
        setFileResult(0);
    }
}

void Operations::endOfFile()
{
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle))
        return setResult(s_terminal == nullptr || s_terminal->atEnd() ? 1 : 0);
    if (std::FILE* stream = file(handle))
        setFileResult(std::feof(stream) != 0 ? 1 : 0);
}

void Operations::errorOfFile()
{
    if (std::FILE* stream = fileArgument())
        setFileResult(std::ferror(stream) != 0 ? 1 : 0);
}

void Operations::ungetc()
{
    const auto character = static_cast<int>(m_arguments.getIntArg());
    const auto handle = static_cast<int>(m_arguments.getIntArg());
    if (TargetIOFiles::isStandard(handle)) {
        s_pushedBack = character < 0 ? s_pushedBack : character & 0xFF;
        return setResult(character < 0 ? -1 : character & 0xFF);
    }
    if (std::FILE* stream = file(handle))
        setFileResult(std::ungetc(character, stream));
}

void Operations::perror()
{
    const std::string prefix = stringArgument();
    addOutput(prefix + ": " + std::strerror(s_lastErrno) + "\n");
}

void Operations::remove()
{
    const char* name = stringArgument();
    errno = 0;
    setFileResult(std::remove(name));
}

void Operations::rename()
{
    const char* from = stringArgument();
    const char* to = stringArgument();
    errno = 0;
    setFileResult(std::rename(from, to));
}

void Operations::temporaryFile()
{
    errno = 0;
    setFileResult(files().add(std::tmpfile()));
}

void Operations::temporaryName()
{
    const std::uint32_t buffer = m_arguments.getPtrArg();
    const auto size = static_cast<unsigned>(m_arguments.getUnsignedArg());
    // A name of its own that exists for a moment only: what is asked for is the name.
    char name[] = "/tmp/gbXXXXXX";
    const int descriptor = mkstemp(name);
    if (descriptor >= 0) {
        ::close(descriptor);
        unlink(name);
    }
    setResult(descriptor >= 0 && storeString(buffer, size, name) ? 0 : -1);
}
