#include "build/memorymap/MemoryMap.h"

#include "TestFolder.h"
#include "base/QTx.h"
#include "build/memorymap/MemoryMapOpenFiles.h"
#include "build/memorymap/SimpleExpressionParser.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QString text(const std::string& text) { return QString::fromStdString(text); }

std::string names(const QList<MemoryMapElement*>& elements)
{
    QStringList list;
    for (const MemoryMapElement* element : elements)
        list.append(element->name());
    return list.join(u' ').toStdString();
}

MemoryMapElement* named(const MemoryMap& map, const char* name)
{
    for (MemoryMapElement* element : map.getAllElements()) {
        if (element->name() == QLatin1StringView(name))
            return element;
    }
    return nullptr;
}

constexpr const char* Device = R"xml(<!DOCTYPE Board_Memory_Definition_File>
<Root name="board">
  <MemorySegment name="RAM" start="0x200" size="512" addressSpace="data">
    <ProgramSection name="IDATA0" start="+0x10" size="4*8" load="Yes"/>
    <ProgramSection name="UDATA0"/>
  </MemorySegment>
  <Group>
    <MemorySegment name="FLASH" start="0x1100" size="LAST-FIRST"/>
  </Group>
  <RegisterGroup name="Timer" start="256">
    <Register name="TACTL" start="+4" size="2" access="ReadOnly">
      <BitField name="TAIFG" start="0"/>
      <BitField name="ID" start="6" size="2"><Enum name="DIV8" start="3"/></BitField>
      <BitField name="2 wide" start="8" size="0x2"/>
    </Register>
    <Register name="TAR" start="0x170" size="2"/>
    <RegisterGroup name="CCR" start="+0x20"><Register name="CCR0" start="+2"/></RegisterGroup>
    <Register name="after" start="+6"/>
  </RegisterGroup>
  <Register name="banked" start="(@R4)" size="2"><BitField name="B" start="1"/></Register>
</Root>
)xml";

} // namespace

TEST(SimpleExpressionParser, EvaluatesConstants)
{
    struct {
        const char* text;
        std::optional<quint64> value; ///< nothing: not an expression of constants
    } const cases[] = {
        {"0", 0},
        {"42", 42},
        {"010", 10},
        {"0x1F", 31},
        {"0xffffffff", 0xffffffff},
        {"0x", 0},
        {" 1 + 2 * 3 ", 7},
        {"(1+2)*3", 9},
        {"10-4-3", 3},
        {"100/7/2", 7},
        {"100%7", 2},
        {"1<<4|1", 17},
        {"1<<2+1", 8},
        {"0xff & ~0xf ^ 1", 0xf1},
        {"-1", ~quint64(0)},
        {"+4", 4},
        {"- - 4", 4},
        {"-8>>1", static_cast<quint64>(-4)},
        {"1<<64", 0},
        {"1<<-1", 0},
        {"3>2 == 1", 1},
        {"2<1 || 5", 1},
        {"!0 && 0", 0},
        {"!5", 0},
        {"(1==1)+0", 1},
        {"9223372036854775807+1", quint64(1) << 63},
        {"(-9223372036854775807-1)/-1", quint64(1) << 63},
        // What stands behind an expression.
        {"5 6", 5},
        {"5)", 5},
        {"5 bytes", 5},
        {"", {}},
        {"  ", {}},
        {nullptr, {}},
        {"RAM", {}},
        {"@R4", {}},
        {"1+", {}},
        {"1/0", {}},
        {"1%0", {}},
        {"(1", {}},
        {"()", {}},
        {"1.5", {}},
        {"1,2", {}},
        {"1?2:3", {}},
        {"5=5", {}},
        {"5+=5", {}},
        {"5++", {}},
        {"++5", {}},
        {"5(1)", {}},
        {"(int)5", {}},
        {"sizeof(5)", {}},
        {"(1==1)*2", {}},
        {"-(1==1)", {}},
        {"\"5\"", {}},
        {"5 #", {}},
    };
    for (const auto& [expression, value] : cases) {
        bool ok = !value.has_value();
        const quint64 found = SimpleExpressionParser::instance().getUInteger(expression, ok);
        EXPECT_EQ(ok, value.has_value()) << expression;
        EXPECT_EQ(found, value.value_or(0)) << expression;
    }
    for (const char* deep : {"(", "-", "!", "1+("}) {
        bool ok = true;
        const std::string expression = text(deep).repeated(100000).toStdString() + "1";
        SimpleExpressionParser::instance().getUInteger(expression.c_str(), ok);
        EXPECT_FALSE(ok) << deep;
    }
}

TEST(MemoryMap, ComputesAddressesAndSizes)
{
    MemoryMap map;
    ASSERT_TRUE(map.loadFromString(QString::fromUtf8(Device)));
    const std::tuple<const char*, quint32, quint32> cases[] = {
        {"RAM", 0x200, 512}, {"IDATA0", 0x210, 32}, {"UDATA0", 0, 0}, {"FLASH", 0x1100, 0},
        {"TACTL", 260, 2},   {"TAIFG", 0, 0},       {"ID", 6, 2},     {"DIV8", 3, 0},
        {"2 wide", 8, 2},    {"TAR", 0x170, 2},     {"CCR", 288, 0},  {"CCR0", 290, 0},
        {"after", 262, 0},
    };
    for (const auto& [name, address, size] : cases) {
        const MemoryMapElement* element = named(map, name);
        EXPECT_EQ(element->address(), address) << name;
        EXPECT_EQ(element->size(), size) << name;
    }
    EXPECT_TRUE(named(map, "FLASH")->hasSize());
    EXPECT_EQ(named(map, "FLASH")->sizeText(), u"LAST-FIRST"_s);
    EXPECT_FALSE(named(map, "UDATA0")->hasAddress());
    EXPECT_TRUE(named(map, "TACTL")->isReadOnly());
}

TEST(MemoryMap, AnswersByTypeAndName)
{
    MemoryMap map;
    ASSERT_TRUE(map.loadFromString(QString::fromUtf8(Device)));
    EXPECT_EQ(names(map.getSegments(false)), "RAM FLASH");
    EXPECT_EQ(names(map.getSegments(true)), "FLASH RAM");
    MemoryMapElement* ram = map.getSegment(u"RAM"_s);
    ASSERT_NE(ram, nullptr);
    EXPECT_EQ(names(map.getSections(ram, true)), "IDATA0 UDATA0");
    EXPECT_EQ(names(map.getSections(ram, false)), "UDATA0 IDATA0");
    EXPECT_EQ(ram->addressSpace(), u"data"_s);
    EXPECT_EQ(map.getSegment(u"ROM"_s), nullptr);
    using Element = MemoryMapElement;
    // A group within a group isn't looked into, but is found by its name.
    QList<Element*> groups;
    MemoryMap::getElementsOfType(map.root(), Element::RegisterGroup, false, groups);
    EXPECT_EQ(names(groups), "Timer");
    EXPECT_EQ(MemoryMap::getNamedElementOfType(map.root(), u"CCR"_s, Element::RegisterGroup),
              named(map, "CCR"));
    EXPECT_EQ(map.root()->type(), Element::Root);
    EXPECT_EQ(named(map, "DIV8")->type(), Element::Enum);
    EXPECT_EQ(map.getAllElements().at(4)->type(), Element::Unsupported);
}

TEST(MemoryMap, GivesRegistersAsExpressions)
{
    MemoryMap map;
    ASSERT_TRUE(map.loadFromString(QString::fromUtf8(Device)));
    EXPECT_EQ(named(map, "TACTL")->getRegisterExpression(),
              u"*(register 2 TAIFG 0 1 ID 6 2 \"2 wide\" 8 2;*)0x104"_s);
    EXPECT_EQ(named(map, "CCR0")->getRegisterExpression(), u"*(register 1;*)0x122"_s);
    EXPECT_EQ(named(map, "banked")->getRegisterExpression(), u"(register 2 B 1 1;)(@R4)"_s);
}

TEST(MemoryMap, ChangesAttributes)
{
    MemoryMap map;
    ASSERT_TRUE(map.loadFromString(
        u"<Root><RegisterGroup start='0x100'><Register name='R'/></RegisterGroup></Root>"_s));
    MemoryMapElement* element = named(map, "R");
    element->setAddress(u"+2"_s);
    EXPECT_EQ(element->address(), 0x102U);
    const std::tuple<const char*, const char*, quint32> sizes[] = {
        {"0x10", "16", 16}, {"4", "4", 4}, {"SIZE", "SIZE", 0}};
    for (const auto& [given, stored, number] : sizes) {
        element->setSize(text(given));
        EXPECT_EQ(element->sizeText(), text(stored));
        EXPECT_EQ(element->size(), number);
        element->setAlignment(text(given));
        EXPECT_EQ(element->alignment(), text(stored));
    }
    element->setLoad(u"Yes"_s);
    element->setSize({});
    EXPECT_FALSE(element->hasSize());
    element->setAlignment({});
    EXPECT_EQ(map.toBytes(0),
              "<Root>\n<RegisterGroup start=\"0x100\">\n<Register name=\"R\" start=\"+2\" "
              "load=\"Yes\"/>\n</RegisterGroup>\n</Root>\n");
}

TEST(MemoryMap, ImportsFiles)
{
    const TestFolder folder;
    std::filesystem::create_directory(folder / "sub");
    folder.write("sub/part.xml",
                 "<Root name='part'><MemorySegment name='P' start='$(at)'/>"
                 "<Import filename='../map.xml'/></Root>");
    const std::string own = "<Root>\n  <MemorySegment name=\"A\" start=\"1\"/>\n"
                            "  <Import filename=\"sub/part.xml\"/>\n"
                            "  <Import filename=\"map.xml\"/>\n"
                            "  <Import filename=\"none.xml\"/>\n"
                            "  <Import filename=\"/dev/zero\"/>\n"
                            "  <MemorySegment name=\"B\" start=\"2\"/>\n</Root>\n";
    MemoryMap map;
    ASSERT_TRUE(map.load(text(folder.write("map.xml", own)), u"at=0x40"_s, true));
    EXPECT_EQ(names(map.getSegments(false)), "A P A B B");
    EXPECT_EQ(map.getSegment(u"P"_s)->address(), 0x40U);
    EXPECT_EQ(named(map, "part")->import()->attribute("filename"), u"sub/part.xml"_s);
    EXPECT_EQ(map.name(), u"map.xml"_s);

    ASSERT_TRUE(map.store(text(folder / "copy.xml")));
    EXPECT_EQ(folder.read("copy.xml"), own);
    EXPECT_EQ(names(map.getSegments(false)), "A P A B B");

    ASSERT_TRUE(map.load(text(folder / "map.xml"), u"at=0x40"_s, false));
    EXPECT_EQ(map.getSegment(u"P"_s)->address(), 0U);
    EXPECT_FALSE(map.load(text(folder / "none.xml"), {}, true));
    EXPECT_FALSE(map.errorText().isEmpty());
    EXPECT_EQ(names(map.getSegments(false)), "");
    EXPECT_FALSE(map.loadFromString(u"<Root>"_s));
    EXPECT_FALSE(map.load(text(folder.write("gone.xml", "<if host='X'/>")), {}, true));
}

TEST(MemoryMap, IsCachedUntilAFileChanges)
{
    const TestFolder folder;
    const QString path = text(folder.write("map.xml",
                                           "<Root name='$(n)'><Import filename='i.xml'/>"
                                           "<Import filename='later.xml'/></Root>"));
    const QString import =
        text(folder.write("i.xml", "<Root><include filename='inner.xml'/></Root>"));
    const QString inner = text(folder.write("inner.xml", "<Register/>"));
    const auto open = [&](const char* macros) {
        return MemoryMapOpenFiles::getMemoryMapFile(path, text(macros), true);
    };
    const auto touch = [](const QString& file) {
        QTx::setFileTimes(file, QTx::getUTCModificationTime(file).addSecs(-10));
    };
    MemoryMap* map = open("n=1");
    ASSERT_NE(map, nullptr);
    XMLElement* root = map->root();
    root->setAttribute("mark", u"first"_s);
    const auto isKept = [&](const char* macros) {
        XMLElement* now = open(macros)->root();
        const bool kept = now->hasAttribute("mark");
        now->setAttribute("mark", {});
        return kept;
    };
    EXPECT_TRUE(isKept("n=1"));
    EXPECT_FALSE(isKept("n=2"));
    EXPECT_EQ(open("n=2")->root()->name(), u"2"_s);
    EXPECT_TRUE(isKept("n=2"));
    touch(path);
    EXPECT_FALSE(isKept("n=2"));
    touch(import);
    EXPECT_FALSE(isKept("n=2"));
    touch(inner);
    EXPECT_FALSE(isKept("n=2"));
    folder.write("later.xml", "<Root/>");
    EXPECT_FALSE(isKept("n=2"));
    EXPECT_TRUE(isKept("n=2"));
    EXPECT_EQ(MemoryMapOpenFiles::getMemoryMapFile(text(folder / "./map.xml"), u"n=2"_s, true),
              open("n=2"));
    QTx::removeFile(path);
    EXPECT_EQ(open("n=2"), nullptr);
    MemoryMapOpenFiles::clear();
}
