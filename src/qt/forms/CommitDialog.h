#pragma once

#include "commit/frmCommit.h"
#include "qt/forms/FormDialog.h"

namespace kd {

/// The window of frmCommit.
class CommitDialog : public FormDialog {
public:
    CommitDialog(frmCommit& form, EventBoundary& boundary, QWidget* parent);
};

}  // namespace kd
