#pragma once

#include <string>

namespace kd::bench {

/// Times loads and commits of the applications below `folder` with a disk or a drive that is slow by known
/// amounts (SlowDisk.cpp), a run each, and prints them with what they ask of the disk. Copies go below
/// `scratch`.
void PrintSlowTable(const std::string& folder, const std::string& scratch);

}  // namespace kd::bench
