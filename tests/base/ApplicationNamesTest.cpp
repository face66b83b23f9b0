#include "base/ApplicationNames.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>

#include "base/CodePage.h"

namespace kd::names {

TEST(ApplicationNamesTest, AViewIsKnownByItsTemplatesNameAndAPlainNumberFromOne) {
    struct Case {
        const char* file;
        const char* ofTemplate;
        std::int32_t number;
    };
    for (const Case& c : {Case{"plant.V1", "plant.kdt", 1},
                          {"PLANT.v12", "plant.kdt", 12},
                          {"plant.V10", "plant.kdt", 10},
                          {"plant.V19", "plant.kdt", 19},
                          {"plant.V2147483647", "plant.kdt", 2147483647},
                          {"plant.KDV6.V3", "plant.kdt6", 3},
                          {"plant.V2147483648", "plant.kdt", 0},
                          {"plant.V0", "plant.kdt", 0},
                          {"plant.V01", "plant.kdt", 0},
                          {"plant.V", "plant.kdt", 0},
                          {"plant.V1x", "plant.kdt", 0},
                          {"plant.V1x2", "plant.kdt", 0},
                          {"plant.V-1", "plant.kdt", 0},
                          {"plant.V/", "plant.kdt", 0},
                          {"plant.V:", "plant.kdt", 0},
                          {"plant.V3", "plant.kdt6", 0},
                          {"plant.KDV6.V3", "plant.kdt", 0},
                          {"plan.V1", "plant.kdt", 0},
                          {"planta.V1", "plant.kdt", 0},
                          {"", "plant.kdt", 0}}) {
        EXPECT_EQ(ViewNumberOf(c.file, c.ofTemplate, CodePage::Of(1252)), c.number)
            << c.file << " of " << c.ofTemplate;
    }
}

TEST(ApplicationNamesTest, ExtensionsGoByTheGenerationOfTheTemplate) {
    struct Case {
        const char* ofTemplate;
        const char* view;
        const char* log;
        const char* report;
    };
    for (const Case& c : {Case{"/apps/plant.kdt", ".V12", ".KDL", ".KDM"},
                          {"/apps/plant.kdt6", ".KDV6.V12", ".KDL6", ".KDM6"}}) {
        EXPECT_EQ(ViewExtension(c.ofTemplate, 12), c.view);
        EXPECT_EQ(ChangeLogExtension(c.ofTemplate), c.log);
        EXPECT_EQ(ChangeReportExtension(c.ofTemplate), c.report);
    }
}

TEST(ApplicationNamesTest, ArchivesLieBesideTheTemplateUnderItsName) {
    EXPECT_EQ(ArchivesOf("/apps/plant.kdt", '/'), "/apps/Archive/plant");
    EXPECT_EQ(ArchivesOf("/plant.kdt6", '/'), "/Archive/plant");
    EXPECT_EQ(ArchivesOf("plant.kdt", '/'), "./Archive/plant");
}

TEST(ApplicationNamesTest, NamesThatNobodyCanForeseeAreOfAllLettersAndDiffer) {
    std::set<char> letters;
    std::set<Text> names;
    for (int i = 0; i < 200; ++i) {
        const Text name = UnfinishedArchiveName();
        const Text random = name.substr(name.find('-') + 1);
        letters.insert(random.begin(), random.end());
        names.insert(name);
    }
    EXPECT_EQ(Text(letters.begin(), letters.end()), "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(names.size(), 200U);
}

TEST(ApplicationNamesTest, AnUnfinishedArchiveIsKnownByItsLettersAndNotByTheirNumberAlone) {
    EXPECT_TRUE(IsUnfinishedArchive(UnfinishedArchiveName()));
    EXPECT_TRUE(IsUnfinishedArchive(".unfinished-azbcdefghijklmno")) << "as another run named it";
    for (const char* const other :
         {"", ".unfinished-", ".unfinished-abc", ".unfinished-my own folder 1",
          ".unfinished-ABCDEFGHIJKLMNOP", ".unfinished-abcdefghijklmnop2", ".unfinished-abcdefghijklmno{"}) {
        EXPECT_FALSE(IsUnfinishedArchive(other)) << other;
    }
}

TEST(ApplicationNamesTest, ATextThatWaitsIsKnownByItsLettersAndTellsItsFile) {
    EXPECT_EQ(WaitsFor(WaitingName("plant.V1")), "plant.V1");
    EXPECT_EQ(WaitsFor(".kdsave-azbcdefghijklmno-plant.V1"), "plant.V1") << "as another run named it";
    for (const char* const other :
         {"", ".kdsave-", ".kdsave-123456", ".kdsave-abcdefghijklmnop", ".kdsave-my own copy 001-plant.V1",
          "plant.V1", ".kdsave-ABCDEFGHIJKLMNOP-plant.V1", "my-file-abcdefghijklmnop-plant.V1",
          ".kdsave-abcdefghijklmnopq-plant.V1"}) {
        EXPECT_EQ(WaitsFor(other), "") << other;
    }
}

}  // namespace kd::names
