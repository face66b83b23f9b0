#include "suite/StandaloneChangeMemo.h"

#include <gtest/gtest.h>

#include <functional>

#include "fakes/MemoryFiles.h"

namespace kd {
namespace {

class StandaloneChangeMemoTest : public testing::Test {
protected:
    StandaloneChangeMemoTest() { files.Put("/a/plant.kdt", ""); }
    std::string Memo() const { return files.Get("/a/plant.KDM"); }
    void WriteEntry() {
        StandaloneChangeMemo memo(files, CodePage::Of(1252));
        memo.OpenMemo("/a/plant.KDM");
        memo.BeginEntry("MAIN", "anna", "2026-03-04", "05:06:07");
        memo.WriteItem("Weight", "USL", "12.5", "13");
        memo.CloseMemo();
    }
    const std::string entry =
        "MAIN, anna, 2026-03-04 05:06:07\r\n"
        "   Weight, USL, 12.5 -> 13\r\n"
        "\r\n";
    MemoryFiles files;
};

TEST_F(StandaloneChangeMemoTest, AnEntryHasAHeadAlignedLinesAndAnEmptyLine) {
    StandaloneChangeMemo memo(files, CodePage::Of(1252));
    memo.OpenMemo("/a/plant.KDM");
    memo.BeginEntry("Lab", "anna", "2026-03-04", "05:06:07");
    memo.WriteItem("Weight", "USL", "12.5", "13");
    memo.WriteItem("pH", "Variable Name", "", "acid");
    memo.WriteItem("Länge", "LSL", "100.25", "");
    memo.CloseMemo();
    EXPECT_EQ(Memo(),
              "Lab, anna, 2026-03-04 05:06:07\r\n"
              "   Weight, USL,           12.5   -> 13\r\n"
              "   pH,     Variable Name,        -> acid\r\n"
              "   L\xE4nge,  LSL,           100.25 -> \r\n"
              "\r\n");
}

TEST_F(StandaloneChangeMemoTest, EntriesAreAddedAndWhatStandsThereStays) {
    files.Put("/a/plant.KDM", "of another program\r\n");
    WriteEntry();
    WriteEntry();
    EXPECT_EQ(Memo(), "of another program\r\n" + entry + entry);
}

TEST_F(StandaloneChangeMemoTest, TheItemsOfAnEntryThatCouldNotBeWrittenAreNotTheNextOnes) {
    StandaloneChangeMemo memo(files, CodePage::Of(1252));
    memo.OpenMemo("/a/plant.KDM");
    memo.BeginEntry("Lab", "anna", "2026-03-04", "05:06:06");
    memo.WriteItem("pH", "LSL", "1", "2");
    files.FailOn("Write", "plant.KDM", errDiskFull);
    EXPECT_THROW(memo.BeginEntry("MAIN", "anna", "2026-03-04", "05:06:07"), cError);
    files.FailNoMore();
    memo.BeginEntry("MAIN", "anna", "2026-03-04", "05:06:07");
    memo.WriteItem("Weight", "USL", "12.5", "13");
    memo.CloseMemo();
    EXPECT_EQ(Memo(), entry);
}

TEST_F(StandaloneChangeMemoTest, AnEntryBehindAnUnfinishedLineBeginsALineOfItsOwn) {
    files.Put("/a/plant.KDM", "half a li");
    WriteEntry();
    EXPECT_EQ(Memo(), "half a li\r\n" + entry);
}

TEST_F(StandaloneChangeMemoTest, OneMemoTakesSeveralEntriesEachAlignedByItself) {
    StandaloneChangeMemo memo(files, CodePage::Of(1252));
    memo.OpenMemo("/a/plant.KDM");
    memo.BeginEntry("MAIN", "", "2026-03-04", "05:06:07");
    memo.WriteItem("A", "USL", "1", "2");
    memo.BeginEntry("Lab", "", "2026-03-04", "05:06:07");
    memo.WriteItem("LongName", "USL", "1", "2");
    memo.CloseMemo();
    EXPECT_EQ(Memo(),
              "MAIN, , 2026-03-04 05:06:07\r\n   A, USL, 1 -> 2\r\n\r\n"
              "Lab, , 2026-03-04 05:06:07\r\n   LongName, USL, 1 -> 2\r\n\r\n");
}

TEST_F(StandaloneChangeMemoTest, WithoutAnEntryNothingIsAdded) {
    StandaloneChangeMemo memo(files, CodePage::Of(1252));
    memo.OpenMemo("/a/plant.KDM");
    memo.CloseMemo();
    memo.CloseMemo();
    EXPECT_EQ(Memo(), "");
    EXPECT_EQ(files.OpenFiles(), 0);
}

TEST_F(StandaloneChangeMemoTest, AValueNeverBreaksItsLine) {
    StandaloneChangeMemo memo(files, CodePage::Of(1252));
    memo.OpenMemo("/a/plant.KDM");
    memo.BeginEntry("Lab\r\n", "anna", "2026-03-04", "05:06:07");
    memo.WriteItem("A\tB", "USL", "1\r2", "3\n4");
    memo.CloseMemo();
    EXPECT_EQ(Memo(), "Lab  , anna, 2026-03-04 05:06:07\r\n   A B, USL, 1 2 -> 3 4\r\n\r\n");
}

TEST_F(StandaloneChangeMemoTest, TextGoesThroughTheCodePage) {
    StandaloneChangeMemo memo(files, CodePage::Of(1250));
    memo.OpenMemo("/a/plant.KDM");
    memo.BeginEntry("Łódź", "Ω", "2026-03-04", "05:06:07");
    memo.WriteItem("µ", "USL", "1", "2");
    memo.CloseMemo();
    EXPECT_EQ(Memo(),
              "\xA3\xF3"
              "d\x9F, ?, 2026-03-04 05:06:07\r\n   \xB5, USL, 1 -> 2\r\n\r\n");
}

TEST_F(StandaloneChangeMemoTest, WhatWasHandedOverIsWrittenWhenTheCommitEndsEarly) {
    {
        StandaloneChangeMemo memo(files, CodePage::Of(1252));
        memo.OpenMemo("/a/plant.KDM");
        memo.BeginEntry("MAIN", "anna", "2026-03-04", "05:06:07");
        memo.WriteItem("Weight", "USL", "12.5", "13");
    }
    EXPECT_EQ(Memo(), entry);
    EXPECT_EQ(files.OpenFiles(), 0);
}

TEST_F(StandaloneChangeMemoTest, AFailureIsRaisedAndEarlierEntriesStay) {
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        SCOPED_TRACE(failAt);
        files.Put("/a/plant.KDM", entry);
        files.FailAt(failAt, errDiskFull);
        bool raised = false;
        try {
            WriteEntry();
        } catch (const cError& error) {
            raised = true;
            EXPECT_EQ(error.Number(), errDiskFull);
        }
        done = !raised;
        EXPECT_TRUE(Memo() == entry || Memo() == entry + entry) << Memo();
        EXPECT_EQ(files.OpenFiles(), 0);
        ASSERT_LT(failAt, 20);
    }
    EXPECT_EQ(Memo(), entry + entry);
    EXPECT_GE(files.Operations(), 4);  // read, open, entry, close
    EXPECT_EQ(files.Unsettled(), std::set<Text>{"/a/plant.KDM"});
}

TEST_F(StandaloneChangeMemoTest, WithoutAFileOrAnEntryItIsAnError) {
    const auto errorOf = [](const std::function<void()>& action) {
        try {
            action();
        } catch (const cError& error) {
            return std::pair(error.Number(), error.Source());
        }
        return std::pair(0, Text());
    };
    using Error = std::pair<std::int32_t, Text>;
    StandaloneChangeMemo memo(files, CodePage::Of(1252));
    EXPECT_EQ(errorOf([&] { memo.BeginEntry("MAIN", "anna", "2026-03-04", "05:06:07"); }),
              Error(errInvalidArgument, "StandaloneChangeMemo.BeginEntry"));
    memo.OpenMemo("/a/plant.KDM");
    EXPECT_EQ(errorOf([&] { memo.WriteItem("Weight", "USL", "12.5", "13"); }),
              Error(errInvalidArgument, "StandaloneChangeMemo.WriteItem"));
    memo.BeginEntry("MAIN", "anna", "2026-03-04", "05:06:07");
    memo.CloseMemo();
    memo.OpenMemo("/a/plant.KDM");
    EXPECT_EQ(errorOf([&] { memo.WriteItem("Weight", "USL", "12.5", "13"); }).first, errInvalidArgument)
        << "an entry ends with its report";
}

#ifdef KD_CHECKED
TEST_F(StandaloneChangeMemoTest, AReportThatIsOpenIsNotOpenedOnceMore) {
    StandaloneChangeMemo memo(files, CodePage::Of(1252));
    memo.OpenMemo("/a/plant.KDM");
    EXPECT_DEATH(memo.OpenMemo("/a/plant.KDM"), "precondition broken: !m_file");
}
#endif

}  // namespace
}  // namespace kd
