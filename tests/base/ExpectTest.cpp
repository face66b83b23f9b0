#include "base/Expect.h"

#include <gtest/gtest.h>

#include <csignal>

namespace kd {
namespace {

TEST(ExpectTest, ABrokenPreconditionTellsItsPlaceAndItsWordsAndEndsTheProgramOnTheSpot) {
#ifdef _WIN32
    const auto isAborted = [](int status) { return status != 0; };  // no signal ends a program here
#else
    const testing::KilledBySignal isAborted(SIGABRT);
#endif
    EXPECT_EXIT(PreconditionBroken("index < Count()", "Grid.cpp", 7), isAborted,
                "^Grid.cpp:7: precondition broken: index < Count");
}

}  // namespace
}  // namespace kd
