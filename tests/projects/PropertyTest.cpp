#include "ProjectTestSupport.h"
#include "base/HException.h"
#include "base/XMLDocument.h"
#include "projects/properties/PropertyValue.h"
#include "projects/properties/StringProvider.h"

#include <QAction>
#include <QActionGroup>
#include <QColor>
#include <QFont>
#include <QGuiApplication>
#include <QMap>

#include <gmock/gmock.h>

using namespace Qt::Literals::StringLiterals;
using Type = PropertyClass::Type;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const PropertyClass stringClass(u"s"_s, Type::String, u"P"_s, u"G"_s, u"short"_s, u"long"_s,
                                u"dflt"_s);
const PropertyClass booleanClass(u"b"_s, u"P"_s, u"G"_s, u"short"_s, u"long"_s, true);
const PropertyClass modeClass(u"e"_s, Type::Enumeration, {u"Off"_s, u"Quick"_s, u"Full"_s}, u"P"_s,
                              u"G"_s, u"short"_s, u"long"_s, u"Quick"_s);
const PropertyClass rangeClass(u"r"_s, Type::IntegerRange, 2, 10, u"P"_s, u"G"_s, u"short"_s,
                               u"long"_s, 3);
const PropertyClass hexClass(u"h"_s, Type::IntegerHex, u"P"_s, u"G"_s, u"short"_s, u"long"_s);
const PropertyClass listClass(u"l"_s, Type::StringList, u"P"_s, u"G"_s, u"short"_s, u"long"_s);

TEST(PropertyClassTest, TypeNames)
{
    const char* const names[] = {"Boolean", "Integer",        "IntegerHex",   "IntegerRange",
                                 "String",  "FileName",       "ProjFileName", "StringList",
                                 "DirPath", "DirPathList",    "Enumeration",  "Color",
                                 "Font",    "FixedPitchFont", "Custom"};
    for (int i = 0; i < 15; ++i) {
        const QString name = QString::fromLatin1(names[i]);
        Type type = Type::Custom;
        EXPECT_TRUE(PropertyClass::typeFromName(name, type));
        EXPECT_EQ(static_cast<int>(type), i);
        EXPECT_EQ(PropertyClass::typeName(type), name);
    }
    Type type = Type::Font;
    EXPECT_FALSE(PropertyClass::typeFromName(u"boolean"_s, type));
    EXPECT_EQ(type, Type::Font);
}

TEST(PropertyClassTest, FromXmlDescriptions)
{
    XMLDocument document;
    ASSERT_TRUE(document.loadFromBytes(
        "<properties>"
        "<p name='stack' type='IntegerRange' group='Linker' short='Stack' long='Stack size'"
        " default='256' minimum='0x10' maximum='0065534' specialvalue='None'/>"
        "<p name='core' type='Enumeration' group='Target' short='Core' long=''"
        " enumeration='MSP430;MSP430X'/>"
        "<p name='odd' type='Nonsense' maximum='-1'/>"
        "</properties>"));
    const XMLElement* element = document.documentElement()->firstChildElement();
    const PropertyClass stack(*element);
    EXPECT_EQ(stack.saveName(), u"stack"_s);
    EXPECT_EQ(stack.type(), Type::IntegerRange);
    EXPECT_EQ(stack.group(), u"Linker"_s);
    EXPECT_EQ(stack.shortDescription(), u"Stack"_s);
    EXPECT_EQ(stack.longDescription(), u"Stack size"_s);
    EXPECT_EQ(stack.defaultValue(), u"256"_s);
    EXPECT_EQ(stack.specialValueText(), u"None"_s);
    EXPECT_EQ(stack.minimum(), 16);
    EXPECT_EQ(stack.maximum(), 65534);

    element = element->nextElement();
    const PropertyClass core(*element);
    EXPECT_THAT(core.enumerates(), ElementsAre(u"MSP430"_s, u"MSP430X"_s));
    EXPECT_FALSE(core.readOnly());
    EXPECT_TRUE(core.perConfiguration());

    const PropertyClass odd(*element->nextElement());
    EXPECT_EQ(odd.type(), Type::String);
    EXPECT_EQ(odd.maximum(), 0);
}

class MapProvider : public StringProvider {
public:
    explicit MapProvider(QMap<QString, QString> texts) : m_texts(std::move(texts))
    {
        stringProvider = this;
    }
    ~MapProvider() override { stringProvider = nullptr; }
    QString string(const QString& key) const override { return m_texts.value(key); }

private:
    QMap<QString, QString> m_texts;
};

TEST(PropertyClassTest, KeyedTextsComeFromTheProvider)
{
    const MapProvider provider({{u"Bar.page"_s, u"Windows"_s},
                                {u"Bar.group"_s, u"Bars"_s},
                                {u"Bar.short"_s, u"Status bar"_s},
                                {u"Bar.long"_s, u"Shows the bar"_s},
                                {u"Bar.default"_s, u"Show"_s},
                                {u"Bar.enumerates"_s, u"Hide;Show"_s},
                                {u"Depth.suffix"_s, u" files"_s},
                                {u"Depth.minimum"_s, u"1"_s},
                                {u"Depth.maximum"_s, u"9"_s}});
    const PropertyClass bar(u"Bar"_s, Type::Boolean);
    EXPECT_EQ(bar.page(), u"Windows"_s);
    EXPECT_EQ(bar.group(), u"Bars"_s);
    EXPECT_EQ(bar.shortDescription(), u"Status bar"_s);
    EXPECT_EQ(bar.longDescription(), u"Shows the bar"_s);
    EXPECT_THAT(bar.enumerates(), ElementsAre(u"Hide"_s, u"Show"_s));
    SimplePropertyValue value(&bar);
    EXPECT_TRUE(value.toBool());
    value.setValue(false);
    EXPECT_EQ(value.propertyValue(), u"Hide"_s);

    const PropertyClass depth(u"Depth"_s, Type::IntegerRange);
    EXPECT_EQ(depth.suffix(), u" files"_s);
    EXPECT_EQ(depth.minimum(), 1);
    EXPECT_EQ(depth.maximum(), 9);
    const PropertyClass limited(u"Depth"_s, Type::IntegerRange, 3, 4);
    EXPECT_EQ(limited.maximum(), 4);
}

TEST(PropertyClassTest, KeyedTextsAreEmptyWithoutAProvider)
{
    const PropertyClass bar(u"Bar"_s, Type::Boolean);
    EXPECT_TRUE(bar.page().isEmpty());
    EXPECT_THAT(bar.enumerates(), ElementsAre(u"No"_s, u"Yes"_s));
    EXPECT_FALSE(SimplePropertyValue(&bar).toBool());
}

TEST(PropertyValueTest, Booleans)
{
    const struct {
        const char* text;
        bool value;
    } cases[] = {{"Yes", true},
                 {"No", false},
                 {"true", true},
                 {"TRUE", true},
                 {"YES", true},
                 {"1", true},
                 {"0", false},
                 {"no", false},
                 {"2", false},
                 {"nonsense", false},
                 {"", true /* the default */}};
    for (const auto& c : cases)
        EXPECT_EQ(SimplePropertyValue(&booleanClass, QString::fromLatin1(c.text)).toBool(), c.value)
            << c.text;
    EXPECT_EQ(SimplePropertyValue(&booleanClass, u"Yes"_s).toInt(), 1);
    EXPECT_EQ(SimplePropertyValue(&booleanClass, u"true"_s).toInt(), 0);
}

TEST(PropertyValueTest, Numbers)
{
    const struct {
        const PropertyClass* propertyClass;
        const char* text;
        int value;
    } cases[] = {{&rangeClass, "", 3},    {&rangeClass, "7", 7},    {&rangeClass, "0x1F", 31},
                 {&rangeClass, "-4", -4}, {&rangeClass, "x", 0},    {&hexClass, "0x1100", 0x1100},
                 {&modeClass, "Full", 2}, {&modeClass, "Other", 0}, {&modeClass, "", 1},
                 {&modeClass, "2", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(SimplePropertyValue(c.propertyClass, QString::fromLatin1(c.text)).toInt(),
                  c.value)
            << c.text;

    SimplePropertyValue hex(&hexClass);
    for (const int number : {0, 0xFFE0, 0x7FFFFFFF, -1, -0x7FFFFFFF - 1}) {
        hex.setValue(number);
        EXPECT_EQ(hex.toInt(), number) << hex.toString().toStdString();
    }
    hex.setValue(0xFFE0);
    EXPECT_EQ(hex.propertyValue(), u"0xFFE0"_s);
}

TEST(PropertyValueTest, SettersOfTheWrongKindWarn)
{
    const std::string notInteger = "PropertyValue::setValue(int): Setting a non-integer property";
    const std::string notBoolean = "PropertyValue::setValue(int): Setting a non-Boolean property";
    const std::string notAChoice =
        "PropertyValue::setValue(int): Setting an enumeration to a value which isn't in its "
        "enumerates";
    CapturedWarnings warnings;

    SimplePropertyValue text(&stringClass, u"kept"_s);
    text.setValue(5);
    EXPECT_EQ(text.propertyValue(), u"kept"_s);
    EXPECT_THAT(warnings.take(), ElementsAre(notInteger));
    text.setValue(true);
    EXPECT_EQ(text.propertyValue(), u"kept"_s);
    EXPECT_THAT(warnings.take(), ElementsAre(notBoolean, notInteger));

    SimplePropertyValue number(&rangeClass, u"8"_s);
    number.setValue(true);
    EXPECT_EQ(number.propertyValue(), u"1"_s);
    EXPECT_THAT(warnings.take(), ElementsAre(notBoolean));

    for (const int index : {3, -1}) {
        SimplePropertyValue mode(&modeClass, u"Full"_s);
        mode.setValue(index);
        EXPECT_TRUE(mode.propertyValue().isNull());
        EXPECT_THAT(warnings.take(), ElementsAre(notAChoice));
    }

    SimplePropertyValue mode(&modeClass);
    mode.setValue(2);
    SimplePropertyValue flag(&booleanClass);
    flag.setValue(false);
    EXPECT_EQ(mode.propertyValue(), u"Full"_s);
    EXPECT_EQ(flag.propertyValue(), u"No"_s);
    EXPECT_THAT(warnings.take(), IsEmpty());
}

TEST(PropertyValueTest, TextForms)
{
    SimplePropertyValue value(&stringClass);
    EXPECT_EQ(value.toString(), u"dflt"_s);
    value.setValue("plain");
    EXPECT_EQ(value.toString(), u"plain"_s);
    value.setToDefault();
    EXPECT_EQ(value.propertyValue(), u"dflt"_s);

    value.setValue(QRect(-3, 4, 640, 480));
    EXPECT_EQ(value.propertyValue(), u"-3,4,640,480"_s);
    EXPECT_EQ(value.toRect(), QRect(-3, 4, 640, 480));
    value.setValue("1,2,3");
    EXPECT_EQ(value.toRect(), QRect());

    SimplePropertyValue list(&listClass);
    list.setValue(QStringList{u"a;b"_s, u""_s, u"c\\d"_s});
    EXPECT_EQ(list.propertyValue(), u"a\\;b;;c\\\\d"_s);
    EXPECT_THAT(list.toStringList(), ElementsAre(u"a;b"_s, u"c\\d"_s));
    EXPECT_THAT(list.toStringList(true), ElementsAre(u"a;b"_s, u""_s, u"c\\d"_s));
}

TEST(PropertyValueTest, ReadOnlyByItselfOrByItsClass)
{
    PropertyClass propertyClass(u"s"_s, Type::String, {}, {}, {}, {});
    SimplePropertyValue value(&propertyClass);
    EXPECT_FALSE(value.readOnly());
    value.setReadOnly(true);
    EXPECT_TRUE(value.readOnly());
    value.setReadOnly(false);
    propertyClass.setReadOnly(true);
    EXPECT_TRUE(value.readOnly());
}

class CountedValue : public SimplePropertyValue {
public:
    using SimplePropertyValue::SimplePropertyValue;
    ~CountedValue() override { ++deleted; }
    inline static int deleted = 0;
};

TEST(PropertyValueListTest, OwnsOnlyWhenTold)
{
    CountedValue::deleted = 0;
    {
        PropertyValueList owning(true);
        auto* first = new CountedValue(&stringClass);
        owning.appendUnique(first);
        owning.appendUnique(first);
        owning.appendUnique(new CountedValue(&stringClass));
        owning.appendUnique(new CountedValue(&listClass));
        EXPECT_EQ(CountedValue::deleted, 1);
        EXPECT_EQ(owning.size(), 2U);
        EXPECT_EQ(owning.find(&stringClass), first);
        EXPECT_EQ(owning.find(&hexClass), nullptr);
        const PropertyValueList moved = std::move(owning);
        EXPECT_EQ(moved.size(), 2U);
    }
    EXPECT_EQ(CountedValue::deleted, 3);

    CountedValue kept(&stringClass);
    {
        PropertyValueList list;
        EXPECT_FALSE(list.transient());
        kept.setTransient(true);
        list.appendUnique(&kept);
        EXPECT_TRUE(list.transient());
        try {
            list.appendUnique(nullptr);
            ADD_FAILURE() << "null taken";
        } catch (const HException& error) {
            EXPECT_EQ(error.message(), "Bad property value in PropertyValueList::appendUnique");
        }
    }
    EXPECT_EQ(CountedValue::deleted, 3);
}

class PropertyGuiTest : public testing::Test {
protected:
    PropertyGuiTest()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        m_application = std::make_unique<QGuiApplication>(m_count, m_arguments);
    }

private:
    int m_count = 1;
    char m_name[5] = "test";
    char* m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<QGuiApplication> m_application;
};

TEST_F(PropertyGuiTest, ColoursAndFonts)
{
    const PropertyClass color(u"c"_s, u"P"_s, u"G"_s, u"short"_s, u"long"_s, QColor(0, 128, 255));
    EXPECT_EQ(color.type(), Type::Color);
    EXPECT_EQ(color.defaultValue(), u"#0080ff"_s);
    SimplePropertyValue value(&color);
    EXPECT_EQ(value.toColor(), QColor(0, 128, 255));
    value.setValue(QColor(Qt::red));
    EXPECT_EQ(value.propertyValue(), u"#ff0000"_s);
    value.setValue("no colour");
    EXPECT_FALSE(value.toColor().isValid());
    value.setValue(QColor());
    EXPECT_EQ(value.toColor(), QColor(0, 128, 255));

    const PropertyClass fontClass(u"f"_s, Type::Font, {}, {}, {}, {});
    SimplePropertyValue font(&fontClass);
    const QFont fallback(u"Fallback"_s, 9);
    EXPECT_EQ(font.toFont(fallback), fallback);
    const QFont chosen(u"Monospace"_s, 13, QFont::Bold);
    font.setValue(chosen);
    EXPECT_EQ(font.toFont(fallback), chosen);
}

TEST_F(PropertyGuiTest, ActionGroups)
{
    SimplePropertyValue mode(&modeClass);
    QObject parent;
    QActionGroup* group = mode.actionGroup(&parent);
    ASSERT_EQ(group->actions().size(), 3);
    EXPECT_TRUE(group->isExclusive());
    EXPECT_EQ(group->checkedAction()->text(), u"Quick"_s);
    group->actions().last()->trigger();
    EXPECT_EQ(mode.propertyValue(), u"Full"_s);
    EXPECT_EQ(group->checkedAction()->text(), u"Full"_s);
}

} // namespace
