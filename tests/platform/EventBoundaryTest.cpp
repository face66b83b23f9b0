#include "platform/EventBoundary.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "fakes/TestMachine.h"

namespace kd {
namespace {

TEST(EventBoundaryTest, WordsOfAFailure) {
    EXPECT_EQ(UnhandledErrorText(cError(6, "cList.Item")), "Run-time error '6':\r\n\r\nOverflow");
    EXPECT_EQ(UnhandledErrorText(cError(13, "x", "In other words.")),
              "Run-time error '13':\r\n\r\nIn other words.");
    EXPECT_EQ(UnhandledErrorText(cError(70, "x", {}, "/data/plant.kdt")),
              "Run-time error '70':\r\n\r\nPermission denied\r\n/data/plant.kdt");
}

TEST(EventBoundaryTest, HandlerThatEndsWellSaysNothing) {
    TestMachine desk;
    int ran = 0;
    int putBack = 0;
    EXPECT_TRUE(AtEventBoundary(
        desk.platform, [&] { ++putBack; }, [&] { ++ran; }));
    EXPECT_EQ(ran, 1);
    EXPECT_EQ(putBack, 0);
    EXPECT_TRUE(desk.toolkit.log.empty());
}

TEST(EventBoundaryTest, FailureIsToldInOneCriticalBoxAfterAllIsPutBack) {
    TestMachine desk;
    desk.toolkit.ExpectBox("Run-time error '53':\r\n\r\nFile not found\r\na.kdt", BoxIcon::Critical,
                           "KDLimitDesk");
    EXPECT_FALSE(AtEventBoundary(
        desk.platform, [&] { desk.toolkit.SetMousePointer(Pointer::Default); },
        [&] {
            desk.toolkit.SetMousePointer(Pointer::Hourglass);
            throw cError(errFileNotFound, "Files.Read", {}, "a.kdt");
        }));
    EXPECT_EQ(desk.toolkit.log,
              (std::vector<std::string>{"hourglass", "default",
                                        "box Run-time error '53':\r\n\r\nFile not found\r\na.kdt"}));
}

TEST(EventBoundaryTest, NothingToPutBackIsFine) {
    TestMachine desk;
    desk.toolkit.ExpectBox("Run-time error '9':\r\n\r\nSubscript out of range", BoxIcon::Critical);
    EXPECT_FALSE(AtEventBoundary(desk.platform, nullptr, [] { throw cError(errSubscript, "x"); }));
}

TEST(EventBoundaryTest, OtherFailuresGetANumberToo) {
    TestMachine desk;
    desk.toolkit.ExpectBox("Run-time error '7':\r\n\r\nOut of memory", BoxIcon::Critical);
    EXPECT_FALSE(AtEventBoundary(desk.platform, nullptr, [] { throw std::bad_alloc(); }));
    desk.toolkit.ExpectBox("Run-time error '5':\r\n\r\nodd", BoxIcon::Critical);
    EXPECT_FALSE(AtEventBoundary(desk.platform, nullptr, [] { throw std::runtime_error("odd"); }));
}

}  // namespace
}  // namespace kd
