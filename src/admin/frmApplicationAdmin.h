#pragma once

#include <vector>

#include "model/Globals.h"
#include "platform/Toolkit.h"
#include "platform/VSFlexGrid.h"

namespace kd {

namespace modKDLimitDesk {
/// Where the Add dialog opens.
Text DefaultApplicationFolder(Globals& g);
}  // namespace modKDLimitDesk

/// The dialog that shows the list of applications.
class frmApplicationAdmin : public Form {
public:
    explicit frmApplicationAdmin(Globals& g);

    /// Fills the grid from gMasterFiles, every row shown, and shows the dialog.
    void Display();
    /// Whether the user cancelled; true until Ok succeeds.
    bool Cancel() const noexcept { return m_cancel; }
    /// Whether a row was added or removed.
    bool Changed() const noexcept { return m_changed; }

    Label Label1{"Label1"};
    ComboBox cboFilter{"cboFilter"};  // in Courier New
    Button cmdFilter{"cmdFilter"};
    VSFlexGrid Grid{"Grid"};  // one column; rows are selected and unselected one by one
    Button cmdAddApplication{"cmdAddApplication"};
    Button cmdRemoveApplication{"cmdRemoveApplication"};
    Button cmdHelp{"cmdHelp"};
    Button cmdOk{"cmdOk"};
    Button cmdCancel{"cmdCancel"};

    /// What the Help button does; nothing when empty.
    std::function<void()> ShowHelp;

private:
    void cmdFilter_Click();
    bool cboFilter_Enter();
    void cboFilter_DropDown();
    void cmdAddApplication_Click();
    void cmdRemoveApplication_Click();
    void cmdOk_Click();
    void cmdCancel_Click();
    /// Appends a row for each path that no row has yet, in any case. Returns the paths that were there
    /// already, a line each.
    Text AddFiles(const std::vector<Text>& chosen);
    void RememberCriterion(const Text& criterion);
    bool Matches(std::string_view criteria, std::string_view path) const;

    Globals& m_g;
    Text m_appliedFilter;
    bool m_cancel = true;
    bool m_changed = false;
};

}  // namespace kd
