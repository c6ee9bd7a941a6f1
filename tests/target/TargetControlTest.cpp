#include "FailureMessage.h"
#include "FakeTarget.h"
#include "TestFolder.h"

#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "target/control/TargetCommands.h"
#include "target/control/TargetControl.h"
#include "target/control/TargetList.h"
#include "target/control/TargetProgramming.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

class Host : public TargetControlHost {
public:
    bool ask(const QString& text, const QString& title) override
    {
        questions.push_back(title.toStdString() + ": " + text.toStdString());
        return answer;
    }
    void inform(const QString& text, const QString&) override
    {
        lines.push_back(text.toStdString());
    }
    void showStatus(const QString& text) override { lines.push_back(text.toStdString()); }
    void logError(const QString& text) override { lines.push_back("error " + text.toStdString()); }
    void showDifferences(const TargetDifferences& differences) override
    {
        lines.push_back("differences of " + differences.fileName.toStdString() + " and "
                        + differences.targetName.toStdString());
    }
    bool checkNotDebugging() override { return mayEnd; }
    void endDebugging() override { ++ended; }
    Lines lines, questions;
    bool answer = false, mayEnd = true;
    int ended = 0;
};

class TargetControlTest : public testing::Test {
protected:
    TargetControlTest()
    {
        settings.init(QStringLiteral("Test"), path("settings.xml"));
        settings.createEntries();
        writeDefaults("<MSP430Monitor name=\"Simulator\"/>");
    }
    QString path(const char* name) { return QString::fromStdString(folder / name); }
    void writeDefaults(const std::string& children)
    {
        folder.write("targets.xml",
                     "<!DOCTYPE GantryBench_Target_Definition_File>\n<objects>" + children
                         + "</objects>\n");
    }
    static QStringList titles(const TargetList& list)
    {
        QStringList result;
        for (const TargetListItem& item : list)
            result << item.target->title();
        return result;
    }
    LoadFileList listOf(FakeLoadFile& file)
    {
        LoadFileList list;
        list.add(&file, "a.hex", false);
        return list;
    }

    TestFolder folder;
    GantryBenchEnvironmentSettings settings;
    Host host;
    FakeTargetHost targetHost;
    FakeTarget target{&targetHost};
    TargetControl control{settings, host, nullptr};
};

} // namespace

TEST_F(TargetControlTest, TheListIsKeptInTheSettings)
{
    TargetList list(settings, path("targets.xml"));
    list.load();
    EXPECT_EQ(titles(list), QStringList{QStringLiteral("Simulator")});
    TargetInterface* const added = list.newTarget(QStringLiteral("MSP430Monitor"));
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(list.newTarget(QStringLiteral("Nothing")), nullptr);
    list.rename(added, QStringLiteral("Mine & \"yours\""));
    PropertyValueList properties;
    added->getProperties(properties);
    for (PropertyValue* property : properties)
        if (property->propertyClass()->saveName() == QLatin1String("traceBufferSize"))
            property->setValue(1000);
    list.save();
    const QString stored = settings.targets->toString();
    EXPECT_FALSE(stored.contains(QStringLiteral("DOCTYPE")));
    EXPECT_TRUE(stored.contains(QStringLiteral("traceBufferSize=\"1000\"")));
    EXPECT_FALSE(stored.contains(QStringLiteral("enablePeripheralFile"))) << "has its default";
    EXPECT_FALSE(stored.contains(QStringLiteral("device_id"))) << "is read-only";

    TargetList again(settings, path("targets.xml"));
    again.load();
    EXPECT_EQ(titles(again), titles(list));
    EXPECT_EQ(again.copy(again[1].target.get()), list.copy(list[1].target.get()));
    again.paste(again.copy(again[1].target.get()));
    EXPECT_EQ(titles(again).last(), QStringLiteral("Copy Of Mine & \"yours\""));

    // A default target that was deleted stays so, and a new one appears once.
    again.remove(again.getTargetInterfaceByName(QStringLiteral("Simulator")));
    writeDefaults("<MSP430Monitor name=\"Simulator\"/><Unknown/><MSP430Monitor name=\"New\"/>");
    for (int i = 0; i < 2; ++i) {
        again.load();
        EXPECT_EQ(titles(again).count(QStringLiteral("New")), 1);
        EXPECT_FALSE(titles(again).contains(QStringLiteral("Simulator")));
    }
    again.restoreDefaultTargets();
    EXPECT_EQ(titles(again), (QStringList{QStringLiteral("Simulator"), QStringLiteral("New")}));
}

TEST_F(TargetControlTest, DamagedDefinitionsAreReportedAndTheListGoesOn)
{
    TargetList list(settings, path("targets.xml"));
    list.load();
    list.exportTargetDefinitions(path("mine.xml"));
    EXPECT_TRUE(
        folder.read("mine.xml").starts_with("<!DOCTYPE GantryBench_Target_Definition_File>"));
    list.importTargetDefinitions(path("mine.xml"));
    EXPECT_EQ(titles(list), QStringList{QStringLiteral("Simulator")});

    EXPECT_EQ(messageOf([&] { list.importTargetDefinitions(path("none.xml")); }),
              "Cannot open " + (folder / "none.xml") + " for reading");
    folder.write("other.xml", "<!DOCTYPE Other>\n<objects/>\n");
    EXPECT_EQ(messageOf([&] { list.importTargetDefinitions(path("other.xml")); }),
              "Cannot load " + (folder / "other.xml")
                  + ".<p>The document is not of type GantryBench_Target_Definition_File.");
    EXPECT_EQ(list.size(), 1u) << "a file that isn't one leaves the list";
    EXPECT_EQ(messageOf([&] { list.exportTargetDefinitions(path("no/such/place.xml")); }),
              "Cannot open " + (folder / "no/such/place.xml") + " for writing");
    folder.write("bad.xml", "<!DOCTYPE GantryBench_Target_Definition_File>\n<objects>\n<MSP430");
    EXPECT_NE(messageOf([&] { list.importTargetDefinitions(path("bad.xml")); }).find(" line: 3"),
              std::string::npos);
    settings.targets->setValue("<objects><MSP430Monitor name=</objects>");
    EXPECT_NE(messageOf([&] { list.load(); }).find(" line: 1 column: "), std::string::npos);
    EXPECT_EQ(list.size(), 0u);
    list.restoreDefaultTargets();
    EXPECT_EQ(list.size(), 1u);
}

TEST_F(TargetControlTest, TheListIsReplacedOnlyWhenNothingIsConnected)
{
    TargetList list(settings, path("targets.xml"));
    TargetControl withList(settings, host, &list);
    EXPECT_TRUE(withList.loadTargets());
    EXPECT_TRUE(withList.exportTargets(path("mine.xml")));
    EXPECT_FALSE(withList.exportTargets(path("mine.xml"))) << "the user says no";
    EXPECT_FALSE(withList.restoreDefaultTargets());
    EXPECT_EQ(host.questions,
              (Lines{"Export Target Definitions To XML File: File already exists, are you sure you "
                     "want to overwrite the existing file?",
                     "Restore Default Targets: Are you sure you want to overwrite the existing "
                     "targets with the default set of targets?"}));
    host.answer = true;
    withList.connectTargetInterface(&target, false, nullptr, {});
    host.mayEnd = false;
    list.rename(list[0].target.get(), QStringLiteral("Renamed"));
    EXPECT_FALSE(withList.restoreDefaultTargets());
    EXPECT_FALSE(withList.importTargets(path("mine.xml")));
    EXPECT_EQ(titles(list), QStringList{QStringLiteral("Renamed")});
    host.mayEnd = true;
    EXPECT_TRUE(withList.importTargets(path("mine.xml")));
    EXPECT_FALSE(withList.targetIsConnected());
    EXPECT_EQ(titles(list), QStringList{QStringLiteral("Simulator")});
}

TEST_F(TargetControlTest, TheLastTargetIsConnectedByItself)
{
    TargetList list(settings, path("targets.xml"));
    list.load();
    TargetControl withList(settings, host, &list);
    EXPECT_FALSE(withList.targetCanAutoConnect());
    EXPECT_EQ(withList.autoConnect(nullptr, {}), nullptr);
    TargetInterface* const simulator = list[0].target.get();
    withList.connectTargetInterface(simulator, false, nullptr, {});
    EXPECT_EQ(withList.interruptSources().size(), 16u);
    EXPECT_EQ(withList.interruptSources()[15].name, QStringLiteral("Priority 15 - 0xfffe"));
    withList.disconnectTargetInterface();
    EXPECT_TRUE(withList.interruptSources().empty());
    EXPECT_TRUE(withList.targetCanAutoConnect());
    EXPECT_EQ(withList.autoConnect(nullptr, {}), simulator);
    EXPECT_TRUE(withList.targetIsConnected());
    withList.disconnectTargetInterface();
    settings.autoConnect->setValue(false);
    EXPECT_FALSE(withList.targetCanAutoConnect());
}

TEST_F(TargetControlTest, ConnectingAndDisconnecting)
{
    EXPECT_EQ(control.statusText(), QStringLiteral(" Disconnected "));
    target.setCapability(TargetCapability::CycleCount, true);
    control.connectTargetInterface(&target, false, nullptr, {});
    EXPECT_TRUE(control.targetIsConnected());
    EXPECT_EQ(control.statusText(), QStringLiteral(" MSP430F149 on Fake "));
    EXPECT_TRUE(control.showsCycleCounter());
    EXPECT_TRUE(control.watchesDisconnection());
    target.setDeviceId(QString());
    EXPECT_EQ(control.statusText(), QStringLiteral(" Fake "));
    EXPECT_EQ(host.lines, (Lines{"Connected target interface \"Fake\""}));

    // With force the user may keep a debug session; without, it ends.
    host.mayEnd = false;
    control.connectTargetInterface(nullptr, true, nullptr, {});
    EXPECT_TRUE(control.targetIsConnected());
    control.connectTargetInterface(nullptr, false, nullptr, {});
    EXPECT_FALSE(control.targetIsConnected());
    EXPECT_EQ(host.ended, 1);
    EXPECT_EQ(host.lines.back(), "Disconnected target interface \"Fake\"");
    EXPECT_TRUE(control.can(TargetCapability::CycleCount)) << "the last target's word";
    EXPECT_EQ(control.autoConnectName(), QStringLiteral("Fake"));

    target.refuses = true;
    EXPECT_EQ(messageOf([&] { control.connectTargetInterface(&target, false, nullptr, {}); }),
              "no such pod");
    EXPECT_EQ(control.targetInterface(), &target);
    EXPECT_FALSE(control.targetIsConnected());
    target.refuses = false;
    host.mayEnd = true;
    control.connectTargetInterface(&target, true, nullptr, {});
    EXPECT_TRUE(control.targetIsConnected());
}

TEST_F(TargetControlTest, ALostConnectionIsReportedOnce)
{
    for (const bool throws : {false, true}) {
        target.lost = target.wireThrows = false;
        control.connectTargetInterface(&target, false, nullptr, {});
        host.lines.clear();
        control.pollExternalDisconnection();
        EXPECT_TRUE(host.lines.empty());
        target.lost = !throws;
        target.wireThrows = throws;
        control.pollExternalDisconnection();
        control.pollExternalDisconnection();
        EXPECT_EQ(std::count(host.lines.begin(), host.lines.end(),
                             "error Target connection has been lost"),
                  1);
        EXPECT_FALSE(control.targetIsConnected());
        EXPECT_FALSE(control.watchesDisconnection());
    }
}

TEST_F(TargetControlTest, DownloadsEraseProgramAndVerifyInOneSession)
{
    FakeLoadFile low, high;
    low.add(0x1000, std::vector<unsigned char>(0x80, 1));
    high.add(0x1080, std::vector<unsigned char>(0x80, 2));
    control.connectTargetInterface(&target, false, nullptr, {});
    LoadFileList list;
    list.add(&high, "high", false);
    list.add(&low, "low", false);
    targetHost.differential = false;
    control.downloadLoadFiles(target, list, false);
    EXPECT_EQ(target.code.done,
              (Lines{"erase 1000 80", "last 1000 80", "last 1080 80", "verify 1000 80",
                     "verify 1080 80"}))
        << "sorted, and the segment erased once";
    EXPECT_EQ(target.begins, 1);
    EXPECT_EQ(target.ends, 1);

    target.code.done.clear();
    target.setLoaderEraseAll(true);
    settings.enableLoadVerification->setValue(false);
    control.downloadLoadFiles(target, list, false);
    EXPECT_EQ(target.code.done, (Lines{"erase all 0 0", "last 1000 80", "last 1080 80"}));

    FakeLoadFile overlapping;
    overlapping.add(0x10FF, {1, 2});
    list.add(&overlapping, "over", false);
    target.code.done.clear();
    EXPECT_EQ(messageOf([&] { control.downloadLoadFiles(target, list, false); }),
              "cannot download multiple load files because they overlap");
    target.code.addressRanges().add(0x1000, 0x107F, false);
    LoadFileList tooBig = listOf(high);
    EXPECT_NE(messageOf([&] { control.downloadLoadFiles(target, tooBig, false); }), "");
    EXPECT_TRUE(target.code.done.empty()) << "refused before anything is erased";
    EXPECT_EQ(target.begins, target.ends);
}

TEST_F(TargetControlTest, AFailedVerificationOffersTheDifferences)
{
    FakeLoadFile file;
    file.add(0x1000, {1, 2, 3, 4});
    control.connectTargetInterface(&target, false, nullptr, {});
    host.lines.clear();
    LoadFileList list = listOf(file);
    EXPECT_FALSE(control.verifyLoadFiles(target, list, false, true, false));
    EXPECT_EQ(host.questions,
              (Lines{"Verify Failed: Verifier has found errors.<p>Do you want to compare the "
                     "differences?"}));
    EXPECT_TRUE(host.lines.empty());
    host.answer = true;
    EXPECT_FALSE(control.verifyLoadFiles(target, list, false, true, false));
    EXPECT_EQ(host.lines, (Lines{"differences of a.hex and MSP430F149 - Fake"}));
    target.downloadLoadFile(&file, "a.hex", false, false);
    host.lines.clear();
    EXPECT_TRUE(control.verifyLoadFiles(target, list, false, true, false));
    EXPECT_EQ(host.lines, (Lines{"Verifier has found no errors."}));
}

TEST_F(TargetControlTest, ProgrammingByHand)
{
    control.connectTargetInterface(&target, false, nullptr, {});
    TargetProgramming programming(target, control, host);
    EXPECT_EQ(TargetProgramming::actions(target.code).size(), 13);
    EXPECT_EQ(TargetProgramming::actions(target.code).first(),
              QStringLiteral("Erase, Program and Verify"));
    const QString file = QString::fromStdString(folder.write("a.bin", "abcd"));
    const auto act = [&](const char* action, const char* address = "0x1000",
                         const char* size = "") {
        target.code.done.clear();
        return programming.doProgrammingAction({}, file, {}, QString::fromLatin1(address),
                                               QString::fromLatin1(size),
                                               QString::fromLatin1(action));
    };
    EXPECT_TRUE(act("Erase, Program and Verify"));
    EXPECT_EQ(target.code.done, (Lines{"erase 1000 4", "last 1000 4", "verify 1000 4"}));
    EXPECT_EQ(target.code.bytes[0x1003], 'd');
    EXPECT_TRUE(act("Verify Only"));
    EXPECT_EQ(host.lines.back(), "Verifier has found no errors.");
    target.code.bytes[0x1000] = 0;
    EXPECT_FALSE(act("Verify Only"));
    act("Erase Range", "0x1000", "0x400");
    EXPECT_EQ(target.code.done, (Lines{"erase 1000 200", "erase 1200 200"}));
    act("Lock");
    EXPECT_EQ(target.code.done, (Lines{"lock 1000 4"}));
    act("Erase All", "", "");
    EXPECT_EQ(target.code.done, (Lines{"erase all 0 0"}));
    EXPECT_EQ(messageOf([&] { act("Erase Range", "x", "1"); }), "invalid start address");
    EXPECT_EQ(messageOf([&] { act("Lock Range", "1", ""); }), "invalid size");
    EXPECT_EQ(messageOf([&] { act("Program Only", "x"); }), "invalid load address");
    EXPECT_EQ(messageOf([&] {
                  programming.doProgrammingAction({}, path("none.bin"), {}, {}, {},
                                                  QStringLiteral("Program Only"));
              }).substr(0, 12),
              "invalid file");
    EXPECT_EQ(target.begins, target.ends);

    programming.upload({}, path("out.hex"), QStringLiteral("Intel Hex"), QStringLiteral("0x1000"),
                       QStringLiteral("2"));
    EXPECT_EQ(folder.read("out.hex"), ":02100000FFFFF0\n:00000001FF\n");
    EXPECT_EQ(messageOf([&] { programming.upload({}, path("o"), {}, {}, {}); }),
              "invalid start address");
    EXPECT_EQ(messageOf([&] {
                  programming.upload({}, path("o"), {}, QStringLiteral("0"), QStringLiteral("z"));
              }),
              "invalid length");
}

TEST_F(TargetControlTest, TheWrongProcessorIsAskedAbout)
{
    control.connectTargetInterface(&target, false, nullptr, {});
    EXPECT_TRUE(control.targetCompatibleWithProject(nullptr, {})) << "no project, no question";
    EXPECT_TRUE(host.questions.empty());
}

TEST(TargetCommands, AreEnabledByState)
{
    using namespace TargetCommands;
    namespace Can = TargetCapability;
    const State nothing;
    for (unsigned i = ConnectSelected; i <= Upload; ++i)
        EXPECT_FALSE(isEnabled(static_cast<Command>(i), nothing)) << i;
    const State idle{.rowSelected = true};
    EXPECT_TRUE(isEnabled(ConnectSelected, idle));
    EXPECT_FALSE(isEnabled(Explore, idle));
    EXPECT_TRUE(isEnabled(Explore, {.rowSelected = true, .rowIsJTAG = true}));
    State row{.rowSelected = true,
              .rowConnected = true,
              .rowCapabilities = Can::Reset | Can::EraseAllOnly | Can::Lock,
              .rowHasMemories = true,
              .connected = true,
              .connectedCapabilities = Can::Reset};
    for (const Command command :
         {DisconnectSelected, ReconnectSelected, DisconnectConnected, ReconnectConnected,
          ResetSelected, ResetConnected, EraseAll, LockAll, LockRange, Program, Upload})
        EXPECT_TRUE(isEnabled(command, row)) << command;
    for (const Command command : {ConnectSelected, EraseRange, UnlockAll, UnlockRange, Explore})
        EXPECT_FALSE(isEnabled(command, row)) << command;
    row.busy = true;
    EXPECT_TRUE(isEnabled(ResetSelected, row));
    for (const Command command : {ResetConnected, EraseAll, LockAll, LockRange, Program, Upload})
        EXPECT_FALSE(isEnabled(command, row)) << command;
}
