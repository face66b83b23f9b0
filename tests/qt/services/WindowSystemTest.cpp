#include "qt/services/WindowSystem.h"

#include <gtest/gtest.h>

namespace kd {
namespace {

#ifdef Q_OS_LINUX
TEST(WindowSystemTest, X11ComesFirstWhereItIsToBeHadAndTheUserHasNotChosen) {
    EXPECT_EQ(WindowSystem::InOrder({}, ":0"), "xcb;wayland");
    EXPECT_EQ(WindowSystem::InOrder({}, {}), QString()) << "Wayland alone, or no display at all";
    EXPECT_EQ(WindowSystem::InOrder("wayland", ":0"), QString());
    EXPECT_EQ(WindowSystem::InOrder("offscreen", {}), QString());
}

TEST(WindowSystemTest, TheOrderIsToldToTheToolkitAndNotToProgramsThatAreStartedLater) {
    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":0");
    WindowSystem::PreferX11();
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), chosen) << "the choice of whoever runs the tests";
    WindowSystem::ForgetChoice();
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), chosen);

    qunsetenv("QT_QPA_PLATFORM");
    WindowSystem::PreferX11();
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), "xcb;wayland");
    WindowSystem::ForgetChoice();
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORM"));

    qunsetenv("DISPLAY");
    WindowSystem::PreferX11();
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) << "no X server is at hand";

    qputenv("QT_QPA_PLATFORM", chosen);
    display.isNull() ? qunsetenv("DISPLAY") : qputenv("DISPLAY", display);
}
#endif

}  // namespace
}  // namespace kd
