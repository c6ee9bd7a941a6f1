#include "shell/windows/FindWindow.h"

#include "editor/find/HistoryCombo.h"
#include "editor/widget/CodeEdit.h"
#include "projects/settings/EnvironmentSettings.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What the first entries of "Look in" are; others are folders.
enum LookIn { WholeDocument, SelectionOnly };

constexpr int FieldColumns = 16;
const QString AllFiles = u"*.*"_s;

QString counted(qsizetype count, const QString& what)
{
    return count == 1 ? u"1 "_s + what : QString::number(count) + u' ' + what + u's';
}

} // namespace

FindWindow::FindWindow(BuildLogModel& log, QWidget* parent)
    : QDockWidget(tr("Find and Replace"), parent),
      m_fileSearch(log),
      m_modes(new QButtonGroup(this))
{
    setObjectName(u"FindWindow"_s);
    auto* form = new QWidget(this);
    m_text = new HistoryCombo(environment ? environment->findHistory : nullptr, FieldColumns, form);
    m_replaceLabel = new QLabel(tr("Re&place with:"), form);
    m_replacement =
        new HistoryCombo(environment ? environment->replaceHistory : nullptr, FieldColumns, form);
    m_lookIn = new QComboBox(form);
    m_typesLabel = new QLabel(tr("File &types:"), form);
    m_fileTypes = new HistoryCombo(environment ? environment->findInFilesFileType : nullptr,
                                   FieldColumns, form);
    m_options = FindOptionButtons{
        {FindOption::MatchCase, new QCheckBox(tr("Match &case"), form)},
        {FindOption::WholeWord, new QCheckBox(tr("Match &whole word"), form)},
        {FindOption::RegularExpression, new QCheckBox(tr("Regular &expression"), form)},
        {FindOption::SearchUp, m_searchUp = new QCheckBox(tr("Search &up"), form)},
    };
    m_subfolders = new QCheckBox(tr("Look in &subfolders"), form);
    m_find = new QPushButton(form);
    m_replace = new QPushButton(tr("&Replace"), form);
    m_replaceAll = new QPushButton(tr("Replace &All"), form);
    m_status = new QLabel(form);
    const LastSearch last = LastSearch::get();
    m_text->setEditText(last.text);
    m_replacement->setEditText(last.replacement);
    m_options.setOptions(last.options);
    m_fileTypes->setEditText(
        environment ? environment->findInFilesFileType->toStringList().value(0, AllFiles)
                    : AllFiles);
    m_subfolders->setChecked(!environment || environment->findInFilesLookInSubfolders->toBool());
    m_status->setWordWrap(true);

    auto* modes = new QHBoxLayout;
    const std::pair<QString, void (FindWindow::*)()> names[] = {
        {tr("Find"), &FindWindow::findToggled},
        {tr("Replace"), &FindWindow::replaceToggled},
        {tr("Find In Files"), &FindWindow::findInFilesToggled},
        {tr("Replace In Files"), &FindWindow::replaceInFilesToggled},
    };
    for (const auto& [name, toggled] : names) {
        auto* button = new QToolButton(form);
        button->setText(name);
        button->setCheckable(true);
        button->setAutoRaise(true);
        m_modes->addButton(button, static_cast<int>(m_modes->buttons().size()));
        modes->addWidget(button);
        connect(button, &QToolButton::clicked, this, toggled);
    }
    modes->addStretch();

    auto* findLabel = new QLabel(tr("Fi&nd:"), form);
    findLabel->setBuddy(m_text);
    auto* lookLabel = new QLabel(tr("&Look in:"), form);
    lookLabel->setBuddy(m_lookIn);
    m_replaceLabel->setBuddy(m_replacement);
    m_typesLabel->setBuddy(m_fileTypes);
    auto* fields = new QGridLayout;
    fields->addWidget(findLabel, 0, 0);
    fields->addWidget(m_text, 0, 1);
    fields->addWidget(m_replaceLabel, 1, 0);
    fields->addWidget(m_replacement, 1, 1);
    fields->addWidget(lookLabel, 2, 0);
    fields->addWidget(m_lookIn, 2, 1);
    fields->addWidget(m_typesLabel, 3, 0);
    fields->addWidget(m_fileTypes, 3, 1);
    fields->setColumnStretch(1, 1);
    auto* options = new QGridLayout;
    int place = 0;
    for (QAbstractButton* box : m_options.buttons()) {
        options->addWidget(box, place / 2, place % 2);
        ++place;
    }
    options->addWidget(m_subfolders, 2, 0);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_find);
    buttons->addWidget(m_replace);
    buttons->addWidget(m_replaceAll);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(form);
    layout->addLayout(modes);
    layout->addLayout(fields);
    layout->addLayout(options);
    layout->addLayout(buttons);
    layout->addWidget(m_status);
    layout->addStretch();
    setWidget(form);

    connect(m_text, &QComboBox::editTextChanged, this, &FindWindow::updateButtons);
    connect(m_text->lineEdit(), &QLineEdit::returnPressed, this, &FindWindow::findNext);
    connect(m_lookIn, &QComboBox::currentIndexChanged, this, &FindWindow::lookInChanged);
    connect(m_find, &QPushButton::clicked, this, &FindWindow::findNext);
    connect(m_replace, &QPushButton::clicked, this, &FindWindow::replaceNext);
    connect(m_replaceAll, &QPushButton::clicked, this, &FindWindow::replaceAll);
    setMode(Mode::Find);
}

void FindWindow::setMode(Mode mode)
{
    m_mode = mode;
    m_modes->button(static_cast<int>(mode))->setChecked(true);
    if (m_lookIn->isEditable())
        m_folder = m_lookIn->currentText();
    const QSignalBlocker quiet(m_lookIn);
    m_lookIn->clear();
    m_lookIn->setEditable(inFiles());
    if (inFiles()) {
        if (environment)
            m_lookIn->addItems(environment->findInFilesFolderHistory->toStringList());
        m_lookIn->setCompleter(nullptr);
        m_lookIn->setEditText(m_folder.isEmpty() ? QDir::currentPath() : m_folder);
    } else {
        m_lookIn->addItem(tr("Whole Document"));
        m_lookIn->addItem(tr("Selection"));
    }
    updateAppearance();
}

void FindWindow::setEdit(CodeEdit* edit)
{
    if (m_edit)
        disconnect(m_edit, nullptr, this, nullptr);
    m_edit = edit;
    if (edit) {
        connect(edit, &CodeEdit::finished, this, &FindWindow::updateButtons);
        connect(edit, &QObject::destroyed, this, [this] {
            m_edit = nullptr;
            updateButtons();
        });
        for (const auto signal : {&CodeEdit::message, &CodeEdit::note, &CodeEdit::error})
            connect(edit, signal, m_status, &QLabel::setText);
    }
    updateButtons();
}

void FindWindow::setText(const QString& text) { m_text->setEditText(text); }

void FindWindow::start()
{
    show();
    raise();
    m_text->lineEdit()->selectAll();
    m_text->setFocus();
}

void FindWindow::setFolder(const QString& folder)
{
    if (inFiles())
        m_lookIn->setEditText(folder);
}

void FindWindow::updateAppearance()
{
    m_replaceLabel->setVisible(replacing());
    m_replacement->setVisible(replacing());
    m_replace->setVisible(m_mode == Mode::Replace);
    m_replaceAll->setVisible(replacing());
    m_typesLabel->setVisible(inFiles());
    m_fileTypes->setVisible(inFiles());
    m_subfolders->setVisible(inFiles());
    m_searchUp->setVisible(!inFiles());
    m_status->setText({});
    updateButtons();
}

void FindWindow::updateButtons()
{
    const bool hasText = !m_text->currentText().isEmpty();
    m_find->setText(m_running ? tr("&Stop") : inFiles() ? tr("&Find All") : tr("&Find Next"));
    m_find->setEnabled(m_running || (hasText && (inFiles() || m_edit)));
    const bool canReplace = hasText && !m_running && (inFiles() || (m_edit && m_edit->canEdit()));
    m_replace->setEnabled(canReplace);
    m_replaceAll->setEnabled(canReplace);
}

void FindWindow::lookInChanged() { updateButtons(); }

bool FindWindow::inSelection() const
{
    return !inFiles() && m_lookIn->currentIndex() == SelectionOnly;
}

LastSearch FindWindow::search() const
{
    FindOptions options = m_options.options();
    if (inFiles())
        options.setFlag(FindOption::SearchUp, false);
    return {m_text->currentText(), m_replacement->currentText(), options};
}

void FindWindow::remember()
{
    search().remember();
    if (!inFiles())
        return;
    m_fileTypes->remember();
    if (!environment)
        return;
    EnvironmentSettings::addToHistoryStringList(environment->findInFilesFolderHistory,
                                                m_lookIn->currentText());
    environment->findInFilesLookInSubfolders->setValue(m_subfolders->isChecked());
}

void FindWindow::doFind(const QString& text)
{
    if (text != m_text->currentText())
        m_text->setEditText(text);
    remember();
    if (!inFiles()) {
        if (m_edit)
            m_edit->editor().findAgain();
        return;
    }
    startFind();
    FileSearch::Request request;
    request.text = text;
    request.options = search().options;
    request.folder = m_lookIn->currentText();
    request.fileTypes = m_fileTypes->currentText();
    request.subfolders = m_subfolders->isChecked();
    m_fileSearch.run(request);
    endFind(m_fileSearch.summary());
}

void FindWindow::startFind()
{
    emit searchStarted();
    m_running = true;
    updateButtons();
}

void FindWindow::endFind(const QString& summary)
{
    m_running = false;
    m_status->setText(summary);
    updateButtons();
    emit searchFinished(summary);
}

void FindWindow::stop()
{
    if (m_running)
        m_fileSearch.stop();
}

void FindWindow::findNext()
{
    if (m_running)
        stop();
    else if (m_find->isEnabled())
        doFind(m_text->currentText());
}

void FindWindow::replaceNext()
{
    remember();
    if (m_edit)
        m_edit->editor().replaceNext();
}

void FindWindow::replaceAll()
{
    const LastSearch last = search();
    if (!inFiles()) {
        remember();
        if (m_edit)
            m_edit->editor().replaceAll(last.text, last.replacement, last.options, inSelection());
        return;
    }
    doFind(last.text);
    if (m_fileSearch.outcome() != FileSearch::Outcome::Done || m_fileSearch.found() == 0)
        return;
    const QString question =
        tr("Do you want to replace %1 in %2?\n\nFiles that aren't open are saved at once.")
            .arg(counted(m_fileSearch.found(), u"occurrence"_s),
                 counted(m_fileSearch.files().size(), u"file"_s));
    if (QMessageBox::question(this, windowTitle(), question) != QMessageBox::Yes)
        return;
    const FileReplacing::Result result =
        FileReplacing::run(m_fileSearch, last.replacement, m_openEditor);
    m_status->setText(result.summary());
    emit searchFinished(result.summary());
}
