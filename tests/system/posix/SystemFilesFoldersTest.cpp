#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "base/ApplicationNames.h"
#include "base/Scope.h"
#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

TEST_F(SystemFilesTest, MakeFolderUsesTheUsersMask) {
    const mode_t mask = ::umask(027);
    files.MakeFolder(At("a/b"));
    (void)::umask(mask);
    EXPECT_EQ(Mode(At("a")), 0750U);
    EXPECT_EQ(Mode(At("a/b")), 0750U);
}

TEST_F(SystemFilesTest, MakeFolderGoesThroughFoldersThatNobodyMayWrite) {
    MakeFolderAt("closed/open");
    ASSERT_EQ(::chmod(At("closed/open").c_str(), 0777), 0);
    ASSERT_EQ(::chmod(At("closed").c_str(), 0555), 0);
    const OrdinaryUser user;
    files.MakeFolder(At("closed/open/a"));
    EXPECT_TRUE(std::filesystem::is_directory(At("closed/open/a")));
    EXPECT_EQ(ErrorOf([&] { files.MakeFolder(At("closed/b")); }), errPermissionDenied);
}

TEST_F(SystemFilesTest, ArchiveCopyKeepsBytesTimesAndMode) {
    const Text source = Put("a.kdt", "text", 0664);
    const std::array<timespec, 2> times{{{1000000000, 123}, {1111111111, 456}}};
    ASSERT_EQ(::utimensat(AT_FDCWD, source.c_str(), times.data(), 0), 0);
    const mode_t mask = ::umask(077);
    files.CopyForArchive(source, At("copy"));
    (void)::umask(mask);
    EXPECT_EQ(Get(At("copy")), "text");
    const auto copy = Status(At("copy"));
    EXPECT_EQ(copy.st_mode & 07777U, 0664U);
    EXPECT_EQ(copy.st_mtim.tv_sec, 1111111111);
    EXPECT_EQ(copy.st_mtim.tv_nsec, 456);
}

TEST_F(SystemFilesTest, AnArchiveCopyIsNotForEverybodyToWrite) {
    files.CopyForArchive(Put("a.kdt", "text", 0666), At("copy"));
    EXPECT_EQ(Mode(At("copy")), 0664U);
}

TEST_F(SystemFilesTest, ArchiveCopyOfAReadOnlyFileWorks) {
    files.CopyForArchive(Put("a.kdt", "text", 0444), At("copy"));
    EXPECT_EQ(Get(At("copy")), "text");
    EXPECT_EQ(Mode(At("copy")), 0444U);
}

TEST_F(SystemFilesTest, ArchiveCopyTakesTheContentBehindALink) {
    Put("a.kdt", "text");
    files.CopyForArchive(MakeLink("link", "a.kdt"), At("copy"));
    EXPECT_EQ(Get(At("copy")), "text");
    EXPECT_FALSE(std::filesystem::is_symlink(At("copy")));
}

TEST_F(SystemFilesTest, AnArchiveCopyDoesNotTakeThePlaceOfALink) {
    MakeLink("link", "nowhere");
    EXPECT_EQ(ErrorOf([&] { files.CopyForArchive(Put("a.kdt", "text"), At("link")); }), errDevice);
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "link"}));
}

TEST_F(SystemFilesTest, AnArchiveCopyKeepsTheGroupOrLeavesItNoMoreThanOthers) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    struct Case {
        mode_t source;
        mode_t copy;
        gid_t group;
    };
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    const FurtherGroups none({});
    for (const Case& c :
         {Case{0660, 0600, 4242}, Case{0664, 0644, 4242}, Case{0640, 0600, 4242}, Case{0644, 0644, 4242},
          Case{0775, 0755, 4242}, Case{0604, 0600, 4242}, Case{0660, 0600, 0}}) {
        SCOPED_TRACE(std::to_string(c.source) + " of group " + std::to_string(c.group));
        const Text source = Put("a.kdt", "limits", c.source);
        ASSERT_EQ(::chown(source.c_str(), 0, c.group), 0);
        files.CopyForArchive(source, At("byRoot"));
        EXPECT_EQ(Mode(At("byRoot")), c.source);
        EXPECT_EQ(Status(At("byRoot")).st_gid, c.group);
        EXPECT_EQ(Status(At("byRoot")).st_uid, 0U) << "it is his who has made it";
        ASSERT_EQ(::chown(source.c_str(), OrdinaryUser::Id, c.group), 0);
        {
            const OrdinaryUser user;
            files.CopyForArchive(source, At("byUser"));
        }
        EXPECT_EQ(Mode(At("byUser")), c.copy);
        const FurtherGroups its({c.group});
        {
            const OrdinaryUser user;
            files.CopyForArchive(source, At("byMember"));
        }
        EXPECT_EQ(Mode(At("byMember")), c.source);
        EXPECT_EQ(Status(At("byMember")).st_gid, c.group);
        for (const Text& name : Names()) {
            std::filesystem::remove(At(name));
        }
    }
}

TEST_F(SystemFilesTest, AnArchiveCopyKeepsItsGroupsRightsWhereADriveGivesNoFileAway) {
    const Text source = Put("a.kdt", "limits", 0664);
    FailingCalls calls;
    calls.FailEach("fchown", EPERM);
    files.CopyForArchive(source, At("copy"));
    EXPECT_EQ(Mode(At("copy")), 0664U);
}

TEST_F(SystemFilesTest, WhatIsLeftToSettleIsFlushedTogether) {
#ifdef __linux__
    if (!IsFlushedAtOnce()) {
        GTEST_SKIP() << "on this drive each file is flushed by itself";
    }
#endif
    MakeFolderAt("archive");
    MakeFolderAt("unfinished");
    const auto text = files.OpenForOutput(At("a.temp"));
    const auto log = files.OpenForAppend(At("a.KDL"));
    FailingCalls calls;
    files.CopyAllForArchive({Put("a.kdt", "one"), Put("a.V1", "two")}, At("archive"));
    text->Write("new");
    text->CloseForSettling();
    log->Write("record");
    log->CloseForSettling();
    files.Rename(At("unfinished"), At("named"));
#ifdef __linux__
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "fsync"), 0);
    files.Settle();
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "syncfs"), 1);
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "fsync"), 0);
#else
    files.Settle();
#endif
    const auto before = calls.Calls().size();
    files.Settle();
    EXPECT_EQ(calls.Calls().size(), before) << "nothing is left";
}

TEST_F(SystemFilesTest, ASettlingThatFailsIsToldOnceAndLeavesNothing) {
    const auto log = files.OpenForAppend(At("a.KDL"));
    log->Write("record");
    log->CloseForSettling();
    const char* const flush = IsFlushedAtOnce() ? "syncfs" : "fsync";
    FailingCalls calls;
    calls.FailEach(flush, EIO);
    EXPECT_EQ(ErrorOf([&] { files.Settle(); }), errDevice);
    EXPECT_EQ(ErrorOf([&] { files.Settle(); }), 0);
}

TEST_F(SystemFilesTest, ANameThatCouldNotBeSettledIsNotGiven) {
    struct Case {
        int code;
        std::int32_t number;
        const char* left;
    };
    for (const Case& c : {Case{EIO, errDevice, "a"}, Case{EMFILE, errDevice, "a"}, Case{EACCES, 0, "b"}}) {
        SCOPED_TRACE(c.code);
        files.Settle();
        Put("a", "text");
        FailingCalls calls;
        calls.FailEach("open", c.code);
        EXPECT_EQ(ErrorOf([&] { files.Rename(At("a"), At("b")); }), c.number);
        EXPECT_EQ(Names(), std::set<Text>{c.left});
    }
}

TEST_F(SystemFilesTest, ARenameThatTheDiskRefusesIsTriedInNoOtherWay) {
    Put("a", "text");
    FailingCalls calls;
    calls.FailEach("renameat2", EIO);
    EXPECT_EQ(ErrorOf([&] { files.Rename(At("a"), At("b")); }), errDevice);
    EXPECT_EQ(Names(), std::set<Text>{"a"});
}

TEST_F(SystemFilesTest, ARenameThatFailsNamesWhatIsMissingOrTaken) {
    Put("a", "text");
    Put("b", "other");
    const auto pathOf = [&](const Text& from, const Text& to) {
        try {
            files.Rename(from, to);
        } catch (const cError& error) {
            return error.Path();
        }
        return Text("none");
    };
    EXPECT_EQ(pathOf(At("none"), At("new")), At("none"));
    EXPECT_EQ(pathOf(At("none"), At("missing/new")), At("none"));
    EXPECT_EQ(pathOf(At("a"), At("missing/new")), At("missing/new"));
    EXPECT_EQ(pathOf(At("a"), At("b")), At("b"));
}

TEST_F(SystemFilesTest, AFolderThatCannotBeMadeIsTheOneNamed) {
    FailingCalls calls;
    calls.FailEach("mkdir", ENOENT);
    try {
        files.MakeFolder("/kd-none");
        ADD_FAILURE() << "nothing was made";
    } catch (const cError& error) {
        EXPECT_EQ(error.Path(), "/kd-none");
    }
    EXPECT_NE(ErrorOf([&] { files.MakeFolder(""); }), 0);
}

TEST_F(SystemFilesTest, AFolderThatCannotBeKeptIsToldWithItsReason) {
    FailingCalls calls;
    calls.FailEach("open", EACCES);
    EXPECT_EQ(ErrorOf([&] { files.MakeKeptFolder(At("filled")); }), errPermissionDenied);
}

TEST_F(SystemFilesTest, NeitherALinkNorWhatAnotherProgramHasInHandCountsAsAbandoned) {
    SystemFiles other(CodePage::Of(1252));
    const auto held = other.OpenForOutput(At("held"));
    files.DeleteAbandoned(At("held"));
    Put("other", "text");
    files.DeleteAbandoned(MakeLink("link", "other"));
    const posix::Descriptor reader(posix::Open(MakeFifo("fifo"), O_RDONLY | O_NONBLOCK));
    files.DeleteAbandoned(At("fifo"));
    EXPECT_EQ(Names(), (std::set<Text>{"fifo", "held", "link", "other"}));
}

TEST_F(SystemFilesTest, ALeftoverIsDeletedWhereItsDriveIsThisMachinesAlone) {
    SystemFiles other(CodePage::Of(1252));
    const auto held = other.OpenForOutput(At("held"));
    files.DeleteLeftover(At("held"));
    files.DeleteLeftover(Put("left", "text"));
    EXPECT_EQ(Names().count("left"), IsOfThisMachine() ? 0U : 1U);
    EXPECT_EQ(Names().count("held"), 1U);
}

// Another program has put what it fills in its place since.
TEST_F(SystemFilesTest, AFolderThatHasTakenTheNameOfAnAbandonedOneStays) {
    if (!IsOfThisMachine()) {
        GTEST_SKIP() << "on this drive nothing is known to be abandoned";
    }
    MakeFolderAt("archives/left");
    FailingCalls calls;
    calls.Before("flock", [&] {
        ASSERT_EQ(::rename(At("archives/left").c_str(), At("archives/done").c_str()), 0);
        MakeFolderAt("archives/left");
        Put("archives/left/inner", "text");
    });
    files.DeleteAbandonedFolder(At("archives/left"));
    EXPECT_EQ(Get(At("archives/left/inner")), "text");
}

TEST_F(SystemFilesTest, AFolderThatIsAbandonedIsRemovedAndOneThatIsBeingFilledStays) {
    if (!IsOfThisMachine()) {
        GTEST_SKIP() << "on this drive nothing is known to be abandoned";
    }
    SystemFiles other(CodePage::Of(1252));
    const Text filled = At("archives/filled");
    files.MakeKeptFolder(filled);
    Put("archives/filled/inner", "text");
    other.DeleteAbandonedFolder(filled);
    files.DeleteAbandonedFolder(filled);
    EXPECT_TRUE(std::filesystem::exists(filled + "/inner"));
    files.Rename(filled, At("archives/done"));
    other.DeleteAbandonedFolder(At("archives/done"));
    EXPECT_FALSE(std::filesystem::exists(At("archives/done"))) << "a name is no shelter by itself";
    files.MakeKeptFolder(filled);
    files.RemoveFolder(filled);
    MakeFolderAt("archives/filled");
    other.DeleteAbandonedFolder(filled);
    EXPECT_EQ(Names(), std::set<Text>{"archives"});
    Put("file", "text");
    MakeLink("link", "archives");
    for (const char* name : {"file", "link", "none"}) {
        other.DeleteAbandonedFolder(At(name));
    }
    EXPECT_EQ(Names(), (std::set<Text>{"archives", "file", "link"}));
    other.RemoveEmptyFolder(folder);
    other.RemoveEmptyFolder(At("archives"));
    other.RemoveEmptyFolder(At("none"));
    EXPECT_EQ(Names(), (std::set<Text>{"file", "link"}));
}

// Who fills it where no lock tells so must not give half an archive its name.
TEST_F(SystemFilesTest, AFolderThatIsAbandonedLosesItsNameBeforeItsFiles) {
    if (!IsOfThisMachine()) {
        GTEST_SKIP() << "on this drive nothing is known to be abandoned";
    }
    Put(MakeFolderAt("archives/left").substr(folder.size() + 1) + "/inner", "text");
    {
        FailingCalls calls;
        calls.FailEach("unlink", EIO);
        files.DeleteAbandonedFolder(At("archives/left"));
    }
    EXPECT_FALSE(std::filesystem::exists(At("archives/left")));
    const std::filesystem::directory_iterator found(At("archives"));
    ASSERT_NE(found, std::filesystem::directory_iterator());
    EXPECT_TRUE(names::IsUnfinishedArchive(found->path().filename().string()));
    EXPECT_TRUE(std::filesystem::exists(found->path() / "inner"));
}

#ifdef __linux__
// Locks hold on one machine, and the drive may be one of several: what is not known is left.
TEST_F(SystemFilesTest, OnADriveThatOtherMachinesMayUseNothingCountsAsAbandonedBySomebodyElse) {
    MakeFolderAt("archives/left");
    const Text leftover = Put("leftover", "text");
    FailingCalls calls;
    calls.FailEach("fstatfs", EIO);
    files.DeleteAbandonedFolder(At("archives/left"));
    files.DeleteLeftover(leftover);
    EXPECT_TRUE(std::filesystem::exists(At("archives/left")));
    EXPECT_TRUE(std::filesystem::exists(leftover));
    files.DeleteAbandoned(leftover);
    EXPECT_FALSE(std::filesystem::exists(leftover)) << "one of the program's own";
}
#endif

TEST_F(SystemFilesTest, AFolderThatAnotherProgramTakesForAnAbandonedOneIsMadeAnew) {
    if (!IsOfThisMachine()) {
        GTEST_SKIP() << "on this drive nothing is known to be abandoned";
    }
    SystemFiles other(CodePage::Of(1252));
    FailingCalls calls;
    bool wasTaken = false;
    calls.Before(2, [&] {  // it is made, and not kept yet
        other.DeleteAbandonedFolder(At("filled"));
        wasTaken = !std::filesystem::exists(At("filled"));
    });
    files.MakeKeptFolder(At("filled"));
    EXPECT_TRUE(wasTaken);
    EXPECT_TRUE(std::filesystem::exists(At("filled")));
}

#ifdef __linux__
TEST_F(SystemFilesTest, AFolderThatIsMadeAnewIsSettledWithTheNamesOfThoseAboveItThatWereMadeBefore) {
    FailingCalls calls;
    calls.FailEach("fstatfs", EIO);  // each name is then flushed by itself
    bool wasTaken = false;
    calls.Before(4, [&] { wasTaken = ::rmdir(At("archives/filled").c_str()) == 0; });
    files.MakeKeptFolder(At("archives/filled"));
    ASSERT_TRUE(wasTaken);
    files.Settle();
    EXPECT_EQ(calls.Flushed(), (std::vector<std::string>{folder, At("archives")}));
}

TEST_F(SystemFilesTest, AFileThatIsMadeForWhatIsAddedIsSettledWithItsName) {
    FailingCalls calls;
    calls.FailEach("fstatfs", EIO);  // each name is then flushed by itself
    int lived = 0;
    files.Meanwhile = [&] { ++lived; };
    for (const bool isNew : {true, false}) {
        const auto before = static_cast<std::ptrdiff_t>(calls.Flushed().size());
        const auto log = files.OpenForAppend(At("a.KDL"));
        log->Write("record");
        log->CloseForSettling();
        files.Settle();
        const std::vector<std::string> flushed(calls.Flushed().begin() + before, calls.Flushed().end());
        EXPECT_EQ(flushed, isNew ? (std::vector<std::string>{At("a.KDL"), folder})
                                 : std::vector<std::string>{At("a.KDL")});
        EXPECT_GE(lived, 1) << "between two flushes";
    }
}

TEST_F(SystemFilesTest, AMovedFilesNameIsLeftToSettle) {
    FailingCalls calls;
    calls.FailEach("fstatfs", EIO);  // each name is then flushed by itself
    files.MoveOver(Put("a.temp", "new"), Put("a.kdt", "old"));
    EXPECT_EQ(std::count(calls.Flushed().begin(), calls.Flushed().end(), folder), 0);
    files.Settle();
    EXPECT_EQ(std::count(calls.Flushed().begin(), calls.Flushed().end(), folder), 1);
}
#endif

TEST_F(SystemFilesTest, TheRootAndTheFolderWhereTheProgramStandsCanBeFlushed) {
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(""); }), 0);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder("."); }), 0);
}

TEST_F(SystemFilesTest, RemoveFolderNeverFollowsALink) {
    MakeFolderAt("a");
    MakeFolderAt("other");
    Put("other/file", "text");
    MakeLink("a/link", At("other"));
    MakeLink("link", At("other"));
    files.RemoveFolder(At("a"));
    files.RemoveFolder(At("link"));
    EXPECT_EQ(Names(), std::set<Text>{"other"});
    EXPECT_EQ(Get(At("other/file")), "text");
}

#ifdef __linux__
TEST_F(SystemFilesTest, RenameTakesNoTakenNameWhereTheSystemCannotSeeToItEither) {
    for (const int code : {EINVAL, ENOSYS}) {
        SCOPED_TRACE(code);
        MakeFolderAt("from");
        MakeFolderAt("empty");
        MakeFolderAt("full");
        Put("from/a", "text");
        Put("full/b", "kept");
        Put("file", "kept");
        FailingCalls calls;
        calls.FailEach("renameat2", code);
        for (const char* const taken : {"file", "full"}) {
            EXPECT_EQ(ErrorOf([&] { files.Rename(At("from"), At(taken)); }), errPermissionDenied) << taken;
        }
        EXPECT_EQ(Get(At("file")), "kept");
        EXPECT_EQ(Get(At("full/b")), "kept");
        files.Rename(At("from"), At("empty"));
        EXPECT_EQ(Get(At("empty/a")), "text");
        files.Rename(At("empty"), At("new"));
        EXPECT_EQ(Names(), (std::set<Text>{"file", "full", "new"}));
        std::filesystem::remove_all(At("new"));
    }
}
#endif

TEST_F(SystemFilesTest, APathWithoutAFolderIsOneOfTheFolderWhereTheProgramStands) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    const Scope back([&before] { std::filesystem::current_path(before); });
    files.ReplaceFile("a.kdt", "new");
    EXPECT_EQ(files.Read("A.KDT"), "new") << "in any case";
    files.ReplaceFile("A.kdt", "newer");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    files.MakeFolder("f/g");
    files.ReplaceFile("f/b.kdt", "inner");
    EXPECT_EQ(files.Read("f/B.KDT"), "inner");
    files.RemoveFolder("f");
    const auto output = files.OpenForOutput("a.temp");
    output->Write("newest");
    output->CloseForSettling();
    files.Settle();
    EXPECT_TRUE(files.MoveSettled("a.temp", "a.kdt", posix::StateOf(Status(At("a.kdt")))));
    files.MakeKeptFolder("unfinished");
    files.CopyAllForArchive({"a.kdt"}, "unfinished");
    files.Rename("unfinished", "done");
    files.Settle();
    EXPECT_EQ(Get(At("done/a.kdt")), "newest");
    files.DeleteFile("A.KDT");
    files.RemoveFolder("done");
    EXPECT_EQ(Names(), std::set<Text>{});
}

TEST_F(SystemFilesTest, RenameTakesTheNameOfAnEmptyFolderButOfNoLinkToOne) {
    MakeFolderAt("from");
    MakeFolderAt("empty");
    Put("from/a", "text");
    MakeLink("link", "empty");
    EXPECT_EQ(ErrorOf([&] { files.Rename(At("from"), At("link")); }), errPermissionDenied);
    files.Rename(At("from"), At("empty"));
    EXPECT_EQ(Names(), (std::set<Text>{"empty", "link"}));
    EXPECT_EQ(Get(At("empty/a")), "text");
}

}  // namespace
}  // namespace kd
