#pragma once

#include "projects/settings/FindOptions.h"

#include <QAbstractButton>

#include <initializer_list>
#include <utility>
#include <vector>

/// Buttons that are checked for the options of a search. They aren't owned.
class FindOptionButtons {
public:
    using Row = std::pair<FindOption, QAbstractButton*>;
    FindOptionButtons(std::initializer_list<Row> rows = {}) : m_rows(rows) { }

    FindOptions options() const
    {
        FindOptions result;
        for (const auto& [option, button] : m_rows)
            result.setFlag(option, button->isChecked());
        return result;
    }
    void setOptions(FindOptions options)
    {
        for (const auto& [option, button] : m_rows)
            button->setChecked(options.testFlag(option));
    }
    std::vector<QAbstractButton*> buttons() const
    {
        std::vector<QAbstractButton*> result;
        for (const auto& [option, button] : m_rows)
            result.push_back(button);
        return result;
    }

private:
    std::vector<Row> m_rows;
};
