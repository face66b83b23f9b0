#include "appfiles/DerivedBounds.h"

#include <gtest/gtest.h>

#include "base/cError.h"
#include "fakes/ErrorOf.h"

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
        const char* source;
    };
    const Case cases[] = {
        {2, 2, errInvalidArgument, "DerivedBounds.Nines"},
        {0, 1, errInvalidArgument, "DerivedBounds.Nines"},
        {-1, 0, errInvalidArgument, "DerivedBounds.Nines"},
        {400, 0, errOverflow, "FileNumber"},
    };
    for (const Case& c : cases) {
        for (const auto bound : {&MaxForMask, &MinForMask}) {
            std::int32_t error = 0;
            Text source;
            try {
                (void)bound(c.length, c.decimals);
            } catch (const cError& failure) {
                error = failure.Number();
                source = failure.Source();
            }
            EXPECT_EQ(error, c.error) << c.length << "." << c.decimals;
            EXPECT_EQ(source, c.source) << c.length << "." << c.decimals;
        }
    }
}

TEST(DeriveBoundsTest, AMaximumBeyondADoubleLeavesBothTwinsAsTheyWere) {
    cField saved;
    saved.SetFieldType("N");
    saved.SetLength(309);  // the smallest number, of one digit fewer, is a double still
    cField field;
    field.CopyFrom(saved);
    EXPECT_EQ(ErrorOf([&] { DeriveBounds(saved, field); }), errOverflow);
    for (const cField* twin : {&saved, &field}) {
        EXPECT_EQ(twin->Maximum(), 0);
        EXPECT_EQ(twin->Minimum(), 0);
    }
}

}  // namespace
}  // namespace kd
