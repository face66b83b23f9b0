#pragma once

#include <QCache>
#include <QColor>
#include <QPalette>
#include <QStaticText>

#include "platform/GridManner.h"
#include "qt/grid/GridScroll.h"

class QPainter;

namespace kd {

/// Draws a grid: its state, where GridScroll says, as its manner selects. Grid, manner and scroll outlive it.
class GridPainter {
public:
    GridPainter(const VSFlexGrid& grid, const GridManner& manner, const GridScroll& scroll);

    struct CellLook {
        QColor ground;
        QColor text;
    };
    CellLook LookOf(GridCell cell, const QPalette& palette) const;
    /// Draws what of the viewport is exposed; the palette's base fills it already.
    void Paint(QPainter& painter, const QRect& exposed, const QPalette& palette, bool focused) const;

private:
    struct Canvas {
        QPainter& painter;
        const QPalette& palette;
    };
    void PaintColumns(const Canvas& canvas, const QRect& exposed, bool frozen) const;
    /// The lines below `rows` rows and beside the columns.
    void PaintLines(const Canvas& canvas, const QRect& area, bool frozen, int rows) const;
    void PaintHeaderCell(const Canvas& canvas, const QRect& place, std::int32_t screenCol) const;
    void PaintCell(const Canvas& canvas, const QRect& place, GridCell cell) const;
    void PaintText(QPainter& painter, const QRect& place, std::string_view text,
                   CellAlignment alignment) const;
    void FrameCurrentRow(const Canvas& canvas) const;
    void FrameCurrentCell(const Canvas& canvas) const;

    const VSFlexGrid& m_grid;
    const GridManner& m_manner;
    const GridScroll& m_scroll;
    mutable QCache<QString, QStaticText> m_shaped;  // texts as they were last drawn
};

}  // namespace kd
