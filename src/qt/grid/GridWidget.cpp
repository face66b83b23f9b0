#include "qt/grid/GridWidget.h"

#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "qt/services/QtText.h"

namespace kd {

GridWidget::GridWidget(VSFlexGrid& grid, QWidget* parent, std::unique_ptr<GridManner> manner)
    : QAbstractScrollArea(parent),
      m_grid(grid),
      m_manner(manner ? std::move(manner) : std::make_unique<CellManner>(grid)),
      m_presses(grid, *m_manner),
      m_scroll(*this, grid, *m_manner),
      m_painter(grid, *m_manner, m_scroll),
      m_dividers({*this, grid, *m_manner, m_presses, m_scroll}),
      m_mouse({*this, grid, *m_manner, m_presses, m_scroll}, m_dividers),
      m_editing({*this, grid, *m_manner, m_presses, m_scroll}, m_painter),
      m_keyboard({*this, grid, *m_manner, m_presses, m_scroll}, m_editing, m_dividers),
      m_telling(*this, grid) {
    setObjectName(ToQt(grid.Name()));
    setLayoutDirection(Qt::LeftToRight);  // screen positions count from the left in every language
    setAttribute(Qt::WA_InputMethodEnabled, !m_manner->WholeRows());
    viewport()->setMouseTracking(true);

    m_scroll.Moved = [this](bool anew) {
        m_editing.Arrange();
        viewport()->update();
        if (anew) {
            m_telling.Table();
        }
    };
    grid.SetScreen(this);
    LayoutChanged();
}

GridWidget::~GridWidget() {
    m_grid.SetScreen(nullptr);
}

void GridWidget::CellChanged(std::int32_t row, std::int32_t screenCol) {
    if (m_manner->WholeRows()) {
        LayoutChanged();  // the only column is as wide as its widest text
    }
    if (!m_scroll.Queued()) {  // or everything is painted anew
        viewport()->update(Layout().ShownRect(row, screenCol));
    }
    if (m_manner->IsCurrent({row, screenCol})) {
        m_editing.Colour();
    }
}

void GridWidget::SelectionChanged() {
    viewport()->update();
    m_telling.CurrentCell();
}

std::int32_t GridWidget::CellLeft() const {
    const GridLayout::Column* column = Layout().Find(m_grid.Col());
    const int edge = column == nullptr || column->frozen ? 0 : Layout().FrozenWidth();
    return viewport()->x() + std::max(Layout().CellRect(m_grid.Row(), m_grid.Col()).left(), edge);
}

std::int32_t GridWidget::CellTop() const {
    return viewport()->y() + Layout().CellRect(m_grid.Row(), m_grid.Col()).top();
}

std::int32_t GridWidget::CellHeight() const {
    return Layout().CellRect(m_grid.Row(), m_grid.Col()).height();
}

bool GridWidget::event(QEvent* event) {
    if (event->type() == QEvent::ContextMenu) {
        // A menu asked for by mouse comes with the mouse events; this is the menu key alone.
        if (static_cast<QContextMenuEvent*>(event)->reason() != QContextMenuEvent::Mouse) {
            m_keyboard.MenuKey();
        }
        return true;
    }
    const bool done = QAbstractScrollArea::event(event);
    switch (event->type()) {
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            FocusChanged(event->type() == QEvent::FocusIn);
            break;
        case QEvent::FontChange:
        case QEvent::StyleChange:
        case QEvent::ScreenChangeInternal:  // another screen may round the widths of characters otherwise
            m_scroll.MeasureAnew();
            break;
        case QEvent::PaletteChange:
            m_editing.Colour();
            break;
        default:
            break;
    }
    return done;
}

void GridWidget::FocusChanged(bool gained) {
    if (gained && !m_editing.TakeFocus()) {
        m_telling.CurrentCell();
    }
    viewport()->update();
}

bool GridWidget::viewportEvent(QEvent* event) {
    return m_mouse.Take(*event) || QAbstractScrollArea::viewportEvent(event);
}

void GridWidget::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    m_painter.Paint(painter, event->rect(), palette(), hasFocus());
}

void GridWidget::resizeEvent(QResizeEvent* /*event*/) {
    m_scroll.Resized();
}

void GridWidget::scrollContentsBy(int /*dx*/, int /*dy*/) {
    m_scroll.Scrolled();
}

void GridWidget::keyPressEvent(QKeyEvent* event) {
    event->setAccepted(m_keyboard.Press(*event));
}

void GridWidget::inputMethodEvent(QInputMethodEvent* event) {
    m_keyboard.Compose(*event);
}

bool GridWidget::focusNextPrevChild(bool next) {
    return m_keyboard.Tab(next) || QAbstractScrollArea::focusNextPrevChild(next);
}

}  // namespace kd
