#include "help/ShowHelpTopic.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/cError.h"
#include "fakes/TestMachine.h"
#include "model/modKDLimitDesk.h"

namespace kd {
namespace {

using testing::ElementsAre;

TEST(ShowHelpTopicTest, NamesTheCatalogueLoadsItFindsTheTopicAndOpensIt) {
    TestMachine desk;
    desk.suite.helpTopics["Documentation"] = 0;
    modKDLimitDesk::ShowHelpTopic(desk.g, modKDLimitDesk::DocumentationTopic);
    EXPECT_THAT(desk.suite.log, ElementsAre("SetFileName /opt/kd/help/KDLimitDeskHelp.xml", "LoadIndex",
                                            "FindTopic Documentation", "OpenTopic Documentation"));
}

TEST(ShowHelpTopicTest, EachLookupIsMadeAnew) {
    TestMachine desk;
    desk.suite.helpTopics["Documentation"] = 0;
    modKDLimitDesk::ShowHelpTopic(desk.g, "Documentation");
    modKDLimitDesk::ShowHelpTopic(desk.g, "Documentation");
    EXPECT_EQ(desk.suite.helpTopics["Documentation"], 2);
    EXPECT_EQ(desk.suite.log.size(), 8U);
}

TEST(ShowHelpTopicTest, UnknownTopicEndsSilently) {
    TestMachine desk;
    modKDLimitDesk::ShowHelpTopic(desk.g, "Video Tutorials");
    EXPECT_THAT(desk.suite.log, ElementsAre("SetFileName /opt/kd/help/KDLimitDeskHelp.xml", "LoadIndex",
                                            "FindTopic Video Tutorials"));
    EXPECT_TRUE(desk.toolkit.log.empty());
}

TEST(ShowHelpTopicTest, FolderThatEndsInItsDelimiterGetsNoSecondOne) {
    TestMachine desk;
    desk.suite.helpFolder = "/opt/kd/help/";
    modKDLimitDesk::ShowHelpTopic(desk.g, "Documentation");
    EXPECT_EQ(desk.suite.log.at(0), "SetFileName /opt/kd/help/KDLimitDeskHelp.xml");
}

TEST(ShowHelpTopicTest, CatalogueIsNamedAsTheProgramWithoutItsExtension) {
    TestMachine desk;
    desk.environment.programPath = "/opt/kd/Limits.Tool.exe";
    modKDLimitDesk::ShowHelpTopic(desk.g, "Documentation");
    EXPECT_EQ(desk.suite.log.at(0), "SetFileName /opt/kd/help/Limits.ToolHelp.xml");
}

TEST(ShowHelpTopicTest, MissingCatalogueIsRaisedToTheCaller) {
    TestMachine desk;
    desk.suite.helpIndexMissing = true;
    try {
        modKDLimitDesk::ShowHelpTopic(desk.g, "Documentation");
        FAIL() << "nothing was raised";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errFileNotFound);
    }
    EXPECT_TRUE(desk.toolkit.log.empty());
}

TEST(JoinPathTest, PutsOneDelimiterBetweenTheParts) {
    struct Case {
        const char* label;
        std::vector<Text> parts;
        const char* path;
    };
    const Case cases[] = {{"two parts", {"C:\\help", "a.xml"}, "C:\\help\\a.xml"},
                          {"first ends in the delimiter", {"C:\\help\\", "a.xml"}, "C:\\help\\a.xml"},
                          {"an empty part gives one delimiter", {"a", "", "b"}, "a\\\\b"},
                          {"an empty first part", {"", "a.xml"}, "\\a.xml"},
                          {"one delimiter at the end is cut", {"a", "b\\"}, "a\\b"},
                          {"only one is cut", {"a", ""}, "a\\"},
                          {"no part", {}, ""}};
    for (const Case& c : cases) {
        EXPECT_EQ(modKDLimitDesk::JoinPath("\\", c.parts), c.path) << c.label;
    }
}

}  // namespace
}  // namespace kd
