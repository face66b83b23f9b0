#include "base/Bytes.h"

#include <gtest/gtest.h>

#include <string>

namespace kd {
namespace {

constexpr std::size_t Sizes = 40;  // more than one step of everything

/// Calls what(text, at) for every text of up to so many `fill`, each with one byte replaced.
template <typename What>
void WithOneOf(char fill, char other, What what) {
    for (std::size_t size = 1; size <= Sizes; ++size) {
        for (std::size_t at = 0; at < size; ++at) {
            std::string text(size, fill);
            text[at] = other;
            SCOPED_TRACE("byte " + std::to_string(at) + " of " + std::to_string(size));
            what(text, at);
        }
    }
}

TEST(BytesTest, FindControlFindsTheFirstByteBelowTheBlank) {
    for (const char control : {'\0', '\t', '\n', '\r', '\x1F'}) {
        WithOneOf('x', control, [](const std::string& text, std::size_t at) {
            ASSERT_EQ(FindControl(text, 0), at);
            ASSERT_EQ(FindControl(text, at), at);
            ASSERT_EQ(FindControl(text, at + 1), text.size());
        });
    }
    for (const char other : {' ', '!', '\x7F', '\x80', '\x9F', '\xA0', '\xFF'}) {
        WithOneOf('x', other,
                  [](const std::string& text, std::size_t) { ASSERT_EQ(FindControl(text, 0), text.size()); });
        WithOneOf(other, '\r',
                  [](const std::string& text, std::size_t at) { ASSERT_EQ(FindControl(text, 0), at); });
    }
    EXPECT_EQ(FindControl("", 0), 0U);
}

TEST(BytesTest, FindControlFindsTheFirstOfSeveral) {
    WithOneOf('\n', '\r', [](const std::string& text, std::size_t) { ASSERT_EQ(FindControl(text, 0), 0U); });
    // What stands behind the first takes part in the same eight bytes.
    EXPECT_EQ(FindControl("abc\x1F\x20\x20\x21\x1F abc", 0), 3U);
    EXPECT_EQ(FindControl("abcdef\r\n\x20\x21 abc", 0), 6U);
}

TEST(BytesTest, BlanksAreCountedFromBothEnds) {
    for (const char other : {'x', '!', '\t', '\0', '\xA0', '\x1F'}) {
        WithOneOf(' ', other, [](const std::string& text, std::size_t at) {
            ASSERT_EQ(FindNotBlank(text), at);
            ASSERT_EQ(EndBeforeBlanks(text), at + 1);
        });
    }
    for (std::size_t size = 0; size <= Sizes; ++size) {
        const std::string blanks(size, ' ');
        EXPECT_EQ(FindNotBlank(blanks), size);
        EXPECT_EQ(EndBeforeBlanks(blanks), 0U);
        const std::string none(size, 'x');
        EXPECT_EQ(FindNotBlank(none), 0U);
        EXPECT_EQ(EndBeforeBlanks(none), size);
    }
    WithOneOf('x', ' ', [](const std::string& text, std::size_t at) {
        ASSERT_EQ(FindNotBlank(text), at == 0 && text.size() > 0 ? 1U : 0U);
        ASSERT_EQ(EndBeforeBlanks(text), at + 1 == text.size() ? at : text.size());
    });
}

TEST(BytesTest, NothingThatCapitalsMayChangeIsOverlooked) {
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        const bool mayChange = (c >= 'a' && c <= 'z') || code >= 0x80;
        WithOneOf('A', c, [&](const std::string& text, std::size_t) {
            if (mayChange) {
                ASSERT_TRUE(MayHaveCapitals(text)) << code;
            } else if (code < 0x60) {
                ASSERT_FALSE(MayHaveCapitals(text)) << code;
            }
        });
    }
    EXPECT_FALSE(MayHaveCapitals(""));
}

TEST(BytesTest, AsciiRunEndsAtTheFirstOtherByte) {
    for (const char other : {'\x80', '\xE4', '\xFF'}) {
        WithOneOf('x', other, [](const std::string& text, std::size_t at) { ASSERT_EQ(AsciiRun(text), at); });
    }
    for (std::size_t size = 0; size <= 2 * Sizes; ++size) {
        EXPECT_EQ(AsciiRun(std::string(size, '\x7F')), size);
    }
}

#ifdef KD_CHECKED
TEST(BytesTest, EightBytesThatTheTextDoesNotHaveBreakThePrecondition) {
    EXPECT_DEATH((void)bytes::EightAt("1234567", 0), "precondition broken");
    EXPECT_DEATH((void)bytes::EightAt("12345678", 1), "precondition broken");
    EXPECT_DEATH((void)bytes::EightAt("12345678", std::size_t{0} - 8), "precondition broken");
}
#endif

}  // namespace
}  // namespace kd
