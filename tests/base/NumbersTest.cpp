#include "base/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/cError.h"

namespace kd {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

TEST(NumbersTest, NumberAtTheFrontOfAText) {
    struct Case {
        const char* label;
        const char* text;
        double value;
    };
    const Case cases[] = {
        {"plain", "12", 12},
        {"with a point", "12.5", 12.5},
        {"no digit before the point", ".500", 0.5},
        {"negative without a digit before the point", "-.25", -0.25},
        {"no digit behind the point", "7.", 7},
        {"plus sign", "+3", 3},
        {"leading blanks", "   4.5", 4.5},
        {"a blank ends it", "1 2", 1},
        {"a blank behind the sign ends it before it begins", "- 2", 0},
        {"a blank before the exponent ends it", "1 E3", 1},
        {"text behind is ignored", "3.5mm", 3.5},
        {"a second point ends it", "1.2.3", 1.2},
        {"a comma ends it", "1,5", 1},
        {"a colon ends it", "12:30", 12},
        {"a number sign ends it", "1#5", 1},
        {"a number sign in front makes it none", "#5", 0},
        {"a currency alone is none", "$", 0},
        {"a byte that is no text is none", "\xD1", 0},
        {"a second sign makes it none", "--1", 0},
        {"exponent", "1.5E2", 150},
        {"small e", "1e3", 1000},
        {"exponent with sign", "25E-1", 2.5},
        {"exponent with plus", "1E+02", 100},
        {"exponent behind a bare point", "5.E1", 50},
        {"exponent without digits is ignored", "2E", 2},
        {"exponent with a sign alone is ignored", "2E+", 2},
        {"exponent with something else behind it is ignored", "2Ex1", 2},
        {"exponent without a number", "E5", 0},
        {"point alone", ".", 0},
        {"minus alone", "-", 0},
        {"minus and point", "-.", 0},
        {"empty", "", 0},
        {"blanks", "   ", 0},
        {"a tab is no blank", "\t5", 0},
        {"letters", "abc", 0},
        {"letter before the digits", "F12", 0},
        {"no hexadecimal", "0x10", 0},
        {"no infinity", "inf", 0},
        {"no nan", "nan", 0},
        {"fixed limit below 1, as the file has it", ".001", 0.001},
        {"too large", "1E400", Infinity},
        {"too large and negative", "-1E400", -Infinity},
        {"too large behind the point", "0.0001E400", Infinity},
        {"too large behind the point, with a sign", "0.0001E+400", Infinity},
        {"too small", "1E-400", 0},
        {"exponent beyond any integer", "1E99999999999", Infinity},
        {"negative exponent beyond any integer", "1E-99999999999", 0},
        {"zero with a huge exponent", "0E999", 0},
        {"zero with an exponent beyond any integer", "0.000E99999999999", 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(NumberAtFront(c.text), c.value) << c.label;
    }
}

TEST(NumbersTest, LengthOfTheDigitsDoesNotMistakeTheSize) {
    const Text zeros(400, '0');
    EXPECT_EQ(NumberAtFront("." + zeros + "1"), 0);
    EXPECT_EQ(NumberAtFront("." + zeros + "1E5"), 0);
    EXPECT_EQ(NumberAtFront(zeros + "." + zeros + "1"), 0);
    EXPECT_EQ(NumberAtFront(zeros + "12"), 12);
    EXPECT_EQ(NumberAtFront("1" + zeros), Infinity);
    EXPECT_EQ(NumberAtFront("1" + zeros + "E5"), Infinity);
    EXPECT_EQ(NumberAtFront("1" + zeros + "E-400"), 1);
    EXPECT_EQ(NumberAtFront("          -1" + zeros + " E-900"), -Infinity) << "the blank ends it";
}

TEST(NumbersTest, NumbersOfManyDigitsAreReadToTheLastOne) {
    EXPECT_EQ(NumberAtFront("0.1"), 0.1);
    EXPECT_EQ(NumberAtFront("-.3"), -0.3);
    EXPECT_EQ(NumberAtFront("12345678.901234"), 12345678.901234);
    EXPECT_EQ(NumberAtFront("12345678.9012345"), 12345678.9012345);
    EXPECT_EQ(NumberAtFront("123456789012345"), 123456789012345);
    EXPECT_EQ(NumberAtFront(".00000000000001"), 1e-14);
    EXPECT_EQ(NumberAtFront("9007199254740993"), 9007199254740992);
    EXPECT_EQ(NumberAtFront("1e-3"), 1e-3);
    EXPECT_EQ(ToDouble("2,675", ','), 2.675);
    EXPECT_TRUE(std::signbit(NumberAtFront("-0")));
    EXPECT_FALSE(std::signbit(NumberAtFront("-")));  // no number at all
    EXPECT_FALSE(std::signbit(NumberAtFront("-.")));
}

TEST(NumbersTest, WhichTextsAreNumbers) {
    struct Case {
        const char* label;
        const char* text;
        bool withPoint;
        bool withComma;
    };
    const Case cases[] = {
        {"digits", "12", true, true},
        {"point", "1.5", true, false},
        {"comma", "1,5", false, true},
        {"separator first", ".5", true, false},
        {"comma first", ",5", false, true},
        {"separator last", "5.", true, false},
        {"sign", "-5", true, true},
        {"plus sign", "+5", true, true},
        {"sign behind", "5-", false, false},
        {"blank behind the sign", "- 5", false, false},
        {"two signs", "+-5", false, false},
        {"blanks around", "  5  ", true, true},
        {"blank inside", "1 000", false, false},
        {"exponent", "1E5", true, true},
        {"small exponent with sign", "1.5e-3", true, false},
        {"exponent without digits", "1E", false, false},
        {"exponent with a sign alone", "1E-", false, false},
        {"exponent with a point", "1E1.5", false, false},
        {"exponent alone", "E5", false, false},
        {"two points", "1.2.3", false, false},
        {"two commas", "1,234,567", false, false},
        {"both separators", "1,234.5", false, false},
        {"separator alone", ".", false, false},
        {"sign and separator", "-.", false, false},
        {"empty", "", false, false},
        {"blanks", "   ", false, false},
        {"tab in front", "\t5", false, false},
        {"tab behind", "5\t", false, false},
        {"carriage return behind", "5\r", false, false},
        {"line feed behind", "5\n", false, false},
        {"currency", "$5", false, false},
        {"number sign", "#5", false, false},
        {"euro", "5\u20AC", false, false},
        {"brackets", "(5)", false, false},
        {"percent", "5%", false, false},
        {"hexadecimal", "&H1F", false, false},
        {"hexadecimal of another kind", "0x1F", false, false},
        {"hexadecimal float", "1p3", false, false},
        {"D as exponent", "1D5", false, false},
        {"inf", "inf", false, false},
        {"infinity", "INFINITY", false, false},
        {"nan", "nan", false, false},
        {"letters behind", "5mm", false, false},
        {"non-breaking space", "1\u00A0000", false, false},
        {"digits of another script", "\u0665", false, false},
        {"largest double", "1.7976931348623157E308", true, false},
        {"beyond a double", "1E309", false, false},
        {"negative beyond a double", "-1E309", false, false},
        {"below a double", "1E-400", true, true},
        {"zero with a huge exponent", "0E999", true, true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(IsNumber(c.text, '.'), c.withPoint) << c.label << " with a point";
        EXPECT_EQ(IsNumber(c.text, ','), c.withComma) << c.label << " with a comma";
        for (const char separator : {'.', ','}) {
            if (IsNumber(c.text, separator)) {
                EXPECT_TRUE(std::isfinite(ToDouble(c.text, separator))) << c.label;
            } else {
                try {
                    (void)ToDouble(c.text, separator);
                    ADD_FAILURE() << c.label << " is converted";
                } catch (const cError& error) {
                    EXPECT_EQ(error.Number(), errTypeMismatch) << c.label;
                    EXPECT_EQ(error.Source(), "Numbers.ToDouble") << c.label;
                    EXPECT_EQ(error.Description(), "Type mismatch") << c.label;
                }
            }
        }
    }
}

TEST(NumbersTest, ToDoubleGivesTheValue) {
    EXPECT_EQ(ToDouble(" 1.5 ", '.'), 1.5);
    EXPECT_EQ(ToDouble("-,25", ','), -0.25);
    EXPECT_EQ(ToDouble("+2,5E3", ','), 2500);
    EXPECT_EQ(ToDouble("0.1", '.'), 0.1);
    EXPECT_EQ(ToDouble("123456789.123456789", '.'), 123456789.123456789);
}

TEST(NumbersTest, WholeNumbersRoundATieToTheEvenOne) {
    struct Case {
        double value;
        int whole;
    };
    const Case cases[] = {{0.5, 0},   {1.5, 2},   {2.5, 2},         {-0.5, 0},        {-1.5, -2},
                          {-2.5, -2}, {2.4, 2},   {2.6, 3},         {2.5000001, 3},   {0, 0},
                          {7, 7},     {-7.9, -8}, {32767.4, 32767}, {-32768, -32768}, {-32768.5, -32768}};
    for (const Case& c : cases) {
        EXPECT_EQ(ToInt16(c.value), c.whole) << c.value;
        EXPECT_EQ(ToInt32(c.value), c.whole) << c.value;
    }
}

TEST(NumbersTest, WholeNumberOutsideTheWidthOverflows) {
    for (const double value : {32767.5, 32768.0, -32768.51, -40000.0, 1e300, Infinity, -Infinity,
                               std::numeric_limits<double>::quiet_NaN()}) {
        try {
            (void)ToInt16(value);
            ADD_FAILURE() << value;
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), errOverflow) << value;
            EXPECT_EQ(error.Source(), "Numbers.ToInt16") << value;
        }
    }
    EXPECT_EQ(ToInt32(2147483647.0), 2147483647);
    EXPECT_EQ(ToInt32(-2147483648.0), std::numeric_limits<std::int32_t>::min());
    for (const double value : {2147483647.5, 2147483648.0, -2147483649.0, Infinity}) {
        try {
            (void)ToInt32(value);
            ADD_FAILURE() << value;
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), errOverflow) << value;
            EXPECT_EQ(error.Source(), "Numbers.ToInt32") << value;
        }
    }
}

}  // namespace
}  // namespace kd
