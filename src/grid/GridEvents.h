#pragma once

#include <functional>

#include "grid/Desk.h"
#include "platform/EventBoundary.h"

namespace kd {

/// The grid under mouse and keyboard: joins itself to the events of the desk's grid for as long as it lives.
class GridEvents {
public:
    /// No failure of a handler leaves the boundary, which by default is the toolkit's.
    explicit GridEvents(Desk& desk) : GridEvents(desk, desk.g.platform.toolkit.Boundary()) {}
    GridEvents(Desk& desk, EventBoundary& boundary);
    ~GridEvents();
    GridEvents(const GridEvents&) = delete;
    GridEvents& operator=(const GridEvents&) = delete;

    /// A header cell was pressed; nothing happens while empty.
    std::function<void(std::int32_t screenCol)> ShowColumnFilter;
    /// Tool tip of a header cell; empty text while empty.
    std::function<Text(std::int32_t screenCol)> GetFilterCaption;

    void Grid_BeforeMouseDown(MouseButton button, bool& cancel);
    void Grid_MouseDown(MouseButton button);
    void Grid_MouseUp(MouseButton button);
    void Grid_MouseMove();
    void Grid_BeforeEdit(std::int32_t row, std::int32_t screenCol, bool& cancel);
    void Grid_ValidateEdit(std::int32_t row, std::int32_t screenCol, bool& cancel);
    void Grid_AfterEdit(std::int32_t row, std::int32_t screenCol);
    void Grid_RowColChange();
    void Grid_KeyDown(int keyCode, int shift);

private:
    /// Whether the pointer is over a data cell of an editable column.
    bool OverEditableCell() const;

    Desk& m_desk;
    EventBoundary& m_boundary;
    GridCell m_lastMouseCell;
};

}  // namespace kd
