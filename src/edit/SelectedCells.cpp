#include "edit/SelectedCells.h"

#include <functional>

#include "grid/CellGate.h"
#include "platform/RedrawOff.h"

namespace kd {
namespace {

/// `count` positions: `first` as it is, then the next ones that are not hidden. Empty when `end` comes first.
std::vector<std::int32_t> Positions(std::int32_t first, std::int32_t count, std::int32_t end,
                                    const std::function<bool(std::int32_t)>& hidden) {
    std::vector<std::int32_t> positions;
    // Deliberate: the first one is not tested for being hidden.
    // SelectedCellsTest.HiddenFirstRowIsUsedAndTheLastVisibleRowLeftOut
    for (std::int32_t at = first; at < end; ++at) {
        if (static_cast<std::int32_t>(positions.size()) == count) {
            return positions;
        }
        if (at == first || !hidden(at)) {
            positions.push_back(at);
        }
    }
    if (static_cast<std::int32_t>(positions.size()) < count) {
        positions.clear();
    }
    return positions;
}

}  // namespace

std::optional<SelectedCells> CellsFrom(const VSFlexGrid& grid, std::int32_t row, std::int32_t screenCol,
                                       std::int32_t rows, std::int32_t cols) {
    SelectedCells cells;
    cells.m_rows = Positions(row, rows, grid.Rows(), [&grid](std::int32_t at) { return grid.RowHidden(at); });
    cells.m_cols =
        Positions(screenCol, cols, grid.Cols(), [&grid](std::int32_t at) { return grid.ColHidden(at); });
    if (cells.m_rows.empty() || cells.m_cols.empty()) {
        return std::nullopt;
    }
    cells.m_values.resize(cells.m_rows.size() * cells.m_cols.size());
    return cells;
}

std::optional<SelectedCells> FindSelectedCells(const Desk& desk) {
    const VSFlexGrid& grid = desk.Grid;
    const GridSelection selection = grid.GetSelection();
    if (selection.firstRow < 1 || selection.firstCol < 0) {
        return std::nullopt;
    }
    std::int32_t rows = 0;
    for (std::int32_t row = selection.firstRow; row <= selection.lastRow; ++row) {
        rows += grid.RowHidden(row) ? 0 : 1;
    }
    std::int32_t cols = 0;
    for (std::int32_t col = selection.firstCol; col <= selection.lastCol; ++col) {
        cols += grid.ColHidden(col) ? 0 : 1;
    }
    return CellsFrom(grid, selection.firstRow, selection.firstCol, rows, cols);
}

void ReadShownTexts(const Desk& desk, SelectedCells& cells) {
    for (std::int32_t i = 1; i <= cells.nRows(); ++i) {
        for (std::int32_t j = 1; j <= cells.nCols(); ++j) {
            cells.SetSelValues(i, j, Text(desk.Grid.TextMatrix(cells.SelRows(i), cells.SelCols(j))));
        }
    }
}

void WriteValues(Desk& desk, const SelectedCells& cells) {
    const RedrawOff quiet(desk.Grid);
    for (std::int32_t i = 1; i <= cells.nRows(); ++i) {
        for (std::int32_t j = 1; j <= cells.nCols(); ++j) {
            SetCellValue(desk, cells.SelRows(i), cells.SelCols(j), cells.SelValues(i, j));
        }
    }
}

}  // namespace kd
