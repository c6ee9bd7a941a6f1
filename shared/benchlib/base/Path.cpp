#include "base/Path.h"

#include "base/QTx.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

Path::Path(const QString& path) : m_path(QTx::simplifyPath(path)) { }

QString Path::toOsPath(const QString& path) { return QDir::toNativeSeparators(path); }

QString Path::fileName() const { return m_path.sliced(m_path.lastIndexOf(u'/') + 1); }

QString Path::baseName() const
{
    const QString name = fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? name : name.first(dot);
}

QString Path::extension() const
{
    const QString name = fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? QString() : name.sliced(dot + 1);
}

Path Path::directory() const
{
    const qsizetype slash = m_path.lastIndexOf(u'/');
    if (slash < 0)
        return Path(QStringLiteral("."));
    return Path(m_path.first(std::max<qsizetype>(slash, 1)));
}

Path Path::absolute(const QString& directory) const
{
    return isRelative() && !directory.isEmpty() ? Path(directory + u'/' + m_path) : *this;
}

QString Path::relativeFilePath(const QString& directory) const
{
    const Path from(directory);
    if (isEmpty() || from.isEmpty() || from.isRelative() != isRelative())
        return m_path;
    const auto elements = [](const Path& path) {
        return path.m_path == u"." ? QStringList() : path.m_path.split(u'/', Qt::SkipEmptyParts);
    };
    const QStringList there = elements(from);
    QStringList here = elements(*this);
    const auto [common, rest] = std::ranges::mismatch(there, here);
    // The names of directories above a relative one aren't known.
    if (std::find(common, there.end(), u"..") != there.end())
        return m_path;
    here.erase(here.cbegin(), QStringList::const_iterator(rest));
    for (auto it = common; it != there.end(); ++it)
        here.prepend(QStringLiteral(".."));
    return here.isEmpty() ? QStringLiteral(".") : here.join(u'/');
}

QString Path::relativeDirPath(const QString& directory) const
{
    return relativeFilePath(directory);
}

bool Path::writable() const
{
    const QFileInfo info(m_path);
    return info.exists() ? info.isWritable() : QFileInfo(info.path()).isWritable();
}
