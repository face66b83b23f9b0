#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "qt/grid/Funnel.h"
#include "qt/grid/GridMetrics.h"
#include "qt/grid/GridWidget.h"

namespace kd {

namespace {

/// The grid's colours have blue in front: 0xBBGGRR.
QColor FromBackColour(BackColour colour) {
    return {static_cast<int>(colour & 0xFFU), static_cast<int>((colour >> 8U) & 0xFFU),
            static_cast<int>((colour >> 16U) & 0xFFU)};
}

/// `parts` of three parts `a`, the rest `b`.
QColor Blend(const QColor& a, const QColor& b, int parts) {
    const auto mix = [parts](int x, int y) { return (x * parts + y * (3 - parts)) / 3; };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

double Brightness(const QColor& colour) {
    return 0.2126 * colour.redF() + 0.7152 * colour.greenF() + 0.0722 * colour.blueF();
}

/// Black or white, whichever reads on the ground.
QColor ReadableOn(const QColor& ground) {
    return Brightness(ground) > 0.45 ? QColor(Qt::black) : QColor(Qt::white);
}

/// Lines that show on the ground without standing out, in light and dark palettes alike.
QColor LineColour(const QColor& ground, const QColor& text) {
    return Blend(Blend(ground, text, 2), ground, 2);
}

}  // namespace

bool GridWidget::IsCurrent(std::int32_t row, std::int32_t screenCol) const {
    return row > 0 && row == m_grid.Row() && (m_manner == Manner::ListBox || screenCol == m_grid.Col());
}

bool GridWidget::LooksSelected(std::int32_t row, std::int32_t screenCol) const {
    if (m_manner == Manner::ListBox) {
        return m_grid.IsSelected(row);
    }
    return m_grid.Row() > 0 && !IsCurrent(row, screenCol) && m_grid.GetSelection().Contains(row, screenCol);
}

GridWidget::CellLook GridWidget::LookOf(std::int32_t row, std::int32_t screenCol) const {
    const BackColour colour = m_grid.BackColor(row, screenCol);
    const bool selected = LooksSelected(row, screenCol);
    if (colour == 0) {
        return selected ? CellLook{palette().color(QPalette::Highlight),
                                   palette().color(QPalette::HighlightedText)}
                        : CellLook{palette().color(QPalette::Base), palette().color(QPalette::Text)};
    }
    // A coloured cell stays distinct inside a selection, and its text reads in every theme.
    const QColor own = FromBackColour(colour);
    return {selected ? Blend(own, palette().color(QPalette::Highlight), 2) : own, ReadableOn(own)};
}

void GridWidget::paintEvent(QPaintEvent* event) {
    const GridLayout& layout = Layout();
    if (!layout.Fits() || m_grid.Rows() == 0) {
        return;
    }
    QPainter painter(viewport());
    painter.setFont(m_widths.Font());
    PaintColumns(painter, event->rect(), true);
    PaintColumns(painter, event->rect(), false);
    PaintCurrentFrame(painter);
}

void GridWidget::PaintColumns(QPainter& painter, const QRect& exposed, bool frozen) const {
    const GridLayout::Sizes& sizes = m_layout.GetSizes();
    const QRect area = m_layout.ClipOf(0, frozen).united(m_layout.ClipOf(1, frozen)).intersected(exposed);
    if (area.isEmpty()) {
        return;
    }
    const auto& visible = m_grid.VisibleRows();
    const int begin = m_layout.TopIndex();
    const int end = std::min(begin + m_layout.ShownRows(), static_cast<int>(visible.size()));
    int right = area.left();  // of the last column in sight
    painter.setClipRect(area);
    for (const GridLayout::Column& column : m_layout.Columns()) {
        const int left = m_layout.LeftOf(column);
        if (column.frozen != frozen || left > area.right() || left + column.width <= area.left()) {
            continue;
        }
        PaintHeaderCell(painter, {left, 0, column.width, sizes.headerHeight}, column.screenCol);
        QRect place(left, sizes.headerHeight, column.width - 1, sizes.rowHeight - 1);
        for (int index = begin; index < end; ++index, place.translate(0, sizes.rowHeight)) {
            if (place.top() <= area.bottom() && place.bottom() + 1 >= area.top()) {
                PaintCell(painter, place, visible[static_cast<std::size_t>(index)], column.screenCol);
            }
        }
        right = std::max(right, left + column.width);
    }
    PaintLines(painter, QRect(area.left(), area.top(), right - area.left(), area.height()), frozen,
               std::max(end - begin, 0));
    painter.setClipping(false);
}

void GridWidget::PaintLines(QPainter& painter, const QRect& area, bool frozen, int rows) const {
    const GridLayout::Sizes& sizes = m_layout.GetSizes();
    const QColor line = LineColour(palette().color(QPalette::Base), palette().color(QPalette::Text));
    const int bottom = sizes.headerHeight + rows * sizes.rowHeight;
    for (int y = sizes.headerHeight + sizes.rowHeight - 1; y < bottom; y += sizes.rowHeight) {
        painter.fillRect(area.left(), y, area.width(), 1, line);
    }
    for (const GridLayout::Column& column : m_layout.Columns()) {
        if (column.frozen == frozen) {
            const int right = m_layout.LeftOf(column) + column.width;
            const bool border = frozen && right == m_layout.FrozenWidth();
            painter.fillRect(right - 1, sizes.headerHeight, 1, bottom - sizes.headerHeight,
                             border ? palette().color(QPalette::Text) : line);
        }
    }
}

void GridWidget::PaintHeaderCell(QPainter& painter, const QRect& place, std::int32_t screenCol) const {
    const QColor ground = palette().color(QPalette::Button);
    const QColor text = palette().color(QPalette::ButtonText);
    painter.fillRect(place, ground);
    QRect inside = place.adjusted(0, 0, -1, -1);
    const HeaderPicture picture = m_grid.CellPicture(screenCol);
    if (picture != HeaderPicture::None) {
        const QRect corner(inside.right() - FunnelSize, inside.bottom() - FunnelSize, FunnelSize, FunnelSize);
        DrawFunnel(painter, corner, picture == HeaderPicture::FilterOn);
        inside.setRight(corner.left() - PictureGap + CellMargin);
    }
    painter.setPen(text);
    PaintText(painter, inside, m_grid.TextMatrix(0, screenCol), m_grid.ColAlignment(screenCol));
    const QColor line = Blend(ground, text, 2);
    painter.fillRect(place.right(), place.top(), 1, place.height(), line);
    painter.fillRect(place.left(), place.bottom(), place.width(), 1, line);
}

void GridWidget::PaintCell(QPainter& painter, const QRect& place, std::int32_t row,
                           std::int32_t screenCol) const {
    const CellLook look = LookOf(row, screenCol);
    if (look.ground != palette().color(QPalette::Base)) {  // which the viewport has been filled with
        painter.fillRect(place, look.ground);
    }
    const std::string_view text = m_grid.TextMatrix(row, screenCol);
    if (!text.empty()) {
        painter.setPen(look.text);
        PaintText(painter, place, text, m_grid.ColAlignment(screenCol));
    }
}

void GridWidget::PaintText(QPainter& painter, const QRect& place, std::string_view text,
                           CellAlignment alignment) const {
    const QRectF inside = QRectF(place).adjusted(CellMargin, 0, -CellMargin, 0);
    const QString shown = m_widths.Fitted(text, inside.width());
    // The text is placed here: the toolkit's own placing lays out a paragraph for each cell.
    double left = inside.left();
    if (alignment != caLeftCenter) {
        const double sum = m_widths.Bound(text);
        const double room = inside.width() - (sum <= inside.width() ? sum : m_widths.ExactOf(shown));
        left += alignment == caRightCenter ? room : room / 2;
    }
    const QFontMetricsF& metrics = m_widths.Metrics();
    const double top = inside.top() + (inside.height() - metrics.height()) / 2;
    QStaticText* shaped = m_shaped.object(shown);
    if (shaped == nullptr) {
        shaped = new QStaticText(shown);  // NOLINT(cppcoreguidelines-owning-memory): the cache owns it
        shaped->setTextFormat(Qt::PlainText);
        m_shaped.insert(shown, shaped);
    }
    painter.drawStaticText(QPointF(left, top), *shaped);
}

void GridWidget::PaintCurrentFrame(QPainter& painter) const {
    const std::int32_t row = m_grid.Row();
    if (row < 1 || row >= m_grid.Rows()) {
        return;
    }
    if (m_manner == Manner::ListBox) {
        if (hasFocus() && !m_layout.Columns().empty()) {
            const GridLayout::Column& last = m_layout.Columns().back();
            QRect place = m_layout.CellRect(row, last.screenCol);
            place.setLeft(m_layout.LeftOf(m_layout.Columns().front()));
            painter.setClipRect(m_layout.ClipOf(row, false));
            DrawFrame(painter, place, ReadableOn(LookOf(row, last.screenCol).ground));
        }
        return;
    }
    const GridLayout::Column* column = m_layout.Find(m_grid.Col());
    const QRect place = m_layout.CellRect(row, m_grid.Col());
    if (column == nullptr || place.isEmpty()) {
        return;
    }
    const QColor ground = LookOf(row, m_grid.Col()).ground;
    const QColor highlight = palette().color(QPalette::Highlight);
    const bool reads = std::abs(Brightness(ground) - Brightness(highlight)) > 0.25;
    painter.setClipRect(m_layout.ClipOf(row, column->frozen));
    DrawFrame(painter, place, reads ? highlight : ReadableOn(ground));
}

void GridWidget::DrawFrame(QPainter& painter, const QRect& place, const QColor& colour) const {
    const int left = place.left();
    const int top = place.top();
    const int width = place.width() - 1;
    const int height = place.height() - 1;
    painter.fillRect(left, top, width, 2, colour);
    painter.fillRect(left, top + height - 2, width, 2, colour);
    painter.fillRect(left, top, 2, height, colour);
    painter.fillRect(left + width - 2, top, 2, height, colour);
}

}  // namespace kd
