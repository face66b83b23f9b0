#include "Machine.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace kd::bench {

namespace fs = std::filesystem;

BoxAnswer SilentToolkit::MessageBox(std::string_view text, BoxIcon /*icon*/, BoxButtons /*buttons*/,
                                    std::string_view /*title*/) {
    if (box.empty() || text != box) {
        throw std::runtime_error("unforeseen box: " + Text(text));
    }
    box.clear();
    return BoxAnswer::Ok;
}

void SilentToolkit::ShowModal(Form& form) {
    if (!user) {
        throw std::runtime_error("unforeseen dialog: " + form.Name());
    }
    form.MarkShown();
    std::exchange(user, nullptr)(form);
    Expect(!form.Shown(), form.Name() + " is hidden");
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

void MakeAllNumeric(Globals& g) {
    for (std::int32_t index = 1; index <= g.gFields->Count(); ++index) {
        for (cField* field : {&g.gFields->Ref(index), &g.gSavedFields->Ref(index)}) {
            field->SetFieldType("N");
            field->SetLength(8);
            field->SetDecimals(2);
        }
    }
}

void Expect(bool holds, const std::string& words) {
    if (!holds) {
        throw std::runtime_error("not so: " + words);
    }
}

}  // namespace kd::bench
