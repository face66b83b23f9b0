#include <algorithm>

#include "qt/grid/GridWidget.h"

namespace kd {

void GridWidget::ListPick(std::int32_t row, bool range) {
    m_grid.Select(row, 0);
    if (range && m_listAnchor > 0) {
        ListRange(row);
        return;
    }
    m_listAnchor = row;
    m_listEnd = row;
    m_grid.SetIsSelected(row, !m_grid.IsSelected(row));
}

void GridWidget::ListRange(std::int32_t row) {
    // The range follows its moving end: what it leaves is unselected, what it takes is selected.
    const auto each = [this](std::int32_t end, bool selected) {
        const std::int32_t last = std::min(std::max(m_listAnchor, end), m_grid.Rows() - 1);
        for (std::int32_t at = std::min(m_listAnchor, end); at <= last; ++at) {
            if (!m_grid.RowHidden(at)) {
                m_grid.SetIsSelected(at, selected);
            }
        }
    };
    each(m_listEnd, false);
    m_listEnd = row;
    each(m_listEnd, true);
}

bool GridWidget::ListKey(int key, Qt::KeyboardModifiers modifiers) {
    const std::int32_t row = m_grid.Row();
    std::int32_t target = 0;
    switch (key) {
        case Qt::Key_Up:
            target = RowFrom(row, -1, Step::One);
            break;
        case Qt::Key_Down:
            target = RowFrom(row, 1, Step::One);
            break;
        case Qt::Key_PageUp:
            target = RowFrom(row, -1, Step::Page);
            break;
        case Qt::Key_PageDown:
            target = RowFrom(row, 1, Step::Page);
            break;
        case Qt::Key_Home:
            target = RowFrom(std::max(row, 1), -1, Step::End);
            break;
        case Qt::Key_End:
            target = RowFrom(std::max(row, 1), 1, Step::End);
            break;
        case Qt::Key_Space:
            if (row > 0 && !m_grid.RowHidden(row)) {
                ListPick(row, false);
            }
            return true;
        case Qt::Key_A:
            if (modifiers.testFlag(Qt::ControlModifier)) {
                for (const std::int32_t shown : m_grid.VisibleRows()) {
                    m_grid.SetIsSelected(shown, true);
                }
                return true;
            }
            return false;
        default:
            return false;
    }
    if (target > 0) {
        if (modifiers.testFlag(Qt::ShiftModifier) && m_listAnchor < 1) {
            m_listAnchor = std::max(row, target);
            m_listEnd = m_listAnchor;
        }
        m_grid.Select(target, 0);
        if (modifiers.testFlag(Qt::ShiftModifier)) {
            ListRange(target);
        } else {
            m_listAnchor = target;
            m_listEnd = target;
        }
        ShowCell(target, 0);
    }
    return true;
}

}  // namespace kd
