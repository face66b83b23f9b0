#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "base/ApplicationNames.h"
#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

TEST_F(SystemFilesTest, CopyMakesAFileThatIsMissing) {
    const mode_t mask = ::umask(022);
    files.CopyFile(Put("a.temp", "new", 0600), At("a.kdt"));
    (void)::umask(mask);
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
    const Text path = Put("a.kdt", "old", 0640);
    ASSERT_EQ(::chown(path.c_str(), 1234, 4321), 0);
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(Status(path).st_uid, 1234U);
    EXPECT_EQ(Status(path).st_gid, 4321U);
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
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(Names(), std::set<Text>{Text(255, 'a')});
}

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

TEST_F(SystemFilesTest, AListOfAccessRightsIsKept) {
    const std::string list = AccessList(6, 4, 0, 4, 0);
    const Text path = Put("a.kdt", "old");
    if (::setxattr(path.c_str(), AccessListName, list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this file system keeps no such lists";
    }
    files.ReplaceFile(path, "new");
    std::string kept(200, '\0');
    const ssize_t size = ::getxattr(path.c_str(), AccessListName, kept.data(), kept.size());
    ASSERT_GT(size, 0);
    EXPECT_EQ(kept.substr(0, static_cast<std::size_t>(size)), list);
    EXPECT_EQ(Mode(path), 0640U);
}

std::string ListOf(const Text& path) {
    std::string list(200, '\0');
    const ssize_t size = ::getxattr(path.c_str(), AccessListName, list.data(), list.size());
    list.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return list;
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
    std::string kept(200, '\0');
    EXPECT_EQ(::getxattr(At("a.temp").c_str(), AccessListName, kept.data(), kept.size()), -1);
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
