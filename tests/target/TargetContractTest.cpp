// The rest of the target contract: scripts, properties, menu entries, native modules, scan chains.
#include "FakeTarget.h"
#include "TestFolder.h"

#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFModule.h"
#include "projects/solution/ProjectSystem.h"
#include "script/es/ESContext.h"
#include "target/TargetInterfaceFactory.h"
#include "target/TargetJTAGInterface.h"
#include "target/script/ScriptSystem.h"

#include <gtest/gtest.h>

#include <deque>

namespace {

using Lines = std::vector<std::string>;

class FakeScripts : public ScriptSystem {
public:
    FakeScripts() { scriptSystem = this; }
    ~FakeScripts() override { scriptSystem = nullptr; }
    using ScriptSystem::execute;
    bool executing() const override { return running; }
    void requestStop() override { }
    bool stopRequested() const override { return false; }
    bool execute(const QString& text, bool, QStringList&) override
    {
        texts.push_back(text.toStdString());
        return succeeds;
    }
    QStringList executeWithResult(const QString& text) override
    {
        texts.push_back(text.toStdString());
        return result;
    }
    bool running = false, succeeds = true;
    QStringList result;
    Lines texts;
};

/// A solution with one project, and the property classes that targets ask for.
class Solution {
public:
    Solution()
    {
        projectSystem = &m_system;
        m_solution = m_system.createSolution(QStringLiteral("/tmp"), QStringLiteral("s"));
        m_project = m_system.createProject(m_solution, QStringLiteral("p"),
                                           QStringLiteral("Executable"), QStringLiteral("/tmp"));
        TargetProject::setPropertyClassFinder([this](const QString& name) -> const PropertyClass* {
            if (!name.startsWith(QLatin1String("target_")))
                return nullptr;
            for (const auto& known : m_classes)
                if (known->saveName() == name)
                    return known.get();
            m_classes.push_back(std::make_unique<PropertyClass>(
                name, PropertyClass::Type::String, QString(), QString(), QString(), QString()));
            return m_classes.back().get();
        });
    }
    ~Solution()
    {
        TargetProject::setPropertyClassFinder({});
        projectSystem = nullptr;
    }
    void set(const char* name, const char* value)
    {
        m_system.setProperty(m_project, QString::fromLatin1(name), QStringLiteral("Common"),
                             QString::fromLatin1(value), false);
    }
    ProjectElement* project() { return m_project; }

private:
    ProjectSystem m_system;
    ProjectElement* m_solution;
    ProjectElement* m_project;
    std::deque<std::unique_ptr<PropertyClass>> m_classes;
};

class TargetContractTest : public testing::Test {
protected:
    FakeTargetHost host;
    FakeTarget target{&host};
};

} // namespace

TEST_F(TargetContractTest, ScriptsOfTheProjectRunWhereTheyBelong)
{
    FakeScripts scripts;
    Solution solution;
    EXPECT_TRUE(target.executeConnectScript());
    EXPECT_TRUE(scripts.texts.empty()) << "without a project nothing runs";
    target.syncSettingsWithProject(solution.project(), QStringLiteral("Common"));
    EXPECT_TRUE(target.executeConnectScript()) << "nor without a script";
    for (const char* name :
         {"target_reset_script", "target_attach_script", "target_go_script", "target_stop_script",
          "target_connect_script", "target_disconnect_script", "target_debug_begin_script",
          "target_debug_end_script"})
        solution.set(name, (std::string(name) + "()").c_str());

    const struct {
        const char* line;
        std::function<bool()> run;
        bool alsoWhileOneRuns;
    } cases[] = {
        {"Executing attach script target_attach_script()",
         [&] { return target.executeAttachScript(); }, true},
        {"Executing run script target_go_script()", [&] { return target.executeRunScript(); },
         false},
        {"Executing stop script target_stop_script()", [&] { return target.executeStopScript(); },
         false},
        {"Executing connect script target_connect_script()",
         [&] { return target.executeConnectScript(); }, false},
        {"Executing disconnect script target_disconnect_script()",
         [&] { return target.executeDisconnectScript(); }, false},
        {"Executing debug begin script target_debug_begin_script()",
         [&] { return target.executeDebugBeginScript(); }, false},
        {nullptr, [&] { return target.executeDebugEndScript(); }, false},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.line != nullptr ? row.line : "debug end");
        for (const bool running : {false, true}) {
            host.lines.clear();
            scripts.texts.clear();
            scripts.running = running;
            scripts.succeeds = !running;
            EXPECT_EQ(row.run(), !running || !row.alsoWhileOneRuns);
            const bool ran = !running || row.alsoWhileOneRuns;
            EXPECT_EQ(scripts.texts.size(), ran ? 1u : 0u);
            EXPECT_EQ(host.lines, ran && row.line != nullptr ? Lines{row.line} : Lines{});
        }
    }
    scripts.running = false;
    host.lines.clear();
    target.reset(true, true);
    target.reset(true, false);
    EXPECT_EQ(host.lines,
              (Lines{"[4000] Preparing target for download",
                     "Executing reset script target_reset_script()", "[]",
                     "[4000] Preparing target for user application",
                     "Executing reset script target_reset_script()", "[]"}));
}

TEST_F(TargetContractTest, MenuEntriesComeFromAScript)
{
    FakeScripts scripts;
    Solution solution;
    solution.set("target_extras_script", "extras()");
    target.syncSettingsWithProject(solution.project(), QStringLiteral("Common"));
    scripts.result = {QStringLiteral("Blink"), QStringLiteral("blink()"), QStringLiteral("blink()"),
                      QStringLiteral("other()")};
    EXPECT_TRUE(target.getMenuEntries().isEmpty()) << "not connected";
    target.connect(true);
    EXPECT_EQ(target.getMenuEntries(),
              (QStringList{QStringLiteral("Blink"), QStringLiteral("blink()")}));
    scripts.texts.clear();
    target.executeMenuEntry(QStringLiteral("blink()"));
    target.executeMenuEntry(QStringLiteral("other()"));
    target.executeMenuEntry(QStringLiteral("none"));
    EXPECT_EQ(scripts.texts, (Lines{"\nother()"})) << "text at an odd place is no name";
    EXPECT_EQ(host.lines.back(), "Executing target extra blink()");
}

TEST_F(TargetContractTest, PropertiesAndCapabilities)
{
    PropertyValueList properties;
    target.getProperties(properties);
    ASSERT_EQ(properties.size(), 1u);
    EXPECT_EQ(properties.at(0)->propertyClass()->saveName(), QStringLiteral("loaderEraseAll"));
    target.connect(true);
    PropertyValueList connected;
    target.getProperties(connected);
    ASSERT_EQ(connected.size(), 2u);
    EXPECT_EQ(connected.at(0)->propertyClass()->shortDescription(), QStringLiteral("Device Type"));
    EXPECT_TRUE(connected.at(0)->readOnly());
    EXPECT_EQ(connected.at(0)->toString(), QStringLiteral("MSP430F149"));
    target.setLoaderEraseAll(true);
    EXPECT_TRUE(target.loaderEraseAll());
    target.setCapability(TargetCapability::Erase, false);
    EXPECT_EQ(target.capabilities(), 0x47fu);
    EXPECT_TRUE(TargetCapability::canVerify(target.capabilities()));
    EXPECT_FALSE(TargetCapability::canVerify(target.capabilities() | TargetCapability::NoVerify));
    EXPECT_EQ(target.addressString(0x1F), QStringLiteral("001f"));
    target.disconnect();
    target.reconnect();
    EXPECT_FALSE(target.isConnected());
}

TEST_F(TargetContractTest, ScriptsReachTheTarget)
{
    target.connect(true);
    ESContext context;
    target.installScriptObject(&context);
    const auto eval = [&](const char* text) {
        const ESCompletion completion = context.eval(QString::fromLatin1(text));
        return completion.kind == ESCompletion::Exception
            ? "!" + context.toString(completion.value).toStdString()
            : context.toString(completion.value).toStdString();
    };
    EXPECT_EQ(eval("TargetInterface.pokeByte(0x200, 0x1ff); TargetInterface.peekByte(0x200)"),
              "255");
    EXPECT_EQ(eval("TargetInterface.pokeUint16(0x200, 0x12345); TargetInterface.peekUint16(0x200)"),
              "9029");
    EXPECT_EQ(eval("TargetInterface.pokeUint32(0x200, 0x80000001);"
                   "TargetInterface.peekUint32(0x200) == 2147483649"),
              "true");
    EXPECT_EQ(eval("TargetInterface.pokeBytes(0x300, [1, 2, 3]);"
                   "TargetInterface.pokeBytes(0x303, 2, [4, 5, 6]);"
                   "TargetInterface.peekBytes(0x300, 6).toString()"),
              "1,2,3,4,5,255");
    EXPECT_EQ(eval("TargetInterface.pokeMultUint16(0x300, [258, -1]);"
                   "TargetInterface.peekMultUint16(0x300, 2).toString()"),
              "258,65535");
    EXPECT_EQ(eval("TargetInterface.pokeMultUint32(0x300, [65536]);"
                   "TargetInterface.peekMultUint32(0x300, 1).toString()"),
              "65536");
    EXPECT_EQ(eval("TargetInterface.pokeBytes(0, 5)").front(), '!');
    EXPECT_EQ(eval("TargetInterface.peekBytes(0, 0x7fffffff)").front(), '!');
    EXPECT_EQ(eval("TargetInterface.getProjectProperty('nothing')"), "undefined");
    EXPECT_EQ(eval("TargetInterface.readBinary('/no/such')"), "undefined");
    eval("TargetInterface.setDeviceTypeProperty('X1'); TargetInterface.message('hello');"
         "TargetInterface.go()");
    EXPECT_EQ(target.deviceId(), QStringLiteral("X1"));
    EXPECT_EQ(target.goes, 1);
    EXPECT_EQ(host.lines, (Lines{"hello"}));
    try {
        eval("TargetInterface.error('stop')");
        FAIL();
    } catch (const HException& failure) {
        EXPECT_EQ(failure.message(), "stop");
    }
    EXPECT_EQ(host.lines.back(), "error: stop");
    EXPECT_EQ(eval("1 + 1"), "2") << "the context goes on";
    target.disconnect();
    EXPECT_THROW(eval("TargetInterface.peekByte(0)"), HException);
}

TEST_F(TargetContractTest, NativeModulesAreLoadedBySections)
{
    Pool pool;
    const CurrentPool current(&pool);
    auto* const module = new TOBFModule;
    const auto section = [&](const char* name, unsigned flags) {
        auto* made = new TOBFSection(HString::intern(name));
        made->setFlags(flags);
        module->addSection(made);
        return made;
    };
    const auto word = [](TOBFSection* in, int value, int pc) {
        auto* insn = new TOBFDefBytesInsn(new TOBFConstExpr(value), 2);
        insn->setPC(pc);
        insn->encode();
        in->addInsn(insn);
    };
    TOBFSection* const code = section("CODE", 1 | TOBFSection::LoadFlag);
    for (int i = 0; i < 3; ++i)
        word(code, 0x1100 + i, 0x8000 + 2 * i);
    word(code, 0x2233, 0x9000);
    word(section("UDATA0", 3), 0x4444, 0x200);
    section("EMPTY", 1 | TOBFSection::LoadFlag);

    target.loadTOBFModule(module);
    EXPECT_EQ(target.code.peekUint16(0x8004), 0x1102);
    EXPECT_EQ(target.code.peekUint16(0x9000), 0x2233);
    EXPECT_EQ(target.code.peekUint16(0x8006), 0xFFFF) << "the gap stays";
    EXPECT_EQ(target.code.peekUint16(0x200), 0xFFFF) << "a section that isn't loaded";
    EXPECT_EQ(host.lines, (Lines{"bar Programming 8 bytes of CODE"}));
    EXPECT_EQ(host.at, 8);
    EXPECT_EQ(host.end, 8);

    target.code.addressRanges().add(0x8000, 0x8FFF, false);
    try {
        target.checkTOBFModuleMemoryExists(module);
        FAIL();
    } catch (const HException& failure) {
        EXPECT_EQ(failure.message(), "Section CODE is too big for target");
    }
    EXPECT_EQ(host.lines.back(), "Section CODE is too big for target (4)");
    target.code.addressRanges().add(0x9000, 0x9001, false);
    target.checkTOBFModuleMemoryExists(module);
}

TEST(TargetInterfaceFactory, MakesTargetsByTheirNames)
{
    TargetInterfaceFactory* const factory = TargetInterfaceFactory::instance();
    EXPECT_STREQ(factory->classnameFromShortname("sim"), "MSP430Monitor");
    EXPECT_STREQ(factory->classnameFromShortname("msp430_dll"), "MSP430DLLTargetInterface");
    EXPECT_EQ(factory->classnameFromShortname("SIM"), nullptr);
    ASSERT_NE(factory->create("MSP430Monitor"), nullptr);
    EXPECT_EQ(factory->create("Nothing"), nullptr);
}

namespace {

/// A chain of devices whose registers are bits: an instruction register captures ...01, and the
/// data register is the IDCODE after a reset, else one bit of bypass.
class FakeChain : public TargetJTAGInterface {
public:
    struct Device {
        unsigned irLength;
        unsigned idcode; ///< 0 for none
    };
    explicit FakeChain(std::vector<Device> devices) : m_devices(std::move(devices)) { }

    unsigned readBits(unsigned first, unsigned last) override
    {
        unsigned value = 0;
        for (unsigned i = first; i <= last; ++i)
            value |= static_cast<unsigned>(m_captured[i]) << (i - first);
        return value;
    }
    void setBits(unsigned value, unsigned first, unsigned last) override
    {
        for (unsigned i = first; i <= last; ++i)
            m_out[i] = (value >> std::min(i - first, 31u) & 1) != 0;
    }
    void shiftInstructionRegister(unsigned bits, bool) override
    {
        std::deque<bool> chain;
        for (const Device& device : m_devices)
            for (unsigned i = 0; i < device.irLength; ++i)
                chain.push_back(i == 0);
        shift(chain, bits);
        m_reset = false;
    }
    void shiftDataRegister(unsigned bits, bool) override
    {
        std::deque<bool> chain;
        for (const Device& device : m_devices)
            if (m_reset && device.idcode != 0)
                for (unsigned i = 0; i < 32; ++i)
                    chain.push_back((device.idcode >> i & 1) != 0);
            else
                chain.push_back(false);
        shift(chain, bits);
    }
    void setTMS(bool high) override { m_tms = high; }
    void setTDI(bool) override { }
    void cycleTCK() override
    {
        m_highs = m_tms ? m_highs + 1 : 0;
        m_reset |= m_highs >= 5;
    }

private:
    void shift(std::deque<bool>& chain, unsigned bits)
    {
        for (unsigned i = 0; i < bits; ++i) {
            chain.push_back(m_out[i]);
            m_captured[i] = chain.front();
            chain.pop_front();
        }
    }

    std::vector<Device> m_devices;
    std::array<bool, MaximumScan> m_out{}, m_captured{};
    bool m_tms = false, m_reset = false;
    int m_highs = 0;
};

} // namespace

TEST(TargetJTAGInterface, ProbesTheChain)
{
    FakeChain chain({{4, 0x3F0F0F0F}, {8, 0}, {5, 0x07926477}});
    EXPECT_EQ(chain.detectScanChainLength(true, 9999), 17u);
    EXPECT_EQ(chain.detectScanChainLength(false, 100), 3u);
    unsigned idcodes[4] = {}, lengths[4] = {}, count = 4, irBits = 0, devices = 0;
    chain.probeJTAGDevices(idcodes, count, irBits, lengths, devices);
    EXPECT_EQ(irBits, 17u);
    EXPECT_EQ(devices, 3u);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ((std::vector<unsigned>(lengths, lengths + 3)), (std::vector<unsigned>{4, 8, 5}));
    EXPECT_EQ((std::vector<unsigned>(idcodes, idcodes + 3)),
              (std::vector<unsigned>{0x3F0F0F0F, 0, 0x07926477}));
    count = 1;
    chain.probeJTAGDevices(idcodes, count, irBits, lengths, devices);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(devices, 3u) << "counted beyond the room";
    EXPECT_EQ(FakeChain({}).detectScanChainLength(true, 100), 0u);
}

TEST(TargetJTAGInterface, IdentifiesByTheFirstEntryThatFits)
{
    TestFolder folder;
    const QString file = QString::fromStdString(
        folder.write("devices.xml",
                     "<devices><device idcode=\"0x0F0F0F0F\" mask=\"0x0FFFFFFF\" type=\"ARM7\"/>"
                     "<device idcode=\"0\" mask=\"0\" type=\"AVRX\"/></devices>"));
    DeviceType type = DeviceType::Unknown;
    EXPECT_TRUE(TargetJTAGInterface::identifyDevice(file, 0x3F0F0F0F, type));
    EXPECT_EQ(type, DeviceType::ARM7);
    EXPECT_TRUE(TargetJTAGInterface::identifyDevice(file, 1, type));
    EXPECT_EQ(type, DeviceType::AVRX);
    EXPECT_FALSE(TargetJTAGInterface::identifyDevice(QStringLiteral("/no/such"), 1, type));
}
