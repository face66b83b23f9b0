#pragma once

#include <functional>

#include "model/Globals.h"

namespace kd {

/// What the command needs of the room above.
struct AdminHooks {
    std::function<void()> writeSettings;
    std::function<void()> loadAndShow;
    std::function<void()> showHelp;
};

/// The Manage Applications command: asks about outstanding changes, shows the dialog, and after Ok replaces
/// the list of applications, writes the settings and loads everything anew. A cancel at the start of the
/// program leaves an empty list, which ends it; a later one changes nothing.
void ManageApplications(Globals& g, const AdminHooks& hooks);

}  // namespace kd
