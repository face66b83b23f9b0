#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "lifecycle/MainFormDesk.h"
#include "platform/EventBoundary.h"

namespace kd {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

struct frmKDLimitDeskStartTest : testing::Test, MainFormDesk {
    bool Start() { return form.Form_Load(42); }
};

TEST_F(frmKDLimitDeskStartTest, RunsItsStepsInOrder) {
    disk.Put(Settings, SettingsText({Install("/apps/plant.kdt")}));
    ExpectAdmin(Ok);
    EXPECT_TRUE(Start());
    EXPECT_THAT(toolkit.log,
                ElementsAre("suite context",                             // where the settings live
                            "application file",                          // rule catalogue
                            "exists /home/anna/kd6/KDLimitDesk.IKD",     //
                            "read /home/anna/kd6/KDLimitDesk.IKD",       //
                            "login", "variable USERNAME",                // who the user is
                            "form frmApplicationAdmin",                  // the list from the user
                            "events",                                    //
                            "write /home/anna/kd6/KDLimitDesk.IKD",      //
                            "show frmKDLimitDesk",                       // the load
                            "events", "events", "events", "hourglass",   //
                            "application file", "read /apps/plant.kdt",  //
                            "events",                                    // one an application
                            "events", "default"));
    EXPECT_FALSE(globals.gStartingUp);
    EXPECT_EQ(globals.gSettingsPath, Settings);
    EXPECT_EQ(globals.gUserName, "anna");
    EXPECT_EQ(globals.gFields->Count(), 1);
}

TEST_F(frmKDLimitDeskStartTest, WhatStandsAtEachStep) {
    struct Moment {
        Text caption;
        Text rules;
        std::int32_t applications;
        Text user;
        bool maximised;
        bool startingUp;
    };
    disk.Put(Settings, SettingsText({Install("/apps/plant.kdt")}));
    std::vector<Moment> moments;
    const auto note = [&] {
        moments.push_back({form.Caption(), globals.gRuleLetters, globals.gMasterFiles->Count(),
                           globals.gUserName, form.Maximised(), globals.gStartingUp});
    };
    note();
    ExpectAdmin([&](frmApplicationAdmin& admin) {
        note();
        admin.cmdOk.UserClick();
    });
    toolkit.onProcessEvents = note;
    EXPECT_TRUE(Start());
    ASSERT_GE(moments.size(), 3U);
    EXPECT_EQ(moments[0].caption, "");
    EXPECT_FALSE(moments[0].maximised);
    EXPECT_FALSE(moments[0].startingUp);
    for (std::size_t at = 1; at < moments.size(); ++at) {
        EXPECT_EQ(moments[at].caption, "KD LimitDesk (v6.1.0)") << at;
        EXPECT_EQ(moments[at].rules, "AB") << at;
        EXPECT_EQ(moments[at].applications, 1) << at;
        EXPECT_EQ(moments[at].user, "anna") << at;
        EXPECT_TRUE(moments[at].maximised) << at;
        EXPECT_TRUE(moments[at].startingUp) << "the load belongs to the start too, " << at;
    }
    EXPECT_FALSE(globals.gStartingUp);
}

TEST_F(frmKDLimitDeskStartTest, WhileTheSettingsAreReadTheFirstDialogIsNotYetAtHand) {
    disk.Put(Settings, SettingsText({"/a.kdt"}));
    int reads = 0;
    disk.onStep = [&](const Text& step) {
        if (step == Text("Read ") + Settings) {
            ++reads;
            EXPECT_FALSE(globals.gStartingUp);
        }
    };
    ExpectAdmin(CancelIt);
    EXPECT_FALSE(Start());
    EXPECT_EQ(reads, 1);
}

// --- settings
// ------------------------------------------------------------------------------------------------

TEST_F(frmKDLimitDeskStartTest, WithoutTheUsersFileTheOneBesideTheProgramIsReadAndTheUsersWritten) {
    const std::string bytes = "[files]\r\nfile=/b.kdt\r\nfile=/a.kdt\r\n[RECENTS]\r\nRecent=milk\r\n";
    disk.Put(Fallback, bytes);
    ExpectAdmin([&](frmApplicationAdmin& admin) {
        EXPECT_EQ(admin.Grid.Rows(), 3);
        EXPECT_TRUE(disk.Has(Settings)) << "from then on";
        admin.cmdCancel.UserClick();
    });
    EXPECT_FALSE(Start());
    EXPECT_THAT(toolkit.log,
                ElementsAre("suite context", "application file", "exists /home/anna/kd6/KDLimitDesk.IKD",
                            "read /home/anna/kd6/KDLimitDesk.IKD",  // a list is not replaced on one "no"
                            "read /opt/kd/KDLimitDesk.ini", "write /home/anna/kd6/KDLimitDesk.IKD", "login",
                            "variable USERNAME", "form frmApplicationAdmin"));
    EXPECT_EQ(disk.Get(Settings),
              "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n   Recent = milk\r\n\r\n[FILES]\r\n   File   = /a.kdt\r\n"
              "   File   = /b.kdt\r\n");
    EXPECT_EQ(disk.Get(Fallback), bytes) << "never written";
}

// --- what ends the program
// -----------------------------------------------------------------------------------

TEST_F(frmKDLimitDeskStartTest, WithoutAnIdentityTheProgramEndsSilentlyBeforeTheDialog) {
    struct Case {
        const char* label;
        bool loginRequired;
        std::optional<std::pair<Text, bool>> login;
        const char* userName;
    };
    const Case cases[] = {
        {"empty variable", false, std::nullopt, ""},
        {"login dismissed", true, std::nullopt, "anna"},
        {"login failed", true, {{"bert", false}}, "anna"},
    };
    disk.Put(Settings, SettingsText({"/a.kdt"}));
    for (const Case& c : cases) {
        orderedSuite.loginRequired = c.loginRequired;
        orderedSuite.login = c.login;
        machine.variables["USERNAME"] = c.userName;
        toolkit.log.clear();
        EXPECT_FALSE(Start()) << c.label;
        EXPECT_THAT(toolkit.log, Not(Contains(StartsWith("form")))) << c.label;
        EXPECT_THAT(toolkit.log, Not(Contains(StartsWith("show")))) << c.label;
        EXPECT_THAT(toolkit.log, Not(Contains(StartsWith("box")))) << c.label;
        EXPECT_FALSE(globals.gStartingUp) << c.label;
        EXPECT_EQ(disk.Get(Settings), SettingsText({"/a.kdt"})) << c.label;
    }
}

TEST_F(frmKDLimitDeskStartTest, LoginIsOwnedByTheMainWindow) {
    orderedSuite.loginRequired = true;
    orderedSuite.login = {"bert", true};
    ExpectAdmin(CancelIt);
    EXPECT_FALSE(Start());
    EXPECT_THAT(orderedSuite.log, Contains("PromptLogin 42|KD LimitDesk|Authentication Required."));
    EXPECT_EQ(globals.gUserName, "bert");
}

TEST_F(frmKDLimitDeskStartTest, CancellingTheFirstDialogEndsSilentlyAndTheSettingsStay) {
    disk.Put(Settings, SettingsText({"/a.kdt", "/b.kdt"}));
    ExpectAdmin([](frmApplicationAdmin& admin) {
        admin.Grid.SetIsSelected(1, true);
        admin.cmdRemoveApplication.UserClick();
        admin.cmdCancel.UserClick();
    });
    EXPECT_FALSE(Start());
    EXPECT_EQ(disk.Get(Settings), SettingsText({"/a.kdt", "/b.kdt"}));
    EXPECT_THAT(toolkit.log, Not(Contains(StartsWith("show"))));
    EXPECT_THAT(toolkit.log, Not(Contains(StartsWith("box"))));
    EXPECT_FALSE(globals.gStartingUp);
}

TEST_F(frmKDLimitDeskStartTest, ClosingTheFirstDialogByItsFrameEndsTheProgramToo) {
    disk.Put(Settings, SettingsText({"/a.kdt"}));
    ExpectAdmin([](frmApplicationAdmin& admin) { admin.UserClose(); });
    EXPECT_FALSE(Start());
    EXPECT_EQ(globals.gMasterFiles->Count(), 0);
}

TEST_F(frmKDLimitDeskStartTest, ApplicationsThatCannotBeOpenedDoNotEndTheProgram) {
    disk.Put(Settings, SettingsText({"/missing.kdt"}));
    ExpectAdmin(Ok);
    EXPECT_TRUE(Start());
    EXPECT_EQ(desk.Panel2.Caption(), "Done ... , Applications: 1, Views: 0, Variables: 0");
    EXPECT_EQ(desk.Grid.Rows(), 1);
}

}  // namespace
}  // namespace kd
