#pragma once

#include "help/frmAbout.h"
#include "qt/forms/FormDialog.h"

namespace kd {

/// The window of frmAbout.
class AboutDialog : public FormDialog {
public:
    AboutDialog(frmAbout& form, EventBoundary& boundary, QWidget* parent);
};

}  // namespace kd
