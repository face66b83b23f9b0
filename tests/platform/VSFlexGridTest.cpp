#include "platform/VSFlexGrid.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/ErrorOf.h"

namespace kd {
namespace {

/// Writes down what the grid tells its screen.
class Screen : public GridScreen {
public:
    std::vector<std::string> log;
    void CellChanged(std::int32_t row, std::int32_t screenCol) override {
        log.push_back("cell " + std::to_string(row) + "," + std::to_string(screenCol));
    }
    std::function<void()> onLayout;
    void LayoutChanged() override {
        log.emplace_back("layout");
        if (onLayout) {
            onLayout();
        }
    }
    std::function<void()> onSelection;
    void SelectionChanged() override {
        log.emplace_back("selection");
        if (onSelection) {
            onSelection();
        }
    }
    void EditorChanged() override { log.emplace_back("editor"); }
    void ToolTipChanged() override { log.emplace_back("tip"); }
    void AutoSize(std::int32_t first, std::int32_t last) override {
        log.push_back("size " + std::to_string(first) + "," + std::to_string(last));
    }
    void ShowCell(std::int32_t row, std::int32_t screenCol) override {
        log.push_back("show " + std::to_string(row) + "," + std::to_string(screenCol));
    }
    void SetTopRow(std::int32_t row) override { log.push_back("top " + std::to_string(row)); }
    std::int32_t CellLeft() const override { return 11; }
    std::int32_t CellTop() const override { return 22; }
    std::int32_t CellHeight() const override { return 33; }
};

using Log = std::vector<std::string>;

class VSFlexGridTest : public testing::Test {
protected:
    /// A header row and `rows` data rows; each cell holds its row and column, each row its number times ten.
    void Fill(std::int32_t rows, std::int32_t cols) {
        grid.SetCols(cols);
        grid.SetRows(rows + 1);
        for (std::int32_t row = 0; row <= rows; ++row) {
            grid.SetRowData(row, row * 10);
            for (std::int32_t col = 0; col < cols; ++col) {
                grid.SetTextMatrix(row, col, CellText(row, col));
            }
        }
    }
    static std::string CellText(std::int32_t row, std::int32_t col) {
        return "r" + std::to_string(row) + "c" + std::to_string(col);
    }
    void Watch() {
        grid.SetScreen(&screen);
        screen.log.clear();
    }

    Screen screen;
    VSFlexGrid grid{"Grid"};
};

// --- size and cells
// ------------------------------------------------------------------------------------------

TEST_F(VSFlexGridTest, NewGridIsEmpty) {
    EXPECT_EQ(grid.Name(), "Grid");
    EXPECT_EQ(grid.Rows(), 0);
    EXPECT_EQ(grid.Cols(), 0);
    EXPECT_EQ(grid.FrozenCols(), 0);
    EXPECT_EQ(grid.Row(), 0);
    EXPECT_EQ(grid.Col(), 0);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{0, 0, 0, 0}));
    EXPECT_TRUE(grid.Redraw());
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_EQ(grid.MouseRow(), -1);
    EXPECT_EQ(grid.MouseCol(), -1);
    EXPECT_TRUE(grid.VisibleRows().empty());
}

TEST_F(VSFlexGridTest, TextsOfARowDoNotDisturbEachOther) {
    Fill(2, 4);
    for (const char* const text : {"", "longer than it was before", "\u20AC\u00E4", "x"}) {
        for (std::int32_t col = 0; col < 4; ++col) {
            Fill(2, 4);
            grid.SetTextMatrix(1, col, text);
            for (std::int32_t row = 0; row <= 2; ++row) {
                for (std::int32_t other = 0; other < 4; ++other) {
                    EXPECT_EQ(grid.TextMatrix(row, other),
                              row == 1 && other == col ? std::string(text) : CellText(row, other))
                        << col << " " << row << "," << other;
                }
            }
        }
    }
}

TEST_F(VSFlexGridTest, CellTakesATextOfItsOwnRow) {
    Fill(1, 3);
    grid.SetTextMatrix(1, 0, grid.TextMatrix(1, 2));
    EXPECT_EQ(grid.TextMatrix(1, 0), "r1c2");
    EXPECT_EQ(grid.TextMatrix(1, 1), "r1c1");
    grid.SetTextMatrix(1, 2, grid.TextMatrix(1, 2).substr(1));
    EXPECT_EQ(grid.TextMatrix(1, 2), "1c2");
}

TEST_F(VSFlexGridTest, RowTakesAllItsTextsAtOnce) {
    Fill(2, 3);
    RowText texts;
    texts.Add("a");
    texts.Bytes() += "b";
    texts.Bytes() += "b";
    texts.EndCell();
    texts.Add("");
    grid.SetRowTexts(2, texts);
    EXPECT_EQ(grid.TextMatrix(2, 0), "a");
    EXPECT_EQ(grid.TextMatrix(2, 1), "bb");
    EXPECT_EQ(grid.TextMatrix(2, 2), "");
    EXPECT_EQ(grid.TextMatrix(1, 2), "r1c2");
    texts.Add("one too many");
    EXPECT_EQ(ErrorOf([&] { grid.SetRowTexts(1, texts); }), errInvalidArgument);
    EXPECT_EQ(ErrorOf([&] { grid.SetRowTexts(1, RowText()); }), errInvalidArgument);
    EXPECT_EQ(grid.TextMatrix(1, 0), "r1c0");
}

TEST_F(VSFlexGridTest, TheSelectionStaysWithinRowsAndColumnsThatAreLeft) {
    Fill(4, 4);
    grid.Select(1, 0);
    grid.ExtendSelection(4, 3);
    grid.SetCols(2);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 0, 4, 1}));
    grid.SetRows(3);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 0, 2, 1}));
}

TEST_F(VSFlexGridTest, OtherColumnsCloseAnEditorOfTheHeaderToo) {
    Fill(0, 2);
    ASSERT_TRUE(grid.StartEdit());
    grid.SetCols(3);
    EXPECT_FALSE(grid.EditWindow());
}

TEST_F(VSFlexGridTest, RowsWithoutColumnsHaveNoCells) {
    grid.SetRows(2);
    EXPECT_EQ(ErrorOf([&] { grid.SetTextMatrix(0, 0, "x"); }), errSubscript);
    EXPECT_EQ(ErrorOf([&] { (void)grid.TextMatrix(1, 0); }), errSubscript);
}

TEST_F(VSFlexGridTest, NewColumnsAreShownAlignedToTheLeftAndOfNoWidth) {
    grid.SetCols(2);
    for (const std::int32_t screenCol : {0, 1}) {
        EXPECT_EQ(grid.ColWidth(screenCol), 0);
        EXPECT_EQ(grid.ColData(screenCol), 0);
        EXPECT_EQ(grid.ColAlignment(screenCol), caLeftCenter);
        EXPECT_FALSE(grid.ColHidden(screenCol));
    }
}

TEST_F(VSFlexGridTest, NewRowsAreEmptyAndShownAndRowsThatGoTakeAllAlong) {
    Fill(3, 2);
    grid.SetRowHidden(3, true);
    grid.SetBackColor(3, 1, ChangedColour);
    grid.SetIsSelected(3, true);
    grid.SetRows(3);
    grid.SetRows(5);
    EXPECT_EQ(grid.Rows(), 5);
    EXPECT_EQ(grid.TextMatrix(2, 1), "r2c1");
    for (std::int32_t row = 3; row < 5; ++row) {
        EXPECT_EQ(grid.TextMatrix(row, 1), "");
        EXPECT_EQ(grid.RowData(row), 0);
        EXPECT_FALSE(grid.RowHidden(row));
        EXPECT_FALSE(grid.IsSelected(row));
        EXPECT_EQ(grid.BackColor(row, 1), 0U);
    }
}

TEST_F(VSFlexGridTest, AnotherNumberOfColumnsEmptiesAllCells) {
    Fill(2, 3);
    grid.SetBackColor(1, 1, ChangedColour);
    grid.SetColData(1, 7);
    grid.SetColHidden(1, true);
    grid.SetFrozenCols(3);
    grid.SetCols(3);
    EXPECT_EQ(grid.TextMatrix(1, 1), "r1c1") << "the same number changes nothing";
    EXPECT_EQ(grid.ColData(1), 7);
    grid.SetCols(2);
    EXPECT_EQ(grid.Rows(), 3);
    EXPECT_EQ(grid.RowData(2), 20) << "a row's number stays";
    EXPECT_EQ(grid.FrozenCols(), 2);
    for (std::int32_t row = 0; row < 3; ++row) {
        for (std::int32_t col = 0; col < 2; ++col) {
            EXPECT_EQ(grid.TextMatrix(row, col), "");
            EXPECT_EQ(grid.BackColor(row, col), 0U);
        }
    }
    EXPECT_EQ(grid.ColData(1), 0);
    EXPECT_FALSE(grid.ColHidden(1));
    grid.SetTextMatrix(2, 1, "x");
    EXPECT_EQ(grid.TextMatrix(2, 1), "x");
}

TEST_F(VSFlexGridTest, AGridHas256ColoursAndRefusesOneMore) {
    Fill(1, 300);
    constexpr std::int32_t Colours = 256;  // the ground is one of them
    for (std::int32_t col = 1; col < Colours; ++col) {
        grid.SetBackColor(1, col, static_cast<BackColour>(col));
    }
    EXPECT_EQ(ErrorOf([&] { grid.SetBackColor(1, 0, Colours); }), errOverflow);
    EXPECT_EQ(grid.BackColor(1, 0), 0U);
    for (std::int32_t col = 1; col < Colours; ++col) {
        EXPECT_EQ(grid.BackColor(1, col), static_cast<BackColour>(col));
    }
}

TEST_F(VSFlexGridTest, RemoveItemTakesOneRowWithAllThatIsItsOwn) {
    for (std::int32_t gone = 0; gone <= 3; ++gone) {
        Fill(3, 2);
        for (std::int32_t row = 0; row <= 3; ++row) {
            grid.SetBackColor(row, 1, static_cast<BackColour>(row + 1));
            grid.SetRowHidden(row, row % 2 == 1);
            grid.SetIsSelected(row, row % 2 == 0);
        }
        grid.RemoveItem(gone);
        EXPECT_EQ(grid.Rows(), 3);
        for (std::int32_t row = 0; row < 3; ++row) {
            const std::int32_t was = row < gone ? row : row + 1;
            EXPECT_EQ(grid.TextMatrix(row, 0), CellText(was, 0));
            EXPECT_EQ(grid.TextMatrix(row, 1), CellText(was, 1));
            EXPECT_EQ(grid.RowData(row), was * 10);
            EXPECT_EQ(grid.BackColor(row, 1), static_cast<BackColour>(was + 1));
            EXPECT_EQ(grid.RowHidden(row), was % 2 == 1);
            EXPECT_EQ(grid.IsSelected(row), was % 2 == 0);
        }
    }
}

TEST_F(VSFlexGridTest, ReserveRowsChangesNothing) {
    Fill(1, 2);
    grid.ReserveRows(1000);
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(grid.TextMatrix(1, 1), "r1c1");
}

TEST_F(VSFlexGridTest, RowsAndColumnsKeepTheirNumbers) {
    Fill(2, 2);
    grid.SetRowData(2, -5);
    grid.SetColData(1, 35);
    grid.SetColWidth(1, 120);
    grid.SetColAlignment(1, caRightCenter);
    grid.SetCellPicture(1, HeaderPicture::FilterOn);
    EXPECT_EQ(grid.RowData(2), -5);
    EXPECT_EQ(grid.RowData(1), 10);
    EXPECT_EQ(grid.ColData(1), 35);
    EXPECT_EQ(grid.ColData(0), 0);
    EXPECT_EQ(grid.ColWidth(1), 120);
    EXPECT_EQ(grid.ColAlignment(1), caRightCenter);
    EXPECT_EQ(grid.ColAlignment(0), caLeftCenter);
    EXPECT_EQ(grid.CellPicture(1), HeaderPicture::FilterOn);
    EXPECT_EQ(grid.CellPicture(0), HeaderPicture::None);
}

TEST_F(VSFlexGridTest, ColoursBelongToTheirCell) {
    Fill(3, 3);
    EXPECT_EQ(grid.BackColor(1, 1), 0U);
    grid.SetBackColor(1, 1, ChangedColour);
    grid.SetBackColor(2, 2, 0x123456);
    for (std::int32_t row = 0; row <= 3; ++row) {
        for (std::int32_t col = 0; col < 3; ++col) {
            EXPECT_EQ(grid.BackColor(row, col), row == 1 && col == 1   ? ChangedColour
                                                : row == 2 && col == 2 ? 0x123456U
                                                                       : 0U);
        }
    }
    grid.SetRowHidden(1, true);
    grid.SetTextMatrix(1, 1, "another text");
    EXPECT_EQ(grid.BackColor(1, 1), ChangedColour) << "outlives hiding and another text";
    grid.SetBackColor(1, 1, 0);
    EXPECT_EQ(grid.BackColor(1, 1), 0U);
    EXPECT_EQ(grid.BackColor(2, 2), 0x123456U);
}

TEST_F(VSFlexGridTest, EverythingOutsideTheGridIsAnError) {
    Fill(2, 2);
    const RowText none;
    for (const std::int32_t row : {-1, 3, 100}) {
        EXPECT_EQ(ErrorOf([&] { (void)grid.TextMatrix(row, 0); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.SetTextMatrix(row, 0, "x"); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.SetRowTexts(row, none); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { (void)grid.RowData(row); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.SetRowData(row, 1); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { (void)grid.BackColor(row, 0); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.SetBackColor(row, 0, 1); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { (void)grid.RowHidden(row); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.SetRowHidden(row, true); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { (void)grid.IsSelected(row); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.SetIsSelected(row, true); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.RemoveItem(row); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.Select(row, 0); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.SetRow(row); }), errSubscript) << row;
        EXPECT_EQ(ErrorOf([&] { grid.ExtendSelection(row, 0); }), errSubscript) << row;
    }
    for (const std::int32_t col : {-1, 2, 100}) {
        EXPECT_EQ(ErrorOf([&] { (void)grid.TextMatrix(1, col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.SetTextMatrix(1, col, "x"); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { (void)grid.ColData(col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.SetColData(col, 1); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { (void)grid.BackColor(1, col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.SetBackColor(1, col, 1); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { (void)grid.ColAlignment(col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.SetColAlignment(col, caLeftCenter); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { (void)grid.CellPicture(col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.SetCellPicture(col, HeaderPicture::None); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { (void)grid.ColHidden(col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.SetColHidden(col, true); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { (void)grid.ColWidth(col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.SetColWidth(col, 1); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.Select(1, col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.SetCol(col); }), errSubscript) << col;
        EXPECT_EQ(ErrorOf([&] { grid.ExtendSelection(1, col); }), errSubscript) << col;
    }
    EXPECT_EQ(ErrorOf([&] { grid.SetRows(-1); }), errInvalidArgument);
    EXPECT_EQ(ErrorOf([&] { grid.SetCols(-1); }), errInvalidArgument);
    EXPECT_EQ(ErrorOf([&] { grid.SetFrozenCols(-1); }), errInvalidArgument);
    EXPECT_EQ(ErrorOf([&] { grid.SetFrozenCols(3); }), errInvalidArgument);
    EXPECT_EQ(grid.TextMatrix(2, 1), "r2c1");
}

// --- what is shown
// -------------------------------------------------------------------------------------------

TEST_F(VSFlexGridTest, VisibleRowsFollowEveryChange) {
    Fill(4, 1);
    EXPECT_EQ(grid.VisibleRows(), (std::vector<std::int32_t>{1, 2, 3, 4})) << "the header does not count";
    grid.SetRowHidden(2, true);
    EXPECT_EQ(grid.VisibleRows(), (std::vector<std::int32_t>{1, 3, 4}));
    grid.RemoveItem(1);
    EXPECT_EQ(grid.VisibleRows(), (std::vector<std::int32_t>{2, 3}));
    grid.SetRows(6);
    EXPECT_EQ(grid.VisibleRows(), (std::vector<std::int32_t>{2, 3, 4, 5}));
    grid.SetRowHidden(1, false);
    EXPECT_EQ(grid.VisibleRows(), (std::vector<std::int32_t>{1, 2, 3, 4, 5}));
    grid.SetRows(1);
    EXPECT_TRUE(grid.VisibleRows().empty());
}

TEST_F(VSFlexGridTest, NearestVisibleRow) {
    Fill(5, 1);
    grid.SetRowHidden(1, true);
    grid.SetRowHidden(3, true);
    grid.SetRowHidden(5, true);
    struct Case {
        std::int32_t from;
        std::int32_t step;
        std::int32_t found;
    };
    for (const Case& c :
         {Case{1, 1, 2}, Case{2, 1, 2}, Case{3, 1, 4}, Case{5, 1, 0}, Case{-9, 1, 2}, Case{99, 1, 0},
          Case{5, -1, 4}, Case{4, -1, 4}, Case{3, -1, 2}, Case{1, -1, 0}, Case{0, -1, 0}, Case{99, -1, 4}}) {
        EXPECT_EQ(grid.VisibleRowFrom(c.from, c.step), c.found) << c.from << " " << c.step;
    }
    grid.SetRows(1);
    EXPECT_EQ(grid.VisibleRowFrom(1, 1), 0);
    EXPECT_EQ(grid.VisibleRowFrom(1, -1), 0);
}

TEST_F(VSFlexGridTest, NearestVisibleColumn) {
    Fill(1, 5);
    grid.SetColHidden(0, true);
    grid.SetColHidden(2, true);
    grid.SetColHidden(4, true);
    struct Case {
        std::int32_t from;
        std::int32_t step;
        std::int32_t found;
    };
    for (const Case& c :
         {Case{0, 1, 1}, Case{1, 1, 1}, Case{2, 1, 3}, Case{4, 1, -1}, Case{-9, 1, 1}, Case{4, -1, 3},
          Case{3, -1, 3}, Case{2, -1, 1}, Case{0, -1, -1}, Case{99, -1, 3}, Case{99, 1, -1}}) {
        EXPECT_EQ(grid.VisibleColFrom(c.from, c.step), c.found) << c.from << " " << c.step;
    }
}

TEST_F(VSFlexGridTest, ScreenIsToldWhatDiffersAndNothingElse) {
    Fill(2, 2);
    Watch();
    grid.SetTextMatrix(1, 1, "x");
    grid.SetBackColor(2, 0, 0);
    grid.SetBackColor(2, 0, ChangedColour);
    grid.SetBackColor(2, 0, ChangedColour);
    grid.SetCellPicture(1, HeaderPicture::FilterOff);
    EXPECT_EQ(screen.log, (Log{"cell 1,1", "cell 2,0", "cell 0,1"}));
    screen.log.clear();
    grid.SetRowHidden(1, false);
    grid.SetColHidden(1, false);
    grid.SetCols(2);
    grid.SetIsSelected(1, false);
    grid.SetRowData(1, 5);
    grid.SetColData(1, 5);
    grid.SetToolTipText("");
    EXPECT_EQ(screen.log, Log{});
    grid.SetRowHidden(1, true);
    grid.SetColHidden(1, true);
    grid.SetFrozenCols(1);
    grid.SetColWidth(0, 9);
    grid.SetColAlignment(0, caCenterCenter);
    grid.RemoveItem(2);
    grid.SetRows(3);
    EXPECT_EQ(screen.log, Log(7, "layout"));
    screen.log.clear();
    grid.SetIsSelected(1, true);
    grid.SetToolTipText("tip");
    grid.SetToolTipText("tip");
    EXPECT_EQ(screen.log, (Log{"selection", "tip"}));
    EXPECT_EQ(grid.ToolTipText(), "tip");
}

TEST_F(VSFlexGridTest, WhatOnlyAScreenKnowsIsAskedThere) {
    Fill(2, 2);
    EXPECT_EQ(grid.CellLeft() + grid.CellTop() + grid.CellHeight(), 0) << "nothing without a screen";
    grid.AutoSize(0, 1);
    grid.ShowCell(1, 1);
    grid.SetTopRow(1);
    Watch();
    EXPECT_EQ(grid.CellLeft(), 11);
    EXPECT_EQ(grid.CellTop(), 22);
    EXPECT_EQ(grid.CellHeight(), 33);
    grid.AutoSize(0, 1);
    grid.ShowCell(2, 1);
    grid.SetTopRow(2);
    EXPECT_EQ(screen.log, (Log{"size 0,1", "show 2,1", "top 2"}));
}

TEST_F(VSFlexGridTest, WhenTheScreenHearsOfASelectionTheGridHasIt) {
    Fill(4, 3);
    Watch();
    std::vector<GridSelection> heard;
    screen.onSelection = [&] { heard.push_back(grid.GetSelection()); };
    grid.Select(2, 1);
    grid.ExtendSelection(4, 2);
    grid.Select(1, 0);
    EXPECT_EQ(heard, (std::vector<GridSelection>{{2, 1, 2, 1}, {2, 1, 4, 2}, {1, 0, 1, 0}}));
}

TEST_F(VSFlexGridTest, WhenTheScreenHearsOfALayoutTheGridHasIt) {
    Fill(4, 3);
    Watch();
    std::vector<int> heard;
    std::function<int()> asked;
    screen.onLayout = [&] { heard.push_back(asked()); };
    asked = [&] { return grid.FrozenCols(); };
    grid.SetFrozenCols(2);
    asked = [&] { return grid.ColAlignment(0) == caRightCenter ? 1 : 0; };
    grid.SetColAlignment(0, caRightCenter);
    asked = [&] { return grid.ColWidth(0); };
    grid.SetColWidth(0, 50);
    asked = [&] { return grid.ColHidden(0) ? 1 : 0; };
    grid.SetColHidden(0, true);
    asked = [&] { return grid.RowHidden(1) ? 1 : 0; };
    grid.SetRowHidden(1, true);
    asked = [&] { return static_cast<int>(grid.VisibleRows().size()); };
    grid.SetRows(4);
    grid.RemoveItem(3);
    asked = [&] { return grid.Cols(); };
    grid.SetCols(2);
    EXPECT_EQ(heard, (std::vector<int>{2, 1, 50, 1, 1, 2, 1, 2}));
}

TEST_F(VSFlexGridTest, WhileRedrawIsOffTheScreenIsToldNothingAndThenOnce) {
    Fill(3, 2);
    Watch();
    grid.SetRedraw(false);
    EXPECT_FALSE(grid.Redraw());
    grid.SetTextMatrix(1, 1, "x");
    grid.SetBackColor(1, 1, ChangedColour);
    grid.SetRowHidden(2, true);
    grid.SetRows(9);
    grid.Select(3, 1);
    grid.SetRedraw(false);
    EXPECT_EQ(screen.log, Log{});
    grid.SetRedraw(true);
    EXPECT_EQ(screen.log, (Log{"layout", "selection"}));
    grid.SetRedraw(true);
    EXPECT_EQ(screen.log.size(), 2U);
    grid.SetTextMatrix(1, 1, "y");
    EXPECT_EQ(screen.log.back(), "cell 1,1");
}

TEST_F(VSFlexGridTest, RedrawOffAndOnWithoutAChangeTellsNothing) {
    Fill(1, 1);
    Watch();
    grid.SetRedraw(false);
    grid.SetRedraw(true);
    EXPECT_EQ(screen.log, Log{});
}

// --- current cell and selection
// ------------------------------------------------------------------------------

TEST_F(VSFlexGridTest, SelectCollapsesAndExtendMovesTheOtherCorner) {
    Fill(5, 5);
    grid.Select(3, 2);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{3, 2, 3, 2}));
    grid.ExtendSelection(1, 4);
    EXPECT_EQ(grid.Row(), 3) << "the current cell is where it began";
    EXPECT_EQ(grid.Col(), 2);
    EXPECT_EQ(grid.EndRow(), 1);
    EXPECT_EQ(grid.EndCol(), 4);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 2, 3, 4}));
    grid.ExtendSelection(5, 0);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{3, 0, 5, 2}));
    grid.SetRow(4);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{4, 2, 4, 2}));
    grid.SetCol(1);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{4, 1, 4, 1}));
}

TEST_F(VSFlexGridTest, SelectionCountsHiddenRowsAndColumns) {
    Fill(5, 5);
    grid.SetRowHidden(2, true);
    grid.SetColHidden(3, true);
    grid.Select(1, 2);
    grid.ExtendSelection(3, 4);
    const GridSelection selection = grid.GetSelection();
    EXPECT_EQ(selection, (GridSelection{1, 2, 3, 4}));
    EXPECT_TRUE(selection.Contains(2, 3));
    EXPECT_TRUE(selection.Contains(1, 2));
    EXPECT_TRUE(selection.Contains(3, 4));
    EXPECT_FALSE(selection.Contains(4, 3));
    EXPECT_FALSE(selection.Contains(0, 3));
    EXPECT_FALSE(selection.Contains(2, 1));
    EXPECT_FALSE(selection.Contains(2, 5));
}

TEST_F(VSFlexGridTest, RowColChangeRunsWhenTheCurrentCellMoves) {
    Fill(3, 3);
    std::vector<std::pair<std::int32_t, std::int32_t>> seen;
    grid.RowColChange = [&] { seen.emplace_back(grid.Row(), grid.Col()); };
    grid.Select(2, 1);
    grid.Select(2, 1);
    grid.ExtendSelection(3, 2);
    grid.SetRow(3);
    grid.SetCol(0);
    EXPECT_EQ(seen, (std::vector<std::pair<std::int32_t, std::int32_t>>{{2, 1}, {3, 1}, {3, 0}}));
}

TEST_F(VSFlexGridTest, CurrentCellStaysInsideAShrinkingGrid) {
    Fill(5, 5);
    int moves = 0;
    grid.Select(5, 4);
    grid.RowColChange = [&] { ++moves; };
    grid.RemoveItem(1);
    EXPECT_EQ(grid.Row(), 4);
    grid.SetRows(3);
    EXPECT_EQ(grid.Row(), 2);
    grid.SetCols(2);
    EXPECT_EQ(grid.Col(), 1);
    EXPECT_EQ(moves, 3);
    grid.Select(1, 0);
    grid.ExtendSelection(2, 1);
    grid.SetRows(2);
    EXPECT_EQ(grid.GetSelection(), (GridSelection{1, 0, 1, 1}));
    grid.SetRows(0);
    EXPECT_EQ(grid.Row(), 0);
    EXPECT_EQ(grid.GetSelection().lastRow, 0);
}

TEST_F(VSFlexGridTest, RowsAreSelectedOneByOne) {
    Fill(3, 1);
    grid.SetIsSelected(1, true);
    grid.SetIsSelected(3, true);
    grid.SetIsSelected(1, false);
    EXPECT_FALSE(grid.IsSelected(1));
    EXPECT_FALSE(grid.IsSelected(2));
    EXPECT_TRUE(grid.IsSelected(3));
    EXPECT_EQ(grid.GetSelection(), (GridSelection{0, 0, 0, 0})) << "apart from the rectangle";
}

TEST_F(VSFlexGridTest, CellUnderThePointerIsWhatTheScreenSaid) {
    grid.SetMouseCell(4, 7);
    EXPECT_EQ(grid.MouseRow(), 4);
    EXPECT_EQ(grid.MouseCol(), 7);
}

// --- cell editor
// ---------------------------------------------------------------------------------------------

class VSFlexGridEditorTest : public VSFlexGridTest {
protected:
    VSFlexGridEditorTest() {
        Fill(4, 3);
        grid.Select(2, 1);
        grid.BeforeEdit = [this](std::int32_t row, std::int32_t col, bool& cancel) {
            events.push_back("before " + std::to_string(row) + "," + std::to_string(col));
            cancel = refuseOpening;
        };
        grid.ValidateEdit = [this](std::int32_t row, std::int32_t col, bool& cancel) {
            events.push_back("validate " + std::to_string(row) + "," + std::to_string(col) + " " +
                             grid.EditText() + " over " + std::string(grid.TextMatrix(row, col)));
            if (duringValidation) {
                duringValidation();
            }
            cancel = refuseText;
        };
        grid.AfterEdit = [this](std::int32_t row, std::int32_t col) {
            events.push_back("after " + std::to_string(row) + "," + std::to_string(col) + " " +
                             std::string(grid.TextMatrix(row, col)) + (grid.EditWindow() ? " open" : ""));
        };
        Watch();
    }

    bool refuseOpening = false;
    bool refuseText = false;
    std::function<void()> duringValidation;
    Log events;
};

TEST_F(VSFlexGridEditorTest, EditTakesTheWholeRoad) {
    EXPECT_TRUE(grid.StartEdit());
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_EQ(grid.EditText(), "r2c1") << "opens with the cell's text";
    grid.SetEditText("new");
    EXPECT_EQ(grid.TextMatrix(2, 1), "r2c1") << "not in the cell yet";
    EXPECT_TRUE(grid.FinishEdit());
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_EQ(grid.TextMatrix(2, 1), "new");
    EXPECT_EQ(events, (Log{"before 2,1", "validate 2,1 new over r2c1", "after 2,1 new"}));
    EXPECT_EQ(screen.log, (Log{"editor", "cell 2,1", "editor"}));
}

TEST_F(VSFlexGridEditorTest, UntouchedEditRunsAfterEditAllTheSame) {
    EXPECT_TRUE(grid.StartEdit());
    EXPECT_TRUE(grid.FinishEdit());
    EXPECT_EQ(events, (Log{"before 2,1", "validate 2,1 r2c1 over r2c1", "after 2,1 r2c1"}));
    EXPECT_EQ(screen.log, (Log{"editor", "editor"})) << "no cell changed";
}

TEST_F(VSFlexGridEditorTest, RefusedOpeningOpensNothing) {
    refuseOpening = true;
    EXPECT_FALSE(grid.StartEdit());
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_TRUE(grid.FinishEdit()) << "there is nothing to finish";
    EXPECT_EQ(events, (Log{"before 2,1"}));
    EXPECT_EQ(screen.log, Log{});
}

TEST_F(VSFlexGridEditorTest, OpenEditorIsNotOpenedAgain) {
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("typed");
    EXPECT_TRUE(grid.StartEdit());
    EXPECT_EQ(grid.EditText(), "typed");
    EXPECT_EQ(events, (Log{"before 2,1"}));
}

TEST_F(VSFlexGridEditorTest, RefusedTextKeepsTheEditorOpen) {
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("bad");
    refuseText = true;
    EXPECT_FALSE(grid.FinishEdit());
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_EQ(grid.EditText(), "bad");
    EXPECT_EQ(grid.TextMatrix(2, 1), "r2c1");
    refuseText = false;
    EXPECT_TRUE(grid.FinishEdit());
    EXPECT_EQ(grid.TextMatrix(2, 1), "bad");
    EXPECT_EQ(events, (Log{"before 2,1", "validate 2,1 bad over r2c1", "validate 2,1 bad over r2c1",
                           "after 2,1 bad"}));
}

TEST_F(VSFlexGridEditorTest, RefusedTextKeepsTheCurrentCell) {
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("bad");
    refuseText = true;
    grid.Select(4, 2);
    grid.SetRow(1);
    grid.SetCol(0);
    EXPECT_EQ(grid.Row(), 2);
    EXPECT_EQ(grid.Col(), 1);
    EXPECT_TRUE(grid.EditWindow());
}

TEST_F(VSFlexGridEditorTest, SelectingTheCurrentCellAnewCommitsTheEdit) {
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("new");
    grid.Select(grid.Row(), grid.Col());
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_EQ(grid.TextMatrix(2, 1), "new");
}

TEST_F(VSFlexGridEditorTest, AnotherCellCommitsTheEditInItsOwn) {
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("new");
    grid.Select(4, 2);
    EXPECT_EQ(grid.TextMatrix(2, 1), "new");
    EXPECT_EQ(grid.TextMatrix(4, 2), "r4c2");
    EXPECT_EQ(events.back(), "after 2,1 new");
    EXPECT_EQ(grid.Row(), 4);
}

TEST_F(VSFlexGridEditorTest, LossOfFocusToTheRefusalBoxValidatesOnce) {
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("bad");
    refuseText = true;
    bool second = true;
    duringValidation = [&] { second = grid.FinishEdit(); };
    EXPECT_FALSE(grid.FinishEdit());
    EXPECT_FALSE(second) << "no second way out while the box is shown";
    EXPECT_EQ(events, (Log{"before 2,1", "validate 2,1 bad over r2c1"}));
    duringValidation = nullptr;
    refuseText = false;
    EXPECT_TRUE(grid.FinishEdit()) << "busy no longer";
}

TEST_F(VSFlexGridEditorTest, FailureInTheValidationLeavesTheEditorOpenAndUsable) {
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("bad");
    duringValidation = [] { throw cError(errTypeMismatch, "Test"); };
    EXPECT_EQ(ErrorOf([&] { (void)grid.FinishEdit(); }), errTypeMismatch);
    EXPECT_TRUE(grid.EditWindow());
    duringValidation = nullptr;
    EXPECT_TRUE(grid.FinishEdit());
    EXPECT_EQ(grid.TextMatrix(2, 1), "bad");
}

TEST_F(VSFlexGridEditorTest, AfterEditMayOpenTheNextEditor) {
    grid.AfterEdit = [&](std::int32_t, std::int32_t) {
        grid.AfterEdit = nullptr;
        grid.Select(3, 1);
        EXPECT_TRUE(grid.StartEdit());
    };
    EXPECT_TRUE(grid.StartEdit());
    EXPECT_TRUE(grid.FinishEdit());
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_EQ(grid.EditText(), "r3c1");
    EXPECT_TRUE(grid.FinishEdit());
}

TEST_F(VSFlexGridEditorTest, CancelRunsNeitherValidationNorAfterEdit) {
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("typed");
    grid.CancelEdit();
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_EQ(grid.TextMatrix(2, 1), "r2c1");
    EXPECT_EQ(events, (Log{"before 2,1"}));
    EXPECT_EQ(screen.log, (Log{"editor", "editor"}));
    grid.CancelEdit();
    EXPECT_EQ(screen.log.size(), 2U);
}

TEST_F(VSFlexGridEditorTest, TypedTextGoesThroughItsFilter) {
    grid.SetEditText("no editor");
    EXPECT_EQ(grid.EditText(), "");
    grid.TypedText = [](std::string_view text) { return text == "\u03A9" ? Text("?") : Text(text); };
    EXPECT_TRUE(grid.StartEdit());
    screen.log.clear();
    grid.SetEditText("plain");
    EXPECT_EQ(screen.log, Log{}) << "the screen shows it already";
    grid.SetEditText("\u03A9");
    EXPECT_EQ(grid.EditText(), "?");
    EXPECT_EQ(screen.log, (Log{"editor"}));
}

TEST_F(VSFlexGridEditorTest, EditorGoesWithItsRow) {
    EXPECT_TRUE(grid.StartEdit());
    grid.RemoveItem(3);
    EXPECT_TRUE(grid.EditWindow()) << "a row below is no concern of it";
    grid.RemoveItem(2);
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_TRUE(grid.StartEdit());
    grid.SetRows(2);
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_TRUE(grid.StartEdit());
    grid.SetCols(2);
    EXPECT_FALSE(grid.EditWindow());
    for (const std::string& event : events) {
        EXPECT_EQ(event.rfind("before", 0), 0U) << event;
    }
}

TEST_F(VSFlexGridEditorTest, EditorIsLeftWithTheOldTextWhenItsRowOrColumnIsHidden) {
    const Text before(grid.TextMatrix(2, 1));
    for (const bool byRow : {true, false}) {
        ASSERT_TRUE(grid.StartEdit());
        grid.SetEditText("not seen any more");
        grid.SetRowHidden(1, byRow);
        grid.SetColHidden(2, byRow);
        EXPECT_TRUE(grid.EditWindow()) << "other cells are no concern of it";
        events.clear();
        if (byRow) {
            grid.SetRowHidden(2, true);
        } else {
            grid.SetColHidden(1, true);
        }
        EXPECT_FALSE(grid.EditWindow());
        EXPECT_EQ(grid.TextMatrix(2, 1), before);
        EXPECT_TRUE(events.empty()) << "neither judged nor taken";
        grid.SetRowHidden(2, false);
        grid.SetColHidden(1, false);
    }
}

TEST(GridScreenTest, AScreenThatKnowsNoPlacesAnswersNoughtForTheCurrentCells) {
    GridScreen screen;
    VSFlexGrid grid("Grid");
    grid.SetScreen(&screen);
    EXPECT_EQ(grid.CellLeft(), 0);
    EXPECT_EQ(grid.CellTop(), 0);
    EXPECT_EQ(grid.CellHeight(), 0);
    grid.SetScreen(nullptr);
}

TEST_F(VSFlexGridEditorTest, EmptyGridOpensNoEditor) {
    grid.SetRows(0);
    EXPECT_FALSE(grid.StartEdit());
    EXPECT_TRUE(events.empty());
}

TEST_F(VSFlexGridEditorTest, WithoutHandlersEveryTextIsTaken) {
    grid.BeforeEdit = nullptr;
    grid.ValidateEdit = nullptr;
    grid.AfterEdit = nullptr;
    EXPECT_TRUE(grid.StartEdit());
    grid.SetEditText("x");
    EXPECT_TRUE(grid.FinishEdit());
    EXPECT_EQ(grid.TextMatrix(2, 1), "x");
}

}  // namespace
}  // namespace kd
