#include "admin/frmApplicationAdmin.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "admin/ManageApplications.h"
#include "admin/modBrowseForFile.h"
#include "base/NumberTexts.h"
#include "fakes/Builders.h"

namespace kd {
namespace {

struct AdminDesk : TestMachine {
    AdminDesk() {
        for (const char* path :
             {"/plants/north/water.kdt6", "/plants/north/dairy.kdt", "/plants/south/Water.kdt"}) {
            g.gMasterFiles->Add(path, true);
        }
    }
    /// Shows the dialog, with what the user does in it.
    void Show(const std::function<void(frmApplicationAdmin&)>& user) {
        frmApplicationAdmin form(g);
        toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& shown) {
            user(shown);
            if (shown.Shown()) {
                shown.UserClose();
            }
        });
        form.Display();
    }
    static std::vector<bool> Hidden(const frmApplicationAdmin& form) {
        std::vector<bool> hidden;
        for (std::int32_t row = 1; row < form.Grid.Rows(); ++row) {
            hidden.push_back(form.Grid.RowHidden(row));
        }
        return hidden;
    }
    static std::vector<Text> Rows(const frmApplicationAdmin& form) {
        std::vector<Text> rows;
        for (std::int32_t row = 1; row < form.Grid.Rows(); ++row) {
            rows.emplace_back(form.Grid.TextMatrix(row, 0));
        }
        return rows;
    }
    static void Filter(frmApplicationAdmin& form, const Text& text) {
        form.cboFilter.UserType(text);
        form.cmdFilter.UserClick();
    }
    std::vector<Text> Recents() const {
        std::vector<Text> criteria;
        for (const auto& recent : *g.gRecents) {
            criteria.push_back(recent->Criteria());
        }
        return criteria;
    }
};

TEST(frmApplicationAdminTest, ShowsTheDesignedCaptions) {
    TestMachine desk;
    frmApplicationAdmin form(desk.g);
    EXPECT_EQ(form.Caption(), "KD LimitDesk - Manage Applications");
    EXPECT_EQ(form.Label1.Caption(), "Enter filter criteria separated by spaces");
    EXPECT_EQ(form.cmdFilter.Caption(), "Apply");
    EXPECT_EQ(form.cmdAddApplication.Caption(), "Add Application(s)");
    EXPECT_EQ(form.cmdRemoveApplication.Caption(), "Remove Applications(s)");
    EXPECT_EQ(form.cmdHelp.Caption(), "Help");
    EXPECT_EQ(form.cmdOk.Caption(), "Ok");
    EXPECT_EQ(form.cmdCancel.Caption(), "Cancel");
    EXPECT_EQ(form.Grid.Cols(), 1);
    EXPECT_TRUE(form.Cancel());
    EXPECT_FALSE(form.Changed());
}

TEST(frmApplicationAdminTest, OpensWithEveryRowShownWhateverItsEnabledSays) {
    AdminDesk desk;
    desk.g.gMasterFiles->Ref(2).SetEnabled(false);
    desk.Show([&](frmApplicationAdmin& form) {
        EXPECT_EQ(form.Grid.TextMatrix(0, 0), "List of Active Applications");
        EXPECT_EQ(AdminDesk::Rows(form),
                  (std::vector<Text>{"/plants/north/water.kdt6", "/plants/north/dairy.kdt",
                                     "/plants/south/Water.kdt"}));
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{false, false, false}));
    });
}

struct FilterCase {
    const char* criteria;
    std::vector<bool> hidden;
};

TEST(frmApplicationAdminTest, ABlankMeansAndABarMeansOrOverTheWholePathInAnyCase) {
    const FilterCase cases[] = {
        {"water", {false, true, false}},
        {"WATER north", {false, true, true}},
        {"north|south", {false, false, false}},
        {"dairy|south", {true, false, false}},
        {"north water|dairy", {false, false, true}},
        {"  water", {false, true, false}},
        {"water ", {false, true, false}},
        {"water|", {false, false, false}},
        {"none", {true, true, true}},
        {" ", {false, false, false}},
        {"|", {false, false, false}},
        {"plants/south", {true, true, false}},
    };
    for (const FilterCase& each : cases) {
        AdminDesk desk;
        desk.Show([&](frmApplicationAdmin& form) {
            AdminDesk::Filter(form, each.criteria);
            EXPECT_EQ(AdminDesk::Hidden(form), each.hidden) << "'" << each.criteria << "'";
            EXPECT_FALSE(form.Grid.RowHidden(0)) << "the header stays";
        });
        EXPECT_EQ(desk.toolkit.MousePointer(), Pointer::Default);
    }
}

TEST(frmApplicationAdminTest, UpperCaseIsTheCodePages) {
    AdminDesk desk;
    desk.g.gMasterFiles->Add("/K\xC3\x84SE/a.kdt", true);
    desk.Show([](frmApplicationAdmin& form) {
        AdminDesk::Filter(form, "k\xC3\xA4se");
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{true, true, true, false}));
    });
}

TEST(frmApplicationAdminTest, OnlyAFilterWithATextShowsTheHourglass) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        desk.toolkit.log.clear();
        AdminDesk::Filter(form, "water");
        EXPECT_EQ(desk.toolkit.log, (std::vector<std::string>{"hourglass", "default"}));
        desk.toolkit.log.clear();
        AdminDesk::Filter(form, "");
        EXPECT_TRUE(desk.toolkit.log.empty());
        EXPECT_TRUE(form.Grid.Redraw());
    });
}

TEST(frmApplicationAdminTest, AnEmptyRowIsHiddenByAnyFilterText) {
    AdminDesk desk;
    desk.g.gMasterFiles->Add("", true);
    for (const char* text : {" ", "|", "water|", "x"}) {
        desk.Show([&](frmApplicationAdmin& form) {
            AdminDesk::Filter(form, text);
            EXPECT_TRUE(form.Grid.RowHidden(4)) << text;
        });
    }
}

TEST(frmApplicationAdminTest, AnEmptyFilterShowsAllRowsAndLeavesTheSelection) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        AdminDesk::Filter(form, "dairy");
        form.Grid.SetIsSelected(2, true);
        AdminDesk::Filter(form, "");
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{false, false, false}));
        EXPECT_TRUE(form.Grid.IsSelected(2));
    });
}

TEST(frmApplicationAdminTest, FilteringTakesTheSelectionOfEachRowAway) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        form.Grid.SetIsSelected(1, true);
        form.Grid.SetIsSelected(2, true);
        AdminDesk::Filter(form, "water");
        EXPECT_FALSE(form.Grid.IsSelected(1));
        EXPECT_FALSE(form.Grid.IsSelected(2));
    });
}

TEST(frmApplicationAdminTest, TypingAloneFiltersNothingAndAChoiceFromTheListDoes) {
    AdminDesk desk;
    desk.g.gRecents->Add("dairy");
    desk.Show([](frmApplicationAdmin& form) {
        form.cboFilter.UserType("dairy");
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{false, false, false}));
        form.cboFilter.UserDropDown();
        EXPECT_EQ(form.cboFilter.Entries(), (std::vector<Text>{"", "dairy"}));
        form.cboFilter.UserChoose(1);
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{true, false, true}));
        form.cboFilter.UserDropDown();
        EXPECT_EQ(form.cboFilter.Entries(), (std::vector<Text>{"", "dairy"})) << "rebuilt, not added to";
        form.cboFilter.UserChoose(0);
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{false, false, false}));
    });
}

TEST(frmApplicationAdminTest, TheFileDialogIsAskedForApplications) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        form.cmdAddApplication.UserClick();
        EXPECT_FALSE(form.Changed());
    });
    ASSERT_EQ(desk.fileDialog.requests.size(), 1U);
    const OpenFileRequest& request = desk.fileDialog.requests[0];
    EXPECT_EQ(request.folder, "/home/anna/Documents");
    EXPECT_EQ(request.title, "Add Applications");
    EXPECT_EQ(request.description, "Kestrix Applications");
    EXPECT_EQ(request.patterns, (std::vector<Text>{"*.kdt", "*.kdt6"}));
    EXPECT_TRUE(request.mustExist);
}

TEST(frmApplicationAdminTest, OneFileComesAsAPathAndSeveralAsFolderAndNames) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        desk.fileDialog.answer = {{"/new/a.kdt"}};
        form.cmdAddApplication.UserClick();
        desk.fileDialog.answer = {{"/new/", "b.kdt", "c.kdt6"}};
        form.cmdAddApplication.UserClick();
        auto rows = AdminDesk::Rows(form);
        rows.erase(rows.begin(), rows.begin() + 3);
        EXPECT_EQ(rows, (std::vector<Text>{"/new/a.kdt", "/new/b.kdt", "/new/c.kdt6"}));
        EXPECT_TRUE(form.Changed());
    });
}

TEST(frmApplicationAdminTest, ANewRowIsInSightWhateverTheFilterThatStands) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        AdminDesk::Filter(form, "south");
        desk.fileDialog.answer = {{"/new/a.kdt"}};
        form.cmdAddApplication.UserClick();
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{true, true, false, false}));
    });
}

TEST(frmApplicationAdminTest, OneFileIsListedByThePathThatWasChosen) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        // The last one is the header's text, which is no path of the list.
        for (const char* const path :
             {"/new/a\\b.kdt", "C:\\new\\c.kdt", "d.kdt", "List of Active Applications"}) {
            desk.fileDialog.answer = {{path}};
            form.cmdAddApplication.UserClick();
            EXPECT_EQ(AdminDesk::Rows(form).back(), path);
        }
    });
}

TEST(frmApplicationAdminTest, AFolderGoesInFrontOfASingleNameTooAndAnAnswerWithoutAFileAddsNothing) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        desk.fileDialog.answer = std::vector<Text>();
        form.cmdAddApplication.UserClick();
        EXPECT_EQ(form.Grid.Rows(), 4);
        desk.fileDialog.answer = {{"/new", "a.kdt"}};
        form.cmdAddApplication.UserClick();
        EXPECT_EQ(form.Grid.Rows(), 5);
        EXPECT_EQ(AdminDesk::Rows(form).back(), "/new/a.kdt");
    });
}

TEST(frmApplicationAdminTest, FilesThatAreThereAlreadyAreNamedInOneBoxAlsoInAnotherCaseAndHidden) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        AdminDesk::Filter(form, "dairy");
        desk.fileDialog.answer = {{"/plants/north", "WATER.KDT6", "new.kdt", "dairy.kdt"}};
        desk.toolkit.ExpectBox(
            "WARNING - The following selected files were already added:\r\n\r\n/plants/north/WATER.KDT6\r\n"
            "/plants/north/dairy.kdt\r\n",
            BoxIcon::Exclamation, "Duplicate Files");
        form.cmdAddApplication.UserClick();
        EXPECT_EQ(form.Grid.Rows(), 5);
        EXPECT_FALSE(form.Grid.RowHidden(4)) << "a new row is not tested against the filter";
    });
}

TEST(frmApplicationAdminTest, AFileThatIsChosenTwiceIsADuplicateAndOneOfAnotherFolderIsNot) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        desk.fileDialog.answer = {{"/plants/south", "dairy.kdt", "dairy.kdt"}};
        desk.toolkit.ExpectBox(
            "WARNING - The following selected files were already added:\r\n\r\n/plants/south/dairy.kdt\r\n",
            BoxIcon::Exclamation, "Duplicate Files");
        form.cmdAddApplication.UserClick();
        EXPECT_EQ(form.Grid.Rows(), 5);
    });
}

TEST(frmApplicationAdminTest, AnyNumberOfFilesIsAddedAtOnce) {
    AdminDesk desk;
    std::vector<Text> chosen{"/many"};
    for (int number = 1; number <= 3000; ++number) {
        chosen.push_back("an application with a long name " + Digits(number) + ".kdt");
    }
    desk.Show([&](frmApplicationAdmin& form) {
        desk.fileDialog.answer = chosen;
        form.cmdAddApplication.UserClick();
        EXPECT_EQ(form.Grid.Rows(), 3004);
        EXPECT_EQ(form.Grid.TextMatrix(3003, 0), "/many/an application with a long name 3000.kdt");
    });
}

/// Writes down which cells are scrolled into sight, and the path that stands there by then.
class ShowingScreen : public GridScreen {
public:
    const VSFlexGrid* grid = nullptr;
    std::vector<std::pair<std::int32_t, Text>> shown;
    void ShowCell(std::int32_t row, std::int32_t screenCol) override {
        shown.emplace_back(row, grid->TextMatrix(row, screenCol));
    }
};

TEST(frmApplicationAdminTest, EachAddedRowIsScrolledIntoSight) {
    AdminDesk desk;
    ShowingScreen screen;
    desk.Show([&](frmApplicationAdmin& form) {
        screen.grid = &form.Grid;
        form.Grid.SetScreen(&screen);
        desk.fileDialog.answer = {{"/new", "a.kdt", "b.kdt"}};
        form.cmdAddApplication.UserClick();
        form.Grid.SetScreen(nullptr);
    });
    EXPECT_EQ(screen.shown,
              (std::vector<std::pair<std::int32_t, Text>>{{4, "/new/a.kdt"}, {5, "/new/b.kdt"}}));
}

TEST(frmApplicationAdminTest, ASelectionOfDuplicatesAloneChangesNothing) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        desk.fileDialog.answer = {{"/plants/north/dairy.kdt"}};
        desk.toolkit.ExpectBox(
            "WARNING - The following selected files were already added:\r\n\r\n/plants/north/dairy.kdt\r\n",
            BoxIcon::Exclamation, "Duplicate Files");
        form.cmdAddApplication.UserClick();
        EXPECT_EQ(form.Grid.Rows(), 4);
        EXPECT_FALSE(form.Changed());
    });
}

TEST(frmApplicationAdminTest, RemoveTakesSelectedRowsInSightOnlyAndAsksNothing) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        form.cmdRemoveApplication.UserClick();
        EXPECT_EQ(form.Grid.Rows(), 4) << "nothing selected";
        EXPECT_FALSE(form.Changed());
        form.Grid.SetRowHidden(3, true);
        form.Grid.SetIsSelected(1, true);
        form.Grid.SetIsSelected(2, true);
        form.Grid.SetIsSelected(3, true);
        form.cmdRemoveApplication.UserClick();
        EXPECT_EQ(AdminDesk::Rows(form), std::vector<Text>{"/plants/south/Water.kdt"});
        EXPECT_TRUE(form.Changed());
    });
}

TEST(frmApplicationAdminTest, TheHeaderIsNotRemovedWhateverIsSelected) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        for (std::int32_t row = 0; row < 4; ++row) {
            form.Grid.SetIsSelected(row, true);
        }
        form.cmdRemoveApplication.UserClick();
        ASSERT_EQ(form.Grid.Rows(), 1);
        EXPECT_EQ(form.Grid.TextMatrix(0, 0), "List of Active Applications");
    });
}

TEST(frmApplicationAdminTest, ASelectedRowThatAFilterHidesIsNotRemoved) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        form.Grid.SetIsSelected(1, true);
        AdminDesk::Filter(form, "dairy");
        form.cmdRemoveApplication.UserClick();
        EXPECT_EQ(form.Grid.Rows(), 4);
    });
}

TEST(frmApplicationAdminTest, OkWithoutAnyRowIsRefused) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        for (std::int32_t row = 1; row < 4; ++row) {
            form.Grid.SetIsSelected(row, true);
        }
        form.cmdRemoveApplication.UserClick();
        desk.toolkit.ExpectBox("You must have at least one application.", BoxIcon::Exclamation,
                               "KD LimitDesk");
        form.cmdOk.UserClick();
        EXPECT_TRUE(form.Shown());
        EXPECT_TRUE(form.Cancel());
    });
}

TEST(frmApplicationAdminTest, OneApplicationIsEnough) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        form.Grid.SetIsSelected(1, true);
        form.Grid.SetIsSelected(2, true);
        form.cmdRemoveApplication.UserClick();
        form.cmdOk.UserClick();
        EXPECT_FALSE(form.Shown());
        EXPECT_FALSE(form.Cancel());
    });
}

TEST(frmApplicationAdminTest, OkWithEveryRowHiddenIsRefusedAndTheCriterionIsNotKept) {
    AdminDesk desk;
    desk.Show([&](frmApplicationAdmin& form) {
        AdminDesk::Filter(form, "none");
        desk.toolkit.ExpectBox("You must have at least one application selected.", BoxIcon::Exclamation,
                               "KD LimitDesk");
        form.cmdOk.UserClick();
        EXPECT_TRUE(form.Shown());
    });
    EXPECT_TRUE(desk.Recents().empty());
}

TEST(frmApplicationAdminTest, OkKeepsTheCriterionInFrontAsTypedAppliedOrNot) {
    AdminDesk desk;
    desk.g.gRecents->Add("one");
    desk.g.gRecents->Add("two");
    desk.g.gRecents->Add("three");
    desk.Show([](frmApplicationAdmin& form) {
        form.cboFilter.UserType("TWO");
        form.cmdOk.UserClick();
        EXPECT_FALSE(form.Cancel());
    });
    EXPECT_EQ(desk.Recents(), (std::vector<Text>{"TWO", "one", "three"}));
    desk.Show([](frmApplicationAdmin& form) {
        form.cboFilter.UserType("new");
        form.cmdOk.UserClick();
    });
    EXPECT_EQ(desk.Recents(), (std::vector<Text>{"new", "TWO", "one", "three"}));
    desk.Show([](frmApplicationAdmin& form) { form.cmdOk.UserClick(); });
    EXPECT_EQ(desk.Recents(), (std::vector<Text>{"new", "TWO", "one", "three"}))
        << "an empty text is not kept";
}

TEST(frmApplicationAdminTest, HowACriterionMovesToTheFront) {
    struct Case {
        const char* label;
        std::vector<Text> before;
        const char* text;
        std::vector<Text> after;
    };
    const Case cases[] = {
        {"first of all", {}, "a", {"a"}},
        {"the last one", {"b", "c", "a"}, "a", {"a", "b", "c"}},
        {"the first one", {"a", "b"}, "a", {"a", "b"}},
        {"the first of two", {"b", "A", "c", "a"}, "a", {"a", "b", "c", "a"}},
        {"blanks count", {"a"}, "a ", {"a ", "a"}},
    };
    for (const Case& each : cases) {
        AdminDesk desk;
        for (const Text& criterion : each.before) {
            desk.g.gRecents->Add(criterion);
        }
        desk.Show([&](frmApplicationAdmin& form) {
            form.cboFilter.UserType(each.text);
            form.cmdOk.UserClick();
        });
        EXPECT_EQ(desk.Recents(), each.after) << each.label;
    }
}

TEST(frmApplicationAdminTest, TheTwentyFirstCriterionDropsTheOldestTheTwentiethNone) {
    for (const int before : {19, 20}) {
        AdminDesk desk;
        for (int i = 1; i <= before; ++i) {
            desk.g.gRecents->Add("c" + Digits(i));
        }
        desk.Show([](frmApplicationAdmin& form) {
            form.cboFilter.UserType("newest");
            form.cmdOk.UserClick();
        });
        const auto recents = desk.Recents();
        ASSERT_EQ(recents.size(), 20U) << before;
        EXPECT_EQ(recents.front(), "newest") << before;
        EXPECT_EQ(recents[1], "c1") << before;
        EXPECT_EQ(recents.back(), "c19") << before;
    }
}

TEST(frmApplicationAdminTest, ADialogThatIsShownAgainIsUnchangedAndCanBeCancelled) {
    AdminDesk desk;
    frmApplicationAdmin form(desk.g);
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [](frmApplicationAdmin& shown) {
        shown.Grid.SetIsSelected(1, true);
        shown.cmdRemoveApplication.UserClick();
        shown.cmdOk.UserClick();
    });
    form.Display();
    EXPECT_TRUE(form.Changed());
    EXPECT_FALSE(form.Cancel());
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [](frmApplicationAdmin& shown) {
        EXPECT_FALSE(shown.Changed());
        shown.cmdCancel.UserClick();
    });
    form.Display();
    EXPECT_TRUE(form.Cancel());
}

TEST(frmApplicationAdminTest, CancelAndTheFrameLeaveTheRecentsAlone) {
    AdminDesk desk;
    for (const bool byFrame : {false, true}) {
        frmApplicationAdmin form(desk.g);
        desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [&](frmApplicationAdmin& shown) {
            AdminDesk::Filter(shown, "water");
            if (byFrame) {
                shown.UserClose();
            } else {
                shown.cmdCancel.UserClick();
            }
        });
        form.Display();
        EXPECT_TRUE(form.Cancel());
    }
    EXPECT_TRUE(desk.Recents().empty());
}

TEST(frmApplicationAdminTest, HelpAsksForItsTopic) {
    AdminDesk desk;
    int shown = 0;
    frmApplicationAdmin form(desk.g);
    form.cmdHelp.UserClick();
    form.ShowHelp = [&] { ++shown; };
    form.cmdHelp.UserClick();
    EXPECT_EQ(shown, 1);
}

TEST(modBrowseForFileTest, TheDialogsAnswerComesBackAsItIs) {
    TestMachine desk;
    EXPECT_FALSE(modBrowseForFile::BrowseForFiles(desk.platform, "/f", "t", "d", {"*.x"}, false).has_value());
    desk.fileDialog.answer = {{"/f", "a", "b"}};
    EXPECT_EQ(*modBrowseForFile::BrowseForFiles(desk.platform, "/f", "t", "d", {"*.x"}, false),
              (std::vector<Text>{"/f", "a", "b"}));
    EXPECT_FALSE(desk.fileDialog.requests[0].mustExist);
}

/// The command with hooks that write down what they are called for.
struct CommandDesk : AdminDesk {
    std::vector<Text> calls;
    void Run() {
        ManageApplications(g,
                           {[this] { calls.emplace_back("write"); }, [this] { calls.emplace_back("load"); },
                            [this] { calls.emplace_back("help"); }});
    }
    void User(std::function<void(frmApplicationAdmin&)> user) {
        toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", std::move(user));
    }
};

TEST(ManageApplicationsTest, OkReplacesTheListSortedWithHiddenRowsDisabledThenWritesThenLoads) {
    CommandDesk desk;
    const auto before = desk.g.gMasterFiles;
    desk.User([](frmApplicationAdmin& form) {
        AdminDesk::Filter(form, "water");
        form.cmdOk.UserClick();
    });
    desk.Run();
    EXPECT_NE(desk.g.gMasterFiles, before);
    ASSERT_EQ(desk.g.gMasterFiles->Count(), 3);
    EXPECT_EQ(desk.g.gMasterFiles->Ref(1).Filename(), "/plants/north/dairy.kdt");
    EXPECT_FALSE(desk.g.gMasterFiles->Ref(1).Enabled());
    EXPECT_EQ(desk.g.gMasterFiles->Ref(2).Filename(), "/plants/north/water.kdt6");
    EXPECT_TRUE(desk.g.gMasterFiles->Ref(2).Enabled());
    EXPECT_TRUE(desk.g.gMasterFiles->Ref(3).Enabled());
    EXPECT_EQ(desk.calls, (std::vector<Text>{"write", "load"}));
    EXPECT_EQ(desk.toolkit.log.back(), "events");
}

TEST(ManageApplicationsTest, AfterOkThePassOfTheMessageLoopComesBeforeTheSettingsAndTheLoad) {
    AdminDesk desk;
    desk.toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin",
                                                 [](frmApplicationAdmin& form) { form.cmdOk.UserClick(); });
    std::int32_t whenWritten = 0;
    desk.g.gMasterFiles->Ref(2).SetEnabled(false);
    ManageApplications(desk.g, {[&] {
                                    whenWritten = desk.g.gMasterFiles->TotalFilesEnabled();
                                    desk.toolkit.log.emplace_back("write");
                                },
                                [&] { desk.toolkit.log.emplace_back("load"); }, nullptr});
    EXPECT_EQ(desk.toolkit.log,
              (std::vector<std::string>{"form frmApplicationAdmin", "events", "write", "load"}));
    EXPECT_EQ(whenWritten, 3) << "the new list, in which a row that is shown is enabled again";
}

TEST(ManageApplicationsTest, AnAddedRowIsEnabledThoughItDoesNotMatchTheFilter) {
    CommandDesk desk;
    desk.fileDialog.answer = {{"/new/steel.kdt"}};
    desk.User([](frmApplicationAdmin& form) {
        AdminDesk::Filter(form, "water");
        form.cmdAddApplication.UserClick();
        form.cmdOk.UserClick();
    });
    desk.Run();
    EXPECT_EQ(desk.g.gMasterFiles->Ref(1).Filename(), "/new/steel.kdt");
    EXPECT_TRUE(desk.g.gMasterFiles->Ref(1).Enabled());
}

TEST(ManageApplicationsTest, ATextThatWasTypedButNotAppliedHidesNothing) {
    CommandDesk desk;
    desk.User([](frmApplicationAdmin& form) {
        form.cboFilter.UserType("water");
        form.cmdOk.UserClick();
    });
    desk.Run();
    EXPECT_EQ(desk.g.gMasterFiles->TotalFilesEnabled(), 3);
}

TEST(ManageApplicationsTest, TheReloadRunsAfterEveryOk) {
    CommandDesk desk;
    desk.User([](frmApplicationAdmin& form) { form.cmdOk.UserClick(); });
    desk.Run();
    EXPECT_EQ(desk.calls, (std::vector<Text>{"write", "load"}));
}

TEST(ManageApplicationsTest, CancelChangesNothingAfterTheStart) {
    CommandDesk desk;
    desk.g.gMasterFiles->Ref(2).SetEnabled(false);
    const auto before = desk.g.gMasterFiles;
    desk.User([](frmApplicationAdmin& form) {
        AdminDesk::Filter(form, "dairy");
        form.cmdCancel.UserClick();
    });
    desk.Run();
    EXPECT_EQ(desk.g.gMasterFiles, before);
    EXPECT_FALSE(before->Ref(2).Enabled());
    EXPECT_TRUE(before->Ref(1).Enabled());
    EXPECT_TRUE(desk.calls.empty());
}

TEST(ManageApplicationsTest, CancelAtTheStartLeavesAnEmptyListWithoutAWord) {
    CommandDesk desk;
    desk.g.gStartingUp = true;
    const auto before = desk.g.gMasterFiles;
    desk.User([](frmApplicationAdmin& form) { form.UserClose(); });
    desk.Run();
    EXPECT_EQ(desk.g.gMasterFiles->Count(), 0);
    EXPECT_EQ(before->Count(), 3);
    EXPECT_TRUE(desk.calls.empty());
}

TEST(ManageApplicationsTest, OutstandingChangesAreAskedAboutFirst) {
    for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
        CommandDesk desk;
        desk.g.gFiles->Add("/a.kdt", "A", "", 0)->SetChangesMade(true);
        desk.toolkit.ExpectQuestion(
            "You have outstanding changes.\r\nAre you sure you want to modify folders without saving?",
            BoxIcon::Question, "KD LimitDesk", answer);
        if (answer == BoxAnswer::Yes) {
            desk.User([](frmApplicationAdmin& form) { form.cmdOk.UserClick(); });
        }
        desk.Run();
        EXPECT_EQ(desk.calls.empty(), answer == BoxAnswer::No);
    }
}

TEST(ManageApplicationsTest, TheHelpButtonReachesTheHook) {
    CommandDesk desk;
    desk.User([](frmApplicationAdmin& form) {
        form.cmdHelp.UserClick();
        form.cmdCancel.UserClick();
    });
    desk.Run();
    EXPECT_EQ(desk.calls, std::vector<Text>{"help"});
}

TEST(frmApplicationAdminTest, EnterInTheFilterAppliesATextThatIsNotYetAppliedAndIsTheWindowsElse) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        EXPECT_FALSE(form.cboFilter.UserEnter()) << "every row is shown, as for the empty text";
        form.cboFilter.UserType("dairy");
        EXPECT_TRUE(form.cboFilter.UserEnter());
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{true, false, true}));
        EXPECT_FALSE(form.cboFilter.UserEnter());
        form.cboFilter.UserType("");
        EXPECT_TRUE(form.cboFilter.UserEnter());
        EXPECT_EQ(AdminDesk::Hidden(form), (std::vector<bool>{false, false, false}));
    });
}

TEST(frmApplicationAdminTest, APastedLineEndInTheFilterStaysInTheCriterion) {
    AdminDesk desk;
    desk.Show([](frmApplicationAdmin& form) {
        form.cboFilter.UserType("x\r\n[FILES]\r\nFile = /other.kdt");
        form.cmdOk.UserClick();
    });
    EXPECT_EQ(desk.Recents(), std::vector<Text>{"x  [FILES]  File = /other.kdt"});
}

}  // namespace
}  // namespace kd
