#pragma once

class QPainter;
class QRectF;

namespace kd {

/// Side of the header's picture in pixels.
inline constexpr int FunnelSize = 16;

/// Draws the header's picture as a vector, so that it is crisp at every scale: a funnel, shaded in greys, or
/// in red with a dark red outline where the column is filtered.
void DrawFunnel(QPainter& painter, const QRectF& place, bool filtered);

}  // namespace kd
