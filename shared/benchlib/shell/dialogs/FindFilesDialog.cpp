#include "shell/dialogs/FindFilesDialog.h"

#include "editor/find/HistoryCombo.h"
#include "projects/settings/EnvironmentSettings.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int FieldColumns = 36;

HistoryCombo* makeCombo(QWidget* parent, PropertyValue* history, const QString& fallback)
{
    auto* combo = new HistoryCombo(history, FieldColumns, parent);
    combo->setEditText(history ? history->toStringList().value(0, fallback) : fallback);
    return combo;
}

} // namespace

FindFilesDialog::FindFilesDialog(BuildLogModel& log, QWidget* parent)
    : QDialog(parent),
      m_search(log),
      m_text(makeCombo(this, environment ? environment->findHistory : nullptr, {})),
      m_fileTypes(
          makeCombo(this, environment ? environment->findInFilesFileType : nullptr, u"*.*"_s)),
      m_folder(makeCombo(this, environment ? environment->findInFilesFolderHistory : nullptr,
                         QDir::currentPath())),
      m_options({{FindOption::WholeWord, new QCheckBox(u"Match &whole word only"_s, this)},
                 {FindOption::MatchCase, new QCheckBox(u"Match &case"_s, this)},
                 {FindOption::RegularExpression, new QCheckBox(u"Regular &expression"_s, this)}}),
      m_subfolders(new QCheckBox(u"Look in &subfolders"_s, this)),
      m_find(new QPushButton(u"&Find"_s, this)),
      m_status(new QLabel(this))
{
    setWindowTitle(u"Find in Files"_s);
    auto* textLabel = new QLabel(u"Fi&nd what:"_s, this);
    textLabel->setBuddy(m_text);
    auto* typesLabel = new QLabel(u"In file &types:"_s, this);
    typesLabel->setBuddy(m_fileTypes);
    auto* folderLabel = new QLabel(u"In f&older:"_s, this);
    folderLabel->setBuddy(m_folder);
    auto* browse = new QPushButton(u"Browse"_s, this);
    auto* close = new QPushButton(u"Clo&se"_s, this);
    m_find->setDefault(true);
    if (environment) {
        FindOptions options;
        options.setFlag(FindOption::WholeWord, environment->findInFilesMatchWholeWord->toBool());
        options.setFlag(FindOption::MatchCase, environment->findInFilesMatchCase->toBool());
        options.setFlag(FindOption::RegularExpression, environment->findInFilesUseRegExp->toBool());
        m_options.setOptions(options);
        m_subfolders->setChecked(environment->findInFilesLookInSubfolders->toBool());
    } else {
        m_subfolders->setChecked(true);
    }

    auto* layout = new QGridLayout(this);
    layout->addWidget(textLabel, 0, 0);
    layout->addWidget(m_text, 0, 1);
    layout->addWidget(m_find, 0, 2);
    layout->addWidget(typesLabel, 1, 0);
    layout->addWidget(m_fileTypes, 1, 1);
    layout->addWidget(close, 1, 2);
    layout->addWidget(folderLabel, 2, 0);
    layout->addWidget(m_folder, 2, 1);
    layout->addWidget(browse, 2, 2);
    auto* options = new QGridLayout;
    // Two columns, filled from top to bottom.
    int place = 0;
    for (QAbstractButton* box : m_options.buttons()) {
        options->addWidget(box, place % 2, place / 2);
        ++place;
    }
    options->addWidget(m_subfolders, 1, 1);
    layout->addLayout(options, 3, 1);
    layout->addWidget(m_status, 4, 0, 1, 3);
    layout->setColumnStretch(1, 1);
    layout->setHorizontalSpacing(12);

    connect(m_find, &QPushButton::clicked, this, &FindFilesDialog::findClicked);
    connect(browse, &QPushButton::clicked, this, &FindFilesDialog::browse);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    connect(m_text, &QComboBox::editTextChanged, this, &FindFilesDialog::updateButtons);
    updateButtons();
}

void FindFilesDialog::setText(const QString& text)
{
    m_text->setEditText(text);
    m_text->lineEdit()->selectAll();
}

void FindFilesDialog::setFolder(const QString& folder) { m_folder->setEditText(folder); }

void FindFilesDialog::updateButtons()
{
    m_find->setEnabled(m_running || !m_text->currentText().isEmpty());
}

FileSearch::Request FindFilesDialog::request() const
{
    FileSearch::Request result;
    result.text = m_text->currentText();
    result.folder = m_folder->currentText();
    result.fileTypes = m_fileTypes->currentText();
    result.subfolders = m_subfolders->isChecked();
    result.options = m_options.options();
    return result;
}

void FindFilesDialog::remember()
{
    for (HistoryCombo* combo : {m_text, m_fileTypes, m_folder})
        combo->remember();
    if (!environment)
        return;
    const FindOptions options = m_options.options();
    environment->findInFilesMatchWholeWord->setValue(options.testFlag(FindOption::WholeWord));
    environment->findInFilesMatchCase->setValue(options.testFlag(FindOption::MatchCase));
    environment->findInFilesUseRegExp->setValue(options.testFlag(FindOption::RegularExpression));
    environment->findInFilesLookInSubfolders->setValue(m_subfolders->isChecked());
}

void FindFilesDialog::findClicked()
{
    if (m_running) {
        m_search.stop();
        return;
    }
    remember();
    emit started();
    m_running = true;
    m_find->setText(u"&Stop"_s);
    m_status->setText({});
    const FileSearch::Outcome outcome = m_search.run(request());
    m_running = false;
    m_find->setText(u"&Find"_s);
    m_status->setText(m_search.summary());
    if (outcome == FileSearch::Outcome::NoSuchFolder)
        QMessageBox::warning(this, u"Folder doesn't exist"_s, m_search.summary());
    emit finished(m_search.summary());
}

void FindFilesDialog::browse()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, tr("Folder"), m_folder->currentText());
    if (!folder.isEmpty())
        setFolder(folder);
}

void FindFilesDialog::closeEvent(QCloseEvent* event)
{
    // The search still runs below this event.
    if (m_running)
        m_search.stop();
    QDialog::closeEvent(event);
}
