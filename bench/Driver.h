#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "Measure.h"
#include "grid/frmAutoFilter.h"
#include "guided/Guide.h"
#include "qt/Application.h"

namespace kd::bench {

/// The real program with the applications of a folder in its list, and the hands of a user.
class Driver {
public:
    /// Settings of the run go below `scratch`.
    Driver(const std::string& folder, const std::string& scratch);
    ~Driver();
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    /// What the user does when a modal window comes up. They must come in this order, and nothing else may.
    void When(std::string window, std::function<void(QWidget&)> act);
    /// Starts the program. Returns when Manage Applications has been confirmed and all is loaded.
    void Start();
    /// Chooses an entry of a menu, and returns when its command has ended and all is painted.
    void Choose(const char* menu, const char* entry);
    /// Presses a column's header.
    void PressHeader(std::int32_t screenCol);
    /// Selects the column's cells in all rows.
    void SelectColumn(std::int32_t screenCol);
    /// Lets the program do and paint whatever is waiting.
    static void Settle();

    Application& Program() { return *m_program; }
    VSFlexGrid& Grid() { return m_program->Form().Controls().Grid; }
    GridWidget& View();
    /// The filter dialog's form while it is shown.
    static frmAutoFilter& ShownFilter();
    /// The paint events of the grid so far.
    int Paints() const { return m_paints; }

private:
    class PaintCounter;
    struct Act {
        std::string window;
        std::function<void(QWidget&)> act;
    };
    void Tick();

    std::unique_ptr<Application> m_program;
    std::unique_ptr<PaintCounter> m_counter;
    std::deque<Act> m_acts;
    QTimer m_timer;
    QWidget* m_seen = nullptr;
    int m_paints = 0;
};

}  // namespace kd::bench
