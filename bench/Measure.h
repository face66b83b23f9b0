#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// Processes and what they cost. Knows nothing of the program.
namespace kd::bench {

/// What a piece of work took.
struct Cost {
    double cpuMs = 0;    // user and system time, of child processes too
    double wallMs = 0;   // on the clock
    double peakMiB = 0;  // largest resident size of the process up to the end of the work
    double flushes = 0;  // calls that wait for the disk, and
    double names = 0;    // calls that name a file; both are counted on a slow disk only (bench/SlowDisk.cpp)
};

/// Costs of one run by their figures' names.
using Costs = std::map<std::string, Cost>;

/// Measures a piece of work of this very process.
class Meter {
public:
    /// Measures from the start of the process: CPU time and memory alone.
    static Cost SinceStart();

    Meter() { Resume(); }
    /// What follows does not count, until Resume.
    void Pause();
    void Resume();
    /// Pauses, and gives what has been counted.
    Cost Stop();

private:
    Cost m_sum;
    double m_cpuMs = 0;
    long m_flushes = 0;
    long m_names = 0;
    std::chrono::steady_clock::time_point m_time;
};

/// Hands a figure of a child process to the one that runs it.
void Report(const std::string& figure, const Cost& cost);

/// Runs a command to its end; what it prints is dropped.
/// @throws std::runtime_error when it fails.
Cost RunCommand(const std::vector<std::string>& words);

/// Runs this program with other arguments, in a process of its own, and takes what it reports. `environment`
/// is added to its environment, each as "NAME=value".
/// @throws std::runtime_error when it fails.
Costs RunSelf(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {});

/// Medians of several runs, each part of a cost by itself.
class Medians {
public:
    void Take(const std::string& figure, const Cost& cost);
    void Take(const Costs& costs);
    bool Has(const std::string& figure) const { return m_runs.contains(figure); }
    /// @throws std::runtime_error for a figure without a run.
    Cost Of(const std::string& figure) const;

private:
    std::map<std::string, std::vector<Cost>> m_runs;
};

}  // namespace kd::bench
