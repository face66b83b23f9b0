#pragma once

#include <string>

/// The whole program on a screen without a display: its own windows, driven as a user drives them. Each role
/// runs in a process of its own and reports the figures of its steps.
namespace kd::bench {

/// "start", "load", the view modes, "filter", "clear filters", "scroll", "validate", and the edit commands.
void RunProgram(const std::string& folder, const std::string& scratch);
/// "commit all" and "commit one", on a copy of the folder below `scratch`.
void RunCommit(const std::string& folder, const std::string& scratch);

}  // namespace kd::bench
