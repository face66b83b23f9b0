#pragma once

#include "model/Globals.h"
#include "platform/Toolkit.h"

namespace kd {

/// The About box: title, version, the maker, and two labels that open the web site and a mail to support. One
/// instance is kept for the run; closing unloads it, and each showing loads it anew.
class frmAbout : public Form {
public:
    explicit frmAbout(Globals& g);

    /// Fills the labels and shows the box.
    void Display();

    Label Image1{"Image1"};  // the program's picture
    Label lblAppTitle{"lblAppTitle"};
    Label lblVersion{"lblVersion"};
    Label lblCompanyInfo{"lblCompanyInfo"};  // six lines, CR LF between them
    Label lblWebsite{"lblWebsite"};          // blue and underlined; its text is what a click opens
    Label lblEmail{"lblEmail"};              // blue and underlined; its text is where a click writes to
    Button cmdOk{"cmdOk"};

    /// "major.minor Build revision".
    static Text VersionText(int major, int minor, int revision);

private:
    void Form_Load();
    void lblWebsite_Click();
    void lblEmail_Click();

    Globals& m_g;
};

}  // namespace kd
