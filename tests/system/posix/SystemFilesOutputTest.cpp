#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

TEST_F(SystemFilesTest, AppendMakesAFileWithTheUsersMode) {
    const mode_t mask = ::umask(027);
    files.OpenForAppend(At("a.KDL"))->Close();
    (void)::umask(mask);
    EXPECT_EQ(Mode(At("a.KDL")), 0640U);
}

TEST_F(SystemFilesTest, OutputIsTheUsersAloneUntilItIsToldWhatItIsFor) {
    const mode_t mask = ::umask(002);
    const auto output = files.OpenForOutput(At("a.temp"));
    EXPECT_EQ(Mode(At("a.temp")), 0600U);
    EXPECT_EQ(output->TakeRightsOf(At("a.kdt")), FileState()) << "which is not there";
    (void)::umask(mask);
    EXPECT_EQ(Mode(At("a.temp")), 0664U);
}

TEST_F(SystemFilesTest, OutputForAFileThatCannotBeReachedStaysTheUsersAlone) {
    Put("plain", "");
    MakeLink("loop", "loop");
    for (const char* const target : {"plain/a.kdt", "loop"}) {
        const auto output = files.OpenForOutput(At("a.temp"));
        EXPECT_EQ(output->TakeRightsOf(At(target)), FileState());
        EXPECT_EQ(Mode(At("a.temp")), 0600U) << target;
    }
}

TEST_F(SystemFilesTest, OutputGetsEveryModeOfItsFileAndOfALinksTargetNoOwner) {
    for (const mode_t mode : {0600U, 0640U, 0755U, 0606U}) {
        const Text path = Put("a.kdt", "old", mode);
        const auto output = files.OpenForOutput(At("a.temp"));
        (void)output->TakeRightsOf(path);
        EXPECT_EQ(Mode(At("a.temp")), mode);
        ASSERT_EQ(::unlink(At("a.temp").c_str()), 0);
    }
    if (OrdinaryUser::CanSwitch()) {
        ASSERT_EQ(::chown(At("a.kdt").c_str(), OrdinaryUser::Id, OrdinaryUser::Id), 0);
        const auto output = files.OpenForOutput(At("a.temp"));
        (void)output->TakeRightsOf(MakeLink("link", "a.kdt"));
        EXPECT_EQ(Status(At("a.temp")).st_uid, ::geteuid()) << "it stays his who has made it";
    }
}

// Who waits for a file must be able to see that it is kept, but nobody sees more than in the file that it is
// for.
TEST_F(SystemFilesTest, OutputThatCannotGetTheRightsOfAFileIsNoMoreOpenThanThatOne) {
    const mode_t mask = ::umask(077);
    const Text link = MakeLink("link", "elsewhere");
    for (const auto& [target, expected] : {std::pair{0664U, 0664U}, std::pair{0640U, 0640U},
                                           std::pair{0600U, 0600U}, std::pair{0777U, 0666U}}) {
        SCOPED_TRACE(target);
        (void)Put("elsewhere", "old", target);
        (void)Put("OTHER.KDT", "old", target);
        for (const Text& path : {link, At("other.kdt")}) {
            const auto output = files.OpenForOutput(At("a.temp"));
            const FileState seen = output->TakeRightsOf(path);
            EXPECT_EQ(seen.file.IsKnown(), path == link);
            EXPECT_EQ(Mode(At("a.temp")), path == link ? expected : target);
            ASSERT_EQ(::unlink(At("a.temp").c_str()), 0);
        }
    }
    (void)::umask(mask);
}

TEST_F(SystemFilesTest, OutputForAFileOfAnotherGroupIsNotForTheUsersOwn) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    const FurtherGroups none({});
    const mode_t mask = ::umask(022);
    for (const gid_t group : {4321U, 0U}) {
        for (const auto& [target, expected] : {std::pair{0664U, 0644U}, std::pair{0660U, 0600U},
                                               std::pair{0606U, 0600U}, std::pair{0666U, 0666U}}) {
            SCOPED_TRACE(std::to_string(target) + " of group " + std::to_string(group));
            const Text path = Put("a.kdt", "of somebody else", target);
            ASSERT_EQ(::chown(path.c_str(), 0, group), 0);
            const OrdinaryUser user;
            const auto output = files.OpenForOutput(At("a.temp"));
            EXPECT_TRUE(output->TakeRightsOf(At("a.kdt")).file.IsKnown());
            EXPECT_EQ(Mode(At("a.temp")), expected);
            ASSERT_EQ(::unlink(At("a.temp").c_str()), 0);
        }
    }
    (void)::umask(mask);
}

// A group may share what is somebody's, and each of them a first group of his own.
TEST_F(SystemFilesTest, OutputForAFileOfAGroupOfTheUsersIsThatGroupsToo) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    const Text path = Put("a.kdt", "of somebody else", 0660);
    constexpr gid_t Shared = 4321;
    ASSERT_EQ(::chown(path.c_str(), 0, Shared), 0);
    const FurtherGroups shared({Shared});
    const OrdinaryUser user;
    const auto output = files.OpenForOutput(At("a.temp"));
    EXPECT_EQ(Status(At("a.temp")).st_gid, OrdinaryUser::Id);
    EXPECT_TRUE(output->TakeRightsOf(path).file.IsKnown());
    EXPECT_EQ(Mode(At("a.temp")), 0660U);
    EXPECT_EQ(Status(At("a.temp")).st_gid, Shared);
}

TEST_F(SystemFilesTest, OutputThatOthersCouldOpenBeforeIsMadeAnew) {
    for (const mode_t mode : {0664U, 0644U, 0640U, 0620U, 0604U, 0602U}) {
        SCOPED_TRACE(mode);
        const Text path = Put("a.temp", "left behind", mode);
        std::ifstream opened(path, std::ios::binary);
        const auto output = files.OpenForOutput(path, Patience::None);
        output->Write("for the user alone");
        EXPECT_EQ(Mode(path), 0600U);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(opened), {}), "left behind");
        (void)output->TakeRightsOf(Put("a.kdt", "old", 0600));
        EXPECT_EQ(Mode(path), 0600U);
    }
}

TEST_F(SystemFilesTest, OutputThatAnotherHasInHandKeepsItsNameThoughItHasAnother) {
    SystemFiles other(CodePage::Of(1252));
    const auto held = other.OpenForOutput(At("a.temp"));
    std::filesystem::create_hard_link(At("a.temp"), At("second name"));
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("a.temp"), Patience::None); }), errFileAlreadyOpen);
    EXPECT_EQ(Names(), (std::set<Text>{"a.temp", "second name"}));
}

TEST_F(SystemFilesTest, OutputThatAnotherTakesAwayWhileItIsOpenedIsMade) {
    const Text path = Put("a.temp", "another's", 0600);
    FailingCalls calls;
    calls.Before(2, [&] { ASSERT_EQ(::rename(path.c_str(), At("a.kdt").c_str()), 0); });
    EXPECT_EQ(ErrorOf([&] { files.OpenForOutput(path)->Write("ours"); }), 0);
    EXPECT_EQ(Get(At("a.kdt")), "another's");
    EXPECT_EQ(Get(path), "ours");
    calls.Before("flock", [&] { ASSERT_EQ(::rename(path.c_str(), At("b.kdt").c_str()), 0); });
    EXPECT_EQ(ErrorOf([&] { files.OpenForOutput(path)->Write("new"); }), 0);
    EXPECT_EQ(Get(At("b.kdt")), "ours") << "also when it is open already";
    EXPECT_EQ(Get(path), "new");
}

TEST_F(SystemFilesTest, OutputThatIsMadeWhereADriveTellsAnotherModeIsNotMadeTwice) {
    FailingCalls calls;
    calls.Before("flock", [&] { ASSERT_EQ(::chmod(At("a.temp").c_str(), 0755), 0); });
    files.OpenForOutput(At("a.temp"))->Write("text");
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "unlink"), 0);
    EXPECT_EQ(Get(At("a.temp")), "text");
}

TEST_F(SystemFilesTest, WhatHasTakenItsPlaceAndMadeRoomForAnotherIsNotAbandoned) {
    SystemFiles other(CodePage::Of(1252));
    auto held = other.OpenForOutput(At("a.temp"));
    FailingCalls calls;
    calls.Before("flock", [&] {
        ASSERT_EQ(::rename(At("a.temp").c_str(), At("a.kdt").c_str()), 0);
        held = other.OpenForOutput(At("a.temp"));
        held->Write("the next one's");
    });
    files.DeleteAbandoned(At("a.temp"));
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "a.temp"}));
}

// A member of the group may have opened it for writing, and nothing tells that from the outside.
TEST_F(SystemFilesTest, OutputThatOthersCouldOpenBeforeAndThatMustStayDoesNotLookAsIfTheyCouldNot) {
    const mode_t mask = ::umask(022);
    (void)Put("a.kdt", "old", 0644);
    for (const char* const target : {"a.kdt", "none.kdt"}) {
        FailingCalls calls;
        calls.FailEach("unlink", EACCES);
        (void)Put("a.temp", "left behind", 0664);
        const auto output = files.OpenForOutput(At("a.temp"));
        (void)output->TakeRightsOf(At(target));
        EXPECT_EQ(Mode(At("a.temp")), 0664U) << target;
    }
    (void)::umask(mask);
}

TEST_F(SystemFilesTest, OutputIsNeverWrittenThroughALink) {
    const Text other = Put("other", "of somebody else");
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(MakeLink("a.temp", "other")); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(MakeLink("b.temp", "nowhere")); }),
              errPermissionDenied);
    EXPECT_EQ(Get(other), "of somebody else");
    EXPECT_EQ(Names(), (std::set<Text>{"a.temp", "b.temp", "other"}));
}

TEST_F(SystemFilesTest, OutputNeverReachesAnotherNameOfTheSameFile) {
    const Text other = Put("other", "of somebody else");
    std::filesystem::create_hard_link(other, At("a.temp"));
    files.OpenForOutput(At("a.temp"))->Write("new");
    EXPECT_EQ(Get(other), "of somebody else");
    EXPECT_EQ(Get(At("a.temp")), "new");
    FailingCalls calls;
    calls.Before("flock", [&] { std::filesystem::create_hard_link(At("b.temp"), At("given since")); });
    files.OpenForOutput(At("b.temp"))->Write("new");
    EXPECT_EQ(Get(At("given since")), "");
    EXPECT_EQ(Get(At("b.temp")), "new");
}

TEST_F(SystemFilesTest, OutputThatMustStayAndGetsAnotherNameMeanwhileIsRefused) {
    const Text path = Put("a.temp", "left behind", 0644);
    FailingCalls calls;
    calls.FailEach("unlink", EACCES);
    calls.Before("unlink", [&] { std::filesystem::create_hard_link(path, At("other name")); });
    try {
        (void)files.OpenForOutput(path);
        ADD_FAILURE() << "another name of it would be written over";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errPermissionDenied);
        EXPECT_EQ(error.Source(), "SystemFiles.OpenForOutput");
    }
    EXPECT_EQ(Get(At("other name")), "left behind");
}

TEST_F(SystemFilesTest, OutputOfSomebodyElseThatCannotGoIsRefused) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    const Text path = Put("a.temp", "left behind", 0644);
    ASSERT_EQ(::chown(path.c_str(), OrdinaryUser::Id, OrdinaryUser::Id), 0);
    FailingCalls calls;
    calls.FailEach("unlink", EACCES);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errPermissionDenied);
    EXPECT_EQ(Get(path), "left behind");
}

TEST_F(SystemFilesTest, OutputRefusesDevicesAndNamesTooLong) {
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"device", "/dev/null", errPermissionDenied},
                          {"full device", "/dev/full", errPermissionDenied},
                          {"name too long", At(Text(300, 'a')), errDevice}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(c.path); }), c.number);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForAppend(c.path); }), c.number);
    }
}

TEST_F(SystemFilesTest, OutputWhoseOldFileAnotherProgramRemovesFirstIsMadeAnew) {
    const Text path = Put("a.temp", "of another", 0600);
    std::filesystem::create_hard_link(path, At("other name"));
    FailingCalls calls;
    calls.Before("unlink", [&] { std::filesystem::remove(path); });
    files.OpenForOutput(path)->Write("ours");
    EXPECT_EQ(Get(path), "ours");
    EXPECT_EQ(Get(At("other name")), "of another");
}

TEST_F(SystemFilesTest, OutputWhoseOldFileHasAnotherNameAndCannotGoIsRefused) {
    const Text path = Put("a.temp", "of another", 0600);
    std::filesystem::create_hard_link(path, At("other name"));
    FailingCalls calls;
    for (const auto& [code, number] : {std::pair{EACCES, errPermissionDenied}, std::pair{EIO, errDevice}}) {
        calls.FailEach("unlink", code);
        try {
            (void)files.OpenForOutput(path);
            ADD_FAILURE() << "another name of it would be written over";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), number);
            EXPECT_EQ(error.Source(), "SystemFiles.OpenForOutput");
            EXPECT_EQ(error.Path(), path);
        }
    }
    EXPECT_EQ(Get(At("other name")), "of another");
}

TEST_F(SystemFilesTest, OutputThatAnotherHasInHandIsWaitedForAsLongAsASaveTakes) {
    SystemFiles other(CodePage::Of(1252));
    const auto held = other.OpenForOutput(At("a.temp"));
    held->Write("another's");
    static int lived;
    lived = 0;
    files.Meanwhile = [] { ++lived; };
    waiting::Pause = [](std::uint32_t) {
        EXPECT_EQ(lived, ++pauses) << "the caller lives before each pause";
    };
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("a.temp")); }), errFileAlreadyOpen);
    EXPECT_EQ(pauses, waiting::PausesForASave);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("a.temp"), Patience::None); }), errFileAlreadyOpen);
    EXPECT_EQ(pauses, waiting::PausesForASave) << "who has no patience does not wait";
    EXPECT_EQ(Get(At("a.temp")), "another's");
}

TEST_F(SystemFilesTest, OutputThatNobodyHasInHandIsNotWaitedForWhateverFailedBefore) {
    errno = EWOULDBLOCK;
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("a.temp")); }), 0);
    EXPECT_EQ(pauses, 0);
}

TEST_F(SystemFilesTest, OutputThatWasLetGoAndIsOpenAnewStaysKeptWhenTheFirstOneGoes) {
    FailingCalls calls;
    calls.FailEach("flock", ENOLCK);
    auto first = files.OpenForOutput(At("a.temp"));
    first->Unlock();
    const auto second = files.OpenForOutput(At("a.temp"));
    first.reset();
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("a.temp"), Patience::None); }), errFileAlreadyOpen);
}

// Where there are no locks, the state in which it was let go tells whether it has another's text since.
TEST_F(SystemFilesTest, OutputThatAnotherProgramTakesAsItIsLetGoIsNotDeletedAsAbandoned) {
    FailingCalls calls;
    calls.FailEach("flock", ENOLCK);
    auto output = files.OpenForOutput(At("a.temp"));
    output->Write("ours");
    calls.Before("flock", [&] { Put("a.temp", "another's text", 0600); });
    output->Unlock();
    output.reset();
    files.DeleteAbandoned(At("a.temp"));
    EXPECT_EQ(Get(At("a.temp")), "another's text");
}

TEST_F(SystemFilesTest, OutputThatAnotherHasInHandIsTakenWhenItIsLetGo) {
    SystemFiles other(CodePage::Of(1252));
    static std::unique_ptr<OutputFile> held;
    held = other.OpenForOutput(At("a.temp"));
    waiting::Pause = [](std::uint32_t) {
        if (++pauses == 3) {
            held.reset();
        }
    };
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("a.temp")); }), 0);
    EXPECT_EQ(pauses, 3);
}

TEST_F(SystemFilesTest, OutputIsKeptFromItsOwnProgramByAnyNameAlsoWhereThereAreNoLocks) {
    MakeFolderAt("folder");
    (void)MakeLink("again", "folder");
    FailingCalls calls;
    calls.FailEach("flock", ENOLCK);
    auto first = files.OpenForOutput(At("folder/a.temp"));
    first->Write("of one view");
    first->Close();
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("again/a.temp")); }), errFileAlreadyOpen);
    EXPECT_EQ(Get(At("folder/a.temp")), "of one view");
    first->Unlock();
    EXPECT_EQ(ErrorOf([&] { first = files.OpenForOutput(At("again/a.temp")); }), 0);
    first.reset();
    EXPECT_EQ(ErrorOf([&] { first = files.OpenForOutput(At("folder/a.temp")); }), 0);
}

TEST_F(SystemFilesTest, OutputThatIsLetGoCanBeDeletedAlsoWhereThereAreNoLocksButNothingElseThere) {
    SystemFiles other(CodePage::Of(1252));
    FailingCalls calls;
    calls.FailEach("flock", ENOLCK);
    for (const char* const name : {"own", "of another", "written since", "in hand"}) {
        const auto output = (name == Text("of another") ? other : files).OpenForOutput(At(name));
        output->Write("text");
        output->Close();
        if (name != Text("in hand")) {
            output->Unlock();
        }
    }
    std::ofstream(At("written since"), std::ios::app) << "more";
    const std::array<timespec, 2> times{Status(At("own")).st_atim, Status(At("own")).st_mtim};
    for (const Text& name : Names()) {
        files.DeleteAbandoned(At(name));
    }
    EXPECT_EQ(Names(), (std::set<Text>{"of another", "written since", "in hand"}));
    for (const char* const text : {"", "text"}) {
        (void)Put("own", text);  // of whoever; it may be given the same identity, and a clock may stand
        ASSERT_EQ(::utimensat(AT_FDCWD, At("own").c_str(), times.data(), 0), 0);
        files.DeleteAbandoned(At("own"));
        EXPECT_TRUE(std::filesystem::exists(At("own")));
    }
}

TEST_F(SystemFilesTest, OutputThatIsLetGoAndThatAnotherProgramKeepsSinceIsNotDeletedAsAbandoned) {
    SystemFiles other(CodePage::Of(1252));
    files.OpenForOutput(At("a.temp"))->Unlock();
    const auto held = other.OpenForOutput(At("a.temp"));
    files.DeleteAbandoned(At("a.temp"));
    EXPECT_EQ(Names(), std::set<Text>{"a.temp"});
}

TEST_F(SystemFilesTest, AppendAddsAtTheEnd) {
    const Text path = Put("a.KDL", "old\r\n", 0600);
    const auto file = files.OpenForAppend(path);
    std::ofstream(path, std::ios::binary | std::ios::app) << "between\r\n";
    file->Write("new\r\n");
    file->Flush();
    file->Close();
    EXPECT_EQ(Get(path), "old\r\nbetween\r\nnew\r\n");
    EXPECT_EQ(Mode(path), 0600U);
}

TEST_F(SystemFilesTest, AppendFollowsALink) {
    Put("a.KDL", "old,");
    files.OpenForAppend(MakeLink("b.KDL", "a.KDL"))->Write("new");
    EXPECT_EQ(Get(At("a.KDL")), "old,new");
    EXPECT_TRUE(std::filesystem::is_symlink(At("b.KDL")));
}

TEST_F(SystemFilesTest, DeleteOfALinkLeavesWhatItLeadsTo) {
    Put("a.kdt", "old", 0444);
    files.DeleteFile(MakeLink("b.kdt", "a.kdt"));
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, DeleteInAFolderWithoutRightsIsRefused) {
    MakeFolderAt("closed");
    const Text path = Put("closed/a.kdt", "old", 0666);
    ASSERT_EQ(::chmod(At("closed").c_str(), 0555), 0);
    const OrdinaryUser user;
    EXPECT_EQ(ErrorOf([&] { files.DeleteFile(path); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("closed/new")); }), errPermissionDenied);
    EXPECT_EQ(Get(path), "old");
}

TEST_F(SystemFilesTest, DeleteRefusesWhatTheUserHimselfMayNotWrite) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "needs a second user";
    }
    ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
    const Text path = Put("a.kdt", "old", 0644);
    const OrdinaryUser user;
    EXPECT_EQ(ErrorOf([&] { files.DeleteFile(path); }), errPermissionDenied);
    EXPECT_EQ(Get(path), "old");
}

}  // namespace
}  // namespace kd
