#pragma once

#include <optional>

#include "platform/GridManner.h"

namespace kd {

/// The pointer over a grid: the cell under it, its pixel from the grid's left top corner, and the Shift bits.
struct GridPointer {
    GridCell cell;
    int x;
    int y;
    int shift;
};

/// What presses, releases and moves of the pointer set off in a grid, and in which order: the grid's own
/// event first, which may cancel a press; then an open editor closes; then the manner picks the cell. Grid
/// and manner outlive it.
class GridPresses {
public:
    GridPresses(VSFlexGrid& grid, GridManner& manner) : m_grid(grid), m_manner(manner) {}
    GridPresses(const GridPresses&) = delete;
    GridPresses& operator=(const GridPresses&) = delete;

    /// Returns whether the press was left to the grid: neither cancelled nor stopped by a refused text.
    bool Press(MouseButton button, const GridPointer& pointer);
    /// A press that came soon behind another: opens the editor of the cell that it picks.
    void DoublePress(MouseButton button, const GridPointer& pointer);
    /// Follows a press that was left to the grid; another one is passed over.
    void Release(MouseButton button, const GridPointer& pointer);
    void Move(const GridPointer& pointer);
    /// Ends a press whose release was not heard of; nobody is told.
    void Forget() noexcept;

    /// Whether the left button is extending the selection.
    bool Dragging() const noexcept { return m_dragging; }
    void DragTo(GridCell cell);

private:
    void Pick(GridCell cell, bool extend);

    VSFlexGrid& m_grid;
    GridManner& m_manner;
    std::optional<MouseButton> m_pressed;  // the button whose MouseUp is due
    bool m_dragging = false;
};

}  // namespace kd
