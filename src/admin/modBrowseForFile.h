#pragma once

#include <optional>
#include <vector>

#include "platform/Platform.h"

namespace kd::modBrowseForFile {

/// Shows the platform's open-file dialog. One entry for a single file, its full path; the folder and then
/// each name for several; nothing when the user cancels. `patterns` are those of the kind that `description`
/// names.
std::optional<std::vector<Text>> BrowseForFiles(Platform& platform, Text folder, Text title, Text description,
                                                std::vector<Text> patterns, bool mustExist);

}  // namespace kd::modBrowseForFile
