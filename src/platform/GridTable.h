#pragma once

#include <optional>

#include "platform/GridOnScreen.h"
#include "platform/GridTexts.h"

namespace kd {

/// Alignment of cells, with the numbers that the grid's users know.
enum CellAlignment : std::uint8_t { caLeftCenter = 1, caCenterCenter = 4, caRightCenter = 7 };

/// Pictures of header cells: the pair `ImgList`.
enum class HeaderPicture : std::uint8_t { None, FilterOff, FilterOn };

/// The rows and columns of VSFlexGrid: their cells, their numbers, and what of them is shown. Row 0 is the
/// header row, data rows count from 1; columns are screen positions from 0. Everything holds for hidden rows
/// and columns too.
///
/// @throws cError(errSubscript) for a row or column outside the grid, in every operation that takes one,
/// unless told otherwise.
class GridTable : public GridOnScreen {
public:
    using GridOnScreen::GridOnScreen;

    std::int32_t Rows() const noexcept { return m_texts.Rows(); }
    /// New rows are empty and shown; rows that go take everything of theirs along.
    /// @throws cError(errInvalidArgument) below 0.
    void SetRows(std::int32_t rows);
    std::int32_t Cols() const noexcept { return m_texts.Cols(); }
    /// Empties all cells when the number changes.
    /// @throws cError(errInvalidArgument) below 0.
    void SetCols(std::int32_t cols);
    std::int32_t FrozenCols() const noexcept { return m_frozenCols; }
    /// The leading columns, hidden ones counted, that stay in sight when the rest scrolls.
    /// @throws cError(errInvalidArgument) unless it is from 0 to the number of columns.
    void SetFrozenCols(std::int32_t cols);
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
    std::int32_t ColData(std::int32_t screenCol) const { return ColOf(screenCol).data; }
    void SetColData(std::int32_t screenCol, std::int32_t value) { ColOf(screenCol).data = value; }
    BackColour BackColor(std::int32_t row, std::int32_t screenCol) const {
        return m_texts.Colour(row, screenCol);
    }
    void SetBackColor(std::int32_t row, std::int32_t screenCol, BackColour colour);
    /// Alignment of a whole column, the header included.
    CellAlignment ColAlignment(std::int32_t screenCol) const { return ColOf(screenCol).alignment; }
    void SetColAlignment(std::int32_t screenCol, CellAlignment alignment);
    /// The header cell's picture, at its right bottom corner.
    HeaderPicture CellPicture(std::int32_t screenCol) const { return ColOf(screenCol).picture; }
    void SetCellPicture(std::int32_t screenCol, HeaderPicture picture);

    bool RowHidden(std::int32_t row) const { return RowOf(row).hidden; }
    void SetRowHidden(std::int32_t row, bool hidden);
    bool ColHidden(std::int32_t screenCol) const { return ColOf(screenCol).hidden; }
    void SetColHidden(std::int32_t screenCol, bool hidden);
    /// Width in pixels, as the screen or the user last sized it; 0 for a column that nothing has sized yet.
    std::int32_t ColWidth(std::int32_t screenCol) const { return ColOf(screenCol).width; }
    void SetColWidth(std::int32_t screenCol, std::int32_t pixels);
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
    /// The nearest shown column from `screenCol` on in the direction `step`; -1 for none.
    std::int32_t VisibleColFrom(std::int32_t screenCol, std::int32_t step) const;

protected:
    ~GridTable() = default;

    /// Cells of the rows from `first` on are about to go, or to move up.
    virtual void CellsLeave(std::int32_t first) = 0;
    /// There are other rows or columns now; the screen has not been told yet.
    virtual void SizeDiffers() = 0;
    /// A row or a column has been hidden or shown; the screen has not been told yet.
    virtual void CellsHide() = 0;

private:
    struct GridRow {
        std::int32_t data = 0;
        bool hidden = false;
        bool selected = false;
    };
    struct GridColumn {
        std::int32_t data = 0;
        std::int32_t width = 0;
        CellAlignment alignment = caLeftCenter;
        HeaderPicture picture = HeaderPicture::None;
        bool hidden = false;
    };

    const GridRow& RowOf(std::int32_t row) const { return m_rows[m_texts.RowIndex(row)]; }
    GridRow& RowOf(std::int32_t row) { return m_rows[m_texts.RowIndex(row)]; }
    const GridColumn& ColOf(std::int32_t screenCol) const { return m_columns[m_texts.ColIndex(screenCol)]; }
    GridColumn& ColOf(std::int32_t screenCol) { return m_columns[m_texts.ColIndex(screenCol)]; }

    GridTexts m_texts;
    std::vector<GridRow> m_rows;
    std::vector<GridColumn> m_columns;
    std::int32_t m_frozenCols = 0;
    mutable std::optional<std::vector<std::int32_t>> m_visible;  // nothing while it has to be listed anew
};

}  // namespace kd
