#include "shell/find/FileReplacing.h"

#include "editor/commands/CodeEditor.h"
#include "shell/find/FileSearch.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Nobody is there to be asked; what would be asked speaks against writing the file.
class Doubts : public DocumentPrompts {
public:
    bool any() const { return m_any; }
    int ask(const QString&, const QStringList&, int escape) override
    {
        m_any = true;
        return escape;
    }

private:
    bool m_any = false;
};

} // namespace

QString FileReplacing::Result::summary() const
{
    QString text = replaced == 1
        ? u"1 occurrence has been replaced."_s
        : QString::number(replaced) + u" occurrences have been replaced."_s;
    if (!failed.isEmpty())
        text += u" Not changed: "_s + failed.join(u", "_s);
    return text;
}

FileReplacing::Result FileReplacing::run(const FileSearch& search, const QString& replacement,
                                         const OpenEditor& openEditor)
{
    Result result;
    // A copy: while events are handled, someone may search again.
    const FileSearch::Request request = search.request();
    const QStringList files = search.files();
    for (const QString& path : files) {
        CodeEditor* const open = openEditor ? openEditor(path) : nullptr;
        Doubts doubts;
        CodeEditor loaded;
        loaded.setPrompts(&doubts);
        CodeEditor& editor = open ? *open : loaded;
        const bool readable = open || (loaded.load(Path(path)) && !doubts.any());
        const int replaced = readable && !editor.isReadOnly()
            ? editor.replaceAll(request.text, replacement, request.options, false)
            : 0;
        // Nothing is written to a file that is open.
        if (replaced == 0 || (!open && !loaded.save())) {
            result.failed.append(path);
            continue;
        }
        result.replaced += replaced;
        ++result.files;
        QCoreApplication::processEvents();
    }
    return result;
}
