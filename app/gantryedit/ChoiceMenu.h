#pragma once

#include <QMenu>
#include <QStringList>

#include <functional>

/// A menu of entries of which one holds. They are asked for each time that the menu is shown.
class ChoiceMenu : public QMenu {
    Q_OBJECT
public:
    struct Choices {
        QStringList texts;
        int current = -1; ///< an index; negative for none of them
        bool enabled = true;
    };
    using Ask = std::function<Choices()>;
    using Choose = std::function<void(int index)>;

    ChoiceMenu(const QString& name, const Ask& ask, const Choose& choose, QWidget* parent);

private:
    void fill();

    Ask m_ask;
    Choose m_choose;
};
