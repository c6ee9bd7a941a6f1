#include "KasTestSupport.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <map>

namespace {

struct Encoding {
    const char* source;
    const char* bytes; ///< from address 0x1000
};

void check(const std::vector<Encoding>& table, bool extended)
{
    for (const Encoding& c : table) {
        const Assembled result(c.source, extended ? msp430xOptions() : AssemblerOptions());
        EXPECT_EQ(result.messages, std::vector<std::string>{}) << c.source;
        EXPECT_EQ(result.bytes(), c.bytes) << c.source;
    }
}

/// Every base instruction in every combination of modes, as an independent assembler accepts it.
std::vector<std::string> baseInstructions()
{
    std::vector<std::string> lines;
    const std::vector<std::string> sources = {"r5",    "sp",      "6(r7)",   "-2(r9)", "@r10",
                                              "@r11+", "&0x1234", "#0x1234", "#-2",    "#0",
                                              "#1",    "#2",      "#4",      "#8",     "#-1"};
    const std::vector<std::string> destinations = {"r6", "pc", "sr", "4(r8)", "&0x240"};
    for (const char* name :
         {"mov", "add", "addc", "subc", "sub", "cmp", "dadd", "bit", "bic", "bis", "xor", "and"})
        for (const char* size : {"", ".b", ".w"})
            for (const std::string& source : sources)
                for (const std::string& destination : destinations)
                    if (std::string(size) != ".b" || source != "#0x1234")
                        lines.push_back(std::string(name) + size + " " + source + ", "
                                        + destination);
    for (const char* name :
         {"rrc", "rrc.b", "rra", "rra.b", "swpb", "sxt", "push", "push.b", "call"})
        for (const std::string& operand : sources)
            if (operand[0] != '#' || operand.size() > 3) // which constants are generated differs
                lines.push_back(std::string(name) + " " + operand);
    for (const char* name :
         {"adc", "adc.b", "clr", "clr.b", "dadc", "dec", "decd", "inc", "inc.b", "incd", "inv",
          "inv.b", "pop", "rla", "rla.b", "rlc", "sbc", "tst", "tst.b"})
        for (const std::string& operand : destinations)
            lines.push_back(std::string(name) + " " + operand);
    for (const char* line :
         {"br r5", "br #0x1234", "br @r5", "br &0x1234", "br 2(r5)", "ret", "reti", "nop", "clrc",
          "clrn", "clrz", "setc", "setn", "setz", "dint", "eint"})
        lines.emplace_back(line);
    return lines;
}

std::string hexOf(const std::string& encoding)
{
    std::string digits;
    for (std::size_t at = encoding.find("0x"); at != std::string::npos;
         at = encoding.find("0x", at + 2))
        digits += encoding.substr(at + 2, 2);
    return digits;
}

/// What llvm-mc makes of each line; lines that it doesn't take are missing.
std::map<std::size_t, std::string> peerEncodings(const std::vector<std::string>& lines)
{
    const std::string path = testing::TempDir() + "kas_peer-" + std::to_string(::getpid()) + ".s";
    std::ofstream source(path);
    for (std::size_t i = 0; i < lines.size(); ++i)
        source << "L" << i << ": " << lines[i] << "\n";
    source.close();
    std::FILE* pipe =
        popen(("llvm-mc --triple=msp430 --show-encoding " + path + " 2>/dev/null").c_str(), "r");
    std::map<std::size_t, std::string> encodings;
    std::size_t current = 0;
    std::array<char, 512> line;
    while (std::fgets(line.data(), line.size(), pipe) != nullptr) {
        const std::string text = line.data();
        const std::size_t at = text.find("encoding: [");
        if (text[0] == 'L')
            current = std::stoul(text.substr(1));
        else if (at != std::string::npos && text.find('\'') == std::string::npos)
            encodings[current] = hexOf(text.substr(at));
    }
    pclose(pipe);
    return encodings;
}

TEST(KasEncoding, BaseInstructionsAgreeWithAnotherAssembler)
{
    const std::vector<std::string> lines = baseInstructions();
    const auto peer = peerEncodings(lines);
    EXPECT_GT(peer.size(), lines.size() / 2);
    for (const auto& [index, expected] : peer) {
        const Assembled result(lines[index]);
        EXPECT_EQ(result.bytes(), expected) << lines[index];
    }
}

// What the other assembler lacks or has no word for. Encodings by the formats of SLAU144,
// chapter 3.
TEST(KasEncoding, BaseFormsOfItsOwn)
{
    check(
        {
            {"mov @r5+, 2(r6)", "b6450200"},
            {"mov @r5+, &0x200", "b2450002"},
            {"mov r5, @r6", "86450000"},
            {"push @sp", "11120000"},
            {"push #4", "30120400"},
            {"push #2", "2312"},
            {"mov.b #255, r5", "7543"},
            {"mov.b #-128, r5", "754080ff"},
            {"rla 4(r5)", "955504000400"},
            {"rlc.b &0x200", "d26200020002"},
            {"mov 4(pc), r5", "15400400"},
            {"mov r5, 4(pc)", "80450400"},
            {"mov 4(pc), 6(pc)", "904004000600"},
            {"mov #1, 6(pc)", "90430600"},
            {"mov 0x1100, r5", "1540fe00"},
            {"mov 0x1100, 0x1200", "9040fe00fc01"},
            {"mov #1, 0x1200", "9043fe01"},
            {"push 0x1100", "1012fe00"},
            {"jmp $", "ff3f"},
            {"jmp .+4", "013c"},
            {"jeq 1f\nnop\n1:", "01240343"},
            {"1: nop\n jne 1b", "0343fe23"},
            {"jlo 0x1002", "0028"},
            {"MOV.W R5, SP", "0145"},
        },
        false);
}

// By the formats of SLAU208, chapter "CPUX".
TEST(KasEncoding, ExtendedInstructions)
{
    check(
        {
            {"movx.a r5, r6", "00184645"},
            {"movx.w r5, r6", "40180645"},
            {"movx r5, r6", "40180645"},
            {"movx.b r5, r6", "40184645"},
            {"addx.a #0x12345, r6", "801876504523"},
            {"movx.a &0x12345, &0x54321", "8518d24245232143"},
            {"andx.w 4(r5), r6", "401816f50400"},
            {"movx.w 4(pc), r5", "401815400400"},
            {"subx.b r5, -2(r6)", "4f18c685feff"},
            {"movx.a #1, r5", "00185543"},
            {"clrx.a r5", "00184543"},
            {"tstx.b r5", "40184593"},
            {"incx.w r5", "40181553"},
            {"decdx.a r5", "00186583"},
            {"sbcx.a r5", "00184573"},
            {"invx.w r5", "401835e3"},
            {"rlax.a r5", "00184555"},
            {"adcx.w &0x12345", "411882634523"},
            {"rrcx.a r5", "00184510"},
            {"rrax.w @r5", "40182511"},
            {"pushx.a &0x12345", "801852124523"},
            {"pushx.b #3", "401870120300"},
            {"popx.a r5", "00187541"},
            {"rrux.w r5", "40190510"},
            {"rrux.a r5", "00194510"},
            {"sxtx.a r5", "00188511"},
            {"sxtx.w r5", "40188511"},
            {"swpbx.a r5", "00188510"},
            {"push #4", "2212"},
            {"push #8", "3212"},
        },
        true);
}

TEST(KasEncoding, Repeated)
{
    check(
        {
            {"rpt #5\n rrax.a r6", "04184611"},
            {"rpt #5 { rrax.a r6", "04184611"},
            {"RPT #16 || rlax.b r4", "4f184454"},
            {"rpt r7\n addx.w r5, r6", "c7180655"},
            {"rpt #1+1 || rrux.a r5\n movx.a r5, r6", "0119451000184645"},
        },
        true);
}

TEST(KasEncoding, AddressInstructions)
{
    check(
        {
            {"mova @r9, r8", "0809"},
            {"mova @r9+, r8", "1809"},
            {"mova &0x12345, r8", "28014523"},
            {"mova 0x20(r9), r8", "38092000"},
            {"mova 0x1100, r5", "3500fe00"},
            {"mova 8(pc), r5", "35000800"},
            {"mova r9, &0x12345", "61094523"},
            {"mova r9, 0x20(r8)", "78092000"},
            {"mova r9, @r8", "78090000"},
            {"mova #0x12345, r8", "88014523"},
            {"mova r9, r8", "c809"},
            {"cmpa #0x12345, r8", "98014523"},
            {"cmpa r9, r8", "d809"},
            {"adda #0x12345, r8", "a8014523"},
            {"adda r9, r8", "e809"},
            {"suba #0x12345, r8", "b8014523"},
            {"suba #-1, r8", "b80fffff"},
            {"suba r9, r8", "f809"},
            {"clra r5", "85000000"},
            {"tsta r5", "95000000"},
            {"incda r5", "a5000200"},
            {"decda r5", "b5000200"},
            {"bra #0x12345", "80014523"},
            {"bra r5", "c005"},
            {"bra @r5", "0005"},
            {"bra @r5+", "1005"},
            {"bra &0x12345", "20014523"},
            {"bra 2(r5)", "30050200"},
            {"reta", "1001"},
            {"calla r5", "4513"},
            {"calla 2(r5)", "55130200"},
            {"calla @r5", "6513"},
            {"calla @r5+", "7513"},
            {"calla &0x12345", "81134523"},
            {"calla 0x12345", "91134313"},
            {"calla #0x12345", "b1134523"},
            {"pushm.a #2, r10", "1a14"},
            {"pushm #16, r15", "ff15"},
            {"popm.a #2, r10", "1916"},
            {"popm.w #1, r5", "0517"},
            {"rrcm.a #1, r5", "4500"},
            {"rrcm #4, r5", "550c"},
            {"rram.a #2, r5", "4505"},
            {"rlam.w #3, r5", "550a"},
            {"rrum.a #4, r5", "450f"},
        },
        true);
}

} // namespace
