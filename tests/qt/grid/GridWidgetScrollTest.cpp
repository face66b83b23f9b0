#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridWidgetScrollTest : public GridFixture {};

TEST_F(GridWidgetScrollTest, RowsScrollByRowsAndColumnsByPixels) {
    Make(100, 12);
    EXPECT_EQ(widget->verticalScrollBar()->maximum(), 100 - widget->Layout().FullRows());
    EXPECT_EQ(widget->horizontalScrollBar()->maximum(), 12 * ColumnWidth - Port()->width());
    widget->verticalScrollBar()->setValue(7);
    widget->horizontalScrollBar()->setValue(33);
    EXPECT_EQ(widget->Layout().CellRect(8, 0).topLeft(),
              QPoint(-33, widget->Layout().GetSizes().headerHeight));
    EXPECT_EQ(widget->Layout().CellRect(0, 1).topLeft(), QPoint(ColumnWidth - 33, 0));
}

TEST_F(GridWidgetScrollTest, NoScrollBarsWhereEverythingFits) {
    Make(5, 3);
    EXPECT_EQ(widget->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(widget->horizontalScrollBar()->maximum(), 0);
}

TEST_F(GridWidgetScrollTest, AColumnThatTheOtherScrollBarCoversCanBeScrolledIntoSight) {
    Make(100, 2);
    const int whole = widget->maximumViewportSize().width();
    grid.SetColWidth(0, ColumnWidth);
    grid.SetColWidth(1, whole - ColumnWidth);
    QApplication::processEvents();
    ASSERT_LT(Port()->width(), whole) << "rows need a scroll bar";
    EXPECT_EQ(widget->horizontalScrollBar()->maximum(), whole - Port()->width());
    grid.ShowCell(1, 1);
    EXPECT_EQ(widget->Layout().CellRect(1, 1).right() + 1, Port()->width());
}

TEST_F(GridWidgetScrollTest, FrozenColumnsStayHiddenOnesTakeNoPart) {
    Make(10, 12);
    grid.SetColHidden(0, true);
    grid.SetFrozenCols(3);
    QApplication::processEvents();
    EXPECT_EQ(widget->Layout().FrozenWidth(), 2 * ColumnWidth);
    widget->horizontalScrollBar()->setValue(ColumnWidth);
    EXPECT_EQ(widget->Layout().CellRect(1, 1).left(), 0);
    EXPECT_EQ(widget->Layout().CellRect(1, 2).left(), ColumnWidth);
    EXPECT_EQ(widget->Layout().CellRect(1, 4).left(), 2 * ColumnWidth);
    EXPECT_TRUE(widget->Layout().ShownRect(1, 3).isEmpty());
    EXPECT_EQ(widget->Layout().ColAt(ColumnWidth + 5), 2);
    EXPECT_EQ(widget->Layout().ColAt(2 * ColumnWidth + 5), 4);
}

TEST_F(GridWidgetScrollTest, FrozenCellsArePaintedOverScrolledOnes) {
    Make(10, 12);
    grid.SetFrozenCols(1);
    grid.SetBackColor(1, 1, ChangedColour);
    QApplication::processEvents();
    widget->horizontalScrollBar()->setValue(ColumnWidth / 2);
    const QRect frozen = widget->Layout().CellRect(1, 0);
    const QImage picture = Picture();
    EXPECT_EQ(picture.pixelColor(frozen.right() - 3, frozen.bottom() - 4),
              widget->palette().color(QPalette::Base));
    EXPECT_EQ(picture.pixelColor(frozen.right() + 4, frozen.bottom() - 4), QColor(0xFF, 0xFF, 0xC0));
}

TEST_F(GridWidgetScrollTest, TheTopRowStaysWhenRowsAreHidden) {
    Make(100, 3);
    grid.SetTopRow(40);
    EXPECT_EQ(widget->Layout().CellRect(40, 0).top(), widget->Layout().GetSizes().headerHeight);
    for (std::int32_t row = 1; row <= 30; ++row) {
        grid.SetRowHidden(row, true);
    }
    QApplication::processEvents();
    EXPECT_EQ(widget->Layout().CellRect(40, 0).top(), widget->Layout().GetSizes().headerHeight);
}

TEST_F(GridWidgetScrollTest, RowsOfARebuildBeginAtTheTop) {
    Make(100, 3);
    grid.SetTopRow(40);
    grid.SetRows(1);
    grid.SetRedraw(false);
    grid.SetRows(101);
    grid.SetRedraw(true);
    QApplication::processEvents();
    EXPECT_EQ(widget->verticalScrollBar()->value(), 0);
}

TEST_F(GridWidgetScrollTest, ShowCellBringsTheCellIntoSight) {
    Make(100, 12);
    grid.SetFrozenCols(1);
    for (const Cell& cell : {Cell{80, 11}, Cell{2, 1}, Cell{50, 5}, Cell{100, 0}, Cell{1, 3}}) {
        grid.ShowCell(cell[0], cell[1]);
        EXPECT_EQ(widget->Layout().ShownRect(cell[0], cell[1]), widget->Layout().CellRect(cell[0], cell[1]))
            << cell[0] << "," << cell[1];
    }
}

TEST_F(GridWidgetScrollTest, ShowCellOfAHiddenRowShowsTheNextVisibleOne) {
    Make(100, 3);
    for (std::int32_t row = 60; row <= 70; ++row) {
        grid.SetRowHidden(row, true);
    }
    grid.ShowCell(65, 0);
    EXPECT_FALSE(widget->Layout().ShownRect(71, 0).isEmpty());
    grid.SetRowHidden(100, true);
    grid.ShowCell(100, 0);
    EXPECT_FALSE(widget->Layout().ShownRect(99, 0).isEmpty());
}

TEST_F(GridWidgetScrollTest, CellPlaceCountsFromTheGridsCorner) {
    Make(10, 12);
    grid.Select(3, 2);
    EXPECT_EQ(grid.CellLeft(), Port()->x() + 2 * ColumnWidth);
    EXPECT_EQ(grid.CellTop(), Port()->y() + widget->Layout().GetSizes().headerHeight + 2 * grid.CellHeight());
    EXPECT_EQ(grid.CellHeight(), widget->Layout().GetSizes().rowHeight);
}

TEST_F(GridWidgetScrollTest, ACellThatIsScrolledInPartBeginsWhereItsSightDoes) {
    Make(10, 12);
    widget->horizontalScrollBar()->setValue(ColumnWidth + 30);
    grid.Select(0, 1);  // the header, which is not brought into sight
    EXPECT_EQ(grid.CellLeft(), Port()->x());
    grid.Select(0, 2);
    EXPECT_EQ(grid.CellLeft(), Port()->x() + ColumnWidth - 30);
    grid.SetFrozenCols(1);
    QApplication::processEvents();
    widget->horizontalScrollBar()->setValue(30);
    grid.Select(0, 1);
    EXPECT_EQ(grid.CellLeft(), Port()->x() + ColumnWidth) << "behind the frozen column";
    grid.Select(0, 0);
    EXPECT_EQ(grid.CellLeft(), Port()->x());
}

TEST_F(GridWidgetScrollTest, RedrawOffLeavesThePictureAndOnAgainCatchesUp) {
    Make(100, 3);
    grid.SetRedraw(false);
    for (std::int32_t row = 1; row <= 95; ++row) {
        grid.SetRowHidden(row, true);
    }
    QApplication::processEvents();
    EXPECT_GT(widget->verticalScrollBar()->maximum(), 0);
    grid.SetRedraw(true);
    QApplication::processEvents();
    EXPECT_EQ(widget->verticalScrollBar()->maximum(), 0);
}

TEST_F(GridWidgetScrollTest, ARelayoutThatWaitsIsNotLostWhenRedrawGoesOff) {
    Make(100, 3);
    for (std::int32_t row = 1; row <= 95; ++row) {
        grid.SetRowHidden(row, true);
    }
    grid.SetRedraw(false);
    QApplication::processEvents();
    grid.SetRedraw(true);
    QApplication::processEvents();
    EXPECT_EQ(widget->verticalScrollBar()->maximum(), 0);
}

}  // namespace
}  // namespace kd
