#include "lifecycle/StartUp.h"

#include <gtest/gtest.h>

#include "fakes/TestMachine.h"
#include "model/modKDLimitDesk.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

TEST(StartUpTest, TheRuleCatalogueBecomesNamesLettersAndABlock) {
    TestMachine desk;
    desk.suite.rules = {"X one", "Y", "Z"};
    LoadRuleCatalogue(desk.g);
    EXPECT_EQ(desk.g.gRuleNames, "X one,Y,Z");
    EXPECT_EQ(desk.g.gRuleLetters, "ABC");
    EXPECT_EQ(desk.g.gRulesBlock,
              "[RULES]\r\n   RULE         = X one\r\n   RULE         = Y\r\n   RULE         = Z\r\n\r\n");
}

TEST(StartUpTest, AnEmptyRuleCatalogueGivesABareBlock) {
    TestMachine desk;
    desk.suite.rules.clear();
    desk.g.gRuleNames = "old";
    desk.g.gRuleLetters = "A";
    LoadRuleCatalogue(desk.g);
    EXPECT_EQ(desk.g.gRuleNames, "");
    EXPECT_EQ(desk.g.gRuleLetters, "");
    EXPECT_EQ(desk.g.gRulesBlock, "[RULES]\r\n\r\n");
}

TEST(StartUpTest, PastTheTwentySixthRuleTheCodesRunOn) {
    TestMachine desk;
    desk.suite.rules.assign(28, "r");
    LoadRuleCatalogue(desk.g);
    EXPECT_EQ(desk.g.gRuleLetters, "ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\");
}

TEST(StartUpTest, RuleLettersPastAsciiAreTheCodePages) {
    TestMachine desk;
    desk.suite.rules.assign(64, "r");  // the last one has the code 128
    LoadRuleCatalogue(desk.g);
    EXPECT_TRUE(desk.g.gRuleLetters.ends_with("~\x7F\xE2\x82\xAC")) << desk.g.gRuleLetters;
}

TEST(StartUpTest, WhereTheCodePageEndsRulesHaveNoLetter) {
    TestMachine desk;
    desk.suite.rules.assign(191, "r");  // the last one has the code 255
    LoadRuleCatalogue(desk.g);
    const Text whole = desk.g.gRuleLetters;
    EXPECT_TRUE(whole.ends_with("\xC3\xBE\xC3\xBF")) << whole;
    desk.suite.rules.assign(300, "r");
    LoadRuleCatalogue(desk.g);
    EXPECT_EQ(desk.g.gRuleLetters, whole);
}

TEST(StartUpTest, AnEmptyFirstNameLeavesNoTraceInTheJoinedNames) {
    TestMachine desk;
    desk.suite.rules = {"", "Trend", "", "Run"};
    LoadRuleCatalogue(desk.g);
    EXPECT_EQ(desk.g.gRuleNames, "Trend,,Run");
    EXPECT_EQ(desk.g.gRuleLetters, "ABCD");
}

TEST(StartUpTest, WithoutALoginTheUserIsTheEnvironments) {
    TestMachine desk;
    EXPECT_EQ(GetUserName(desk.g, 7), "anna");
    desk.environment.variables["USERNAME"] = "";
    EXPECT_EQ(GetUserName(desk.g, 7), "");
    EXPECT_TRUE(desk.suite.log.empty()) << "nobody was asked";
}

TEST(StartUpTest, ARequiredLoginIsPromptedForAndGivesItsName) {
    TestMachine desk;
    desk.suite.loginRequired = true;
    desk.suite.login = {"berta", true};
    EXPECT_EQ(GetUserName(desk.g, 7), "berta");
    EXPECT_EQ(desk.suite.log, std::vector<Text>{"PromptLogin 7|KD LimitDesk|Authentication Required."});
}

TEST(StartUpTest, ADismissedOrFailedLoginGivesNoName) {
    TestMachine desk;
    desk.suite.loginRequired = true;
    EXPECT_EQ(GetUserName(desk.g, 7), "") << "dismissed";
    desk.suite.login = {"berta", false};
    EXPECT_EQ(GetUserName(desk.g, 7), "") << "failed";
}

TEST(StartUpTest, TheSettingsLieInTheSettingsFolderUnderTheProgramsName) {
    TestMachine desk;
    EXPECT_EQ(SettingsPath(desk.g), "/home/anna/kd6/KDLimitDesk.IKD");
    desk.environment.programPath = "/opt/kd/KDLimitDesk.exe";
    EXPECT_EQ(SettingsPath(desk.g), "/home/anna/kd6/KDLimitDesk.IKD");
    EXPECT_EQ(FallbackSettingsPath(desk.g), "/opt/kd/KDLimitDesk.ini");
}

TEST(StartUpTest, SettingsAreNamedAsTheProgram) {
    struct Case {
        const char* program;
        const char* settings;
        const char* fallback;
    };
    const Case cases[] = {
        {"/opt/kd.6/Tool", "/home/anna/kd6/Tool.IKD", "/opt/kd.6/Tool.ini"},
        {"/Tool", "/home/anna/kd6/Tool.IKD", "/Tool.ini"},
    };
    TestMachine desk;
    for (const Case& each : cases) {
        desk.environment.programPath = each.program;
        EXPECT_EQ(SettingsPath(desk.g), each.settings) << each.program;
        EXPECT_EQ(FallbackSettingsPath(desk.g), each.fallback) << each.program;
    }
    desk.suite.settingsFolder = "/";
    EXPECT_EQ(SettingsPath(desk.g), "/Tool.IKD");
}

TEST(StartUpTest, TheSuitesContextIsOpenedOnceAndKept) {
    TestMachine desk;
    KDSuiteContext& first = GetSuiteContext(desk.g);
    EXPECT_EQ(&GetSuiteContext(desk.g), &first);
    EXPECT_EQ(desk.suite.contextCalls, (std::vector<Text>{"create", "SetSystemCode KD6", "OpenContext"}));
}

}  // namespace
}  // namespace kd
