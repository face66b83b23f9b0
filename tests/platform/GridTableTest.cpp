#include "platform/GridTable.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/ErrorOf.h"
#include "platform/RedrawOff.h"

namespace kd {
namespace {

using Log = std::vector<std::string>;

/// Writes down what it is told, each time with what the grid answers to a question at that moment.
class AskingScreen : public GridScreen {
public:
    std::function<std::string()> question;
    Log told;

    void CellChanged(std::int32_t row, std::int32_t screenCol) override {
        Tell("cell " + std::to_string(row) + "," + std::to_string(screenCol));
    }
    void LayoutChanged() override { Tell("layout"); }
    void SelectionChanged() override { Tell("selection"); }
    void EditorChanged() override { Tell("editor"); }

private:
    void Tell(const std::string& what) { told.push_back(question ? what + ": " + question() : what); }
};

/// Four data rows and three columns; each cell holds its row and column. The screen is told of what comes
/// behind Ask.
struct FilledGrid {
    AskingScreen screen;
    VSFlexGrid grid{"Grid"};

    FilledGrid() {
        grid.SetCols(3);
        grid.SetRows(5);
        for (std::int32_t row = 0; row < grid.Rows(); ++row) {
            for (std::int32_t col = 0; col < grid.Cols(); ++col) {
                grid.SetTextMatrix(row, col, "r" + std::to_string(row) + "c" + std::to_string(col));
            }
        }
        (void)grid.VisibleRows();  // an old list is there to be taken for the new one
    }
    void Ask(std::function<std::string()> question) {
        grid.SetScreen(&screen);
        screen.question = std::move(question);
    }
    std::string Cell(std::int32_t row, std::int32_t col) const {
        return std::string(grid.TextMatrix(row, col));
    }
    std::string Editor() const { return grid.EditWindow() ? "open" : "closed"; }
    std::string ShownRows() const { return std::to_string(grid.VisibleRows().size()); }
};

class GridTableTest : public testing::Test, protected FilledGrid {};

/// Each way in which the cell 4,2 goes.
struct Loss {
    const char* label;
    std::function<void(VSFlexGrid&)> act;
    std::string after;  // the current cell and the number of rows in sight
};

std::vector<Loss> Losses() {
    return {{"fewer rows", [](VSFlexGrid& grid) { grid.SetRows(3); }, "2,2 of 2"},
            {"its row", [](VSFlexGrid& grid) { grid.RemoveItem(4); }, "3,2 of 3"},
            {"fewer columns", [](VSFlexGrid& grid) { grid.SetCols(2); }, "4,1 of 4"}};
}

TEST(GridTableLossTest, AnEditorClosesWhileItsCellIsStillThere) {
    for (const Loss& loss : Losses()) {
        SCOPED_TRACE(loss.label);
        FilledGrid table;
        table.grid.Select(4, 2);
        ASSERT_TRUE(table.grid.StartEdit());
        table.Ask([&] { return table.screen.told.empty() ? table.Editor() + " " + table.Cell(4, 2) : ""; });
        loss.act(table.grid);
        EXPECT_EQ(table.screen.told.front(), "editor: closed r4c2");
    }
}

TEST(GridTableLossTest, WhatTheScreenHearsOfASmallerGridHoldsAlready) {
    for (const Loss& loss : Losses()) {
        SCOPED_TRACE(loss.label);
        FilledGrid table;
        table.grid.Select(4, 2);
        table.Ask([&] {
            return std::to_string(table.grid.Row()) + "," + std::to_string(table.grid.Col()) + " of " +
                   table.ShownRows();
        });
        loss.act(table.grid);
        EXPECT_EQ(table.screen.told, (Log{"selection: " + loss.after, "layout: " + loss.after}));
    }
}

TEST_F(GridTableTest, AnEditorIsClosedBeforeTheScreenHearsThatItsRowIsHidden) {
    grid.Select(2, 1);
    ASSERT_TRUE(grid.StartEdit());
    Ask([&] { return Editor() + " " + ShownRows(); });
    grid.SetRowHidden(2, true);
    EXPECT_EQ(screen.told, (Log{"editor: closed 3", "layout: closed 3"}));
}

TEST_F(GridTableTest, WhenTheScreenHearsOfTextsTheCellsHaveThem) {
    Ask([&] { return Cell(1, 1); });
    grid.SetTextMatrix(1, 1, "one");
    RowText texts;
    texts.Add("a");
    texts.Add("another");
    texts.Add("c");
    grid.SetRowTexts(1, texts);
    EXPECT_EQ(screen.told, (Log{"cell 1,1: one", "layout: another"}));
}

TEST_F(GridTableTest, WhenTheScreenHearsOfARowThatIsSelectedItIs) {
    Ask([&] { return std::string(grid.IsSelected(2) ? "selected" : "not"); });
    grid.SetIsSelected(2, true);
    grid.SetIsSelected(2, false);
    EXPECT_EQ(screen.told, (Log{"selection: selected", "selection: not"}));
}

TEST_F(GridTableTest, WhenTheScreenHearsOfTheEditorItIsOpenOrClosedAlready) {
    grid.Select(2, 1);
    Ask([&] { return Editor() + " " + grid.EditText(); });
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("new");
    EXPECT_TRUE(grid.FinishEdit());
    EXPECT_TRUE(grid.StartEdit());
    grid.CancelEdit();
    EXPECT_EQ(screen.told, (Log{"editor: open r2c1", "cell 2,1: closed new", "editor: closed new",
                                "editor: open new", "editor: closed new"}));
}

TEST_F(GridTableTest, AnEditorDoesNotOpenOnACellThatItsHandlerTakesAway) {
    grid.Select(2, 1);
    grid.BeforeEdit = [&](std::int32_t, std::int32_t, bool&) { grid.SetRows(0); };
    EXPECT_EQ(ErrorOf([&] { (void)grid.StartEdit(); }), errSubscript);
    EXPECT_FALSE(grid.EditWindow());
}

TEST_F(GridTableTest, RowsWithoutColumnsOpenNoEditor) {
    grid.Select(2, 1);
    grid.SetCols(0);
    EXPECT_FALSE(grid.StartEdit());
}

TEST_F(GridTableTest, AColumnIsHiddenBeforeThereAreRows) {
    grid.SetRows(0);
    grid.SetColHidden(1, true);
    EXPECT_TRUE(grid.ColHidden(1));
}

TEST_F(GridTableTest, TheScreenHearsOfAPictureWhereThereIsAHeaderForIt) {
    Ask({});
    grid.SetRows(0);
    screen.told.clear();
    grid.SetCellPicture(1, HeaderPicture::FilterOff);
    EXPECT_EQ(screen.told, Log{});
    EXPECT_EQ(grid.CellPicture(1), HeaderPicture::FilterOff);
    grid.SetRows(1);
    screen.told.clear();
    grid.SetCellPicture(1, HeaderPicture::FilterOn);
    EXPECT_EQ(screen.told, Log{"cell 0,1"});
}

TEST_F(GridTableTest, TheNearestRowInSightMayBeTheFirstOrTheLastOneOrNone) {
    EXPECT_EQ(grid.VisibleRowFrom(1, 1), 1);
    EXPECT_EQ(grid.VisibleRowFrom(1, -1), 1);
    EXPECT_EQ(grid.VisibleRowFrom(-9, 1), 1);
    EXPECT_EQ(grid.VisibleRowFrom(99, -1), 4);
    grid.SetRows(0);
    EXPECT_EQ(grid.VisibleRowFrom(1, 1), 0);
    EXPECT_EQ(grid.VisibleRowFrom(1, -1), 0);
}

TEST(GridTableLossTest, ARowThatGoesLeavesTheOthersTheirTextsHoweverLongTheyAre) {
    const auto text = [](std::int32_t row, std::int32_t col) {
        return std::string(static_cast<std::size_t>(row * 3 + col), static_cast<char>('a' + row));
    };
    for (std::int32_t gone = 0; gone < 5; ++gone) {
        VSFlexGrid other("Grid");
        other.SetCols(3);
        other.SetRows(5);
        for (std::int32_t row = 0; row < 5; ++row) {
            for (std::int32_t col = 0; col < 3; ++col) {
                other.SetTextMatrix(row, col, text(row, col));
            }
        }
        other.RemoveItem(gone);
        for (std::int32_t row = 0; row < 4; ++row) {
            for (std::int32_t col = 0; col < 3; ++col) {
                EXPECT_EQ(other.TextMatrix(row, col), text(row < gone ? row : row + 1, col))
                    << gone << ": " << row << "," << col;
            }
        }
    }
}

TEST_F(GridTableTest, RoomForRowsIsMadeBeforeThereAreColumnsToo) {
    VSFlexGrid empty("Grid");
    empty.ReserveRows(10);
    EXPECT_EQ(empty.Rows(), 0);
}

TEST_F(GridTableTest, AFailureNamesTheOperationThatItAroseIn) {
    struct Case {
        const char* source;
        std::function<void()> act;
    };
    const Case cases[] = {{"VSFlexGrid.Rows", [&] { grid.SetRows(-1); }},
                          {"VSFlexGrid.Cols", [&] { grid.SetCols(-1); }},
                          {"VSFlexGrid.Row", [&] { (void)grid.TextMatrix(5, 0); }},
                          {"VSFlexGrid.Col", [&] { (void)grid.TextMatrix(0, 3); }},
                          {"VSFlexGrid.SetRowTexts", [&] { grid.SetRowTexts(1, {}); }},
                          {"VSFlexGrid.BackColor", [&] {
                               for (BackColour colour = 1; colour < 257; ++colour) {
                                   grid.SetBackColor(1, 1, colour);
                               }
                           }}};
    for (const Case& c : cases) {
        try {
            c.act();
            ADD_FAILURE() << "no failure: " << c.source;
        } catch (const cError& error) {
            EXPECT_EQ(error.Source(), c.source);
        }
    }
}

TEST_F(GridTableTest, RedrawIsOffUntilTheEndOfTheScopeAndThenAsItWas) {
    {
        const RedrawOff outer(grid);
        EXPECT_FALSE(grid.Redraw());
        {
            const RedrawOff inner(grid);
            EXPECT_FALSE(grid.Redraw());
        }
        EXPECT_FALSE(grid.Redraw());
    }
    EXPECT_TRUE(grid.Redraw());
}

}  // namespace
}  // namespace kd
