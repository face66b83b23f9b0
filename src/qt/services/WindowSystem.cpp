#include "qt/services/WindowSystem.h"

#include <QtGlobal>

namespace kd {

namespace {

constexpr const char* Platform = "QT_QPA_PLATFORM";
// An X server that does not answer gives way to Wayland.
constexpr const char* X11First = "xcb;wayland";

}  // namespace

QString WindowSystem::InOrder(const QString& chosen, const QString& display) {
#ifdef Q_OS_LINUX
    if (chosen.isEmpty() && !display.isEmpty()) {
        return QLatin1String(X11First);
    }
#else
    (void)chosen;
    (void)display;
#endif
    return {};
}

void WindowSystem::PreferX11() {
    const QString order = InOrder(qEnvironmentVariable(Platform), qEnvironmentVariable("DISPLAY"));
    if (!order.isEmpty()) {
        qputenv(Platform, order.toLocal8Bit());
    }
}

void WindowSystem::ForgetChoice() {
    if (qgetenv(Platform) == X11First) {
        qunsetenv(Platform);
    }
}

}  // namespace kd
