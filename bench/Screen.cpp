#include "Screen.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QScreen>
#include <fstream>

#include "Machine.h"

namespace kd::bench {

namespace {

int argumentCount = 1;
char program[] = "kd_bench";
char* arguments[] = {program, nullptr};  // must live as long as the application

}  // namespace

Screen::Screen(const std::string& scratch, Kind kind) {
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("USERNAME", "bench");
    // A word a run about a folder of the session that a build machine does not have.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    if (kind == Kind::Unseen) {
        const std::string description = scratch + "/screen.json";
        std::ofstream(description)
            << R"({"screens": [{"name": "bench", "x": 0, "y": 0, "width": 1920, "height": 1080,)"
               R"( "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
        qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString("offscreen:configfile=" + description));
    }
    m_application = std::make_unique<QApplication>(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    Expect(kind == Kind::Display || QApplication::primaryScreen()->size() == QSize(1920, 1080),
           "the screen has its size");
}

Screen::~Screen() = default;

}  // namespace kd::bench
