#include "target/msp430/MSP430DeviceLibrary.h"

#include "base/HException.h"
#include "target/DynamicLibrary.h"
#include "target/msp430/MSP430Monitor.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

/// Stands in for the system's loader: a library without exports, or one that isn't there.
class FakeLoader : public DynamicLibraryLoader {
public:
    explicit FakeLoader(bool exists) : m_exists(exists) { DynamicLibraryLoader::setInstance(this); }
    ~FakeLoader() override
    {
        DynamicLibraryLoader::setInstance(nullptr);
        MSP430DeviceLibrary::unload();
    }
    std::unique_ptr<DynamicLibrary> load(const QString& path) override
    {
        asked = path;
        if (!m_exists)
            throw HException("no such library");
        struct Empty : DynamicLibrary {
            void* resolve(const char*) override { return nullptr; }
        };
        return std::make_unique<Empty>();
    }
    QString asked;

private:
    bool m_exists;
};

std::string messageOfConnect(MSP430Monitor& monitor)
{
    try {
        monitor.connect(false);
    } catch (const HException& failure) {
        return failure.message();
    }
    return {};
}

} // namespace

TEST(DeviceLibrary, AMissingOrForeignLibraryIsReported)
{
    MSP430DeviceLibrary::unload();
    MSP430Monitor monitor;
    {
        FakeLoader loader(false);
        EXPECT_EQ(messageOfConnect(monitor), "no such library");
        EXPECT_TRUE(
            loader.asked.endsWith(QStringLiteral("/targets/msp430/msp430devices.so_solaris_x86")))
            << loader.asked.toStdString();
    }
    {
        FakeLoader loader(true);
        EXPECT_EQ(messageOfConnect(monitor), "cannot find symbol \"AllocateMSP430Devices\" in DLL");
        EXPECT_FALSE(monitor.isConnected());
    }
    EXPECT_EQ(messageOfConnect(monitor), "") << "the session is usable once the library is there";
    monitor.disconnect();
    try {
        DynamicLibraryLoader::instance()->load(QStringLiteral("/no/such.so"));
        FAIL();
    } catch (const HException& failure) {
        EXPECT_EQ(failure.message(), "cannot access \"/no/such.so\"");
    }
}

TEST(DeviceLibrary, KnowsTheDataSheetsOfSome)
{
    // SLAS272 (F149), SLAS590 (F5529), SLAS541 (F2619), SLAS735 (G2553).
    const MSP430DevicesPointer devices = MSP430DeviceLibrary::allocate();
    const auto select = [&](const char* name) {
        const int index = devices->find(name);
        devices->select(index);
        return index >= 0;
    };
    ASSERT_TRUE(select("msp430f149"));
    EXPECT_EQ(devices->ramStart(), 0x200u);
    EXPECT_EQ(devices->ramEnd(), 0x9FFu);
    EXPECT_EQ(devices->mainStart(), 0x1100u);
    EXPECT_EQ(devices->vectors(), 16u);
    EXPECT_EQ(devices->multiplierStart(), 0x130u);
    EXPECT_FALSE(devices->extendedRegisters());
    EXPECT_EQ(devices->deviceClass(), 0u);
    ASSERT_TRUE(select("MSP430F5529"));
    EXPECT_EQ(devices->mainEnd(), 0x243FFu);
    EXPECT_EQ(devices->infoSegmentSize(), 128u);
    EXPECT_EQ(devices->multiplierBits(), 32u);
    EXPECT_EQ(devices->multiplierStart(), 0x4C0u);
    EXPECT_EQ(devices->vectors(), 64u);
    EXPECT_EQ(devices->deviceClass(), 4096u);
    EXPECT_EQ(devices->memoryTriggers(), 8) << "SLAS590: EEM L: 8+2";
    EXPECT_EQ(devices->registerTriggers(), 2);
    ASSERT_TRUE(select("MSP430F2619"));
    EXPECT_TRUE(devices->extendedRegisters());
    EXPECT_FALSE(devices->isXv2());
    EXPECT_EQ(devices->mainEnd(), 0x1FFFFu);
    ASSERT_TRUE(select("MSP430G2553"));
    EXPECT_EQ(devices->multiplierBits(), 0u);
    EXPECT_FALSE(select("MSP430F1"));
    EXPECT_STREQ(devices->selectedName(), "generic") << "what isn't there selects device 0";
    const MSP430DevicesPointer other = MSP430DeviceLibrary::allocate();
    select("MSP430F149");
    EXPECT_STREQ(other->selectedName(), "generic") << "each object has its own selection";
}

TEST(DeviceLibrary, EveryRowMakesSense)
{
    const MSP430DevicesPointer devices = MSP430DeviceLibrary::allocate();
    std::set<std::string> names;
    for (int i = 0; i <= devices->highestIndex(); ++i) {
        devices->select(i);
        SCOPED_TRACE(devices->selectedName());
        EXPECT_TRUE(names.insert(devices->name(i)).second);
        EXPECT_TRUE(devices->vectors() == 16 || devices->vectors() == 32
                    || devices->vectors() == 64);
        EXPECT_LT(devices->peripheralEnd(), devices->ramStart());
        EXPECT_LT(devices->ramStart(), devices->ramEnd());
        EXPECT_LT(devices->mainStart(), devices->mainEnd());
        EXPECT_LE(devices->mainEnd(), 0xFFFFFu);
        EXPECT_EQ(devices->multiplierBits() == 0, devices->multiplierStart() == 0);
        EXPECT_TRUE(devices->extendedRegisters() || devices->mainEnd() == 0xFFFF);
        EXPECT_GE(devices->memoryTriggers(), 2);
        EXPECT_GE(devices->combinationTriggers(), devices->memoryTriggers());
        EXPECT_TRUE(devices->hasStateStorage() == devices->hasSequencer());
        EXPECT_GE(devices->clockControlKind(), 0);
        EXPECT_LE(devices->clockControlKind(), 2);
    }
    EXPECT_EQ(names.size(), 387u);
}

TEST(DeviceLibrary, OnlyKnownIdentificationsMatch)
{
    const MSP430DevicesPointer devices = MSP430DeviceLibrary::allocate();
    // The device's part of the rule, over the bytes of a device information.
    const auto matches = [&](int index, const unsigned char* information, unsigned fuses) {
        MSP430MatchRecord record;
        devices->matchRecord(index, record);
        for (std::size_t i = 0; i < record.bytes.size(); ++i)
            if (record.bytes[i] != MSP430MatchRecord::Any
                && record.bytes[i] != information[MSP430MatchRecord::Offsets[i]])
                return false;
        return record.fuseValue == MSP430MatchRecord::Any
            || (record.fuseValue & record.fuseMask) == (record.fuseMask & fuses);
    };
    const auto identified = [&](const unsigned char* information, unsigned fuses) {
        for (int i = 0; i <= devices->highestIndex(); ++i)
            if (matches(i, information, fuses))
                return std::string(devices->name(i));
        return std::string();
    };
    const unsigned char f149[16] = {0xF1, 0x49};
    EXPECT_EQ(identified(f149, 0xF0), "MSP430F149");
    EXPECT_EQ(identified(f149, 0xF2), "MSP430F147");
    const unsigned char f2013[16] = {0xF2, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3};
    EXPECT_EQ(identified(f2013, 0), "MSP430F2013");
    const unsigned char f5438a[16] = {0x05, 0x80};
    EXPECT_EQ(identified(f5438a, 0), "MSP430F5438A") << "SLAS655: 05h at 0x1A04, 80h behind it";
    const unsigned char unknown[16] = {0xFE, 0xFE, 0xFE, 0xFE, 0xFE, 0xFE, 0xFE, 0xFE,
                                       0xFE, 0xFE, 0xFE, 0xFE, 0xFE, 0xFE, 0xFE, 0xFE};
    EXPECT_EQ(identified(unknown, 0xFE), "");
    for (int i = 0; i <= devices->highestIndex(); ++i) {
        SCOPED_TRACE(devices->name(i));
        EXPECT_FALSE(!devices->identificationKnown(i) && matches(i, f149, 0));
    }
    EXPECT_FALSE(devices->identificationKnown(0));
}
