#include <QAbstractEventDispatcher>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QToolTip>
#include <QWheelEvent>

#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridWidgetMouseTest : public GridFixture {};

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
    QObject* seen = nullptr;
};

TEST_F(GridWidgetMouseTest, PressGoesBeforeMouseDownThenSelectionThenMouseDownThenMouseUp) {
    Make(5, 3);
    ListenToMouse();
    grid.RowColChange = [this] { history.push_back("RowColChange"); };
    Click(2, 1);
    EXPECT_EQ(history, (History{"Before 1 0 at 2,1", "RowColChange", "Down 1 0 at 2,1", "Up 1 0 at 2,1"}));
    EXPECT_EQ(Current(), (Cell{2, 1}));
}

TEST_F(GridWidgetMouseTest, EveryButtonGoesThroughTheSameEvents) {
    Make(5, 3);
    ListenToMouse();
    struct Case {
        const char* label;
        Qt::MouseButton button;
        const char* number;
    };
    for (const Case& c : {Case{"left", Qt::LeftButton, "1"}, Case{"right", Qt::RightButton, "2"},
                          Case{"middle", Qt::MiddleButton, "4"}}) {
        history.clear();
        Click(3, 1, Qt::NoModifier, c.button);
        const std::string tail = std::string(" ") + c.number + " 0 at 3,1";
        EXPECT_EQ(history, (History{"Before" + tail, "Down" + tail, "Up" + tail})) << c.label;
    }
}

TEST_F(GridWidgetMouseTest, OnlyTheLeftButtonMovesTheCurrentCell) {
    Make(5, 3);
    grid.Select(1, 1);
    Click(3, 2, Qt::NoModifier, Qt::RightButton);
    Click(3, 2, Qt::NoModifier, Qt::MiddleButton);
    EXPECT_EQ(Current(), (Cell{1, 1}));
}

TEST_F(GridWidgetMouseTest, ACancelledPressEndsThere) {
    Make(5, 3);
    ListenToMouse();
    cancelPress = true;
    grid.Select(1, 1);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        history.clear();
        Click(3, 2, Qt::NoModifier, button);
        EXPECT_EQ(history.size(), 1U) << button;
    }
    EXPECT_EQ(Current(), (Cell{1, 1}));
}

TEST_F(GridWidgetMouseTest, HeaderPressesOfEveryButtonComeFirst) {
    Make(5, 3);
    grid.SetFrozenCols(1);
    grid.BeforeMouseDown = [this](MouseButton, int, int, int, bool& cancel) {
        history.push_back(std::to_string(grid.MouseRow()) + "," + std::to_string(grid.MouseCol()));
        grid.Select(0, grid.MouseCol());
        cancel = true;
    };
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        Click(0, 2, Qt::NoModifier, button);
    }
    EXPECT_EQ(history, (History{"0,2", "0,2", "0,2"}));
    EXPECT_EQ(Current(), (Cell{0, 2}));
    EXPECT_EQ(grid.CellTop(), widget->viewport()->y());
    EXPECT_EQ(grid.CellLeft(), widget->viewport()->x() + 2 * ColumnWidth);
    EXPECT_EQ(grid.CellHeight(), widget->Layout().GetSizes().headerHeight);
}

TEST_F(GridWidgetMouseTest, ModifiersAreToldAsBits) {
    Make(5, 3);
    ListenToMouse();
    Click(2, 1, Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(history.front(), "Before 1 7 at 2,1");
}

TEST_F(GridWidgetMouseTest, APressBesideTheCellsTellsMinusOneAndSelectsNothing) {
    Make(3, 2);
    ListenToMouse();
    grid.Select(1, 1);
    QTest::mouseClick(Port(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 280));
    EXPECT_EQ(history.front(), "Before 1 0 at -1,0");
    history.clear();
    QTest::mouseClick(Port(), Qt::LeftButton, Qt::NoModifier, QPoint(390, Middle(1, 0).y()));
    EXPECT_EQ(history.front(), "Before 1 0 at 1,-1");
    history.clear();
    QTest::mouseClick(Port(), Qt::LeftButton, Qt::NoModifier, QPoint(390, 5));
    EXPECT_EQ(history.front(), "Before 1 0 at 0,-1");
    EXPECT_EQ(Current(), (Cell{1, 1}));
}

TEST_F(GridWidgetMouseTest, DraggingSelectsARectangleWithTheCurrentCellWhereItBegan) {
    Make(8, 4);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(5, 2));
    Move(Middle(2, 1), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 1, 5, 2}));
    EXPECT_EQ(Current(), (Cell{5, 2}));
    Move(Middle(6, 3), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{5, 2, 6, 3}));
    QTest::mouseRelease(Port(), Qt::LeftButton, Qt::NoModifier, Middle(6, 3));
    Move(Middle(1, 0));
    EXPECT_EQ(Selection(), (Cell{5, 2, 6, 3}));
}

TEST_F(GridWidgetMouseTest, ARectangleCountsWhatIsHiddenInsideIt) {
    Make(8, 4);
    grid.SetRowHidden(3, true);
    grid.SetColHidden(2, true);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 1));
    Move(Middle(4, 3), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 1, 4, 3}));
}

TEST_F(GridWidgetMouseTest, ADragCrossesTheBorderOfTheFrozenColumns) {
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

TEST_F(GridWidgetMouseTest, NothingTicksOnWhenADragBeyondAnEdgeHasEndedUnheard) {
    Make(100, 12);
    TimerWatch watch;
    const QPoint below(Middle(2, 2).x(), Port()->height() + 20);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 2));
    Move(below, Qt::LeftButton);
    QTest::mouseRelease(other, Qt::LeftButton);
    const int scrolled = widget->verticalScrollBar()->value();
    ASSERT_TRUE(QTest::qWaitFor([&watch] { return watch.seen != nullptr; }));
    EXPECT_TRUE(QTest::qWaitFor(
        [&watch] { return QAbstractEventDispatcher::instance()->registeredTimers(watch.seen).isEmpty(); }));
    EXPECT_EQ(widget->verticalScrollBar()->value(), scrolled);
}

TEST_F(GridWidgetMouseTest, ADragBeyondAnEdgeScrolls) {
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

TEST_F(GridWidgetMouseTest, ADragBelowTheLastRowTakesTheLastRow) {
    Make(4, 2);
    QTest::mousePress(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 0));
    Move(QPoint(390, 250), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 0, 4, 1}));
}

TEST_F(GridWidgetMouseTest, ShiftAndClickExtendsTheSelection) {
    Make(8, 4);
    Click(5, 2);
    Click(3, 3, Qt::ShiftModifier);
    EXPECT_EQ(Selection(), (Cell{3, 2, 5, 3}));
    EXPECT_EQ(Current(), (Cell{5, 2}));
    Click(1, 1);
    EXPECT_EQ(Selection(), (Cell{1, 1, 1, 1}));
}

TEST_F(GridWidgetMouseTest, ShiftAndClickWithoutACurrentCellOnlyPicks) {
    Make(8, 4);
    Click(3, 3, Qt::ShiftModifier);
    EXPECT_EQ(Selection(), (Cell{3, 3, 3, 3}));
}

TEST_F(GridWidgetMouseTest, MovesTellTheCellBelowThePointer) {
    Make(5, 3);
    grid.MouseMove = [this](MouseButton, int, int, int) {
        history.push_back(std::to_string(grid.MouseRow()) + "," + std::to_string(grid.MouseCol()));
    };
    Move(Middle(0, 1));
    Move(Middle(2, 2));
    Move(QPoint(395, 280));
    EXPECT_EQ(history, (History{"0,1", "2,2", "-1,-1"}));
    QEvent leave(QEvent::Leave);
    Move(Middle(2, 2));
    QApplication::sendEvent(Port(), &leave);
    EXPECT_EQ(grid.MouseRow(), -1);
    EXPECT_EQ(grid.MouseCol(), -1);
}

TEST_F(GridWidgetMouseTest, CoordinatesCountFromTheGridsCorner) {
    Make(5, 3);
    QPoint told;
    grid.MouseDown = [&](MouseButton, int, int x, int y) { told = {x, y}; };
    Click(2, 1);
    EXPECT_EQ(told, Middle(2, 1) + Port()->pos());
}

TEST_F(GridWidgetMouseTest, TheWheelScrollsThreeRowsANotch) {
    Make(200, 12);
    const auto turn = [&](QPoint angle, Qt::KeyboardModifiers modifiers) {
        QWheelEvent wheel(Middle(3, 1), Port()->mapToGlobal(Middle(3, 1)), QPoint(), angle, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(Port(), &wheel);
    };
    turn({0, -120}, Qt::NoModifier);
    EXPECT_EQ(widget->verticalScrollBar()->value(), QApplication::wheelScrollLines());
    EXPECT_EQ(widget->horizontalScrollBar()->value(), 0);
    turn({-120, 0}, Qt::NoModifier);
    const int sideways = widget->horizontalScrollBar()->value();
    EXPECT_GT(sideways, 0);
    turn({0, -120}, Qt::ShiftModifier);
    EXPECT_EQ(widget->horizontalScrollBar()->value(), 2 * sideways);
    EXPECT_EQ(widget->verticalScrollBar()->value(), QApplication::wheelScrollLines());
}

TEST_F(GridWidgetMouseTest, TheMenuKeyIsARightPressOnTheCurrentCell) {
    Make(50, 3);
    ListenToMouse();
    grid.Select(40, 1);
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    EXPECT_TRUE(QApplication::sendEvent(widget, &menu));
    EXPECT_TRUE(menu.isAccepted()) << "no other menu opens for it";
    EXPECT_EQ(history, (History{"Before 2 0 at 40,1", "Down 2 0 at 40,1", "Up 2 0 at 40,1"}));
    EXPECT_FALSE(widget->Layout().ShownRect(40, 1).isEmpty());
}

TEST_F(GridWidgetMouseTest, AMenuOfTheMenuKeyBelongsBelowTheCurrentCell) {
    Make(5, 3);
    QPoint place;
    grid.MouseUp = [&](MouseButton, int, int, int) { place = widget->MenuPlace(); };
    grid.Select(3, 1);
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(widget, &menu);
    EXPECT_EQ(place, Port()->mapToGlobal(widget->Layout().CellRect(3, 1).bottomLeft()));
    EXPECT_EQ(widget->MenuPlace(), QCursor::pos());
}

TEST_F(GridWidgetMouseTest, AMenuAskedForByMouseIsLeftToTheMouseEvents) {
    Make(5, 3);
    ListenToMouse();
    grid.Select(3, 1);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, Middle(2, 1), Port()->mapToGlobal(Middle(2, 1)));
    QApplication::sendEvent(Port(), &menu);
    EXPECT_TRUE(history.empty());
}

TEST_F(GridWidgetMouseTest, TheGridsToolTipIsShownAndGoesWithItsText) {
    Make(5, 3);
    const auto rest = [&] {
        QHelpEvent help(QEvent::ToolTip, Middle(0, 1), Port()->mapToGlobal(Middle(0, 1)));
        QApplication::sendEvent(Port(), &help);
        return help.isAccepted() ? QToolTip::text() : QString("none");
    };
    EXPECT_EQ(rest(), QString("none"));
    grid.SetToolTipText(" Click to Filter Column ");
    EXPECT_EQ(rest(), QString("<p style=\"white-space:pre-wrap\"> Click to Filter Column </p>"));
    grid.SetToolTipText(" Equals \"<i>\" ");
    EXPECT_EQ(QToolTip::text(), GridMouse::ToolTipMarkup(" Equals \"<i>\" "));
    grid.SetToolTipText("");
    EXPECT_EQ(rest(), QString("none"));
}

TEST_F(GridWidgetMouseTest, ToolTipIsTheTextAsTypedCutAfterAThousandCharacters) {
    EXPECT_EQ(GridMouse::ToolTipMarkup(""), QString());
    EXPECT_EQ(
        GridMouse::ToolTipMarkup(" Equals \"<b>x</b> & y\" "),
        QString("<p style=\"white-space:pre-wrap\"> Equals &quot;&lt;b&gt;x&lt;/b&gt; &amp; y&quot; </p>"));
    const QString exact = GridMouse::ToolTipMarkup(std::string(1000, 'x'));
    EXPECT_FALSE(exact.contains(QChar(0x2026)));
    const QString cut = GridMouse::ToolTipMarkup(std::string(1001, '<'));
    EXPECT_EQ(cut.count("&lt;"), 1000);
    EXPECT_TRUE(cut.contains(QString("&lt;") + QChar(0x2026)));
}

}  // namespace
}  // namespace kd
