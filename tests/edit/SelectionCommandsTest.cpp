#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "edit/Fill.h"
#include "edit/FillDesk.h"
#include "edit/Replace.h"
#include "edit/RestoreCutCopyPaste.h"
#include "edit/frmReplace.h"
#include "grid/CellGate.h"

namespace kd {
namespace {

// Five columns of free text that stand side by side, and as many rows.
constexpr std::int32_t FirstColumn = 30;
constexpr std::int32_t Size = 5;

/// What is selected and hidden, by numbers from 1, and the cells that a command must work on.
struct Case {
    const char* label;
    std::vector<std::int32_t> hiddenRows;
    std::vector<std::int32_t> hiddenColumns;
    std::int32_t firstRow, firstColumn, lastRow, lastColumn;
    std::vector<std::int32_t> rows;
    std::vector<std::int32_t> columns;
};

const std::vector<Case> Cases{
    {"nothing hidden", {}, {}, 2, 2, 3, 3, {2, 3}, {2, 3}},
    {"hidden rows inside", {2, 3}, {}, 1, 1, 4, 1, {1, 4}, {1}},
    {"hidden rows at the start", {1, 2}, {}, 1, 1, 5, 1, {1, 3, 4}, {1}},
    {"a hidden row at the start, the next one visible", {1}, {}, 1, 1, 3, 1, {1, 2}, {1}},
    {"hidden rows at the end", {4, 5}, {}, 3, 1, 5, 1, {3}, {1}},
    {"hidden columns inside", {}, {2, 3, 4}, 1, 1, 1, 5, {1}, {1, 5}},
    {"a hidden column at the start", {}, {2}, 1, 2, 1, 4, {1}, {2, 3}},
    {"one visible column behind a hidden one", {}, {2}, 1, 2, 2, 3, {1, 2}, {2}},
    {"hidden columns at the end", {}, {4, 5}, 1, 3, 1, 5, {1}, {3}},
    {"hidden rows and columns inside", {2}, {2}, 1, 1, 3, 3, {1, 3}, {1, 3}},
    {"a single cell", {}, {}, 3, 3, 3, 3, {3}, {3}},
    {"the last row", {}, {}, 5, 1, 5, 2, {5}, {1, 2}},
    {"the last cell", {}, {}, 5, 5, 5, 5, {5}, {5}},
    {"the last row, the one before hidden", {4}, {}, 3, 1, 5, 1, {3, 5}, {1}},
    {"drawn from the lower right corner", {2}, {}, 3, 3, 1, 2, {1, 3}, {2, 3}},
    {"only hidden rows", {2, 3}, {}, 2, 1, 3, 1, {}, {}},
    {"only hidden columns", {}, {2, 3}, 1, 2, 1, 3, {}, {}},
};

struct SelectionCommandsTest : testing::TestWithParam<Case>, FillDesk {
    SelectionCommandsTest() {
        for (std::int32_t row = 1; row <= Size; ++row) {
            AddRow([row](cField& field) {
                field.SetPopup(Original(row, 1));
                field.SetInputFile(Original(row, 2));
                field.SetOutputFile(Original(row, 3));
                field.SetHelpFile(Original(row, 4));
                field.SetCalculation(Original(row, 5));
            });
        }
        for (std::int32_t column = 1; column <= Size; ++column) {
            SetShown(Number(column), true);
        }
        for (const std::int32_t column : GetParam().hiddenColumns) {
            SetShown(Number(column), false);
        }
        Hide(GetParam().hiddenRows);
        Select(GetParam().firstRow, Number(GetParam().firstColumn), GetParam().lastRow,
               Number(GetParam().lastColumn));
    }

    static ColumnNumber Number(std::int32_t column) {
        return static_cast<ColumnNumber>(FirstColumn + column - 1);
    }
    static Text Original(std::int32_t row, std::int32_t column) {
        return "r" + std::to_string(row) + "c" + std::to_string(column);
    }
    static bool IsWanted(std::int32_t row, std::int32_t column) {
        const Case& c = GetParam();
        return testing::Value(row, testing::AnyOfArray(c.rows)) &&
               testing::Value(column, testing::AnyOfArray(c.columns));
    }
    static bool IsNothing() { return GetParam().rows.empty(); }

    /// The wanted cells hold `inside`, all others what they held; the wanted ones alone are marked.
    void ExpectWritten(const Text& inside) const {
        for (std::int32_t row = 1; row <= Size; ++row) {
            for (std::int32_t column = 1; column <= Size; ++column) {
                SCOPED_TRACE(Original(row, column));
                EXPECT_EQ(Cell(row, Number(column)), IsWanted(row, column) ? inside : Original(row, column));
                EXPECT_EQ(Marked(row, Number(column)), IsWanted(row, column));
            }
        }
        EXPECT_EQ(ChangesMade(), !IsNothing());
    }
    static Text WantedBlock() {
        Text text;
        for (const std::int32_t row : GetParam().rows) {
            text += text.empty() ? "" : "\r";
            for (const std::int32_t column : GetParam().columns) {
                text += (column == GetParam().columns.front() ? "" : "\t") + Original(row, column);
            }
        }
        return text;
    }
};

TEST_P(SelectionCommandsTest, CopyTakesTheSelectionsCells) {
    Copy(desk);
    EXPECT_EQ(suite.clipboard, WantedBlock());
    EXPECT_FALSE(ChangesMade());
}

TEST_P(SelectionCommandsTest, CutTakesAndBlanksTheSelectionsCells) {
    Cut(desk);
    EXPECT_EQ(suite.clipboard, WantedBlock());
    ExpectWritten("");
}

TEST_P(SelectionCommandsTest, RestorePutsTheSelectionsCellsBack) {
    for (std::int32_t row = 1; row <= Size; ++row) {
        for (std::int32_t column = 1; column <= Size; ++column) {
            SetCellValue(desk, row, Position(Number(column)), "edited");
        }
    }
    Restore(desk);
    for (std::int32_t row = 1; row <= Size; ++row) {
        for (std::int32_t column = 1; column <= Size; ++column) {
            SCOPED_TRACE(Original(row, column));
            EXPECT_EQ(Cell(row, Number(column)), IsWanted(row, column) ? Original(row, column) : "edited");
            EXPECT_EQ(Marked(row, Number(column)), !IsWanted(row, column));
        }
    }
}

TEST_P(SelectionCommandsTest, FillWritesTheSelectionsCells) {
    if (!IsNothing()) {
        ExpectConstant("filled");
    }
    Fill(desk, memory);
    ExpectWritten("filled");
}

TEST_P(SelectionCommandsTest, ReplaceWritesTheSelectionsCellsOfOneColumn) {
    if (GetParam().columns.size() > 1) {
        toolkit.ExpectBox("Can only replace within a single column.", BoxIcon::Exclamation);
        Replace(desk, memory);
        EXPECT_FALSE(ChangesMade());
        return;
    }
    if (!IsNothing()) {
        toolkit.ExpectForm<frmReplace>("frmReplace", [](frmReplace& form) {
            const std::int32_t column = GetParam().columns.front();
            EXPECT_EQ(form.txtFind.Value(), Original(GetParam().rows.front(), column));
            form.txtFind.UserType("c" + std::to_string(column));
            form.txtReplace.UserType("!");
            form.cmdReplace.UserClick();
        });
    }
    Replace(desk, memory);
    for (std::int32_t row = 1; row <= Size; ++row) {
        for (std::int32_t column = 1; column <= Size; ++column) {
            const Text replaced = "r" + std::to_string(row) + "!";
            EXPECT_EQ(Cell(row, Number(column)), IsWanted(row, column) ? replaced : Original(row, column));
        }
    }
}

TEST_P(SelectionCommandsTest, PasteLaysABlockOfThatSizeOverTheSameCellsFromTheUpperLeftOne) {
    const GridSelection selection = desk.Grid.GetSelection();
    desk.Grid.Select(selection.firstRow, selection.firstCol);
    if (IsNothing()) {  // Paste asks for no selection: the current cell takes the text, hidden or not
        suite.clipboard = "pasted";
        Paste(desk);
        EXPECT_EQ(desk.Grid.TextMatrix(selection.firstRow, selection.firstCol), "pasted");
        return;
    }
    for (std::size_t row = 0; row < GetParam().rows.size(); ++row) {
        suite.clipboard += row == 0 ? "" : "\r";
        for (std::size_t column = 0; column < GetParam().columns.size(); ++column) {
            suite.clipboard += column == 0 ? "pasted" : "\tpasted";
        }
    }
    Paste(desk);
    ExpectWritten("pasted");
}

INSTANTIATE_TEST_SUITE_P(Selections, SelectionCommandsTest, testing::ValuesIn(Cases),
                         [](const testing::TestParamInfo<Case>& tested) {
                             Text name = tested.param.label;
                             std::erase(name, ',');
                             for (char& c : name) {
                                 c = c == ' ' ? '_' : c;
                             }
                             return name;
                         });

/// A grid that holds its header alone: no row at all.
using EmptyGridTest = FillDesk;

TEST(SelectionCommandsInAnEmptyGridTest, EveryCommandEndsSilently) {
    EmptyGridTest empty;
    empty.suite.clipboard = "x";
    empty.desk.Grid.Select(0, EmptyGridTest::Position(cnUnits));
    for (const auto command : {Restore, Cut, Copy, Paste}) {
        command(empty.desk);
    }
    Fill(empty.desk, empty.memory);
    Replace(empty.desk, empty.memory);
    EXPECT_TRUE(empty.toolkit.log.empty());
    EXPECT_EQ(empty.suite.clipboard, "x");
    EXPECT_EQ(empty.desk.Grid.Rows(), 1);
}

}  // namespace
}  // namespace kd
