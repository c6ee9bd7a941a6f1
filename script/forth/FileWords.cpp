// Files. A result "ior" is 0, or the code of the exception that says what is wrong.

#include "script/forth/WordSupport.h"

#include <cerrno>
#include <optional>

namespace {

// Access methods.
constexpr qint64 Read = 1;
constexpr qint64 Write = 2;
constexpr qint64 Binary = 4;

X result(bool done, ForthError error = ForthError::FileFault)
{
    return done ? X(0) : X(static_cast<qint64>(error));
}

X openResult(int error)
{
    return result(error == 0, error == ENOENT ? ForthError::NoFile : ForthError::FileFault);
}

std::shared_ptr<FileSource> popFile(FSContext* context)
{
    return context->file(context->popLiteral());
}

/// ( c-addr u fam -- fileid ior )
void openFile(FSContext* context, QIODevice::OpenMode more)
{
    const qint64 method = context->popLiteral();
    const QString name = forthPopString(context);
    if ((method & (Read | Write)) == 0 || (method & ~(Read | Write | Binary)) != 0)
        throw ForthException(ForthError::InvalidArgument);
    QIODevice::OpenMode mode = more;
    mode.setFlag(QIODevice::ReadOnly, (method & Read) != 0);
    mode.setFlag(QIODevice::WriteOnly, (method & Write) != 0);
    std::shared_ptr<FileSource> file;
    const int error = context->file_open(name, mode, (method & Binary) != 0, file);
    context->push(file ? file->id() : 0);
    context->push(openResult(error));
}

/// Where READ-FILE and READ-LINE put characters.
struct Buffer {
    std::shared_ptr<FileSource> file;
    X address;
    qint64 size;

    void store(qint64 index, int character) const
    {
        address.segment()->store(address.offset() + index, X(character));
    }
};

Buffer popBuffer(FSContext* context)
{
    Buffer buffer;
    buffer.file = popFile(context);
    buffer.size = context->popLiteral();
    buffer.address = context->pop();
    buffer.address.segment()->demand(buffer.address.offset(), buffer.size);
    context->spend(buffer.size / 16);
    return buffer;
}

bool isReadable(FileSource& file) { return file.device().isReadable(); }

/// ( fileid -- ior ) of a text
void writeText(FSContext* context, const QString& lineEnd)
{
    const auto file = popFile(context);
    const QString text = forthPopString(context) + lineEnd;
    context->push(result(file->device().isWritable() && file->write(text)));
}

/// A file's position or size: only what fits one cell can be one.
std::optional<qint64> popPosition(FSContext* context)
{
    const qint64 high = context->popLiteral();
    const qint64 low = context->popLiteral();
    return high == 0 && low >= 0 ? std::optional(low) : std::nullopt;
}

} // namespace

// clang-format off
void FReadOnly::execute(FSContext* context) { context->push(Read); }
void FWriteOnly::execute(FSContext* context) { context->push(Write); }
void FReadWrite::execute(FSContext* context) { context->push(Read | Write); }
void FBin::execute(FSContext* context) { context->push(context->popLiteral() | Binary); }
void FOpenFile::execute(FSContext* context) { openFile(context, QIODevice::NotOpen); }
void FCreateFile::execute(FSContext* context) { openFile(context, QIODevice::Truncate); }
void FDeleteFile::execute(FSContext* context) { context->push(openResult(context->files().remove(forthPopString(context)))); }
void FWriteFile::execute(FSContext* context) { writeText(context, QString()); }
void FWriteLine::execute(FSContext* context) { writeText(context, QStringLiteral("\n")); }
void FIncludeFile::execute(FSContext* context) { interpret_file(context, context->popLiteral()); }
void FIncluded::execute(FSContext* context) { interpret_file(context, forthPopString(context)); }
void FInclude::execute(FSContext* context) { interpret_file(context, parseName(context)); }
// clang-format on

void FCloseFile::execute(FSContext* context)
{
    const auto file = popFile(context);
    const bool flushed = context->files().flush(file->device());
    context->closeFile(file->id());
    context->push(result(flushed));
}

void FReadFile::execute(FSContext* context)
{
    const Buffer buffer = popBuffer(context);
    qint64 count = 0;
    for (; count < buffer.size && isReadable(*buffer.file); ++count) {
        const int character = buffer.file->readCharacter();
        if (character < 0)
            break;
        buffer.store(count, character);
    }
    context->push(count);
    context->push(result(isReadable(*buffer.file)));
}

void FReadLine::execute(FSContext* context)
{
    const Buffer buffer = popBuffer(context);
    qint64 count = 0;
    bool any = buffer.size == 0;
    while (count < buffer.size && isReadable(*buffer.file)) {
        const int character = buffer.file->readCharacter();
        any |= character >= 0;
        if (character < 0 || character == '\n')
            break;
        buffer.store(count, character);
        const bool lineEnd = character == '\r' && buffer.file->device().peek(1) == "\n";
        count += lineEnd ? 0 : 1;
    }
    context->push(count);
    context->push(X::flag(any));
    context->push(result(isReadable(*buffer.file)));
}

void FFilePosition::execute(FSContext* context)
{
    const auto file = popFile(context);
    context->push(qint64(file->device().pos()));
    context->push(0);
    context->push(result(!file->device().isSequential(), ForthError::FilePosition));
}

void FRepositionFile::execute(FSContext* context)
{
    const auto file = popFile(context);
    const std::optional<qint64> position = popPosition(context);
    QIODevice& device = file->device();
    const bool done =
        position && !device.isSequential() && *position <= device.size() && device.seek(*position);
    context->push(result(done, ForthError::FilePosition));
}

void FResizeFile::execute(FSContext* context)
{
    const auto file = popFile(context);
    const std::optional<qint64> size = popPosition(context);
    const bool done =
        size && file->device().isWritable() && context->files().resize(file->device(), *size);
    context->push(result(done));
}
