#pragma once

#include "platform/VSFlexGrid.h"

namespace kd {

/// Keeps the grid from repainting until the end of the scope, so that a command over many cells costs one
/// repaint.
class RedrawOff {
public:
    explicit RedrawOff(VSFlexGrid& grid) : m_grid(grid), m_before(grid.Redraw()) { m_grid.SetRedraw(false); }
    ~RedrawOff() { m_grid.SetRedraw(m_before); }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

private:
    VSFlexGrid& m_grid;
    bool m_before;
};

}  // namespace kd
