#pragma once

#include "base/Path.h"

#include <QDockWidget>

class BuildLogModel;
class QTreeWidget;
class QTreeWidgetItem;

/// The hits of the last search in files; choosing one leads to its line.
class SearchResults : public QDockWidget {
    Q_OBJECT
public:
    explicit SearchResults(BuildLogModel& log, QWidget* parent = nullptr);

    /// Shows what the log holds.
    void refresh(const QString& summary);
    /// To the next or the previous hit.
    void locate(int step);

signals:
    /// Both from 1 on.
    void chosen(const Path& path, int line, int column);

private:
    void choose(QTreeWidgetItem* item);

    BuildLogModel& m_log;
    QTreeWidget* m_tree;
};
