#include "qt/grid/GridLayout.h"

#include <algorithm>

namespace kd {

void GridLayout::Build(QSize viewport, bool stretchLast, int lastWidth) {
    m_viewport = viewport;
    m_cols = m_grid.Cols();
    m_columns.clear();
    int left = 0;
    m_frozenWidth = 0;
    for (std::int32_t screenCol = 0; screenCol < m_cols; ++screenCol) {
        if (m_grid.ColHidden(screenCol)) {
            continue;
        }
        const int sized = m_grid.ColWidth(screenCol);
        const Column column{screenCol, left, sized > 0 ? sized : m_sizes.defaultColWidth,
                            screenCol < m_grid.FrozenCols()};
        left += column.width;
        if (column.frozen) {
            m_frozenWidth = left;
        }
        m_columns.push_back(column);
    }
    if (stretchLast && !m_columns.empty()) {
        Column& last = m_columns.back();
        last.width = std::max({last.width, lastWidth, viewport.width() - last.left});
        left = last.left + last.width;
    }
    m_totalWidth = left;
}

int GridLayout::FullRowsIn(int height) const noexcept {
    return std::max((height - m_sizes.headerHeight) / m_sizes.rowHeight, 1);
}

int GridLayout::ShownRows() const noexcept {
    const int height = std::max(m_viewport.height() - m_sizes.headerHeight, 0);
    return (height + m_sizes.rowHeight - 1) / m_sizes.rowHeight;
}

const GridLayout::Column* GridLayout::Find(std::int32_t screenCol) const noexcept {
    const auto found =
        std::lower_bound(m_columns.begin(), m_columns.end(), screenCol,
                         [](const Column& column, std::int32_t wanted) { return column.screenCol < wanted; });
    return found != m_columns.end() && found->screenCol == screenCol ? &*found : nullptr;
}

QRect GridLayout::CellRect(std::int32_t row, std::int32_t screenCol) const {
    const Column* column = Find(screenCol);
    if (column == nullptr) {
        return {};
    }
    if (row == 0) {
        return {LeftOf(*column), 0, column->width, m_sizes.headerHeight};
    }
    const auto& visible = m_grid.VisibleRows();
    const std::size_t index = m_grid.VisibleIndexOf(row);
    if (index >= visible.size() || visible[index] != row) {
        return {};
    }
    const int top = m_sizes.headerHeight + (static_cast<int>(index) - m_topIndex) * m_sizes.rowHeight;
    return {LeftOf(*column), top, column->width, m_sizes.rowHeight};
}

QRect GridLayout::ClipOf(std::int32_t row, bool frozen) const noexcept {
    const int left = frozen ? 0 : m_frozenWidth;
    const int right = frozen ? std::min(m_frozenWidth, m_viewport.width()) : m_viewport.width();
    const int top = row == 0 ? 0 : m_sizes.headerHeight;
    const int bottom = row == 0 ? m_sizes.headerHeight : m_viewport.height();
    return {left, top, right - left, bottom - top};
}

QRect GridLayout::ShownRect(std::int32_t row, std::int32_t screenCol) const {
    const Column* column = Find(screenCol);
    return column == nullptr ? QRect() : CellRect(row, screenCol).intersected(ClipOf(row, column->frozen));
}

std::int32_t GridLayout::RowAt(int y) const {
    if (y < 0 || m_grid.Rows() == 0) {
        return -1;
    }
    if (y < m_sizes.headerHeight) {
        return 0;
    }
    const auto& visible = m_grid.VisibleRows();
    const int shown = m_topIndex + (y - m_sizes.headerHeight) / m_sizes.rowHeight;
    const auto index = static_cast<std::size_t>(shown);
    return index < visible.size() ? visible[index] : -1;
}

std::int32_t GridLayout::ColAt(int x) const noexcept {
    if (x < 0) {
        return -1;
    }
    // The frozen ones come first and cover what is scrolled below them, and nothing is left between two.
    for (const Column& column : m_columns) {
        if (x < LeftOf(column) + column.width) {
            return column.screenCol;
        }
    }
    return -1;
}

std::int32_t GridLayout::DividerAt(QPoint place, int grip) const noexcept {
    if (place.y() < 0 || place.y() >= m_sizes.headerHeight || m_grid.Rows() == 0) {
        return -1;
    }
    for (const Column& column : m_columns) {
        const int edge = LeftOf(column) + column.width;
        const bool seen = column.frozen || edge > m_frozenWidth;
        if (seen && place.x() >= edge - grip && place.x() < edge + grip) {
            return column.screenCol;
        }
    }
    return -1;
}

}  // namespace kd
