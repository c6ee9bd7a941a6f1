#include "base/QTx.h"
#include "editor/document/CodeDocument.h"
#include "editor/document/FileReplacement.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 LargestFile = qint64(1) << 30;

constexpr QStringView Terminators[] = {u"\r\n", u"\n", u"\r"};

QString backupName(const QString& path, int number)
{
    return number == 1 ? path + u".bak"_s : path + u".bak."_s + QString::number(number);
}

} // namespace

void CodeDocument::setEncoding(const QString& name)
{
    m_encodingName = name.isEmpty() ? TextEncoding::Default.toString() : name;
    m_encoding = TextEncoding::named(m_encodingName);
    emit modStateChanged();
}

void CodeDocument::setLineEnding(LineEnding ending)
{
    m_lineEnding = ending;
    emit modStateChanged();
}

void CodeDocument::refreshModState()
{
    if (m_named && QFile::exists(m_filename.osPath()))
        setModState(m_filename.writable() ? ModState::Writable : ModState::ReadOnly);
}

void CodeDocument::toggleReadOnly()
{
    if (!m_named)
        return;
    QTx::setWritable(m_filename.osPath(), !QFileInfo(m_filename.osPath()).isWritable());
    refreshModState();
}

// Loading

bool CodeDocument::failToOpen(const QString& text, const QString& reason)
{
    emit message(text);
    m_prompts->warn(reason.isEmpty() ? text : text + u": "_s + reason);
    return false;
}

bool CodeDocument::load(const Path& path, const QString& encoding)
{
    const QString before = m_encodingName;
    m_encodingName = encoding.isEmpty() ? TextEncoding::Default.toString() : encoding;
    if (load(path))
        return true;
    m_encodingName = before;
    return false;
}

bool CodeDocument::load(const Path& path)
{
    QString text;
    QString warning;
    bool binary = false;
    m_needsParsing = true;
    if (!readFile(path, text, warning, binary))
        return false;

    setFilename(path, true);
    noteFile();
    setModState(path.writable() ? ModState::Writable : ModState::ReadOnly, true);
    if (binary)
        setModState(ModState::Locked, true);
    bool consistent = true;
    m_lineEnding = lineEndingOf(text, consistent);
    clear();
    m_buffer.adopt(text);
    if (!consistent)
        m_prompts->ask(u"This file %1 has inconsistent line endings; all line endings have been "
                       "changed to native line endings"_s.arg(path.osPath()),
                       {u"OK"_s}, 0);
    if (!warning.isEmpty())
        m_prompts->warn(warning);
    linesChanged();
    beginUpdate(Quiet);
    endUpdate(Quiet | Repaint | LinesChanged);
    emit finished();
    return true;
}

/// What a file says. Bytes that can't be characters don't get lost: a text that isn't in its
/// encoding is read byte by byte, and one that is cut at a NUL can't be edited.
bool CodeDocument::readFile(const Path& path, QString& text, QString& warning, bool& binary)
{
    const QString name = path.osPath();
    const QString cannotOpen = u"Can't open %1 for reading"_s.arg(name);
    const QFileInfo info(name);
    if (info.exists() && !info.isFile())
        return failToOpen(cannotOpen, u"it isn't a file"_s);
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return failToOpen(cannotOpen, file.errorString());
    if (file.size() > LargestFile)
        return failToOpen(cannotOpen, u"it has more than 1 GB"_s);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        return failToOpen(cannotOpen, file.errorString());

    TextEncoding encoding =
        TextEncoding::forFile(m_encodingName, bytes.first(std::min<qsizetype>(3, bytes.size())));
    if (!encoding.isValid())
        return false;
    bool lossless = true;
    text = encoding.decode(bytes, lossless);
    if (!lossless) {
        warning = u"Some bytes of %1 aren't text in the encoding '%2'. The file is shown, and will "
                  "be saved, in the encoding 'ISO-8859-1', which keeps every byte"_s.arg(
                      name, encoding.name());
        encoding = TextEncoding::forFile(u"ISO-8859-1"_s, {});
        text = encoding.decode(bytes, lossless);
    }
    const qsizetype nul = text.indexOf(QChar::Null);
    if (nul >= 0) {
        binary = true;
        text.truncate(nul);
        warning = u"The file %1 holds a NUL character. It is shown up to there and can't be "
                  "edited"_s.arg(name);
    }
    m_encoding = encoding;
    m_encodingName = encoding.name();
    return true;
}

CodeDocument::LineEnding CodeDocument::lineEndingOf(QStringView text, bool& consistent) const
{
    bool seen[3] = {};
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == u'\n') {
            seen[int(LineEnding::LF)] = true;
        } else if (text[at] == u'\r') {
            const bool pair = at + 1 < text.size() && text[at + 1] == u'\n';
            seen[int(pair ? LineEnding::CRLF : LineEnding::CR)] = true;
            at += pair ? 1 : 0;
        }
    }
    consistent = seen[0] + seen[1] + seen[2] <= 1;
    if (consistent && seen[int(LineEnding::CRLF)])
        return LineEnding::CRLF;
    return consistent && seen[int(LineEnding::CR)] ? LineEnding::CR : LineEnding::LF;
}

bool CodeDocument::changedOnDisk() const
{
    const QFileInfo info(m_filename.osPath());
    // Without a time the file wasn't there.
    if (!m_named || !m_fileTime.isValid())
        return m_named && info.exists();
    return !info.exists() || info.lastModified() != m_fileTime || info.size() != m_sizeInBytes;
}

void CodeDocument::keepAgainstDisk()
{
    noteFile();
    m_savedState.revision = NoRevision;
    emit modStateChanged();
}

/// By which a change by another program is told.
void CodeDocument::noteFile()
{
    const QFileInfo info(m_filename.osPath());
    m_fileTime = info.lastModified();
    m_sizeInBytes = info.exists() ? info.size() : 0;
}

// Saving

bool CodeDocument::checkEncoding(bool ask)
{
    if (!m_encoding.isValid())
        return true;
    for (int line = 0; line < count(); ++line) {
        if (m_encoding.canEncode(m_buffer.view(line)))
            continue;
        constexpr int saveAnyway = 1;
        return ask
            && m_prompts->ask(u"This document has characters that cannot be represented using the "
                              "encoding '%1'"_s.arg(m_encodingName),
                              {u"Don't save"_s, u"Save anyway"_s}, 0)
            == saveAnyway;
    }
    return true;
}

bool CodeDocument::save()
{
    if (!m_named)
        return saveAs();
    bool elsewhere = false;
    if (m_modState == ModState::Locked) {
        m_prompts->warn(
            u"The file %1 can't be saved: it isn't shown as a whole"_s.arg(m_filename.osPath()));
        return false;
    }
    if (!checkEncoding(true) || !makeWritable(elsewhere))
        return false;
    if (elsewhere)
        return saveAs();
    aboutToSave();
    createBackupFiles(m_filename);
    if (!saveFile(m_filename))
        return false;
    return finishSaving(m_filename);
}

/// Asks until the file can be replaced, or the user has chosen another road.
bool CodeDocument::makeWritable(bool& elsewhere)
{
    const QString path = m_filename.osPath();
    const QStringList buttons{u"Save &As"_s, u"&Overwrite"_s, u"&Cancel"_s};
    enum { SaveAs, Overwrite, Cancel };
    int answer = Overwrite;
    if (QFile::exists(path) && changedOnDisk())
        answer =
            m_prompts->ask(u"The file "_s + path
                               + u" has been changed by another program since it was opened.\n\n"
                                 "You can either save the text in a different location, or you "
                                 "can overwrite the file, which loses those changes"_s,
                           buttons, Cancel);
    while (answer == Overwrite && QFile::exists(path) && !m_filename.writable()) {
        answer = m_prompts->ask(
            u"The file "_s + path
                + u" cannot be saved because it is write-protected.\n\nYou can either save the "
                  u"file "
                  "in a different location, or you can attempt to remove the write-protection and "
                  "overwrite the file in its current location"_s,
            buttons, Cancel);
        if (answer == Overwrite && !QTx::setWritable(path, true)) {
            m_prompts->warn(u"The write-protection of %1 can't be removed"_s.arg(path));
            answer = Cancel;
        }
    }
    elsewhere = answer == SaveAs;
    return answer != Cancel;
}

void CodeDocument::createBackupFiles(const Path& path)
{
    const QString name = path.osPath();
    if (s_backupFileDepth <= 0 || !QFile::exists(name))
        return;
    QFile::remove(backupName(name, s_backupFileDepth));
    for (int number = s_backupFileDepth - 1; number >= 1; --number)
        QFile::rename(backupName(name, number), backupName(name, number + 1));
    // A copy: the file itself stays until the new text is whole.
    if (!QTx::copyFile(name, backupName(name, 1), true))
        emit message(u"Can't make a backup of %1"_s.arg(name));
}

QByteArray CodeDocument::encodedText() const
{
    TextEncoding::Writer writer(m_encoding);
    const QStringView terminator = Terminators[int(m_lineEnding)];
    // Lines are joined before they are encoded: one call of a codec for each would take far longer.
    constexpr qsizetype blockSize = 65536;
    QByteArray bytes;
    QString block;
    for (int line = 0; line < count(); ++line) {
        if (line > 0)
            block += terminator;
        block += m_buffer.view(line);
        if (block.size() >= blockSize) {
            writer.write(block, bytes);
            block.clear();
        }
    }
    writer.write(block, bytes);
    return bytes;
}

bool CodeDocument::saveFile(const Path& path)
{
    FileReplacement file(path.osPath());
    const QString cannotOpen = u"Can't open %1 for writing"_s.arg(path.osPath());
    if (!m_encoding.isValid() || !file.open())
        return failToOpen(cannotOpen, file.errorText());
    if (!file.write(encodedText()) || !file.commit())
        return failToOpen(u"Can't write %1"_s.arg(path.osPath()), file.errorText());
    return true;
}

bool CodeDocument::finishSaving(const Path& path)
{
    m_sizeInBytes = QFileInfo(path.osPath()).size();
    noteFile();
    setModState(ModState::Writable, true);
    resetModified();
    beginUpdate(Quiet | KeepScroll);
    endUpdate(Quiet | KeepScroll | Repaint);
    emit saved();
    emit finished();
    return true;
}

bool CodeDocument::saveAs(const Path& path)
{
    if (m_modState == ModState::Locked && path == m_filename) {
        m_prompts->warn(
            u"The file %1 can't be replaced: it isn't shown as a whole"_s.arg(path.osPath()));
        return false;
    }
    if (!checkEncoding(true))
        return false;
    aboutToSave();
    createBackupFiles(path);
    if (!saveFile(path))
        return false;
    setFilename(path, true);
    finishSaving(path);
    emit renamed();
    return true;
}

bool CodeDocument::saveAs()
{
    const QString chosen = m_prompts->fileToSave(m_filename.osPath());
    return !chosen.isEmpty() && saveAs(Path(chosen));
}

bool CodeDocument::saveCopyAs(const Path& path) { return checkEncoding(true) && saveFile(path); }

int CodeDocument::checkSaved()
{
    if (!modified())
        return 1;
    enum { Yes, No, Cancel };
    const int answer =
        m_prompts->ask(u"Do you want to save the changes made to %1?"_s.arg(m_filename.fileName()),
                       {u"&Yes"_s, u"&No"_s, u"Cancel"_s}, Cancel);
    if (answer == Yes)
        return save() ? 1 : -1;
    return answer == No ? 0 : -1;
}
