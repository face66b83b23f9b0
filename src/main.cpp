#include <QApplication>

#include "qt/Application.h"
#include "qt/services/ReadableStyle.h"
#include "qt/services/WindowSystem.h"

int main(int argc, char** argv) {
    kd::ReadableStyle::AskForDarkColours();
    kd::WindowSystem::PreferX11();
    const QApplication loop(argc, argv);
    kd::WindowSystem::ForgetChoice();
    kd::ReadableStyle::Settle(QApplication::style()->name());
    QApplication::setApplicationName(QStringLiteral("KDLimitDesk"));
    QApplication::setDesktopFileName(QStringLiteral("com.example.kdlimitdesk"));
    // The first dialog is open before the main window is there; its end is not the program's.
    QApplication::setQuitOnLastWindowClosed(false);
    kd::ProvideUserName();
    kd::Application program(kd::ApplicationFolders::OfUser());
    if (!program.Start()) {
        return 0;
    }
    QApplication::setQuitOnLastWindowClosed(true);
    return QApplication::exec();
}
