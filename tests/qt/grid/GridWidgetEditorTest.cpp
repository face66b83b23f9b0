#include <QClipboard>
#include <QContextMenuEvent>
#include <QInputMethodEvent>

#include "base/CodePage.h"
#include "base/cError.h"
#include "fakes/ScriptedToolkit.h"
#include "platform/EventBoundary.h"
#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridWidgetEditorTest : public GridFixture {
protected:
    void Open(std::int32_t row = 2, std::int32_t col = 1) {
        if (widget == nullptr) {
            Make(8, 4);
            ListenToEdits();
        }
        grid.Select(row, col);
        Press(Qt::Key_F2);
        history.clear();
    }
    bool IsOpen() const { return grid.EditWindow() && Editor()->isVisible() && Editor()->hasFocus(); }
};

TEST_F(GridWidgetEditorTest, TypingF2AndDoubleClickOpenTheEditor) {
    Make(8, 4);
    ListenToEdits();
    grid.Select(2, 1);
    Press(Qt::Key_F2);
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(Editor()->text(), QString("r2c1"));
    EXPECT_EQ(Editor()->selectedText(), QString("r2c1"));
    Press(Qt::Key_Escape);
    EXPECT_FALSE(IsOpen());
    EXPECT_TRUE(widget->hasFocus());

    Type("7x");
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(Editor()->text(), QString("7x"));
    EXPECT_EQ(grid.EditText(), "7x");
    Press(Qt::Key_Escape);

    QTest::mouseDClick(Port(), Qt::LeftButton, Qt::NoModifier, Middle(4, 3));
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(Current(), (Cell{4, 3}));
    EXPECT_EQ(Editor()->text(), QString("r4c3"));
    EXPECT_EQ(history, (History{"BeforeEdit", "BeforeEdit", "BeforeEdit"}));
}

TEST_F(GridWidgetEditorTest, WhatAnInputMethodTypesOpensTheEditorWithIt) {
    Make(8, 4);
    ListenToEdits();
    grid.Select(2, 1);
    QInputMethodEvent begins("\u3042", {});
    QApplication::sendEvent(widget, &begins);
    EXPECT_TRUE(begins.isAccepted());
    EXPECT_TRUE(IsOpen()) << "what is being composed is seen in its cell";
    Press(Qt::Key_Escape);
    QInputMethodEvent typed;
    typed.setCommitString(QString(QChar(0x00E9)));
    QApplication::sendEvent(widget, &typed);
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(Editor()->text(), QString(QChar(0x00E9)));
}

TEST_F(GridWidgetEditorTest, WhatAnInputMethodHasNotTypedIsLeft) {
    Make(8, 4);
    ListenToEdits();
    grid.Select(2, 1);
    QInputMethodEvent nothing;
    QApplication::sendEvent(widget, &nothing);
    EXPECT_FALSE(nothing.isAccepted());
    EXPECT_FALSE(grid.EditWindow());
    readOnly = true;
    QInputMethodEvent typed;
    typed.setCommitString("x");
    QApplication::sendEvent(widget, &typed);
    EXPECT_FALSE(typed.isAccepted());
    EXPECT_FALSE(grid.EditWindow());
}

TEST_F(GridWidgetEditorTest, TheTextIsAsFarFromBothEdgesOfTheEditor) {
    Make(5, 3);
    grid.Select(2, 1);
    Press(Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_GT(Editor()->textMargins().left(), 0);
    EXPECT_EQ(Editor()->textMargins().left(), Editor()->textMargins().right());
}

TEST_F(GridWidgetEditorTest, AReadOnlyCellStaysClosed) {
    Make(8, 4);
    ListenToEdits();
    readOnly = true;
    grid.Select(2, 1);
    Press(Qt::Key_F2);
    Type("x");
    QTest::mouseDClick(Port(), Qt::LeftButton, Qt::NoModifier, Middle(2, 1));
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_FALSE(Editor()->isVisible());
    EXPECT_EQ(history.size(), 3U);
}

TEST_F(GridWidgetEditorTest, NoEditorOpensOnAHeaderNorOnAHiddenCell) {
    Make(8, 4);
    grid.Select(0, 1);
    Press(Qt::Key_F2);
    EXPECT_FALSE(grid.EditWindow());
    grid.Select(2, 1);
    grid.SetRowHidden(2, true);
    Type("x");
    EXPECT_FALSE(grid.EditWindow());
    grid.SetRowHidden(2, false);
    grid.SetColHidden(1, true);
    Type("x");
    EXPECT_FALSE(grid.EditWindow());
    QTest::mouseDClick(Port(), Qt::LeftButton, Qt::NoModifier, Middle(0, 2));
    EXPECT_FALSE(grid.EditWindow());
}

class GridWidgetEditorWaysTest : public GridWidgetEditorTest, public testing::WithParamInterface<int> {
protected:
    const char* Label() const {
        static const char* const labels[] = {"Enter",
                                             "Keypad Enter",
                                             "Tab",
                                             "Backtab",
                                             "Up",
                                             "Down",
                                             "click elsewhere",
                                             "click below the rows",
                                             "focus elsewhere"};
        return labels[GetParam()];
    }
    void Go() {
        switch (GetParam()) {
            case 0:
                Press(Qt::Key_Return);
                break;
            case 1:
                Press(Qt::Key_Enter);
                break;
            case 2:
                Press(Qt::Key_Tab);
                break;
            case 3:
                Press(Qt::Key_Backtab);
                break;
            case 4:
                Press(Qt::Key_Up);
                break;
            case 5:
                Press(Qt::Key_Down);
                break;
            case 6:
                Click(4, 3);
                break;
            case 7:
                QTest::mouseClick(Port(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 280));
                break;
            default:
                other->setFocus(Qt::MouseFocusReason);
                break;
        }
        QApplication::processEvents();
    }
    Cell Target() const {
        static const std::vector<Cell> targets{{2, 1}, {2, 1}, {2, 2}, {2, 0}, {1, 1},
                                               {3, 1}, {4, 3}, {2, 1}, {2, 1}};
        return targets[static_cast<std::size_t>(GetParam())];
    }
};

TEST_P(GridWidgetEditorWaysTest, AnAcceptedTextGoesToTheCell) {
    Open();
    Type("new");
    Go();
    EXPECT_EQ(history, (History{"ValidateEdit new", "AfterEdit 2,1"})) << Label();
    EXPECT_EQ(grid.TextMatrix(2, 1), "new") << Label();
    EXPECT_FALSE(grid.EditWindow()) << Label();
    EXPECT_FALSE(Editor()->isVisible()) << Label();
    EXPECT_EQ(Current(), Target()) << Label();
}

TEST_P(GridWidgetEditorWaysTest, ARefusedTextKeepsTheEditorAndAsksOnce) {
    Open();
    refuse = true;
    Type("bad");
    Go();
    QApplication::processEvents();
    EXPECT_EQ(history, (History{"ValidateEdit bad"})) << Label();
    EXPECT_EQ(grid.TextMatrix(2, 1), "r2c1") << Label();
    EXPECT_TRUE(IsOpen()) << Label();
    EXPECT_EQ(Editor()->text(), QString("bad")) << Label();
    EXPECT_EQ(Selection(), (Cell{2, 1, 2, 1})) << Label();
}

TEST_P(GridWidgetEditorWaysTest, AnUntouchedTextRunsAfterEditToo) {
    Open();
    Go();
    EXPECT_EQ(history, (History{"ValidateEdit r2c1", "AfterEdit 2,1"})) << Label();
    EXPECT_FALSE(grid.EditWindow()) << Label();
    EXPECT_EQ(Current(), Target()) << Label();
}

INSTANTIATE_TEST_SUITE_P(EveryWayOut, GridWidgetEditorWaysTest, testing::Range(0, 9));

TEST_F(GridWidgetEditorTest, EscapeLeavesWithNeitherValidationNorAfterEdit) {
    Open();
    Type("new");
    Press(Qt::Key_Escape);
    EXPECT_TRUE(history.empty());
    EXPECT_EQ(grid.TextMatrix(2, 1), "r2c1");
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_TRUE(widget->hasFocus());
}

TEST_F(GridWidgetEditorTest, FocusThatComesBackByItselfIsNoWayOut) {
    Open();
    Type("new");
    for (const Qt::FocusReason reason :
         {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason, Qt::MenuBarFocusReason}) {
        other->setFocus(reason);
        QApplication::processEvents();
        EXPECT_TRUE(grid.EditWindow()) << reason;
        EXPECT_TRUE(history.empty()) << reason;
        Editor()->setFocus(reason);
    }
}

TEST_F(GridWidgetEditorTest, TheRefusalsBoxIsNoSecondWayOut) {
    Open();
    grid.ValidateEdit = [this](std::int32_t, std::int32_t, bool& cancel) {
        history.push_back("asked");
        other->setFocus(Qt::MouseFocusReason);  // as a box does, and more rudely
        QApplication::processEvents();
        cancel = true;
    };
    Press(Qt::Key_Return);
    EXPECT_EQ(history, (History{"asked"}));
    EXPECT_TRUE(grid.EditWindow());
}

TEST_F(GridWidgetEditorTest, FocusThatComesToTheGridGoesToItsEditor) {
    Open();
    widget->setFocus();
    EXPECT_TRUE(IsOpen());
    QApplication::processEvents();
    EXPECT_TRUE(IsOpen());
    EXPECT_TRUE(history.empty()) << "it has not been lost";
}

TEST_F(GridWidgetEditorTest, ARightPressElsewhereFindsTheEditorOpen) {
    Open();
    ListenToMouse();
    bool open = false;
    grid.BeforeMouseDown = [&](MouseButton, int, int, int, bool& cancel) {
        open = grid.EditWindow();
        grid.Select(grid.Row(), grid.Col());
        cancel = true;
    };
    Type("new");
    Click(5, 3, Qt::NoModifier, Qt::RightButton);
    EXPECT_TRUE(open);
    EXPECT_EQ(history, (History{"ValidateEdit new", "AfterEdit 2,1"}));
    EXPECT_EQ(Current(), (Cell{2, 1}));
    EXPECT_FALSE(grid.EditWindow());
}

TEST_F(GridWidgetEditorTest, ARightPressInTheEditorIsAPressOnItsCell) {
    Open();
    grid.BeforeMouseDown = [&](MouseButton button, int, int, int, bool& cancel) {
        history.push_back(std::to_string(static_cast<int>(button)) + " at " +
                          std::to_string(grid.MouseRow()) + "," + std::to_string(grid.MouseCol()));
        cancel = true;
    };
    QTest::mouseClick(Editor(), Qt::RightButton);
    EXPECT_EQ(history, (History{"2 at 2,1"}));
    EXPECT_EQ(Editor()->contextMenuPolicy(), Qt::NoContextMenu);
}

TEST_F(GridWidgetEditorTest, ARefusedTextStaysThroughARightPressElsewhere) {
    Open();
    refuse = true;
    grid.BeforeMouseDown = [&](MouseButton, int, int, int, bool& cancel) {
        grid.Select(grid.Row(), grid.Col());
        cancel = true;
    };
    Type("bad");
    Click(5, 3, Qt::NoModifier, Qt::RightButton);
    QApplication::processEvents();
    EXPECT_EQ(history, (History{"ValidateEdit bad"}));
    EXPECT_TRUE(IsOpen());
}

TEST_F(GridWidgetEditorTest, ARefusedClickElsewhereRaisesNoMouseDown) {
    Open();
    ListenToMouse();
    refuse = true;
    Click(5, 3);
    EXPECT_EQ(history, (History{"Before 1 0 at 5,3", "ValidateEdit r2c1"}));
}

TEST_F(GridWidgetEditorTest, KeysInTheEditorBelongToTheEditor) {
    Open();
    grid.KeyDown = [this](int, int) { history.push_back("KeyDown"); };
    QApplication::clipboard()->setText("pasted");
    Editor()->selectAll();
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Editor()->text(), QString("pasted"));
    Editor()->selectAll();
    Press(Qt::Key_C, Qt::ControlModifier);
    Press(Qt::Key_PageDown);
    Press(Qt::Key_F2);
    EXPECT_TRUE(history.empty());
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(Current(), (Cell{2, 1}));
    EXPECT_EQ(grid.EditText(), "pasted");
}

TEST_F(GridWidgetEditorTest, ACharacterThatTheCodePageLacksIsSeenAtOnce) {
    Open();
    const CodePage& page = CodePage::Of(1252);
    grid.TypedText = [&](std::string_view text) { return page.Narrowed(text); };
    QApplication::clipboard()->setText(QString::fromUtf8("a\xCE\xA9\xF0\x9F\x98\x80z"));
    Editor()->selectAll();
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Editor()->text(), QString("a??z"));
    EXPECT_EQ(grid.EditText(), "a??z");
    Editor()->setCursorPosition(1);
    QKeyEvent omega(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(QChar(0x03A9)));
    QApplication::sendEvent(Editor(), &omega);
    EXPECT_EQ(Editor()->text(), QString("a???z"));
    EXPECT_EQ(Editor()->cursorPosition(), 2);
}

TEST_F(GridWidgetEditorTest, ALongTextIsEditedWhole) {
    Make(8, 4);
    ListenToEdits();
    grid.SetTextMatrix(2, 1, Text(40000, 'a'));
    Open();
    Editor()->end(false);
    Press(Qt::Key_Backspace);
    EXPECT_EQ(grid.EditText(), Text(39999, 'a'));
}

TEST_F(GridWidgetEditorTest, TheEditorStandsOnItsCellAndFollowsIt) {
    Make(100, 12);
    ListenToEdits();
    Open(10, 1);
    EXPECT_TRUE(widget->Layout().CellRect(10, 1).contains(Editor()->geometry()));
    const QRect before = Editor()->geometry();
    widget->verticalScrollBar()->setValue(3);
    EXPECT_EQ(Editor()->geometry().top(), before.top() - 3 * widget->Layout().GetSizes().rowHeight);
    widget->verticalScrollBar()->setValue(50);
    EXPECT_FALSE(Port()->rect().intersects(Editor()->geometry()));
    EXPECT_TRUE(IsOpen());
    Type("x");
    EXPECT_TRUE(widget->Layout().CellRect(10, 1).contains(Editor()->geometry()));
    EXPECT_TRUE(Port()->rect().contains(Editor()->geometry()));
}

TEST_F(GridWidgetEditorTest, TheEditorOfAScrollingColumnNeverCoversAFrozenOne) {
    Make(20, 12);
    ListenToEdits();
    grid.SetFrozenCols(2);
    Open(3, 3);
    widget->horizontalScrollBar()->setValue(ColumnWidth + ColumnWidth / 2);
    EXPECT_EQ(Editor()->geometry().left(), 2 * ColumnWidth);
    widget->horizontalScrollBar()->setValue(4 * ColumnWidth);
    EXPECT_FALSE(Port()->rect().intersects(Editor()->geometry()));
}

TEST_F(GridWidgetEditorTest, ALongTextTakesRoomToTheRight) {
    Open();
    const int before = Editor()->width();
    Type("a text that is much longer than its cell");
    EXPECT_GT(Editor()->width(), before);
    EXPECT_LE(Editor()->geometry().right(), Port()->width());
}

TEST_F(GridWidgetEditorTest, TheEditorTakesItsCellsColours) {
    Make(8, 4);
    ListenToEdits();
    grid.SetBackColor(2, 1, ChangedColour);
    Open();
    EXPECT_EQ(Editor()->palette().color(QPalette::Base), QColor(0xFF, 0xFF, 0xC0));
    EXPECT_EQ(Editor()->palette().color(QPalette::Text), QColor(Qt::black));
    grid.SetBackColor(2, 1, 0);
    EXPECT_EQ(Editor()->palette().color(QPalette::Base), widget->palette().color(QPalette::Base));
}

TEST_F(GridWidgetEditorTest, TheCurrentCellSelectedAnewByTheGridClosesTheEditor) {
    Open();
    Type("new");
    grid.Select(grid.Row(), grid.Col());
    EXPECT_EQ(history, (History{"ValidateEdit new", "AfterEdit 2,1"}));
    EXPECT_FALSE(Editor()->isVisible());
    EXPECT_TRUE(widget->hasFocus());
}

TEST_F(GridWidgetEditorTest, AFailureBehindTheBoundaryLeavesTheEditorClosed) {
    Open();
    ScriptedToolkit toolkit;
    grid.AfterEdit = [&](std::int32_t, std::int32_t) {
        toolkit.Boundary().Run([] { throw cError(errOverflow, "Test", "Overflow"); });
    };
    toolkit.ExpectBox("Run-time error '6':\r\n\r\nOverflow", BoxIcon::Critical);
    Press(Qt::Key_Return);
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_FALSE(Editor()->isVisible());
}

TEST_F(GridWidgetEditorTest, AWidgetThatGoesLeavesTheGridWithoutAScreen) {
    Open();
    top.reset();
    widget = nullptr;
    grid.CancelEdit();
    grid.SetTextMatrix(1, 1, "x");
    EXPECT_EQ(grid.CellTop(), 0);
}

}  // namespace
}  // namespace kd
