#include "projects/settings/Settings.h"

#include "projects/settings/XmlText.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>
#include <QXmlStreamReader>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto DocumentType = "Gantry_Settings_File"_L1;

/// Qt's nodes destroy one another by recursion. A settings file needs two levels; one of ordinary
/// size has no room for a harmful depth, and isn't read twice.
bool nestsTooDeeply(const QByteArray& bytes)
{
    constexpr qsizetype ordinarySize = 16384;
    constexpr int deepest = 100;
    if (bytes.size() <= ordinarySize)
        return false;
    QXmlStreamReader reader(bytes);
    int depth = 0;
    while (depth <= deepest && !reader.atEnd()) {
        reader.readNext();
        depth += reader.isStartElement() ? 1 : reader.isEndElement() ? -1 : 0;
    }
    return depth > deepest;
}

QString firstChildText(const QDomElement& element)
{
    QString text;
    QTextStream stream(&text);
    if (!element.firstChild().isNull())
        element.firstChild().save(stream, 0);
    stream.flush();
    return xmlRestoreControls(xmlUnescapeEntities(text));
}

} // namespace

void Settings::setPath(const QString& path)
{
    m_path = path;
    m_version = Version::ofFile(path);
    m_entries = load().value_or(Entries());
    m_dirty = false;
}

bool Settings::contains(const QString& key) const
{
    const auto entry = m_entries.constFind(key);
    return entry != m_entries.cend() && entry->state != Setting::State::Removed;
}

QString Settings::readEntry(const QString& key, const QString& fallback) const
{
    return contains(key) ? m_entries[key].value : fallback;
}

void Settings::writeEntry(const QString& key, const QString& value)
{
    m_entries[key] = {value, Setting::State::Changed};
    m_dirty = true;
}

void Settings::removeEntry(const QString& key)
{
    const auto entry = m_entries.find(key);
    if (entry == m_entries.end())
        return;
    entry->state = Setting::State::Removed;
    m_dirty = true;
}

void Settings::sync()
{
    const Version version = Version::ofFile(m_path);
    if (version != m_version) {
        if (auto entries = load()) {
            mergeChanges(*entries, m_entries);
            m_entries = std::move(*entries);
        }
        m_version = version;
    }
    if (m_dirty && save())
        m_dirty = false;
}

/// Applies what this instance did to what the file holds. The states stay until they are written.
void Settings::mergeChanges(Entries& fileEntries, const Entries& ownEntries)
{
    for (auto own = ownEntries.cbegin(); own != ownEntries.cend(); ++own)
        if (own->state != Setting::State::Unchanged)
            fileEntries[own.key()] = *own;
}

std::optional<Settings::Entries> Settings::load()
{
    QFile file(m_path);
    m_unread = QFileInfo(file).isFile();
    if (!m_unread || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    QDomDocument document(DocumentType);
    if (nestsTooDeeply(bytes) || !document.setContent(bytes))
        return {};
    m_unread = false;
    Entries entries;
    const QDomNodeList elements = document.elementsByTagName(u"setting"_s);
    for (int i = 0; i < elements.size(); ++i) {
        const QDomElement element = elements.at(i).toElement();
        entries[xmlRestoreControls(element.attribute(u"name"_s))].value = firstChildText(element);
    }
    return entries;
}

/// Writes beside the file and renames, so that a crash leaves the old file or the new one.
bool Settings::save()
{
    if (m_path.isEmpty() || !QDir().mkpath(QFileInfo(m_path).path()))
        return false;
    if (m_unread) {
        QFile::remove(m_path + ".bad"_L1);
        m_unread = !QFile::copy(m_path, m_path + ".bad"_L1);
    }
    QSaveFile file(m_path);
    if (m_unread || !file.open(QIODevice::WriteOnly))
        return false;

    Entries written = m_entries;
    written.removeIf(
        [](const Entries::iterator& entry) { return entry->state == Setting::State::Removed; });
    QTextStream stream(&file);
    stream << "<!DOCTYPE " << DocumentType << ">\n<settings>\n";
    for (auto entry = written.begin(); entry != written.end(); ++entry) {
        stream << "  <setting name=\"" << xmlEscape(entry.key()) << "\">" << xmlEscape(entry->value)
               << "</setting>\n";
        entry->state = Setting::State::Unchanged;
    }
    stream << "</settings>\n";
    stream.flush();
    // The version of what is about to be renamed, not of what stands there a moment later: another
    // instance may have saved in between.
    const Version version = Version::ofOpenFile(file.handle());
    if (!file.commit())
        return false;
    m_entries = std::move(written);
    m_version = version;
    return true;
}

Settings::Version Settings::Version::ofFile(const QString& path)
{
    struct stat status { };
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ino, status.st_size};
}

Settings::Version Settings::Version::ofOpenFile(int descriptor)
{
    struct stat status { };
    if (fstat(descriptor, &status) != 0)
        return {};
    return {status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ino, status.st_size};
}
