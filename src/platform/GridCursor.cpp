#include "platform/GridCursor.h"

#include <algorithm>

namespace kd {

void GridCursor::SizeDiffers() {
    const std::int32_t lastRow = std::max(Rows() - 1, 0);
    const std::int32_t lastCol = std::max(Cols() - 1, 0);
    const std::int32_t row = std::min(m_row, lastRow);
    const std::int32_t col = std::min(m_col, lastCol);
    m_endRow = std::min(m_endRow, lastRow);
    m_endCol = std::min(m_endCol, lastCol);
    if (row != m_row || col != m_col) {
        SetCurrent(row, col);
    }
}

void GridCursor::SetCurrent(std::int32_t row, std::int32_t screenCol) {
    const bool moved = row != m_row || screenCol != m_col;
    m_row = row;
    m_col = screenCol;
    m_endRow = row;
    m_endCol = screenCol;
    SelectionDiffers();
    if (moved) {
        CurrentCellMoved();
    }
}

void GridCursor::CheckCell(std::int32_t row, std::int32_t screenCol) const {
    (void)RowHidden(row);  // the range check alone
    (void)ColHidden(screenCol);
}

void GridCursor::Select(std::int32_t row, std::int32_t screenCol) {
    CheckCell(row, screenCol);
    if (LeaveCell()) {
        SetCurrent(row, screenCol);
    }
}

void GridCursor::ExtendSelection(std::int32_t row, std::int32_t screenCol) {
    CheckCell(row, screenCol);
    m_endRow = row;
    m_endCol = screenCol;
    SelectionDiffers();
}

GridSelection GridCursor::GetSelection() const noexcept {
    return {std::min(m_row, m_endRow), std::min(m_col, m_endCol), std::max(m_row, m_endRow),
            std::max(m_col, m_endCol)};
}

}  // namespace kd
