#pragma once

#include <optional>

#include "model/Globals.h"
#include "platform/Controls.h"
#include "platform/VSFlexGrid.h"

namespace kd {

/// The main form's controls and the globals: what every command works on. Belongs to the main form; commands
/// get a loan. Menu entries have their handlers set by the main form.
struct Desk {
    explicit Desk(Globals& globals) : g(globals) {}

    Globals& g;

    VSFlexGrid Grid{"Grid"};
    /// The refused text of the open editor of which a menu has told already.
    std::optional<Text> toldText;
    Label Panel1{"Panel1"};  // where the current cell stands
    Label Panel2{"Panel2"};  // what a long job is doing, and its outcome
    ProgressBar ProgressBar1{"ProgressBar1"};

    MenuItem mnuFile{"mnuFile", "&File"};
    MenuItem mnuApplications{"mnuApplications", "Manage Applications", 'M'};
    MenuItem mnuCommit{"mnuCommit", "Commit Changes", 'C'};
    MenuItem mnuClose{"mnuClose", "Close", 'l'};

    MenuItem mnuEdit{"mnuEdit", "&Edit"};
    MenuItem mnuEditRestore{"mnuEditRestore", "Restore Original Value", 'R'};
    MenuItem mnuEditCut{"mnuEditCut", "Cut", 't'};
    MenuItem mnuEditCopy{"mnuEditCopy", "Copy", 'C'};
    MenuItem mnuEditPaste{"mnuEditPaste", "Paste", 'P'};
    MenuItem mnuEditFill{"mnuEditFill", "Fill...", 'F'};
    MenuItem mnuEditReplace{"mnuEditReplace", "Replace...", 'e'};

    MenuItem mnuOptions{"mnuOptions", "&Options"};
    MenuItem mnuClearFilters{"mnuClearFilters", "Clear All Filters", 'C'};

    MenuItem mnuView{"mnuView", "&View"};
    MenuItem mnuShowPaths{"mnuShowPaths", "Show Paths", 'P'};
    MenuItem mnuShowOnlyNumericVariables{"mnuShowOnlyNumericVariables", "Show Only Numeric Variables", 'N'};
    MenuItem mnuShowAll{"mnuShowAll", "Show All Properties", 'A'};

    MenuItem mnuHelp{"mnuHelp", "&Help"};
    MenuItem mnuHelpAbout{"mnuHelpAbout", "About KDLimitDesk", 'A'};

    /// The pop-up menu of the grid, and its entries, which hold the edit commands.
    MenuItem mnuEditMenu{"mnuEditMenu", "Edit"};
    MenuItem mnuRestore{"mnuRestore", "Restore Original Value", 'R'};
    MenuItem mnuCut{"mnuCut", "Cut", 't'};
    MenuItem mnuCopy{"mnuCopy", "Copy", 'C'};
    MenuItem mnuPaste{"mnuPaste", "Paste", 'P'};
    MenuItem mnuFill{"mnuFill", "Fill...", 'F'};
    MenuItem mnuReplace{"mnuReplace", "Replace...", 'e'};
};

}  // namespace kd
