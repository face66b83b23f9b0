#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

#include "base/Scope.h"
#include "qt/grid/GridWidget.h"
#include "qt/services/KeyCodes.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// A longer tool tip would cover the screen.
constexpr qsizetype ToolTipLength = 1000;
/// Milliseconds from one step to the next while a drag scrolls on by itself.
constexpr int DragScrollPace = 50;

std::optional<MouseButton> ButtonOf(Qt::MouseButton button) {
    switch (button) {
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

GridWidget::CellPlace GridWidget::PlaceAt(QPoint position) const {
    return {Layout().RowAt(position.y()), Layout().ColAt(position.x())};
}

QPoint GridWidget::FromCorner(QPoint position) const {
    return position + viewport()->pos();
}

bool GridWidget::Press(MouseButton button, Qt::KeyboardModifiers modifiers, QPoint position,
                       CellPlace place) {
    m_pressed.reset();
    m_dragging = false;
    const int shift = ShiftOf(modifiers);
    const QPoint corner = FromCorner(position);
    m_grid.SetMouseCell(place.row, place.screenCol);
    bool cancel = false;
    if (m_grid.BeforeMouseDown) {
        m_grid.BeforeMouseDown(button, shift, corner.x(), corner.y(), cancel);
    }
    if (cancel) {
        return false;
    }
    if (button == MouseButton::Left) {
        if (!m_grid.FinishEdit()) {
            return false;
        }
        if (place.row > 0 && place.screenCol >= 0) {
            PickCell(place, modifiers.testFlag(Qt::ShiftModifier));
        }
    }
    m_pressed = button;
    if (m_grid.MouseDown) {
        m_grid.MouseDown(button, shift, corner.x(), corner.y());
    }
    return true;
}

void GridWidget::PickCell(CellPlace place, bool extend) {
    if (place.row >= m_grid.Rows() || place.screenCol >= m_grid.Cols()) {
        return;  // what the finished edit set off took the cell away
    }
    if (m_manner == Manner::ListBox) {
        ListPick(place.row, extend);
        return;
    }
    if (extend && m_grid.Row() > 0) {
        m_grid.ExtendSelection(place.row, place.screenCol);
    } else {
        m_grid.Select(place.row, place.screenCol);
    }
    m_dragging = true;
}

void GridWidget::Release(MouseButton button, Qt::KeyboardModifiers modifiers, QPoint position,
                         CellPlace place) {
    if (m_pressed != button) {
        return;
    }
    m_pressed.reset();
    m_dragging = false;
    m_dragTimer.stop();
    m_grid.SetMouseCell(place.row, place.screenCol);
    if (m_grid.MouseUp) {
        const QPoint corner = FromCorner(position);
        m_grid.MouseUp(button, ShiftOf(modifiers), corner.x(), corner.y());
    }
}

void GridWidget::mousePressEvent(QMouseEvent* event) {
    const auto button = ButtonOf(event->button());
    if (button) {
        const QPoint position = event->position().toPoint();
        AtEdge([&] { (void)Press(*button, event->modifiers(), position, PlaceAt(position)); });
    }
}

void GridWidget::mouseReleaseEvent(QMouseEvent* event) {
    const auto button = ButtonOf(event->button());
    if (button) {
        const QPoint position = event->position().toPoint();
        AtEdge([&] { Release(*button, event->modifiers(), position, PlaceAt(position)); });
    }
}

void GridWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    const auto button = ButtonOf(event->button());
    if (!button) {
        return;
    }
    const QPoint position = event->position().toPoint();
    AtEdge([&] {
        const CellPlace place = PlaceAt(position);
        // m_dragging tells that the press picked the cell.
        if (Press(*button, event->modifiers(), position, place) && m_dragging && m_grid.Row() == place.row &&
            m_grid.Col() == place.screenCol) {
            m_dragging = !OpenEditor();
        }
    });
}

void GridWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    AtEdge([&] {
        const CellPlace place = PlaceAt(position);
        if (m_dragging && event->buttons().testFlag(Qt::LeftButton)) {
            DragTo(position);
        }
        m_grid.SetMouseCell(place.row, place.screenCol);
        if (m_grid.MouseMove) {
            const QPoint corner = FromCorner(position);
            // The button of a move is the one that is down; the left one stands for none.
            const auto button = m_pressed.value_or(MouseButton::Left);
            m_grid.MouseMove(button, ShiftOf(event->modifiers()), corner.x(), corner.y());
        }
    });
}

void GridWidget::ScrollTowards(QPoint position) {
    const auto step = [](QScrollBar* bar, int direction) {
        bar->setValue(bar->value() + direction * bar->singleStep());
    };
    if (position.y() < Layout().GetSizes().headerHeight) {
        step(verticalScrollBar(), -1);
    } else if (position.y() >= viewport()->height()) {
        step(verticalScrollBar(), 1);
    }
    if (position.x() < 0) {
        step(horizontalScrollBar(), -1);
    } else if (position.x() >= viewport()->width()) {
        step(horizontalScrollBar(), 1);
    }
}

void GridWidget::DragTo(QPoint position) {
    const GridLayout& layout = Layout();
    const auto& visible = m_grid.VisibleRows();
    if (visible.empty() || layout.Columns().empty()) {
        return;
    }
    const int header = layout.GetSizes().headerHeight;
    const QRect cells(0, header, viewport()->width(), std::max(viewport()->height() - header, 1));
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
    const int x = std::clamp(position.x(), cells.left(), cells.right());
    const int y = std::clamp(position.y(), cells.top(), cells.bottom());
    CellPlace place = PlaceAt({x, y});
    if (place.row < 1) {
        place.row = visible.back();
    }
    if (place.screenCol < 0) {
        place.screenCol = layout.Columns().back().screenCol;
    }
    if (place.row != m_grid.EndRow() || place.screenCol != m_grid.EndCol()) {
        m_grid.ExtendSelection(place.row, place.screenCol);
    }
}

void GridWidget::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_dragTimer.timerId()) {
        QAbstractScrollArea::timerEvent(event);
        return;
    }
    if (m_dragging && QApplication::mouseButtons().testFlag(Qt::LeftButton)) {
        AtEdge([this] { DragTo(m_dragPosition); });
    } else {
        m_dragTimer.stop();
    }
}

void GridWidget::wheelEvent(QWheelEvent* event) {
    const QPoint angle = event->angleDelta();
    if (!event->modifiers().testFlag(Qt::ShiftModifier) || angle.x() != 0) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    // Shift turns an ordinary wheel sideways.
    const QPoint pixels = event->pixelDelta();
    QWheelEvent sideways(event->position(), event->globalPosition(), {pixels.y(), pixels.x()},
                         {angle.y(), angle.x()}, event->buttons(),
                         event->modifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier), event->phase(),
                         event->inverted());
    QCoreApplication::sendEvent(horizontalScrollBar(), &sideways);
    event->setAccepted(sideways.isAccepted());
}

void GridWidget::contextMenuEvent(QContextMenuEvent* event) {
    // A menu asked for by mouse comes with the mouse events; this is the menu key alone.
    if (event->reason() != QContextMenuEvent::Mouse) {
        AtEdge([this] { KeyboardMenu(); });
    }
    event->accept();
}

void GridWidget::KeyboardMenu() {
    const CellPlace place{m_grid.Row(), m_grid.Col()};
    if (place.row < 1) {
        return;
    }
    ShowCell(place.row, place.screenCol);
    const QRect cell = Layout().ShownRect(place.row, place.screenCol);
    if (cell.isEmpty()) {
        return;
    }
    m_keyboardMenuPlace = viewport()->mapToGlobal(cell.bottomLeft());
    const Scope pointerAgain([this] { m_keyboardMenuPlace.reset(); });
    if (Press(MouseButton::Right, Qt::NoModifier, cell.center(), place)) {
        Release(MouseButton::Right, Qt::NoModifier, cell.center(), place);
    }
}

void GridWidget::KeyboardHeaderPress() {
    const CellPlace place{0, m_grid.VisibleColFrom(m_grid.Col(), 1)};
    ShowCell(place.row, place.screenCol);
    const QRect header = Layout().ShownRect(0, place.screenCol);
    if (!header.isEmpty() && Press(MouseButton::Left, Qt::NoModifier, header.center(), place)) {
        Release(MouseButton::Left, Qt::NoModifier, header.center(), place);
    }
}

QPoint GridWidget::MenuPlace() const {
    return m_keyboardMenuPlace.value_or(QCursor::pos());
}

bool GridWidget::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);  // the type says so
        const QString markup = ToolTipMarkup(m_grid.ToolTipText());
        if (markup.isEmpty()) {
            QToolTip::hideText();
            event->ignore();
        } else {
            QToolTip::showText(help->globalPos(), markup, viewport());
        }
        return true;
    }
    if (event->type() == QEvent::Leave) {
        m_grid.SetMouseCell(-1, -1);
    }
    return QAbstractScrollArea::viewportEvent(event);
}

QString GridWidget::ToolTipMarkup(std::string_view text) {
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

void GridWidget::ToolTipChanged() {
    if (m_grid.ToolTipText().empty()) {
        QToolTip::hideText();
    } else if (QToolTip::isVisible()) {
        QToolTip::showText(QCursor::pos(), ToolTipMarkup(m_grid.ToolTipText()), viewport());
    }
}

}  // namespace kd
