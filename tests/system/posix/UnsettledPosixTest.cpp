#include "system/posix/UnsettledPosix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

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
        EXPECT_NO_THROW(unsettled.Settle()) << code;
        ASSERT_FALSE(calls.Calls().empty()) << code;
        EXPECT_EQ(calls.Calls().front(), "fsync") << code;
    }
}

TEST(UnsettledTest, AFailedFlushTellsTheFirstPathWhenAllHaveBeenTried) {
    const Descriptor file(::open(OfTheKernel, O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(file.IsOpen());
    ASSERT_FALSE(OneFlushIsEnough(file.Get()));
    Unsettled unsettled;
    EXPECT_TRUE(unsettled.Add(file.Get(), "first"));
    EXPECT_TRUE(unsettled.Add(file.Get(), "second"));
    FailingCalls calls;
    calls.FailEach("fsync", EIO);
    try {
        unsettled.Settle();
        FAIL() << "the failure is told";
    } catch (const cError& error) {
        EXPECT_EQ(error.Path(), "first");
        EXPECT_EQ(error.Number(), errDevice);
    }
    EXPECT_NO_THROW(unsettled.Settle()) << "nothing is left";
}

}  // namespace kd::posix
