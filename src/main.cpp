#include <QApplication>

#include "qt/Application.h"
#include "qt/services/DeskStyle.h"

int main(int argc, char** argv) {
    kd::DeskStyle::AskForDarkColours();
    const QApplication loop(argc, argv);
    kd::DeskStyle::Settle();
    QApplication::setApplicationName(QStringLiteral("KDLimitDesk"));
    QApplication::setDesktopFileName(QStringLiteral("com.example.kdlimitdesk"));
    // The first dialog is open before the main window is there; its end is not the program's.
    QApplication::setQuitOnLastWindowClosed(false);
    kd::ProvideUserName();
    kd::Application program(kd::ApplicationPlaces::OfUser());
    if (!program.Start()) {
        return 0;
    }
    QApplication::setQuitOnLastWindowClosed(true);
    return QApplication::exec();
}
