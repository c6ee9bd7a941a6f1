#include "toolchain/kld/Kld.h"

#include "objfile/loadfiles/TOBFLoadFile.h"
#include "objfile/model/TOBFExpr.h"
#include "toolchain/ToolTestSupport.h"
#include "toolchain/kas/Kas.h"
#include "toolchain/kld/Checksums.h"
#include "toolchain/kld/Placement.h"
#include "toolchain/tools/Kar.h"

#include <gmock/gmock.h>

#include <map>

using testing::HasSubstr;

namespace {

std::string parsed(std::string_view text)
{
    std::string result;
    try {
        const Placement placement = parsePlacement(text);
        for (const std::string& name : placement.sections)
            result += name + " ";
        for (const MemoryRange& range : placement.ranges) {
            char part[32];
            std::snprintf(part, sizeof part, "[%x,%x)", range.start, range.end);
            result += part;
        }
    } catch (const HException& error) {
        result = error.message();
    }
    return result;
}

TEST(Placement, EndsAreTakenByTheirParity)
{
    EXPECT_EQ(parsed("CODE"), "CODE ");
    EXPECT_EQ(parsed("INTVEC=ffe0-ffff"), "INTVEC [ffe0,10000)");
    EXPECT_EQ(parsed("CODE,CONST=1100-ffe0,10000-20000"), "CODE CONST [1100,ffe0)[10000,20000)");
    EXPECT_EQ(parsed("B=200-200"), "B [200,201)");
    for (const char* const bad : {"", "A=", "A=12", "A=20-10", "A=x-y", ",A=1-2", "A=0-200000"})
        EXPECT_EQ(parsed(bad), std::string("bad placement ") + bad);
}

TEST(MemoryPool, HandsOutFromTheFront)
{
    MemoryPool pool({{0x200, 0x210}, {0x300, 0x340}});
    EXPECT_EQ(pool.allocate(3, 1), 0x200u);
    EXPECT_EQ(pool.allocate(4, 2), 0x204u);
    EXPECT_EQ(pool.allocate(0x20, 2), 0x300u);
    EXPECT_EQ(pool.allocate(8, 1), 0x208u);
    EXPECT_TRUE(pool.reserve(0x330, 0x10));
    EXPECT_FALSE(pool.reserve(0x338, 2));
    EXPECT_EQ(pool.allocate(0x20, 1), std::nullopt);
    EXPECT_EQ(pool.total(), 0x50u);
}

/// The check values that catalogues of checksums give for "123456789"; the sums added by hand.
TEST(Checksum, OfTheUsualText)
{
    const std::vector<unsigned char> digits = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    EXPECT_EQ(computeChecksum(ChecksumAlgorithm::Crc16, digits), 0x29B1u);
    EXPECT_EQ(computeChecksum(ChecksumAlgorithm::Crc32, digits), 0xFC891918u);
    EXPECT_EQ(computeChecksum(ChecksumAlgorithm::Sum, digits), 477u);
    EXPECT_EQ(computeChecksum(ChecksumAlgorithm::Xor, digits), 0x31u);
}

/// Assembles sources, links them and looks at what came out.
class Kld : public testing::Test {
protected:
    std::string assemble(const std::string& name, const std::string& text)
    {
        const std::string source = m_folder.write(name + ".s", text);
        const std::string object = m_folder / (name + ".kvo");
        EXPECT_EQ(runTool(kas, "kas", {source, "-o", object, "-mcpux"}), "");
        return object;
    }

    std::string link(std::vector<std::string> words)
    {
        for (const char* const more : {"-TCODE,CONST=4000-ffe0", "-TIDATA0,UDATA0=200-a00",
                                       "-TINTVEC=ffe0-fffd", "-TRESET=fffe-ffff"})
            words.emplace_back(more);
        words.insert(words.end(), {"-o", m_folder / "out.kvx"});
        m_bytes.clear();
        const std::string said = runTool(kld, "kld", words);
        if (m_folder.has("out.kvx"))
            load();
        return said;
    }

    void load()
    {
        TOBFLoadFile file((m_folder / "out.kvx").c_str());
        for (const auto& section : file.loadFileSections().sections())
            for (unsigned i = 0; i < section->length(); ++i)
                m_bytes[section->address() + i] = section->data(false)[i];
    }

    /// Words from an address on, in hexadecimal; "--" where nothing is loaded.
    std::string words(unsigned address, unsigned count) const
    {
        std::string result;
        for (unsigned at = address; at < address + 2 * count; at += 2) {
            char text[8] = "----";
            if (m_bytes.contains(at) && m_bytes.contains(at + 1))
                std::snprintf(text, sizeof text, "%02X%02X", m_bytes.at(at + 1), m_bytes.at(at));
            result += (result.empty() ? "" : " ") + std::string(text);
        }
        return result;
    }

    TestFolder m_folder;
    std::map<unsigned, unsigned char> m_bytes;
};

constexpr const char* Start = "\t.global __reset\n__reset:\tmov #1, r5\n\tret\n"
                              "\t.section RESET, const\n\t.word __reset\n";

TEST_F(Kld, StartsFromTheResetVector)
{
    EXPECT_EQ(link({assemble("start", Start)}), "");
    EXPECT_EQ(words(0xFFFE, 1), "4000");
    EXPECT_EQ(words(0x4000, 2), "4315 4130");
}

TEST_F(Kld, LeavesOutWhatNothingRefersTo)
{
    const std::string object = assemble(
        "a", std::string(Start) + "\t.text\n\t.global unused\nunused:\tmov r9, r10\n\tret\n");
    EXPECT_EQ(link({object}), "");
    EXPECT_EQ(words(0x4004, 1), "----");
    EXPECT_EQ(link({object, "-Kunused"}), "");
    EXPECT_EQ(words(0x4004, 1), "490A");
    EXPECT_EQ(link({object, "-Knone"}), "kld: warning: symbol none, to be kept, is not defined\n");
}

TEST_F(Kld, NamesTheFilesOfSymbolErrors)
{
    const std::string start = assemble("start", Start);
    const std::string caller = assemble("caller", "\t.global f\nf:\tcall #missing\n\tret\n");
    const std::string other = assemble("other", "\t.global f\nf:\tret\n");
    EXPECT_EQ(link({start, caller, "-Kf"}),
              "kld: error: undefined symbol missing, needed by " + caller + "\n");
    EXPECT_EQ(link({start, caller, other}),
              "kld: error: symbol f is defined in " + caller + " and in " + other + "\n");
    EXPECT_FALSE(m_folder.has("out.kvx"));
}

TEST_F(Kld, SaysWhatDoesNotFit)
{
    const std::string object = assemble("big",
                                        std::string(Start)
                                            + "\t.text\n\t.global big\nbig:\t.space 49000\n\tret\n"
                                              "\t.global more\nmore:\t.space 500\n\tret\n");
    EXPECT_EQ(link({object, "-Kbig", "-Kmore"}),
              "kld: error: more of " + object
                  + ", 502 bytes, doesn't fit in section CODE, 114 of 49120 bytes are left\n");
    const std::string astray = assemble(
        "astray", std::string(Start) + "\t.section ELSEWHERE, const\n\t.global e\ne:\t.word 1\n");
    EXPECT_EQ(link({astray, "-Ke"}),
              "kld: error: e of " + astray
                  + " is in section ELSEWHERE, which has no memory, see -T\n");
    EXPECT_FALSE(m_folder.has("out.kvx"));
}

TEST_F(Kld, VectorsStandAtTheirOffsets)
{
    const std::string vector = "\t.section INTVEC, const\n\t.org 10\n\t.word 0x1234\n";
    EXPECT_EQ(link({assemble("start", Start), assemble("v", vector)}), "");
    EXPECT_EQ(words(0xFFE8, 3), "---- 1234 ----");
    EXPECT_THAT(
        link({assemble("start", Start), assemble("v", vector), assemble("w", vector)}),
        HasSubstr("doesn't fit in section INTVEC at 0xFFEA, which is outside its memory or taken"));
}

TEST_F(Kld, DataIsCopiedFromATable)
{
    const std::string text = std::string(Start)
        + "\t.text\n\t.global main\nmain:\tmov #__init_table_start, r4\n\tmov #__init_table_end, "
          "r5\n"
          "\tmov &value, r6\n\tmov &zero, r7\n\tret\n"
          "\t.data\nvalue:\t.word 0xABCD, 0x1234\n\t.bss\nzero:\t.space 6\n";
    const std::string object = assemble("data", text);
    EXPECT_EQ(link({object, "-Kmain"}), "");
    const auto module = readModule(m_folder / "out.kvx");
    const auto valueOf = [&](const char* name) {
        return static_cast<unsigned>(
            module->publicSymbols().at(HString::intern(name))->definition()->evaluate().value);
    };
    const unsigned table = valueOf("__init_table_start");
    EXPECT_EQ(valueOf("__init_table_end") - table, 12u);
    // One entry copies, one clears; each is destination, image, size.
    const bool copiesFirst = words(table, 1) == "0200";
    const unsigned copy = copiesFirst ? table : table + 6;
    const unsigned clear = copiesFirst ? table + 6 : table;
    const unsigned image = m_bytes.at(copy + 2) | unsigned{m_bytes.at(copy + 3)} << 8;
    EXPECT_EQ(words(image, 2), "ABCD 1234");
    EXPECT_EQ(words(copy, 1) + " " + words(copy + 4, 1), "0200 0004");
    EXPECT_EQ(words(clear, 3), "0204 0000 0006");
    EXPECT_FALSE(m_bytes.contains(0x200)); // the data itself isn't loaded
    EXPECT_EQ(link({object, "-Kmain", "-GIDATA0=L"}), "");
    EXPECT_EQ(words(0x200, 2), "ABCD 1234");
}

TEST_F(Kld, ConditionsFollowTheDefinitions)
{
    const std::string object =
        assemble("c",
                 "\t.global __reset\n__reset:\n\t.linkif size\n\tmov #size, r5\n"
                 "\t.linkif size > 5\n\tmov #1, r6\n\t.endlinkif\n\t.endlinkif\n\tret\n");
    EXPECT_EQ(link({object}), "");
    EXPECT_EQ(words(0x4000, 1), "4130");
    EXPECT_EQ(link({object, "-Dsize=3"}), "");
    EXPECT_EQ(words(0x4000, 3), "4035 0003 4130");
    EXPECT_EQ(link({object, "-Dsize=0x1000"}), "");
    EXPECT_EQ(words(0x4000, 4), "4035 1000 4316 4130");
}

TEST_F(Kld, JumpsThatDoNotReachBecomeBranches)
{
    const std::string text =
        "\t.global __reset\n__reset:\tjz far\n\tjn far\n\tjmp far\n\t.space 2000\nfar:\tret\n";
    EXPECT_EQ(link({assemble("jump", text)}), "");
    // jnz over a branch; jn to a branch behind a jump; a branch.
    EXPECT_EQ(words(0x4000, 9), "2002 4030 47E2 3001 3C02 4030 47E2 4030 47E2");
    EXPECT_EQ(words(0x47E2, 1), "4130");
}

TEST_F(Kld, LibrariesGiveWhatIsMissing)
{
    const std::string library = m_folder / "lib.kva";
    const std::string first = assemble("first", "\t.global first\nfirst:\tcall #second\n\tret\n");
    const std::string second = assemble("second", "\t.global second\nsecond:\tret\n");
    const std::string third = assemble("third", "\t.global third\nthird:\tret\n");
    EXPECT_EQ(runTool(kar, "kar", {"-c", library, first, second, third}), "");
    const std::string start =
        assemble("start", std::string(Start) + "\t.text\n\t.global main\nmain:\tbr #first\n");
    EXPECT_EQ(link({start, library, "-Kmain", "-M" + (m_folder / "out.map")}), "");
    const std::string map = m_folder.read("out.map");
    EXPECT_THAT(map, HasSubstr("lib.kva(second.kvo)"));
    EXPECT_THAT(map, testing::Not(HasSubstr("third")));
    // A definition of the program's own wins.
    const std::string own = assemble("own", "\t.global second\nsecond:\tmov r9, r10\n\tret\n");
    EXPECT_EQ(link({start, own, library, "-Kmain", "-M" + (m_folder / "out.map")}), "");
    EXPECT_THAT(m_folder.read("out.map"), testing::Not(HasSubstr("second.kvo")));
}

TEST_F(Kld, WeakDefinitionsGiveWay)
{
    const std::string weak = assemble("weak", "\t.weak f\n\t.global f\nf:\tmov r1, r2\n\tret\n");
    const std::string strong = assemble("strong", "\t.global f\nf:\tmov r3, r4\n\tret\n");
    const std::string start = assemble("start", "\t.global __reset\n__reset:\tcall #f\n\tret\n");
    EXPECT_EQ(link({start, weak, strong}), "");
    EXPECT_EQ(words(0x4006, 1), "4304");
    EXPECT_EQ(link({start, strong, weak}), "");
    EXPECT_EQ(words(0x4006, 1), "4304");
}

TEST_F(Kld, Optimisations)
{
    const std::string text =
        "\t.global __reset\n__reset:\ttst r5\n\tjz 1f\n\tbr #2f\n1:\tjmp 2f\n"
        "2:\tmov r6, r7\n\tmov r8, r9\n\tret\n3:\tmov r6, r7\n\tmov r8, r9\n\tret\n";
    const std::string object = assemble("o", text);
    EXPECT_EQ(link({object}), "");
    EXPECT_EQ(words(0x4000, 5), "9305 2402 4030 400A 3C00");
    EXPECT_EQ(words(0x4010, 4), "4607 4809 4130 ----");
    EXPECT_EQ(link({object, "-Oph", "-Ojt"}), "");
    EXPECT_EQ(words(0x4000, 4), "9305 2402 3C01 3C00");
    EXPECT_EQ(link({object, "-Otm"}), "");
    // The second of the equal ends is a jump to the first.
    EXPECT_EQ(words(0x400A, 5), "4607 4809 4130 3FFC ----");
}

TEST_F(Kld, ChecksumsStandBehindTheirSection)
{
    EXPECT_EQ(link({assemble("start", Start), "-HCODE=sum"}), "");
    EXPECT_EQ(words(0x4004, 1), "00C9"); // 15 43 30 41, added by hand
}

TEST_F(Kld, RefusesWhatItCannotUse)
{
    const std::string object = m_folder.write("bad.kvo", "\x05");
    EXPECT_THAT(link({object}),
                HasSubstr("bad.kvo: fatal: bad object file: stack not empty at EOF"));
    EXPECT_EQ(link({m_folder / "none.kvo"}),
              "kld: error: can't open file " + (m_folder / "none.kvo") + "\n");
    EXPECT_EQ(link({m_folder.write("bad.kva", "xx")}),
              "kld: error: " + (m_folder / "bad.kva") + " isn't a library\n");
    EXPECT_EQ(link({"-Hx=md5"}), "kld: error: unknown checksum in -Hx=md5\n");
    EXPECT_EQ(link({"-Gx=M"}), "kld: error: bad option -Gx=M\n");
    EXPECT_EQ(link({"-Zfoo"}), "kld: error: unknown option -Zfoo\n");
    EXPECT_EQ(link({}), "kld: error: no object file has been named\n");
    m_folder.write("out.kvx", "old");
    runTool(kld, "kld", {object, "-o", m_folder / "out.kvx"});
    EXPECT_EQ(m_folder.read("out.kvx"), "old");
}

TEST_F(Kld, AddressesAboveSixteenBitsNeedTheWideForms)
{
    const std::string text = "\t.global __reset\n__reset:\tcalla #far\n\tmov #far, r5\n\tret\n"
                             "\t.section FAR, code\nfar:\treta\n";
    EXPECT_THAT(link({assemble("far", text), "-TFAR=10000-20000"}),
                HasSubstr("0x10000, far, doesn't fit in 16 bits, in __reset of "));
}

} // namespace
