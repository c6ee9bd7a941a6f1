#include "editor/find/CodeEditFindDialog.h"

#include "editor/find/HistoryCombo.h"
#include "editor/widget/CodeEdit.h"
#include "projects/settings/EnvironmentSettings.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int FieldColumns = 30;

} // namespace

CodeEditFindDialog::CodeEditFindDialog(CodeEdit* edit, bool replacing, QWidget* parent)
    : QDialog(parent),
      m_edit(edit),
      m_findText(
          new HistoryCombo(environment ? environment->findHistory : nullptr, FieldColumns, this)),
      m_replaceLabel(new QLabel(u"Re&place with:"_s, this)),
      m_replaceText(new HistoryCombo(environment ? environment->replaceHistory : nullptr,
                                     FieldColumns, this)),
      m_options({{FindOption::WholeWord, new QCheckBox(u"Match &whole word only"_s, this)},
                 {FindOption::MatchCase, new QCheckBox(u"Match &case"_s, this)},
                 {FindOption::RegularExpression, new QCheckBox(u"Regular &expression"_s, this)},
                 {FindOption::SearchUp, new QCheckBox(u"Search &up"_s, this)}}),
      m_scope(new QGroupBox(u"Search in"_s, this)),
      m_selection(new QRadioButton(u"&Selection"_s, m_scope)),
      m_wholeFile(new QRadioButton(u"Wh&ole file"_s, m_scope)),
      m_findNext(new QPushButton(u"&Find Next"_s, this)),
      m_replaceButton(new QPushButton(this)),
      m_markAll(new QPushButton(u"&Mark All"_s, this)),
      m_replaceAll(new QPushButton(u"Replace &All"_s, this)),
      m_status(new QLabel(this))
{
    auto* findLabel = new QLabel(u"Fi&nd:"_s, this);
    findLabel->setBuddy(m_findText);
    m_replaceLabel->setBuddy(m_replaceText);
    auto* close = new QPushButton(u"Clo&se"_s, this);
    m_findNext->setDefault(true);
    m_wholeFile->setChecked(true);

    auto* scopeLayout = new QVBoxLayout(m_scope);
    scopeLayout->addWidget(m_selection);
    scopeLayout->addWidget(m_wholeFile);
    scopeLayout->addStretch();

    auto* options = new QVBoxLayout;
    for (QAbstractButton* box : m_options.buttons())
        options->addWidget(box);
    options->addStretch();
    auto* middle = new QHBoxLayout;
    middle->addLayout(options, 1);
    middle->addWidget(m_scope, 1);

    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {m_findNext, m_replaceButton, m_replaceAll, m_markAll, close})
        buttons->addWidget(button);
    buttons->addStretch();

    auto* layout = new QGridLayout(this);
    layout->addWidget(findLabel, 0, 0);
    layout->addWidget(m_findText, 0, 1);
    layout->addWidget(m_replaceLabel, 1, 0);
    layout->addWidget(m_replaceText, 1, 1);
    layout->addLayout(middle, 2, 0, 1, 2);
    layout->addWidget(m_status, 3, 0, 1, 2);
    layout->addLayout(buttons, 0, 2, 4, 1);
    layout->setColumnStretch(1, 1);
    layout->setHorizontalSpacing(12);

    const LastSearch last = LastSearch::get();
    m_findText->setEditText(last.text);
    m_replaceText->setEditText(last.replacement);
    m_options.setOptions(last.options);

    connect(m_findText, &QComboBox::editTextChanged, this, &CodeEditFindDialog::updateButtons);
    connect(m_findNext, &QPushButton::clicked, this, &CodeEditFindDialog::findClicked);
    connect(m_replaceButton, &QPushButton::clicked, this, &CodeEditFindDialog::replaceClicked);
    connect(m_replaceAll, &QPushButton::clicked, this, &CodeEditFindDialog::replaceAllClicked);
    connect(m_markAll, &QPushButton::clicked, this, &CodeEditFindDialog::markAllClicked);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    setReplacing(replacing);
    setEdit(edit);
}

void CodeEditFindDialog::setEdit(CodeEdit* edit)
{
    if (m_edit)
        disconnect(m_edit, nullptr, this, nullptr);
    m_edit = edit;
    if (edit) {
        connect(edit, &CodeEdit::finished, this, &CodeEditFindDialog::updateButtons);
        connect(edit, &QObject::destroyed, this, [this] {
            m_edit = nullptr;
            updateButtons();
        });
        for (const auto signal : {&CodeEdit::message, &CodeEdit::note, &CodeEdit::error})
            connect(edit, signal, m_status, &QLabel::setText);
    }
    updateButtons();
}

void CodeEditFindDialog::setReplacing(bool replacing)
{
    m_replacing = replacing;
    setWindowTitle(replacing ? tr("Replace") : tr("Find"));
    m_replaceLabel->setVisible(replacing);
    m_replaceText->setVisible(replacing);
    m_replaceAll->setVisible(replacing);
    m_replaceButton->setText(replacing ? u"&Replace"_s : u"&Replace  >>"_s);
    updateButtons();
    adjustSize();
}

void CodeEditFindDialog::takeTextFromEdit()
{
    if (!m_edit)
        return;
    const CodeEditor& editor = m_edit->editor();
    const QString selected = editor.selectedText();
    const bool lines = selected.contains(u'\n');
    m_selection->setChecked(lines);
    m_wholeFile->setChecked(!lines);
    const QString text = selected.isEmpty() ? editor.wordUnder(editor.caret()) : selected;
    if (!lines && !text.isEmpty())
        m_findText->setEditText(text);
    m_findText->lineEdit()->selectAll();
    m_findText->setFocus();
}

void CodeEditFindDialog::updateButtons()
{
    const bool hasText = m_edit && !m_findText->currentText().isEmpty();
    const bool hasSelection = m_edit && m_edit->editor().selecting();
    m_findNext->setEnabled(hasText);
    m_markAll->setEnabled(hasText);
    m_replaceAll->setEnabled(hasText && m_edit->canEdit());
    m_replaceButton->setEnabled(!m_replacing || (hasText && m_edit->canEdit()));
    m_selection->setEnabled(hasSelection);
    if (!hasSelection)
        m_wholeFile->setChecked(true);
}

LastSearch CodeEditFindDialog::search() const
{
    return {m_findText->currentText(), m_replaceText->currentText(), m_options.options()};
}

void CodeEditFindDialog::addCurrentToHistory() { search().remember(); }

void CodeEditFindDialog::findClicked()
{
    addCurrentToHistory();
    const bool found = m_edit->editor().findAgain();
    emit find();
    if (found && !m_replacing && environment && !environment->keepFindDialogOpen->toBool())
        close();
}

void CodeEditFindDialog::replaceClicked()
{
    if (!m_replacing) {
        setReplacing(true);
        m_replaceText->setFocus();
        return;
    }
    addCurrentToHistory();
    m_edit->editor().replaceNext();
    emit replace();
}

void CodeEditFindDialog::replaceAllClicked()
{
    addCurrentToHistory();
    const LastSearch last = search();
    m_edit->editor().replaceAll(last.text, last.replacement, last.options,
                                m_selection->isChecked());
    emit replaceAll();
}

void CodeEditFindDialog::markAllClicked()
{
    addCurrentToHistory();
    const LastSearch last = search();
    m_edit->editor().markAll(last.text, last.options, m_selection->isChecked());
    emit markAll();
}
