#include <QContextMenuEvent>
#include <QPaintEvent>

#include "qt/grid/ColumnWidths.h"
#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridWidgetScrollTest : public GridFixture {
protected:
    /// Until nothing follows any more from scroll bars that come and go.
    static void Settle() {
        for (int pass = 0; pass < 4; ++pass) {
            QApplication::processEvents();
        }
    }
    /// Without scroll bars the viewport is then as large as so many columns and rows below the header.
    void Resize(int cols, int rows) const {
        const GridLayout::Sizes& sizes = widget->Layout().GetSizes();
        const QSize cells(cols * ColumnWidth, sizes.headerHeight + rows * sizes.rowHeight);
        widget->resize(cells + widget->size() - widget->maximumViewportSize());
        Settle();
    }
    void HideRows(std::int32_t first, std::int32_t last, bool hidden) {
        for (std::int32_t row = first; row <= last; ++row) {
            grid.SetRowHidden(row, hidden);
        }
        Settle();
    }
    std::int32_t TopRow() const { return widget->Layout().RowAt(widget->Layout().GetSizes().headerHeight); }
    int Down() const { return widget->verticalScrollBar()->value(); }
    int Across() const { return widget->horizontalScrollBar()->value(); }
};

/// Sees what of a widget is painted.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget& of) {
        QApplication::processEvents();
        of.installEventFilter(this);
    }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            m_painted += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
    /// Since the last time.
    QRect Painted() {
        QApplication::processEvents();
        return std::exchange(m_painted, {}).boundingRect();
    }

private:
    QRegion m_painted;
};

/// A scroll area that tells its GridScroll what happens to it, and no more.
class PlainArea : public QAbstractScrollArea {
public:
    explicit PlainArea(VSFlexGrid& grid) : m_manner(grid), scroll(*this, grid, m_manner) {
        scroll.Moved = [this](bool anew) { m_moved.push_back(anew ? "anew" : "scrolled"); };
        resize(400, 300);
        show();
        (void)Moved();
    }
    /// What has been told since the last time.
    History Moved() {
        for (int pass = 0; pass < 4; ++pass) {
            QApplication::processEvents();
        }
        return std::exchange(m_moved, {});
    }

protected:
    void resizeEvent(QResizeEvent* /*event*/) override { scroll.Resized(); }
    void scrollContentsBy(int /*dx*/, int /*dy*/) override { scroll.Scrolled(); }

private:
    CellManner m_manner;
    History m_moved;

public:
    GridScroll scroll;
};

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

TEST_F(GridWidgetScrollTest, ScrollBarsComeAndGoWithWhatDoesNotFit) {
    Make(100, 12);
    Resize(4, 8);
    struct Case {
        const char* label;
        std::int32_t cols;
        std::int32_t rows;
        bool fits;
    };
    for (const Case& c : {
             Case{"both fit to the pixel", 4, 8, true},
             Case{"a row more covers a column", 4, 9, false},
             Case{"a column more covers a row", 5, 8, false},
             Case{"a row and a column more", 5, 9, false},
             Case{"both fit again", 4, 8, true},
             Case{"many of both", 12, 100, false},
             Case{"both fit once more", 4, 8, true},
         }) {
        grid.SetRedraw(false);
        grid.SetRows(c.rows + 1);
        for (std::int32_t col = 0; col < 12; ++col) {
            grid.SetColHidden(col, col >= c.cols);
        }
        grid.SetRedraw(true);
        Settle();
        const int down = widget->verticalScrollBar()->maximum();
        const int across = widget->horizontalScrollBar()->maximum();
        EXPECT_EQ(Port()->size() == widget->maximumViewportSize(), c.fits) << c.label;
        EXPECT_EQ(down == 0, c.fits) << c.label;
        EXPECT_EQ(across == 0, c.fits) << c.label;
        EXPECT_EQ(down, c.rows - widget->Layout().FullRows()) << c.label;
        EXPECT_EQ(across, c.cols * ColumnWidth - Port()->width()) << c.label;
    }
}

TEST_F(GridWidgetScrollTest, ScrollBarsFollowTheSizeOfTheGrid) {
    Make(100, 12);
    Resize(3, 5);
    const int down = widget->verticalScrollBar()->maximum();
    Resize(6, 9);
    EXPECT_EQ(widget->verticalScrollBar()->maximum(), 100 - widget->Layout().FullRows());
    EXPECT_LT(widget->verticalScrollBar()->maximum(), down);
    EXPECT_EQ(widget->horizontalScrollBar()->maximum(), 12 * ColumnWidth - Port()->width());
}

TEST_F(GridWidgetScrollTest, ScrollBarsStepByARowAndByHalfAColumnAndPageByWhatIsInSight) {
    Make(100, 12);
    grid.SetFrozenCols(2);
    Settle();
    const QScrollBar& down = *widget->verticalScrollBar();
    const QScrollBar& across = *widget->horizontalScrollBar();
    EXPECT_EQ(down.singleStep(), 1);
    EXPECT_EQ(down.pageStep(), widget->Layout().FullRows());
    EXPECT_EQ(across.singleStep(), widget->Layout().GetSizes().defaultColWidth / 2);
    EXPECT_EQ(across.pageStep(), Port()->width() - 2 * ColumnWidth);
    grid.SetColWidth(0, Port()->width());
    Settle();
    EXPECT_EQ(across.pageStep(), 1) << "the frozen ones leave nothing in sight";
}

TEST_F(GridWidgetScrollTest, ScrollBarsStandAtTheRightInEveryLanguage) {
    Make(100, 12);
    top->setLayoutDirection(Qt::RightToLeft);
    Settle();
    EXPECT_GT(widget->verticalScrollBar()->mapTo(widget, QPoint()).x(), Port()->geometry().right());
    EXPECT_EQ(Across(), 0);
    EXPECT_EQ(widget->Layout().CellRect(1, 0).left(), 0);
}

TEST_F(GridWidgetScrollTest, CellsAreTakenToMoveAnewOnceALayoutAndElseByScrolling) {
    VSFlexGrid plain("Plain");
    plain.SetCols(12);
    plain.SetRows(101);
    for (std::int32_t col = 0; col < 12; ++col) {
        plain.SetColWidth(col, ColumnWidth);
    }
    PlainArea area(plain);
    area.scroll.LayoutChanged();
    area.scroll.LayoutChanged();
    EXPECT_TRUE(area.scroll.Queued());
    EXPECT_EQ(area.Moved(), History{"anew"});
    EXPECT_FALSE(area.scroll.Queued());
    area.verticalScrollBar()->setValue(area.verticalScrollBar()->maximum());
    area.horizontalScrollBar()->setValue(33);
    EXPECT_EQ(area.Moved(), (History{"scrolled", "scrolled"}));
    for (std::int32_t row = 1; row <= 30; ++row) {
        plain.SetRowHidden(row, true);
    }
    area.scroll.LayoutChanged();
    EXPECT_EQ(area.Moved(), History{"anew"}) << "though the rows have moved up";
}

TEST_F(GridWidgetScrollTest, AHiddenColumnIsSizedForWhenItIsShown) {
    VSFlexGrid plain("Plain");
    plain.SetCols(3);
    plain.SetRows(101);
    PlainArea area(plain);
    plain.SetColHidden(1, true);
    area.scroll.LayoutChanged();
    area.scroll.SizeColumn(1, 50);
    EXPECT_EQ(plain.ColWidth(1), 50);
    plain.SetTextMatrix(70, 1, "a text that is wider than its column");
    area.scroll.FitColumn(1);
    EXPECT_EQ(plain.ColWidth(1), ColumnWidths(plain, area.scroll.Widths(), 1, 1).front());
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

TEST_F(GridWidgetScrollTest, TheTopRowStaysHoweverItCameThereWhenRowsAreHiddenAndShown) {
    Make(100, 3);
    grid.SetTopRow(80);
    HideRows(1, 30, true);
    EXPECT_EQ(TopRow(), 80);
    HideRows(1, 30, false);
    EXPECT_EQ(TopRow(), 80);
    widget->verticalScrollBar()->setValue(49);
    HideRows(1, 30, true);
    EXPECT_EQ(TopRow(), 50) << "by the scroll bar";
    HideRows(55, 100, true);
    const std::int32_t nowOnTop = TopRow();
    ASSERT_LT(nowOnTop, 50) << "there are not enough rows below it";
    HideRows(55, 100, false);
    EXPECT_EQ(TopRow(), nowOnTop) << "where the rows had ended";
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

TEST_F(GridWidgetScrollTest, ShowCellScrollsNoFurtherThanItMust) {
    Make(100, 12);
    grid.SetFrozenCols(1);
    Settle();
    const int page = widget->Layout().FullRows();
    grid.ShowCell(80, 6);
    EXPECT_EQ(Down(), 80 - page) << "the last one in sight";
    EXPECT_EQ(widget->Layout().CellRect(80, 6).right() + 1, Port()->width());
    const int across = Across();
    grid.ShowCell(81 - page, 6);
    EXPECT_EQ(Down(), 80 - page) << "the first one in sight";
    grid.ShowCell(80, 5);
    EXPECT_EQ((Cell{Down(), Across()}), (Cell{80 - page, across})) << "it is in sight";
    grid.ShowCell(20, 2);
    EXPECT_EQ(TopRow(), 20);
    EXPECT_EQ(widget->Layout().CellRect(20, 2).left(), ColumnWidth) << "beside the frozen one";
    grid.ShowCell(20, 0);
    grid.ShowCell(0, 2);
    EXPECT_EQ((Cell{Down(), Across()}), (Cell{19, ColumnWidth})) << "frozen ones and headers always are";
}

TEST_F(GridWidgetScrollTest, RowsThatHaveJustComeAreShownAtOnce) {
    Make(50, 3);
    grid.SetRows(201);
    (void)widget->Layout();
    grid.ShowCell(200, 0);
    EXPECT_EQ(widget->Layout().ShownRect(200, 0), widget->Layout().CellRect(200, 0));
    grid.SetRows(401);
    (void)widget->Layout();
    grid.SetTopRow(350);
    EXPECT_EQ(TopRow(), 350);
}

TEST_F(GridWidgetScrollTest, ACellThatIsAskedForBeforeTheGridIsOnTheScreenIsInSightThere) {
    VSFlexGrid early("Early");
    early.SetCols(1);
    early.SetRows(101);
    GridWidget unseen(early);
    early.ShowCell(80, 0);
    unseen.resize(640, 600);  // no lower than it was
    unseen.show();
    Settle();
    EXPECT_FALSE(unseen.Layout().ShownRect(80, 0).isEmpty());
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

TEST_F(GridWidgetScrollTest, AHiddenCurrentCellIsPlacedAtTheCorner) {
    Make(5, 3);
    grid.Select(2, 1);
    grid.SetColHidden(1, true);
    EXPECT_EQ((Cell{grid.CellLeft(), grid.CellTop(), grid.CellHeight()}),
              (Cell{Port()->x(), Port()->y(), 0}));
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

TEST_F(GridWidgetScrollTest, CellsStayWhereTheyAreWhileRedrawIsOff) {
    Make(5, 3);
    grid.SetRedraw(false);
    grid.SetColWidth(0, ColumnWidth + 40);
    EXPECT_EQ(widget->Layout().CellRect(1, 1).left(), ColumnWidth);
    grid.SetRedraw(true);
    EXPECT_EQ(widget->Layout().CellRect(1, 1).left(), ColumnWidth + 40);
}

TEST_F(GridWidgetScrollTest, AListWithoutColumnsHasNothingToStretch) {
    Make(5, 1, std::make_unique<ListManner>(grid));
    grid.SetCols(0);
    EXPECT_NO_THROW(EXPECT_EQ(widget->Layout().TotalWidth(), 0));
    Settle();
    EXPECT_EQ(widget->horizontalScrollBar()->maximum(), 0);
}

TEST_F(GridWidgetScrollTest, EachCellInSightIsPaintedAnewWhenItChanges) {
    Make(500, 3);
    widget->verticalScrollBar()->setValue(7);
    const std::int32_t last = widget->Layout().RowAt(Port()->height() - 1);
    PaintWatch watch(*Port());
    for (const std::int32_t row : {0, 8, 9, last - 1, last}) {
        (void)watch.Painted();
        grid.SetTextMatrix(row, 1, "new");
        EXPECT_EQ(watch.Painted(), widget->Layout().ShownRect(row, 1)) << row;
    }
}

TEST_F(GridWidgetScrollTest, TheSelectionAndTheFocusArePaintedWhenTheyChange) {
    Make(5, 1, std::make_unique<ListManner>(grid));
    PaintWatch watch(*Port());
    const QRect current = widget->Layout().CellRect(2, 0);
    grid.Select(2, 0);
    EXPECT_TRUE(watch.Painted().contains(current)) << "the current row has a frame";
    other->setFocus();
    EXPECT_TRUE(watch.Painted().contains(current)) << "without the keyboard it has none";
    widget->setFocus();
    EXPECT_TRUE(watch.Painted().contains(current));
    grid.SetIsSelected(3, true);
    EXPECT_TRUE(watch.Painted().contains(widget->Layout().CellRect(3, 0)));
}

TEST_F(GridWidgetScrollTest, ThePointerIsHeardWithoutAButtonAndInputMethodsWhereCellsAreEdited) {
    Make(5, 3);
    EXPECT_TRUE(Port()->hasMouseTracking());
    EXPECT_TRUE(widget->testAttribute(Qt::WA_InputMethodEnabled));
    Make(5, 1, std::make_unique<ListManner>(grid));
    EXPECT_TRUE(Port()->hasMouseTracking());
    EXPECT_FALSE(widget->testAttribute(Qt::WA_InputMethodEnabled));
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

TEST_F(GridWidgetScrollTest, TheEditorTakesANewColourOfItsCellOutOfSightAndAheadOfALayoutToo) {
    Make(100, 3);
    grid.Select(2, 1);
    QTest::keyClick(widget, Qt::Key_F2);
    ASSERT_TRUE(grid.EditWindow());
    widget->verticalScrollBar()->setValue(50);
    grid.SetBackColor(2, 1, ChangedColour);
    EXPECT_EQ(Editor()->palette().color(QPalette::Base), QColor(0xFF, 0xFF, 0xC0));
    grid.SetColWidth(0, ColumnWidth + 1);
    grid.SetBackColor(2, 1, 0);
    EXPECT_EQ(Editor()->palette().color(QPalette::Base), widget->palette().color(QPalette::Base));
}

}  // namespace
}  // namespace kd
