#ifndef _WIN32

#include <cerrno>

#include "base/NumberTexts.h"
#include "faults/RealFolder.h"
#include "system/posix/FailingCalls.h"

namespace kd {
namespace {

class SystemCallFaultsTest : public testing::TestWithParam<std::tuple<int, bool>> {};

/// Whether a box tells of something that went wrong.
bool Told(const CommitScene& scene) {
    return std::any_of(scene.toolkit.boxes.begin(), scene.toolkit.boxes.end(),
                       [](const ScriptedToolkit::Box& box) { return box.icon != BoxIcon::Information; });
}

TEST_P(SystemCallFaultsTest, WhateverCallOfTheSystemFailsNothingIsLostAndNothingUntold) {
    const auto [code, forGood] = GetParam();
    const RealFolder folder;
    const std::vector<std::string> newTexts = folder.NewTexts();
    // The everyday run leaves out most of them; the long run has them all.
    const int step = Torture() ? 1 : 9;
    int failAt = 1 - step;
    int tried = 0;
    for (bool untouched = false; !untouched;) {
        failAt += step;
        ++tried;
        folder.PutAll();
        CommitScene scene(folder.files, folder.path);
        scene.Load();
        scene.EditAll();
        Text call = "none";
        {
            const FailingCalls failing(failAt, code, forGood);
            scene.Commit();
            untouched = failing.Calls().size() < static_cast<std::size_t>(failAt);
            if (!untouched) {
                call = failing.Calls()[static_cast<std::size_t>(failAt - 1)];
            }
        }
        SCOPED_TRACE("call " + Digits(failAt) + ", " + call);
        FilesCheck check(folder, ".kdt", newTexts);
        check.Targets();
        check.Archives();
        check.Leftovers();
        bool all = true;
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            const auto at = static_cast<std::size_t>(view);
            all = all && check.written[at] && !scene.ChangesMade(view);
        }
        EXPECT_TRUE((all && check.archiveCount == 1) || Told(scene)) << "something is missing without a word";
        EXPECT_TRUE(!untouched || (all && !Told(scene)));
        if (!Told(scene)) {
            check.Log();
            EXPECT_EQ(check.records, std::vector<std::size_t>(CommitScene::Views, 4U));
        }
        EXPECT_EQ(scene.toolkit.MousePointer(), Pointer::Default);
        for (std::int32_t row = 1; row <= scene.g.gFields->Count(); ++row) {
            EXPECT_EQ(scene.g.gFields->Ref(row).USL(), 50);
        }
        check.NextStart();
        ASSERT_LT(failAt, 2000);
        if (HasFailure()) {
            break;
        }
    }
    std::cout << tried << " of about " << failAt << " calls" << std::endl;
    EXPECT_GT(failAt, 150);
}

INSTANTIATE_TEST_SUITE_P(Each, SystemCallFaultsTest,
                         testing::Combine(testing::Values(EIO, ENOSPC, EACCES, ENOENT), testing::Bool()));

}  // namespace
}  // namespace kd

#endif
