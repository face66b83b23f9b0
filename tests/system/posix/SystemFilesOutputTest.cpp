#include <grp.h>
#include <sys/resource.h>

#include <cerrno>
#include <vector>

#include "base/Scope.h"
#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

/// Files grow to that size and no further, for the length of a scope.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t bytes) {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &m_before), 0);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~SizeLimit() { EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &m_before), 0); }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

private:
    rlimit m_before{};
};

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
    constexpr gid_t OfNobodyHere = 4321;
    const mode_t mask = ::umask(022);
    for (const auto& [target, expected] : {std::pair{0664U, 0644U}, std::pair{0660U, 0600U},
                                           std::pair{0606U, 0600U}, std::pair{0666U, 0666U}}) {
        SCOPED_TRACE(target);
        const Text path = Put("a.kdt", "of somebody else", target);
        ASSERT_EQ(::chown(path.c_str(), 0, OfNobodyHere), 0);
        const OrdinaryUser user;
        const auto output = files.OpenForOutput(At("a.temp"));
        EXPECT_TRUE(output->TakeRightsOf(At("a.kdt")).file.IsKnown());
        EXPECT_EQ(Mode(At("a.temp")), expected);
        ASSERT_EQ(::unlink(At("a.temp").c_str()), 0);
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
    std::vector<gid_t> before(static_cast<std::size_t>(::getgroups(0, nullptr)));
    ASSERT_GE(::getgroups(static_cast<int>(before.size()), before.data()), 0);
    const Scope restored([&] { EXPECT_EQ(::setgroups(before.size(), before.data()), 0); });
    ASSERT_EQ(::setgroups(1, &Shared), 0);
    const OrdinaryUser user;
    const auto output = files.OpenForOutput(At("a.temp"));
    EXPECT_EQ(Status(At("a.temp")).st_gid, OrdinaryUser::Id);
    EXPECT_TRUE(output->TakeRightsOf(path).file.IsKnown());
    EXPECT_EQ(Mode(At("a.temp")), 0660U);
    EXPECT_EQ(Status(At("a.temp")).st_gid, Shared);
}

TEST_F(SystemFilesTest, OutputThatOthersCouldOpenBeforeIsMadeAnew) {
    for (const mode_t mode : {0664U, 0644U, 0604U}) {
        SCOPED_TRACE(mode);
        const Text path = Put("a.temp", "left behind", mode);
        std::ifstream opened(path, std::ios::binary);
        const auto output = files.OpenForOutput(path);
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
    calls.FailEach("unlink", EACCES);
    try {
        (void)files.OpenForOutput(path);
        ADD_FAILURE() << "another name of it would be written over";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errPermissionDenied);
        EXPECT_EQ(error.Source(), "SystemFiles.OpenForOutput");
        EXPECT_EQ(error.Path(), path);
    }
    EXPECT_EQ(Get(At("other name")), "of another");
}

TEST_F(SystemFilesTest, OutputThatAnotherHasInHandIsWaitedForAsLongAsASaveTakes) {
    SystemFiles other(CodePage::Of(1252));
    const auto held = other.OpenForOutput(At("a.temp"));
    held->Write("another's");
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
    for (const Text& name : Names()) {
        files.DeleteAbandoned(At(name));
    }
    EXPECT_EQ(Names(), (std::set<Text>{"of another", "written since", "in hand"}));
    (void)Put("own", "");  // of whoever; it may be given the same identity
    files.DeleteAbandoned(At("own"));
    EXPECT_TRUE(std::filesystem::exists(At("own")));
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

TEST_F(SystemFilesTest, AFileBeyondTheLimitIsAFullDisk) {
    const auto file = files.OpenForOutput(At("a.temp"));
    const SizeLimit limit(100);
    file->Write(std::string(60, 'x'));
    EXPECT_EQ(ErrorOf([&] { file->Write(std::string(60, 'y')); }), errDiskFull);
    file->Close();
}

TEST_F(SystemFilesTest, ARecordThatDoesNotFitLeavesNoHalf) {
    const Text path = Put("a.KDL", std::string(60, 'x'));
    {
        const SizeLimit limit(100);
        const auto file = files.OpenForAppend(path);
        EXPECT_EQ(ErrorOf([&] { file->Write(std::string(60, 'y')); }), errDiskFull);
        file->Close();
    }
    EXPECT_EQ(Get(path), std::string(60, 'x'));
}

TEST_F(SystemFilesTest, ReplaceBeyondTheLimitLeavesTheOldFile) {
    const Text path = Put("a.kdt", "old");
    const SizeLimit limit(100);
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, std::string(200, 'x')); }), errDiskFull);
    EXPECT_EQ(Get(path), "old");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, ReplaceInPlaceBeyondTheLimitLeavesTheOldFile) {
    const Text path = Put("a.kdt", "old");
    std::filesystem::create_hard_link(path, At("b.kdt"));
    const SizeLimit limit(100);
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, std::string(200, 'x')); }), errDiskFull);
    EXPECT_EQ(Get(path), "old");
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "b.kdt"}));
}

TEST_F(SystemFilesTest, ArchiveCopyBeyondTheLimitLeavesNone) {
    const Text path = Put("a.kdt", std::string(200, 'x'));
    const SizeLimit limit(100);
    EXPECT_EQ(ErrorOf([&] { files.CopyForArchive(path, At("copy")); }), errDiskFull);
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
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
