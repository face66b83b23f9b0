#include "help/frmAbout.h"

#include "base/NumberTexts.h"
#include "help/Maker.h"

namespace kd {

frmAbout::frmAbout(Globals& g) : Form("frmAbout"), m_g(g) {
    SetCaption("About");
    cmdOk.SetCaption("&OK");
    cmdOk.Click = [this] { Hide(); };
    lblWebsite.Click = [this] { lblWebsite_Click(); };
    lblEmail.Click = [this] { lblEmail_Click(); };
}

void frmAbout::Display() {
    Form_Load();
    m_g.platform.toolkit.ShowModal(*this);
}

Text frmAbout::VersionText(int major, int minor, int revision) {
    return Digits(major) + "." + Digits(minor) + " Build " + Digits(revision);
}

void frmAbout::Form_Load() {
    Destroy();  // its last showing leaves nothing behind
    lblAppTitle.SetCaption(Text(maker::ProgramTitle));
    lblVersion.SetCaption(VersionText(KD_VERSION_MAJOR, KD_VERSION_MINOR, KD_VERSION_REVISION));
    lblCompanyInfo.SetCaption(Text(maker::CompanyInfo));
    lblWebsite.SetCaption(Text(maker::Website));
    lblEmail.SetCaption(Text(maker::Email));
}

void frmAbout::lblWebsite_Click() {
    m_g.platform.shell.Open(lblWebsite.Caption());
}

void frmAbout::lblEmail_Click() {
    // Nothing is escaped: the mail programs of the suite's users take it so.
    m_g.platform.shell.Open("mailto:" + lblEmail.Caption() + "?Subject=" + Text(maker::ProgramTitle) +
                            "&Body=");
}

}  // namespace kd
