#include <gtest/gtest.h>

#include <set>

#include "base/NumberTexts.h"
#include "fakes/MemoryFiles.h"
#include "faults/FaultOracle.h"

namespace kd {
namespace {

using Kind = FailingFiles::Kind;

/// A commit of four files in memory, with a fault.
struct FaultyCommit {
    explicit FaultyCommit(const Text& theExtension)
        : extension(theExtension), scene(files, "/apps", extension) {
        for (const auto& [path, bytes] : scene.OriginalFiles()) {
            memory.Put(path, bytes);
        }
        scene.Load();
        scene.EditAll();
    }
    void Run(int failAt, Kind kind, bool forGood) {
        FaultOracle judge(scene, kind, forGood);
        files.FailAt(failAt, kind, forGood);
        scene.Commit();
        judge.Judge(files.Steps());
        boxes = judge.boxes;
        outcomes = judge.outcomes;
        archived = judge.archived;
    }
    std::set<Text> LogLines() const {
        std::set<Text> lines;
        const std::string log = memory.Get(scene.LogPath());
        for (std::size_t at = 0, end = 0; (end = log.find("\r\n", at)) != std::string::npos; at = end + 2) {
            lines.insert(log.substr(at, end - at));
        }
        return lines;
    }
    /// Files below the archive's final names, by name.
    std::map<Text, std::string> Archive() const {
        std::map<Text, std::string> archive;
        for (const Text& path : memory.Paths()) {
            if (path.starts_with("/apps/Archive/plant/2026-")) {
                archive[Text(paths::FileName(path))] = memory.Get(path);
            }
        }
        return archive;
    }

    Text extension;
    MemoryFiles memory;
    FailingFiles files{memory};
    CommitScene scene;
    std::vector<ScriptedToolkit::Box> boxes;
    std::vector<Outcome> outcomes;
    bool archived = true;
};

/// What a commit without any fault leaves in each file.
std::vector<std::string> NewTexts(const Text& extension) {
    FaultyCommit commit(extension);
    commit.scene.Commit();
    std::vector<std::string> texts;
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        texts.push_back(commit.memory.Get(commit.scene.FilePath(view)));
    }
    return texts;
}

void CheckTargets(const FaultyCommit& commit, const std::vector<std::string>& newTexts, Kind kind) {
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        const auto at = static_cast<std::size_t>(view);
        const std::string left = commit.memory.Get(commit.scene.FilePath(view));
        const bool isOld = left == CommitScene::OriginalText(view);
        EXPECT_TRUE(isOld || left == newTexts[at]) << "view " << view << " holds half:\n" << left;
        switch (commit.outcomes[at]) {
            case Outcome::Untouched:
            case Outcome::NotSaved:
                EXPECT_TRUE(isOld) << view;
                break;
            case Outcome::NotOverwritten:
                EXPECT_EQ(isOld, kind != Kind::DoneAndDevice) << view;
                break;
            case Outcome::ReportFailed:
                break;
            case Outcome::Done:
                EXPECT_FALSE(isOld) << view;
                break;
        }
    }
}

void CheckLog(const FaultyCommit& commit) {
    const std::set<Text> lines = commit.LogLines();
    EXPECT_EQ(lines.count("earlier record"), 1U);
    EXPECT_TRUE(commit.memory.Get(commit.scene.LogPath()).starts_with("earlier record\r\n"));
    EXPECT_TRUE(commit.memory.Get(commit.scene.ReportPath()).starts_with("earlier entry\r\n\r\n"));
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        const Outcome outcome = commit.outcomes[static_cast<std::size_t>(view)];
        const bool saved = outcome == Outcome::Done || outcome == Outcome::NotOverwritten;
        for (std::int32_t variable = 1; saved && variable <= CommitScene::PerView; ++variable) {
            for (const std::int32_t column : {CommitScene::UslColumn, CommitScene::UnitsColumn}) {
                // A file that could not be overwritten keeps its revision, and the record says so.
                const Text& bytes = commit.memory.Get(commit.scene.FilePath(view));
                const Text revision = bytes.find("7.001") != Text::npos ? "7.001" : "7.";
                const Text line = CommitScene::LogLine(view, variable, column, revision);
                EXPECT_EQ(lines.count(line), 1U) << line;
            }
        }
    }
}

void CheckState(const FaultyCommit& commit) {
    const CommitScene& scene = commit.scene;
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        const Outcome outcome = commit.outcomes[static_cast<std::size_t>(view)];
        const bool saved = outcome == Outcome::Done || outcome == Outcome::NotOverwritten;
        EXPECT_EQ(scene.ChangesMade(view), !saved) << view;
        bool stillMarked = false;
        for (std::int32_t variable = 1; variable <= CommitScene::PerView; ++variable) {
            const std::int32_t row = CommitScene::RowOf(view, variable);
            EXPECT_EQ(scene.g.gFields->Ref(row).USL(), 50) << "nothing typed is ever lost";
            for (const std::int32_t column : {CommitScene::UslColumn, CommitScene::UnitsColumn}) {
                const bool marked = scene.Marked(row, column);
                if (outcome != Outcome::ReportFailed) {
                    EXPECT_EQ(marked, !saved) << view;
                } else {
                    EXPECT_TRUE(marked || !stillMarked) << "marks go in order";
                }
                stillMarked = stillMarked || marked;
            }
            if (outcome != Outcome::ReportFailed) {
                EXPECT_EQ(scene.SavedUsl(row), saved ? 50 : 100) << view;
            } else if (stillMarked) {
                EXPECT_EQ(scene.SavedUsl(row), 100) << "the baseline waits for the variable's last record";
            }
        }
    }
    EXPECT_EQ(scene.toolkit.MousePointer(), Pointer::Default);
    EXPECT_EQ(scene.desk.ProgressBar1.Value(), 0);
    EXPECT_EQ(scene.desk.Panel2.Caption(), "Done ... , Applications: 1, Views: 3, Variables: 8");
}

void CheckArchive(const FaultyCommit& commit) {
    const auto archive = commit.Archive();
    if (!commit.archived && archive.empty()) {
        return;
    }
    // A name that could not be taken back stands for a whole archive.
    for (const auto& [path, bytes] : commit.scene.OriginalFiles()) {
        const auto found = archive.find(Text(paths::FileName(path)));
        ASSERT_NE(found, archive.end()) << path;
        EXPECT_EQ(found->second, bytes) << path;
    }
    EXPECT_EQ(archive.size(), commit.scene.OriginalFiles().size());
}

/// When the fault is gone: in the same run where no temporary file is blocked, else in the next one.
void CheckSecondTry(FaultyCommit& commit) {
    commit.files.FailNoMore();
    const bool blocked = !commit.scene.g.openTemporaries.empty();
    if (!blocked && modKDLimitDesk::AnyChanges(commit.scene.g)) {
        commit.scene.toolkit.boxes.clear();
        commit.scene.Commit();
        ASSERT_EQ(commit.scene.toolkit.boxes.size(), 1U) << commit.scene.toolkit.boxes.front();
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            EXPECT_FALSE(commit.scene.ChangesMade(view));
        }
    }
    CommitScene next(commit.files, "/apps", commit.extension);
    next.Load();
    ASSERT_EQ(next.g.gFields->Count(), CommitScene::Views * CommitScene::PerView);
    next.EditAll("40");
    next.Commit();
    EXPECT_EQ(next.toolkit.boxes, (std::vector<ScriptedToolkit::Box>{{"4 File(s) have been modified.",
                                                                      BoxIcon::Information, "KDLimitDesk"}}));
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        EXPECT_NE(commit.memory.Get(next.FilePath(view)).find("F40."), std::string::npos) << view;
        EXPECT_FALSE(commit.memory.Has(next.TemporaryPath(view)));
    }
}

class CommitFaultsTest : public testing::TestWithParam<std::tuple<const char*, Kind, bool>> {};

TEST_P(CommitFaultsTest, AtEveryOperationNothingIsLostAndTheUserIsTold) {
    const auto [extension, kind, forGood] = GetParam();
    const std::vector<std::string> newTexts = NewTexts(extension);
    int failAt = 0;
    for (bool untouched = false; !untouched;) {
        FaultyCommit commit(extension);
        commit.Run(++failAt, kind, forGood);
        untouched = commit.files.Steps().size() < static_cast<std::size_t>(failAt);
        SCOPED_TRACE(untouched ? Text("no fault")
                               : "operation " + Digits(failAt) + ", " +
                                     commit.files.Steps()[static_cast<std::size_t>(failAt - 1)].operation +
                                     " " + commit.files.Steps()[static_cast<std::size_t>(failAt - 1)].path);
        EXPECT_EQ(commit.scene.toolkit.boxes, commit.boxes);
        CheckTargets(commit, newTexts, kind);
        CheckLog(commit);
        CheckState(commit);
        CheckArchive(commit);
        CheckSecondTry(commit);
        ASSERT_LT(failAt, 300);
        if (HasFailure()) {
            break;
        }
    }
    RecordProperty("operations", failAt - 1);
    EXPECT_GT(failAt, 80) << "archive, four saves and four reports";
}

INSTANTIATE_TEST_SUITE_P(Each, CommitFaultsTest,
                         testing::Combine(testing::Values(".kdt", ".kdt6"),
                                          testing::ValuesIn(FailingFiles::Kinds), testing::Bool()));

}  // namespace
}  // namespace kd
