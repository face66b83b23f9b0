#include <QApplication>

#include "qt/Application.h"
#include "qt/DeskStyle.h"

int main(int argc, char** argv) {
    const QApplication loop(argc, argv);
    QApplication::setStyle(new kd::DeskStyle);  // the application owns it
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
