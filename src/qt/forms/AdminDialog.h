#pragma once

#include "admin/frmApplicationAdmin.h"
#include "qt/forms/FormDialog.h"

namespace kd {

/// The window of frmApplicationAdmin.
class AdminDialog : public FormDialog {
public:
    AdminDialog(frmApplicationAdmin& form, EventBoundary& boundary, QWidget* parent);
};

}  // namespace kd
