#pragma once

#include "platform/VSFlexGrid.h"

class QWidget;

namespace kd {

/// What screen readers are told when a grid changes; they ask the grid's accessible side for the rest. Widget
/// and grid outlive it.
class GridTelling {
public:
    GridTelling(QWidget& widget, const VSFlexGrid& grid) : m_widget(widget), m_grid(grid) {}

    /// Selection or current cell changed, or the focus came.
    void CurrentCell();
    /// The table has been laid out anew: tells its size where that is another one.
    void Table();

private:
    QWidget& m_widget;
    const VSFlexGrid& m_grid;
    std::int32_t m_rows = 0;  // size of the table that screen readers know
    std::int32_t m_cols = 0;
};

}  // namespace kd
