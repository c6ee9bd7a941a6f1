#include "build/system/StagedPackages.h"

#include "base/QTx.h"
#include "packages/archive/Archive2.h"
#include "packages/archive/CompressedFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A file beside another, removed at the end.
class FileBeside {
public:
    FileBeside(const QString& path, const QString& suffix) : m_path(path + suffix) { }
    ~FileBeside() { QFile::remove(m_path); }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    const QString& path() const { return m_path; }
    QByteArray name() const { return QFile::encodeName(m_path); }

private:
    QString m_path;
};

} // namespace

void StagedPackages::add(const QString& package, const QString& member, const QString& file)
{
    m_changes[package].insert(member, file);
}

void StagedPackages::remove(const QString& package, const QString& member)
{
    m_changes[package].insert(member, QString());
}

bool StagedPackages::write(QString& errorText)
{
    QString failed;
    for (auto it = m_changes.constBegin(); it != m_changes.constEnd() && failed.isEmpty(); ++it)
        if (!writePackage(it.key(), it.value()))
            failed = it.key();
    m_changes.clear();
    errorText = failed.isEmpty() ? QString() : u"Cannot write package "_s + failed;
    return failed.isEmpty();
}

bool StagedPackages::writePackage(const QString& package, const Members& members)
{
    QDir().mkpath(QFileInfo(package).path());
    const bool isNew = !QFileInfo::exists(package);
    const bool compressed = isNew || QTx::isCompressedFile(package);
    const FileBeside old(package, u".old"_s);
    const FileBeside made(package, u".new"_s);
    const FileBeside wrapped(package, u".tmp"_s);

    Archive2 before;
    if (!isNew) {
        if (!(compressed ? QTx::decompressFile(package, old.path())
                         : QFile::copy(package, old.path())))
            return false;
        if (before.open(std::fopen(old.name().constData(), "rb"), old.name().constData()) != 0)
            return false;
    }
    Archive2 after;
    for (const ArchiveChunk2& chunk : before.members())
        if (!members.contains(QFile::decodeName(chunk.name.c_str())))
            after.addMember(chunk.sourceFile.c_str(), chunk.name.c_str(), chunk.offset,
                            chunk.length, chunk.readOnly, chunk.modificationTime);
    for (auto it = members.constBegin(); it != members.constEnd(); ++it)
        if (!it.value().isEmpty()
            && !addFileToPackage(QFile::encodeName(it.value()).constData(),
                                 QFile::encodeName(it.key()).constData(), after))
            return false;
    if (after.write(made.name().constData()) != 0)
        return false;
    const FileBeside* result = &made;
    if (compressed) {
        if (!QTx::compressFile(made.path(), wrapped.path()))
            return false;
        result = &wrapped;
    }
    return std::rename(result->name().constData(), QFile::encodeName(package).constData()) == 0;
}
