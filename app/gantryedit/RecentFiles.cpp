#include "app/gantryedit/RecentFiles.h"

#include "base/Path.h"
#include "projects/settings/EnvironmentSettings.h"
#include "projects/settings/SettingDescription.h"
#include "shell/actions/Actions.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QStringView Key = u"Environment/Editor Window/Recent Files";

PropertyValue* setting()
{
    return environment ? environment->findProperty(Key.toString()) : nullptr;
}

} // namespace

RecentFiles::RecentFiles(QWidget* parent) : QMenu(parent)
{
    setObjectName(u"EditorRecentMenu"_s);
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, &RecentFiles::fill);
}

void RecentFiles::createEntries(EnvironmentSettings& settings)
{
    settings.createEntry(SettingRows::internal(PropertyClass::Type::StringList, Key));
}

void RecentFiles::add(const Path& path)
{
    if (PropertyValue* files = setting())
        EnvironmentSettings::addToHistoryStringList(files, path.osPath());
}

void RecentFiles::clearAll()
{
    if (PropertyValue* files = setting())
        files->setValue(QStringList());
}

void RecentFiles::fill()
{
    clear();
    const PropertyValue* const files = setting();
    const QStringList paths = files ? files->toStringList() : QStringList();
    int number = 0;
    for (const QString& path : paths) {
        const QString name = QFileInfo(path).fileName().replace(u'&', u"&&"_s);
        ++number;
        QAction* const entry =
            addAction(number < 10 ? u"&%1  %2"_s.arg(number).arg(name) : u"    "_s + name);
        entry->setToolTip(path);
        entry->setEnabled(QFileInfo::exists(path));
        connect(entry, &QAction::triggered, this, [this, path] { emit chosen(Path(path)); });
    }
    if (paths.isEmpty())
        addAction(tr("No files yet"))->setEnabled(false);
    addSeparator();
    addAction(::actions->clearFileHistory);
    ::actions->clearFileHistory->setEnabled(!paths.isEmpty());
}
