#include "base/NumberTexts.h"
#include "base/Scope.h"
#include "commit/GroupCommit.h"
#include "faults/Applications.h"
#ifdef __linux__
#include <fcntl.h>

#include "system/posix/DrivePosix.h"
#include "system/posix/FailingCalls.h"
#include "system/posix/FilesPosix.h"
#endif
#ifdef _WIN32
#include "system/windows/FilesWindows.h"
#include "system/windows/WindowsApi.h"
#endif

namespace kd {
namespace {

#ifdef __linux__

std::ptrdiff_t CountOf(const FailingCalls& calls, const std::set<std::string>& names) {
    return std::count_if(calls.Calls().begin(), calls.Calls().end(),
                         [&](const std::string& call) { return names.count(call) != 0; });
}
std::ptrdiff_t Flushes(const FailingCalls& calls) {
    return CountOf(calls, {"fsync", "syncfs"});
}
/// Calls that name a file: over a network each of them is a round trip.
std::ptrdiff_t Naming(const FailingCalls& calls) {
    return CountOf(calls,
                   {"open", "stat", "lstat", "mkdir", "unlink", "rmdir", "opendir", "rename", "renameat2"});
}

/// The masks of most users, and of most where each has a group of his own.
constexpr mode_t Usual = 022;
constexpr mode_t OfAGroupOfHisOwn = 002;

/// `mask` is the user's who commits files that have come with the usual one.
void ExpectFewFlushes(std::int32_t count, std::int32_t views, mode_t mask = Usual) {
    SCOPED_TRACE(Digits(count) + " applications of " + Digits(views) + " views");
    const mode_t before = ::umask(Usual);
    const Scope restored([&] { (void)::umask(before); });
    Applications applications(count, views);
    applications.Load();
    applications.EditEach("50");
    (void)::umask(mask);
    {
        FailingCalls calls;
        applications.Commit();
        constexpr auto InAGroup = static_cast<std::int32_t>(GroupCommit::MostInAGroup);
        const std::int32_t groups = (applications.Files() + InAGroup - 1) / InAGroup;
        EXPECT_LE(Flushes(calls), 2 * groups + 3);
        std::cout << count << " applications of " << views << " views: " << Flushes(calls) << " flushes, "
                  << Naming(calls) << " calls that name a file, " << groups << " groups" << std::endl;
    }
    for (const auto& file : *applications.scene.g.gFiles) {
        const Text path = modKDLimitDesk::SchemaPath(applications.scene.g, *file);
        EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(path).permissions()), 0644U) << path;
    }
}

/// Whether the drive that the tests use is one that a single flush is enough for.
bool IsFlushedAtOnce() {
    const RealFolder folder;
    const posix::Descriptor open(posix::Open(folder.path, O_RDONLY | O_DIRECTORY));
    return posix::OneFlushIsEnough(open.Get());
}

TEST(CallCountsTest, ACommitFlushesTwiceForEachGroupAndThreeTimesBesides) {
    if (!IsFlushedAtOnce()) {
        GTEST_SKIP() << "on this drive each file is flushed by itself";
    }
    ExpectFewFlushes(1, 1);
    ExpectFewFlushes(1, 17);
    ExpectFewFlushes(33, 1);
    ExpectFewFlushes(1, 17, OfAGroupOfHisOwn);
    if (Torture()) {
        ExpectFewFlushes(300, 1);
        ExpectFewFlushes(300, 6);
    } else {
        ExpectFewFlushes(20, 6);
    }
}

TEST(CallCountsTest, ATargetThatItsNewTextCannotTakeThePlaceOfCostsAFlushMore) {
    if (!IsFlushedAtOnce()) {
        GTEST_SKIP() << "on this drive each file is flushed by itself";
    }
    enum class Kind : std::uint8_t { WithAnotherName, Link };
    for (const Kind kind : {Kind::WithAnotherName, Kind::Link}) {
        SCOPED_TRACE(static_cast<int>(kind));
        Applications applications(1, 17);
        applications.Load();
        applications.EditEach("50");
        std::filesystem::create_directory(applications.scene.Folder() + "/others");
        for (const auto& file : *applications.scene.g.gFiles) {
            const std::filesystem::path path = modKDLimitDesk::SchemaPath(applications.scene.g, *file);
            const std::filesystem::path other = path.parent_path() / "others" / path.filename();
            if (kind == Kind::Link) {
                std::filesystem::rename(path, other);
                std::filesystem::create_symlink(other, path);
            } else {
                std::filesystem::create_hard_link(path, other);
            }
        }
        FailingCalls calls;
        applications.Commit();
        const int ofEach = kind == Kind::Link ? 2 : 1;
        EXPECT_EQ(CountOf(calls, {"fsync"}), ofEach * applications.Files());
        EXPECT_LE(CountOf(calls, {"syncfs"}), 2 * 2 + 3);
    }
}

TEST(CallCountsTest, OnADriveThatOneFlushDoesNotReachEachFileAndEachNameIsFlushedByItself) {
    Applications applications(2, 2);
    applications.Load();
    applications.EditEach("50");
    FailingCalls calls;
    calls.FailEach("fstatfs", EIO);  // what cannot be asked is not trusted
    applications.Commit();
    EXPECT_EQ(CountOf(calls, {"syncfs"}), 0);
    const Text& folder = applications.scene.Folder();
    const auto flushed = [&](const auto& isMeant) {
        return std::count_if(calls.Flushed().begin(), calls.Flushed().end(), isMeant);
    };
    const auto endsIn = [&](const Text& ending) {
        return flushed([&](const std::string& path) { return path.ends_with(ending); });
    };
    EXPECT_EQ(flushed([&](const std::string& path) {
                  return path.find("/.kdsave-") != Text::npos || path.ends_with(".temp");
              }),
              4)
        << "the new texts";
    for (const char* const name : {"application1", "application2"}) {
        for (const char* const extension : {".kdt", ".V1"}) {
            EXPECT_EQ(flushed([&](const std::string& path) {
                          return path.find("/.unfinished-") != Text::npos &&
                                 path.ends_with(Text("/") + name + extension);
                      }),
                      1)
                << "a copy of the archive";
        }
        EXPECT_EQ(endsIn(Text("/Archive/") + name), 2) << "made, and with the archive's name";
        EXPECT_EQ(endsIn(Text("/") + name + ".KDL"), 1);
        EXPECT_EQ(endsIn(Text("/") + name + ".KDM"), 1);
    }
    EXPECT_EQ(endsIn(folder), 2) << "the folder of the archives, and the names that the texts have taken";
    EXPECT_EQ(endsIn("/Archive"), 1);
}

TEST(CallCountsTest, ALoadNamesEachFileOnce) {
    Applications applications(20, 6);
    FailingCalls calls;
    applications.Load();
    EXPECT_EQ(applications.scene.g.gFields->Count(), 120 * CommitScene::PerView);
    EXPECT_LE(Naming(calls), applications.Files());
}

TEST(CallCountsTest, ACommitOfSixViewsInThreeApplicationsNamesFilesAHundredAndFiftyTimesAtMost) {
    if (!IsFlushedAtOnce()) {
        GTEST_SKIP() << "on this drive each folder is opened for a flush of its own";
    }
    Applications applications(3, 2);
    applications.Load();
    for (const char* const limit : {"50", "40"}) {
        applications.EditEach(limit);
        FailingCalls calls;
        applications.Commit();
        EXPECT_LE(Naming(calls), 150) << limit;
        std::cout << Naming(calls) << " calls that name a file" << std::endl;
    }
}

#endif

#ifdef _WIN32

/// Counts what is flushed for the length of a scope, by its kind.
class CountedFlushes {
public:
    CountedFlushes() {
        texts = changeFiles = archives = others = 0;
        m_before = std::exchange(windows::FlushBuffers, &Count);
    }
    ~CountedFlushes() { windows::FlushBuffers = m_before; }
    CountedFlushes(const CountedFlushes&) = delete;
    CountedFlushes& operator=(const CountedFlushes&) = delete;

    static inline int texts = 0;
    static inline int changeFiles = 0;
    static inline int archives = 0;
    static inline int others = 0;

private:
    static int Count(windows::RawHandle file) {
        std::wstring wide(1000, L'\0');
        wide.resize(::GetFinalPathNameByHandleW(file, wide.data(), static_cast<DWORD>(wide.size()), 0));
        const Text path = windows::Narrow(wide);
        if (path.find("\\Archive") != Text::npos) {
            ++archives;
        } else if (path.ends_with(".KDL") || path.ends_with(".KDM")) {
            ++changeFiles;
        } else if (path.ends_with(".temp") || path.find("\\.kdsave-") != Text::npos) {
            ++texts;
        } else {
            ++others;
        }
        return m_before(file);
    }

    static inline int (*m_before)(windows::RawHandle) = nullptr;
};

TEST(CallCountsTest, ACommitFlushesEachNewTextOnceAndTheChangeFilesOfAGroupOnce) {
    struct Case {
        std::int32_t applications;
        std::int32_t views;
        int groups;
    };
    for (const Case& c : {Case{1, 1, 1}, Case{1, 17, 2}, Case{20, 1, 20}, Case{5, 6, 5}}) {
        SCOPED_TRACE(Digits(c.applications) + " applications of " + Digits(c.views) + " views");
        Applications applications(c.applications, c.views);
        applications.Load();
        applications.EditEach("50");
        const CountedFlushes counted;
        applications.Commit();
        EXPECT_EQ(counted.texts, applications.Files());
        EXPECT_EQ(counted.changeFiles, 2 * c.groups);
        EXPECT_LE(counted.archives, applications.Files() + c.applications)
            << "each file, and its folder's name";
        EXPECT_EQ(counted.others, 0);
        std::cout << c.applications << " applications of " << c.views << " views: " << counted.texts
                  << " flushes of new texts, " << counted.changeFiles << " of change files, "
                  << counted.archives << " of archives" << std::endl;
    }
}

#endif

}  // namespace
}  // namespace kd
