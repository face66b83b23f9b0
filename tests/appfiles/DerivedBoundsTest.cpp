#include "appfiles/DerivedBounds.h"

#include <gtest/gtest.h>

#include "base/cError.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

TEST(MaxForMaskTest, BoundsFillTheMask) {
    struct Case {
        std::int32_t length;
        std::int32_t decimals;
        double max;
        double min;
    };
    const Case cases[] = {
        {6, 2, 999.99, -99.99}, {5, 0, 99999, -9999}, {3, 2, .99, 0}, {3, 1, 9.9, -.9},    {1, 0, 9, 0},
        {2, 0, 99, -9},         {2, 1, .9, 0},        {0, 0, 0, 0},   {4, -1, 9999, -999},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(MaxForMask(c.length, c.decimals), c.max) << c.length << "." << c.decimals;
        EXPECT_EQ(MinForMask(c.length, c.decimals), c.min) << c.length << "." << c.decimals;
    }
}

TEST(MaxForMaskTest, AMaskWithoutPlaceForThePointOrBeyondADoubleFails) {
    struct Case {
        std::int32_t length;
        std::int32_t decimals;
        std::int32_t error;
    };
    for (const Case& c : {Case{2, 2, errInvalidArgument}, Case{0, 1, errInvalidArgument},
                          Case{-1, 0, errInvalidArgument}, Case{400, 0, errOverflow}}) {
        for (const auto bound : {&MaxForMask, &MinForMask}) {
            std::int32_t error = 0;
            try {
                (void)bound(c.length, c.decimals);
            } catch (const cError& failure) {
                error = failure.Number();
            }
            EXPECT_EQ(error, c.error) << c.length << "." << c.decimals;
        }
    }
}

}  // namespace
}  // namespace kd
