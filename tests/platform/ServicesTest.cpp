#include "platform/Services.h"

#include <gtest/gtest.h>

#include "base/cError.h"

namespace kd {
namespace {

TEST(ServicesTest, DateAndTimeHaveFixedWidths) {
    EXPECT_EQ(DateText({2026, 3, 4, 5, 6, 7}), "2026-03-04");
    EXPECT_EQ(TimeText({2026, 3, 4, 5, 6, 7}), "05:06:07");
    EXPECT_EQ(DateText({987, 12, 31, 23, 59, 58}), "0987-12-31");
    EXPECT_EQ(TimeText({987, 12, 31, 23, 59, 58}), "23:59:58");
    EXPECT_EQ(TimeText({2026, 1, 1, 0, 0, 0}), "00:00:00");
}

TEST(ServicesTest, AMomentThatNobodyHasSetIsOneThatCanBeWritten) {
    EXPECT_EQ(DateText(DateTime()) + " " + TimeText(DateTime()), "1970-01-01 00:00:00");
}

TEST(ServicesTest, ARequestForFilesTakesOneThatIsNotThereUnlessItSaysOtherwise) {
    EXPECT_FALSE(OpenFileRequest().mustExist);
}

TEST(ServicesTest, MomentComesBackFromItsTexts) {
    for (const DateTime& moment : {DateTime{2026, 3, 4, 5, 6, 7}, DateTime{1999, 12, 31, 23, 59, 59},
                                   DateTime{2024, 2, 29, 0, 0, 0}, DateTime{1, 1, 1, 0, 0, 0}}) {
        EXPECT_EQ(ParseDateTime(DateText(moment) + " " + TimeText(moment)), moment);
    }
}

TEST(ServicesTest, AnyOtherTextIsRefused) {
    for (const char* const text : {"",
                                   "2026-03-04",
                                   "05:06:07",
                                   "2026-03-04  05:06:07",
                                   "2026-03-04T05:06:07",
                                   "2026/03/04 05:06:07",
                                   "2026-3-4 5:6:7",
                                   " 2026-03-04 05:06:07",
                                   "2026-03-04 05:06:07 ",
                                   "2026-00-04 05:06:07",
                                   "2026-13-04 05:06:07",
                                   "2026-03-00 05:06:07",
                                   "2026-03-32 05:06:07",
                                   "2026-03-04 24:06:07",
                                   "2026-03-04 05:60:07",
                                   "2026-03-04 05:06:60",
                                   "2026-03-04 05:06:0:",
                                   "2026-03-04 05:06:0x",
                                   "-026-03-04 05:06:07",
                                   "2026-03-04 05-06-07"}) {
        try {
            (void)ParseDateTime(text);
            ADD_FAILURE() << "'" << text << "' is taken";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), errTypeMismatch) << text;
            EXPECT_EQ(error.Source(), "Services.ParseDateTime") << text;
        }
    }
}

}  // namespace
}  // namespace kd
