#pragma once

#include <map>
#include <string>
#include <vector>

namespace kd {

/// The bytes of all files below a folder, by their path in it.
using Snapshot = std::map<std::string, std::string>;

Snapshot TakeSnapshot(const std::string& folder);

/// Lines without their ends.
std::vector<std::string> LinesOf(const std::string& bytes);

/// The lines in which two texts of equally many lines differ, as "- old" and "+ new", with the variable's
/// name in front; one line that says so where the number of lines differs.
std::vector<std::string> ChangedLines(const std::string& before, const std::string& after);

}  // namespace kd
