#include "system/posix/UnsettledPosix.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace kd::posix {

TEST(UnsettledTest, AFileSystemThatIsNotKnownToBringAllToTheDiskInOneFlushIsNotTrustedToDoSo) {
#ifndef __linux__
    GTEST_SKIP() << "only Linux has such a flush";
#endif
    const Descriptor ofTheKernel(::open("/proc/self/status", O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(ofTheKernel.IsOpen());
    EXPECT_FALSE(OneFlushIsEnough(ofTheKernel.Get()));
    EXPECT_FALSE(OneFlushIsEnough(-1)) << "nor one that cannot be asked";
}

}  // namespace kd::posix
