#include "qt/grid/Funnel.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace kd {

namespace {

struct Colours {
    QRgb left;
    QRgb right;
    QRgb outline;
};
constexpr Colours Grey{0xF4F4F4, 0x9A9A9A, 0x606060};
constexpr Colours Red{0xFF8A8A, 0xD41010, 0x800000};

}  // namespace

void DrawFunnel(QPainter& painter, const QRectF& place, bool filtered) {
    QPainterPath funnel;
    funnel.addPolygon(QPolygonF({{1.5, 2.5}, {14.5, 2.5}, {9.5, 8.5}, {9.5, 12.0}, {6.5, 14.5}, {6.5, 8.5}}));
    funnel.closeSubpath();

    const Colours& colours = filtered ? Red : Grey;
    QLinearGradient shade(1.5, 0, 14.5, 0);
    shade.setStops({{0, QColor(colours.left)}, {1, QColor(colours.right)}});

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.topLeft());
    painter.scale(place.width() / FunnelSize, place.height() / FunnelSize);
    painter.setPen(QColor(colours.outline));
    painter.setBrush(shade);
    painter.drawPath(funnel);
    painter.restore();
}

}  // namespace kd
