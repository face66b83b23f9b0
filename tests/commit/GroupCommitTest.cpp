#include "commit/GroupCommit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <utility>

#include "base/Paths.h"
#include "fakes/Builders.h"
#include "faults/CommitScene.h"
#include "model/Columns.h"

namespace kd {
namespace {

/// Writes what it is asked to a list; fails where it is told to, by the name of the call.
class RecordingArchiver : public KDArchiver {
public:
    explicit RecordingArchiver(std::vector<Text>& list) : m_list(list) {}
    std::map<Text, Text> failures;
    Text ArchiveApplication(std::string_view path) override { return Call("Archive ", path); }
    Text BeginArchive(std::string_view path) override { return Call("Begin ", path); }
    Text NameArchive(std::string_view path) override { return Call("Name ", path); }
    void DropArchive(std::string_view path) noexcept override { (void)Call("Drop ", path); }

private:
    Text Call(const char* name, std::string_view path) {
        m_list.push_back(Text(name).append(path));
        const auto failure = failures.find(m_list.back());
        return failure == failures.end() ? Text() : failure->second;
    }
    std::vector<Text>& m_list;
};

/// Two changed applications of one view each, and all that happens in one list: calls of the archiver, the
/// status panel, boxes.
struct GroupDesk : LoadedDesk {
    GroupDesk() {
        for (const char* const name : {"mill", "plant"}) {
            Put(anApplication(Text("/apps/") + name + ".kdt").Field(aField().Usl(10)));
        }
        Load();
        Edit(1, cnUSL, "5");
        Edit(2, cnUSL, "5");
        toolkit.log.clear();
        desk.Panel2.OnChanged = [this] { toolkit.log.push_back(desk.Panel2.Caption()); };
    }
    /// `operation` on the disk fails once.
    void FailOnceAt(const Text& operation) {
        files.onStep = [operation, hasFailed = false](const Text& step) mutable {
            if (step == operation && !std::exchange(hasFailed, true)) {
                throw cError(errDevice, "MemoryFiles");
            }
        };
    }
    void CommitAll() {
        commit.Take(1);
        commit.Take(2);
        commit.Finish();
    }
    /// Of the list what the archiver was asked.
    std::vector<Text> Archived() const {
        std::vector<Text> calls;
        std::copy_if(toolkit.log.begin(), toolkit.log.end(), std::back_inserter(calls),
                     [](const Text& step) { return step.find(": ") == Text::npos; });
        return calls;
    }
    bool IsSaved(const Text& path) const {
        return files.Get(path).find("VERSION      = 7.001\r\n") != Text::npos;
    }

    RecordingArchiver archiver{toolkit.log};
    GroupCommit commit{desk, {}, 2, archiver};
};

using Steps = std::vector<Text>;

TEST(GroupCommitTest, AViewThatFailsBesideOthersHasItsArchiveDroppedAndBegunAnew) {
    GroupDesk t;
    t.FailOnceAt("Read /apps/plant.kdt");
    t.CommitAll();
    EXPECT_EQ(t.Archived(), (Steps{"Begin /apps/mill.kdt", "Begin /apps/plant.kdt", "Drop /apps/plant.kdt",
                                   "Name /apps/mill.kdt", "Begin /apps/plant.kdt", "Name /apps/plant.kdt"}));
    EXPECT_EQ(t.commit.Modified(), 2);
}

TEST(GroupCommitTest, WhereAnArchiveCannotBeNamedAllOfTheGroupIsDoneOneByOne) {
    GroupDesk t;
    t.archiver.failures["Name /apps/plant.kdt"] = "no room left";
    t.CommitAll();
    EXPECT_EQ(t.toolkit.log,
              (Steps{"Begin /apps/mill.kdt", "Begin /apps/plant.kdt", "Name /apps/mill.kdt",
                     "Name /apps/plant.kdt", "Drop /apps/mill.kdt", "Drop /apps/plant.kdt",
                     "Archiving: /apps/mill.kdt", "Archive /apps/mill.kdt", "Saving: /apps/mill.kdt",
                     "Archiving: /apps/plant.kdt", "Archive /apps/plant.kdt", "Saving: /apps/plant.kdt"}));
    EXPECT_TRUE(t.IsSaved("/apps/mill.kdt"));
    EXPECT_TRUE(t.IsSaved("/apps/plant.kdt"));
}

TEST(GroupCommitTest, TheArchiveOfAViewThatCannotBeWrittenHasItsNameBeforeThatIsTold) {
    GroupDesk t;
    t.files.FailOn("Write", "/mill.temp", errDiskFull);
    t.toolkit.ExpectBox("Error 61: Disk full occurred in SaveSchema.", BoxIcon::Exclamation);
    t.CommitAll();
    EXPECT_EQ(t.toolkit.log,
              (Steps{"Begin /apps/mill.kdt", "Name /apps/mill.kdt", "Archiving: /apps/mill.kdt",
                     "Saving: /apps/mill.kdt", "box Error 61: Disk full occurred in SaveSchema.",
                     "Begin /apps/plant.kdt", "Name /apps/plant.kdt", "Archiving: /apps/plant.kdt",
                     "Saving: /apps/plant.kdt"}));
    EXPECT_EQ(t.commit.Modified(), 1);
}

TEST(GroupCommitTest, AnArchiveThatCannotBeSettledIsMadeAnewByItselfBeforeTheFailureIsTold) {
    GroupDesk t;
    t.files.FailOn("Write", "/mill.temp", errDiskFull);
    t.FailOnceAt("Settle ");
    t.toolkit.ExpectBox("Error 61: Disk full occurred in SaveSchema.", BoxIcon::Exclamation);
    t.commit.Take(1);
    EXPECT_EQ(t.toolkit.log,
              (Steps{"Begin /apps/mill.kdt", "Drop /apps/mill.kdt", "Archiving: /apps/mill.kdt",
                     "Archive /apps/mill.kdt", "Saving: /apps/mill.kdt",
                     "box Error 61: Disk full occurred in SaveSchema."}));
}

TEST(GroupCommitTest, AnArchiveThatFailsOnlyByItselfIsToldAndTheSaveGoesOn) {
    GroupDesk t;
    t.FailOnceAt("Settle ");
    t.archiver.failures["Archive /apps/mill.kdt"] = "no room left";
    t.toolkit.ExpectBox(
        "The following error occured while creating an archive of '/apps/mill.kdt'\r\nno room left",
        BoxIcon::Exclamation, "KD6 LimitDesk");
    t.CommitAll();
    EXPECT_TRUE(t.IsSaved("/apps/mill.kdt"));
    EXPECT_EQ(t.commit.Modified(), 2);
}

TEST(GroupCommitTest, WhatEndsTheCommitDropsTheArchivesOfViewsThatHaveNotHadTheirTurn) {
    GroupDesk t;
    t.commit.Take(1);
    t.commit.Take(2);
    t.commit.Abandon();
    EXPECT_EQ(t.toolkit.log, (Steps{"Begin /apps/mill.kdt", "Begin /apps/plant.kdt", "Drop /apps/mill.kdt",
                                    "Drop /apps/plant.kdt"}));
    EXPECT_EQ(t.files.Paths(), (Steps{"/apps/mill.kdt", "/apps/plant.kdt"}));
    EXPECT_EQ(t.commit.Modified(), 0);
}

/// A disk that sets a text aside and says that it has failed.
class DenyingFiles : public MemoryFiles {
public:
    void Rename(std::string_view from, std::string_view to) override {
        MemoryFiles::Rename(from, to);
        if (paths::FileName(to).starts_with(".kdsave-")) {
            throw cError(errDevice, "Rename", {}, Text(from));
        }
    }
};

TEST(GroupCommitTest, ATextThatIsSetAsideThoughTheDiskDeniesItIsFound) {
    DenyingFiles files;
    CommitScene scene(files, "/apps");
    for (const auto& [path, bytes] : scene.OriginalFiles()) {
        files.Put(path, bytes);
    }
    scene.Load();
    scene.EditAll();
    files.ClearLog();
    scene.Commit();
    ASSERT_EQ(scene.toolkit.boxes.size(), 1U);
    EXPECT_EQ(scene.toolkit.boxes.front().text, "4 File(s) have been modified.");
    EXPECT_EQ(std::count(files.Log().begin(), files.Log().end(), "Settle "), 3) << "all go together";
}

}  // namespace
}  // namespace kd
