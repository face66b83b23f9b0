#include "model/Decimals.h"

#include <gtest/gtest.h>

#include "fakes/FakeServices.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

TEST(DecimalsTest, NormalizeDecimalText) {
    struct Case {
        const char* label;
        const char* text;
        const char* withPoint;
        const char* withComma;
    };
    const Case cases[] = {
        {"nothing to do", "12", "12", "12"},
        {"point", "1.5", "1.5", "1,5"},
        {"comma", "1,5", "1.5", "1,5"},
        {"trimmed", "  1,5 ", "1.5", "1,5"},
        {"inner blanks stay", "1 ,5", "1 .5", "1 ,5"},
        {"tabs stay", "\t1", "\t1", "\t1"},
        {"both", "1,234.5", "", ""},
        {"both, the other way round", "1.234,5", "", ""},
        {"both and nothing else", ".,", "", ""},
        {"every one is replaced", "1,2,3", "1.2.3", "1,2,3"},
        {"every point is replaced", "1.2.3", "1.2.3", "1,2,3"},
        {"letters stay", " ab,c ", "ab.c", "ab,c"},
        {"empty", "", "", ""},
        {"blanks", "   ", "", ""},
    };
    FakeLocale locale;
    for (const Case& c : cases) {
        locale.separator = '.';
        EXPECT_EQ(NormalizeDecimalText(c.text, locale), c.withPoint) << c.label;
        locale.separator = ',';
        EXPECT_EQ(NormalizeDecimalText(c.text, locale), c.withComma) << c.label;
    }
}

TEST(DecimalsTest, OtherOneOfASeparatorThatIsNeitherIsThePoint) {
    FakeLocale locale;
    locale.separator = '\'';
    EXPECT_EQ(NormalizeDecimalText("1.5", locale), "1'5");
    EXPECT_EQ(NormalizeDecimalText("1,5", locale), "1,5");
}

TEST(DecimalsTest, SeparatorIsTakenAfreshOnEachCall) {
    FakeLocale locale;
    EXPECT_EQ(LocaleDecimalSeparator(locale), '.');
    locale.separator = ',';
    EXPECT_EQ(LocaleDecimalSeparator(locale), ',');
}

}  // namespace
}  // namespace kd
