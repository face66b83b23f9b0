#include "edit/RestoreCutCopyPaste.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "edit/EditDesk.h"
#include "grid/CellGate.h"
#include "model/modKDLimitDesk.h"

namespace kd {
namespace {

using testing::Each;
using testing::ElementsAre;

struct RestoreTest : testing::Test, EditDesk {};

TEST_F(RestoreTest, SelectedCellsGetTheirBaselineTextAndLoseTheirMark) {
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

TEST_F(RestoreTest, ViewStaysMarkedAsChanged) {
    AddUnits({"a"});
    SetCellValue(desk, 1, Position(cnUnits), "x");
    Select(1, cnUnits, 1, cnUnits);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnUnits), "a");
    EXPECT_TRUE(modKDLimitDesk::AnyChanges(g));
}

TEST_F(RestoreTest, CellThatNeverChangedIsRewrittenAndUnmarked) {
    AddUnits({"a"});
    desk.Grid.SetBackColor(1, Position(cnUnits), ChangedColour);
    Select(1, cnUnits, 1, cnUnits);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnUnits), "a");
    EXPECT_FALSE(Marked(1, cnUnits));
    EXPECT_FALSE(ChangesMade());
}

TEST_F(RestoreTest, HiddenRowsInsideAreSpared) {
    AddUnits({"a", "b", "c"});
    for (std::int32_t row = 1; row <= 3; ++row) {
        SetCellValue(desk, row, Position(cnUnits), "x");
    }
    Hide({2});
    Select(1, cnUnits, 3, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "x", "c"));
}

TEST_F(RestoreTest, HiddenColumnsInsideAreSpared) {
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

TEST_F(RestoreTest, SelectionThatBeginsHiddenLeavesOutTheLastVisibleRow) {
    AddUnits({"a", "b", "c"});
    for (std::int32_t row = 1; row <= 3; ++row) {
        SetCellValue(desk, row, Position(cnUnits), "x");
    }
    Hide({1});
    Select(1, cnUnits, 3, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b", "x"));
}

TEST_F(RestoreTest, SelectionThatEndsHiddenSparesTheHiddenRow) {
    AddUnits({"a", "b"});
    SetCellValue(desk, 1, Position(cnUnits), "x");
    SetCellValue(desk, 2, Position(cnUnits), "x");
    Hide({2});
    Select(1, cnUnits, 2, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "x"));
}

TEST_F(RestoreTest, ReadOnlyColumnsAreRestoredToo) {
    AddUnits({"a"});
    SetCellValue(desk, 1, Position(cnType), "T");
    SetCellValue(desk, 1, Position(cnLength), "5");
    Select(1, cnType, 1, cnLength);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnType), "N");
    EXPECT_EQ(Cell(1, cnLength), "8");
    EXPECT_EQ(g.gFields->Ref(1).FieldType(), "N");
}

TEST_F(RestoreTest, ColumnsOfTheViewKeepTheirText) {
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

TEST_F(RestoreTest, RulesGetTheFilesLetters) {
    AddUnits({"a"});
    g.gFields->Ref(1).SetRules("CB");       // letters of the catalogue
    g.gSavedFields->Ref(1).SetRules("AB");  // letters of the file
    Select(1, cnRules, 1, cnRules);
    Restore(desk);
    EXPECT_EQ(g.gFields->Ref(1).Rules(), "AB");
    EXPECT_EQ(Cell(1, cnRules), "AB");
    EXPECT_FALSE(Marked(1, cnRules));
}

TEST_F(RestoreTest, DigitsBeyondTheMaskAreLostUnmarked) {
    AddLimits(cnUSL, {1.23456});
    Select(1, cnUSL, 1, cnUSL);
    Restore(desk);
    EXPECT_EQ(g.gFields->Ref(1).USL(), 1.235);
    EXPECT_EQ(g.gSavedFields->Ref(1).USL(), 1.23456);
    EXPECT_FALSE(Marked(1, cnUSL));
    EXPECT_FALSE(ChangesMade());
}

TEST_F(RestoreTest, ColumnsOfLettersComeBackInUpperCase) {
    AddRow([](cField& field) {
        field.SetFieldType("n");
        field.SetReportType("va");
        field.SetRequired("y");
        field.SetUpperCase("y");
    });
    desk.Grid.SetRowHidden(1, false);
    for (const std::int32_t number : {cnType, cnReportType, cnRequired, cnUCase}) {
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

TEST_F(RestoreTest, RowsAndColumnsAreToldByTheirIntegers) {
    AddUnits({"a", "b"});
    g.gSavedFields->Ref(1).SetCategory("first");
    g.gSavedFields->Ref(2).SetCategory("second");
    desk.Grid.SetRowData(1, 2);  // the rows have changed places, and two columns
    desk.Grid.SetRowData(2, 1);
    desk.Grid.SetColData(Position(cnUnits), cnCategory);
    desk.Grid.SetColData(Position(cnCategory), cnUnits);
    Select(1, cnUnits, 1, cnUnits);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnUnits), "second");
    EXPECT_EQ(g.gFields->Ref(2).Category(), "second");
    EXPECT_EQ(g.gFields->Ref(1).Category(), "");
}

TEST_F(RestoreTest, NothingIsSaidAndNothingValidated) {
    AddRow([](cField& field) { field.SetReportType("??"); });
    Select(1, cnReportType, 1, cnReportType);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnReportType), "??");
    EXPECT_TRUE(toolkit.log.empty());
}

TEST_F(RestoreTest, TheFirstColumnOfTheVariableIsRestoredThoughItIsReadOnly) {
    AddUnits({"a"});
    const Text saved = Cell(1, cnVarNo);
    SetCellValue(desk, 1, Position(cnVarNo), "77");
    ASSERT_EQ(g.gFields->Ref(1).VariableNo(), 77);
    ASSERT_TRUE(Marked(1, cnVarNo));
    Select(1, cnVarNo, 1, cnVarNo);
    Restore(desk);
    EXPECT_EQ(Cell(1, cnVarNo), saved);
    EXPECT_EQ(g.gFields->Ref(1).VariableNo(), g.gSavedFields->Ref(1).VariableNo());
    EXPECT_FALSE(Marked(1, cnVarNo));
}

TEST_F(RestoreTest, LastRowIsRestored) {
    AddUnits({"a", "b"});
    SetCellValue(desk, 2, Position(cnUnits), "x");
    Select(2, cnUnits, 2, cnUnits);
    Restore(desk);
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b"));
}

TEST_F(RestoreTest, ManyRowsRepaintOnce) {
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
