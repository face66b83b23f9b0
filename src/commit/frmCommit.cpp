#include "commit/frmCommit.h"

#include <utility>
#include <vector>

#include "appfiles/FileNames.h"

namespace kd {

frmCommit::frmCommit(Globals& g) : Form("frmCommit"), m_g(g) {
    SetCaption("KD LimitDesk - Commit Changes");
    Label1.SetCaption("The following is a list of applications that have changed:");
    chkSelectAll.SetCaption(" (Select All)");
    cmdOk.SetCaption("Ok");
    cmdCancel.SetCaption("Cancel");
    cmdOk.Click = [this] { cmdOk_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
    chkSelectAll.Click = [this] { chkSelectAll_Click(); };
    lstFiles.SelectionChange = [this] { lstFiles_SelectionChange(); };
}

void frmCommit::Display() {
    m_cancel = true;
    m_busy = true;
    std::vector<ListBox::Entry> entries;
    std::int32_t index = 0;
    for (const auto& file : *m_g.gFiles) {
        ++index;
        file->SetSelected(false);
        if (file->ChangesMade()) {
            entries.push_back({EntryText(*file), true, index});
        }
    }
    lstFiles.SetEntries(std::move(entries));
    ShowListState();
    lstFiles.SetListIndex(-1);
    m_busy = false;
    m_g.platform.toolkit.ShowModal(*this);
}

void frmCommit::Destroy() {
    if (Shown()) {
        Hide();
    }
    lstFiles.Clear();
}

void frmCommit::UserClose() {
    cmdCancel_Click();
}

std::int32_t frmCommit::ListState() const {
    const std::int32_t count = lstFiles.Count();
    const std::int32_t selected = lstFiles.SelectedCount();
    if (selected == count) {
        return 1;
    }
    return selected == 0 ? 0 : 2;
}

void frmCommit::cmdOk_Click() {
    if (lstFiles.SelectedCount() == 0) {
        m_g.platform.toolkit.Say("You must select at least one application!", BoxIcon::Exclamation,
                                 "KD LimitDesk");
        return;
    }
    for (const ListBox::Entry& entry : lstFiles.Entries()) {
        if (entry.selected) {
            m_g.gFiles->Ref(entry.data).SetSelected(true);
        }
    }
    m_cancel = false;
    Hide();
}

void frmCommit::cmdCancel_Click() {
    m_cancel = true;
    Hide();
}

void frmCommit::chkSelectAll_Click() {
    if (m_busy) {
        return;
    }
    m_busy = true;
    if (ListState() == 2) {
        chkSelectAll.SetValue(csChecked);
    }
    lstFiles.SetSelectedRange(0, lstFiles.Count() - 1, chkSelectAll.Value() == csChecked);
    ShowListState();
    m_busy = false;
}

void frmCommit::lstFiles_SelectionChange() {
    if (m_busy) {
        return;
    }
    m_busy = true;
    ShowListState();
    m_busy = false;
}

void frmCommit::ShowListState() {
    chkSelectAll.SetValue(static_cast<CheckState>(ListState()));
}

Text frmCommit::EntryText(const cFile& file) const {
    if (file.ViewNo() == 0) {
        return file.Filename();
    }
    return modKDLimitDesk::SchemaPath(m_g, file) + " [" + file.ViewName() + "]";
}

}  // namespace kd
