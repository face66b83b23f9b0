#pragma once

#include <optional>

#include "platform/GridColumns.h"
#include "platform/GridTexts.h"

namespace kd {

/// Pictures of header cells: the pair `ImgList`.
enum class HeaderPicture : std::uint8_t { None, FilterOff, FilterOn };

/// The rows of VSFlexGrid and its cells: texts, colours, and what of them is shown. Row 0 is the
/// header row, data rows count from 1; columns are screen positions from 0. Everything holds for hidden rows
/// and columns too.
///
/// @throws cError(errSubscript) for a row or column outside the grid, in every operation that takes one,
/// unless told otherwise.
class GridTable : public GridColumns {
public:
    using GridColumns::GridColumns;

    std::int32_t Rows() const noexcept { return m_texts.Rows(); }
    /// New rows are empty and shown; rows that go take everything of theirs along.
    /// @throws cError(errInvalidArgument) below 0.
    void SetRows(std::int32_t rows);
    /// Empties all cells when the number changes.
    /// @throws cError(errInvalidArgument) below 0.
    void SetCols(std::int32_t cols);
    void RemoveItem(std::int32_t row);
    /// Makes room for that many rows beforehand.
    void ReserveRows(std::int32_t rows);

    /// Good until the row changes.
    std::string_view TextMatrix(std::int32_t row, std::int32_t screenCol) const {
        return m_texts.At(row, screenCol);
    }
    void SetTextMatrix(std::int32_t row, std::int32_t screenCol, std::string_view text);
    /// All texts of a row at once; `texts` has one for each column.
    void SetRowTexts(std::int32_t row, const RowText& texts);
    std::int32_t RowData(std::int32_t row) const { return RowOf(row).data; }
    void SetRowData(std::int32_t row, std::int32_t value) { RowOf(row).data = value; }
    BackColour BackColor(std::int32_t row, std::int32_t screenCol) const {
        return m_texts.Colour(row, screenCol);
    }
    /// Raises errOverflow for the 257th colour; the ground is one.
    void SetBackColor(std::int32_t row, std::int32_t screenCol, BackColour colour);
    /// The header cell's picture, at its right bottom corner.
    HeaderPicture CellPicture(std::int32_t screenCol) const {
        return m_pictures[m_texts.ColIndex(screenCol)];
    }
    void SetCellPicture(std::int32_t screenCol, HeaderPicture picture);

    bool RowHidden(std::int32_t row) const { return RowOf(row).hidden; }
    void SetRowHidden(std::int32_t row, bool hidden);
    /// Rows that are selected one by one, in a list box's manner.
    bool IsSelected(std::int32_t row) const { return RowOf(row).selected; }
    void SetIsSelected(std::int32_t row, bool selected);

    /// The data rows (header not counted) that are shown, in order.
    const std::vector<std::int32_t>& VisibleRows() const;
    /// Index of a row in the visible rows, or of the next visible one behind a hidden row; the number of
    /// visible rows when there is none. `row` may lie outside the grid.
    std::size_t VisibleIndexOf(std::int32_t row) const;
    /// The nearest shown data row from `row` on (itself included) in the direction `step` (1 or -1); 0 for
    /// none. `row` may lie outside the grid.
    std::int32_t VisibleRowFrom(std::int32_t row, std::int32_t step) const;

protected:
    ~GridTable() = default;

    /// Cells of the rows from `first` on are about to go, or to move up.
    virtual void CellsLeave(std::int32_t first) = 0;
    /// There are other rows or columns now; the screen has not been told yet.
    virtual void SizeDiffers() = 0;

private:
    struct GridRow {
        std::int32_t data = 0;
        bool hidden = false;
        bool selected = false;
    };

    const GridRow& RowOf(std::int32_t row) const { return m_rows[m_texts.RowIndex(row)]; }
    GridRow& RowOf(std::int32_t row) { return m_rows[m_texts.RowIndex(row)]; }

    GridTexts m_texts;
    std::vector<GridRow> m_rows;
    std::vector<HeaderPicture> m_pictures;                       // a column each
    mutable std::optional<std::vector<std::int32_t>> m_visible;  // nothing while it has to be listed anew
};

}  // namespace kd
