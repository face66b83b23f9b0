#include "suite/StandaloneArchiver.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/ApplicationNames.h"
#include "base/Paths.h"
#include "fakes/FailingFiles.h"
#include "fakes/FakeServices.h"
#include "fakes/MemoryFiles.h"

namespace kd {
namespace {

class StandaloneArchiverTest : public testing::Test {
protected:
    using Names = std::vector<Text>;

    StandaloneArchiverTest() {
        files.Put("/a/plant.kdt", "template");
        files.Put("/a/plant.V1", "one");
        files.Put("/a/plant.V12", "twelve");
        files.Put("/a/plant.KDL", "log");
        files.Put("/a/plant.KDM", "memo");
    }
    Text Archive(const Text& path) {
        return StandaloneArchiver(files, clock, locale).ArchiveApplication(path);
    }
    /// Paths of all files below "/a/Archive", without that front.
    Names Archived() const {
        Names names;
        for (const Text& path : files.Paths()) {
            if (path.rfind("/a/Archive/", 0) == 0) {
                names.push_back(path.substr(11));
            }
        }
        return names;
    }

    MemoryFiles files;
    FakeClock clock;  // 2026-03-04 05:06:07
    FakeLocale locale;
};

TEST_F(StandaloneArchiverTest, CopiesAllFilesOfTheApplicationIntoADatedFolder) {
    for (const char* other :
         {"/a/plant.temp", "/a/plant2.kdt", "/a/plant.V", "/a/plant.kdt6", "/a/plant.KDL6",
          "/a/plant.KDV6.V1", "/a/other.V1", "/a/plant.V01", "/a/Zone.kdt"}) {
        files.Put(other, "other");
    }
    EXPECT_EQ(Archive("/a/plant.kdt"), "");
    EXPECT_EQ(Archived(), (Names{"plant/2026-03-04_05-06-07/plant.KDL", "plant/2026-03-04_05-06-07/plant.KDM",
                                 "plant/2026-03-04_05-06-07/plant.V1", "plant/2026-03-04_05-06-07/plant.V12",
                                 "plant/2026-03-04_05-06-07/plant.kdt"}));
    EXPECT_EQ(files.Get("/a/Archive/plant/2026-03-04_05-06-07/plant.V12"), "twelve");
    EXPECT_EQ(files.Get("/a/plant.kdt"), "template");
}

TEST_F(StandaloneArchiverTest, GenerationSixHasItsOwnNames) {
    for (const char* name : {"/a/plant.kdt6", "/a/plant.KDV6.V3", "/a/plant.KDL6", "/a/plant.KDM6"}) {
        files.Put(name, "six");
    }
    EXPECT_EQ(Archive("/a/plant.kdt6"), "");
    EXPECT_EQ(Archived(),
              (Names{"plant/2026-03-04_05-06-07/plant.KDL6", "plant/2026-03-04_05-06-07/plant.KDM6",
                     "plant/2026-03-04_05-06-07/plant.KDV6.V3", "plant/2026-03-04_05-06-07/plant.kdt6"}));
}

TEST_F(StandaloneArchiverTest, NamesInAnotherCaseAreTheApplicationsToo) {
    files.Put("/b/PLANT.KDT", "template");
    files.Put("/b/plant.v2", "two");
    files.Put("/b/Plant.kdl", "log");
    EXPECT_EQ(Archive("/b/plant.kdt"), "");
    EXPECT_TRUE(files.Has("/b/Archive/plant/2026-03-04_05-06-07/PLANT.KDT"));
    EXPECT_TRUE(files.Has("/b/Archive/plant/2026-03-04_05-06-07/plant.v2"));
    EXPECT_TRUE(files.Has("/b/Archive/plant/2026-03-04_05-06-07/Plant.kdl"));
}

TEST_F(StandaloneArchiverTest, AFolderThatIsThereAlreadyGetsACounter) {
    EXPECT_EQ(Archive("/a/plant.kdt"), "");
    EXPECT_EQ(Archive("/a/plant.kdt"), "");
    EXPECT_EQ(Archive("/a/plant.kdt"), "");
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07/plant.kdt"));
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07_2/plant.kdt"));
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07_3/plant.kdt"));
    EXPECT_EQ(Archived().size(), 15U);
}

TEST_F(StandaloneArchiverTest, ANameThatAnotherProgramTakesAtTheLastMomentIsLeftToIt) {
    FailingFiles late(files);
    bool taken = false;
    // The question whether the name is free is behind it, its use is still to come.
    late.OnDone = [&](const FailingFiles::Step& step) {
        if (step.operation == "FolderEntries" && step.path == "/a/Archive/plant") {
            taken = true;
            files.Put(step.path + "/2026-03-04_05-06-07/plant.kdt", "another's");
        }
    };
    EXPECT_EQ(StandaloneArchiver(late, clock, locale).ArchiveApplication("/a/plant.kdt"), "");
    EXPECT_EQ(files.Get("/a/Archive/plant/2026-03-04_05-06-07/plant.kdt"), "another's");
    EXPECT_FALSE(files.Has("/a/Archive/plant/2026-03-04_05-06-07/plant.V1"));
    EXPECT_EQ(files.Get("/a/Archive/plant/2026-03-04_05-06-07_2/plant.kdt"), "template");
    EXPECT_TRUE(taken);
    EXPECT_EQ(Archived().size(), 6U) << "nothing unfinished stays";
}

TEST_F(StandaloneArchiverTest, TheFolderGetsItsNameWhenAllIsInItAndSettled) {
    EXPECT_EQ(Archive("/a/plant.kdt"), "");
    const auto& log = files.Log();
    const auto renamed =
        std::find_if(log.begin(), log.end(), [](const Text& l) { return l.rfind("Rename ", 0) == 0; });
    ASSERT_NE(renamed, log.end());
    EXPECT_EQ(
        std::count_if(log.begin(), renamed, [](const Text& l) { return l.rfind("CopyForArchive ", 0) == 0; }),
        5);
    EXPECT_EQ(*(renamed - 2), "Settle ");
    EXPECT_EQ(*(renamed - 1), "FolderEntries /a/Archive/plant") << "for a name that is free";
    EXPECT_EQ(Names(renamed + 1, log.end()), Names{"Settle "});
}

TEST_F(StandaloneArchiverTest, AFailureAnywhereLeavesNoArchiveAndIsTold) {
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        SCOPED_TRACE(failAt);
        files.FailAt(failAt, errDiskFull);
        const Text result = Archive("/a/plant.kdt");
        done = files.Operations() < failAt;
        files.FailNoMore();
        EXPECT_EQ(Archived().size(), result.empty() ? 5U : 0U);
        EXPECT_EQ(result.empty(), done);
        EXPECT_EQ(files.Exists("/a/Archive"), done);
        EXPECT_EQ(files.Get("/a/plant.kdt"), "template");
        EXPECT_EQ(files.Get("/a/plant.V1"), "one");
        if (!done) {
            EXPECT_EQ(result.rfind("Error 61: Disk full\r\n/a", 0), 0U) << result;
        }
        ASSERT_LT(failAt, 50);
    }
}

TEST_F(StandaloneArchiverTest, WhenNothingWorksAnyMoreTheFinalNameStillNeverHoldsHalf) {
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        SCOPED_TRACE(failAt);
        MemoryFiles fresh;
        fresh.Put("/a/plant.kdt", "template");
        fresh.Put("/a/plant.V1", "one");
        fresh.FailAt(failAt, errDevice, true);
        const Text result = StandaloneArchiver(fresh, clock, locale).ArchiveApplication("/a/plant.kdt");
        done = fresh.Operations() < failAt;
        EXPECT_EQ(result.empty(), done);
        if (fresh.Exists("/a/Archive/plant/2026-03-04_05-06-07")) {
            EXPECT_EQ(fresh.Get("/a/Archive/plant/2026-03-04_05-06-07/plant.kdt"), "template");
            EXPECT_EQ(fresh.Get("/a/Archive/plant/2026-03-04_05-06-07/plant.V1"), "one");
        }
        ASSERT_LT(failAt, 50);
    }
}

TEST_F(StandaloneArchiverTest, TheResultNamesTheFileThatFailed) {
    files.SetUnreadable("/a/plant.V12");
    EXPECT_EQ(Archive("/a/plant.kdt"), "Error 70: Permission denied\r\n/a/plant.V12");
    EXPECT_EQ(Archived(), Names{});
}

TEST_F(StandaloneArchiverTest, AMissingTemplateIsAFailure) {
    EXPECT_EQ(Archive("/a/missing.kdt"), "Error 53: File not found\r\n/a/missing.kdt");
    EXPECT_EQ(Archive("/none/plant.kdt"), "Error 76: Path not found\r\n/none");
    EXPECT_EQ(Archived(), Names{});
}

TEST_F(StandaloneArchiverTest, ATemplateThatIsNoFileIsAFailure) {
    files.PutSpecial("/a/plant.kdt");
    EXPECT_EQ(Archive("/a/plant.kdt"), "Error 70: Permission denied\r\n/a/plant.kdt");
}

TEST_F(StandaloneArchiverTest, AFileThatTheDiskDeniesForAMomentIsNotLeftOut) {
    files.onStep = [](const Text& step) {
        if (step.starts_with("CopyForArchive ") && step.ends_with("plant.KDM")) {
            throw cError(errDevice, "MemoryFiles.CopyForArchive");
        }
    };
    FailingFiles failing(files);
    failing.FailAt(5, FailingFiles::Kind::Device, false);  // what kind of file it is, asked behind its copy
    EXPECT_EQ(StandaloneArchiver(failing, clock, locale).ArchiveApplication("/a/plant.kdt"),
              "Error 57: Device I/O error\r\n/a/plant.KDM");
    ASSERT_EQ(failing.Steps().at(4).operation, "IsRegularFile");
    EXPECT_EQ(Archived().size(), 0U);
}

TEST_F(StandaloneArchiverTest, WhatCannotBeReadIsLeftOutOnlyWhereTheDiskSaysThatItIsNoFile) {
    struct Case {
        std::int32_t number;  // of the error that its reading raises
        const char* told;
    };
    for (const Case& c : {Case{errPermissionDenied, ""}, Case{errFileNotFound, ""},
                          Case{errPathNotFound, "Error 76: Path not found\r\n/a/plant.KDM"},
                          Case{errDevice, "Error 57: Device I/O error\r\n/a/plant.KDM"}}) {
        SCOPED_TRACE(c.number);
        files.RemoveFolder("/a/Archive");
        files.PutSpecial("/a/plant.KDM");
        files.FailNoMore();
        files.FailOn("Read", "/plant.KDM", c.number);
        EXPECT_EQ(Archive("/a/plant.kdt"), c.told);
        EXPECT_EQ(Archived().size(), *c.told == '\0' ? 4U : 0U);
    }
}

TEST_F(StandaloneArchiverTest, AFailureThatNamesNoneOfTheFilesIsToldAsItIs) {
    struct : MemoryFiles {
        void CopyAllForArchive(const std::vector<Text>& /*sources*/, std::string_view folder) override {
            throw cError(errDiskFull, "CopyAllForArchive", {}, Text(paths::Folder(folder)));
        }
    } full;
    full.Put("/a/plant.kdt", "template");
    EXPECT_EQ(StandaloneArchiver(full, clock, locale).ArchiveApplication("/a/plant.kdt"),
              "Error 61: Disk full\r\n/a/Archive/plant");
    EXPECT_FALSE(full.Exists("/a/Archive"));
}

TEST_F(StandaloneArchiverTest, AFailureThatIsToldThoughTheWorkIsDoneIsTheOneToTell) {
    struct Case {
        int failAt;
        const char* operation;
        std::size_t left;  // files: a whole archive that has its name may stay
    };
    for (const Case& c : {Case{2, "MakeFolder", 0}, Case{10, "Rename", 5}}) {
        SCOPED_TRACE(c.operation);
        FailingFiles failing(files);
        failing.FailAt(c.failAt, FailingFiles::Kind::DoneAndDevice, false);
        const Text told = StandaloneArchiver(failing, clock, locale).ArchiveApplication("/a/plant.kdt");
        ASSERT_EQ(failing.Steps().at(static_cast<std::size_t>(c.failAt) - 1).operation, c.operation);
        EXPECT_TRUE(told.starts_with("Error 57: Device I/O error\r\n/a/Archive/plant/.unfinished-")) << told;
        EXPECT_EQ(Archived().size(), c.left);
        EXPECT_EQ(files.Exists("/a/Archive"), c.left != 0);
    }
}

TEST_F(StandaloneArchiverTest, AWholeFolderIsListedOnceForAllThatAreBegunTogether) {
    files.Put("/a/mill.kdt", "another");
    files.Put("/b/silo.kdt", "elsewhere");
    StandaloneArchiver archiver(files, clock, locale);
    const auto listings = [&](const Text& folder) {
        return std::count(files.Log().begin(), files.Log().end(), "FolderEntries " + folder);
    };
    for (const char* path : {"/a/plant.kdt", "/b/silo.kdt", "/a/mill.kdt"}) {
        EXPECT_EQ(archiver.BeginArchive(path), "");
    }
    EXPECT_EQ(listings("/a"), 1);
    EXPECT_EQ(listings("/b"), 1);
    for (const char* path : {"/a/plant.kdt", "/b/silo.kdt", "/a/mill.kdt"}) {
        EXPECT_EQ(archiver.NameArchive(path), "");
    }
    files.Put("/a/plant.V3", "three");
    EXPECT_EQ(archiver.BeginArchive("/a/plant.kdt"), "");
    EXPECT_EQ(archiver.NameArchive("/a/plant.kdt"), "");
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07_2/plant.V3"))
        << "the next ones are looked for anew";
}

TEST_F(StandaloneArchiverTest, WhatAnotherProgramHasLeftUnfinishedGoesWhenAnArchiveHasItsName) {
    const Text left = "/a/Archive/plant/" + names::UnfinishedArchiveName();
    const Text mine = "/a/Archive/plant/.unfinished-mine/notes";
    files.Put(left + "/plant.kdt", "half");
    files.Put(mine, "no program's");
    StandaloneArchiver archiver(files, clock, locale);
    EXPECT_EQ(archiver.BeginArchive("/a/plant.kdt"), "");
    EXPECT_TRUE(files.Has(left + "/plant.kdt")) << "there is no whole one yet";
    EXPECT_EQ(archiver.NameArchive("/a/plant.kdt"), "");
    EXPECT_FALSE(files.Exists(left));
    EXPECT_TRUE(files.Has(mine));
    EXPECT_EQ(Archived().size(), 6U);
}

TEST_F(StandaloneArchiverTest, AFolderOfArchivesThatMayNotBeListedGetsOneAllTheSame) {
    EXPECT_EQ(Archive("/a/plant.kdt"), "");
    files.FailOn("FolderEntries", "/Archive/plant", errPermissionDenied);
    EXPECT_EQ(Archive("/a/plant.kdt"), "");
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07_2/plant.kdt"));
}

TEST_F(StandaloneArchiverTest, WhereNamesCannotBeSeenTenAreTried) {
    for (const int taken : {9, 10}) {
        SCOPED_TRACE(taken);
        MemoryFiles fresh;
        fresh.Put("/a/plant.kdt", "template");
        const Text name = "/a/Archive/plant/2026-03-04_05-06-07";
        fresh.Put(name + "/plant.kdt", "another's");
        for (int counter = 2; counter <= taken; ++counter) {
            fresh.Put(name + "_" + std::to_string(counter) + "/plant.kdt", "another's");
        }
        const std::size_t before = fresh.Paths().size();
        fresh.FailOn("FolderEntries", "/Archive/plant", errPermissionDenied);
        const Text told = StandaloneArchiver(fresh, clock, locale).ArchiveApplication("/a/plant.kdt");
        EXPECT_EQ(told, taken == 9 ? "" : "Error 70: Permission denied\r\n" + name + "_10");
        EXPECT_EQ(fresh.Get(name + "_10/plant.kdt"), taken == 9 ? "template" : "another's");
        EXPECT_EQ(fresh.Paths().size(), before + (taken == 9 ? 1U : 0U)) << "nothing unfinished stays";
    }
}

TEST_F(StandaloneArchiverTest, WhatIsBegunBehindADroppedOneOrArchivedByItselfIsLookedForAnew) {
    files.Put("/a/mill.kdt", "another");
    StandaloneArchiver archiver(files, clock, locale);
    EXPECT_EQ(archiver.BeginArchive("/a/plant.kdt"), "");
    archiver.DropArchive("/a/plant.kdt");
    files.Put("/a/plant.V3", "three");
    EXPECT_EQ(archiver.BeginArchive("/a/plant.kdt"), "");
    EXPECT_EQ(archiver.NameArchive("/a/plant.kdt"), "");
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07/plant.V3"));
    EXPECT_EQ(archiver.BeginArchive("/a/mill.kdt"), "");
    files.Put("/a/plant.V4", "four");
    EXPECT_EQ(archiver.ArchiveApplication("/a/plant.kdt"), "");
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07_2/plant.V4"));
}

TEST_F(StandaloneArchiverTest, AnArchiveThatIsDroppedLeavesNoEmptyFolders) {
    StandaloneArchiver archiver(files, clock, locale);
    EXPECT_EQ(archiver.BeginArchive("/a/plant.kdt"), "");
    archiver.DropArchive("/a/plant.kdt");
    EXPECT_FALSE(files.Exists("/a/Archive"));
    EXPECT_EQ(archiver.ArchiveApplication("/a/plant.kdt"), "");
    archiver.DropArchive("/a/plant.kdt");
    EXPECT_EQ(Archived().size(), 5U) << "one that is through is not dropped";
    EXPECT_EQ(archiver.BeginArchive("/a/plant.kdt"), "");
    archiver.DropArchive("/a/plant.kdt");
    EXPECT_EQ(Archived().size(), 5U) << "nor takes it another's away";
}

TEST_F(StandaloneArchiverTest, AFolderThatBearsAViewsNameIsLeftOut) {
    files.Put("/a/plant.V5/inner", "text");
    files.Put("/a/plant.V6", "six");
    files.PutSpecial("/a/plant.V7");
    EXPECT_EQ(Archive("/a/plant.kdt"), "");
    EXPECT_EQ(Archived().size(), 6U);
    EXPECT_EQ(files.Get("/a/Archive/plant/2026-03-04_05-06-07/plant.V6"), "six");
}

TEST_F(StandaloneArchiverTest, ARemovalThatBreaksOffLeavesNothingUnderTheFinalName) {
    int settled = 0;
    files.onStep = [&](const Text& step) {
        if ((step == "Settle " && ++settled == 2) || step.starts_with("RemoveFolder ")) {
            throw cError(errDiskFull, "MemoryFiles", {}, "/a/Archive/plant");
        }
    };
    EXPECT_EQ(Archive("/a/plant.kdt"), "Error 61: Disk full\r\n/a/Archive/plant");
    EXPECT_FALSE(files.Exists("/a/Archive/plant/2026-03-04_05-06-07"));
}

TEST_F(StandaloneArchiverTest, SeveralAreBegunBeforeTheirCallerSettlesThemAndGetTheirNamesThen) {
    files.Put("/a/mill.kdt", "another");
    StandaloneArchiver archiver(files, clock, locale);
    EXPECT_EQ(archiver.BeginArchive("/a/plant.kdt"), "");
    EXPECT_EQ(archiver.BeginArchive("/a/mill.kdt"), "");
    EXPECT_FALSE(files.Exists("/a/Archive/plant/2026-03-04_05-06-07"));
    EXPECT_EQ(std::count(files.Log().begin(), files.Log().end(), "Settle "), 0) << "that is the caller's";
    EXPECT_EQ(archiver.NameArchive("/a/plant.kdt"), "");
    EXPECT_EQ(archiver.NameArchive("/a/mill.kdt"), "");
    EXPECT_TRUE(files.Has("/a/Archive/plant/2026-03-04_05-06-07/plant.V12"));
    EXPECT_TRUE(files.Has("/a/Archive/mill/2026-03-04_05-06-07/mill.kdt"));
    archiver.DropArchive("/a/mill.kdt");
    EXPECT_EQ(Archived().size(), 5U);
    archiver.DropArchive("/a/mill.kdt");
    EXPECT_EQ(Archived().size(), 5U);
}

TEST_F(StandaloneArchiverTest, AFailureOfAnyKindIsToldAndLeavesNothing) {
    struct Case {
        std::function<void()> raise;
        const char* words;
    };
    const Case cases[] = {{[] { throw std::bad_alloc(); }, "Error 7: Out of memory\r\n/a/plant.kdt"},
                          {[] { throw std::runtime_error("no random numbers"); },
                           "Error 5: no random numbers\r\n/a/plant.kdt"}};
    for (const Case& c : cases) {
        files.onStep = [&](const Text& step) {
            if (step.starts_with("CopyForArchive")) {
                c.raise();
            }
        };
        EXPECT_EQ(Archive("/a/plant.kdt"), c.words);
        EXPECT_EQ(Archived(), Names{});
        EXPECT_FALSE(files.Exists("/a/Archive/plant/2026-03-04_05-06-07"));
    }
}

TEST_F(StandaloneArchiverTest, ATemplateInTheRootIsArchivedBesideIt) {
    files.Put("/plant.kdt", "root");
    EXPECT_EQ(Archive("/plant.kdt"), "");
    EXPECT_EQ(files.Get("/Archive/plant/2026-03-04_05-06-07/plant.kdt"), "root");
}

}  // namespace
}  // namespace kd
