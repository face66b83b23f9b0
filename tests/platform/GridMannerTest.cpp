#include "platform/GridManner.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/CellMoves.h"

namespace kd {
namespace {

constexpr int Page = 4;
using Rows = std::vector<std::int32_t>;

/// Ten rows and three columns; row 4 and column 0 are hidden.
class GridMannerTest : public testing::Test, public GridScreen {
protected:
    GridMannerTest() {
        grid.SetCols(3);
        grid.SetRows(11);
        grid.SetRowHidden(4, true);
        grid.SetColHidden(0, true);
        grid.SetScreen(this);
    }
    void ShowCell(std::int32_t row, std::int32_t screenCol) override { shown = {row, screenCol}; }
    GridCell Current() const { return {grid.Row(), grid.Col()}; }
    Rows Selected() const { return list.SelectedRows(); }

    VSFlexGrid grid{"Grid"};
    CellManner cells{grid};
    ListManner list{grid};
    GridCell shown;
};

TEST_F(GridMannerTest, AKeyMovesTheCurrentCellAndShowsIt) {
    grid.Select(3, 1);
    EXPECT_TRUE(cells.KeyPress(kcDown, 0, Page));
    EXPECT_EQ(Current(), (GridCell{5, 1}));
    EXPECT_EQ(shown, (GridCell{5, 1}));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{5, 1, 5, 1}));
}

TEST_F(GridMannerTest, EachKeyMovesTheCurrentCellItsOwnWay) {
    struct Case {
        const char* label;
        int key;
        GridCell to;
    };
    grid.SetColHidden(0, false);
    const Case cases[] = {{"up", kcUp, {5, 1}},          {"down", kcDown, {7, 1}},
                          {"page up", kcPageUp, {3, 1}}, {"page down", kcPageDown, {8, 1}},
                          {"left", kcLeft, {6, 0}},      {"right", kcRight, {6, 2}},
                          {"start", kcHome, {6, 0}},     {"end", kcEnd, {6, 2}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        grid.Select(6, 1);
        EXPECT_TRUE(cells.KeyPress(c.key, 0, 2));
        EXPECT_EQ(Current(), c.to);
        EXPECT_EQ(shown, c.to);
    }
}

TEST_F(GridMannerTest, EachKeyMovesTheCurrentRowOfAListItsOwnWay) {
    struct Case {
        const char* label;
        int key;
        std::int32_t to;
    };
    for (const Case& c :
         {Case{"up", kcUp, 5}, Case{"down", kcDown, 7}, Case{"page up", kcPageUp, 3},
          Case{"page down", kcPageDown, 8}, Case{"start", kcHome, 1}, Case{"end", kcEnd, 10}}) {
        SCOPED_TRACE(c.label);
        grid.Select(6, 0);
        EXPECT_TRUE(list.KeyPress(c.key, 0, 2));
        EXPECT_EQ(grid.Row(), c.to);
        EXPECT_EQ(shown.row, c.to);
        EXPECT_EQ(Selected(), Rows{});
    }
}

TEST_F(GridMannerTest, AFirstRangeOfAListBeginsAtTheCurrentRowOrWhereThereIsNoneAtTheOneThatIsReached) {
    EXPECT_TRUE(list.KeyPress(kcDown, sbShift, Page));
    EXPECT_EQ(Selected(), Rows{1});
    ListManner another(grid);
    grid.SetIsSelected(1, false);
    grid.Select(6, 0);
    EXPECT_TRUE(another.KeyPress(kcDown, sbShift, Page));
    EXPECT_EQ(Selected(), (Rows{6, 7}));
}

TEST_F(GridMannerTest, InAListARowIsCurrentAndSelectedWithAllOfItsCells) {
    grid.Select(7, 0);
    grid.SetIsSelected(6, true);
    grid.SetIsSelected(7, true);
    EXPECT_TRUE(list.IsCurrent({7, 2}));
    EXPECT_FALSE(list.IsCurrent({6, 1}));
    EXPECT_FALSE(list.IsCurrent({0, 1}));
    EXPECT_TRUE(list.LooksSelected({7, 1}));
    EXPECT_TRUE(list.IsSelected({6, 1}));
    EXPECT_FALSE(list.IsSelected({8, 1}));
    EXPECT_TRUE(list.IsRowSelected(6));
    EXPECT_FALSE(list.IsRowSelected(8));
    EXPECT_FALSE(list.IsRowSelected(0));
    EXPECT_FALSE(list.SelectCol(1)) << "a list has rows alone";
    EXPECT_FALSE(list.IsColSelected(1));
}

TEST_F(GridMannerTest, ARowIsSelectedAsAWholeOnlyWithAllOfItsCells) {
    grid.SetColHidden(0, false);
    EXPECT_FALSE(cells.IsRowSelected(2)) << "nothing is current";
    EXPECT_FALSE(cells.IsCurrent({0, 0}));
    EXPECT_FALSE(cells.LooksSelected({2, 0}));
    grid.Select(2, 0);
    grid.ExtendSelection(3, 1);
    EXPECT_FALSE(cells.IsRowSelected(2)) << "the last column is not";
    EXPECT_TRUE(cells.LooksSelected({3, 1}));
    EXPECT_FALSE(cells.LooksSelected({2, 0})) << "the current one keeps its ground";
    grid.ExtendSelection(3, 2);
    EXPECT_TRUE(cells.IsRowSelected(2));
    EXPECT_TRUE(cells.IsRowSelected(3));
    EXPECT_FALSE(cells.IsRowSelected(1));
    EXPECT_FALSE(cells.IsRowSelected(4));
}

TEST_F(GridMannerTest, OfManySelectedCellsNoRowIsBegunBehindTheMostThatAreAskedFor) {
    grid.SetColHidden(0, false);
    grid.Select(1, 0);
    grid.ExtendSelection(10, 2);
    const auto told = cells.SelectedCells(4, 2, 9);
    ASSERT_EQ(told.size(), 6U);
    EXPECT_EQ(told.front(), (GridCell{2, 0}));
    EXPECT_EQ(told.back(), (GridCell{3, 2}));
}

TEST_F(GridMannerTest, AGridWithNothingInSightSelectsNothing) {
    const auto selectAll = [this] { (void)cells.KeyPress(kcA, sbCtrl, Page); };
    for (const bool rows : {true, false}) {
        for (std::int32_t at = rows ? 1 : 0; at < (rows ? grid.Rows() : grid.Cols()); ++at) {
            rows ? grid.SetRowHidden(at, true) : grid.SetColHidden(at, true);
        }
        selectAll();
        EXPECT_EQ(grid.Row(), 0);
        for (std::int32_t row = 1; row < grid.Rows(); ++row) {
            grid.SetRowHidden(row, false);
        }
    }
}

TEST_F(GridMannerTest, AColumnBesideTheGridAndARowWithoutCellsCannotBeSelected) {
    EXPECT_FALSE(cells.SelectCol(-1));
    EXPECT_FALSE(cells.SelectCol(3));
    grid.SetCols(0);
    EXPECT_FALSE(cells.SelectRow(1));
}

TEST_F(GridMannerTest, ShiftMovesTheOppositeCornerAndShowsIt) {
    grid.Select(3, 1);
    EXPECT_TRUE(cells.KeyPress(kcPageDown, sbShift, Page));
    EXPECT_EQ(Current(), (GridCell{3, 1}));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{3, 1, 8, 1}));
    EXPECT_EQ(shown, (GridCell{8, 1}));
}

TEST_F(GridMannerTest, KeysWithoutAUseAreLeft) {
    grid.Select(3, 1);
    EXPECT_FALSE(cells.KeyPress(kcDown, sbAlt, Page));
    EXPECT_FALSE(cells.KeyPress(kcA, 0, Page));
    EXPECT_FALSE(cells.KeyPress(kcA, sbCtrl | sbShift, Page));
    EXPECT_FALSE(cells.KeyPress(13, 0, Page));
    EXPECT_FALSE(list.KeyPress(kcLeft, 0, Page));
    EXPECT_FALSE(list.KeyPress(kcA, 0, Page));
    EXPECT_FALSE(list.KeyPress(kcF2, 0, Page));
    EXPECT_EQ(Current(), (GridCell{3, 1}));
}

TEST_F(GridMannerTest, SpaceTurnsTheFirstRowOfAListToo) {
    grid.Select(1, 0);
    EXPECT_TRUE(list.KeyPress(kcSpace, 0, Page));
    EXPECT_EQ(Selected(), Rows{1});
}

TEST_F(GridMannerTest, OnlyAListHasWholeRowsForItsCells) {
    const GridManner& ofCells = cells;
    const GridManner& ofRows = list;
    EXPECT_FALSE(ofCells.WholeRows());
    EXPECT_TRUE(ofRows.WholeRows());
}

TEST_F(GridMannerTest, AColumnWithoutRowsCannotBeSelected) {
    grid.SetRows(1);
    EXPECT_FALSE(cells.SelectCol(1));
    grid.SetRows(2);
    EXPECT_TRUE(cells.SelectCol(1));
}

TEST_F(GridMannerTest, AGridWithoutColumnsHasNoCellToEdit) {
    grid.Select(3, 1);
    grid.SetCols(0);
    EXPECT_FALSE(cells.OpenEditor());
    EXPECT_FALSE(grid.EditWindow());
}

TEST_F(GridMannerTest, EachDataRowCanBeSelectedAndNoneBeside) {
    for (GridManner* const manner : {static_cast<GridManner*>(&cells), static_cast<GridManner*>(&list)}) {
        for (const std::int32_t row : {1, 2, 10}) {
            EXPECT_TRUE(manner->SelectRow(row)) << row;
            EXPECT_TRUE(manner->IsRowSelected(row)) << row;
        }
        for (const std::int32_t row : {-1, 0, 11}) {
            EXPECT_FALSE(manner->SelectRow(row)) << row;
            EXPECT_FALSE(manner->IsRowSelected(row)) << row;
        }
    }
}

TEST_F(GridMannerTest, AColumnIsSelectedWhenAllOfItsRowsAre) {
    EXPECT_FALSE(cells.IsColSelected(0)) << "nothing is selected yet";
    grid.Select(1, 1);
    grid.ExtendSelection(10, 2);
    EXPECT_FALSE(cells.IsColSelected(0));
    EXPECT_TRUE(cells.IsColSelected(1));
    EXPECT_TRUE(cells.IsColSelected(2));
    grid.Select(2, 1);
    grid.ExtendSelection(10, 2);
    EXPECT_FALSE(cells.IsColSelected(1));
    grid.Select(1, 1);
    grid.ExtendSelection(9, 2);
    EXPECT_FALSE(cells.IsColSelected(1));
}

TEST_F(GridMannerTest, CtrlASelectsWhatIsInSight) {
    EXPECT_TRUE(cells.KeyPress(kcA, sbCtrl, Page));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 1, 10, 2}));
    grid.SetRowHidden(1, true);
    EXPECT_TRUE(cells.KeyPress(kcA, sbCtrl, Page));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{2, 1, 10, 2}));
}

TEST_F(GridMannerTest, TabTellsWhetherItStays) {
    grid.Select(10, 1);
    EXPECT_TRUE(cells.Tab(true));
    EXPECT_EQ(Current(), (GridCell{10, 2}));
    EXPECT_FALSE(cells.Tab(true));
    EXPECT_EQ(Current(), (GridCell{10, 2}));
    EXPECT_FALSE(list.Tab(true));
}

TEST_F(GridMannerTest, APressPicksACellAndShiftExtendsFromOne) {
    EXPECT_TRUE(cells.Pick({2, 1}, true));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{2, 1, 2, 1}));
    EXPECT_TRUE(cells.Pick({5, 2}, true));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{2, 1, 5, 2}));
}

TEST_F(GridMannerTest, TheEditorOpensWhereACellIsInSight) {
    EXPECT_FALSE(cells.OpenEditor());  // no current cell
    grid.Select(4, 1);
    EXPECT_FALSE(cells.OpenEditor());
    grid.Select(3, 0);
    EXPECT_FALSE(cells.OpenEditor());
    grid.Select(3, 1);
    EXPECT_FALSE(list.OpenEditor());
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_TRUE(cells.KeyPress(kcF2, 0, Page));
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_EQ(shown, (GridCell{3, 1}));
}

TEST_F(GridMannerTest, TheCurrentCellOfARectangleIsNotDrawnAsSelected) {
    EXPECT_FALSE(cells.IsSelected({0, 0}));
    grid.Select(2, 1);
    grid.ExtendSelection(3, 2);
    EXPECT_TRUE(cells.IsSelected({2, 1}));
    EXPECT_FALSE(cells.LooksSelected({2, 1}));
    EXPECT_TRUE(cells.LooksSelected({3, 2}));
    EXPECT_TRUE(cells.IsCurrent({2, 1}));
    EXPECT_FALSE(cells.IsCurrent({2, 2}));
    EXPECT_FALSE(cells.IsSelected({4, 2}));
}

TEST_F(GridMannerTest, RowsAndColumnsOfARectangleCountWhenAllTheirCellsDo) {
    EXPECT_TRUE(cells.SelectRow(5));
    EXPECT_EQ(cells.SelectedRows(), (Rows{5}));
    EXPECT_TRUE(cells.IsRowSelected(5));
    EXPECT_FALSE(cells.IsRowSelected(6));
    EXPECT_EQ(cells.SelectedCount(), 3);
    EXPECT_TRUE(cells.SelectCol(1));
    EXPECT_TRUE(cells.IsColSelected(1));
    EXPECT_FALSE(cells.IsColSelected(2));
    EXPECT_TRUE(cells.SelectedRows().empty());
    EXPECT_FALSE(cells.UnselectRow(5));
}

TEST_F(GridMannerTest, NothingOutsideTheGridIsSelected) {
    EXPECT_FALSE(cells.SelectRow(0));
    EXPECT_FALSE(cells.SelectRow(11));
    EXPECT_FALSE(cells.SelectCol(3));
    EXPECT_FALSE(cells.IsRowSelected(11));
    EXPECT_FALSE(list.SelectRow(0));
    EXPECT_FALSE(list.UnselectRow(11));
    EXPECT_FALSE(list.IsRowSelected(11));
    EXPECT_EQ(cells.SelectedCount(), 0);
    EXPECT_TRUE(cells.SelectedCells(100, 1, 10).empty());
}

TEST_F(GridMannerTest, ARefusedTextKeepsItsRowFromBeingLeft) {
    grid.ValidateEdit = [](std::int32_t, std::int32_t, bool& cancel) { cancel = true; };
    grid.Select(3, 1);
    ASSERT_TRUE(cells.OpenEditor());
    EXPECT_FALSE(cells.SelectRow(5));
    EXPECT_FALSE(cells.SelectCol(2));
    EXPECT_EQ(Current(), (GridCell{3, 1}));
}

TEST_F(GridMannerTest, OfALargeSelectionTheRowsInSightAreTold) {
    grid.Select(1, 1);
    grid.ExtendSelection(10, 2);
    EXPECT_EQ(cells.SelectedCells(20, 3, 5).size(), 20U);
    const std::vector<GridCell> told = cells.SelectedCells(19, 3, 5);
    EXPECT_EQ(told.size(), 6U);
    EXPECT_EQ(told.front(), (GridCell{3, 1}));
    EXPECT_EQ(told.back(), (GridCell{5, 2}));
}

TEST_F(GridMannerTest, APressInAListTurnsOneRow) {
    EXPECT_FALSE(list.Pick({2, 0}, false));
    EXPECT_FALSE(list.Pick({5, 0}, false));
    EXPECT_EQ(Selected(), (Rows{2, 5}));
    (void)list.Pick({2, 0}, false);
    EXPECT_EQ(Selected(), (Rows{5}));
    EXPECT_EQ(list.SelectedCount(), 3);
    EXPECT_EQ(list.SelectedCells(100, 1, 10), (std::vector<GridCell>{{5, 0}}));
    EXPECT_TRUE(list.IsCurrent({2, 1}));
    grid.Select(1, 1);
    EXPECT_TRUE(list.IsCurrent({1, 2}));
    EXPECT_FALSE(list.IsCurrent({2, 2}));
}

TEST_F(GridMannerTest, ARangeOfRowsFollowsItsEndAndPassesOverHiddenOnes) {
    (void)list.Pick({2, 0}, false);
    (void)list.Pick({6, 0}, true);
    EXPECT_EQ(Selected(), (Rows{2, 3, 5, 6}));
    (void)list.Pick({3, 0}, true);
    EXPECT_EQ(Selected(), (Rows{2, 3}));
    (void)list.Pick({1, 0}, true);
    EXPECT_EQ(Selected(), (Rows{1, 2}));
}

TEST_F(GridMannerTest, ARangeEndsWithTheRowsThatAreLeft) {
    (void)list.Pick({5, 0}, false);
    (void)list.Pick({10, 0}, true);
    grid.SetRows(8);
    (void)list.Pick({6, 0}, true);
    EXPECT_EQ(Selected(), (Rows{5, 6}));
}

TEST_F(GridMannerTest, KeysMoveThroughAListAndSpaceTurnsTheRow) {
    EXPECT_TRUE(list.KeyPress(kcSpace, 0, Page));  // no row yet
    EXPECT_TRUE(list.KeyPress(kcDown, 0, Page));
    EXPECT_TRUE(list.KeyPress(kcPageDown, 0, Page));
    EXPECT_EQ(grid.Row(), 6);
    EXPECT_EQ(shown, (GridCell{6, 0}));
    EXPECT_TRUE(list.KeyPress(kcSpace, 0, Page));
    EXPECT_TRUE(list.KeyPress(kcEnd, 0, Page));
    EXPECT_TRUE(list.KeyPress(kcDown, sbShift, Page));
    EXPECT_EQ(Selected(), (Rows{6, 10}));
    EXPECT_TRUE(list.KeyPress(kcHome, 0, Page));
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_TRUE(list.KeyPress(kcDown, sbShift, Page));
    EXPECT_EQ(Selected(), (Rows{1, 2, 6, 10}));
}

TEST_F(GridMannerTest, CtrlASelectsTheShownRowsOfAList) {
    EXPECT_TRUE(list.KeyPress(kcA, sbCtrl, Page));
    EXPECT_EQ(Selected(), (Rows{1, 2, 3, 5, 6, 7, 8, 9, 10}));
}

TEST_F(GridMannerTest, AListWithoutRowsInSightStaysWhereItIs) {
    for (std::int32_t row = 1; row < grid.Rows(); ++row) {
        grid.SetRowHidden(row, true);
    }
    grid.Select(3, 0);
    EXPECT_TRUE(list.KeyPress(kcDown, 0, Page));
    EXPECT_TRUE(list.KeyPress(kcSpace, 0, Page));
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_TRUE(Selected().empty());
}

}  // namespace
}  // namespace kd
