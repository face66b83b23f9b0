#include "SlowTable.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "Measure.h"

namespace kd::bench {

namespace {

struct Slowness {
    const char* title;
    int flushMs;
    int nameMs;
};
constexpr std::array<Slowness, 4> Disks{
    {{"as it is", 0, 0}, {"5 ms a flush", 5, 0}, {"20 ms a flush", 20, 0}, {"1 ms a name", 0, 1}}};

struct Row {
    const char* title;
    const char* figure;
};
constexpr std::array<Row, 5> Rows{{{"load of all", "load of the copy"},
                                   {"commit of all views", "commit all"},
                                   {"commit of a view of each application", "commit one each"},
                                   {"commit of six views in three", "commit six"},
                                   {"commit of one view", "commit one"}}};

/// One run on such a disk.
Costs CostsOn(const Slowness& disk, const std::string& folder, const std::string& scratch) {
    std::filesystem::create_directories(scratch);
    return RunSelf({"--role", "commit", folder, scratch},
                   {"LD_PRELOAD=" KD_SLOW_LIBRARY, "KD_SLOW_BELOW=" + scratch + "/commit",
                    "KD_SLOW_FLUSH_MS=" + std::to_string(disk.flushMs),
                    "KD_SLOW_NAME_MS=" + std::to_string(disk.nameMs)});
}

}  // namespace

void PrintSlowTable(const std::string& folder, const std::string& scratch) {
    std::vector<Costs> runs;
    for (const Slowness& disk : Disks) {
        std::fprintf(stderr, "a disk of %s\n", disk.title);
        runs.push_back(CostsOn(disk, folder, scratch + "/slow" + std::to_string(runs.size())));
    }
    std::printf("| %-36s | flushes |  names |", "Wall time by disk");
    for (const Slowness& disk : Disks) {
        std::printf(" %13s |", disk.title);
    }
    std::printf("\n|%s|--------:|-------:|", std::string(38, '-').c_str());
    for (std::size_t at = 0; at < Disks.size(); ++at) {
        std::printf("%s:|", std::string(14, '-').c_str());
    }
    for (const Row& row : Rows) {
        const Cost& first = runs.front().at(row.figure);
        std::printf("\n| %-36s | %7.0f | %6.0f |", row.title, first.flushes, first.names);
        for (const Costs& run : runs) {
            std::printf(" %10.0f ms |", run.at(row.figure).wallMs);
        }
    }
    std::printf("\n");
}

}  // namespace kd::bench
