#include "editor/document/CodeEditTransaction.h"

#include <array>
#include <iterator>

using namespace Qt::Literals::StringLiterals;

void CodeEditTransaction::append(Actions&& actions)
{
    m_actions.insert(m_actions.end(), std::make_move_iterator(actions.begin()),
                     std::make_move_iterator(actions.end()));
    actions.clear();
}

QString CodeEditTransaction::description() const
{
    static const std::array<QString, 24> descriptions = {
        u"Macro"_s,
        u"Cut"_s,
        u"Paste"_s,
        u"Delete"_s,
        u"Move"_s,
        u"Copy"_s,
        u"Indent"_s,
        u"Outdent"_s,
        u"Typing"_s,
        u"Typing"_s,
        u"Make Uppercase"_s,
        u"Make Lowercase"_s,
        u"Switch Case"_s,
        u"Comment"_s,
        u"Uncomment"_s,
        u"Sort Ascending"_s,
        u"Sort Descending"_s,
        u"Transpose Lines"_s,
        u"Transpose Words"_s,
        u"Template Expansion"_s,
        u"Tabify"_s,
        u"Untabify"_s,
        u"Align"_s,
        u"Macro"_s,
    };
    return descriptions[static_cast<std::size_t>(m_icon)];
}
