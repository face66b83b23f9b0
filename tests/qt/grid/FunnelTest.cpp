#include "qt/grid/Funnel.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace kd {
namespace {

/// The funnel by its corners, from the left top one clockwise.
QImage FunnelByItsCorners(const QRectF& place, bool filtered) {
    QPainterPath outline;
    outline.addPolygon(QPolygonF({{1.5, 2.5}, {14.5, 2.5}, {9.5, 8.5}, {9.5, 12}, {6.5, 14.5}, {6.5, 8.5}}));
    outline.closeSubpath();
    QLinearGradient shade(1.5, 0, 14.5, 0);
    shade.setStops(
        {{0, QColor(filtered ? 0xFF8A8A : 0xF4F4F4)}, {1, QColor(filtered ? 0xD41010 : 0x9A9A9A)}});
    QImage image(80, 80, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform({place.width() / 16, 0, 0, place.height() / 16, place.x(), place.y()});
    painter.setPen(QColor(filtered ? 0x800000 : 0x606060));
    painter.setBrush(shade);
    painter.drawPath(outline);
    painter.end();
    return image;
}

TEST(FunnelTest, ItIsDrawnAtEverySizeAndLeavesThePainterAsItWas) {
    for (const bool filtered : {false, true}) {
        for (const QRectF& place :
             {QRectF(0, 0, 16, 16), QRectF(5, 3, 16, 16), QRectF(5, 3, 32, 32), QRectF(2, 9, 64, 48)}) {
            QImage image(80, 80, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            painter.setPen(Qt::green);
            painter.setBrush(Qt::blue);
            DrawFunnel(painter, place, filtered);
            EXPECT_TRUE(painter.pen() == QPen(Qt::green));
            EXPECT_TRUE(painter.brush() == QBrush(Qt::blue));
            EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
            EXPECT_TRUE(painter.worldTransform().isIdentity());
            painter.end();
            EXPECT_TRUE(image == FunnelByItsCorners(place, filtered))
                << place.width() << " by " << place.height() << (filtered ? ", filtered" : "");
        }
    }
}

}  // namespace
}  // namespace kd
