#include "projects/settings/Settings.h"
#include "ProjectTestSupport.h"
#include "TestFolder.h"
#include "projects/settings/BenchDescription.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "projects/settings/XmlText.h"

#include <QCoreApplication>
#include <QDomDocument>

#include <gmock/gmock.h>

using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const emptyFile = "<!DOCTYPE Gantry_Settings_File>\n<settings>\n</settings>\n";

/// A settings object on a file.
struct Instance : Settings {
    explicit Instance(const std::string& path) { setPath(QString::fromStdString(path)); }
};

TEST(SettingsTest, FileFormat)
{
    const TestFolder folder;
    Instance settings(folder / "deep/er/settings.xml");
    settings.sync();
    EXPECT_FALSE(folder.has("deep")) << "nothing to save";

    settings.writeEntry(u"b/Key"_s, u"a < b && c > \"d\""_s);
    settings.writeEntry(u"a \"quoted\" & <Key>"_s, u"ok"_s);
    settings.writeEntry(u"Zero"_s, u""_s);
    EXPECT_TRUE(settings.dirty());
    settings.sync();
    EXPECT_FALSE(settings.dirty());
    EXPECT_EQ(folder.read("deep/er/settings.xml"),
              "<!DOCTYPE Gantry_Settings_File>\n"
              "<settings>\n"
              "  <setting name=\"Zero\"></setting>\n"
              "  <setting name=\"a &quot;quoted&quot; &amp; &lt;Key&gt;\">ok</setting>\n"
              "  <setting name=\"b/Key\">a &lt; b &amp;&amp; c &gt; &quot;d&quot;</setting>\n"
              "</settings>\n");
    const Instance second(folder / "deep/er/settings.xml");
    EXPECT_EQ(second.readEntry(u"b/Key"_s), u"a < b && c > \"d\""_s);
    EXPECT_EQ(second.readEntry(u"a \"quoted\" & <Key>"_s), u"ok"_s);
    EXPECT_TRUE(second.contains(u"Zero"_s));
    EXPECT_EQ(second.readEntry(u"none"_s, u"fallback"_s), u"fallback"_s);
}

TEST(SettingsTest, AnyTextSurvives)
{
    const TestFolder folder;
    QString controls;
    for (char16_t c = 0; c < 0x20; ++c)
        controls += QChar(c);
    const QString texts[] = {
        u" "_s,
        u"  two blanks around  "_s,
        u"\n"_s,
        u"line\r\nline\rline\n\n\ttab "_s,
        u"&lt; &amp;amp; &#65; &unknown; & ; ]]> <![CDATA[x]]> <!-- y --> <?z?>"_s,
        u"\"it's\" `quoted`"_s,
        u"ä € 漢 😀 \u2028 \u0085 \u007F \u00A0"_s,
        controls,
        u"page\fbreak \x1B[0m"_s,
        QString(100000, u'x'),
    };
    Instance settings(folder / "settings.xml");
    for (int i = 0; i < static_cast<int>(std::size(texts)); ++i) {
        settings.writeEntry(u"value/%1"_s.arg(i), texts[i]);
        settings.writeEntry(u"key/"_s + texts[i], QString::number(i));
    }
    settings.sync();

    QDomDocument document;
    EXPECT_TRUE(document.setContent(QByteArray::fromStdString(folder.read("settings.xml"))));
    const Instance second(folder / "settings.xml");
    for (int i = 0; i < static_cast<int>(std::size(texts)); ++i) {
        EXPECT_EQ(second.readEntry(u"value/%1"_s.arg(i)), texts[i]);
        EXPECT_EQ(second.readEntry(u"key/"_s + texts[i]), QString::number(i));
    }
}

TEST(SettingsTest, WhatIsNoCharacterIsReplaced)
{
    const TestFolder folder;
    Instance settings(folder / "settings.xml");
    const QString broken = u"a"_s + QChar(0xD83D) + u"b"_s + QChar(0xDE00) + QChar(0xFFFE)
        + QChar(0xFFFF) + QChar(0xD83D);
    settings.writeEntry(u"k"_s, broken);
    settings.writeEntry(u"other"_s, u"kept"_s);
    settings.sync();
    const Instance second(folder / "settings.xml");
    EXPECT_EQ(second.readEntry(u"k"_s), u"a\uFFFDb\uFFFD\uFFFD\uFFFD\uFFFD"_s);
    EXPECT_EQ(second.readEntry(u"other"_s), u"kept"_s);
}

TEST(SettingsTest, InstancesMergeTheirChanges)
{
    const TestFolder folder;
    const std::string path = folder.write("settings.xml",
                                          "<settings><setting name=\"both\">0</setting>"
                                          "<setting name=\"gone\">0</setting>"
                                          "<setting name=\"kept\">0</setting></settings>");
    Instance first(path);
    Instance second(path);
    first.writeEntry(u"first"_s, u"1"_s);
    first.writeEntry(u"both"_s, u"1"_s);
    first.removeEntry(u"gone"_s);
    second.writeEntry(u"second"_s, u"2"_s);
    second.writeEntry(u"both"_s, u"2"_s);
    first.sync();
    second.sync();
    first.sync();

    const Instance third(path);
    for (const Settings* instance :
         std::initializer_list<const Settings*>{&first, &second, &third}) {
        EXPECT_EQ(instance->readEntry(u"first"_s), u"1"_s);
        EXPECT_EQ(instance->readEntry(u"second"_s), u"2"_s);
        EXPECT_EQ(instance->readEntry(u"both"_s), u"2"_s) << "the last writer wins";
        EXPECT_EQ(instance->readEntry(u"kept"_s), u"0"_s);
        EXPECT_FALSE(instance->contains(u"gone"_s));
        EXPECT_FALSE(instance->dirty());
    }
    EXPECT_EQ(folder.read("settings.xml").find("gone"), std::string::npos);
}

TEST(SettingsTest, RemovalAndMergeInTheSameSync)
{
    const TestFolder folder;
    const std::string path = folder.write(
        "settings.xml",
        "<settings><setting name=\"a\">0</setting><setting name=\"b\">0</setting></settings>");
    Instance first(path);
    Instance second(path);
    first.writeEntry(u"a"_s, u"1"_s);
    first.sync();
    second.removeEntry(u"a"_s);
    second.removeEntry(u"never there"_s);
    EXPECT_FALSE(second.contains(u"a"_s));
    EXPECT_EQ(second.readEntry(u"a"_s, u"default"_s), u"default"_s);
    second.removeEntry(u"b"_s);
    second.writeEntry(u"b"_s, u"again"_s);
    second.sync();
    first.sync();
    EXPECT_FALSE(first.contains(u"a"_s));
    EXPECT_EQ(first.readEntry(u"b"_s), u"again"_s);
}

TEST(SettingsTest, QuickSavesInTurnLoseNothing)
{
    const TestFolder folder;
    const std::string path = folder / "settings.xml";
    Instance instances[] = {Instance(path), Instance(path)};
    for (int i = 0; i < 100; ++i) {
        Instance& instance = instances[i % 2];
        instance.writeEntry(u"key %1"_s.arg(i), u"0"_s); // files of alternating equal sizes, too
        instance.sync();
    }
    const Instance reader(path);
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(reader.contains(u"key %1"_s.arg(i))) << i;
}

TEST(SettingsTest, UnreadableFilesAreNoErrorAndKept)
{
    const TestFolder folder;
    std::string opened;
    std::string closed;
    for (int i = 0; i < 50000; ++i) {
        opened += "<a>";
        closed += "</a>";
    }
    const std::string deep = opened + "<setting name=\"a\">1</setting>" + closed;
    const std::string damaged[] = {"",
                                   "not XML",
                                   "<settings><setting name=\"a\">1</setting>",
                                   "<settings><setting name=\"a\">\x01</setting></settings>",
                                   "<settings><setting name=\"a\">\xFF\xFE</setting></settings>",
                                   deep};
    for (const std::string& text : damaged) {
        const std::string path = folder.write("settings.xml", text);
        Instance settings(path);
        EXPECT_FALSE(settings.contains(u"a"_s)) << text;
        settings.writeEntry(u"b"_s, u"2"_s);
        settings.sync();
        EXPECT_FALSE(settings.dirty()) << text;
        EXPECT_EQ(folder.read("settings.xml.bad"), text);
        EXPECT_EQ(Instance(path).readEntry(u"b"_s), u"2"_s);
    }
}

TEST(SettingsTest, FileDamagedByAnotherLeavesTheEntries)
{
    const TestFolder folder;
    const std::string path = folder / "settings.xml";
    Instance settings(path);
    settings.writeEntry(u"a"_s, u"1"_s);
    settings.sync();
    folder.write("settings.xml", "<settings>");
    settings.sync();
    EXPECT_EQ(settings.readEntry(u"a"_s), u"1"_s);
    std::filesystem::remove(path);
    settings.sync();
    EXPECT_FALSE(folder.has("settings.xml")) << "nothing to save";
    settings.writeEntry(u"b"_s, u"2"_s);
    settings.sync();
    EXPECT_EQ(Instance(path).readEntry(u"a"_s), u"1"_s);
}

TEST(SettingsTest, FailedSavesAreTriedAgain)
{
    const TestFolder folder;
    folder.write("in the way", "");
    Instance settings(folder / "in the way/settings.xml");
    settings.writeEntry(u"a"_s, u"1"_s);
    settings.sync();
    EXPECT_TRUE(settings.dirty());
    EXPECT_EQ(settings.readEntry(u"a"_s), u"1"_s);
    std::filesystem::remove(folder / "in the way");
    settings.sync();
    EXPECT_FALSE(settings.dirty());
    EXPECT_EQ(Instance(folder / "in the way/settings.xml").readEntry(u"a"_s), u"1"_s);

    std::filesystem::create_directories(folder / "folder.xml");
    Instance onFolder(folder / "folder.xml");
    onFolder.writeEntry(u"a"_s, u"1"_s);
    onFolder.sync();
    EXPECT_TRUE(onFolder.dirty());
}

TEST(SettingsTest, ForeignFilesAreRead)
{
    const TestFolder folder;
    const Instance settings(
        folder.write("settings.xml",
                     "<?xml version=\"1.0\"?>\n<!-- by hand -->\n"
                     "<!DOCTYPE Gantry_Settings_File>\n"
                     "<settings><group><setting name='a'>&#x41;&apos;</setting>"
                     "</group><setting/><other name='b'>2</other>"
                     "<setting name='c'>1</setting><setting name='c'>2</setting>"
                     "</settings>"));
    EXPECT_EQ(settings.readEntry(u"a"_s), u"A'"_s);
    EXPECT_FALSE(settings.contains(u"b"_s));
    EXPECT_EQ(settings.readEntry(u"c"_s), u"2"_s);
}

TEST(XmlTextTest, Unescaping)
{
    const struct {
        const char16_t* text;
        const char16_t* result;
    } cases[] = {{u"&lt;&gt;&amp;&quot;&apos;", u"<>&\"'"},
                 {u"&amp;lt;", u"&lt;"},
                 {u"&#65;&#x42;&#x1F600;", u"AB😀"},
                 {u"&", u"&"},
                 {u"&;", u"&;"},
                 {u"&#;", u"&#;"},
                 {u"&#x;", u"&#x;"},
                 {u"&#xD800000;", u"&#xD800000;"},
                 {u"&nbsp; &lt", u"&nbsp; &lt"},
                 {u"a & b; &lt;", u"a & b; <"}};
    for (const auto& c : cases)
        EXPECT_EQ(xmlUnescapeEntities(QString::fromUtf16(c.text)), QString::fromUtf16(c.result));
}

class EnvironmentTest : public testing::Test {
protected:
    EnvironmentTest() { start(first); }

    void start(EnvironmentSettings& settings) const
    {
        settings.init(QString::fromStdString(m_folder / "maker/settings.xml"),
                      QString::fromStdString(m_folder / "product/settings.xml"));
        settings.createEntries();
    }
    std::string savedFile() const { return m_folder.read("product/settings.xml"); }
    bool saved() const { return m_folder.has("product"); }

    GantryBenchEnvironmentSettings first;
    TestFolder m_folder;
};

TEST_F(EnvironmentTest, AllSettings)
{
    EnvironmentSettings general;
    start(general);
    EXPECT_EQ(general.findChildren<EnvironmentPropertyValue*>().size(), 170);
    EXPECT_EQ(first.findChildren<EnvironmentPropertyValue*>().size(), 178);
    EXPECT_EQ(general.findProperty(u"Target/Identify"_s), nullptr);
    for (EnvironmentPropertyValue* value : first.findChildren<EnvironmentPropertyValue*>()) {
        const PropertyClass* propertyClass = value->propertyClass();
        EXPECT_EQ(first.findProperty(propertyClass->saveName()), value) << "a key twice";
        const QStringList& choices = propertyClass->enumerates();
        if (!choices.isEmpty() && !propertyClass->page().isEmpty()) {
            EXPECT_TRUE(choices.contains(propertyClass->defaultValue()))
                << propertyClass->saveName().toStdString();
        }
        if (propertyClass->type() == PropertyClass::Type::IntegerRange
            && !propertyClass->page().isEmpty()) {
            EXPECT_GE(value->toInt(), propertyClass->minimum());
            EXPECT_LE(value->toInt(), propertyClass->maximum());
        }
    }
}

TEST_F(EnvironmentTest, DescribedSettings)
{
    const struct {
        const char* key;
        const char* page;
        const char* label;
        const char* defaultValue;
    } cases[] = {
        {"Text Editor/Undo Mode", "Text Editor", "Undo And Redo Behavior", "Individual Words"},
        {"Environment/Printing/Page Size", "Environment", "Page Size", "A4"},
        {"Environment/Debugger/Initial Breakpoint", "Debugging", "Set Initial Breakpoint At",
         "main"},
        {"Environment/Build/Tool Chain Root Directory", "Building", "Toolchain Root Directory",
         "$(BenchDir)"},
        {"Environment/Source Code Control/Provider", "Source Control", "Source Control Provider",
         "None"},
        {"Target/Auto Connect", "Debugging", "Automatically Connect When Starting Debug", "Yes"},
        {"Environment/Bookmarks", "(Internal)", "(Internal)", ""},
    };
    for (const auto& c : cases) {
        const EnvironmentPropertyValue* value = first.findProperty(QString::fromLatin1(c.key));
        ASSERT_NE(value, nullptr) << c.key;
        EXPECT_EQ(value->propertyClass()->page(), QString::fromLatin1(c.page));
        EXPECT_EQ(value->propertyClass()->shortDescription(), QString::fromLatin1(c.label));
        EXPECT_EQ(value->toString(), QString::fromLatin1(c.defaultValue));
    }
    EXPECT_EQ(first.printingPageSize->propertyClass()->enumerates().size(), 30);
    EXPECT_EQ(first.showDebugTerminal->toInt(), 2);
    EXPECT_EQ(first.findProperty(u"Environment/Build/Show Command Lines"_s),
              first.showCommandLines);
    for (const EnvironmentPropertyValue* margin :
         {first.printingLeftMargin, first.printingRightMargin, first.printingTopMargin,
          first.printingBottomMargin}) {
        EXPECT_EQ(margin->toInt(), 25);
        EXPECT_EQ(margin->propertyClass()->minimum(), 0);
        EXPECT_EQ(margin->propertyClass()->maximum(), 2450);
        EXPECT_EQ(margin->propertyClass()->suffix(), u" mm"_s);
    }
}

TEST_F(EnvironmentTest, CodeTemplatesAreTriples)
{
    const QStringList list = first.codeTemplates->toStringList();
    ASSERT_EQ(list.size(), 24 * 3);
    EXPECT_THAT(list.mid(0, 3), ElementsAre(u"co"_s, u"comment"_s, u"/* | */"_s));
    EXPECT_THAT(list.mid(12, 3), ElementsAre(u"If"_s, u"if without braces"_s, u"if (|)\n  ;"_s));
    EXPECT_THAT(list.mid(6, 3), ElementsAre(u"dh"_s, u"doxygen header"_s, u"/*! \\brief |\n*/"_s));
    EXPECT_THAT(list.mid(69, 3), ElementsAre(u"inc"_s, u"#include"_s, u"#include \"|\""_s));
}

TEST_F(EnvironmentTest, CategoriesInPageOrder)
{
    EXPECT_THAT(first.categories(),
                ElementsAre(u"Environment"_s, u"Text Editor"_s, u"Building"_s, u"Debugging"_s,
                            u"Windows"_s, u"Source Control"_s));
    const PropertyClass extra(u"Terminal/Port"_s, PropertyClass::Type::String, u"Terminal"_s,
                              u"Terminal"_s, u"Port"_s, u"The serial port"_s, u"COM1"_s);
    EnvironmentPropertyValue value(&extra, &first);
    first.registerProperty(u"Terminal"_s, &value);
    EXPECT_EQ(first.categories().last(), u"Terminal"_s);
    EXPECT_EQ(first.category(u"Terminal"_s).find(&extra), &value);
    EXPECT_EQ(first.findProperty(u"Terminal/Port"_s), &value);
    EXPECT_TRUE(first.category(u"No Such Page"_s).isEmpty());
    EXPECT_EQ(first.category(u"Environment"_s).find(first.bookmarks->propertyClass()), nullptr);
}

TEST_F(EnvironmentTest, ValuesAreKeptAndSignalled)
{
    std::vector<EnvironmentPropertyValue*> changed;
    QStringList keys;
    QObject::connect(first.undoMode, &EnvironmentPropertyValue::changed, first.undoMode,
                     [&](EnvironmentPropertyValue* value) { changed.push_back(value); });
    QObject::connect(&first, &EnvironmentSettings::settingChanged, &first,
                     [&](const QString& key) { keys.append(key); });

    first.undoMode->setValue(1); // what it is already
    EXPECT_THAT(keys, IsEmpty());
    first.saveSettings();
    EXPECT_FALSE(saved());

    first.undoMode->setValue(0);
    EXPECT_THAT(changed, ElementsAre(first.undoMode));
    EXPECT_THAT(keys, ElementsAre(u"Text Editor/Undo Mode"_s));
    first.saveSettings();
    EXPECT_EQ(savedFile(),
              "<!DOCTYPE Gantry_Settings_File>\n<settings>\n"
              "  <setting name=\"Text Editor/Undo Mode\">Individual Characters</setting>\n"
              "</settings>\n");
    {
        EnvironmentSettings second;
        start(second);
        EXPECT_EQ(second.undoMode->toInt(), 0);
    }

    first.undoMode->removePropertyValue();
    EXPECT_EQ(first.undoMode->toInt(), 1);
    EXPECT_EQ(changed.size(), 2U);
    first.saveSettings();
    EXPECT_EQ(savedFile(), emptyFile);
}

TEST_F(EnvironmentTest, TwoInstances)
{
    EnvironmentSettings second;
    start(second);
    first.buildBeforeDebug->setValue(true);
    second.initialBreakpoint->setValue("start");
    second.setEmailAddress(u"dev@example.org"_s);
    first.saveSettings();
    second.saveSettings();
    first.saveSettings();
    EXPECT_EQ(first.initialBreakpoint->toString(), u"start"_s);
    EXPECT_EQ(first.emailAddress(), u"dev@example.org"_s);
    EnvironmentSettings third;
    start(third);
    EXPECT_TRUE(third.buildBeforeDebug->toBool());
    EXPECT_EQ(third.initialBreakpoint->toString(), u"start"_s);
    EXPECT_EQ(m_folder.read("maker/settings.xml"),
              "<!DOCTYPE Gantry_Settings_File>\n<settings>\n"
              "  <setting name=\"/Email Address\">dev@example.org</setting>\n</settings>\n");
}

TEST_F(EnvironmentTest, Histories)
{
    for (int i = 0; i < 12; ++i)
        EnvironmentSettings::addToHistoryStringList(first.findHistory, u"text;%1"_s.arg(i));
    EXPECT_THAT(first.findHistory->toStringList(),
                ElementsAre(u"text;11"_s, u"text;10"_s, u"text;9"_s, u"text;8"_s, u"text;7"_s,
                            u"text;6"_s, u"text;5"_s, u"text;4"_s, u"text;3"_s, u"text;2"_s));
    EnvironmentSettings::addToHistoryStringList(first.findHistory, u"text;3"_s);
    EXPECT_EQ(first.findHistory->toStringList().size(), 10);
    EXPECT_EQ(first.findHistory->toStringList().value(0), u"text;3"_s);

    EnvironmentSettings::addToHistoryStringList(first.replaceHistory, u"One"_s);
    EnvironmentSettings::addToHistoryStringList(first.replaceHistory, u"one"_s);
    EXPECT_THAT(first.replaceHistory->toStringList(), ElementsAre(u"one"_s, u"One"_s));
    EnvironmentSettings::addToHistoryStringList(first.replaceHistory, u"ONE"_s,
                                                Qt::CaseInsensitive);
    EXPECT_THAT(first.replaceHistory->toStringList(), ElementsAre(u"ONE"_s));
}

TEST_F(EnvironmentTest, LastFindSettings)
{
    QString find = u"before"_s;
    QString replace = u"before"_s;
    FindOptions options = FindOption::MatchCase | FindOption::Wrap;
    first.getLastFindSettings(find, replace, options);
    EXPECT_EQ(find, QString());
    EXPECT_EQ(replace, QString());
    EXPECT_EQ(options, FindOption::Wrap);

    EnvironmentSettings::addToHistoryStringList(first.findHistory, u"a"_s);
    EnvironmentSettings::addToHistoryStringList(first.findHistory, u"b"_s);
    EnvironmentSettings::addToHistoryStringList(first.replaceHistory, u"c"_s);
    first.findUseRegExp->setValue(true);
    first.findSearchUp->setValue(true);
    first.findMatchWholeWord->setValue(true);
    first.getLastFindSettings(find, replace, options);
    EXPECT_EQ(find, u"b"_s);
    EXPECT_EQ(replace, u"c"_s);
    EXPECT_EQ(options.toInt(), 0x01 | 0x02 | 0x08 | 0x20);
}

TEST_F(EnvironmentTest, SavesByItselfWhereAnEventLoopRuns)
{
    const auto timer = [](const EnvironmentSettings& settings) {
        return settings.findChild<QTimer*>(u"environment-settings-save-timer"_s);
    };
    ASSERT_NE(timer(first), nullptr);
    EXPECT_FALSE(timer(first)->isActive());

    int count = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    EnvironmentSettings second;
    start(second);
    EXPECT_TRUE(timer(second)->isActive());
    EXPECT_EQ(timer(second)->interval(), 60000);
}

/// A description that is the string provider while it lives.
struct InstalledDescription : BenchDescription {
    InstalledDescription() { stringProvider = this; }
    ~InstalledDescription() override { stringProvider = nullptr; }
};

TEST(BenchDescriptionTest, FirstSchemesOfEachKind)
{
    const TestFolder folder;
    BenchDescription description;
    const QString path = QString::fromStdString(folder.write(
        "bench.xml",
        "<bench><if platform=\"MSP430\"><messagescheme>"
        "<item name=\"FileOpen\"><text>Open</text><tip>Opens &lt;a&gt; file</tip></item>"
        "<item name=\"A/B\"><suffix> lines</suffix></item><other name=\"X\"><text>x</text></other>"
        "</messagescheme></if>"
        "<messagescheme><item name=\"FileOpen\"><text>Second</text></item></messagescheme>"
        "<keyscheme><item name=\"FileOpen\"><key>Ctrl+O</key></item></keyscheme></bench>"));
    ASSERT_TRUE(description.load(path));
    EXPECT_EQ(description.message(u"FileOpen.text"_s), u"Open"_s);
    EXPECT_EQ(description.message(u"FileOpen.tip"_s), u"Opens <a> file"_s);
    EXPECT_EQ(description.message(u"FileOpen.key"_s), u"Ctrl+O"_s);
    EXPECT_EQ(description.message(u"A/B.suffix"_s), u" lines"_s);
    EXPECT_EQ(description.message(u"X.text"_s), QString());

    QString error;
    int line = 0;
    EXPECT_FALSE(description.load(
        QString::fromStdString(folder.write("bad.xml", "<bench>\n<item></bench>")), &error, &line));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(line, 2);
    EXPECT_FALSE(description.load(QString::fromStdString(folder / "none.xml")));
    EXPECT_EQ(description.message(u"FileOpen.text"_s), u"Open"_s);
}

TEST(BenchDescriptionTest, InstalledFileDescribesEveryKeyedSetting)
{
    EnvironmentSettings withoutTexts;
    withoutTexts.createEntries();
    InstalledDescription description;
    ASSERT_TRUE(description.load(QStringLiteral(GANTRY_ROOT_TREE "/bin/bench.xml")));
    EnvironmentSettings settings;
    settings.createEntries();

    int keyed = 0;
    for (const auto* without : withoutTexts.findChildren<EnvironmentPropertyValue*>()) {
        if (!without->propertyClass()->page().isEmpty())
            continue;
        ++keyed;
        const EnvironmentPropertyValue* value =
            settings.findProperty(without->propertyClass()->saveName());
        const PropertyClass& described = *value->propertyClass();
        SCOPED_TRACE(described.saveName().toStdString());
        EXPECT_FALSE(described.group().isEmpty());
        EXPECT_FALSE(described.shortDescription().isEmpty());
        EXPECT_TRUE(described.longDescription().endsWith(u'.'));
        EXPECT_EQ(settings.category(described.page()).find(&described), value);
        const QStringList& choices = described.enumerates();
        EXPECT_TRUE(choices.isEmpty() || choices.contains(described.defaultValue()));
        EXPECT_TRUE(choices.size() > 1 || described.type() != PropertyClass::Type::Enumeration);
        if (described.type() == PropertyClass::Type::IntegerRange) {
            EXPECT_GE(value->toInt(), described.minimum());
            EXPECT_LE(value->toInt(), described.maximum());
        }
    }
    EXPECT_EQ(keyed, 77);
    EXPECT_EQ(settings.categories().size(), 6) << "no page but the six";
    EXPECT_EQ(settings.diagnosticCycleMode->toInt(), 0);
    EXPECT_EQ(settings.packageDestinationDirectory->toString(), u"$(BenchDir)/packages"_s);
    EXPECT_EQ(settings.maxWindowMenuItems->propertyClass()->suffix(), u" items"_s);
}

} // namespace
