// Any bytes as a file that is opened, edited, undone and saved: what can be edited comes out as it
// went in.

#include "editor/document/CodeDocument.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Notes what was told; saves in spite of it.
class Listener : public DocumentPrompts {
public:
    void warn(const QString&) override { ++warnings; }
    int ask(const QString& text, const QStringList&, int escape) override
    {
        mixedLineEndings |= text.contains(u"inconsistent line endings");
        return escape;
    }
    int warnings = 0;
    bool mixedLineEndings = false;
};

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void check(bool good)
{
    if (!good)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir folder;
    static const QString encodings[] = {u"Default"_s, u"UTF-8"_s, u"ISO-8859-1"_s, u"IBM850"_s,
                                        u"ISO-10646-UCS-2"_s};
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1),
                           static_cast<qsizetype>(size - 1));
    const QString path = folder.filePath(u"file"_s);
    {
        QFile file(path);
        check(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    Listener listener;
    CodeDocument document;
    document.setPrompts(&listener);
    check(document.load(Path(path), encodings[data[0] % std::size(encodings)]));
    check(document.count() >= 1);
    if (!document.canEdit()) {
        check(listener.warnings > 0 && !document.save());
        check(contents(path) == bytes);
        return 0;
    }
    document.insertText({document.count() / 2, 0}, u"typed\n"_s);
    document.deleteText({0, 0}, {document.count() - 1, 1});
    document.undoAll();
    document.redoAll();
    document.undoAll();
    check(!document.modified());
    check(document.save());
    check(listener.mixedLineEndings || contents(path) == bytes);
    return 0;
}
