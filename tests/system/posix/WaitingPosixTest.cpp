#include <gtest/gtest.h>

#include <cerrno>

#include "system/Waiting.h"
#include "system/posix/FailingCalls.h"

namespace kd {
namespace {

/// What the program itself waits with, before any test puts its own in the place.
void (*const PauseOfTheProgram)(std::uint32_t) = waiting::Pause;

TEST(WaitingPosixTest, APauseIsLeftToTheSystem) {
    FailingCalls calls;
    calls.FailEach("nanosleep", EINVAL);  // so that nothing waits
    bool hasAsked = false;
    calls.Before("nanosleep", [&] { hasAsked = true; });
    PauseOfTheProgram(waiting::PauseForASaveInMilliseconds);
    EXPECT_TRUE(hasAsked);
}

}  // namespace
}  // namespace kd
