#include "projects/macros/MacroSystem.h"

#include "base/Path.h"
#include "projects/properties/PropertyValue.h"

#include <gtest/gtest.h>

#include <QDate>
#include <QElapsedTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

const MacroMap Macros{{u"a"_s, u"1"_s},       {u"B"_s, u"b"_s},          {u"Ab"_s, u"found"_s},
                      {u"ref"_s, u"$(a)"_s},  {u"open"_s, u"$(a"_s},     {u"empty"_s, u""_s},
                      {u"Date"_s, u"none"_s}, {u"self"_s, u"x$(self)"_s}};

std::string expanded(const std::string& text)
{
    return MacroSystem::replaceMacros(Macros, QString::fromStdString(text)).toStdString();
}

} // namespace

TEST(MacroSystem, ExpandsReferences)
{
    struct {
        const char* text;
        const char* result;
    } const cases[] = {
        {"", ""},
        {"plain", "plain"},
        {"$", "$"},
        {"$5 a$ $$", "$5 a$ $$"},
        {"<$(a)>$(a)", "<1>1"},
        {"$$(a)", "$1"},
        {"$(a)(b)", "1(b)"},
        {"$(empty)", ""},
        {"$(A)", "$(A)"},
        {"$()", "$()"},
        {"$(u)$(a)", "$(u)1"},
        {"$(u(v))", "$(u(v))"},
        {"$(u:x)", "x"},
        {"$(u:)", ""},
        {"$(a:x)", "1"},
        {"$(u:x(y)z:t)", "x(y)z:t"},
        {"$(u::x)", "x"},
        {"$(u::)", ""},
        // Values aren't looked into, unless another pass comes.
        {"$(ref)", "$(a)"},
        {"$(ref)$(u:$(a))", "11"},
        {"$(u:$(a))", "1"},
        {"$(u:$(v:$(a)))", "1"},
        {"$(u::$(a))", "$(a)"},
        // A name is made first.
        {"$(A$(B))", "found"},
        {"$(A$(B):x)", "found"},
        {"$(A$(B)::$(a))", "found"},
        {"$(C$(B):$(a))", "1"},
        {"$(C$(B)::$(a))", "$(a)"},
        {"$(A$(u:$(B)))", "found"},
        {"$(C$(u))", "$(C$(u))"},
        {"$(C$(u):x)", "x"},
        {"$(C$(u):$(a))", "1"},
        // What isn't closed goes, with what stands behind it.
        {"1$(abc", "1"},
        {"1$(a$(a)2", "1"},
        {"$(a) $(", "1 "},
        {"$(open)", "$(a"},
    };
    for (const auto& [text, result] : cases)
        EXPECT_EQ(expanded(text), result) << text;
}

TEST(MacroSystem, ComesToAnEnd)
{
    EXPECT_EQ(expanded("$(self)"), "x$(self)");
    EXPECT_EQ(expanded("$(A:$(A))"), "$(A)");
    EXPECT_EQ(expanded("$(A$(A:$(A)))"), "$(A$(A))");

    // Values that hold themselves: without end, and doubling at each pass.
    const MacroMap endless{{u"loop"_s, u"$(u:$(loop$(e)))"_s},
                           {u"grow"_s, u"$(u:$(grow$(e)))$(u:$(grow$(e)))"_s},
                           {u"wide"_s, QString(100000, u'x')},
                           {u"e"_s, u""_s}};
    QElapsedTimer timer;
    timer.start();
    MacroSystem::replaceMacros(endless, u"$(loop) $(u:$(a))"_s);
    MacroSystem::replaceMacros(endless, u"$(grow)$(u:$(grow))"_s);
    EXPECT_LT(MacroSystem::replaceMacros(endless, u"$(wide)"_s.repeated(10000)).size(), 10000000);
    EXPECT_EQ(MacroSystem::replaceMacros(endless, u"$(wide"_s.repeated(20000)), QString());
    MacroSystem::replaceMacros(endless, u"$(e"_s.repeated(20000) + u")"_s.repeated(20000));
    EXPECT_LT(timer.elapsed(), 60000);
}

TEST(MacroSystem, ComputesDatesAtEachExpansion)
{
    const QDate today = QDate::currentDate();
    const QString date = MacroSystem::replaceMacros(Macros, u"$(Date)"_s);
    // The day may turn between the two.
    EXPECT_TRUE(date == today.toString(u"d MMMM yyyy") || today != QDate::currentDate());

    QString value;
    for (const auto& [name, digits] : {std::pair("TimeHour", 2),
                                       {"TimeMinute", 2},
                                       {"TimeSecond", 2},
                                       {"Time", 8},
                                       {"DateYear", 4}}) {
        EXPECT_TRUE(MacroSystem::dynamicMacro(QLatin1StringView(name), value)) << name;
        EXPECT_EQ(value.size(), digits) << name;
    }
    EXPECT_FALSE(MacroSystem::dynamicMacro(u"HostOS"_s, value));
    // Only what the map holds is expanded.
    EXPECT_EQ(MacroSystem::replaceMacros({}, u"$(Date)"_s), u"$(Date)"_s);
}

TEST(MacroSystem, HoldsTheSystemMacros)
{
    MacroSystem macros;
    macros.setupDefaultSystemMacros(u"/opt/bench/"_s);
    macros.setupPackageMacros(u"/opt/packages"_s);
    const std::pair<const char*, QString> cases[] = {
        {"HostArch", u"x86"_s},
        {"HostOS", u"solaris"_s},
        {"HostEXE", u""_s},
        {"HostDLL", u".so_solaris_x86"_s},
        {"BenchName", u"GantryBench for MSP430"_s},
        {"BenchDir", u"/opt/bench"_s},
        {"BenchMajorVersion", u"2"_s},
        {"BenchRevision", u"7"_s},
        {"PackagesDir", u"/opt/packages"_s},
        {"TargetsDir", u"/opt/packages/targets"_s},
        {"SamplesDir", u"/opt/packages/samples"_s},
        {"none", QString()},
    };
    for (const auto& [name, value] : cases)
        EXPECT_EQ(macros.systemMacro(QLatin1StringView(name)), value) << name;
    EXPECT_TRUE(macros.systemMacros().contains(u"TimeSecond"_s));
}

TEST(MacroSystem, KeepsGlobalMacrosInTheirSetting)
{
    MacroSystem macros;
    EXPECT_TRUE(macros.globalMacros(false).isEmpty());
    macros.setGlobalMacro(u"a"_s, u"lost"_s);

    SimplePropertyValue setting(nullptr, u"HostOS=mine;b=x=y\\;z"_s);
    macros.setGlobalMacrosValue(&setting);
    EXPECT_EQ(macros.globalMacro(u"HostOS"_s), u"mine"_s);
    EXPECT_EQ(macros.globalMacro(u"b"_s), u"x=y;z"_s);
    EXPECT_EQ(macros.globalMacro(u"HostArch"_s), u"x86"_s);
    EXPECT_EQ(macros.globalMacros(false).size(), 2);

    macros.setGlobalMacro(u"HostOS"_s, {});
    macros.setGlobalMacro(u"c"_s, u"C:\\"_s);
    EXPECT_EQ(setting.propertyValue(), u"b=x=y\\;z;c=C:\\\\"_s);
    EXPECT_EQ(macros.globalMacro(u"HostOS"_s), u"solaris"_s);
    EXPECT_EQ(macros.globalMacro(u"c"_s), u"C:\\"_s);
}

TEST(MacroSystem, TurnsListsIntoTextAndBack)
{
    const QStringList lists[] = {
        {}, {u"a"_s}, {u"a;b"_s}, {u"a"_s, u"b\\"_s, u";"_s}, {u"\\;"_s, u"x y"_s}};
    for (const QStringList& list : lists)
        EXPECT_EQ(MacroSystem::stringListFromString(MacroSystem::stringFromStringList(list)), list);
    EXPECT_EQ(MacroSystem::stringFromStringList({u"a;b"_s, u"c\\d"_s}), u"a\\;b;c\\\\d"_s);

    EXPECT_EQ(MacroSystem::stringListFromString(u";a;;b;"_s), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(MacroSystem::stringListFromString(u";a;"_s, true),
              QStringList({u""_s, u"a"_s, u""_s}));

    const MacroMap map =
        MacroSystem::macrosFromStringList({u"a=1=2"_s, u"b"_s, u" c =3"_s, u"a=4"_s});
    EXPECT_EQ(map, MacroMap({{u"a"_s, u"4"_s}, {u"b"_s, u""_s}, {u" c "_s, u"3"_s}}));
    EXPECT_EQ(MacroSystem::stringListFromMacros(map), QStringList({u"c=3"_s, u"a=4"_s, u"b="_s}));
}
