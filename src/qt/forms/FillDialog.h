#pragma once

#include "edit/frmFill.h"
#include "qt/forms/FormDialog.h"

namespace kd {

/// The window of frmFill.
class FillDialog : public FormDialog {
public:
    FillDialog(frmFill& form, EventEdge& edge, QWidget* parent);
};

}  // namespace kd
