#include "walk/WalkWatch.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "grid/ColumnCatalogue.h"
#include "model/PropertyTable.h"
#include "model/modKDLimitDesk.h"

namespace kd {

WalkWatch::WalkWatch(std::string folder, std::function<void(const std::string&)> fail)
    : m_folder(std::move(folder)), m_fail(std::move(fail)) {}

void WalkWatch::Begin(Application& program) {
    m_program = &program;
    m_newBaseline = true;
    m_changed.clear();
    m_files = Files();
    m_writable.clear();
    m_events = 0;
}

void WalkWatch::Look() {
    ++m_looks;
    if (CheckCells()) {
        CheckHeader();
        CheckPutBack();
        CheckFiles();
    }
    m_events = 0;
}

void WalkWatch::LookInJob() {
    (void)CheckCells();
}

/// Whether all is well.
bool WalkWatch::CheckCells() {
    const Globals& g = m_program->Data();
    const VSFlexGrid& grid = m_program->Form().Controls().Grid;
    if (g.gFields->Count() != g.gSavedFields->Count()) {
        m_fail("variables and baseline are not of one length");
        return false;
    }
    KeepRules();
    std::vector<bool> marked(static_cast<std::size_t>(g.gFiles->Count()) + 1);
    for (std::int32_t row = 1; row < grid.Rows(); ++row) {
        for (std::int32_t screenCol = 0; screenCol < grid.Cols(); ++screenCol) {
            if (!CheckCell(row, screenCol, marked)) {
                return false;
            }
        }
    }
    CheckViews(marked);
    return true;
}

bool WalkWatch::CheckCell(std::int32_t row, std::int32_t screenCol, std::vector<bool>& marked) {
    const Globals& g = m_program->Data();
    const VSFlexGrid& grid = m_program->Form().Controls().Grid;
    const std::int32_t column = grid.ColData(screenCol);
    const cField& field = g.gFields->Ref(grid.RowData(row));
    const bool mark = grid.BackColor(row, screenCol) != 0;
    const auto fail = [&](const std::string& what) {
        m_fail(what + " in row " + std::to_string(row) + ", column " + std::to_string(column) + ": " +
               Text(grid.TextMatrix(row, screenCol)));
        return false;
    };
    if (column < FirstVariableColumn) {
        return !mark || fail("a mark where nothing can change");
    }
    const Text text = field.ValueText(column, vmGrid, g.platform.locale);
    if (grid.TextMatrix(row, screenCol) != text) {
        return fail("a cell does not show its value, " + text + ",");
    }
    if (mark) {
        ++m_marks;
        marked[static_cast<std::size_t>(field.FileID())] = true;
        return grid.BackColor(row, screenCol) == ChangedColour || fail("a colour that is no mark");
    }
    const Text saved = g.gSavedFields->Ref(grid.RowData(row)).ValueText(column, vmGrid, g.platform.locale);
    return MayStandUnmarked(row, column, text, saved) || fail("a change without a mark, from " + saved + ",");
}

bool WalkWatch::MayStandUnmarked(std::int32_t row, std::int32_t column, const Text& text,
                                 const Text& saved) const {
    if (text == saved) {
        return true;
    }
    if (column == cnRules) {
        // The baseline has the file's letters, the grid the catalogue's until somebody writes there.
        return text == m_rules[static_cast<std::size_t>(row)];
    }
    // What is written back is written in capitals.
    return PropertyOf(column).kind == vkCapitals &&
           m_program->Data().platform.locale.CodePage().Upper(saved) == text;
}

/// A view with a mark has changed; one that has changed between two looks an event apart has a mark.
void WalkWatch::CheckViews(const std::vector<bool>& marked) {
    const Globals& g = m_program->Data();
    m_changed.resize(marked.size());
    bool any = false;
    for (std::int32_t at = 1; at <= g.gFiles->Count(); ++at) {
        const auto view = static_cast<std::size_t>(at);
        const bool changed = g.gFiles->Ref(at).ChangesMade();
        any = any || changed;
        if (marked[view] && !changed) {
            m_fail("view " + std::to_string(at) + " has a mark and knows of no change");
        }
        if (changed && !m_changed[view] && !marked[view] && m_events <= 1) {
            m_fail("view " + std::to_string(at) + " claims a change that is nowhere");
        }
        m_changed[view] = changed;
    }
    if (any != modKDLimitDesk::AnyChanges(g)) {
        m_fail("AnyChanges does not tell the truth");
    }
}

void WalkWatch::KeepRules() {
    const Globals& g = m_program->Data();
    if (!m_newBaseline && m_rules.size() == static_cast<std::size_t>(g.gFields->Count()) + 1) {
        return;
    }
    m_rules.assign(1, {});
    for (const auto& field : *g.gFields) {
        m_rules.push_back(field->Rules());
    }
    m_changed.clear();
    m_newBaseline = false;
}

/// A red funnel stands exactly where a column has a filter, and a row of a filtered column is in sight only
/// if something else than the filter has brought it there.
void WalkWatch::CheckHeader() {
    const Globals& g = m_program->Data();
    const VSFlexGrid& grid = m_program->Form().Controls().Grid;
    for (std::int32_t screenCol = 0; screenCol < grid.Cols(); ++screenCol) {
        const bool filtered = g.gLabels->Ref(grid.ColData(screenCol)).Filters()->Count() > 0;
        if (filtered != (grid.CellPicture(screenCol) == HeaderPicture::FilterOn)) {
            m_fail("the funnel of position " + std::to_string(screenCol) + " does not tell its filter");
        }
    }
}

/// What a job switches on is off when the user has the word again.
void WalkWatch::CheckPutBack() {
    Desk& desk = m_program->Form().Controls();
    if (!desk.Grid.Redraw()) {
        m_fail("the grid does not redraw");
    }
    if (m_program->Screen().MousePointer() != Pointer::Default) {
        m_fail("the hourglass stays");
    }
    if (desk.ProgressBar1.Value() != 0) {
        m_fail("the progress bar stays");
    }
}

void WalkWatch::CheckFiles() {
    auto now = Files();
    for (const auto& [path, stamp] : now) {
        const auto before = m_files.find(path);
        const bool written = before == m_files.end() || before->second != stamp;
        const auto within = [&path = path](const std::string& folder) { return path.starts_with(folder); };
        if (written && std::none_of(m_writable.begin(), m_writable.end(), within)) {
            m_fail("a file was written that no command had to write: " + path);
        }
        if (path.ends_with(".temp")) {
            m_fail("a temporary file was left: " + path);
        }
    }
    for (const auto& [path, stamp] : m_files) {
        if (!now.contains(path)) {
            m_fail("a file is gone: " + path);
        }
    }
    m_files = std::move(now);
    m_writable.clear();
}

std::map<std::string, WalkWatch::Stamp> WalkWatch::Files() const {
    std::map<std::string, Stamp> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_folder)) {
        struct stat about {};
        if (entry.is_regular_file() && ::lstat(entry.path().c_str(), &about) == 0) {
            files[entry.path().string()] = {about.st_ino, static_cast<std::uint64_t>(about.st_size),
                                            about.st_mtim.tv_sec * 1'000'000'000LL + about.st_mtim.tv_nsec};
        }
    }
    return files;
}

}  // namespace kd
