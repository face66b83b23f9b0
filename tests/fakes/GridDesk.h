#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "fakes/TestMachine.h"
#include "grid/ColumnCatalogue.h"
#include "grid/Desk.h"
#include "grid/RowFill.h"
#include "model/Columns.h"

namespace kd {

/// Counts what the grid tells its screen side.
class CountingScreen : public GridScreen {
public:
    int cells = 0;
    int layouts = 0;
    void CellChanged(std::int32_t /*row*/, std::int32_t /*screenCol*/) override { ++cells; }
    void LayoutChanged() override { ++layouts; }
    std::int32_t CellLeft() const override { return 100; }
    std::int32_t CellTop() const override { return 3; }
    std::int32_t CellHeight() const override { return 20; }
};

/// A desk with the catalogue, a laid-out grid and one view; each variable that is added gets its row.
struct GridDesk : TestMachine {
    Desk desk{g};

    GridDesk() {
        g.gRuleLetters = "ABC";
        modKDLimitDesk::BuildColumnCatalogue(g);
        desk.mnuShowPaths.SetChecked(true);
        desk.mnuShowOnlyNumericVariables.SetChecked(true);
        desk.mnuShowAll.SetChecked(false);
        SetupGridColumns(desk);
        g.gFiles->Add("/apps/milk.kdt", "Milk", "", 0);
    }

    /// Appends a variable of eight characters with two decimals to the current values and the baseline, and
    /// its row to the grid. `set` gives it its values.
    std::int32_t AddRow(const std::function<void(cField&)>& set = {}) {
        const auto field = g.gFields->Add(g.gFiles->Count(), "", "N", 8, 2);
        if (set) {
            set(*field);
        }
        g.gSavedFields->AddCopy(*field);
        const std::int32_t row = g.gFields->Count();
        RefreshGridRow(desk, row);
        return row;
    }
    /// Rows of which each has the text in "Units".
    void AddUnits(const std::vector<Text>& units) {
        for (const Text& unit : units) {
            AddRow([&unit](cField& field) { field.SetUnits(unit); });
        }
    }
    /// Rows of which each has a fixed number in one limit column.
    void AddLimits(ColumnNumber number, const std::vector<double>& values) {
        for (const double value : values) {
            AddRow([number, value](cField& field) {
                field.SetLimitFlag(LimitOf(number), "F");
                field.SetLimit(LimitOf(number), value);
            });
        }
    }

    static std::int32_t Position(ColumnNumber number) { return number - 1; }
    Text Cell(std::int32_t row, ColumnNumber number) const {
        return Text(desk.Grid.TextMatrix(row, Position(number)));
    }
    bool Marked(std::int32_t row, ColumnNumber number) const {
        return desk.Grid.BackColor(row, Position(number)) == ChangedColour;
    }
    std::vector<Text> Column(ColumnNumber number) const {
        std::vector<Text> texts;
        for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
            texts.push_back(Cell(row, number));
        }
        return texts;
    }
    void Hide(const std::vector<std::int32_t>& rows) {
        for (const std::int32_t row : rows) {
            desk.Grid.SetRowHidden(row, true);
        }
    }
    /// Shows or hides a column.
    void SetShown(ColumnNumber number, bool shown) { desk.Grid.SetColHidden(Position(number), !shown); }
    void Select(std::int32_t firstRow, ColumnNumber first, std::int32_t lastRow, ColumnNumber last) {
        desk.Grid.Select(firstRow, Position(first));
        desk.Grid.ExtendSelection(lastRow, Position(last));
    }
    std::vector<std::int32_t> ShownRows() const { return desk.Grid.VisibleRows(); }
    /// Numbers of the columns that are shown.
    std::vector<std::int32_t> ShownColumns() const {
        std::vector<std::int32_t> numbers;
        for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {
            if (!desk.Grid.ColHidden(col)) {
                numbers.push_back(desk.Grid.ColData(col));
            }
        }
        return numbers;
    }
};

}  // namespace kd
