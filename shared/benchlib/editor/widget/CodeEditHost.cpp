#include "editor/widget/CodeEditHost.h"

#include "editor/widget/CodeEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

void CodeEditHost::warn(const QString& text)
{
    QMessageBox::warning(m_edit.window(), QCoreApplication::applicationName(), text);
}

int CodeEditHost::ask(const QString& text, const QStringList& buttons, int escape)
{
    QMessageBox box(QMessageBox::Question, QCoreApplication::applicationName(), text,
                    QMessageBox::NoButton, m_edit.window());
    QList<QAbstractButton*> made;
    for (int i = 0; i < buttons.size(); ++i) {
        const QMessageBox::ButtonRole role = i == escape ? QMessageBox::RejectRole
            : i == 0                                     ? QMessageBox::AcceptRole
                                                         : QMessageBox::DestructiveRole;
        made.append(box.addButton(buttons[i], role));
    }
    box.setEscapeButton(made[escape]);
    box.exec();
    const qsizetype pressed = made.indexOf(box.clickedButton());
    return pressed < 0 ? escape : static_cast<int>(pressed);
}

QString CodeEditHost::fileToSave(const QString& suggestion)
{
    return QFileDialog::getSaveFileName(m_edit.window(), QFileDialog::tr("Save As"), suggestion);
}

QString CodeEditHost::fileToInsert()
{
    return QFileDialog::getOpenFileName(m_edit.window(), QFileDialog::tr("Insert File"));
}

QString CodeEditHost::clipboardText() { return QApplication::clipboard()->text(); }

bool CodeEditHost::hasClipboardText()
{
    // What it holds may be another program's: it is asked once, when that has changed.
    static const QClipboard* const clipboard = QApplication::clipboard();
    static bool hasText = clipboard->mimeData() && clipboard->mimeData()->hasText();
    static const QMetaObject::Connection watched =
        QObject::connect(clipboard, &QClipboard::dataChanged, clipboard, [] {
            const QMimeData* data = QApplication::clipboard()->mimeData();
            hasText = data && data->hasText();
        });
    Q_UNUSED(watched)
    return hasText;
}

void CodeEditHost::setClipboardText(const QString& text)
{
    QApplication::clipboard()->setText(text);
}

int CodeEditHost::askLine(int current, int count)
{
    bool accepted = false;
    const int line = QInputDialog::getInt(m_edit.window(), QInputDialog::tr("Go To Line"),
                                          QInputDialog::tr("&Line (1 to %1):").arg(count), current,
                                          1, count, 1, &accepted);
    return accepted ? line : 0;
}

void CodeEditHost::carryOut(EditCommand command) { m_edit.carryOut(command); }
