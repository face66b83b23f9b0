#ifdef __linux__

#include <random>

#include "faults/KilledProcess.h"
#include "faults/RealFolder.h"

namespace kd {
namespace {

/// A commit in a process of its own, over real files.
class KillTest : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (!KilledProcess::Possible()) {
            ASSERT_FALSE(Torture())
                << "the long part stands for what it has tried, and this machine lets it not";
            GTEST_SKIP() << "this machine lets no process watch another";
        }
    }

    /// What must hold whenever the process went.
    void Check() {
        FilesCheck check(folder, GetParam(), newTexts);
        check.Targets();
        check.Log();
        check.Archives();
        check.Leftovers();
        bool goesOn = true;
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            const auto at = static_cast<std::size_t>(view);
            EXPECT_TRUE(goesOn || !check.written[at]) << "views are written in order";
            const bool recorded = check.records[at] == std::size_t{2} * CommitScene::PerView;
            EXPECT_TRUE(check.written[at] || check.records[at] == 0) << "a record of what was not written";
            EXPECT_TRUE(!check.written[at] || check.archiveCount == 1) << "written over without an archive";
            goesOn = goesOn && check.written[at] && recorded;
        }
        check.NextStart();
    }
    std::unique_ptr<KilledProcess> Process() {
        folder.PutAll();
        scene = std::make_unique<CommitScene>(folder.files, folder.path, GetParam());
        return std::make_unique<KilledProcess>(
            [&] {
                scene->Load();
                scene->EditAll();
            },
            [&] { scene->Commit(); });
    }

    RealFolder folder{GetParam()};
    std::vector<std::string> newTexts = folder.NewTexts();
    std::unique_ptr<CommitScene> scene;
};

TEST_P(KillTest, AtEveryCallOfTheSystemNothingIsLost) {
    // The everyday run leaves out most of them; the long run has them all.
    const int step = Torture() ? 1 : 13;
    int killed = 0;
    // How many there are is not the same each time: memory asks the system, too.
    bool ended = false;
    for (int moment = 1; !ended && !HasFailure(); moment += step) {
        SCOPED_TRACE("moment " + std::to_string(moment));
        ended = Process()->KillAt(moment) < moment;
        Check();
        killed += ended ? 0 : 1;
    }
    std::cout << killed << " moments of about " << killed * step << std::endl;
    EXPECT_GT(killed * step, 500) << "two moments for each call of a commit";
}

TEST_P(KillTest, AtAnyMomentNothingIsLost) {
    std::mt19937 random(6);
    const int rounds = Torture() ? 500 : 10;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        Process()->KillAfter(static_cast<unsigned>(random() % 8000));
        Check();
    }
}

INSTANTIATE_TEST_SUITE_P(Each, KillTest, testing::Values(".kdt", ".kdt6"));

}  // namespace
}  // namespace kd

#endif
