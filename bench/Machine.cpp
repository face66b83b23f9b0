#include "Machine.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace kd::bench {

namespace {

namespace fs = std::filesystem;

std::vector<Text> RulesOfSamples() {
    std::vector<Text> rules;
    std::ifstream file(fs::path(KD_SOURCE_DIR) / "samples" / "Rules.ini");
    for (std::string line; std::getline(file, line);) {
        const std::size_t value = line.find("= ");
        if (value != std::string::npos) {
            rules.push_back(line.substr(value + 2, line.find('\r') - value - 2));
        }
    }
    return rules;
}

}  // namespace

BoxAnswer SilentToolkit::MessageBox(std::string_view text, BoxIcon /*icon*/, BoxButtons /*buttons*/,
                                    std::string_view /*title*/) {
    throw std::runtime_error("unforeseen box: " + Text(text));
}

void SilentToolkit::ShowModal(Form& form) {
    throw std::runtime_error("unforeseen dialog: " + form.Name());
}

Machine::Machine(const std::vector<std::string>& templates) {
    suite.rules = RulesOfSamples();
    for (const std::string& path : templates) {
        const fs::path file(path);
        FakeSuite::Application application{file.stem().string(), {}};
        const std::string beginning = path.ends_with('6') ? ".KDV6.V" : ".V";
        for (std::int32_t number = 1;; ++number) {
            fs::path view = file;
            view.replace_extension(beginning + std::to_string(number));
            if (!fs::exists(view)) {
                break;
            }
            application.views.push_back({"View " + std::to_string(number), number});
        }
        suite.applications[path] = std::move(application);
    }
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

}  // namespace kd::bench
