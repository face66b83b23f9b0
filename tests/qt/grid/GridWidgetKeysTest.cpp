#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridWidgetKeysTest : public GridFixture {
protected:
    /// 60 rows and 6 columns, of which rows 1, 3 and 60 and columns 0 and 3 are hidden.
    void MakeWithGaps() {
        Make(60, 6);
        for (const std::int32_t row : {1, 3, 60}) {
            grid.SetRowHidden(row, true);
        }
        grid.SetColHidden(0, true);
        grid.SetColHidden(3, true);
    }
};

struct MoveCase {
    const char* label;
    Cell from;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    Cell to;
};

TEST_F(GridWidgetKeysTest, MovementSkipsWhatIsHidden) {
    MakeWithGaps();
    const auto none = Qt::NoModifier;
    const auto ctrl = Qt::ControlModifier;
    const int page = widget->Layout().FullRows();
    for (const MoveCase& c : {
             MoveCase{"down", {4, 1}, Qt::Key_Down, none, {5, 1}},
             MoveCase{"down over a hidden row", {2, 1}, Qt::Key_Down, none, {4, 1}},
             MoveCase{"down at the last row", {59, 1}, Qt::Key_Down, none, {59, 1}},
             MoveCase{"up over a hidden row", {4, 1}, Qt::Key_Up, none, {2, 1}},
             MoveCase{"up at the first row", {2, 1}, Qt::Key_Up, none, {2, 1}},
             MoveCase{"right over a hidden column", {4, 2}, Qt::Key_Right, none, {4, 4}},
             MoveCase{"right at the last column", {4, 5}, Qt::Key_Right, none, {4, 5}},
             MoveCase{"left over a hidden column", {4, 4}, Qt::Key_Left, none, {4, 2}},
             MoveCase{"left at the first column", {4, 1}, Qt::Key_Left, none, {4, 1}},
             MoveCase{"home", {4, 4}, Qt::Key_Home, none, {4, 1}},
             MoveCase{"end", {4, 2}, Qt::Key_End, none, {4, 5}},
             MoveCase{"ctrl home", {30, 4}, Qt::Key_Home, ctrl, {2, 1}},
             MoveCase{"ctrl end", {30, 4}, Qt::Key_End, ctrl, {59, 5}},
             MoveCase{"ctrl up", {30, 4}, Qt::Key_Up, ctrl, {2, 4}},
             MoveCase{"ctrl down", {30, 4}, Qt::Key_Down, ctrl, {59, 4}},
             MoveCase{"page down", {4, 1}, Qt::Key_PageDown, none, {4 + page, 1}},
             MoveCase{"page up", {40, 1}, Qt::Key_PageUp, none, {40 - page, 1}},
             MoveCase{"page up at the top", {5, 1}, Qt::Key_PageUp, none, {2, 1}},
             MoveCase{"down from a hidden row", {3, 1}, Qt::Key_Down, none, {4, 1}},
             MoveCase{"up from a hidden row", {3, 1}, Qt::Key_Up, none, {2, 1}},
             MoveCase{"down from a hidden last row", {60, 1}, Qt::Key_Down, none, {59, 1}},
             MoveCase{"up from a hidden first row", {1, 1}, Qt::Key_Up, none, {2, 1}},
             MoveCase{"right from a hidden column", {4, 3}, Qt::Key_Right, none, {4, 4}},
             MoveCase{"left from a hidden column", {4, 3}, Qt::Key_Left, none, {4, 2}},
             MoveCase{"down in a hidden column", {4, 3}, Qt::Key_Down, none, {5, 4}},
             MoveCase{"down from the header", {0, 2}, Qt::Key_Down, none, {2, 2}},
             MoveCase{"up from the header", {0, 2}, Qt::Key_Up, none, {2, 2}},
             MoveCase{"right from the header", {0, 2}, Qt::Key_Right, none, {2, 2}},
             MoveCase{"page down from the header", {0, 2}, Qt::Key_PageDown, none, {2, 2}},
             MoveCase{"tab", {4, 2}, Qt::Key_Tab, none, {4, 4}},
             MoveCase{"tab at the row's end", {4, 5}, Qt::Key_Tab, none, {5, 1}},
             MoveCase{"backtab", {4, 4}, Qt::Key_Backtab, none, {4, 2}},
             MoveCase{"backtab at the row's beginning", {4, 1}, Qt::Key_Backtab, none, {2, 5}},
         }) {
        grid.Select(c.from[0], c.from[1]);
        Press(c.key, c.modifiers);
        EXPECT_EQ(Current(), c.to) << c.label;
        EXPECT_EQ(Selection(), (Cell{c.to[0], c.to[1], c.to[0], c.to[1]})) << c.label;
        EXPECT_FALSE(widget->Layout().ShownRect(c.to[0], c.to[1]).isEmpty()) << c.label;
    }
}

TEST_F(GridWidgetKeysTest, ShiftMovesTheOppositeCorner) {
    MakeWithGaps();
    struct Case {
        const char* label;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        Cell to;
    };
    for (const Case& c : {
             Case{"down", Qt::Key_Down, Qt::NoModifier, {4, 2, 5, 2}},
             Case{"up", Qt::Key_Up, Qt::NoModifier, {2, 2, 4, 2}},
             Case{"right", Qt::Key_Right, Qt::NoModifier, {4, 2, 4, 4}},
             Case{"left", Qt::Key_Left, Qt::NoModifier, {4, 1, 4, 2}},
             Case{"end", Qt::Key_End, Qt::NoModifier, {4, 2, 4, 5}},
             Case{"ctrl end", Qt::Key_End, Qt::ControlModifier, {4, 2, 59, 5}},
         }) {
        grid.Select(4, 2);
        Press(c.key, c.modifiers | Qt::ShiftModifier);
        EXPECT_EQ(Selection(), c.to) << c.label;
        EXPECT_EQ(Current(), (Cell{4, 2})) << c.label;
    }
}

TEST_F(GridWidgetKeysTest, ShiftFromTheHeaderOnlyMoves) {
    MakeWithGaps();
    grid.Select(0, 2);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selection(), (Cell{2, 2, 2, 2}));
}

TEST_F(GridWidgetKeysTest, NothingMovesWhereNothingIsInSight) {
    Make(3, 2);
    for (std::int32_t row = 1; row <= 3; ++row) {
        grid.SetRowHidden(row, true);
    }
    grid.Select(2, 1);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Left, Qt::Key_Home, Qt::Key_PageDown}) {
        Press(key);
        EXPECT_EQ(Current(), (Cell{2, 1})) << key;
    }
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Current(), (Cell{2, 1}));
}

TEST_F(GridWidgetKeysTest, TabLeavesTheGridBehindItsLastCell) {
    MakeWithGaps();
    grid.Select(59, 5);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Current(), (Cell{59, 5}));
    EXPECT_EQ(QApplication::focusWidget(), other);
}

TEST_F(GridWidgetKeysTest, CtrlASelectsAllThatIsInSight) {
    MakeWithGaps();
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Selection(), (Cell{2, 1, 59, 5}));
}

TEST_F(GridWidgetKeysTest, KeyDownComesFirstWithCodeAndShift) {
    Make(5, 3);
    grid.Select(2, 1);
    grid.KeyDown = [this](int code, int shift) {
        history.push_back(std::to_string(code) + " " + std::to_string(shift) + " at " +
                          std::to_string(grid.Row()));
    };
    Press(Qt::Key_C, Qt::ControlModifier);
    Press(Qt::Key_V, Qt::ControlModifier);
    Press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    Press(Qt::Key_Down);
    Press(Qt::Key_F2, Qt::AltModifier);
    EXPECT_EQ(history, (History{"67 2 at 2", "86 2 at 2", "67 3 at 2", "40 0 at 2", "113 4 at 3"}));
    EXPECT_EQ(Current(), (Cell{3, 1}));
}

TEST_F(GridWidgetKeysTest, AltDownPressesTheCurrentColumnsHeader) {
    Make(5, 3);
    ListenToMouse();
    grid.Select(2, 1);
    Press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(history.front(), "Before 1 0 at 0,1");
}

TEST_F(GridWidgetKeysTest, EnterAndEscapeAreLeftToTheWindow) {
    Make(5, 3);
    grid.Select(2, 1);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        press.accept();
        QApplication::sendEvent(widget, &press);
        EXPECT_FALSE(press.isAccepted()) << key;
        EXPECT_FALSE(grid.EditWindow()) << key;
    }
}

}  // namespace
}  // namespace kd
