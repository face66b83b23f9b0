// Times the road from files to the grid and back over a folder of applications (bench/make_corpus.py makes
// one at the system's limit): kd_bench FOLDER [RUNS]. CPU time is user and system time of a process of its
// own, the median of the runs; beside each stands what reading the same files costs at the least, measured in
// the same minute.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "Machine.h"
#include "Measure.h"
#include "appfiles/LoadApplications.h"
#include "appfiles/SchemaReader.h"
#include "appfiles/SchemaWriter.h"
#include "commit/CommitChanges.h"
#include "grid/ColumnCatalogue.h"
#include "lifecycle/StartUp.h"
#ifdef KD_BENCH_WITH_QT
#include "ShownGrid.h"
#endif

namespace kd::bench {
namespace {

namespace fs = std::filesystem;

/// The program without its window, before its first load.
struct Bench {
    explicit Bench(const std::vector<std::string>& templates) {
        for (const std::string& path : templates) {
            (void)machine.g.gMasterFiles->Add(path, true);
        }
        modKDLimitDesk::LoadRuleCatalogue(machine.g);
        modKDLimitDesk::BuildColumnCatalogue(machine.g);
        SetupGridColumns(desk);
    }
    Machine machine;
    Desk desk{machine.g};
};

void Expect(bool holds, const char* what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

class Jobs {
public:
    Jobs(std::string folder, fs::path scratch)
        : m_files(AllFiles(folder)),
          m_templates(Templates(m_files)),
          m_folder(std::move(folder)),
          m_scratch(std::move(scratch)) {}

    const std::vector<std::string>& Files() const { return m_files; }

    Job Read() {
        return {"read into twin records", [this] { Start(m_templates); }, [this] { ReadAll(); }};
    }
    Job Load() {
        return {"whole load, grid texts filled", [this] { Start(m_templates); }, [this] { LoadAll(); }};
    }
#ifdef KD_BENCH_WITH_QT
    Job LoadShown() {
        return {"whole load, shown in the grid",
                [this] {
                    Start(m_templates);
                    m_shown = std::make_unique<ShownGrid>(m_bench->desk.Grid);
                },
                [this] {
                    LoadAll();
                    m_shown->Paint();
                }};
    }
#endif
    Job Validate() {
        return {"check of all limits",
                [this] {
                    Start(m_templates);
                    LoadAll();
                },
                [this] { Expect(!ValidateLimits(m_bench->desk), "a limit of the files is out of order"); }};
    }
    Job Save() {
        return {"save of all views", [this] { LoadCopies(); }, [this] { SaveAll(); }};
    }

private:
    void Start(const std::vector<std::string>& templates) {
        m_bench = std::make_unique<Bench>(templates);
    }

    void ReadAll() {
        Globals& g = m_bench->machine.g;
        SchemaReader reader(g);
        for (const std::string& path : m_files) {
            (void)g.gFiles->Add(path, "", "", 0);
            reader.Read(path, g.gFiles->Count());
        }
        Expect(g.gFields->Count() > 0, "no variables");
    }
    void LoadAll() {
        LoadApplications(m_bench->desk);
        Expect(m_bench->machine.g.gFiles->Count() == static_cast<std::int32_t>(m_files.size()),
               "views are missing");
    }
    void LoadCopies() {
        fs::remove_all(m_scratch);
        fs::copy(m_folder, m_scratch, fs::copy_options::recursive);
        Start(Templates(AllFiles(m_scratch.string())));
        LoadAll();
    }
    void SaveAll() {
        Globals& g = m_bench->machine.g;
        for (std::int32_t index = 1; index <= g.gFiles->Count(); ++index) {
            Expect(modKDLimitDesk::SaveSchema(g, index), "a view was not saved");
        }
    }

    std::vector<std::string> m_files;
    std::vector<std::string> m_templates;
    std::string m_folder;
    fs::path m_scratch;
    std::unique_ptr<Bench> m_bench;
#ifdef KD_BENCH_WITH_QT
    std::unique_ptr<ShownGrid> m_shown;
#endif
};

void Print(const Job& job, int runs, double floorMs) {
    const Cost cost = Median(job, runs);
    std::printf("%-32s %8.0f ms CPU %8.1f x wc -l %8.0f MiB\n", job.name.c_str(), cost.cpuMs,
                cost.cpuMs / floorMs, cost.peakMiB);
    (void)std::fflush(stdout);
}

int Run(const std::string& folder, int runs) {
    const fs::path scratch = fs::path(folder).concat(".scratch");
    Jobs jobs(folder, scratch);
    if (jobs.Files().empty()) {
        throw std::runtime_error("no applications in " + folder);
    }
    const double lines = MedianOfCommand({"wc", "-l"}, jobs.Files(), runs);
    const double bytes = MedianOfCommand({"cat"}, jobs.Files(), runs);
    std::printf("%zu files; median of %d runs\n", jobs.Files().size(), runs);
    std::printf("%-32s %8.0f ms CPU\n%-32s %8.0f ms CPU\n", "floor: wc -l", lines, "floor: cat", bytes);
    Print(jobs.Read(), runs, lines);
    Print(jobs.Load(), runs, lines);
#ifdef KD_BENCH_WITH_QT
    Print(jobs.LoadShown(), runs, lines);
#endif
    Print(jobs.Validate(), runs, lines);
    Print(jobs.Save(), runs, lines);
    fs::remove_all(scratch);
    return 0;
}

}  // namespace
}  // namespace kd::bench

int main(int argc, char** argv) {
    try {
        if (argc < 2) {
            throw std::runtime_error("usage: kd_bench FOLDER [RUNS]");
        }
        return kd::bench::Run(argv[1], argc > 2 ? std::stoi(argv[2]) : 5);
    } catch (const std::exception& error) {
        (void)std::fprintf(stderr, "kd_bench: %s\n", error.what());
        return 1;
    }
}
