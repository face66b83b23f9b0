#pragma once

#include <cstdint>

namespace kd {

/// The screen side of a grid: draws the state and answers what only a screen knows. The calls tell what
/// changed; none of them may change the grid. Everything is optional, so that a test needs none of it.
class GridScreen {
public:
    virtual ~GridScreen() = default;
    /// One cell's text, colour or picture changed.
    virtual void CellChanged(std::int32_t /*row*/, std::int32_t /*screenCol*/) {}
    /// Rows, columns, hidden flags, widths or frozen columns changed, or many cells at once.
    virtual void LayoutChanged() {}
    /// Current cell, selection or selected rows changed.
    virtual void SelectionChanged() {}
    /// The cell editor was opened, its text was changed by the grid, or it was closed.
    virtual void EditorChanged() {}
    virtual void ToolTipChanged() {}
    /// Sets the widths of the columns `first` to `last` by their content, all rows counted, hidden ones too.
    virtual void AutoSize(std::int32_t /*first*/, std::int32_t /*last*/) {}
    /// Scrolls a cell into sight; a hidden row's cell scrolls to the next visible row.
    virtual void ShowCell(std::int32_t /*row*/, std::int32_t /*screenCol*/) {}
    /// Scrolls so that `row` is the first one below the header.
    virtual void SetTopRow(std::int32_t /*row*/) {}
    /// Of the current cell, in pixels from the grid's left top corner.
    virtual std::int32_t CellLeft() const { return 0; }
    virtual std::int32_t CellTop() const { return 0; }
    virtual std::int32_t CellHeight() const { return 0; }
};

}  // namespace kd
