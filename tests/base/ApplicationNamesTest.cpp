#include "base/ApplicationNames.h"

#include <gtest/gtest.h>

#include <cstdint>

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

TEST(ApplicationNamesTest, AnUnfinishedArchiveIsKnownByItsLettersAndNotByTheirNumberAlone) {
    EXPECT_TRUE(IsUnfinishedArchive(UnfinishedArchiveName()));
    for (const char* const other :
         {"", ".unfinished-", ".unfinished-abc", ".unfinished-my own folder 1",
          ".unfinished-ABCDEFGHIJKLMNOP", ".unfinished-abcdefghijklmnop2", ".unfinished-abcdefghijklmno{"}) {
        EXPECT_FALSE(IsUnfinishedArchive(other)) << other;
    }
}

TEST(ApplicationNamesTest, ATextThatWaitsIsKnownByItsLettersAndTellsItsFile) {
    EXPECT_EQ(WaitsFor(WaitingName("plant.V1")), "plant.V1");
    for (const char* const other :
         {"", ".kdsave-", ".kdsave-123456", ".kdsave-abcdefghijklmnop", ".kdsave-my own copy 001-plant.V1",
          "plant.V1", ".kdsave-ABCDEFGHIJKLMNOP-plant.V1"}) {
        EXPECT_EQ(WaitsFor(other), "") << other;
    }
}

}  // namespace kd::names
