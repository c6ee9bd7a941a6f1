#pragma once

#include <QList>
#include <QStringList>

/// What a user can set of one editor. The defaults are those of an editor without settings.
struct CodeEditSettings {
    enum class IndentMode { None = 0, Indent = 1, Smart = 2 };

    bool useTabs = true;
    int tabSize = 2;
    IndentMode indentMode = IndentMode::Indent;
    int indentSize = 2;
    /// A brace on a line of its own is indented to the level that it opens, or closes.
    bool openBraceIndent = true;
    bool closeBraceIndent = true;
    /// How many lines smart indentation looks back.
    int contextLines = 40;
    QStringList userKeywords;
    /// Screen columns at which a line is drawn from top to bottom.
    QList<int> columnGuides;
    bool hideCursor = false;
    bool expandTemplates = true;
    bool virtualSpace = false;
    bool editReadOnly = false;
    bool columnModeTab = false;

    /// What cut and copy do without a selection.
    enum class LineAction { Nothing = 0, Line = 1, Word = 2 };
    LineAction cutAction = LineAction::Nothing;
    LineAction copyAction = LineAction::Nothing;

    bool deleteTrailingSpaceOnSave = false;
    enum class TabCleanup { None = 0, ToSpaces = 1, ToTabs = 2 };
    TabCleanup cleanupTabsOnSave = TabCleanup::None;

    /// The fence: how near the caret may come to the top and the bottom of the window.
    bool marginsEnabled = false;
    int topMargin = 5;
    int bottomMargin = 5;
    /// How far the view goes beyond the caret when that leaves it sideways, in columns.
    int leftMargin = 10;
    int rightMargin = 10;

    enum class MateMatching { Never = 0, Typing = 1, Always = 2 };
    MateMatching mateMatching = MateMatching::Always;

    bool operator==(const CodeEditSettings&) const = default;

    static QList<int> columnGuidesFrom(const QString& text);
};
