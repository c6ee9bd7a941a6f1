#include "build/system/DependencyCache.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

/// The beginning of the file; another number for another form.
constexpr quint32 Magic = 0x4b564431;
/// More names or entries than this no project has.
constexpr quint32 MostNames = 10'000'000;

} // namespace

bool DependencyCache::find(const QString& object, FileTime time, QStringList& files) const
{
    const auto known = m_entries.constFind(object);
    if (known == m_entries.constEnd() || known->time != time)
        return false;
    files = known->files;
    return true;
}

void DependencyCache::insert(const QString& object, FileTime time, const QStringList& files)
{
    m_entries.insert(object, {time, files});
    m_changed = true;
}

// The file holds each name once, and entries as indices of names.

QByteArray DependencyCache::toBytes(const QStringList& objects) const
{
    QStringList names;
    QHash<QString, quint32> indices;
    const auto indexOf = [&](const QString& name) {
        const auto known = indices.constFind(name);
        if (known != indices.constEnd())
            return *known;
        indices.insert(name, quint32(names.size()));
        names << name;
        return quint32(names.size() - 1);
    };
    QByteArray entries;
    QDataStream out(&entries, QIODevice::WriteOnly);
    quint32 count = 0;
    for (const QString& object : objects) {
        const auto entry = m_entries.constFind(object);
        if (entry == m_entries.constEnd())
            continue;
        out << indexOf(object) << entry->time << quint32(entry->files.size());
        for (const QString& file : entry->files)
            out << indexOf(file);
        ++count;
    }
    QByteArray bytes;
    QDataStream whole(&bytes, QIODevice::WriteOnly);
    whole << Magic << quint32(names.size());
    for (const QString& name : names)
        whole << name.toUtf8();
    whole << count;
    return bytes + entries;
}

bool DependencyCache::addBytes(const QByteArray& bytes)
{
    QDataStream in(bytes);
    quint32 magic = 0;
    quint32 count = 0;
    in >> magic >> count;
    if (in.status() != QDataStream::Ok || magic != Magic || count > MostNames)
        return false;
    QStringList names;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        QByteArray name;
        in >> name;
        names << QString::fromUtf8(name);
    }
    in >> count;
    QHash<QString, Entry> entries;
    for (; count > 0 && in.status() == QDataStream::Ok; --count) {
        quint32 object = 0;
        quint32 files = 0;
        Entry entry{};
        in >> object >> entry.time >> files;
        for (; files > 0 && in.status() == QDataStream::Ok; --files) {
            quint32 name = 0;
            in >> name;
            if (name >= quint32(names.size()))
                return false;
            entry.files << names[name];
        }
        if (object >= quint32(names.size()))
            return false;
        entries.insert(names[object], entry);
    }
    if (in.status() != QDataStream::Ok || !in.atEnd())
        return false;
    for (auto entry = entries.constBegin(); entry != entries.constEnd(); ++entry)
        if (!m_entries.contains(entry.key()))
            m_entries.insert(entry.key(), entry.value());
    return true;
}

void DependencyCache::load(const QString& path)
{
    if (m_loaded.contains(path))
        return;
    m_loaded << path;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        addBytes(file.readAll());
}

void DependencyCache::save(const QString& path, const QStringList& objects)
{
    if (!m_changed || !QFileInfo(path).dir().exists())
        return;
    m_changed = false;
    // A file that can't be written costs time in the next program, and nothing else.
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(toBytes(objects));
        file.commit();
    }
}
