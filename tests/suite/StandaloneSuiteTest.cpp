#include "suite/StandaloneSuite.h"

#include <gtest/gtest.h>

#include "fakes/FakeServices.h"
#include "fakes/FakeSuite.h"
#include "fakes/MemoryFiles.h"

namespace kd {
namespace {

class StandaloneSuiteTest : public testing::Test {
protected:
    MemoryFiles files;
    FakeLocale locale;
    FakeClock clock;
    FakeSuite screen;
    StandaloneSuite suite{
        {"/home/anna/.config/kd6", "/home/anna/Documents", "/opt/kd/help", "/opt/kd"},
        files,
        locale,
        clock,
        {[this] { return screen.NewClipboard(); }, [this] { return screen.NewHelpIndex(); }}};
};

TEST_F(StandaloneSuiteTest, TheFoldersAreThoseOfItsPlaces) {
    const auto context = suite.NewSuiteContext();
    EXPECT_EQ(context->SettingsFolder(), "/home/anna/.config/kd6");
    EXPECT_EQ(context->ApplicationsFolder(), "/home/anna/Documents");
    EXPECT_EQ(context->HelpFolder(), "/opt/kd/help");
}

TEST_F(StandaloneSuiteTest, OpeningTheContextMakesTheSettingsFolder) {
    const auto context = suite.NewSuiteContext();
    EXPECT_FALSE(files.Exists("/home/anna/.config/kd6"));
    context->SetSystemCode("KD6");
    context->OpenContext();
    EXPECT_TRUE(files.Exists("/home/anna/.config/kd6"));
}

TEST_F(StandaloneSuiteTest, WithoutASettingsFolderTheProgramRunsAllTheSame) {
    files.FailOn("MakeFolder", "kd6", errPermissionDenied);
    const auto context = suite.NewSuiteContext();
    EXPECT_NO_THROW(context->OpenContext());
    EXPECT_EQ(context->SettingsFolder(), "/home/anna/.config/kd6");
}

TEST_F(StandaloneSuiteTest, NoLoginIsRequired) {
    const auto login = suite.NewLogin();
    EXPECT_FALSE(login->LoginRequired());
    EXPECT_EQ(login->PromptLogin(0, "KD LimitDesk", "Authentication Required."), nullptr);
}

TEST_F(StandaloneSuiteTest, PathToolsTakePathsApart) {
    const auto tools = suite.NewPathTools();
    EXPECT_EQ(tools->ChangeExtension("/a/plant.kdt6", ".KDV6.V3"), "/a/plant.KDV6.V3");
    EXPECT_EQ(tools->GetFolderPart("/a/plant.kdt"), "/a");
    EXPECT_EQ(tools->GetFileNamePart("/a/plant.kdt"), "plant.kdt");
}

TEST_F(StandaloneSuiteTest, TheRulesAreThoseOfTheSettingsFolderElseOfTheProgramElseBuiltIn) {
    EXPECT_EQ(suite.NewApplicationFile()->RuleList().Count(), 8);
    files.Put("/opt/kd/Rules.ini", "[RULES]\r\nRULE = Shipped\r\n");
    EXPECT_EQ(suite.NewApplicationFile()->RuleList().Item(1).RuleEntryName(), "Shipped");
    files.Put("/home/anna/.config/kd6/Rules.ini", "[RULES]\r\nRULE = Mine\r\n");
    EXPECT_EQ(suite.NewApplicationFile()->RuleList().Item(1).RuleEntryName(), "Mine");
}

TEST_F(StandaloneSuiteTest, TheServicesWorkOnItsFilesClockAndCodePage) {
    locale.page = 1250;
    files.Put("/a/plant.kdt", "[APPLICATION]\r\nTITLE = \xA3\r\n");
    const auto reader = suite.NewApplicationFile();
    reader->OpenFile("/a/plant.kdt");
    EXPECT_EQ(reader->ApplicationTitle(), "Ł");

    EXPECT_EQ(suite.NewArchiver()->ArchiveApplication("/a/plant.kdt"), "");
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07/plant.kdt"));

    const auto log = suite.NewChangeLog();
    log->OpenLog("/a/plant.KDL");
    log->WriteRecord({{2026, 3, 4, 5, 6, 7}, "Ł", "", "", "", "", "", "", "", ""});
    log->CloseLog();
    EXPECT_TRUE(files.Get("/a/plant.KDL").ends_with("\t\xA3\t\t\t\t\t\t\t\t\r\n"));

    const auto memo = suite.NewChangeMemo();
    memo->OpenMemo("/a/plant.KDM");
    memo->BeginEntry("Ł", "", "", "");
    memo->CloseMemo();
    EXPECT_EQ(files.Get("/a/plant.KDM").front(), '\xA3');
    EXPECT_NE(suite.NewArchiveContext(), nullptr);
}

TEST_F(StandaloneSuiteTest, ClipboardAndHelpComeFromTheScreensSide) {
    suite.NewClipboard()->SetText("text");
    EXPECT_EQ(screen.clipboard, "text");
    suite.NewHelpIndex()->SetFileName("/opt/kd/help/KDLimitDeskHelp.xml");
    EXPECT_EQ(screen.log.back(), "SetFileName /opt/kd/help/KDLimitDeskHelp.xml");
}

}  // namespace
}  // namespace kd
