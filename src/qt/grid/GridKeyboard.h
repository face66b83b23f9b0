#pragma once

#include <QPoint>
#include <optional>

#include "qt/grid/ColumnDividers.h"
#include "qt/grid/GridEditing.h"

class QInputMethodEvent;
class QKeyEvent;

namespace kd {

/// The keyboard side of a grid's widget: hands keys to the grid's KeyDown and to its manner, opens the editor
/// for what is typed, and does with header, cell and divider what others do with the mouse.
class GridKeyboard {
public:
    GridKeyboard(const GridParts& parts, GridEditing& editing, ColumnDividers& dividers)
        : m_parts(parts), m_editing(editing), m_dividers(dividers) {}
    GridKeyboard(const GridKeyboard&) = delete;
    GridKeyboard& operator=(const GridKeyboard&) = delete;

    /// Returns whether the key has a use in the grid.
    bool Press(QKeyEvent& event);
    /// Tab goes from cell to cell; behind the last and before the first one it leaves the grid: then false.
    bool Tab(bool forward);
    void Compose(QInputMethodEvent& event);
    /// The menu key: the right button pressed and released in the middle of the current cell.
    void MenuKey();
    /// Where a pop-up menu belongs, in screen coordinates: at the pointer, or below the current cell while
    /// the menu key is at work.
    QPoint MenuPlace() const;

private:
    bool GridKey(const QKeyEvent& event);
    bool WidgetKey(const QKeyEvent& event);
    bool ColumnKey(int key);
    bool Type(const QKeyEvent& event);
    void OpenMenu();
    void PressHeader();
    void Click(MouseButton button, GridCell cell, const QRect& place);

    GridParts m_parts;
    GridEditing& m_editing;
    ColumnDividers& m_dividers;
    std::optional<QPoint> m_menuPlace;  // while the menu key is at work
};

}  // namespace kd
