#include "AliveRole.h"

#include <QMessageBox>
#include <chrono>
#include <cstdio>
#include <filesystem>

#include "Driver.h"
#include "Machine.h"
#include "Screen.h"
#include "grid/CellGate.h"
#include "model/Columns.h"

namespace kd::bench {

namespace {

// Screen positions of columns.
constexpr std::int32_t NameCol = cnVariableName - 1;
constexpr std::int32_t UnitsCol = cnUnits - 1;

void Tell(const char* what, const char* job) {
    const double now =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
    (void)std::printf("%s %s %.1f\n", what, job, now);
    (void)std::fflush(stdout);
}

void Load(Driver& driver) {
    driver.When("frmApplicationAdmin", [](QWidget& dialog) {
        Tell("begin", "load");
        Guide::Press(dialog, "cmdOk");
    });
    driver.Start();
    Tell("end", "load");
    driver.Choose("mnuView", "mnuShowOnlyNumericVariables");
}

void Filter(Driver& driver) {
    const std::int32_t rows = driver.Grid().Rows() - 1;
    driver.When("frmAutoFilter", [&](QWidget& dialog) {
        Tell("end", "filter-opened");
        Guide::Press(dialog, "chkSelectAll");
        Driver::ShownFilter().lstAutoFilter.SetSelectedRange(0, rows / 2 - 1, true);
        Driver::Settle();
        Tell("begin", "filter-applied");
        Guide::Press(dialog, "cmdOk");
    });
    Tell("begin", "filter-opened");
    driver.PressHeader(NameCol);
    Tell("end", "filter-applied");
    Expect(driver.Grid().VisibleRows().size() == static_cast<std::size_t>(rows / 2),
           "half of the rows are shown");
    driver.Choose("mnuOptions", "mnuClearFilters");
}

void Commit(Driver& driver) {
    const Globals& g = driver.Program().Data();
    for (std::int32_t view = 1; view <= g.gFiles->Count(); ++view) {
        SetCellValue(driver.Program().Form().Controls(), g.gFiles->Ref(view).BegFieldPtr(), UnitsCol,
                     "unit-of-all");
    }
    Driver::Settle();
    driver.When("frmCommit", [](QWidget& dialog) {
        Tell("begin", "commit");
        Guide::Press(dialog, "cmdOk");
    });
    driver.When("MessageBox", [&](QWidget& window) {
        Tell("end", "commit");
        auto& box = dynamic_cast<QMessageBox&>(window);
        Expect(box.text().toStdString() == std::to_string(g.gFiles->Count()) + " File(s) have been modified.",
               "the box tells so: " + box.text().toStdString());
        box.accept();
    });
    driver.Choose("mnuFile", "mnuCommit");
}

}  // namespace

void RunAlive(const std::string& folder, const std::string& scratch) {
    const std::string copy = scratch + "/commit";
    std::filesystem::copy(folder, copy, std::filesystem::copy_options::recursive);
    const Screen screen(scratch, Screen::Kind::Display);
    Driver driver(copy, scratch);
    Load(driver);
    Filter(driver);
    Commit(driver);
}

}  // namespace kd::bench
