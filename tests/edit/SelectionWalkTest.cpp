#include "edit/SelectionWalk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "fakes/GridDesk.h"

namespace kd {
namespace {

using testing::ElementsAre;

struct SelectionWalkTest : testing::Test, GridDesk {
    SelectionWalkTest() { AddUnits({"a", "b", "c", "d", "e", "f"}); }

    static std::vector<std::int32_t> Rows(const std::optional<SelectionWalk>& walk) {
        std::vector<std::int32_t> rows;
        for (std::int32_t i = 1; walk && i <= walk->nRows(); ++i) {
            rows.push_back(walk->SelRows(i));
        }
        return rows;
    }
    /// Column numbers.
    std::vector<std::int32_t> Columns(const std::optional<SelectionWalk>& walk) const {
        std::vector<std::int32_t> numbers;
        for (std::int32_t j = 1; walk && j <= walk->nCols(); ++j) {
            numbers.push_back(desk.Grid.ColData(walk->SelCols(j)));
        }
        return numbers;
    }
};

TEST_F(SelectionWalkTest, NoSelectionGivesNone) {
    EXPECT_FALSE(BuildSelectionWalk(desk).has_value());
}

TEST_F(SelectionWalkTest, SelectionThatTouchesTheHeaderGivesNone) {
    Select(0, cnUSL, 3, cnUSL);
    EXPECT_FALSE(BuildSelectionWalk(desk).has_value());
}

TEST_F(SelectionWalkTest, EmptyGridGivesNone) {
    desk.Grid.SetRows(1);
    EXPECT_FALSE(BuildSelectionWalk(desk).has_value());
}

TEST_F(SelectionWalkTest, SingleCell) {
    Select(3, cnUSL, 3, cnUSL);
    const auto walk = BuildSelectionWalk(desk);
    EXPECT_THAT(Rows(walk), ElementsAre(3));
    EXPECT_THAT(Columns(walk), ElementsAre(cnUSL));
}

TEST_F(SelectionWalkTest, SelectionDrawnUpwardsIsWalkedFromItsTop) {
    Select(4, cnUWL, 2, cnUSL);
    const auto walk = BuildSelectionWalk(desk);
    EXPECT_THAT(Rows(walk), ElementsAre(2, 3, 4));
    EXPECT_THAT(Columns(walk), ElementsAre(cnUSL, cnUCL, cnUWL));
}

TEST_F(SelectionWalkTest, HiddenRowsInsideAreSkipped) {
    Hide({2, 3, 5});
    Select(1, cnUSL, 6, cnUSL);
    EXPECT_THAT(Rows(BuildSelectionWalk(desk)), ElementsAre(1, 4, 6));
}

TEST_F(SelectionWalkTest, HiddenFirstRowIsUsedAndTheLastVisibleRowLeftOut) {
    Hide({1, 2});
    Select(1, cnUSL, 5, cnUSL);
    EXPECT_THAT(Rows(BuildSelectionWalk(desk)), ElementsAre(1, 3, 4));
}

TEST_F(SelectionWalkTest, HiddenFirstColumnIsUsedAndTheLastVisibleColumnLeftOut) {
    SetShown(cnUSL, false);
    Select(1, cnUSL, 1, cnTGT);
    EXPECT_THAT(Columns(BuildSelectionWalk(desk)), ElementsAre(cnUSL, cnUCL, cnUWL));
}

TEST_F(SelectionWalkTest, HiddenRowsAndColumnsAtTheEndAreLeftOut) {
    Hide({5, 6});
    SetShown(cnTGT, false);
    Select(3, cnUWL, 6, cnTGT);
    const auto walk = BuildSelectionWalk(desk);
    EXPECT_THAT(Rows(walk), ElementsAre(3, 4));
    EXPECT_THAT(Columns(walk), ElementsAre(cnUWL));
}

TEST_F(SelectionWalkTest, HiddenColumnsInsideAreSkipped) {
    SetShown(cnUCL, false);
    SetShown(cnUWL, false);
    Select(1, cnUSL, 1, cnLWL);
    EXPECT_THAT(Columns(BuildSelectionWalk(desk)), ElementsAre(cnUSL, cnTGT, cnLWL));
}

TEST_F(SelectionWalkTest, LastRowAndLastColumn) {
    SetShown(cnUCase, true);
    Select(6, cnUCase, 6, cnUCase);
    const auto walk = BuildSelectionWalk(desk);
    EXPECT_THAT(Rows(walk), ElementsAre(6));
    EXPECT_THAT(Columns(walk), ElementsAre(cnUCase));
}

TEST_F(SelectionWalkTest, NothingVisibleGivesNone) {
    Hide({2, 3});
    Select(2, cnUSL, 3, cnUSL);
    EXPECT_FALSE(BuildSelectionWalk(desk).has_value()) << "rows";
    SetShown(cnUSL, false);
    Select(1, cnUSL, 1, cnUSL);
    EXPECT_FALSE(BuildSelectionWalk(desk).has_value()) << "columns";
}

TEST_F(SelectionWalkTest, FirstPositionIsScreenPositionZero) {
    SetShown(cnID, true);
    Select(1, cnID, 1, cnID);
    EXPECT_THAT(Columns(BuildSelectionWalk(desk)), ElementsAre(cnID));
}

TEST_F(SelectionWalkTest, WalkFromACellGoesOverVisibleOnesOnly) {
    Hide({3});
    SetShown(cnUCL, false);
    const auto walk = WalkFrom(desk.Grid, 2, Position(cnUSL), 3, 2);
    EXPECT_THAT(Rows(walk), ElementsAre(2, 4, 5));
    EXPECT_THAT(Columns(walk), ElementsAre(cnUSL, cnUWL));
}

TEST_F(SelectionWalkTest, WalkThatRunsPastTheLastVisibleRowOrColumnIsNone) {
    Hide({6});
    EXPECT_TRUE(WalkFrom(desk.Grid, 4, Position(cnUSL), 2, 1).has_value());
    EXPECT_FALSE(WalkFrom(desk.Grid, 4, Position(cnUSL), 3, 1).has_value());
    EXPECT_TRUE(WalkFrom(desk.Grid, 1, Position(cnType), 1, 3).has_value());
    EXPECT_FALSE(WalkFrom(desk.Grid, 1, Position(cnType), 1, 4).has_value());
}

TEST_F(SelectionWalkTest, ValuesAreReadRowByRow) {
    SetShown(cnUnits, true);
    SetShown(cnCategory, true);
    Select(1, cnCategory, 2, cnUnits);
    auto walk = BuildSelectionWalk(desk);
    ASSERT_TRUE(walk.has_value());
    ReadShownTexts(desk, *walk);
    EXPECT_EQ(walk->SelValues(1, 1), "");
    EXPECT_EQ(walk->SelValues(1, 2), "a");
    EXPECT_EQ(walk->SelValues(2, 2), "b");
}

TEST_F(SelectionWalkTest, WritingRepaintsOnce) {
    SetShown(cnUnits, true);
    Select(1, cnUnits, 6, cnUnits);
    auto walk = BuildSelectionWalk(desk);
    ASSERT_TRUE(walk.has_value());
    for (std::int32_t i = 1; i <= walk->nRows(); ++i) {
        walk->SetSelValues(i, 1, "x");
    }
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    WriteValues(desk, *walk);
    EXPECT_EQ(screen.layouts, 1);
    EXPECT_EQ(screen.cells, 0);
    EXPECT_TRUE(desk.Grid.Redraw());
    desk.Grid.SetScreen(nullptr);
    EXPECT_THAT(Column(cnUnits), testing::Each(Text("x")));
}

}  // namespace
}  // namespace kd
