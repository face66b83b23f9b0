#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

TEST_F(SystemFilesTest, ReadTakesFilesThatTellNoSize) {
    EXPECT_FALSE(files.Read("/proc/self/status").empty());
}

TEST_F(SystemFilesTest, ReadIntoABufferReplacesWhatWasInIt) {
    std::string bytes = "something longer than the file";
    const std::size_t capacity = bytes.capacity();
    files.Read(Put("a.kdt", "short"), bytes);
    EXPECT_EQ(bytes, "short");
    EXPECT_EQ(bytes.capacity(), capacity);
}

TEST_F(SystemFilesTest, AFileInAFolderThatMayNotBeListedIsNotTakenForAMissingOne) {
    MakeFolderAt("closed");
    Put("closed/PLANT.KDT", "text", 0644);
    ASSERT_EQ(::chmod(At("closed").c_str(), 0333), 0);
    const OrdinaryUser user;
    EXPECT_EQ(files.Read(At("closed/PLANT.KDT")), "text");
    EXPECT_EQ(ErrorOf([&] { (void)files.Read(At("closed/plant.kdt")); }), errPermissionDenied);
}

TEST_F(SystemFilesTest, ReadFollowsALink) {
    Put("a.kdt", "text");
    EXPECT_EQ(files.Read(MakeLink("b.kdt", "a.kdt")), "text");
}

TEST_F(SystemFilesTest, ReadOfADeviceALinkAndANameTooLongIsToldWithNumberAndPath) {
    MakeLink("loop", "loop");
    MakeLink("dangling", "nowhere");
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"device", "/dev/null", errPermissionDenied},
                          {"endless device", "/dev/zero", errPermissionDenied},
                          {"link to itself", At("loop"), errPermissionDenied},
                          {"link to nothing", At("dangling"), errFileNotFound},
                          {"name too long", At(Text(300, 'a')), errDevice}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        try {
            (void)files.Read(c.path);
            ADD_FAILURE() << "nothing raised";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), c.number);
            EXPECT_EQ(error.Source(), "SystemFiles.Read");
            EXPECT_EQ(error.Path(), c.path);
        }
    }
}

TEST_F(SystemFilesTest, ReadOfASocketIsRefused) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(fd, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(At("s").size(), sizeof address.sun_path);
    std::strncpy(address.sun_path, At("s").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(ErrorOf([&] { (void)files.Read(At("s")); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForAppend(At("s")); }), errPermissionDenied);
    (void)::close(fd);
}

TEST_F(SystemFilesTest, ReadWithoutRightsIsRefused) {
    const Text path = Put("a.kdt", "text", 0000);
    const OrdinaryUser user;
    EXPECT_EQ(ErrorOf([&] { (void)files.Read(path); }), errPermissionDenied);
}

TEST_F(SystemFilesTest, ALinkIsWhatItLeadsTo) {
    Put("a.kdt", "");
    MakeLink("link", "a.kdt");
    MakeLink("dangling", "nowhere");
    MakeLink("tofolder", "folder");
    MakeFolderAt("folder");
    EXPECT_TRUE(files.Exists(At("link")));
    EXPECT_FALSE(files.Exists(At("dangling")));
    EXPECT_TRUE(files.IsRegularFile(At("link")));
    EXPECT_FALSE(files.IsRegularFile(At("tofolder")));
    EXPECT_FALSE(files.IsRegularFile("/dev/null"));
}

TEST_F(SystemFilesTest, ALetterOutsideAsciiWhosePlainCapitalStandsInTheNameIsTheSame) {
    SystemFiles turkish(CodePage::Of(1254));
    Put("ISI.KDT", "plain");
    EXPECT_EQ(turkish.Read(At("ısı.kdt")), "plain");
    EXPECT_FALSE(files.Exists(At("ısı.kdt")));
    turkish.DeleteFile(At("ısı.kdt"));
    Put("akım.kdt", "dotless");
    EXPECT_EQ(turkish.Read(At("AKIM.KDT")), "dotless");
    EXPECT_FALSE(files.Exists(At("AKIM.KDT")));
}

TEST_F(SystemFilesTest, TheExactNameGoesBeforeOneInAnotherCase) {
    Put("PLANT.kdt", "upper");
    Put("plant.kdt", "lower");
    EXPECT_EQ(files.Read(At("plant.kdt")), "lower");
    EXPECT_EQ(files.Read(At("PLANT.kdt")), "upper");
    ASSERT_EQ(::unlink(At("plant.kdt").c_str()), 0);
    EXPECT_EQ(ErrorOf([&] { (void)files.Read(MakeLink("plant.kdt", "nowhere")); }), errFileNotFound)
        << "also where it leads to nothing";
}

TEST_F(SystemFilesTest, OfSeveralNamesInAnotherCaseTheFirstInOrderIsMeant) {
    // A folder lists its names in an order of its own.
    for (const char letter : {'p', 'q', 'r', 's', 't', 'u', 'v', 'w'}) {
        const Text small(1, letter);
        const Text capital(1, static_cast<char>(letter - 'a' + 'A'));
        Put(small + "lant.KDT", "lower");
        Put(capital + "LANT.kdt", "upper");
        Put(capital + "lant.kdt", "mixed");
        EXPECT_EQ(files.Read(At(small + "lant.kdt")), "upper");
    }
}

TEST_F(SystemFilesTest, NamesThatAreNoTextDoNotDisturbTheSearch) {
    Put("\xFF\xC3.kdt", "bytes");
    Put("PLANT.KDT", "text");
    EXPECT_EQ(files.Read(At("plant.kdt")), "text");
}

TEST_F(SystemFilesTest, TheDelimiterIsTheSlash) {
    EXPECT_EQ(files.Delimiter(), '/');
}

// Opening alone sets some devices going, and lets a writer at a FIFO believe in a reader.
TEST_F(SystemFilesTest, WhatIsNoFileIsNotEvenOpened) {
    const Text fifo = MakeFifo("fifo");
    const int watch = ::inotify_init1(IN_NONBLOCK);
    ASSERT_GE(::inotify_add_watch(watch, fifo.c_str(), IN_OPEN), 0);
    EXPECT_EQ(ErrorOf([&] { (void)files.Read(fifo); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(fifo); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForAppend(fifo); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(fifo, "x"); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files.CopyForArchive(fifo, At("copy")); }), errPermissionDenied);
    std::array<char, 4096> events{};
    EXPECT_EQ(::read(watch, events.data(), events.size()), -1) << "it was opened";
    EXPECT_EQ(errno, EAGAIN);
    (void)::close(watch);
}

TEST_F(SystemFilesTest, NothingIsLeftOpenAfterSuccessAndFailure) {
    const auto openNow = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const Text linked = Put("linked", "old");
    std::filesystem::create_hard_link(linked, At("other"));
    const Text fifo = MakeFifo("fifo");
    const auto before = openNow();
    (void)ErrorOf([&] { files.ReplaceFile(linked, "in place"); });
    (void)ErrorOf([&] { files.ReplaceFile(At("new"), "beside"); });
    (void)ErrorOf([&] { files.CopyFile(At("none"), linked); });
    (void)ErrorOf([&] { (void)files.Read(fifo); });
    (void)ErrorOf([&] { (void)files.Read(At("LINKED")); });
    (void)ErrorOf([&] { (void)files.FolderEntries(folder); });
    (void)ErrorOf([&] { (void)files.FolderEntries(linked); });
    (void)ErrorOf([&] { files.CopyForArchive(linked, At("new")); });
    (void)ErrorOf([&] { files.OpenForOutput(At("never closed"))->Write("x"); });
    files.MakeKeptFolder(At("kept/filled"));
    files.RemoveFolder(At("kept"));
    files.Settle();
    EXPECT_EQ(openNow(), before);
}

TEST_F(SystemFilesTest, ABackslashIsALetterOfANameToTheSystem) {
    const Text path = Put("a\\b.kdt", "text");
    EXPECT_EQ(files.Read(path), "text");
    EXPECT_EQ(files.Read(At("A\\B.KDT")), "text");
    files.DeleteFile(path);
    EXPECT_EQ(Names(), std::set<Text>{});
}

}  // namespace
}  // namespace kd
