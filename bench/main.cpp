// Times the program over folders of applications (bench/make_corpus.py makes them), the largest first:
//     kd_bench [--runs N] FOLDER...
//     kd_bench --slow FOLDER             the times on slow disks alone
// Each figure is the median of the runs, and each run a process of its own; floors and figures take turns, so
// that both meet the same moods of the machine.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <stdexcept>

#include "AliveRole.h"
#include "CoreRole.h"
#include "Floors.h"
#include "Machine.h"
#include "ProgramRole.h"
#include "SlowTable.h"
#include "Table.h"

namespace kd::bench {
namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

/// What a child process does: --role NAME FOLDER SCRATCH.
void RunRole(const std::string& role, const std::string& folder, const std::string& scratch) {
    if (role == "read") {
        RunRead(folder);
    } else if (role == "texts") {
        RunTexts(folder);
    } else if (role == "grid") {
        WriteGrid(folder, scratch + "/grid.csv");
    } else if (role == "program") {
        RunProgram(folder, scratch);
    } else if (role == "commit") {
        RunCommit(folder, scratch);
    } else if (role == "alive") {
        RunAlive(folder, scratch);
    } else {
        throw std::runtime_error("no such role: " + role);
    }
}

/// Adds one run of everything.
void RunOnce(const std::string& folder, const std::string& scratch, Medians& medians) {
    medians.Take(MeasureFloors(folder, scratch));
    for (const char* role : {"read", "texts", "program", "commit"}) {
        medians.Take(RunSelf({"--role", role, folder, scratch}));
    }
}

/// An empty folder beside the applications.
std::string ScratchFor(const std::string& folder) {
    std::string scratch = fs::absolute(folder).string() + ".scratch";
    fs::remove_all(scratch);
    fs::create_directories(scratch);
    return scratch;
}

void RunSlow(const std::string& folder) {
    const std::string scratch = ScratchFor(folder);
    PrintSlowTable(fs::absolute(folder).string(), scratch);
    fs::remove_all(scratch);
}

int Run(int runs, const Words& folders) {
    std::vector<Size> sizes;
    for (const std::string& folder : folders) {
        sizes.push_back({AllFiles(folder).size(), {}});
        Expect(sizes.back().files > 0, "there are applications in " + folder);
    }
    const std::string scratch = ScratchFor(folders.front());
    for (int run = 1; run <= runs; ++run) {
        for (std::size_t at = 0; at < sizes.size(); ++at) {
            std::fprintf(stderr, "run %d of %d: %zu files\n", run, runs, sizes[at].files);
            // What a run leaves stays until the end: for minutes after thousands of files have been deleted,
            // some file systems take many times as long to make new ones, and it would fall on whoever comes
            // next.
            const std::string place = scratch + "/" + std::to_string(run) + "-" + std::to_string(at);
            fs::create_directories(place);
            RunOnce(fs::absolute(folders[at]).string(), place, sizes[at].medians);
        }
    }
    if (HasOffice()) {
        (void)RunSelf({"--role", "grid", folders.front(), scratch});
        sizes.front().medians.Take("office", MeasureOffice(scratch + "/grid.csv", scratch));
    }
    std::printf("%zu files, %.0f variables; CPU is user and system time; medians of %d runs\n\n",
                sizes.front().files, sizes.front().Variables(), runs);
    PrintTables(sizes);
    std::printf("\n");
    PrintSlowTable(fs::absolute(folders.front()).string(), scratch);
    fs::remove_all(scratch);
    return 0;
}

int Main(Words words) {
    if (words.size() == 4 && words.front() == "--role") {
        RunRole(words[1], words[2], words[3]);
        return 0;
    }
    if (words.size() == 2 && words.front() == "--slow") {
        RunSlow(words[1]);
        return 0;
    }
    int runs = 5;
    if (words.size() >= 2 && words.front() == "--runs") {
        runs = std::stoi(words[1]);
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty() || runs < 1) {
        throw std::runtime_error("usage: kd_bench [--runs N] FOLDER... | --slow FOLDER");
    }
    return Run(runs, words);
}

}  // namespace
}  // namespace kd::bench

int main(int argc, char** argv) {
    try {
        return kd::bench::Main({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        (void)std::fprintf(stderr, "kd_bench: %s\n", error.what());
        return 1;
    }
}
