#include "grid/GridEvents.h"

#include <gtest/gtest.h>

#include "base/NumberTexts.h"
#include "fakes/Builders.h"
#include "grid/ColumnCatalogue.h"
#include "model/Columns.h"
#include "platform/GridKeyCodes.h"

namespace kd {
namespace {

constexpr std::int32_t ColType = cnType - 1;  // read-only
constexpr std::int32_t ColUnits = cnUnits - 1;
constexpr std::int32_t ColUsl = cnUSL - 1;
constexpr std::int32_t ColName = cnVariableName - 1;

struct EventsDesk : LoadedDesk {
    GridEvents events{desk};
    VSFlexGrid& grid = desk.Grid;
    std::vector<std::int32_t> filtersShown;

    EventsDesk() {
        Put(anApplication()
                .Field(aField().Usl(12.5).Units(" "))
                .Field(aField().Name("Second"))
                .Field(aField().Name("Third"))
                .View("Line 1", 1)
                .Field(aField().Name("Other")));
        Load();
        events.ShowColumnFilter = [this](std::int32_t col) { filtersShown.push_back(col); };
        events.GetFilterCaption = [](std::int32_t col) { return " caption " + Digits(col) + " "; };
    }
    /// The mouse goes down over a cell. Returns whether the grid may react.
    bool Press(MouseButton button, std::int32_t row, std::int32_t col) {
        grid.SetMouseCell(row, col);
        bool cancel = false;
        grid.BeforeMouseDown(button, 0, 0, 0, cancel);
        if (!cancel) {
            grid.MouseDown(button, 0, 0, 0);
        }
        return !cancel;
    }
    void Release(MouseButton button) { grid.MouseUp(button, 0, 0, 0); }
    void OpenEditor(std::int32_t row, std::int32_t col, std::string_view text) {
        grid.Select(row, col);
        ASSERT_TRUE(grid.StartEdit());
        grid.SetEditText(text);
    }
};

TEST(GridEventsTest, WithoutAFormThatListensAHeaderShowsNoFilterAndTellsNothing) {
    EventsDesk desk;
    desk.events.ShowColumnFilter = nullptr;
    desk.events.GetFilterCaption = nullptr;
    desk.grid.SetToolTipText("as before");
    EXPECT_FALSE(desk.Press(MouseButton::Left, 0, ColUsl));
    EXPECT_EQ(desk.grid.Col(), ColUsl);
    desk.grid.MouseMove(MouseButton::Left, 0, 0, 0);
    EXPECT_EQ(desk.grid.ToolTipText(), "");
}

TEST(GridEventsTest, CtrlAndCWithoutACommandBehindItDoesNothing) {
    EventsDesk desk;
    desk.suite.clipboard = "as before";
    desk.grid.Select(1, ColUsl);
    ASSERT_FALSE(desk.desk.mnuCopy.Click);
    desk.grid.KeyDown(kcC, sbCtrl);
    EXPECT_EQ(desk.suite.clipboard, "as before");
}

TEST(GridEventsTest, AHeaderPressOfAnyButtonShowsTheFilterAndNoMenu) {
    for (const MouseButton button : {MouseButton::Left, MouseButton::Right, MouseButton::Middle}) {
        EventsDesk desk;
        desk.grid.Select(2, 3);
        EXPECT_FALSE(desk.Press(button, 0, ColUsl));
        EXPECT_EQ(desk.filtersShown, std::vector<std::int32_t>{ColUsl});
        EXPECT_EQ(desk.grid.Col(), ColUsl);
        EXPECT_EQ(desk.grid.Row(), 2);
    }
}

TEST(GridEventsTest, AHeaderPressWithNoColumnBelowThePointerDoesNothing) {
    EventsDesk desk;
    desk.grid.Select(2, 3);
    (void)desk.Press(MouseButton::Left, 0, -1);
    EXPECT_TRUE(desk.filtersShown.empty());
    EXPECT_EQ(desk.grid.Col(), 3);
}

TEST(GridEventsTest, AHeaderPressOnTheFirstPositionShowsItsFilter) {
    EventsDesk desk;
    desk.grid.Select(2, 3);
    EXPECT_FALSE(desk.Press(MouseButton::Left, 0, 0));
    EXPECT_EQ(desk.filtersShown, std::vector<std::int32_t>{0});
    EXPECT_EQ(desk.grid.Col(), 0);
}

TEST(GridEventsTest, APressOutsideTheCellsGoesOn) {
    EventsDesk desk;
    EXPECT_TRUE(desk.Press(MouseButton::Right, -1, -1));
    EXPECT_TRUE(desk.Press(MouseButton::Left, 1, ColUsl));
    EXPECT_TRUE(desk.filtersShown.empty());
}

TEST(GridEventsTest, ARightPressInAnOpenEditorClosesItAndShowsTheMenuAlsoOverAReadOnlyColumn) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUsl, "20");
    desk.desk.mnuPaste.SetEnabled(false);
    desk.toolkit.ExpectPopup([&](MenuItem& menu) {
        EXPECT_EQ(menu.Name(), "mnuEditMenu");
        EXPECT_FALSE(desk.desk.mnuPaste.Enabled()) << "left as it was";
        EXPECT_FALSE(desk.grid.EditWindow()) << "the commands see what was typed";
    });
    desk.suite.clipboard = "text";
    EXPECT_FALSE(desk.Press(MouseButton::Right, 2, ColType));
    EXPECT_FALSE(desk.grid.EditWindow());
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 20);
    EXPECT_EQ(desk.grid.Row(), 1);
    EXPECT_EQ(desk.suite.clipboardsMade, 0);
}

TEST(GridEventsTest, ARightPressInAnOpenEditorShowsTheMenuInTheFirstRowAndOnTheFirstPositionToo) {
    for (const auto& [row, col] : {std::pair{1, ColUsl}, {1, 0}, {2, 0}}) {
        SCOPED_TRACE(testing::Message() << row << ", " << col);
        EventsDesk desk;
        desk.OpenEditor(1, ColUsl, "20");
        desk.toolkit.ExpectPopup([](MenuItem&) {});
        EXPECT_FALSE(desk.Press(MouseButton::Right, row, col));
        EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 20);
    }
}

TEST(GridEventsTest, APressOfAnotherButtonWithAnEditorOpenIsLeftToTheGrid) {
    for (const MouseButton button : {MouseButton::Left, MouseButton::Middle}) {
        EventsDesk desk;
        desk.OpenEditor(1, ColUsl, "20");
        EXPECT_TRUE(desk.Press(button, 2, ColUsl));
        EXPECT_TRUE(desk.grid.EditWindow());
    }
}

TEST(GridEventsTest, ARightPressOnTheHeaderWithAnEditorOpenTakesItsTextAndShowsTheFilterNotTheMenu) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUsl, "20");
    EXPECT_FALSE(desk.Press(MouseButton::Right, 0, ColUnits));
    EXPECT_FALSE(desk.grid.EditWindow());
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 20);
    EXPECT_EQ(desk.filtersShown, std::vector<std::int32_t>{ColUnits});
}

TEST(GridEventsTest, ARightPressWithARefusedTextTellsSoKeepsTheEditorAndShowsTheMenu) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUsl, "abc");
    desk.toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    desk.toolkit.ExpectPopup([&](MenuItem&) { EXPECT_TRUE(desk.grid.EditWindow()); });
    EXPECT_FALSE(desk.Press(MouseButton::Right, 2, ColUsl));
    EXPECT_TRUE(desk.grid.EditWindow());
    EXPECT_EQ(desk.grid.EditText(), "abc");
}

TEST(GridEventsTest, ARightPressBelowTheLastRowOrBesideTheColumnsLeavesTheOpenEditorAndShowsNoMenu) {
    for (const auto& [row, col] : {std::pair{-1, ColUsl}, {2, -1}, {-1, -1}}) {
        SCOPED_TRACE(testing::Message() << row << ", " << col);
        EventsDesk desk;
        desk.OpenEditor(1, ColUsl, "20");
        EXPECT_TRUE(desk.Press(MouseButton::Right, row, col));
        desk.Release(MouseButton::Right);
        EXPECT_TRUE(desk.grid.EditWindow());
        EXPECT_EQ(desk.grid.EditText(), "20");
        EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 12.5);
    }
}

TEST(GridEventsTest, ARightPressOutsideTheSelectionMovesThereAndInsideLeavesIt) {
    EventsDesk desk;
    desk.grid.Select(1, ColName);
    desk.grid.ExtendSelection(2, ColUsl);
    EXPECT_TRUE(desk.Press(MouseButton::Right, 2, 8));
    EXPECT_EQ(desk.grid.GetSelection(), (GridSelection{1, ColName, 2, ColUsl}));
    EXPECT_TRUE(desk.Press(MouseButton::Right, 3, 8));
    EXPECT_EQ(desk.grid.GetSelection(), (GridSelection{3, 8, 3, 8}));
    desk.grid.Select(1, ColName);
    desk.grid.ExtendSelection(2, cnMax - 1);
    EXPECT_TRUE(desk.Press(MouseButton::Right, 1, ColUsl)) << "a column beyond the last";
    EXPECT_EQ(desk.grid.GetSelection(), (GridSelection{1, ColUsl, 1, ColUsl}));
}

TEST(GridEventsTest, ARightPressBesideTheSelectionOnAnySideMovesThere) {
    for (const auto& [row, col] : {std::pair{1, 11}, {3, 11}, {2, 10}, {2, 13}}) {
        EventsDesk desk;
        desk.grid.Select(2, cnTGT - 1);
        desk.grid.ExtendSelection(2, cnUWL - 1);
        (void)desk.Press(MouseButton::Right, row, col);
        EXPECT_EQ(desk.grid.GetSelection(), (GridSelection{row, col, row, col}));
    }
}

TEST(GridEventsTest, TheSelectionStaysForALeftPressAndOverAReadOnlyColumn) {
    EventsDesk desk;
    desk.grid.Select(1, ColName);
    (void)desk.Press(MouseButton::Left, 3, ColUsl);
    EXPECT_EQ(desk.grid.Row(), 1) << "moving is the screen's job";
    (void)desk.Press(MouseButton::Right, 3, ColType);
    EXPECT_EQ(desk.grid.Row(), 1);
}

TEST(GridEventsTest, TheMenuComesUpOverAnEditableCellWithPasteByTheClipboard) {
    for (const char* text : {"", "x"}) {
        EventsDesk desk;
        desk.suite.clipboard = text;
        desk.toolkit.ExpectPopup(
            [&](MenuItem&) { EXPECT_EQ(desk.desk.mnuPaste.Enabled(), !desk.suite.clipboard.empty()); });
        (void)desk.Press(MouseButton::Right, 1, ColUsl);
        desk.Release(MouseButton::Right);
        EXPECT_EQ(desk.suite.clipboardsMade, 1);
    }
}

TEST(GridEventsTest, AnEditableColumnOnTheFirstPositionHasTheMenuToo) {
    EventsDesk desk;
    desk.g.gLabels->Ref(cnID).SetEditable(true);
    desk.grid.Select(2, ColUsl);
    desk.toolkit.ExpectPopup([](MenuItem&) {});
    EXPECT_TRUE(desk.Press(MouseButton::Right, 1, 0));
    EXPECT_EQ(desk.grid.GetSelection(), (GridSelection{1, 0, 1, 0}));
    desk.Release(MouseButton::Right);
}

TEST(GridEventsTest, NoMenuOverAReadOnlyColumnTheHeaderOutsideOrWithAnotherButton) {
    EventsDesk desk;
    for (const auto& [row, col] : {std::pair{1, ColType}, {0, ColUsl}, {-1, -1}, {1, -1}}) {
        desk.grid.SetMouseCell(row, col);
        desk.Release(MouseButton::Right);
    }
    desk.grid.SetMouseCell(1, ColUsl);
    desk.Release(MouseButton::Left);
    EXPECT_EQ(desk.suite.clipboardsMade, 0);
}

TEST(GridEventsTest, OnlyCellsOfEditableColumnsOpenForEditing) {
    EventsDesk desk;
    for (std::int32_t col = 0; col < ColumnCount; ++col) {
        desk.grid.Select(1, col);
        EXPECT_EQ(desk.grid.StartEdit(), desk.g.gLabels->Ref(col + 1).Editable()) << col;
        desk.grid.CancelEdit();
    }
    desk.grid.Select(0, ColUsl);
    EXPECT_FALSE(desk.grid.StartEdit()) << "header";
}

TEST(GridEventsTest, NothingOpensForEditingOutsideTheDataCells) {
    EventsDesk desk;
    for (const auto& [row, col] : {std::pair{0, ColUsl}, {1, -1}, {-1, -1}}) {
        bool cancel = false;
        desk.grid.BeforeEdit(row, col, cancel);
        EXPECT_TRUE(cancel) << row << ", " << col;
    }
}

TEST(GridEventsTest, AHeaderPressTakesTheOpenEditorsTextBeforeTheFilterIsShown) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUsl, "20");
    double whenShown = 0;
    desk.events.ShowColumnFilter = [&](std::int32_t) { whenShown = desk.g.gFields->Ref(1).USL(); };
    EXPECT_FALSE(desk.Press(MouseButton::Left, 0, ColName));
    EXPECT_EQ(whenShown, 20);
    EXPECT_FALSE(desk.grid.EditWindow());
    EXPECT_EQ(desk.grid.Col(), ColName);
}

TEST(GridEventsTest, ARefusedTextIsToldAndTheEditorStays) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUsl, "12,3.4");
    desk.toolkit.ExpectBox("Invalid value '12,3.4' entered for cell!", BoxIcon::None, "KDLimitDesk");
    EXPECT_FALSE(desk.grid.FinishEdit());
    EXPECT_TRUE(desk.grid.EditWindow());
    EXPECT_EQ(desk.grid.EditText(), "12,3.4");
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 12.5);
}

TEST(GridEventsTest, ClearingALimitIsRefusedWithNothingBetweenTheQuotationMarks) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUsl, "");
    desk.toolkit.ExpectBox("Invalid value '' entered for cell!");
    EXPECT_FALSE(desk.grid.FinishEdit());
}

TEST(GridEventsTest, AnUntouchedTextIsNotJudgedThoughItWouldBeRefused) {
    EventsDesk desk;
    desk.grid.SetTextMatrix(1, 22, "odd method");
    desk.OpenEditor(1, 22, "odd method");
    EXPECT_TRUE(desk.grid.FinishEdit());
    EXPECT_EQ(desk.grid.TextMatrix(1, cnLimitMethod - 1), "Population")
        << "after-edit shows what the record holds";
}

TEST(GridEventsTest, ABlankTypedOverAnEmptyCellOfWordsIsAnotherTextAndRefused) {
    EventsDesk desk;
    constexpr std::int32_t ColRequired = 25;
    desk.grid.SetTextMatrix(1, ColRequired, "");
    desk.OpenEditor(1, ColRequired, " ");
    desk.toolkit.ExpectBox("Invalid value ' ' entered for cell!");
    EXPECT_FALSE(desk.grid.FinishEdit());
    EXPECT_EQ(desk.g.gFields->Ref(1).Required(), "N");
}

TEST(GridEventsTest, AnEditThatChangedNothingStillNormalisesTheTextAndItsColour) {
    EventsDesk desk;
    desk.grid.SetBackColor(1, ColUsl, ChangedColour);
    desk.OpenEditor(1, ColUsl, "12.500");
    EXPECT_TRUE(desk.grid.FinishEdit());
    EXPECT_EQ(desk.grid.BackColor(1, ColUsl), 0U);
}

TEST(GridEventsTest, AnAcceptedTextIsStoredAndMarked) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUsl, "13");
    EXPECT_TRUE(desk.grid.FinishEdit());
    EXPECT_EQ(desk.grid.TextMatrix(1, ColUsl), "13.000");
    EXPECT_EQ(desk.grid.BackColor(1, ColUsl), ChangedColour);
}

TEST(GridEventsTest, AfterAFailedWriteTheCellShowsTheRecordsValue) {
    EventsDesk desk;
    desk.OpenEditor(1, 24, "40000");  // a sample size beyond 16 bits passes the gate
    desk.toolkit.ExpectBox("Run-time error '6':\r\n\r\nOverflow", BoxIcon::Critical);
    (void)desk.grid.FinishEdit();  // the text was valid: what is looked at is the cell
    EXPECT_EQ(desk.grid.TextMatrix(1, cnSample - 1), "0");
    EXPECT_FALSE(desk.grid.EditWindow());
}

TEST(GridEventsTest, ATypedCharacterThatTheCodePageLacksBecomesAQuestionMarkAtOnce) {
    EventsDesk desk;
    desk.OpenEditor(1, ColName, "\xCE\xA9 5 \xC2\xB5");
    EXPECT_EQ(desk.grid.EditText(), "? 5 \xC2\xB5");
}

TEST(GridEventsTest, PanelOneShowsEmptyBracketsForAViewWithoutAName) {
    EventsDesk desk;
    desk.grid.Select(1, ColUsl);
    EXPECT_EQ(desk.desk.Panel1.Caption(), "/apps/plant.kdt []");
}

TEST(GridEventsTest, PanelOneShowsTheBarePathForANamedView) {
    EventsDesk desk;
    desk.grid.Select(4, ColUsl);
    EXPECT_EQ(desk.desk.Panel1.Caption(), "/apps/plant.kdt");
}

TEST(GridEventsTest, PanelOneGoesByTheRowsOwnVariable) {
    EventsDesk desk;
    desk.grid.SetRowData(1, 4);  // a variable of the named view
    desk.grid.Select(1, ColUsl);
    EXPECT_EQ(desk.desk.Panel1.Caption(), "/apps/plant.kdt");
}

TEST(GridEventsTest, PanelOneIsEmptyOnTheHeaderAndOnTheFirstPosition) {
    EventsDesk desk;
    desk.grid.Select(1, ColUsl);
    desk.grid.Select(0, ColUsl);
    EXPECT_EQ(desk.desk.Panel1.Caption(), "");
    desk.grid.Select(1, ColUsl);
    desk.grid.Select(1, 0);
    EXPECT_EQ(desk.desk.Panel1.Caption(), "");
    desk.grid.Select(1, 1);
    EXPECT_NE(desk.desk.Panel1.Caption(), "");
}

TEST(GridEventsTest, TheToolTipFollowsTheHeaderAndIsEmptyElsewhere) {
    EventsDesk desk;
    int asked = 0;
    desk.events.GetFilterCaption = [&](std::int32_t col) {
        ++asked;
        return " caption " + Digits(col) + " ";
    };
    const auto move = [&](std::int32_t row, std::int32_t col) {
        desk.grid.SetMouseCell(row, col);
        desk.grid.MouseMove(MouseButton::Left, 0, 0, 0);
    };
    move(0, 3);
    EXPECT_EQ(desk.grid.ToolTipText(), " caption 3 ");
    move(0, 3);
    EXPECT_EQ(asked, 1) << "nothing happens while the pointer stays on the cell";
    move(0, 4);
    EXPECT_EQ(desk.grid.ToolTipText(), " caption 4 ");
    move(1, 4);
    EXPECT_EQ(desk.grid.ToolTipText(), "");
}

TEST(GridEventsTest, AToolTipThatFailsIsToldOnceWhileThePointerStaysOnItsCell) {
    EventsDesk desk;
    desk.events.GetFilterCaption = [](std::int32_t) -> Text { throw cError(errOverflow, "GridEventsTest"); };
    desk.toolkit.ExpectBox("Run-time error '6':\r\n\r\nOverflow", BoxIcon::Critical);
    desk.grid.SetMouseCell(0, 3);
    for (const int x : {30, 31}) {
        desk.grid.MouseMove(MouseButton::Left, 0, x, 0);
    }
}

TEST(GridEventsTest, OutsideTheCellsThereIsNoToolTip) {
    EventsDesk desk;
    for (const std::int32_t col : {-1, 4}) {
        desk.grid.SetMouseCell(0, 3);
        desk.grid.MouseMove(MouseButton::Left, 0, 0, 0);
        ASSERT_EQ(desk.grid.ToolTipText(), " caption 3 ");
        desk.grid.SetMouseCell(-1, col);
        desk.grid.MouseMove(MouseButton::Left, 0, 0, 0);
        EXPECT_EQ(desk.grid.ToolTipText(), "") << col;
    }
}

TEST(GridEventsTest, CtrlCAndCtrlVRunTheCommandsAndNothingElseDoes) {
    EventsDesk desk;
    int copied = 0;
    int pasted = 0;
    int cut = 0;
    desk.desk.mnuCopy.Click = [&] { ++copied; };
    desk.desk.mnuPaste.Click = [&] { ++pasted; };
    desk.desk.mnuCut.Click = [&] { ++cut; };
    desk.desk.mnuPaste.SetEnabled(false);  // by the last pop-up; the clipboard may have been filled since
    desk.grid.KeyDown(67, sbCtrl);
    desk.grid.KeyDown(86, sbCtrl);
    EXPECT_EQ(copied, 1);
    EXPECT_EQ(pasted, 1);
    desk.grid.KeyDown(67, sbCtrl | sbShift);
    desk.grid.KeyDown(67, 0);
    desk.grid.KeyDown(86, sbCtrl | sbAlt);
    desk.grid.KeyDown(88, sbCtrl);
    EXPECT_EQ(copied, 1);
    EXPECT_EQ(pasted, 1);
    EXPECT_EQ(cut, 0);
}

TEST(GridEventsTest, ACancelThatWasSetIsClearedForAnUntouchedText) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUsl, "12.500");
    bool cancel = true;
    desk.grid.ValidateEdit(1, ColUsl, cancel);
    EXPECT_FALSE(cancel);
}

TEST(GridEventsTest, ALineEndThatCameWithAPastedTextNeverReachesTheVariable) {
    EventsDesk desk;
    desk.OpenEditor(1, ColUnits, "g\r\n[FIELD]\r\n\tNAME = X");
    EXPECT_EQ(desk.grid.EditText(), "g  [FIELD]   NAME = X") << "seen at once";
    ASSERT_TRUE(desk.grid.FinishEdit());
    EXPECT_EQ(desk.g.gFields->Ref(1).Units(), "g  [FIELD]   NAME = X");
}

TEST(GridEventsTest, EveryEventPassesTheBoundary) {
    class Counting : public EventBoundary {
    public:
        using EventBoundary::EventBoundary;
        int passed = 0;
        bool Run(const std::function<void()>& handler) override {
            ++passed;
            return EventBoundary::Run(handler);
        }
    };
    EventsDesk desk;
    Counting boundary([](const auto&, const Text& words) { FAIL() << words; });
    const GridEvents events(desk.desk, boundary);
    bool cancel = false;
    desk.grid.SetMouseCell(1, ColType);
    desk.grid.BeforeMouseDown(MouseButton::Left, 0, 0, 0, cancel);
    desk.grid.MouseDown(MouseButton::Left, 0, 0, 0);
    desk.grid.MouseUp(MouseButton::Left, 0, 0, 0);
    desk.grid.MouseMove(MouseButton::Left, 0, 0, 0);
    desk.grid.BeforeEdit(1, ColName, cancel);
    desk.grid.ValidateEdit(1, ColName, cancel);
    desk.grid.AfterEdit(1, ColName);
    desk.grid.RowColChange();
    desk.grid.KeyDown(1, 0);
    EXPECT_EQ(boundary.passed, 9);
}

TEST(GridEventsTest, WhetherAColumnCanBeEditedIsItsOwnToSay) {
    EventsDesk desk;
    for (const std::int32_t screenCol : {0, ColType, ColName}) {
        for (const bool editable : {false, true}) {
            desk.desk.g.gLabels->Ref(screenCol + 1).SetEditable(editable);
            bool cancel = false;
            desk.grid.BeforeEdit(1, screenCol, cancel);
            EXPECT_EQ(cancel, !editable) << screenCol;
        }
    }
}

TEST(GridEventsTest, TheGridIsLeftWithoutHandlersAtTheEnd) {
    LoadedDesk desk;
    { const GridEvents events(desk.desk); }
    const VSFlexGrid& grid = desk.desk.Grid;
    EXPECT_FALSE(grid.BeforeMouseDown || grid.MouseDown || grid.MouseUp || grid.MouseMove);
    EXPECT_FALSE(grid.BeforeEdit || grid.ValidateEdit || grid.AfterEdit || grid.RowColChange);
    EXPECT_FALSE(grid.KeyDown || grid.TypedText);
}

}  // namespace
}  // namespace kd
