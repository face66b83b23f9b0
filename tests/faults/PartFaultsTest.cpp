#include <gtest/gtest.h>

#include <functional>

#include "appfiles/SchemaWriter.h"
#include "base/NumberTexts.h"
#include "fakes/FailingFiles.h"
#include "fakes/MemoryFiles.h"
#include "faults/CommitScene.h"
#include "suite/StandaloneArchiver.h"
#include "suite/StandaloneChangeLog.h"
#include "suite/StandaloneChangeMemo.h"

namespace kd {
namespace {

using Kind = FailingFiles::Kind;

/// The parts of a commit, each alone over a disk with a fault.
class PartFaultsTest : public testing::TestWithParam<std::tuple<Kind, bool>> {
protected:
    /// An application in memory, loaded and changed.
    struct Disk {
        Disk() {
            for (const auto& [path, bytes] : scene.OriginalFiles()) {
                memory.Put(path, bytes);
            }
            scene.Load();
            scene.EditAll();
        }
        /// Whether an operation that can raise has failed. A reading that was asked for again has not.
        bool Failed() const {
            const auto& steps = files.Steps();
            for (std::size_t at = 0; at < steps.size(); ++at) {
                const bool isAskedAgain =
                    at + 1 < steps.size() && steps[at + 1].operation == "Exists" && !steps[at + 1].failed;
                if (steps[at].failed && steps[at].operation != "Exists" &&
                    steps[at].operation != "IsRegularFile" && !isAskedAgain) {
                    return true;
                }
            }
            return false;
        }
        MemoryFiles memory;
        FailingFiles files{memory};
        CommitScene scene{files, "/apps"};
    };

    /// Runs `part` with a fault at every operation in turn until it meets none any more.
    void AtEveryOperation(const std::function<void(Disk&)>& part) const {
        const auto [kind, forGood] = GetParam();
        int failAt = 0;
        for (bool untouched = false; !untouched && !HasFailure();) {
            Disk disk;
            disk.files.FailAt(++failAt, kind, forGood);
            SCOPED_TRACE("operation " + Digits(failAt));
            part(disk);
            untouched = disk.files.Steps().size() < static_cast<std::size_t>(failAt);
            ASSERT_LT(failAt, 100);
        }
        RecordProperty("operations", failAt - 1);
        EXPECT_GT(failAt, 1);
    }
    static Kind FaultKind() { return std::get<0>(GetParam()); }
};

/// Number of the error that the action raises; 0 when it raises none.
std::int32_t Raised(const std::function<void()>& action) {
    try {
        action();
        return 0;
    } catch (const cError& error) {
        return error.Number();
    }
}

ChangeRecord RecordOf(const Text& variable) {
    return {{2026, 3, 4, 5, 6, 7}, "anna", "MAIN", "7.001", "PROPERTY", "FIELD", variable, "USL", "1", "2"};
}

TEST_P(PartFaultsTest, ASaveLeavesTheOldFileOrTheNewOneAndTellsEachFailureOnce) {
    Disk faultless;
    ASSERT_TRUE(modKDLimitDesk::SaveSchema(faultless.scene.g, 2));
    const Text path = faultless.scene.FilePath(1);
    const std::string newText = faultless.memory.Get(path);
    AtEveryOperation([&](Disk& disk) {
        const bool saved = modKDLimitDesk::SaveSchema(disk.scene.g, 2);
        const auto& boxes = disk.scene.toolkit.boxes;
        ASSERT_EQ(boxes.size(), disk.Failed() ? 1U : 0U);
        const std::string left = disk.memory.Get(path);
        EXPECT_TRUE(left == newText || (left == CommitScene::OriginalText(1) && !boxes.empty())) << left;
        if (!boxes.empty()) {
            const cError error(FailingFiles::NumberOf(FaultKind()), {});
            const Text words = "Error " + Digits(error.Number()) + ": " + error.Description();
            EXPECT_EQ(boxes.front().text, saved ? words : words + " occurred in SaveSchema.");
            EXPECT_EQ(boxes.front().title, saved ? "KDLimitDesk - OverwriteFile" : "KDLimitDesk");
            EXPECT_TRUE(saved || left == CommitScene::OriginalText(1));
        }
        disk.files.FailNoMore();
        CommitScene next(disk.files, "/apps");
        next.Load();
        next.EditAll();
        EXPECT_TRUE(modKDLimitDesk::SaveSchema(next.g, 2));
        EXPECT_TRUE(next.toolkit.boxes.empty());
        EXPECT_NE(disk.memory.Get(path).find("F50."), std::string::npos);
        EXPECT_FALSE(disk.memory.Has(next.TemporaryPath(1)));
    });
}

TEST_P(PartFaultsTest, AnOverwriteLeavesTheOldFileOrTheNewOneAndIsTold) {
    AtEveryOperation([&](Disk& disk) {
        disk.memory.Put("/apps/new.temp", "new");
        disk.memory.Put("/apps/old.kdt", "old");
        const bool done =
            modKDLimitDesk::OverwriteFile(disk.scene.g, "/apps/new.temp", "/apps/old.kdt", true);
        EXPECT_EQ(done, !disk.Failed());
        EXPECT_EQ(disk.scene.toolkit.boxes.size(), done ? 0U : 1U);
        const std::string left = disk.memory.Get("/apps/old.kdt");
        EXPECT_TRUE(left == "new" || (left == "old" && !done)) << left;
        EXPECT_TRUE(left == "new" || disk.memory.Has("/apps/new.temp")) << "the new text is nowhere";
        EXPECT_TRUE(!done || !disk.memory.Has("/apps/new.temp"));
    });
}

TEST_P(PartFaultsTest, AnArchiveIsWholeOrAbsentAndItsFailureIsTheResult) {
    AtEveryOperation([&](Disk& disk) {
        StandaloneArchiver archiver(disk.files, disk.scene.clock, disk.scene.locale);
        const Text told = archiver.ArchiveApplication(disk.scene.path);
        std::size_t archived = 0;
        for (const Text& path : disk.memory.Paths()) {
            archived += path.starts_with("/apps/Archive/plant/2026-") ? 1U : 0U;
        }
        const std::size_t all = disk.scene.OriginalFiles().size();
        EXPECT_TRUE(archived == all || (archived == 0 && !told.empty())) << archived << told;
        for (const auto& [path, bytes] : disk.scene.OriginalFiles()) {
            EXPECT_EQ(disk.memory.Get(path), bytes) << "an archive changes nothing";
        }
        disk.files.FailNoMore();
        EXPECT_EQ(archiver.ArchiveApplication(disk.scene.path), "");
    });
}

TEST_P(PartFaultsTest, ALogHoldsEveryRecordThatWasTakenAndNoHalfOfAnother) {
    AtEveryOperation([&](Disk& disk) {
        const Text path = disk.scene.LogPath();
        std::vector<Text> taken;
        const std::int32_t error = Raised([&] {
            StandaloneChangeLog log(disk.files, CodePage::Of(1252));
            log.SetDelimiter("\t");
            log.OpenLog(path);
            for (const char* const variable : {"first", "second"}) {
                log.WriteRecord(RecordOf(variable));
                taken.emplace_back(variable);
            }
            log.CloseLog();
        });
        EXPECT_EQ(error != 0, disk.Failed());
        EXPECT_TRUE(error == 0 || error == FailingFiles::NumberOf(FaultKind())) << error;
        const std::string left = disk.memory.Get(path);
        EXPECT_TRUE(left.starts_with("earlier record\r\n"));
        for (const Text& variable : taken) {
            EXPECT_NE(left.find("\tFIELD\t" + variable + "\tUSL\t1\t2\r\n"), std::string::npos) << left;
        }
        // Whatever the disk did with what failed: what comes next begins on a line of its own.
        disk.files.FailNoMore();
        StandaloneChangeLog next(disk.files, CodePage::Of(1252));
        next.SetDelimiter("\t");
        next.OpenLog(path);
        next.WriteRecord(RecordOf("third"));
        next.CloseLog();
        EXPECT_NE(
            disk.memory.Get(path).find("\r\n2026-03-04 05:06:07\tanna\tMAIN\t7.001\tPROPERTY\tFIELD\tthird"),
            std::string::npos);
    });
}

TEST_P(PartFaultsTest, AReportHoldsItsEntryWhenNothingWasRaised) {
    AtEveryOperation([&](Disk& disk) {
        const Text path = disk.scene.ReportPath();
        const std::int32_t error = Raised([&] {
            StandaloneChangeMemo memo(disk.files, CodePage::Of(1252));
            memo.OpenMemo(path);
            memo.BeginEntry("MAIN", "anna", "2026-03-04", "05:06:07");
            memo.WriteItem("first", "USL", "1", "2");
            memo.CloseMemo();
        });
        EXPECT_EQ(error != 0, disk.Failed());
        const std::string left = disk.memory.Get(path);
        const std::string entry = "MAIN, anna, 2026-03-04 05:06:07\r\n   first, USL, 1 -> 2\r\n\r\n";
        EXPECT_TRUE(left.starts_with("earlier entry\r\n\r\n"));
        EXPECT_TRUE(error != 0 || left == "earlier entry\r\n\r\n" + entry) << left;
        disk.files.FailNoMore();
        StandaloneChangeMemo next(disk.files, CodePage::Of(1252));
        next.OpenMemo(path);
        next.BeginEntry("MAIN", "anna", "2026-03-04", "05:06:07");
        next.WriteItem("first", "USL", "1", "2");
        next.CloseMemo();
        EXPECT_TRUE(disk.memory.Get(path).ends_with("\r\n" + entry));
    });
}

INSTANTIATE_TEST_SUITE_P(Each, PartFaultsTest,
                         testing::Combine(testing::ValuesIn(FailingFiles::Kinds), testing::Bool()));

}  // namespace
}  // namespace kd
