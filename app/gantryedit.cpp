// gantryedit FILE...: the editor by itself.

#include "app/gantryedit/EditorWindow.h"
#include "app/gantryedit/FilePlace.h"

#include "base/QTx.h"
#include "base/TargetConstants.h"
#include "editor/commands/IndentSettings.h"
#include "editor/widget/CodeEditPreferences.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "shell/actions/Actions.h"
#include "shell/actions/GUIBuilder.h"
#include "shell/actions/MenuStyle.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Folder, and file in it, of the settings that all programs share.
void initSettings(EnvironmentSettings& settings)
{
    const QString owner = Get_OWNER();
    settings.init(QTx::userLocalAppDataDirectory(owner) + u"/settings.xml"_s,
                  QTx::userLocalAppDataDirectory(owner + u'/' + Get_PRODUCT_GENERIC_NAME())
                      + u"/settings.xml"_s);
    settings.createEntries();
    IndentSettings::createEntries(settings);
    EditorWindow::createEntries(settings);
    environment = &settings;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"GantryBench Editor"_s);
    QApplication::setApplicationVersion(QStringLiteral(GANTRY_VERSION));
    QApplication::setWindowIcon(QIcon(u":/icons/GantryBench.svg"_s));
    QApplication::setStyle(new MenuStyle);
    QCommandLineParser options;
    options.setApplicationDescription(u"Edits source files."_s);
    options.addHelpOption();
    options.addVersionOption();
    options.addPositionalArgument(u"FILE"_s, u"The files to open; FILE:LINE goes to a line."_s,
                                  u"[FILE...]"_s);
    options.process(application);

    GUIBuilder builder;
    guiBuilder = &builder;
    if (!builder.load(QTx::rootDirectory() + u"/bin/bench.xml"_s)) {
        std::fprintf(stderr, "gantryedit: %s\n", qPrintable(builder.errorText()));
        QMessageBox::critical(nullptr, QApplication::applicationName(), builder.errorText());
        return 1;
    }
    stringProvider = &builder;
    GantryBenchEnvironmentSettings settings;
    initSettings(settings);
    CodeEditPreferences::applyToAll(settings);
    CodeEditPreferences::restoreClipboardRing(settings);
    Actions allActions;
    actions = &allActions;

    EditorWindow window;
    window.show();
    for (const QString& file : options.positionalArguments())
        window.open(FilePlace::from(file));
    if (options.positionalArguments().isEmpty())
        window.newDocument();
    const int status = QApplication::exec();
    CodeEditPreferences::keepClipboardRing(settings);
    settings.saveSettings();
    return status;
}
