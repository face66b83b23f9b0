#include "system/posix/UnsettledPosix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "base/cError.h"
#include "system/posix/DrivePosix.h"
#include "system/posix/FailingCalls.h"

namespace kd::posix {

namespace {

/// A file of the kernel's own: no drive, so each is flushed by itself.
constexpr const char* OfTheKernel = "/proc/self/status";

}  // namespace

TEST(UnsettledTest, AFolderOnASystemThatFlushesNoneIsPassedOver) {
    for (const int code : {EINVAL, ENOTSUP}) {
        Unsettled unsettled;
        unsettled.AddName(OfTheKernel);
        FailingCalls calls;
        calls.FailEach("fsync", code);
        EXPECT_TRUE(unsettled.TrySettle([] {}).empty()) << code;
        ASSERT_FALSE(calls.Calls().empty()) << code;
        EXPECT_EQ(calls.Calls().front(), "fsync") << code;
    }
}

TEST(UnsettledTest, AFolderThatIsMissingOrIsNoneHasNoNameToSettle) {
    Unsettled unsettled;
    unsettled.AddName("/nowhere/name");
    unsettled.AddName(Text(OfTheKernel) + "/name");
    FailingCalls calls;
    EXPECT_TRUE(unsettled.TrySettle([] {}).empty());
    EXPECT_TRUE(calls.Calls().empty());
}

TEST(UnsettledTest, ADriveIsAskedOnceUntilAllIsSettled) {
    const Descriptor folder(::open("/dev/shm", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!OneFlushIsEnough(folder.Get())) {
        GTEST_SKIP() << "nothing there is flushed at once";
    }
    Unsettled unsettled;
    EXPECT_TRUE(unsettled.SharesItsFlush(folder.Get()));
    FailingCalls calls;
    calls.FailEach("fstatfs", EIO);
    EXPECT_TRUE(unsettled.SharesItsFlush(folder.Get()));
    EXPECT_TRUE(unsettled.TrySettle([] {}).empty());
    EXPECT_FALSE(unsettled.SharesItsFlush(folder.Get()));
}

TEST(UnsettledTest, AFileThatDoesNotTellItsDriveIsFlushedByItself) {
    const Descriptor file(::open("/dev/shm", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!OneFlushIsEnough(file.Get())) {
        GTEST_SKIP() << "nothing there is flushed at once";
    }
    Unsettled unsettled;
    FailingCalls calls;
    calls.FailEach("fstat", EIO);
    EXPECT_FALSE(unsettled.SharesItsFlush(file.Get()));
    EXPECT_EQ(unsettled.Add(file.Get(), "first"), Unsettled::Way::Alone);
}

TEST(UnsettledTest, ADriveThatDoesNotAnswerOnceLeavesNoNameWithoutAFlush) {
    const Text name = "/dev/shm/name";
    const Descriptor file(::open("/dev/shm", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!OneFlushIsEnough(file.Get())) {
        GTEST_SKIP() << "nothing there is flushed at once";
    }
    for (int failAt = 1; failAt <= 4; ++failAt) {
        for (const bool isNamed : {false, true}) {
            SCOPED_TRACE(std::to_string(failAt) + (isNamed ? " named" : ""));
            Unsettled unsettled;
            {
                const FailingCalls calls(failAt, EIO);
                if (isNamed) {
                    unsettled.AddName(file.Get(), name);
                } else {
                    unsettled.AddInFolder(file.Get(), name);
                }
            }
            if (!isNamed) {
                unsettled.AddName(name);
            }
            FailingCalls calls;
            EXPECT_TRUE(unsettled.TrySettle([] {}).empty());
            EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "syncfs"), 1);
        }
    }
}

TEST(UnsettledTest, AFileThatCannotBeHeldOpenIsFlushedAtOnceAndItsFailureIsTold) {
    const Descriptor file(::open(OfTheKernel, O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(file.IsOpen());
    Unsettled unsettled;
    FailingCalls calls;
    calls.FailEach("fcntl", EMFILE);
    try {
        (void)unsettled.Add(file.Get(), "first");
        ADD_FAILURE() << "nothing of the kernel's own can be flushed";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errDevice);
        EXPECT_EQ(error.Source(), "SystemFiles.Settle");
        EXPECT_EQ(error.Path(), "first");
    }
    EXPECT_TRUE(unsettled.TrySettle([] {}).empty()) << "nothing is left";
}

TEST(UnsettledTest, EachFailedFlushIsToldWithItsPathAndTheCallerLivesBetweenThem) {
    const Descriptor file(::open(OfTheKernel, O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(file.IsOpen());
    ASSERT_FALSE(OneFlushIsEnough(file.Get()));
    Unsettled unsettled;
    EXPECT_EQ(unsettled.Add(file.Get(), "first"), Unsettled::Way::Alone);
    EXPECT_EQ(unsettled.Add(file.Get(), "second"), Unsettled::Way::Alone);
    unsettled.AddName(OfTheKernel);
    FailingCalls calls;
    calls.FailEach("fsync", EIO);
    int lived = 0;
    const std::vector<cError> failures = unsettled.TrySettle([&] { ++lived; });
    ASSERT_EQ(failures.size(), 3U);
    EXPECT_EQ(failures[0].Path(), "first");
    EXPECT_EQ(failures[0].Number(), errDevice);
    EXPECT_EQ(failures[0].Source(), "SystemFiles.Settle");
    EXPECT_EQ(failures[1].Path(), "second");
    EXPECT_EQ(failures[2].Path(), "/proc/self") << "a flush of names is their folder's";
    EXPECT_EQ(lived, 3);
    EXPECT_TRUE(unsettled.TrySettle([] {}).empty()) << "nothing is left";
}

TEST(UnsettledTest, WhatIsAddedAgainIsFlushedOnceUntilAllIsSettled) {
    const Descriptor file(::open(OfTheKernel, O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(file.IsOpen());
    Unsettled unsettled;
    for (const char* const settling : {"first", "second"}) {
        unsettled.AddOnce(file.Get(), "log");
        unsettled.AddOnce(file.Get(), "log");
        unsettled.AddInFolder(file.Get(), OfTheKernel);  // which tells nothing of names here
        unsettled.AddName(OfTheKernel);
        unsettled.AddName("/proc/self/stat");
        FailingCalls calls;
        calls.FailEach("fsync", EIO);
        std::vector<Text> paths;
        for (const cError& failure : unsettled.TrySettle([] {})) {
            paths.push_back(failure.Path());
        }
        EXPECT_EQ(paths, (std::vector<Text>{"log", OfTheKernel, "/proc/self"})) << settling;
    }
}

TEST(UnsettledTest, OneFlushServesAllOfADriveAndTheNamesInTheFolderOfAFile) {
    const Descriptor file(::open("/dev/shm", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!OneFlushIsEnough(file.Get())) {
        GTEST_SKIP() << "nothing there is flushed at once";
    }
    Unsettled unsettled;
    unsettled.AddInFolder(file.Get(), "/dev/shm/first");
    FailingCalls calls;
    unsettled.AddName("/dev/shm/second");
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "open"), 0);
    calls.FailEach("fcntl", EMFILE);
    EXPECT_EQ(unsettled.Add(file.Get(), "third"), Unsettled::Way::WithAll) << "it needs no second descriptor";
    int lived = 0;
    errno = EIO;
    EXPECT_TRUE(unsettled.TrySettle([&] { ++lived; }).empty());
    EXPECT_EQ(lived, 1);
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "syncfs"), 1);
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "fsync"), 0);
}

TEST(UnsettledTest, AFailedFlushOfADriveIsToldWithoutAPath) {
    const Descriptor file(::open("/dev/shm", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!OneFlushIsEnough(file.Get())) {
        GTEST_SKIP() << "nothing there is flushed at once";
    }
    Unsettled unsettled;
    (void)unsettled.Add(file.Get(), "first");
    FailingCalls calls;
    calls.FailEach("syncfs", ENOSPC);
    const std::vector<cError> failures = unsettled.TrySettle([] {});
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].Number(), errDiskFull);
    EXPECT_EQ(failures[0].Path(), "");
}

// The flush that has come to pass is that of the file as it was called then.
TEST(UnsettledTest, ANameOfAFileThatIsFlushedAtOnceIsSettledByItself) {
    const Descriptor file(::open("/dev/shm", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!OneFlushIsEnough(file.Get())) {
        GTEST_SKIP() << "nothing there is flushed at once";
    }
    Unsettled unsettled;
    FailingCalls calls;
    calls.FailEach("fcntl", EMFILE);
    unsettled.AddName(file.Get(), "/dev/shm/name");
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "fsync"), 1);
    EXPECT_TRUE(unsettled.TrySettle([] {}).empty());
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "syncfs"), 1);
}

}  // namespace kd::posix
