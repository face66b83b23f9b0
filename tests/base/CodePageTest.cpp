#include "base/CodePage.h"

#include <gtest/gtest.h>

#include <set>

namespace kd {
namespace {

const int Pages[] = {874, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258};

std::string AllBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST(CodePageTest, AllByteValuesSurviveInEveryPage) {
    for (const int number : Pages) {
        SCOPED_TRACE(number);
        const CodePage& page = CodePage::Of(number);
        const Text text = page.Decode(AllBytes());
        EXPECT_EQ(page.Encode(text), AllBytes());
        EXPECT_TRUE(page.CanEncode(text));
        EXPECT_EQ(page.Narrowed(text), text);
    }
}

TEST(CodePageTest, EveryByteHasACharacterOfItsOwn) {
    for (const int number : Pages) {
        SCOPED_TRACE(number);
        std::set<Text> characters;
        for (const char byte : AllBytes()) {
            const Text text = CodePage::Of(number).Decode(std::string_view(&byte, 1));
            EXPECT_EQ(CharacterCount(text), 1U);
            characters.insert(text);
        }
        EXPECT_EQ(characters.size(), 256U);
    }
}

TEST(CodePageTest, KnowsItsNumberAndTakesWesternForAnUnknownOne) {
    for (const int number : Pages) {
        EXPECT_EQ(CodePage::Of(number).Number(), number);
    }
    EXPECT_EQ(CodePage::Of(65001).Number(), 1252);
    EXPECT_EQ(CodePage::Of(0).Number(), 1252);
    EXPECT_EQ(&CodePage::Of(1251), &CodePage::Of(1251));
}

TEST(CodePageTest, DecodesTheLettersOfItsLanguages) {
    struct Case {
        const char* label;
        int page;
        const char* bytes;
        const char* text;
    };
    const Case cases[] = {{"western", 1252, "\xC4\xD6\xDC \x80 \xB0", "ÄÖÜ € °"},
                          {"central", 1250, "\xA3\xF3\x64\x9F", "Łódź"},
                          {"cyrillic", 1251, "\xCF\xF0\xEE\xE1\xE0", "Проба"},
                          {"greek", 1253, "\xEC\xDD\xF4\xF1\xEF", "μέτρο"},
                          {"turkish", 1254, "\xDDzm\xFD\xFE", "İzmış"},
                          {"hebrew", 1255, "\xF9\xEC\xE5\xED", "שלום"},
                          {"arabic", 1256, "\xE3\xC7\xC1", "ماء"},
                          {"baltic", 1257, "\xC0\xE8\xFB", "Ąčū"},
                          {"vietnamese", 1258, "\xD0\xF5\xFD", "Đơư"},
                          {"thai", 874, "\xB9\xE9\xD3", "น้ำ"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(CodePage::Of(c.page).Decode(c.bytes), c.text);
        EXPECT_EQ(CodePage::Of(c.page).Encode(c.text), c.bytes);
    }
}

TEST(CodePageTest, DecodesRunsOfAsciiAroundOtherBytesAtEveryOffset) {
    const CodePage& page = CodePage::Of(1252);
    for (std::size_t before = 0; before < 20; ++before) {
        for (std::size_t after = 0; after < 20; ++after) {
            const std::string bytes = std::string(before, 'a') + "\xE4\xF6" + std::string(after, 'z');
            const Text text = Text(before, 'a') + "äö" + Text(after, 'z');
            ASSERT_EQ(page.Decode(bytes), text) << before << " before, " << after << " behind";
            ASSERT_EQ(page.Encode(text), bytes) << before << " before, " << after << " behind";
        }
    }
}

TEST(CodePageTest, DecodeIntoGivesAsciiBytesBackThemselvesAndAllElseFromTheBuffer) {
    const CodePage& page = CodePage::Of(1252);
    Text buffer = "of an earlier call";
    const std::string_view ascii = "plain bytes, more than thirty-two of them";
    EXPECT_EQ(page.DecodeInto(ascii, buffer).data(), ascii.data());
    EXPECT_EQ(page.DecodeInto(ascii, buffer), ascii);
    EXPECT_EQ(page.DecodeInto("", buffer), "");
    for (std::size_t at = 0; at < 80; ++at) {
        std::string bytes(80, 'x');
        bytes[at] = '\xE4';
        const Text text = Text(at, 'x') + "ä" + Text(79 - at, 'x');
        const std::string_view decoded = page.DecodeInto(bytes, buffer);
        ASSERT_EQ(decoded, text) << "at " << at;
        ASSERT_EQ(decoded.data(), buffer.data());
    }
}

TEST(CodePageTest, UndefinedBytesAreTheControlCharactersOfTheirNumber) {
    struct Case {
        int page;
        const char* bytes;
        const char* text;
    };
    const Case cases[] = {{1252, "\x81\x8D\x8F\x90\x9D", "\u0081\u008D\u008F\u0090\u009D"},
                          {1250, "\x81\x83\x88\x90\x98", "\u0081\u0083\u0088\u0090\u0098"},
                          {1251, "\x98", "\u0098"},
                          {874, "\x81\x84\x90\x98\x9F", "\u0081\u0084\u0090\u0098\u009F"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.page);
        EXPECT_EQ(CodePage::Of(c.page).Decode(c.bytes), c.text);
    }
}

TEST(CodePageTest, NoLetterOfAnotherPageSlipsInThroughAnUndefinedByte) {
    struct Case {
        int page;
        const char* text;
    };
    const Case cases[] = {{874, "ÛÜÝÞüýþÿ"}, {1253, "ªÒÿ"}, {1255, "ÙÚÛÜÝÞßûüÿ"}, {1257, "¡¥"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.page);
        const CodePage& page = CodePage::Of(c.page);
        const Text text = c.text;
        EXPECT_FALSE(page.CanEncode(text));
        EXPECT_EQ(page.Narrowed(text), Text(CharacterCount(text), '?'));
    }
}

TEST(CodePageTest, ACharacterThatThePageLacksBecomesAQuestionMark) {
    const CodePage& page = CodePage::Of(1252);
    EXPECT_EQ(page.Narrowed("5 Ω ± 3 µm"), "5 ? ± 3 µm");
    EXPECT_EQ(page.Encode("5 Ω"), "5 ?");
    EXPECT_FALSE(page.CanEncode("Ω"));
    EXPECT_FALSE(page.CanEncode("Ω, µ and ±")) << "though the last ones are there";
    EXPECT_TRUE(page.CanEncode("µ ±"));
    EXPECT_TRUE(page.CanEncode(""));
}

TEST(CodePageTest, ACharacterOutsideTheFirstPlaneIsOneQuestionMark) {
    EXPECT_EQ(CodePage::Of(1252).Narrowed("a😀b"), "a?b");
    EXPECT_EQ(CodePage::Of(1252).Encode("a😀b"), "a?b");
    EXPECT_EQ(CodePage::Of(1252).Encode("\xDF\x80\x80"), "??") << "a character in two bytes, and half of one";
    EXPECT_EQ(CodePage::Of(1252).Encode("\xE0\xA0\x80"), "?") << "one in three";
}

TEST(CodePageTest, BrokenTextNeverReachesAFile) {
    struct Case {
        const char* label;
        std::string text;
        const char* bytes;
    };
    const Case cases[] = {{"lone continuation", "a\x80z", "a?z"},
                          {"cut at the end", "a\xC3", "a?"},
                          {"cut by a letter", "\xC3z", "?z"},
                          {"three bytes cut", "\xE2\x82z", "?z"},
                          {"overlong letter", "\xC1\x81", "?"},
                          {"overlong letter of the page", "\xE0\x82\xAC", "?"},
                          {"overlong in four bytes", "\xF0\x80\x82\xAC", "?"},
                          {"beyond the last character", "\xF7\xBF\xBF\xBF", "?"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(CodePage::Of(1252).Encode(c.text), c.bytes);
        EXPECT_EQ(CodePage::Of(1252).Narrowed(c.text), c.bytes);
        EXPECT_FALSE(CodePage::Of(1252).CanEncode(c.text));
    }
}

TEST(CodePageTest, UpperIsOneCharacterForOneWithinThePage) {
    struct Case {
        const char* label;
        int page;
        const char* text;
        const char* upper;
    };
    const Case cases[] = {{"plain", 1252, "abcz XYZ 09[]_", "ABCZ XYZ 09[]_"},
                          {"signs beside the letters", 1252, "@[`{|}~", "@[`{|}~"},
                          {"capitals already", 1252, "ABC XYZ 09[]_", "ABC XYZ 09[]_"},
                          {"umlauts", 1252, "äöüé", "ÄÖÜÉ"},
                          {"capital elsewhere in the page", 1252, "ÿœšž", "ŸŒŠŽ"},
                          {"sharp s stays", 1252, "straße", "STRAßE"},
                          {"micro sign stays", 1252, "µm", "µM"},
                          {"no capital in the page", 1252, "ƒ", "ƒ"},
                          {"ordinals stay", 1252, "ªº", "ªº"},
                          {"central", 1250, "łódź", "ŁÓDŹ"},
                          {"cyrillic", 1251, "проба ђ", "ПРОБА Ђ"},
                          {"greek, final sigma too", 1253, "μέτρος", "ΜΈΤΡΟΣ"},
                          {"greek, three capitals", 1253, "ΐ", "ΐ"},
                          {"turkish", 1254, "ış", "IŞ"},
                          {"baltic", 1257, "ąčū", "ĄČŪ"},
                          {"not in the page", 1252, "ł", "ł"},
                          {"nothing", 1252, "", ""}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(CodePage::Of(c.page).Upper(c.text), c.upper);
    }
}

TEST(CodePageTest, UpperNeverChangesTheLengthAndSettlesAtOnce) {
    for (const int number : Pages) {
        SCOPED_TRACE(number);
        const CodePage& page = CodePage::Of(number);
        const Text upper = page.Upper(page.Decode(AllBytes()));
        EXPECT_EQ(CharacterCount(upper), 256U);
        EXPECT_EQ(page.Encode(upper).size(), 256U);
        EXPECT_EQ(page.Upper(upper), upper);
    }
}

TEST(CodePageTest, UpperLeavesUndefinedBytesAlone) {
    const std::string bytes = "\xFC\xFB\xDC";
    EXPECT_EQ(CodePage::Of(1255).Encode(CodePage::Of(1255).Upper(CodePage::Of(1255).Decode(bytes))), bytes);
    EXPECT_EQ(CodePage::Of(874).Encode(CodePage::Of(874).Upper(CodePage::Of(874).Decode("\xFC"))), "\xFC");
}

}  // namespace
}  // namespace kd
