#include "guided/Snapshot.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace kd {

Snapshot TakeSnapshot(const std::string& folder) {
    Snapshot snapshot;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            snapshot[std::filesystem::relative(entry.path(), folder).generic_string()] =
                std::string(std::istreambuf_iterator<char>(file), {});
        }
    }
    return snapshot;
}

std::vector<std::string> LinesOf(const std::string& bytes) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto end = bytes.find("\r\n", at);
        lines.push_back(bytes.substr(at, end == std::string::npos ? end : end - at));
        at = end == std::string::npos ? bytes.size() : end + 2;
    }
    return lines;
}

std::vector<std::string> ChangedLines(const std::string& before, const std::string& after) {
    const auto old = LinesOf(before);
    const auto now = LinesOf(after);
    if (old.size() != now.size()) {
        return {std::to_string(old.size()) + " lines became " + std::to_string(now.size())};
    }
    std::vector<std::string> changes;
    std::string variable = "(header)";
    for (std::size_t at = 0; at < old.size(); ++at) {
        if (now[at].rfind("   NAME ", 0) == 0) {
            variable = now[at].substr(18);
        }
        if (old[at] != now[at]) {
            changes.push_back(variable + ": -" + old[at]);
            changes.push_back(variable + ": +" + now[at]);
        }
    }
    return changes;
}

}  // namespace kd
