#include "platform/GridTable.h"

#include <algorithm>

#include "base/cError.h"

namespace kd {

void GridTable::SetRows(std::int32_t rows) {
    if (rows < 0) {
        throw cError(errInvalidArgument, "VSFlexGrid.Rows");
    }
    CellsLeave(rows);
    m_texts.SetRows(rows);
    m_rows.resize(static_cast<std::size_t>(rows));
    m_visible.reset();
    SizeDiffers();
    LayoutDiffers();
}

void GridTable::ReserveRows(std::int32_t rows) {
    m_rows.reserve(static_cast<std::size_t>(rows));
    m_texts.Reserve(rows);
}

void GridTable::SetCols(std::int32_t cols) {
    if (cols < 0) {
        throw cError(errInvalidArgument, "VSFlexGrid.Cols");
    }
    if (cols == Cols()) {
        return;
    }
    CellsLeave(0);
    m_texts.SetCols(cols);
    m_pictures.assign(static_cast<std::size_t>(cols), HeaderPicture::None);
    ResetColumns(cols);
    SizeDiffers();
    LayoutDiffers();
}

void GridTable::RemoveItem(std::int32_t row) {
    const auto index = static_cast<std::ptrdiff_t>(m_texts.RowIndex(row));
    CellsLeave(row);
    m_texts.RemoveRow(row);
    m_rows.erase(m_rows.begin() + index);
    m_visible.reset();
    SizeDiffers();
    LayoutDiffers();
}

void GridTable::SetTextMatrix(std::int32_t row, std::int32_t screenCol, std::string_view text) {
    m_texts.Set(row, screenCol, text);
    CellDiffers(row, screenCol);
}

void GridTable::SetRowTexts(std::int32_t row, const RowText& texts) {
    m_texts.SetRow(row, texts);
    LayoutDiffers();
}

void GridTable::SetBackColor(std::int32_t row, std::int32_t screenCol, BackColour colour) {
    if (m_texts.SetColour(row, screenCol, colour)) {
        CellDiffers(row, screenCol);
    }
}

void GridTable::SetCellPicture(std::int32_t screenCol, HeaderPicture picture) {
    m_pictures[m_texts.ColIndex(screenCol)] = picture;
    if (Rows() > 0) {
        CellDiffers(0, screenCol);
    }
}

void GridTable::SetRowHidden(std::int32_t row, bool hidden) {
    bool& present = RowOf(row).hidden;
    if (present != hidden) {
        present = hidden;
        m_visible.reset();
        CellsHide();
        LayoutDiffers();
    }
}

void GridTable::SetIsSelected(std::int32_t row, bool selected) {
    bool& present = RowOf(row).selected;
    if (present != selected) {
        present = selected;
        SelectionDiffers();
    }
}

const std::vector<std::int32_t>& GridTable::VisibleRows() const {
    if (!m_visible) {
        m_visible.emplace();
        for (std::int32_t row = 1; row < Rows(); ++row) {
            if (!m_rows[static_cast<std::size_t>(row)].hidden) {
                m_visible->push_back(row);
            }
        }
    }
    return *m_visible;
}

std::size_t GridTable::VisibleIndexOf(std::int32_t row) const {
    const auto& visible = VisibleRows();
    return static_cast<std::size_t>(std::lower_bound(visible.begin(), visible.end(), row) - visible.begin());
}

std::int32_t GridTable::VisibleRowFrom(std::int32_t row, std::int32_t step) const {
    row = step == 1 ? std::max(row, 1) : std::min(row, Rows() - 1);
    while (row >= 1 && row < Rows()) {
        if (!m_rows[static_cast<std::size_t>(row)].hidden) {
            return row;
        }
        row += step;
    }
    return 0;
}

}  // namespace kd
