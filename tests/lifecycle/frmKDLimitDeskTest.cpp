#include "lifecycle/frmKDLimitDesk.h"

#include <gtest/gtest.h>

#include "admin/frmApplicationAdmin.h"
#include "commit/frmCommit.h"
#include "fakes/Builders.h"
#include "model/Columns.h"
#include "platform/EventBoundary.h"

namespace kd {
namespace {

constexpr const char* SettingsFile = "/home/anna/kd6/KDLimitDesk.IKD";
constexpr const char* FallbackFile = "/opt/kd/KDLimitDesk.ini";
constexpr std::int32_t ColUsl = cnUSL - 1;

Text SettingsWith(const std::vector<Text>& paths) {
    Text text = "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n";
    for (const Text& path : paths) {
        text += "   File   = " + path + "\r\n";
    }
    return text;
}

/// A machine with one application, which the settings list.
struct StartDesk : TestMachine {
    StartDesk() {
        anApplication().Field(aField().Usl(12.5)).View("Line 1", 1).Field(aField()).PutInto(*this);
        g.gMasterFiles->Clear();
        files.Put(SettingsFile, SettingsWith({"/apps/plant.kdt"}));
    }
    /// The user has no settings yet; the list beside the program names these.
    void HideSettings(const std::vector<Text>& listed) {
        files.Erase(SettingsFile);
        files.MakeFolder("/home/anna/kd6");
        files.Put(FallbackFile, SettingsWith(listed));
    }
    /// The first dialog lists one application, and is cancelled.
    void ExpectListed(const Text& path) {
        toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [path](frmApplicationAdmin& dialog) {
            EXPECT_EQ(dialog.Grid.Rows(), 2);
            EXPECT_EQ(dialog.Grid.TextMatrix(1, 0), path);
            dialog.cmdCancel.UserClick();
        });
    }
    void ExpectOk() {
        toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin",
                                                [](frmApplicationAdmin& form) { form.cmdOk.UserClick(); });
    }
    void ExpectCancel() {
        toolkit.ExpectForm<frmApplicationAdmin>(
            "frmApplicationAdmin", [](frmApplicationAdmin& form) { form.cmdCancel.UserClick(); });
    }
};

/// Started and loaded.
struct RunningDesk : StartDesk {
    frmKDLimitDesk form{g};
    Desk& desk = form.Controls();
    VSFlexGrid& grid = desk.Grid;

    RunningDesk() {
        ExpectOk();
        EXPECT_TRUE(form.Form_Load(1));
        toolkit.log.clear();
    }
    void Change() {
        grid.Select(1, ColUsl);
        ASSERT_TRUE(grid.StartEdit());
        grid.SetEditText("20");
        ASSERT_TRUE(grid.FinishEdit());
    }
};

TEST(frmKDLimitDeskTest, TheWindowIsCentredWithTruncatedHalves) {
    EXPECT_EQ(frmKDLimitDesk::Centred(1920, 1080, 801, 601), (Area{559, 239, 801, 601}));
    EXPECT_EQ(frmKDLimitDesk::Centred(100, 100, 201, 100), (Area{-50, 0, 201, 100}));
}

TEST(frmKDLimitDeskTest, TheGridHasItsHeaderRowBeforeAnythingIsLoaded) {
    StartDesk desk;
    frmKDLimitDesk form(desk.g);
    EXPECT_EQ(form.Controls().Grid.Rows(), 1);
}

TEST(frmKDLimitDeskTest, TheCaptionHasThePlainVersion) {
    RunningDesk desk;
    EXPECT_EQ(desk.form.Caption(), "KD LimitDesk (v6.1.0)");
    EXPECT_TRUE(desk.form.Maximised());
}

TEST(frmKDLimitDeskTest, TheStartTakesItsStepsInOrder) {
    StartDesk desk;
    frmKDLimitDesk form(desk.g);
    bool startingUp = false;
    Text user;
    Text rules;
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& dialog) {
        startingUp = desk.g.gStartingUp;
        user = desk.g.gUserName;
        rules = desk.g.gRuleLetters;
        EXPECT_EQ(form.Caption(), "KD LimitDesk (v6.1.0)");
        EXPECT_EQ(desk.g.gSettingsPath, SettingsFile);
        EXPECT_FALSE(form.Shown()) << "the window need not have been shown";
        dialog.cmdOk.UserClick();
    });
    EXPECT_TRUE(form.Form_Load(1));
    EXPECT_TRUE(startingUp);
    EXPECT_FALSE(desk.g.gStartingUp);
    EXPECT_EQ(user, "anna");
    EXPECT_EQ(rules, "AB");
    EXPECT_EQ(desk.suite.log, (std::vector<Text>{"NewApplicationFile", "NewApplicationFile",
                                                 "OpenFile /apps/plant.kdt", "LoadViews", "CloseFile"}));
}

TEST(frmKDLimitDeskTest, TheLoadDriverTakesItsStepsInOrder) {
    StartDesk desk;
    frmKDLimitDesk form(desk.g);
    desk.ExpectOk();
    std::vector<Text> panels;
    desk.toolkit.onProcessEvents = [&] { panels.push_back(form.Controls().Panel2.Caption()); };
    EXPECT_TRUE(form.Form_Load(1));
    EXPECT_EQ(desk.toolkit.log,
              (std::vector<std::string>{"form frmApplicationAdmin", "events", "show frmKDLimitDesk", "events",
                                        "events", "events", "hourglass", "events", "events", "default"}));
    EXPECT_EQ(panels.back(), "Done ... , Applications: 1, Views: 1, Variables: 2");
    EXPECT_EQ(panels[panels.size() - 2], "Loading: /apps/plant.kdt");
    EXPECT_EQ(form.Controls().ProgressBar1.Value(), 0);
    EXPECT_TRUE(form.Controls().mnuShowPaths.Checked());
    EXPECT_TRUE(form.Controls().mnuShowOnlyNumericVariables.Checked());
    EXPECT_FALSE(form.Controls().mnuShowAll.Checked());
}

TEST(frmKDLimitDeskTest, TheColumnsAreLaidOutBeforeTheWindowIsShown) {
    /// Notes whether the window is in sight when the columns come.
    struct Screen : GridScreen {
        explicit Screen(frmKDLimitDesk& window) : form(window) {}
        void LayoutChanged() override {
            if (form.Controls().Grid.Cols() > 1) {
                shown.push_back(form.Shown());
            }
        }
        frmKDLimitDesk& form;
        std::vector<bool> shown;
    };
    StartDesk desk;
    frmKDLimitDesk form(desk.g);
    Screen screen(form);
    form.Controls().Grid.SetScreen(&screen);
    desk.ExpectOk();
    EXPECT_TRUE(form.Form_Load(1));
    ASSERT_FALSE(screen.shown.empty());
    EXPECT_FALSE(screen.shown.front());
    EXPECT_TRUE(form.Shown());
    form.Controls().Grid.SetScreen(nullptr);
}

TEST(frmKDLimitDeskTest, WithSettingsTheirListIsShownAndTheFallbackIsNotRead) {
    StartDesk desk;
    desk.files.Put(FallbackFile, SettingsWith({"/apps/other.kdt"}));
    frmKDLimitDesk form(desk.g);
    desk.ExpectListed("/apps/plant.kdt");
    EXPECT_FALSE(form.Form_Load(1));
}

TEST(frmKDLimitDeskTest, WithoutSettingsTheFallbackIsReadAndTheSettingsAreMadeButTheFallbackNeverWritten) {
    StartDesk desk;
    desk.files.Erase(SettingsFile);
    desk.files.MakeFolder("/home/anna/kd6");
    const Text fallback = SettingsWith({"/apps/plant.kdt"});
    desk.files.Put(FallbackFile, fallback);
    frmKDLimitDesk form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& dialog) {
        EXPECT_EQ(dialog.Grid.Rows(), 2);
        EXPECT_EQ(desk.files.Get(SettingsFile), fallback);
        dialog.cmdCancel.UserClick();
    });
    EXPECT_FALSE(form.Form_Load(1));
    EXPECT_EQ(desk.files.Get(FallbackFile), fallback);
    for (const Text& line : desk.files.Log()) {
        EXPECT_EQ(line.find(Text("ReplaceFile ") + FallbackFile), Text::npos);
    }
}

TEST(frmKDLimitDeskTest, WithNeitherFileTheListIsEmptyAndTheSettingsAreMade) {
    StartDesk desk;
    desk.files.Erase(SettingsFile);
    desk.files.MakeFolder("/home/anna/kd6");
    frmKDLimitDesk form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& dialog) {
        EXPECT_EQ(dialog.Grid.Rows(), 1);
        EXPECT_EQ(desk.files.Get(SettingsFile), SettingsWith({}));
        dialog.cmdCancel.UserClick();
    });
    EXPECT_FALSE(form.Form_Load(1));
}

TEST(frmKDLimitDeskTest, SettingsThatCannotBeMadeAreSilentAndTheNextStartTakesTheFallbackAgain) {
    StartDesk desk;
    desk.files.Erase(SettingsFile);
    desk.files.Put(FallbackFile, SettingsWith({"/apps/plant.kdt"}));
    desk.files.FailOn("ReplaceFile", ".IKD", errPermissionDenied);
    for (int start = 0; start < 2; ++start) {
        frmKDLimitDesk form(desk.g);
        desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [](frmApplicationAdmin& dialog) {
            EXPECT_EQ(dialog.Grid.Rows(), 2);
            dialog.cmdCancel.UserClick();
        });
        EXPECT_FALSE(form.Form_Load(1));
        EXPECT_FALSE(desk.files.Has(SettingsFile));
    }
}

TEST(frmKDLimitDeskTest, SettingsThatCannotBeSeenAreNotWrittenOverAndTheFallbackIsShown) {
    StartDesk desk;
    desk.HideSettings({"/apps/plant.kdt"});
    desk.files.FailOn("Read", ".IKD", errPermissionDenied);
    frmKDLimitDesk form(desk.g);
    desk.ExpectListed("/apps/plant.kdt");
    EXPECT_FALSE(form.Form_Load(1));
    EXPECT_FALSE(desk.files.Has(SettingsFile));
}

TEST(frmKDLimitDeskTest, SettingsThatWereOutOfSightAreKeptBesideTheListThatIsConfirmed) {
    StartDesk desk;
    const std::string own = desk.files.Get(SettingsFile);
    desk.HideSettings({"/apps/plant.kdt"});
    desk.files.FailOn("Read", ".IKD", errDevice);
    frmKDLimitDesk form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& dialog) {
        desk.files.FailNoMore();
        desk.files.Put(SettingsFile, own);
        dialog.cmdOk.UserClick();
    });
    EXPECT_TRUE(form.Form_Load(1));
    EXPECT_EQ(desk.files.Get(Text(SettingsFile) + ".old"), own);
    EXPECT_NE(desk.files.Get(SettingsFile).find("/apps/plant.kdt"), Text::npos);
    desk.files.Erase(Text(SettingsFile) + ".old");
    desk.ExpectOk();
    form.Controls().mnuApplications.Click();
    EXPECT_FALSE(desk.files.Has(Text(SettingsFile) + ".old")) << "what stands there now is this run's own";
}

TEST(frmKDLimitDeskTest, SettingsThatCameAfterTheStartAreKeptBesideTheListThatIsConfirmed) {
    StartDesk desk;
    const std::string own = desk.files.Get(SettingsFile);
    desk.files.Erase(SettingsFile);
    desk.files.Put(FallbackFile, SettingsWith({"/apps/plant.kdt"}));
    desk.files.FailOn("ReplaceFile", ".IKD", errPathNotFound);  // the folder's disk is away
    frmKDLimitDesk form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& dialog) {
        desk.files.FailNoMore();
        desk.files.Put(SettingsFile, own);
        dialog.cmdOk.UserClick();
    });
    EXPECT_TRUE(form.Form_Load(1));
    EXPECT_EQ(desk.files.Get(Text(SettingsFile) + ".old"), own);
    EXPECT_NE(desk.files.Get(SettingsFile).find("/apps/plant.kdt"), Text::npos);
}

TEST(frmKDLimitDeskTest, WhereTheConfirmedListCannotBeWrittenTheUnreadOneKeepsItsName) {
    StartDesk desk;
    desk.HideSettings({"/apps/plant.kdt"});
    desk.files.FailOn("Read", ".IKD", errDevice);
    frmKDLimitDesk form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& dialog) {
        desk.files.FailNoMore();
        desk.files.Put(SettingsFile, "unread");
        desk.files.FailOn("ReplaceFile", ".IKD", errDiskFull);
        dialog.cmdOk.UserClick();
    });
    EXPECT_TRUE(form.Form_Load(1));
    EXPECT_EQ(desk.files.Get(SettingsFile), "unread");
    EXPECT_FALSE(desk.files.Has(Text(SettingsFile) + ".old"));
}

TEST(frmKDLimitDeskTest, WhereMemoryEndsWhileTheConfirmedListIsWrittenTheUnreadOneKeepsItsName) {
    StartDesk desk;
    desk.HideSettings({"/apps/plant.kdt"});
    desk.files.FailOn("Read", ".IKD", errDevice);
    frmKDLimitDesk form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& dialog) {
        desk.files.FailNoMore();
        desk.files.Put(SettingsFile, "unread");
        desk.files.onStep = [](const Text& step) {
            if (step.starts_with("ReplaceFile")) {
                throw std::bad_alloc();
            }
        };
        dialog.cmdOk.UserClick();
    });
    desk.toolkit.ExpectBox(UnhandledErrorText(cError(errOutOfMemory, "x")), BoxIcon::Critical);
    (void)form.Form_Load(1);  // whether the program goes on is told elsewhere
    EXPECT_EQ(desk.files.Get(SettingsFile), "unread");
    EXPECT_FALSE(desk.files.Has(Text(SettingsFile) + ".old"));
}

TEST(frmKDLimitDeskTest, SettingsThatWereReadAreNotSetAsideBecauseAListCouldNotBeWritten) {
    RunningDesk desk;
    desk.files.FailOn("ReplaceFile", ".IKD", errDiskFull);
    desk.ExpectOk();
    desk.desk.mnuApplications.Click();
    desk.files.FailNoMore();
    desk.ExpectOk();
    desk.desk.mnuApplications.Click();
    EXPECT_FALSE(desk.files.Has(Text(SettingsFile) + ".old"));
}

TEST(frmKDLimitDeskTest, AConfirmedListIsWrittenAlsoWhereTheUnreadOneCannotBeKept) {
    StartDesk desk;
    desk.HideSettings({"/apps/plant.kdt"});
    desk.files.FailOn("Read", ".IKD", errDevice);
    frmKDLimitDesk form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& dialog) {
        desk.files.FailNoMore();
        desk.files.Put(SettingsFile, "unread");
        desk.files.onStep = [](const Text& step) {
            if (step.starts_with("Rename") || step.starts_with("CopyFile")) {
                throw cError(errPermissionDenied, "Test");
            }
        };
        dialog.cmdOk.UserClick();
    });
    EXPECT_TRUE(form.Form_Load(1));
    EXPECT_NE(desk.files.Get(SettingsFile).find("/apps/plant.kdt"), Text::npos);
    EXPECT_FALSE(desk.files.Has(Text(SettingsFile) + ".old"));
}

TEST(frmKDLimitDeskTest, SettingsThatComeIntoSightAgainAreTheUsersOwn) {
    StartDesk desk;
    const std::string own = desk.files.Get(SettingsFile);
    desk.HideSettings({"/apps/other.kdt"});
    int reads = 0;
    desk.files.onStep = [&](const Text& step) {
        if (step == Text("Read ") + SettingsFile) {
            if (++reads == 1) {
                throw cError(errDevice, "Test");
            }
            desk.files.Put(SettingsFile, own);
        }
    };
    frmKDLimitDesk form(desk.g);
    desk.ExpectListed("/apps/plant.kdt");
    EXPECT_FALSE(form.Form_Load(1));
}

TEST(frmKDLimitDeskTest, SettingsThatCannotBeReadDoNotGiveWayToTheFallback) {
    StartDesk desk;
    desk.files.SetUnreadable(SettingsFile);
    desk.files.Put(FallbackFile, SettingsWith({"/apps/other.kdt"}));
    const std::string kept = desk.files.Get(SettingsFile);
    frmKDLimitDesk form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [](frmApplicationAdmin& dialog) {
        EXPECT_EQ(dialog.Grid.Rows(), 1);
        dialog.cmdCancel.UserClick();
    });
    EXPECT_FALSE(form.Form_Load(1));
    EXPECT_EQ(desk.files.Get(SettingsFile), kept);
}

TEST(frmKDLimitDeskTest, WithoutAnIdentityTheProgramEndsBeforeTheDialogWithoutAWord) {
    StartDesk desk;
    desk.environment.variables["USERNAME"] = "";
    frmKDLimitDesk form(desk.g);
    EXPECT_FALSE(form.Form_Load(1));
    EXPECT_TRUE(desk.toolkit.log.empty());
}

TEST(frmKDLimitDeskTest, CancellingTheFirstDialogEndsTheProgramAndLeavesTheSettings) {
    StartDesk desk;
    const Text before = desk.files.Get(SettingsFile);
    frmKDLimitDesk form(desk.g);
    desk.ExpectCancel();
    EXPECT_FALSE(form.Form_Load(1));
    EXPECT_EQ(desk.g.gMasterFiles->Count(), 0);
    EXPECT_EQ(desk.files.Get(SettingsFile), before);
    EXPECT_EQ(desk.toolkit.log, std::vector<std::string>{"form frmApplicationAdmin"});
}

TEST(frmKDLimitDeskTest, ALoadThatIsStoppedAtTheStartIsToldAndTheProgramGoesOn) {
    StartDesk desk;
    desk.files.Put("/apps/plant.V1", "[FIELD]\r\nNAME=x\r\nLENGTH=40000\r\n");
    frmKDLimitDesk form(desk.g);
    desk.ExpectOk();
    desk.toolkit.ExpectBox(UnhandledErrorText(cError(errOverflow, "x", {}, "/apps/plant.V1")),
                           BoxIcon::Critical);
    EXPECT_TRUE(form.Form_Load(1));
    EXPECT_EQ(desk.toolkit.MousePointer(), Pointer::Default);
    EXPECT_TRUE(form.Controls().Grid.Redraw());
    EXPECT_EQ(form.Controls().ProgressBar1.Value(), 0);
    EXPECT_FALSE(desk.g.gStartingUp);
    const cFile& stopped = desk.g.gFiles->Ref(2);
    EXPECT_LT(stopped.EndFieldPtr(), stopped.BegFieldPtr()) << "it can never be saved half-read";
}

TEST(frmKDLimitDeskTest, AFailureOfTheSuiteAtTheStartIsToldAndEndsTheProgram) {
    StartDesk desk;
    class Broken : public FakeSuite {
    public:
        std::unique_ptr<KDApplicationFile> NewApplicationFile() override {
            throw cError(errFileNotFound, "Broken", {}, "/opt/suite");
        }
    } broken;
    Platform platform{desk.files,       desk.toolkit, desk.locale,     desk.clock,
                      desk.environment, desk.shell,   desk.fileDialog, broken};
    Globals g(platform);
    frmKDLimitDesk form(g);
    desk.toolkit.ExpectBox(UnhandledErrorText(cError(errFileNotFound, "x", {}, "/opt/suite")),
                           BoxIcon::Critical);
    EXPECT_FALSE(form.Form_Load(1));
}

TEST(frmKDLimitDeskTest, AStartThatIsStoppedHasTakenTheStepsBeforeThatOneAndNoneBehindIt) {
    class Broken : public FakeSuite {
    public:
        explicit Broken(bool atTheContext) : m_atTheContext(atTheContext) {}
        std::unique_ptr<KDSuiteContext> NewSuiteContext() override {
            if (m_atTheContext) {
                throw cError(errFileNotFound, "Broken");
            }
            return FakeSuite::NewSuiteContext();
        }
        std::unique_ptr<KDApplicationFile> NewApplicationFile() override {
            throw cError(errFileNotFound, "Broken");
        }

    private:
        bool m_atTheContext;
    };
    for (const bool atTheContext : {true, false}) {
        StartDesk desk;
        Broken broken(atTheContext);
        Platform platform{desk.files,       desk.toolkit, desk.locale,     desk.clock,
                          desk.environment, desk.shell,   desk.fileDialog, broken};
        Globals g(platform);
        frmKDLimitDesk form(g);
        desk.toolkit.ExpectBox(UnhandledErrorText(cError(errFileNotFound, "x")), BoxIcon::Critical);
        EXPECT_FALSE(form.Form_Load(1));
        EXPECT_TRUE(form.Caption().starts_with("KD LimitDesk (v")) << atTheContext;
        EXPECT_EQ(g.gSettingsPath, atTheContext ? "" : SettingsFile);
        EXPECT_EQ(form.Maximised(), !atTheContext);
        EXPECT_FALSE(g.gStartingUp) << atTheContext;
    }
}

TEST(frmKDLimitDeskTest, CommitIsOfferedOnlyWhileAnyViewHasChanges) {
    RunningDesk desk;
    desk.desk.mnuFile.UserClick();
    EXPECT_FALSE(desk.desk.mnuCommit.Enabled());
    desk.g.gFiles->Ref(2).SetChangesMade(true);
    desk.desk.mnuFile.UserClick();
    EXPECT_TRUE(desk.desk.mnuCommit.Enabled());
}

TEST(frmKDLimitDeskTest, ARefusedTextInTheEditorOffersNoCommitAndAViewThatHasChangesDoes) {
    for (const bool changed : {false, true}) {
        RunningDesk desk;
        desk.grid.Select(1, ColUsl);
        ASSERT_TRUE(desk.grid.StartEdit());
        desk.grid.SetEditText("abc");
        desk.g.gFiles->Ref(2).SetChangesMade(changed);
        desk.desk.mnuCommit.SetEnabled(!changed);
        desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
        desk.desk.mnuFile.UserClick();
        EXPECT_EQ(desk.desk.mnuCommit.Enabled(), changed);
    }
}

TEST(frmKDLimitDeskTest, OpeningAMenuSettlesAnOpenEditorFirst) {
    for (const Text& menu : std::vector<Text>{"mnuFile", "mnuEdit", "mnuOptions", "mnuView"}) {
        RunningDesk desk;
        desk.grid.Select(1, ColUsl);
        ASSERT_TRUE(desk.grid.StartEdit());
        desk.grid.SetEditText("20");
        for (MenuItem* item : desk.form.MenuBar()) {
            if (item->Name() == menu) {
                item->UserClick();
            }
        }
        EXPECT_FALSE(desk.grid.EditWindow()) << menu;
        EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 20) << menu;
        if (menu == "mnuFile") {
            EXPECT_TRUE(desk.desk.mnuCommit.Enabled()) << "the settled edit counts";
        }
    }
}

TEST(frmKDLimitDeskTest, OpeningAMenuWithARefusedTextKeepsTheEditor) {
    for (std::size_t at = 0; at < 4; ++at) {
        RunningDesk desk;
        desk.grid.Select(1, ColUsl);
        ASSERT_TRUE(desk.grid.StartEdit());
        desk.grid.SetEditText("abc");
        desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
        desk.form.MenuBar()[at]->UserClick();
        EXPECT_TRUE(desk.grid.EditWindow());
        EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 12.5);
    }
}

TEST(frmKDLimitDeskTest, ARefusedTextIsToldOnceOnTheWayAlongTheMenuBar) {
    RunningDesk desk;
    const auto openAll = [&] {
        for (MenuItem* const item : desk.form.MenuBar()) {
            item->UserClick();
        }
    };
    desk.grid.Select(1, ColUsl);
    ASSERT_TRUE(desk.grid.StartEdit());
    desk.grid.SetEditText("abc");
    desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    openAll();
    openAll();
    EXPECT_TRUE(desk.grid.EditWindow());
    desk.grid.SetEditText("abcd");
    desk.toolkit.ExpectBox("Invalid value 'abcd' entered for cell!");
    openAll();
    for (const std::int32_t col : {ColUsl, ColUsl + 1}) {
        desk.grid.CancelEdit();
        desk.grid.Select(1, col);
        ASSERT_TRUE(desk.grid.StartEdit());
        desk.grid.SetEditText("abcd");
        desk.toolkit.ExpectBox("Invalid value 'abcd' entered for cell!");
        openAll();
    }
}

TEST(frmKDLimitDeskTest, ClosingWithoutChangesAsksNothing) {
    RunningDesk desk;
    EXPECT_TRUE(desk.form.Form_QueryUnload());
}

TEST(frmKDLimitDeskTest, ClosingWithChangesAsksAndNoKeepsEverything) {
    for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
        RunningDesk desk;
        desk.Change();
        const auto filesBefore = desk.files.Get("/apps/plant.kdt");
        desk.toolkit.ExpectQuestion(
            "You have outstanding changes. Are you sure you want to quit without saving?", BoxIcon::Question,
            "KD LimitDesk", answer);
        EXPECT_EQ(desk.form.Form_QueryUnload(), answer == BoxAnswer::Yes);
        EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 20);
        EXPECT_EQ(desk.grid.BackColor(1, ColUsl), ChangedColour);
        EXPECT_EQ(desk.files.Get("/apps/plant.kdt"), filesBefore) << "nothing is saved on the way out";
    }
}

TEST(frmKDLimitDeskTest, OneChangedViewIsEnoughForTheQuestion) {
    RunningDesk desk;
    desk.g.gFiles->Ref(2).SetChangesMade(true);
    desk.toolkit.ExpectQuestion("You have outstanding changes. Are you sure you want to quit without saving?",
                                BoxIcon::Question, "KD LimitDesk", BoxAnswer::No);
    EXPECT_FALSE(desk.form.Form_QueryUnload());
}

TEST(frmKDLimitDeskTest, TheSettingsAreNotWrittenAtClosing) {
    RunningDesk desk;
    desk.files.ClearLog();
    EXPECT_TRUE(desk.form.Form_QueryUnload());
    EXPECT_TRUE(desk.files.Log().empty());
}

TEST(frmKDLimitDeskTest, ATextInTheOpenEditorIsAChangeWhenTheWindowCloses) {
    RunningDesk desk;
    desk.grid.Select(1, ColUsl);
    ASSERT_TRUE(desk.grid.StartEdit());
    desk.grid.SetEditText("20");
    desk.toolkit.ExpectQuestion("You have outstanding changes. Are you sure you want to quit without saving?",
                                BoxIcon::Question, "KD LimitDesk", BoxAnswer::No);
    EXPECT_FALSE(desk.form.Form_QueryUnload());
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 20);
}

TEST(frmKDLimitDeskTest, ARefusedTextInTheEditorIsToldOnceAndGivenUpAtClosing) {
    RunningDesk desk;
    desk.grid.Select(1, ColUsl);
    ASSERT_TRUE(desk.grid.StartEdit());
    desk.grid.SetEditText("abc");
    desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    EXPECT_TRUE(desk.form.Form_QueryUnload()) << "nothing is changed, so nothing is asked";
    EXPECT_FALSE(desk.grid.EditWindow());
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 12.5);
}

TEST(frmKDLimitDeskTest, ARefusedTextThatAMenuHasToldIsToldAgainWhenTheFramesCloseDropsIt) {
    RunningDesk desk;
    desk.grid.Select(1, ColUsl);
    ASSERT_TRUE(desk.grid.StartEdit());
    desk.grid.SetEditText("abc");
    desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    desk.desk.mnuView.UserClick();
    ASSERT_TRUE(desk.grid.EditWindow());
    desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    EXPECT_TRUE(desk.form.Form_QueryUnload());
    EXPECT_FALSE(desk.grid.EditWindow());
}

TEST(frmKDLimitDeskTest, CloseThatComesWithoutTheMenuSettlesTheEditorFirst) {
    RunningDesk desk;
    bool mayClose = true;
    desk.form.Unload = [&] { mayClose = desk.form.Form_QueryUnload(); };
    desk.grid.Select(1, ColUsl);
    ASSERT_TRUE(desk.grid.StartEdit());
    desk.grid.SetEditText("20");
    desk.toolkit.ExpectQuestion("You have outstanding changes. Are you sure you want to quit without saving?",
                                BoxIcon::Question, "KD LimitDesk", BoxAnswer::No);
    desk.desk.mnuClose.UserClick();
    EXPECT_FALSE(mayClose);
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 20);
}

TEST(frmKDLimitDeskTest, CloseInTheFileMenuGoesByTheOldTextOnceItsOpeningHasToldTheRefusal) {
    for (const bool changed : {false, true}) {
        RunningDesk desk;
        if (changed) {
            desk.Change();
        }
        bool mayClose = changed;
        desk.form.Unload = [&] { mayClose = desk.form.Form_QueryUnload(); };
        desk.grid.Select(1, ColUsl);
        ASSERT_TRUE(desk.grid.StartEdit());
        desk.grid.SetEditText("abc");
        desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
        desk.form.MenuBar()[0]->UserClick();
        if (changed) {
            desk.toolkit.ExpectQuestion(
                "You have outstanding changes. Are you sure you want to quit without saving?",
                BoxIcon::Question, "KD LimitDesk", BoxAnswer::No);
        }
        desk.desk.mnuClose.UserClick();
        EXPECT_EQ(mayClose, !changed);
        EXPECT_FALSE(desk.grid.EditWindow());
    }
}

TEST(frmKDLimitDeskTest, CloseInTheFileMenuUnloadsTheWindow) {
    RunningDesk desk;
    int unloaded = 0;
    desk.form.Unload = [&] { ++unloaded; };
    desk.desk.mnuClose.UserClick();
    EXPECT_EQ(unloaded, 1);
}

TEST(frmKDLimitDeskTest, CloseInTheFileMenuTellsNoFailureWhereThereIsNoWindow) {
    RunningDesk desk;
    desk.form.Unload = nullptr;
    desk.desk.mnuClose.UserClick();
    EXPECT_TRUE(desk.toolkit.boxes.empty());
}

TEST(frmKDLimitDeskTest, ProgressBarAndGridAreLaidOut) {
    const auto layout = frmKDLimitDesk::Form_Resize({0, 0, 800, 600}, 2, 24, 10);
    EXPECT_EQ(layout.progressBar, (Area{0, 566, 800, 10}));
    EXPECT_EQ(layout.grid, (Area{4, 2, 792, 564}));
    const auto scaled = frmKDLimitDesk::Form_Resize({10, 0, 8000, 6000}, 20, 240, 100, 15);
    EXPECT_EQ(scaled.progressBar, (Area{0, 5660, 8000, 100}));
    EXPECT_EQ(scaled.grid, (Area{70, 20, 7880, 5640}));
}

TEST(frmKDLimitDeskTest, ALaterManageApplicationsReplacesAllThatWasLoaded) {
    RunningDesk desk;
    desk.grid.Select(1, ColUsl);
    const auto files = desk.g.gFiles;
    const auto fields = desk.g.gFields;
    const auto saved = desk.g.gSavedFields;
    const auto labels = desk.g.gLabels;
    desk.ExpectOk();
    desk.desk.mnuApplications.UserClick();
    EXPECT_NE(desk.g.gFiles, files);
    EXPECT_NE(desk.g.gFields, fields);
    EXPECT_NE(desk.g.gSavedFields, saved);
    EXPECT_NE(desk.g.gLabels, labels);
    EXPECT_EQ(desk.grid.Rows(), 3);
    EXPECT_EQ(desk.grid.Row(), 0);
    EXPECT_EQ(desk.desk.Panel1.Caption(), "");
}

TEST(frmKDLimitDeskTest, AnApplicationThatFailedToOpenStaysInTheSettingsAndIsTriedAtTheNextStart) {
    StartDesk desk;
    const Text both = SettingsWith({"/apps/broken.kdt", "/apps/plant.kdt"});
    desk.files.Put(SettingsFile, both);
    {
        frmKDLimitDesk form(desk.g);
        desk.ExpectOk();
        EXPECT_TRUE(form.Form_Load(1));
        EXPECT_FALSE(desk.g.gMasterFiles->Ref(1).Enabled());
        desk.files.Put(SettingsFile, SettingsWith({}));
        desk.ExpectOk();
        form.Controls().mnuApplications.UserClick();
        EXPECT_EQ(desk.files.Get(SettingsFile), both);
    }
    desk.suite.applications["/apps/broken.kdt"] = {"Mended", {}};
    frmKDLimitDesk form(desk.g);
    desk.ExpectOk();
    EXPECT_TRUE(form.Form_Load(1));
    EXPECT_TRUE(desk.g.gMasterFiles->Ref(1).Enabled());
    EXPECT_EQ(desk.g.gFiles->Ref(1).Title(), "Mended");
}

TEST(frmKDLimitDeskTest, ACancelledManageApplicationsLeavesEveryEdit) {
    RunningDesk desk;
    desk.Change();
    const auto fields = desk.g.gFields;
    desk.toolkit.ExpectQuestion(
        "You have outstanding changes.\r\nAre you sure you want to modify folders without saving?",
        BoxIcon::Question, "KD LimitDesk", BoxAnswer::Yes);
    desk.ExpectCancel();
    desk.desk.mnuApplications.UserClick();
    EXPECT_EQ(desk.g.gFields, fields);
    EXPECT_EQ(desk.g.gMasterFiles->Count(), 1);
    EXPECT_EQ(desk.grid.BackColor(1, ColUsl), ChangedColour);
}

TEST(frmKDLimitDeskTest, HelpOfManageApplicationsOpensTheDocumentation) {
    RunningDesk desk;
    desk.suite.helpTopics["Documentation"] = 0;
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [](frmApplicationAdmin& form) {
        form.cmdHelp.UserClick();
        form.cmdCancel.UserClick();
    });
    desk.desk.mnuApplications.UserClick();
    EXPECT_EQ(desk.suite.helpTopics["Documentation"], 1);
}

TEST(frmKDLimitDeskTest, AFailureInACommandPutsPointerRedrawAndProgressBack) {
    RunningDesk desk;
    desk.form.Unload = [&] {
        desk.toolkit.SetMousePointer(Pointer::Hourglass);
        desk.grid.SetRedraw(false);
        desk.desk.ProgressBar1.SetValue(30);
        throw cError(errDiskFull, "x", {}, "/a.kdt");
    };
    desk.toolkit.ExpectBox(UnhandledErrorText(cError(errDiskFull, "x", {}, "/a.kdt")), BoxIcon::Critical);
    desk.desk.mnuClose.UserClick();
    EXPECT_EQ(desk.toolkit.MousePointer(), Pointer::Default);
    EXPECT_TRUE(desk.grid.Redraw());
    EXPECT_EQ(desk.desk.ProgressBar1.Value(), 0);
}

TEST(frmKDLimitDeskTest, AFailureBehindTheEndOfTheFormPutsNothingOfItBack) {
    StartDesk desk;
    {
        const frmKDLimitDesk form(desk.g);
        EXPECT_TRUE(static_cast<bool>(desk.toolkit.Boundary().PutBack));
    }
    EXPECT_FALSE(static_cast<bool>(desk.toolkit.Boundary().PutBack));
}

TEST(frmKDLimitDeskTest, AFailureInTheCellEditorIsToldAndTheProgramGoesOn) {
    RunningDesk desk;
    desk.grid.Select(1, cnSample - 1);
    ASSERT_TRUE(desk.grid.StartEdit());
    desk.grid.SetEditText("40000");
    desk.toolkit.ExpectBox(UnhandledErrorText(cError(errOverflow, "x")), BoxIcon::Critical);
    EXPECT_TRUE(desk.grid.FinishEdit());
    EXPECT_EQ(desk.grid.TextMatrix(1, cnSample - 1), "0");
    desk.Change();
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 20);
}

TEST(frmKDLimitDeskTest, TheMenusHaveTheirCaptionsInOrder) {
    RunningDesk desk;
    const auto captions = [](const MenuItem& menu) {
        std::vector<Text> texts;
        for (const MenuItem* entry : menu.Entries()) {
            if (entry != nullptr) {
                texts.push_back(entry->Caption());
            }
        }
        return texts;
    };
    const std::vector<Text> edit{"Restore Original Value", "Cut", "Copy", "Paste", "Fill...", "Replace..."};
    EXPECT_EQ(captions(desk.desk.mnuFile),
              (std::vector<Text>{"Manage Applications", "Commit Changes", "Close"}));
    EXPECT_EQ(captions(desk.desk.mnuEdit), edit);
    EXPECT_EQ(captions(desk.desk.mnuEditMenu), edit);
    EXPECT_EQ(captions(desk.desk.mnuOptions), std::vector<Text>{"Clear All Filters"});
    EXPECT_EQ(captions(desk.desk.mnuView),
              (std::vector<Text>{"Show Paths", "Show Only Numeric Variables", "Show All Properties"}));
    EXPECT_EQ(captions(desk.desk.mnuHelp), std::vector<Text>{"About KDLimitDesk"});
    std::vector<Text> bar;
    for (const MenuItem* menu : desk.form.MenuBar()) {
        bar.push_back(menu->Caption());
    }
    EXPECT_EQ(bar, (std::vector<Text>{"&File", "&Edit", "&Options", "&View", "&Help"}));
}

TEST(frmKDLimitDeskTest, TheLoopFromFileToFileCloses) {
    RunningDesk desk;
    desk.Change();
    desk.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& dialog) { dialog.cmdOk.UserClick(); });
    desk.toolkit.ExpectBox("1 File(s) have been modified.", BoxIcon::Information);
    desk.desk.mnuFile.UserClick();
    desk.desk.mnuCommit.UserClick();
    EXPECT_NE(desk.files.Get("/apps/plant.kdt").find("USL          = F20.000\r\n"), std::string::npos);
    ASSERT_EQ(desk.suite.records.size(), 1U);
    EXPECT_EQ(desk.suite.records[0].oldValue, "12.500");
    EXPECT_EQ(desk.suite.records[0].newValue, "20.000");
    EXPECT_TRUE(desk.form.Form_QueryUnload());
}

TEST(frmKDLimitDeskTest, CommitOverARefusedTextLeavesTheEditorAndShowsTheFaultsCell) {
    RunningDesk desk;
    desk.Change();
    desk.g.gFields->Ref(1).SetMinimum(99);  // a fault of another cell
    desk.grid.Select(1, ColUsl + 1);
    ASSERT_TRUE(desk.grid.StartEdit());
    desk.grid.SetEditText("abc");
    desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    desk.desk.mnuFile.UserClick();
    EXPECT_TRUE(desk.grid.EditWindow()) << "the menu opens beside it";
    desk.toolkit.ExpectBox("Invalid Limit Entered!", BoxIcon::Exclamation);
    desk.desk.mnuCommit.UserClick();
    EXPECT_FALSE(desk.grid.EditWindow());
    EXPECT_EQ(desk.grid.Row(), 1);
    EXPECT_EQ(desk.grid.Col(), cnMin - 1);
}

}  // namespace
}  // namespace kd
