#include "commit/CommitChanges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>
#include <set>
#include <utility>

#include "base/ApplicationNames.h"
#include "base/NumberTexts.h"
#include "commit/GroupCommit.h"
#include "commit/frmCommit.h"
#include "fakes/Builders.h"
#include "grid/RowFill.h"
#include "model/Columns.h"

namespace kd {
namespace {

/// An application with the template's own view and two more, one variable in each, the status panel in use.
struct CommitDesk : LoadedDesk {
    explicit CommitDesk(Text path = "/apps/plant.kdt")
        : application(anApplication(std::move(path))
                          .Field(aField().Name("a").Usl(10))
                          .View("Inlet", 1)
                          .Field(aField().Name("b").Usl(20))
                          .View("Outlet", 2)
                          .Field(aField().Name("c").Usl(30))) {
        Put(application);
        Load();
        desk.Panel2.SetCaption("as before");
        desk.ProgressBar1.SetValue(0);
        clock.moments = {{2026, 3, 4, 23, 59, 59}, {2026, 3, 5, 0, 0, 1}};
    }
    /// Changes the upper specification limit of the variable in each of these rows.
    void EditRows(const std::vector<std::int32_t>& rows) {
        for (const std::int32_t row : rows) {
            Edit(row, cnUSL, "5");
        }
    }
    void ExpectDialog(std::function<void(frmCommit&)> user = {}) {
        toolkit.ExpectForm<frmCommit>("frmCommit", [user = std::move(user)](frmCommit& form) {
            if (user) {
                user(form);
            }
            if (form.Shown()) {
                form.cmdOk.UserClick();
            }
        });
    }
    void ExpectModified(int count) {
        toolkit.ExpectBox(Digits(count) + " File(s) have been modified.", BoxIcon::Information);
    }
    void ExpectCommitted(int count) {
        ExpectDialog();
        ExpectModified(count);
    }
    /// The calls of the suite's services since the load.
    std::vector<Text> SuiteLog() const {
        const auto end = std::find(suite.log.rbegin(), suite.log.rend(), "CloseFile").base();
        return {end, suite.log.end()};
    }
    BackColour Mark(std::int32_t row, std::int32_t column) const {
        return desk.Grid.BackColor(row, column - 1);
    }
    bool IsSaved(std::int32_t view) const {
        return files.Get(application.FilePath(view)).find("VERSION      = 7.001\r\n") != Text::npos;
    }
    bool IsOld(std::int32_t view) const {
        return files.Get(application.FilePath(view)) == application.FileText(static_cast<std::size_t>(view));
    }
    void ExpectAtRest() const {
        EXPECT_EQ(desk.Panel2.Caption(), "as before");
        EXPECT_EQ(desk.ProgressBar1.Value(), 0);
        EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
    }

    ApplicationBuilder application;
};

/// Remembers what the grid asked of the screen, in a list that others may add to.
class RecordingScreen : public GridScreen {
public:
    explicit RecordingScreen(std::vector<Text>& list) : shown(list) { shown.clear(); }
    std::vector<Text>& shown;
    void ShowCell(std::int32_t row, std::int32_t screenCol) override {
        shown.push_back("show " + Digits(row) + "," + Digits(screenCol));
    }
    void SelectionChanged() override { shown.emplace_back("select"); }
    void LayoutChanged() override { shown.emplace_back("layout"); }
};

TEST(CommitChangesTest, ALimitOutOfOrderIsShownAndNoDialogComesUp) {
    CommitDesk t;
    t.EditRows({1});
    t.Edit(2, cnUCL, "21");
    t.desk.Grid.SetRedraw(false);
    t.desk.Grid.SetRowHidden(1, true);
    RecordingScreen screen(t.toolkit.log);
    t.desk.Grid.SetScreen(&screen);
    t.toolkit.ExpectBox("Invalid Limit Entered!", BoxIcon::Exclamation);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.desk.Grid.Redraw());
    EXPECT_EQ(t.desk.Grid.Row(), 2);
    EXPECT_EQ(t.desk.Grid.Col(), 10);
    ASSERT_GE(screen.shown.size(), 3U);
    EXPECT_EQ(screen.shown.front(), "layout") << "what was changed while redraw was off";
    EXPECT_EQ(screen.shown[2], "show 1,10");
    EXPECT_EQ(*(screen.shown.end() - 2), "show 2,10");
    EXPECT_EQ(screen.shown.back(), "box Invalid Limit Entered!");
    EXPECT_TRUE(t.IsOld(0));
    EXPECT_TRUE(t.g.gFiles->Ref(1).ChangesMade());
}

TEST(CommitChangesTest, AGroupIsSettledBeforeItsFirstViewTakesItsPlaceAndBehindItsLastRecord) {
    CommitDesk t;
    t.EditRows({1, 3});
    t.files.ClearLog();
    t.ExpectCommitted(2);
    CommitChanges(t.desk);
    std::vector<Text> steps;
    std::copy_if(t.files.Log().begin(), t.files.Log().end(), std::back_inserter(steps), [](const Text& step) {
        return step.starts_with("Write ") || step.starts_with("CopyFile ") || step.starts_with("Settle ");
    });
    EXPECT_EQ(steps,
              (std::vector<Text>{"Write /apps/plant.temp", "Write /apps/plant.temp", "Settle ", "Settle ",
                                 "CopyFile /apps/plant.kdt", "CopyFile /apps/plant.V2", "Settle "}));
}

TEST(CommitChangesTest, RecordsBehindAFailedOverwriteAreSettledToo) {
    CommitDesk t;
    t.EditRows({1, 3});
    t.files.SetReadOnly("/apps/plant.V2");
    std::vector<Text> steps;
    t.files.onStep = [&](const Text& step) {
        if (step.starts_with("CopyFile ") || step.starts_with("Settle ")) {
            steps.push_back(step + Digits(static_cast<int>(t.suite.records.size())));
        }
    };
    t.ExpectDialog();
    t.toolkit.ExpectBox("Error 70: Permission denied", BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile");
    t.ExpectModified(2);
    CommitChanges(t.desk);
    EXPECT_EQ(steps, (std::vector<Text>{"Settle 0", "Settle 0", "CopyFile /apps/plant.kdt0",
                                        "CopyFile /apps/plant.V21", "Settle 1", "Settle 2"}))
        << "with the records that were there by then";
}

/// The last steps of a commit of three views are those of views that go to the disk one by one; each step has
/// the number of records behind it that there were by then.
void ExpectOneByOne(const std::vector<Text>& steps) {
    const std::vector<Text> last{"CopyFile /apps/plant.kdt0", "Settle 1",
                                 "CopyFile /apps/plant.V11",  "Settle 2",
                                 "CopyFile /apps/plant.V22",  "Settle 3"};
    ASSERT_GE(steps.size(), last.size());
    EXPECT_EQ(std::vector<Text>(steps.end() - std::ssize(last), steps.end()), last);
}

TEST(CommitChangesTest, AFileThatAnotherProgramSavesWhileItsTextWaitsIsWrittenAnewWithARevisionOfItsOwn) {
    struct Case {
        const char* moment;
        const char* file;
        int archives;  // what an archive holds has changed where no view of it has had its turn
    };
    for (const Case& c : {Case{"Settle ", "/apps/plant.V1", 1}, Case{"Settle ", "/apps/plant.kdt", 2},
                          Case{"CopyFile /apps/plant.kdt", "/apps/plant.V1", 1}}) {
        SCOPED_TRACE(Text(c.moment) + c.file);
        CommitDesk t;
        t.EditRows({1, 2, 3});
        std::vector<Text> steps;
        std::vector<long> progress;
        t.desk.Panel2.OnChanged = [&] { t.suite.log.push_back(t.desk.Panel2.Caption()); };
        bool hasSaved = false;
        t.files.onStep = [&](const Text& step) {
            if (step.starts_with("CopyFile ")) {
                progress.push_back(std::lround(t.desk.ProgressBar1.Value()));
            }
            if (step.starts_with("CopyFile ") || step.starts_with("Settle ")) {
                steps.push_back(step + Digits(static_cast<int>(t.suite.records.size())));
            }
            if (step == c.moment && !std::exchange(hasSaved, true)) {
                Text saved = t.files.Get(c.file);
                const auto at = saved.find("= 7.\r\n");
                ASSERT_NE(at, Text::npos);
                t.files.Put(c.file, saved.replace(at, 6, "= 7.001\r\n"));
            }
        };
        t.ExpectCommitted(3);
        CommitChanges(t.desk);
        EXPECT_TRUE(hasSaved);
        EXPECT_NE(t.files.Get(c.file).find("VERSION      = 7.002\r\n"), Text::npos);
        for (const std::int32_t view : {0, 1, 2}) {
            EXPECT_TRUE(t.application.FilePath(view) == c.file || t.IsSaved(view)) << view;
        }
        const std::vector<Text> calls = t.SuiteLog();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "ArchiveApplication /apps/plant.kdt"), c.archives);
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "Archiving: /apps/plant.kdt"), c.archives);
        EXPECT_EQ(progress, (std::vector<long>{33, 67, 100}));
        ExpectOneByOne(steps);
        EXPECT_EQ(t.suite.records.size(), 3U);
        EXPECT_EQ(t.files.OpenFiles(), 0);
        for (const Text& path : t.files.Paths()) {
            EXPECT_TRUE(path.find(".temp") == Text::npos && path.find(".kdsave-") == Text::npos) << path;
        }
        t.ExpectAtRest();
    }
}

TEST(CommitChangesTest, ApplicationsWithOneFolderOfArchivesOrNoFlushInCommonGoOneAfterTheOther) {
    for (const auto& [share, together] : {std::pair{false, true}, {true, true}, {false, false}}) {
        SCOPED_TRACE(Text(share ? "one folder" : "two folders") + (together ? ", flushed together" : ""));
        LoadedDesk t;
        t.files.settlesTogether = together;
        t.Put(anApplication("/apps/plant.kdt").Field(aField().Usl(10)));
        t.Put(anApplication(share ? "/apps/plant.kdt6" : "/apps/mill.kdt6").Field(aField().Usl(10)));
        t.Load();
        t.Edit(1, cnUSL, "5");
        t.Edit(2, cnUSL, "5");
        t.files.ClearLog();
        t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
        t.toolkit.ExpectBox("2 File(s) have been modified.", BoxIcon::Information);
        CommitChanges(t.desk);
        EXPECT_EQ(std::count(t.files.Log().begin(), t.files.Log().end(), "Settle "),
                  share || !together ? 5 : 3);
    }
}

TEST(CommitChangesTest, TheViewsOfAnApplicationGoTogetherWhereverTheyAreFlushed) {
    CommitDesk t;
    t.files.settlesTogether = false;
    t.EditRows({1, 2, 3});
    t.files.ClearLog();
    t.ExpectCommitted(3);
    CommitChanges(t.desk);
    EXPECT_EQ(std::count(t.files.Log().begin(), t.files.Log().end(), "Settle "), 3);
    EXPECT_EQ(std::count(t.files.Log().begin(), t.files.Log().end(), "Rename /apps/plant.temp"), 2);
    EXPECT_EQ(std::count_if(t.files.Log().begin(), t.files.Log().end(),
                            [](const Text& step) { return step.starts_with("Rename "); }),
              2)
        << "a text is set aside once";
}

TEST(CommitChangesTest, AViewWhoseFileIsMissingIsWrittenByItself) {
    for (const char* const missing : {"/apps/mill.kdt", "/apps/plant.kdt"}) {
        SCOPED_TRACE(missing);
        LoadedDesk t;
        t.Put(anApplication("/apps/mill.kdt").Field(aField().Usl(10)));
        t.Put(anApplication("/apps/plant.kdt").Field(aField().Usl(10)));
        t.Load();
        t.Edit(1, cnUSL, "5");
        t.Edit(2, cnUSL, "5");
        t.files.Erase(missing);
        t.files.ClearLog();
        t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
        t.toolkit.ExpectBox("2 File(s) have been modified.", BoxIcon::Information);
        CommitChanges(t.desk);
        EXPECT_EQ(std::count(t.files.Log().begin(), t.files.Log().end(), "Settle "), 5);
        EXPECT_EQ(t.files.Paths(), (std::vector<Text>{"/apps/mill.kdt", "/apps/plant.kdt"}));
        EXPECT_EQ(t.suite.records.size(), 2U);
    }
}

TEST(CommitChangesTest, ATextThatCannotBeSetAsideTakesItsPlaceBeforeTheNextOneIsWritten) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    t.files.FailOn("Rename", "/plant.temp", errPermissionDenied);
    t.files.ClearLog();
    t.ExpectCommitted(3);
    CommitChanges(t.desk);
    for (const std::int32_t view : {0, 1, 2}) {
        EXPECT_TRUE(t.IsSaved(view)) << view;
    }
    EXPECT_EQ(std::count(t.files.Log().begin(), t.files.Log().end(), "Settle "), 5);
}

TEST(CommitChangesTest, ViewsBehindAGroupThatCouldNotBeSettledAreSavedOnce) {
    LoadedDesk t;
    ApplicationBuilder application = anApplication("/apps/plant.kdt").Field(aField().Name("a").Usl(10));
    constexpr int Views = static_cast<int>(GroupCommit::MostInAGroup) + 1;
    for (int view = 1; view < Views; ++view) {
        application.View("view", view).Field(aField().Name("b").Usl(10));
    }
    t.Put(application);
    t.Load();
    for (int row = 1; row <= Views; ++row) {
        t.Edit(row, cnUSL, "5");
    }
    bool hasFailed = false;
    t.files.onStep = [&](const Text& step) {
        if (step == "Settle " && !std::exchange(hasFailed, true)) {
            throw cError(errDevice, "MemoryFiles.Settle");
        }
    };
    t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
    t.toolkit.ExpectBox(Digits(Views) + " File(s) have been modified.", BoxIcon::Information);
    CommitChanges(t.desk);
    EXPECT_TRUE(hasFailed);
    for (int view = 0; view < Views; ++view) {
        EXPECT_NE(t.files.Get(application.FilePath(view)).find("VERSION      = 7.001\r\n"), Text::npos)
            << view;
    }
}

TEST(CommitChangesTest, SixteenViewsAreCommittedTogetherAndOneMoreByItself) {
    struct Case {
        int views;
        int flushes;  // texts and the archive's name, the texts of each further group, and the last records
    };
    for (const Case& c : {Case{16, 3}, Case{17, 4}, Case{32, 4}, Case{33, 5}}) {
        SCOPED_TRACE(c.views);
        LoadedDesk t;
        ApplicationBuilder application = anApplication("/apps/plant.kdt").Field(aField().Name("a").Usl(10));
        for (int view = 1; view < c.views; ++view) {
            application.View("view", static_cast<std::int16_t>(view)).Field(aField().Name("b").Usl(10));
        }
        t.Put(application);
        t.Load();
        for (int row = 1; row <= c.views; ++row) {
            t.Edit(row, cnUSL, "5");
        }
        t.files.ClearLog();
        t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
        t.toolkit.ExpectBox(Digits(c.views) + " File(s) have been modified.", BoxIcon::Information);
        CommitChanges(t.desk);
        const auto& log = t.files.Log();
        EXPECT_EQ(std::count(log.begin(), log.end(), "Settle "), c.flushes);
        EXPECT_EQ(t.suite.records.size(), static_cast<std::size_t>(c.views));
    }
}

/// A commit of two applications whose last settling fails.
struct UnsettledCommit : LoadedDesk {
    /// `path` is what the settling names, nothing for a whole disk; `failing` fails as well, with `number`,
    /// and so does the flush of `other`, if there is one, in the same settling.
    UnsettledCommit(const Text& path, const Text& failing, const Text& other = {},
                    std::int32_t number = errDiskFull) {
        if (!other.empty()) {
            files.alsoUnsettled.emplace_back(errDiskFull, "MemoryFiles.Settle", Text(), other);
        }
        for (const char* const name : {"mill", "plant"}) {
            Put(anApplication(Text("/apps/") + name + ".kdt").Field(aField().Usl(10)));
        }
        Load();
        Edit(1, cnUSL, "5");
        Edit(2, cnUSL, "5");
        int settled = 0;
        files.onStep = [settled, path, failing, number](const Text& step) mutable {
            if (step == "Settle " && ++settled == 3) {
                throw cError(errDevice, "MemoryFiles.Settle", {}, path);
            }
            if (step == failing) {
                throw cError(number, "MemoryFiles.Flush", {}, step.substr(step.find(' ') + 1));
            }
        };
        toolkit.onKeepAlive = [this] {
            passesBehindAFolder += files.Log().back().starts_with("FlushFolder ") ? 1 : 0;
        };
        toolkit.AnswerAll([](Form& form) { dynamic_cast<frmCommit&>(form).cmdOk.UserClick(); });
        CommitChanges(desk);
    }
    int passesBehindAFolder = 0;  // that keep the window alive
    std::vector<bool> Changed() const {
        return {g.gFiles->Ref(1).ChangesMade(), g.gFiles->Ref(2).ChangesMade()};
    }
};

TEST(CommitChangesTest, AFlushOfAWholeDiskThatFailsMayBeAnotherProgramsAndIsAskedOfEachFile) {
    for (const char* const path : {"", "/apps/Archive/mill/.unfinished-abcdefghijklmnop"}) {
        SCOPED_TRACE(path);
        const UnsettledCommit t(path, "");
        EXPECT_EQ(t.toolkit.boxes,
                  (std::vector<ScriptedToolkit::Box>{
                      {"2 File(s) have been modified.", BoxIcon::Information, "KDLimitDesk"}}));
        EXPECT_EQ(t.Changed(), (std::vector<bool>{false, false}));
        for (const char* const asked :
             {"Flush /apps/mill.KDL", "Flush /apps/mill.KDM", "Flush /apps/plant.KDL",
              "Flush /apps/plant.KDM", "FlushFolder /apps"}) {
            const auto flush = std::find(t.files.Log().begin(), t.files.Log().end(), asked);
            ASSERT_NE(flush, t.files.Log().end()) << asked;
            if (const Text step = asked; step.starts_with("Flush ")) {
                EXPECT_EQ(*(flush + 1), "Close " + step.substr(6));
            }
        }
        EXPECT_EQ(t.passesBehindAFolder, 3) << "one for each application, and one when all is through";
    }
}

TEST(CommitChangesTest, AViewWhoseRecordsAreNotOnTheDiskAtTheEndIsToldAndIsOneWithChanges) {
    struct Case {
        const char* path;
        const char* failing;
        const char* words;
        std::vector<bool> changed;
        const char* other = "";
        std::int32_t number = errDiskFull;
    };
    const Case cases[] = {
        {"", "Flush /apps/plant.KDL", "61 (MemoryFiles.Flush) - Disk full", {false, true}},
        {"", "Flush /apps/mill.KDM", "61 (MemoryFiles.Flush) - Disk full", {true, false}},
        {"", "FlushFolder /apps", "61 (MemoryFiles.Flush) - Disk full", {true, true}},
        {"",
         "Flush /apps/plant.KDL",
         "70 (MemoryFiles.Flush) - Permission denied",
         {false, true},
         "",
         errPermissionDenied},
        {"/apps/plant.KDL", "", "57 (MemoryFiles.Settle) - Device I/O error", {false, true}},
        {"/apps/plant.KDL",
         "Flush /apps/mill.KDL",
         "57 (MemoryFiles.Settle) - Device I/O error",
         {false, true}},
        {"/apps/mill.kdt", "", "57 (MemoryFiles.Settle) - Device I/O error", {true, false}},
        {"/apps", "", "57 (MemoryFiles.Settle) - Device I/O error", {true, true}},
        {"/apps/mill.temp", "", "61 (MemoryFiles.Settle) - Disk full", {false, true}, "/apps/plant.KDM"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(Text(c.path) + c.failing);
        const UnsettledCommit t(c.path, c.failing, c.other, c.number);
        EXPECT_EQ(
            t.toolkit.boxes,
            (std::vector<ScriptedToolkit::Box>{{Text("An error occurred while saving changes:\r\n") + c.words,
                                                BoxIcon::Critical, "KDLimitDesk"}}));
        EXPECT_EQ(t.Changed(), c.changed);
    }
}

TEST(CommitChangesTest, AFolderThatMayNotBeOpenedForItsFlushIsNoFailure) {
    const UnsettledCommit t("", "FlushFolder /apps", "", errPermissionDenied);
    EXPECT_EQ(t.toolkit.boxes, (std::vector<ScriptedToolkit::Box>{
                                   {"2 File(s) have been modified.", BoxIcon::Information, "KDLimitDesk"}}));
    EXPECT_EQ(t.Changed(), (std::vector<bool>{false, false}));
}

TEST(CommitChangesTest, AFlushThatFailsBeforeTheFirstRecordIsAskedOfTheFolderAloneAndMakesNoChangeFile) {
    CommitDesk t;
    t.EditRows({1});
    t.files.SetReadOnly("/apps/plant.kdt");
    int settled = 0;
    t.files.onStep = [&](const Text& step) {
        if (step == "Settle " && ++settled == 3) {
            throw cError(errDevice, "MemoryFiles.Settle");
        }
    };
    t.ExpectDialog();
    t.toolkit.ExpectBox("Error 70: Permission denied", BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile");
    t.ExpectModified(1);
    CommitChanges(t.desk);
    EXPECT_EQ(settled, 4);
    EXPECT_EQ(std::count(t.files.Log().begin(), t.files.Log().end(), "FlushFolder /apps"), 1);
    EXPECT_FALSE(t.files.Has("/apps/plant.KDL"));
    EXPECT_FALSE(t.files.Has("/apps/plant.KDM"));
}

TEST(CommitChangesTest, RecordsThatAreNotOnTheDiskBehindAFailedOverwriteEndTheCommitWhenThatIsTold) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    t.files.SetReadOnly("/apps/plant.V1");
    int settled = 0;
    t.files.onStep = [&](const Text& step) {
        if (step == "Settle " && ++settled == 3) {
            throw cError(errDevice, "MemoryFiles.Settle", {}, "/apps/plant.KDL");
        }
    };
    t.ExpectDialog();
    t.toolkit.ExpectBox("Error 70: Permission denied", BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile");
    t.toolkit.ExpectBox(
        "An error occurred while saving changes:\r\n57 (MemoryFiles.Settle) - Device I/O error",
        BoxIcon::Critical);
    CommitChanges(t.desk);
    for (const std::int32_t view : {1, 2, 3}) {
        EXPECT_TRUE(t.g.gFiles->Ref(view).ChangesMade()) << view;
    }
    EXPECT_EQ(t.suite.records.size(), 1U);
    EXPECT_TRUE(t.IsOld(2));
}

TEST(CommitChangesTest, RecordsThatAreNotOnTheDiskBeforeAViewIsMadeAnewEndTheCommitWithoutItsText) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    int settled = 0;
    t.files.onStep = [&](const Text& step) {
        if (step == "CopyFile /apps/plant.kdt") {
            t.files.Put("/apps/plant.V1", "another program's");
        }
        if (step == "Settle " && ++settled == 3) {
            throw cError(errDevice, "MemoryFiles.Settle", {}, "/apps/plant.KDL");
        }
    };
    t.ExpectDialog();
    t.toolkit.ExpectBox(
        "An error occurred while saving changes:\r\n57 (MemoryFiles.Settle) - Device I/O error",
        BoxIcon::Critical);
    CommitChanges(t.desk);
    EXPECT_EQ(t.files.Paths(), (std::vector<Text>{"/apps/plant.V1", "/apps/plant.V2", "/apps/plant.kdt"}));
    EXPECT_EQ(t.files.Get("/apps/plant.V1"), "another program's");
    EXPECT_TRUE(t.IsOld(2));
}

TEST(CommitChangesTest, AnErrorInTheReportOfAViewThatIsSavedAloneLeavesWhatIsSavedSettled) {
    CommitDesk t;
    t.EditRows({1});
    t.suite.failLogWith = errDiskFull;
    t.suite.failLogAtRecord = 1;
    bool hasFailed = false;
    t.files.onStep = [&](const Text& step) {
        if (step == "Settle " && !std::exchange(hasFailed, true)) {
            throw cError(errDevice, "MemoryFiles.Settle");
        }
    };
    t.ExpectDialog();
    t.toolkit.ExpectBox("An error occurred while saving changes:\r\n61 (KDChangeLog.WriteRecord) - Disk full",
                        BoxIcon::Critical);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsSaved(0));
    EXPECT_EQ(t.files.Log().back(), "Settle ");
}

TEST(CommitChangesTest, AGroupThatCannotBeSettledIsDoneViewByView) {
    for (const int failing : {1, 2}) {
        SCOPED_TRACE(failing);
        CommitDesk t;
        t.EditRows({1, 2, 3});
        int settled = 0;
        std::vector<Text> steps;
        t.files.onStep = [&](const Text& step) {
            if (step.starts_with("CopyFile ") || step.starts_with("Settle ")) {
                steps.push_back(step + Digits(static_cast<int>(t.suite.records.size())));
            }
            if (step == "Settle " && ++settled == failing) {
                throw cError(errDevice, "MemoryFiles.Settle");
            }
        };
        t.ExpectCommitted(3);
        CommitChanges(t.desk);
        for (const std::int32_t view : {0, 1, 2}) {
            EXPECT_TRUE(t.IsSaved(view)) << view;
        }
        ExpectOneByOne(steps);
        EXPECT_EQ(std::count(t.suite.log.begin(), t.suite.log.end(), "ArchiveApplication /apps/plant.kdt"), 2)
            << "what was begun is made anew";
        EXPECT_EQ(t.suite.records.size(), 3U);
    }
}

TEST(CommitChangesTest, RecordsWhoseFlushFailedAmongOthersAreFlushedByThemselvesOrEndTheCommit) {
    for (const bool fails : {false, true}) {
        LoadedDesk t;
        ApplicationBuilder application = anApplication("/apps/plant.kdt").Field(aField().Name("a").Usl(10));
        constexpr int Views = static_cast<int>(GroupCommit::MostInAGroup) + 1;
        for (int view = 1; view < Views; ++view) {
            application.View("view", static_cast<std::int16_t>(view)).Field(aField().Name("b").Usl(10));
        }
        t.Put(application);
        t.Load();
        for (int row = 1; row <= Views; ++row) {
            t.Edit(row, cnUSL, "5");
        }
        int settled = 0;
        bool hasFlushed = false;
        t.files.onStep = [&](const Text& step) {
            hasFlushed = hasFlushed || step == "Flush /apps/plant.KDL";
            if ((step == "Settle " && ++settled == 3) || (fails && step.starts_with("Flush "))) {
                throw cError(errDevice, "MemoryFiles.Settle");
            }
        };
        t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
        if (fails) {
            t.toolkit.ExpectBox(
                "An error occurred while saving changes:\r\n57 (MemoryFiles.Settle) - Device I/O error",
                BoxIcon::Critical);
        } else {
            t.toolkit.ExpectBox(Digits(Views) + " File(s) have been modified.", BoxIcon::Information);
        }
        CommitChanges(t.desk);
        EXPECT_TRUE(hasFlushed);
        for (int view = 1; view <= Views; ++view) {
            EXPECT_EQ(t.g.gFiles->Ref(view).ChangesMade(), fails) << view;
        }
        EXPECT_FALSE(t.files.Has("/apps/plant.temp"));
    }
}

TEST(CommitChangesTest, TheSameFileTwiceInACommitIsSavedTwiceOneAfterTheOther) {
    CommitDesk t;
    t.g.gFiles->Ref(3).SetFilename("/apps/PLANT.kdt");
    t.g.gFiles->Ref(3).SetViewNo(0);
    t.EditRows({1, 3});
    t.ExpectCommitted(2);
    CommitChanges(t.desk);
    EXPECT_NE(t.files.Get("/apps/plant.kdt").find("VERSION      = 7.002\r\n"), Text::npos);
    EXPECT_EQ(std::count(t.files.Log().begin(), t.files.Log().end(), "Rename /apps/plant.temp"), 0)
        << "no text waits";
}

TEST(CommitChangesTest, WhatFailsBesideOthersIsTriedAgainByItself) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    bool hasFailed = false;
    t.files.onStep = [&](const Text& step) {
        if (step == "Read /apps/plant.V1" && !std::exchange(hasFailed, true)) {
            throw cError(errDiskFull, "MemoryFiles.Read");
        }
    };
    t.ExpectCommitted(3);
    CommitChanges(t.desk);
    EXPECT_TRUE(hasFailed);
    EXPECT_TRUE(t.IsSaved(1));
    EXPECT_FALSE(t.files.Has("/apps/plant.temp"));
    EXPECT_EQ(std::count(t.suite.log.begin(), t.suite.log.end(), "ArchiveApplication /apps/plant.kdt"), 1)
        << "the archive of the views before it stays";
}

TEST(CommitChangesTest, AnArchiveThatFailsBesideOthersIsTriedAgainByItselfAndThenTold) {
    LoadedDesk t;
    for (const char* const name : {"mill", "plant"}) {
        t.Put(anApplication(Text("/apps/") + name + ".kdt").Field(aField().Usl(10)));
    }
    t.Load();
    t.Edit(1, cnUSL, "5");
    t.Edit(2, cnUSL, "5");
    t.suite.archiveErrors["/apps/plant.kdt"] = "the disk is full";
    t.toolkit.AnswerAll([](Form& form) { dynamic_cast<frmCommit&>(form).cmdOk.UserClick(); });
    CommitChanges(t.desk);
    EXPECT_EQ(t.toolkit.boxes,
              (std::vector<ScriptedToolkit::Box>{
                  {"The following error occured while creating an archive of '/apps/plant.kdt'\r\n"
                   "the disk is full",
                   BoxIcon::Exclamation, "KD6 LimitDesk"},
                  {"2 File(s) have been modified.", BoxIcon::Information, "KDLimitDesk"}}));
    EXPECT_EQ(std::count(t.suite.log.begin(), t.suite.log.end(), "ArchiveApplication /apps/plant.kdt"), 2);
    for (const char* const name : {"/apps/mill.kdt", "/apps/plant.kdt"}) {
        EXPECT_NE(t.files.Get(name).find("VERSION      = 7.001\r\n"), Text::npos) << name;
    }
}

TEST(CommitChangesTest, ASuiteThatHasNoArchiverEndsTheCommitWithNothingDone) {
    CommitDesk t;
    t.EditRows({1});
    t.suite.hasArchiver = false;
    t.ExpectDialog();
    t.toolkit.ExpectBox("An error occurred while saving changes:\r\n57 (KDArchiver) - Device I/O error",
                        BoxIcon::Critical);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsOld(0));
    EXPECT_TRUE(t.g.gFiles->Ref(1).ChangesMade());
    t.ExpectAtRest();
}

TEST(CommitChangesTest, WhatACommitThatWasCutShortLeftWaitingForASavedFileIsTakenAway) {
    CommitDesk t;
    const Text waited = "/apps/" + names::WaitingName("plant.V1");
    const Text waits = "/apps/" + names::WaitingName("plant.V2");
    const Text another = "/apps/.kdsave-abc";
    for (const Text& path : {waited, waits, another}) {
        t.files.Put(path, "left");
    }
    t.EditRows({2});
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    EXPECT_FALSE(t.files.Has(waited));
    EXPECT_TRUE(t.files.Has(waits)) << "its file has not been saved";
    EXPECT_TRUE(t.files.Has(another));
}

TEST(CommitChangesTest, AnErrorThatEndsTheCommitLeavesNoTextOfTheViewsBehindIt) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    t.suite.failLogWith = errDiskFull;
    t.suite.failLogAtRecord = 1;
    t.files.ClearLog();
    t.ExpectDialog();
    t.toolkit.ExpectBox("An error occurred while saving changes:\r\n61 (KDChangeLog.WriteRecord) - Disk full",
                        BoxIcon::Critical);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsSaved(0));
    EXPECT_EQ(t.files.Log().back(), "Settle ") << "what is saved stays saved";
    for (const Text& path : t.files.Paths()) {
        EXPECT_TRUE(path.find(".temp") == Text::npos && path.find(".kdsave-") == Text::npos) << path;
    }
}

TEST(CommitChangesTest, WhatWasLeftBesideAViewGoesWhenTheViewHasTakenItsPlaceAloneOrAmongOthers) {
    for (const auto& [isAlone, isOverwritten] :
         {std::pair{true, true}, {true, false}, {false, true}, {false, false}}) {
        SCOPED_TRACE(isAlone);
        CommitDesk t;
        const Text left = "/apps/" + names::WaitingName("plant.V1");
        t.files.Put(left, "a text of a commit that was cut short");
        t.EditRows({2});
        int settled = 0;
        t.files.onStep = [&, fails = isAlone](const Text& step) {
            if (fails && step == "Settle " && ++settled == 1) {
                throw cError(errDevice, "MemoryFiles.Settle");
            }
        };
        if (isOverwritten) {
            t.ExpectCommitted(1);
        } else {
            t.files.FailOn("CopyFile", "/apps/plant.V1", errDevice);
            t.toolkit.AnswerAll([](Form& form) { dynamic_cast<frmCommit&>(form).cmdOk.UserClick(); });
        }
        CommitChanges(t.desk);
        EXPECT_EQ(t.IsSaved(1), isOverwritten);
        EXPECT_EQ(t.files.Has(left), !isOverwritten) << "kept where its view did not take its place";
    }
}

TEST(CommitChangesTest, AFolderThatMayNotBeListedIsNoFailure) {
    CommitDesk t;
    t.EditRows({1});
    t.files.FailOn("FolderEntries", "/apps", errPermissionDenied);
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsSaved(0));
}

TEST(CommitChangesTest, TheWindowIsKeptAliveOnceTheDialogHasGoneAndBehindEachViewThatIsThrough) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    std::vector<int> through;
    t.toolkit.onKeepAlive = [&] {
        EXPECT_TRUE(!through.empty() || t.desk.Panel2.Caption().empty()) << "the first step is still to come";
        int views = 0;
        for (std::int32_t view = 1; view <= 3; ++view) {
            const bool changed = t.g.gFiles->Ref(view).ChangesMade();
            EXPECT_EQ(t.Mark(view, cnUSL) == ChangedColour, changed) << "a view half through";
            EXPECT_EQ(t.IsOld(view - 1), changed);
            views += changed ? 0 : 1;
        }
        through.push_back(views);
        EXPECT_EQ(t.toolkit.MousePointer(), Pointer::Hourglass);
    };
    t.ExpectCommitted(3);
    CommitChanges(t.desk);
    EXPECT_EQ(std::set<int>(through.begin(), through.end()), (std::set<int>{0, 1, 2, 3}));
    EXPECT_TRUE(std::is_sorted(through.begin(), through.end()));
}

/// What a commit does between two passes that keep the window alive: what of it can take long. `atStep` runs
/// before each step on the disk.
std::vector<std::vector<Text>> WorkBetweenPasses(CommitDesk& t, std::function<void(const Text&)> atStep) {
    std::vector<std::vector<Text>> all(1);
    const auto add = [&](const Text& step) {
        for (const char* const slow :
             {"ArchiveApplication ", "OpenForOutput ", "Settle ", "FolderEntries "}) {
            if (step.starts_with(slow)) {
                all.back().push_back(step);
            }
        }
    };
    std::size_t calls = t.suite.log.size();
    const auto addCalls = [&] {
        for (; calls < t.suite.log.size(); ++calls) {
            add(t.suite.log[calls]);
        }
    };
    t.files.onStep = [&](const Text& step) {
        addCalls();
        add(step);
        atStep(step);
    };
    t.toolkit.onKeepAlive = [&] {
        addCalls();
        all.emplace_back();
    };
    CommitChanges(t.desk);
    t.files.onStep = {};
    t.toolkit.onKeepAlive = {};
    return all;
}

TEST(CommitChangesTest, BetweenTwoPassesThatKeepTheWindowAliveOneThingIsDoneThatCanTakeLong) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    t.ExpectCommitted(3);
    std::size_t done = 0;
    const auto all = WorkBetweenPasses(t, [](const Text&) {});
    for (const std::vector<Text>& work : all) {
        EXPECT_LE(work.size(), 1U) << work.front() << ", " << work.back();
        done += work.size();
    }
    EXPECT_EQ(done, 8U) << "an archive, three texts, three flushes, a look through the folder";
    const std::size_t passes = 1     // the dialog has gone
                               + 3   // a view's archive is seen to
                               + 3   // a text is written
                               + 1   // all of them are flushed
                               + 1   // the archive has its name
                               + 1   // which is flushed
                               + 3   // a view is in its place
                               + 1   // the last records are flushed
                               + 1;  // a folder is looked through
    EXPECT_EQ(all.size() - 1, passes);
}

TEST(CommitChangesTest, ViewsThatGoToTheDiskOneByOneKeepTheWindowAliveToo) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    t.ExpectCommitted(3);
    bool hasFailed = false;
    std::ptrdiff_t texts = 0;
    const auto failFirstFlush = [&](const Text& step) {
        if (step.starts_with("Settle ") && !std::exchange(hasFailed, true)) {
            throw cError(errDevice, "MemoryFiles.Settle");
        }
    };
    const auto all = WorkBetweenPasses(t, failFirstFlush);
    for (const std::vector<Text>& work : all) {
        const auto count = [&](const char* start) {
            return std::count_if(work.begin(), work.end(),
                                 [&](const Text& step) { return step.starts_with(start); });
        };
        EXPECT_LE(count("OpenForOutput ") + count("ArchiveApplication ") + count("FolderEntries "), 1);
        texts += count("OpenForOutput ");
    }
    EXPECT_TRUE(hasFailed);
    EXPECT_EQ(texts, 6) << "three together, and then one by one";
    const std::size_t passes = 7        // until the flush that fails, as above
                               + 3 * 2  // a view's archive is seen to, and it is saved
                               + 1      // an archive whose views had all been written
                               + 1      // the last records are flushed
                               + 1;     // a folder is looked through
    EXPECT_EQ(all.size() - 1, passes);
}

TEST(CommitChangesTest, TheFolderOfATemplateWithoutOneIsTheOneWhereTheProgramStands) {
    CommitDesk t;
    t.g.gFiles->Ref(3).SetFilename("other.kdt");
    t.files.Put("other.kdt", "[FIELD]\r\n");
    t.files.Put("other.V2", "[FIELD]\r\n");
    t.EditRows({3});
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    EXPECT_EQ(t.files.Log().back(), "FolderEntries .");
}

TEST(CommitChangesTest, AFaultInAViewThatHasNoChangesStillBlocks) {
    CommitDesk t;
    t.EditRows({1});
    t.g.gFields->Ref(3).SetMinimum(2000);
    t.toolkit.ExpectBox("Invalid Limit Entered!", BoxIcon::Exclamation);
    CommitChanges(t.desk);
    EXPECT_EQ(t.desk.Grid.Row(), 3);
    EXPECT_EQ(t.desk.Grid.Col(), 16);
}

TEST(CommitChangesTest, AHiddenRowWithAFaultBlocksAndTheGridIsAskedToShowIt) {
    CommitDesk t;
    t.EditRows({1});
    t.Edit(2, cnUCL, "21");
    t.desk.Grid.SetRowHidden(2, true);
    std::vector<Text> shown;
    RecordingScreen screen(shown);
    t.desk.Grid.SetScreen(&screen);
    t.toolkit.ExpectBox("Invalid Limit Entered!", BoxIcon::Exclamation);
    CommitChanges(t.desk);
    EXPECT_EQ(shown.back(), "show 2,10");
}

TEST(CommitChangesTest, CancellingChangesNothingButTheSelectedFlags) {
    CommitDesk t;
    t.EditRows({1, 2});
    t.g.gFiles->Ref(2).SetSelected(true);
    t.ExpectDialog([](frmCommit& form) { form.cmdCancel.UserClick(); });
    CommitChanges(t.desk);
    EXPECT_FALSE(t.g.gFiles->Ref(2).Selected());
    EXPECT_EQ(t.Mark(1, cnUSL), ChangedColour);
    EXPECT_TRUE(t.g.gFiles->Ref(1).ChangesMade());
    EXPECT_EQ(t.g.gSavedFields->Ref(1).USL(), 10);
    EXPECT_TRUE(t.IsOld(0));
    EXPECT_TRUE(t.SuiteLog().empty());
    t.ExpectAtRest();
}

TEST(CommitChangesTest, EachSavedViewIsArchivedOnceSavedReportedAndMadeTheBaseline) {
    CommitDesk t;
    t.EditRows({1, 3});
    t.Edit(3, cnLimitMethod, "LowAverage");
    t.ExpectCommitted(2);
    CommitChanges(t.desk);
    EXPECT_EQ(t.SuiteLog(), (std::vector<Text>{"NewArchiver",
                                               "NewArchiveContext",
                                               "ArchiveApplication /apps/plant.kdt",
                                               "NewChangeLog",
                                               "Delimiter \t",
                                               "NewChangeMemo",
                                               "OpenLog /apps/plant.KDL",
                                               "OpenMemo /apps/plant.KDM",
                                               "WriteRecord a|USL|10.000|5.000",
                                               "BeginEntry MAIN|anna|2026-03-04|00:00:01",
                                               "WriteItem a|USL|10.000|5.000",
                                               "CloseLog",
                                               "CloseMemo",
                                               "NewChangeLog",
                                               "Delimiter \t",
                                               "NewChangeMemo",
                                               "OpenLog /apps/plant.KDL",
                                               "OpenMemo /apps/plant.KDM",
                                               "WriteRecord c|USL|30.000|5.000",
                                               "BeginEntry Outlet|anna|2026-03-04|00:00:01",
                                               "WriteItem c|USL|30.000|5.000",
                                               "WriteRecord c|LimitMethod|Population|LowAverage",
                                               "WriteItem c|LimitMethod|Population|LowAverage",
                                               "CloseLog",
                                               "CloseMemo",
                                               "~ArchiveContext",
                                               "~Archiver"}));
    for (const std::int32_t row : {1, 3}) {
        EXPECT_EQ(t.Mark(row, cnUSL), 0U);
        EXPECT_EQ(t.g.gSavedFields->Ref(row).USL(), 5);
        EXPECT_FALSE(t.g.gFiles->Ref(row).ChangesMade());
    }
    EXPECT_TRUE(t.IsSaved(0));
    EXPECT_TRUE(t.IsOld(1));
    EXPECT_TRUE(t.IsSaved(2));
    EXPECT_NE(t.files.Get("/apps/plant.V2").find("   USL          = F5.000\r\n"), Text::npos);
    t.ExpectAtRest();
}

TEST(CommitChangesTest, ARecordHasItsTenFieldsWithTheNewRevisionAndOneTimeForTheWholeCommit) {
    CommitDesk t;
    t.EditRows({1, 2});
    t.ExpectCommitted(2);
    CommitChanges(t.desk);
    const DateTime moment{2026, 3, 4, 0, 0, 1};  // the date of the first reading, the time of the second
    EXPECT_EQ(t.clock.readings, 2);
    ASSERT_EQ(t.suite.records.size(), 2U);
    EXPECT_EQ(t.suite.records[0], (ChangeRecord{moment, "anna", "MAIN", "7.001", "PROPERTY", "FIELD", "a",
                                                "USL", "10.000", "5.000"}));
    EXPECT_EQ(t.suite.records[1], (ChangeRecord{moment, "anna", "Inlet", "7.001", "PROPERTY", "FIELD", "b",
                                                "USL", "20.000", "5.000"}));
}

TEST(CommitChangesTest, AViewWithoutANameIsReportedAsTheMainOne) {
    LoadedDesk t;
    t.Put(anApplication().View("", 4).Field(aField()));
    t.Load();
    t.Edit(1, cnUSL, "5");
    t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
    t.toolkit.ExpectBox("1 File(s) have been modified.", BoxIcon::Information);
    CommitChanges(t.desk);
    EXPECT_EQ(t.suite.records.at(0).view, "MAIN");
}

TEST(CommitChangesTest, GenerationSixHasItsOwnNamesOfFiles) {
    CommitDesk t("/apps/plant.kdt6");
    t.EditRows({2});
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    const auto log = t.SuiteLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "OpenLog /apps/plant.KDL6"), 1);
    EXPECT_EQ(std::count(log.begin(), log.end(), "OpenMemo /apps/plant.KDM6"), 1);
    EXPECT_EQ(t.suite.records.at(0).revision, "7.001");
    EXPECT_TRUE(t.IsSaved(1));
}

TEST(CommitChangesTest, AFileWithoutAVersionReportsSixPointZero) {
    LoadedDesk t;
    t.Put(anApplication().Header("").Field(aField()));
    t.Load();
    t.Edit(1, cnUSL, "5");
    t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
    t.toolkit.ExpectBox("1 File(s) have been modified.", BoxIcon::Information);
    CommitChanges(t.desk);
    EXPECT_EQ(t.suite.records.at(0).revision, "6.000");
}

TEST(CommitChangesTest, AnEmptyUserNameGivesAnEmptyField) {
    CommitDesk t;
    t.g.gUserName.clear();
    t.EditRows({1});
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    EXPECT_EQ(t.suite.records.at(0).user, "");
    const auto log = t.SuiteLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "BeginEntry MAIN||2026-03-04|00:00:01"), 1);
}

TEST(CommitChangesTest, ViewsThatAreNotSelectedKeepEverything) {
    CommitDesk t;
    t.EditRows({1, 2});
    t.ExpectDialog([](frmCommit& form) { form.lstFiles.UserSelect(0, false); });
    t.ExpectModified(1);
    CommitChanges(t.desk);
    EXPECT_EQ(t.Mark(1, cnUSL), ChangedColour);
    EXPECT_TRUE(t.g.gFiles->Ref(1).ChangesMade());
    EXPECT_EQ(t.g.gSavedFields->Ref(1).USL(), 10);
    EXPECT_TRUE(t.IsOld(0));
    EXPECT_TRUE(t.IsSaved(1));

    t.ExpectDialog([](frmCommit& form) { EXPECT_EQ(form.lstFiles.Entries().at(0).text, "/apps/plant.kdt"); });
    t.ExpectModified(1);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsSaved(0));
}

TEST(CommitChangesTest, EachOfSeveralApplicationsIsArchivedOnceBeforeItsFirstSave) {
    LoadedDesk t;
    for (const char* const path : {"/apps/plant.kdt", "/more/mill.kdt"}) {
        t.Put(anApplication(path).Field(aField()).View("Inlet", 1).Field(aField()));
    }
    t.Load();
    for (std::int32_t row = 1; row <= 4; ++row) {
        t.Edit(row, cnUSL, "5");
    }
    t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
    t.toolkit.ExpectBox("4 File(s) have been modified.", BoxIcon::Information);
    CommitChanges(t.desk);
    std::vector<Text> steps;
    for (const Text& entry : t.suite.log) {
        if (entry.starts_with("ArchiveApplication") || entry.starts_with("OpenLog")) {
            steps.push_back(entry);
        }
    }
    EXPECT_EQ(steps,
              (std::vector<Text>{"ArchiveApplication /apps/plant.kdt", "ArchiveApplication /more/mill.kdt",
                                 "OpenLog /apps/plant.KDL", "OpenLog /apps/plant.KDL",
                                 "OpenLog /more/mill.KDL", "OpenLog /more/mill.KDL"}));
}

TEST(CommitChangesTest, ASecondCommitArchivesAgain) {
    CommitDesk t;
    for (int commit = 1; commit <= 2; ++commit) {
        t.EditRows({1});
        t.ExpectCommitted(1);
        CommitChanges(t.desk);
        EXPECT_EQ(std::count(t.suite.log.begin(), t.suite.log.end(), "ArchiveApplication /apps/plant.kdt"),
                  commit);
    }
}

TEST(CommitChangesTest, StatusAndProgressTellTheStep) {
    CommitDesk t;
    t.EditRows({1, 2});
    std::vector<Text> seen;
    t.desk.Panel2.OnChanged = [&] { seen.push_back(t.desk.Panel2.Caption()); };
    t.desk.ProgressBar1.OnChanged = [&] { seen.push_back(PlainText(t.desk.ProgressBar1.Value())); };
    t.desk.ProgressBar1.SetValue(30);
    seen.clear();
    t.toolkit.log.clear();
    t.ExpectCommitted(2);
    CommitChanges(t.desk);
    EXPECT_EQ(seen, (std::vector<Text>{"0", "", "Archiving: /apps/plant.kdt", "Saving: /apps/plant.kdt", "50",
                                       "100", "as before", "0"}));
    EXPECT_EQ(t.toolkit.log, (std::vector<std::string>{"form frmCommit", "hourglass", "default",
                                                       "box 2 File(s) have been modified."}));
}

/// Two applications of two views, committed together, or one by one where their flush in common fails; what
/// the status panel told, and what of it could be seen.
struct TellingCommit : LoadedDesk {
    explicit TellingCommit(bool together);
    std::vector<Text> told;
    std::set<Text> seen;
};

TellingCommit::TellingCommit(bool together) {
    LoadedDesk& t = *this;
    for (const char* const name : {"mill", "plant"}) {
        t.Put(anApplication(Text("/apps/") + name + ".kdt")
                  .Field(aField().Usl(10))
                  .View("Inlet", 1)
                  .Field(aField().Usl(10)));
    }
    t.Load();
    for (const std::int32_t row : {1, 2, 3, 4}) {
        t.Edit(row, cnUSL, "5");
    }
    t.desk.Panel2.OnChanged = [this] {
        if (const Text caption = desk.Panel2.Caption(); caption.find("ing: ") != Text::npos) {
            told.push_back(caption);
        }
    };
    t.toolkit.onKeepAlive = [this] { seen.insert(desk.Panel2.Caption()); };
    t.files.onStep = [fails = !together](const Text& step) mutable {
        if (step == "Settle " && std::exchange(fails, false)) {
            throw cError(errDevice, "MemoryFiles.Settle");
        }
    };
    t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
    t.toolkit.ExpectBox("4 File(s) have been modified.", BoxIcon::Information);
    CommitChanges(t.desk);
}

TEST(CommitChangesTest, StatusTellsTheStepsOfOneViewAfterTheOtherThoughTheyGoToTheDiskTogether) {
    for (const bool together : {true, false}) {
        EXPECT_EQ(TellingCommit(together).told,
                  (std::vector<Text>{"Archiving: /apps/mill.kdt", "Saving: /apps/mill.kdt",
                                     "Archiving: /apps/plant.kdt", "Saving: /apps/plant.kdt"}))
            << together;
    }
}

TEST(CommitChangesTest, TheArchivingOfAnApplicationThatGoesToTheDiskByItselfCanBeSeen) {
    const TellingCommit t(false);
    for (const char* const caption : {"Archiving: /apps/mill.kdt", "Saving: /apps/mill.kdt",
                                      "Archiving: /apps/plant.kdt", "Saving: /apps/plant.kdt"}) {
        EXPECT_EQ(t.seen.count(caption), 1U) << caption;
    }
}

TEST(CommitChangesTest, TheBoxOfAFailedArchiveComesUpWhileTheStatusTellsOfIt) {
    CommitDesk t;
    t.EditRows({1});
    t.suite.archiveErrors["/apps/plant.kdt"] = "no room left";
    t.desk.Panel2.OnChanged = [&] { t.toolkit.log.push_back(t.desk.Panel2.Caption()); };
    t.ExpectDialog();
    const Text box =
        "The following error occured while creating an archive of '/apps/plant.kdt'\r\nno room left";
    t.toolkit.ExpectBox(box, BoxIcon::Exclamation, "KD6 LimitDesk");
    t.ExpectModified(1);
    CommitChanges(t.desk);
    const auto& log = t.toolkit.log;
    const auto told = std::find(log.begin(), log.end(), "box " + box);
    ASSERT_NE(told, log.end());
    EXPECT_EQ(*(told - 1), "Archiving: /apps/plant.kdt");
    EXPECT_EQ(*(told + 1), "Saving: /apps/plant.kdt");
}

TEST(CommitChangesTest, ProgressIsAShareOfTheSelectedViewsNotOfTheChangedOnes) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    std::vector<double> seen;
    t.desk.ProgressBar1.OnChanged = [&] { seen.push_back(t.desk.ProgressBar1.Value()); };
    t.ExpectDialog([](frmCommit& form) { form.lstFiles.UserSelect(0, false); });
    t.ExpectModified(2);
    CommitChanges(t.desk);
    EXPECT_EQ(seen, (std::vector<double>{50, 100, 0}));
}

TEST(CommitChangesTest, AViewWithoutMarkedCellsIsSavedAndItsReportHasNoEntries) {
    CommitDesk t;
    t.g.gFiles->Ref(1).SetChangesMade(true);
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsSaved(0));
    EXPECT_TRUE(t.suite.records.empty());
    EXPECT_EQ(t.SuiteLog(),
              (std::vector<Text>{"NewArchiver", "NewArchiveContext", "ArchiveApplication /apps/plant.kdt",
                                 "NewChangeLog", "Delimiter \t", "NewChangeMemo", "OpenLog /apps/plant.KDL",
                                 "OpenMemo /apps/plant.KDM", "CloseLog", "CloseMemo", "~ArchiveContext",
                                 "~Archiver"}));
}

TEST(CommitChangesTest, MarksDecideWhatIsReportedNotValues) {
    CommitDesk t;
    t.Edit(1, cnUSL, "10");                        // marked, equal texts
    t.g.gFields->Ref(1).SetUnits("not reported");  // differs, not marked
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    ASSERT_EQ(t.suite.records.size(), 1U);
    EXPECT_EQ(t.suite.records[0].oldValue, t.suite.records[0].newValue);
    EXPECT_NE(t.files.Get("/apps/plant.kdt").find("   UNITS        = not reported\r\n"), Text::npos);
    EXPECT_EQ(t.g.gSavedFields->Ref(1).Units(), "not reported");
}

TEST(CommitChangesTest, AMarkedCellInAHiddenColumnIsReported) {
    CommitDesk t;
    t.Edit(1, cnUnits, "kg");
    t.desk.Grid.SetColHidden(cnUnits - 1, true);
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    EXPECT_EQ(t.suite.records.at(0).property, "Units");
}

TEST(CommitChangesTest, AMarkedCellInTheFirstColumnIsReported) {
    CommitDesk t;
    t.desk.Grid.SetBackColor(1, cnID - 1, ChangedColour);
    t.g.gFiles->Ref(1).SetChangesMade(true);
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    ASSERT_EQ(t.suite.records.size(), 1U);
    EXPECT_EQ(t.suite.records[0].property, t.g.gLabels->Ref(cnID).Name());
    EXPECT_EQ(t.Mark(1, cnID), 0U);
}

TEST(CommitChangesTest, AMarkedCellInTheLastColumnIsReported) {
    CommitDesk t;
    t.Edit(1, cnUCase, "Y");
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    ASSERT_EQ(t.suite.records.size(), 1U);
    EXPECT_EQ(t.suite.records[0].property, "UCase");
    EXPECT_EQ(t.suite.records[0].oldValue, "N");
    EXPECT_EQ(t.suite.records[0].newValue, "Y");
    EXPECT_EQ(t.Mark(1, cnUCase), 0U);
}

TEST(CommitChangesTest, WhatIsReportedGoesByTheColumnsNumberNotByItsPlace) {
    CommitDesk t;
    t.Edit(1, cnUnits, "kg");
    t.desk.Grid.SetBackColor(1, cnUnits - 1, 0);
    t.desk.Grid.SetColData(cnUnits - 1, cnLimitMethod);
    t.desk.Grid.SetColData(cnLimitMethod - 1, cnUnits);
    t.desk.Grid.SetBackColor(1, cnLimitMethod - 1, ChangedColour);
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    ASSERT_EQ(t.suite.records.size(), 1U);
    EXPECT_EQ(t.suite.records[0].property, "Units");
    EXPECT_EQ(t.suite.records[0].oldValue, "");
    EXPECT_EQ(t.suite.records[0].newValue, "kg");
}

TEST(CommitChangesTest, VariablesThatAStoppedLoadLeftWithoutARowAreSavedAndNotReported) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField()).Field(aField().Length(400).Max(0)).Field(aField().Name("last")));
    EXPECT_THROW(t.Load(), cError);
    ASSERT_EQ(t.desk.Grid.Rows(), 2);
    t.Edit(1, cnUSL, "5");
    t.g.gFields->Ref(3).SetUnits("kg");
    t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
    t.toolkit.ExpectBox("1 File(s) have been modified.", BoxIcon::Information);
    CommitChanges(t.desk);
    EXPECT_EQ(t.suite.records.size(), 1U);
    EXPECT_EQ(t.g.gSavedFields->Ref(3).Units(), "kg");
    EXPECT_FALSE(t.g.gFiles->Ref(1).ChangesMade());
    EXPECT_NE(t.files.Get("/apps/plant.kdt").find("   NAME         = last\r\n"), Text::npos);
}

TEST(CommitChangesTest, AnotherColourIsNoMark) {
    CommitDesk t;
    t.EditRows({1});
    t.desk.Grid.SetBackColor(1, cnUnits - 1, 0x00FF00);
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    EXPECT_EQ(t.suite.records.size(), 1U);
    EXPECT_EQ(t.Mark(1, cnUnits), 0x00FF00U);
}

TEST(CommitChangesTest, ValuesAreReportedInTheUsersLocale) {
    CommitDesk t;
    t.locale.separator = ',';
    t.Edit(1, cnUSL, "5,5");
    t.ExpectCommitted(1);
    CommitChanges(t.desk);
    EXPECT_EQ(t.suite.records.at(0).oldValue, "10,000");
    EXPECT_EQ(t.suite.records.at(0).newValue, "5,500");
    EXPECT_NE(t.files.Get("/apps/plant.kdt").find("= F5.500\r\n"), Text::npos);
}

TEST(CommitChangesTest, TheBaselineTakesEveryPropertyOfTheViewsVariablesRulesToo) {
    LoadedDesk t;
    SetCatalogue(t.g, {"Y", "Z"});
    t.Put(anApplication()
              .Header("[RULES]\r\nRULE=X\r\nRULE=Y\r\n\r\n")
              .Field(aField().Name("a"))
              .Field(aField().Rules("B")));
    t.Load();
    EXPECT_EQ(t.g.gSavedFields->Ref(2).Rules(), "B");
    t.Edit(1, cnRules, "AB");
    t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& form) { form.cmdOk.UserClick(); });
    t.toolkit.ExpectBox("1 File(s) have been modified.", BoxIcon::Information);
    CommitChanges(t.desk);
    EXPECT_EQ(t.g.gSavedFields->Ref(1).Rules(), "AB");
    EXPECT_EQ(t.g.gSavedFields->Ref(2).Rules(), "A")
        << "an unchanged variable's letters are the catalogue's now";
}

TEST(CommitChangesTest, AFailedArchiveIsShownAndTheSaveGoesOn) {
    CommitDesk t;
    t.EditRows({1, 2});
    t.suite.archiveErrors["/apps/plant.kdt"] = "no room left";
    t.ExpectDialog();
    t.toolkit.ExpectBox(
        "The following error occured while creating an archive of '/apps/plant.kdt'\r\nno room left",
        BoxIcon::Exclamation, "KD6 LimitDesk");
    t.ExpectModified(2);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsSaved(0));
    EXPECT_TRUE(t.IsSaved(1));
    const auto log = t.SuiteLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "ArchiveApplication /apps/plant.kdt"), 1);
}

TEST(CommitChangesTest, AViewThatCannotBeSavedKeepsItsStateAndTheNextOneGoesOn) {
    CommitDesk t("/apps/plant.kdt6");  // the two kinds of file have temporary files of their own
    t.EditRows({1, 2});
    t.files.FailOn("Write", "/plant.temp", errDiskFull);
    t.ExpectDialog();
    t.toolkit.ExpectBox("Error 61: Disk full occurred in SaveSchema.", BoxIcon::Exclamation);
    t.ExpectModified(1);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsOld(0));
    EXPECT_EQ(t.Mark(1, cnUSL), ChangedColour);
    EXPECT_TRUE(t.g.gFiles->Ref(1).ChangesMade());
    EXPECT_EQ(t.g.gSavedFields->Ref(1).USL(), 10);
    EXPECT_TRUE(t.IsSaved(1));
    EXPECT_FALSE(t.g.gFiles->Ref(2).ChangesMade());
    ASSERT_EQ(t.suite.records.size(), 1U);
    EXPECT_EQ(t.suite.records[0].view, "Inlet");
    t.ExpectAtRest();
}

TEST(CommitChangesTest, AFailedOverwriteStillCountsAsSaved) {
    CommitDesk t;
    t.EditRows({1});
    t.files.SetReadOnly("/apps/plant.kdt");
    t.ExpectDialog();
    t.toolkit.ExpectBox("Error 70: Permission denied", BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile");
    t.ExpectModified(1);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsOld(0));
    EXPECT_EQ(t.Mark(1, cnUSL), 0U);
    EXPECT_EQ(t.g.gSavedFields->Ref(1).USL(), 5);
    EXPECT_FALSE(t.g.gFiles->Ref(1).ChangesMade());
}

TEST(CommitChangesTest, AnErrorInTheReportEndsTheCommitWhereItIs) {
    CommitDesk t;
    t.EditRows({1, 2, 3});
    t.Edit(2, cnUnits, "kg");
    t.suite.failLogWith = errDiskFull;
    t.suite.failLogAtRecord = 2;
    t.ExpectDialog();
    t.toolkit.ExpectBox("An error occurred while saving changes:\r\n61 (KDChangeLog.WriteRecord) - Disk full",
                        BoxIcon::Critical);
    CommitChanges(t.desk);
    EXPECT_FALSE(t.g.gFiles->Ref(1).ChangesMade());
    EXPECT_EQ(t.g.gSavedFields->Ref(1).USL(), 5);

    EXPECT_TRUE(t.IsSaved(1)) << "the file in hand is written already";
    EXPECT_TRUE(t.g.gFiles->Ref(2).ChangesMade());
    EXPECT_EQ(t.Mark(2, cnUSL), 0U) << "a mark that is gone stays gone";
    EXPECT_EQ(t.Mark(2, cnUnits), ChangedColour);
    EXPECT_EQ(t.g.gSavedFields->Ref(2).USL(), 20);

    EXPECT_TRUE(t.IsOld(2));
    EXPECT_TRUE(t.g.gFiles->Ref(3).ChangesMade());
    EXPECT_EQ(t.Mark(3, cnUSL), ChangedColour);
    EXPECT_EQ(t.suite.records.size(), 1U);
    const auto log = t.SuiteLog();
    EXPECT_EQ(Text(log[log.size() - 2] + log.back()), "~ArchiveContext~Archiver");
    t.ExpectAtRest();
}

TEST(CommitChangesTest, TheArchiversObjectsAreReleasedBeforeTheStatusIsRestored) {
    for (const bool fails : {false, true}) {
        CommitDesk t;
        t.EditRows({1});
        Text last;
        t.desk.Panel2.OnChanged = [&] {
            if (t.desk.Panel2.Caption() == "as before") {
                last = t.suite.log.back();
            }
        };
        t.ExpectDialog();
        if (fails) {
            t.suite.failLogWith = errDiskFull;
            t.suite.failLogAtRecord = 1;
            t.toolkit.ExpectBox(
                "An error occurred while saving changes:\r\n61 (KDChangeLog.WriteRecord) - Disk full",
                BoxIcon::Critical);
        } else {
            t.ExpectModified(1);
        }
        CommitChanges(t.desk);
        EXPECT_EQ(last, "~Archiver") << fails;
    }
}

TEST(CommitChangesTest, WantOfMemoryEndsTheCommitLikeAnyOtherError) {
    CommitDesk t;
    t.EditRows({1});
    t.desk.Panel2.OnChanged = [&] {
        if (t.desk.Panel2.Caption().starts_with("Saving: ")) {
            throw std::bad_alloc();
        }
    };
    t.ExpectDialog();
    t.toolkit.ExpectBox("An error occurred while saving changes:\r\n7 (CommitChanges) - Out of memory",
                        BoxIcon::Critical);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsOld(0));
    EXPECT_TRUE(t.g.gFiles->Ref(1).ChangesMade());
    t.ExpectAtRest();
}

TEST(CommitChangesTest, AFailureOfAnyOtherKindEndsTheCommitLikeAnyOtherError) {
    CommitDesk t;
    t.EditRows({1});
    t.desk.Panel2.OnChanged = [&] {
        if (t.desk.Panel2.Caption().starts_with("Saving: ")) {
            throw std::length_error("too long");
        }
    };
    t.ExpectDialog();
    t.toolkit.ExpectBox("An error occurred while saving changes:\r\n5 (CommitChanges) - too long",
                        BoxIcon::Critical);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsOld(0));
    t.ExpectAtRest();
}

TEST(CommitChangesTest, AHeaderThatCannotBeReadAfterTheSaveEndsTheCommit) {
    CommitDesk t;
    t.EditRows({1});
    t.files.FailAt(9);  // open, read, write, close, twice settled, copy and delete; then the header
    t.ExpectDialog();
    t.toolkit.ExpectBox("An error occurred while saving changes:\r\n57 (MemoryFiles.Read) - Device I/O error",
                        BoxIcon::Critical);
    CommitChanges(t.desk);
    EXPECT_TRUE(t.IsSaved(0));
    EXPECT_TRUE(t.g.gFiles->Ref(1).ChangesMade());
    t.ExpectAtRest();
}

/// A commit of three views in which one operation on the disk fails.
struct FailingCommit : CommitDesk {
    explicit FailingCommit(int failAt, bool forGood) {
        EditRows({1, 2, 3});
        // The point of failure decides which boxes come.
        easy.AnswerAll([](Form& form) { dynamic_cast<frmCommit&>(form).cmdOk.UserClick(); });
        Platform easyPlatform{files, easy, locale, clock, environment, shell, fileDialog, suite};
        Globals easyGlobals(easyPlatform);
        easyGlobals.gFiles = g.gFiles;
        easyGlobals.gFields = g.gFields;
        easyGlobals.gSavedFields = g.gSavedFields;
        easyGlobals.gLabels = g.gLabels;
        easyGlobals.gRulesBlock = g.gRulesBlock;
        Desk easyDesk(easyGlobals);
        SetupGridColumns(easyDesk);
        for (std::int32_t row = 1; row <= 3; ++row) {
            RefreshGridRow(easyDesk, row);
            easyDesk.Grid.SetBackColor(row, cnUSL - 1, ChangedColour);
        }
        files.FailAt(failAt, errDevice, forGood);
        CommitChanges(easyDesk);
        untouched = files.Operations() < failAt;
        for (std::int32_t row = 1; row <= 3; ++row) {
            marked.push_back(easyDesk.Grid.BackColor(row, cnUSL - 1) == ChangedColour);
        }
        EXPECT_EQ(easy.MousePointer(), Pointer::Default);
    }
    bool Recorded(const Text& variable) const {
        return std::any_of(suite.records.begin(), suite.records.end(),
                           [&](const ChangeRecord& record) { return record.variable == variable; });
    }

    ScriptedToolkit easy;
    bool untouched = false;
    std::vector<bool> marked;
};

TEST(CommitChangesTest, AtEachPointOfFailureEveryFileIsWhollyOldOrWhollyNewAndWhatIsDoneIsRecorded) {
    for (const bool forGood : {false, true}) {
        bool untouched = false;
        int failAt = 0;
        while (!untouched) {
            FailingCommit t(++failAt, forGood);
            untouched = t.untouched;
            const char* const names[] = {"a", "b", "c"};
            for (std::int32_t view = 0; view < 3; ++view) {
                const auto at = static_cast<std::size_t>(view);
                const Text where = "operation " + Digits(failAt) + ", view " + Digits(view);
                EXPECT_TRUE(t.IsOld(view) || t.IsSaved(view)) << where;
                EXPECT_TRUE(t.IsOld(view) ||
                            t.files.Get(t.application.FilePath(view)).ends_with("000,000,000,000\r\n"))
                    << where;
                const cFile& file = t.g.gFiles->Ref(view + 1);
                // A view counts as done exactly when its change is recorded and its baseline moved.
                const bool isDone = t.Recorded(names[at]);
                EXPECT_TRUE(isDone || file.ChangesMade()) << where;
                // Its records may still be missing on a disk that fails from then on.
                EXPECT_TRUE(forGood || isDone != file.ChangesMade()) << where;
                EXPECT_EQ(t.marked[at], !isDone) << where;
                EXPECT_EQ(t.g.gSavedFields->Ref(view + 1).USL() == 5, isDone) << where;
                EXPECT_EQ(t.g.gFields->Ref(view + 1).USL(), 5) << where;
                if (untouched) {
                    EXPECT_TRUE(t.IsSaved(view));
                    EXPECT_FALSE(file.ChangesMade());
                }
            }
            ASSERT_LT(failAt, 60);
        }
        EXPECT_GT(failAt, 22) << "seven operations for each of three views, and their folder's flush";
    }
}

}  // namespace
}  // namespace kd
