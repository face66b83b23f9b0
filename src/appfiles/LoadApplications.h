#pragma once

#include "grid/Desk.h"

namespace kd {

/// Whether the application at the path is open now; false for any failure whatever.
[[nodiscard]] bool OpenApplicationFile(KDApplicationFile& reader, std::string_view path);

/// Replaces gFiles, gFields and gSavedFields by what the enabled applications hold, and appends a grid row
/// for each variable. An application that cannot be opened is disabled, silently. Tells its progress on
/// Panel2 and ProgressBar1, with a pass of the message loop after each application.
/// @throws cError for what is wrong in a file, with its path; redraw is on again then, and the view in hand
/// has no variables unless all of its file was read.
void LoadApplications(Desk& desk);

}  // namespace kd
