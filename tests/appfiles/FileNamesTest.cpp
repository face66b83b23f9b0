#include "appfiles/FileNames.h"

#include <gtest/gtest.h>

#include "fakes/TestMachine.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

TEST(FileNamesTest, EveryNameComesFromTheTemplatesPath) {
    struct Case {
        const char* path;
        std::int16_t viewNo;
        const char* schema;
        const char* temporary;
        const char* log;
        const char* report;
    };
    const Case cases[] = {
        {"/a/plant.kdt", 0, "/a/plant.kdt", "/a/plant.temp", "/a/plant.KDL", "/a/plant.KDM"},
        {"/a/plant.kdt", 3, "/a/plant.V3", "/a/plant.temp", "/a/plant.KDL", "/a/plant.KDM"},
        {"/a/plant.kdt6", 0, "/a/plant.kdt6", "/a/plant.temp", "/a/plant.KDL6", "/a/plant.KDM6"},
        {"/a/plant.kdt6", 2, "/a/plant.KDV6.V2", "/a/plant.KDV6.temp", "/a/plant.KDL6", "/a/plant.KDM6"},
        {"/a.b/plant6", 12, "/a.b/plant6.KDV6.V12", "/a.b/plant6.KDV6.temp", "/a.b/plant6.KDL6",
         "/a.b/plant6.KDM6"},
        {"/a/x.y.kdt", 32767, "/a/x.y.V32767", "/a/x.y.temp", "/a/x.y.KDL", "/a/x.y.KDM"},
    };
    for (const Case& c : cases) {
        TestMachine t;
        const auto file = t.g.gFiles->Add(c.path, {}, {}, c.viewNo);
        EXPECT_EQ(SchemaPath(t.g, *file), c.schema) << c.path;
        EXPECT_EQ(TemporaryPath(t.g, c.schema), c.temporary) << c.path;
        EXPECT_EQ(ChangeLogPath(t.g, c.path), c.log) << c.path;
        EXPECT_EQ(ChangeReportPath(t.g, c.path), c.report) << c.path;
    }
}

TEST(FileNamesTest, FileExistsTellsWhatIsThere) {
    TestMachine t;
    t.files.Put("/a/plant.kdt", "");
    EXPECT_TRUE(FileExists(t.g, "/a/plant.kdt"));
    EXPECT_FALSE(FileExists(t.g, "/a/other.kdt"));
    EXPECT_FALSE(FileExists(t.g, "/b/plant.kdt"));
}

}  // namespace
}  // namespace kd
