#include "base/ApplicationNames.h"

#include <gtest/gtest.h>

namespace kd::names {

TEST(ApplicationNamesTest, AnUnfinishedArchiveIsKnownByItsLettersAndNotByTheirNumberAlone) {
    EXPECT_TRUE(IsUnfinishedArchive(UnfinishedArchiveName()));
    for (const char* const other : {"", ".unfinished-", ".unfinished-abc", ".unfinished-my own folder 1",
                                    ".unfinished-ABCDEFGHIJKLMNOP", ".unfinished-abcdefghijklmnop2"}) {
        EXPECT_FALSE(IsUnfinishedArchive(other)) << other;
    }
}

TEST(ApplicationNamesTest, ATextThatWaitsIsKnownByItsLettersAndTellsItsFile) {
    EXPECT_EQ(WaitsFor(WaitingName("plant.V1")), "plant.V1");
    for (const char* const other : {"", ".kdsave-", ".kdsave-123456", ".kdsave-abcdefghijklmnop",
                                    ".kdsave-my own copy 001-plant.V1", "plant.V1"}) {
        EXPECT_EQ(WaitsFor(other), "") << other;
    }
}

}  // namespace kd::names
