#include "CountedSteps.h"

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>

#include "CoreBench.h"
#include "commit/CommitChanges.h"
#include "commit/frmCommit.h"
#include "edit/Fill.h"
#include "edit/Replace.h"
#include "edit/RestoreCutCopyPaste.h"
#include "edit/frmFill.h"
#include "edit/frmReplace.h"
#include "grid/AutoFilter.h"
#include "grid/CellGate.h"
#include "grid/frmAutoFilter.h"
#include "model/Columns.h"

namespace kd::bench {

namespace {

namespace fs = std::filesystem;

// Screen positions of columns.
constexpr std::int32_t NameCol = cnVariableName - 1;
constexpr std::int32_t UslCol = cnUSL - 1;
constexpr std::int32_t UclCol = cnUCL - 1;
constexpr std::int32_t UnitsCol = cnUnits - 1;

void Step(const char* name, const std::function<void()>& work) {
    KdCounted(work);
    (void)std::printf("%s\n", name);
}

/// The loaded program, with the hands of a user.
class Session {
public:
    explicit Session(const std::string& folder) : m_bench(folder) {}

    void Load() { m_bench.Load(); }
    bool HasRows() { return Rows() > 0; }
    std::int32_t Variables() { return m_bench.desk.g.gFields->Count(); }

    void Filter() {
        m_bench.machine.toolkit.user = [this](Form& form) {
            auto& filter = dynamic_cast<frmAutoFilter&>(form);
            filter.chkSelectAll.UserClick();
            filter.lstAutoFilter.SetSelectedRange(0, Rows() / 2 - 1, true);
            filter.cmdOk.UserClick();
        };
        Step("filter", [this] { ShowColumnFilter(Desk(), NameCol, {}); });
        Expect(Desk().Grid.VisibleRows().size() == static_cast<std::size_t>(Rows() / 2), "half is shown");
        ClearAllFilters(Desk());
    }

    void CheckLimits() {
        bool good = false;
        Step("limit check", [&] { good = !ValidateLimits(Desk()); });
        Expect(good, "the limits of the files are in order");
    }

    void Edit() {
        MakeAllNumeric(m_bench.machine.g);
        SelectColumn(UclCol);
        m_bench.machine.toolkit.user = [](Form& form) {
            auto& fill = dynamic_cast<frmFill&>(form);
            fill.txtConstant.UserType("12.5");
            fill.cmdOk.UserClick();
        };
        Step("fill", [this] { Fill(Desk(), m_memory); });
        ExpectColumn(UclCol, "12.50");
        SelectColumn(UclCol);
        Copy(Desk());
        Desk().Grid.Select(1, UslCol);
        Step("paste", [this] { Paste(Desk()); });
        ExpectColumn(UslCol, "12.50");
        SelectColumn(UslCol);
        m_bench.machine.toolkit.user = [](Form& form) {
            auto& replace = dynamic_cast<frmReplace&>(form);
            replace.txtFind.UserType("2.5");
            replace.txtReplace.UserType("4.25");
            replace.cmdReplace.UserClick();
        };
        Step("replace", [this] { Replace(Desk(), m_memory); });
        ExpectColumn(UslCol, "14.25");
    }

    /// Changes a variable of each view, and commits all views.
    void Commit() {
        const std::int32_t views = Desk().g.gFiles->Count();
        for (std::int32_t view = 1; view <= views; ++view) {
            SetCellValue(Desk(), Desk().g.gFiles->Ref(view).BegFieldPtr(), UnitsCol, "unit-of-all");
        }
        m_bench.machine.toolkit.user = [](Form& form) { dynamic_cast<frmCommit&>(form).cmdOk.UserClick(); };
        m_bench.machine.toolkit.box = std::to_string(views) + " File(s) have been modified.";
        Step("commit", [this] { CommitChanges(Desk()); });
        Expect(m_bench.machine.toolkit.box.empty(), "all views are written");
    }

private:
    kd::Desk& Desk() { return m_bench.desk; }
    std::int32_t Rows() { return m_bench.desk.Grid.Rows() - 1; }

    void SelectColumn(std::int32_t screenCol) {
        Desk().Grid.Select(1, screenCol);
        Desk().Grid.ExtendSelection(Rows(), screenCol);
    }

    void ExpectColumn(std::int32_t screenCol, std::string_view start) {
        for (std::int32_t row = 1; row <= Rows(); ++row) {
            Expect(Desk().Grid.TextMatrix(row, screenCol).starts_with(start), "every cell is written");
        }
    }

    Bench m_bench;
    EditMemory m_memory;
};

std::uintmax_t BytesOf(const std::string& folder) {
    std::uintmax_t bytes = 0;
    for (const std::string& path : AllFiles(folder)) {
        bytes += fs::file_size(path);
    }
    return bytes;
}

}  // namespace

void CountSteps(const std::string& folder, const std::string& scratch) {
    const std::string copy = scratch + "/commit";
    fs::copy(folder, copy, fs::copy_options::recursive);
    {
        Bench bench(folder);
        Step("read", [&] { bench.Read(); });
        bench.ExpectRead();
    }
    auto session = std::make_unique<Session>(folder);
    Step("texts", [&] { session->Load(); });
    const std::int32_t variables = session->Variables();
    if (session->HasRows()) {
        session->Filter();
        session->CheckLimits();
        session->Edit();
        session = std::make_unique<Session>(copy);
        session->Load();
        session->Commit();
    }
    (void)std::printf("variables %d\nbytes %ju\n", variables, BytesOf(folder));
}

}  // namespace kd::bench
