#include "projects/xml/XmlPP.h"
#include "projects/xml/XMLPP2.h"

#include "TestFolder.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// An element is shown as tag{name=value,...}(children), its attributes sorted.

std::string shown(const std::string& tag, const QMap<QString, QString>& attributes,
                  const std::string& children)
{
    QStringList list;
    for (auto it = attributes.begin(); it != attributes.end(); ++it)
        list.append(it.key() + u'=' + it.value());
    return tag + (list.isEmpty() ? "" : "{" + list.join(u',').toStdString() + "}")
        + (children.empty() ? "" : "(" + children + ")");
}

std::string shown(const XMLElement* element)
{
    if (element == nullptr)
        return "nothing";
    QMap<QString, QString> attributes;
    for (const XMLAttribute& attribute : element->attributes())
        attributes.insert(QString::fromUtf8(attribute.name), attribute.text());
    std::string children;
    for (const XMLElement& child : element->children())
        children += (children.empty() ? "" : " ") + shown(&child);
    return shown(element->tag().toStdString(), attributes, children);
}

std::string shown(const QDomNode& node)
{
    if (node.isNull())
        return "nothing";
    if (node.isText())
        return "'" + node.nodeValue().toStdString() + "'";
    QMap<QString, QString> attributes;
    for (int i = 0; i < node.attributes().count(); ++i)
        attributes.insert(node.attributes().item(i).nodeName(),
                          node.attributes().item(i).nodeValue());
    std::string children;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        children += (children.empty() ? "" : " ") + shown(child);
    return shown(node.nodeName().toStdString(), attributes, children);
}

/// Qt's warnings within its scope, one a line.
class Warnings {
public:
    Warnings()
    {
        s_text.clear();
        m_previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
                s_text += text.toStdString() + "\n";
            });
    }
    ~Warnings() { qInstallMessageHandler(m_previous); }
    const std::string& text() const { return s_text; }

private:
    QtMessageHandler m_previous;
    inline static std::string s_text;
};

/// The document that both loaders make of a file with the macros "m=1;n=two"; both if they differ.
std::string both(const TestFolder& folder, const std::string& text, bool expandMacros)
{
    const QString path = QString::fromStdString(folder.write("main.xml", text));
    XMLPP2 own;
    XmlPP qt;
    if (!own.load(path, u"m=1;n=two"_s, expandMacros)
        || !qt.load(path, u"m=1;n=two"_s, expandMacros))
        return "not loaded";
    const std::string first = shown(own.documentElement());
    const std::string second = shown(qt.documentElement());
    return first == second ? first : first + " | " + second;
}

std::string both(const std::string& text, bool expandMacros = false)
{
    const TestFolder folder;
    return both(folder, text, expandMacros);
}

std::string repeated(const std::string& text)
{
    XMLPP2 document;
    document.loadFromBytes(QByteArray::fromStdString(text), u"."_s, u"m=1"_s, false);
    return shown(document.documentElement());
}

constexpr const char* Prefix = "XmlPP::processConditionals(): ";

} // namespace

TEST(XmlPreprocessing, DecidesOnDefinitions)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<r><if host='UNIX'><a/><b/></if><c/></r>", "r(a b c)"},
        {"<r><if host='WIN32,UNIX'><a/></if></r>", "r(a)"},
        {"<r><if host='WIN32'><a/></if><c/></r>", "r(c)"},
        {"<r><if unknown=''><a/></if></r>", "r"},
        {"<r><if platform='MSP430'><a/></if><if ide='GantryBench'><b/></if></r>", "r(a b)"},
        {"<r><if host_os='solaris'><a/></if><if build='RELEASE'><b/></if></r>", "r(a b)"},
        {"<r><ifnot host='WIN32'><a/></ifnot><ifnot host='UNIX'><b/></ifnot></r>", "r(a)"},
        {"<r><ifnot unknown='x'><a/></ifnot></r>", "r(a)"},
        {"<r><ifdef name='host'><a/></ifdef><ifndef name='host'><b/></ifndef></r>", "r(a)"},
        {"<r><ifdef name='no'><a/></ifdef><ifndef name='no'><b/></ifndef><ifdef><c/></ifdef></r>",
         "r(b)"},
        {"<r><if host='UNIX'><if host='UNIX'><a/></if><b/></if><c/></r>", "r(a b c)"},
        {"<r><s><if host='UNIX'/><if host='UNIX'><a/></if></s></r>", "r(s(a))"},
        {"<r><define name='d' value='1'/><if d='1'><a/></if><define name='d' value='2'/>"
         "<if d='1'><b/></if><if d='2'><c/></if></r>",
         "r(a c)"},
        {"<r><if host='UNIX'><define name='d' value=''/></if><ifdef name='d'><a/></ifdef></r>",
         "r(a)"},
        {"<r><switch name='host'><default><a/></default><case value='X,UNIX'><b/><c/></case>"
         "<case value='UNIX'><d/></case></switch><e/></r>",
         "r(b c e)"},
        {"<r><switch name='host'><case value='X'><a/></case><default><b/></default></switch></r>",
         "r(b)"},
        {"<r><switch name='no'><case value=''><a/></case></switch><b/></r>", "r(b)"},
        {"<r><switch name='host'><case value='UNIX'><if host='UNIX'><a/></if></case></switch></r>",
         "r(a)"},
        {"<if host='UNIX'><a/></if>", "a"},
        {"<if host='X'><a/></if>", "nothing"},
        {"<r for='x'><forth/></r>", "r{for=x}(forth)"},
    };
    for (const auto& [text, result] : cases)
        EXPECT_EQ(both(text), result) << text;
}

TEST(XmlPreprocessing, ExpandsMacrosInAttributes)
{
    EXPECT_EQ(both("<r a='$(m)$(x)'><b c='$(n)'/></r>", true), "r{a=1$(x)}(b{c=two})");
    EXPECT_EQ(both("<r a='$(m)'><b c='$(n)'/></r>", false), "r{a=$(m)}(b{c=$(n)})");
    EXPECT_EQ(both("<r><define name='d' value='$(n)'/><if d='two'><a/></if></r>", true), "r(a)");

    macroSystem = new MacroSystem;
    EXPECT_EQ(both("<r a='$(HostOS)$(m)'/>", true), "r{a=solaris1}");
    delete macroSystem;
    macroSystem = nullptr;
}

TEST(XmlPreprocessing, DropsFaultyElementsWithAWarning)
{
    struct {
        const char* element;
        std::string warning;
    } const cases[] = {
        {"<if host='UNIX' a='b'><x/></if>", "one condition required for <if[not]>"},
        {"<ifnot><x/></ifnot>", "one condition required for <if[not]>"},
        {"<define name='d'/>", "missing name and/or value in <define>"},
        {"<define value='d'/>", "missing name and/or value in <define>"},
        {"<include/>", "missing filename in <include>"},
        {"<include filename='/none.xml'/>", "couldn't open include file /none.xml"},
        {"<include filename='/dev/zero'/>", "couldn't open include file /dev/zero"},
    };
    for (const auto& [element, warning] : cases) {
        const Warnings warnings;
        EXPECT_EQ(both(std::string("<r><a/>") + element + "<b/></r>"), "r(a b)") << element;
        EXPECT_EQ(warnings.text(), Prefix + warning + "\n" + Prefix + warning + "\n");
    }
}

TEST(XmlPreprocessing, Includes)
{
    const TestFolder folder;
    std::filesystem::create_directories(folder / "sub/deep");
    folder.write("sub/part.xml", "<p a='$(m)' b='$(k)'><include filename='deep/d.xml'/></p>");
    folder.write("sub/deep/d.xml", "<d><include filename='../leaf.xml'/></d>");
    folder.write("sub/leaf.xml", "<if host='UNIX'><l/><l/></if>");
    const std::tuple<const char*, bool, const char*> cases[] = {
        {"<include filename='sub/leaf.xml'/>", false, "r(l l b)"},
        {"<include filename='sub/part.xml'/>", false, "r(p{a=$(m),b=$(k)}(d(l l)) b)"},
        {"<include filename='sub/part.xml' expand_macros=''/>", false,
         "r(p{a=1,b=$(k)}(d(l l)) b)"},
        {"<include filename='sub/part.xml' macros=' m = 5 ;k=6'/>", false,
         "r(p{a=5,b=6}(d(l l)) b)"},
        {"<include filename='sub/part.xml' macros='k=$(n)'/><x y='$(k)'/>", true,
         "r(p{a=1,b=two}(d(l l)) x{y=$(k)} b)"},
        {"<include filename='sub/part.xml' no_root=''/>", false, "r(d(l l) b)"},
        {"<include filename='sub/part.xml' no_root=''/><include filename='sub/leaf.xml'/>", false,
         "r(d(l l) l l b)"},
    };
    for (const auto& [element, expand, result] : cases)
        EXPECT_EQ(both(folder, std::string("<r>") + element + "<b/></r>", expand), result)
            << element;

    EXPECT_EQ(both(folder, "<include filename='sub/part.xml'/>", true), "p{a=1,b=$(k)}(d(l l))");

    folder.write("bad.xml", "<a>\n</b>");
    const Warnings warnings;
    EXPECT_EQ(both(folder, "<r><include filename='bad.xml'/></r>", false), "r");
    const std::string path = folder / "bad.xml";
    EXPECT_EQ(warnings.text().find(std::string(Prefix)
                                   + "error \"tagName mismatch\" in include file " + path
                                   + " line:2 column:0\n" + Prefix + "error \""),
              0U)
        << warnings.text();
}

TEST(XmlPreprocessing, EndsIncludesWithoutEnd)
{
    const TestFolder folder;
    folder.write("self.xml", "<s><include filename='self.xml'/><include filename='self.xml'/></s>");
    const Warnings warnings;
    QElapsedTimer timer;
    timer.start();
    EXPECT_NE(both(folder, "<r><include filename='self.xml'/></r>", false), "not loaded");
    EXPECT_NE(warnings.text().find("too many includes at include file "), std::string::npos);
    EXPECT_LT(timer.elapsed(), 60000);
}

TEST(XMLPP2, Repeats)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<r><for index='i' start='0' end='3' incr='1'>text<b c='$(i)$(m)$(x)'/></for><d/></r>",
         "r(b{c=01$(x)} b{c=11$(x)} b{c=21$(x)} d)"},
        {"<r><for index='i' start='0x8' end='020' incr='4'><b "
         "c='$(i_hex)$(i_alpha)'/><e/></for></r>",
         "r(b{c=0x8I} e b{c=0xCM} e)"},
        {"<r><for index='i' start='2' end='4' incr='1' add='0x20' mul='8'>"
         "<b c='$(i_ap) $(i_ap_hex) $(i_ap_plus_127) $(i_ap_hex_plus_10)'/></for></r>",
         "r(b{c=48 0x30 175 0x3A} b{c=56 0x38 183 0x42})"},
        {"<r><for index='i' start='8' end='9' incr='1' sub='$(m)'><b c='$(i_ap)'/></for></r>",
         "r(b{c=7})"},
        {"<r><for index='i' start='0' end='1' incr='1' sub='1'><b c='$(i_ap) "
         "$(i_ap_hex)'/></for></r>",
         "r(b{c=-1 0xFFFFFFFF})"},
        {"<r><for index='i' start='8' end='9' incr='1' sub='1' add='2'><b c='$(i_ap)'/></for></r>",
         "r(b{c=10})"},
        {"<r><for index='i' start='3' end='3' incr='1'><b/></for><d/></r>", "r(d)"},
        {"<r><for index='i' start='4' end='3' incr='1'><b/></for><d/></r>", "r(d)"},
        {"<r><for index='i' start='0' end='4294967295' incr='4294967295'><b/></for></r>", "r(b)"},
        {"<r><for index='i' start='0' end='2' incr='1'><b><for index='j' start='0' end='2' "
         "incr='1'>"
         "<c d='$(i)$(j)'/></for></b></for></r>",
         "r(b(c{d=00} c{d=01}) b(c{d=10} c{d=11}))"},
        {"<r><for index='i' start='0' end='2' incr='1'><define name='d' value='$(i)'/>"
         "<if d='1'><b c='$(i)'/></if></for></r>",
         "r(b{c=1})"},
    };
    for (const auto& [text, result] : cases)
        EXPECT_EQ(repeated(text), result) << text;

    const std::pair<const char*, const char*> faulty[] = {
        {"<for index='i' start='0' end='3'><b/></for>",
         "<for index=\"i\" start=\"0\" end=\"32\" incr=\"1\">\n"},
        {"<for index='i' start='0' end='3' incr='0'><b/></for>",
         "<for> with incr 0 would never end\n"},
    };
    for (const auto& [element, warning] : faulty) {
        const Warnings warnings;
        EXPECT_EQ(repeated(std::string("<r>") + element + "<a/></r>"), "r(a)");
        EXPECT_EQ(warnings.text(), std::string(Prefix) + warning);
    }
}

TEST(XMLPP2, GivesAttributesToWhatItIncludes)
{
    const TestFolder folder;
    folder.write("e.xml",
                 "<envelope><a k='0'/><if host='UNIX'><b><c/></b></if>"
                 "<for index='i' start='0' end='1' incr='1'><f/></for>"
                 "<include filename='d.xml' inherit_attributes='k' k='2'/></envelope>");
    folder.write("d.xml", "<d/>");
    folder.write("empty.xml", " \n");
    folder.write("main.xml",
                 "<r><include filename='e.xml' k='1' l='x' inherit_attributes='k; l;none'/>"
                 "<include filename='empty.xml'/><include filename='$(HostOS).xml'/></r>");
    folder.write("solaris.xml", "<host/>");
    const Warnings warnings;
    macroSystem = new MacroSystem;
    XMLPP2 document;
    ASSERT_TRUE(document.load(QString::fromStdString(folder / "main.xml"), {}, false));
    EXPECT_EQ(shown(document.documentElement()),
              "r(a{k=1,l=x} b{k=1,l=x}(c) f{k=1,l=x} d{k=1,l=x} host)");
    EXPECT_EQ(warnings.text(),
              Prefix + ("error: include file '" + (folder / "empty.xml") + "' is empty\n"));
    delete macroSystem;
    macroSystem = nullptr;
}

TEST(XMLPP2, SurvivesDepthAndRepetitionWithoutEnd)
{
    const Warnings warnings;
    QElapsedTimer timer;
    timer.start();
    XMLPP2 document;
    const QByteArray deep =
        QByteArray("<if host='UNIX'><a>").repeated(50000) + QByteArray("</a></if>").repeated(50000);
    ASSERT_TRUE(document.loadFromBytes(deep, u"."_s, {}, true));
    EXPECT_TRUE(document.documentElement()->hasTag("a"));
    const QByteArray loop = "<for index='i' start='0' end='0xffffffff' incr='1'>";
    ASSERT_TRUE(
        document.loadFromBytes("<r>" + loop + "<a b='$(i)'/></for></r>", u"."_s, {}, false));
    EXPECT_TRUE(document.loadFromBytes("<r>" + loop + "</for></r>", u"."_s, {}, false));
    EXPECT_EQ(warnings.text(), std::string(Prefix) + "too many elements made by <for>\n");
    EXPECT_LT(timer.elapsed(), 60000);
}

TEST(XmlPP, DefinesMacrosAndText)
{
    struct {
        const char* text;
        bool expand;
        const char* result;
    } const cases[] = {
        {"<r><define_macro name='d' value='1'/><a b='$(d)'/></r>", true, "r(a{b=1})"},
        {"<r><a b='$(d)'/><s><define_macro name='d' value='1'/></s><a b='$(d)'/></r>", true,
         "r(a{b=$(d)} s a{b=1})"},
        {"<r><define_macro name='d' value='1'/><a b='$(d)' c='$(d)' e='$(d)' "
         "expand_attributes='b, e,none'/></r>",
         false, "r(a{b=1,c=$(d),e=1})"},
        {"<r>a<expand_definition name='platform'/><expand_definition name='no'/></r>", false,
         "r('a' 'MSP430' '')"},
    };
    for (const auto& [text, expand, result] : cases) {
        XmlPP document;
        ASSERT_TRUE(document.loadFromString(QString::fromUtf8(text), expand));
        EXPECT_EQ(shown(document.documentElement()), result) << text;
    }
    const Warnings warnings;
    XmlPP document;
    ASSERT_TRUE(document.loadFromString(u"<r><define_macro name='d'/></r>"_s, true));
    EXPECT_EQ(warnings.text(),
              std::string(Prefix) + "missing name and/or value in <define_macro>\n");
}

TEST(XmlPP, LoadsFromFilesSourcesAndText)
{
    XmlPP document;
    QString text;
    int line = 0;
    int column = 0;
    EXPECT_FALSE(document.load(u"/none.xml"_s, {}, false, &text));
    EXPECT_EQ(text, u"couldn't read /none.xml"_s);
    EXPECT_FALSE(document.loadFromString(u"<a>\n<b></a>"_s, false, &text, &line, &column));
    EXPECT_EQ(line, 2);
    EXPECT_FALSE(text.isEmpty());
    EXPECT_FALSE(document.loadFromString(u"<a>"_s.repeated(100000) + u"</a>"_s.repeated(100000),
                                         false, &text, &line, &column));
    EXPECT_EQ(text, u"elements are nested too deeply"_s);
    EXPECT_EQ(line, 1);
    EXPECT_FALSE(document.loadFromString({}, false));

    QBuffer source;
    source.setData("\xef\xbb\xbf<a b='\xc3\xa9'/>");
    source.open(QIODevice::ReadOnly);
    EXPECT_TRUE(document.load(source, false));
    EXPECT_EQ(document.documentElement().attribute(u"b"_s), u"\u00e9"_s);

    document.define(u"mine"_s, u"1"_s);
    EXPECT_TRUE(document.loadFromString(u"<r><if mine='1'><a/></if></r>"_s, false));
    EXPECT_EQ(shown(document.documentElement()), "r(a)");
    EXPECT_EQ(document.getdefine(u"mine"_s), u"1"_s);
    EXPECT_TRUE(document.getdefine(u"other"_s).isNull());
}
