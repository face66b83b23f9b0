#include "system/posix/DrivePosix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#ifdef __linux__
#include <sys/utsname.h>
#include <sys/vfs.h>
#endif

#include <cerrno>
#include <cstdint>

#include "system/posix/FailingCalls.h"
#include "system/posix/FilesPosix.h"

namespace kd::posix {

TEST(DriveTest, OnlyASystemThatTellsWhatFailsInTheFlushOfAFileSystemIsTrustedWithIt) {
    for (const char* const release : {"5.17.0", "5.17", "5.100.2-generic", "6.1.0-13-amd64", "10.0.0"}) {
        EXPECT_TRUE(TellsFailedFlushes(release)) << release;
    }
    for (const char* const release :
         {"5.16.20", "5.4.0-150-generic", "4.19.0", "5", "5.", "", "unknown", "6", "6.", "6.x", "6-1.0"}) {
        EXPECT_FALSE(TellsFailedFlushes(release)) << release;
    }
    EXPECT_FALSE(TellsFailedFlushes(std::string_view("6.17", 1)))
        << "what stands behind its end is not its own";
}

#ifdef __linux__
TEST(DriveTest, OfAFileSystemIsKnownWhetherOneFlushServesAndWhomItsLocksReach) {
    struct Case {
        const char* name;
        std::uint32_t type;
        bool isFlushedAtOnce;
        bool hasLocksForAll;
    };
    for (const Case& c : {Case{"ext4", 0xEF53, true, true}, Case{"btrfs", 0x9123683E, true, true},
                          Case{"f2fs", 0xF2F52010, true, true}, Case{"tmpfs", 0x01021994, true, true},
                          Case{"xfs", 0x58465342, true, true}, Case{"zfs", 0x2FC12FC1, true, true},
                          Case{"overlay", 0x794C7630, false, true}, Case{"nfs", 0x6969, true, false},
                          Case{"cifs", 0xFF534D42, false, false}, Case{"fuse", 0x65735546, false, false},
                          Case{"vfat", 0x4D44, false, false}, Case{"none", 0, false, false}}) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(IsFlushedAtOnce(DriveOfType(c.type)), c.isFlushedAtOnce);
        EXPECT_EQ(HasLocksForAll(DriveOfType(c.type)), c.hasLocksForAll);
    }
}

TEST(DriveTest, AnOpenFolderIsAskedForItsOwnFileSystem) {
    const Descriptor here(::open("/dev/shm", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct statfs system {};
    if (::fstatfs(here.Get(), &system) != 0) {
        GTEST_SKIP() << "there is no such folder";
    }
    const Drive drive = DriveOfType(static_cast<std::uint32_t>(system.f_type));
    struct utsname machine {};
    ASSERT_EQ(::uname(&machine), 0);
    EXPECT_EQ(OneFlushIsEnough(here.Get()), TellsFailedFlushes(machine.release) && IsFlushedAtOnce(drive));
    EXPECT_EQ(LocksReachEverybody(here.Get()), HasLocksForAll(drive));
}

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
