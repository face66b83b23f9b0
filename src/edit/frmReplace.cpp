#include "edit/frmReplace.h"

namespace kd {

frmReplace::frmReplace(Globals& g) : Form("frmReplace"), m_g(g) {
    SetCaption("Replace");
    Label1.SetCaption("Replace in Column:");
    lblFind.SetCaption("Find What:");
    LblReplace.SetCaption("Replace With:");
    chkMatchCase.SetCaption("Match Case");
    cmdReplace.SetCaption("Replace");
    cmdCancel.SetCaption("Cancel");
    cmdReplace.Click = [this] { cmdReplace_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmReplace::Display() {
    if (!m_loaded) {
        m_loaded = true;
        lblColumn.SetCaption(m_labelName);
        txtFind.SetValue(m_findText);
        txtReplace.SetValue(m_replaceText);
    }
    txtFind.SelectAll();
    m_g.platform.toolkit.ShowModal(*this);
}

void frmReplace::cmdReplace_Click() {
    if (txtFind.Value().empty()) {
        m_g.platform.toolkit.Say("Find Text must be specified!", BoxIcon::Exclamation);
        txtFind.SetFocus();
        return;
    }
    // The find text is taken as typed: a character that the code page lacks stands in no cell, and must not
    // find the "?" that stands for such characters.
    m_findText = txtFind.Value();
    m_replaceText = m_g.platform.locale.CodePage().Narrowed(txtReplace.Value());
    m_matchCase = chkMatchCase.Value() == csChecked;
    m_cancel = false;
    Hide();
}

void frmReplace::cmdCancel_Click() {
    m_cancel = true;
    Hide();
}

}  // namespace kd
