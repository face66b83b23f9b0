#include "edit/RestoreCutCopyPaste.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "edit/EditDesk.h"

namespace kd {
namespace {

using testing::ElementsAre;

struct CopyTest : testing::Test, EditDesk {};

TEST_F(CopyTest, OneCellIsItsTextWithoutASeparator) {
    AddUnits({"kg"});
    Select(1, cnUnits, 1, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "kg");
}

TEST_F(CopyTest, TabBetweenCellsAndCrBetweenRowsAndNothingElse) {
    AddUnits({"a", "", "c"});
    Select(1, cnCategory, 3, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "\ta\r\t\r\tc");
}

TEST_F(CopyTest, OnlyVisibleRowsAreCopied) {
    AddUnits({"a", "b", "c", "d", "e"});
    Hide({2, 3, 4});
    Select(1, cnUnits, 5, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "a\re");
}

TEST_F(CopyTest, OnlyVisibleColumnsAreCopied) {
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

TEST_F(CopyTest, SelectionThatBeginsHiddenUsesTheHiddenRowAndLeavesOutTheLastVisibleOne) {
    AddUnits({"a", "b", "c", "d"});
    Hide({1});
    Select(1, cnUnits, 4, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "a\rb\rc");
}

TEST_F(CopyTest, SelectionThatEndsHiddenLeavesTheHiddenRowsOut) {
    AddUnits({"a", "b", "c"});
    Hide({2, 3});
    Select(1, cnUnits, 3, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "a");
}

TEST_F(CopyTest, LastRowIsCopied) {
    AddUnits({"a", "b"});
    Select(2, cnUnits, 2, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "b");
}

TEST_F(CopyTest, ReadOnlyCellsAreCopied) {
    AddUnits({"a"});
    Select(1, cnType, 1, cnLength);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "N\t8");
}

TEST_F(CopyTest, ShownTextIsCopiedWithTheLocalesSeparator) {
    locale.separator = ',';
    AddLimits(cnUSL, {1.5});
    Select(1, cnUSL, 1, cnUSL);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "1,500");
}

TEST_F(CopyTest, TextWithASeparatorIsCopiedAsItStands) {
    AddUnits({"a\tb\rc"});
    Select(1, cnUnits, 1, cnUnits);
    Copy(desk);
    EXPECT_EQ(suite.clipboard, "a\tb\rc");
}

TEST_F(CopyTest, NothingIsChangedInTheGrid) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    Copy(desk);
    ExpectUntouched({"a"}, cnUnits);
}

struct CutTest : testing::Test, EditDesk {};

TEST_F(CutTest, CellsAreBlankedMarkedAndOnTheClipboard) {
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

TEST_F(CutTest, HiddenRowsAreSpared) {
    AddUnits({"a", "b", "c"});
    Hide({2});
    Select(1, cnUnits, 3, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("", "b", ""));
    EXPECT_EQ(suite.clipboard, "a\rc");
}

TEST_F(CutTest, HiddenColumnsAreSpared) {
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

TEST_F(CutTest, SelectionThatBeginsHiddenLeavesOutTheLastVisibleRow) {
    AddUnits({"a", "b", "c"});
    Hide({1});
    Select(1, cnUnits, 3, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("", "", "c"));
}

TEST_F(CutTest, SelectionThatEndsHiddenSparesTheHiddenRow) {
    AddUnits({"a", "b"});
    Hide({2});
    Select(1, cnUnits, 2, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("", "b"));
}

TEST_F(CutTest, ReadOnlyColumnIsRefusedWithoutAnIcon) {
    AddUnits({"a"});
    suite.clipboard = "before";
    Select(1, cnType, 1, cnType);
    toolkit.ExpectBox("Cannot Cut Read-Only Cells!", BoxIcon::None);
    Cut(desk);
    EXPECT_EQ(suite.clipboard, "before");
    ExpectUntouched({"N"}, cnType);
}

TEST_F(CutTest, CellThatMayNotBeBlankRefusesTheWholeRange) {
    AddLimits(cnUSL, {1, 2});
    suite.clipboard = "before";
    Select(1, cnVariableName, 2, cnUSL);
    toolkit.ExpectBox("Some cells could not be cut!\r\n\r\nFound: Max = Blank", BoxIcon::Exclamation);
    Cut(desk);
    EXPECT_EQ(suite.clipboard, "before");
    ExpectUntouched({"V1", "V2"}, cnVariableName);
}

TEST_F(CutTest, LimitsAndBoundsCanNeverBeCut) {
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

TEST_F(CutTest, WordsMarksAndNumbersThatMayNotBeBlankCanNeverBeCut) {
    AddUnits({"a"});
    suite.clipboard = "before";
    const std::pair<ColumnNumber, const char*> columns[] = {
        {cnReportType, "ReportType"}, {ColumnNumber{23}, "LimitMethod"}, {ColumnNumber{24}, "TargetMethod"},
        {ColumnNumber{25}, "Sample"}, {ColumnNumber{26}, "Required"},    {cnUCase, "UCase"}};
    for (const auto& [number, name] : columns) {
        SetShown(number, true);
        Select(1, number, 1, number);
        toolkit.ExpectBox("Some cells could not be cut!\r\n\r\nFound: " + Text(name) + " = Blank",
                          BoxIcon::Exclamation);
        Cut(desk);
    }
    EXPECT_FALSE(ChangesMade());
    EXPECT_EQ(suite.clipboard, "before");
}

TEST_F(CutTest, ReadOnlyIsAskedBeforeTheValueCellByCell) {
    AddLimits(cnUSL, {1});
    Select(1, cnVarNo, 1, cnMax);
    toolkit.ExpectBox("Cannot Cut Read-Only Cells!", BoxIcon::None);
    Cut(desk);
    Select(1, cnMin, 1, cnType);
    toolkit.ExpectBox("Some cells could not be cut!\r\n\r\nFound: Min = Blank", BoxIcon::Exclamation);
    Cut(desk);
}

TEST_F(CutTest, ClipboardIsTouchedOnlyAfterTheCellsAreBlank) {
    AddUnits({"a"});
    suite.clipboard = "before";
    Select(1, cnUnits, 1, cnUnits);
    /// Looks at the clipboard when the grid repaints, which is when all cells are written.
    struct Watcher : GridScreen {
        explicit Watcher(CutTest& cut) : test(cut) {}
        void LayoutChanged() override { seen.push_back(test.Cell(1, cnUnits) + "|" + test.suite.clipboard); }
        CutTest& test;
        std::vector<Text> seen;
    } watcher(*this);
    desk.Grid.SetScreen(&watcher);
    Cut(desk);
    desk.Grid.SetScreen(nullptr);
    EXPECT_THAT(watcher.seen, ElementsAre("|before"));
    EXPECT_EQ(suite.clipboard, "a");
}

TEST_F(CutTest, LastRowIsCut) {
    AddUnits({"a", "b"});
    Select(2, cnUnits, 2, cnUnits);
    Cut(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", ""));
}

}  // namespace
}  // namespace kd
