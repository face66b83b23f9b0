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
