// Expressions in a C program that the real tools have built and the simulator has run to a line.
// What they must give is what the program's source says.

#include "debugger/FakeDebugger.h"
#include "objfile/format/TOBFfiles.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/query/TOBFObjectFileInterface.h"
#include "target/msp430/MSP430InstructionSetSimulator.h"

#include "TestFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>

namespace {

constexpr unsigned StackTop = 0xA00;
constexpr int MostInstructions = 100'000;

/// Runs on the memory and the registers of the target that expressions are read in.
class Processor : public MSP430InstructionSetSimulator {
public:
    explicit Processor(FakeDebugger& target) : m_target(target) { }

    unsigned getRegister(int number) override
    {
        return static_cast<unsigned>(m_target.registers.at(static_cast<std::size_t>(number)));
    }
    void setRegister(int number, unsigned value) override
    {
        m_target.registers.at(static_cast<std::size_t>(number)) = value;
    }
    unsigned readByte(unsigned address) override { return memory()[address & 0xFFFF]; }
    void writeByte(unsigned address, unsigned value) override
    {
        memory()[address & 0xFFFF] = static_cast<unsigned char>(value);
    }
    unsigned readWord(unsigned address) override
    {
        return readByte(address) | readByte(address + 1) << 8;
    }
    void writeWord(unsigned address, unsigned value) override
    {
        writeByte(address, value);
        writeByte(address + 1, value >> 8);
    }
    void unsupportedOpcode(unsigned word) override { ADD_FAILURE() << "opcode " << word; }

    bool runTo(unsigned address)
    {
        for (int i = 0; i < MostInstructions; ++i) {
            if (getRegister(0) == address)
                return true;
            singleStep();
        }
        return false;
    }

private:
    FakeDebugger::Memory& memory() { return m_target.memories[DebugMarkerType::Data]; }

    FakeDebugger& m_target;
};

class Program : public testing::Test {
protected:
    ~Program() override { release(); }

    void build(const std::string& optimisation)
    {
        release();
        m_source = GANTRY_TEST_DATA "/programs/values.c";
        const std::string bin = GANTRY_ROOT_TREE "/bin/";
        run(bin + "kcc -g " + optimisation + " " + m_source + " -o " + (m_folder / "a.kvo"));
        run(bin + "kld -g " + (m_folder / "a.kvo")
            + " -TCODE,CONST=1100-ffe0 -TIDATA0,UDATA0=200-800 -TINTVEC=ffe0-fffd -TRESET=fffe-ffff"
              " -D___RAM_Address=512 -D___RAM_Size=1536"
              " -o "
            + (m_folder / "a.kvx"));
        m_debug = TOBFfiles::getSymbolicDebug(Path(m_folder / "a.kvx"));
        ASSERT_NE(m_debug, nullptr);
        m_target.emplace(*m_debug);
        m_processor.emplace(*m_target);
        load();
        const TOBFSymbol* reset = m_debug->findGlobalSymbol(QStringLiteral("__reset"));
        ASSERT_NE(reset, nullptr);
        m_target->registers[0] =
            static_cast<unsigned long long>(reset->definition()->evaluate().value);
        m_target->registers[1] = StackTop;
    }

    void stopAt(const std::string& mark)
    {
        unsigned address = 0;
        ASSERT_TRUE(m_debug->sourceAddressMapping().SourceToAddress(
            QString::fromStdString(m_source), lineOf("stop: " + mark), address));
        ASSERT_TRUE(m_processor->runTo(address));
        const TOBFInsn* item = m_debug->GetInsn(address);
        m_target->stackAdjustment = item->stackAdjustment() != TOBFInsn::UnknownStackAdjustment
            ? item->stackAdjustment()
            : 0;
    }

    struct Case {
        const char* text;
        const char* result;
    };
    void check(std::initializer_list<Case> cases)
    {
        for (const Case& it : cases)
            EXPECT_EQ(evaluated(*m_target, it.text), it.result) << it.text;
    }
    void checkGlobals()
    {
        check({{"counter", "-12 s2"},
               {"total", "70000 s4"},
               {"third", "0.25 f4"},
               {"quarter", "-2.5 f8"},
               {"letter == 65", "true"},
               {"small", "-3 s1"},
               {"wide == 0x123456789ABCDEF0", "true"},
               {"shade == green", "true"},
               {"green - red", "7 u2"},
               {"both.bytes[0]", "66 u1"},
               {"both.bytes[1]", "65 u1"},
               {"first.kind", "5 u2"},
               {"first.length", "100 u2"},
               {"first.data[2]", "200 u1"},
               {"first.at->y", "-20 s2"},
               {"first.next->kind", "2 u2"},
               {"first.at == &points[1]", "true"},
               {"points[1].x + matrix[1][2]", "16 s2"},
               {"text[1] == 65", "true"},
               {"sizeof(first)", "10 u4"},
               {"sizeof(points)", "12 u4"},
               {"((struct point *)first.at)->x", "10 s2"},
               {"first.length = 5", "5 u2"},
               {"first.kind", "5 u2"},
               {"first.length = 100", "100 u2"}});
    }

    QString source() const { return QString::fromStdString(m_source); }
    FakeDebugger& target() { return *m_target; }
    SymbolicDebug& debug() { return *m_debug; }

private:
    void release()
    {
        m_processor.reset();
        m_target.reset();
        if (m_debug != nullptr)
            TOBFfiles::release(m_debug);
        m_debug = nullptr;
    }

    void run(const std::string& command)
    {
        ASSERT_EQ(std::system((command + " >" + (m_folder / "said") + " 2>&1").c_str()), 0)
            << command << '\n'
            << m_folder.read("said");
    }

    void load()
    {
        for (TOBFSection* section : m_debug->module()->sections()) {
            if (!section->isLoaded() || section->getSize() == 0)
                continue;
            std::vector<unsigned char> bytes(section->getSize());
            section->dump(section->getSize(), bytes.data());
            std::copy(bytes.begin(), bytes.end(),
                      m_target->memories[DebugMarkerType::Data].begin() + section->lowestAddress());
        }
    }

    unsigned lineOf(const std::string& text) const
    {
        std::ifstream in(m_source);
        unsigned number = 1;
        for (std::string line; std::getline(in, line); ++number)
            if (line.find(text) != line.npos)
                return number;
        ADD_FAILURE() << text;
        return 0;
    }

    TestFolder m_folder;
    std::string m_source;
    SymbolicDebug* m_debug = nullptr;
    std::optional<FakeDebugger> m_target;
    std::optional<Processor> m_processor;
};

TEST_F(Program, ShowsLocalsOfTheBlockThatItStandsIn)
{
    ASSERT_NO_FATAL_FAILURE(build("-O0"));
    ASSERT_NO_FATAL_FAILURE(stopAt("inner"));
    check({{"local", "99 s2"},
           {"a", "3 s2"},
           {"b", "80000 s4"},
           {"p->x", "10 s2"},
           {"(*p).y", "-20 s2"},
           {"product", "79999 s4"},
           {"ratio", "1.5 f4"},
           {"a + p->x == 13 && b > 79999", "true"}});
    checkGlobals();
    ASSERT_NO_FATAL_FAILURE(stopAt("outer"));
    check({{"local", "13 s2"}, {"sink", "99 s2"}, {"local = 20", "20 s2"}, {"local", "20 s2"}});
    EXPECT_EQ(QString::fromStdString(
                  debug()
                      .findFunctionSymbol(static_cast<int>(target().registers[0]), false)
                      ->getName()
                      ->str()),
              u"sum");
    ASSERT_NO_FATAL_FAILURE(stopAt("end"));
    // 20 + (int)79999, as the changed variable makes it.
    check({{"sink", "14483 s2"}, {"local", "local symbol not found"}});
}

TEST_F(Program, ShowsItselfToBrowsers)
{
    ASSERT_NO_FATAL_FAILURE(build("-O0"));
    TOBFObjectFileInterface file(debug().path());
    std::vector<SegmentInformation> segments;
    file.getSegments(segments);
    ASSERT_EQ(segments.size(), 1U);
    EXPECT_EQ(segments[0].name, u"RAM");
    EXPECT_EQ(segments[0].size, 1536U);
    EXPECT_EQ(segments[0].used, file.dataSize());
    EXPECT_GT(file.codeSize(), 0U);

    std::map<QString, SymbolInformation> symbols;
    file.iterateSymbols();
    while (const SymbolInformation* it = file.nextSymbol())
        symbols.emplace(it->symbolName(), *it);
    const SymbolInformation& sum = symbols.at(QStringLiteral("sum"));
    EXPECT_EQ(sum.itemType(), SymbolInformation::Function);
    EXPECT_GT(sum.size(), 0U);
    EXPECT_EQ(debug().findFunctionSymbol(static_cast<int>(sum.end()), false),
              debug().findGlobalSymbol(QStringLiteral("sum")));
    const SymbolInformation& points = symbols.at(QStringLiteral("points"));
    EXPECT_EQ(points.itemType(), SymbolInformation::Object);
    EXPECT_EQ(points.size(), 12U);
    EXPECT_EQ(points.sectionString(), u"UDATA0");
    EXPECT_EQ(points.fileNameString(), source());
    EXPECT_FALSE(symbols.at(QStringLiteral("counter")).access()); // static
    EXPECT_TRUE(points.access());
    EXPECT_FALSE(symbols.contains(QStringLiteral("local")));
}

TEST_F(Program, ShowsLocalsOfOptimisedCodeRightlyOrNotAtAll)
{
    const Case cases[] = {{"a", "3 s2"},           {"b", "80000 s4"},   {"p->x", "10 s2"},
                          {"product", "79999 s4"}, {"ratio", "1.5 f4"}, {"p->y", "-20 s2"}};
    int shown = 0;
    for (const char* const optimisation : {"-O1", "-O-9", "-O+9"}) {
        SCOPED_TRACE(optimisation);
        ASSERT_NO_FATAL_FAILURE(build(optimisation));
        ASSERT_NO_FATAL_FAILURE(stopAt("inner"));
        for (const Case& it : cases) {
            const std::string value = evaluated(target(), it.text);
            shown += value == it.result;
            if (value.find("symbol not found") == value.npos && value != "invalid address") {
                EXPECT_EQ(value, it.result) << it.text;
            }
        }
    }
    EXPECT_GT(shown, 0);
}

TEST_F(Program, ShowsGlobalsOfOptimisedCode)
{
    for (const char* const optimisation : {"-O1", "-O-9", "-O+9"}) {
        SCOPED_TRACE(optimisation);
        ASSERT_NO_FATAL_FAILURE(build(optimisation));
        ASSERT_NO_FATAL_FAILURE(stopAt("end"));
        checkGlobals();
    }
}

} // namespace
