#include <gtest/gtest.h>

#include <vector>

#include "platform/CellMoves.h"
#include "platform/GridManner.h"

namespace kd {
namespace {

constexpr int Page = 4;
using Rows = std::vector<std::int32_t>;

/// A list of ten rows, all in sight.
class ListMannerTest : public testing::Test {
protected:
    ListMannerTest() {
        grid.SetCols(3);
        grid.SetRows(11);
    }
    Rows Selected() const { return list.SelectedRows(); }
    void Press(int keyCode, int shift, int times = 1) {
        for (int time = 0; time < times; ++time) {
            EXPECT_TRUE(list.KeyPress(keyCode, shift, Page));
        }
    }

    VSFlexGrid grid{"Grid"};
    ListManner list{grid};
};

TEST_F(ListMannerTest, AListOfOneColumnIsUsedAsAnyOther) {
    grid.SetCols(1);
    (void)list.Pick({2, 0}, false);
    EXPECT_EQ(Selected(), Rows{2});
    Press(kcDown, 0);
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(grid.Col(), 0);
}

TEST_F(ListMannerTest, AFirstPressWithShiftTurnsItsRowAlone) {
    (void)list.Pick({3, 0}, true);
    EXPECT_EQ(Selected(), Rows{3});
}

TEST_F(ListMannerTest, ARangeBeginsAtTheFirstRowToo) {
    (void)list.Pick({1, 0}, false);
    (void)list.Pick({3, 0}, true);
    EXPECT_EQ(Selected(), (Rows{1, 2, 3}));
}

TEST_F(ListMannerTest, ByKeyARangeBeginsAtTheFirstRowWhereThatIsTheCurrentOne) {
    grid.Select(1, 0);
    Press(kcDown, sbShift);
    EXPECT_EQ(Selected(), (Rows{1, 2}));
}

TEST_F(ListMannerTest, ARangeLeavesRowsBesideItAsTheyAre) {
    (void)list.Pick({2, 0}, false);
    (void)list.Pick({5, 0}, false);
    (void)list.Pick({6, 0}, true);
    EXPECT_EQ(Selected(), (Rows{2, 5, 6}));
    ListManner another(grid);  // no range yet
    grid.Select(8, 0);
    EXPECT_TRUE(another.KeyPress(kcDown, sbShift, Page));
    EXPECT_EQ(Selected(), (Rows{2, 5, 6, 8, 9}));
}

TEST_F(ListMannerTest, ARangeKeepsItsBeginningWhileShiftIsDown) {
    Press(kcHome, 0);
    Press(kcDown, sbShift, 2);
    EXPECT_EQ(Selected(), (Rows{1, 2, 3}));
    Press(kcUp, sbShift);
    EXPECT_EQ(Selected(), (Rows{1, 2}));
    Press(kcUp, sbShift);
    EXPECT_EQ(Selected(), Rows{1});
}

TEST_F(ListMannerTest, WithoutACurrentRowEndLeadsToTheLastOne) {
    Press(kcEnd, 0);
    EXPECT_EQ(grid.Row(), 10);
}

TEST_F(ListMannerTest, SpaceTurnsARowToAndFro) {
    Press(kcDown, 0);
    Press(kcSpace, 0);
    EXPECT_EQ(Selected(), Rows{1});
    Press(kcSpace, 0);
    EXPECT_EQ(Selected(), Rows{});
}

TEST_F(ListMannerTest, TheHeaderIsNeverOneOfTheSelectedRows) {
    Press(kcSpace, 0);  // no row is current
    EXPECT_FALSE(grid.IsSelected(0));
    Press(kcDown, sbShift);
    EXPECT_FALSE(grid.IsSelected(0));
    EXPECT_EQ(Selected(), Rows{1});
    grid.SetIsSelected(0, true);
    EXPECT_EQ(Selected(), Rows{1});
    EXPECT_EQ(list.SelectedCount(), 3);
}

}  // namespace
}  // namespace kd
