#pragma once

#include <QMenu>

class EnvironmentSettings;
class Path;

/// The files that were opened last, which the settings remember.
class RecentFiles : public QMenu {
    Q_OBJECT
public:
    explicit RecentFiles(QWidget* parent = nullptr);

    static void createEntries(EnvironmentSettings& settings);
    static void add(const Path& path);
    static void clearAll();

signals:
    void chosen(const Path& path);

private:
    void fill();
};
