#include "grid/ViewModes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "fakes/GridDesk.h"
#include "grid/AutoFilter.h"
#include "grid/CellGate.h"

namespace kd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::int32_t> From(std::int32_t first, std::int32_t last, std::vector<std::int32_t> before = {}) {
    for (std::int32_t number = first; number <= last; ++number) {
        before.push_back(number);
    }
    return before;
}

const std::vector<std::int32_t> PathsAndLimits =
    From(FirstVariableColumn, cnDecimals, {cnFilename, cnTitle, cnViewName});
const std::vector<std::int32_t> LimitsAlone = From(FirstVariableColumn, cnDecimals);
const std::vector<std::int32_t> PathsAndAll =
    From(FirstVariableColumn, ColumnCount, {cnFilename, cnTitle, cnViewName});
const std::vector<std::int32_t> AllButPaths = From(FirstVariableColumn, ColumnCount);

struct ViewModesTest : testing::Test, GridDesk {
    void AddTypes(const std::vector<Text>& types) {
        for (const Text& type : types) {
            AddRow([&type](cField& field) { field.SetFieldType(type); });
        }
    }
    void AddFilter(ColumnNumber number, const Text& name) {
        g.gLabels->Ref(number).Filters()->Add(name, true);
        desk.Grid.SetCellPicture(Position(number), HeaderPicture::FilterOn);
    }
    bool AllFunnelsGrey() const {
        for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {
            if (desk.Grid.CellPicture(col) != HeaderPicture::FilterOff) {
                return false;
            }
        }
        return true;
    }
};

/// A desk whose cell editor is open with a text that the cell refuses or takes.
struct ViewModesEditorTest : ViewModesTest {
    void Open(const Text& text, bool accept) {
        AddLimits(cnUSL, {1.5});
        desk.Grid.ValidateEdit = [this, accept](std::int32_t, std::int32_t, bool& cancel) {
            ++validated;
            cancel = !accept;
        };
        desk.Grid.Select(1, Position(cnUSL));
        ASSERT_TRUE(desk.Grid.StartEdit());
        desk.Grid.SetEditText(text);
    }
    int validated = 0;
};

// --- menus that open
// --------------------------------------------------------------------------------------------

TEST_F(ViewModesTest, ClearAllFiltersIsEnabledOnlyWhenAColumnHasAFilter) {
    AddTypes({"N"});
    desk.mnuClearFilters.SetEnabled(true);
    mnuOptions_Click(desk);
    EXPECT_FALSE(desk.mnuClearFilters.Enabled());
    AddFilter(cnUCase, "N");  // the last column
    mnuOptions_Click(desk);
    EXPECT_TRUE(desk.mnuClearFilters.Enabled());
    g.gLabels->Ref(cnUCase).Filters()->Clear();
    AddFilter(cnID, "1");  // the first one
    mnuOptions_Click(desk);
    EXPECT_TRUE(desk.mnuClearFilters.Enabled());
    mnuClearFilters_Click(desk);
    mnuOptions_Click(desk);
    EXPECT_FALSE(desk.mnuClearFilters.Enabled());
}

TEST_F(ViewModesEditorTest, OptionsTakeAnAcceptedTextFromTheEditor) {
    Open("2.5", true);
    mnuOptions_Click(desk);
    EXPECT_FALSE(desk.Grid.EditWindow());
    EXPECT_EQ(Cell(1, cnUSL), "2.5");
}

TEST_F(ViewModesEditorTest, ViewTakesAnAcceptedTextFromTheEditor) {
    Open("2.5", true);
    mnuView_Click(desk);
    EXPECT_FALSE(desk.Grid.EditWindow());
    EXPECT_EQ(Cell(1, cnUSL), "2.5");
}

TEST_F(ViewModesEditorTest, ARowThatIsHiddenUnderARefusedTextLeavesTheEditorToldOnce) {
    Open("x", false);
    g.gFields->Ref(1).SetFieldType("T");
    desk.mnuShowOnlyNumericVariables.SetChecked(false);
    const Text before = Cell(1, cnUSL);
    mnuView_Click(desk);
    ASSERT_TRUE(desk.Grid.EditWindow());
    mnuShowOnlyNumericVariables_Click(desk);
    ASSERT_TRUE(desk.Grid.RowHidden(1));
    EXPECT_FALSE(desk.Grid.EditWindow());
    EXPECT_EQ(Cell(1, cnUSL), before);
    EXPECT_EQ(validated, 1);
    EXPECT_EQ(desk.Grid.BackColor(1, Position(cnUSL)), 0U);
}

TEST_F(ViewModesEditorTest, RefusedTextStaysInTheEditorWhenMenusOpenAndIsToldByTheFirst) {
    Open("x", false);
    mnuView_Click(desk);
    EXPECT_TRUE(desk.Grid.EditWindow());
    EXPECT_EQ(validated, 1);
    mnuOptions_Click(desk);
    EXPECT_TRUE(desk.Grid.EditWindow());
    EXPECT_EQ(validated, 1);
    EXPECT_EQ(desk.Grid.EditText(), "x");
    EXPECT_FALSE(desk.mnuClearFilters.Enabled());
}

TEST_F(ViewModesTest, OpeningAMenuWithoutAnEditorKeepsTheSelection) {
    AddTypes({"N", "N"});
    Select(1, cnUSL, 2, cnLSL);
    const GridSelection before = desk.Grid.GetSelection();
    mnuOptions_Click(desk);
    mnuView_Click(desk);
    EXPECT_EQ(desk.Grid.GetSelection(), before);
}

// --- Show Paths
// -------------------------------------------------------------------------------------------------

TEST_F(ViewModesTest, UntickingShowPathsHidesThemAndFreezesUpToTheVariableName) {
    mnuShowPaths_Click(desk);
    EXPECT_FALSE(desk.mnuShowPaths.Checked());
    EXPECT_EQ(ShownColumns(), LimitsAlone);
    EXPECT_EQ(desk.Grid.FrozenCols(), 8);
}

TEST_F(ViewModesTest, TickingShowPathsShowsThreeOfThemAndFreezesNothing) {
    mnuShowPaths_Click(desk);
    mnuShowPaths_Click(desk);
    EXPECT_TRUE(desk.mnuShowPaths.Checked());
    EXPECT_EQ(ShownColumns(), PathsAndLimits);
    EXPECT_EQ(desk.Grid.FrozenCols(), 0);
}

TEST_F(ViewModesTest, UntickingShowPathsLeavesTheProperties) {
    mnuShowAll_Click(desk);
    mnuShowPaths_Click(desk);
    EXPECT_EQ(ShownColumns(), AllButPaths);
}

TEST_F(ViewModesTest, ShowingThePathsHidesThePropertiesAndKeepsTheirTick) {
    mnuShowAll_Click(desk);
    mnuShowPaths_Click(desk);
    mnuShowPaths_Click(desk);
    EXPECT_EQ(ShownColumns(), PathsAndLimits);
    EXPECT_TRUE(desk.mnuShowAll.Checked());
    mnuShowAll_Click(desk);
    EXPECT_EQ(ShownColumns(), PathsAndLimits);
    mnuShowAll_Click(desk);
    EXPECT_EQ(ShownColumns(), PathsAndAll);
}

TEST_F(ViewModesTest, ShowingThePathsWithoutTheTickHidesPropertiesThatTheCatalogueHides) {
    mnuShowPaths_Click(desk);
    SetShown(cnXRef, true);
    g.gLabels->Ref(cnUnits).SetVisible(true);
    mnuShowPaths_Click(desk);
    EXPECT_TRUE(desk.Grid.ColHidden(Position(cnXRef)));
    EXPECT_FALSE(desk.Grid.ColHidden(Position(cnUnits)));
}

TEST_F(ViewModesTest, ShowingThePathsWithTheTickHidesEvenPropertiesThatTheCatalogueShows) {
    mnuShowAll_Click(desk);
    mnuShowPaths_Click(desk);
    g.gLabels->Ref(cnUnits).SetVisible(true);
    mnuShowPaths_Click(desk);
    EXPECT_TRUE(desk.Grid.ColHidden(Position(cnUnits)));
}

TEST_F(ViewModesTest, ColumnsAreToldByTheirNumbersInAnyOrder) {
    for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {  // the order turned round
        desk.Grid.SetColData(col, desk.Grid.Cols() - col);
        desk.Grid.SetColHidden(col, false);
    }
    mnuShowPaths_Click(desk);
    for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {
        EXPECT_EQ(desk.Grid.ColHidden(col), desk.Grid.ColData(col) < 7) << "position " << col;
    }
    EXPECT_EQ(desk.Grid.FrozenCols(), desk.Grid.Cols() - cnVarNo + 2);
}

TEST_F(ViewModesTest, ShowPathsTakesInTheFirstPosition) {
    desk.Grid.SetColData(0, cnFilename);
    desk.Grid.SetColHidden(0, false);
    mnuShowPaths_Click(desk);
    EXPECT_TRUE(desk.Grid.ColHidden(0));
    mnuShowPaths_Click(desk);
    EXPECT_FALSE(desk.Grid.ColHidden(0));

    desk.Grid.SetColData(0, cnUnits);
    mnuShowPaths_Click(desk);
    EXPECT_FALSE(desk.Grid.ColHidden(0)) << "a property";
    mnuShowPaths_Click(desk);
    EXPECT_TRUE(desk.Grid.ColHidden(0));

    desk.Grid.SetColData(0, cnVarNo);
    mnuShowPaths_Click(desk);
    EXPECT_EQ(desk.Grid.FrozenCols(), 2);
}

TEST_F(ViewModesTest, ShowPathsLeavesTheColumnsBetweenPathsAndProperties) {
    for (const ColumnNumber number : {cnVarNo, cnDecimals}) {
        SetShown(number, false);
        for (int click = 0; click < 2; ++click) {
            mnuShowPaths_Click(desk);
            EXPECT_TRUE(desk.Grid.ColHidden(Position(number))) << number << ", click " << click;
        }
    }
}

TEST_F(ViewModesTest, ShowPathsNeedsNoHourglass) {
    mnuShowPaths_Click(desk);
    EXPECT_THAT(toolkit.log, IsEmpty());
}

// --- Show All Properties
// ----------------------------------------------------------------------------------------

TEST_F(ViewModesTest, ShowAllShowsTheProperties) {
    mnuShowAll_Click(desk);
    EXPECT_TRUE(desk.mnuShowAll.Checked());
    EXPECT_EQ(ShownColumns(), PathsAndAll);
    EXPECT_THAT(toolkit.log, ElementsAre("hourglass", "default"));
}

TEST_F(ViewModesTest, ShowAllClickedAgainHidesThem) {
    mnuShowAll_Click(desk);
    mnuShowAll_Click(desk);
    EXPECT_FALSE(desk.mnuShowAll.Checked());
    EXPECT_EQ(ShownColumns(), PathsAndLimits);
}

TEST_F(ViewModesTest, ShowAllClickedAgainLeavesAPropertyThatTheCatalogueShows) {
    g.gLabels->Ref(cnUnits).SetVisible(true);
    mnuShowAll_Click(desk);
    mnuShowAll_Click(desk);
    EXPECT_FALSE(desk.Grid.ColHidden(Position(cnUnits)));
    EXPECT_TRUE(desk.Grid.ColHidden(Position(cnRules)));
}

TEST_F(ViewModesTest, NothingIsSizedAgainWhenColumnsComeIntoSight) {
    struct SizingScreen : GridScreen {
        void AutoSize(std::int32_t /*first*/, std::int32_t /*last*/) override { ++sized; }
        int sized = 0;
    } screen;
    desk.Grid.SetScreen(&screen);
    for (int click = 0; click < 2; ++click) {
        mnuShowAll_Click(desk);
        mnuShowPaths_Click(desk);
    }
    desk.Grid.SetScreen(nullptr);
    EXPECT_EQ(screen.sized, 0);
}

TEST_F(ViewModesTest, ShowAllLeavesPathsAndFrozenColumns) {
    mnuShowPaths_Click(desk);
    mnuShowAll_Click(desk);
    EXPECT_EQ(ShownColumns(), AllButPaths);
    EXPECT_EQ(desk.Grid.FrozenCols(), 8);
    mnuShowAll_Click(desk);
    EXPECT_EQ(ShownColumns(), LimitsAlone);
    EXPECT_EQ(desk.Grid.FrozenCols(), 8);
}

TEST_F(ViewModesTest, ShowAllPassesOverTheFirstPositionAlone) {
    for (const std::int32_t col : {0, 1}) {
        desk.Grid.SetColData(col, cnUnits);
        desk.Grid.SetColHidden(col, true);
    }
    mnuShowAll_Click(desk);
    EXPECT_TRUE(desk.Grid.ColHidden(0));
    EXPECT_FALSE(desk.Grid.ColHidden(1));
}

TEST_F(ViewModesTest, RebuildHidesThePropertiesThoughShowAllStaysTicked) {
    mnuShowAll_Click(desk);
    modKDLimitDesk::BuildColumnCatalogue(g);
    SetupGridColumns(desk);
    EXPECT_TRUE(desk.mnuShowAll.Checked());
    EXPECT_TRUE(desk.Grid.ColHidden(Position(cnUnits)));
    mnuShowAll_Click(desk);
    mnuShowAll_Click(desk);
    EXPECT_EQ(ShownColumns(), PathsAndAll);
}

// --- Show Only Numeric Variables
// --------------------------------------------------------------------------------

TEST_F(ViewModesTest, UntickingTheNumericRuleShowsEveryRow) {
    AddTypes({"N", "T", "A", "P"});
    EXPECT_THAT(ShownRows(), ElementsAre(1, 3));
    mnuShowOnlyNumericVariables_Click(desk);
    EXPECT_FALSE(desk.mnuShowOnlyNumericVariables.Checked());
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(toolkit.log, ElementsAre("hourglass", "events", "default"));
}

TEST_F(ViewModesTest, TickingTheNumericRuleHidesTheOtherRows) {
    AddTypes({"L", "N", "", "AR", "n", "T"});
    mnuShowOnlyNumericVariables_Click(desk);
    mnuShowOnlyNumericVariables_Click(desk);
    EXPECT_TRUE(desk.mnuShowOnlyNumericVariables.Checked());
    EXPECT_THAT(ShownRows(), ElementsAre(2, 3, 4));
}

TEST_F(ViewModesTest, TogglingTheNumericRuleClearsEveryFilterInBothDirections) {
    AddTypes({"N", "R"});
    for (const bool ticked : {false, true}) {
        AddFilter(cnType, "N");
        AddFilter(cnUCase, "N");
        ApplyFilters(desk);
        mnuShowOnlyNumericVariables_Click(desk);
        EXPECT_EQ(desk.mnuShowOnlyNumericVariables.Checked(), ticked);
        EXPECT_EQ(CountActiveFilters(desk), 0);
        EXPECT_TRUE(AllFunnelsGrey());
        EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
    }
}

TEST_F(ViewModesTest, NumericRuleHidesAgainWhatClearAllFiltersShowed) {
    AddTypes({"N", "T"});
    AddFilter(cnType, "N");
    mnuClearFilters_Click(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
    EXPECT_TRUE(desk.mnuShowOnlyNumericVariables.Checked());
    mnuShowOnlyNumericVariables_Click(desk);
    mnuShowOnlyNumericVariables_Click(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(1));
}

TEST_F(ViewModesTest, NumericRuleOverNoRowAtAllTogglesTheTickAlone) {
    mnuShowOnlyNumericVariables_Click(desk);
    EXPECT_FALSE(desk.mnuShowOnlyNumericVariables.Checked());
    EXPECT_THAT(ShownRows(), IsEmpty());
}

TEST_F(ViewModesTest, EachClickRepaintsOnce) {
    AddTypes({"T", "T", "T"});
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    const std::pair<const char*, void (*)(Desk&)> clicks[] = {
        {"Show Paths", mnuShowPaths_Click},
        {"Show All Properties", mnuShowAll_Click},
        {"Show Only Numeric Variables", mnuShowOnlyNumericVariables_Click}};
    for (const auto& [label, click] : clicks) {
        screen.layouts = 0;
        click(desk);
        EXPECT_EQ(screen.layouts, 1) << label;
    }
    desk.Grid.SetScreen(nullptr);
}

TEST_F(ViewModesTest, ViewModesChangeNoData) {
    AddTypes({"N"});
    mnuShowPaths_Click(desk);
    mnuShowAll_Click(desk);
    mnuShowOnlyNumericVariables_Click(desk);
    EXPECT_FALSE(g.gFiles->Ref(1).ChangesMade());
    EXPECT_EQ(Cell(1, cnType), "N");
}

}  // namespace
}  // namespace kd
