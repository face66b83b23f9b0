#include <gtest/gtest.h>

#include <vector>

#include "platform/CellMoves.h"
#include "platform/GridManner.h"

namespace kd {
namespace {

constexpr int Page = 4;
using Rows = std::vector<std::int32_t>;

/// Ten rows and three columns, all of them shown.
class GridMannerSelectionTest : public testing::Test, public GridScreen {
protected:
    GridMannerSelectionTest() {
        grid.SetCols(3);
        grid.SetRows(11);
        grid.SetScreen(this);
    }
    void ShowCell(std::int32_t, std::int32_t) override { currentWhenShown = {grid.Row(), grid.Col()}; }

    VSFlexGrid grid{"Grid"};
    CellManner cells{grid};
    ListManner list{grid};
    GridCell currentWhenShown;
};

// The end of an edit may hide rows: what is shown ahead of it does not stay in sight.
TEST_F(GridMannerSelectionTest, TheCellThatAKeyLeadsToIsShownOnceItIsTheCurrentOne) {
    grid.Select(3, 1);
    EXPECT_TRUE(cells.KeyPress(kcDown, 0, Page));
    EXPECT_EQ(currentWhenShown, (GridCell{4, 1}));
}

TEST_F(GridMannerSelectionTest, CtrlASelectsFromTheFirstToTheLastColumnInSight) {
    EXPECT_TRUE(cells.KeyPress(kcA, sbCtrl, Page));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 0, 10, 2}));
    grid.SetColHidden(2, true);
    EXPECT_TRUE(cells.KeyPress(kcA, sbCtrl, Page));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 0, 10, 1}));
}

TEST_F(GridMannerSelectionTest, NoEditorOpensOnAHeaderCell) {
    grid.Select(0, 1);
    EXPECT_FALSE(cells.OpenEditor());
    EXPECT_FALSE(grid.EditWindow());
}

TEST_F(GridMannerSelectionTest, ARowWithoutItsFirstCellIsNotSelected) {
    grid.Select(2, 1);
    grid.ExtendSelection(3, 2);
    EXPECT_FALSE(cells.IsRowSelected(2));
    EXPECT_EQ(cells.SelectedRows(), Rows{});
}

TEST_F(GridMannerSelectionTest, TheHeaderIsNoSelectedRow) {
    grid.Select(2, 0);
    grid.ExtendSelection(0, 2);
    EXPECT_TRUE(cells.IsRowSelected(1));
    EXPECT_FALSE(cells.IsRowSelected(0));
}

TEST_F(GridMannerSelectionTest, WithoutACurrentCellNothingIsSelected) {
    grid.ExtendSelection(10, 2);
    EXPECT_FALSE(cells.IsSelected({3, 1}));
    EXPECT_FALSE(cells.IsRowSelected(3));
    EXPECT_FALSE(cells.IsColSelected(1));
    EXPECT_EQ(cells.SelectedRows(), Rows{});
    EXPECT_EQ(cells.SelectedCount(), 0);
    EXPECT_TRUE(cells.SelectedCells(100, 1, 10).empty());
    EXPECT_FALSE(list.IsCurrent({0, 0}));
}

TEST_F(GridMannerSelectionTest, NoRowIsBegunOnceAsManyCellsAreToldAsWereAskedFor) {
    grid.Select(1, 0);
    grid.ExtendSelection(10, 2);
    EXPECT_EQ(cells.SelectedCells(3, 2, 9), (std::vector<GridCell>{{2, 0}, {2, 1}, {2, 2}}));
}

TEST_F(GridMannerSelectionTest, TheFirstColumnAndTheRowOfAnOnlyColumnCanBeSelected) {
    EXPECT_TRUE(cells.SelectCol(0));
    EXPECT_TRUE(cells.IsColSelected(0));
    grid.SetCols(1);
    EXPECT_TRUE(cells.SelectRow(2));
    EXPECT_EQ(cells.SelectedRows(), Rows{2});
}

TEST_F(GridMannerSelectionTest, ARowOfAListIsUnselectedAlone) {
    EXPECT_TRUE(list.SelectRow(3));
    EXPECT_TRUE(list.SelectRow(5));
    EXPECT_TRUE(list.UnselectRow(3));
    EXPECT_EQ(list.SelectedRows(), Rows{5});
}

}  // namespace
}  // namespace kd
