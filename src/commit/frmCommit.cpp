#include "commit/frmCommit.h"

#include <utility>
#include <vector>

#include "appfiles/FileNames.h"

namespace kd {

frmCommit::frmCommit(Globals& g) : Form("frmCommit"), m_g(g) {
    SetCaption(Text(WindowTitle) + " - Commit Changes");
    Label1.SetCaption("The following is a list of applications that have changed:");
    chkSelectAll.SetCaption(" (Select All)");
    cmdOk.SetCaption("Ok");
    cmdCancel.SetCaption("Cancel");
    cmdOk.Click = [this] { cmdOk_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmCommit::Display() {
    m_cancel = true;
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
    m_selectAll.Show();
    m_g.platform.toolkit.ShowModal(*this);
}

void frmCommit::Destroy() {
    Form::Destroy();
    lstFiles.Clear();
}

void frmCommit::UserClose() {
    cmdCancel_Click();
}

void frmCommit::cmdOk_Click() {
    if (lstFiles.SelectedCount() == 0) {
        m_g.platform.toolkit.Say("You must select at least one application!", BoxIcon::Exclamation,
                                 WindowTitle);
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

Text frmCommit::EntryText(const cFile& file) const {
    if (file.ViewNo() == 0) {
        return file.Filename();
    }
    return modKDLimitDesk::SchemaPath(m_g, file) + " [" + file.ViewName() + "]";
}

}  // namespace kd
