#include "app/gantryedit/ChoiceMenu.h"

#include <QActionGroup>

ChoiceMenu::ChoiceMenu(const QString& name, const Ask& ask, const Choose& choose, QWidget* parent)
    : QMenu(parent),
      m_ask(ask),
      m_choose(choose)
{
    setObjectName(name);
    connect(this, &QMenu::aboutToShow, this, &ChoiceMenu::fill);
}

void ChoiceMenu::fill()
{
    clear();
    const Choices choices = m_ask();
    auto* group = new QActionGroup(this);
    for (int i = 0; i < choices.texts.size(); ++i) {
        QAction* const entry = addAction(choices.texts[i]);
        entry->setCheckable(true);
        entry->setChecked(i == choices.current);
        entry->setEnabled(choices.enabled);
        group->addAction(entry);
        connect(entry, &QAction::triggered, this, [this, i] { m_choose(i); });
    }
    connect(this, &QMenu::aboutToHide, group, &QObject::deleteLater);
}
