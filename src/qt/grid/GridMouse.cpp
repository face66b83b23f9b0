#include "qt/grid/GridMouse.h"

#include <QApplication>
#include <QCursor>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

#include "qt/services/KeyCodes.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// A longer tool tip would cover the screen.
constexpr qsizetype ToolTipLength = 1000;
/// Milliseconds from one step to the next while a drag scrolls on by itself.
constexpr int DragScrollPace = 50;

std::optional<MouseButton> ButtonOf(const QMouseEvent& event) {
    switch (event.button()) {
        case Qt::LeftButton:
            return MouseButton::Left;
        case Qt::RightButton:
            return MouseButton::Right;
        case Qt::MiddleButton:
            return MouseButton::Middle;
        default:
            return std::nullopt;
    }
}

}  // namespace

bool GridMouse::Take(QEvent& event) {
    if (event.type() == QEvent::Leave) {
        m_parts.grid.SetMouseCell(-1, -1);
    }
    // The types of the events say which classes they are of.
    switch (event.type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove:
            TakeMouse(static_cast<QMouseEvent&>(event));
            return true;
        case QEvent::Wheel:
            return ScrollSideways(static_cast<QWheelEvent&>(event));
        case QEvent::ToolTip:
            return ShowToolTip(event);
        default:
            return false;
    }
}

void GridMouse::TakeMouse(const QMouseEvent& event) {
    if (TakeDivider(event)) {
        return;
    }
    switch (event.type()) {
        case QEvent::MouseButtonPress:
            return Press(event);
        case QEvent::MouseButtonDblClick:
            return DoublePress(event);
        case QEvent::MouseButtonRelease:
            return Release(event);
        default:
            return Move(event);
    }
}

GridPointer GridMouse::PointerAt(QPoint position, Qt::KeyboardModifiers modifiers) const {
    const QPoint corner = position + m_parts.area.viewport()->pos();
    return {m_parts.scroll.Layout().CellAt(position), corner.x(), corner.y(), ShiftOf(modifiers)};
}

bool GridMouse::TakeDivider(const QMouseEvent& event) {
    const bool isLeftPress = event.type() == QEvent::MouseButtonPress && event.button() == Qt::LeftButton;
    if (isLeftPress && m_parts.presses.Dragging()) {
        m_parts.presses.Forget();  // the button was let go where nobody heard of it
    }
    if (m_parts.presses.Dragging() || !m_dividers.Take(event)) {
        return false;
    }
    if (event.type() == QEvent::MouseMove) {
        // Over no cell: the header's hint would promise what a press does not do here.
        GridPointer pointer = PointerAt(event.position().toPoint(), event.modifiers());
        pointer.cell = {};
        m_parts.presses.Move(pointer);
    }
    return true;
}

void GridMouse::Press(const QMouseEvent& event) {
    if (const auto button = ButtonOf(event)) {
        // Nothing follows a press.
        (void)m_parts.presses.Press(*button, PointerAt(event.position().toPoint(), event.modifiers()));
    }
}

void GridMouse::DoublePress(const QMouseEvent& event) {
    if (const auto button = ButtonOf(event)) {
        m_parts.presses.DoublePress(*button, PointerAt(event.position().toPoint(), event.modifiers()));
    }
}

void GridMouse::Release(const QMouseEvent& event) {
    if (const auto button = ButtonOf(event)) {
        m_parts.presses.Release(*button, PointerAt(event.position().toPoint(), event.modifiers()));
    }
    if (!m_parts.presses.Dragging()) {
        m_dragTimer.stop();
    }
}

void GridMouse::Move(const QMouseEvent& event) {
    const QPoint position = event.position().toPoint();
    const GridPointer pointer = PointerAt(position, event.modifiers());
    if (m_parts.presses.Dragging() && event.buttons().testFlag(Qt::LeftButton)) {
        DragTo(position);
    }
    m_parts.presses.Move(pointer);
}

void GridMouse::ScrollTowards(QPoint position) {
    const auto step = [](QScrollBar* bar, int direction) {
        bar->setValue(bar->value() + direction * bar->singleStep());
    };
    const QAbstractScrollArea& area = m_parts.area;
    if (position.y() < m_parts.scroll.Layout().GetSizes().headerHeight) {
        step(area.verticalScrollBar(), -1);
    } else if (position.y() >= area.viewport()->height()) {
        step(area.verticalScrollBar(), 1);
    }
    if (position.x() < 0) {
        step(area.horizontalScrollBar(), -1);
    } else if (position.x() >= area.viewport()->width()) {
        step(area.horizontalScrollBar(), 1);
    }
}

void GridMouse::DragTo(QPoint position) {
    const GridLayout& layout = m_parts.scroll.Layout();
    const auto& visible = m_parts.grid.VisibleRows();
    if (visible.empty() || layout.Columns().empty()) {
        return;
    }
    const QWidget& port = *m_parts.area.viewport();
    const int header = layout.GetSizes().headerHeight;
    const QRect cells(0, header, port.width(), std::max(port.height() - header, 1));
    m_dragPosition = position;
    if (cells.contains(position)) {
        m_dragTimer.stop();
    } else {
        ScrollTowards(position);
        if (!m_dragTimer.isActive()) {
            m_dragTimer.start(DragScrollPace, this);
        }
    }
    // Beyond an edge the nearest cell in sight counts, below or beside the last one the last.
    GridCell cell = m_parts.scroll.Layout().CellAt({std::clamp(position.x(), cells.left(), cells.right()),
                                                    std::clamp(position.y(), cells.top(), cells.bottom())});
    if (cell.row < 1) {
        cell.row = visible.back();
    }
    if (cell.screenCol < 0) {
        cell.screenCol = layout.Columns().back().screenCol;
    }
    m_parts.presses.DragTo(cell);
}

void GridMouse::timerEvent(QTimerEvent* /*event*/) {
    if (m_parts.presses.Dragging() && QApplication::mouseButtons().testFlag(Qt::LeftButton)) {
        DragTo(m_dragPosition);
    } else {
        m_dragTimer.stop();
    }
}

bool GridMouse::ScrollSideways(QWheelEvent& event) {
    const QPoint angle = event.angleDelta();
    if (!event.modifiers().testFlag(Qt::ShiftModifier) || angle.x() != 0) {
        return false;
    }
    // Shift turns an ordinary wheel sideways.
    const QPoint pixels = event.pixelDelta();
    QWheelEvent sideways(event.position(), event.globalPosition(), {pixels.y(), pixels.x()},
                         {angle.y(), angle.x()}, event.buttons(),
                         event.modifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier), event.phase(),
                         event.inverted());
    QCoreApplication::sendEvent(m_parts.area.horizontalScrollBar(), &sideways);
    event.setAccepted(sideways.isAccepted());
    return true;
}

bool GridMouse::ShowToolTip(QEvent& event) {
    const QString markup = ToolTipMarkup(m_parts.grid.ToolTipText());
    if (markup.isEmpty()) {
        event.ignore();
    } else {
        QToolTip::showText(static_cast<QHelpEvent&>(event).globalPos(), markup, m_parts.area.viewport());
    }
    return true;
}

QString GridMouse::ToolTipMarkup(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    QString shown = ToQt(text);
    if (shown.size() > ToolTipLength) {
        shown.truncate(ToolTipLength);
        shown += QChar(0x2026);
    }
    return QStringLiteral("<p style=\"white-space:pre-wrap\">") + shown.toHtmlEscaped() +
           QStringLiteral("</p>");
}

void GridMouse::ToolTipChanged() {
    if (m_parts.grid.ToolTipText().empty()) {
        QToolTip::hideText();
    } else if (QToolTip::isVisible()) {
        QToolTip::showText(QCursor::pos(), ToolTipMarkup(m_parts.grid.ToolTipText()),
                           m_parts.area.viewport());
    }
}

}  // namespace kd
