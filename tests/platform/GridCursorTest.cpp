#include "platform/GridCursor.h"

#include <gtest/gtest.h>

#include "fakes/ErrorOf.h"
#include "platform/VSFlexGrid.h"

namespace kd {
namespace {

/// Three rows and three columns, of which the cells from 1,1 to 2,2 are selected.
class GridCursorTest : public testing::Test {
protected:
    GridCursorTest() {
        grid.SetCols(3);
        grid.SetRows(4);
        grid.Select(1, 1);
        grid.ExtendSelection(2, 2);
    }

    VSFlexGrid grid{"Grid"};
};

TEST(GridCellTest, ACellThatNobodyNamedIsNone) {
    EXPECT_EQ(GridCell{}, (GridCell{-1, -1}));
}

TEST_F(GridCursorTest, ACornerOutsideTheGridLeavesTheSelectionAsItWas) {
    for (const GridCell corner : {GridCell{3, 3}, GridCell{4, 0}, GridCell{3, -1}}) {
        EXPECT_EQ(ErrorOf([&] { grid.ExtendSelection(corner.row, corner.screenCol); }), errSubscript);
        EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 1, 2, 2}));
    }
}

TEST_F(GridCursorTest, TheOnlyColumnThatIsLeftIsTheCurrentOne) {
    grid.SetCols(1);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 0, 1, 0}));
    grid.SetCols(0);
    EXPECT_EQ(grid.Col(), 0);
}

}  // namespace
}  // namespace kd
