#include "ProgramRole.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QScrollBar>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "Driver.h"
#include "Machine.h"
#include "Screen.h"
#include "commit/CommitChanges.h"
#include "grid/CellGate.h"
#include "model/Columns.h"

namespace kd::bench {

namespace fs = std::filesystem;

namespace {

// Screen positions of columns.
constexpr std::int32_t NameCol = cnVariableName - 1;
constexpr std::int32_t UslCol = cnUSL - 1;
constexpr std::int32_t UclCol = cnUCL - 1;
constexpr std::int32_t UnitsCol = cnUnits - 1;

/// Starts the program, confirms the list of applications and loads them all.
void StartAndLoad(Driver& driver, std::size_t files, Cost& start, Cost& load) {
    Meter meter;
    driver.When("frmApplicationAdmin", [&](QWidget& dialog) {
        start = Meter::SinceStart();
        auto* const list = dialog.findChild<GridWidget*>();
        Expect(list != nullptr &&
                   list->Grid().Rows() == static_cast<std::int32_t>(files / ViewsAnApplication + 1),
               "all applications are listed");
        meter = Meter();
        Guide::Press(dialog, "cmdOk");
    });
    driver.Start();
    load = meter.Stop();
    const Globals& g = driver.Program().Data();
    const auto variables = static_cast<std::int32_t>(files) * VariablesPerFile;
    Expect(g.gFields->Count() == variables && driver.Grid().Rows() == variables + 1, "all is loaded");
    Expect(driver.Program().Form().Controls().Panel2.Caption().ends_with("Variables: " +
                                                                         std::to_string(variables)),
           "the status line tells so");
    Expect(driver.Paints() > 0 && driver.Grid().ColWidth(NameCol) > 100, "columns are sized and painted");
}

/// The steps of a session in the loaded program, one after the other.
class Session {
public:
    explicit Session(Driver& driver) : m_driver(driver), m_rows(driver.Grid().Rows() - 1) {}

    void ViewModes() {
        const auto shown = [this] { return m_driver.Grid().VisibleRows().size(); };
        const std::size_t numeric = shown();
        Toggle("show paths off", "mnuShowPaths");
        Expect(m_driver.Grid().FrozenCols() > 0, "columns are frozen");
        Toggle("show paths on", "mnuShowPaths");
        Toggle("numeric only off", "mnuShowOnlyNumericVariables");
        Expect(numeric < shown() && shown() == static_cast<std::size_t>(m_rows), "all rows are shown");
        Toggle("numeric only on", "mnuShowOnlyNumericVariables");
        Expect(numeric == shown(), "some rows are hidden");
        Toggle("all properties on", "mnuShowAll");
        Expect(!m_driver.Grid().ColHidden(UnitsCol), "properties are shown");
        Toggle("all properties off", "mnuShowAll");
        m_driver.Choose("mnuView", "mnuShowOnlyNumericVariables");
    }

    void Filter() {
        Meter meter;
        Cost opened;
        m_driver.When("frmAutoFilter", [&](QWidget& dialog) {
            opened = meter.Stop();
            Guide::Press(dialog, "chkSelectAll");
            frmAutoFilter& form = Driver::ShownFilter();
            Expect(form.lstAutoFilter.Count() == m_rows, "a value a row is offered");
            form.lstAutoFilter.SetSelectedRange(0, m_rows / 2 - 1, true);
            Driver::Settle();
            meter.Resume();
            Guide::Press(dialog, "cmdOk");
        });
        m_driver.PressHeader(NameCol);
        Report("filter", meter.Stop());
        Report("filter opened", opened);
        Expect(m_driver.Grid().VisibleRows().size() == static_cast<std::size_t>(m_rows / 2),
               "half of the rows are shown");
        Toggle("clear filters", "mnuClearFilters", "mnuOptions");
        Expect(m_driver.Grid().VisibleRows().size() == static_cast<std::size_t>(m_rows), "all rows are back");
    }

    void Scroll() {
        constexpr int Steps = 100;
        m_driver.Choose("mnuView", "mnuShowPaths");
        QScrollBar& bar = *m_driver.View().verticalScrollBar();
        const int paints = m_driver.Paints();
        Meter meter;
        for (int step = 1; step <= Steps; ++step) {
            bar.setValue(step * 7);
            QApplication::processEvents();
        }
        Cost cost = meter.Stop();
        Expect(m_driver.Paints() == paints + Steps && m_driver.Grid().FrozenCols() > 0, "a repaint a step");
        cost.cpuMs /= Steps;
        Report("scroll", cost);
        m_driver.Choose("mnuView", "mnuShowPaths");
    }

    void Validate() {
        Meter meter;
        const bool good = !ValidateLimits(m_driver.Program().Form().Controls());
        Report("validate", meter.Stop());
        Expect(good, "the limits of the files are in order");
    }

    void Edits() {
        MakeAllNumeric(m_driver.Program().Data());
        m_driver.SelectColumn(UclCol);
        Edit("fill constant", "mnuEditFill", [](QWidget& dialog) {
            Type(dialog, "txtConstant", "12.5");
            Guide::Press(dialog, "cmdOk");
        });
        ExpectColumn(UclCol, "12.5");
        m_driver.SelectColumn(UslCol);
        Edit("fill calculation", "mnuEditFill", [](QWidget& dialog) {
            Guide::Press(dialog, "optFillLimit");
            Guide::Press(dialog, "optLimits_1");
            Type(dialog, "txtLimitValue", "1");
            Guide::Press(dialog, "cmdOk");
        });
        ExpectColumn(UslCol, "13.5");
        m_driver.SelectColumn(UclCol);
        m_driver.Choose("mnuEdit", "mnuEditCopy");
        m_driver.Grid().Select(1, UslCol);
        Edit("paste", "mnuEditPaste");
        ExpectColumn(UslCol, "12.5");
        m_driver.SelectColumn(UslCol);
        Edit("replace", "mnuEditReplace", [](QWidget& dialog) {
            Type(dialog, "txtFind", "2.5");
            Type(dialog, "txtReplace", "4.25");
            Guide::Press(dialog, "cmdReplace");
        });
        ExpectColumn(UslCol, "14.25");
        m_driver.SelectColumn(UslCol);
        Edit("restore", "mnuEditRestore");
        for (std::int32_t row = 1; row <= m_rows; ++row) {
            Expect(m_driver.Grid().BackColor(row, UslCol) == 0, "no cell is marked any more");
        }
    }

private:
    static void Type(QWidget& dialog, const char* field, const char* text) {
        auto* const line = dialog.findChild<QLineEdit*>(QLatin1String(field));
        Expect(line != nullptr, std::string("there is a field ") + field);
        line->setFocus();
        line->selectAll();
        QTest::keyClicks(line, QLatin1String(text));
    }

    void Toggle(const char* figure, const char* entry, const char* menu = "mnuView") {
        const int paints = m_driver.Paints();
        Meter meter;
        m_driver.Choose(menu, entry);
        Report(figure, meter.Stop());
        Expect(m_driver.Paints() > paints, std::string("painted after ") + figure);
    }

    /// From the menu entry to the painted cells, the dialog included.
    void Edit(const char* figure, const char* entry, const std::function<void(QWidget&)>& fillIn = nullptr) {
        const std::map<std::string, const char*> dialogs{{"mnuEditFill", "frmFill"},
                                                         {"mnuEditReplace", "frmReplace"}};
        if (fillIn) {
            m_driver.When(dialogs.at(entry), fillIn);
        }
        Meter meter;
        m_driver.Choose("mnuEdit", entry);
        Report(figure, meter.Stop());
    }

    void ExpectColumn(std::int32_t col, std::string_view start) {
        for (std::int32_t row = 1; row <= m_rows; ++row) {
            const std::string_view text = m_driver.Grid().TextMatrix(row, col);
            if (!text.starts_with(start) ||
                text.find_first_not_of('0', start.size()) != std::string_view::npos ||
                m_driver.Grid().BackColor(row, col) != ChangedColour) {
                Expect(false, "every cell is " + std::string(start) + ": " + std::string(text));
            }
        }
    }

    Driver& m_driver;
    std::int32_t m_rows;
};

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t Occurrences(const std::string& text, const std::string& word) {
    std::size_t count = 0;
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + word.size())) {
        ++count;
    }
    return count;
}

/// Changes the first variable of these views, and commits them.
void CommitViews(Driver& driver, const char* figure, const std::vector<std::int32_t>& views,
                 const char* text) {
    Desk& desk = driver.Program().Form().Controls();
    for (const std::int32_t view : views) {
        SetCellValue(desk, driver.Program().Data().gFiles->Ref(view).BegFieldPtr(), UnitsCol, text);
    }
    Driver::Settle();
    Meter meter;
    driver.When("frmCommit", [](QWidget& dialog) { Guide::Press(dialog, "cmdOk"); });
    driver.When("MessageBox", [&](QWidget& window) {
        Report(figure, meter.Stop());
        auto& box = dynamic_cast<QMessageBox&>(window);
        Expect(box.text().toStdString() == std::to_string(views.size()) + " File(s) have been modified.",
               "the box tells so: " + box.text().toStdString());
        box.accept();
    });
    driver.Choose("mnuFile", "mnuCommit");
}

std::vector<std::int32_t> Every(std::int32_t first, std::int32_t last, std::int32_t step) {
    std::vector<std::int32_t> views;
    for (std::int32_t view = first; view <= last; view += step) {
        views.push_back(view);
    }
    return views;
}

std::size_t ApplicationsOf(const std::vector<std::int32_t>& views) {
    std::set<std::int32_t> applications;
    for (const std::int32_t view : views) {
        applications.insert((view - 1) / ViewsAnApplication);
    }
    return applications.size();
}

/// Every view that was changed has the text, and every record of it is in the change files.
void ExpectCommitted(const std::string& copy, std::size_t files, std::size_t views, const std::string& text) {
    std::size_t changed = 0;
    std::size_t archived = 0;
    std::size_t logged = 0;
    std::size_t reported = 0;
    for (const std::string& path : AllFiles(copy)) {
        if (path.find("/Archive/") != std::string::npos) {
            ++archived;
            continue;
        }
        const std::string extension = fs::path(path).extension().string();
        const std::size_t count = Occurrences(Content(path), text);
        (extension.starts_with(".KDL")   ? logged
         : extension.starts_with(".KDM") ? reported
                                         : changed) += count;
        Expect(extension != ".temp", "nothing is left behind");
    }
    Expect(changed == views, "changed views on the disk: " + std::to_string(changed));
    Expect(archived >= files, "archived files: " + std::to_string(archived));
    Expect(logged == views && reported == views, "records of the changes: " + std::to_string(logged));
}

}  // namespace

void RunProgram(const std::string& folder, const std::string& scratch) {
    const Screen screen(scratch);
    Driver driver(folder, scratch);
    Cost start;
    Cost load;
    StartAndLoad(driver, AllFiles(folder).size(), start, load);
    Report("start", start);
    Report("load", load);
    Session session(driver);
    session.ViewModes();
    session.Filter();
    session.Scroll();
    session.Validate();
    session.Edits();
}

void RunCommit(const std::string& folder, const std::string& scratch) {
    const std::string copy = scratch + "/commit";
    const std::size_t files = AllFiles(folder).size();
    fs::copy(folder, copy, fs::copy_options::recursive);
    (void)RunCommand({"sync"});
    const Screen screen(scratch);
    Driver driver(copy, scratch);
    Cost start;
    Cost load;
    StartAndLoad(driver, files, start, load);
    Report("load of the copy", load);
    const auto views = static_cast<std::int32_t>(files);
    std::size_t archived = 0;
    const auto commit = [&](const char* figure, const std::vector<std::int32_t>& picked, const char* text) {
        CommitViews(driver, figure, picked, text);
        archived += static_cast<std::size_t>(ViewsAnApplication) * ApplicationsOf(picked);
        ExpectCommitted(copy, archived, picked.size(), text);
    };
    commit("commit all", Every(1, views, 1), "unit-of-all");
    commit("commit one", {1}, "unit-of-one");
    commit("commit one each", Every(1, views, ViewsAnApplication), "unit-of-each");
    commit("commit six", {1, 2, 7, 8, 13, 14}, "unit-of-six");
}

}  // namespace kd::bench
