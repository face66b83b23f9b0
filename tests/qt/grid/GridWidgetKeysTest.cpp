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

TEST_F(GridWidgetKeysTest, EveryKeyIsToldByItsCodeAndTheRestNotAtAll) {
    Make(5, 3);
    grid.Select(2, 1);
    std::vector<int> codes;
    grid.KeyDown = [&](int code, int) { codes.push_back(code); };
    struct Case {
        const char* label;
        Qt::Key key;
        std::vector<int> codes;
    };
    for (const Case& c : {
             Case{"A", Qt::Key_A, {65}},
             Case{"Z", Qt::Key_Z, {90}},
             Case{"0", Qt::Key_0, {48}},
             Case{"9", Qt::Key_9, {57}},
             Case{"Space", Qt::Key_Space, {32}},
             Case{"F1", Qt::Key_F1, {112}},
             Case{"F12", Qt::Key_F12, {123}},
             Case{"Backspace", Qt::Key_Backspace, {8}},
             Case{"Tab", Qt::Key_Tab, {9}},
             Case{"Backtab", Qt::Key_Backtab, {9}},
             Case{"Return", Qt::Key_Return, {13}},
             Case{"Enter", Qt::Key_Enter, {13}},
             Case{"Escape", Qt::Key_Escape, {27}},
             Case{"Page Up", Qt::Key_PageUp, {33}},
             Case{"Page Down", Qt::Key_PageDown, {34}},
             Case{"End", Qt::Key_End, {35}},
             Case{"Home", Qt::Key_Home, {36}},
             Case{"Left", Qt::Key_Left, {37}},
             Case{"Up", Qt::Key_Up, {38}},
             Case{"Right", Qt::Key_Right, {39}},
             Case{"Down", Qt::Key_Down, {40}},
             Case{"Insert", Qt::Key_Insert, {45}},
             Case{"Delete", Qt::Key_Delete, {46}},
             Case{"!", Qt::Key_Exclam, {}},
             Case{"/", Qt::Key_Slash, {}},
             Case{":", Qt::Key_Colon, {}},
             Case{"@", Qt::Key_At, {}},
             Case{"[", Qt::Key_BracketLeft, {}},
             Case{"F13", Qt::Key_F13, {}},
         }) {
        codes.clear();
        QKeyEvent press(QEvent::KeyPress, c.key, Qt::AltModifier);  // with which no key opens the editor
        QApplication::sendEvent(widget, &press);
        EXPECT_EQ(codes, c.codes) << c.label;
    }
}

TEST_F(GridWidgetKeysTest, AltDownPressesTheMiddleOfTheCurrentColumnsHeader) {
    Make(5, 12);
    widget->setFrameShape(QFrame::Box);
    widget->setFrameShadow(QFrame::Plain);
    widget->setLineWidth(5);
    widget->resize(410, 310);
    ASSERT_NE(Port()->pos(), QPoint());
    ListenToMouse();
    QPoint pressed;
    grid.MouseUp = [&](MouseButton, int, int x, int y) { pressed = {x, y}; };
    grid.SetColHidden(3, true);
    struct Case {
        const char* label;
        std::int32_t current;
        std::int32_t pressed;
    };
    for (const Case& c : {Case{"in sight", 1, 1}, Case{"hidden, so the next one", 3, 4},
                          Case{"scrolled out of sight", 10, 10}}) {
        grid.Select(2, c.current);
        history.clear();
        Press(Qt::Key_Down, Qt::AltModifier);
        const std::string tail = " 1 0 at 0," + std::to_string(c.pressed);
        EXPECT_EQ(history, (History{"Before" + tail, "Down" + tail})) << c.label;
        EXPECT_EQ(pressed, Middle(0, c.pressed) + Port()->pos()) << c.label;
        EXPECT_EQ(widget->Layout().ShownRect(0, c.pressed).width(), ColumnWidth) << c.label;
    }
}

TEST_F(GridWidgetKeysTest, AKeyWithoutAUseIsLeftToTheWindow) {
    Make(5, 3);
    ListenToMouse();
    struct Case {
        const char* label;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        const char* text;
        bool used;
        History history;
    };
    const History menu{"Before 2 0 at 2,1", "Down 2 0 at 2,1", "Up 2 0 at 2,1"};
    const History header{"Before 1 0 at 0,1", "Down 1 0 at 0,1", "Up 1 0 at 0,1"};
    for (const Case& c : {
             Case{"Alt and Down", Qt::Key_Down, Qt::AltModifier, "", true, header},
             Case{"Alt and Right", Qt::Key_Right, Qt::AltModifier, "", true, {}},
             Case{"Alt and Left", Qt::Key_Left, Qt::AltModifier, "", true, {}},
             Case{"Alt and Up", Qt::Key_Up, Qt::AltModifier, "", true, {}},
             Case{"Shift and F10", Qt::Key_F10, Qt::ShiftModifier, "", true, menu},
             Case{"F10", Qt::Key_F10, Qt::NoModifier, "", false, {}},
             Case{"Alt and a letter", Qt::Key_V, Qt::AltModifier, "v", false, {}},
             Case{"Ctrl and a letter", Qt::Key_B, Qt::ControlModifier, "b", false, {}},
             Case{"Delete", Qt::Key_Delete, Qt::NoModifier, "\x7f", false, {}},
             Case{"Backspace", Qt::Key_Backspace, Qt::NoModifier, "\b", false, {}},
             Case{"Enter", Qt::Key_Return, Qt::NoModifier, "\r", false, {}},
             Case{"Esc", Qt::Key_Escape, Qt::NoModifier, "\x1b", false, {}},
         }) {
        grid.Select(2, 1);
        history.clear();
        QKeyEvent press(QEvent::KeyPress, c.key, c.modifiers, QString::fromLatin1(c.text));
        QApplication::sendEvent(widget, &press);
        EXPECT_EQ(press.isAccepted(), c.used) << c.label;
        EXPECT_EQ(history, c.history) << c.label;
        EXPECT_FALSE(grid.EditWindow()) << c.label;
    }
}

TEST_F(GridWidgetKeysTest, APressOfTheHeaderLeavesItsColumnsWidth) {
    Make(5, 3);
    grid.Select(2, 1);
    Press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth);
}

TEST_F(GridWidgetKeysTest, WhatIsTypedHasItsUseWhetherTheEditorOpensOrNot) {
    Make(5, 3);
    ListenToEdits();
    for (const bool locked : {false, true}) {
        for (const Qt::KeyboardModifiers modifiers :
             {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ControlModifier | Qt::AltModifier)}) {
            readOnly = locked;
            grid.Select(2, 1);
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Q, modifiers, "@");
            QApplication::sendEvent(widget, &press);
            EXPECT_TRUE(press.isAccepted());
            EXPECT_EQ(grid.EditWindow(), !locked);
            EXPECT_EQ(Editor()->text(), QString(locked ? "" : "@"));
            grid.CancelEdit();
        }
    }
}

TEST_F(GridWidgetKeysTest, AGridThatIsHiddenWithItsEditorOpenStaysOnItsCell) {
    Make(5, 3);
    grid.Select(2, 1);
    Type("new");
    widget->hide();
    QApplication::processEvents();
    EXPECT_EQ(Current(), (Cell{2, 1}));
    EXPECT_EQ(grid.TextMatrix(2, 1), "new");
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
