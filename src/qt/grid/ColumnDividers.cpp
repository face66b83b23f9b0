#include "qt/grid/ColumnDividers.h"

#include <QMouseEvent>

#include "qt/grid/GridMetrics.h"

namespace kd {

std::int32_t ColumnDividers::DividerAt(QPoint position) const {
    return m_parts.scroll.Layout().DividerAt(position, OnScreenOf(m_parts.area.logicalDpiX(), DividerGrip));
}

bool ColumnDividers::Take(const QMouseEvent& event) {
    if (m_parts.manner.WholeRows()) {
        return false;
    }
    switch (event.type()) {
        case QEvent::MouseMove:
            return Move(event);
        case QEvent::MouseButtonRelease: {
            const bool ends = m_drag.has_value() && event.button() == Qt::LeftButton;
            if (ends) {
                m_drag.reset();
            }
            return ends;
        }
        default:
            return Press(event);
    }
}

bool ColumnDividers::Press(const QMouseEvent& event) {
    m_drag.reset();
    const QPoint position = event.position().toPoint();
    const std::int32_t screenCol = DividerAt(position);
    if (screenCol < 0) {
        return false;
    }
    if (event.button() == Qt::LeftButton) {
        if (event.type() == QEvent::MouseButtonDblClick) {
            m_parts.scroll.FitColumn(screenCol);
        } else {
            m_drag = {screenCol, position.x(), m_parts.scroll.Layout().Find(screenCol)->width};
        }
    }
    return true;
}

bool ColumnDividers::Move(const QMouseEvent& event) {
    const QPoint position = event.position().toPoint();
    if (m_drag && event.buttons().testFlag(Qt::LeftButton)) {
        DragTo(position.x());
        return true;
    }
    m_drag.reset();  // the button was let go where nobody heard of it
    const bool over = event.buttons() == Qt::NoButton && DividerAt(position) >= 0;
    ShowPointer(over);
    return over;
}

void ColumnDividers::DragTo(int x) {
    if (m_parts.scroll.Layout().Find(m_drag->screenCol) != nullptr) {
        m_parts.scroll.SizeColumn(m_drag->screenCol, m_drag->width + x - m_drag->from);
    } else {
        m_drag.reset();  // the column has gone meanwhile
    }
}

void ColumnDividers::ShowPointer(bool over) {
    if (over) {
        m_parts.area.viewport()->setCursor(Qt::SplitHCursor);
    } else {
        m_parts.area.viewport()->unsetCursor();
    }
}

const GridLayout::Column* ColumnDividers::CurrentColumn() const {
    return m_parts.manner.WholeRows() ? nullptr : m_parts.scroll.Layout().Find(m_parts.grid.Col());
}

void ColumnDividers::Widen(int characters) {
    if (const GridLayout::Column* const column = CurrentColumn()) {
        const std::int32_t screenCol = column->screenCol;
        const int character = m_parts.scroll.Layout().GetSizes().defaultColWidth / DefaultColChars;
        m_parts.scroll.SizeColumn(screenCol, column->width + characters * character);
        m_parts.scroll.ShowCell(m_parts.grid.Row(), screenCol);
    }
}

void ColumnDividers::Fit() {
    if (const GridLayout::Column* const column = CurrentColumn()) {
        const std::int32_t screenCol = column->screenCol;
        m_parts.scroll.FitColumn(screenCol);
        m_parts.scroll.ShowCell(m_parts.grid.Row(), screenCol);
    }
}

}  // namespace kd
