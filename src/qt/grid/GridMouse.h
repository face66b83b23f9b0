#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>

#include "qt/grid/ColumnDividers.h"

class QMouseEvent;
class QWheelEvent;

namespace kd {

/// The mouse side of a grid's widget: turns the viewport's mouse events into presses on cells, scrolls on
/// while a drag rests beyond an edge, and shows the grid's tool tip.
class GridMouse : public QObject {
    Q_OBJECT
public:
    GridMouse(const GridParts& parts, ColumnDividers& dividers) : m_parts(parts), m_dividers(dividers) {}

    /// An event of the viewport. Returns whether that was all of it.
    bool Take(QEvent& event);
    void ToolTipChanged();

    /// What a tool tip shows of a text: rich text that looks as typed, with an ellipsis behind the first
    /// 1,000 characters. Empty for the empty text.
    static QString ToolTipMarkup(std::string_view text);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void TakeMouse(const QMouseEvent& event);
    GridPointer PointerAt(QPoint position, Qt::KeyboardModifiers modifiers) const;
    /// Returns whether the event was a divider's.
    bool TakeDivider(const QMouseEvent& event);
    void Press(const QMouseEvent& event);
    void DoublePress(const QMouseEvent& event);
    void Release(const QMouseEvent& event);
    void Move(const QMouseEvent& event);
    void DragTo(QPoint position);
    void ScrollTowards(QPoint position);
    bool ScrollSideways(QWheelEvent& event);
    bool ShowToolTip(QEvent& event);

    GridParts m_parts;
    ColumnDividers& m_dividers;
    QPoint m_dragPosition;
    QBasicTimer m_dragTimer;  // scrolls on while the pointer rests beyond an edge
};

}  // namespace kd
