// What programs do when they run.

#include "script/ScriptTestSupport.h"
#include "script/es/ESCode.h"
#include "script/es/ESVmOpcode.h"

namespace {

TEST(Machine, AContextLivesOnAfterAFailure)
{
    ESContext context;
    EXPECT_EQ(run(context, "var n = 1; function f() { n++; return null.x } f()"),
              "thrown TypeError: line 1: can't convert null to an object");
    EXPECT_EQ(run(context, "n"), "2");
    EXPECT_EQ(run(context, "function r(n) { return r(n + 1) + 1 } r(0)"),
              "fatal virtual machine stack too small");
    EXPECT_EQ(run(context, "n + 1"), "3");
    EXPECT_EQ(run(context, "function d(n) { return n ? d(n - 1) : 'bottom' } d(200)"), "bottom");
}

TEST(Machine, OpcodesThatNoStatementMakes)
{
    const auto result = [](std::initializer_list<ESVmOpcode> opcodes) {
        ESCode code;
        for (const ESVmOpcode opcode : opcodes)
            code.addbyte(std::uint8_t(opcode), 1);
        ESContext context;
        return context.toString(context.exec(&code)).toStdString();
    };
    using enum ESVmOpcode;
    EXPECT_EQ(result({NUM_4, INC, RET}), "5");
    EXPECT_EQ(result({NUM_4, DEC, RET}), "3");
    EXPECT_EQ(result({NUM_4, NUM_3, NOTIDENTITY, RET}), "true");
    EXPECT_EQ(result({NUM_4, NUM_4, NOTIDENTITY, RET}), "false");
}

TEST(Machine, ArraysOfTheHost)
{
    ESContext context;
    const ESValue array = context.eval(u"[1, 258, -1, '5', , 4294967295.5]"_s).value;
    EXPECT_EQ(context.toByteArray(array), (std::vector<quint8>{1, 2, 255, 5, 0, 255}));
    EXPECT_EQ(context.toUint16Array(array), (std::vector<quint16>{1, 258, 65535, 5, 0, 65535}));
    EXPECT_EQ(context.toUint32Array(array)[5], 0xFFFFFFFFU);
    const quint16 words[] = {7, 65535};
    const ESValue made = context.fromUint16Array(words);
    EXPECT_EQ(context.toString(made), u"7,65535"_s);
    for (const char* other : {"5", "({length: 2})", "'text'", "null"}) {
        try {
            context.toByteArray(context.eval(QString::fromUtf8(other)).value);
            ADD_FAILURE() << other;
        } catch (const ESException& exception) {
            EXPECT_TRUE(context.messageOf({ESCompletion::Exception, exception.value(), {}})
                            .endsWith(u"array argument expected"_s));
        }
    }
}

TEST(Machine, ContextsGiveTheirFunctionsBack)
{
    // Together more functions than code can name.
    const QByteArray program = QByteArray("function f() { return 7 }").repeated(200) + "f()";
    for (int i = 0; i < 400; ++i)
        ASSERT_EQ(run(program.constData()), "7") << i;
}

TEST(Machine, TheHostEndsAnEndlessLoop)
{
    struct Impatient : ESContext {
        bool carryOnExecuting() override { return ++polls < 5; }
        int polls = 0;
    } context;
    run(context, "function f() { for (;;) n++; } var n = 0; f(); n = 'went on'");
    EXPECT_EQ(context.polls, 5);
    context.polls = -1000;
    EXPECT_NE(run(context, "n"), "went on");
}

TEST(Machine, LongTextsAreBuiltPieceByPiece)
{
    EXPECT_EQ(
        run("var s = ''; for (var i = 0; i < 100000; i++) s += 'x'; var t = s + 'y'; var u = s + "
            "'z'; (s + s == s + s) + '' + (t == u) + (s == s + '')"),
        "truefalsetrue");
    EXPECT_EQ(run("var s = 'a'; s += 'b'; var t = s; s += 'c'; t += 'd'; s + t"), "abcabd");
}

} // namespace
