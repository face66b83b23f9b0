#pragma once

#include <string>

/// The whole program on a screen without a display: its own windows, driven as a user drives them. Each role
/// runs in a process of its own and reports the figures of its steps.
namespace kd::bench {

/// "start", "load", the view modes, "filter", "clear filters", "scroll", "validate", and the edit commands.
void RunProgram(const std::string& folder, const std::string& scratch);
/// On a copy of the folder below `scratch`: "load of the copy", "commit all" (each view), "commit one" (a
/// view), "commit one each" (a view of each application), "commit six" (six views of three applications).
void RunCommit(const std::string& folder, const std::string& scratch);

}  // namespace kd::bench
