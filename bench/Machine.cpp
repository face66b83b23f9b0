#include "Machine.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>

namespace kd::bench {

namespace fs = std::filesystem;

BoxAnswer SilentToolkit::MessageBox(std::string_view text, BoxIcon /*icon*/, BoxButtons /*buttons*/,
                                    std::string_view /*title*/) {
    throw std::runtime_error("unforeseen box: " + Text(text));
}

void SilentToolkit::ShowModal(Form& form) {
    throw std::runtime_error("unforeseen dialog: " + form.Name());
}

std::vector<std::string> AllFiles(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> Templates(const std::vector<std::string>& files) {
    std::vector<std::string> templates;
    std::copy_if(files.begin(), files.end(), std::back_inserter(templates),
                 [](const std::string& path) { return path.ends_with(".kdt") || path.ends_with(".kdt6"); });
    return templates;
}

void Expect(bool holds, const std::string& words) {
    if (!holds) {
        throw std::runtime_error("not so: " + words);
    }
}

}  // namespace kd::bench
