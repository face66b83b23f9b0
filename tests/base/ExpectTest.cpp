#include "base/Expect.h"

#include <gtest/gtest.h>

namespace kd {
namespace {

TEST(ExpectTest, ABrokenPreconditionTellsItsPlaceAndItsWords) {
    EXPECT_DEATH(PreconditionBroken("index < Count()", "Grid.cpp", 7),
                 "^Grid.cpp:7: precondition broken: index < Count");
}

}  // namespace
}  // namespace kd
