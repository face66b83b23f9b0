#include "system/posix/DrivePosix.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "system/posix/FailingCalls.h"
#include "system/posix/FilesPosix.h"

namespace kd::posix {

TEST(DriveTest, OnlyASystemThatTellsWhatFailsInTheFlushOfAFileSystemIsTrustedWithIt) {
    for (const char* const release : {"5.17.0", "5.17", "5.100.2-generic", "6.1.0-13-amd64", "10.0.0"}) {
        EXPECT_TRUE(TellsFailedFlushes(release)) << release;
    }
    for (const char* const release : {"5.16.20", "5.4.0-150-generic", "4.19.0", "5", "5.", "", "unknown"}) {
        EXPECT_FALSE(TellsFailedFlushes(release)) << release;
    }
}

#ifdef __linux__
TEST(DriveTest, ASystemThatDoesNotTellItsReleaseIsNotTrusted) {
    const Descriptor here(::open("/dev/shm", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!OneFlushIsEnough(here.Get())) {
        GTEST_SKIP() << "nothing there is flushed at once";
    }
    FailingCalls calls;
    calls.FailEach("uname", EFAULT);
    EXPECT_FALSE(OneFlushIsEnough(here.Get()));
}
#endif

TEST(DriveTest, AFileSystemThatIsNotKnownIsTrustedWithNothing) {
#ifndef __linux__
    GTEST_SKIP() << "only Linux has such a flush";
#endif
    const Descriptor ofTheKernel(::open("/proc/self/status", O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(ofTheKernel.IsOpen());
    EXPECT_FALSE(OneFlushIsEnough(ofTheKernel.Get()));
    EXPECT_FALSE(OneFlushIsEnough(-1)) << "nor one that cannot be asked";
    EXPECT_FALSE(LocksReachEverybody(ofTheKernel.Get()));
    EXPECT_FALSE(LocksReachEverybody(-1));
}

}  // namespace kd::posix
