#include "ShownGrid.h"

#include <QApplication>
#include <QLoggingCategory>

#include "qt/GridWidget.h"

namespace kd::bench {

namespace {

int argumentCount = 3;
char program[] = "kd_bench";
char option[] = "-platform";
char platformName[] = "offscreen";
char* arguments[] = {program, option, platformName, nullptr};  // must live as long as the application

}  // namespace

struct ShownGrid::Window {
    explicit Window(VSFlexGrid& grid) : widget(grid) {
        widget.resize(1600, 900);
        widget.show();
    }
    QApplication application{argumentCount, arguments};
    GridWidget widget;
};

ShownGrid::ShownGrid(VSFlexGrid& grid) {
    // A word a run about a folder of the session that a build machine does not have.
    QLoggingCategory::setFilterRules("default.warning=false");
    m_window = std::make_unique<Window>(grid);
    Paint();
}

ShownGrid::~ShownGrid() = default;

void ShownGrid::Paint() {
    QApplication::processEvents();
    m_window->widget.viewport()->repaint();
}

}  // namespace kd::bench
