#include "debugger/expressions/ExpressionType.h"

#include "debugger/expressions/ParserException.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

ExpressionType number(long long value, unsigned size) { return {value, size, 0}; }
ExpressionType positive(unsigned long long value, unsigned size) { return {value, size, 0}; }

TEST(ExpressionType, IsUndefinedByDefault)
{
    const ExpressionType value;
    EXPECT_EQ(value.getType(), ExpressionType::Undefined);
    EXPECT_EQ(value.getSizeInBytes(), 2U);
    EXPECT_FALSE(value.isNumberType());
    EXPECT_EQ(value.toStr(10), u"");
}

TEST(ExpressionType, IntegersAreReadByTheirSize)
{
    const struct {
        unsigned size;
        unsigned long long asUnsigned;
        long long asSigned;
    } cases[] = {{1, 0xF0, -0x10},
                 {2, 0xE1F0, -0x1E10},
                 {4, 0xC3D2E1F0, -0x3C2D1E10},
                 {8, 0x87A5B4C3D2E1F0, 0x87A5B4C3D2E1F0},
                 {3, 0x87A5B4C3D2E1F0, 0x87A5B4C3D2E1F0}};
    for (const auto& it : cases) {
        EXPECT_EQ(positive(0x87A5B4C3D2E1F0, it.size).getUInteger(), it.asUnsigned) << it.size;
        EXPECT_EQ(positive(0x87A5B4C3D2E1F0, it.size).getInteger(), it.asSigned) << it.size;
    }
    // All 64 bits stay until then.
    const ExpressionType sum = number(100, 1) + number(300, 8);
    EXPECT_EQ(sum.getSizeInBytes(), 1U);
    EXPECT_EQ(sum.getUInteger(), 400U - 256U);
}

TEST(ExpressionType, FloatingValuesAreReadAsIntegers)
{
    EXPECT_EQ(ExpressionType(-2.75, 8).getInteger(), -2);
    EXPECT_EQ(ExpressionType(1.0, 4).getUInteger(), 0x3F800000U);
    EXPECT_EQ(ExpressionType(1.0, 8).getUInteger(), 0x3FF0000000000000U);
    EXPECT_EQ(ExpressionType(1e300, 8).getInteger(), std::numeric_limits<long long>::max());
    EXPECT_EQ(ExpressionType(-1e300, 8).getInteger(), std::numeric_limits<long long>::min());
    EXPECT_EQ(ExpressionType(std::nan(""), 8).getInteger(), 0);
    EXPECT_EQ(number(-1, 2).getFloating(), -1.0);
    EXPECT_EQ(positive(0xFFFF, 2).getFloating(), 65535.0);
}

TEST(ExpressionType, SetTypeConvertsToFloating)
{
    ExpressionType value = number(-1, 2);
    value.setType(ExpressionType::Floating);
    EXPECT_EQ(value.getFloating(), 65535.0);
    ExpressionType truth(true);
    truth.setType(ExpressionType::Floating);
    EXPECT_EQ(truth.getFloating(), 1.0);
}

TEST(ExpressionType, EqualValuesAreEquivalent)
{
    const ExpressionType values[] = {ExpressionType(),       ExpressionType(true),
                                     ExpressionType(false),  number(1, 2),
                                     number(1, 4),           number(2, 2),
                                     positive(1, 2),         ExpressionType("a", 5),
                                     ExpressionType("b", 5), ExpressionType(1.0, 8)};
    for (const ExpressionType& a : values)
        for (const ExpressionType& b : values)
            EXPECT_EQ(a.equiv(b), &a == &b) << (&a - values) << ' ' << (&b - values);
    EXPECT_TRUE(ExpressionType(std::nan(""), 8).equiv(ExpressionType(std::nan(""), 8)));
}

TEST(ExpressionType, UnsignedResultsStayUnsigned)
{
    EXPECT_EQ((positive(1, 2) - number(2, 2)).getUInteger(), 0xFFFFU);
    EXPECT_EQ((positive(0xFFF0, 2) >> number(4, 8)).getUInteger(), 0xFFFU);
    EXPECT_EQ((number(-16, 2) >> number(2, 8)).getInteger(), -4);
    EXPECT_EQ((positive(7, 2) / number(-1, 2)).getUInteger(), 0U);
    EXPECT_TRUE((positive(1, 2) < number(-1, 2)).getBoolean());
    EXPECT_FALSE((number(1, 2) < number(-1, 2)).getBoolean());
    EXPECT_EQ((-positive(1, 1)).getUInteger(), 0xFFU);
    EXPECT_EQ((~positive(1, 2)).getUInteger(), 0xFFFEU);
    EXPECT_EQ((positive(0, 2) + number(1, 2)).getType(), ExpressionType::UnsignedInteger);
}

TEST(ExpressionType, AbsIsTheMagnitude)
{
    EXPECT_EQ(number(-5, 2).abs().getInteger(), 5);
    EXPECT_EQ(positive(0xFFFF, 2).abs().getUInteger(), 0xFFFFU);
    EXPECT_EQ(ExpressionType(-1.5, 8).abs().getFloating(), 1.5);
    EXPECT_THROW(ExpressionType(true).abs(), ParserException);
    EXPECT_THROW(ExpressionType("a", 1).abs(), ParserException);
}

TEST(ExpressionType, TextOfNumbers)
{
    const ExpressionType minus = number(-2, 2);
    EXPECT_EQ(minus.toStr(10), u"-2");
    EXPECT_EQ(minus.toStr(10, true), u"65534");
    EXPECT_EQ(minus.toStr(16), u"0xfffe");
    EXPECT_EQ(minus.toStr(2), u"0b1111111111111110");
    EXPECT_EQ(minus.toStr(8), u"0177776");
    EXPECT_EQ(positive(5, 1).toStr(16), u"0x05");
    EXPECT_EQ(positive(5, 4).toStr(16), u"0x00000005");
    EXPECT_EQ(positive(1, 8).toStr(16), u"0x0000000000000001");
    EXPECT_EQ(positive(300, 1).toStr(16), u"0x2c");
    EXPECT_EQ(ExpressionType(5ULL, 2, 3).toStr(2), u"0b101"); // a bit-field's width
    EXPECT_EQ(positive('A', 1).toStr(1, false, true), u"'A'");
    EXPECT_EQ(positive(0x4107, 2).toStr(1, false, true), u"'A\\u0007'");
}

TEST(ExpressionType, TextOfOtherValues)
{
    EXPECT_EQ(ExpressionType(true).toStr(16), u"true");
    EXPECT_EQ(ExpressionType(false).toStr(10), u"false");
    EXPECT_EQ(ExpressionType(0.1, 4).toStr(10), u"0.1");
    EXPECT_EQ(ExpressionType(1e10, 8).toStr(10), u"1e+10");
    EXPECT_EQ(ExpressionType(1.0, 4).toStr(16), u"0x3f800000");
    EXPECT_EQ(ExpressionType(1.0, 8).toStr(16), u"0x3ff0000000000000");
    EXPECT_EQ(ExpressionType("a\x01\xE4z", 10).toStr(10), u"a\\u0001\\u00e4z");
    EXPECT_EQ(ExpressionType("abcdef", 3).getString(), u"abc");
    EXPECT_EQ(ExpressionType("ab", 3).getString(), u"ab");
}

TEST(ExpressionType, FloatingFormatsAreOneConversion)
{
    const ExpressionType value(3.14159, 8);
    EXPECT_EQ(value.toStr(10, false, false, "%.2f"), u"3.14");
    EXPECT_EQ(value.toStr(10, false, false, "<%8.1e>"), u"< 3.1e+00>");
    EXPECT_EQ(value.toStr(10, false, false, "%.3g%%"), u"3.14%");
    // Anything else would read what isn't there.
    for (const char* const format :
         {"%s", "%n", "%d", "%g %g", "%*g", "%", "text", "%999g", "%.999f", ""})
        EXPECT_EQ(value.toStr(10, false, false, format), u"3.14159") << format;
}

TEST(ExpressionType, IsReadFromTextAsItsModel)
{
    const auto read = [](const ExpressionType& model, const char16_t* text, int radix) {
        return ExpressionType(model, QString::fromUtf16(text), radix);
    };
    EXPECT_EQ(read(number(0, 2), u"-5", 10).getInteger(), -5);
    EXPECT_EQ(read(number(0, 2), u"0xFFFE", 16).getInteger(), -2);
    EXPECT_EQ(read(positive(0, 1), u"0b101", 2).getUInteger(), 5U);
    EXPECT_EQ(read(positive(0, 2), u"0177776", 8).getUInteger(), 65534U);
    EXPECT_TRUE(read(ExpressionType(false), u"true", 10).getBoolean());
    EXPECT_FALSE(read(ExpressionType(true), u"false", 10).getBoolean());
    EXPECT_EQ(read(ExpressionType(0.0, 8), u"2.5", 10).getFloating(), 2.5);
    EXPECT_EQ(read(ExpressionType(0.0, 4), u"0x3f800000", 16).getFloating(), 1.0);
    EXPECT_EQ(read(ExpressionType("", 0), u"word", 10).getString(), u"word");
    EXPECT_EQ(read(number(7, 2), u"nonsense", 10).getInteger(), 0);
    EXPECT_EQ(read(number(7, 2), u"zz", 99).getInteger(), 0);
    EXPECT_EQ(read(number(7, 4), u"5", 10).getSizeInBytes(), 4U);
}

TEST(ExpressionType, NamesOfTypes)
{
    EXPECT_EQ(ExpressionType(true).TypeToString(), u"boolean");
    EXPECT_EQ(number(0, 1).TypeToString(), u"char");
    EXPECT_EQ(number(0, 2).TypeToString(), u"short");
    EXPECT_EQ(number(0, 4).TypeToString(), u"int");
    EXPECT_EQ(positive(0, 1).TypeToString(), u"unsigned char");
    EXPECT_EQ(positive(0, 1).TypeToString(true), u"byte");
    EXPECT_EQ(positive(0, 2).TypeToString(), u"unsigned short");
    EXPECT_EQ(positive(0, 4).TypeToString(), u"unsigned int");
    EXPECT_EQ(positive(0, 8).TypeToString(), u"unsigned long long");
    EXPECT_EQ(ExpressionType(0.0, 4).TypeToString(), u"float");
    EXPECT_EQ(ExpressionType(0.0, 8).TypeToString(), u"double");
    EXPECT_EQ(ExpressionType("", 0).TypeToString(), u"string");
    EXPECT_EQ(ExpressionType().TypeToString(), u"unknown");
}

} // namespace
