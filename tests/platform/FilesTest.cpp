#include "platform/Files.h"

#include <gtest/gtest.h>

#include "fakes/ErrorOf.h"
#include "fakes/MemoryFiles.h"

namespace kd {
namespace {

TEST(FileIdentityTest, AFileIsKnownByItsNumberAlone) {
    EXPECT_FALSE(FileState{}.file.IsKnown()) << "there is none";
    EXPECT_TRUE((FileIdentity{0, 1}.IsKnown()));
    EXPECT_TRUE((FileIdentity{3, 2}.IsKnown()));
    EXPECT_FALSE((FileIdentity{3, 0}.IsKnown()));
}

TEST(FilesTest, SettleRaisesTheFirstOfAllFailures) {
    MemoryFiles files;
    files.Settle();
    files.alsoUnsettled.emplace_back(errDevice, "Test");
    files.FailOn("Settle", "", errDiskFull);
    EXPECT_EQ(ErrorOf([&] { files.Settle(); }), errDiskFull);
}

TEST(FilesTest, OneFlushStandsForAllApplicationsUnlessTheSystemTellsOtherwise) {
    const MemoryFiles files;
    EXPECT_TRUE(files.Files::SettlesTogether());
}

TEST(FilesTest, ALeftoverGoesAsAnAbandonedFileDoes) {
    MemoryFiles files;
    files.Put("/data/a.temp", "x");
    files.Put("/data/b.temp", "x");
    files.SetReadOnly("/data/b.temp");
    files.DeleteLeftover("/data/a.temp");
    files.DeleteLeftover("/data/b.temp");
    EXPECT_EQ(files.Paths(), std::vector<Text>{"/data/b.temp"});
}

TEST(FilesTest, ABufferHoldsWhatWasReadIntoItAlone) {
    MemoryFiles files;
    files.Put("/data/a.kdt", "new");
    std::string bytes = "of the file before";
    files.Read("/data/a.kdt", bytes);
    EXPECT_EQ(bytes, "new");
}

}  // namespace
}  // namespace kd
