#include "grid/AutoFilter.h"

#include <cstddef>
#include <functional>
#include <memory_resource>
#include <string>
#include <unordered_set>
#include <utility>

#include "grid/ColumnCatalogue.h"
#include "grid/frmAutoFilter.h"
#include "platform/Hourglass.h"
#include "platform/RedrawOff.h"

namespace kd {
namespace {

constexpr std::string_view Blank = "(Blank)";
// From the grid's cell to the dialog, in pixels: the second one stands for the window's caption and menu bar.
constexpr std::int32_t DialogRight = 10;
constexpr std::int32_t DialogBelow = 50;

/// For a search by a text that is no Text of its own.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        return std::hash<std::string_view>()(text);
    }
};
struct SameText {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept { return a == b; }
};
/// Texts in upper case; a large column has tens of thousands, which are freed at once.
using TextSet = std::pmr::unordered_set<std::pmr::string, TextHash, SameText>;

/// A filtered column with its entries.
struct ColumnFilter {
    std::int32_t screenCol;
    TextSet names;
};

const CodePage& PageOf(const Desk& desk) {
    return desk.g.platform.locale.CodePage();
}

cFilters& FiltersOf(const Desk& desk, std::int32_t screenCol) {
    return *LabelOf(desk, screenCol).Filters();
}

/// A cell's text in upper case, good until the next call with the same buffer.
std::string_view UpperCell(const Desk& desk, std::int32_t row, std::int32_t screenCol, Text& buffer) {
    buffer.clear();
    PageOf(desk).AppendUpper(desk.Grid.TextMatrix(row, screenCol), buffer);
    return buffer;
}

/// The filtered columns but `except`.
std::vector<ColumnFilter> ActiveFilters(const Desk& desk, std::int32_t except = -1) {
    std::vector<ColumnFilter> active;
    for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {
        const cFilters& filters = FiltersOf(desk, col);
        if (col == except || filters.Count() == 0) {
            continue;
        }
        ColumnFilter column{col, {}};
        column.names.reserve(static_cast<std::size_t>(filters.Count()));
        for (const auto& filter : filters) {
            column.names.emplace(PageOf(desk).Upper(filter->Name()));
        }
        active.push_back(std::move(column));
    }
    return active;
}

bool PassesAll(const Desk& desk, std::int32_t row, const std::vector<ColumnFilter>& active, Text& buffer) {
    for (const ColumnFilter& column : active) {
        if (!column.names.contains(UpperCell(desk, row, column.screenCol, buffer))) {
            return false;
        }
    }
    return true;
}

/// What the list shows for a cell's text.
Text Offered(Text value) {
    return Trim(value).empty() ? Text(Blank) : std::move(value);
}

void OfferValues(const Desk& desk, std::int32_t screenCol, frmAutoFilter& form) {
    const cFilters& filters = FiltersOf(desk, screenCol);
    TextSet ticked;
    for (const auto& filter : filters) {
        ticked.emplace(PageOf(desk).Upper(filter->Name().empty() ? Blank : std::string_view(filter->Name())));
    }
    for (Text& value : GetColumnValues(desk, screenCol)) {
        Text offered = Offered(std::move(value));
        const bool selected = filters.Count() == 0 || ticked.contains(PageOf(desk).Upper(offered));
        form.Filters()->Add(std::move(offered), selected);
    }
}

/// Takes over what was ticked: all of it is no filter at all.
void TakeFilter(Desk& desk, std::int32_t screenCol, frmAutoFilter& form) {
    cFilters& filters = FiltersOf(desk, screenCol);
    filters.Clear();
    if (form.SelectedCount() == form.Filters()->Count()) {
        desk.Grid.SetCellPicture(screenCol, HeaderPicture::FilterOff);
        return;
    }
    for (const auto& offered : *form.Filters()) {
        if (offered->Selected()) {
            filters.Add(Trim(offered->Name()) == Blank ? Text() : offered->Name(), true);
        }
    }
    desk.Grid.SetCellPicture(screenCol, HeaderPicture::FilterOn);
}

}  // namespace

void ShowColumnFilter(Desk& desk, std::int32_t screenCol, const Place& grid) {
    Toolkit& toolkit = desk.g.platform.toolkit;
    frmAutoFilter form(desk.g);
    {
        const Hourglass hourglass(toolkit);
        form.SetFormCaption(LabelOf(desk, screenCol).Name());
        desk.Grid.Select(0, screenCol);
        form.SetOwnPlace({grid.left + desk.Grid.CellLeft() + DialogRight,
                          grid.top + desk.Grid.CellTop() + desk.Grid.CellHeight() + DialogBelow});
        toolkit.ProcessEvents();
        OfferValues(desk, screenCol, form);
    }
    form.Display();
    if (form.Cancel()) {
        form.Destroy();
        return;
    }
    toolkit.ProcessEvents();
    {
        const Hourglass hourglass(toolkit);
        const RedrawOff quiet(desk.Grid);
        TakeFilter(desk, screenCol, form);
        form.Destroy();
        ApplyFilters(desk);
    }
    toolkit.ProcessEvents();
}

Text GetFilterCaption(const Desk& desk, std::int32_t screenCol) {
    if (screenCol < 0) {
        return {};
    }
    const cFilters& filters = FiltersOf(desk, screenCol);
    if (filters.Count() == 0) {
        return CountActiveFilters(desk) > 0 ? " (Showing All) " : " Click to Filter Column ";
    }
    constexpr std::string_view separator = ", ";
    Text names;
    for (const auto& filter : filters) {
        if (filter->Selected()) {
            names += filter->Name();
            names += separator;
        }
    }
    if (!names.empty()) {
        names.resize(names.size() - separator.size());
    }
    return " Equals \"" + names + "\" ";
}

std::vector<Text> GetColumnValues(const Desk& desk, std::int32_t screenCol) {
    const std::vector<ColumnFilter> others = ActiveFilters(desk, screenCol);
    std::vector<Text> values;
    std::pmr::monotonic_buffer_resource memory;
    TextSet listed(&memory);
    Text buffer;
    listed.reserve(static_cast<std::size_t>(desk.Grid.VisibleRows().size()));  // a guess: most are shown
    for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
        if (FailsNumericRule(desk, row)) {
            continue;
        }
        if (PassesAll(desk, row, others, buffer) &&
            listed.emplace(UpperCell(desk, row, screenCol, buffer)).second) {
            values.emplace_back(desk.Grid.TextMatrix(row, screenCol));
        }
        desk.g.platform.toolkit.KeepAlive();
    }
    return values;
}

std::int32_t CountActiveFilters(const Desk& desk) {
    std::int32_t count = 0;
    for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {
        count += FiltersOf(desk, col).Count() > 0 ? 1 : 0;
    }
    return count;
}

bool FailsNumericRule(const Desk& desk, std::int32_t row) {
    return desk.mnuShowOnlyNumericVariables.Checked() &&
           !IsNumericType(desk.g.gFields->Ref(desk.Grid.RowData(row)).FieldType());
}

void ApplyFilters(Desk& desk) {
    // Taken before the first pass of the message loop, and not asked again: a pass may change anything.
    const std::vector<ColumnFilter> active = ActiveFilters(desk);
    Text buffer;
    for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
        const bool shown = !FailsNumericRule(desk, row) && PassesAll(desk, row, active, buffer);
        desk.Grid.SetRowHidden(row, !shown);
        if (!active.empty()) {
            desk.g.platform.toolkit.ProcessEventsInJob();
        }
    }
}

void DropFilters(Desk& desk) {
    for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {
        FiltersOf(desk, col).Clear();
        desk.Grid.SetCellPicture(col, HeaderPicture::FilterOff);
    }
}

void ClearAllFilters(Desk& desk) {
    const Hourglass hourglass(desk.g.platform.toolkit);
    desk.g.platform.toolkit.ProcessEvents();
    const RedrawOff quiet(desk.Grid);
    DropFilters(desk);
    // Deliberate: the rows of non-numeric variables too, though Show Only Numeric Variables stays ticked.
    // AutoFilterTest.ClearAllFiltersShowsNonNumericRowsToo
    for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
        desk.Grid.SetRowHidden(row, false);
    }
}

}  // namespace kd
