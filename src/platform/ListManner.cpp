#include <algorithm>

#include "platform/CellMoves.h"
#include "platform/GridManner.h"

namespace kd {

bool ListManner::Pick(GridCell cell, bool extend) {
    m_grid.Select(cell.row, 0);
    if (extend && m_anchor > 0) {
        ExtendTo(cell.row);
    } else {
        m_anchor = cell.row;
        m_end = cell.row;
        m_grid.SetIsSelected(cell.row, !m_grid.IsSelected(cell.row));
    }
    return false;
}

void ListManner::MarkRange(std::int32_t end, bool selected) {
    const std::int32_t last = std::min(std::max(m_anchor, end), m_grid.Rows() - 1);
    for (std::int32_t row = std::min(m_anchor, end); row <= last; ++row) {
        if (!m_grid.RowHidden(row)) {
            m_grid.SetIsSelected(row, selected);
        }
    }
}

void ListManner::ExtendTo(std::int32_t row) {
    MarkRange(m_end, false);
    m_end = row;
    MarkRange(m_end, true);
}

bool ListManner::KeyPress(int keyCode, int shift, int page) {
    const std::int32_t row = m_grid.Row();
    const bool extend = (shift & sbShift) != 0;
    switch (keyCode) {
        case kcUp:
        case kcDown:
            MoveTo(RowFrom(m_grid, row, keyCode == kcUp ? -1 : 1, Stride::One, page), extend);
            return true;
        case kcPageUp:
        case kcPageDown:
            MoveTo(RowFrom(m_grid, row, keyCode == kcPageUp ? -1 : 1, Stride::Page, page), extend);
            return true;
        case kcHome:
        case kcEnd:
            MoveTo(RowFrom(m_grid, std::max(row, 1), keyCode == kcHome ? -1 : 1, Stride::End, page), extend);
            return true;
        case kcSpace:
            if (row > 0 && !m_grid.RowHidden(row)) {
                (void)Pick({row, 0}, false);  // no drag begins by key
            }
            return true;
        case kcA:
            if ((shift & sbCtrl) == 0) {
                return false;
            }
            for (const std::int32_t shown : m_grid.VisibleRows()) {
                m_grid.SetIsSelected(shown, true);
            }
            return true;
        default:
            return false;
    }
}

void ListManner::MoveTo(std::int32_t row, bool extend) {
    if (row < 1) {
        return;  // nothing is in sight
    }
    if (m_anchor < 1) {  // without Shift both begin anew below
        m_anchor = m_grid.Row() > 0 ? m_grid.Row() : row;
        m_end = m_anchor;
    }
    m_grid.Select(row, 0);
    if (extend) {
        ExtendTo(row);
    } else {
        m_anchor = row;
        m_end = row;
    }
    m_grid.ShowCell(row, 0);
}

std::vector<std::int32_t> ListManner::SelectedRows() const {
    std::vector<std::int32_t> rows;
    for (std::int32_t row = 1; row < m_grid.Rows(); ++row) {
        if (m_grid.IsSelected(row)) {
            rows.push_back(row);
        }
    }
    return rows;
}

std::int32_t ListManner::SelectedCount() const {
    return static_cast<std::int32_t>(SelectedRows().size()) * m_grid.Cols();
}

std::vector<GridCell> ListManner::SelectedCells(std::int32_t /*most*/, std::int32_t /*firstShown*/,
                                                std::int32_t /*lastShown*/) const {
    std::vector<GridCell> told;
    for (const std::int32_t row : SelectedRows()) {
        told.push_back({row, 0});
    }
    return told;
}

bool ListManner::SetSelected(std::int32_t row, bool selected) {
    if (!IsDataRow(row)) {
        return false;
    }
    m_grid.SetIsSelected(row, selected);
    return true;
}

}  // namespace kd
