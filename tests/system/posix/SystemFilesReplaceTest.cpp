#include <algorithm>
#include <cerrno>

#include "base/ApplicationNames.h"
#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

TEST_F(SystemFilesTest, CopyMakesAFileThatIsMissing) {
    const mode_t mask = ::umask(022);
    files.CopyFile(Put("a.temp", "new", 0600), At("a.kdt"));
    EXPECT_EQ(::umask(mask), 022U) << "the user's mask is left as it was";
    EXPECT_EQ(Get(At("a.kdt")), "new");
    EXPECT_EQ(Mode(At("a.kdt")), 0644U);
    EXPECT_EQ(Names(), (std::set<Text>{"a.temp", "a.kdt"}));
}

TEST_F(SystemFilesTest, CopyPutsAWholeNewFileInPlaceOfTheOldOne) {
    const Text target = Put("a.kdt", "old and longer", 0640);
    std::ifstream reader(target, std::ios::binary);
    files.CopyFile(Put("a.temp", "new", 0600), target);
    EXPECT_EQ(Get(target), "new");
    EXPECT_EQ(Mode(target), 0640U);
    EXPECT_EQ(Names(), (std::set<Text>{"a.temp", "a.kdt"}));
    // Who had the file open still reads the old one.
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old and longer");
}

// Another program may take it for one that was left behind, before it is kept.
TEST_F(SystemFilesTest, ANewTextThatIsTakenAwayBeforeItIsKeptIsWrittenAnew) {
    const Text path = Put("a.kdt", "old");
    FailingCalls calls;
    bool wasTaken = false;
    calls.Before("flock", [&] {
        for (const Text& name : Names()) {
            if (name.starts_with(".kdsave-")) {
                wasTaken = ::unlink(At(name).c_str()) == 0;
            }
        }
    });
    files.ReplaceFile(path, "new");
    EXPECT_TRUE(wasTaken);
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

// Who has it in hand takes it for one that was left behind, and is about to delete it.
TEST_F(SystemFilesTest, ANewTextThatAnotherProgramHasInHandIsWrittenAnew) {
    const Text path = Put("a.kdt", "old");
    posix::Descriptor taken;
    FailingCalls calls;
    calls.Before("flock", [&] {
        for (const Text& name : Names()) {
            if (name.starts_with(".kdsave-")) {
                taken = posix::Descriptor(posix::Open(At(name), O_RDWR));
                EXPECT_TRUE(posix::Keep(taken.Get()));
            }
        }
    });
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    struct stat status {};
    EXPECT_TRUE(taken.IsOpen());
    EXPECT_FALSE(posix::IsStillThere(taken.Get(), path, status));
}

TEST_F(SystemFilesTest, ANewTextThatOtherProgramsAlwaysHaveInHandIsWrittenAllTheSame) {
    const Text path = Put("a.kdt", "old");
    FailingCalls calls;
    calls.FailEach("flock", EWOULDBLOCK);
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
}

TEST_F(SystemFilesTest, ReplaceKeepsEveryMode) {
    for (const mode_t mode : {0600U, 0640U, 0644U, 0664U, 0666U, 0755U, 0200U, 0020U}) {
        const Text path = Put("a.kdt", "old", mode);
        if ((mode & 0400U) == 0 && !OrdinaryUser::CanSwitch()) {
            continue;
        }
        files.ReplaceFile(path, "new");
        EXPECT_EQ(Mode(path), mode);
        ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
        EXPECT_EQ(Get(path), "new");
    }
}

TEST_F(SystemFilesTest, ReplaceKeepsTheOwner) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    for (const auto& [owner, group] :
         {std::pair{1234U, 4321U}, std::pair{1234U, ::getegid()}, std::pair{::geteuid(), 4321U}}) {
        const Text path = Put("a.kdt", "old", 0640);
        ASSERT_EQ(::chown(path.c_str(), owner, group), 0);
        const auto before = Status(path);
        files.ReplaceFile(path, "new");
        EXPECT_EQ(Get(path), "new");
        EXPECT_NE(Status(path).st_ino, before.st_ino) << "it has been written over";
        EXPECT_EQ(Status(path).st_uid, owner);
        EXPECT_EQ(Status(path).st_gid, group);
        EXPECT_EQ(Mode(path), 0640U);
    }
}

TEST_F(SystemFilesTest, AFileOfTheUsersOwnIsReplacedWholeWhereADriveGivesNoFileAway) {
    const Text path = Put("a.kdt", "old", 0640);
    const auto before = Status(path);
    FailingCalls calls;
    calls.FailEach("fchown", EPERM);
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_NE(Status(path).st_ino, before.st_ino);
    EXPECT_EQ(Mode(path), 0640U);
}

TEST_F(SystemFilesTest, AFileWhoseOwnerCannotBeKeptIsWrittenInPlace) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    const Text path = Put("a.kdt", "old", 0666);
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    const auto before = Status(path);
    {
        const OrdinaryUser user;
        files.ReplaceFile(path, "new and longer");
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
        files.ReplaceFile(path, "new");
        FailingCalls calls;
        calls.FailEach("write", ENOSPC);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "newer"); }), errDiskFull);
        EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "write"), 1)
            << "what the disk has no room for is not tried in place";
    }
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(Status(path).st_ino, before.st_ino);
    EXPECT_EQ(Status(path).st_uid, before.st_uid);
    EXPECT_EQ(Mode(path), 0666U);
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, AFileInAFolderThatForbidsNewOnesIsWrittenInPlace) {
    MakeFolderAt("closed");
    const Text path = Put("closed/a.kdt", "old", 0666);
    ASSERT_EQ(::chmod(At("closed").c_str(), 0555), 0);
    const auto before = Status(path);
    {
        const OrdinaryUser user;
        files.ReplaceFile(path, "new and longer");
        EXPECT_EQ(Get(path), "new and longer");
        files.ReplaceFile(path, "new");
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(At("closed/b.kdt"), "new"); }), errPermissionDenied);
    }
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(Status(path).st_ino, before.st_ino);
}

TEST_F(SystemFilesTest, AFileInAFolderThatCannotBeListedIsReplaced) {
    MakeFolderAt("closed");
    const Text path = Put("closed/a.kdt", "old", 0666);
    if (OrdinaryUser::CanSwitch()) {
        ASSERT_EQ(::chown(path.c_str(), OrdinaryUser::Id, OrdinaryUser::Id), 0);
        ASSERT_EQ(::chown(At("closed").c_str(), OrdinaryUser::Id, OrdinaryUser::Id), 0);
    }
    ASSERT_EQ(::chmod(At("closed").c_str(), 0333), 0);
    const OrdinaryUser user;
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
}

// Such a folder never tells its names: only exact ones are meant there.
TEST_F(SystemFilesTest, AFileThatIsMissingInAFolderThatCannotBeListedIsMade) {
    FailingCalls calls;
    calls.FailEach("opendir", EACCES);
    files.ReplaceFile(At("replaced"), "new");
    files.OpenForAppend(At("appended"))->Write("new");
    EXPECT_EQ(Get(At("replaced")), "new");
    EXPECT_EQ(Get(At("appended")), "new");
    EXPECT_EQ(ErrorOf([&] { files.DeleteFile(At("missing")); }), errFileNotFound);
}

TEST_F(SystemFilesTest, AFileWhoseFolderDoesNotTellWhomItLetsInIsTheUsersAlone) {
    FailingCalls calls;
    calls.FailEach("getxattr", EIO);
    files.ReplaceFile(At("a.kdt"), "new");
    EXPECT_EQ(Get(At("a.kdt")), "new");
    EXPECT_EQ(Mode(At("a.kdt")), 0600U);
}

TEST_F(SystemFilesTest, ASymbolicLinkStaysOneAndItsFinalTargetIsReplaced) {
    MakeFolderAt("elsewhere");
    const Text target = Put("elsewhere/a.kdt", "old", 0640);
    MakeLink("middle", "elsewhere/a.kdt");
    const Text link = MakeLink("a.kdt", "middle");
    files.CopyFile(Put("a.temp", "new"), link);
    EXPECT_EQ(Get(target), "new");
    EXPECT_EQ(Mode(target), 0640U);
    EXPECT_EQ(std::filesystem::read_symlink(link), "middle");
    EXPECT_EQ(std::filesystem::read_symlink(At("middle")), "elsewhere/a.kdt");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(At("elsewhere")), {}), 1);
}

TEST_F(SystemFilesTest, AFailureNamesTheFileAsItWasGiven) {
    Put("a.kdt", "old");
    const Text given = MakeLink("link", ".") + "/a.kdt";
    FailingCalls calls;
    calls.FailEach("write", ENOSPC);
    try {
        files.ReplaceFile(given, "new");
        ADD_FAILURE() << "it has been written all the same";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errDiskFull);
        EXPECT_EQ(error.Path(), given);
    }
}

TEST_F(SystemFilesTest, AllNamesOfAFileSeeTheNewContent) {
    const Text path = Put("a.kdt", "old");
    std::filesystem::create_hard_link(path, At("b.kdt"));
    for (const char* content : {"new and longer than before", "new", ""}) {
        files.ReplaceFile(path, content);
        EXPECT_EQ(Get(path), content);
        EXPECT_EQ(Get(At("b.kdt")), content);
    }
    EXPECT_EQ(Status(path).st_nlink, 2U);
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "b.kdt"}));
}

TEST_F(SystemFilesTest, ReplaceRefusesProgramsLinksDevicesAndNamesTooLong) {
    const Text source = Put("source", "new");
    Put("readonly", "old", 0444);
    Put("executable", "old", 0555);
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"read-only program", At("executable"), errPermissionDenied},
                          {"link to a read-only file", MakeLink("link", "readonly"), errPermissionDenied},
                          {"link to nothing", MakeLink("dangling", "nowhere"), errPermissionDenied},
                          {"link to itself", MakeLink("loop", "loop"), errPermissionDenied},
                          {"device", "/dev/null", errPermissionDenied},
                          {"name too long", At(Text(300, 'a')), errDevice}};
    const auto names = Names();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(c.path, "new"); }), c.number);
        EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, c.path); }), c.number);
        EXPECT_EQ(Names(), names);
    }
    EXPECT_EQ(Get(At("readonly")), "old");
}

TEST_F(SystemFilesTest, AFileOfSomebodyElseThatIsNotForWritingIsRefused) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    // The folder would allow the replacement; the file does not.
    const Text path = Put("a.kdt", "old", 0644);
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    {
        const OrdinaryUser user;
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), errPermissionDenied);
    }
    EXPECT_EQ(Get(path), "old");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, AFileThatItsOwnerMayNotWriteIsRefusedThoughOthersMay) {
    const Text path = Put("a.kdt", "old", 0464);
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    if (OrdinaryUser::CanSwitch()) {
        ASSERT_EQ(::chown(path.c_str(), OrdinaryUser::Id, OrdinaryUser::Id), 0);
    }
    const OrdinaryUser user;
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), errPermissionDenied);
    EXPECT_EQ(Get(path), "old");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, TheLongestNameCanBeReplaced) {
    const Text path = Put(Text(255, 'a'), "old");
    const auto before = Status(path);
    std::set<Text> names;
    FailingCalls calls;
    calls.Before("write", [&] {
        names = Names();
        for (const Text& name : names) {
            EXPECT_EQ(Mode(At(name)), At(name) == path ? 0644U : 0600U);
        }
    });
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_NE(Status(path).st_ino, before.st_ino) << "it has been written over";
    EXPECT_EQ(names.size(), 2U) << "the new one is made beside it";
    EXPECT_EQ(Names(), std::set<Text>{Text(255, 'a')});
}

TEST_F(SystemFilesTest, ANewFileBesideItsTargetTellsWhatItIsForAndIsKeptFromThoseWhoTidyUp) {
    const Text target = Put("a.kdt", "old");
    SystemFiles other(CodePage::Of(1252));
    const auto renaming = [&] {
        const FailingCalls calls;
        files.ReplaceFile(target, "first");
        const auto at = std::find(calls.Calls().begin(), calls.Calls().end(), "rename");
        return static_cast<int>(at - calls.Calls().begin()) + 1;
    }();
    Text beside;
    {
        FailingCalls calls;
        calls.Before(renaming, [&] {
            for (const Text& name : Names()) {
                if (name != "a.kdt") {
                    beside = name;
                    other.DeleteAbandoned(At(name));
                }
            }
        });
        files.ReplaceFile(target, "second");
    }
    EXPECT_EQ(names::WaitsFor(beside), "a.kdt");
    EXPECT_EQ(Get(target), "second");
    const Text longest = At(Text(250, 'a'));
    files.ReplaceFile(longest, "new");
    files.ReplaceFile(longest, "newer");
    EXPECT_EQ(Get(longest), "newer");
}

}  // namespace
}  // namespace kd
