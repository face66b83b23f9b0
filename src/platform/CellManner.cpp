#include <algorithm>
#include <numeric>

#include "platform/CellMoves.h"
#include "platform/GridManner.h"

namespace kd {

bool CellManner::Pick(GridCell cell, bool extend) {
    if (extend && HasSelection()) {
        m_grid.ExtendSelection(cell.row, cell.screenCol);
    } else {
        m_grid.Select(cell.row, cell.screenCol);
    }
    return true;
}

void CellManner::MoveTo(GridCell cell, bool extend) {
    if (!IsDataCell(cell)) {
        return;  // nothing is in sight
    }
    (void)Pick(cell, extend);  // no drag begins by key
    m_grid.ShowCell(cell.row, cell.screenCol);
}

bool CellManner::KeyPress(int keyCode, int shift, int page) {
    if ((shift & sbAlt) != 0) {
        return false;
    }
    switch (keyCode) {
        case kcUp:
        case kcDown:
        case kcPageUp:
        case kcPageDown:
        case kcLeft:
        case kcRight:
        case kcHome:
        case kcEnd:
            MoveTo(CellFromKey(m_grid, keyCode, shift, page), (shift & sbShift) != 0);
            return true;
        case kcA:
            if (shift == sbCtrl) {
                SelectAll();
                return true;
            }
            return false;
        case kcF2:
            (void)OpenEditor();  // a read-only cell just stays closed
            return true;
        default:
            return false;
    }
}

bool CellManner::Tab(bool forward) {
    const GridCell next = NextCell(m_grid, forward);
    MoveTo(next, false);
    return IsDataCell(next);
}

void CellManner::SelectAll() {
    const auto& visible = m_grid.VisibleRows();
    const std::int32_t firstCol = m_grid.VisibleColFrom(0, 1);
    if (!visible.empty() && firstCol >= 0) {
        const std::int32_t lastRow = visible.back();
        m_grid.Select(visible.front(), firstCol);
        m_grid.ExtendSelection(lastRow, m_grid.VisibleColFrom(m_grid.Cols(), -1));
    }
}

bool CellManner::OpenEditor() {
    const std::int32_t row = m_grid.Row();
    const std::int32_t col = m_grid.Col();
    if (!IsDataRow(row) || col >= m_grid.Cols() || m_grid.RowHidden(row) || m_grid.ColHidden(col)) {
        return false;
    }
    m_grid.ShowCell(row, col);
    return m_grid.StartEdit();
}

bool CellManner::IsCurrent(GridCell cell) const {
    return cell.row > 0 && cell == GridCell{m_grid.Row(), m_grid.Col()};
}

bool CellManner::LooksSelected(GridCell cell) const {
    return IsSelected(cell) && !IsCurrent(cell);
}

bool CellManner::IsSelected(GridCell cell) const {
    return HasSelection() && m_grid.GetSelection().Contains(cell.row, cell.screenCol);
}

bool CellManner::IsRowSelected(std::int32_t row) const {
    const GridSelection cells = m_grid.GetSelection();
    return IsDataRow(row) && HasSelection() && cells.firstCol == 0 && cells.lastCol == m_grid.Cols() - 1 &&
           row >= cells.firstRow && row <= cells.lastRow;
}

bool CellManner::IsColSelected(std::int32_t screenCol) const {
    const GridSelection cells = m_grid.GetSelection();
    // Where nothing is selected the header's row is the first one.
    return cells.firstRow == 1 && cells.lastRow == m_grid.Rows() - 1 && screenCol >= cells.firstCol &&
           screenCol <= cells.lastCol;
}

std::vector<std::int32_t> CellManner::SelectedRows() const {
    const GridSelection cells = m_grid.GetSelection();
    if (!IsRowSelected(cells.firstRow)) {
        return {};
    }
    std::vector<std::int32_t> rows(static_cast<std::size_t>(cells.lastRow - cells.firstRow + 1));
    std::iota(rows.begin(), rows.end(), cells.firstRow);
    return rows;
}

std::int32_t CellManner::SelectedCount() const {
    const GridSelection cells = m_grid.GetSelection();
    return HasSelection() ? (cells.lastRow - cells.firstRow + 1) * (cells.lastCol - cells.firstCol + 1) : 0;
}

std::vector<GridCell> CellManner::SelectedCells(std::int32_t most, std::int32_t firstShown,
                                                std::int32_t lastShown) const {
    std::vector<GridCell> told;
    if (!HasSelection()) {
        return told;
    }
    GridSelection cells = m_grid.GetSelection();
    if (SelectedCount() > most) {
        cells.firstRow = std::max(cells.firstRow, firstShown);
        cells.lastRow = std::min(cells.lastRow, lastShown);
    }
    for (std::int32_t row = cells.firstRow;
         row <= cells.lastRow && static_cast<std::int32_t>(told.size()) < most; ++row) {
        for (std::int32_t screenCol = cells.firstCol; screenCol <= cells.lastCol; ++screenCol) {
            told.push_back({row, screenCol});
        }
    }
    return told;
}

bool CellManner::SelectRow(std::int32_t row) {
    if (!IsDataRow(row) || m_grid.Cols() == 0) {
        return false;
    }
    m_grid.Select(row, 0);
    if (m_grid.Row() != row) {
        return false;  // an open editor refused its text
    }
    m_grid.ExtendSelection(row, m_grid.Cols() - 1);
    return true;
}

bool CellManner::SelectCol(std::int32_t screenCol) {
    if (screenCol < 0 || screenCol >= m_grid.Cols() || m_grid.Rows() <= 1) {
        return false;
    }
    m_grid.Select(1, screenCol);
    if (!IsCurrent({1, screenCol})) {
        return false;
    }
    m_grid.ExtendSelection(m_grid.Rows() - 1, screenCol);
    return true;
}

}  // namespace kd
