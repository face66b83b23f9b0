#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridWidgetListTest : public GridFixture {
protected:
    void MakeList(std::int32_t rows = 8) { Make(rows, 1, std::make_unique<ListManner>(grid)); }
    Cell Selected() const {
        Cell rows;
        for (std::int32_t row = 1; row < grid.Rows(); ++row) {
            if (grid.IsSelected(row)) {
                rows.push_back(row);
            }
        }
        return rows;
    }
};

TEST_F(GridWidgetListTest, AClickSelectsAndUnselectsOneRow) {
    MakeList();
    Click(2, 0);
    Click(5, 0);
    EXPECT_EQ(Selected(), (Cell{2, 5}));
    Click(2, 0);
    EXPECT_EQ(Selected(), (Cell{5}));
    Click(7, 0, Qt::ControlModifier);
    EXPECT_EQ(Selected(), (Cell{5, 7}));
}

TEST_F(GridWidgetListTest, TheLastColumnReachesToTheRightEdgeAndNoFurther) {
    for (const std::int32_t cols : {1, 2}) {
        Make(3, cols, std::make_unique<ListManner>(grid));
        const QRect last = widget->Layout().CellRect(1, cols - 1);
        EXPECT_EQ(last.left(), (cols - 1) * ColumnWidth);
        EXPECT_EQ(last.right() + 1, Port()->width());
        EXPECT_EQ(widget->Layout().TotalWidth(), Port()->width());
        EXPECT_EQ(widget->horizontalScrollBar()->maximum(), 0);
    }
}

TEST_F(GridWidgetListTest, AFastSecondClickUnselectsAgain) {
    MakeList();
    Click(2, 0);
    QTest::mouseDClick(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 0));
    EXPECT_TRUE(Selected().empty());
    EXPECT_FALSE(grid.EditWindow());
}

TEST_F(GridWidgetListTest, ShiftAndClickSelectsARangeWithoutItsHiddenRows) {
    MakeList();
    grid.SetRowHidden(4, true);
    Click(2, 0);
    Click(6, 0, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), (Cell{2, 3, 5, 6}));
    Click(3, 0, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), (Cell{2, 3}));
}

TEST_F(GridWidgetListTest, ArrowsMoveAndSpaceSelects) {
    MakeList();
    grid.SetRowHidden(1, true);
    Press(Qt::Key_Down);
    EXPECT_EQ(grid.Row(), 2);
    EXPECT_TRUE(Selected().empty());
    Press(Qt::Key_Space);
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    Press(Qt::Key_Space);
    EXPECT_EQ(Selected(), (Cell{2, 4}));
    Press(Qt::Key_Space);
    EXPECT_EQ(Selected(), (Cell{2}));
    Press(Qt::Key_End);
    EXPECT_EQ(grid.Row(), 8);
    Press(Qt::Key_Home);
    EXPECT_EQ(grid.Row(), 2);
}

TEST_F(GridWidgetListTest, ShiftAndArrowsSelectARange) {
    MakeList();
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), (Cell{2, 3, 4}));
    Press(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), (Cell{2, 3}));
}

TEST_F(GridWidgetListTest, CtrlASelectsAllVisibleRows) {
    MakeList(4);
    grid.SetRowHidden(2, true);
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Selected(), (Cell{1, 3, 4}));
}

TEST_F(GridWidgetListTest, NeitherTypingNorF2OpensAnEditor) {
    MakeList();
    grid.Select(2, 0);
    Press(Qt::Key_F2);
    Type("x");
    EXPECT_FALSE(grid.EditWindow());
}

TEST_F(GridWidgetListTest, WhatIsTypedIsLeftToTheDialog) {
    MakeList();
    grid.Select(2, 0);
    QKeyEvent typed(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "x");
    QApplication::sendEvent(widget, &typed);
    EXPECT_FALSE(typed.isAccepted());
}

TEST_F(GridWidgetListTest, NoKeyPressesItsHeaderNorOpensAMenu) {
    MakeList();
    ListenToMouse();
    grid.Select(2, 0);
    Press(Qt::Key_Down, Qt::AltModifier);
    Press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(history.empty());
}

TEST_F(GridWidgetListTest, TabGoesOnToTheNextControl) {
    MakeList();
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), other);
}

TEST_F(GridWidgetListTest, EnterIsLeftToTheDialog) {
    MakeList();
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
    EXPECT_FALSE(press.isAccepted());
}

TEST_F(GridWidgetListTest, SelectedRowsAreHighlightedAndTheOthersAreNot) {
    MakeList();
    grid.SetIsSelected(3, true);
    EXPECT_EQ(Ground(3, 0), widget->palette().color(QPalette::Highlight));
    EXPECT_EQ(Ground(2, 0), widget->palette().color(QPalette::Base));
}

TEST_F(GridWidgetListTest, TheColumnReachesTheRightEdge) {
    MakeList();
    EXPECT_EQ(widget->Layout().CellRect(1, 0).width(), Port()->width());
    widget->resize(300, 300);
    EXPECT_EQ(widget->Layout().CellRect(1, 0).width(), Port()->width());
}

TEST_F(GridWidgetListTest, ATextThatIsWiderThanTheGridScrolls) {
    MakeList();
    grid.SetTextMatrix(1, 0, std::string(300, 'W'));
    QApplication::processEvents();
    EXPECT_GT(widget->horizontalScrollBar()->maximum(), 0);
}

TEST_F(GridWidgetListTest, ARowThatIsAddedCanBeShown) {
    MakeList(50);
    grid.SetRows(52);
    grid.SetTextMatrix(51, 0, "added");
    grid.ShowCell(51, 0);
    EXPECT_FALSE(widget->Layout().ShownRect(51, 0).isEmpty());
}

}  // namespace
}  // namespace kd
