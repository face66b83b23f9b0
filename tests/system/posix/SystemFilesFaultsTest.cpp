#include <algorithm>
#include <cerrno>
#include <iterator>

#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

bool Called(const FailingCalls& calls, const std::string& name) {
    return std::find(calls.Calls().begin(), calls.Calls().end(), name) != calls.Calls().end();
}

/// Those of the calls that write, flush and rename, in order.
std::vector<std::string> Writing(const FailingCalls& calls) {
    std::vector<std::string> order;
    std::copy_if(calls.Calls().begin(), calls.Calls().end(), std::back_inserter(order),
                 [](const auto& call) { return call == "write" || call == "fsync" || call == "rename"; });
    return order;
}

TEST_F(SystemFilesTest, AReplaceThatFailsAnywhereLeavesTheWholeOldFileOrTheWholeNewOne) {
    const Text path = At("a.kdt");
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        SCOPED_TRACE(failAt);
        Put("a.kdt", "old", 0640);
        std::size_t calls = 0;
        const std::int32_t number = ErrorOf([&] {
            const FailingCalls failing(failAt, EIO);
            files.ReplaceFile(path, "new content");
            calls = failing.Calls().size();
        });
        done = number == 0 && calls < static_cast<std::size_t>(failAt);
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
        EXPECT_EQ(Mode(path), 0640U);
        const std::string left = Get(path);
        EXPECT_TRUE(left == "old" || left == "new content") << left;
        if (number == 0) {
            EXPECT_EQ(left, "new content");
        } else {
            EXPECT_EQ(number, errDevice);
        }
        ASSERT_LT(failAt, 50);
    }
}

TEST_F(SystemFilesTest, AReplaceInPlaceThatFailsAnywhereLeavesTheWholeOldFileOrTheWholeNewOne) {
    const Text path = At("a.kdt");
    for (const char* content : {"new content, longer", "n"}) {
        bool done = false;
        for (int failAt = 1; !done; ++failAt) {
            SCOPED_TRACE(Text(content) + " " + std::to_string(failAt));
            Put("a.kdt", "old", 0640);
            std::filesystem::create_hard_link(path, At("b.kdt"));
            std::size_t calls = 0;
            const std::int32_t number = ErrorOf([&] {
                const FailingCalls failing(failAt, EIO);
                files.ReplaceFile(path, content);
                calls = failing.Calls().size();
            });
            done = number == 0 && calls < static_cast<std::size_t>(failAt);
            EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "b.kdt"}));
            const std::string left = Get(path);
            EXPECT_TRUE(left == "old" || left == content) << left;
            EXPECT_EQ(Get(At("b.kdt")), left);
            EXPECT_TRUE(number != 0 || left == content);
            std::filesystem::remove(At("b.kdt"));
            ASSERT_LT(failAt, 50);
        }
    }
}

TEST_F(SystemFilesTest, AReplaceFlushesTheFileBeforeItTakesItsPlaceAndTheFolderAfter) {
    const Text path = Put("a.kdt", "old");
    const FailingCalls calls;
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Writing(calls), (std::vector<std::string>{"write", "fsync", "rename", "fsync"}));
    EXPECT_FALSE(Called(calls, "unlink")) << "what has taken its place has no other name to clean away";
}

TEST_F(SystemFilesTest, AReplaceWhoseFolderCannotBeFlushedTellsIt) {
    const Text path = Put("a.kdt", "old");
    const auto flushAt = [&] {
        const FailingCalls calls;
        files.ReplaceFile(path, "first");
        const auto last = std::find(calls.Calls().rbegin(), calls.Calls().rend(), "fsync");
        return static_cast<int>(calls.Calls().rend() - last);
    }();
    const FailingCalls calls(flushAt, EIO);
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "second"); }), errDevice);
    EXPECT_EQ(calls.Calls().at(static_cast<std::size_t>(flushAt - 1)), "fsync");
}

TEST_F(SystemFilesTest, AReplaceThatTheDiskRefusesIsTriedInNoOtherWay) {
    const Text path = Put("a.kdt", "old");
    {
        FailingCalls calls;
        calls.FailEach("open", EIO);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), errDevice);
        EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "open"), 1);
        calls.FailEach("rename", EIO);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), errDevice);
        calls.FailEach("rename", EACCES);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(At("b.kdt"), "new"); }), errPermissionDenied);
        calls.FailEach("close", EIO);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), errDevice);
    }
    EXPECT_EQ(Get(path), "old");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, AReplaceGoesByWhatFailsAndNotByWhatFailedBefore) {
    const Text path = Put("a.kdt", "old");
    errno = ENAMETOOLONG;
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), 0);
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, ACopyFlushesTheFileAndLeavesTheFolderToWhoCopiesMany) {
    const Text path = Put("a.kdt", "old");
    const Text source = Put("b.kdt", "new");
    const FailingCalls calls;
    files.CopyFile(source, path);
    EXPECT_EQ(Writing(calls), (std::vector<std::string>{"write", "fsync", "rename"}));
}

TEST_F(SystemFilesTest, ACopyOverALinkFlushesTheFolderThatItLeadsTo) {
    MakeFolderAt("elsewhere");
    Put("elsewhere/a.kdt", "old");
    const Text link = MakeLink("a.kdt", At("elsewhere/a.kdt"));
    const Text source = Put("b.kdt", "new");
    const FailingCalls calls;
    files.CopyFile(source, link);
    EXPECT_EQ(Writing(calls), (std::vector<std::string>{"write", "fsync", "rename", "fsync"}));
}

TEST_F(SystemFilesTest, ACopyInPlaceFlushesItsSourceFirst) {
    const Text path = Put("a.kdt", "old");
    std::filesystem::create_hard_link(path, At("second name"));
    const Text source = Put("b.kdt", "new");
    {
        const FailingCalls calls;
        files.CopyFile(source, path);
        EXPECT_EQ(Writing(calls), (std::vector<std::string>{"fsync", "write", "fsync"}));
    }
    EXPECT_EQ(Get(path), "new");
    Put("b.kdt", "newer");
    FailingCalls calls;
    calls.FailEach("fsync", EIO);
    EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, path); }), errDevice);
    EXPECT_FALSE(Called(calls, "write"));
    EXPECT_EQ(Get(path), "new");
}

TEST_F(SystemFilesTest, AReplaceInPlaceMeetsAFullDiskBeforeAByteChanges) {
    const Text path = Put("a.kdt", "old");
    std::filesystem::create_hard_link(path, At("b.kdt"));
    FailingCalls calls;
    calls.FailEach("fallocate", ENOSPC);
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new and longer"); }), errDiskFull);
    EXPECT_FALSE(Called(calls, "write"));
    EXPECT_EQ(Get(path), "old");
    for (const char* const noLonger : {"new", "n"}) {
        files.ReplaceFile(path, noLonger);
        EXPECT_EQ(Get(path), noLonger) << "which needs no room";
    }
}

TEST_F(SystemFilesTest, AFileThatSomethingIsMountedOnIsWrittenInPlace) {
    const Text path = Put("a.kdt", "old");
    const auto before = Status(path);
    for (const int code : {EBUSY, EPERM, EACCES, EROFS, ENAMETOOLONG}) {
        FailingCalls calls;
        calls.FailEach("rename", code);
        files.ReplaceFile(path, "new " + std::to_string(code));
        EXPECT_EQ(std::count(calls.Flushed().begin(), calls.Flushed().end(), folder), 0) << "no name is new";
        EXPECT_EQ(Get(path), "new " + std::to_string(code));
        EXPECT_EQ(Status(path).st_ino, before.st_ino);
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
}

TEST_F(SystemFilesTest, EveryNumberOfTheSystemHasItsNumberOfTheHouse) {
    struct Case {
        const char* label;
        int code;
        std::int32_t number;
    };
    const Case cases[] = {{"no space", ENOSPC, errDiskFull},
                          {"quota", EDQUOT, errDiskFull},
                          {"too large", EFBIG, errDiskFull},
                          {"device", EIO, errDevice},
                          {"no access", EACCES, errPermissionDenied},
                          {"not permitted", EPERM, errPermissionDenied},
                          {"read-only disk", EROFS, errPermissionDenied},
                          {"program in use", ETXTBSY, errPermissionDenied},
                          {"out of descriptors", EMFILE, errDevice}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        Put("a.kdt", "old");
        EXPECT_EQ(ErrorOf([&] {
                      FailingCalls calls;
                      calls.FailEach("write", c.code);
                      files.ReplaceFile(At("a.kdt"), "new");
                  }),
                  c.number);
        EXPECT_EQ(ErrorOf([&] {
                      FailingCalls calls;
                      calls.FailEach("read", c.code);
                      (void)files.Read(At("a.kdt"));
                  }),
                  c.number);
        EXPECT_EQ(Get(At("a.kdt")), "old");
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
}

TEST_F(SystemFilesTest, SignalsAndShortTransfersLoseNothing) {
    const std::string bytes(1000, 'x');
    const Text source = Put("source", bytes + "end");
    const Text linked = Put("linked", "old");
    std::filesystem::create_hard_link(linked, At("other"));
    {
        FailingCalls calls;
        calls.Stutter();
        files.CopyFile(source, At("copy"));
        files.CopyFile(source, linked);
        files.CopyForArchive(source, At("archived"));
        const auto output = files.OpenForOutput(At("output"));
        output->Write(bytes);
        output->Flush();
        output->Close();
    }
    EXPECT_EQ(Get(At("copy")), bytes + "end");
    EXPECT_EQ(Get(linked), bytes + "end");
    EXPECT_EQ(Get(At("archived")), bytes + "end");
    EXPECT_EQ(Get(At("output")), bytes);
}

TEST_F(SystemFilesTest, HalfARecordIsCutOffButNothingThatAnotherProgramHasAddedBehindIt) {
    for (const Text& added : {Text(), Text("another's\r\n")}) {
        const Text path = Put("a.KDL", "earlier\r\n");
        const auto file = files.OpenForAppend(path);
        FailingCalls calls(2, ENOSPC);
        calls.Stutter();
        calls.Before(2, [&] { std::ofstream(path, std::ios::binary | std::ios::app) << added; });
        EXPECT_EQ(ErrorOf([&] { file->Write("a record\r\n"); }), errDiskFull);
        EXPECT_EQ(Get(path), added.empty() ? "earlier\r\n" : "earlier\r\na recor" + added);
    }
}

TEST_F(SystemFilesTest, SeveralArchiveCopiesAreFlushedWhenAllAreWritten) {
    const std::vector<Text> sources{Put("a.kdt", "one"), Put("a.V1", "two")};
    MakeFolderAt("archive");
    std::vector<std::string> order;
    {
        const FailingCalls calls;
        files.CopyAllForArchive(sources, At("archive"));
        files.Settle();
        for (const std::string& call : calls.Calls()) {
            if (call == "write" || call == "fsync" || call == "syncfs") {
                order.push_back(call);
            }
        }
    }
    ASSERT_GE(order.size(), 3U);
    EXPECT_TRUE(order.back() == "syncfs" || order.back() == "fsync") << order.back();
}

TEST_F(SystemFilesTest, SeveralArchiveCopiesTellEveryFailure) {
    const std::vector<Text> sources{Put("a.kdt", "one"), Put("a.V1", "two")};
    for (const char* call : {"write", IsFlushedAtOnce() ? "syncfs" : "fsync"}) {
        SCOPED_TRACE(call);
        MakeFolderAt("archive");
        const std::int32_t number = ErrorOf([&] {
            FailingCalls calls;
            calls.FailEach(call, EIO);
            files.CopyAllForArchive(sources, At("archive"));
            files.Settle();
        });
        EXPECT_EQ(number, errDevice);
        std::filesystem::remove_all(At("archive"));
    }
}

TEST_F(SystemFilesTest, AnArchiveCopyThatFailsAnywhereLeavesNone) {
    const Text source = Put("a.kdt", "content");
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        SCOPED_TRACE(failAt);
        std::size_t calls = 0;
        const std::int32_t number = ErrorOf([&] {
            const FailingCalls failing(failAt, EIO);
            files.CopyForArchive(source, At("copy"));
            calls = failing.Calls().size();
        });
        done = number == 0 && calls < static_cast<std::size_t>(failAt);
        EXPECT_EQ(Names().count("copy"), number == 0 ? 1U : 0U);
        EXPECT_EQ(Get(At("copy")), number == 0 ? "content" : "");
        (void)::unlink(At("copy").c_str());
        ASSERT_LT(failAt, 50);
    }
}

TEST_F(SystemFilesTest, AnOutputTellsEveryFailure) {
    for (const char* call : {"write", "fsync", "close"}) {
        SCOPED_TRACE(call);
        const auto file = files.OpenForOutput(At("a.temp"));
        const std::int32_t number = ErrorOf([&] {
            FailingCalls calls;
            calls.FailEach(call, EIO);
            file->Write("text");
            file->Flush();
            file->Close();
        });
        EXPECT_EQ(number, errDevice);
        EXPECT_EQ(ErrorOf([&] { file->Close(); }), 0);
    }
}

TEST_F(SystemFilesTest, AnOutputThatIsLeftToSettleTellsThatItWasNotClosedWell) {
    for (const bool isFresh : {true, false}) {
        const auto file = isFresh ? files.OpenForOutput(At("a.temp")) : files.OpenForAppend(At("a.KDL"));
        file->Write("text");
        FailingCalls calls;
        calls.FailEach("close", EIO);
        EXPECT_EQ(ErrorOf([&] { file->CloseForSettling(); }), errDevice);
    }
}

TEST_F(SystemFilesTest, ARecordOfWhichNothingGotThereCutsNothingOff) {
    const auto file = files.OpenForAppend(Put("a.KDL", "earlier"));
    FailingCalls calls;
    calls.FailEach("write", ENOSPC);
    EXPECT_EQ(ErrorOf([&] { file->Write("record"); }), errDiskFull);
    EXPECT_FALSE(Called(calls, "ftruncate")) << "another program may be adding";
}

TEST_F(SystemFilesTest, AListingThatBreaksOffIsNotTakenForAWholeOne) {
    Put("a.kdt", "text");
    FailingCalls calls;
    calls.FailEach("readdir", EIO);
    EXPECT_EQ(ErrorOf([&] { (void)files.FolderEntries(folder); }), errDevice);
    EXPECT_EQ(ErrorOf([&] { (void)files.Read(At("A.KDT")); }), errDevice)
        << "the file may be there under a name of another case";
    EXPECT_EQ(ErrorOf([&] { (void)files.Read("/none.kdt"); }), errDevice) << "in the root too";
    EXPECT_EQ(files.Read(At("a.kdt")), "text");
}

TEST_F(SystemFilesTest, AFileThatMayBeThereUnderANameOfAnotherCaseIsNotTakenForAMissingOne) {
    Put("a.kdt", "text");
    const Text other = Put("b.kdt", "other");
    {
        FailingCalls calls;
        calls.FailEach("readdir", EIO);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(At("A.KDT"), "new"); }), errDevice);
        EXPECT_EQ(ErrorOf([&] { files.CopyFile(other, At("A.KDT")); }), errDevice);
        EXPECT_EQ(ErrorOf([&] { files.MoveOver(other, At("A.KDT")); }), errDevice);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForAppend(At("A.KDT")); }), errDevice);
        try {
            files.DeleteFile(At("A.KDT"));
            ADD_FAILURE() << "it has deleted what it could not know";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), errDevice);
            EXPECT_EQ(error.Source(), "SystemFiles.DeleteFile");
        }
    }
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "b.kdt"}));
}

// What was looked at is opened through the list of the program's own open files; not every machine shows
// that.
TEST_F(SystemFilesTest, AFileIsOpenedByItsNameWhereAProgramIsNotShownItsOpenFilesAndOnlyThere) {
    const Text path = Put("a.kdt", "text");
    FailingCalls calls;
    calls.FailEach("reopen", ENOENT);
    EXPECT_EQ(files.Read(path), "text");
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "open"), 2);
    calls.FailEach("reopen", EMFILE);
    EXPECT_EQ(ErrorOf([&] { (void)files.Read(path); }), errDevice);
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "open"), 3) << "looked at once more";
}

TEST_F(SystemFilesTest, ReadEndGivesNoMoreThanItWasAskedForOfAFileThatGrowsMeanwhile) {
    const Text path = Put("a.kdt", "text");
    FailingCalls calls;
    calls.Before("read", [&] { std::ofstream(path, std::ios::binary | std::ios::app) << "more"; });
    EXPECT_EQ(files.ReadEnd(path, 2).size(), 2U);
}

TEST_F(SystemFilesTest, ReadEndTellsEveryFailure) {
    const Text path = Put("a.kdt", "text");
    for (const char* const call : {"read", "lseek", "open", "fstat"}) {
        FailingCalls calls;
        calls.FailEach(call, EIO);
        EXPECT_EQ(ErrorOf([&] { (void)files.ReadEnd(path, 2); }), errDevice) << call;
    }
}

// What counts as no failure of a flush or of room that is asked for ahead.
TEST_F(SystemFilesTest, ADriveThatCannotDoMoreThanWriteServesAllTheSame) {
    const Text path = Put("a.kdt", "old");
    std::filesystem::create_hard_link(path, At("second name"));
    for (const int code : {EOPNOTSUPP, EINVAL, ENOSYS}) {
        FailingCalls calls;
        calls.FailEach("fallocate", code);
        files.ReplaceFile(path, "new and longer " + std::to_string(code));
        EXPECT_EQ(Get(path), "new and longer " + std::to_string(code));
        std::filesystem::resize_file(path, 0);
    }
    for (const int code : {EINVAL, ENOTSUP}) {
        FailingCalls calls;
        calls.FailEach("fsync", code);
        EXPECT_EQ(ErrorOf([&] { files.FlushFolder(folder); }), 0) << code;
    }
}

TEST_F(SystemFilesTest, AFolderThatCannotBeFlushedAndAFileThatCannotBeWrittenOverAreTold) {
    const Text path = Put("a.kdt", "old");
    std::filesystem::create_hard_link(path, At("second name"));
    FailingCalls calls;
    calls.FailEach("lseek", EIO);
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "newest"); }), errDevice);
    calls.FailEach("fsync", EIO);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(folder); }), errDevice);
    EXPECT_EQ(Get(path), "old");
}

TEST_F(SystemFilesTest, WithoutASecondDescriptorNoOutputIsOpenedAndWhatIsToSettleIsFlushedAtOnce) {
    const Text path = At("a.temp");
    const auto log = files.OpenForAppend(Put("a.KDL", ""));
    log->Write("record");
    FailingCalls calls;
    calls.FailEach("fcntl", EMFILE);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errDevice);
    log->CloseForSettling();
    ASSERT_FALSE(calls.Flushed().empty());
    EXPECT_EQ(calls.Flushed().front(), At("a.KDL"));
    const auto again = files.OpenForAppend(At("a.KDL"));
    again->Write(" another");
    again->CloseForSettling();
    EXPECT_EQ(std::count(calls.Flushed().begin(), calls.Flushed().end(), At("a.KDL")), 2)
        << "what was added since is flushed as well";
}

TEST_F(SystemFilesTest, AnOutputThatCannotBeEmptiedIsNotOpened) {
    (void)Put("a.temp", "left", 0600);
    FailingCalls calls;
    calls.FailEach("ftruncate", EIO);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(At("a.temp")); }), errDevice);
    EXPECT_EQ(Get(At("a.temp")), "left");
}

TEST_F(SystemFilesTest, ARecordThatFailsWhereTheFileTellsNoSizeStaysAsItIs) {
    const Text path = Put("a.KDL", "earlier\r\n");
    const auto file = files.OpenForAppend(path);
    EXPECT_EQ(ErrorOf([&] {
                  FailingCalls calls(2, ENOSPC);
                  calls.FailEach("fstat", EIO);
                  calls.Stutter();
                  file->Write("a record\r\n");
              }),
              errDiskFull);
    EXPECT_EQ(Get(path), "earlier\r\na recor");
}

TEST_F(SystemFilesTest, EachNumberOfAMissingOrForbiddenFileHasItsNumberOfTheHouse) {
    EXPECT_EQ(posix::FailureOf("Read", "a.kdt", ENOENT).Number(), errFileNotFound);
    EXPECT_EQ(posix::FailureOf("Read", "", ENOENT).Number(), errFileNotFound);
    EXPECT_EQ(posix::FailureOf("Read", "/a.kdt", ENOENT).Number(), errFileNotFound);
    EXPECT_EQ(posix::FailureOf("Read", At("none/a.kdt"), ENOENT).Number(), errPathNotFound);
    EXPECT_EQ(posix::FailureOf("Read", At("a.kdt"), EISDIR).Number(), errPermissionDenied);
    EXPECT_EQ(posix::FailureOf("Read", At("a.kdt"), ELOOP).Number(), errPermissionDenied);
}

TEST_F(SystemFilesTest, ReadGivesTheDescriptorBackWhenItFails) {
    const Text path = Put("a.kdt", "text");
    const auto open = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    const auto before = open();
    for (int i = 0; i < 3; ++i) {
        FailingCalls calls;
        calls.FailEach("read", EIO);
        EXPECT_EQ(ErrorOf([&] { (void)files.Read(path); }), errDevice);
    }
    EXPECT_EQ(open(), before);
}

}  // namespace
}  // namespace kd
