#include "model/modKDLimitDesk.h"

#include <gtest/gtest.h>

#include "fakes/TestMachine.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

TEST(modKDLimitDeskTest, SuiteContextIsMadeOnceOnFirstUse) {
    TestMachine desk;
    EXPECT_TRUE(desk.suite.contextCalls.empty());
    KDSuiteContext& first = GetSuiteContext(desk.g);
    EXPECT_EQ(desk.suite.contextCalls, (std::vector<Text>{"create", "SetSystemCode KD6", "OpenContext"}));
    EXPECT_EQ(&GetSuiteContext(desk.g), &first);
    EXPECT_EQ(desk.suite.contextCalls.size(), 3U) << "nothing is called on it again";
}

TEST(modKDLimitDeskTest, ChangeFileExtensionGoesByTheFileName) {
    struct Case {
        const char* path;
        const char* extension;
        const char* changed;
    };
    const Case cases[] = {{"/data/plant.kdt", ".V3", "/data/plant.V3"},
                          {"/data/plant.kdt6", ".KDV6.V3", "/data/plant.KDV6.V3"},
                          {"/data/plant", ".IKD", "/data/plant.IKD"},
                          {"/da.ta/plant", ".IKD", "/da.ta/plant.IKD"},
                          {"C:\\da.ta\\plant", ".IKD", "C:\\da.ta\\plant.IKD"},
                          {"a.b.kdt", ".KDL", "a.b.KDL"},
                          {".kdt", ".V1", ".V1"}};
    TestMachine desk;
    for (const Case& c : cases) {
        EXPECT_EQ(ChangeFileExtension(desk.g, c.path, c.extension), c.changed) << c.path;
    }
}

TEST(modKDLimitDeskTest, AnyChangesIsTrueForOneChangedView) {
    TestMachine desk;
    EXPECT_FALSE(AnyChanges(desk.g)) << "no view at all";
    const auto first = desk.g.gFiles->Add("a.kdt", "a", "", 0);
    const auto last = desk.g.gFiles->Add("a.kdt", "a", "x", 1);
    first->SetSelected(true);
    EXPECT_FALSE(AnyChanges(desk.g));
    last->SetChangesMade(true);
    EXPECT_TRUE(AnyChanges(desk.g));
    last->SetChangesMade(false);
    first->SetChangesMade(true);
    EXPECT_TRUE(AnyChanges(desk.g));
}

TEST(modKDLimitDeskTest, JoinPath) {
    struct Case {
        const char* label;
        const char* delimiter;
        std::vector<Text> parts;
        const char* path;
    };
    const Case cases[] = {
        {"two parts", "\\", {"C:\\help", "x.xml"}, "C:\\help\\x.xml"},
        {"folder that ends in one", "\\", {"C:\\help\\", "x.xml"}, "C:\\help\\x.xml"},
        {"other delimiter", "/", {"/help", "x.xml"}, "/help/x.xml"},
        {"the other one is no delimiter", "\\", {"/help/", "x.xml"}, "/help/\\x.xml"},
        {"last part that ends in one loses it", "/", {"a", "b/"}, "a/b"},
        {"one alone is cut", "/", {"a", "b//"}, "a/b/"},
        {"empty part first", "/", {"", "a"}, "/a"},
        {"empty part between", "/", {"a", "", "b"}, "a//b"},
        {"empty part last", "/", {"a", ""}, "a/"},
        {"empty parts alone", "/", {"", ""}, "/"},
        {"one empty part", "/", {""}, ""},
        {"no part", "/", {}, ""},
        {"one part", "/", {"a"}, "a"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(JoinPath(c.delimiter, c.parts), c.path) << c.label;
    }
}

}  // namespace
}  // namespace kd
