#include "qt/grid/GridEditing.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <cmath>

#include "platform/CellMoves.h"
#include "qt/grid/CellEditor.h"
#include "qt/grid/GridMetrics.h"
#include "qt/services/KeyCodes.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

Qt::Alignment AcrossOf(CellAlignment alignment) {
    return alignment == caRightCenter    ? Qt::AlignRight
           : alignment == caCenterCenter ? Qt::AlignHCenter
                                         : Qt::AlignLeft;
}

/// Focus that goes to another window, a menu or a pop-up comes back by itself.
bool ComesBack(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

}  // namespace

GridEditing::GridEditing(const GridParts& parts, const GridPainter& painter)
    : m_parts(parts), m_painter(painter), m_editor(new CellEditor(parts.area.viewport())) {
    m_editor->installEventFilter(this);
    m_editor->hide();
    connect(m_editor, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_parts.grid.SetEditText(FromQt(text));
        Arrange();
    });
}

void GridEditing::Changed() {
    if (m_parts.grid.EditWindow()) {
        Show();
    } else {
        Close();
    }
}

void GridEditing::Show() {
    const QString text = ToQt(m_parts.grid.EditText());
    if (m_editor->text() != text) {
        // What was typed may come back with other characters: the cursor keeps its distance from the end.
        const auto behind = m_editor->text().size() - m_editor->cursorPosition();
        m_editor->setText(text);
        m_editor->setCursorPosition(static_cast<int>(std::max<qsizetype>(text.size() - behind, 0)));
    }
    if (m_editor->isHidden()) {
        Open();
    }
    Arrange();
}

void GridEditing::Open() {
    const std::int32_t col = m_parts.grid.Col();
    m_editor->setFont(m_parts.scroll.Widths().Font());
    m_editor->setAlignment(AcrossOf(m_parts.grid.ColAlignment(col)) | Qt::AlignVCenter);
    m_editor->setAccessibleName(ShownText(m_parts.grid.TextMatrix(0, col)));
    Colour();
    m_editor->show();
    m_editor->setFocus();
    m_editor->selectAll();
}

void GridEditing::Replace(const QString& text) {
    m_parts.grid.SetEditText(FromQt(text));
    Show();
    m_editor->end(false);
}

void GridEditing::Send(QEvent& event) {
    QCoreApplication::sendEvent(m_editor, &event);
}

void GridEditing::Close() {
    if (m_parts.area.window()->focusWidget() == m_editor) {
        m_parts.area.setFocus();
    }
    m_editor->hide();
    m_editor->setText({});  // which leaves nothing to undo, as clearing would
}

void GridEditing::Arrange() {
    const VSFlexGrid& grid = m_parts.grid;
    if (!grid.EditWindow()) {
        return;
    }
    const GridLayout& layout = m_parts.scroll.Layout();
    const QRect port = m_parts.area.viewport()->rect();
    // A text that is longer than its cell takes room to the right, as far as there is any.
    QRect room = layout.ClipOf(grid.Row(), grid.Col() < grid.FrozenCols());
    room.setRight(port.right());
    const double text = m_parts.scroll.Widths().Exact(grid.EditText());
    const int wanted = static_cast<int>(std::ceil(text)) + 4 * CellMargin;
    QRect place = layout.CellRect(grid.Row(), grid.Col()).adjusted(0, 0, -1, -1);
    place.setWidth(std::max(place.width(), wanted));
    place = place.intersected(room);
    if (place.isEmpty()) {
        m_editor->move(port.width(), port.height());  // out of sight: hiding it would take the focus from it
    } else {
        m_editor->setGeometry(place);
    }
}

void GridEditing::Colour() {
    if (!m_parts.grid.EditWindow()) {
        return;
    }
    QPalette colours = m_parts.area.palette();
    const auto look = m_painter.LookOf({m_parts.grid.Row(), m_parts.grid.Col()}, colours);
    colours.setColor(QPalette::Base, look.ground);
    colours.setColor(QPalette::Text, look.text);
    m_editor->setPalette(colours);
}

bool GridEditing::eventFilter(QObject* /*watched*/, QEvent* event) {
    // The types of the events say which classes they are of.
    if (event->type() == QEvent::FocusOut) {
        FocusLost(static_cast<QFocusEvent*>(event)->reason());
    }
    switch (event->type()) {
        case QEvent::KeyPress:
            return Key(*static_cast<QKeyEvent*>(event));
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
            return RightButton(*static_cast<QMouseEvent*>(event));
        default:
            return false;
    }
}

bool GridEditing::RightButton(const QMouseEvent& event) {
    if (event.button() != Qt::RightButton) {
        return false;
    }
    const QPoint corner = m_editor->mapTo(&m_parts.area, event.position().toPoint());
    const GridPointer pointer{
        {m_parts.grid.Row(), m_parts.grid.Col()}, corner.x(), corner.y(), ShiftOf(event.modifiers())};
    if (event.type() == QEvent::MouseButtonRelease) {
        m_parts.presses.Release(MouseButton::Right, pointer);
    } else {
        (void)m_parts.presses.Press(MouseButton::Right, pointer);  // nothing follows a press
    }
    return true;
}

bool GridEditing::Key(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            (void)m_parts.grid.FinishEdit();  // a refused text keeps the editor, and its message was shown
            break;
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (m_parts.grid.FinishEdit()) {
                // An arrow always has a use.
                (void)m_parts.manner.KeyPress(KeyCodeOf(event.key()), 0, m_parts.scroll.Layout().FullRows());
            }
            break;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            if (m_parts.grid.FinishEdit()) {
                (void)m_parts.manner.Tab(event.key() == Qt::Key_Tab);  // at the last cell it stays there
            }
            break;
        case Qt::Key_Escape:
            m_parts.grid.CancelEdit();
            break;
        default:
            if (!event.text().isEmpty()) {
                // Typing into a cell that was scrolled away.
                m_parts.scroll.ShowCell(m_parts.grid.Row(), m_parts.grid.Col());
            }
            return false;
    }
    return true;
}

void GridEditing::FocusLost(Qt::FocusReason reason) {
    if (!ComesBack(reason)) {
        // Not at once: a press on the grid still has to find the editor open.
        QMetaObject::invokeMethod(
            this, [this] { FinishAfterFocusLoss(); }, Qt::QueuedConnection);
    }
}

void GridEditing::FinishAfterFocusLoss() {
    if (m_parts.area.window()->focusWidget() == m_editor) {
        return;  // it has come back
    }
    if (!m_parts.grid.FinishEdit() && m_parts.grid.EditWindow()) {
        m_editor->setFocus();
    }
}

bool GridEditing::TakeFocus() {
    if (!m_parts.grid.EditWindow()) {
        return false;
    }
    m_editor->setFocus();
    return true;
}

}  // namespace kd
