#include "appfiles/RuleLetters.h"

#include <gtest/gtest.h>

#include "base/NumberTexts.h"
#include "fakes/Builders.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

TEST(TranslateRulesTest, LettersOfTheFileBecomeThoseOfTheCatalogueInItsOrder) {
    struct Case {
        const char* label;
        const char* catalogue;
        const char* view;
        const char* letters;
        const char* translated;
    };
    const Case cases[] = {
        {"second of the file is first of the catalogue", "Y,Z", "X,Y", "B", "A"},
        {"catalogue's order", "X,Y,Z", "Z,Y,X", "ACB", "ABC"},
        {"file's letters in any order", "X,Y", "X,Y", "BA", "AB"},
        {"small letters", "X,Y", "X,Y", "ab", "AB"},
        {"names in any case", "point Limit,Y", "POINT LIMIT", "A", "A"},
        {"names beyond ASCII in any case", "\xC3\x84", "\xC3\xA4", "A", "A"},
        {"rule outside the catalogue is dropped", "Y", "X,Y", "AB", "A"},
        {"rule that the file lacks", "X,Y", "Y", "A", "B"},
        {"letter without a name", "X", "X", "AZ", "A"},
        {"first of two equal names of the file", "X", "X,X", "B", ""},
        {"two equal names of the catalogue", "X,X", "X", "A", "AB"},
        {"no rules in the file", "X", "", "A", ""},
        {"no catalogue", "", "X", "A", ""},
        {"an empty name between two", "A1,,B1", "B1,,A1", "BC", "AB"},
    };
    for (const Case& c : cases) {
        TestMachine t;
        t.g.gRuleNames = c.catalogue;
        t.g.gFiles->Add("/a.kdt", {}, {}, 0)->SetRules(c.view);
        aField().Rules(c.letters).AddTo(t.g);
        TranslateRules(t.g, 1, 1);
        EXPECT_EQ(t.g.gFields->Ref(1).Rules(), c.translated) << c.label;
        EXPECT_EQ(t.g.gSavedFields->Ref(1).Rules(), c.letters) << c.label;
    }
}

TEST(RuleLetterTest, LettersRunFromAToTheLastCharacterOfTheCodePage) {
    const CodePage& page = CodePage::Of(1252);
    EXPECT_EQ(RuleLetter(0, page), "A");
    EXPECT_EQ(RuleLetter(25, page), "Z");
    EXPECT_EQ(RuleLetter(26, page), "[");
    EXPECT_EQ(RuleLetter(0xFF - 'A', page), page.Decode("\xFF"));
    EXPECT_EQ(RuleLetter(0xFF - 'A' + 1, page), "");
}

TEST(TranslateRulesTest, NoLettersStayNone) {
    TestMachine t;
    t.g.gRuleNames = "X";
    t.g.gFiles->Add("/a.kdt", {}, {}, 0)->SetRules("X");
    aField().AddTo(t.g);
    TranslateRules(t.g, 1, 1);
    EXPECT_EQ(t.g.gFields->Ref(1).Rules(), "");
}

TEST(TranslateRulesTest, ARuleBehindTheLastCharacterOfTheCodePageHasNoLetter) {
    TestMachine t;
    for (int rule = 1; rule <= 260; ++rule) {
        t.g.gRuleNames += (rule == 1 ? "R" : ",R") + Digits(rule);
    }
    // R257 would wrap to the first letter in the catalogue; the view's own 257th would wrap too.
    t.g.gFiles->Add("/a.kdt", {}, {}, 0)->SetRules("R257," + t.g.gRuleNames);
    aField().Rules("A").AddTo(t.g);
    TranslateRules(t.g, 1, 1);
    EXPECT_EQ(t.g.gFields->Ref(1).Rules(), "");
}

TEST(TranslateRulesTest, LettersRunOnPastTheTwentySixth) {
    TestMachine t;
    for (int rule = 1; rule <= 70; ++rule) {
        t.g.gRuleNames += (rule == 1 ? "R" : ",R") + Digits(rule);
    }
    t.g.gFiles->Add("/a.kdt", {}, {}, 0)->SetRules("R27,R70");
    aField().Rules("AB").AddTo(t.g);
    TranslateRules(t.g, 1, 1);
    EXPECT_EQ(t.g.gFields->Ref(1).Rules(), t.locale.CodePage().Decode("[\x86"));
}

}  // namespace
}  // namespace kd
