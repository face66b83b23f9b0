#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "grid/Desk.h"

namespace kd {

/// The cells that a command works on: visible rows by visible columns. Rows and columns of the walk count
/// from 1.
class SelectionWalk {
public:
    std::int32_t nRows() const noexcept { return static_cast<std::int32_t>(m_rows.size()); }
    std::int32_t nCols() const noexcept { return static_cast<std::int32_t>(m_cols.size()); }
    /// Grid row of the walk's row, the same for all its cells.
    std::int32_t SelRows(std::int32_t i) const { return m_rows[Index(i)]; }
    /// Grid column of the walk's column, the same for all its cells.
    std::int32_t SelCols(std::int32_t j) const { return m_cols[Index(j)]; }
    /// The value that the command read or will write; empty at first.
    const Text& SelValues(std::int32_t i, std::int32_t j) const { return m_values[Cell(i, j)]; }
    void SetSelValues(std::int32_t i, std::int32_t j, Text value) { m_values[Cell(i, j)] = std::move(value); }

    /// Empties all values.
    void ClearValues() { m_values.assign(m_values.size(), {}); }

private:
    friend std::optional<SelectionWalk> WalkFrom(const VSFlexGrid& grid, std::int32_t row,
                                                 std::int32_t screenCol, std::int32_t rows,
                                                 std::int32_t cols);

    static std::size_t Index(std::int32_t position) { return static_cast<std::size_t>(position - 1); }
    std::size_t Cell(std::int32_t i, std::int32_t j) const { return Index(i) * m_cols.size() + Index(j); }

    std::vector<std::int32_t> m_rows;
    std::vector<std::int32_t> m_cols;
    std::vector<Text> m_values;  // row by row
};

/// The walk of `rows` by `cols` cells from a cell on: that cell's row and column as they are, hidden or not,
/// then the next visible ones. Nothing when the grid ends before.
std::optional<SelectionWalk> WalkFrom(const VSFlexGrid& grid, std::int32_t row, std::int32_t screenCol,
                                      std::int32_t rows, std::int32_t cols);

/// The walk over the selection: as many rows and columns as it has visible ones. A selection that begins on a
/// hidden row or column uses it, and so leaves out its last visible one. Nothing when there is no selection,
/// or nothing visible in it.
std::optional<SelectionWalk> BuildSelectionWalk(const Desk& desk);

/// Reads the shown text of each cell into the walk's values.
void ReadShownTexts(const Desk& desk, SelectionWalk& walk);

/// Writes the walk's values through SetCellValue, with one repaint in the end.
void WriteValues(Desk& desk, const SelectionWalk& walk);

}  // namespace kd
