#pragma once

#include "admin/frmApplicationAdmin.h"
#include "qt/FormDialog.h"

namespace kd {

/// The window of frmApplicationAdmin.
class AdminDialog : public FormDialog {
public:
    AdminDialog(frmApplicationAdmin& form, EventEdge& edge, QWidget* parent);
};

}  // namespace kd
