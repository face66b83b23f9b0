#pragma once

#include "grid/frmAutoFilter.h"
#include "qt/forms/FormDialog.h"

namespace kd {

/// The window of frmAutoFilter.
class AutoFilterDialog : public FormDialog {
public:
    AutoFilterDialog(frmAutoFilter& form, EventBoundary& boundary, QWidget* parent);
};

}  // namespace kd
