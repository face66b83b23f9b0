#include "platform/CellMoves.h"

#include <gtest/gtest.h>

#include <vector>

namespace kd {
namespace {

constexpr int Page = 10;

/// 60 rows and 6 columns, of which rows 1, 3 and 60 and columns 0 and 3 are hidden.
class CellMovesTest : public testing::Test {
protected:
    CellMovesTest() {
        grid.SetCols(6);
        grid.SetRows(61);
        for (const std::int32_t row : {1, 3, 60}) {
            grid.SetRowHidden(row, true);
        }
        grid.SetColHidden(0, true);
        grid.SetColHidden(3, true);
    }
    GridCell From(GridCell from, int keyCode, int shift = 0) {
        grid.Select(from.row, from.screenCol);
        return CellFromKey(grid, keyCode, shift, Page);
    }
    void HideAllRows() {
        for (std::int32_t row = 1; row < grid.Rows(); ++row) {
            grid.SetRowHidden(row, true);
        }
    }

    VSFlexGrid grid{"Grid"};
};

TEST_F(CellMovesTest, HomeAndEndLeadToTheFirstAndTheLastColumnWhereTheyAreShown) {
    grid.SetColHidden(0, false);
    EXPECT_EQ(From({4, 4}, kcHome), (GridCell{4, 0}));
    EXPECT_EQ(From({4, 1}, kcEnd), (GridCell{4, 5}));
}

TEST_F(CellMovesTest, TheFirstRowAndTheFirstColumnCountWhereTheyAreShown) {
    grid.SetRowHidden(1, false);
    grid.SetColHidden(0, false);
    EXPECT_EQ(From({1, 1}, kcRight), (GridCell{1, 2}));
    EXPECT_EQ(From({1, 1}, kcLeft), (GridCell{1, 0}));
    EXPECT_EQ(From({1, 1}, kcDown), (GridCell{2, 1}));
    EXPECT_EQ(From({0, 2}, kcHome), (GridCell{1, 0}));
    EXPECT_EQ(NearestRow(grid, 0), 1);
}

TEST_F(CellMovesTest, AHiddenLastColumnIsPassedOver) {
    grid.SetColHidden(5, true);
    EXPECT_EQ(From({4, 5}, kcDown), (GridCell{5, 4}));
    EXPECT_EQ(From({4, 5}, kcRight), (GridCell{4, 4}));
    EXPECT_EQ(From({4, 1}, kcEnd), (GridCell{4, 4}));
    grid.Select(4, 1);
    EXPECT_EQ(NextCell(grid, false), (GridCell{2, 4}));
}

TEST_F(CellMovesTest, DataCellsAreThoseBelowTheHeader) {
    for (const GridCell cell : {GridCell{1, 0}, GridCell{1, 5}, GridCell{60, 0}}) {
        EXPECT_TRUE(IsDataCell(cell)) << cell.row << "," << cell.screenCol;
    }
    for (const GridCell cell : {GridCell{0, 0}, GridCell{-1, 0}, GridCell{1, -1}, GridCell{-1, -1}}) {
        EXPECT_FALSE(IsDataCell(cell)) << cell.row << "," << cell.screenCol;
    }
}

TEST_F(CellMovesTest, KeysSkipWhatIsHidden) {
    struct Case {
        const char* label;
        GridCell from;
        int keyCode;
        int shift;
        GridCell to;
    };
    for (const Case& c : {
             Case{"down", {4, 1}, kcDown, 0, {5, 1}},
             Case{"down over a hidden row", {2, 1}, kcDown, 0, {4, 1}},
             Case{"down at the last row", {59, 1}, kcDown, 0, {59, 1}},
             Case{"down from a hidden row", {3, 1}, kcDown, 0, {4, 1}},
             Case{"down from a hidden last row", {60, 1}, kcDown, 0, {59, 1}},
             Case{"down in a hidden column", {4, 3}, kcDown, 0, {5, 4}},
             Case{"down in a hidden first column", {4, 0}, kcDown, 0, {5, 1}},
             Case{"up over a hidden row", {4, 1}, kcUp, 0, {2, 1}},
             Case{"up at the first row", {2, 1}, kcUp, 0, {2, 1}},
             Case{"up from a hidden row", {3, 1}, kcUp, 0, {2, 1}},
             Case{"ctrl up", {30, 4}, kcUp, sbCtrl, {2, 4}},
             Case{"ctrl down", {30, 4}, kcDown, sbCtrl, {59, 4}},
             Case{"page down", {4, 1}, kcPageDown, 0, {14, 1}},
             Case{"page down near the end", {55, 1}, kcPageDown, 0, {59, 1}},
             Case{"page up", {40, 1}, kcPageUp, 0, {30, 1}},
             Case{"page up near the top", {5, 1}, kcPageUp, 0, {2, 1}},
             Case{"ctrl page down is a page too", {4, 1}, kcPageDown, sbCtrl, {14, 1}},
             Case{"right over a hidden column", {4, 2}, kcRight, 0, {4, 4}},
             Case{"right at the last column", {4, 5}, kcRight, 0, {4, 5}},
             Case{"right from a hidden row", {3, 1}, kcRight, 0, {4, 2}},
             Case{"right from a hidden last row", {60, 1}, kcRight, 0, {59, 2}},
             Case{"left over a hidden column", {4, 4}, kcLeft, 0, {4, 2}},
             Case{"left at the first column", {4, 1}, kcLeft, 0, {4, 1}},
             Case{"left in a hidden first column", {4, 0}, kcLeft, 0, {4, 1}},
             Case{"ctrl right", {4, 1}, kcRight, sbCtrl, {4, 5}},
             Case{"ctrl left", {4, 5}, kcLeft, sbCtrl, {4, 1}},
             Case{"home", {4, 4}, kcHome, 0, {4, 1}},
             Case{"end", {4, 2}, kcEnd, 0, {4, 5}},
             Case{"ctrl home", {30, 4}, kcHome, sbCtrl, {2, 1}},
             Case{"ctrl end", {30, 4}, kcEnd, sbCtrl, {59, 5}},
             Case{"down from the header", {0, 2}, kcDown, 0, {2, 2}},
             Case{"up from the header", {0, 2}, kcUp, 0, {2, 2}},
             Case{"left from the header", {0, 2}, kcLeft, 0, {2, 2}},
             Case{"page down from the header", {0, 2}, kcPageDown, 0, {2, 2}},
             Case{"ctrl end from the header", {0, 2}, kcEnd, sbCtrl, {59, 5}},
         }) {
        EXPECT_EQ(From(c.from, c.keyCode, c.shift), c.to) << c.label;
    }
}

TEST_F(CellMovesTest, ShiftCountsFromTheOppositeCorner) {
    grid.Select(4, 2);
    grid.ExtendSelection(10, 4);
    EXPECT_EQ(CellFromKey(grid, kcDown, sbShift, Page), (GridCell{11, 4}));
    EXPECT_EQ(CellFromKey(grid, kcLeft, sbShift, Page), (GridCell{10, 2}));
    EXPECT_EQ(CellFromKey(grid, kcHome, sbShift, Page), (GridCell{10, 1}));
    EXPECT_EQ(CellFromKey(grid, kcDown, 0, Page), (GridCell{5, 2}));
}

TEST_F(CellMovesTest, NoDataCellWhereNoRowIsInSight) {
    HideAllRows();
    for (const int key : {kcUp, kcDown, kcPageUp, kcPageDown, kcLeft, kcRight, kcHome, kcEnd}) {
        EXPECT_FALSE(IsDataCell(From({2, 1}, key))) << key;
    }
    EXPECT_FALSE(IsDataCell(NextCell(grid, true)));
    EXPECT_FALSE(IsDataCell(NextCell(grid, false)));
}

TEST_F(CellMovesTest, NoDataCellWhereNoColumnIsInSight) {
    for (std::int32_t col = 0; col < grid.Cols(); ++col) {
        grid.SetColHidden(col, true);
    }
    for (const int key : {kcUp, kcLeft, kcRight, kcHome, kcEnd}) {
        EXPECT_FALSE(IsDataCell(From({4, 1}, key))) << key;
    }
    EXPECT_FALSE(IsDataCell(NextCell(grid, true)));
}

TEST_F(CellMovesTest, OtherKeysLeadNowhere) {
    EXPECT_EQ(From({4, 1}, kcA), GridCell{});
    EXPECT_EQ(From({4, 1}, 0), GridCell{});
}

TEST_F(CellMovesTest, TabGoesCellByCellAndRowByRow) {
    struct Case {
        const char* label;
        GridCell from;
        bool forward;
        GridCell to;
    };
    for (const Case& c : {
             Case{"on over a hidden column", {4, 2}, true, {4, 4}},
             Case{"on at the row's end", {4, 5}, true, {5, 1}},
             Case{"on over a hidden row", {2, 5}, true, {4, 1}},
             Case{"on in a hidden row", {3, 1}, true, {4, 2}},
             Case{"back", {4, 4}, false, {4, 2}},
             Case{"back to the column beside", {4, 2}, false, {4, 1}},
             Case{"back at the row's beginning", {4, 1}, false, {2, 5}},
             Case{"back in a hidden row", {3, 4}, false, {2, 2}},
             Case{"on from the header", {0, 4}, true, {2, 1}},
         }) {
        grid.Select(c.from.row, c.from.screenCol);
        EXPECT_EQ(NextCell(grid, c.forward), c.to) << c.label;
    }
}

TEST_F(CellMovesTest, TabReachesTheFirstRowAndTheFirstColumnWhereTheyAreShown) {
    grid.SetRowHidden(1, false);
    grid.SetColHidden(0, false);
    grid.Select(1, 1);
    EXPECT_EQ(NextCell(grid, true), (GridCell{1, 2}));
    EXPECT_EQ(NextCell(grid, false), (GridCell{1, 0}));
    grid.Select(2, 0);
    EXPECT_EQ(NextCell(grid, false), (GridCell{1, 5}));
    grid.Select(0, 4);
    EXPECT_EQ(NextCell(grid, true), (GridCell{1, 0}));
}

TEST_F(CellMovesTest, TabEndsBehindTheLastAndBeforeTheFirstCell) {
    grid.Select(59, 5);
    EXPECT_FALSE(IsDataCell(NextCell(grid, true)));
    grid.Select(2, 1);
    EXPECT_FALSE(IsDataCell(NextCell(grid, false)));
    grid.Select(0, 1);
    EXPECT_FALSE(IsDataCell(NextCell(grid, false)));
}

TEST_F(CellMovesTest, AHiddenRowsNearestIsTheNextShownElseTheOneBefore) {
    EXPECT_EQ(NearestRow(grid, 2), 2);
    EXPECT_EQ(NearestRow(grid, 3), 4);
    EXPECT_EQ(NearestRow(grid, 60), 59);
    HideAllRows();
    EXPECT_EQ(NearestRow(grid, 3), 0);
}

}  // namespace
}  // namespace kd
