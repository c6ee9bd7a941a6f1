#include "LoadFileTestSupport.h"

#include "objfile/format/TOBFWriter.h"
#include "objfile/loadfiles/TOBFLoadFile.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"

namespace {

/// An executable that a test lays out item by item.
class MadeExecutable {
public:
    MadeExecutable() : m_current(&m_pool), m_module(new TOBFModule) { }

    TOBFSection* section(const char* name, unsigned flags)
    {
        auto* section = new TOBFSection(HString::intern(name));
        section->setFlags(flags);
        m_module->addSection(section);
        return section;
    }

    static void place(TOBFSection* section, TOBFInsn* insn, int pc)
    {
        insn->setPC(pc);
        insn->encode();
        section->addInsn(insn);
    }
    static void word(TOBFSection* section, int value, int pc)
    {
        place(section, new TOBFDefBytesInsn(new TOBFConstExpr(value), 2), pc);
    }

    void write(const std::string& path)
    {
        TOBFWriter writer;
        m_module->externalize(&writer, false);
        writer.finish();
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(writer.data().data()),
                   static_cast<std::streamsize>(writer.data().size()));
    }

private:
    Pool m_pool;
    CurrentPool m_current;
    TOBFModule* m_module;
};

constexpr unsigned Code = 1 | TOBFSection::LoadFlag;

TEST(TOBFLoadFile, RunsOfPlacedItems)
{
    const ScratchFolder folder("tobf_load_file");
    {
        MadeExecutable executable;
        TOBFSection* code = executable.section("CODE", Code);
        executable.word(code, 0x4031, 0xF000);
        executable.place(code, new TOBFMarker, 0xF002);
        executable.word(code, 0x1234, 0xF002);
        executable.word(code, 0x5678, 0xF010);
        executable.place(code, new TOBFFillInsn(3, 0xEE), 0xF012);
        executable.word(executable.section("UDATA0", 3), 1, 0x200);
        executable.word(executable.section("EE", 6 | TOBFSection::LoadFlag), 0x0102, 0);
        executable.section("EMPTY", Code);
        executable.write(folder.path("a.kvx"));
    }
    const auto file = openLoadFile(folder.path("a.kvx"), "kvx");
    EXPECT_EQ(runsOf(*file),
              (std::vector<ByteRun>{{0xF000, {0x31, 0x40, 0x34, 0x12}},
                                    {0xF010, {0x78, 0x56, 0xEE, 0xEE, 0xEE}}}));
    EXPECT_EQ(file->loadFileSections().sections()[1]->name(), "CODE");
    EXPECT_EQ(runsOf(file->loadFileSections().eeSections()), (std::vector<ByteRun>{{0, {2, 1}}}));
    EXPECT_EQ(file->loadFileSections().eelength(), 2u);
    EXPECT_TRUE(file->hasSymbols());
    EXPECT_TRUE(file->hasLoadAddress());
    EXPECT_FALSE(file->hasEntryPoint());
    EXPECT_NE(static_cast<TOBFLoadFile&>(*file).module(), nullptr);
}

TEST(TOBFLoadFile, WreckedFiles)
{
    const ScratchFolder folder("tobf_load_file_bad");
    EXPECT_THROW(openLoadFile(folder.path("absent.kvx"), "kvx"), HException);
    EXPECT_THROW(openLoadFile(folder.make("bad.kvx", "\xFF\xFF"), "kvx"), HException);
    {
        MadeExecutable executable;
        TOBFSection* code = executable.section("CODE", Code);
        for (int i = 0; i < 3; ++i)
            executable.place(code, new TOBFFillInsn(0x7FFFFFFF, 0), 0);
        executable.write(folder.path("huge.kvx"));
    }
    const auto huge = openLoadFile(folder.path("huge.kvx"), "kvx");
    try {
        huge->loadFileSections();
        FAIL();
    } catch (const HException& error) {
        EXPECT_EQ(error.message(), "cannot read sections from load file");
    }
}

} // namespace
