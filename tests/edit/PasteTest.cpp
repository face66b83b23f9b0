#include "edit/RestoreCutCopyPaste.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "edit/EditDesk.h"

namespace kd {
namespace {

using testing::ElementsAre;

struct PasteTest : testing::Test, EditDesk {
    void PasteAt(std::int32_t row, ColumnNumber number, Text text) {
        suite.clipboard = std::move(text);
        desk.Grid.Select(row, Position(number));
        Paste(desk);
    }
};

TEST_F(PasteTest, BlockFillsTwoByTwoVisibleCells) {
    AddLimits(cnUSL, {0, 0});
    PasteAt(1, cnUSL, "1\t2\r3\t4");
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000", "3.000"));
    EXPECT_THAT(Column(cnUCL), ElementsAre("2.000", "4.000"));
    EXPECT_TRUE(Marked(2, cnUCL));
    EXPECT_TRUE(ChangesMade());
}

TEST_F(PasteTest, LinesOfAnotherWidthAreDroppedSilently) {
    AddLimits(cnUSL, {0, 0, 9});
    PasteAt(1, cnUSL, "1\t2\r3\r4\t5");
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000", "4.000", "9.000"));
    EXPECT_THAT(Column(cnUCL), ElementsAre("2.000", "5.000", Cell(3, cnUCL)));
}

TEST_F(PasteTest, WiderLinesAreDroppedAsNarrowerOnesAre) {
    AddLimits(cnUSL, {0, 0, 9});
    PasteAt(1, cnUSL, "1\t2\r3\t4\t5\r6\t7\r8\r");
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000", "6.000", "9.000"));
    EXPECT_THAT(Column(cnUCL), ElementsAre("2.000", "7.000", Cell(3, cnUCL)));
    EXPECT_EQ(Cell(1, cnUWL), "C") << "nothing runs over into the next column";
}

TEST_F(PasteTest, RefusalNamesTheOffendingColumnOfSeveral) {
    AddLimits(cnUSL, {1});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: UCL = 'x'", BoxIcon::Exclamation);
    PasteAt(1, cnUSL, "5\tx");
    ExpectUntouched({"1.000"}, cnUSL);
}

TEST_F(PasteTest, HiddenCurrentColumnIsUsedAsItIs) {
    AddLimits(cnUSL, {1});
    SetShown(cnUSL, false);
    SetShown(cnUCL, false);
    PasteAt(1, cnUSL, "5\t6");
    EXPECT_EQ(Cell(1, cnUSL), "5.000");
    EXPECT_EQ(Cell(1, cnUCL), "C");
    EXPECT_EQ(Cell(1, cnUWL), "6.000");
}

TEST_F(PasteTest, BlockSmallerThanTheSelectionLeavesTheRestOfIt) {
    AddUnits({"a", "b", "c", "d"});
    suite.clipboard = "x\ry";
    Select(1, cnCategory, 4, cnUnits);
    Paste(desk);
    EXPECT_THAT(Column(cnCategory), ElementsAre("x", "y", "", ""));
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b", "c", "d"));
}

TEST_F(PasteTest, EmptyLinesHaveNoFieldAndAreDropped) {
    AddUnits({"a", "b", "c"});
    PasteAt(1, cnUnits, "x\r\ry\r");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "y", "c"));
}

TEST_F(PasteTest, EmptyClipboardDoesNothingAndSaysNothing) {
    AddUnits({"a"});
    PasteAt(1, cnUnits, "");
    ExpectUntouched({"a"}, cnUnits);
}

TEST_F(PasteTest, EmptyFirstLineEndsSilently) {
    AddUnits({"a", "b"});
    PasteAt(1, cnUnits, "\rx");
    PasteAt(1, cnUnits, "\r\r");
    ExpectUntouched({"a", "b"}, cnUnits);
}

TEST_F(PasteTest, LoneTabIsTwoEmptyCells) {
    AddRow([](cField& field) {
        field.SetCategory("c");
        field.SetUnits("u");
    });
    PasteAt(1, cnCategory, "\t");
    EXPECT_EQ(Cell(1, cnCategory), "");
    EXPECT_EQ(Cell(1, cnUnits), "");
}

TEST_F(PasteTest, WithoutACurrentCellNothingHappens) {
    AddUnits({"a"});
    suite.clipboard = "x";
    desk.Grid.Select(0, 0);
    Paste(desk);
    ExpectUntouched({"a"}, cnUnits);
}

TEST_F(PasteTest, BlockLandsOnTheNextVisibleRowsAndColumns) {
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

TEST_F(PasteTest, HiddenCurrentCellIsUsedAsItIs) {
    AddUnits({"a", "b", "c"});
    Hide({1});
    PasteAt(1, cnUnits, "x\ry");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "y", "c"));
}

TEST_F(PasteTest, SelectionPlaysNoPart) {
    AddUnits({"a", "b", "c"});
    suite.clipboard = "x";
    Select(1, cnUnits, 3, cnUnits);
    Paste(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "b", "c"));
}

TEST_F(PasteTest, SelectionDrawnUpwardsPastesWhereItBegan) {
    AddUnits({"a", "b", "c"});
    suite.clipboard = "x";
    Select(3, cnUnits, 1, cnUnits);
    Paste(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b", "x"));
}

TEST_F(PasteTest, BlockPastTheLastVisibleRowOrColumnIsRefused) {
    AddUnits({"a", "b", "c"});
    Hide({3});
    const std::pair<const char*, Text> blocks[] = {
        {"a row too many", "x\ry\rz"}, {"many rows", Text(5000, '\t') + "\r"}, {"a column", "x\t1\t2"}};
    for (const auto& [label, text] : blocks) {
        SCOPED_TRACE(label);
        toolkit.ExpectBox("The clipboard's block does not fit from the current cell.", BoxIcon::Exclamation);
        PasteAt(1, text == "x\t1\t2" ? cnCalculation : cnUnits, text);
    }
    ExpectUntouched({"a", "b", "c"}, cnUnits);
}

TEST_F(PasteTest, BlockThatEndsInTheLastVisibleRowFits) {
    AddUnits({"a", "b"});
    PasteAt(1, cnUnits, "x\ry");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "y"));
    PasteAt(2, cnUnits, "z");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "z"));
}

TEST_F(PasteTest, ReadOnlyColumnIsRefusedWithoutAnIcon) {
    AddUnits({"a"});
    toolkit.ExpectBox("Cannot Paste over Read-Only Cells!", BoxIcon::None);
    PasteAt(1, cnType, "N");
    toolkit.ExpectBox("Cannot Paste over Read-Only Cells!", BoxIcon::None);
    PasteAt(1, cnID, "7");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(PasteTest, RefusedValueIsNamed) {
    AddLimits(cnUSL, {1, 2});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: USL = 'abc'", BoxIcon::Exclamation);
    PasteAt(1, cnUSL, "5\rabc");
    ExpectUntouched({"1.000", "2.000"}, cnUSL);
}

TEST_F(PasteTest, RefusedValueIsNamedWithAQuestionMarkForACharacterThatTheCodePageLacks) {
    AddLimits(cnUSL, {1});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: USL = '?\u00B5'", BoxIcon::Exclamation);
    PasteAt(1, cnUSL, "\u03A9\u00B5");
    ExpectUntouched({"1.000"}, cnUSL);
}

TEST_F(PasteTest, FirstOffendingCellIsReportedRowByRow) {
    AddUnits({"a", "b"});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: Min = 'x'", BoxIcon::Exclamation);
    PasteAt(1, cnMin, "x\tN\r1\tN");
    toolkit.ExpectBox("Cannot Paste over Read-Only Cells!", BoxIcon::None);
    PasteAt(1, cnMin, "1\tN\rx\tN");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(PasteTest, LineFeedIsNoSeparatorAndGoesToValidation) {
    AddLimits(cnUSL, {1, 2, 3});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: USL = '\n6'", BoxIcon::Exclamation);
    PasteAt(1, cnUSL, "5\r\n6\r\n");
    ExpectUntouched({"1.000", "2.000", "3.000"}, cnUSL);
}

TEST_F(PasteTest, LineFeedStaysInATextAndALastLineOfItAloneCounts) {
    AddUnits({"a", "b", "c"});
    PasteAt(1, cnUnits, "x\r\ny\r\n");
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "\ny", "\n"));
    PasteAt(1, cnUnits, "p\nq");
    EXPECT_EQ(Cell(1, cnUnits), "p\nq");
}

TEST_F(PasteTest, BothDecimalSeparatorsAreTakenInEitherLocale) {
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

TEST_F(PasteTest, MixedSeparatorsAreRefused) {
    AddLimits(cnUSL, {1});
    toolkit.ExpectBox("Clipboard contains invalid data.\r\n\r\nFound: USL = '1,234.5'", BoxIcon::Exclamation);
    PasteAt(1, cnUSL, "1,234.5");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(PasteTest, LettersOfLimitsAreTaken) {
    AddLimits(cnUSL, {1, 2});
    PasteAt(1, cnUSL, "b\rC");
    EXPECT_THAT(Column(cnUSL), ElementsAre("B", "C"));
}

TEST_F(PasteTest, CharacterThatTheCodePageLacksBecomesAQuestionMark) {
    AddUnits({"a"});
    PasteAt(1, cnUnits, "\u03A9m");
    EXPECT_EQ(Cell(1, cnUnits), "?m");
    EXPECT_EQ(g.gFields->Ref(1).Units(), "?m");
}

TEST_F(PasteTest, CopiedBlockPastesAsTheSameCells) {
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

TEST_F(PasteTest, AWriteThatFailsMidwayLeavesTheCellsBeforeItWrittenRowByRow) {
    AddUnits({"", "", ""});
    SetShown(cnTargetMethod, true);
    SetShown(cnSample, true);
    // The last sample size passes the gate, and is too large for the record.
    suite.clipboard = "Calc\t1\rCalc\t40000\rCalc\t3";
    desk.Grid.Select(1, Position(cnTargetMethod));
    EXPECT_THROW(Paste(desk), cError);
    EXPECT_THAT(Column(cnTargetMethod), ElementsAre("Calc", "Calc", "Fixed"));
    EXPECT_THAT(Column(cnSample), ElementsAre("1", "0", "0"));
    EXPECT_TRUE(Marked(2, cnTargetMethod));
    EXPECT_FALSE(Marked(2, cnSample));
    EXPECT_TRUE(desk.Grid.Redraw());
}

TEST_F(PasteTest, TextWithASeparatorSplitsOnPaste) {
    AddUnits({"a\rb", "", ""});
    Select(1, cnUnits, 1, cnUnits);
    Copy(desk);
    PasteAt(2, cnUnits, suite.clipboard);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a\rb", "a", "b"));
}

TEST_F(PasteTest, MegabytesOfTextAreJudgedAtOnce) {
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

TEST_F(PasteTest, ThirtyThousandCellsRepaintOnce) {
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

}  // namespace
}  // namespace kd
