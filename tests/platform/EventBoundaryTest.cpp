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
    EventBoundary& boundary = desk.toolkit.Boundary();
    boundary.PutBack = [&] { ++putBack; };
    EXPECT_TRUE(boundary.Run([&] { ++ran; }));
    EXPECT_EQ(ran, 1);
    EXPECT_EQ(putBack, 0);
    EXPECT_TRUE(desk.toolkit.log.empty());
}

TEST(EventBoundaryTest, FailureIsToldInOneCriticalBoxAfterAllIsPutBack) {
    TestMachine desk;
    desk.toolkit.ExpectBox("Run-time error '53':\r\n\r\nFile not found\r\na.kdt", BoxIcon::Critical,
                           "KDLimitDesk");
    EventBoundary& boundary = desk.toolkit.Boundary();
    boundary.PutBack = [&] { desk.toolkit.log.emplace_back("put back"); };
    EXPECT_FALSE(boundary.Run([&] {
        desk.toolkit.SetMousePointer(Pointer::Hourglass);
        throw cError(errFileNotFound, "Files.Read", {}, "a.kdt");
    }));
    EXPECT_EQ(desk.toolkit.log,
              (std::vector<std::string>{"hourglass", "default", "put back",
                                        "box Run-time error '53':\r\n\r\nFile not found\r\na.kdt"}));
}

TEST(EventBoundaryTest, NothingToPutBackIsFine) {
    TestMachine desk;
    desk.toolkit.ExpectBox("Run-time error '9':\r\n\r\nSubscript out of range", BoxIcon::Critical);
    EXPECT_FALSE(desk.toolkit.Boundary().Run([] { throw cError(errSubscript, "x"); }));
}

TEST(EventBoundaryTest, OtherFailuresGetANumberToo) {
    TestMachine desk;
    desk.toolkit.ExpectBox("Run-time error '7':\r\n\r\nOut of memory", BoxIcon::Critical);
    EXPECT_FALSE(desk.toolkit.Boundary().Run([] { throw std::bad_alloc(); }));
    desk.toolkit.ExpectBox("Run-time error '5':\r\n\r\nodd", BoxIcon::Critical);
    EXPECT_FALSE(desk.toolkit.Boundary().Run([] { throw std::runtime_error("odd"); }));
}

}  // namespace
}  // namespace kd
