#include "grid/ColumnCatalogue.h"

#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <set>

#include "fakes/Builders.h"
#include "grid/RowFill.h"
#include "model/Columns.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

struct Expected {
    const char* name;
    const char* alignment;
    bool editable;
    bool visible;
};

TEST(ColumnCatalogueTest, HoldsAllColumnsInOrder) {
    const Expected expected[] = {{"ID", "R", false, false},         {"Folder", "L", false, false},
                                 {"Filename", "L", false, true},    {"Title", "L", false, true},
                                 {"View Name", "L", false, true},   {"ViewNo", "R", false, false},
                                 {"VarNo", "R", false, true},       {"Variable Name", "L", true, true},
                                 {"Max", "R", true, true},          {"USL", "R", true, true},
                                 {"UCL", "R", true, true},          {"UWL", "R", true, true},
                                 {"TGT", "R", true, true},          {"LWL", "R", true, true},
                                 {"LCL", "R", true, true},          {"LSL", "R", true, true},
                                 {"Min", "R", true, true},          {"Type", "L", false, true},
                                 {"Length", "R", false, true},      {"Decimals", "R", false, true},
                                 {"XRef", "L", true, false},        {"ReportType", "L", true, false},
                                 {"LimitMethod", "L", true, false}, {"TargetMethod", "L", true, false},
                                 {"Sample", "R", true, false},      {"Required", "L", true, false},
                                 {"Category", "L", true, false},    {"Units", "L", true, false},
                                 {"Rules", "L", true, false},       {"Popup", "L", true, false},
                                 {"InputFile", "L", true, false},   {"OutputFile", "L", true, false},
                                 {"HelpFile", "L", true, false},    {"Calculation", "L", true, false},
                                 {"UCase", "L", true, false}};
    TestMachine desk;
    BuildColumnCatalogue(desk.g);
    ASSERT_EQ(desk.g.gLabels->Count(), ColumnCount);
    ASSERT_EQ(std::ssize(expected), ColumnCount) << "a column that nobody looks at";
    std::int32_t number = 0;
    for (const Expected& column : expected) {
        const cLabel& label = desk.g.gLabels->Ref(++number);
        EXPECT_EQ(label.Name(), column.name) << number;
        EXPECT_EQ(label.Alignment(), column.alignment) << column.name;
        EXPECT_EQ(label.Editable(), column.editable) << column.name;
        EXPECT_EQ(label.Visible(), column.visible) << column.name;
        EXPECT_EQ(label.Filters()->Count(), 0) << column.name;
    }
}

TEST(ColumnCatalogueTest, BuildingAnewTakesNewRecordsAndDropsFilters) {
    TestMachine desk;
    BuildColumnCatalogue(desk.g);
    const auto before = desk.g.gLabels;
    before->Ref(9).Filters()->Add("1", true);
    BuildColumnCatalogue(desk.g);
    EXPECT_NE(desk.g.gLabels, before);
    EXPECT_EQ(desk.g.gLabels->Ref(9).Filters()->Count(), 0);
    EXPECT_EQ(before->Ref(9).Filters()->Count(), 1);
}

TEST(ColumnCatalogueTest, LayingOutLeavesTheHeaderRowAlone) {
    LoadedDesk desk;
    BuildColumnCatalogue(desk.g);
    desk.desk.Grid.SetRows(5);
    SetupGridColumns(desk.desk);
    const VSFlexGrid& grid = desk.desk.Grid;
    EXPECT_EQ(grid.Rows(), 1);
    EXPECT_EQ(grid.Cols(), ColumnCount);
    for (std::int32_t col = 0; col < ColumnCount; ++col) {
        EXPECT_EQ(grid.ColData(col), col + 1);
        EXPECT_EQ(grid.TextMatrix(0, col), desk.g.gLabels->Ref(col + 1).Name());
        EXPECT_EQ(grid.CellPicture(col), HeaderPicture::FilterOff) << col;
        EXPECT_EQ(grid.ColHidden(col), !desk.g.gLabels->Ref(col + 1).Visible()) << col;
    }
}

TEST(ColumnCatalogueTest, ARebuildDropsMarksHiddenRowsFunnelsAndTheSelection) {
    LoadedDesk desk;
    desk.Put(anApplication().Field(aField()).Field(aField()));
    desk.Load();
    VSFlexGrid& grid = desk.desk.Grid;
    grid.SetBackColor(1, 9, ChangedColour);
    grid.SetRowHidden(1, true);
    grid.SetCellPicture(9, HeaderPicture::FilterOn);
    grid.Select(1, cnUSL - 1);
    grid.ExtendSelection(2, cnTGT - 1);
    desk.Load();
    EXPECT_EQ(grid.BackColor(1, cnUSL - 1), 0U);
    EXPECT_FALSE(grid.RowHidden(1));
    EXPECT_EQ(grid.CellPicture(cnUSL - 1), HeaderPicture::FilterOff);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{0, 0, 0, 0}));
}

TEST(ColumnCatalogueTest, ARebuildUnfreezesTheColumns) {
    LoadedDesk desk;
    BuildColumnCatalogue(desk.g);
    SetupGridColumns(desk.desk);
    desk.desk.Grid.SetFrozenCols(8);
    SetupGridColumns(desk.desk);
    EXPECT_EQ(desk.desk.Grid.FrozenCols(), 0);
}

TEST(ColumnCatalogueTest, ARebuildHidesThePropertyColumnsThoughShowAllPropertiesStaysTicked) {
    LoadedDesk desk;
    desk.desk.mnuShowAll.SetChecked(true);
    BuildColumnCatalogue(desk.g);
    // A property column that is visible by itself tells the two rules apart: position 20 goes by its flag.
    desk.g.gLabels->Ref(cnXRef).SetVisible(true);
    desk.g.gLabels->Ref(cnReportType).SetVisible(true);
    SetupGridColumns(desk.desk);
    EXPECT_FALSE(desk.desk.Grid.ColHidden(cnXRef - 1));
    EXPECT_TRUE(desk.desk.Grid.ColHidden(cnReportType - 1));
    EXPECT_TRUE(desk.desk.Grid.ColHidden(ColumnCount - 1));
    EXPECT_TRUE(desk.desk.mnuShowAll.Checked());
}

TEST(ColumnCatalogueTest, WithoutTheTickARebuildGoesByTheColumnsOwnFlagsAlone) {
    LoadedDesk desk;
    BuildColumnCatalogue(desk.g);
    desk.g.gLabels->Ref(cnReportType).SetVisible(true);
    SetupGridColumns(desk.desk);
    EXPECT_FALSE(desk.desk.Grid.ColHidden(cnReportType - 1));
    EXPECT_TRUE(desk.desk.Grid.ColHidden(cnUnits - 1));
}

class AutoSizeCalls : public GridScreen {
public:
    std::vector<std::pair<std::int32_t, std::int32_t>> calls;
    void AutoSize(std::int32_t first, std::int32_t last) override { calls.emplace_back(first, last); }
};

TEST(ColumnCatalogueTest, LayingOutSizesAllColumns) {
    LoadedDesk desk;
    BuildColumnCatalogue(desk.g);
    AutoSizeCalls screen;
    desk.desk.Grid.SetScreen(&screen);
    SetupGridColumns(desk.desk);
    EXPECT_EQ(screen.calls, (std::vector<std::pair<std::int32_t, std::int32_t>>{{0, ColumnCount - 1}}));
    desk.desk.Grid.SetScreen(nullptr);
}

TEST(ColumnCatalogueTest, AlignmentGoesByTheLetterAndThenAllColumnsAreSized) {
    LoadedDesk desk;
    BuildColumnCatalogue(desk.g);
    desk.g.gLabels->Ref(1).SetAlignment("c");
    desk.g.gLabels->Ref(2).SetAlignment("x");
    SetupGridColumns(desk.desk);
    for (std::int32_t col = 0; col < ColumnCount; ++col) {  // none as its letter wants it
        desk.desk.Grid.SetColAlignment(col, col == 0 ? caRightCenter : caCenterCenter);
    }
    AutoSizeCalls screen;
    desk.desk.Grid.SetScreen(&screen);
    SetGridALignments(desk.desk);
    EXPECT_EQ(desk.desk.Grid.ColAlignment(0), caCenterCenter);
    EXPECT_EQ(desk.desk.Grid.ColAlignment(1), caCenterCenter) << "another letter leaves the column as it is";
    const std::map<Text, CellAlignment> byLetter = {{"L", caLeftCenter}, {"R", caRightCenter}};
    std::set<CellAlignment> seen;
    for (std::int32_t number = 3; number <= ColumnCount; ++number) {
        seen.insert(byLetter.at(desk.g.gLabels->Ref(number).Alignment()));
        EXPECT_EQ(desk.desk.Grid.ColAlignment(number - 1),
                  byLetter.at(desk.g.gLabels->Ref(number).Alignment()))
            << number;
    }
    EXPECT_EQ(seen.size(), 2U);
    EXPECT_EQ(screen.calls, (std::vector<std::pair<std::int32_t, std::int32_t>>{{0, ColumnCount - 1}}));
    desk.desk.Grid.SetScreen(nullptr);
}

TEST(ColumnCatalogueTest, AColumnIsFoundByItsNumberWhereverItStands) {
    LoadedDesk desk;
    BuildColumnCatalogue(desk.g);
    SetupGridColumns(desk.desk);
    EXPECT_EQ(LabelIndexToGridColumn(desk.desk, cnUSL), cnUSL - 1);
    desk.desk.Grid.SetColData(3, cnUSL);
    EXPECT_EQ(LabelIndexToGridColumn(desk.desk, cnUSL), 3) << "the first position wins";
    EXPECT_EQ(LabelOf(desk.desk, 3).Name(), "USL");
}

TEST(ColumnCatalogueTest, AnUnknownColumnNumberIsToldOnceACallAndGivesPositionNought) {
    LoadedDesk desk;
    BuildColumnCatalogue(desk.g);
    SetupGridColumns(desk.desk);
    desk.toolkit.ExpectBox("Invalid Label conversion!", BoxIcon::Critical);
    EXPECT_EQ(LabelIndexToGridColumn(desk.desk, ColumnCount + 1), 0);
}

TEST(ColumnCatalogueTest, HidingAColumnLeavesItsNumberAndPlace) {
    LoadedDesk desk;
    BuildColumnCatalogue(desk.g);
    SetupGridColumns(desk.desk);
    desk.desk.Grid.SetColHidden(cnUSL - 1, true);
    EXPECT_EQ(desk.desk.Grid.ColData(cnUSL - 1), cnUSL);
    EXPECT_EQ(LabelIndexToGridColumn(desk.desk, cnUSL), cnUSL - 1);
}

TEST(RowFillTest, ARowShowsItsViewAndItsVariable) {
    LoadedDesk desk;
    desk.Put(anApplication("/apps/plant.kdt")
                 .Title("Big plant")
                 .View("Line 3", 3)
                 .Field(aField().Name("pH").Usl(12.5).Key("UCL", "B").Rules("A")));
    desk.Load();
    const VSFlexGrid& grid = desk.desk.Grid;
    ASSERT_EQ(grid.Rows(), 2);
    EXPECT_EQ(grid.RowData(1), 1);
    EXPECT_EQ(grid.TextMatrix(1, cnID - 1), "1");
    EXPECT_EQ(grid.TextMatrix(1, cnFolder - 1), "/apps");
    EXPECT_EQ(grid.TextMatrix(1, cnFilename - 1), "plant.kdt");
    EXPECT_EQ(grid.TextMatrix(1, cnTitle - 1), "Big plant");
    EXPECT_EQ(grid.TextMatrix(1, cnViewName - 1), "Line 3");
    EXPECT_EQ(grid.TextMatrix(1, cnViewNo - 1), "3");
    for (std::int32_t number = FirstVariableColumn; number <= ColumnCount; ++number) {
        EXPECT_EQ(grid.TextMatrix(1, number - 1),
                  desk.g.gFields->Ref(1).ValueText(number, vmGrid, desk.locale));
        EXPECT_EQ(grid.BackColor(1, number - 1), 0U);
    }
    EXPECT_EQ(grid.TextMatrix(1, cnUSL - 1), "12.500");
    EXPECT_EQ(grid.TextMatrix(1, cnUCL - 1), "B");
    EXPECT_EQ(grid.TextMatrix(1, cnUWL - 1), "C");
}

TEST(RowFillTest, AViewWithoutANameShowsAnEmptyCell) {
    LoadedDesk desk;
    desk.Put(anApplication().Field(aField()));
    desk.Load();
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, cnViewName - 1), "");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, cnViewNo - 1), "0");
}

TEST(RowFillTest, NonNumericRowsAreHiddenOnlyWhileTheOptionIsTickedAndCountAllTheSame) {
    for (const bool ticked : {true, false}) {
        LoadedDesk desk;
        desk.desk.mnuShowOnlyNumericVariables.SetChecked(ticked);
        desk.Put(anApplication()
                     .Field(aField().Type("T"))
                     .Field(aField().Type(""))
                     .Field(aField().Type("AR"))
                     .Field(aField().Type("n"))
                     .Field(aField().Type("P")));
        desk.Load();
        const VSFlexGrid& grid = desk.desk.Grid;
        ASSERT_EQ(grid.Rows(), 6);
        EXPECT_EQ(grid.RowHidden(1), ticked) << "text";
        EXPECT_FALSE(grid.RowHidden(2)) << "an empty type counts as numeric";
        EXPECT_FALSE(grid.RowHidden(3)) << "a run of the letters counts as numeric";
        EXPECT_EQ(grid.RowHidden(4), ticked) << "a small n does not";
        EXPECT_EQ(grid.RowHidden(5), ticked) << "pop-up";
        EXPECT_EQ(grid.TextMatrix(5, cnID - 1), "5");
        EXPECT_EQ(desk.desk.Panel2.Caption(), "Done ... , Applications: 1, Views: 0, Variables: 5");
    }
}

TEST(RowFillTest, WithoutApplicationsTheHeaderRowIsAlignedAlone) {
    LoadedDesk desk;
    desk.Load();
    EXPECT_EQ(desk.desk.Grid.Rows(), 1);
    EXPECT_EQ(desk.desk.Grid.ColAlignment(cnMax - 1), caRightCenter);
    EXPECT_TRUE(desk.desk.Grid.Redraw());
}

TEST(RowFillTest, RefreshingAnEarlierRowCutsOffTheOnesBehindIt) {
    LoadedDesk desk;
    desk.Put(anApplication().Field(aField()).Field(aField()).Field(aField()));
    desk.Load();
    RefreshGridRow(desk.desk, 2);
    EXPECT_EQ(desk.desk.Grid.Rows(), 3);
}

TEST(RowFillTest, AfterALoadNoCellIsCurrent) {
    LoadedDesk desk;
    desk.Put(anApplication().Field(aField()));
    desk.Load();
    EXPECT_EQ(desk.desk.Grid.Row(), 0);
    EXPECT_TRUE(desk.desk.Grid.Redraw());
}

TEST(RowFillTest, TheLocalesSeparatorIsShown) {
    LoadedDesk desk;
    desk.locale.separator = ',';
    desk.Put(anApplication().Field(aField().Usl(12.5)));
    desk.Load();
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, cnUSL - 1), "12,500");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, cnMax - 1), "1000,00");
}

TEST(RowFillTest, AFreshRowIsNotMarkedEvenWhereTheBaselineDiffers) {
    LoadedDesk desk;
    desk.g.gRuleNames = "Run of nine,Point beyond limit";
    desk.Put(anApplication().Field(aField().Rules("A")));
    desk.Load();
    ASSERT_EQ(desk.g.gSavedFields->Ref(1).Rules(), "A");
    ASSERT_EQ(desk.desk.Grid.TextMatrix(1, cnRules - 1), "B");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, cnRules - 1), 0U);
    EXPECT_FALSE(desk.g.gFiles->Ref(1).ChangesMade());
}

TEST(RowFillTest, ARowThatCannotBeShownIsLinkedToItsVariableAllTheSame) {
    LoadedDesk desk;
    desk.Put(anApplication().Field(aField()).Field(aField().Length(2).Decimals(2)));
    EXPECT_THROW(desk.Load(), cError) << "the mask has no place for the point";
    const VSFlexGrid& grid = desk.desk.Grid;
    ASSERT_EQ(grid.Rows(), 3);
    EXPECT_EQ(grid.RowData(2), 2);
    EXPECT_EQ(grid.TextMatrix(2, cnID - 1), "2");
    EXPECT_EQ(grid.TextMatrix(2, cnVariableName - 1), desk.g.gFields->Ref(2).Name());
    EXPECT_FALSE(grid.TextMatrix(2, cnVariableName - 1).empty());
    EXPECT_EQ(grid.TextMatrix(2, ColumnCount - 1), "");
}

}  // namespace
}  // namespace kd
