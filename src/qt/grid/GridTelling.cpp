#include "qt/grid/GridTelling.h"

#include <QAccessible>
#include <QWidget>

namespace kd {

void GridTelling::CurrentCell() {
    if (!QAccessible::isActive()) {
        return;  // the toolkit makes the cell's object before it asks whether anybody listens
    }
    QAccessibleEvent selection(&m_widget, QAccessible::Selection);
    QAccessible::updateAccessibility(&selection);
    if (m_widget.hasFocus() && m_grid.Row() > 0) {
        QAccessibleEvent focus(&m_widget, QAccessible::Focus);
        focus.setChild(m_grid.Row() * m_grid.Cols() + m_grid.Col());
        QAccessible::updateAccessibility(&focus);
    }
}

void GridTelling::Table() {
    if (m_rows == m_grid.Rows() && m_cols == m_grid.Cols()) {
        return;
    }
    m_rows = m_grid.Rows();
    m_cols = m_grid.Cols();
    QAccessibleTableModelChangeEvent reset(&m_widget, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&reset);
}

}  // namespace kd
