#include "shell/actions/Actions.h"
#include "editor/commands/KeyMap.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "shell/actions/GUIBuilder.h"
#include "shell/actions/WidgetStrip.h"

#include <QApplication>
#include <QEventLoop>
#include <QHash>
#include <QIcon>
#include <QMenuBar>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList& warnings()
{
    static QStringList texts;
    return texts;
}

class ActionsTest : public testing::Test {
protected:
    ActionsTest()
    {
        warnings().clear();
        m_previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { warnings() << text; });
        guiBuilder = &m_builder;
        EXPECT_TRUE(m_builder.load(QStringLiteral(GANTRY_BENCH_XML)));
        m_oldProvider = stringProvider;
        stringProvider = &m_builder;
        m_settings.init(m_folder.filePath(u"maker.xml"_s), m_folder.filePath(u"product.xml"_s));
        m_settings.createEntries();
        environment = &m_settings;
        m_actions = std::make_unique<Actions>();
        actions = m_actions.get();
    }
    ~ActionsTest() override
    {
        actions = nullptr;
        environment = nullptr;
        guiBuilder = nullptr;
        stringProvider = m_oldProvider;
        qInstallMessageHandler(m_previous);
    }

    /// Loads a description with that content.
    void describe(const QString& content)
    {
        QFile file(m_folder.filePath(u"other.xml"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write((u"<bench>"_s + content + u"</bench>"_s).toUtf8());
        file.close();
        ASSERT_TRUE(m_builder.load(file.fileName()));
    }

    QTemporaryDir m_folder;
    QtMessageHandler m_previous = nullptr;
    StringProvider* m_oldProvider = nullptr;
    GUIBuilder m_builder;
    GantryBenchEnvironmentSettings m_settings;
    std::unique_ptr<Actions> m_actions;
};

TEST_F(ActionsTest, EachHasTextsAndAKeyOfItsOwn)
{
    EXPECT_EQ(m_actions->all().size(), 377);
    QHash<QString, QString> keys;
    for (const BenchAction* action : m_actions->all()) {
        const std::string name = action->objectName().toStdString();
        EXPECT_FALSE(action->iconText().isEmpty()) << name;
        EXPECT_FALSE(action->menuText().isEmpty()) << name;
        EXPECT_FALSE(action->toolTip().isEmpty()) << name;
        for (const QString& tag : {u".key"_s, u".alt"_s}) {
            const QString text = m_builder.message(action->objectName() + tag);
            if (text.isEmpty())
                continue;
            const QKeySequence key = QKeySequence::fromString(text);
            EXPECT_EQ(key.toString(), QKeySequence(text).toString());
            EXPECT_FALSE(key.isEmpty()) << name << ' ' << text.toStdString();
            EXPECT_FALSE(keys.contains(key.toString()))
                << name << " and " << keys.value(key.toString()).toStdString() << " have "
                << text.toStdString();
            keys.insert(key.toString(), action->objectName());
        }
    }
}

// A key that is both the program's and the editor's does the same in both.
TEST_F(ActionsTest, AgreeWithTheEditorsKeys)
{
    const QHash<EditCommand, QString> same = {
        {EditCommand::selectAll, u"EditSelectAll"_s},
        {EditCommand::lineIndent, u"EditIndent"_s},
        {EditCommand::lineOutdent, u"EditOutdent"_s},
        {EditCommand::findNext, u"EditFindNext"_s},
        {EditCommand::findPrev, u"EditFindPrev"_s},
        {EditCommand::findNextSelected, u"EditFindNextSelected"_s},
        {EditCommand::gotoLine, u"EditGoToLine"_s},
        {EditCommand::findIncremental, u"EditFindIncremental"_s},
        {EditCommand::findNextFunction, u"EditFindNextFunction"_s},
        {EditCommand::findPrevFunction, u"EditFindPrevFunction"_s},
        {EditCommand::matchDelimiter, u"EditMatchDelimiter"_s},
        {EditCommand::copy, u"EditCopy"_s},
        {EditCommand::cut, u"EditCut"_s},
        {EditCommand::paste, u"EditPaste"_s},
        {EditCommand::cutAppend, u"EditCutAppend"_s},
        {EditCommand::undo, u"EditUndo"_s},
        {EditCommand::redo, u"EditRedo"_s},
        {EditCommand::cutMarked, u"EditCutMarked"_s},
    };
    const KeyMap keyMap;
    for (const BenchAction* action : m_actions->all()) {
        for (const QKeySequence& keys : action->shortcuts()) {
            const int code = KeyMap::code(keys[0].key(), keys[0].keyboardModifiers());
            if (const std::optional<EditCommand> command = keyMap.command(code)) {
                EXPECT_EQ(action->objectName(), same.value(*command))
                    << keys.toString().toStdString();
            }
        }
    }
}

void collect(const QWidget* widget, QSet<QString>& names)
{
    for (const QAction* action : widget->actions()) {
        names.insert(action->objectName());
        if (action->menu())
            collect(action->menu(), names);
    }
}

TEST_F(ActionsTest, EachIsInAMenu)
{
    QMenuBar bar;
    ASSERT_TRUE(m_builder.populate(&bar, u"MenuBar"_s));
    QSet<QString> names;
    collect(&bar, names);
    for (const QString& menu :
         {u"EditorContextMenu"_s, u"CodeEditMarginMenu"_s, u"ProjectExplorerMenu"_s,
          u"BreakpointMenu"_s, u"WatchMenu"_s, u"BrowserMenu"_s, u"OutlineMenu"_s}) {
        QMenu context;
        ASSERT_TRUE(m_builder.populate(&context, menu));
        collect(&context, names);
    }
    for (const BenchAction* action : m_actions->all())
        EXPECT_TRUE(names.contains(action->objectName())) << action->objectName().toStdString();
    EXPECT_TRUE(warnings().isEmpty()) << warnings().join(u'\n').toStdString();
    // Accelerators of a menu are told apart.
    for (const QAction* top : bar.actions())
        EXPECT_TRUE(top->text().contains(u'&'));
}

TEST_F(ActionsTest, ToolbarsHaveIconsThatCanBeDrawn)
{
    EXPECT_GE(m_builder.toolBars().size(), 5);
    for (const QString& name : m_builder.toolBars()) {
        QToolBar toolBar;
        ASSERT_TRUE(m_builder.populate(&toolBar, name));
        for (const QAction* action : toolBar.actions()) {
            if (!action->isSeparator()) {
                EXPECT_FALSE(action->icon().pixmap(24).isNull())
                    << name.toStdString() << ' ' << action->iconText().toStdString();
            }
        }
    }
    EXPECT_TRUE(warnings().isEmpty()) << warnings().join(u'\n').toStdString();
}

/// Of the pixels that aren't transparent.
double meanLightness(const QIcon& icon, QIcon::Mode mode)
{
    const QImage image = icon.pixmap(24, mode).toImage();
    double sum = 0;
    double weight = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            sum += color.lightnessF() * color.alphaF();
            weight += color.alphaF();
        }
    }
    return sum / weight;
}

TEST_F(ActionsTest, IconsSuitThePalette)
{
    const QPalette before = QApplication::palette();
    QPalette palette(QColor(0xF0, 0xF0, 0xF0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    QApplication::setPalette(palette);
    const QIcon icon = m_actions->fileNewBlankFile->icon();
    const double onLight = meanLightness(icon, QIcon::Normal);
    EXPECT_LT(onLight, 0.5);
    EXPECT_GT(meanLightness(icon, QIcon::Selected), 0.95);
    palette = QPalette(QColor(0x20, 0x20, 0x20));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    QApplication::setPalette(palette);
    EXPECT_GT(meanLightness(icon, QIcon::Normal), 0.6);
    EXPECT_LT(meanLightness(icon, QIcon::Selected), 0.05);
    QApplication::setPalette(before);
}

TEST_F(ActionsTest, WarnsOfWhatIsWrongAndGoesOn)
{
    describe(u"<define name='D'><item/><item name='NoSuch'/><item name='EditUndo,NoSuch'/>"
             "<dropdown menu='M'/><dropdown action='EditUndo'/>"
             "<dropdown action='EditUndo' menu='M'/><space width='3'/>"
             "<menu name='M2'><item name='EditRedo'/></menu><bad/><item name='EditCut'/></define>"
             "<define name='S'><separator/></define>"_s);
    QMenu menu;
    ASSERT_TRUE(m_builder.populate(&menu, u"D"_s));
    WidgetStrip strip;
    ASSERT_TRUE(m_builder.populate(&strip, u"S"_s));
    const QString prefix = u"GUIBuilder::iterateAndPopulate(): "_s;
    EXPECT_EQ(warnings(),
              (QStringList{
                  prefix + u"object without attribute name."_s,
                  prefix + u"object NoSuch isn't in the dictionary."_s,
                  prefix + u"bench action NoSuch isn't in the dictionary."_s,
                  prefix + u"dropdown without action name."_s,
                  prefix + u"dropdown without menu name."_s, prefix + u"dropdown not on toolbar."_s,
                  prefix + u"bad widget for space"_s, u"Empty menu caption"_s,
                  prefix + u"bad tag name <bad"_s, prefix + u"bad widget for separator"_s}));
    EXPECT_EQ(menu.actions().last()->objectName(), u"EditCut"_s);
    EXPECT_FALSE(m_builder.populate(&menu, u"NoSuch"_s));
    EXPECT_FALSE(m_builder.load(m_folder.filePath(u"missing.xml"_s)));
}

TEST_F(ActionsTest, FillsStripsAndOptions)
{
    QWidget wide;
    wide.setObjectName(u"wide"_s);
    m_builder.registerObject(&wide);
    describe(u"<define name='S'><item name='EditUndo'/><space width='8'/><split/>"
             "<item name='wide' stretch='1'/><option>"
             "<property key='Text Editor/Find/Match Case'/>"
             "<property key='Text Editor/Margins/Left'/></option></define>"_s);
    WidgetStrip strip;
    ASSERT_TRUE(m_builder.populate(&strip, u"S"_s));
    EXPECT_EQ(wide.parentWidget(), &strip);
    auto* option = strip.findChild<DropdownAction*>();
    ASSERT_TRUE(option);
    ASSERT_EQ(option->menu()->actions().size(), 1);
    QAction* entry = option->menu()->actions().first();
    EXPECT_FALSE(entry->isChecked());
    entry->trigger();
    EXPECT_TRUE(m_settings.findMatchCase->toBool());
    EXPECT_TRUE(m_actions->editFindToggleMatchCase->isChecked());
    m_settings.findMatchCase->setValue(false);
    m_builder.environmentSettingChanged(u"Text Editor/Find/Match Case"_s);
    EXPECT_FALSE(entry->isChecked());
    EXPECT_TRUE(warnings().isEmpty()) << warnings().join(u'\n').toStdString();
    wide.setParent(nullptr);
}

TEST_F(ActionsTest, AreActivatedByNameUnlessDisabled)
{
    QSignalSpy undone(m_actions->editUndo, &BenchAction::activated);
    QSignalSpy changes(m_actions->editUndo, &BenchAction::enableChanged);
    EXPECT_TRUE(m_actions->activate(u"EditUndo"_s));
    EXPECT_EQ(undone.size(), 1);
    m_actions->editUndo->setEnabled(false);
    m_actions->editUndo->setEnabled(false);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_TRUE(m_actions->activate(u"EditUndo"_s));
    m_actions->editUndo->activate();
    EXPECT_EQ(undone.size(), 1);
    EXPECT_FALSE(m_actions->activate(u"NoSuch"_s));
    EXPECT_FALSE(m_actions->activate(QString()));
}

TEST_F(ActionsTest, BuildsWaitForTheOutermostLoop)
{
    QSignalSpy started(m_actions->buildBuildProject, &DeferredBenchAction::deferredActivated);
    int duringMenu = -1;
    QEventLoop outer;
    QTimer::singleShot(0, &outer, [&] {
        QEventLoop menu;
        QTimer::singleShot(0, &menu, [&] {
            m_actions->buildBuildProject->trigger();
            QTimer::singleShot(20, &menu, [&] {
                duringMenu = static_cast<int>(started.size());
                menu.quit();
            });
        });
        menu.exec();
        QTimer::singleShot(50, &outer, &QEventLoop::quit);
    });
    outer.exec();
    EXPECT_EQ(duringMenu, 0);
    EXPECT_EQ(started.size(), 1);
}

TEST_F(ActionsTest, HaveASecondKeyAndAShiftAction)
{
    QWidget window;
    auto* other = m_actions->editRedo;
    BenchAction* const action = m_actions->addToFavorites;
    action->setSecondaryAccel(QKeySequence(u"Ctrl+Alt+7"_s));
    EXPECT_TRUE(action->accel().isEmpty());
    window.addAction(action);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    QSignalSpy fired(action, &BenchAction::activated);
    QTest::keyClick(&window, Qt::Key_7, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(fired.size(), 1);

    QSignalSpy shifted(other, &BenchAction::activated);
    action->setShiftAction(other);
    action->trigger();
    EXPECT_EQ(fired.size(), 2);
    EXPECT_EQ(shifted.size(), 0);
    // The key is the action's own, whatever is in it; a click while Shift is held isn't.
    action->setAccel(QKeySequence(u"Ctrl+Shift+7"_s));
    QTest::keyClick(window.windowHandle(), Qt::Key_7, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(fired.size(), 3);
    EXPECT_EQ(shifted.size(), 0);
    QToolButton button(&window);
    button.setDefaultAction(action);
    button.resize(30, 30);
    button.show();
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::ShiftModifier, QPoint(15, 15));
    EXPECT_EQ(fired.size(), 3);
    EXPECT_EQ(shifted.size(), 1);
}

TEST_F(ActionsTest, OneButtonStandsForSeveral)
{
    m_actions->editPaste->setEnabled(false);
    MultiAction multi({m_actions->editUndo, m_actions->editRedo, m_actions->editPaste});
    EXPECT_TRUE(multi.menu()->actions()[1]->isEnabled());
    EXPECT_FALSE(multi.menu()->actions()[2]->isEnabled());
    QSignalSpy undone(m_actions->editUndo, &BenchAction::activated);
    QSignalSpy redone(m_actions->editRedo, &BenchAction::activated);
    multi.trigger();
    EXPECT_EQ(undone.size(), 1);
    multi.menu()->actions()[1]->trigger();
    EXPECT_EQ(redone.size(), 1);
    EXPECT_EQ(multi.selectedAction(), m_actions->editRedo);
    multi.trigger();
    EXPECT_EQ(redone.size(), 2);
    m_actions->editRedo->setEnabled(false);
    EXPECT_FALSE(multi.isEnabled());
}

TEST_F(ActionsTest, MenuTextsTakeAnArgument)
{
    EXPECT_EQ(BenchAction::realMenuText(u"&Close%1"_s, u"main.c"_s), u"&Close main.c"_s);
    EXPECT_EQ(BenchAction::realMenuText(u"&Close%1"_s, QString()), u"&Close"_s);
    EXPECT_EQ(BenchAction::realMenuText(u"&Quit"_s, u"x"_s), u"&Quit"_s);
    m_actions->fileClose->setArgument(u"main.c"_s);
    EXPECT_EQ(m_actions->fileClose->text(), u"&Close main.c"_s);
    const BenchAction nameless{QString()};
    EXPECT_TRUE(nameless.text().isEmpty());
}

} // namespace
