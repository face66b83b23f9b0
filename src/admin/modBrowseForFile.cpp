#include "admin/modBrowseForFile.h"

#include <utility>

namespace kd::modBrowseForFile {

std::optional<std::vector<Text>> BrowseForFiles(Platform& platform, Text folder, Text title, Text description,
                                                std::vector<Text> patterns, bool mustExist) {
    OpenFileRequest request;
    request.folder = std::move(folder);
    request.title = std::move(title);
    request.description = std::move(description);
    request.patterns = std::move(patterns);
    request.mustExist = mustExist;
    return platform.fileDialog.OpenFiles(request);
}

}  // namespace kd::modBrowseForFile
