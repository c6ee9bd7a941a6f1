#include "target/TargetIOServer.h"

#include "target/msp430/MSP430Monitor.h"

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <deque>
#include <filesystem>
#include <fstream>

namespace {

constexpr unsigned communication = 0x1000;
constexpr unsigned block = 0x1100;
constexpr unsigned format = 0x2000;
constexpr unsigned text = 0x3000;
constexpr unsigned buffer = 0x4000;

class FakeTerminal : public TargetIOServerTerminalInterface {
public:
    void addOutput(QString more) override { output += more.toLatin1().toStdString(); }
    QString getInputLine() override
    {
        const QString line = QString::fromStdString(lines.front());
        lines.pop_front();
        return line;
    }
    int inputLines() const override { return static_cast<int>(lines.size()); }
    int getInputChar() override
    {
        std::string& line = lines.front();
        const int c = line.empty() ? '\n' : line[0];
        if (line.empty())
            lines.pop_front();
        else
            line.erase(0, 1);
        return c;
    }
    bool inputCharAvailable() const override { return !lines.empty(); }
    bool atEnd() const override { return ended && lines.empty(); }

    std::string output;
    std::deque<std::string> lines;
    bool ended = false;
};

class FakeHost : public TargetIOServerHelperFunctions {
public:
    void errorOccurred(const char* what) override { events.push_back(what); }
    void debugBreakOccurred() override { events.push_back("break"); }
    void inputRequested() override { events.push_back("input"); }
    void outputUpdated() override { }
    void exitOccurred(int code) override { events.push_back("exit " + std::to_string(code)); }
    void loadSymbols(const char* name, unsigned address) override
    {
        events.push_back(std::string(name) + " " + std::to_string(address));
    }
    std::vector<std::string> events;
};

class TargetIOServerTest : public testing::Test {
protected:
    TargetIOServerTest()
        : folder(std::filesystem::temp_directory_path()
                 / ("gantry-io-" + std::to_string(::getpid())))
    {
        monitor.connect(false);
        monitor.memsetBytes(block, 0x6000, 0);
        TargetIOServer::setTerminal(&terminal);
        TargetIOServer::setHelperFunctions(&host);
        TargetIOServer::init(
            {QStringLiteral("prog"), QStringLiteral("two"), QStringLiteral("three")});
        std::filesystem::create_directories(folder);
    }
    ~TargetIOServerTest() override
    {
        TargetIOServer::init({});
        TargetIOServer::setTerminal(nullptr);
        TargetIOServer::setHelperFunctions(nullptr);
        std::filesystem::remove_all(folder);
    }

    unsigned put(unsigned address, const std::string& string)
    {
        monitor.pokeBytes(address, static_cast<unsigned>(string.size()) + 1,
                          reinterpret_cast<const unsigned char*>(string.c_str()));
        return address;
    }
    /// Runs an operation on a block of words and returns its result.
    int call(unsigned operation, std::vector<unsigned> words)
    {
        unsigned address = block;
        for (unsigned word : words) {
            monitor.pokeUint16(address, static_cast<unsigned short>(word));
            address += 2;
        }
        monitor.pokeUint16(communication, block);
        TargetIOServer::handleOperation(&monitor, &monitor, operation, communication);
        return static_cast<short>(monitor.peekUint16(communication));
    }
    std::string print(const std::string& formatText, std::vector<unsigned> words,
                      unsigned operation = 10)
    {
        terminal.output.clear();
        words.insert(words.begin(), put(format, formatText));
        const int count = call(operation, words);
        EXPECT_EQ(count, static_cast<int>(terminal.output.size()));
        return terminal.output;
    }
    static std::vector<unsigned> words64(std::uint64_t value)
    {
        return {static_cast<unsigned>(value & 0xFFFF), static_cast<unsigned>(value >> 16 & 0xFFFF),
                static_cast<unsigned>(value >> 32 & 0xFFFF), static_cast<unsigned>(value >> 48)};
    }

    MSP430Monitor monitor;
    FakeTerminal terminal;
    FakeHost host;
    std::filesystem::path folder;
};

} // namespace

TEST_F(TargetIOServerTest, PrintfConversions)
{
    put(text, "text");
    const struct {
        const char* format;
        std::vector<unsigned> words;
        const char* output;
    } cases[] = {
        {"%d %u", {0xFFFF, 0xFFFF}, "-1 65535"},
        {"%5d|%-5d|%05d|%+d", {7, 7, 7, 7}, "    7|7    |00007|+7"},
        {"%x %#X %o", {0xBEEF, 0xBEEF, 8}, "beef 0XBEEF 10"},
        {"%ld %lu", {0xFFFF, 0xFFFF, 0x5678, 0x1234}, "-1 305419896"},
        {"%lld", words64(static_cast<std::uint64_t>(-5)), "-5"},
        {"%hhd %hu", {0x1FF, 0xFFFF}, "-1 65535"},
        {"%c%c", {'o', 'k'}, "ok"},
        {"%s|%.2s|%6s", {text, text, text}, "text|te|  text"},
        {"%*d|%-*d|%.*s", {4, 7, 4, 7, 3, text}, "   7|7   |tex"},
        {"%f %g", {0, 0, 0, 0x3FF8, 0, 0, 0, 0x4000}, "1.500000 2"},
        {"%p %%", {0x1234}, "1234 %"},
        {"100%", {}, "100"},
        {"%y", {}, "y"},
        {"%s", {0}, "(null)"},
    };
    for (const auto& printed : cases)
        EXPECT_EQ(print(printed.format, printed.words), printed.output) << printed.format;
}

TEST_F(TargetIOServerTest, FormatFamilies)
{
    const auto single = std::bit_cast<std::uint32_t>(1.5f);
    EXPECT_EQ(print("%.1f %d", {single & 0xFFFF, single >> 16, 7}, 12), "1.5 7");
    EXPECT_EQ(print("%d", {7}, 50), "7");
    EXPECT_EQ(print("%.1f", {single & 0xFFFF, single >> 16}, 52), "1.5");
    monitor.pokeUint16(buffer, 42);
    for (unsigned operation : {58u, 60u, 62u, 64u})
        EXPECT_EQ(print("%d", {buffer}, operation), "42");
    terminal.output.clear();
    put(format, "%d\n");
    EXPECT_EQ(call(9, {0, format, 5}), 2);
    EXPECT_EQ(call(57, {0, format, buffer}), 3);
    EXPECT_EQ(terminal.output, "5\n42\n");
}

TEST_F(TargetIOServerTest, HostileFormatsAreHarmless)
{
    monitor.memsetBytes(0x5000, 0xA000, 'A');
    monitor.pokeUint16(block, 0x5000);
    EXPECT_EQ(call(10, {0x5000}), 1023) << "an unterminated string is cut";
    EXPECT_EQ(print("%s%s", {0x5000, 0x5000}).size(), 1024u) << "and so is the output buffer";
    EXPECT_EQ(print("%99999999d", {1}).size(), 1024u);
    EXPECT_EQ(print("%*d", {0x8000, 1}).size(), 1024u);
    EXPECT_LE(print("%.99999999f", {0xFFFF, 0xFFFF, 0xFFFF, 0x7FEF}).size(), 1024u);
    print("%s%n%d%f%s", {0xFFFF, 0xFFFF, 1, 2, 3, 4, 5, 0xFFF0});
    print("ab%n", {buffer});
    EXPECT_EQ(monitor.peekUint16(buffer), 2);
    call(10, {0xFFFF});
    call(77, {0xFFFE});
    for (unsigned operation = 0; operation < 200; ++operation)
        if (operation != 81 && operation != 83)
            call(operation, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF});
}

TEST_F(TargetIOServerTest, ScanfConversions)
{
    const struct {
        const char* line;
        const char* format;
        int items;
        std::vector<unsigned> values;
    } cases[] = {
        {"12 -3", "%d %d", 2, {12, 0xFFFD}},
        {"0x1F 077 9", "%i %i %i", 3, {0x1F, 077, 9}},
        {"beef", "%x", 1, {0xBEEF}},
        {"a,5", "a,%d", 1, {5}},
        {"b", "a", 0, {}},
        {"12345", "%2d%3d", 2, {12, 345}},
        {"7 8", "%*d %d", 1, {8}},
        {"x", "%d", 0, {}},
        {"", "%d", 0, {}},
        {"12", "%d%n", 1, {12, 2}},
    };
    for (const auto& scanned : cases) {
        SCOPED_TRACE(scanned.format);
        terminal.lines = {scanned.line};
        EXPECT_EQ(call(14, {put(format, scanned.format), buffer, buffer + 2, buffer + 4}),
                  scanned.items);
        for (std::size_t i = 0; i < scanned.values.size(); ++i)
            EXPECT_EQ(monitor.peekUint16(buffer + 2 * static_cast<unsigned>(i)), scanned.values[i]);
    }
    terminal.lines = {"name rest 1.5 2.5 70000"};
    put(format, "%4s %[a-z] %f %lf %ld");
    EXPECT_EQ(
        call(14, {format, buffer, buffer + 0x10, buffer + 0x20, buffer + 0x30, buffer + 0x40}), 5);
    EXPECT_EQ(monitor.peekString(buffer, 20), QStringLiteral("name"));
    EXPECT_EQ(monitor.peekString(buffer + 0x10, 20), QStringLiteral("rest"));
    EXPECT_EQ(std::bit_cast<float>(monitor.peekUint32(buffer + 0x20)), 1.5f);
    EXPECT_EQ(std::bit_cast<double>(monitor.peekNumber(buffer + 0x30, 8)), 2.5);
    EXPECT_EQ(monitor.peekUint32(buffer + 0x40), 70000u);
}

TEST_F(TargetIOServerTest, ConsoleInput)
{
    EXPECT_EQ(call(21, {}), -2);
    EXPECT_EQ(call(17, {0}), -2);
    EXPECT_EQ(call(44, {}), -1);
    EXPECT_EQ(call(22, {buffer, 10}), -1);
    EXPECT_EQ(call(25, {buffer}), -1);
    EXPECT_EQ(host.events, (std::vector<std::string>(5, "input")));
    EXPECT_EQ(call(43, {}), 0);
    terminal.lines = {"a", "a line that is long", "-5", "123456", "2.5"};
    EXPECT_EQ(call(43, {}), 1);
    EXPECT_EQ(call(21, {}), 'a');
    EXPECT_EQ(call(73, {'z', 0}), 'z');
    EXPECT_EQ(call(21, {}), 'z');
    EXPECT_EQ(call(21, {}), '\n');
    EXPECT_EQ(call(22, {buffer, 7}), 0);
    EXPECT_EQ(monitor.peekString(buffer, 20), QStringLiteral("a line"));
    EXPECT_EQ(call(25, {buffer}), 0);
    EXPECT_EQ(monitor.peekUint16(buffer), 0xFFFB);
    EXPECT_EQ(call(27, {buffer}), 0);
    EXPECT_EQ(monitor.peekUint32(buffer), 123456u);
    EXPECT_EQ(call(30, {buffer}), 0);
    EXPECT_EQ(std::bit_cast<double>(monitor.peekNumber(buffer, 8)), 2.5);
    terminal.ended = true;
    host.events.clear();
    EXPECT_EQ(call(21, {}), -1);
    EXPECT_EQ(call(22, {buffer, 7}), -2);
    EXPECT_EQ(call(40, {0}), 1);
    EXPECT_TRUE(host.events.empty());
}

TEST_F(TargetIOServerTest, ConsoleOutput)
{
    call(23, {'a'});
    call(23, {0});
    call(24, {put(text, "line")});
    call(20, {text, 1});
    call(19, {'!', 2});
    EXPECT_EQ(call(34, {text, 1, 3, 0}), 3);
    EXPECT_EQ(terminal.output, "aline\nline!lin");
}

TEST_F(TargetIOServerTest, Files)
{
    const std::string path = (folder / "file.txt").string();
    put(text, path);
    put(format, "w+");
    const int handle = call(6, {text, format});
    EXPECT_EQ(handle, 3);
    const auto file = static_cast<unsigned>(handle);
    put(buffer, "one\ntwo\n");
    EXPECT_EQ(call(34, {buffer, 1, 8, file}), 8);
    EXPECT_EQ(call(36, {file}), 8);
    EXPECT_EQ(call(38, {file}), 8);
    EXPECT_EQ(call(18, {buffer + 0x100, 20, file}), 0);
    EXPECT_EQ(monitor.peekString(buffer + 0x100, 20), QStringLiteral("one\n"));
    EXPECT_EQ(call(17, {file}), 't');
    EXPECT_EQ(call(73, {'T', file}), 'T');
    EXPECT_EQ(call(33, {buffer + 0x200, 2, 10, file}), 2);
    EXPECT_EQ(monitor.peekString(buffer + 0x200, 4), QStringLiteral("Two\n"));
    EXPECT_EQ(call(17, {file}), -1);
    EXPECT_EQ(call(40, {file}), 1);
    EXPECT_EQ(call(35, {file, 0xFFFC, 2}), 0);
    EXPECT_EQ(call(17, {file}), 't');
    put(format, "%d %s");
    put(buffer, "seven");
    EXPECT_EQ(call(37, {file}), 0);
    EXPECT_EQ(call(9, {file, format, 7, buffer}), 7);
    EXPECT_EQ(call(37, {file}), 0);
    EXPECT_EQ(call(13, {file, format, buffer + 0x10, buffer + 0x20}), 2);
    EXPECT_EQ(monitor.peekUint16(buffer + 0x10), 7);
    EXPECT_EQ(monitor.peekString(buffer + 0x20, 9), QStringLiteral("seven"));
    EXPECT_EQ(call(8, {file}), 0);
    EXPECT_EQ(call(8, {file}), -1);
    EXPECT_EQ(TargetIOServer::lastErrno(), EBADF);
    put(format, (folder / "other").string());
    EXPECT_EQ(call(79, {text, format}), 0);
    EXPECT_EQ(call(78, {format}), 0);
    EXPECT_EQ(call(78, {format}), -1);
    call(77, {put(buffer, "gone")});
    EXPECT_EQ(terminal.output, std::string("gone: ") + std::strerror(ENOENT) + "\n");
    put(format, "r");
    EXPECT_EQ(call(6, {text, format}), -1);
}

TEST_F(TargetIOServerTest, HandlesRunOutAndInitClosesThem)
{
    int opened = 0;
    while (call(80, {}) >= 3 && opened < 300)
        ++opened;
    EXPECT_EQ(opened, 197);
    EXPECT_EQ(call(17, {250}), -1);
    TargetIOServer::init({});
    EXPECT_EQ(call(17, {3}), -1);
    EXPECT_EQ(call(80, {}), 3);
}

TEST_F(TargetIOServerTest, ErrorsExitAndOtherServices)
{
    for (unsigned operation : {1u, 2u, 3u, 4u})
        call(operation, {});
    monitor.pokeUint16(communication, static_cast<unsigned short>(put(text, "own text")));
    TargetIOServer::handleOperation(&monitor, &monitor, 5, communication);
    call(42, {});
    call(46, {7});
    call(120, {text, 0x1234});
    EXPECT_EQ(host.events,
              (std::vector<std::string>{"divide by zero", "stack overflow", "stack underflow",
                                        "assert() failed", "own text", "break", "exit 7",
                                        "own text 4660"}));
    std::vector<unsigned> operands = words64(static_cast<std::uint64_t>(-100));
    const std::pair<std::int64_t, std::int64_t> quotients[] = {{7, -14}, {0, 0}, {-1, 100}};
    for (const auto& [divisor, quotient] : quotients) {
        operands.resize(4);
        for (unsigned word : words64(static_cast<std::uint64_t>(divisor)))
            operands.push_back(word);
        call(48, operands);
        EXPECT_EQ(static_cast<std::int64_t>(monitor.peekNumber(communication, 8)), quotient);
    }
    EXPECT_EQ(call(83, {put(text, "true")}), -1) << "no shell unless it is allowed";
    EXPECT_EQ(TargetIOServer::lastErrno(), EPERM);
    TargetIOServer::setSystemAllowed(true);
    EXPECT_EQ(call(83, {text}), 0);
    TargetIOServer::setSystemAllowed(false);
    EXPECT_EQ(call(82, {put(text, "GANTRY_NO_SUCH_VARIABLE"), buffer, 10}), -1);
    ::setenv("GANTRY_TEST", "value", 1);
    EXPECT_EQ(call(82, {put(text, "GANTRY_TEST"), buffer, 5}), -1);
    EXPECT_EQ(call(82, {text, buffer, 6}), 0);
    EXPECT_EQ(call(81, {buffer, 3}), -1);
    EXPECT_EQ(call(81, {buffer, 20}), 0);
    call(47, {buffer});
    EXPECT_GT(monitor.peekUint32(buffer), 1700000000u);
}

TEST_F(TargetIOServerTest, ArgumentsThatDontFitAreDroppedFromTheEnd)
{
    // Each takes a pointer and its text with a zero: 7, 6 and 8 bytes behind the closing pointer.
    const std::pair<unsigned, int> sizes[] = {{100, 3}, {23, 3}, {22, 2}, {15, 2}, {14, 1},
                                              {9, 1},   {8, 0},  {2, 0},  {0, 0}};
    for (const auto& [size, count] : sizes) {
        SCOPED_TRACE(size);
        monitor.memsetBytes(buffer, 110, 0x55);
        EXPECT_EQ(call(84, {buffer, size}), count);
        const char* expected[] = {"prog", "two", "three"};
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(
                monitor.peekString(monitor.peekUint16(buffer + 2 * static_cast<unsigned>(i)), 20),
                QString::fromLatin1(expected[i]));
        EXPECT_EQ(monitor.peekByte(buffer + size), 0x55);
    }
}
