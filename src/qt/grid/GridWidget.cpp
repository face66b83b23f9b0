#include "qt/grid/GridWidget.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "qt/grid/CellEditor.h"
#include "qt/grid/Funnel.h"
#include "qt/grid/GridAccessible.h"
#include "qt/grid/GridMetrics.h"
#include "qt/services/EventEdge.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// A few windows full.
constexpr int MostShapedTexts = 4000;

}  // namespace

GridWidget::GridWidget(VSFlexGrid& grid, QWidget* parent, Manner manner)
    : QAbstractScrollArea(parent),
      m_grid(grid),
      m_manner(manner),
      m_layout(grid),
      m_editor(new CellEditor(viewport())) {
    InstallGridAccessibility();
    setObjectName(ToQt(grid.Name()));
    setFocusPolicy(Qt::StrongFocus);
    setLayoutDirection(Qt::LeftToRight);  // screen positions count from the left in every language
    setAttribute(Qt::WA_InputMethodEnabled, manner == Manner::Cells);
    viewport()->setMouseTracking(true);

    m_editor->installEventFilter(this);
    m_editor->hide();
    connect(m_editor, &QLineEdit::textEdited, this, [this](const QString& text) {
        AtEdge([&] { m_grid.SetEditText(FromQt(text)); });
        PlaceEditor();
    });

    m_shaped.setMaxCost(MostShapedTexts);
    MeasureFont();
    grid.SetScreen(this);
    LayoutChanged();
}

GridWidget::~GridWidget() {
    m_editor->removeEventFilter(this);
    m_grid.SetScreen(nullptr);
}

void GridWidget::AtEdge(const std::function<void()>& handler) {
    if (m_edge != nullptr) {
        (void)m_edge->Run(handler);  // a failure was shown; there is nothing left to do
    } else {
        handler();
    }
}

const GridLayout& GridWidget::Layout() const {
    if (m_layoutStale) {
        BuildLayout();
    }
    return m_layout;
}

void GridWidget::MeasureFont() {
    m_widths.SetFont(font(), viewport());
    m_shaped.clear();
    const QFontMetricsF& metrics = m_widths.Metrics();
    GridLayout::Sizes sizes;
    sizes.rowHeight = static_cast<int>(std::ceil(metrics.height())) + RowMargin;
    sizes.headerHeight = std::max(sizes.rowHeight + HeaderExtra, FunnelSize + 4);
    sizes.defaultColWidth = static_cast<int>(std::ceil(metrics.averageCharWidth() * 10));
    m_layout.SetSizes(sizes);
    m_layoutStale = true;
}

void GridWidget::BuildLayout() const {
    const bool list = m_manner == Manner::ListBox;
    m_layout.Build(viewport()->size(), list, list ? ListWidth() : 0);
    m_layout.SetScroll(verticalScrollBar()->value(), horizontalScrollBar()->value());
    m_layoutStale = false;
}

int GridWidget::ListWidth() const {
    return m_grid.Cols() == 0 ? 0 : ColumnWidths(m_grid.Cols() - 1, m_grid.Cols() - 1).front();
}

void GridWidget::QueueRelayout() {
    if (!m_relayoutQueued) {
        m_relayoutQueued = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_relayoutQueued) {
                    Relayout();
                }
            },
            Qt::QueuedConnection);
    }
}

void GridWidget::Relayout() {
    m_relayoutQueued = false;
    if (m_relayouting) {
        return;
    }
    m_relayouting = true;
    BuildLayout();
    // A scroll bar that comes or goes changes the viewport; the second pass then fits.
    for (int pass = 0; pass < 3; ++pass) {
        const QSize before = viewport()->size();
        SetScrollBars(before);
        BuildLayout();
        if (viewport()->size() == before) {
            break;
        }
    }
    m_relayouting = false;
    const auto& visible = m_grid.VisibleRows();
    const auto top = static_cast<std::size_t>(verticalScrollBar()->value());
    m_topRow = top < visible.size() ? visible[top] : 0;
    PlaceEditor();
    viewport()->update();
    if (m_toldRows != m_grid.Rows() || m_toldCols != m_grid.Cols()) {
        m_toldRows = m_grid.Rows();
        m_toldCols = m_grid.Cols();
        TellNewTable();
    }
}

void GridWidget::SetScrollBars(QSize size) {
    const int rows = static_cast<int>(m_grid.VisibleRows().size());
    const GridLayout::Sizes& sizes = m_layout.GetSizes();
    const QSize whole = maximumViewportSize();
    if (rows * sizes.rowHeight + sizes.headerHeight <= whole.height() &&
        m_layout.TotalWidth() <= whole.width()) {
        size = whole;
    }
    const int fullRows = m_layout.FullRowsIn(size.height());
    verticalScrollBar()->setRange(0, std::max(rows - fullRows, 0));
    verticalScrollBar()->setPageStep(fullRows);
    verticalScrollBar()->setSingleStep(1);
    verticalScrollBar()->setValue(m_layout.IndexOf(m_topRow));
    horizontalScrollBar()->setRange(0, std::max(m_layout.TotalWidth() - size.width(), 0));
    horizontalScrollBar()->setPageStep(std::max(size.width() - m_layout.FrozenWidth(), 1));
    horizontalScrollBar()->setSingleStep(sizes.defaultColWidth / 2);
}

void GridWidget::scrollContentsBy(int /*dx*/, int /*dy*/) {
    m_layout.SetScroll(verticalScrollBar()->value(), horizontalScrollBar()->value());
    if (m_relayouting) {
        return;
    }
    const auto& visible = m_grid.VisibleRows();
    const auto top = static_cast<std::size_t>(verticalScrollBar()->value());
    m_topRow = top < visible.size() ? visible[top] : 0;
    PlaceEditor();
    viewport()->update();
}

void GridWidget::resizeEvent(QResizeEvent* /*event*/) {
    m_layoutStale = true;
    Relayout();
}

void GridWidget::MeasureAnew() {
    MeasureFont();
    if (m_sizedFirst <= m_sizedLast && m_sizedLast < m_grid.Cols()) {
        AutoSize(m_sizedFirst, m_sizedLast);
    }
    QueueRelayout();
}

bool GridWidget::event(QEvent* event) {
    const bool done = QAbstractScrollArea::event(event);
    if (event->type() == QEvent::ScreenChangeInternal) {
        MeasureAnew();  // another screen may round the widths of characters otherwise
    }
    return done;
}

void GridWidget::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        MeasureAnew();
    } else if (event->type() == QEvent::PaletteChange) {
        ColourEditor();
        viewport()->update();
    }
}

void GridWidget::CellChanged(std::int32_t row, std::int32_t screenCol) {
    if (m_manner == Manner::ListBox) {
        LayoutChanged();  // the only column is as wide as its widest text
        return;
    }
    if (m_relayoutQueued) {
        return;  // everything is painted anew
    }
    const GridLayout& layout = Layout();
    const auto& visible = m_grid.VisibleRows();
    const auto top = static_cast<std::size_t>(layout.TopIndex());
    const auto behind = top + static_cast<std::size_t>(layout.ShownRows());
    if (row > 0 && (top >= visible.size() || row < visible[top] ||
                    (behind < visible.size() && row >= visible[behind]))) {
        return;
    }
    viewport()->update(layout.ShownRect(row, screenCol));
    if (IsCurrent(row, screenCol)) {
        ColourEditor();
    }
}

void GridWidget::LayoutChanged() {
    m_layoutStale = true;
    if (m_grid.Rows() <= 1) {
        m_topRow = 0;  // new rows begin at the top
    }
    QueueRelayout();
}

void GridWidget::SelectionChanged() {
    viewport()->update();
    TellCurrentCell();
}

std::vector<int> GridWidget::ColumnWidths(std::int32_t first, std::int32_t last) const {
    std::vector<double> widest(static_cast<std::size_t>(last - first + 1), 0.0);
    for (std::int32_t row = 0; row < m_grid.Rows(); ++row) {
        for (std::int32_t screenCol = first; screenCol <= last; ++screenCol) {
            const std::string_view text = m_grid.TextMatrix(row, screenCol);
            double& known = widest[static_cast<std::size_t>(screenCol - first)];
            const bool picture = row == 0 && m_grid.CellPicture(screenCol) != HeaderPicture::None;
            const double beside = picture ? FunnelSize + PictureGap : 0;
            if (m_widths.Bound(text) + beside > known) {
                known = std::max(known, m_widths.Exact(text) + beside);
            }
        }
    }
    std::vector<int> widths;
    widths.reserve(widest.size());
    for (const double width : widest) {
        widths.push_back(static_cast<int>(std::ceil(width)) + 2 * CellMargin + 1);
    }
    return widths;
}

void GridWidget::AutoSize(std::int32_t first, std::int32_t last) {
    first = std::max(first, 0);
    last = std::min(last, m_grid.Cols() - 1);
    if (first > last) {
        return;
    }
    m_sizedFirst = first;
    m_sizedLast = last;
    const std::vector<int> widths = ColumnWidths(first, last);
    for (std::int32_t screenCol = first; screenCol <= last; ++screenCol) {
        m_grid.SetColWidth(screenCol, widths[static_cast<std::size_t>(screenCol - first)]);
    }
}

void GridWidget::ShowCell(std::int32_t row, std::int32_t screenCol) {
    if (m_layoutStale || m_relayoutQueued) {
        Relayout();
    }
    const GridLayout& layout = Layout();
    const int rows = static_cast<int>(m_grid.VisibleRows().size());
    if (row > 0 && rows > 0) {
        const int index = std::min(layout.IndexOf(row), rows - 1);
        const int top = verticalScrollBar()->value();
        verticalScrollBar()->setValue(std::clamp(top, index - layout.FullRows() + 1, index));
    }
    const GridLayout::Column* column = layout.Find(screenCol);
    if (column != nullptr && !column->frozen) {
        const int left = column->left - layout.FrozenWidth();
        const int right = column->left + column->width - viewport()->width();
        const int offset = std::max(horizontalScrollBar()->value(), right);
        horizontalScrollBar()->setValue(std::min(offset, left));
    }
}

void GridWidget::SetTopRow(std::int32_t row) {
    m_topRow = row;
    Relayout();
    verticalScrollBar()->setValue(Layout().IndexOf(row));
}

std::int32_t GridWidget::CellLeft() const {
    const QRect place = Layout().CellRect(m_grid.Row(), m_grid.Col());
    const GridLayout::Column* column = Layout().Find(m_grid.Col());
    const int edge = column == nullptr || column->frozen ? 0 : Layout().FrozenWidth();
    return viewport()->x() + std::max(place.left(), edge);
}

std::int32_t GridWidget::CellTop() const {
    return viewport()->y() + Layout().CellRect(m_grid.Row(), m_grid.Col()).top();
}

std::int32_t GridWidget::CellHeight() const {
    return Layout().CellRect(m_grid.Row(), m_grid.Col()).height();
}

}  // namespace kd
