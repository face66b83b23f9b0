#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <algorithm>

#include "qt/grid/CellEditor.h"
#include "qt/grid/GridWidget.h"
#include "qt/services/KeyCodes.h"
#include "qt/services/QtText.h"

namespace kd {

void GridWidget::keyPressEvent(QKeyEvent* event) {
    if (m_grid.EditWindow()) {
        QCoreApplication::sendEvent(m_editor, event);  // typed on before the focus had moved
        return;
    }
    bool taken = true;
    AtEdge([&] { taken = GridKey(*event); });
    event->setAccepted(taken);
}

bool GridWidget::GridKey(const QKeyEvent& event) {
    const int code = KeyCodeOf(event.key());
    if (code != 0 && m_grid.KeyDown) {
        m_grid.KeyDown(code, ShiftOf(event.modifiers()));
    }
    if (m_manner == Manner::ListBox) {
        return ListKey(event.key(), event.modifiers());
    }
    return MoveKey(event.key(), event.modifiers()) || TypeKey(event);
}

bool GridWidget::MoveKey(int key, Qt::KeyboardModifiers modifiers) {
    const bool ctrl = modifiers.testFlag(Qt::ControlModifier);
    const bool extend = modifiers.testFlag(Qt::ShiftModifier);
    if (modifiers.testFlag(Qt::AltModifier)) {
        if (key == Qt::Key_Down) {
            KeyboardHeaderPress();
            return true;
        }
        return false;
    }
    const Step step = ctrl ? Step::End : Step::One;
    switch (key) {
        case Qt::Key_Up:
            MoveRows(-1, step, extend);
            return true;
        case Qt::Key_Down:
            MoveRows(1, step, extend);
            return true;
        case Qt::Key_PageUp:
            MoveRows(-1, Step::Page, extend);
            return true;
        case Qt::Key_PageDown:
            MoveRows(1, Step::Page, extend);
            return true;
        case Qt::Key_Left:
            MoveCols(-1, step, extend);
            return true;
        case Qt::Key_Right:
            MoveCols(1, step, extend);
            return true;
        case Qt::Key_Home:
        case Qt::Key_End: {
            const int direction = key == Qt::Key_Home ? -1 : 1;
            const std::int32_t row = extend ? m_grid.EndRow() : m_grid.Row();
            MoveTo(ctrl ? RowFrom(std::max(row, 1), direction, Step::End) : NearestRow(row),
                   ColFrom(m_grid.Col(), direction, Step::End), extend);
            return true;
        }
        case Qt::Key_A:
            if (ctrl && !extend) {
                SelectAllCells();
                return true;
            }
            return false;
        case Qt::Key_F10:
            if (extend) {
                KeyboardMenu();
                return true;
            }
            return false;
        case Qt::Key_F2:
            (void)OpenEditor();  // a read-only cell just stays closed
            return true;
        default:
            return false;
    }
}

std::int32_t GridWidget::RowFrom(std::int32_t row, int direction, Step step) const {
    const auto& visible = m_grid.VisibleRows();
    if (visible.empty()) {
        return 0;
    }
    if (row < 1) {
        return visible.front();  // no current cell yet, or a header's
    }
    const int last = static_cast<int>(visible.size()) - 1;
    const int index = Layout().IndexOf(row);
    const bool shown = index <= last && visible[static_cast<std::size_t>(index)] == row;
    int target = index;
    switch (step) {
        case Step::One:
            // From a hidden row the index leads to the next visible one already.
            target = direction < 0 ? index - 1 : index + (shown ? 1 : 0);
            break;
        case Step::Page:
            target = index + direction * Layout().FullRows();
            break;
        case Step::End:
            target = direction < 0 ? 0 : last;
            break;
    }
    return visible[static_cast<std::size_t>(std::clamp(target, 0, last))];
}

std::int32_t GridWidget::NearestRow(std::int32_t row) const {
    const std::int32_t next = m_grid.VisibleRowFrom(row, 1);
    return next > 0 ? next : m_grid.VisibleRowFrom(row, -1);
}

std::int32_t GridWidget::ColFrom(std::int32_t screenCol, int direction, Step step) const {
    const std::int32_t last = m_grid.Cols() - 1;
    if (step == Step::End) {
        return direction < 0 ? m_grid.VisibleColFrom(0, 1) : m_grid.VisibleColFrom(last, -1);
    }
    const std::int32_t next = m_grid.VisibleColFrom(screenCol + direction, direction);
    return next >= 0 ? next : m_grid.VisibleColFrom(screenCol, -direction);
}

void GridWidget::MoveRows(int direction, Step step, bool extend) {
    const std::int32_t row = extend ? m_grid.EndRow() : m_grid.Row();
    const std::int32_t col = extend ? m_grid.EndCol() : m_grid.Col();
    const std::int32_t shownCol = m_grid.VisibleColFrom(col, 1);
    MoveTo(RowFrom(row, direction, step), shownCol >= 0 ? shownCol : m_grid.VisibleColFrom(col, -1), extend);
}

void GridWidget::MoveCols(int direction, Step step, bool extend) {
    const std::int32_t row = extend ? m_grid.EndRow() : m_grid.Row();
    if (row < 1) {
        MoveRows(1, Step::One, false);
        return;
    }
    MoveTo(NearestRow(row), ColFrom(extend ? m_grid.EndCol() : m_grid.Col(), direction, step), extend);
}

void GridWidget::MoveTo(std::int32_t row, std::int32_t screenCol, bool extend) {
    if (row < 1 || screenCol < 0) {
        return;  // nothing is in sight
    }
    if (extend && m_grid.Row() > 0) {
        m_grid.ExtendSelection(row, screenCol);
    } else {
        m_grid.Select(row, screenCol);
    }
    ShowCell(row, screenCol);
}

bool GridWidget::MoveOn(bool forward) {
    const int direction = forward ? 1 : -1;
    std::int32_t row = m_grid.Row();
    if (row < 1) {
        const std::int32_t first = forward ? RowFrom(0, 1, Step::One) : 0;
        MoveTo(first, ColFrom(0, -1, Step::End), false);
        return first > 0 && !m_layout.Columns().empty();
    }
    std::int32_t col = m_grid.VisibleColFrom(m_grid.Col() + direction, direction);
    if (col < 0) {
        col = ColFrom(0, -direction, Step::End);
        row = m_grid.VisibleRowFrom(row + direction, direction);
    } else if (m_grid.RowHidden(row)) {
        row = m_grid.VisibleRowFrom(row, direction);
    }
    MoveTo(row, col, false);
    return row > 0 && col >= 0;
}

bool GridWidget::focusNextPrevChild(bool next) {
    // Tab walks the cells; behind the last and before the first one it leaves the grid.
    bool moved = false;
    if (m_manner == Manner::Cells && hasFocus()) {
        AtEdge([&] { moved = MoveOn(next); });
    }
    return moved || QAbstractScrollArea::focusNextPrevChild(next);
}

void GridWidget::SelectAllCells() {
    const auto& visible = m_grid.VisibleRows();
    if (!visible.empty() && !Layout().Columns().empty()) {
        m_grid.Select(visible.front(), Layout().Columns().front().screenCol);
        m_grid.ExtendSelection(visible.back(), Layout().Columns().back().screenCol);
    }
}

bool GridWidget::TypeKey(const QKeyEvent& event) {
    const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    const bool alt = event.modifiers().testFlag(Qt::AltModifier);
    // Ctrl and Alt together are the third level of many keyboards, and type.
    if (ctrl != alt || event.text().isEmpty() || !event.text().front().isPrint()) {
        return false;
    }
    if (OpenEditor()) {
        m_grid.SetEditText(FromQt(event.text()));
        ShowEditor();
        m_editor->end(false);
    }
    return true;
}

void GridWidget::inputMethodEvent(QInputMethodEvent* event) {
    bool opened = false;
    if (m_manner == Manner::Cells && !(event->commitString().isEmpty() && event->preeditString().isEmpty())) {
        AtEdge([&] { opened = OpenEditor(); });
    }
    if (opened) {
        m_editor->selectAll();
        QCoreApplication::sendEvent(m_editor, event);
    } else {
        event->ignore();
    }
}

}  // namespace kd
