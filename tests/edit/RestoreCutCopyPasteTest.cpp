#include "edit/RestoreCutCopyPaste.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/GridDesk.h"
#include "grid/CellGate.h"
#include "model/modKDLimitDesk.h"

namespace kd {
namespace {

using testing::Each;
using testing::ElementsAre;

struct EditDesk : testing::Test, GridDesk {
    EditDesk() {
        for (const ColumnNumber number : {cnXRef, cnReportType, cnCategory, cnUnits, cnRules, cnUCase}) {
            SetShown(number, true);
        }
    }
    bool ChangesMade() const { return g.gFiles->Ref(1).ChangesMade(); }
    /// Nothing was written, and nothing marked.
    void ExpectUntouched(const std::vector<Text>& texts, ColumnNumber number) {
        EXPECT_EQ(Column(number), texts);
        EXPECT_FALSE(ChangesMade());
    }
};

/// A command that must do nothing, and say nothing, without a selection.
using Command = void (*)(Desk&);

TEST_F(EditDesk, EveryCommandWithoutASelectionIsASilentNoOp) {
    AddUnits({"g", "kg"});
    suite.clipboard = "x";
    for (const Command command : {Restore, Cut, Copy, Paste}) {
        command(desk);
        desk.Grid.Select(0, Position(cnUnits));
        command(desk);
    }
    EXPECT_EQ(suite.clipboard, "x");
    ExpectUntouched({"g", "kg"}, cnUnits);
}

TEST_F(EditDesk, EveryCommandInAnEmptyGridIsASilentNoOp) {
    suite.clipboard = "x";
    for (const Command command : {Restore, Cut, Copy, Paste}) {
        command(desk);
    }
    EXPECT_EQ(suite.clipboard, "x");
    EXPECT_EQ(desk.Grid.Rows(), 1);
}

TEST_F(EditDesk, SelectionWithNothingVisibleIsASilentNoOp) {
    AddUnits({"g", "kg"});
    suite.clipboard = "x";
    Hide({1});
    Select(1, cnUnits, 1, cnUnits);
    for (const Command command : {Restore, Cut, Copy}) {
        command(desk);
    }
    EXPECT_EQ(suite.clipboard, "x");
    ExpectUntouched({"g", "kg"}, cnUnits);
}

// --- Copy
// -------------------------------------------------------------------------------------------------------

using Copying = EditDesk;

TEST_F(Copying, OneCellIsItsTextWithoutASeparator) {
    AddUnits({"kg"});
    Select(1, cnUnits, 1, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "kg");
}

TEST_F(Copying, TabBetweenCellsAndCrBetweenRowsAndNothingElse) {
    AddUnits({"a", "", "c"});
    Select(1, cnCategory, 3, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "\ta\r\t\r\tc");
}

TEST_F(Copying, OnlyVisibleRowsAreCopied) {
    AddUnits({"a", "b", "c", "d", "e"});
    Hide({2, 3, 4});
    Select(1, cnUnits, 5, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "a\re");
}

TEST_F(Copying, OnlyVisibleColumnsAreCopied) {
    AddRow([](cField& field) {
        field.SetXRef("x");
        field.SetCategory("c");
        field.SetUnits("u");
    });
    SetShown(cnReportType, false);
    for (std::int32_t number = 23; number <= 26; ++number) {
        desk.Grid.SetColHidden(number - 1, true);
    }
    Select(1, cnXRef, 1, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "x\tc\tu");
}

TEST_F(Copying, SelectionThatBeginsHiddenUsesTheHiddenRowAndLeavesOutTheLastVisibleOne) {
    AddUnits({"a", "b", "c", "d"});
    Hide({1});
    Select(1, cnUnits, 4, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "a\rb\rc");
}

TEST_F(Copying, SelectionThatEndsHiddenLeavesTheHiddenRowsOut) {
    AddUnits({"a", "b", "c"});
    Hide({2, 3});
    Select(1, cnUnits, 3, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "a");
}

TEST_F(Copying, LastRowIsCopied) {
    AddUnits({"a", "b"});
    Select(2, cnUnits, 2, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "b");
}

TEST_F(Copying, ReadOnlyCellsAreCopied) {
    AddUnits({"a"});
    Select(1, cnType, 1, cnLength);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "N\t8");
}

TEST_F(Copying, ShownTextIsCopiedWithTheLocalesSeparator) {
    locale.separator = ',';
    AddLimits(cnUSL, {1.5});
    Select(1, cnUSL, 1, cnUSL);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "1,500");
}

TEST_F(Copying, TextWithASeparatorIsCopiedAsItStands) {
    AddUnits({"a\tb\rc"});
    Select(1, cnUnits, 1, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "a\tb\rc");
}

TEST_F(Copying, NothingIsChangedInTheGrid) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    Copy(desk);
    ExpectUntouched({"a"}, cnUnits);
}

// --- Cut
// -------------------------------------------------------------------------------------------------------

using Cutting = EditDesk;

TEST_F(Cutting, CellsAreBlankedMarkedAndOnTheClipboard) {
    AddUnits({"a", "b", "c"});
    Select(1, cnUnits, 2, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("", "", "c"));
    EXPECT_EQ(suite.clipboard, "a\rb");
    EXPECT_TRUE(Marked(1, cnUnits));
    EXPECT_TRUE(Marked(2, cnUnits));
    EXPECT_FALSE(Marked(3, cnUnits));
    EXPECT_TRUE(ChangesMade());
    EXPECT_EQ(g.gFields->Ref(1).Units(), "");
}

TEST_F(Cutting, HiddenRowsAreSpared) {
    AddUnits({"a", "b", "c"});
    Hide({2});
    Select(1, cnUnits, 3, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("", "b", ""));
    EXPECT_EQ(suite.clipboard, "a\rc");
}

TEST_F(Cutting, HiddenColumnsAreSpared) {
    AddRow([](cField& field) {
        field.SetCategory("c");
        field.SetUnits("u");
        field.SetRules("A");
    });
    SetShown(cnUnits, false);
    Select(1, cnCategory, 1, cnRules);
    Cut(desk);
    EXPECT_EQ(Cell(1, cnCategory), "");
    EXPECT_EQ(Cell(1, cnUnits), "u");
    EXPECT_EQ(Cell(1, cnRules), "");
    EXPECT_EQ(suite.clipboard, "c\tA");
}

TEST_F(Cutting, SelectionThatBeginsHiddenLeavesOutTheLastVisibleRow) {
    AddUnits({"a", "b", "c"});
    Hide({1});
    Select(1, cnUnits, 3, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("", "", "c"));
}

TEST_F(Cutting, SelectionThatEndsHiddenSparesTheHiddenRow) {
    AddUnits({"a", "b"});
    Hide({2});
    Select(1, cnUnits, 2, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("", "b"));
}

TEST_F(Cutting, ReadOnlyColumnIsRefusedWithoutAnIcon) {
    AddUnits({"a"});
    suite.clipboard = "before";
    Select(1, cnType, 1, cnType);
    toolkit.ExpectBox("Cannot Cut Read-Only Cells!", BoxIcon::None);
    Cut(desk);
    EXPECT_EQ(suite.clipboard, "before");
    ExpectUntouched({"N"}, cnType);
}

TEST_F(Cutting, CellThatMayNotBeBlankRefusesTheWholeRange) {
    AddLimits(cnUSL, {1, 2});
    suite.clipboard = "before";
    Select(1, cnVariableName, 2, cnUSL);
    toolkit.ExpectBox("Some cells could not be cut!\r\n\r\nFound: Max = Blank", BoxIcon::Exclamation);
    Cut(desk);
    EXPECT_EQ(suite.clipboard, "before");
    ExpectUntouched({"V1", "V2"}, cnVariableName);
}

TEST_F(Cutting, LimitsAndBoundsCanNeverBeCut) {
    AddLimits(cnUSL, {1});
    const std::pair<ColumnNumber, const char*> columns[] = {{cnMax, "Max"}, {cnUSL, "USL"}, {cnUCL, "UCL"},
                                                            {cnUWL, "UWL"}, {cnTGT, "TGT"}, {cnLWL, "LWL"},
                                                            {cnLCL, "LCL"}, {cnLSL, "LSL"}, {cnMin, "Min"}};
    for (const auto& [number, name] : columns) {
        Select(1, number, 1, number);
        toolkit.ExpectBox("Some cells could not be cut!\r\n\r\nFound: " + Text(name) + " = Blank",
                          BoxIcon::Exclamation);
        Cut(desk);
    }
    EXPECT_FALSE(ChangesMade());
}

TEST_F(Cutting, ReadOnlyIsAskedBeforeTheValueCellByCell) {
    AddLimits(cnUSL, {1});
    Select(1, cnVarNo, 1, cnMax);
    toolkit.ExpectBox("Cannot Cut Read-Only Cells!", BoxIcon::None);
    Cut(desk);
    Select(1, cnMin, 1, cnType);
    toolkit.ExpectBox("Some cells could not be cut!\r\n\r\nFound: Min = Blank", BoxIcon::Exclamation);
    Cut(desk);
}

TEST_F(Cutting, LastRowIsCut) {
    AddUnits({"a", "b"});
    Select(2, cnUnits, 2, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", ""));
}

// --- Paste
// -------------------------------------------------------------------------------------------------------

struct Pasting : EditDesk {
    void PasteAt(std::int32_t row, ColumnNumber number, Text text) {
        suite.clipboard = std::move(text);
        desk.Grid.Select(row, Position(number));
        Paste(desk);
    }
};

TEST_F(Pasting, BlockFillsTwoByTwoVisibleCells) {
    AddLimits(cnUSL, {0, 0});
    PasteAt(1, cnUSL, "1\t2\r3\t4");
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000", "3.000"));
    EXPECT_THAT(Column(cnUCL), ElementsAre("2.000", "4.000"));
    EXPECT_TRUE(Marked(2, cnUCL));
    EXPECT_TRUE(ChangesMade());
}

TEST_F(Pasting, LinesOfAnotherWidthAreDroppedSilently) {
    AddLimits(cnUSL, {0, 0, 9});
    PasteAt(1, cnUSL, "1\t2\r3\r4\t5");
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000", "4.000", "9.000"));
    EXPECT_THAT(Column(cnUCL), ElementsAre("2.000", "5.000", Cell(3, cnUCL)));
}

TEST_F(Pasting, EmptyLinesHaveNoFieldAndAreDropped) {
    AddUnits({"a", "b", "c"});
    PasteAt(1, cnUnits, "x\r\ry\r");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "y", "c"));
}

TEST_F(Pasting, EmptyClipboardDoesNothingAndSaysNothing) {
    AddUnits({"a"});
    PasteAt(1, cnUnits, "");
    ExpectUntouched({"a"}, cnUnits);
}

TEST_F(Pasting, EmptyFirstLineEndsSilently) {
    AddUnits({"a", "b"});
    PasteAt(1, cnUnits, "\rx");
    PasteAt(1, cnUnits, "\r\r");
    ExpectUntouched({"a", "b"}, cnUnits);
}

TEST_F(Pasting, LoneTabIsTwoEmptyCells) {
    AddRow([](cField& field) {
        field.SetCategory("c");
        field.SetUnits("u");
    });
    PasteAt(1, cnCategory, "\t");
    EXPECT_EQ(Cell(1, cnCategory), "");
    EXPECT_EQ(Cell(1, cnUnits), "");
}

TEST_F(Pasting, WithoutACurrentCellNothingHappens) {
    AddUnits({"a"});
    suite.clipboard = "x";
    desk.Grid.Select(0, 0);
    Paste(desk);
    ExpectUntouched({"a"}, cnUnits);
}

TEST_F(Pasting, BlockLandsOnTheNextVisibleRowsAndColumns) {
    AddUnits({"a", "b", "c", "d"});
    Hide({2, 3});
    SetShown(cnReportType, false);
    for (std::int32_t number = 23; number <= 27; ++number) {
        desk.Grid.SetColHidden(number - 1, true);
    }
    PasteAt(1, cnXRef, "x1\tu1\rx2\tu2");
    EXPECT_THAT(Column(cnUnits), ElementsAre("u1", "b", "c", "u2"));
    EXPECT_THAT(Column(cnXRef), ElementsAre("x1", "", "", "x2"));
}

TEST_F(Pasting, HiddenCurrentCellIsUsedAsItIs) {
    AddUnits({"a", "b", "c"});
    Hide({1});
    PasteAt(1, cnUnits, "x\ry");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "y", "c"));
}

TEST_F(Pasting, SelectionPlaysNoPart) {
    AddUnits({"a", "b", "c"});
    suite.clipboard = "x";
    Select(1, cnUnits, 3, cnUnits);
    Paste(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "b", "c"));
}

TEST_F(Pasting, SelectionDrawnUpwardsPastesWhereItBegan) {
    AddUnits({"a", "b", "c"});
    suite.clipboard = "x";
    Select(3, cnUnits, 1, cnUnits);
    Paste(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b", "x"));
}

TEST_F(Pasting, BlockPastTheLastVisibleRowOrColumnIsRefused) {
    AddUnits({"a", "b", "c"});
    Hide({3});
    const std::pair<const char*, Text> blocks[] = {
        {"a row too many", "x\ry\rz"}, {"many rows", Text(5000, '\t') + "\r"}, {"a column", "x\t1\t2"}};
    for (const auto& [label, text] : blocks) {
        SCOPED_TRACE(label);
        toolkit.ExpectBox("The clipboard's block does not fit from the current cell.", BoxIcon::Exclamation);
        PasteAt(1, text == "x\t1\t2" ? cnCalculationColumn : cnUnits, text);
    }
    ExpectUntouched({"a", "b", "c"}, cnUnits);
}

TEST_F(Pasting, BlockThatEndsInTheLastVisibleRowFits) {
    AddUnits({"a", "b"});
    PasteAt(1, cnUnits, "x\ry");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "y"));
    PasteAt(2, cnUnits, "z");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "z"));
}

TEST_F(Pasting, ReadOnlyColumnIsRefusedWithoutAnIcon) {
    AddUnits({"a"});
    toolkit.ExpectBox("Cannot Paste over Read-Only Cells!", BoxIcon::None);
    PasteAt(1, cnType, "N");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(Pasting, RefusedValueIsNamed) {
    AddLimits(cnUSL, {1, 2});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: USL = 'abc'", BoxIcon::Exclamation);
    PasteAt(1, cnUSL, "5\rabc");
    ExpectUntouched({"1.000", "2.000"}, cnUSL);
}

TEST_F(Pasting, FirstOffendingCellIsReportedRowByRow) {
    AddUnits({"a", "b"});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: Min = 'x'", BoxIcon::Exclamation);
    PasteAt(1, cnMin, "x\tN\r1\tN");
    toolkit.ExpectBox("Cannot Paste over Read-Only Cells!", BoxIcon::None);
    PasteAt(1, cnMin, "1\tN\rx\tN");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(Pasting, LineFeedIsNoSeparatorAndGoesToValidation) {
    AddLimits(cnUSL, {1, 2, 3});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: USL = '\n6'", BoxIcon::Exclamation);
    PasteAt(1, cnUSL, "5\r\n6\r\n");
    ExpectUntouched({"1.000", "2.000", "3.000"}, cnUSL);
}

TEST_F(Pasting, LineFeedStaysInATextAndALastLineOfItAloneCounts) {
    AddUnits({"a", "b", "c"});
    PasteAt(1, cnUnits, "x\r\ny\r\n");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "\ny", "\n"));
    PasteAt(1, cnUnits, "p\nq");
    EXPECT_EQ(Cell(1, cnUnits), "p\nq");
}

TEST_F(Pasting, BothDecimalSeparatorsAreTakenInEitherLocale) {
    for (const char separator : {'.', ','}) {
        locale.separator = separator;
        AddLimits(cnUSL, {0, 0});
        const std::int32_t row = desk.Grid.Rows() - 2;
        PasteAt(row, cnUSL, "1.5\r2,5");
        const Text shown = separator == '.' ? "1.500" : "1,500";
        EXPECT_EQ(Cell(row, cnUSL), shown);
        EXPECT_EQ(g.gFields->Ref(row).USL(), 1.5);
        EXPECT_EQ(g.gFields->Ref(row + 1).USL(), 2.5);
    }
}

TEST_F(Pasting, MixedSeparatorsAreRefused) {
    AddLimits(cnUSL, {1});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: USL = '1,234.5'", BoxIcon::Exclamation);
    PasteAt(1, cnUSL, "1,234.5");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(Pasting, LettersOfLimitsAreTaken) {
    AddLimits(cnUSL, {1, 2});
    PasteAt(1, cnUSL, "b\rC");
    EXPECT_THAT(Column(cnUSL), ElementsAre("B", "C"));
}

TEST_F(Pasting, CharacterThatTheCodePageLacksBecomesAQuestionMark) {
    AddUnits({"a"});
    PasteAt(1, cnUnits, "\u03A9m");
    EXPECT_EQ(Cell(1, cnUnits), "?m");
    EXPECT_EQ(g.gFields->Ref(1).Units(), "?m");
}

TEST_F(Pasting, CopiedBlockPastesAsTheSameCells) {
    AddRow([](cField& field) {
        field.SetCategory("c1");
        field.SetUnits("u1");
    });
    AddRow([](cField& field) { field.SetUnits("u2"); });
    AddUnits({"a", "b"});
    Select(1, cnCategory, 2, cnUnits);
    Copy(desk);
    PasteAt(3, cnCategory, suite.clipboard);
    EXPECT_THAT(Column(cnCategory), ElementsAre("c1", "", "c1", ""));
    EXPECT_THAT(Column(cnUnits), ElementsAre("u1", "u2", "u1", "u2"));
}

TEST_F(Pasting, TextWithASeparatorSplitsOnPaste) {
    AddUnits({"a\rb", "", ""});
    Select(1, cnUnits, 1, cnUnits);
    Copy(desk);
    PasteAt(2, cnUnits, suite.clipboard);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a\rb", "a", "b"));
}

TEST_F(Pasting, MegabytesOfTextAreJudgedAtOnce) {
    AddUnits({"a", "b"});
    toolkit.ExpectBox("The clipboard's block does not fit from the current cell.", BoxIcon::Exclamation);
    Text text;
    for (int line = 0; line < 1'000'000; ++line) {
        text += "12.5\r";
    }
    PasteAt(1, cnUnits, text);
    PasteAt(1, cnUnits, Text(4'000'000, 'x'));
    EXPECT_EQ(Cell(1, cnUnits).size(), 4'000'000U);
}

TEST_F(Pasting, ThirtyThousandCellsRepaintOnce) {
    Text text;
    for (int row = 0; row < 3000; ++row) {
        AddLimits(cnUSL, {1});
        text += "7\t6\t5\t4\t3\t2\t1\r";
    }
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    desk.Grid.Select(1, Position(cnUSL));
    suite.clipboard = text;
    screen = {};
    Paste(desk);
    EXPECT_EQ(screen.layouts, 1);
    EXPECT_EQ(screen.cells, 0);
    desk.Grid.SetScreen(nullptr);
    EXPECT_EQ(Cell(3000, cnLSL), "1.000");
}

// --- Restore
// -------------------------------------------------------------------------------------------------------

using Restoring = EditDesk;

TEST_F(Restoring, SelectedCellsGetTheirBaselineTextAndLoseTheirMark) {
    AddUnits({"a", "b", "c"});
    for (std::int32_t row = 1; row <= 3; ++row) {
        SetCellValue(desk, row, Position(cnUnits), "x");
    }
    Select(1, cnUnits, 2, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b", "x"));
    EXPECT_FALSE(Marked(1, cnUnits));
    EXPECT_TRUE(Marked(3, cnUnits));
    EXPECT_EQ(g.gFields->Ref(1).Units(), "a");
}

TEST_F(Restoring, ViewStaysMarkedAsChanged) {
    AddUnits({"a"});
    SetCellValue(desk, 1, Position(cnUnits), "x");
    Select(1, cnUnits, 1, cnUnits);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnUnits), "a");
    EXPECT_TRUE(modKDLimitDesk::AnyChanges(g));
}

TEST_F(Restoring, CellThatNeverChangedIsRewrittenAndUnmarked) {
    AddUnits({"a"});
    desk.Grid.SetBackColor(1, Position(cnUnits), ChangedColour);
    Select(1, cnUnits, 1, cnUnits);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnUnits), "a");
    EXPECT_FALSE(Marked(1, cnUnits));
    EXPECT_FALSE(ChangesMade());
}

TEST_F(Restoring, HiddenRowsInsideAreSpared) {
    AddUnits({"a", "b", "c"});
    for (std::int32_t row = 1; row <= 3; ++row) {
        SetCellValue(desk, row, Position(cnUnits), "x");
    }
    Hide({2});
    Select(1, cnUnits, 3, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "x", "c"));
}

TEST_F(Restoring, HiddenColumnsInsideAreSpared) {
    AddLimits(cnUSL, {1});
    for (const ColumnNumber number : {cnUSL, cnUCL, cnUWL}) {
        SetCellValue(desk, 1, Position(number), "9");
    }
    SetShown(cnUCL, false);
    Select(1, cnUSL, 1, cnUWL);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnUSL), "1.000");
    EXPECT_EQ(Cell(1, cnUCL), "9.000");
    EXPECT_EQ(Cell(1, cnUWL), "C");
}

TEST_F(Restoring, SelectionThatBeginsHiddenLeavesOutTheLastVisibleRow) {
    AddUnits({"a", "b", "c"});
    for (std::int32_t row = 1; row <= 3; ++row) {
        SetCellValue(desk, row, Position(cnUnits), "x");
    }
    Hide({1});
    Select(1, cnUnits, 3, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b", "x"));
}

TEST_F(Restoring, SelectionThatEndsHiddenSparesTheHiddenRow) {
    AddUnits({"a", "b"});
    SetCellValue(desk, 1, Position(cnUnits), "x");
    SetCellValue(desk, 2, Position(cnUnits), "x");
    Hide({2});
    Select(1, cnUnits, 2, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "x"));
}

TEST_F(Restoring, ReadOnlyColumnsAreRestoredToo) {
    AddUnits({"a"});
    SetCellValue(desk, 1, Position(cnType), "T");
    SetCellValue(desk, 1, Position(cnLength), "5");
    Select(1, cnType, 1, cnLength);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnType), "N");
    EXPECT_EQ(Cell(1, cnLength), "8");
    EXPECT_EQ(g.gFields->Ref(1).FieldType(), "N");
}

TEST_F(Restoring, ColumnsOfTheViewKeepTheirText) {
    AddUnits({"a"});
    Select(1, cnFilename, 1, cnVarNo);
    const Text file = Cell(1, cnFilename);
    Restore(desk);
    EXPECT_EQ(file, "milk.kdt");
    EXPECT_EQ(Cell(1, cnFilename), "milk.kdt");
    EXPECT_EQ(Cell(1, static_cast<ColumnNumber>(4)), "Milk");
    EXPECT_FALSE(Marked(1, cnFilename));
    EXPECT_FALSE(ChangesMade());
}

TEST_F(Restoring, RulesGetTheFilesLetters) {
    AddUnits({"a"});
    g.gFields->Ref(1).SetRules("CB");       // letters of the catalogue
    g.gSavedFields->Ref(1).SetRules("AB");  // letters of the file
    Select(1, cnRules, 1, cnRules);
    Restore(desk);
    EXPECT_EQ(g.gFields->Ref(1).Rules(), "AB");
    EXPECT_EQ(Cell(1, cnRules), "AB");
    EXPECT_FALSE(Marked(1, cnRules));
}

TEST_F(Restoring, DigitsBeyondTheMaskAreLostUnmarked) {
    AddLimits(cnUSL, {1.23456});
    Select(1, cnUSL, 1, cnUSL);
    Restore(desk);
    EXPECT_EQ(g.gFields->Ref(1).USL(), 1.235);
    EXPECT_EQ(g.gSavedFields->Ref(1).USL(), 1.23456);
    EXPECT_FALSE(Marked(1, cnUSL));
    EXPECT_FALSE(ChangesMade());
}

TEST_F(Restoring, ColumnsOfLettersComeBackInUpperCase) {
    AddRow([](cField& field) {
        field.SetFieldType("n");
        field.SetReportType("va");
        field.SetRequired("y");
        field.SetUpperCase("y");
    });
    desk.Grid.SetRowHidden(1, false);
    for (const std::int32_t number : {18, 22, 26, 35}) {
        const auto column = static_cast<ColumnNumber>(number);
        SetShown(column, true);
        Select(1, column, 1, column);
        Restore(desk);
        EXPECT_FALSE(Marked(1, column)) << number;
    }
    const cField& field = g.gFields->Ref(1);
    EXPECT_EQ(field.FieldType(), "N");
    EXPECT_EQ(field.ReportType(), "VA");
    EXPECT_EQ(field.Required(), "Y");
    EXPECT_EQ(field.UpperCase(), "Y");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(Restoring, NothingIsSaidAndNothingValidated) {
    AddRow([](cField& field) { field.SetReportType("??"); });
    Select(1, cnReportType, 1, cnReportType);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnReportType), "??");
    EXPECT_TRUE(toolkit.log.empty());
}

TEST_F(Restoring, LastRowIsRestored) {
    AddUnits({"a", "b"});
    SetCellValue(desk, 2, Position(cnUnits), "x");
    Select(2, cnUnits, 2, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b"));
}

TEST_F(Restoring, ManyRowsRepaintOnce) {
    AddUnits(std::vector<Text>(500, "a"));
    Select(1, cnUnits, 500, cnUnits);
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    Restore(desk);
    EXPECT_EQ(screen.layouts, 1);
    desk.Grid.SetScreen(nullptr);
    EXPECT_THAT(Column(cnUnits), Each(Text("a")));
}

}  // namespace
}  // namespace kd
