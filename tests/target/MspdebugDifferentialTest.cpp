// Single random instructions in this simulator and in `mspdebug sim`, which was written from the
// same manuals by others. Left out is what the two take differently, or one of them not at all:
// - V after RRC, which is set here where a clear top bit receives a set carry;
// - RRC, RRA, SWPB and SXT with indirect operands, which take the indexed rule here;
// - bytes through SP with increment, SR and R3 as destinations, and DADD, whose digits above 9 and
// V
//   no manual defines;
// - MSP430X instructions, which the peer doesn't simulate.
// Those of the calls and the stack have their expectations in tables.
#include "target/msp430/MSP430Monitor.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace {

constexpr unsigned code = 0x8000;
constexpr unsigned dataStart = 0x2000, dataLength = 64;
constexpr unsigned arithmetic = 0x107;
constexpr int caseCount = 1500;

struct RandomCase {
    std::array<unsigned, 16> registers{};
    std::array<unsigned, 3> words{};
    std::array<unsigned char, dataLength> data{};
    unsigned flags = arithmetic; ///< those that are compared
};

struct Outcome {
    std::array<unsigned, 16> registers{};
    std::string data;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

class Generator {
public:
    RandomCase next()
    {
        RandomCase made;
        for (unsigned i = 3; i < 16; ++i)
            made.registers[i] = pick(0, 0xFFFF);
        // Pointers to the data, so that memory operands fall into it.
        for (unsigned i = 8; i < 12; ++i)
            made.registers[i] = dataStart + 2 * pick(4, 20);
        made.registers[0] = code;
        made.registers[1] = 0x3000;
        made.registers[2] = pick(0, 7) | (pick(0, 1) << 8);
        for (unsigned char& byte : made.data)
            byte = static_cast<unsigned char>(pick(0, 255));
        for (unsigned i = 1; i < 3; ++i)
            made.words[i] = 2 * pick(0, 4);
        const unsigned kind = pick(0, 9);
        made.words[0] = kind < 7 ? twoOperand(made)
            : kind < 9           ? oneOperand(made)
                                 : 0x2000 | pick(0, 0x1FFF);
        return made;
    }

private:
    unsigned pick(unsigned low, unsigned high)
    {
        return std::uniform_int_distribution<unsigned>(low, high)(m_random);
    }

    unsigned twoOperand(RandomCase& made)
    {
        static constexpr unsigned opcodes[] = {4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15};
        const unsigned opcode = opcodes[pick(0, 10)];
        const unsigned mode = pick(0, 3);
        const bool constant = pick(0, 3) == 0;
        const bool immediate = !constant && mode == 3 && pick(0, 1) == 0;
        const unsigned source = constant ? 3
            : immediate                  ? 0
            : mode == 0                  ? pick(4, 15)
                                         : pick(8, 11);
        if (immediate)
            made.words[1] = pick(0, 0xFFFF);
        const unsigned memory = pick(0, 1);
        // The destination isn't a register that the source has just moved.
        const unsigned destination = memory != 0 ? pick(8, 11) : pick(4, 7);
        return opcode << 12 | source << 8 | memory << 7 | pick(0, 1) << 6 | mode << 4 | destination;
    }

    unsigned oneOperand(RandomCase& made)
    {
        static constexpr unsigned opcodes[] = {0x1000, 0x1040, 0x1080, 0x1100, 0x1140, 0x1180};
        const unsigned opcode = opcodes[pick(0, 5)];
        if (opcode == 0x1000 || opcode == 0x1040)
            made.flags &= ~0x100u;
        return pick(0, 1) == 0 ? opcode | pick(4, 7) : opcode | 0x10 | pick(8, 11);
    }

    std::mt19937 m_random{20240430};
};

std::string describe(const RandomCase& made)
{
    char text[64];
    std::snprintf(text, sizeof text, "%04x %04x %04x, SR %03x", made.words[0], made.words[1],
                  made.words[2], made.registers[2]);
    return text;
}

std::string hexBytes(const unsigned char* bytes, unsigned length)
{
    std::string text;
    for (unsigned i = 0; i < length; ++i) {
        char byte[4];
        std::snprintf(byte, sizeof byte, "%02x ", bytes[i]);
        text += byte;
    }
    return text;
}

Outcome runHere(MSP430Monitor& monitor, const RandomCase& made)
{
    for (unsigned i = 0; i < 3; ++i)
        monitor.pokeUint16(code + 2 * i, static_cast<unsigned short>(made.words[i]));
    monitor.pokeBytes(dataStart, dataLength, made.data.data());
    for (unsigned i = 0; i < 16; ++i)
        monitor.registers()->setValue(i, made.registers[i]);
    monitor.step();
    Outcome outcome;
    for (unsigned i = 0; i < 16; ++i)
        outcome.registers[i] = monitor.registers()->getValue(i);
    outcome.registers[2] &= made.flags;
    unsigned char data[dataLength];
    monitor.peekBytes(dataStart, dataLength, data);
    outcome.data = hexBytes(data, dataLength);
    return outcome;
}

void writeCommands(std::ostream& out, const std::vector<RandomCase>& cases)
{
    for (const RandomCase& made : cases) {
        out << "mw " << code;
        for (unsigned word : made.words) {
            const unsigned char bytes[] = {static_cast<unsigned char>(word),
                                           static_cast<unsigned char>(word >> 8)};
            out << ' ' << hexBytes(bytes, 2);
        }
        out << "\nmw " << dataStart << ' ' << hexBytes(made.data.data(), dataLength) << '\n';
        for (unsigned i = 0; i < 16; ++i)
            out << "set " << i << ' ' << made.registers[i] << '\n';
        out << "step\nmd " << dataStart << ' ' << dataLength << '\n';
    }
}

/// The register block behind each step and the memory dump behind it.
std::vector<Outcome> parseOutput(const std::string& output, const std::vector<RandomCase>& cases)
{
    static const QRegularExpression registerCell(
        QStringLiteral(R"(\( ?(PC|SP|SR|R\d+): ([0-9a-f]+)\))"));
    static const QRegularExpression dumpLine(
        QStringLiteral(R"(^    0[0-9a-f]{4}: ((?:[0-9a-f]{2} ){16})\|)"));
    MSP430Registers names;
    std::vector<Outcome> outcomes;
    Outcome current;
    std::istringstream lines(output);
    for (std::string text; std::getline(lines, text);) {
        const QString line = QString::fromStdString(text);
        for (const auto& match : registerCell.globalMatch(line))
            current.registers[static_cast<unsigned>(names.nameToNumber(match.captured(1)))] =
                match.captured(2).toUInt(nullptr, 16);
        current.data += dumpLine.match(line).captured(1).toStdString();
        if (current.data.size() < 3 * dataLength || outcomes.size() == cases.size())
            continue;
        current.registers[2] &= cases[outcomes.size()].flags;
        outcomes.push_back(current);
        current = {};
    }
    return outcomes;
}

std::string runPeer(const std::filesystem::path& commands)
{
    std::string output;
    const std::string line =
        "mspdebug -q sim \"read " + commands.string() + "\" exit </dev/null 2>/dev/null";
    std::FILE* pipe = ::popen(line.c_str(), "r");
    char buffer[4096];
    while (std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe))
        output.append(buffer, count);
    ::pclose(pipe);
    return output;
}

} // namespace

TEST(Mspdebug, AgreesOnRandomInstructions)
{
    if (std::system("command -v mspdebug >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "mspdebug is not installed";
    Generator generator;
    std::vector<RandomCase> cases;
    for (int i = 0; i < caseCount; ++i)
        cases.push_back(generator.next());
    const auto path =
        std::filesystem::temp_directory_path() / ("gantry-mspdebug-" + std::to_string(::getpid()));
    std::ofstream file(path);
    writeCommands(file, cases);
    file.close();
    const std::vector<Outcome> theirs = parseOutput(runPeer(path), cases);
    std::filesystem::remove(path);
    ASSERT_EQ(theirs.size(), cases.size());
    MSP430Monitor monitor;
    monitor.connect(false);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(describe(cases[i]));
        const Outcome ours = runHere(monitor, cases[i]);
        EXPECT_EQ(ours.registers, theirs[i].registers);
        EXPECT_EQ(ours.data, theirs[i].data);
    }
}
