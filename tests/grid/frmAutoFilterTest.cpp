#include "grid/frmAutoFilter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/TestMachine.h"

namespace kd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FilterDialog : TestMachine {
    frmAutoFilter form{g};

    void Offer(const std::vector<std::pair<Text, bool>>& entries) {
        for (const auto& [name, selected] : entries) {
            form.Filters()->Add(name, selected);
        }
    }
    void Display(const std::function<void(frmAutoFilter&)>& user) {
        toolkit.ExpectForm<frmAutoFilter>("frmAutoFilter", user);
        form.Display();
    }
    std::vector<Text> Listed() const {
        std::vector<Text> texts;
        for (const ListBox::Entry& entry : form.lstAutoFilter.Entries()) {
            texts.push_back((entry.selected ? "+" : "-") + entry.text);
        }
        return texts;
    }
    std::vector<Text> Filters() {
        std::vector<Text> texts;
        for (const auto& filter : *form.Filters()) {
            texts.push_back((filter->Selected() ? "+" : "-") + filter->Name());
        }
        return texts;
    }
};

TEST(frmAutoFilterTest, CaptionsAreTheDesignedOnes) {
    FilterDialog d;
    EXPECT_EQ(d.form.chkSelectAll.Caption(), "(Select All)");
    EXPECT_EQ(d.form.cmdOk.Caption(), "Ok");
    EXPECT_EQ(d.form.cmdCancel.Caption(), "Cancel");
    d.form.SetFormCaption("USL");
    EXPECT_EQ(d.form.FormCaption(), "USL");
    EXPECT_EQ(d.form.Caption(), "USL");
}

TEST(frmAutoFilterTest, FiltersAreMadeOnFirstReadWhereThereAreNone) {
    FilterDialog d;
    d.form.SetFilters(nullptr);
    ASSERT_NE(d.form.Filters(), nullptr);
    EXPECT_EQ(d.form.Filters()->Count(), 0);
    EXPECT_EQ(d.form.SelectedCount(), 0);
}

TEST(frmAutoFilterTest, FiltersThatAreGivenAreTheOnesThatAreRead) {
    FilterDialog d;
    const auto filters = std::make_shared<cFilters>();
    filters->Add("a", true);
    d.form.SetFilters(filters);
    EXPECT_EQ(d.form.Filters(), filters);
}

TEST(frmAutoFilterTest, ListIsSortedByUpperCasedTextCharacterByCharacter) {
    FilterDialog d;
    d.Offer({{"9", true},
             {"b", true},
             {"10", false},
             {"A", true},
             {"(Blank)", true},
             {"_", true},
             {"a1", true},
             {"B0", false}});
    d.Display([&](frmAutoFilter& form) {
        EXPECT_THAT(d.Listed(), ElementsAre("+(Blank)", "-10", "+9", "+A", "+a1", "+b", "-B0", "+_"));
        EXPECT_EQ(form.lstAutoFilter.ListIndex(), -1);
        form.UserClose();
    });
}

TEST(frmAutoFilterTest, EntriesOfOneTextStayInTheOrderInWhichTheyAreOffered) {
    FilterDialog d;
    d.Offer({{"b", true}, {"(Blank)", true}, {"B", false}, {"(Blank)", false}});
    d.Display([&](frmAutoFilter& form) {
        EXPECT_THAT(d.Listed(), ElementsAre("+(Blank)", "-(Blank)", "+b", "-B"));
        form.UserClose();
    });
}

TEST(frmAutoFilterTest, LettersOutsideAsciiAreSortedByTheirCapitals) {
    FilterDialog d;
    d.Offer({{"\u00E4b", true}, {"\u00C4c", true}, {"\u00C4a", true}, {"z", true}});
    d.Display([&](frmAutoFilter& form) {
        EXPECT_THAT(d.Listed(), ElementsAre("+z", "+\u00C4a", "+\u00E4b", "+\u00C4c"));
        form.UserClose();
    });
}

TEST(frmAutoFilterTest, TheListIsFilledInOneChange) {
    FilterDialog d;
    int changes = 0;
    d.form.lstAutoFilter.OnChanged = [&] { ++changes; };
    for (int i = 0; i < 1000; ++i) {
        d.form.Filters()->Add(std::to_string(i), true);
    }
    d.Display([](frmAutoFilter& form) { form.UserClose(); });
    EXPECT_EQ(changes, 1);
}

TEST(frmAutoFilterTest, CheckStateFollowsTheTicks) {
    struct Case {
        const char* label;
        std::vector<std::pair<Text, bool>> entries;
        CheckState state;
    };
    const Case cases[] = {{"all ticked", {{"a", true}, {"b", true}}, csChecked},
                          {"none ticked", {{"a", false}, {"b", false}}, csUnchecked},
                          {"some ticked", {{"a", true}, {"b", false}}, csGrayed},
                          {"empty list", {}, csChecked}};
    for (const Case& c : cases) {
        FilterDialog d;
        d.Offer(c.entries);
        d.Display([&](frmAutoFilter& form) {
            EXPECT_EQ(form.chkSelectAll.Value(), c.state) << c.label;
            form.UserClose();
        });
    }
}

TEST(frmAutoFilterTest, TickingAValueMovesTheSelectAllBox) {
    FilterDialog d;
    d.Offer({{"a", true}, {"b", true}});
    d.Display([](frmAutoFilter& form) {
        form.lstAutoFilter.UserSelect(0, false);
        EXPECT_EQ(form.chkSelectAll.Value(), csGrayed);
        form.lstAutoFilter.UserSelect(1, false);
        EXPECT_EQ(form.chkSelectAll.Value(), csUnchecked);
        form.lstAutoFilter.UserSelect(std::vector<std::int32_t>{0, 1}, true);
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.UserClose();
    });
}

TEST(frmAutoFilterTest, SelectAllClearsAllThenTicksAll) {
    FilterDialog d;
    d.Offer({{"a", true}, {"b", true}, {"c", true}});
    d.Display([&](frmAutoFilter& form) {
        form.chkSelectAll.UserClick();
        EXPECT_THAT(d.Listed(), ElementsAre("-a", "-b", "-c"));
        EXPECT_EQ(form.chkSelectAll.Value(), csUnchecked);
        form.chkSelectAll.UserClick();
        EXPECT_THAT(d.Listed(), ElementsAre("+a", "+b", "+c"));
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.UserClose();
    });
}

TEST(frmAutoFilterTest, GreySelectAllTicksAll) {
    FilterDialog d;
    d.Offer({{"a", true}, {"b", false}, {"c", false}});
    d.Display([&](frmAutoFilter& form) {
        form.chkSelectAll.UserClick();
        EXPECT_THAT(d.Listed(), ElementsAre("+a", "+b", "+c"));
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.UserClose();
    });
}

TEST(frmAutoFilterTest, SelectAllOverAnEmptyListStaysChecked) {
    FilterDialog d;
    d.Display([](frmAutoFilter& form) {
        form.chkSelectAll.UserClick();
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.UserClose();
    });
}

TEST(frmAutoFilterTest, SelectAllChangesTheListOnce) {
    FilterDialog d;
    for (int i = 0; i < 32767; ++i) {
        d.form.Filters()->Add(std::to_string(i), true);
    }
    d.Display([&](frmAutoFilter& form) {
        int changes = 0;
        form.lstAutoFilter.OnChanged = [&] { ++changes; };
        form.chkSelectAll.UserClick();
        form.chkSelectAll.UserClick();
        EXPECT_EQ(changes, 2);
        form.UserClose();
    });
}

TEST(frmAutoFilterTest, NothingReactsBeforeTheListIsFilled) {
    FilterDialog d;
    d.form.lstAutoFilter.SetEntries({{"a", true}, {"b", true}});
    d.form.lstAutoFilter.UserSelect(0, false);
    EXPECT_EQ(d.form.chkSelectAll.Value(), csUnchecked);
    d.form.chkSelectAll.UserClick();
    EXPECT_THAT(d.Listed(), ElementsAre("-a", "+b"));
}

TEST(frmAutoFilterTest, OkWithNothingTickedIsRefusedAndTheDialogStays) {
    FilterDialog d;
    d.Offer({{"a", false}, {"b", false}});
    d.Display([&](frmAutoFilter& form) {
        d.toolkit.ExpectBox("Must have at least one selection!", BoxIcon::Exclamation, "KD LimitDesk");
        form.cmdOk.UserClick();
        EXPECT_TRUE(form.Shown());
        EXPECT_TRUE(form.cmdOk.Enabled());
        EXPECT_TRUE(form.cmdCancel.Enabled());
        EXPECT_TRUE(form.Cancel());
        form.UserClose();
    });
    EXPECT_EQ(d.form.Filters()->Count(), 2);
}

TEST(frmAutoFilterTest, OkTakesTheListInItsOrderWithItsTicks) {
    FilterDialog d;
    d.Offer({{"b", true}, {"A", false}, {"c", true}});
    d.Display([](frmAutoFilter& form) {
        form.lstAutoFilter.UserSelect(2, false);
        form.cmdOk.UserClick();
        EXPECT_FALSE(form.cmdOk.Enabled());
        EXPECT_FALSE(form.cmdCancel.Enabled());
    });
    EXPECT_FALSE(d.form.Cancel());
    EXPECT_THAT(d.Filters(), ElementsAre("-A", "+b", "-c"));
    EXPECT_EQ(d.form.SelectedCount(), 1);
}

TEST(frmAutoFilterTest, OkOverAnEmptyListPasses) {
    FilterDialog d;
    d.Display([](frmAutoFilter& form) { form.cmdOk.UserClick(); });
    EXPECT_FALSE(d.form.Cancel());
    EXPECT_EQ(d.form.Filters()->Count(), 0);
}

TEST(frmAutoFilterTest, CancelDropsTheEntries) {
    FilterDialog d;
    d.Offer({{"a", true}});
    d.Display([](frmAutoFilter& form) { form.cmdCancel.UserClick(); });
    EXPECT_TRUE(d.form.Cancel());
    EXPECT_THAT(d.Filters(), IsEmpty());
}

TEST(frmAutoFilterTest, ClosingByTheFrameCountsAsCancel) {
    FilterDialog d;
    d.Offer({{"a", true}});
    d.Display([](frmAutoFilter& form) { form.UserClose(); });
    EXPECT_TRUE(d.form.Cancel());
}

}  // namespace
}  // namespace kd
