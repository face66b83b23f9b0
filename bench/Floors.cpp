#include "Floors.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "Machine.h"

namespace kd::bench {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> WithFiles(std::vector<std::string> words, const std::vector<std::string>& files) {
    words.insert(words.end(), files.begin(), files.end());
    return words;
}

Cost Sum(std::initializer_list<Cost> costs) {
    Cost sum;
    for (const Cost& cost : costs) {
        sum.cpuMs += cost.cpuMs;
        sum.wallMs += cost.wallMs;
    }
    return sum;
}

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

Costs MeasureFloors(const std::string& folder, const std::string& scratch) {
    const auto files = AllFiles(folder);
    const std::string first = scratch + "/floor1";
    const std::string second = scratch + "/floor2";
    ::sync();
    Costs costs;
    costs["wc"] = RunCommand(WithFiles({"wc", "-l"}, files));
    costs["cat"] = RunCommand(WithFiles({"cat"}, files));
    const Cost copy = RunCommand({"cp", "-r", folder, first});
    const Cost flush = RunCommand({"sync"});
    costs["cp"] = copy;
    costs["cp and sync, twice"] =
        Sum({copy, flush, RunCommand({"cp", "-r", folder, second}), RunCommand({"sync"})});
    costs["sed"] =
        RunCommand(WithFiles({"sed", "-i", R"(s/^\( *SAMPLE *= \)[0-9]*\r$/\19\r/)"}, AllFiles(first)));
    const auto changed = AllFiles(first);
    Expect(changed.size() == files.size() && Content(changed.front()) != Content(files.front()) &&
               Content(changed.back()) != Content(files.back()),
           "sed has changed the copies");
    ::sync();  // what the floors have written is not left to the figures to be brought to the disk
    return costs;
}

bool HasOffice() {
    std::istringstream folders(std::getenv("PATH") == nullptr ? "" : std::getenv("PATH"));
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((folder + "/soffice").c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

Cost MeasureOffice(const std::string& grid, const std::string& scratch) {
    const std::string target = scratch + "/office";
    const Cost cost = RunCommand({"soffice", "-env:UserInstallation=file://" + scratch + "/office-settings",
                                  "--headless", "--convert-to", "ods", "--outdir", target, grid});
    Expect(fs::exists(target + "/" + fs::path(grid).stem().string() + ".ods"),
           "the office program converted");
    return cost;
}

}  // namespace kd::bench
