#pragma once

#include <vector>

#include "platform/GridOnScreen.h"

namespace kd {

/// Alignment of cells, with the numbers that the grid's users know.
enum CellAlignment : std::uint8_t { caLeftCenter = 1, caCenterCenter = 4, caRightCenter = 7 };

/// The columns of VSFlexGrid: how each is numbered, aligned, sized and shown. Screen positions count from 0.
///
/// @throws cError(errSubscript) for a column outside the grid, in every operation that takes one, unless told
/// otherwise.
class GridColumns : public GridOnScreen {
public:
    using GridOnScreen::GridOnScreen;

    std::int32_t Cols() const noexcept { return static_cast<std::int32_t>(m_columns.size()); }
    std::int32_t FrozenCols() const noexcept { return m_frozenCols; }
    /// The leading columns, hidden ones counted, that stay in sight when the rest scrolls.
    /// @throws cError(errInvalidArgument) unless it is from 0 to the number of columns.
    void SetFrozenCols(std::int32_t cols);
    std::int32_t ColData(std::int32_t screenCol) const { return Column(screenCol).data; }
    void SetColData(std::int32_t screenCol, std::int32_t value) { Column(screenCol).data = value; }
    /// Alignment of a whole column, the header included.
    CellAlignment ColAlignment(std::int32_t screenCol) const { return Column(screenCol).alignment; }
    void SetColAlignment(std::int32_t screenCol, CellAlignment alignment);
    bool ColHidden(std::int32_t screenCol) const { return Column(screenCol).hidden; }
    void SetColHidden(std::int32_t screenCol, bool hidden);
    /// Width in pixels, as the screen or the user last sized it; 0 for a column that nothing has sized yet.
    std::int32_t ColWidth(std::int32_t screenCol) const { return Column(screenCol).width; }
    void SetColWidth(std::int32_t screenCol, std::int32_t pixels);
    /// The nearest shown column from `screenCol` on (itself included) in the direction `step` (1 or -1); -1
    /// for none. `screenCol` may lie outside the grid.
    std::int32_t VisibleColFrom(std::int32_t screenCol, std::int32_t step) const;

protected:
    ~GridColumns() = default;

    /// New columns, as they are before anybody has told anything of them.
    void ResetColumns(std::int32_t cols);
    /// A row or a column has been hidden or shown; the screen has not been told yet.
    virtual void CellsHide() = 0;

private:
    struct GridColumn {
        std::int32_t data = 0;
        std::int32_t width = 0;
        CellAlignment alignment = caLeftCenter;
        bool hidden = false;
    };

    std::size_t Index(std::int32_t screenCol) const;
    const GridColumn& Column(std::int32_t screenCol) const { return m_columns[Index(screenCol)]; }
    GridColumn& Column(std::int32_t screenCol) { return m_columns[Index(screenCol)]; }

    std::vector<GridColumn> m_columns;
    std::int32_t m_frozenCols = 0;
};

}  // namespace kd
