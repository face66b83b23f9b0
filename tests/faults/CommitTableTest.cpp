#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "SourceFolder.h"
#include "fakes/FailingFiles.h"
#include "fakes/MemoryFiles.h"
#include "faults/CommitScene.h"

namespace kd {
namespace {

using States = std::vector<Text>;  // archive, temporary, schema file, log, report

/// The rows of the table at the head of the commit, without the names of the steps.
std::vector<States> DocumentedRows() {
    std::ifstream header(KD_SOURCE_DIR "/src/commit/CommitChanges.h");
    std::vector<States> rows;
    for (std::string line; std::getline(header, line);) {
        if (!line.starts_with("/// |") || line.starts_with("/// |--") ||
            line.find("after this step") != line.npos) {
            continue;
        }
        States row;
        std::istringstream cells(line.substr(5));
        for (std::string cell; std::getline(cells, cell, '|');) {
            row.emplace_back(Trim(cell));
        }
        row.erase(row.begin());
        rows.push_back(row);
    }
    return rows;
}

/// Watches a commit in memory and names what is on the disk after each step.
class Watch {
public:
    Watch() {
        for (const auto& [path, bytes] : scene.OriginalFiles()) {
            memory.Put(path, bytes);
        }
        scene.Load();
        scene.EditAll();
        FaultlessRun();
        files.OnDone = [this](const FailingFiles::Step&) { Look(); };
        Look();
        scene.Commit();
        files.OnDone = {};
    }
    /// The changes that the view in hand saw, in order.
    std::map<std::int32_t, std::vector<States>> seen;

private:
    /// What each step would come to: the same commit, over a disk of its own.
    void FaultlessRun() {
        MemoryFiles other;
        for (const auto& [path, bytes] : scene.OriginalFiles()) {
            other.Put(path, bytes);
        }
        CommitScene twin(other, "/apps", ".kdt6");
        twin.Load();
        twin.EditAll();
        twin.Commit();
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            newTexts.push_back(other.Get(twin.FilePath(view)));
        }
    }
    Text Archive() const {
        std::size_t unfinished = 0;
        std::size_t named = 0;
        for (const Text& path : memory.Paths()) {
            unfinished += path.find("/.unfinished-") != Text::npos ? 1U : 0U;
            named += path.starts_with("/apps/Archive/plant/2026-") ? 1U : 0U;
        }
        EXPECT_TRUE(unfinished == 0 || named == 0);
        if (named != 0) {
            EXPECT_EQ(named, scene.OriginalFiles().size());
            return "whole";
        }
        return unfinished != 0 ? "unfinished" : "none";
    }
    Text Temporary(std::int32_t view) const {
        const Text path = scene.TemporaryPath(view);
        if (!memory.Has(path)) {
            return "none";
        }
        return memory.Get(path) == newTexts[static_cast<std::size_t>(view)] ? "whole" : "part";
    }
    Text Schema(std::int32_t view) const {
        const std::string bytes = memory.Get(scene.FilePath(view));
        if (bytes == CommitScene::OriginalText(view)) {
            return "old";
        }
        return bytes == newTexts[static_cast<std::size_t>(view)] ? "new" : "broken";
    }
    /// How much of what a view adds is in a change file.
    Text Added(const Text& path, std::int32_t view, std::size_t all) const {
        static const char* const names[] = {"MAIN", "Inlet", "Outlet", "Drain"};
        const std::string bytes = memory.Get(path);
        const Text name = names[view];
        std::size_t count = 0;
        for (const Text& sign : {"\t" + name + "\t", name + ", anna, "}) {
            for (std::size_t at = bytes.find(sign); at != Text::npos; at = bytes.find(sign, at + 1)) {
                ++count;
            }
        }
        return count == 0 ? "old" : count == all ? "new" : "part";
    }
    void Look() {
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            const States now{Archive(), Temporary(view), Schema(view),
                             Added(scene.LogPath(), view, std::size_t{2} * CommitScene::PerView),
                             Added(scene.ReportPath(), view, 1)};
            auto& states = seen[view];
            if (states.empty() || states.back() != now) {
                states.push_back(now);
            }
        }
    }

    MemoryFiles memory;
    FailingFiles files{memory};
    CommitScene scene{files, "/apps", ".kdt6"};  // each kind of file has a temporary file of its own
    std::vector<std::string> newTexts;
};

TEST(CommitTableTest, TheTableAtTheHeadOfTheCommitIsWhatHappens) {
    const std::vector<States> documented = DocumentedRows();
    ASSERT_EQ(documented.size(), 10U);
    EXPECT_EQ(Watch().seen.at(0), documented);
}

TEST(CommitTableTest, FurtherViewsOfTheApplicationComeWhenTheArchiveIsWholeAndTheOneBeforeIsRecorded) {
    Watch watch;
    const std::vector<States> documented = DocumentedRows();
    const std::vector<States> fromTheArchiveOn(documented.begin() + 2, documented.end());
    const std::vector<States>& last = watch.seen.at(CommitScene::Views - 1);
    ASSERT_GE(last.size(), fromTheArchiveOn.size());
    // The views beside the template share the temporary file, which holds another view's text at first.
    EXPECT_EQ(std::vector<States>(last.end() - 7, last.end()),
              std::vector<States>(fromTheArchiveOn.end() - 7, fromTheArchiveOn.end()));
}

}  // namespace
}  // namespace kd
