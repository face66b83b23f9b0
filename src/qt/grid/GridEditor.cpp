#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <cmath>

#include "qt/grid/CellEditor.h"
#include "qt/grid/GridMetrics.h"
#include "qt/grid/GridWidget.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// Where the editor waits while its cell is scrolled out of sight: hiding it would take the focus from it.
constexpr int OutOfSight = -100000;

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

bool GridWidget::OpenEditor() {
    const std::int32_t row = m_grid.Row();
    const std::int32_t col = m_grid.Col();
    if (m_manner == Manner::ListBox || row < 1 || row >= m_grid.Rows() || col >= m_grid.Cols() ||
        m_grid.RowHidden(row) || m_grid.ColHidden(col)) {
        return false;
    }
    ShowCell(row, col);
    if (!m_grid.StartEdit()) {
        return false;
    }
    m_editor->selectAll();
    return true;
}

void GridWidget::EditorChanged() {
    if (m_grid.EditWindow()) {
        ShowEditor();
    } else {
        CloseEditor();
    }
}

void GridWidget::ShowEditor() {
    const QString text = ToQt(m_grid.EditText());
    if (m_editor->text() != text) {
        // What was typed may come back with other characters: the cursor keeps its distance from the end.
        const auto behind = m_editor->text().size() - m_editor->cursorPosition();
        m_editor->setText(text);
        m_editor->setCursorPosition(static_cast<int>(std::max<qsizetype>(text.size() - behind, 0)));
    }
    if (m_editor->isHidden()) {
        const std::int32_t col = m_grid.Col();
        m_editor->setFont(m_widths.Font());
        m_editor->setAlignment(AcrossOf(m_grid.ColAlignment(col)) | Qt::AlignVCenter);
        m_editor->setAccessibleName(ShownText(m_grid.TextMatrix(0, col)));
        ColourEditor();
        PlaceEditor();
        m_editor->show();
        m_editor->setFocus();
    }
    PlaceEditor();
}

void GridWidget::CloseEditor() {
    if (m_editor->isHidden()) {
        return;
    }
    const bool focused = window()->focusWidget() == m_editor;
    if (focused) {
        setFocus();
    }
    m_editor->hide();
    m_editor->clear();
}

void GridWidget::PlaceEditor() {
    if (!m_grid.EditWindow()) {
        return;
    }
    const GridLayout& layout = Layout();
    const GridLayout::Column* column = layout.Find(m_grid.Col());
    const QRect cell = layout.CellRect(m_grid.Row(), m_grid.Col());
    if (column == nullptr || cell.isEmpty()) {
        m_editor->move(OutOfSight, OutOfSight);
        return;
    }
    // A text that is longer than its cell takes room to the right, as far as there is any.
    const QRect clip = layout.ClipOf(m_grid.Row(), column->frozen);
    const int right = column->frozen ? viewport()->width() : clip.right() + 1;
    const int wanted = static_cast<int>(std::ceil(m_widths.Exact(m_grid.EditText()))) + 4 * CellMargin;
    QRect place = cell.adjusted(0, 0, -1, -1);
    place.setWidth(std::max(place.width(), std::min(wanted, right - place.left())));
    QRect room = clip;
    room.setRight(right - 1);
    place = place.intersected(room);
    if (place.isEmpty()) {
        m_editor->move(OutOfSight, OutOfSight);
    } else {
        m_editor->setGeometry(place);
    }
}

void GridWidget::ColourEditor() {
    if (!m_grid.EditWindow()) {
        return;
    }
    const CellLook look = LookOf(m_grid.Row(), m_grid.Col());
    QPalette colours = palette();
    colours.setColor(QPalette::Base, look.ground);
    colours.setColor(QPalette::Text, look.text);
    m_editor->setPalette(colours);
}

bool GridWidget::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_editor) {
        return QAbstractScrollArea::eventFilter(watched, event);
    }
    switch (event->type()) {
        case QEvent::KeyPress: {
            bool taken = true;
            AtEdge([&] { taken = EditorKey(*static_cast<QKeyEvent*>(event)); });  // the type says so
            return taken;
        }
        case QEvent::FocusOut:
            if (m_grid.EditWindow() && !ComesBack(static_cast<QFocusEvent*>(event)->reason())) {
                // Not at once: a press on the grid still has to find the editor open.
                QMetaObject::invokeMethod(
                    this, [this] { AtEdge([this] { FinishAfterFocusLoss(); }); }, Qt::QueuedConnection);
            }
            break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease: {
            bool taken = true;
            AtEdge([&] { taken = EditorMouse(*static_cast<QMouseEvent*>(event)); });
            return taken;
        }
        default:
            break;
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

bool GridWidget::EditorMouse(const QMouseEvent& event) {
    if (event.button() != Qt::RightButton) {
        return false;
    }
    const QPoint position = m_editor->mapTo(viewport(), event.position().toPoint());
    const CellPlace place{m_grid.Row(), m_grid.Col()};
    if (event.type() == QEvent::MouseButtonRelease) {
        Release(MouseButton::Right, event.modifiers(), position, place);
    } else {
        (void)Press(MouseButton::Right, event.modifiers(), position, place);  // nothing follows a press
    }
    return true;
}

bool GridWidget::EditorKey(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            (void)m_grid.FinishEdit();  // a refused text keeps the editor, and its message was shown
            return true;
        case Qt::Key_Escape:
            m_grid.CancelEdit();
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (m_grid.FinishEdit()) {
                MoveRows(event.key() == Qt::Key_Up ? -1 : 1, Step::One, false);
            }
            return true;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            if (m_grid.FinishEdit()) {
                (void)MoveOn(event.key() == Qt::Key_Tab);  // at the last cell it stays there
            }
            return true;
        default:
            if (!event.text().isEmpty()) {
                ShowCell(m_grid.Row(), m_grid.Col());  // typing into a cell that was scrolled away
            }
            return false;
    }
}

void GridWidget::FinishAfterFocusLoss() {
    if (!m_grid.EditWindow() || window()->focusWidget() == m_editor) {
        return;
    }
    if (!m_grid.FinishEdit() && m_grid.EditWindow()) {
        m_editor->setFocus();
    }
}

void GridWidget::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    if (m_grid.EditWindow() && !m_editor->isHidden()) {
        m_editor->setFocus();
    } else {
        TellCurrentCell();
    }
    viewport()->update();
}

void GridWidget::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

}  // namespace kd
