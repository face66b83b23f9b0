#include "platform/GridPresses.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kd {
namespace {

using History = std::vector<std::string>;

class GridPressesTest : public testing::Test {
protected:
    GridPressesTest() {
        grid.SetCols(3);
        grid.SetRows(6);
        grid.BeforeMouseDown = [this](MouseButton, int shift, int x, int y, bool& cancel) {
            history.push_back("before " + std::to_string(shift) + " " + std::to_string(x) + "," +
                              std::to_string(y) + " at " + std::to_string(grid.MouseRow()));
            cancel = cancelPress;
        };
        grid.MouseDown = [this](MouseButton, int, int, int) {
            history.push_back("down in row " + std::to_string(grid.Row()));
        };
        grid.MouseUp = [this](MouseButton, int, int, int) { history.push_back("up"); };
        grid.MouseMove = [this](MouseButton button, int, int, int) {
            history.push_back("move " + std::to_string(static_cast<int>(button)));
        };
        grid.ValidateEdit = [this](std::int32_t, std::int32_t, bool& cancel) { cancel = refuse; };
    }

    VSFlexGrid grid{"Grid"};
    CellManner manner{grid};
    GridPresses presses{grid, manner};
    History history;
    bool cancelPress = false;
    bool refuse = false;
};

TEST_F(GridPressesTest, APressTellsBeforeAndAfterTheCellIsPicked) {
    grid.Select(1, 0);
    EXPECT_TRUE(presses.Press(MouseButton::Left, {{3, 1}, 50, 60, sbCtrl}));
    EXPECT_TRUE(presses.Dragging());
    presses.Release(MouseButton::Left, {{3, 1}, 50, 60, 0});
    EXPECT_FALSE(presses.Dragging());
    EXPECT_EQ(history, (History{"before 2 50,60 at 3", "down in row 3", "up"}));
}

TEST_F(GridPressesTest, AGridThatNobodyHearsIsPressedAndMovedOverAllTheSame) {
    grid.BeforeMouseDown = nullptr;
    grid.MouseDown = nullptr;
    grid.MouseUp = nullptr;
    grid.MouseMove = nullptr;
    EXPECT_TRUE(presses.Press(MouseButton::Left, {{3, 1}, 0, 0, 0}));
    presses.Move({{4, 2}, 0, 0, 0});
    EXPECT_EQ(grid.MouseRow(), 4);
    presses.Release(MouseButton::Left, {{4, 2}, 0, 0, 0});
    EXPECT_FALSE(presses.Dragging());
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(history, History{});
}

TEST_F(GridPressesTest, ACellThatTheFinishedEditTakesAwayIsNotPicked) {
    for (const bool rows : {true, false}) {
        grid.SetRows(6);
        grid.SetCols(3);
        grid.Select(1, 1);
        ASSERT_TRUE(grid.StartEdit());
        grid.AfterEdit = [&](std::int32_t, std::int32_t) { rows ? grid.SetRows(4) : grid.SetCols(2); };
        EXPECT_TRUE(presses.Press(MouseButton::Left, {{4, 2}, 0, 0, 0}));
        EXPECT_FALSE(presses.Dragging());
        EXPECT_EQ(grid.Row(), 1);
        EXPECT_EQ(grid.Col(), 1);
    }
}

TEST_F(GridPressesTest, ACancelledPressPicksNothingAndHasNoRelease) {
    cancelPress = true;
    EXPECT_FALSE(presses.Press(MouseButton::Left, {{3, 1}, 0, 0, 0}));
    presses.Release(MouseButton::Left, {{3, 1}, 0, 0, 0});
    EXPECT_EQ(history, (History{"before 0 0,0 at 3"}));
    EXPECT_EQ(grid.Row(), 0);
}

TEST_F(GridPressesTest, APressEndsTheOneBeforeWhoseReleaseWasNotHeardOf) {
    ASSERT_TRUE(presses.Press(MouseButton::Left, {{3, 1}, 0, 0, 0}));
    cancelPress = true;
    EXPECT_FALSE(presses.Press(MouseButton::Left, {{4, 1}, 0, 0, 0}));
    EXPECT_FALSE(presses.Dragging());
    presses.Release(MouseButton::Left, {{4, 1}, 0, 0, 0});
    EXPECT_EQ(history.back(), "before 0 0,0 at 4");
}

TEST_F(GridPressesTest, AReleaseIsToldOnceOverTheCellWhereItCame) {
    History cells;
    grid.MouseUp = [&](MouseButton, int, int, int) {
        cells.push_back(std::to_string(grid.MouseRow()) + "," + std::to_string(grid.MouseCol()));
    };
    ASSERT_TRUE(presses.Press(MouseButton::Left, {{3, 1}, 0, 0, 0}));
    presses.Release(MouseButton::Left, {{5, 2}, 0, 0, 0});
    presses.Release(MouseButton::Left, {{5, 2}, 0, 0, 0});
    EXPECT_EQ(cells, History{"5,2"});
}

TEST_F(GridPressesTest, ARefusedTextStopsThePress) {
    grid.Select(1, 1);
    ASSERT_TRUE(grid.StartEdit());
    refuse = true;
    EXPECT_FALSE(presses.Press(MouseButton::Left, {{3, 1}, 0, 0, 0}));
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(history.size(), 1U);
}

TEST_F(GridPressesTest, ADoublePressThatOnlyExtendsTheSelectionOpensNoEditor) {
    grid.Select(1, 1);
    presses.DoublePress(MouseButton::Left, {{3, 1}, 0, 0, sbShift});
    EXPECT_FALSE(grid.EditWindow());
    presses.DoublePress(MouseButton::Left, {{3, 1}, 0, 0, 0});
    EXPECT_TRUE(grid.EditWindow());
}

TEST_F(GridPressesTest, BeforeTheFirstPressNothingIsDragged) {
    EXPECT_FALSE(presses.Dragging());
}

TEST_F(GridPressesTest, TheRightButtonLeavesSelectionAndEditorAlone) {
    grid.Select(1, 1);
    ASSERT_TRUE(grid.StartEdit());
    EXPECT_TRUE(presses.Press(MouseButton::Right, {{3, 1}, 0, 0, 0}));
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_FALSE(presses.Dragging());
}

TEST_F(GridPressesTest, APressBesideTheCellsPicksNothing) {
    grid.Select(1, 1);
    for (const GridCell cell : {GridCell{0, 1}, GridCell{-1, 1}, GridCell{2, -1}}) {
        EXPECT_TRUE(presses.Press(MouseButton::Left, {cell, 0, 0, 0}));
        EXPECT_EQ(grid.Row(), 1);
        EXPECT_FALSE(presses.Dragging());
    }
}

TEST_F(GridPressesTest, OnlyTheButtonThatIsDownIsReleased) {
    ASSERT_TRUE(presses.Press(MouseButton::Left, {{3, 1}, 0, 0, 0}));
    presses.Release(MouseButton::Right, {{3, 1}, 0, 0, 0});
    EXPECT_EQ(history.back(), "down in row 3");
    presses.Release(MouseButton::Left, {{3, 1}, 0, 0, 0});
    EXPECT_EQ(history.back(), "up");
}

TEST_F(GridPressesTest, AMoveTellsTheButtonThatIsDown) {
    presses.Move({{2, 1}, 0, 0, 0});
    ASSERT_TRUE(presses.Press(MouseButton::Right, {{3, 1}, 0, 0, 0}));
    presses.Move({{4, 2}, 0, 0, 0});
    EXPECT_EQ(history.front(), "move 1");
    EXPECT_EQ(history.back(), "move 2");
    EXPECT_EQ(grid.MouseRow(), 4);
    EXPECT_EQ(grid.MouseCol(), 2);
    presses.Release(MouseButton::Right, {{4, 2}, 0, 0, 0});
    presses.Move({{4, 2}, 0, 0, 0});
    EXPECT_EQ(history.back(), "move 1") << "none is down any more";
}

TEST_F(GridPressesTest, ADragMovesTheOppositeCorner) {
    ASSERT_TRUE(presses.Press(MouseButton::Left, {{3, 1}, 0, 0, 0}));
    presses.DragTo({5, 2});
    EXPECT_EQ(grid.GetSelection(), (GridSelection{3, 1, 5, 2}));
}

TEST_F(GridPressesTest, ADoublePressEditsTheCellAndEndsTheDrag) {
    presses.DoublePress(MouseButton::Left, {{3, 1}, 0, 0, 0});
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_FALSE(presses.Dragging());
}

TEST_F(GridPressesTest, ADoublePressOfAnotherButtonOrBesideTheCellEditsNothing) {
    grid.Select(3, 1);
    presses.DoublePress(MouseButton::Right, {{3, 1}, 0, 0, 0});
    EXPECT_FALSE(grid.EditWindow());
    presses.DoublePress(MouseButton::Left, {{0, 1}, 0, 0, 0});
    EXPECT_FALSE(grid.EditWindow());
}

}  // namespace
}  // namespace kd
