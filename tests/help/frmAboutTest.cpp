#include "help/frmAbout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/TestMachine.h"
#include "help/Maker.h"

namespace kd {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

/// Shows the box and does something in it.
void Show(TestMachine& desk, frmAbout& about, const std::function<void(frmAbout&)>& user) {
    desk.toolkit.ExpectForm<frmAbout>("frmAbout", [user](frmAbout& form) {
        user(form);
        form.cmdOk.UserClick();
    });
    about.Display();
}

TEST(frmAboutTest, ShowsTitleVersionAndMaker) {
    TestMachine desk;
    frmAbout about(desk.g);
    Show(desk, about, [](frmAbout& form) {
        EXPECT_EQ(form.Caption(), "About");
        EXPECT_EQ(form.lblAppTitle.Caption(), "KDLimitDesk");
        EXPECT_EQ(form.lblVersion.Caption(), "6.1 Build 0");
        EXPECT_EQ(form.lblCompanyInfo.Caption(), Text(maker::CompanyInfo));
        EXPECT_EQ(form.lblWebsite.Caption(), Text(maker::Website));
        EXPECT_EQ(form.lblEmail.Caption(), Text(maker::Email));
        EXPECT_EQ(form.cmdOk.Caption(), "&OK");
    });
}

TEST(frmAboutTest, OpensInTheMiddleOfTheScreen) {
    TestMachine desk;
    frmAbout about(desk.g);
    EXPECT_FALSE(about.OwnPlace().has_value());
}

TEST(frmAboutTest, VersionNumbersArePlainDecimals) {
    EXPECT_EQ(frmAbout::VersionText(6, 1, 400), "6.1 Build 400");
    EXPECT_EQ(frmAbout::VersionText(6, 10, 0), "6.10 Build 0");
}

TEST(frmAboutTest, MakersDataAreSixLinesWithTelephoneAndFax) {
    Text info(maker::CompanyInfo);
    std::vector<Text> lines;
    for (std::size_t end = info.find(CrLf); end != Text::npos; end = info.find(CrLf)) {
        lines.push_back(info.substr(0, end));
        info.erase(0, end + CrLf.size());
    }
    lines.push_back(info);
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[0], "Kestrix Quality Systems");
    EXPECT_THAT(lines[4], StartsWith("Tel: "));
    EXPECT_THAT(lines[5], StartsWith("Fax: "));
}

TEST(frmAboutTest, WebsiteOpensTheTextThatIsShown) {
    TestMachine desk;
    frmAbout about(desk.g);
    Show(desk, about, [](frmAbout& form) {
        form.lblWebsite.SetCaption("https://shown.example.com/a b");
        form.lblWebsite.UserClick();
    });
    EXPECT_THAT(desk.shell.opened, ElementsAre("https://shown.example.com/a b"));
}

TEST(frmAboutTest, EmailOpensAMailWithTheTitleAsSubjectAndNothingEscaped) {
    TestMachine desk;
    frmAbout about(desk.g);
    Show(desk, about, [](frmAbout& form) {
        form.lblEmail.SetCaption("help desk@example.com");
        form.lblEmail.UserClick();
    });
    EXPECT_THAT(desk.shell.opened, ElementsAre("mailto:help desk@example.com?Subject=KDLimitDesk&Body="));
}

TEST(frmAboutTest, NothingIsSaidWhetherALinkOpensOrNot) {
    TestMachine desk;
    frmAbout about(desk.g);
    Show(desk, about, [](frmAbout& form) {
        form.lblWebsite.UserClick();
        form.lblEmail.UserClick();
    });
    EXPECT_THAT(desk.toolkit.log, ElementsAre("form frmAbout"));
}

TEST(frmAboutTest, EachShowingFillsTheLabelsAnew) {
    TestMachine desk;
    frmAbout about(desk.g);
    Show(desk, about, [](frmAbout& form) {
        form.lblVersion.SetCaption("touched");
        form.lblWebsite.SetCaption("touched");
        form.lblEmail.SetCaption("touched");
    });
    Show(desk, about, [](frmAbout& form) {
        EXPECT_EQ(form.lblVersion.Caption(), "6.1 Build 0");
        EXPECT_EQ(form.lblWebsite.Caption(), Text(maker::Website));
        EXPECT_EQ(form.lblEmail.Caption(), Text(maker::Email));
    });
}

TEST(frmAboutTest, EachShowingBeginsWhereTheFirstOneDid) {
    TestMachine desk;
    frmAbout about(desk.g);
    Show(desk, about, [](frmAbout&) {});
    about.SetFocusedControl("lblWebsite");
    about.SetLastGeometry({{5, 6}, 300, 200});
    Show(desk, about, [](frmAbout& form) {
        EXPECT_EQ(form.FocusedControl(), "");
        EXPECT_FALSE(form.LastGeometry().has_value());
    });
}

}  // namespace
}  // namespace kd
