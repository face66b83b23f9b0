#include "lifecycle/FirstStart.h"

#include <gtest/gtest.h>

#include "base/Paths.h"
#include "fakes/TestMachine.h"
#include "lifecycle/Settings.h"
#include "lifecycle/StartUp.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

class FirstStartTest : public testing::Test {
protected:
    TestMachine desk;
    const Text installed = "/usr/share/kdlimitdesk/samples";
    const Text own = "/home/anna/.local/share/kdlimitdesk/samples";

    void SetUp() override {
        desk.files.MakeFolder(paths::Folder(SettingsPath(desk.g)));
        desk.files.Put(installed + "/water.kdt6", "template");
        desk.files.Put(installed + "/water.KDV6.V1", "view");
        desk.files.Put(installed + "/diesel.kdt", "other");
    }
    void Provide() { ProvideSampleApplications(desk.g, installed, own); }
    std::vector<Text> Listed() {
        ReadSettings(desk.g, SettingsPath(desk.g));
        std::vector<Text> names;
        for (const auto& application : *desk.g.gMasterFiles) {
            names.push_back(application->Filename());
        }
        return names;
    }
};

TEST_F(FirstStartTest, SamplesAreCopiedToTheUserAndListed) {
    Provide();
    EXPECT_EQ(Listed(), (std::vector<Text>{own + "/diesel.kdt", own + "/water.kdt6"}));
    EXPECT_EQ(desk.files.Get(own + "/water.KDV6.V1"), "view");
    EXPECT_EQ(desk.files.Get(installed + "/water.kdt6"), "template");
}

TEST_F(FirstStartTest, TheListHoldsTheSamplesAloneAndAllSwitchedOn) {
    (void)desk.g.gMasterFiles->Add("/apps/other.kdt", true);  // the record is not needed
    Provide();
    EXPECT_EQ(desk.g.gMasterFiles->TotalFilesEnabled(), 2);
    EXPECT_EQ(Listed(), (std::vector<Text>{own + "/diesel.kdt", own + "/water.kdt6"}));
}

TEST_F(FirstStartTest, WhatARunThatWasCutOffHadCopiedIsNoPartOfTheSamples) {
    desk.files.Put(own + ".new/stale.kdt", "half");
    desk.files.Put(own + ".new/water.kdt6", "half");
    Provide();
    EXPECT_EQ(Listed(), (std::vector<Text>{own + "/diesel.kdt", own + "/water.kdt6"}));
    EXPECT_EQ(desk.files.Get(own + "/water.kdt6"), "template");
    EXPECT_FALSE(desk.files.Exists(own + ".new"));
}

TEST_F(FirstStartTest, SettingsOfTheUserStayAsTheyAre) {
    desk.files.Put(SettingsPath(desk.g), "[FILES]\r\n");
    Provide();
    EXPECT_EQ(desk.files.Get(SettingsPath(desk.g)), "[FILES]\r\n");
    EXPECT_FALSE(desk.files.Exists(own));
}

TEST_F(FirstStartTest, AListBesideTheProgramComesFirst) {
    desk.files.Put(FallbackSettingsPath(desk.g), "[FILES]\r\n");
    Provide();
    EXPECT_FALSE(desk.files.Exists(SettingsPath(desk.g)));
    EXPECT_FALSE(desk.files.Exists(own));
}

TEST_F(FirstStartTest, WhatWasTriedOutOnTheCopiesStays) {
    desk.files.Put(own + "/water.kdt6", "changed");
    Provide();
    EXPECT_EQ(desk.files.Get(own + "/water.kdt6"), "changed");
    EXPECT_EQ(Listed(), std::vector<Text>{own + "/water.kdt6"});
}

TEST_F(FirstStartTest, AFolderOfTheUserWithoutAnApplicationGivesNoList) {
    desk.files.Put(own + "/notes.txt", "mine");
    Provide();
    EXPECT_FALSE(desk.files.Exists(SettingsPath(desk.g)));
    EXPECT_EQ(desk.files.Get(own + "/notes.txt"), "mine");
}

TEST_F(FirstStartTest, WithoutInstalledSamplesNothingIsMade) {
    desk.files.Put("/stray.kdt", "template");
    for (const char* const installedFolder : {"/nowhere", ""}) {
        ProvideSampleApplications(desk.g, installedFolder, own);
        EXPECT_FALSE(desk.files.Exists(own)) << installedFolder;
        EXPECT_FALSE(desk.files.Exists(SettingsPath(desk.g))) << installedFolder;
    }
}

TEST_F(FirstStartTest, AnInstalledFolderWithoutAnApplicationIsNotCopied) {
    desk.files.Put("/opt/empty/Rules.ini", "[RULES]\r\n");
    ProvideSampleApplications(desk.g, "/opt/empty", own);
    EXPECT_FALSE(desk.files.Exists(own));
    EXPECT_FALSE(desk.files.Exists(SettingsPath(desk.g)));
}

TEST_F(FirstStartTest, WithoutAnInstalledApplicationThoseOfTheUserAreNotListed) {
    desk.files.Put("/opt/empty/Rules.ini", "[RULES]\r\n");
    desk.files.Put(own + "/mine.kdt", "mine");
    ProvideSampleApplications(desk.g, "/opt/empty", own);
    EXPECT_FALSE(desk.files.Exists(SettingsPath(desk.g)));
}

TEST_F(FirstStartTest, SettingsThatCannotBeWrittenTakeTheNewCopiesAwayButNoEarlierOnes) {
    desk.files.FailOn("ReplaceFile", ".IKD", errDiskFull);
    Provide();
    EXPECT_FALSE(desk.files.Exists(own));
    EXPECT_FALSE(desk.files.Exists(own + ".new"));
    desk.files.Put(own + "/water.kdt6", "changed");
    Provide();
    EXPECT_EQ(desk.files.Get(own + "/water.kdt6"), "changed");
    EXPECT_FALSE(desk.files.Exists(SettingsPath(desk.g)));
}

TEST_F(FirstStartTest, AFolderThatComesWhileTheCopiesAreMadeIsNotTakenAway) {
    desk.files.onStep = [this](const Text& step) {
        if (step.starts_with("CopyForArchive")) {
            desk.files.Put(own + "/mine.kdt", "mine");
        }
    };
    Provide();
    EXPECT_EQ(desk.files.Get(own + "/mine.kdt"), "mine");
    EXPECT_FALSE(desk.files.Exists(SettingsPath(desk.g)));
}

TEST_F(FirstStartTest, WantOfMemoryIsAFailureLikeAnyOther) {
    desk.files.onStep = [](const Text& step) {
        if (step.starts_with("ReplaceFile")) {
            throw std::bad_alloc();
        }
    };
    Provide();
    EXPECT_FALSE(desk.files.Exists(own));
}

TEST_F(FirstStartTest, ACopyThatFailsLeavesNeitherFolderNorSettings) {
    int failed = 0;
    for (int operation = 1; operation < 50; ++operation) {
        TestMachine fresh;
        fresh.files.MakeFolder(paths::Folder(SettingsPath(fresh.g)));
        fresh.files.Put(installed + "/water.kdt6", "template");
        fresh.files.Put(installed + "/water.KDV6.V1", "view");
        fresh.files.FailAt(operation, errDiskFull);
        ProvideSampleApplications(fresh.g, installed, own);
        fresh.files.FailAt(0);
        EXPECT_EQ(fresh.files.Exists(own), fresh.files.Exists(SettingsPath(fresh.g))) << operation;
        if (!fresh.files.Exists(own)) {
            ++failed;
            EXPECT_FALSE(fresh.files.Exists(own + ".new/water.kdt6")) << operation;
        } else {
            EXPECT_EQ(fresh.files.Get(own + "/water.KDV6.V1"), "view") << operation;
        }
    }
    EXPECT_GT(failed, 3);
}

}  // namespace
}  // namespace kd
