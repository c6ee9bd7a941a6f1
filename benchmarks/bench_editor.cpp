// The editor beside QPlainTextEdit, with the same text in the same run:
//
//     build/release/benchmarks/bench_editor [LINES]
//
// Prints a line for each figure: what, ours, the peer's, the ratio.

#include "build/log/BuildLogModel.h"
#include "editor/parsers/LanguageRegistry.h"
#include "editor/widget/CodeEdit.h"
#include "shell/find/FileSearch.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <malloc.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

double milliseconds(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

double median(int times, const std::function<void()>& work)
{
    std::vector<double> runs;
    for (int i = 0; i < times; ++i)
        runs.push_back(milliseconds(work));
    std::sort(runs.begin(), runs.end());
    return runs[runs.size() / 2];
}

void report(const char* what, double ours, double peer, const char* unit)
{
    std::printf("%-44s %10.3f %10.3f %s  ratio %.3f\n", what, ours, peer, unit, ours / peer);
    std::fflush(stdout);
}

void report(const char* what, double ours, const char* unit)
{
    std::printf("%-44s %10.3f %10s %s\n", what, ours, "-", unit);
    std::fflush(stdout);
}

/// C as people write it, 33 characters a line on average.
QString program(int lines)
{
    static const QString pattern[] = {
        u"int function(int argument)"_s,
        u"{"_s,
        u"    if (argument > 0x1F) {"_s,
        u"        /* a comment of some words */"_s,
        u"        total += table[argument] * 3; // note"_s,
        u"        print(\"a text\\n\", total);"_s,
        u"    }"_s,
        u"    return argument;"_s,
        u"}"_s,
        u""_s,
    };
    QString text;
    text.reserve(lines * 24);
    for (int i = 0; i < lines; ++i) {
        text += pattern[i % 10];
        text += u'\n';
    }
    return text;
}

std::size_t heap() { return static_cast<std::size_t>(mallinfo2().uordblks + mallinfo2().hblkhd); }

void paint(QWidget& widget)
{
    QCoreApplication::sendPostedEvents();
    widget.repaint();
}

QString readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Sees that what is measured has been painted.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        painted |= event->type() == QEvent::Paint;
        return false;
    }
    bool painted = false;
};

/// Up to the end of painting what the editor itself takes for changed.
void press(QWidget& widget, const QString& text, QWidget& viewport)
{
    PaintWatch watch(viewport);
    QKeyEvent key(QEvent::KeyPress, text[0].toUpper().unicode(), {}, text);
    QCoreApplication::sendEvent(&widget, &key);
    QCoreApplication::sendPostedEvents();
    if (!watch.painted)
        qFatal("A key press wasn't painted");
}

void typing(CodeEdit& edit, QPlainTextEdit& peer, const char* what, double share)
{
    const int line = static_cast<int>((edit.lineCount() - 1) * share);
    edit.editor().setCaretPosition({line, 0});
    paint(*edit.viewport());
    QTextCursor cursor(peer.document()->findBlockByNumber(line));
    peer.setTextCursor(cursor);
    peer.centerCursor();
    paint(*peer.viewport());
    const double ours = median(51, [&] { press(edit, u"x"_s, *edit.viewport()); });
    const double theirs = median(51, [&] { press(peer, u"x"_s, *peer.viewport()); });
    report(what, ours, theirs, "ms");
}

void unclosedComment()
{
    CodeEdit edit;
    edit.resize(1000, 700);
    edit.show();
    edit.editor().setParser(languages().parserForExtension(u"c"_s));
    // Without a comment that would end the one which is opened.
    edit.editor().setText(program(10'000).remove(u"*/"_s).replace(u"/*"_s, u"//"_s));
    edit.editor().buffer().syncHighlighting();
    paint(*edit.viewport());
    const double opened = milliseconds([&] {
        edit.editor().insertText({0, 0}, u"/*"_s);
        edit.editor().buffer().syncHighlighting();
        paint(*edit.viewport());
    });
    const double closed = milliseconds([&] {
        edit.editor().insertText({0, 2}, u"*/"_s);
        edit.editor().buffer().syncHighlighting();
        paint(*edit.viewport());
    });
    report("opening a comment over 10,000 lines", opened, "ms");
    report("closing it", closed, "ms");
}

void replacing()
{
    constexpr int matches = 100'000;
    const QString text = QString(u"one match and some more text\n"_s).repeated(matches);
    CodeEdit edit;
    edit.editor().setText(text);
    const double replaced = milliseconds([&] {
        edit.editor().replaceAll(u"match"_s, u"replacement"_s, FindOption::MatchCase, false);
    });
    const double undone = milliseconds([&] { edit.editor().undo(); });
    const double redone = milliseconds([&] { edit.editor().redo(); });

    QPlainTextEdit peer;
    peer.setPlainText(text);
    const double peerReplaced = milliseconds([&] {
        QTextCursor all(peer.document());
        all.beginEditBlock();
        QTextCursor found = peer.document()->find(u"match"_s);
        while (!found.isNull()) {
            found.insertText(u"replacement"_s);
            found = peer.document()->find(u"match"_s, found);
        }
        all.endEditBlock();
    });
    const double peerUndone = milliseconds([&] { peer.undo(); });
    const double peerRedone = milliseconds([&] { peer.redo(); });
    report("replacing 100,000 matches", replaced, peerReplaced, "ms");
    report("undoing that", undone, peerUndone, "ms");
    report("redoing that", redone, peerRedone, "ms");
}

/// Ten thousand files of a hundred lines, against grep on the same.
void findingInFiles(const QString& folder)
{
    constexpr int files = 10'000;
    const QByteArray text = program(100).toUtf8();
    for (int i = 0; i < files; ++i) {
        const QString below = folder + u"/%1"_s.arg(i / 100);
        QDir().mkpath(below);
        QFile file(below + u"/%1.c"_s.arg(i));
        if (file.open(QIODevice::WriteOnly))
            file.write(i % 100 == 0 ? text + "the needle\n" : text);
    }
    double longest = 0;
    QElapsedTimer sinceEvents;
    QTimer events;
    QObject::connect(&events, &QTimer::timeout, [&] {
        longest = std::max(longest, double(sinceEvents.nsecsElapsed()) / 1e6);
        sinceEvents.restart();
    });
    events.start(0);
    BuildLogModel log(BuildLogModel::Kind::Other);
    FileSearch search(log);
    FileSearch::Request request;
    request.text = u"needle"_s;
    request.folder = folder;
    request.options = FindOption::MatchCase;
    search.run(request);
    sinceEvents.start();
    longest = 0;
    const double ours = milliseconds([&] { search.run(request); });
    events.stop();
    const double peer = milliseconds([&] {
        QProcess grep;
        grep.start(u"grep"_s, {u"-rnF"_s, u"needle"_s, folder});
        grep.waitForFinished();
    });
    std::printf("%-44s %10s %10s\n", "", "FileSearch", "grep");
    report("finding in 10,000 files", ours, peer, "ms");
    report("longest time without events", longest, "ms");
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int lines = argc > 1 ? QByteArray(argv[1]).toInt() : 1'000'000;
    QTemporaryDir folder;
    const QString path = folder.filePath(u"big.c"_s);
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return 1;
        file.write(program(lines).toUtf8());
    }
    std::printf("%-44s %10s %10s\n", "", "CodeEdit", "QPlainText");

    CodeEdit edit;
    edit.resize(1000, 700);
    edit.show();
    QPlainTextEdit peer;
    peer.setLineWrapMode(QPlainTextEdit::NoWrap);
    peer.setFont(edit.fonts().base());
    peer.resize(1000, 700);
    peer.show();
    QCoreApplication::processEvents();

    const std::size_t before = heap();
    const double opened = milliseconds([&] {
        edit.load(Path(path));
        paint(*edit.viewport());
    });
    const std::size_t ours = heap() - before;
    const double peerOpened = milliseconds([&] {
        peer.setPlainText(readAll(path));
        paint(*peer.viewport());
    });
    const std::size_t theirs = heap() - before - ours;
    report("opening, ms", opened, peerOpened, "ms");
    report("memory of a line", double(ours) / lines, double(theirs) / lines, "bytes");

    typing(edit, peer, "typing at the start", 0);
    typing(edit, peer, "typing in the middle", 0.5);
    typing(edit, peer, "typing at the end", 1);

    edit.editor().setCaretPosition({0, 0});
    const double page = median(51, [&] {
        edit.execute(EditCommand::pageDown);
        paint(*edit.viewport());
    });
    peer.moveCursor(QTextCursor::Start);
    const double peerPage = median(51, [&] {
        QTest::keyClick(&peer, Qt::Key_PageDown);
        paint(*peer.viewport());
    });
    report("scrolling a page", page, peerPage, "ms");
    unclosedComment();
    replacing();
    findingInFiles(folder.filePath(u"files"_s));
    return 0;
}
