#include "Measure.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>

namespace kd::bench {

namespace {

double Milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

double CpuMs(const rusage& usage) {
    return Milliseconds(usage.ru_utime) + Milliseconds(usage.ru_stime);
}

rusage UsageOfSelf() {
    rusage usage{};
    (void)getrusage(RUSAGE_SELF, &usage);  // fails for wrong arguments only
    return usage;
}

/// Runs the job in this process, which ends with it, and writes the cost to `output`.
[[noreturn]] void RunAndExit(const Job& job, int output) {
    try {
        if (job.prepare) {
            job.prepare();
        }
        const double before = CpuMs(UsageOfSelf());
        job.body();
        const rusage after = UsageOfSelf();
        const Cost cost{CpuMs(after) - before, static_cast<double>(after.ru_maxrss) / 1024.0};
        _exit(write(output, &cost, sizeof cost) == static_cast<ssize_t>(sizeof cost) ? 0 : 1);
    } catch (const std::exception& error) {
        (void)std::fprintf(stderr, "%s: %s\n", job.name.c_str(), error.what());  // the exit code tells too
        _exit(1);
    }
}

void WaitFor(pid_t child, const std::string& name, rusage& usage) {
    int status = 0;
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(name + " failed");
    }
}

Cost RunOnce(const Job& job) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    (void)std::fflush(nullptr);  // or the child would print what waits once more
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("no process");
    }
    if (child == 0) {
        (void)close(ends[0]);
        RunAndExit(job, ends[1]);
    }
    (void)close(ends[1]);
    Cost cost;
    const bool complete = read(ends[0], &cost, sizeof cost) == static_cast<ssize_t>(sizeof cost);
    (void)close(ends[0]);
    rusage usage{};
    WaitFor(child, job.name, usage);
    if (!complete) {
        throw std::runtime_error(job.name + " gave no figure");
    }
    return cost;
}

double RunCommand(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));  // exec's signature; it changes nothing
    }
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("no process");
    }
    if (child == 0) {
        const int sink = open("/dev/null", O_WRONLY | O_CLOEXEC);
        (void)dup2(sink, STDOUT_FILENO);
        (void)execvp(arguments[0], arguments.data());
        _exit(127);
    }
    rusage usage{};
    WaitFor(child, words.front(), usage);
    return CpuMs(usage);
}

template <typename T, typename Less>
T MiddleOf(std::vector<T> values, Less less) {
    std::sort(values.begin(), values.end(), less);
    return values[values.size() / 2];
}

}  // namespace

Cost Median(const Job& job, int runs) {
    std::vector<Cost> costs;
    for (int run = 0; run < runs; ++run) {
        costs.push_back(RunOnce(job));
    }
    Cost median = MiddleOf(costs, [](const Cost& a, const Cost& b) { return a.cpuMs < b.cpuMs; });
    median.peakMiB =
        MiddleOf(costs, [](const Cost& a, const Cost& b) { return a.peakMiB < b.peakMiB; }).peakMiB;
    return median;
}

double MedianOfCommand(const std::vector<std::string>& command, const std::vector<std::string>& files,
                       int runs) {
    std::vector<std::string> words = command;
    words.insert(words.end(), files.begin(), files.end());
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        times.push_back(RunCommand(words));
    }
    return MiddleOf(times, std::less<>());
}

}  // namespace kd::bench
