#include "base/Text.h"

#include <gtest/gtest.h>

namespace kd {
namespace {

using Parts = std::vector<std::string_view>;

TEST(TextTest, LineEndsAreBlankedInPlaceAndNothingElse) {
    Text text = "a\r\nb\r\r\nc\n\rd\r\n";
    BlankLineEnds(text);
    EXPECT_EQ(text, "a  b\r  c\n\rd  ");
    text = "line\r\nvalue\r\n";
    BlankLineEnds(text, 6);
    EXPECT_EQ(text, "line\r\nvalue  ");
}

TEST(TextTest, OneLineHasBlanksForTabsAndLineEnds) {
    EXPECT_EQ(OneLine("a\r\nb\tc\nd\re"), "a  b c d e");
    EXPECT_EQ(OneLine("\xC3\xA4 \x01"), "\xC3\xA4 \x01");
    EXPECT_EQ(OneLine(""), "");
}

TEST(TextTest, TrimTakesBlanksAloneFromBothEnds) {
    struct Case {
        const char* text;
        const char* trimmed;
        const char* right;
    };
    const Case cases[] = {{"  a b  ", "a b", "  a b"},
                          {"a", "a", "a"},
                          {"   ", "", ""},
                          {"", "", ""},
                          {"\ta\t ", "\ta\t", "\ta\t"},
                          {" \r\n ", "\r\n", " \r\n"},
                          {" \u00A0a ", "\u00A0a", " \u00A0a"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Trim(c.text), c.trimmed);
        EXPECT_EQ(TrimRight(c.text), c.right);
    }
}

TEST(TextTest, UpperAsciiLeavesAllOtherCharacters) {
    EXPECT_EQ(UpperAscii("az AZ 09 [`{ äß"), "AZ AZ 09 [`{ äß");
}

TEST(TextTest, EqualsNoCaseAsciiTellsOtherLettersApart) {
    struct Case {
        const char* a;
        const char* b;
        bool equal;
    };
    const Case cases[] = {{"plant.KDT", "Plant.kdt", true},
                          {"", "", true},
                          {"a", "", false},
                          {"ab", "abc", false},
                          {"ä", "Ä", false},
                          {"ä", "ä", true},
                          {"@", "`", false},
                          {"[", "{", false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(Text(c.a) + " and " + c.b);
        EXPECT_EQ(EqualsNoCaseAscii(c.a, c.b), c.equal);
        EXPECT_EQ(EqualsNoCaseAscii(c.b, c.a), c.equal);
    }
}

TEST(TextTest, SplitKeepsEmptyParts) {
    EXPECT_EQ(Split("a,b,c", ','), (Parts{"a", "b", "c"}));
    EXPECT_EQ(Split(",a,,b,", ','), (Parts{"", "a", "", "b", ""}));
    EXPECT_EQ(Split(",", ','), (Parts{"", ""}));
    EXPECT_EQ(Split("a", ','), (Parts{"a"}));
}

TEST(TextTest, SplitOfNothingHasNoPart) {
    EXPECT_EQ(Split("", ','), Parts{});
}

TEST(TextTest, ACharacterIsReadFromItsBytesAndWhatIsNoneIsTheSignForIt) {
    constexpr char32_t Bad = 0xFFFD;
    struct Case {
        const char* label;
        std::string_view text;
        char32_t character;
        std::size_t behind;
    };
    const Case cases[] = {{"the first of two bytes", "\xC2\x80", 0x80, 2},
                          {"the last of two bytes", "\xDF\xBF", 0x7FF, 2},
                          {"the first of three bytes", "\xE0\xA0\x80", 0x800, 3},
                          {"the last of three bytes", "\xEF\xBF\xBF", 0xFFFF, 3},
                          {"the first of four bytes", "\xF0\x90\x80\x80", 0x10000, 4},
                          {"the last of four bytes", "\xF4\x8F\xBF\xBF", 0x10FFFF, 4},
                          {"a letter behind", "\xC3\xA4z", 0xE4, 2},
                          {"another one behind", "\xC3\xA4\xC3\xA4", 0xE4, 2},
                          {"the middle of one", "\x80\x80", Bad, 1},
                          {"the end of one", "\xBF\xBF", Bad, 1},
                          {"cut at the end", "\xC3", Bad, 1},
                          {"cut by a letter", "\xE2\x82z", Bad, 2},
                          {"cut by another one", "\xC3\xC3\xA4", Bad, 1},
                          {"zero in two bytes", "\xC0\x80", Bad, 2},
                          {"a sign in two bytes", "\xC1\xBF", Bad, 2},
                          {"the last of two bytes in three", "\xE0\x9F\xBF", Bad, 3},
                          {"the last of three bytes in four", "\xF0\x8F\xBF\xBF", Bad, 4}};
    for (const Case& c : cases) {
        std::size_t at = 0;
        EXPECT_EQ(NextCharacter(c.text, at), c.character) << c.label;
        EXPECT_EQ(at, c.behind) << c.label;
        at = 2;
        EXPECT_EQ(NextCharacter("ab" + Text(c.text), at), c.character) << c.label << ", further on";
        EXPECT_EQ(at, 2 + c.behind) << c.label << ", further on";
    }
}

TEST(TextTest, CharactersAreCountedNotBytes) {
    EXPECT_EQ(CharacterCount(""), 0U);
    EXPECT_EQ(CharacterCount("abc"), 3U);
    EXPECT_EQ(CharacterCount("aä€😀"), 4U);
}

TEST(TextTest, PositionsCountCharactersFromOne) {
    const Text text = "aä€z";
    EXPECT_EQ(ByteOffset(text, 1), 0U);
    EXPECT_EQ(ByteOffset(text, 2), 1U);
    EXPECT_EQ(ByteOffset(text, 3), 3U);
    EXPECT_EQ(ByteOffset(text, 4), 6U);
}

TEST(TextTest, APositionBehindTheTextIsItsSize) {
    EXPECT_EQ(ByteOffset("aä", 3), 3U);
    EXPECT_EQ(ByteOffset("aä", 99), 3U);
    EXPECT_EQ(ByteOffset("", 1), 0U);
}

}  // namespace
}  // namespace kd
