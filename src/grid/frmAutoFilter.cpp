#include "grid/frmAutoFilter.h"

#include <algorithm>
#include <vector>

namespace kd {

frmAutoFilter::frmAutoFilter(Globals& g) : Form("frmAutoFilter"), m_g(g) {
    chkSelectAll.SetCaption("(Select All)");
    cmdOk.SetCaption("Ok");
    cmdCancel.SetCaption("Cancel");
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
    lstAutoFilter.SetEntries(SortedEntries());
    m_selectAll.Show();
    m_g.platform.toolkit.ShowModal(*this);
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
    std::vector<Text> keys;
    keys.reserve(keyed.capacity());  // so that none of them moves
    for (const auto& filter : *Filters()) {
        keyed.push_back({keys.emplace_back(page.Upper(filter->Name())), filter.get()});
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

void frmAutoFilter::cmdOk_Click() {
    if (m_selectAll.GetCheckState() == csUnchecked) {
        m_g.platform.toolkit.Say("Must have at least one selection!", BoxIcon::Exclamation, WindowTitle);
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
