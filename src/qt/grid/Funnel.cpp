#include "qt/grid/Funnel.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace kd {

void DrawFunnel(QPainter& painter, const QRectF& place, bool filtered) {
    QPainterPath funnel;
    funnel.moveTo(1.5, 2.5);
    funnel.lineTo(14.5, 2.5);
    funnel.lineTo(9.5, 8.5);
    funnel.lineTo(9.5, 12.0);
    funnel.lineTo(6.5, 14.5);
    funnel.lineTo(6.5, 8.5);
    funnel.closeSubpath();

    QLinearGradient shade(1.5, 0, 14.5, 0);
    shade.setColorAt(0, filtered ? QColor(0xFF, 0x8A, 0x8A) : QColor(0xF4, 0xF4, 0xF4));
    shade.setColorAt(1, filtered ? QColor(0xD4, 0x10, 0x10) : QColor(0x9A, 0x9A, 0x9A));

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.topLeft());
    painter.scale(place.width() / FunnelSize, place.height() / FunnelSize);
    painter.setPen(QPen(filtered ? QColor(0x80, 0, 0) : QColor(0x60, 0x60, 0x60), 1.0));
    painter.setBrush(shade);
    painter.drawPath(funnel);
    painter.restore();
}

}  // namespace kd
