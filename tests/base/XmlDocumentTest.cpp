#include "base/XMLDocument.h"

#include "TestFolder.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QString path(const std::string& text) { return QString::fromStdString(text); }

/// The document as this program writes it, or "LINE: ERROR".
std::string rewritten(const std::string& text)
{
    XMLDocument document;
    if (!document.loadFromBytes(QByteArray::fromStdString(text)))
        return std::to_string(document.errorLine()) + ": " + document.errorText().toStdString();
    return document.toBytes(2).toStdString();
}

} // namespace

TEST(XMLDocument, IsWrittenOneElementALineWithItsAttributesInTheirOrder)
{
    XMLDocument document;
    document.setDocumentType(u"GantryBench_Project_File"_s);
    XMLElement* root = document.createElement("solution");
    root->setAttribute("Name", u"demo"_s);
    root->setAttribute("empty", QString());
    document.setDocumentElement(root);
    XMLElement* project = document.createElement("project");
    root->appendChild(project);
    root->appendChild(document.createText(XMLNode::Kind::Comment, " a & b "));
    XMLElement* file = document.createElement("file");
    file->setAttribute("file_name", u"a \"<b>\" & c'.c"_s);
    project->appendChild(file);
    EXPECT_EQ(document.toBytes(2).toStdString(),
              "<!DOCTYPE GantryBench_Project_File>\n"
              "<solution Name=\"demo\" empty=\"\">\n"
              "  <project>\n"
              "    <file file_name=\"a &quot;&lt;b&gt;&quot; &amp; c'.c\"/>\n"
              "  </project>\n"
              "  <!-- a & b -->\n"
              "</solution>\n");
}

TEST(XMLDocument, ComesOutOfReadingAndWritingAsItWas)
{
    struct {
        const char* text;
        const char* written; ///< null: the same text
    } const cases[] = {
        {"<a/>\n", nullptr},
        {"<a>\n  <b/>\n  <b>\n    <c d=\"e\"/>\n  </b>\n</a>\n", nullptr},
        {"<!DOCTYPE X_1>\n<!--before-->\n<a/>\n<!--behind-->\n", nullptr},
        {"<a>  text with  blanks </a>\n", nullptr},
        {"<a>one <b>two</b> three<!--four--></a>\n", nullptr},
        {"<a>\n  <b>one<c>\n</c></b>\n  <d/>\n</a>\n", "<a>\n  <b>one<c/></b>\n  <d/>\n</a>\n"},
        {"<a><!CDATA[1 < 2 && ]]></a>\n", nullptr},
        {"<a><![CDATA[<b>]]></a>", "<a><!CDATA[<b>]]></a>\n"},
        {"\xef\xbb\xbf<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<a\tb = 'c\"' \n></a >",
         "<a b=\"c&quot;\"/>\n"},
        {"<!DOCTYPE a PUBLIC \"-//x>//\" 'y' [ <!-- don't --> <!ENTITY b \"]>\"> ] ><a/>",
         "<!DOCTYPE a>\n<a/>\n"},
        {"<a b=\"&quot;&amp;&lt;&gt;&apos;&#65;&#x42;\"/>", "<a b=\"&quot;&amp;&lt;&gt;'AB\"/>\n"},
        {"<a b=\"&#xe9;&#x0;&#x20ac;&#x1F600;\"/>",
         "<a b=\"&#xe9;&#x0;&#xe2;&#x82;&#xac;&#xf0;&#x9f;&#x98;&#x80;\"/>\n"},
        {"<a b=\"1\n2\t\xc3\xa9\x7f\"/>", "<a b=\"1&#xa;2&#x9;&#xc3;&#xa9;&#x7f;\"/>\n"},
        {"<a>&#32;</a>", "<a>&#x20;</a>\n"},
        {"<a><?php <b> ?></a>", "<a/>\n"},
    };
    for (const auto& [text, written] : cases)
        EXPECT_EQ(rewritten(text), written != nullptr ? written : text) << text;
}

TEST(XMLDocument, TellsWhatIsWrongAndWhere)
{
    struct {
        std::string text;
        const char* error;
    } const cases[] = {
        {"", "1: no document element"},
        {"<?xml version='1.0'?>\n\n", "3: no document element"},
        {"\n hello", "2: text in front of the document element"},
        {"\xff\xfe<", "1: the file is UTF-16, not UTF-8"},
        {"<a>\n<b>\n</c>\n</a>", "3: tagName mismatch"},
        {"<a>\n<b>\n", "2: <b> isn't closed"},
        {"<a/>\n<b/>", "2: text behind the document element"},
        {"<a/>\nx", "2: text behind the document element"},
        {"<a>\n<", "2: a tag's name is missing behind <"},
        {"<a>\n<b c='1'", "2: unterminated tag <b"},
        {"<a>\n</a", "2: unterminated tag </a"},
        {"<a / >", "1: unterminated tag <a"},
        {"<a\nb>", "2: the attribute b has no value in quotes"},
        {"<a\nb=c>", "2: the attribute b has no value in quotes"},
        {"<a\n='c'>", "2: an attribute's name is missing in <a"},
        {"<a\n b='c\n\n", "2: unterminated attribute value"},
        {"<a>\n<!-- \n", "2: unterminated comment"},
        {"<a>\n<![CDATA[ ]]", "2: unterminated section"},
        {"<?xml ", "1: unterminated processing instruction"},
        {"<!DOCTYPE a [\n", "1: unterminated document type"},
        {"<a b='1' c='2'\n b='3'/>", "1: the attribute b stands twice"},
        {"<a>\n\n&nbsp;</a>", "3: unknown entity &nbsp;"},
        {"<a b='\n&'/>", "2: & without a ; behind it"},
        {"<a>&#;</a>", "1: &#; is no character"},
        {"<a>&#x;</a>", "1: &#x; is no character"},
        {"<a>&#1f;</a>", "1: &#1f; is no character"},
        {"<a>&#x110000;</a>", "1: &#x110000; is no character"},
        {"<a>&#xd800;</a>", "1: &#xd800; is no character"},
        {"<a>&#99999999999;</a>", "1: &#99999999999; is no character"},
    };
    for (const auto& [text, error] : cases)
        EXPECT_EQ(rewritten(text), error) << text;

    std::string many = "<a";
    for (int i = 0; i < 100; ++i)
        many += " b" + std::to_string(i) + "=''";
    EXPECT_EQ(rewritten(many + " b7=''/>"), "1: the attribute b7 stands twice");
}

TEST(XMLDocument, AFailedLoadLeavesAnEmptyDocument)
{
    XMLDocument document;
    ASSERT_TRUE(document.loadFromBytes("<!DOCTYPE x><a/>"));
    EXPECT_FALSE(document.load(u"/nowhere/file.xml"_s));
    EXPECT_EQ(document.errorText(), u"couldn't read /nowhere/file.xml"_s);
    EXPECT_EQ(document.errorLine(), 0);
    EXPECT_EQ(document.documentElement(), nullptr);
    EXPECT_TRUE(document.documentType().isNull());
    EXPECT_FALSE(document.load(u"/tmp"_s));
    ASSERT_TRUE(document.loadFromBytes("<b/>"));
    EXPECT_TRUE(document.errorText().isEmpty());
    EXPECT_TRUE(document.documentElement()->hasTag("b"));
}

TEST(XMLElement, AnswersForItsAttributes)
{
    XMLDocument document;
    ASSERT_TRUE(document.loadFromBytes("<a utf='\xc3\xa9' latin='\xe9' empty=''/>"));
    XMLElement& a = *document.documentElement();
    EXPECT_EQ(a.attribute("utf"), u"\u00e9"_s);
    EXPECT_EQ(a.attribute("latin"), u"\u00e9"_s);
    EXPECT_EQ(a.attribute("empty", u"x"_s), u""_s);
    EXPECT_EQ(a.attribute("none", u"x"_s), u"x"_s);
    a.setAttribute("latin", u"1"_s);
    a.setAttribute("new", u"2"_s);
    a.removeAttribute("utf");
    EXPECT_FALSE(a.hasAttribute("utf"));
    EXPECT_EQ(document.toBytes(0), "<a latin=\"1\" empty=\"\" new=\"2\"/>\n");
}

TEST(XMLElement, MovesNodesWithinAndOutOfItsTree)
{
    XMLDocument document;
    ASSERT_TRUE(document.loadFromBytes("<a>\n<b><x/></b>\n<c/>\n<d/></a>"));
    XMLElement& a = *document.documentElement();
    XMLElement* b = a.firstChildElement("b");
    XMLElement* d = a.firstChildElement("d");
    EXPECT_EQ(b->line(), 2);
    EXPECT_EQ(d->line(), 4);
    EXPECT_EQ(a.firstChildElement("x"), nullptr);

    a.insertBefore(d, b);
    a.insertBefore(b->firstChild(), b);
    a.appendChild(b);
    std::string tags;
    for (const XMLElement& child : a.children())
        tags += child.tag().toStdString();
    EXPECT_EQ(tags, "dxcb");

    XMLElement* copy = document.copyElement(a);
    a.removeChild(d);
    EXPECT_EQ(d->parent(), nullptr);
    for (XMLNode* node = a.firstChild(); node != nullptr; node = a.firstChild())
        a.removeChild(node);
    EXPECT_EQ(a.lastChild(), nullptr);
    EXPECT_EQ(document.toBytes(0), "<a/>\n");
    document.setDocumentElement(copy);
    EXPECT_EQ(document.toBytes(0), "<a>\n<d/>\n<x/>\n<c/>\n<b/>\n</a>\n");
}

TEST(XMLDocument, KeepsTextThatWouldEndItsCommentOrSection)
{
    XMLDocument document;
    XMLElement* root = document.createElement("a");
    document.setDocumentElement(root);
    root->appendChild(document.createText(XMLNode::Kind::Section, "1]]>2"));
    root->appendChild(document.createText(XMLNode::Kind::Comment, "-->"));
    XMLDocument again;
    ASSERT_TRUE(again.loadFromBytes(document.toBytes(2)));
    QByteArray text;
    for (const XMLNode* node = again.documentElement()->firstChild(); node != nullptr;
         node = node->nextSibling()) {
        if (node->kind() == XMLNode::Kind::Section)
            text += node->text();
    }
    EXPECT_EQ(text, "1]]>2");
}

TEST(XMLDocument, SavesAnewFileOrLeavesTheOldOne)
{
    const TestFolder folder;
    const std::string file = folder.write("file.xml", "old");
    XMLDocument document;
    document.setDocumentElement(document.createElement("a"));

    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    ASSERT_EQ(::symlink("file.xml", (folder / "link.xml").c_str()), 0);
    ASSERT_TRUE(document.save(path(folder / "link.xml"), 2));
    EXPECT_EQ(folder.read("file.xml"), "<a/>\n");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.xml"));
    struct stat status { };
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);

    const QString impossible = path(folder / "none/file.xml");
    EXPECT_FALSE(document.save(impossible, 2));
    EXPECT_EQ(document.errorText(), u"couldn't write "_s + impossible);
    EXPECT_NE(document.documentElement(), nullptr);
}

TEST(XMLDocument, FindsTheDocumentTypeAtTheStart)
{
    const TestFolder folder;
    struct {
        std::string text;
        const char* type; ///< null: none
    } const cases[] = {
        {"<!DOCTYPE Board_Memory_Definition_File>\n<root/>", "Board_Memory_Definition_File"},
        {"\xef\xbb\xbf<?xml version=\"1.0\"?>\n<!-- <!DOCTYPE no> -->\n<!DOCTYPE\n A1-b [", "A1"},
        {"<!DOCTYPE >", nullptr},
        {"<root/><!DOCTYPE a>", nullptr},
        {"<!-- ", nullptr},
        {"", nullptr},
        {std::string(100000, '\0'), nullptr},
    };
    for (const auto& [text, type] : cases) {
        const QString found = XMLDocument::xmlDocumentType(path(folder.write("a.xml", text)));
        EXPECT_EQ(found, QString::fromLatin1(type)) << text;
        EXPECT_EQ(found.isNull(), type == nullptr);
    }
    EXPECT_TRUE(XMLDocument::xmlDocumentType(path(folder / "none")).isNull());
}

TEST(XMLDocument, SurvivesDepthAndSize)
{
    constexpr int Depth = 100000;
    XMLDocument document;
    ASSERT_TRUE(document.loadFromBytes(QByteArray("<a>").repeated(Depth) + "x"
                                       + QByteArray("</a>").repeated(Depth)));
    XMLElement* copy = document.copyElement(*document.documentElement());
    int depth = 0;
    for (; copy != nullptr; copy = copy->firstChildElement())
        ++depth;
    EXPECT_EQ(depth, Depth);
    XMLDocument again;
    ASSERT_TRUE(again.loadFromBytes(document.toBytes(2)));
    EXPECT_EQ(again.toBytes(2), document.toBytes(2));
    EXPECT_FALSE(document.loadFromBytes(QByteArray("<a>").repeated(Depth)));

    // What would take minutes if it went with the square.
    QByteArray attributes("<a");
    for (int i = 0; i < 100000; ++i)
        attributes += " b" + QByteArray::number(i) + "='" + QByteArray("&#10;\n") + '\'';
    attributes += " huge='" + QByteArray("&amp;\n").repeated(1000000) + "'/>";
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(document.loadFromBytes(attributes));
    EXPECT_EQ(document.documentElement()->attribute("huge").size(), 2000000);
    EXPECT_FALSE(document.loadFromBytes("<a>" + QByteArray("&").repeated(3000000) + "</a>"));
    EXPECT_LT(timer.elapsed(), 30000);
}
