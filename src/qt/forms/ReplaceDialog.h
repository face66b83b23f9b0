#pragma once

#include "edit/frmReplace.h"
#include "qt/forms/FormDialog.h"

namespace kd {

/// The window of frmReplace. It has no cancel button that Esc would press.
class ReplaceDialog : public FormDialog {
public:
    ReplaceDialog(frmReplace& form, EventBoundary& boundary, QWidget* parent);
};

}  // namespace kd
