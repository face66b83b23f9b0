#include <algorithm>
#include <cerrno>
#include <functional>

#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

std::vector<std::string> WritesOf(const FailingCalls& calls) {
    std::vector<std::string> order;
    for (const std::string& call : calls.Calls()) {
        if (call == "write" || call == "fsync" || call == "rename" || call == "ftruncate") {
            order.push_back(call);
        }
    }
    return order;
}

TEST_F(SystemFilesTest, AMovePutsTheFlushedSourceItselfInPlace) {
    const Text target = Put("a.kdt", "old", 0640);
    const Text source = Put("a.temp", "new", 0600);
    const auto inode = Status(source).st_ino;
    FailingCalls calls;
    files.MoveOver(source, target);
    EXPECT_EQ(WritesOf(calls), (std::vector<std::string>{"fsync", "rename"}));
    EXPECT_EQ(Status(target).st_ino, inode);
    EXPECT_EQ(Get(target), "new");
    EXPECT_EQ(Mode(target), 0640U);
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

#ifdef __linux__
// Some servers let nobody take the place of a file that is open.
TEST_F(SystemFilesTest, AMoveHasClosedItsTargetBeforeItTakesItsPlace) {
    const Text target = Put("a.kdt", "old");
    const auto move = [&] { files.MoveOver(Put("a.temp", "new"), target); };
    move();  // which opens the folder for its flush
    int renaming = 0;
    {
        const FailingCalls calls;
        move();
        const auto at = std::find(calls.Calls().begin(), calls.Calls().end(), "rename");
        ASSERT_NE(at, calls.Calls().end());
        renaming = static_cast<int>(at - calls.Calls().begin()) + 1;
    }
    FailingCalls calls;
    bool hasLooked = false;
    calls.Before(renaming, [&] {
        hasLooked = true;
        for (const auto& open : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code ignored;
            EXPECT_NE(std::filesystem::read_symlink(open, ignored).string(), target);
        }
    });
    move();
    EXPECT_TRUE(hasLooked);
}
#endif

// The folders of one drive may still be parts of different ones, and a folder may forbid it.
TEST_F(SystemFilesTest, ASourceThatCannotTakeTheTargetsPlaceIsCopied) {
    const Text target = Put("a.kdt", "old");
    files.MoveOver(Put("a.temp", "first"), target);  // which opens the folder for its flush
    int renaming = 0;
    {
        const Text source = Put("a.temp", "second");
        const FailingCalls calls;
        files.MoveOver(source, target);
        const auto at = std::find(calls.Calls().begin(), calls.Calls().end(), "rename");
        ASSERT_NE(at, calls.Calls().end());
        renaming = static_cast<int>(at - calls.Calls().begin()) + 1;
    }
    for (const int code : {EXDEV, EACCES, EPERM}) {
        const Text source = Put("a.temp", "new");
        {
            const FailingCalls calls(renaming, code);
            files.MoveOver(source, target);
            EXPECT_GT(std::count(calls.Calls().begin(), calls.Calls().end(), "rename"), 1);
        }
        EXPECT_EQ(Get(target), "new");
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
}

TEST_F(SystemFilesTest, AMoveFlushesASourceThatHasItsTargetsRightsAlready) {
    const Text target = Put("a.kdt", "old", 0640);
    const Text source = Put("a.temp", "new", 0640);
    const FailingCalls calls;
    files.MoveOver(source, target);
    EXPECT_EQ(WritesOf(calls), (std::vector<std::string>{"fsync", "rename"}));
}

TEST_F(SystemFilesTest, AMoveOfALinkMovesWhatItLeadsTo) {
    const Text target = Put("a.kdt", "old");
    Put("text", "new");
    files.MoveOver(MakeLink("a.temp", "text"), target);
    EXPECT_FALSE(std::filesystem::is_symlink(target));
    EXPECT_EQ(Get(target), "new");
}

TEST_F(SystemFilesTest, AMoveMakesATargetThatIsMissing) {
    const mode_t mask = ::umask(022);
    files.MoveOver(Put("a.temp", "new", 0600), At("a.kdt"));
    (void)::umask(mask);
    EXPECT_EQ(Get(At("a.kdt")), "new");
    EXPECT_EQ(Mode(At("a.kdt")), 0644U);
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, AMoveThatFailsAnywhereLeavesTheWholeOldFileOrTheWholeNewOne) {
    const Text target = At("a.kdt");
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        SCOPED_TRACE(failAt);
        Put("a.kdt", "old", 0640);
        const Text source = Put("a.temp", "new content", 0600);
        std::size_t calls = 0;
        const std::int32_t number = ErrorOf([&] {
            const FailingCalls failing(failAt, EIO);
            files.MoveOver(source, target);
            calls = failing.Calls().size();
        });
        done = number == 0 && calls < static_cast<std::size_t>(failAt);
        const std::string left = Get(target);
        EXPECT_TRUE(left == "old" || left == "new content") << left;
        EXPECT_EQ(Mode(target), 0640U);
        // What was not put in place is still there for another try, and nothing else is left behind.
        EXPECT_TRUE(left == "new content" || Get(source) == "new content");
        EXPECT_TRUE(number != 0 || Names() == std::set<Text>{"a.kdt"});
        ASSERT_LT(failAt, 50);
    }
}

// After a flush that failed nobody knows what the file holds: it must not be read once more.
TEST_F(SystemFilesTest, AMoveWhoseFlushFailsOnceIsNotTriedInAnotherWay) {
    const Text target = Put("a.kdt", "old");
    const Text source = Put("a.temp", "new");
    int flushAt = 0;
    {
        const FailingCalls calls;
        files.MoveOver(source, target);
        const auto at = std::find(calls.Calls().begin(), calls.Calls().end(), "fsync");
        ASSERT_NE(at, calls.Calls().end());
        flushAt = static_cast<int>(at - calls.Calls().begin()) + 1;
    }
    for (const int failAt : {flushAt, flushAt + 1}) {  // the closing comes behind it
        files.Settle();
        Put("a.kdt", "old");
        Put("a.temp", "new");
        const FailingCalls failing(failAt, EIO);
        EXPECT_EQ(ErrorOf([&] { files.MoveOver(source, target); }), errDevice);
        EXPECT_EQ(Get(target), "old");
        EXPECT_EQ(Get(source), "new");
    }
}

TEST_F(SystemFilesTest, AMoveThatTheDiskRefusesTellsIt) {
    struct Case {
        const char* call;
        int code;
        std::int32_t number;
    };
    const Case cases[] = {
        {"fsync", ENOSPC, errDiskFull}, {"fsync", EIO, errDevice}, {"rename", EIO, errDevice}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.call);
        Put("a.kdt", "old");
        const Text source = Put("a.temp", "new");
        FailingCalls calls;
        calls.FailEach(c.call, c.code);
        EXPECT_EQ(ErrorOf([&] { files.MoveOver(source, At("a.kdt")); }), c.number);
        EXPECT_EQ(Get(At("a.kdt")), "old");
        EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "a.temp"}));
    }
}

TEST_F(SystemFilesTest, AMoveKeepsTheOtherNamesOfItsTarget) {
    const Text target = Put("a.kdt", "old");
    std::filesystem::create_hard_link(target, At("b.kdt"));
    files.MoveOver(Put("a.temp", "new"), target);
    EXPECT_EQ(Get(At("b.kdt")), "new");
    EXPECT_EQ(Status(target).st_nlink, 2U);
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "b.kdt"}));
}

TEST_F(SystemFilesTest, AMoveLeavesTheOtherNamesOfItsSourceApart) {
    const Text source = Put("a.temp", "new");
    std::filesystem::create_hard_link(source, At("other"));
    files.MoveOver(source, Put("a.kdt", "old"));
    EXPECT_EQ(Get(At("a.kdt")), "new");
    EXPECT_EQ(Status(At("a.kdt")).st_nlink, 1U);
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "other"}));
}

TEST_F(SystemFilesTest, AMoveGoesThroughALinkAndKeepsIt) {
    MakeFolderAt("elsewhere");
    const Text target = Put("elsewhere/a.kdt", "old", 0640);
    const Text link = MakeLink("a.kdt", "elsewhere/a.kdt");
    files.MoveOver(Put("a.temp", "new"), link);
    EXPECT_EQ(Get(target), "new");
    EXPECT_EQ(Mode(target), 0640U);
    EXPECT_EQ(std::filesystem::read_symlink(link), "elsewhere/a.kdt");
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "elsewhere"}));
}

// Who had the source open for writing would keep his hand on the target.
TEST_F(SystemFilesTest, ASourceThatMoreMayWriteThanTheTargetIsCopied) {
    struct Case {
        mode_t source;
        mode_t target;
        bool copied;
    };
    for (const Case& c :
         {Case{0600, 0644, false}, Case{0664, 0664, false}, Case{0666, 0666, false}, Case{0644, 0600, false},
          Case{0644, 0640, false}, Case{0664, 0644, true}, Case{0666, 0664, true}, Case{0622, 0644, true}}) {
        SCOPED_TRACE(std::to_string(c.source) + " " + std::to_string(c.target));
        const Text target = Put("a.kdt", "old", c.target);
        const Text source = Put("a.temp", "new", c.source);
        const FailingCalls calls;
        files.MoveOver(source, target);
        const auto order = WritesOf(calls);
        EXPECT_EQ(std::find(order.begin(), order.end(), "write") != order.end(), c.copied);
        EXPECT_EQ(Get(target), "new");
        EXPECT_EQ(Mode(target), c.target);
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
}

TEST_F(SystemFilesTest, ASourceThatAnotherGroupMayWriteIsCopied) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    const Text target = Put("a.kdt", "old", 0664);
    const Text source = Put("a.temp", "new", 0664);
    ASSERT_EQ(::chown(source.c_str(), ::geteuid(), 4242), 0);
    const FailingCalls calls;
    files.MoveOver(source, target);
    const auto order = WritesOf(calls);
    EXPECT_NE(std::find(order.begin(), order.end(), "write"), order.end());
    EXPECT_EQ(Get(target), "new");
}

TEST_F(SystemFilesTest, ASourceOfSomebodyElseIsCopied) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    const Text target = Put("a.kdt", "old");
    const Text source = Put("a.temp", "new");
    ASSERT_EQ(::chown(source.c_str(), OrdinaryUser::Id, OrdinaryUser::Id), 0);
    const FailingCalls calls;
    files.MoveOver(source, target);
    const auto order = WritesOf(calls);
    EXPECT_NE(std::find(order.begin(), order.end(), "write"), order.end());
    EXPECT_EQ(Get(target), "new");
}

TEST_F(SystemFilesTest, AMoveOntoWhatMayNotBeWrittenIsRefusedAndLeavesTheSource) {
    const Text source = Put("a.temp", "new");
    Put("readonly", "old", 0444);
    MakeFolderAt("folder");
    for (const char* name : {"readonly", "folder"}) {
        EXPECT_EQ(ErrorOf([&] { files.MoveOver(source, At(name)); }), errPermissionDenied) << name;
        EXPECT_EQ(Get(source), "new");
    }
    EXPECT_EQ(Get(At("readonly")), "old");
    EXPECT_EQ(ErrorOf([&] { files.MoveOver(At("none"), Put("a.kdt", "old")); }), errFileNotFound);
    EXPECT_EQ(Get(At("a.kdt")), "old");
}

TEST_F(SystemFilesTest, AnOutputIsNeverAFileOfSomebodyElse) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    for (const mode_t mode : {0666U, 0600U}) {
        const Text path = Put("a.temp", "planted", mode);
        ASSERT_EQ(::chown(path.c_str(), OrdinaryUser::Id, OrdinaryUser::Id), 0);
        std::ofstream planted(path, std::ios::binary | std::ios::app);
        const auto output = files.OpenForOutput(path);
        output->Write("text");
        output->Close();
        planted << "forged" << std::flush;
        EXPECT_EQ(Get(path), "text");
        EXPECT_EQ(Status(path).st_uid, ::geteuid());
    }
}

TEST_F(SystemFilesTest, OnlyAnOutputThatReplacesSomethingIsCut) {
    const FailingCalls calls;
    auto output = files.OpenForOutput(At("new.temp"));
    output->Write("bytes");
    output->Close();
    EXPECT_EQ(WritesOf(calls), std::vector<std::string>{"write"});
    output.reset();  // which keeps it from others as long as it lives
    output = files.OpenForOutput(At("new.temp"));
    output->Write("b");
    output->Close();
    EXPECT_EQ(WritesOf(calls), (std::vector<std::string>{"write", "ftruncate", "write"}));
    EXPECT_EQ(Get(At("new.temp")), "b");
}

#ifdef __linux__
TEST_F(SystemFilesTest, ASettledFileTakesItsPlaceWithNoFlushOfItsOwnAndWithTheTargetsRights) {
    const char* const flush = IsFlushedAtOnce() ? "syncfs" : "fsync";
    const Text target = Put("a.kdt", "old", 0640);
    const auto text = files.OpenForOutput(At("a.temp"));
    text->Write("new");
    const FileState seen = text->TakeRightsOf(target);
    text->CloseForSettling();
    files.Settle();
    FailingCalls calls;
    EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, seen));
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "fsync"), 0);
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "write"), 0);
    files.Settle();
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), flush), 1) << "for its new name";
    EXPECT_EQ(Get(target), "new");
    EXPECT_EQ(Mode(target), 0640U);
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

// Where each user has a group of his own, his mask lets that group write.
TEST_F(SystemFilesTest, ASettledFileTakesItsPlaceWithNoFlushOfItsOwnWhateverTheUsersMaskAndTheTargetsGroup) {
    for (const bool isOfAnotherGroup : {false, true}) {
        if (isOfAnotherGroup && !OrdinaryUser::CanSwitch()) {
            GTEST_SKIP() << "only a privileged user can give files away";
        }
        for (const mode_t mode : {0600U, 0640U, 0644U, 0664U, 0666U}) {
            SCOPED_TRACE(std::to_string(mode) + (isOfAnotherGroup ? " of another group" : ""));
            const Text target = Put("a.kdt", "old", mode);
            const gid_t group = isOfAnotherGroup ? OrdinaryUser::Id : ::getegid();
            ASSERT_EQ(::chown(target.c_str(), ::geteuid(), group), 0);
            const mode_t mask = ::umask(002);
            const auto text = files.OpenForOutput(At("a.temp"));
            (void)::umask(mask);
            text->Write("new");
            const FileState seen = text->TakeRightsOf(target);
            text->CloseForSettling();
            files.Settle();
            const FailingCalls calls;
            EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, seen));
            EXPECT_EQ(WritesOf(calls), std::vector<std::string>{"rename"});
            EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "fchmod"), 0)
                << "it has the rights since before it was settled";
            EXPECT_EQ(Get(target), "new");
            EXPECT_EQ(Mode(target), mode);
            EXPECT_EQ(Status(target).st_gid, group);
        }
    }
}

TEST_F(SystemFilesTest, ASettledFileWhoseTargetHasGotOtherRightsSinceTakesThemAndIsFlushed) {
    const Text target = Put("a.kdt", "old", 0640);
    const auto text = files.OpenForOutput(At("a.temp"));
    text->Write("new");
    const FileState seen = text->TakeRightsOf(target);
    text->CloseForSettling();
    files.Settle();
    ASSERT_EQ(::chmod(target.c_str(), 0660), 0);
    FailingCalls calls;
    EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, seen));
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "fsync"), 1);
    EXPECT_EQ(Get(target), "new");
    EXPECT_EQ(Mode(target), 0660U);
}

// Where its name cannot be kept for the flush, a text stays where it is.
TEST_F(SystemFilesTest, ASettledTextWhoseNewNameCannotBeNotedIsNotWrittenOverItsTarget) {
    const Text target = At("a.kdt");
    int refused = 0;
    for (int failAt = 1; failAt < 30; ++failAt) {
        Put("a.kdt", "old");
        Put("a.temp", "new", 0600);
        std::filesystem::remove(At("second name"));
        std::filesystem::create_hard_link(target, At("second name"));
        const FileState seen = posix::StateOf(Status(target));
        try {
            FailingCalls calls(failAt, EIO);
            calls.FailEach("fstatfs", EIO);  // the name is then flushed by itself
            (void)files.MoveSettled(At("a.temp"), target, seen);
        } catch (const cError& error) {
            if (error.Source() == "SystemFiles.Settle") {
                ++refused;
                EXPECT_EQ(Get(target), "old");
                EXPECT_EQ(Get(At("a.temp")), "new");
            }
        }
        (void)ErrorOf([&] { files.Settle(); });
    }
    EXPECT_GE(refused, 1);
}

TEST_F(SystemFilesTest, ASettledFileOfAnotherOwnerOrGroupOrWithAnotherNameTakesNoPlaceAsItIs) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    struct Case {
        const char* label;
        std::function<void(const Text& source)> change;
    };
    const Case cases[] = {
        {"owner", [](const Text& source) { ASSERT_EQ(::chown(source.c_str(), OrdinaryUser::Id, 0), 0); }},
        {"group", [](const Text& source) { ASSERT_EQ(::chown(source.c_str(), 0, OrdinaryUser::Id), 0); }},
        {"name", [&](const Text& source) { std::filesystem::create_hard_link(source, At("other")); }}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        const Text target = Put("a.kdt", "old", 0600);
        ASSERT_EQ(::chown(target.c_str(), 0, 0), 0);
        const Text source = Put("a.temp", "new", 0600);
        ASSERT_EQ(::chown(source.c_str(), 0, 0), 0);
        c.change(source);
        EXPECT_TRUE(files.MoveSettled(source, target, posix::StateOf(Status(target))));
        EXPECT_EQ(Get(target), "new");
        EXPECT_EQ(Status(target).st_uid, 0U);
        EXPECT_EQ(Status(target).st_gid, 0U);
        EXPECT_EQ(Status(target).st_nlink, 1U);
    }
}

TEST_F(SystemFilesTest, ASettledFileIsNotPutInThePlaceOfALinkOrOfAFileWithSeveralNames) {
    const Text file = Put("file", "old");
    for (const bool hard : {false, true}) {
        const Text target = At(hard ? "hard" : "soft");
        if (hard) {
            std::filesystem::create_hard_link(file, target);
        } else {
            (void)MakeLink("soft", "file");
        }
        const auto text = files.OpenForOutput(At("a.temp"));
        text->Write(hard ? "by its other name" : "through the link");
        const FileState seen = text->TakeRightsOf(target);
        text->CloseForSettling();
        files.Settle();
        FailingCalls calls;
        EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, seen));
        EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "fsync"), hard ? 1 : 2)
            << "of the file itself, and of the name of what a link leads to";
        EXPECT_EQ(Get(file), hard ? "by its other name" : "through the link");
        EXPECT_EQ(std::filesystem::is_symlink(target), !hard);
        EXPECT_FALSE(std::filesystem::exists(At("a.temp")));
    }
}
#endif

}  // namespace
}  // namespace kd
