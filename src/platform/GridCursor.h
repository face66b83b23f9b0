#pragma once

#include "platform/GridTable.h"

namespace kd {

/// A cell of the grid: row 0 is the header, data rows count from 1; columns are screen positions from 0.
/// -1 where there is none.
struct GridCell {
    std::int32_t row = -1;
    std::int32_t screenCol = -1;

    bool operator==(const GridCell&) const = default;
};

/// A rectangle of cells, hidden ones counted; both ends inclusive, first not beyond last.
struct GridSelection {
    std::int32_t firstRow;
    std::int32_t firstCol;
    std::int32_t lastRow;
    std::int32_t lastCol;

    bool operator==(const GridSelection&) const = default;
    bool Contains(std::int32_t row, std::int32_t col) const noexcept {
        return row >= firstRow && row <= lastRow && col >= firstCol && col <= lastCol;
    }
};

/// The current cell of VSFlexGrid and the selection that begins at it.
class GridCursor : public GridTable {
public:
    using GridTable::GridTable;

    /// The current cell, where the selection began. Row 0 for none, or for a header cell.
    std::int32_t Row() const noexcept { return m_row; }
    std::int32_t Col() const noexcept { return m_col; }
    /// Each closes an open editor first and then collapses the selection to the current cell; a refused edit
    /// keeps the editor and the current cell.
    void SetRow(std::int32_t row) { Select(row, m_col); }
    void SetCol(std::int32_t screenCol) { Select(m_row, screenCol); }
    void Select(std::int32_t row, std::int32_t screenCol);
    /// Moves the corner opposite to the current cell.
    void ExtendSelection(std::int32_t row, std::int32_t screenCol);
    GridSelection GetSelection() const noexcept;
    /// The corner opposite to the current cell.
    std::int32_t EndRow() const noexcept { return m_endRow; }
    std::int32_t EndCol() const noexcept { return m_endCol; }

protected:
    ~GridCursor() = default;

    /// Closes an open editor. False when it refuses its text and stays.
    virtual bool LeaveCell() = 0;
    /// Another cell is the current one now.
    virtual void CurrentCellMoved() = 0;
    /// Keeps the current cell and the selection inside.
    void SizeDiffers() override;

private:
    void SetCurrent(std::int32_t row, std::int32_t screenCol);
    void CheckCell(std::int32_t row, std::int32_t screenCol) const;

    std::int32_t m_row = 0;
    std::int32_t m_col = 0;
    std::int32_t m_endRow = 0;
    std::int32_t m_endCol = 0;
};

}  // namespace kd
