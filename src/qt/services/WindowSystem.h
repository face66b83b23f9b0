#pragma once

#include <QString>

namespace kd {

/// Which of the desktop's window systems shows the program. Where X11 is to be had it comes first, since only
/// there a window can be put where it belongs: the filter under its column, a dialog in the middle of the
/// screen. On Wayland the compositor puts every window where it likes, and tells nobody.
class WindowSystem {
public:
    /// To be called before the application is made. Leaves a choice of the user's (QT_QPA_PLATFORM) alone.
    static void PreferX11();
    /// To be called when the application is made: programs that it starts make their own choice.
    static void ForgetChoice();

    /// What the toolkit is told to try, in order; empty where the choice is its own. `chosen` is the user's
    /// QT_QPA_PLATFORM, `display` the address of an X server; either may be empty.
    static QString InOrder(const QString& chosen, const QString& display);
};

}  // namespace kd
