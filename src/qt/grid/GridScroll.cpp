#include "qt/grid/GridScroll.h"

#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <limits>

#include "qt/grid/ColumnWidths.h"
#include "qt/grid/GridMetrics.h"

namespace kd {

GridScroll::GridScroll(QAbstractScrollArea& area, VSFlexGrid& grid, const GridManner& manner)
    : m_area(area), m_grid(grid), m_manner(manner), m_layout(grid) {
    MeasureFont();
}

const GridLayout& GridScroll::Layout() const {
    if (m_layoutStale) {
        BuildLayout();
    }
    return m_layout;
}

void GridScroll::MeasureFont() {
    m_widths.SetFont(m_area.font(), m_area.viewport());
    const QFontMetricsF& metrics = m_widths.Metrics();
    GridLayout::Sizes sizes;
    sizes.rowHeight = static_cast<int>(std::ceil(metrics.height())) + RowMargin;
    sizes.headerHeight = sizes.rowHeight + HeaderExtra;
    sizes.defaultColWidth = static_cast<int>(std::ceil(metrics.averageCharWidth() * DefaultColChars));
    m_layout.SetSizes(sizes);
    m_layoutStale = true;
}

void GridScroll::MeasureAnew() {
    MeasureFont();
    if (m_sizedFirst <= m_sizedLast && m_sizedLast < m_grid.Cols()) {
        FitColumns(m_sizedFirst, m_sizedLast);
    }
    Queue();
}

void GridScroll::AutoSize(std::int32_t first, std::int32_t last) {
    first = std::max(first, 0);
    last = std::min(last, m_grid.Cols() - 1);
    if (first > last) {
        return;
    }
    m_sizedFirst = first;
    m_sizedLast = last;
    m_byHand.clear();
    FitColumns(first, last);
}

void GridScroll::FitColumns(std::int32_t first, std::int32_t last) {
    const std::vector<int> widths = ColumnWidths(m_grid, m_widths, first, last);
    for (std::int32_t screenCol = first; screenCol <= last; ++screenCol) {
        if (m_byHand.count(screenCol) == 0) {
            m_grid.SetColWidth(screenCol, widths[static_cast<std::size_t>(screenCol - first)]);
        }
    }
}

int GridScroll::RoomFor(std::int32_t screenCol) const {
    const GridLayout& layout = Layout();
    const GridLayout::Column* const column = layout.Find(screenCol);
    if (column == nullptr || !column->frozen || layout.Columns().back().frozen) {
        return std::numeric_limits<int>::max();
    }
    // Frozen columns over the whole width would leave nothing to scroll, and no way back.
    const int others = layout.FrozenWidth() - column->width;
    return m_area.viewport()->width() - others - layout.GetSizes().defaultColWidth;
}

void GridScroll::TakeWidth(std::int32_t screenCol, int pixels) {
    m_byHand.insert(screenCol);
    m_grid.SetColWidth(screenCol, pixels);
}

int GridScroll::WidthByHand(int pixels, int most) const {
    return std::max(std::min(pixels, most), OnScreenOf(m_area.logicalDpiX(), LeastColWidth));
}

void GridScroll::SizeColumn(std::int32_t screenCol, int pixels) {
    // One that takes more than its room already never becomes narrower by being asked to be wider.
    const int most = std::max(RoomFor(screenCol), m_grid.ColWidth(screenCol));
    TakeWidth(screenCol, WidthByHand(pixels, most));
}

void GridScroll::FitColumn(std::int32_t screenCol) {
    m_byHand.erase(screenCol);
    FitColumns(screenCol, screenCol);
    const int fitting = m_grid.ColWidth(screenCol);
    const int width = WidthByHand(fitting, RoomFor(screenCol));
    if (width != fitting) {
        TakeWidth(screenCol, width);
    }
}

void GridScroll::BuildLayout() const {
    const bool stretch = m_manner.WholeRows();
    const std::int32_t last = m_grid.Cols() - 1;
    const int lastWidth = stretch && last >= 0 ? ColumnWidths(m_grid, m_widths, last, last).front() : 0;
    m_layout.Build(m_area.viewport()->size(), stretch, lastWidth);
    m_layoutStale = false;
}

void GridScroll::LayoutChanged() {
    m_layoutStale = true;
    if (m_grid.Rows() <= 1) {
        m_topRow = 0;  // new rows begin at the top
    }
    Queue();
}

void GridScroll::Queue() {
    if (!m_queued) {
        m_queued = true;
        QMetaObject::invokeMethod(
            &m_area,
            [this] {
                if (m_queued) {
                    Relayout();
                }
            },
            Qt::QueuedConnection);
    }
}

void GridScroll::Relayout() {
    m_queued = false;
    m_relayouting = true;
    BuildLayout();
    SetScrollBars();  // one that comes or goes changes the viewport's size afterwards
    m_relayouting = false;
    KeepTopRow();
    Moved(true);
}

void GridScroll::SetScrollBars() {
    QSize size = m_area.viewport()->size();
    const int rows = static_cast<int>(m_grid.VisibleRows().size());
    const GridLayout::Sizes& sizes = m_layout.GetSizes();
    const QSize whole = m_area.maximumViewportSize();
    if (rows * sizes.rowHeight + sizes.headerHeight <= whole.height() &&
        m_layout.TotalWidth() <= whole.width()) {
        size = whole;
    }
    const int fullRows = m_layout.FullRowsIn(size.height());
    QScrollBar& vertical = *m_area.verticalScrollBar();
    vertical.setRange(0, std::max(rows - fullRows, 0));
    vertical.setPageStep(fullRows);
    vertical.setValue(static_cast<int>(m_grid.VisibleIndexOf(m_topRow)));
    QScrollBar& horizontal = *m_area.horizontalScrollBar();
    horizontal.setRange(0, std::max(m_layout.TotalWidth() - size.width(), 0));
    horizontal.setPageStep(std::max(size.width() - m_layout.FrozenWidth(), 1));
    horizontal.setSingleStep(sizes.defaultColWidth / 2);
}

void GridScroll::KeepTopRow() {
    const auto& visible = m_grid.VisibleRows();
    const auto top = static_cast<std::size_t>(m_area.verticalScrollBar()->value());
    m_topRow = top < visible.size() ? visible[top] : 0;
}

void GridScroll::Resized() {
    Relayout();
}

void GridScroll::Scrolled() {
    m_layout.SetScroll(m_area.verticalScrollBar()->value(), m_area.horizontalScrollBar()->value());
    if (!m_relayouting) {
        KeepTopRow();
        Moved(false);
    }
}

void GridScroll::ShowCell(std::int32_t row, std::int32_t screenCol) {
    if (m_queued) {
        Relayout();
    }
    const GridLayout& layout = Layout();
    if (row > 0) {
        const int index = static_cast<int>(m_grid.VisibleIndexOf(row));
        QScrollBar& bar = *m_area.verticalScrollBar();
        bar.setValue(std::clamp(bar.value(), index - layout.FullRows() + 1, index));
    }
    const GridLayout::Column* column = layout.Find(screenCol);
    if (column != nullptr && !column->frozen) {
        const int left = column->left - layout.FrozenWidth();
        const int right = column->left + column->width - m_area.viewport()->width();
        QScrollBar& bar = *m_area.horizontalScrollBar();
        bar.setValue(std::min(std::max(bar.value(), right), left));
    }
}

void GridScroll::SetTopRow(std::int32_t row) {
    m_topRow = row;
    Relayout();
}

}  // namespace kd
