#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <cstdint>
#include <vector>

#include "platform/VSFlexGrid.h"

namespace kd {

/// Where the cells of a grid stand in its viewport, in pixels from the viewport's left top corner. The
/// header stays on top and the frozen columns stay at the left; the other columns scroll below them by
/// pixels, the rows by whole rows. Columns are measured once, in Build; rows are read from the grid, so that
/// hiding rows costs nothing here.
class GridLayout {
public:
    struct Column {
        std::int32_t screenCol = 0;
        int left = 0;  // unscrolled
        int width = 0;
        bool frozen = false;
    };
    struct Sizes {
        int rowHeight = 1;
        int headerHeight = 1;
        int defaultColWidth = 1;  // of a column that nothing has sized yet
    };

    explicit GridLayout(const VSFlexGrid& grid) : m_grid(grid) {}

    void SetSizes(const Sizes& sizes) noexcept { m_sizes = sizes; }
    const Sizes& GetSizes() const noexcept { return m_sizes; }
    /// Reads the columns. `stretchLast` widens the last one to the viewport's right edge; it then is at least
    /// `lastWidth` wide.
    void Build(QSize viewport, bool stretchLast, int lastWidth);
    /// First row below the header as an index into the visible rows, and how far the columns are scrolled.
    void SetScroll(int topIndex, int offset) noexcept {
        m_topIndex = topIndex;
        m_offset = offset;
    }
    int TopIndex() const noexcept { return m_topIndex; }

    /// Whether the columns are still those of the grid.
    bool Fits() const noexcept { return m_cols == m_grid.Cols(); }
    const std::vector<Column>& Columns() const noexcept { return m_columns; }
    int FrozenWidth() const noexcept { return m_frozenWidth; }
    int TotalWidth() const noexcept { return m_totalWidth; }
    /// How many rows fit below the header in whole, at least one.
    int FullRows() const noexcept { return FullRowsIn(m_viewport.height()); }
    int FullRowsIn(int height) const noexcept;
    /// How many rows are seen below the header, those counted in that are cut off at the bottom; may be none.
    int ShownRows() const noexcept;

    /// Left edge of a column as it is scrolled now.
    int LeftOf(const Column& column) const noexcept {
        return column.frozen ? column.left : column.left - m_offset;
    }
    /// Null for a hidden column.
    const Column* Find(std::int32_t screenCol) const noexcept;
    /// The whole rectangle of a cell, wherever it is scrolled; empty for a hidden one.
    QRect CellRect(std::int32_t row, std::int32_t screenCol) const;
    /// The part of the viewport in which a cell may be seen.
    QRect ClipOf(std::int32_t row, bool frozen) const noexcept;
    /// What is seen of a cell.
    QRect ShownRect(std::int32_t row, std::int32_t screenCol) const;

    /// The cell there: row 0 for the header, -1 below the last row or beside the columns.
    GridCell CellAt(QPoint place) const { return {RowAt(place.y()), ColAt(place.x())}; }
    /// 0 for the header, -1 below the last row.
    std::int32_t RowAt(int y) const;
    /// -1 beside the columns.
    std::int32_t ColAt(int x) const noexcept;
    /// The column whose right edge is within `grip` pixels to either side, in the header row; -1 for none. An
    /// edge that has been scrolled below the frozen columns counts no more.
    std::int32_t DividerAt(QPoint place, int grip) const noexcept;

private:
    const VSFlexGrid& m_grid;
    Sizes m_sizes;
    QSize m_viewport;
    std::vector<Column> m_columns;  // those that are shown
    std::int32_t m_cols = 0;
    int m_frozenWidth = 0;
    int m_totalWidth = 0;
    int m_topIndex = 0;
    int m_offset = 0;
};

}  // namespace kd
