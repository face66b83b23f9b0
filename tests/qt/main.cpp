#include <gmock/gmock.h>

#include <QApplication>

#include "qt/grid/GridAccessible.h"

/// The widgets need an application object, and no screen.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    kd::InstallGridAccessibility();
#ifdef Q_OS_WIN
    // Without a screen only the fonts of a folder are there, and nobody says which of them stands in for
    // which.
    QFont::insertSubstitution(QStringLiteral("Courier New"), QStringLiteral("DejaVu Sans Mono"));
#endif
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
