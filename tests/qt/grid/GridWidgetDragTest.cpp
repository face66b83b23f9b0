#include <QAbstractEventDispatcher>

#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

/// The left button held down from cell to cell.
class GridWidgetDragTest : public GridFixture {};

/// Sees which grid's mouse has had a timer's event, for the length of a scope.
class TimerWatch : public QObject {
public:
    TimerWatch() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Timer && dynamic_cast<GridMouse*>(watched) != nullptr) {
            seen = watched;
        }
        return false;
    }
    /// Of the timers that it has now, in milliseconds.
    std::vector<int> Intervals() const {
        std::vector<int> intervals;
        for (const auto& timer : QAbstractEventDispatcher::instance()->registeredTimers(seen)) {
            intervals.push_back(timer.interval);
        }
        return intervals;
    }
    QObject* seen = nullptr;
};

TEST_F(GridWidgetDragTest, DraggingSelectsARectangleWithTheCurrentCellWhereItBegan) {
    Make(8, 4);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(5, 2));
    Move(Middle(2, 1), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 1, 5, 2}));
    EXPECT_EQ(Current(), (Cell{5, 2}));
    Move(Middle(6, 3), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{5, 2, 6, 3}));
    Move(Middle(1, 0), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{1, 0, 5, 2})) << "to the first of all";
    Move(Middle(8, 3));
    EXPECT_EQ(Selection(), (Cell{1, 0, 5, 2})) << "the button was let go where nobody heard of it";
    QTest::mouseRelease(Port(), Qt::LeftButton, Qt::NoModifier, Middle(1, 0));
    Move(Middle(6, 3), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{1, 0, 5, 2})) << "it has ended";
}

TEST_F(GridWidgetDragTest, APressThatWasCancelledBeginsNoDrag) {
    Make(8, 4);
    ListenToMouse();
    cancelPress = true;
    grid.Select(1, 1);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(3, 2));
    Move(Middle(5, 3), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{1, 1, 1, 1}));
    QTest::mouseRelease(Port(), Qt::LeftButton, Qt::NoModifier, Middle(5, 3));
}

TEST_F(GridWidgetDragTest, ADragStaysWhereItIsWhenAllRowsOrColumnsGo) {
    Make(3, 3);
    const QPoint to = Middle(3, 2);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 1));
    for (const bool hidden : {true, false}) {
        for (std::int32_t row = 1; row <= 3; ++row) {
            grid.SetRowHidden(row, hidden);
        }
        Move(hidden ? to : Middle(2, 1), Qt::LeftButton);
        EXPECT_EQ(Selection(), (Cell{2, 1, 2, 1})) << "rows";
    }
    for (std::int32_t col = 0; col < 3; ++col) {
        grid.SetColHidden(col, true);
    }
    Move(to, Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 1, 2, 1})) << "columns";
    QTest::mouseRelease(Port(), Qt::LeftButton, Qt::NoModifier, to);
}

TEST_F(GridWidgetDragTest, ARectangleCountsWhatIsHiddenInsideIt) {
    Make(8, 4);
    grid.SetRowHidden(3, true);
    grid.SetColHidden(2, true);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 1));
    Move(Middle(4, 3), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 1, 4, 3}));
}

TEST_F(GridWidgetDragTest, ADragCrossesTheBorderOfTheFrozenColumns) {
    Make(8, 12);
    grid.SetFrozenCols(2);
    QApplication::processEvents();
    widget->horizontalScrollBar()->setValue(3 * ColumnWidth);
    // Columns 0 and 1 stand at the left, column 5 beside them.
    EXPECT_EQ(widget->Layout().ColAt(2 * ColumnWidth + 5), 5);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 6));
    Move(Middle(4, 1), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 1, 4, 6}));
    EXPECT_EQ(Current(), (Cell{2, 6}));
}

TEST_F(GridWidgetDragTest, NothingTicksOnWhenADragBeyondAnEdgeHasEndedUnheardOrByAnotherButton) {
    Make(100, 12);
    const QPoint below(Middle(2, 2).x(), Port()->height() + 20);
    for (const bool unheard : {true, false}) {
        TimerWatch watch;
        QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 2));
        Move(below, Qt::LeftButton);
        if (unheard) {
            QTest::mouseRelease(other, Qt::LeftButton);
        } else {
            QTest::mousePress(Port(), Qt::RightButton, Qt::NoModifier, Middle(3, 2));
        }
        const int scrolled = widget->verticalScrollBar()->value();
        ASSERT_TRUE(QTest::qWaitFor([&watch] { return watch.seen != nullptr; })) << unheard;
        EXPECT_TRUE(QTest::qWaitFor([&watch] { return watch.Intervals().empty(); })) << unheard;
        EXPECT_EQ(widget->verticalScrollBar()->value(), scrolled) << unheard;
        QTest::mouseRelease(Port(), Qt::LeftButton, Qt::NoModifier, below);
        widget->verticalScrollBar()->setValue(0);
    }
    QTest::mouseRelease(Port(), Qt::RightButton, Qt::NoModifier, below);
}

TEST_F(GridWidgetDragTest, ADragThatRestsBeyondAnEdgeScrollsOnUntilItComesBackOrEnds) {
    Make(100, 12);
    TimerWatch watch;
    const QPoint inside = Middle(2, 2);
    const QPoint below(inside.x(), Port()->height() + 20);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, inside);
    Move(below, Qt::LeftButton);
    const QScrollBar& bar = *widget->verticalScrollBar();
    const int moved = bar.value();
    ASSERT_TRUE(QTest::qWaitFor([&] { return bar.value() >= moved + 2; }));
    EXPECT_EQ(watch.Intervals(), std::vector<int>{50}) << "twenty rows a second";
    EXPECT_EQ(Current(), (Cell{2, 2}));
    EXPECT_EQ(grid.EndCol(), 2);
    EXPECT_EQ(widget->Layout().ShownRect(grid.EndRow(), 2).bottom(), Port()->rect().bottom());
    Move(inside, Qt::LeftButton);
    EXPECT_TRUE(watch.Intervals().empty()) << "back among the cells";
    Move(below, Qt::LeftButton);
    QTest::mouseRelease(Port(), Qt::LeftButton, Qt::NoModifier, below);
    EXPECT_TRUE(watch.Intervals().empty()) << "it has ended";
}

TEST_F(GridWidgetDragTest, EachEdgeBelongsToItsOwnSide) {
    Make(100, 12);
    grid.SetTopRow(20);
    QScrollBar& down = *widget->verticalScrollBar();
    QScrollBar& across = *widget->horizontalScrollBar();
    across.setValue(100);
    const int first = down.value();
    const int width = Port()->width();
    const int height = Port()->height();
    const int header = widget->Layout().GetSizes().headerHeight;
    const QPoint middle = Middle(25, 3);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, middle);
    struct Case {
        const char* label;
        QPoint at;
        int rows;
        int steps;  // to the right
    };
    for (const Case& c : {
             Case{"among the cells", middle, 0, 0},
             Case{"first pixel of the cells", {0, header}, 0, 0},
             Case{"last pixel of the cells", {width - 1, height - 1}, 0, 0},
             Case{"header", {0, header - 1}, -1, 0},
             Case{"below", {0, height}, 1, 0},
             Case{"left", {-1, header}, 0, -1},
             Case{"right", {width, height - 1}, 0, 1},
             Case{"left and above", {-1, header - 1}, -1, -1},
             Case{"right and below", {width, height}, 1, 1},
         }) {
        down.setValue(first);
        across.setValue(100);
        Move(c.at, Qt::LeftButton);
        EXPECT_EQ(down.value() - first, c.rows) << c.label;
        EXPECT_EQ(across.value() - 100, c.steps * across.singleStep()) << c.label;
    }
    QTest::mouseRelease(Port(), Qt::LeftButton, Qt::NoModifier, middle);
}

TEST_F(GridWidgetDragTest, ADragBeyondAnEdgeScrolls) {
    Make(100, 12);
    grid.SetTopRow(20);
    widget->horizontalScrollBar()->setValue(100);
    const int before = widget->verticalScrollBar()->value();
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(25, 2));
    Move(QPoint(Middle(25, 2).x(), Port()->height() + 20), Qt::LeftButton);
    EXPECT_EQ(widget->verticalScrollBar()->value(), before + 1);
    EXPECT_GT(grid.EndRow(), 25);
    Move(QPoint(Middle(25, 2).x(), 2), Qt::LeftButton);
    EXPECT_EQ(widget->verticalScrollBar()->value(), before);
    EXPECT_EQ(grid.EndRow(), 20);
    Move(QPoint(Port()->width() + 5, Middle(25, 2).y()), Qt::LeftButton);
    EXPECT_GT(widget->horizontalScrollBar()->value(), 100);
    Move(QPoint(-5, Middle(25, 2).y()), Qt::LeftButton);
    EXPECT_EQ(widget->horizontalScrollBar()->value(), 100);
}

TEST_F(GridWidgetDragTest, ADragBelowTheLastRowTakesTheLastRow) {
    Make(4, 2);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 0));
    Move(QPoint(390, 250), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 0, 4, 1}));
}

}  // namespace
}  // namespace kd
