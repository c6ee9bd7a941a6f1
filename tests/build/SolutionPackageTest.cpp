// Solutions packed into one file, and what opening a package does to a directory.

#include "build/workspace/SolutionPackage.h"
#include "build/WorkspaceTestSupport.h"
#include "packages/archive/Archive2.h"
#include "packages/archive/CompressedFile.h"

#include <gmock/gmock.h>

#include <cstring>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

struct Answers : PackagedSolutionHandler {
    bool overwrite(const QString& path) override
    {
        asked << path;
        return overwrites;
    }
    QString chooseSolution(const QStringList& paths) override
    {
        choices = paths;
        return paths.last();
    }

    bool overwrites = false;
    QStringList asked;
    QStringList choices;
};

class SolutionPackageTest : public WorkspaceTest {
protected:
    struct Member {
        std::string name;
        std::string bytes;
    };

    QString package() const { return path("out/s.kvr"); }
    QString target() const { return path("target"); }

    /// A package by the description of the format, so that it can hold what packing never writes.
    void makePackage(const std::vector<Member>& members)
    {
        const auto number = [](std::string& out, std::size_t value) {
            for (int shift = 0; shift < 32; shift += 8)
                out += static_cast<char>(value >> shift);
        };
        std::string archive = "\xC8\xC3\x52\x41";
        number(archive, members.size());
        std::size_t offset = 8 + members.size() * 1040;
        for (const Member& member : members) {
            std::string name = member.name;
            name.resize(1024);
            archive += name;
            number(archive, offset);
            number(archive, member.bytes.size());
            number(archive, 0); // can be written
            number(archive, 1000000000);
            offset += member.bytes.size();
        }
        for (const Member& member : members)
            archive += member.bytes;
        wrap(archive);
    }
    void wrap(const std::string& archive)
    {
        m_folder.write("bare", archive);
        fs::create_directories(m_folder / "out");
        ASSERT_TRUE(QTx::compressFile(path("bare"), package()));
    }

    QString open(PackagedSolutionHandler* handler = nullptr)
    {
        return openPackagedSolution(package(), target(), handler);
    }
    std::string openError()
    {
        try {
            open();
        } catch (const HException& error) {
            return error.message();
        }
        return "no error";
    }
    /// Whether anything was written into the target.
    bool targetIsEmpty() const
    {
        return !m_folder.has("target") || fs::is_empty(m_folder / "target");
    }
};

TEST_F(SolutionPackageTest, HoldsWhatLiesBelowTheSolution)
{
    m_folder.write("work/src/main.c", "int main(void) { return 0; }\n");
    m_folder.write("work/deep/er/data.txt", "");
    m_folder.write("work/scan/a.c", "/* a */");
    m_folder.write("work/scan/b.txt", "not scanned");
    m_folder.write("outside.c", "");
    m_folder.write("work/lib/lib.c", "/* lib */");
    m_folder.write("work/lib/lib.kvp",
                   "<!DOCTYPE GantryBench_Project_File>\n<solution Name=\"lib\" version=\"2\">"
                   "<project Name=\"l\"><file file_name=\"lib.c\"/></project></solution>\n");
    load("<import file_name=\"lib/lib.kvp\"/><project Name=\"p\"><file file_name=\"src/main.c\"/>"
         "<file file_name=\"./src/main.c\"/><file file_name=\"../outside.c\"/>"
         "<file file_name=\"missing.c\"/><file file_name=\"$(NoSuchMacro)/x.c\"/>"
         "<folder Name=\"f\"><file file_name=\""
             + (m_folder / "work/deep/er/data.txt")
             + "\"/></folder>"
               "<folder Name=\"d\" path=\"scan\" filter=\"*.c\"/></project>",
         "work/s.kvp");
    fs::create_directories(m_folder / "out");
    fs::permissions(m_folder / "work/src/main.c", fs::perms::owner_read);
    const PackedSolution packed =
        packageSolution(projects(), projects().solutionElement(), package(), u"comment"_s);
    EXPECT_THAT(packed.members,
                ElementsAre(u"s.kvp"_s, u"lib/lib.kvp"_s, u"lib/lib.c"_s, u"src/main.c"_s,
                            u"deep/er/data.txt"_s, u"scan/a.c"_s));
    EXPECT_THAT(packed.leftOut,
                ElementsAre(u"../outside.c"_s, u"missing.c"_s, u"$(NoSuchMacro)/x.c"_s));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder / "out"), {}), 1) << "temporary files";

    Answers answers;
    EXPECT_EQ(open(&answers), path("target/s.kvp"));
    EXPECT_TRUE(answers.choices.isEmpty()) << "an imported solution isn't a choice";
    for (const QString& member : packed.members) {
        const std::string name = member.toStdString();
        EXPECT_EQ(m_folder.read("target/" + name), m_folder.read("work/" + name)) << name;
    }
    EXPECT_EQ(fs::status(m_folder / "target/src/main.c").permissions() & fs::perms::owner_write,
              fs::perms::none);
    EXPECT_EQ(QFileInfo(path("target/s.kvp")).lastModified().toSecsSinceEpoch(),
              QFileInfo(path("work/s.kvp")).lastModified().toSecsSinceEpoch());
    projects().loadSolution(path("target/s.kvp"), nullptr, nullptr);
    EXPECT_THAT(projects().projectNames(), UnorderedElementsAre(u"lib(l)"_s, u"p"_s));
}

TEST_F(SolutionPackageTest, DoesNotPackItself)
{
    m_folder.write("old.kvr", "precious");
    load("<project Name=\"p\"><file file_name=\"old.kvr\"/></project>");
    EXPECT_THROW(packageSolution(projects(), projects().solutionElement(), path("old.kvr"), {}),
                 HException);
    EXPECT_EQ(m_folder.read("old.kvr"), "precious");
    EXPECT_THROW(packageSolution(projects(), projects().solutionElement(), path("no/dir.kvr"), {}),
                 HException);
}

TEST_F(SolutionPackageTest, AsksBeforeANewerFileIsLost)
{
    makePackage({{"s.kvp", "packed"}, {"same.c", "same"}, {"mine.c", "packed"}});
    const auto edit = [&] {
        m_folder.write("target/same.c", "same");
        m_folder.write("target/mine.c", "edited");
        fs::permissions(m_folder / "target/mine.c", fs::perms::owner_read);
    };
    edit();
    Answers answers;
    open(&answers);
    EXPECT_THAT(answers.asked, ElementsAre(path("target/mine.c")));
    EXPECT_EQ(m_folder.read("target/mine.c"), "edited");
    open();
    EXPECT_EQ(m_folder.read("target/mine.c"), "edited") << "without a handler";

    answers.overwrites = true;
    open(&answers);
    EXPECT_EQ(m_folder.read("target/mine.c"), "packed");
    answers.asked.clear();
    open(&answers);
    EXPECT_TRUE(answers.asked.isEmpty()) << "unpacked files have the package's times";
}

TEST_F(SolutionPackageTest, LetsTheUserChooseAmongSolutions)
{
    makePackage({{"a.kvp", ""}, {"b.kvp", ""}, {"sub/c.kvp", ""}, {"a.kvp", "second"}});
    Answers answers;
    EXPECT_EQ(open(&answers), path("target/b.kvp"));
    EXPECT_THAT(answers.choices, ElementsAre(path("target/a.kvp"), path("target/b.kvp")));
    EXPECT_EQ(open(), path("target/a.kvp"));
    EXPECT_EQ(m_folder.read("target/a.kvp"), "") << "the first of two members counts";

    makePackage({{"readme", ""}});
    EXPECT_THAT(openError(), HasSubstr("holds no solution"));
}

TEST_F(SolutionPackageTest, RefusesMembersThatLeaveTheDirectory)
{
    for (const std::string& name :
         {std::string("../evil"), std::string("sub/../../evil"), std::string("/evil"),
          m_folder / "evil", std::string("sub/.."), std::string(""), std::string("sub/"),
          std::string("\xFF\xFE.c")}) {
        makePackage({{"s.kvp", ""}, {name, "evil"}});
        EXPECT_THAT(openError(), HasSubstr("package member \"")) << name;
        EXPECT_TRUE(targetIsEmpty()) << name;
    }
    EXPECT_FALSE(m_folder.has("evil"));
}

TEST_F(SolutionPackageTest, RefusesWhatIsInTheWay)
{
    m_folder.write("elsewhere/x", "kept");
    m_folder.write("target/file", "");
    fs::create_directory(m_folder / "target/folder");
    fs::create_directory_symlink(m_folder / "elsewhere", m_folder / "target/link");
    fs::create_symlink(m_folder / "elsewhere/new", m_folder / "target/dangling");
    for (const char* name : {"link/x", "link", "dangling", "file/x", "folder"}) {
        makePackage({{"s.kvp", ""}, {name, "evil"}});
        EXPECT_THAT(openError(), HasSubstr(std::string("package member \"") + name + '"'));
        EXPECT_FALSE(m_folder.has("target/s.kvp")) << "nothing is written before all is checked";
    }
    EXPECT_EQ(m_folder.read("elsewhere/x"), "kept");
    EXPECT_FALSE(m_folder.has("elsewhere/new"));
}

TEST_F(SolutionPackageTest, ReportsDamage)
{
    makePackage({{"s.kvp", std::string(3000, 'x')}, {"a.c", "int a;"}});
    const std::string whole = m_folder.read("out/s.kvr");
    const std::string bare = m_folder.read("bare");
    for (const std::size_t length : {0UL, 7UL, 8UL, 12UL, 20UL, whole.size() - 1}) {
        m_folder.write("out/s.kvr", whole.substr(0, length));
        EXPECT_THAT(
            openError(),
            testing::AnyOf(HasSubstr("is damaged"), HasSubstr("is not a packaged solution")))
            << length;
    }
    for (const std::size_t length : {0UL, 7UL, 8UL + 1039, bare.size() - 1}) {
        wrap(bare.substr(0, length));
        EXPECT_THAT(openError(), HasSubstr("is damaged")) << length;
    }
    // Offsets and lengths that lie outside, and members that share their bytes.
    for (const auto& [at, value] : {std::pair{8 + 1024, 0x7FFFFFFF},
                                    {8 + 1024, -1},
                                    {8 + 1028, 0x7FFFFFFF},
                                    {8 + 1028, -1},
                                    {8 + 1040 + 1028, 3006}}) {
        std::string changed = bare;
        std::memcpy(changed.data() + at, &value, sizeof value);
        if (value == 3006) {
            const int start = 8 + 2 * 1040;
            std::memcpy(changed.data() + 8 + 1040 + 1024, &start, sizeof start);
            changed.erase(8 + 2 * 1040 + 3006 - 6);
        }
        wrap(changed);
        EXPECT_THAT(openError(), HasSubstr("is damaged")) << at << ' ' << value;
    }
    EXPECT_TRUE(targetIsEmpty());
    EXPECT_THROW(openPackagedSolution(path("none.kvr"), target(), nullptr), HException);
}

} // namespace
