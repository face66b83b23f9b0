#include "commit/frmCommit.h"

#include <gtest/gtest.h>

#include "fakes/TestMachine.h"

namespace kd {
namespace {

/// Five views of two applications, of which three have changes.
struct DialogDesk : TestMachine {
    DialogDesk() {
        Add("/a/plant.kdt", "", 0, true);
        Add("/a/plant.kdt", "Inlet", 1, false);
        Add("/a/plant.kdt", "", 2, true);
        Add("/a/mill.kdt6", "", 0, false);
        Add("/a/mill.kdt6", "Outlet", 3, true);
    }
    void Add(const Text& path, const Text& name, std::int16_t number, bool changed) {
        g.gFiles->Add(path, "Title", name, number)->SetChangesMade(changed);
    }
    void Show(std::function<void(frmCommit&)> user) {
        toolkit.ExpectForm<frmCommit>("frmCommit", std::move(user));
        form.Display();
    }
    Text SelectedViews() const {
        Text all;
        for (const auto& file : *g.gFiles) {
            all += file->Selected() ? '1' : '0';
        }
        return all;
    }

    frmCommit form{g};
};

TEST(frmCommitTest, BearsItsCaptions) {
    DialogDesk t;
    EXPECT_EQ(t.form.Caption(), "KD LimitDesk - Commit Changes");
    EXPECT_EQ(t.form.Label1.Caption(), "The following is a list of applications that have changed:");
    EXPECT_EQ(t.form.chkSelectAll.Caption(), " (Select All)");
    EXPECT_EQ(t.form.cmdOk.Caption(), "Ok");
    EXPECT_EQ(t.form.cmdCancel.Caption(), "Cancel");
    EXPECT_TRUE(t.form.Cancel());
}

TEST(frmCommitTest, OffersTheChangedViewsAllSelectedAndNoneCurrent) {
    DialogDesk t;
    t.Show([](frmCommit& form) {
        ASSERT_EQ(form.lstFiles.Count(), 3);
        const auto& entries = form.lstFiles.Entries();
        EXPECT_EQ(entries[0].text, "/a/plant.kdt");
        EXPECT_EQ(entries[1].text, "/a/plant.V2 []");
        EXPECT_EQ(entries[2].text, "/a/mill.KDV6.V3 [Outlet]");
        EXPECT_EQ(entries[0].data, 1);
        EXPECT_EQ(entries[1].data, 3);
        EXPECT_EQ(entries[2].data, 5);
        EXPECT_EQ(form.lstFiles.SelectedCount(), 3);
        EXPECT_EQ(form.lstFiles.ListIndex(), -1);
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.cmdCancel.UserClick();
    });
}

TEST(frmCommitTest, OkSelectsTheViewsOfTheSelectedEntries) {
    DialogDesk t;
    t.Show([](frmCommit& form) {
        form.lstFiles.UserSelect(1, false);
        form.cmdOk.UserClick();
    });
    EXPECT_FALSE(t.form.Cancel());
    EXPECT_EQ(t.SelectedViews(), "10001");
}

TEST(frmCommitTest, OkWithoutASelectionSaysSoAndStays) {
    DialogDesk t;
    t.toolkit.ExpectBox("You must select at least one application!", BoxIcon::Exclamation, "KD LimitDesk");
    t.Show([](frmCommit& form) {
        form.chkSelectAll.UserClick();
        form.cmdOk.UserClick();
        EXPECT_TRUE(form.Shown());
        EXPECT_TRUE(form.Cancel());
        form.lstFiles.UserSelect(2, true);
        form.cmdOk.UserClick();
    });
    EXPECT_FALSE(t.form.Cancel());
    EXPECT_EQ(t.SelectedViews(), "00001");
}

TEST(frmCommitTest, CancelAndClosingTheWindowLeaveNoViewSelected) {
    for (const bool byFrame : {false, true}) {
        DialogDesk t;
        for (const auto& file : *t.g.gFiles) {
            file->SetSelected(true);
        }
        t.Show([&](frmCommit& form) {
            if (byFrame) {
                form.UserClose();
            } else {
                form.cmdCancel.UserClick();
            }
        });
        EXPECT_TRUE(t.form.Cancel());
        EXPECT_EQ(t.SelectedViews(), "00000");
    }
}

TEST(frmCommitTest, ClosingTheWindowAfterAnEarlierOkCountsAsCancel) {
    DialogDesk t;
    t.Show([](frmCommit& form) { form.cmdOk.UserClick(); });
    EXPECT_FALSE(t.form.Cancel());
    t.Show([](frmCommit& form) {
        EXPECT_TRUE(form.Cancel()) << "until Ok succeeds";
        form.UserClose();
    });
    EXPECT_TRUE(t.form.Cancel());
    EXPECT_EQ(t.SelectedViews(), "00000");
}

TEST(frmCommitTest, TheCancelButtonCountsBehindAnOkToo) {
    DialogDesk t;
    t.Show([](frmCommit& form) {
        form.cmdOk.UserClick();
        form.cmdCancel.UserClick();
    });
    EXPECT_TRUE(t.form.Cancel());
}

TEST(frmCommitTest, ShownAgainAllIsSelectedAndTheBoxChecked) {
    DialogDesk t;
    t.Show([](frmCommit& form) {
        form.lstFiles.UserSelect(1, false);
        form.cmdCancel.UserClick();
    });
    t.Show([](frmCommit& form) {
        EXPECT_EQ(form.lstFiles.SelectedCount(), 3);
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.cmdCancel.UserClick();
    });
}

TEST(frmCommitTest, SelectedFlagsOfAnEarlierRunDoNotLeak) {
    DialogDesk t;
    t.g.gFiles->Ref(2).SetSelected(true);
    t.g.gFiles->Ref(3).SetSelected(true);
    t.Show([](frmCommit& form) {
        form.lstFiles.UserSelect(1, false);
        form.cmdOk.UserClick();
    });
    EXPECT_EQ(t.SelectedViews(), "10001");
}

TEST(frmCommitTest, ListStateTellsNoneAllOrSome) {
    DialogDesk t;
    EXPECT_EQ(t.form.ListState(), 1) << "an empty list";
    t.Show([](frmCommit& form) {
        EXPECT_EQ(form.ListState(), 1);
        form.lstFiles.UserSelect(0, false);
        EXPECT_EQ(form.ListState(), 2);
        form.lstFiles.UserSelect({1, 2}, false);
        EXPECT_EQ(form.ListState(), 0);
        form.Hide();
    });
}

TEST(frmCommitTest, TheCheckBoxFollowsTheList) {
    DialogDesk t;
    t.Show([](frmCommit& form) {
        form.lstFiles.UserSelect(0, false);
        EXPECT_EQ(form.chkSelectAll.Value(), csGrayed);
        form.lstFiles.UserSelect({1, 2}, false);
        EXPECT_EQ(form.chkSelectAll.Value(), csUnchecked);
        form.lstFiles.UserSelect({0, 1, 2}, true);
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.Hide();
    });
}

TEST(frmCommitTest, TheCheckBoxSelectsAndDeselectsAllAndFromGreySelects) {
    DialogDesk t;
    t.Show([](frmCommit& form) {
        int changes = 0;
        form.lstFiles.OnChanged = [&] { ++changes; };
        form.chkSelectAll.UserClick();
        EXPECT_EQ(form.lstFiles.SelectedCount(), 0);
        EXPECT_EQ(form.chkSelectAll.Value(), csUnchecked);
        EXPECT_EQ(changes, 1) << "one range operation";
        form.chkSelectAll.UserClick();
        EXPECT_EQ(form.lstFiles.SelectedCount(), 3);
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        EXPECT_EQ(changes, 2);
        form.lstFiles.UserSelect(1, false);
        form.chkSelectAll.UserClick();
        EXPECT_EQ(form.lstFiles.SelectedCount(), 3);
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.Hide();
    });
}

TEST(frmCommitTest, WithoutChangedViewsTheListIsEmptyAndTheBoxChecked) {
    TestMachine t;
    frmCommit form(t.g);
    t.toolkit.ExpectBox("You must select at least one application!", BoxIcon::Exclamation, "KD LimitDesk");
    t.toolkit.ExpectForm<frmCommit>("frmCommit", [](frmCommit& shown) {
        EXPECT_EQ(shown.lstFiles.Count(), 0);
        EXPECT_EQ(shown.chkSelectAll.Value(), csChecked);
        shown.chkSelectAll.UserClick();
        EXPECT_EQ(shown.chkSelectAll.Value(), csChecked);
        shown.cmdOk.UserClick();
        shown.cmdCancel.UserClick();
    });
    form.Display();
    EXPECT_TRUE(form.Cancel());
}

TEST(frmCommitTest, DestroyUnloadsTheDialog) {
    DialogDesk t;
    t.Show([](frmCommit& form) { form.cmdOk.UserClick(); });
    t.form.SetFocusedControl("lstFiles");
    t.form.Destroy();
    EXPECT_FALSE(t.form.Shown());
    EXPECT_EQ(t.form.FocusedControl(), "") << "it would begin as for the first time";
    EXPECT_EQ(t.form.lstFiles.Count(), 0);
    EXPECT_EQ(t.SelectedViews(), "10101");
}

}  // namespace
}  // namespace kd
