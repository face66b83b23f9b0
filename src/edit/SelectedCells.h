#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "grid/Desk.h"

namespace kd {

/// The cells that a command works on: visible rows by visible columns. Their rows and columns count
/// from 1.
class SelectedCells {
public:
    std::int32_t nRows() const noexcept { return static_cast<std::int32_t>(m_rows.size()); }
    std::int32_t nCols() const noexcept { return static_cast<std::int32_t>(m_cols.size()); }
    /// Grid row of the i-th row, the same for all its cells.
    std::int32_t SelRows(std::int32_t i) const { return m_rows[Index(i)]; }
    /// Grid column of the j-th column, the same for all its cells.
    std::int32_t SelCols(std::int32_t j) const { return m_cols[Index(j)]; }
    /// The value that the command read or will write; empty at first.
    const Text& SelValues(std::int32_t i, std::int32_t j) const { return m_values[Cell(i, j)]; }
    void SetSelValues(std::int32_t i, std::int32_t j, Text value) { m_values[Cell(i, j)] = std::move(value); }

    /// Empties all values.
    void ClearValues() { m_values.assign(m_values.size(), {}); }

private:
    friend std::optional<SelectedCells> CellsFrom(const VSFlexGrid& grid, std::int32_t row,
                                                  std::int32_t screenCol, std::int32_t rows,
                                                  std::int32_t cols);

    static std::size_t Index(std::int32_t position) { return static_cast<std::size_t>(position - 1); }
    std::size_t Cell(std::int32_t i, std::int32_t j) const { return Index(i) * m_cols.size() + Index(j); }

    std::vector<std::int32_t> m_rows;
    std::vector<std::int32_t> m_cols;
    std::vector<Text> m_values;  // row by row
};

/// `rows` by `cols` cells from a cell on: that cell's row and column as they are, hidden or not,
/// then the next visible ones. Nothing when the grid ends before.
std::optional<SelectedCells> CellsFrom(const VSFlexGrid& grid, std::int32_t row, std::int32_t screenCol,
                                       std::int32_t rows, std::int32_t cols);

/// The cells of the selection: as many rows and columns as it has visible ones. A selection that begins on
/// a hidden row or column uses it, and so leaves out its last visible one. Nothing when there is no
/// selection, or nothing visible in it.
std::optional<SelectedCells> FindSelectedCells(const Desk& desk);

/// Reads the shown text of each cell into its value.
void ReadShownTexts(const Desk& desk, SelectedCells& cells);

/// Writes the values through SetCellValue, with one repaint in the end.
void WriteValues(Desk& desk, const SelectedCells& cells);

}  // namespace kd
