#include "admin/frmApplicationAdmin.h"

#include <algorithm>
#include <unordered_set>
#include <utility>
#include <vector>

#include "admin/modBrowseForFile.h"
#include "base/Paths.h"
#include "model/modKDLimitDesk.h"
#include "platform/Hourglass.h"
#include "platform/RedrawOff.h"

namespace kd {

using namespace modKDLimitDesk;

namespace {

/// Most filter criteria that are remembered.
constexpr std::int32_t MostRecents = 20;

}  // namespace

Text modKDLimitDesk::DefaultApplicationFolder(Globals& g) {
    return GetSuiteContext(g).ApplicationsFolder();
}

frmApplicationAdmin::frmApplicationAdmin(Globals& g) : Form("frmApplicationAdmin"), m_g(g) {
    SetCaption(Text(WindowTitle) + " - Manage Applications");
    Label1.SetCaption("Enter filter criteria separated by spaces");
    cmdFilter.SetCaption("Apply");
    cmdAddApplication.SetCaption("Add Application(s)");
    cmdRemoveApplication.SetCaption("Remove Applications(s)");
    cmdHelp.SetCaption("Help");
    cmdOk.SetCaption("Ok");
    cmdCancel.SetCaption("Cancel");
    Grid.SetCols(1);

    cmdFilter.Click = [this] { cmdFilter_Click(); };
    cboFilter.Click = [this] { cmdFilter_Click(); };
    cboFilter.Enter = [this] { return cboFilter_Enter(); };
    cboFilter.DropDown = [this] { cboFilter_DropDown(); };
    cmdAddApplication.Click = [this] { cmdAddApplication_Click(); };
    cmdRemoveApplication.Click = [this] { cmdRemoveApplication_Click(); };
    cmdHelp.Click = [this] {
        if (ShowHelp) {
            ShowHelp();
        }
    };
    cmdOk.Click = [this] { cmdOk_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmApplicationAdmin::Display() {
    m_changed = false;
    {
        const RedrawOff quiet(Grid);
        Grid.SetRows(m_g.gMasterFiles->Count() + 1);
        Grid.SetTextMatrix(0, 0, "List of Active Applications");
        std::int32_t row = 0;
        for (const auto& file : *m_g.gMasterFiles) {
            Grid.SetTextMatrix(++row, 0, file->Filename());
        }
    }
    m_g.platform.toolkit.ShowModal(*this);
}

bool frmApplicationAdmin::Matches(std::string_view criteria, std::string_view path) const {
    const CodePage& page = m_g.platform.locale.CodePage();
    const Text wanted = page.Upper(criteria);
    const Text present = page.Upper(path);
    // Nothing occurs in an empty row, not even the empty text.
    const auto occurs = [&](std::string_view part) {
        return !present.empty() && present.find(part) != Text::npos;
    };
    const auto holds = [&](std::string_view criterion) {
        const auto parts = Split(criterion, '|');
        return parts.empty() ? occurs(criterion) : std::any_of(parts.begin(), parts.end(), occurs);
    };
    const auto all = Split(wanted, ' ');
    return std::all_of(all.begin(), all.end(), holds);
}

void frmApplicationAdmin::cmdFilter_Click() {
    const Text criteria = cboFilter.Value();
    m_appliedFilter = criteria;
    const RedrawOff quiet(Grid);
    if (criteria.empty()) {
        for (std::int32_t row = 1; row < Grid.Rows(); ++row) {
            Grid.SetRowHidden(row, false);
        }
        return;
    }
    const Hourglass hourglass(m_g.platform.toolkit);
    for (std::int32_t row = 1; row < Grid.Rows(); ++row) {
        Grid.SetIsSelected(row, false);
        Grid.SetRowHidden(row, !Matches(criteria, Grid.TextMatrix(row, 0)));
    }
}

bool frmApplicationAdmin::cboFilter_Enter() {
    if (cboFilter.Value() == m_appliedFilter) {
        return false;
    }
    cmdFilter_Click();
    return true;
}

void frmApplicationAdmin::cboFilter_DropDown() {
    std::vector<Text> entries{Text()};
    for (const auto& recent : *m_g.gRecents) {
        entries.push_back(recent->Criteria());
    }
    cboFilter.SetEntries(std::move(entries));
}

void frmApplicationAdmin::cmdAddApplication_Click() {
    auto chosen =
        modBrowseForFile::BrowseForFiles(m_g.platform, DefaultApplicationFolder(m_g), "Add Applications",
                                         "Kestrix Applications", {"*.kdt", "*.kdt6"}, true);
    if (!chosen || chosen->empty()) {
        return;
    }
    std::vector<Text> files(chosen->begin() + (chosen->size() == 1 ? 0 : 1), chosen->end());
    if (chosen->size() > 1) {
        for (Text& file : files) {
            file = paths::InFolder(chosen->front(), file, m_g.platform.files.Delimiter());
        }
    }
    const Text duplicates = AddFiles(files);
    if (!duplicates.empty()) {
        Text warning = "WARNING - The following selected files were already added:";
        warning += CrLf;
        warning += CrLf;
        m_g.platform.toolkit.Say(warning + duplicates, BoxIcon::Exclamation, "Duplicate Files");
    }
}

Text frmApplicationAdmin::AddFiles(const std::vector<Text>& chosen) {
    const CodePage& page = m_g.platform.locale.CodePage();
    std::unordered_set<Text> known;
    for (std::int32_t row = 1; row < Grid.Rows(); ++row) {
        known.insert(page.Upper(Grid.TextMatrix(row, 0)));
    }
    Text duplicates;
    for (const Text& path : chosen) {
        if (!known.insert(page.Upper(path)).second) {
            duplicates += path;
            duplicates += CrLf;
            continue;
        }
        const std::int32_t row = Grid.Rows();
        Grid.SetRows(row + 1);
        Grid.SetTextMatrix(row, 0, path);
        Grid.ShowCell(row, 0);
        m_changed = true;
    }
    return duplicates;
}

void frmApplicationAdmin::cmdRemoveApplication_Click() {
    const RedrawOff quiet(Grid);
    for (std::int32_t row = Grid.Rows() - 1; row >= 1; --row) {
        if (Grid.IsSelected(row) && !Grid.RowHidden(row)) {
            Grid.RemoveItem(row);
            m_changed = true;
        }
    }
}

void frmApplicationAdmin::cmdOk_Click() {
    Toolkit& toolkit = m_g.platform.toolkit;
    if (Grid.Rows() <= 1) {
        toolkit.Say("You must have at least one application.", BoxIcon::Exclamation, WindowTitle);
        return;
    }
    if (Grid.VisibleRows().empty()) {
        toolkit.Say("You must have at least one application selected.", BoxIcon::Exclamation, WindowTitle);
        return;
    }
    if (!cboFilter.Value().empty()) {
        RememberCriterion(cboFilter.Value());
    }
    m_cancel = false;
    Hide();
}

void frmApplicationAdmin::RememberCriterion(const Text& criterion) {
    const CodePage& page = m_g.platform.locale.CodePage();
    cRecents& recents = *m_g.gRecents;
    std::int32_t last = 0;
    for (std::int32_t position = 1; position <= recents.Count() && last == 0; ++position) {
        if (page.Upper(recents.Ref(position).Criteria()) == page.Upper(criterion)) {
            last = position;
        }
    }
    if (last == 0) {
        if (recents.Count() < MostRecents) {
            recents.Add({});
        }
        last = recents.Count();
    }
    for (std::int32_t position = last; position >= 2; --position) {
        recents.Ref(position).SetCriteria(recents.Ref(position - 1).Criteria());
    }
    recents.Ref(1).SetCriteria(criterion);
}

void frmApplicationAdmin::cmdCancel_Click() {
    m_cancel = true;
    Hide();
}

}  // namespace kd
