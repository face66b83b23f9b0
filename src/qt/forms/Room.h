#pragma once

#include <QRect>
#include <QScreen>

namespace kd {

/// A screen, and what windows may take of it: the rest is the desktop's own. Windows are centred on the
/// screen; dialogs are kept inside what is free as well.
struct Room {
    QRect screen;
    QRect free;
};

inline Room RoomOf(const QScreen& screen) {
    return {.screen = screen.geometry(), .free = screen.availableGeometry()};
}

}  // namespace kd
