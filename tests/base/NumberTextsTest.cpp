#include "base/NumberTexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

#include "base/Numbers.h"

namespace kd {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// --- a slow reference: school arithmetic on digit texts
// ------------------------------------------------------

/// A decimal number as two runs of digits.
struct Schoolbook {
    bool negative = false;
    std::string whole;
    std::string behind;
};

/// The 15 significant digits of a number, written out without an exponent.
Schoolbook WrittenOut(double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.14e", std::abs(value));
    std::string digits;
    const char* at = text.data();
    for (; *at != 'e'; ++at) {
        if (*at != '.') {
            digits += *at;
        }
    }
    int point = std::atoi(at + 1) + 1;
    while (point < 0) {
        digits.insert(0, 1, '0');
        ++point;
    }
    while (static_cast<int>(digits.size()) < point) {
        digits += '0';
    }
    Schoolbook result;
    result.negative = value < 0;
    result.whole = digits.substr(0, static_cast<std::size_t>(point));
    result.behind = digits.substr(static_cast<std::size_t>(point));
    return result;
}

/// Adds 5 at the place behind the wanted ones, carries, and cuts.
Schoolbook RoundedByHand(double value, int decimals) {
    Schoolbook number = WrittenOut(value);
    const auto places = static_cast<std::size_t>(decimals);
    number.behind.resize(std::max(number.behind.size(), places + 1), '0');
    std::string digits = "0" + number.whole + number.behind;
    std::size_t at = 1 + number.whole.size() + places;
    int carry = 5;
    for (;; --at) {
        const int sum = digits[at] - '0' + carry;
        digits[at] = static_cast<char>('0' + sum % 10);
        carry = sum / 10;
        if (carry == 0 || at == 0) {
            break;
        }
    }
    const std::size_t point = 1 + number.whole.size();
    number.whole = digits.substr(0, point);
    number.behind = digits.substr(point, places);
    return number;
}

bool IsZero(const Schoolbook& number) {
    return (number.whole + number.behind).find_first_not_of('0') == std::string::npos;
}

double ValueByHand(double value, int decimals) {
    const Schoolbook number = RoundedByHand(value, decimals);
    const double result = std::strtod((number.whole + "." + number.behind).c_str(), nullptr);
    return number.negative && result != 0 ? -result : result;
}

/// The mask's text for numbers whose text has no exponent.
Text MaskByHand(double value, int length, int decimals) {
    const Schoolbook number = RoundedByHand(value, decimals < 0 ? 0 : decimals);
    Text text = number.whole.substr(std::min(number.whole.find_first_not_of('0'), number.whole.size()));
    if (IsZero(number)) {
        text = "0";
    } else if (number.negative) {
        text.insert(0, 1, '-');
    }
    if (decimals >= 0) {
        text += "." + number.behind;
    }
    const auto kept = static_cast<std::size_t>(length);
    return text.size() > kept ? text.substr(text.size() - kept) : text;
}

/// Values as they occur in schemas, and the nasty ones near ties, from a fixed seed.
std::vector<double> Values(std::size_t count) {
    std::mt19937_64 random(20260304);
    std::vector<double> values;
    values.reserve(count);
    while (values.size() < count) {
        const auto digits = static_cast<double>(random() % 1000000000000ULL);
        const int power = static_cast<int>(random() % 14);
        double value = digits / std::pow(10.0, power);
        switch (random() % 6) {
            case 0:  // an exact tie of some place, as near as a double comes
                value = (std::floor(value) * 2 + 1) / 2 / std::pow(10.0, static_cast<int>(random() % 5));
                break;
            case 1:  // the neighbours of a tie
                value = std::nextafter((std::floor(value) + 0.5) / 100, random() % 2 == 0 ? 0.0 : 1e18);
                break;
            case 2:  // a sum with the usual dust behind it
                value = value * 0.1 + value * 0.2;
                break;
            default:
                break;
        }
        values.push_back(random() % 3 == 0 ? -value : value);
    }
    return values;
}

// --- writing
// -------------------------------------------------------------------------------------------------

TEST(NumberTextsTest, DigitsArePlain) {
    EXPECT_EQ(Digits(0), "0");
    EXPECT_EQ(Digits(-17), "-17");
    EXPECT_EQ(Digits(2147483647), "2147483647");
}

TEST(NumberTextsTest, PlainTextOfTheEverydayAndTheEdges) {
    struct Case {
        double value;
        const char* text;
    };
    const Case cases[] = {{0, "0"},
                          {-0.0, "0"},
                          {0.5, ".5"},
                          {-0.25, "-.25"},
                          {12.5, "12.5"},
                          {100, "100"},
                          {-7, "-7"},
                          {0.001, ".001"},
                          {1e15, "1E+15"},
                          {-1e15, "-1E+15"},
                          {1.5e15, "1.5E+15"},
                          {1.5e-16, "1.5E-16"},
                          {9.99999999999999e-16, "9.99999999999999E-16"},
                          {1e-15, ".000000000000001"},
                          {1.5e-15, ".0000000000000015"},
                          {123456789012345, "123456789012345"},
                          {123456789012345.6, "123456789012346"},
                          {999999999999999, "999999999999999"},
                          {999999999999999.4, "999999999999999"},
                          {999999999999999.9, "1E+15"},
                          {1e100, "1E+100"},
                          {-3e20, "-3E+20"},
                          {1e-100, "1E-100"},
                          {1.7976931348623157e308, "1.79769313486232E+308"},
                          {Infinity, "INF"},
                          {-Infinity, "-INF"},
                          {std::numeric_limits<double>::quiet_NaN(), "NAN"},
                          {0.1 + 0.2, ".3"},
                          {1.0 / 3.0, ".333333333333333"},
                          {2.0 / 3.0, ".666666666666667"}};
    for (const Case& c : cases) {
        EXPECT_EQ(PlainText(c.value), c.text);
    }
}

TEST(NumberTextsTest, PlainTextWithLeadingZeroTakesTheSeparator) {
    EXPECT_EQ(PlainTextWithLeadingZero(0.5, '.'), "0.5");
    EXPECT_EQ(PlainTextWithLeadingZero(0.5, ','), "0,5");
    EXPECT_EQ(PlainTextWithLeadingZero(-0.25, ','), "-0,25");
    EXPECT_EQ(PlainTextWithLeadingZero(12.5, ','), "12,5");
    EXPECT_EQ(PlainTextWithLeadingZero(0, ','), "0");
    EXPECT_EQ(PlainTextWithLeadingZero(-3, ','), "-3");
    EXPECT_EQ(PlainTextWithLeadingZero(1.5e20, ','), "1,5E+20");
}

TEST(NumberTextsTest, WhatIsWrittenIsReadBack) {
    for (const double value : Values(20000)) {
        const double cut = NumberAtFront(PlainText(value));
        EXPECT_NEAR(cut, value, std::abs(value) * 5.1e-15);
        EXPECT_EQ(NumberAtFront(PlainText(cut)), cut) << PlainText(value);
    }
    for (const double value : {1e15, 1.5e-16, -3e20, 1e300, 1e-300}) {
        EXPECT_EQ(NumberAtFront(PlainText(value)), value);
    }
}

TEST(NumberTextsTest, RoundHalfAwayGoesByTheDecimalDigits) {
    struct Case {
        const char* label;
        double value;
        int decimals;
        double rounded;
    };
    const Case cases[] = {
        {"tie that a double holds from below", 1.005, 2, 1.01},
        {"another one", 2.675, 2, 2.68},
        {"negative tie at none", -2.5, 0, -3},
        {"tie at none", 2.5, 0, 3},
        {"even before the tie", 0.5, 0, 1},
        {"below the tie", 2.4999, 0, 2},
        {"limit of half a thousandth", 0.0005, 3, 0.001},
        {"just below it", 0.00049, 3, 0},
        {"negative just below it", -0.0004, 3, 0},
        {"far below the place", 1e-10, 3, 0},
        {"carries through nines", 9.995, 2, 10},
        {"carries into a new digit", 0.99995, 4, 1},
        {"nothing to round", 12.5, 3, 12.5},
        {"zero", 0, 2, 0},
        {"15 digits decide: 2.4999999999999996 is a tie", 2.4999999999999996, 0, 3},
        {"large, below the edge", 7.9e28, 0, 7.9e28},
        {"beyond the edge", 1.5e30, 0, 1.5e30},
        {"edge counts the decimals", 1.2345678901234567e27, 3, 1.2345678901234567e27},
        {"many decimals", 0.123456789012345, 400, 0.123456789012345},
        {"as many decimals as digits", 0.123456789012345, 15, 0.123456789012345},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(RoundHalfAway(c.value, c.decimals), c.rounded) << c.label;
    }
    EXPECT_FALSE(std::signbit(RoundHalfAway(-0.0004, 3))) << "no negative zero";
    EXPECT_EQ(RoundHalfAway(Infinity, 2), Infinity);
    EXPECT_TRUE(std::isnan(RoundHalfAway(std::numeric_limits<double>::quiet_NaN(), 2)));
}

TEST(NumberTextsTest, FromTwoToThe96OnANumberStaysUnrounded) {
    constexpr double Edge = 79228162514264337593543950336.0;
    EXPECT_EQ(RoundHalfAway(Edge, 0), Edge);
    EXPECT_EQ(RoundHalfAway(-Edge, 0), -Edge);
    const double below = std::nextafter(Edge, 0.0);
    EXPECT_EQ(RoundHalfAway(below, 0), 79228162514264300000000000000.0) << "cut to its 15 digits";
    const double scaled = 7.92281625142643385e26;  // times 100 it is at the edge
    EXPECT_EQ(RoundHalfAway(scaled, 3), scaled);
    EXPECT_EQ(RoundHalfAway(8.1234567890123456e25, 3), 8.1234567890123456e25) << "its thousandfold is beyond";
    EXPECT_EQ(RoundHalfAway(7.1234567890123456e25, 3), 7.12345678901235e25) << "its thousandfold is below";
}

TEST(NumberTextsTest, RoundHalfAwayIsWhatOneGetsByHand) {
    for (const double value : Values(20000)) {
        for (int decimals = 0; decimals <= 8; ++decimals) {
            ASSERT_EQ(RoundHalfAway(value, decimals), ValueByHand(value, decimals))
                << PlainText(value) << " at " << decimals;
        }
    }
}

TEST(NumberTextsTest, RevisionText) {
    struct Case {
        double value;
        const char* text;
    };
    const Case cases[] = {{0, "."},          {7, "7."},
                          {0.5, ".5"},       {1.25, "1.25"},
                          {1.2345, "1.235"}, {1.0005, "1.001"},
                          {-1.5, "-1.5"},    {-0.0004, "."},
                          {0.0004, "."},     {0.0005, ".001"},
                          {-0.5, "-.5"},     {12.9996, "13."},
                          {100, "100."},     {1e15, "1000000000000000."},
                          {2.1, "2.1"},      {0.1 + 0.2, ".3"},
                          {7.0004, "7."},    {100.2004, "100.2"}};
    for (const Case& c : cases) {
        EXPECT_EQ(RevisionText(c.value), c.text);
    }
}

#ifdef KD_CHECKED
TEST(NumberTextsTest, ARevisionThatIsNotFiniteBreaksThePrecondition) {
    for (const double value : {Infinity, -Infinity, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_DEATH((void)RevisionText(value), "precondition broken");
    }
}
#endif

// --- masks
// ---------------------------------------------------------------------------------------------------

TEST(NumberTextsTest, LayIntoMask) {
    struct Case {
        const char* label;
        double value;
        int length;
        int decimals;
        const char* text;
    };
    const Case cases[] = {
        {"limit of length 6 with 2", 12.5, 7, 3, "12.500"},
        {"bound of length 6 with 2", 12.5, 6, 2, "12.50"},
        {"bound without decimals", 12.5, 6, -1, "13"},
        {"negative bound without decimals", -2.5, 6, -1, "-3"},
        {"point and nothing behind it", 12.5, 6, 0, "13."},
        {"zero", 0, 7, 3, "0.000"},
        {"zero without a point", 0, 6, -1, "0"},
        {"zero with a point alone", 0, 6, 0, "0."},
        {"below 1", 0.5, 7, 3, ".500"},
        {"negative below 1", -0.25, 7, 3, "-.250"},
        {"half a thousandth", 0.0005, 7, 3, ".001"},
        {"a rounded zero has a digit again", 0.0004, 7, 3, "0.000"},
        {"a rounded zero has no sign", -0.0004, 7, 3, "0.000"},
        {"too wide", 12345.5, 7, 3, "345.500"},
        {"exactly as wide", 345.5, 7, 3, "345.500"},
        {"the sign is lost", -345.5, 7, 3, "345.500"},
        {"the sign fits", -45.5, 7, 3, "-45.500"},
        {"one digit before the point", 1234, 4, 2, "4.00"},
        {"too wide without a point", 1234567, 6, -1, "234567"},
        {"a mask that begins with its point", 12.5, 3, 2, ".50"},
        {"no room at all", 12.5, 0, -1, ""},
        {"negative length counts as none", 12.5, -3, -1, ""},
        {"rounds up to one digit more", 9.9996, 7, 3, "10.000"},
        {"tie that a double holds from below", 1.005, 7, 2, "1.01"},
        {"large with a point: a whole number", 123456789012345.0, 20, 2, "123456789012345.00"},
        {"exponent without a point", 1e15, 10, -1, "1E+15"},
        {"exponent gets a point and zeros", 1e15, 12, 3, "1E+15.000"},
        {"exponent whose text has a point is cut behind it", 1.5e20, 12, 3, "1.5E+"},
        {"exponent cut from the left", 1.5e20, 4, 3, ".5E+"},
        {"long exponent text", 1.23456789e20, 12, 3, "1.234"},
        {"almost 1E+15", 999999999999999.9, 12, 1, "1E+15.0"},
        {"tiny", 1.5e-16, 7, 3, "0.000"},
        {"15 digits are all there is", 0.1 + 0.2, 20, 17, ".30000000000000000"},
        {"rounding goes by the 15 digits", 2.4999999999999996, 5, -1, "3"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(LayIntoMask(c.value, c.length, c.decimals), c.text) << c.label;
    }
}

TEST(NumberTextsTest, LayIntoMaskIsWhatOneGetsByHand) {
    for (const double value : Values(20000)) {
        for (const int decimals : {-1, 0, 1, 2, 3, 4, 6, 7, 9}) {
            for (const int length : {5, 12, 30}) {
                ASSERT_EQ(LayIntoMask(value, length, decimals), MaskByHand(value, length, decimals))
                    << PlainText(value) << " into " << length << ", " << decimals;
            }
        }
    }
}

TEST(NumberTextsTest, LayIntoMaskIsWhatOneGetsByHandNearEveryTieAndEdge) {
    // Around each tie and around the largest numbers of the quick way; one step of the double at a time.
    for (const double base : {0.5, 1.5, 12.345, 999.9995, 99999.5, 1234567.5, 999999.9995, 1e6, 999999999.5,
                              1e9, 0.0005, 0.0000005, 0.9999995}) {
        for (const int decimals : {-1, 0, 1, 2, 3, 4, 5, 6}) {
            double up = base;
            double down = base;
            for (int step = 0; step < 40; ++step) {
                for (const double value : {up, down, -up, -down}) {
                    ASSERT_EQ(LayIntoMask(value, 30, decimals), MaskByHand(value, 30, decimals))
                        << PlainText(base) << " with " << step << " steps at " << decimals;
                }
                up = std::nextafter(up, Infinity);
                down = std::nextafter(down, 0.0);
            }
            for (const double gap : {1e-4, 1e-5, 9e-6, 1.1e-5, 1e-6, 1e-7, 1e-8}) {
                ASSERT_EQ(LayIntoMask(base + gap, 30, decimals), MaskByHand(base + gap, 30, decimals)) << gap;
                ASSERT_EQ(LayIntoMask(base - gap, 30, decimals), MaskByHand(base - gap, 30, decimals)) << gap;
            }
        }
    }
}

}  // namespace
}  // namespace kd
