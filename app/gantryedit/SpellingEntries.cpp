#include "app/gantryedit/SpellingEntries.h"

#include "editor/parsers/SpellChecker.h"
#include "editor/widget/CodeEdit.h"

#include <QMenu>

namespace {

constexpr qsizetype MostSuggestions = 6;

} // namespace

void addSpellingEntries(QMenu& menu, CodeEdit& edit)
{
    const QSelection place = edit.misspelledWord();
    SpellChecker* const checker = SpellChecker::current();
    if (!place.isValid() || !checker)
        return;
    const QString word = edit.editor().buffer().text(place);
    const QStringList suggestions = checker->suggestions(word).mid(0, MostSuggestions);
    for (const QString& suggestion : suggestions) {
        QAction* const entry = menu.addAction(suggestion);
        entry->setEnabled(edit.canEdit());
        QObject::connect(entry, &QAction::triggered, &edit, [&edit, place, word, suggestion] {
            edit.editor().replaceText(place.begin, word, suggestion);
        });
    }
    if (suggestions.isEmpty())
        menu.addAction(QMenu::tr("No suggestions"))->setEnabled(false);
    menu.addSeparator();
    QObject::connect(menu.addAction(QMenu::tr("&Ignore '%1'").arg(word)), &QAction::triggered,
                     &edit, [&edit, word] {
                         SpellChecker::ignore(word);
                         edit.viewport()->update();
                     });
    menu.addSeparator();
}
