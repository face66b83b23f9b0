#pragma once

#include <QRect>
#include <QScreen>

namespace kd {

/// A screen, and what windows may take of it: the rest is the desktop's own. A window is centred on the
/// screen and kept inside what is free.
struct Room {
    QRect screen;
    QRect free;
};

inline Room RoomOf(const QScreen& screen) {
    return {.screen = screen.geometry(), .free = screen.availableGeometry()};
}

}  // namespace kd
