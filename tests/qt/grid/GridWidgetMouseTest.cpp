#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QToolTip>
#include <QWheelEvent>

#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridWidgetMouseTest : public GridFixture {};

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

TEST_F(GridWidgetMouseTest, EachEventOfTheMouseIsToldOnceAndEndsInTheGrid) {
    Make(5, 3);
    ListenToMouse();
    grid.MouseMove = [this](MouseButton, int, int, int) { history.emplace_back("Move"); };
    struct Case {
        const char* label;
        QEvent::Type type;
        Qt::MouseButton button;
        Qt::MouseButtons buttons;
        History history;
    };
    const History pressed{"Before 1 0 at 0,1", "Down 1 0 at 0,1"};
    const History released{"Up 1 0 at 0,1"};
    for (const Case& c : {
             Case{"press", QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton, pressed},
             Case{"move", QEvent::MouseMove, Qt::NoButton, Qt::LeftButton, {"Move"}},
             Case{"release", QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton, released},
             Case{"second press", QEvent::MouseButtonDblClick, Qt::LeftButton, Qt::LeftButton, pressed},
             Case{"second release", QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton, released},
         }) {
        history.clear();
        const QPoint at = Middle(0, 1);
        QMouseEvent event(c.type, at, Port()->mapToGlobal(at), c.button, c.buttons, Qt::NoModifier);
        QApplication::sendEvent(Port(), &event);
        EXPECT_EQ(history, c.history) << c.label;
        EXPECT_TRUE(event.isAccepted()) << c.label;
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
    widget->setFrameShape(QFrame::Box);
    widget->setFrameShadow(QFrame::Plain);
    widget->setLineWidth(5);
    widget->resize(410, 310);
    ASSERT_NE(Port()->pos(), QPoint());
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
        return wheel.isAccepted();
    };
    turn({0, -120}, Qt::NoModifier);
    EXPECT_EQ(widget->verticalScrollBar()->value(), QApplication::wheelScrollLines());
    EXPECT_EQ(widget->horizontalScrollBar()->value(), 0);
    turn({-120, 0}, Qt::NoModifier);
    const int sideways = widget->horizontalScrollBar()->value();
    EXPECT_GT(sideways, 0);
    EXPECT_TRUE(turn({0, -120}, Qt::ShiftModifier));
    EXPECT_EQ(widget->horizontalScrollBar()->value(), 2 * sideways);
    turn({-120, -30}, Qt::ShiftModifier);
    EXPECT_GT(widget->horizontalScrollBar()->value(), 2 * sideways)
        << "what goes sideways already does so still";
    widget->horizontalScrollBar()->setValue(widget->horizontalScrollBar()->maximum());
    EXPECT_FALSE(turn({0, -120}, Qt::ShiftModifier)) << "at the end";
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

TEST_F(GridWidgetMouseTest, TheMenuKeyPressesNothingWithoutACurrentCellOrWhereItIsHidden) {
    Make(5, 3);
    grid.SetRowHidden(3, true);
    ListenToMouse();
    struct Case {
        const char* label;
        std::int32_t row;
        std::size_t told;
    };
    for (const Case& c : {Case{"none", 0, 0}, Case{"the first row's", 1, 3}, Case{"a hidden row's", 3, 0}}) {
        grid.Select(c.row, 1);
        history.clear();
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        QApplication::sendEvent(widget, &menu);
        EXPECT_EQ(history.size(), c.told) << c.label;
    }
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
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
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
