#include "build/workspace/SolutionPackage.h"

#include "base/HException.h"
#include "base/QTx.h"
#include "packages/archive/Archive2.h"
#include "packages/archive/CompressedFile.h"
#include "projects/solution/ProjectSystem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <cstdint>
#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace {

[[noreturn]] void fail(const QString& text) { throw HException(text.toStdString()); }

// Packing

/// Collects the members of a package from the files of a solution.
class Packer {
public:
    Packer(const QString& directory, const QString& package)
        : m_directory(directory),
          m_package(QDir::cleanPath(QFileInfo(package).absoluteFilePath()))
    {
    }

    void add(const Path& path, const QString& shown)
    {
        const QString name = path.relativeFilePath(m_directory);
        const bool isBelow = !name.startsWith(u"../") && Path(name).isRelative();
        const QByteArray bytes = QFile::encodeName(name);
        if (m_archive.findMember(bytes.constData()))
            return;
        if (path.osPath() == m_package)
            fail(m_package + u" is a file of the solution itself"_s);
        if (bytes.size() >= Archive2::NameLength)
            fail(name + u" - the path is too long for a package"_s);
        if (isBelow
            && addFileToPackage(QFile::encodeName(path.osPath()).constData(), bytes.constData(),
                                m_archive))
            m_packed.members << name;
        else if (!m_packed.leftOut.contains(shown))
            m_packed.leftOut << shown;
    }

    /// The element and all below it, in the order of the tree.
    void addAll(const ProjectElement& element)
    {
        if (element.isSolution())
            add(element.path(), element.path().osPath());
        else if (element.isFile())
            add(element.path(), element.attribute(u"file_name"_s));
        for (const ProjectElement* child = element.firstChild(); child;
             child = child->nextSibling())
            addAll(*child);
    }

    PackedSolution write()
    {
        QTemporaryFile bare(QFileInfo(m_package).path() + u"/tmpXXXXXX"_s);
        if (!bare.open())
            fail(u"couldn't write "_s + m_package);
        if (m_archive.write(QFile::encodeName(bare.fileName()).constData()) != 0)
            fail(QString::fromStdString(m_archive.errorText()).trimmed());
        if (!QTx::compressFile(bare.fileName(), m_package))
            fail(u"couldn't write "_s + m_package);
        return m_packed;
    }

private:
    QString m_directory;
    QString m_package;
    Archive2 m_archive;
    PackedSolution m_packed;
};

// Opening

/// A package's archive, open for reading and checked as a whole.
class Package {
public:
    explicit Package(const QString& path) : m_path(path)
    {
        const QString bare = m_folder.filePath(u"archive"_s);
        if (!QFileInfo(path).isFile())
            fail(path + u" does not exist"_s);
        if (!QTx::isCompressedFile(path))
            fail(path + u" is not a packaged solution"_s);
        if (!QTx::decompressFile(path, bare))
            failDamaged();
        const QByteArray name = QFile::encodeName(bare);
        std::FILE* file = std::fopen(name.constData(), "rb");
        if (!file || m_archive.open(file, name.constData()) != 0)
            failDamaged();
        checkExtent(QFileInfo(bare).size());
    }

    const std::vector<ArchiveChunk2>& members() const { return m_archive.members(); }

    QByteArray bytes(const ArchiveChunk2& member) const
    {
        std::vector<unsigned char> bytes;
        if (!m_archive.readMember(member, bytes))
            failDamaged();
        return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
    }

private:
    /// Each member lies in the file, and none is there twice: a small package can't fill the disk.
    void checkExtent(qint64 size) const
    {
        std::int64_t total = 0;
        for (const ArchiveChunk2& member : members()) {
            if (member.offset < 0 || member.length < 0
                || std::int64_t{member.offset} + member.length > size)
                failDamaged();
            total += member.length;
        }
        if (total > size)
            failDamaged();
    }

    [[noreturn]] void failDamaged() const { fail(m_path + u" is damaged"_s); }

    QString m_path;
    QTemporaryDir m_folder;
    Archive2 m_archive;
};

QString shownName(const ArchiveChunk2& member)
{
    return QFile::decodeName(QByteArray::fromStdString(member.name));
}

[[noreturn]] void refuse(const ArchiveChunk2& member, const QString& reason)
{
    fail(u"package member \"%1\" %2"_s.arg(shownName(member), reason));
}

/// The directory that members are unpacked into.
class Destination {
public:
    Destination(const QString& directory, PackagedSolutionHandler* handler)
        : m_directory(QDir(directory).absolutePath()),
          m_handler(handler)
    {
    }

    QString path(const ArchiveChunk2& member) const
    {
        return m_directory + u'/' + shownName(member);
    }

    /// Throws if the member must not be written.
    void check(const ArchiveChunk2& member) const
    {
        if (member.name.empty() || member.name.ends_with('/'))
            refuse(member, u"has no file name"_s);
        if (QFile::encodeName(shownName(member)).toStdString() != member.name)
            refuse(member, u"has a name that is no text"_s);
        std::filesystem::path place = QFile::encodeName(m_directory).toStdString();
        const std::filesystem::path name = member.name;
        if (name.is_absolute())
            refuse(member, u"has an absolute path"_s);
        for (auto element = name.begin(); element != name.end(); ++element) {
            if (*element == "..")
                refuse(member, u"leads out of the directory"_s);
            place /= *element;
            checkPlace(member, place, std::next(element) == name.end());
        }
    }

    void write(const ArchiveChunk2& member, const QByteArray& bytes) const
    {
        const QString path = this->path(member);
        const QFileInfo there(path);
        const auto time = QDateTime::fromSecsSinceEpoch(member.modificationTime, Qt::UTC);
        if (there.exists()) {
            if (holds(path, bytes))
                return;
            if (there.lastModified() > time && !(m_handler && m_handler->overwrite(path)))
                return;
            QTx::setWritable(path, true);
        }
        QSaveFile file(path);
        if (!QTx::makeDir(there.path()) || !file.open(QIODevice::WriteOnly)
            || file.write(bytes) != bytes.size() || !file.commit())
            refuse(member, u"couldn't be written: "_s + file.errorString());
        QTx::setFileTimes(path, time);
        if (member.readOnly)
            QTx::setWritable(path, false);
    }

private:
    static void checkPlace(const ArchiveChunk2& member, const std::filesystem::path& place,
                           bool isLast)
    {
        std::error_code error;
        const auto status = std::filesystem::symlink_status(place, error);
        if (std::filesystem::is_symlink(status))
            refuse(member,
                   u"would be written through the symbolic link "_s
                       + QString::fromStdString(place.string()));
        if (!std::filesystem::exists(status))
            return;
        if (isLast ? !std::filesystem::is_regular_file(status)
                   : !std::filesystem::is_directory(status))
            refuse(member,
                   u"has no place: %1 is in the way"_s.arg(QString::fromStdString(place.string())));
    }

    static bool holds(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        return file.size() == bytes.size() && file.open(QIODevice::ReadOnly)
            && file.readAll() == bytes;
    }

    QString m_directory;
    PackagedSolutionHandler* m_handler;
};

/// The solution files of the package; those of imports only if none lies outermost.
QStringList solutionFiles(const Package& package, const Destination& destination)
{
    QStringList outermost;
    QStringList all;
    for (const ArchiveChunk2& member : package.members()) {
        if (!member.name.ends_with(".kvp"))
            continue;
        all << destination.path(member);
        if (member.name.find('/') == std::string::npos)
            outermost << all.last();
    }
    all.removeDuplicates();
    outermost.removeDuplicates();
    return outermost.isEmpty() ? all : outermost;
}

} // namespace

PackedSolution packageSolution(const ProjectSystem& projects, ProjectElement* element,
                               const QString& path, const QString&)
{
    const ProjectElement* solution = projects.solutionContaining(element);
    if (!solution)
        fail(u"there is no solution to pack"_s);
    Packer packer(solution->solutionDirectory(), path);
    packer.addAll(*solution);
    return packer.write();
}

QString openPackagedSolution(const QString& path, const QString& directory,
                             PackagedSolutionHandler* handler)
{
    const Package package(path);
    const Destination destination(directory, handler);
    for (const ArchiveChunk2& member : package.members())
        destination.check(member);
    const QStringList solutions = solutionFiles(package, destination);
    if (solutions.isEmpty())
        fail(path + u" holds no solution"_s);
    QSet<std::string> written;
    for (const ArchiveChunk2& member : package.members()) {
        // The first of two members of one name is the one that counts.
        if (written.contains(member.name))
            continue;
        written.insert(member.name);
        destination.write(member, package.bytes(member));
    }
    if (solutions.size() == 1 || !handler)
        return solutions.first();
    return handler->chooseSolution(solutions);
}
