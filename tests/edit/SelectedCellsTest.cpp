#include "edit/SelectedCells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "fakes/GridDesk.h"

namespace kd {
namespace {

using testing::ElementsAre;

struct SelectedCellsTest : testing::Test, GridDesk {
    SelectedCellsTest() { AddUnits({"a", "b", "c", "d", "e", "f"}); }

    static std::vector<std::int32_t> Rows(const std::optional<SelectedCells>& cells) {
        std::vector<std::int32_t> rows;
        for (std::int32_t i = 1; cells && i <= cells->nRows(); ++i) {
            rows.push_back(cells->SelRows(i));
        }
        return rows;
    }
    /// Column numbers.
    std::vector<std::int32_t> Columns(const std::optional<SelectedCells>& cells) const {
        std::vector<std::int32_t> numbers;
        for (std::int32_t j = 1; cells && j <= cells->nCols(); ++j) {
            numbers.push_back(desk.Grid.ColData(cells->SelCols(j)));
        }
        return numbers;
    }
};

TEST_F(SelectedCellsTest, NoSelectionGivesNone) {
    EXPECT_FALSE(FindSelectedCells(desk).has_value());
}

TEST_F(SelectedCellsTest, SelectionThatTouchesTheHeaderGivesNone) {
    Select(0, cnUSL, 3, cnUSL);
    EXPECT_FALSE(FindSelectedCells(desk).has_value());
}

TEST_F(SelectedCellsTest, EmptyGridGivesNone) {
    desk.Grid.SetRows(1);
    EXPECT_FALSE(FindSelectedCells(desk).has_value());
}

TEST_F(SelectedCellsTest, SingleCell) {
    Select(3, cnUSL, 3, cnUSL);
    const auto cells = FindSelectedCells(desk);
    EXPECT_THAT(Rows(cells), ElementsAre(3));
    EXPECT_THAT(Columns(cells), ElementsAre(cnUSL));
}

TEST_F(SelectedCellsTest, SelectionDrawnUpwardsIsWalkedFromItsTop) {
    Select(4, cnUWL, 2, cnUSL);
    const auto cells = FindSelectedCells(desk);
    EXPECT_THAT(Rows(cells), ElementsAre(2, 3, 4));
    EXPECT_THAT(Columns(cells), ElementsAre(cnUSL, cnUCL, cnUWL));
}

TEST_F(SelectedCellsTest, HiddenRowsInsideAreSkipped) {
    Hide({2, 3, 5});
    Select(1, cnUSL, 6, cnUSL);
    EXPECT_THAT(Rows(FindSelectedCells(desk)), ElementsAre(1, 4, 6));
}

TEST_F(SelectedCellsTest, HiddenFirstRowIsUsedAndTheLastVisibleRowLeftOut) {
    Hide({1, 2});
    Select(1, cnUSL, 5, cnUSL);
    EXPECT_THAT(Rows(FindSelectedCells(desk)), ElementsAre(1, 3, 4));
}

TEST_F(SelectedCellsTest, OnlyHiddenRowsOrOnlyHiddenColumnsGiveNone) {
    Hide({2, 3});
    Select(2, cnUSL, 3, cnUCL);
    EXPECT_FALSE(FindSelectedCells(desk).has_value());
    SetShown(cnUSL, false);
    Select(1, cnUSL, 4, cnUSL);
    EXPECT_FALSE(FindSelectedCells(desk).has_value());
}

TEST_F(SelectedCellsTest, HiddenFirstColumnIsUsedAndTheLastVisibleColumnLeftOut) {
    SetShown(cnUSL, false);
    Select(1, cnUSL, 1, cnTGT);
    EXPECT_THAT(Columns(FindSelectedCells(desk)), ElementsAre(cnUSL, cnUCL, cnUWL));
}

TEST_F(SelectedCellsTest, HiddenRowsAndColumnsAtTheEndAreLeftOut) {
    Hide({5, 6});
    SetShown(cnTGT, false);
    Select(3, cnUWL, 6, cnTGT);
    const auto cells = FindSelectedCells(desk);
    EXPECT_THAT(Rows(cells), ElementsAre(3, 4));
    EXPECT_THAT(Columns(cells), ElementsAre(cnUWL));
}

TEST_F(SelectedCellsTest, HiddenColumnsInsideAreSkipped) {
    SetShown(cnUCL, false);
    SetShown(cnUWL, false);
    Select(1, cnUSL, 1, cnLWL);
    EXPECT_THAT(Columns(FindSelectedCells(desk)), ElementsAre(cnUSL, cnTGT, cnLWL));
}

TEST_F(SelectedCellsTest, LastRowAndLastColumn) {
    SetShown(cnUCase, true);
    Select(6, cnUCase, 6, cnUCase);
    const auto cells = FindSelectedCells(desk);
    EXPECT_THAT(Rows(cells), ElementsAre(6));
    EXPECT_THAT(Columns(cells), ElementsAre(cnUCase));
}

TEST_F(SelectedCellsTest, NothingVisibleGivesNone) {
    Hide({2, 3});
    Select(2, cnUSL, 3, cnUSL);
    EXPECT_FALSE(FindSelectedCells(desk).has_value()) << "rows";
    SetShown(cnUSL, false);
    Select(1, cnUSL, 1, cnUSL);
    EXPECT_FALSE(FindSelectedCells(desk).has_value()) << "columns";
}

TEST_F(SelectedCellsTest, FirstPositionIsScreenPositionZero) {
    SetShown(cnID, true);
    Select(1, cnID, 1, cnID);
    EXPECT_THAT(Columns(FindSelectedCells(desk)), ElementsAre(cnID));
}

TEST_F(SelectedCellsTest, WalkFromACellGoesOverVisibleOnesOnly) {
    Hide({3});
    SetShown(cnUCL, false);
    const auto cells = CellsFrom(desk.Grid, 2, Position(cnUSL), 3, 2);
    EXPECT_THAT(Rows(cells), ElementsAre(2, 4, 5));
    EXPECT_THAT(Columns(cells), ElementsAre(cnUSL, cnUWL));
}

TEST_F(SelectedCellsTest, WalkThatRunsPastTheLastVisibleRowOrColumnIsNone) {
    Hide({6});
    EXPECT_TRUE(CellsFrom(desk.Grid, 4, Position(cnUSL), 2, 1).has_value());
    EXPECT_FALSE(CellsFrom(desk.Grid, 4, Position(cnUSL), 3, 1).has_value());
    EXPECT_TRUE(CellsFrom(desk.Grid, 1, Position(cnType), 1, 3).has_value());
    EXPECT_FALSE(CellsFrom(desk.Grid, 1, Position(cnType), 1, 4).has_value());
}

TEST_F(SelectedCellsTest, ValuesAreReadRowByRow) {
    SetShown(cnUnits, true);
    SetShown(cnCategory, true);
    Select(1, cnCategory, 2, cnUnits);
    auto cells = FindSelectedCells(desk);
    ASSERT_TRUE(cells.has_value());
    ReadShownTexts(desk, *cells);
    EXPECT_EQ(cells->SelValues(1, 1), "");
    EXPECT_EQ(cells->SelValues(1, 2), "a");
    EXPECT_EQ(cells->SelValues(2, 2), "b");
}

TEST_F(SelectedCellsTest, WritingRepaintsOnce) {
    SetShown(cnUnits, true);
    Select(1, cnUnits, 6, cnUnits);
    auto cells = FindSelectedCells(desk);
    ASSERT_TRUE(cells.has_value());
    for (std::int32_t i = 1; i <= cells->nRows(); ++i) {
        cells->SetSelValues(i, 1, "x");
    }
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    WriteValues(desk, *cells);
    EXPECT_EQ(screen.layouts, 1);
    EXPECT_EQ(screen.cells, 0);
    EXPECT_TRUE(desk.Grid.Redraw());
    desk.Grid.SetScreen(nullptr);
    EXPECT_THAT(Column(cnUnits), testing::Each(Text("x")));
}

}  // namespace
}  // namespace kd
