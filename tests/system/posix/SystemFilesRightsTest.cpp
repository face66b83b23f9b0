#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

constexpr const char* AccessListName = "system.posix_acl_access";
constexpr const char* ListOfNewFiles = "system.posix_acl_default";

struct Entry {
    std::uint16_t tag;
    std::uint16_t rights;
    std::uint32_t id;
};

std::string ListWith(const std::vector<Entry>& entries) {
    std::string list(4 + entries.size() * sizeof(Entry), '\0');
    const std::uint32_t version = 2;
    std::memcpy(list.data(), &version, 4);
    std::memcpy(list.data() + 4, entries.data(), entries.size() * sizeof(Entry));
    return list;
}

constexpr std::uint32_t None = 0xFFFFFFFFU;

/// A list of access rights: those of its owner, of user 1234, of its group and of all others, and the mask.
std::string AccessList(std::uint16_t owner, std::uint16_t named, std::uint16_t group, std::uint16_t mask,
                       std::uint16_t others) {
    return ListWith({{0x01, owner, None},
                     {0x02, named, 1234},
                     {0x04, group, None},
                     {0x10, mask, None},
                     {0x20, others, None}});
}

/// Those of the owner, of the group and of all others alone.
std::string ShortAccessList(std::uint16_t owner, std::uint16_t group, std::uint16_t others) {
    return ListWith({{0x01, owner, None}, {0x04, group, None}, {0x20, others, None}});
}

std::string ListOf(const Text& path) {
    std::string list(200, '\0');
    const ssize_t size = ::getxattr(path.c_str(), AccessListName, list.data(), list.size());
    list.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return list;
}

TEST_F(SystemFilesTest, AListOfAccessRightsIsKept) {
    const std::string list = AccessList(6, 4, 0, 4, 0);
    const Text path = Put("a.kdt", "old");
    if (::setxattr(path.c_str(), AccessListName, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    files.ReplaceFile(path, "new");
    EXPECT_EQ(ListOf(path), list);
    EXPECT_EQ(Mode(path), 0640U);
}

TEST_F(SystemFilesTest, AListOfAccessRightsIsKeptWhateverTheFolderGivesNewFiles) {
    const Text path = Put("a.kdt", "old");
    const std::string list = AccessList(6, 4, 0, 4, 0);
    const std::string ofTheFolder = AccessList(6, 6, 6, 6, 6);
    if (::setxattr(path.c_str(), AccessListName, list.data(), list.size(), 0) != 0 ||
        ::setxattr(folder.c_str(), ListOfNewFiles, ofTheFolder.data(), ofTheFolder.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    files.ReplaceFile(path, "new");
    EXPECT_EQ(ListOf(path), list);
}

// Who is on it must see that the text is kept, and take it over when it was left behind.
TEST_F(SystemFilesTest, OutputForAFileWithAListOfAccessRightsLetsInThoseOnTheList) {
    const std::string list = AccessList(6, 7, 4, 7, 5);
    const Text path = Put("a.kdt", "old");
    if (::setxattr(path.c_str(), AccessListName, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    const mode_t mask = ::umask(022);
    const auto output = files.OpenForOutput(At("a.temp"));
    (void)output->TakeRightsOf(MakeLink("link", "a.kdt"));
    (void)::umask(mask);
    EXPECT_EQ(ListOf(At("a.temp")), AccessList(6, 7, 4, 6, 4)) << "and nobody may run it";
    EXPECT_EQ(Mode(At("a.temp")), 0664U);
}

// Those on the list share the folder; what it says of the group is said of another one than the text's.
TEST_F(SystemFilesTest, OutputForAFileOfSomebodyElseWithAListOfAccessRightsLetsInNobodyBeyondTheList) {
    if (!OrdinaryUser::CanSwitch()) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    struct Case {
        std::string target;
        std::string text;
    };
    for (const Case& c : {Case{AccessList(6, 6, 4, 6, 4), AccessList(6, 6, 0, 6, 4)},
                          Case{AccessList(6, 6, 5, 6, 4), AccessList(6, 6, 0, 6, 4)},
                          Case{AccessList(6, 6, 0, 6, 6), AccessList(6, 6, 0, 6, 0)},
                          Case{AccessList(6, 6, 6, 4, 6), AccessList(6, 6, 0, 4, 4)}}) {
        const Text path = Put("a.kdt", "of somebody else");
        ASSERT_EQ(::chmod(folder.c_str(), 0777), 0);
        ASSERT_EQ(::chown(path.c_str(), 0, 4321), 0);
        if (::setxattr(path.c_str(), AccessListName, c.target.data(), c.target.size(), 0) != 0) {
            GTEST_SKIP() << "this file system keeps no such lists";
        }
        const OrdinaryUser user;
        const auto output = files.OpenForOutput(At("a.temp"));
        EXPECT_TRUE(output->TakeRightsOf(path).file.IsKnown());
        EXPECT_EQ(ListOf(At("a.temp")), c.text);
        ASSERT_EQ(::unlink(At("a.temp").c_str()), 0);
    }
}

TEST_F(SystemFilesTest, AFileThatIsNewGetsWhatItsFolderGivesNewFilesWhateverTheUsersMask) {
    const std::string list = AccessList(7, 6, 7, 7, 5);
    if (::setxattr(folder.c_str(), ListOfNewFiles, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    const mode_t mask = ::umask(077);
    const auto output = files.OpenForOutput(At("a.temp"));
    EXPECT_EQ(Mode(At("a.temp")), 0600U);
    (void)output->TakeRightsOf(At("none.kdt"));
    files.ReplaceFile(At("new"), "text");
    (void)::umask(mask);
    for (const char* const name : {"a.temp", "new"}) {
        EXPECT_EQ(ListOf(At(name)), AccessList(6, 6, 7, 6, 4)) << name;
    }
}

// The shortest of lists, which says no more than a mode.
TEST_F(SystemFilesTest, AFileThatIsNewIsNotForRunningWhereItsFoldersListHasNoMask) {
    const std::string list = ShortAccessList(7, 7, 5);
    if (::setxattr(folder.c_str(), ListOfNewFiles, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    files.ReplaceFile(At("new"), "text");
    EXPECT_EQ(Mode(At("new")), 0664U);
    EXPECT_EQ(ListOf(At("new")), "");
}

TEST_F(SystemFilesTest, ASettledFileWhoseTargetHasGotAListOfAccessRightsSinceTakesIt) {
    const Text target = Put("a.kdt", "old", 0640);
    const auto text = files.OpenForOutput(At("a.temp"));
    text->Write("new");
    const FileState seen = text->TakeRightsOf(target);
    text->CloseForSettling();
    files.Settle();
    const std::string list = AccessList(6, 4, 0, 4, 0);
    if (::setxattr(target.c_str(), AccessListName, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    ASSERT_EQ(Mode(target), 0640U) << "by its mode it is the same";
    EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, seen));
    EXPECT_EQ(Get(target), "new");
    EXPECT_EQ(ListOf(target), list);
}

// Whom the list keeps out would count among the others.
TEST_F(SystemFilesTest, AnArchiveCopyOfAFileWithAListLetsInNobodyElse) {
    const Text source = Put("a.kdt", "limits");
    const std::string list = AccessList(6, 6, 0, 6, 4);
    if (::setxattr(source.c_str(), AccessListName, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    ASSERT_EQ(Mode(source), 0664U);
    files.CopyForArchive(source, At("copy"));
    EXPECT_EQ(Mode(At("copy")), 0600U);
    EXPECT_EQ(ListOf(At("copy")), "");
}

TEST_F(SystemFilesTest, OutputForALinkWhoseTargetDoesNotTellItsListOrThatKeepsOneOfItsFolderStaysTheUsers) {
    (void)Put("a.kdt", "old", 0664);
    const Text link = MakeLink("link", "a.kdt");
    for (const char* const call : {"getxattr", "fremovexattr"}) {
        const auto output = files.OpenForOutput(At("a.temp"));
        FailingCalls calls;
        calls.FailEach(call, EIO);
        EXPECT_TRUE(output->TakeRightsOf(link).file.IsKnown());
        EXPECT_EQ(Mode(At("a.temp")), 0600U) << call;
    }
}

TEST_F(SystemFilesTest, OutputForALinkGetsItsTargetsModeWhereADriveGivesNoFileAway) {
    (void)Put("a.kdt", "old", 0640);
    const auto output = files.OpenForOutput(At("a.temp"));
    FailingCalls calls;
    calls.FailEach("fchown", EPERM);
    EXPECT_TRUE(output->TakeRightsOf(MakeLink("link", "a.kdt")).file.IsKnown());
    EXPECT_EQ(Mode(At("a.temp")), 0640U);
}

TEST_F(SystemFilesTest, AnOutputWhoseListOfAccessRightsCannotBeAskedDoesNotCountAsLikeItsTarget) {
    const Text target = Put("a.kdt", "old", 0640);
    const auto text = files.OpenForOutput(At("a.temp"));
    text->Write("new");
    const FileState seen = text->TakeRightsOf(target);
    text->CloseForSettling();
    files.Settle();
    FailingCalls calls;
    calls.FailEach("fgetxattr", EIO);
    EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, seen));
    EXPECT_EQ(std::count(calls.Calls().begin(), calls.Calls().end(), "write"), 1);
    EXPECT_EQ(Get(target), "new");
    const auto flushes = [&] {
        return std::count_if(calls.Calls().begin(), calls.Calls().end(),
                             [](const auto& call) { return call == "fsync" || call == "syncfs"; });
    };
    const auto before = flushes();
    files.Settle();
    EXPECT_GT(flushes(), before) << "of the name that it has got";
}

TEST_F(SystemFilesTest, OutputThatGetsTheModeOfAFileKeepsNoListOfTheFolder) {
    const Text path = Put("a.kdt", "old", 0660);
    const std::string list = AccessList(6, 6, 6, 6, 0);
    if (::setxattr(folder.c_str(), ListOfNewFiles, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    const mode_t mask = ::umask(002);
    const auto output = files.OpenForOutput(At("a.temp"));
    (void)output->TakeRightsOf(MakeLink("link", "a.kdt"));
    (void)::umask(mask);
    EXPECT_EQ(Mode(At("a.temp")), 0660U);
    EXPECT_EQ(ListOf(At("a.temp")), "");
}

// Archives are kept for years, mostly in a folder that is shared.
TEST_F(SystemFilesTest, AnArchiveCopyLetsInNobodyWhomItsFolderLetsInAndItsSourceDoesNot) {
    const Text source = Put("a.kdt", "limits", 0640);
    const std::string list = AccessList(6, 6, 6, 6, 4);
    if (::setxattr(folder.c_str(), ListOfNewFiles, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    files.CopyForArchive(source, At("copy"));
    EXPECT_EQ(ListOf(At("copy")), "");
    EXPECT_EQ(Mode(At("copy")), 0640U);
    FailingCalls calls;
    calls.FailEach("fremovexattr", EIO);
    files.CopyForArchive(source, At("closed"));
    EXPECT_EQ(Mode(At("closed")), 0600U) << "the list that cannot be taken away lets nobody in";
}

TEST_F(SystemFilesTest, AnArchiveCopyOfAFileWhoseListCannotBeAskedLetsInNobodyElse) {
    const Text source = Put("a.kdt", "limits", 0664);
    FailingCalls calls;
    calls.FailEach("fgetxattr", EIO);
    files.CopyForArchive(source, At("copy"));
    EXPECT_EQ(Mode(At("copy")), 0600U);
    calls.FailEach("fgetxattr", ENOTSUP);
    files.CopyForArchive(source, At("without"));
    EXPECT_EQ(Mode(At("without")), 0664U);
    calls.FailEach("fremovexattr", EIO);
    files.CopyForArchive(source, At("closed"));
    EXPECT_EQ(Mode(At("closed")), 0600U) << "a list that may be there lets nobody in";
}

}  // namespace
}  // namespace kd
