#ifndef _WIN32

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <sys/wait.h>

#include <cerrno>

#include "base/Scope.h"
#include "faults/RealFolder.h"
#include "system/posix/FailingCalls.h"

namespace kd {
namespace {

namespace fs = std::filesystem;

using Boxes = std::vector<ScriptedToolkit::Box>;

const ScriptedToolkit::Box AllSaved{"4 File(s) have been modified.", BoxIcon::Information, "KDLimitDesk"};

/// An application loaded and changed; the machine's limits come between that and the commit.
class LimitsTest : public testing::Test {
protected:
    LimitsTest() {
        scene.Load();
        scene.EditAll();
    }
    void ExpectOld(std::int32_t view) const {
        EXPECT_EQ(RealFolder::Get(scene.FilePath(view)), CommitScene::OriginalText(view)) << view;
    }
    void ExpectNew(std::int32_t view) const {
        EXPECT_EQ(RealFolder::Get(scene.FilePath(view)), newTexts[static_cast<std::size_t>(view)]) << view;
    }
    bool HasBox(const Text& begin) const {
        return std::any_of(scene.toolkit.boxes.begin(), scene.toolkit.boxes.end(),
                           [&](const auto& box) { return box.text.starts_with(begin); });
    }

    RealFolder folder;
    std::vector<std::string> newTexts = folder.NewTexts();
    CommitScene scene{folder.files, folder.path};
};

TEST_F(LimitsTest, AFullDiskAtAnySizeLeavesEveryFileWholeAndIsTold) {
    const auto longest = static_cast<rlim_t>(
        std::max_element(newTexts.begin(), newTexts.end(), [](const auto& one, const auto& other) {
            return one.size() < other.size();
        })->size());
    for (rlim_t size = 0; size <= longest + 1; size += Torture() ? 1 : 97) {
        SCOPED_TRACE(size);
        folder.PutAll();
        CommitScene limited(folder.files, folder.path);
        limited.Load();
        limited.EditAll();
        {
            rlimit before{};
            ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
            const rlimit small{size, before.rlim_max};
            ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
            const Scope restored([&] { (void)::setrlimit(RLIMIT_FSIZE, &before); });
            limited.Commit();
        }
        FilesCheck check(folder, ".kdt", newTexts);
        check.Targets();
        check.Archives();
        check.Log();
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            EXPECT_TRUE(check.written[static_cast<std::size_t>(view)] || limited.toolkit.boxes.size() > 1);
            EXPECT_TRUE(limited.ChangesMade(view) || check.written[static_cast<std::size_t>(view)]);
        }
        check.NextStart();
    }
}

TEST_F(LimitsTest, AFullFileSystemLeavesEveryFileWholeAndIsTold) {
    std::string pattern = (fs::temp_directory_path() / "kd-full-XXXXXX").string();
    const Text place = ::mkdtemp(pattern.data());
    const Scope gone([&] {
        (void)::umount(place.c_str());
        (void)::rmdir(place.c_str());
    });
    if (::mount("tmpfs", place.c_str(), "tmpfs", 0, "size=128k") != 0) {
        GTEST_SKIP() << "this user may not mount a file system";
    }
    for (int filled = 0; filled < 32; ++filled) {  // pages of the 32 that there are
        SCOPED_TRACE(filled);
        for (const auto& entry : fs::directory_iterator(place)) {
            fs::remove_all(entry.path());
        }
        CommitScene small(folder.files, place);
        for (const auto& [path, bytes] : small.OriginalFiles()) {
            std::ofstream(path, std::ios::binary) << bytes;
        }
        small.Load();
        if (small.g.gFields->Count() != CommitScene::Views * CommitScene::PerView) {
            break;
        }
        small.EditAll();
        std::ofstream(place + "/ballast", std::ios::binary) << std::string(std::size_t(filled) * 4096, 'x');
        small.Commit();
        bool all = true;
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            const std::string left = RealFolder::Get(small.FilePath(view));
            const bool isNew = left == newTexts[static_cast<std::size_t>(view)];
            EXPECT_TRUE(isNew || left == CommitScene::OriginalText(view)) << view;
            all = all && isNew && !small.ChangesMade(view);
        }
        EXPECT_TRUE(all || small.toolkit.boxes.size() > 1);
    }
}

TEST_F(LimitsTest, AReadOnlyTargetIsRefusedAndTold) {
    ASSERT_EQ(::chmod(scene.FilePath(1).c_str(), 0444), 0);
    scene.Commit();
    ExpectNew(0);
    ExpectOld(1);
    ExpectNew(2);
    EXPECT_EQ(scene.toolkit.boxes,
              (Boxes{{"Error 70: Permission denied", BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile"},
                     AllSaved}));
}

TEST_F(LimitsTest, AReadOnlyFolderIsToldForEachViewAndNothingIsLost) {
    ASSERT_EQ(::chmod(folder.path.c_str(), 0555), 0);
    const bool root = ::geteuid() == 0;
    if (root) {
        ASSERT_EQ(::seteuid(65534), 0);
    }
    scene.Commit();
    if (root) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    ASSERT_EQ(::chmod(folder.path.c_str(), 0755), 0);
    EXPECT_TRUE(HasBox("The following error occured while creating an archive of '" + scene.path + "'"));
    EXPECT_TRUE(HasBox("Error 70: Permission denied occurred in SaveSchema."));
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        ExpectOld(view);
        EXPECT_TRUE(scene.ChangesMade(view));
    }
    scene.toolkit.boxes.clear();
    scene.Commit();
    EXPECT_EQ(scene.toolkit.boxes, Boxes{AllSaved});
}

TEST_F(LimitsTest, AFolderThatIsRenamedBetweenLoadAndCommitIsToldAndWorksWhenItIsBack) {
    const Text away = folder.path + "-away";
    fs::rename(folder.path, away);
    scene.Commit();
    EXPECT_FALSE(fs::exists(folder.path));
    fs::rename(away, folder.path);
    EXPECT_TRUE(HasBox("The following error occured"));
    EXPECT_TRUE(HasBox("Error 76: Path not found occurred in SaveSchema."));
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        ExpectOld(view);
        EXPECT_TRUE(scene.ChangesMade(view));
    }
    scene.toolkit.boxes.clear();
    scene.Commit();
    EXPECT_EQ(scene.toolkit.boxes, Boxes{AllSaved});
}

TEST_F(LimitsTest, AnotherTextInTheTargetSinceTheLoadIsInTheArchive) {
    std::ofstream(scene.FilePath(2), std::ios::binary) << "VERSION=3.\r\nsomebody else's\r\n";
    scene.Commit();
    EXPECT_EQ(scene.toolkit.boxes, Boxes{AllSaved});
    EXPECT_EQ(RealFolder::Get(folder.path + "/Archive/plant/2026-03-04_05-06-07/plant.V2"),
              "VERSION=3.\r\nsomebody else's\r\n");
    EXPECT_TRUE(RealFolder::Get(scene.FilePath(2)).starts_with("VERSION= 3.001\r\nsomebody else's\r\n"));
}

TEST_F(LimitsTest, ATargetThatIsGoneIsWrittenWithoutAHeaderAndOneThatBecameAFolderIsRefused) {
    fs::remove(scene.FilePath(1));
    fs::remove(scene.FilePath(2));
    fs::create_directory(scene.FilePath(2));
    scene.Commit();
    EXPECT_TRUE(RealFolder::Get(scene.FilePath(1)).starts_with("[FIELD]\r\n"));
    EXPECT_TRUE(fs::is_directory(scene.FilePath(2)));
    EXPECT_TRUE(HasBox("Error 70: Permission denied occurred in SaveSchema."));
    EXPECT_TRUE(scene.ChangesMade(2));
}

TEST_F(LimitsTest, LinksModeAndOtherNamesOfATargetStay) {
    const Text elsewhere = folder.path + "/Archive-of-mine";
    fs::rename(scene.FilePath(1), elsewhere);
    fs::create_symlink("Archive-of-mine", scene.FilePath(1));
    fs::create_hard_link(scene.FilePath(2), folder.path + "/second name");
    ASSERT_EQ(::chmod(scene.FilePath(3).c_str(), 0640), 0);
    scene.Commit();
    EXPECT_EQ(scene.toolkit.boxes, Boxes{AllSaved});
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        ExpectNew(view);
    }
    EXPECT_TRUE(fs::is_symlink(scene.FilePath(1)));
    EXPECT_EQ(RealFolder::Get(elsewhere), newTexts[1]);
    EXPECT_EQ(RealFolder::Get(folder.path + "/second name"), newTexts[2]);
    EXPECT_EQ(fs::hard_link_count(scene.FilePath(2)), 2U);
    EXPECT_EQ(static_cast<unsigned>(fs::status(scene.FilePath(3)).permissions()), 0640U);
}

/// How often a file has been saved, by the revision in its header.
Text RevisionOf(const Text& path) {
    const std::string text = RealFolder::Get(path);
    const std::size_t from = text.find("7.");
    return text.substr(from, text.find("\r\n", from) - from);
}

/// The revisions of a file in the archives of its application.
std::vector<Text> RevisionsIn(const fs::path& archives, const std::string& name) {
    std::vector<Text> revisions;
    for (const auto& archive : fs::directory_iterator(archives)) {
        revisions.push_back(RevisionOf((archive.path() / name).string()));
    }
    return revisions;
}

TEST_F(LimitsTest, TwoNamesOfOneFileInACommitAreSavedOneAfterTheOther) {
    enum class Name : std::uint8_t { OfAFolder, Soft, Hard };
    for (const Name kind : {Name::OfAFolder, Name::Soft, Name::Hard}) {
        SCOPED_TRACE(static_cast<int>(kind));
        folder.PutAll();
        const Text first = folder.path + "/plant.kdt";
        Text second = folder.path + "/second.kdt";
        if (kind == Name::OfAFolder) {
            fs::create_directory_symlink(folder.path, folder.path + "/other");
            second = folder.path + "/other/plant.kdt";
        } else if (kind == Name::Soft) {
            fs::create_symlink("plant.kdt", second);
        } else {
            fs::create_hard_link(first, second);
        }
        for (const bool isTurned : {false, true}) {
            CommitScene twice(folder.files, folder.path);
            twice.Load();
            twice.EditAll(isTurned ? "40" : "50");
            // The view beside the template becomes the template by its other name.
            twice.g.gFiles->Ref(2).SetViewNo(0);
            twice.g.gFiles->Ref(2).SetFilename(second);
            if (isTurned) {
                twice.g.gFiles->Ref(1).SetFilename(second);
                twice.g.gFiles->Ref(2).SetFilename(first);
            }
            fs::remove_all(folder.path + "/Archive");
            twice.Commit();
            EXPECT_EQ(twice.toolkit.boxes, Boxes{AllSaved});
            if (kind != Name::OfAFolder) {
                const std::string name = isTurned ? "plant" : "second";
                EXPECT_EQ(RevisionsIn(folder.path + "/Archive/" + name, name + ".kdt"),
                          std::vector<Text>{isTurned ? "7.003" : "7.001"})
                    << "what the second was written over";
            }
            EXPECT_EQ(RevisionOf(first), isTurned ? "7.004" : "7.002") << "the second is made from the first";
            EXPECT_EQ(RealFolder::Get(first), RealFolder::Get(second));
            EXPECT_NE(RealFolder::Get(first).find("= v1x1\r\n"), std::string::npos);
        }
    }
}

// They share their temporary file by two names of it, and nothing else tells that.
TEST_F(LimitsTest, ViewsOfAFolderThatIsKnownByTwoNamesAreSavedEachWithItsOwnTextAlsoWhereThereAreNoLocks) {
    fs::create_directory_symlink(folder.path, folder.path + "/other");
    scene.g.gFiles->Ref(3).SetFilename(folder.path + "/other/plant.kdt");
    FailingCalls calls;
    calls.FailEach("flock", ENOLCK);
    scene.Commit();
    EXPECT_EQ(scene.toolkit.boxes, Boxes{AllSaved});
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        ExpectNew(view);
    }
}

TEST_F(LimitsTest, ALinkPlantedUnderTheTemporaryNameIsNotWrittenThrough) {
    const Text victim = folder.path + "/victim";
    std::ofstream(victim, std::ios::binary) << "precious";
    fs::create_symlink(victim, scene.TemporaryPath(0));
    scene.Commit();
    EXPECT_EQ(RealFolder::Get(victim), "precious");
    EXPECT_TRUE(HasBox("Error 70: Permission denied occurred in SaveSchema."));
    fs::remove(scene.TemporaryPath(0));
    fs::create_hard_link(victim, scene.TemporaryPath(0));
    scene.toolkit.boxes.clear();
    scene.Commit();
    EXPECT_EQ(RealFolder::Get(victim), "precious");
    EXPECT_EQ(scene.toolkit.boxes, Boxes{AllSaved});
}

TEST_F(LimitsTest, NothingThatACommitMakesIsForEverybodyToWrite) {
    const mode_t mask = ::umask(022);
    const Scope restored([&] { (void)::umask(mask); });
    ASSERT_EQ(::chmod(scene.FilePath(1).c_str(), 0666),
              0);  // the user's own will; it stays on the file itself
    fs::remove(scene.LogPath());
    fs::remove(scene.ReportPath());
    scene.Commit();
    EXPECT_EQ(static_cast<unsigned>(fs::status(scene.FilePath(1)).permissions()), 0666U);
    fs::remove(scene.FilePath(1));
    for (const auto& entry : fs::recursive_directory_iterator(folder.path)) {
        EXPECT_EQ(static_cast<unsigned>(entry.status().permissions()) & 0002U, 0U) << entry.path();
    }
}

TEST(NamesTest, BlanksLettersOfTheCodePageAndBeyondItWork) {
    for (const char* base : {"two words", "gr\xC3\xB6\xC3\x9F\x65 \xE2\x82\xAC", "\xCE\xB1\xE6\x97\xA5 x"}) {
        SCOPED_TRACE(base);
        const RealFolder folder;
        CommitScene scene(folder.files, folder.path, ".kdt", base);
        for (const auto& [path, bytes] : scene.OriginalFiles()) {
            std::ofstream(path, std::ios::binary) << bytes;
        }
        scene.Load();
        ASSERT_EQ(scene.g.gFields->Count(), CommitScene::Views * CommitScene::PerView);
        scene.EditAll();
        scene.Commit();
        EXPECT_EQ(scene.toolkit.boxes, Boxes{AllSaved});
        EXPECT_NE(RealFolder::Get(scene.FilePath(3)).find("F50."), std::string::npos);
        EXPECT_TRUE(fs::exists(folder.path + "/Archive/" + base + "/2026-03-04_05-06-07"));
    }
}

TEST(NamesTest, OfNamesThatDifferInCaseAloneEachIsItself) {
    const RealFolder folder;
    CommitScene upper(folder.files, folder.path, ".kdt", "PLANT");
    for (const auto& [path, bytes] : upper.OriginalFiles()) {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    CommitScene lower(folder.files, folder.path);
    lower.Load();
    lower.EditAll();
    lower.Commit();
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        EXPECT_EQ(RealFolder::Get(upper.FilePath(view)), CommitScene::OriginalText(view));
        EXPECT_NE(RealFolder::Get(lower.FilePath(view)).find("F50."), std::string::npos);
    }
}

TEST_F(LimitsTest, TheOwnerOfATargetStays) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only a privileged user can give files away";
    }
    ASSERT_EQ(::chown(scene.FilePath(2).c_str(), 65534, 65534), 0);
    scene.Commit();
    EXPECT_EQ(scene.toolkit.boxes, Boxes{AllSaved});
    ExpectNew(2);
    struct stat status {};
    ASSERT_EQ(::stat(scene.FilePath(2).c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 65534U);
    EXPECT_EQ(status.st_gid, 65534U);
}

TEST(NamesTest, TheLongestNameIsSavedAndOneWhoseTemporaryFileCannotBeNamedIsTold) {
    constexpr std::size_t LongestName = 255;  // of a file, on every usual file system
    for (const std::size_t length : {LongestName - 5, LongestName - 4}) {  // ".temp" is five characters
        SCOPED_TRACE(length);
        const RealFolder folder;
        CommitScene scene(folder.files, folder.path, ".kdt", Text(length, 'n'));
        for (const auto& [path, bytes] : scene.OriginalFiles()) {
            std::ofstream(path, std::ios::binary) << bytes;
        }
        scene.Load();
        ASSERT_EQ(scene.g.gFields->Count(), CommitScene::Views * CommitScene::PerView);
        scene.EditAll();
        scene.Commit();
        const bool saved = length + 5 <= LongestName;
        EXPECT_EQ(scene.toolkit.boxes == Boxes{AllSaved}, saved);
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            const std::string left = RealFolder::Get(scene.FilePath(view));
            EXPECT_EQ(left.find("F50.") != std::string::npos, saved);
            EXPECT_EQ(left == CommitScene::OriginalText(view), !saved);
            EXPECT_EQ(scene.ChangesMade(view), !saved);
        }
        if (!saved) {
            EXPECT_EQ(scene.toolkit.boxes.front(),
                      (ScriptedToolkit::Box{"Error 57: Device I/O error occurred in SaveSchema.",
                                            BoxIcon::Exclamation, "KDLimitDesk"}));
        }
    }
}

TEST(NamesTest, AFolderOfTheGreatestLengthWorks) {
    const RealFolder folder;
    Text deep = folder.path;
    while (deep.size() + 201 < 3900) {
        deep += "/" + Text(200, 'd');
    }
    folder.files.MakeFolder(deep);
    CommitScene scene(folder.files, deep);
    for (const auto& [path, bytes] : scene.OriginalFiles()) {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    scene.Load();
    scene.EditAll();
    scene.Commit();
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        EXPECT_NE(RealFolder::Get(scene.FilePath(view)).find("F50."), std::string::npos);
    }
}

}  // namespace
}  // namespace kd

#endif
