#pragma once

#include <QPainter>
#include <QRegion>

namespace kd {

/// Draws a frame of `width` pixels along the inside of the place's edges; nothing where the place is empty.
inline void DrawFrame(QPainter& painter, const QRect& place, int width, const QColor& colour) {
    for (const QRect& part : QRegion(place).subtracted(place.adjusted(width, width, -width, -width))) {
        painter.fillRect(part, colour);
    }
}

}  // namespace kd
