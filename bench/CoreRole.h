#pragma once

#include <string>

/// The parts of a load that need no window. Each runs in a process of its own and reports one figure.
namespace kd::bench {

/// "read": all files into twin records, bounds and rule letters finished.
void RunRead(const std::string& folder);
/// "texts": the same, and every text of the grid filled.
void RunTexts(const std::string& folder);
/// No figure: writes the grid of a load as comma separated values.
void WriteGrid(const std::string& folder, const std::string& path);

}  // namespace kd::bench
