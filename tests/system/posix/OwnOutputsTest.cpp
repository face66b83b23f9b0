#include "system/posix/OwnOutputs.h"

#include <gtest/gtest.h>

namespace kd::posix {

TEST(OwnOutputsTest, AFileIsOpenUntilItIsLetGoAndKnownThenByTheStateInWhichItWasLeft) {
    const auto all = std::make_shared<OwnOutputs>();
    const FileState left{{1, 2}, 3, 4};
    OwnOutput one(all, left.file);
    const OwnOutput other(all, {1, 5});
    EXPECT_TRUE(all->IsOpen(left.file));
    EXPECT_FALSE(all->IsLetGo(left));
    one.LetGo(left);
    EXPECT_FALSE(all->IsOpen(left.file));
    EXPECT_TRUE(all->IsOpen({1, 5}));
    EXPECT_TRUE(all->IsLetGo(left));
    EXPECT_FALSE(all->IsLetGo({{1, 2}, 3, 5})) << "written since";
}

TEST(OwnOutputsTest, AFileThatIsGoneOrOpenAnewCountsAsLetGoNoLonger) {
    const FileState left{{1, 2}, 3, 4};
    const FileState other{{1, 5}, 3, 4};
    for (const bool isOpenAnew : {false, true}) {
        SCOPED_TRACE(isOpenAnew ? "open anew" : "gone");
        const auto all = std::make_shared<OwnOutputs>();
        OwnOutput(all, left.file).LetGo(left);
        OwnOutput(all, other.file).LetGo(other);
        EXPECT_TRUE(all->IsLetGo(left));
        if (isOpenAnew) {
            const OwnOutput again(all, left.file);
            EXPECT_FALSE(all->IsLetGo(left));
        } else {
            all->Forget(left.file);
        }
        EXPECT_FALSE(all->IsLetGo(left));
        EXPECT_TRUE(all->IsLetGo(other));
    }
}

}  // namespace kd::posix
