#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

constexpr const char* AccessListName = "system.posix_acl_access";
constexpr const char* ListOfNewFiles = "system.posix_acl_default";

/// A list of access rights: those of its owner, of user 1234, of its group and of all others, and the mask.
std::string AccessList(std::uint16_t owner, std::uint16_t named, std::uint16_t group, std::uint16_t mask,
                       std::uint16_t others) {
    struct Entry {
        std::uint16_t tag;
        std::uint16_t rights;
        std::uint32_t id;
    };
    constexpr std::uint32_t None = 0xFFFFFFFFU;
    const std::array<Entry, 5> entries{{{0x01, owner, None},
                                        {0x02, named, 1234},
                                        {0x04, group, None},
                                        {0x10, mask, None},
                                        {0x20, others, None}}};
    std::string list(4 + sizeof entries, '\0');
    const std::uint32_t version = 2;
    std::memcpy(list.data(), &version, 4);
    std::memcpy(list.data() + 4, entries.data(), sizeof entries);
    return list;
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

// What the mode says of the group is the most that the list gives anybody then.
TEST_F(SystemFilesTest, AnArchiveCopyOfAFileWhoseListCannotBeAskedGivesItsGroupNoMoreThanOthers) {
    const Text source = Put("a.kdt", "limits", 0664);
    FailingCalls calls;
    calls.FailEach("fgetxattr", EIO);
    files.CopyForArchive(source, At("copy"));
    EXPECT_EQ(Mode(At("copy")), 0644U);
    calls.FailEach("fgetxattr", ENOTSUP);
    files.CopyForArchive(source, At("without"));
    EXPECT_EQ(Mode(At("without")), 0664U);
}

}  // namespace
}  // namespace kd
