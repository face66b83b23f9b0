#include "Measure.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace kd::bench {

namespace {

/// Where a child process reports; its standard output stays free for words.
constexpr int ReportFile = 3;

double Milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

double CpuMs(const rusage& usage) {
    return Milliseconds(usage.ru_utime) + Milliseconds(usage.ru_stime);
}

double PeakMiB(const rusage& usage) {
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

double CpuMsOfSelf() {
    rusage self{};
    rusage children{};
    (void)getrusage(RUSAGE_SELF, &self);  // both fail for wrong arguments only
    (void)getrusage(RUSAGE_CHILDREN, &children);
    return CpuMs(self) + CpuMs(children);
}

double PeakMiBOfSelf() {
    rusage self{};
    (void)getrusage(RUSAGE_SELF, &self);
    return PeakMiB(self);
}

double MsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

/// Flushes and calls that name a file so far; 0 unless the disk is a slow one.
void CountCalls(long& flushes, long& names) {
    using Counts = void(long*, long*);
    static auto* const counts = reinterpret_cast<Counts*>(dlsym(RTLD_DEFAULT, "KdSlowCounts"));
    flushes = names = 0;
    if (counts != nullptr) {
        counts(&flushes, &names);
    }
}

std::vector<char*> Pointers(const std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (const std::string& word : words) {
        pointers.push_back(const_cast<char*>(word.c_str()));  // exec's signature; it changes nothing
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// Starts a program whose descriptor `as` is `output`.
pid_t Start(const char* program, const std::vector<std::string>& words, int output, int as,
            const std::vector<std::string>& environment = {}) {
    auto pointers = Pointers(words);
    const auto additions = Pointers(environment);
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("no process");
    }
    if (child == 0) {
        (void)dup2(output, as);
        for (char* addition : additions) {
            (void)(addition != nullptr && putenv(addition));
        }
        (void)execvp(program, pointers.data());
        _exit(127);
    }
    return child;
}

void WaitFor(pid_t child, const std::string& name, rusage& usage) {
    int status = 0;
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(name + " failed");
    }
}

std::string ReadToEnd(int file) {
    std::string all;
    char buffer[4096];
    for (ssize_t got = read(file, buffer, sizeof buffer); got > 0; got = read(file, buffer, sizeof buffer)) {
        all.append(buffer, static_cast<std::size_t>(got));
    }
    return all;
}

Costs Parsed(const std::string& reports) {
    Costs costs;
    std::istringstream lines(reports);
    std::string figure;
    while (std::getline(lines, figure, '\t')) {
        Cost cost;
        lines >> cost.cpuMs >> cost.wallMs >> cost.peakMiB >> cost.flushes >> cost.names;
        (void)lines.get();  // the line's end
        costs[figure] = cost;
    }
    return costs;
}

}  // namespace

Cost Meter::SinceStart() {
    Cost cost;
    cost.cpuMs = CpuMsOfSelf();
    cost.peakMiB = PeakMiBOfSelf();
    return cost;
}

void Meter::Pause() {
    m_sum.cpuMs += CpuMsOfSelf() - m_cpuMs;
    m_sum.wallMs += MsSince(m_time);
    m_sum.peakMiB = PeakMiBOfSelf();
    long flushes = 0;
    long names = 0;
    CountCalls(flushes, names);
    m_sum.flushes += static_cast<double>(flushes - m_flushes);
    m_sum.names += static_cast<double>(names - m_names);
}

void Meter::Resume() {
    CountCalls(m_flushes, m_names);
    m_time = std::chrono::steady_clock::now();
    m_cpuMs = CpuMsOfSelf();
}

Cost Meter::Stop() {
    Pause();
    return m_sum;
}

void Report(const std::string& figure, const Cost& cost) {
    if (dprintf(ReportFile, "%s\t%.3f %.3f %.2f %.0f %.0f\n", figure.c_str(), cost.cpuMs, cost.wallMs,
                cost.peakMiB, cost.flushes, cost.names) < 0) {
        throw std::runtime_error("no one takes the figure " + figure);
    }
}

Cost RunCommand(const std::vector<std::string>& words) {
    const int sink = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const auto begin = std::chrono::steady_clock::now();
    rusage usage{};
    WaitFor(Start(words.front().c_str(), words, sink, STDOUT_FILENO), words.front(), usage);
    Cost cost;
    cost.cpuMs = CpuMs(usage);
    cost.wallMs = MsSince(begin);
    cost.peakMiB = PeakMiB(usage);
    (void)close(sink);
    return cost;
}

Costs RunSelf(const std::vector<std::string>& arguments, const std::vector<std::string>& environment) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    if (ends[1] == ReportFile) {  // the copy would keep the mark that closes it in the child
        ends[1] = fcntl(ends[1], F_DUPFD_CLOEXEC, ReportFile + 1);
        (void)close(ReportFile);
    }
    (void)std::fflush(nullptr);  // or the child would print what waits once more
    std::vector<std::string> words{"kd_bench"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const pid_t child = Start("/proc/self/exe", words, ends[1], ReportFile, environment);
    (void)close(ends[1]);
    const std::string reports = ReadToEnd(ends[0]);
    (void)close(ends[0]);
    rusage usage{};
    WaitFor(child, arguments.front() + " " + arguments.at(1), usage);
    return Parsed(reports);
}

void Medians::Take(const std::string& figure, const Cost& cost) {
    m_runs[figure].push_back(cost);
}

void Medians::Take(const Costs& costs) {
    for (const auto& [figure, cost] : costs) {
        Take(figure, cost);
    }
}

Cost Medians::Of(const std::string& figure) const {
    const auto runs = m_runs.find(figure);
    if (runs == m_runs.end()) {
        throw std::runtime_error("no figure " + figure);
    }
    const auto middle = [&runs](double Cost::*part) {
        std::vector<double> values;
        for (const Cost& cost : runs->second) {
            values.push_back(cost.*part);
        }
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    };
    return {middle(&Cost::cpuMs), middle(&Cost::wallMs), middle(&Cost::peakMiB), middle(&Cost::flushes),
            middle(&Cost::names)};
}

}  // namespace kd::bench
