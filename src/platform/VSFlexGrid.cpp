#include "platform/VSFlexGrid.h"

#include <algorithm>

#include "base/Scope.h"
#include "base/cError.h"

namespace kd {

std::size_t VSFlexGrid::RowIndex(std::int32_t row) const {
    if (row < 0 || row >= Rows()) {
        throw cError(errSubscript, "VSFlexGrid.Row");
    }
    return static_cast<std::size_t>(row);
}

std::size_t VSFlexGrid::ColIndex(std::int32_t screenCol) const {
    if (screenCol < 0 || screenCol >= m_cols) {
        throw cError(errSubscript, "VSFlexGrid.Col");
    }
    return static_cast<std::size_t>(screenCol);
}

std::size_t VSFlexGrid::CellIndex(std::int32_t row, std::int32_t screenCol) const {
    return RowIndex(row) * static_cast<std::size_t>(m_cols) + ColIndex(screenCol);
}

void VSFlexGrid::CellDiffers(std::int32_t row, std::int32_t screenCol) {
    if (!m_redraw) {
        m_stale = true;
    } else if (m_screen != nullptr) {
        m_screen->CellChanged(row, screenCol);
    }
}

void VSFlexGrid::LayoutDiffers() {
    if (!m_redraw) {
        m_stale = true;
    } else if (m_screen != nullptr) {
        m_screen->LayoutChanged();
    }
}

void VSFlexGrid::SelectionDiffers() {
    if (!m_redraw) {
        m_stale = true;
    } else if (m_screen != nullptr) {
        m_screen->SelectionChanged();
    }
}

void VSFlexGrid::SetRows(std::int32_t rows) {
    if (rows < 0) {
        throw cError(errInvalidArgument, "VSFlexGrid.Rows");
    }
    if (m_editing && m_row >= rows) {
        CancelEdit();
    }
    m_rows.resize(static_cast<std::size_t>(rows));
    const auto cells = m_rows.size() * static_cast<std::size_t>(m_cols);
    m_ends.resize(cells, 0);
    if (!m_colours.empty()) {
        m_colours.resize(cells, 0);
    }
    m_visibleStale = true;
    KeepCurrentInside();
    LayoutDiffers();
}

void VSFlexGrid::ReserveRows(std::int32_t rows) {
    m_rows.reserve(static_cast<std::size_t>(rows));
    m_ends.reserve(static_cast<std::size_t>(rows) * static_cast<std::size_t>(m_cols));
}

void VSFlexGrid::SetCols(std::int32_t cols) {
    if (cols < 0) {
        throw cError(errInvalidArgument, "VSFlexGrid.Cols");
    }
    if (cols == m_cols) {
        return;
    }
    CancelEdit();
    m_cols = cols;
    m_columns.assign(static_cast<std::size_t>(cols), {});
    for (GridRow& row : m_rows) {
        row.bytes.clear();
    }
    m_ends.assign(m_rows.size() * static_cast<std::size_t>(cols), 0);
    m_colours.clear();
    m_frozenCols = std::min(m_frozenCols, cols);
    KeepCurrentInside();
    LayoutDiffers();
}

void VSFlexGrid::SetFrozenCols(std::int32_t cols) {
    if (cols < 0 || cols > m_cols) {
        throw cError(errInvalidArgument, "VSFlexGrid.FrozenCols");
    }
    m_frozenCols = cols;
    LayoutDiffers();
}

void VSFlexGrid::RemoveItem(std::int32_t row) {
    const auto index = static_cast<std::ptrdiff_t>(RowIndex(row));
    const std::ptrdiff_t cols = m_cols;
    if (m_editing && m_row >= row) {
        CancelEdit();
    }
    m_rows.erase(m_rows.begin() + index);
    m_ends.erase(m_ends.begin() + index * cols, m_ends.begin() + (index + 1) * cols);
    if (!m_colours.empty()) {
        m_colours.erase(m_colours.begin() + index * cols, m_colours.begin() + (index + 1) * cols);
    }
    m_visibleStale = true;
    KeepCurrentInside();
    LayoutDiffers();
}

void VSFlexGrid::KeepCurrentInside() {
    const std::int32_t lastRow = std::max(Rows() - 1, 0);
    const std::int32_t lastCol = std::max(m_cols - 1, 0);
    const std::int32_t row = std::min(m_row, lastRow);
    const std::int32_t col = std::min(m_col, lastCol);
    m_endRow = std::min(m_endRow, lastRow);
    m_endCol = std::min(m_endCol, lastCol);
    if (row != m_row || col != m_col) {
        SetCurrent(row, col);
    }
}

std::string_view VSFlexGrid::TextMatrix(std::int32_t row, std::int32_t screenCol) const {
    const auto cell = CellIndex(row, screenCol);
    const std::uint32_t begin = screenCol == 0 ? 0 : m_ends[cell - 1];
    return std::string_view(m_rows[static_cast<std::size_t>(row)].bytes).substr(begin, m_ends[cell] - begin);
}

void VSFlexGrid::SetTextMatrix(std::int32_t row, std::int32_t screenCol, std::string_view text) {
    const auto cell = CellIndex(row, screenCol);
    const std::uint32_t begin = screenCol == 0 ? 0 : m_ends[cell - 1];
    const std::uint32_t end = m_ends[cell];
    std::string& bytes = m_rows[static_cast<std::size_t>(row)].bytes;
    bytes.replace(begin, end - begin, Text(text));  // a copy: the text may be a view of this very row
    const std::uint32_t shift =
        begin + static_cast<std::uint32_t>(text.size()) - end;  // modulo 2^32 when shorter
    const auto rowEnd = static_cast<std::size_t>(row + 1) * static_cast<std::size_t>(m_cols);
    for (std::size_t at = cell; at < rowEnd; ++at) {
        m_ends[at] += shift;
    }
    CellDiffers(row, screenCol);
}

void VSFlexGrid::SetRowTexts(std::int32_t row, const RowText& texts) {
    const auto index = RowIndex(row);
    if (texts.Ends().size() != static_cast<std::size_t>(m_cols)) {
        throw cError(errInvalidArgument, "VSFlexGrid.SetRowTexts");
    }
    m_rows[index].bytes = texts.Bytes();
    std::copy(texts.Ends().begin(), texts.Ends().end(),
              m_ends.begin() + static_cast<std::ptrdiff_t>(index) * static_cast<std::ptrdiff_t>(m_cols));
    LayoutDiffers();
}

std::int32_t VSFlexGrid::RowData(std::int32_t row) const {
    return m_rows[RowIndex(row)].data;
}

void VSFlexGrid::SetRowData(std::int32_t row, std::int32_t value) {
    m_rows[RowIndex(row)].data = value;
}

std::int32_t VSFlexGrid::ColData(std::int32_t screenCol) const {
    return m_columns[ColIndex(screenCol)].data;
}

void VSFlexGrid::SetColData(std::int32_t screenCol, std::int32_t value) {
    m_columns[ColIndex(screenCol)].data = value;
}

BackColour VSFlexGrid::BackColor(std::int32_t row, std::int32_t screenCol) const {
    const auto cell = CellIndex(row, screenCol);
    return m_colours.empty() ? 0 : m_palette[m_colours[cell]];
}

void VSFlexGrid::SetBackColor(std::int32_t row, std::int32_t screenCol, BackColour colour) {
    const auto cell = CellIndex(row, screenCol);
    if (m_colours.empty()) {
        if (colour == 0) {
            return;
        }
        m_colours.resize(m_ends.size(), 0);
    }
    auto known = std::find(m_palette.begin(), m_palette.end(), colour);
    if (known == m_palette.end()) {
        if (m_palette.size() > 0xFFU) {
            throw cError(errOverflow, "VSFlexGrid.BackColor");
        }
        m_palette.push_back(colour);
        known = m_palette.end() - 1;
    }
    const auto entry = static_cast<std::uint8_t>(known - m_palette.begin());
    if (m_colours[cell] != entry) {
        m_colours[cell] = entry;
        CellDiffers(row, screenCol);
    }
}

CellAlignment VSFlexGrid::ColAlignment(std::int32_t screenCol) const {
    return m_columns[ColIndex(screenCol)].alignment;
}

void VSFlexGrid::SetColAlignment(std::int32_t screenCol, CellAlignment alignment) {
    m_columns[ColIndex(screenCol)].alignment = alignment;
    LayoutDiffers();
}

HeaderPicture VSFlexGrid::CellPicture(std::int32_t screenCol) const {
    return m_columns[ColIndex(screenCol)].picture;
}

void VSFlexGrid::SetCellPicture(std::int32_t screenCol, HeaderPicture picture) {
    m_columns[ColIndex(screenCol)].picture = picture;
    if (Rows() > 0) {
        CellDiffers(0, screenCol);
    }
}

bool VSFlexGrid::RowHidden(std::int32_t row) const {
    return m_rows[RowIndex(row)].hidden;
}

void VSFlexGrid::SetRowHidden(std::int32_t row, bool hidden) {
    bool& present = m_rows[RowIndex(row)].hidden;
    if (present != hidden) {
        present = hidden;
        m_visibleStale = true;
        LayoutDiffers();
    }
}

bool VSFlexGrid::ColHidden(std::int32_t screenCol) const {
    return m_columns[ColIndex(screenCol)].hidden;
}

void VSFlexGrid::SetColHidden(std::int32_t screenCol, bool hidden) {
    bool& present = m_columns[ColIndex(screenCol)].hidden;
    if (present != hidden) {
        present = hidden;
        LayoutDiffers();
    }
}

std::int32_t VSFlexGrid::ColWidth(std::int32_t screenCol) const {
    return m_columns[ColIndex(screenCol)].width;
}

void VSFlexGrid::SetColWidth(std::int32_t screenCol, std::int32_t pixels) {
    m_columns[ColIndex(screenCol)].width = pixels;
    LayoutDiffers();
}

void VSFlexGrid::AutoSize(std::int32_t first, std::int32_t last) {
    if (m_screen != nullptr) {
        m_screen->AutoSize(first, last);
    }
}

void VSFlexGrid::SetRedraw(bool redraw) {
    m_redraw = redraw;
    if (redraw && m_stale) {
        m_stale = false;
        LayoutDiffers();
        SelectionDiffers();
    }
}

void VSFlexGrid::Refresh() {
    // Every change has told the screen its cell already; a repaint of all that is shown would only cost.
    // What is left is a grid whose redraw is off: it is told when redraw goes on again.
}

void VSFlexGrid::SetToolTipText(Text text) {
    if (m_toolTip != text) {
        m_toolTip = std::move(text);
        if (m_screen != nullptr) {
            m_screen->ToolTipChanged();
        }
    }
}

const std::vector<std::int32_t>& VSFlexGrid::VisibleRows() const {
    if (m_visibleStale) {
        m_visible.clear();
        for (std::int32_t row = 1; row < Rows(); ++row) {
            if (!m_rows[static_cast<std::size_t>(row)].hidden) {
                m_visible.push_back(row);
            }
        }
        m_visibleStale = false;
    }
    return m_visible;
}

std::int32_t VSFlexGrid::VisibleRowFrom(std::int32_t row, std::int32_t step) const {
    row = step > 0 ? std::max(row, 1) : std::min(row, Rows() - 1);
    while (row >= 1 && row < Rows()) {
        if (!m_rows[static_cast<std::size_t>(row)].hidden) {
            return row;
        }
        row += step;
    }
    return 0;
}

std::int32_t VSFlexGrid::VisibleColFrom(std::int32_t screenCol, std::int32_t step) const {
    screenCol = step > 0 ? std::max(screenCol, 0) : std::min(screenCol, m_cols - 1);
    while (screenCol >= 0 && screenCol < m_cols) {
        if (!m_columns[static_cast<std::size_t>(screenCol)].hidden) {
            return screenCol;
        }
        screenCol += step;
    }
    return -1;
}

void VSFlexGrid::SetCurrent(std::int32_t row, std::int32_t screenCol) {
    const bool moved = row != m_row || screenCol != m_col;
    m_row = row;
    m_col = screenCol;
    m_endRow = row;
    m_endCol = screenCol;
    SelectionDiffers();
    if (moved && RowColChange) {
        RowColChange();
    }
}

void VSFlexGrid::SetRow(std::int32_t row) {
    Select(row, m_col);
}

void VSFlexGrid::SetCol(std::int32_t screenCol) {
    Select(m_row, screenCol);
}

void VSFlexGrid::Select(std::int32_t row, std::int32_t screenCol) {
    (void)RowIndex(row);  // the range check alone
    (void)ColIndex(screenCol);
    if (FinishEdit()) {
        SetCurrent(row, screenCol);
    }
}

void VSFlexGrid::ExtendSelection(std::int32_t row, std::int32_t screenCol) {
    (void)RowIndex(row);  // the range check alone
    (void)ColIndex(screenCol);
    m_endRow = row;
    m_endCol = screenCol;
    SelectionDiffers();
}

GridSelection VSFlexGrid::GetSelection() const noexcept {
    return {std::min(m_row, m_endRow), std::min(m_col, m_endCol), std::max(m_row, m_endRow),
            std::max(m_col, m_endCol)};
}

bool VSFlexGrid::IsSelected(std::int32_t row) const {
    return m_rows[RowIndex(row)].selected;
}

void VSFlexGrid::SetIsSelected(std::int32_t row, bool selected) {
    bool& present = m_rows[RowIndex(row)].selected;
    if (present != selected) {
        present = selected;
        SelectionDiffers();
    }
}

void VSFlexGrid::ShowCell(std::int32_t row, std::int32_t screenCol) {
    if (m_screen != nullptr) {
        m_screen->ShowCell(row, screenCol);
    }
}

void VSFlexGrid::SetTopRow(std::int32_t row) {
    if (m_screen != nullptr) {
        m_screen->SetTopRow(row);
    }
}

void VSFlexGrid::SetEditText(std::string_view text) {
    if (!m_editing) {
        return;
    }
    m_editText = TypedText ? TypedText(text) : Text(text);
    if (m_editText != text && m_screen != nullptr) {
        m_screen->EditorChanged();
    }
}

bool VSFlexGrid::StartEdit() {
    if (m_editing) {
        return true;
    }
    if (m_row >= Rows() || m_col >= m_cols) {
        return false;
    }
    bool cancel = false;
    if (BeforeEdit) {
        BeforeEdit(m_row, m_col, cancel);
    }
    if (cancel) {
        return false;
    }
    m_editText = TextMatrix(m_row, m_col);
    m_editing = true;
    if (m_screen != nullptr) {
        m_screen->EditorChanged();
    }
    return true;
}

bool VSFlexGrid::FinishEdit() {
    if (!m_editing) {
        return true;
    }
    if (m_finishing) {
        return false;  // the refusal's message box takes the focus: that is no second way out
    }
    const std::int32_t row = m_row;
    const std::int32_t col = m_col;
    {
        m_finishing = true;
        const Scope done([this] { m_finishing = false; });
        bool cancel = false;
        if (ValidateEdit) {
            ValidateEdit(row, col, cancel);
        }
        if (cancel) {
            return false;
        }
        m_editing = false;
        if (m_editText != TextMatrix(row, col)) {
            SetTextMatrix(row, col, m_editText);
        }
        if (m_screen != nullptr) {
            m_screen->EditorChanged();
        }
    }
    if (AfterEdit) {
        AfterEdit(row, col);
    }
    return true;
}

void VSFlexGrid::CancelEdit() {
    if (m_editing) {
        m_editing = false;
        if (m_screen != nullptr) {
            m_screen->EditorChanged();
        }
    }
}

}  // namespace kd
