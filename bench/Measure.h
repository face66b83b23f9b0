#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kd::bench {

/// What one run took.
struct Cost {
    double cpuMs = 0;    // user and system time of the process
    double peakMiB = 0;  // largest resident size of the process up to the end of the run
};

/// What a run is: `prepare` is not measured, `body` is. Both run in a process of their own.
struct Job {
    std::string name;
    std::function<void()> prepare;
    std::function<void()> body;
};

/// The median of `runs` runs, each in a fresh process, so that no run profits from another's memory.
/// @throws std::runtime_error when a run fails.
Cost Median(const Job& job, int runs);

/// The median CPU time in ms of a command over files, which nothing that reads them can undercut.
/// @throws std::runtime_error when it fails.
double MedianOfCommand(const std::vector<std::string>& command, const std::vector<std::string>& files,
                       int runs);

}  // namespace kd::bench
