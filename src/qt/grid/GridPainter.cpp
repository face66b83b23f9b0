#include "qt/grid/GridPainter.h"

#include <QPainter>
#include <algorithm>

#include "qt/grid/Funnel.h"
#include "qt/grid/GridMetrics.h"
#include "qt/services/Frame.h"

namespace kd {

namespace {

/// A few windows full.
constexpr int MostShapedTexts = 4000;

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

/// A cell without the lines at its right and below.
QRect InsideLines(const QRect& cell) {
    return {cell.topLeft(), cell.size() - QSize(1, 1)};
}

}  // namespace

GridPainter::GridPainter(const VSFlexGrid& grid, const GridManner& manner, const GridScroll& scroll)
    : m_grid(grid), m_manner(manner), m_scroll(scroll) {
    m_shaped.setMaxCost(MostShapedTexts);
}

GridPainter::CellLook GridPainter::LookOf(GridCell cell, const QPalette& palette) const {
    const BackColour colour = m_grid.BackColor(cell.row, cell.screenCol);
    const bool selected = m_manner.LooksSelected(cell);
    if (colour == 0) {
        return selected
                   ? CellLook{palette.color(QPalette::Highlight), palette.color(QPalette::HighlightedText)}
                   : CellLook{palette.color(QPalette::Base), palette.color(QPalette::Text)};
    }
    // A coloured cell stays distinct inside a selection, and its text reads in every theme.
    const QColor own = FromBackColour(colour);
    return {selected ? Blend(own, palette.color(QPalette::Highlight), 2) : own, ReadableOn(own)};
}

void GridPainter::Paint(QPainter& painter, const QRect& exposed, const QPalette& palette,
                        bool focused) const {
    if (!m_scroll.Layout().Fits() || m_grid.Rows() == 0) {
        return;
    }
    const Canvas canvas{painter, palette};
    painter.setFont(m_scroll.Widths().Font());
    PaintColumns(canvas, exposed, true);
    PaintColumns(canvas, exposed, false);
    if (m_grid.Row() < 1) {
        return;
    }
    if (!m_manner.WholeRows()) {
        FrameCurrentCell(canvas);
    } else if (focused) {
        FrameCurrentRow(canvas);
    }
}

void GridPainter::PaintColumns(const Canvas& canvas, const QRect& exposed, bool frozen) const {
    const GridLayout& layout = m_scroll.Layout();
    const GridLayout::Sizes& sizes = layout.GetSizes();
    const QRect area = layout.ClipOf(0, frozen).united(layout.ClipOf(1, frozen)).intersected(exposed);
    if (area.isEmpty()) {
        return;
    }
    const auto& visible = m_grid.VisibleRows();
    const int begin = layout.TopIndex();
    const int end = std::min(begin + layout.ShownRows(), static_cast<int>(visible.size()));
    int right = area.left();  // of the last column in sight
    canvas.painter.setClipRect(area);
    for (const GridLayout::Column& column : layout.Columns()) {
        const int left = layout.LeftOf(column);
        const QRect strip(left, area.top(), column.width, area.height());
        if (column.frozen != frozen || !strip.intersects(area)) {
            continue;
        }
        PaintHeaderCell(canvas, {left, 0, column.width, sizes.headerHeight}, column.screenCol);
        QRect place = InsideLines({left, sizes.headerHeight, column.width, sizes.rowHeight});
        for (int index = begin; index < end; ++index, place.translate(0, sizes.rowHeight)) {
            if (place.intersects(area)) {
                PaintCell(canvas, place, {visible[static_cast<std::size_t>(index)], column.screenCol});
            }
        }
        right = std::max(right, left + column.width);
    }
    PaintLines(canvas, QRect(area.left(), area.top(), right - area.left(), area.height()), frozen,
               std::max(end - begin, 0));
}

void GridPainter::PaintLines(const Canvas& canvas, const QRect& area, bool frozen, int rows) const {
    const GridLayout& layout = m_scroll.Layout();
    const GridLayout::Sizes& sizes = layout.GetSizes();
    const QColor line =
        LineColour(canvas.palette.color(QPalette::Base), canvas.palette.color(QPalette::Text));
    const int bottom = sizes.headerHeight + rows * sizes.rowHeight;
    for (int row = 1; row <= rows; ++row) {
        const int y = sizes.headerHeight + row * sizes.rowHeight - 1;
        canvas.painter.fillRect(area.left(), y, area.width(), 1, line);
    }
    for (const GridLayout::Column& column : layout.Columns()) {
        if (column.frozen == frozen) {
            const int right = layout.LeftOf(column) + column.width;
            const bool border = right == layout.FrozenWidth();
            canvas.painter.fillRect(right - 1, sizes.headerHeight, 1, bottom - sizes.headerHeight,
                                    border ? canvas.palette.color(QPalette::Text) : line);
        }
    }
}

void GridPainter::PaintHeaderCell(const Canvas& canvas, const QRect& place, std::int32_t screenCol) const {
    const QColor ground = canvas.palette.color(QPalette::Button);
    const QColor text = canvas.palette.color(QPalette::ButtonText);
    canvas.painter.fillRect(place, ground);
    QRect inside = InsideLines(place);
    const HeaderPicture picture = m_grid.CellPicture(screenCol);
    if (picture != HeaderPicture::None) {
        const QRect corner(inside.right() - FunnelSize, inside.bottom() - FunnelSize, FunnelSize, FunnelSize);
        DrawFunnel(canvas.painter, corner, picture == HeaderPicture::FilterOn);
        inside.setRight(corner.left() - PictureGap + CellMargin);
    }
    canvas.painter.setPen(text);
    PaintText(canvas.painter, inside, m_grid.TextMatrix(0, screenCol), m_grid.ColAlignment(screenCol));
    const QColor line = Blend(ground, text, 2);
    canvas.painter.fillRect(place.right(), place.top(), 1, place.height(), line);
    canvas.painter.fillRect(place.left(), place.bottom(), place.width(), 1, line);
}

void GridPainter::PaintCell(const Canvas& canvas, const QRect& place, GridCell cell) const {
    const CellLook look = LookOf(cell, canvas.palette);
    if (look.ground != canvas.palette.color(QPalette::Base)) {  // which the viewport has been filled with
        canvas.painter.fillRect(place, look.ground);
    }
    const std::string_view text = m_grid.TextMatrix(cell.row, cell.screenCol);
    if (!text.empty()) {
        canvas.painter.setPen(look.text);
        PaintText(canvas.painter, place, text, m_grid.ColAlignment(cell.screenCol));
    }
}

void GridPainter::PaintText(QPainter& painter, const QRect& place, std::string_view text,
                            CellAlignment alignment) const {
    const TextWidths& widths = m_scroll.Widths();
    const double width = place.width() - 2 * CellMargin;
    const QString shown = widths.Fitted(text, width);
    // The text is placed here: the toolkit's own placing lays out a paragraph for each cell.
    double left = place.left() + CellMargin;
    if (alignment != caLeftCenter) {
        const double sum = widths.AtMost(text);
        const double room = width - (sum <= width ? sum : widths.ExactOf(shown));
        left += alignment == caRightCenter ? room : room / 2;
    }
    const QFontMetricsF& metrics = widths.Metrics();
    const double top = place.top() + (place.height() - metrics.height()) / 2;
    QStaticText* shaped = m_shaped.object(shown);
    if (shaped == nullptr) {
        shaped = new QStaticText(shown);  // NOLINT(cppcoreguidelines-owning-memory): the cache owns it
        shaped->setTextFormat(Qt::PlainText);
        m_shaped.insert(shown, shaped);
    }
    painter.drawStaticText(QPointF(left, top), *shaped);
}

void GridPainter::FrameCurrentRow(const Canvas& canvas) const {
    const GridLayout& layout = m_scroll.Layout();
    if (layout.Columns().empty()) {
        return;
    }
    const GridCell last{m_grid.Row(), layout.Columns().back().screenCol};
    QRect place = layout.CellRect(last.row, last.screenCol);
    place.setLeft(layout.LeftOf(layout.Columns().front()));
    canvas.painter.setClipRect(layout.ClipOf(last.row, false));
    DrawFrame(canvas.painter, InsideLines(place), FrameWidth,
              ReadableOn(LookOf(last, canvas.palette).ground));
}

void GridPainter::FrameCurrentCell(const Canvas& canvas) const {
    const GridLayout& layout = m_scroll.Layout();
    const GridCell cell{m_grid.Row(), m_grid.Col()};
    const GridLayout::Column* column = layout.Find(cell.screenCol);
    if (column == nullptr) {
        return;
    }
    const QColor ground = LookOf(cell, canvas.palette).ground;
    const QColor highlight = canvas.palette.color(QPalette::Highlight);
    const bool reads = std::abs(Brightness(ground) - Brightness(highlight)) > 0.25;
    canvas.painter.setClipRect(layout.ClipOf(cell.row, column->frozen));
    DrawFrame(canvas.painter, InsideLines(layout.CellRect(cell.row, cell.screenCol)), FrameWidth,
              reads ? highlight : ReadableOn(ground));
}

}  // namespace kd
