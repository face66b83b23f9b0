#include "qt/grid/TextWidths.h"

#include <gtest/gtest.h>

#include <QWidget>
#include <cmath>
#include <string>

namespace kd {
namespace {

class TextWidthsTest : public testing::Test {
protected:
    TextWidthsTest() { Use(1); }

    /// The program's font, so many times as large.
    void Use(double times) {
        QFont font;
        font.setPointSizeF(font.pointSizeF() * times);
        widths.SetFont(font, &device);
    }

    QWidget device;
    TextWidths widths;
};

TEST_F(TextWidthsTest, ATextIsShownOnOneLineWithABlankForEachCharacterBelowIt) {
    EXPECT_EQ(ShownText("a\tb\r\nc"), QString("a b  c"));
    EXPECT_EQ(ShownText(std::string_view("\0\x01\x1F", 3)), QString("   "));
    EXPECT_EQ(ShownText(" !\"#$\x7F"), QString(" !\"#$\x7F"));
    EXPECT_EQ(ShownText("\xC3\x84\xE2\x82\xAC"), QString(QChar(0x00C4)) + QChar(0x20AC));
    EXPECT_EQ(ShownText(""), QString());
}

TEST_F(TextWidthsTest, TheFontIsDrawnWithoutItsKerningAndItsLigatures) {
    QFont font;
    font.setPixelSize(37);
    font.setKerning(true);
    widths.SetFont(font, &device);
    EXPECT_EQ(widths.Font().pixelSize(), 37);
    EXPECT_FALSE(widths.Font().kerning());
    EXPECT_EQ(widths.Font().styleStrategy(), QFont::PreferNoShaping);
    const QFontMetricsF drawn(widths.Font(), &device);
    for (const char* text : {"AVAVA", "Tofu", "office", "fluffy fjord"}) {
        EXPECT_EQ(widths.Exact(text), drawn.horizontalAdvance(QString(text))) << text;
    }
}

TEST_F(TextWidthsTest, OfOneCharacterTheSumIsItsWidth) {
    Use(4);  // so that none is as wide as its neighbour by rounding alone
    for (int code = 0; code < 128; ++code) {
        const std::string text(1, static_cast<char>(code));
        EXPECT_GE(widths.AtMost(text), widths.Exact(text)) << code;
        EXPECT_NEAR(widths.AtMost(text), widths.Exact(text), 0.5) << code;
    }
    for (const char16_t character : {u'\u0080', u'\u00C4', u'\u00FF', u'\u0100', u'\u0416', u'\u1E9E',
                                     u'\u2026', u'\u20AC', u'\u3042', u'\uC000'}) {
        const std::string text = QString(QChar(character)).toStdString();
        EXPECT_EQ(widths.AtMost(text), widths.Exact(text)) << std::hex << static_cast<int>(character);
    }
}

TEST_F(TextWidthsTest, CharactersAddUpWhateverTheirLength) {
    const double sum = widths.AtMost("a") + widths.AtMost("\xC3\x84") + widths.AtMost("\xE2\x82\xAC") +
                       widths.AtMost("\t") + widths.AtMost("z");
    EXPECT_DOUBLE_EQ(widths.AtMost("a\xC3\x84\xE2\x82\xAC\tz"), sum);
    EXPECT_EQ(widths.AtMost(""), 0);
}

TEST_F(TextWidthsTest, AnotherFontIsMeasuredAnew) {
    const std::string text = "a\xC3\x84\xE2\x82\xAC";
    const double before = widths.AtMost(text);
    Use(3);
    EXPECT_GE(widths.AtMost(text), widths.Exact(text)) << "larger";
    EXPECT_GT(widths.AtMost(text), 2 * before);
    Use(1);
    EXPECT_EQ(widths.AtMost(text), before) << "smaller again";
}

TEST_F(TextWidthsTest, ThereIsNoSumAtTheEdgesOfEachLengthOfCharacters) {
    // The first and the last ones that are written in two, three and four bytes and shape their neighbours.
    for (const char* text :
         {"\xDF\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xE0\xB8\x81", "\xE0\xBF\xBF", "\xED\xA0\x80",
          "\xEE\x80\x80", "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF0\x9F\x98\x80", "\xF1\x80\x80\x80",
          "\xF4\x80\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(std::isinf(widths.AtMost(text))) << text;
        EXPECT_TRUE(std::isinf(widths.AtMost(std::string("a") + text + "b"))) << text;
    }
}

TEST_F(TextWidthsTest, OnlyATextThatIsTooWideEndsInAnEllipsis) {
    for (const char* text : {"a text", "\xC3\x84 \xE2\x82\xAC", "\xD7\xA9\xD7\x9C", "a\tb"}) {
        const QString shown = ShownText(text);
        const double width = widths.Exact(text);
        EXPECT_EQ(widths.Fitted(text, std::ceil(width)), shown) << "it just fits";
        const QString cut = widths.Fitted(text, width - 2);
        EXPECT_NE(cut, shown);
        EXPECT_TRUE(cut.contains(QChar(0x2026))) << text;
        EXPECT_LE(widths.ExactOf(cut), width) << text;
    }
}

TEST_F(TextWidthsTest, BrokenTextsHaveNoSum) {
    for (const char* text : {"\x80",
                             "\xBF"
                             "a",
                             "\xC3",
                             "\xC3"
                             "a",
                             "\xE2\x82",
                             "\xE2\x82"
                             "a",
                             "\xC1\x81"}) {
        EXPECT_TRUE(std::isinf(widths.AtMost(text))) << text;
    }
    EXPECT_TRUE(std::isinf(widths.AtMost(std::string_view("\xD6\x81", 1)))) << "cut in the middle";
}

}  // namespace
}  // namespace kd
