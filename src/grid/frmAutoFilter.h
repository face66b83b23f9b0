#pragma once

#include <memory>
#include <utility>

#include "model/Globals.h"
#include "platform/SelectAll.h"
#include "platform/Toolkit.h"

namespace kd {

/// The dialog that offers a column's distinct values and lets the user tick which ones stay in sight. Made
/// for one header press, and shown at the place that the command gives it.
class frmAutoFilter : public Form {
public:
    explicit frmAutoFilter(Globals& g);

    /// Whether the user cancelled; true until Ok succeeds.
    bool Cancel() const noexcept { return m_cancel; }
    /// The column's title. Only tests read it; the screen goes by Caption.
    const Text& FormCaption() const noexcept { return Caption(); }
    void SetFormCaption(Text value) { SetCaption(std::move(value)); }
    /// The entries on offer; after Ok the list's entries in its order, each with its tick. Never null.
    const std::shared_ptr<cFilters>& Filters();
    void SetFilters(std::shared_ptr<cFilters> value) { m_filters = std::move(value); }

    /// Fills the list from Filters and shows the dialog.
    void Display();
    /// Number of entries of Filters that are selected.
    std::int32_t SelectedCount();

    CheckBox chkSelectAll{"chkSelectAll"};   // three states; above the list
    ListBox lstAutoFilter{"lstAutoFilter"};  // ticks; sorted by the upper-cased text, character by character
    Button cmdOk{"cmdOk"};                   // default button
    Button cmdCancel{"cmdCancel"};           // cancel button

private:
    void cmdOk_Click();
    void cmdCancel_Click();
    std::vector<ListBox::Entry> SortedEntries();

    Globals& m_g;
    std::shared_ptr<cFilters> m_filters = std::make_shared<cFilters>();
    SelectAll m_selectAll{chkSelectAll, lstAutoFilter};
    bool m_cancel = true;
};

}  // namespace kd
