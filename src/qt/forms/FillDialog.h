#pragma once

#include "edit/frmFill.h"
#include "qt/forms/FormDialog.h"

namespace kd {

/// The window of frmFill.
class FillDialog : public FormDialog {
public:
    FillDialog(frmFill& form, EventBoundary& boundary, QWidget* parent);
};

}  // namespace kd
