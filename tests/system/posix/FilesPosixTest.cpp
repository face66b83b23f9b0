#include "system/posix/FilesPosix.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "base/Scope.h"
#include "system/posix/FailingCalls.h"
#include "system/posix/ReplacePosix.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

using posix::Descriptor;

/// Without a standard input, for the length of a scope: the next file to be opened gets its number.
class NoStandardInput {
public:
    NoStandardInput() { EXPECT_EQ(::close(STDIN_FILENO), 0); }
    ~NoStandardInput() {
        EXPECT_EQ(::dup2(m_kept, STDIN_FILENO), STDIN_FILENO);
        EXPECT_EQ(::close(m_kept), 0);
    }
    NoStandardInput(const NoStandardInput&) = delete;
    NoStandardInput& operator=(const NoStandardInput&) = delete;
    static bool IsFree() { return ::fcntl(STDIN_FILENO, F_GETFD) == -1; }

private:
    int m_kept = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
};

std::ptrdiff_t CountOf(const FailingCalls& calls, const std::string& name) {
    return std::count(calls.Calls().begin(), calls.Calls().end(), name);
}

TEST_F(SystemFilesTest, ADescriptorIsClosedOnceWhateverItsNumber) {
    const Text path = Put("a.kdt", "text");
    const NoStandardInput none;
    for (const int before : {0, EIO}) {
        Descriptor file(posix::Open(path, O_RDONLY));
        ASSERT_EQ(file.Get(), STDIN_FILENO);
        EXPECT_TRUE(file.IsOpen());
        errno = before;
        EXPECT_EQ(file.Close(), 0);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_TRUE(NoStandardInput::IsFree());
        EXPECT_EQ(file.Close(), 0);
    }
}

TEST_F(SystemFilesTest, AClosingThatASignalCutsOffHasClosedAllTheSame) {
    Descriptor file(posix::Open(Put("a.kdt", "text"), O_RDONLY));
    Descriptor other(posix::Open(At("a.kdt"), O_RDONLY));
    FailingCalls calls;
    calls.FailEach("close", EINTR);
    EXPECT_EQ(file.Close(), 0);
    calls.FailEach("close", EIO);
    EXPECT_EQ(other.Close(), EIO);
    EXPECT_FALSE(other.IsOpen());
}

TEST_F(SystemFilesTest, FilesWorkWhereStandardInputIsClosed) {
    const Text source = Put("a.kdt", "text");
    const Text target = Put("b.kdt", "old");
    std::filesystem::create_hard_link(target, At("second name"));
    const Text archive = MakeFolderAt("archive");
    const NoStandardInput none;
    errno = EINTR;
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(files.Read(source), "text"); }), 0);
    EXPECT_TRUE(NoStandardInput::IsFree());
    EXPECT_EQ(ErrorOf([&] { files.CopyAllForArchive({source}, archive); }), 0);
    EXPECT_EQ(ErrorOf([&] { files.Settle(); }), 0);
    EXPECT_EQ(Get(archive + "/a.kdt"), "text");
    {
        const Descriptor open(posix::Open(source, O_RDONLY));
        ASSERT_EQ(open.Get(), STDIN_FILENO);
        const FailingCalls calls;
        posix::ReplaceWhole("CopyFile", target, "text", posix::FlushName::No, open.Get());
        EXPECT_EQ(calls.Flushed(), (std::vector<std::string>{source, target}));
    }
    EXPECT_TRUE(NoStandardInput::IsFree());
}

TEST_F(SystemFilesTest, WhatIsReadAndListedDoesNotHangOnWhatFailedBefore) {
    Put("a.kdt", "text");
    Put("empty.kdt", "");
    for (const int before : {EINTR, EIO, ENOENT}) {
        SCOPED_TRACE(before);
        const auto works = [&](const auto& action) {
            errno = before;
            EXPECT_EQ(ErrorOf(action), 0);
        };
        works([&] { EXPECT_EQ(files.Read(At("a.kdt")), "text"); });
        works([&] { EXPECT_EQ(files.Read(At("empty.kdt")), ""); });
        works([&] { EXPECT_EQ(files.Read(At("A.KDT")), "text"); });
        works([&] { EXPECT_EQ(files.ReadEnd(At("a.kdt"), 10), "text"); });
        works([&] { EXPECT_EQ(files.FolderEntries(folder).size(), 2U); });
        works([&] { files.ReplaceFile(At("a.kdt"), "text"); });
        errno = before;
        EXPECT_EQ(ErrorOf([&] { (void)files.Read(At("none")); }), errFileNotFound);
    }
}

TEST_F(SystemFilesTest, AFileIsOpenedByItsNameOnceAndNotLookedForWhereItStands) {
    const Text path = Put("a.kdt", "text");
    const FailingCalls calls;
    errno = ENOENT;
    EXPECT_EQ(files.Read(path), "text");
    EXPECT_EQ(CountOf(calls, "open"), 1);
    EXPECT_EQ(CountOf(calls, "reopen"), 1);
    errno = ENOENT;
    EXPECT_TRUE(files.Exists(path));
    files.DeleteFile(path);
    EXPECT_EQ(CountOf(calls, "opendir"), 0);
}

TEST_F(SystemFilesTest, ADiskThatDoesNotAnswerIsNotAskedForAnotherName) {
    Put("A.KDT", "text");
    FailingCalls calls;
    calls.FailEach("lstat", EIO);
    EXPECT_EQ(ErrorOf([&] { files.DeleteFile(At("a.kdt")); }), errDevice);
    calls.FailEach("stat", EIO);
    EXPECT_FALSE(files.Exists(At("A.KDT")));
    EXPECT_EQ(CountOf(calls, "opendir"), 0);
}

// Some machines do not show a program its open files, and what is named once more may be another thing by
// then.
TEST_F(SystemFilesTest, WhatHasTakenTheFilesPlaceIsNeitherWaitedForNorRead) {
    const Text path = Put("a.kdt", "text");
    FailingCalls calls;
    calls.FailEach("reopen", ENOENT);
    calls.Before(4, [&] {  // it is looked at, and not open yet
        ASSERT_EQ(::unlink(path.c_str()), 0);
        (void)MakeFifo("a.kdt");
    });
    EXPECT_EQ(ErrorOf([&] { (void)files.Read(path); }), errPermissionDenied);
    ASSERT_GE(calls.Calls().size(), 4U);
    EXPECT_EQ(calls.Calls()[2], "reopen");
    EXPECT_EQ(calls.Calls()[3], "open");
}

TEST_F(SystemFilesTest, AStateTellsTheNanosecondInWhichAFileWasWritten) {
    constexpr std::int64_t Second = 1000000000;
    struct stat status {};
    status.st_dev = 1;
    status.st_ino = 2;
    status.st_size = 3;
    for (const std::int64_t seconds : {0, 1, 2, 1700000000}) {
        for (const std::int64_t nanoseconds : {std::int64_t{0}, std::int64_t{1}, Second - 1}) {
            status.st_mtim.tv_sec = seconds;
            status.st_mtim.tv_nsec = nanoseconds;
            EXPECT_EQ(posix::StateOf(status), (FileState{{1, 2}, 3, seconds * Second + nanoseconds}));
        }
    }
}

TEST_F(SystemFilesTest, AWriteTellsHowManyBytesGotThereAndOneThatTakesNoneIsAFullDisk) {
    const Descriptor file(posix::Open(At("a"), O_WRONLY | O_CREAT));
    std::size_t written = 7;  // from whatever was before
    EXPECT_EQ(posix::WriteAll(file.Get(), "text", written), 0);
    EXPECT_EQ(written, 4U);
    EXPECT_EQ(Get(At("a")), "text");
    FailingCalls calls;
    calls.FailEach("write nothing", EIO);
    EXPECT_EQ(posix::WriteAll(file.Get(), "more", written), ENOSPC);
    EXPECT_EQ(written, 0U);
    EXPECT_EQ(posix::WriteAll(file.Get(), "", written), 0);
}

TEST_F(SystemFilesTest, TheFolderThatHoldsAPathIsFlushed) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    const Scope back([&before] { std::filesystem::current_path(before); });
    MakeFolderAt("f");
    for (const auto& [path, flushed] :
         {std::pair{At("a.kdt"), folder}, std::pair{Text("a.kdt"), folder},
          std::pair{Text("/name"), Text("/")}, std::pair{Text("f/a.kdt"), At("f")}}) {
        SCOPED_TRACE(path);
        const FailingCalls calls;
        EXPECT_EQ(posix::FlushFolderOf(path), 0);
        EXPECT_EQ(calls.Flushed(), std::vector<std::string>{flushed});
    }
}

TEST_F(SystemFilesTest, ANameOnAnotherDriveIsNotTheOpenFileThoughItHasItsNumberThere) {
    // Roots of drives, which mostly have the same number.
    const Descriptor open(posix::Open("/proc", O_RDONLY | O_DIRECTORY));
    struct stat status {};
    EXPECT_TRUE(posix::IsStillThere(open.Get(), "/proc", status));
    EXPECT_TRUE(S_ISDIR(status.st_mode));
    for (const char* const other : {"/sys", "/dev/shm", "/dev/pts", "/dev", "/nowhere"}) {
        EXPECT_FALSE(posix::IsStillThere(open.Get(), other, status)) << other;
    }
}

TEST_F(SystemFilesTest, AFileThatIsMadeOrOpenedTellsWhichAndWhetherItWasMade) {
    for (const bool isNew : {true, false}) {
        struct stat status {};
        bool isMade = !isNew;
        const Descriptor file = posix::CreateOrOpen("Open", At("a"), O_WRONLY, 0600, status, isMade);
        EXPECT_EQ(isMade, isNew);
        EXPECT_TRUE(file.IsOpen());
        EXPECT_TRUE(S_ISREG(status.st_mode));
        EXPECT_EQ(status.st_ino, Status(At("a")).st_ino);
    }
    struct stat status {};
    bool isMade = false;
    FailingCalls calls;
    calls.FailEach("fstat", EIO);
    EXPECT_EQ(ErrorOf([&] { (void)posix::CreateOrOpen("Open", At("b"), O_WRONLY, 0600, status, isMade); }),
              errDevice);
}

TEST_F(SystemFilesTest, OnlyAFileThatIsTakenAwayIsOpenedAgainAndNotForEver) {
    Put("readonly", "text", 0444);
    Put("a", "text");
    struct stat status {};
    bool isMade = false;
    const auto open = [&](const char* name) {
        return ErrorOf([&] { (void)posix::CreateOrOpen("Open", At(name), O_WRONLY, 0600, status, isMade); });
    };
    {
        const FailingCalls calls;
        EXPECT_EQ(open("readonly"), errPermissionDenied);
        EXPECT_EQ(CountOf(calls, "open"), 2) << "to make it, and to look at it";
    }
    FailingCalls calls;
    calls.FailEach("open", EIO);
    EXPECT_EQ(open("none"), errDevice);
    EXPECT_EQ(CountOf(calls, "open"), 1);
    calls.FailEach("fstat", ENOENT);
    EXPECT_EQ(open("a"), errFileNotFound) << "again and again";
}

}  // namespace
}  // namespace kd
