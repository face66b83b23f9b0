#pragma once

#include "model/Globals.h"
#include "platform/SelectAll.h"
#include "platform/Toolkit.h"

namespace kd {

/// The dialog that lets the user pick among the changed views.
class frmCommit : public Form {
public:
    explicit frmCommit(Globals& g);

    /// Clears Selected of all views, fills the list with the changed ones, all selected, and shows the
    /// dialog.
    void Display();
    /// Whether the user cancelled; true until Ok succeeds.
    bool Cancel() const noexcept { return m_cancel; }
    /// Empties the list too.
    void Destroy() override;
    /// Closing the window counts as Cancel.
    void UserClose() override;
    /// 0 none selected, 1 all selected (an empty list too), 2 some selected. Called by tests: the check box
    /// has the same state.
    std::int32_t ListState() const { return m_selectAll.GetCheckState(); }

    Label Label1{"Label1"};
    ListBox lstFiles{"lstFiles"};  // multi-selection; an entry's data is the view's position in gFiles
    CheckBox chkSelectAll{"chkSelectAll"};
    Button cmdOk{"cmdOk"};          // default button
    Button cmdCancel{"cmdCancel"};  // cancel button

private:
    void cmdOk_Click();
    void cmdCancel_Click();
    Text EntryText(const cFile& file) const;

    Globals& m_g;
    SelectAll m_selectAll{chkSelectAll, lstFiles};
    bool m_cancel = true;
};

}  // namespace kd
