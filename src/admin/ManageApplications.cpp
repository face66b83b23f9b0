#include "admin/ManageApplications.h"

#include "admin/frmApplicationAdmin.h"
#include "model/modKDLimitDesk.h"

namespace kd {

using namespace modKDLimitDesk;

namespace {

/// Whether the user agrees to lose outstanding changes, if there are any.
bool MayDropChanges(Globals& g) {
    if (!AnyChanges(g)) {
        return true;
    }
    Text question = "You have outstanding changes.";
    question += CrLf;
    question += "Are you sure you want to modify folders without saving?";
    return g.platform.toolkit.MessageBox(question, BoxIcon::Question, BoxButtons::YesNo, WindowTitle) ==
           BoxAnswer::Yes;
}

}  // namespace

void ManageApplications(Globals& g, const AdminHooks& hooks) {
    if (!MayDropChanges(g)) {
        return;
    }
    frmApplicationAdmin dialog(g);
    dialog.ShowHelp = hooks.showHelp;
    dialog.Display();
    if (dialog.Cancel()) {
        dialog.Destroy();
        if (g.gStartingUp) {
            g.gMasterFiles = std::make_shared<cMasterFiles>();
        }
        return;
    }
    auto files = std::make_shared<cMasterFiles>();
    for (std::int32_t row = 1; row < dialog.Grid.Rows(); ++row) {
        files->Add(Text(dialog.Grid.TextMatrix(row, 0)), !dialog.Grid.RowHidden(row));
    }
    files->Sort("A");
    g.gMasterFiles = std::move(files);
    dialog.Destroy();
    g.platform.toolkit.ProcessEvents();
    hooks.writeSettings();
    hooks.loadAndShow();
}

}  // namespace kd
