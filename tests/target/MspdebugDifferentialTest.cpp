// Sequences of random instructions in this simulator and in `mspdebug sim`, which was written from
// the same manuals by others. Left out is what the two take differently, or one of them not at all:
// - V after RRC, which is set here where a clear top bit receives a set carry;
// - V after DADD, which no manual defines, and Z, clear here after a carry that leaves 0;
// - single operands with indirect modes, which take the indexed rule here;
// - DADD of digits above 9, which no manual defines;
// - PC, SR and R3 as destinations, and bytes through SP: calls, returns, jumps through tables and
//   the status bits have their expectations in tables and in whole programs;
// - words at odd addresses;
// - MSP430X instructions, which the peer doesn't simulate.
#include "target/msp430/MSP430Monitor.h"

#include "TestFolder.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <sstream>

namespace {

constexpr unsigned Code = 0x8000;
constexpr unsigned DataStart = 0x2000, DataLength = 256;
constexpr unsigned Stack = DataStart + 192; ///< 64 bytes of either direction
constexpr unsigned Arithmetic = 0x107;
constexpr unsigned Overflow = 0x100, Zero = 2;
constexpr unsigned NoOperation = 0x4303;
constexpr unsigned LongestSequence = 31;
constexpr unsigned SequencesPerRun = 1000;
/// Registers that hold pointers: to words, and one to bytes, which may be odd.
constexpr unsigned FirstPointer = 8, BytePointer = 11;

/// The number may be raised by the environment.
unsigned instructionsToCompare()
{
    const char* const wanted = std::getenv("GANTRY_RANDOM_INSTRUCTIONS");
    return wanted ? unsigned(std::strtoul(wanted, nullptr, 0)) : 100000;
}

struct Sequence {
    std::array<unsigned, 16> registers{};
    std::array<unsigned char, DataLength> data{};
    std::vector<unsigned> words;
    unsigned steps = 0;          ///< that certainly lead to the end or beyond it
    unsigned flags = Arithmetic; ///< those that are compared

    unsigned end() const { return Code + 2 * unsigned(words.size()); }
    /// What is behind the end does nothing, as often as a jump may have left out instructions.
    std::vector<unsigned> image() const
    {
        std::vector<unsigned> all = words;
        all.resize(words.size() + steps, NoOperation);
        return all;
    }
};

struct Outcome {
    std::array<unsigned, 16> registers{};
    std::string data;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

class Generator {
public:
    Sequence next()
    {
        m_made = {};
        for (unsigned i = 3; i < 16; ++i)
            m_made.registers[i] = pick(0, 0xFFFF);
        for (unsigned i = FirstPointer; i <= BytePointer; ++i)
            m_made.registers[i] = DataStart + 2 * pick(8, 16);
        m_made.registers[0] = Code;
        m_made.registers[1] = Stack;
        m_made.registers[2] = pick(0, 7) | (pick(0, 1) << 8);
        for (unsigned char& byte : m_made.data)
            byte = static_cast<unsigned char>(pick(0, 255));
        const unsigned length = pick(1, LongestSequence);
        while (m_made.steps < length)
            add(m_made.steps + 1 >= length);
        return m_made;
    }

private:
    unsigned pick(unsigned low, unsigned high)
    {
        return std::uniform_int_distribution<unsigned>(low, high)(m_random);
    }
    void append(unsigned word) { m_made.words.push_back(word); }
    void begin(unsigned word)
    {
        append(word);
        ++m_made.steps;
    }

    /// One instruction, or two where the first needs the second.
    void add(bool last)
    {
        switch (pick(0, 11)) {
        case 0: return last ? jumpFromTheEnd() : jump();
        case 1: return decimalAdd(last);
        case 2:
        case 3: return oneOperand(last);
        case 4: return push();
        default: return twoOperand();
        }
    }

    /// Over the next instruction.
    void jump()
    {
        const std::size_t at = m_made.words.size();
        begin(0);
        twoOperand();
        m_made.words[at] = 0x2000 | pick(0, 7) << 10 | unsigned(m_made.words.size() - at - 1);
    }

    /// Anywhere, unless steps that a jump has saved would then be made there.
    void jumpFromTheEnd()
    {
        begin(0x2000 | pick(0, 7) << 10 | (m_made.steps == 0 ? pick(0, 0x3FF) : 0));
    }

    /// V has a value again, and the carry has an effect.
    void settleFlags(bool last, unsigned undefined)
    {
        if (last)
            m_made.flags &= ~undefined;
        else
            begin(0x6304 | pick(0, 3)); // ADDC #0, R4 to R7
    }

    void decimalAdd(bool last)
    {
        const auto digits = [this] {
            return pick(0, 9) << 12 | pick(0, 9) << 8 | pick(0, 9) << 4 | pick(0, 9);
        };
        const unsigned reg = pick(4, 7);
        begin(0x4030 | reg); // MOV #digits
        append(digits());
        begin(0xA030 | pick(0, 1) << 6 | reg);
        append(digits());
        settleFlags(last, Overflow | Zero);
    }

    void oneOperand(bool last)
    {
        static constexpr unsigned opcodes[] = {0x1000, 0x1040, 0x1080, 0x1100, 0x1140};
        const unsigned opcode = opcodes[pick(0, 4)];
        if (pick(0, 1) == 0) {
            begin(opcode | pick(4, 7));
        } else {
            begin(opcode);
            const unsigned at = unsigned(m_made.words.size()) - 1;
            m_made.words[at] |= 0x10 | memoryOperand();
        }
        if ((opcode & ~0x40u) == 0x1000)
            settleFlags(last, Overflow);
    }

    void push()
    {
        if (pick(0, 1) == 0) {
            begin(0x1200 | pick(4, 15));
            return;
        }
        begin(0x1200);
        const std::size_t at = m_made.words.size() - 1;
        const unsigned operand = 0x10 | memoryOperand();
        m_made.words[at] |= operand;
    }

    /// The register of an operand with an offset: indexed, absolute, or relative to the PC.
    unsigned memoryOperand()
    {
        const unsigned target = DataStart + 2 * pick(0, 20);
        switch (pick(0, 3)) {
        case 0: append(target); return 2;
        case 1: append((target - m_made.end()) & 0xFFFF); return 0;
        default: append(2 * pick(0, 4)); return pick(FirstPointer, BytePointer - 1);
        }
    }

    void twoOperand()
    {
        static constexpr unsigned opcodes[] = {4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15};
        const unsigned opcode = opcodes[pick(0, 10)];
        const unsigned bytes = pick(0, 1);
        const unsigned mode = pick(0, 3);
        const std::size_t at = m_made.words.size();
        begin(0);
        unsigned source = 0;
        const unsigned special = pick(0, 7);
        if (special < 2)
            source = 3; // a constant in any mode
        else if (special == 2 && mode >= 2)
            source = 2; // 4 and 8
        else if (special == 3 && mode == 3)
            append(pick(0, 0xFFFF)); // an immediate value
        else if (special == 4 && mode == 3 && bytes == 0)
            source = 1; // POP
        else if (mode == 0)
            source = pick(special == 5 ? 1 : 4, 15);
        else if (mode == 1)
            source = memoryOperand();
        else
            source = bytes != 0 ? BytePointer : pick(FirstPointer, BytePointer - 1);
        // The destination isn't a register that the source has just moved.
        const unsigned memory = pick(0, 1);
        const unsigned destination = memory != 0 ? memoryOperand() : pick(4, 7);
        m_made.words[at] =
            opcode << 12 | source << 8 | memory << 7 | bytes << 6 | mode << 4 | destination;
    }

    Sequence m_made;
    std::mt19937 m_random{20240430};
};

std::string hexBytes(const unsigned char* bytes, std::size_t length)
{
    static constexpr char Digits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += Digits[bytes[i] >> 4];
        text += Digits[bytes[i] & 15];
        text += ' ';
    }
    return text;
}

std::string describe(const Sequence& made)
{
    std::ostringstream text;
    text << std::hex;
    for (unsigned value : made.registers)
        text << value << ' ';
    text << ':';
    for (unsigned word : made.words)
        text << ' ' << word;
    return text.str();
}

/// This simulator, one step after the other.
class Ours {
public:
    Ours() { m_monitor.connect(false); }

    void load(const Sequence& made)
    {
        unsigned at = Code;
        for (const unsigned word : made.image()) {
            m_monitor.pokeUint16(at, static_cast<unsigned short>(word));
            at += 2;
        }
        m_monitor.pokeBytes(DataStart, DataLength, made.data.data());
        for (unsigned i = 0; i < 16; ++i)
            m_monitor.registers()->setValue(i, made.registers[i]);
    }

    unsigned pc() { return m_monitor.registers()->getValue(0); }
    void step() { m_monitor.step(); }
    Outcome outcome(unsigned flags)
    {
        Outcome outcome;
        for (unsigned i = 0; i < 16; ++i)
            outcome.registers[i] = m_monitor.registers()->getValue(i);
        outcome.registers[2] &= flags;
        unsigned char data[DataLength];
        m_monitor.peekBytes(DataStart, DataLength, data);
        outcome.data = hexBytes(data, DataLength);
        return outcome;
    }

private:
    MSP430Monitor m_monitor;
};

class Peer {
public:
    static bool isInstalled() { return std::system("command -v mspdebug >/dev/null 2>&1") == 0; }

    /// What each sequence has led to; with `single`, what each of its steps has.
    std::vector<Outcome> run(std::span<const Sequence> sequences, bool single)
    {
        std::ofstream commands(m_commands);
        for (const Sequence& made : sequences)
            write(commands, made, single);
        commands.close();
        return read(sequences, single);
    }

private:
    static void write(std::ostream& out, const Sequence& made, bool single)
    {
        out << "mw " << Code;
        for (const unsigned word : made.image()) {
            const unsigned char bytes[] = {static_cast<unsigned char>(word),
                                           static_cast<unsigned char>(word >> 8)};
            out << ' ' << hexBytes(bytes, 2);
        }
        out << "\nmw " << DataStart << ' ' << hexBytes(made.data.data(), DataLength) << '\n';
        for (unsigned i = 0; i < 16; ++i)
            out << "set " << i << ' ' << made.registers[i] << '\n';
        for (unsigned i = 0; i < (single ? made.steps : 1); ++i)
            out << "step " << (single ? 1 : made.steps) << "\nmd " << DataStart << ' ' << DataLength
                << '\n';
    }

    /// The register block behind each step and the memory dump behind it.
    std::vector<Outcome> read(std::span<const Sequence> sequences, bool single) const
    {
        static const QRegularExpression registerCell(
            QStringLiteral(R"(\( ?(PC|SP|SR|R\d+): ([0-9a-f]+)\))"));
        static const QRegularExpression dumpLine(
            QStringLiteral(R"(^    0[0-9a-f]{4}: ((?:[0-9a-f]{2} ){16})\|)"));
        MSP430Registers names;
        std::vector<Outcome> outcomes;
        Outcome current;
        std::istringstream lines(output());
        for (std::string text; std::getline(lines, text);) {
            const QString line = QString::fromStdString(text);
            const QString bytes = dumpLine.match(line).captured(1);
            current.data += bytes.toStdString();
            if (bytes.isEmpty())
                for (const auto& match : registerCell.globalMatch(line))
                    current.registers[unsigned(names.nameToNumber(match.captured(1)))] =
                        match.captured(2).toUInt(nullptr, 16);
            if (current.data.size() < 3 * DataLength)
                continue;
            const std::size_t at = single ? 0 : outcomes.size();
            if (at < sequences.size())
                current.registers[2] &= sequences[at].flags;
            outcomes.push_back(std::exchange(current, {}));
        }
        return outcomes;
    }

    std::string output() const
    {
        std::string output;
        const std::string line =
            "mspdebug -q sim \"read " + m_commands + "\" exit </dev/null 2>/dev/null";
        std::FILE* pipe = ::popen(line.c_str(), "r");
        char buffer[4096];
        while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe))
            output.append(buffer, count);
        ::pclose(pipe);
        return output;
    }

    TestFolder m_folder;
    const std::string m_commands = m_folder / "commands";
};

/// The first step of a sequence whose outcome is another one here.
std::string firstDifference(Ours& ours, Peer& peer, const Sequence& made)
{
    Sequence loose = made;
    loose.flags &= ~(Overflow | Zero);
    const std::vector<Outcome> theirs = peer.run({&loose, 1}, true);
    ours.load(loose);
    for (const Outcome& outcome : theirs) {
        const unsigned pc = ours.pc();
        ours.step();
        if (ours.outcome(loose.flags) == outcome)
            continue;
        std::ostringstream text;
        text << std::hex << "at " << pc << ", word " << made.image().at((pc - Code) / 2)
             << "; registers";
        for (unsigned i = 0; i < 16; ++i)
            text << ' ' << ours.outcome(loose.flags).registers[i] << '/' << outcome.registers[i];
        return text.str();
    }
    return "only in V or Z";
}

} // namespace

TEST(Mspdebug, AgreesOnRandomInstructions)
{
    if (!Peer::isInstalled())
        GTEST_SKIP() << "mspdebug is not installed";
    const unsigned wanted = instructionsToCompare();
    Generator generator;
    Ours ours;
    Peer peer;
    unsigned compared = 0;
    while (compared < wanted && !HasFailure()) {
        std::vector<Sequence> sequences(SequencesPerRun);
        for (Sequence& sequence : sequences)
            sequence = generator.next();
        const std::vector<Outcome> theirs = peer.run(sequences, false);
        ASSERT_EQ(theirs.size(), sequences.size());
        for (std::size_t i = 0; i < sequences.size(); ++i) {
            const Sequence& made = sequences[i];
            ours.load(made);
            for (unsigned step = 0; step < made.steps; ++step) {
                compared += ours.pc() < made.end() ? 1 : 0;
                ours.step();
            }
            if (ours.outcome(made.flags) != theirs[i])
                ADD_FAILURE() << describe(made) << '\n' << firstDifference(ours, peer, made);
        }
    }
    RecordProperty("instructions", int(compared));
}
