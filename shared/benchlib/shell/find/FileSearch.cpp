#include "shell/find/FileSearch.h"

#include "build/log/BuildLogModel.h"
#include "editor/document/TextEncoding.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Events are handled after so many lines: that is a millisecond or so.
constexpr int LinesBetweenEvents = 4000;
/// What opening and reading a file takes, in such lines.
constexpr int LinesForOpening = 100;
/// Larger files are hardly anything that one wrote.
constexpr qint64 LargestFile = qint64(256) << 20;
/// What of a long line is shown.
constexpr qsizetype ShownLength = 300;

QStringList patternsOf(const QString& fileTypes)
{
    static const QRegularExpression separator(u"[;,\\s]+"_s);
    QStringList patterns = fileTypes.split(separator, Qt::SkipEmptyParts);
    if (patterns.isEmpty() || patterns.contains(u"*.*"_s))
        patterns = {u"*"_s};
    return patterns;
}

} // namespace

FileSearch::Outcome FileSearch::run(const Request& request)
{
    m_request = request;
    m_search = TextSearch(request.text, request.options);
    m_stopped = false;
    m_found = 0;
    m_files.clear();
    const QDir folder(request.folder);
    if (!folder.exists())
        return m_outcome = Outcome::NoSuchFolder;
    if (!m_search.isValid())
        return m_outcome = Outcome::BadExpression;
    m_log.beginGroup(u"Find '%1'"_s.arg(request.text));
    findInFolder(folder, patternsOf(request.fileTypes), request.subfolders);
    m_outcome = m_stopped ? Outcome::Stopped : Outcome::Done;
    m_log.endGroup(summary());
    return m_outcome;
}

QString FileSearch::summary() const
{
    switch (m_outcome) {
    case Outcome::NoSuchFolder: return u"The folder '"_s + m_request.folder + u"' doesn't exist"_s;
    case Outcome::BadExpression:
        return u"'%1' isn't a regular expression: %2"_s.arg(m_request.text, m_search.errorText());
    case Outcome::Stopped: return u"Search stopped"_s;
    case Outcome::Done: break;
    }
    if (m_found == 0)
        return u"Cannot find the string '"_s + m_request.text + u"'"_s;
    return m_found == 1 ? u"1 occurrence has been found"_s
                        : QString::number(m_found) + u" occurrences have been found"_s;
}

void FileSearch::findInFolder(const QDir& folder, const QStringList& filter, bool subfolders)
{
    for (const QFileInfo& file :
         folder.entryInfoList(filter, QDir::Files | QDir::Hidden, QDir::Name)) {
        if (m_stopped)
            return;
        findInFile(file);
    }
    if (!subfolders)
        return;
    // Links aren't followed: they may lead back.
    for (const QFileInfo& below : folder.entryInfoList(
             QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks | QDir::Hidden, QDir::Name)) {
        if (m_stopped)
            return;
        findInFolder(QDir(below.filePath()), filter, true);
    }
}

void FileSearch::worked(int lines)
{
    m_sinceEvents += lines;
    if (m_sinceEvents < LinesBetweenEvents)
        return;
    m_sinceEvents = 0;
    QCoreApplication::processEvents();
}

/// A file that can't be read is passed over, and so is one that isn't text.
void FileSearch::findInFile(const QFileInfo& info)
{
    worked(LinesForOpening);
    const QString path = info.filePath();
    QFile file(path);
    if (!info.isFile() || info.size() > LargestFile || !file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.readAll();
    const bool is16Bit = bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
    if (!is16Bit
        && (bytes.first(std::min<qsizetype>(bytes.size(), 8000)).contains('\0')
            || !m_search.mayMatch(bytes)))
        return;
    const QString text = TextEncoding::textOf(bytes);
    bool inGroup = false;
    int number = 0;
    for (const QStringView line : QStringView(text).tokenize(u'\n')) {
        ++number;
        worked(1);
        if (m_stopped)
            break;
        for (TextSearch::Match match = m_search.next(line, 0); match.isValid();
             match = m_search.next(line, match.end())) {
            if (!inGroup) {
                m_log.beginGroup(info.fileName());
                m_files.append(path);
            }
            inGroup = true;
            ++m_found;
            DiagnosticData hit;
            hit.path = Path(path);
            hit.line = number;
            hit.column = match.start + 1;
            hit.level = DiagnosticData::Find;
            hit.message = line.left(match.end() + ShownLength).trimmed().toString();
            m_log.addResult(hit);
        }
    }
    if (inGroup)
        m_log.endGroup();
}
