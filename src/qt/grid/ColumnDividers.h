#pragma once

#include <optional>

#include "qt/grid/GridParts.h"

class QMouseEvent;

namespace kd {

/// The dividers between the columns, in the header row: a strip to each side of a column's right edge.
/// Dragging one sets the column's width, a double click fits the column to its texts; a press there is no
/// press of the header. A list's only column has none: it reaches the right edge anyway.
class ColumnDividers {
public:
    explicit ColumnDividers(const GridParts& parts) : m_parts(parts) {}
    ColumnDividers(const ColumnDividers&) = delete;
    ColumnDividers& operator=(const ColumnDividers&) = delete;

    /// A press, a second press, a move or a release on the viewport. Returns whether it belongs to a divider
    /// and to nothing else. The pointer of the viewport is that of a divider while it drags one, and while it
    /// stands over one with no button held.
    bool Take(const QMouseEvent& event);

    /// Makes the current column wider by that many characters, or narrower with less than 0.
    void Widen(int characters);
    /// Fits the current column to its texts.
    void Fit();

private:
    struct Drag {
        std::int32_t screenCol;
        int from;   // where the pointer took the divider
        int width;  // of the column at that time
    };

    std::int32_t DividerAt(QPoint position) const;
    bool Press(const QMouseEvent& event);
    bool Move(const QMouseEvent& event);
    void DragTo(int x);
    void ShowPointer(bool over);
    /// The current column, if it is shown.
    const GridLayout::Column* CurrentColumn() const;

    GridParts m_parts;
    std::optional<Drag> m_drag;
};

}  // namespace kd
