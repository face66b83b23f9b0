#include "grid/frmAutoFilter.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kd {

frmAutoFilter::frmAutoFilter(Globals& g) : Form("frmAutoFilter"), m_g(g) {
    chkSelectAll.SetCaption("(Select All)");
    cmdOk.SetCaption("Ok");
    cmdCancel.SetCaption("Cancel");
    chkSelectAll.Click = [this] { chkSelectAll_Click(); };
    lstAutoFilter.SelectionChange = [this] { lstAutoFilter_SelectionChange(); };
    cmdOk.Click = [this] { cmdOk_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

const std::shared_ptr<cFilters>& frmAutoFilter::Filters() {
    if (!m_filters) {
        m_filters = std::make_shared<cFilters>();
    }
    return m_filters;
}

void frmAutoFilter::Display() {
    m_busy = true;
    lstAutoFilter.SetEntries(SortedEntries());
    chkSelectAll.SetValue(GetCheckState());
    lstAutoFilter.SetListIndex(-1);
    m_busy = false;
    m_g.platform.toolkit.ShowModal(*this);
}

void frmAutoFilter::Destroy() {
    if (Shown()) {
        Hide();
    }
}

std::int32_t frmAutoFilter::SelectedCount() {
    std::int32_t count = 0;
    for (const auto& filter : *Filters()) {
        count += filter->Selected() ? 1 : 0;
    }
    return count;
}

std::vector<ListBox::Entry> frmAutoFilter::SortedEntries() {
    struct Keyed {
        std::string_view key;
        const cFilter* filter;
    };
    const CodePage& page = m_g.platform.locale.CodePage();
    std::vector<Keyed> keyed;
    keyed.reserve(static_cast<std::size_t>(Filters()->Count()));
    Text keys;  // all of them, one behind the other
    std::vector<std::size_t> ends;
    for (const auto& filter : *Filters()) {
        page.AppendUpper(filter->Name(), keys);
        ends.push_back(keys.size());
    }
    std::size_t begin = 0;
    for (const auto& filter : *Filters()) {
        const std::size_t end = ends[keyed.size()];
        keyed.push_back({std::string_view(keys).substr(begin, end - begin), filter.get()});
        begin = end;
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const Keyed& a, const Keyed& b) { return a.key < b.key; });
    std::vector<ListBox::Entry> entries;
    entries.reserve(keyed.size());
    for (const Keyed& each : keyed) {
        entries.push_back({each.filter->Name(), each.filter->Selected()});
    }
    return entries;
}

CheckState frmAutoFilter::GetCheckState() const {
    const std::int32_t ticked = lstAutoFilter.SelectedCount();
    if (ticked == lstAutoFilter.Count()) {
        return csChecked;  // an empty list too
    }
    return ticked == 0 ? csUnchecked : csGrayed;
}

void frmAutoFilter::chkSelectAll_Click() {
    if (m_busy) {
        return;
    }
    m_busy = true;
    if (GetCheckState() == csGrayed) {
        chkSelectAll.SetValue(csChecked);
    }
    lstAutoFilter.SetSelectedRange(0, lstAutoFilter.Count() - 1, chkSelectAll.Value() == csChecked);
    chkSelectAll.SetValue(GetCheckState());
    m_busy = false;
}

void frmAutoFilter::lstAutoFilter_SelectionChange() {
    if (m_busy) {
        return;
    }
    m_busy = true;
    chkSelectAll.SetValue(GetCheckState());
    m_busy = false;
}

void frmAutoFilter::cmdOk_Click() {
    if (GetCheckState() == csUnchecked) {
        m_g.platform.toolkit.Say("Must have at least one selection!", BoxIcon::Exclamation, "KD LimitDesk");
        return;
    }
    cmdOk.SetEnabled(false);
    cmdCancel.SetEnabled(false);
    Filters()->Clear();
    for (const ListBox::Entry& entry : lstAutoFilter.Entries()) {
        Filters()->Add(entry.text, entry.selected);
    }
    m_cancel = false;
    Hide();
}

void frmAutoFilter::cmdCancel_Click() {
    Filters()->Clear();
    m_cancel = true;
    Hide();
}

}  // namespace kd
