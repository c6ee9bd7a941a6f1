// The Forth system: a text as the lines of a console and as an included file, over files in memory.

#include "script/forth/FSConsole.h"
#include "tests/forth/MemoryFiles.h"

#include <cstdint>

namespace {

/// Prints nothing, and stops what runs for long.
class SilentConsole : public FSConsole {
public:
    explicit SilentConsole(FSFileSystem& files) : FSConsole(files) { }
    void output(const QString&) override { }
    bool carryOnExecuting() override { return false; }

protected:
    void showInput(const QString&) override { }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    MemoryFiles files;
    files.put(QStringLiteral("f"), bytes);
    SilentConsole console(files);
    for (const QByteArray& line : bytes.split('\n'))
        console.process(QString::fromUtf8(line));
    console.load(QStringLiteral("f"));
    return 0;
}
