#ifdef __linux__

#include "commit/GroupCommit.h"
#include "faults/RealFolder.h"
#include "system/posix/FailingCalls.h"

namespace kd {
namespace {

/// Several applications of the same shape in one folder, over the machine's own files.
class Applications {
public:
    Applications(std::int32_t count, std::int32_t views) : m_count(count), m_views(views) {
        std::filesystem::remove_all(m_folder.path);
        std::filesystem::create_directory(m_folder.path);
        for (std::int32_t application = 1; application <= count; ++application) {
            std::string text = "[VIEWS]\r\n";
            for (std::int32_t view = 1; view < views; ++view) {
                text += "   VIEW         = " + std::to_string(view) + ",view\r\n";
                Put(paths::ChangeExtension(Template(application), ".V" + Digits(view)),
                    CommitScene::OriginalText(view));
            }
            Put(Template(application), text + "\r\n" + CommitScene::OriginalText(1));
        }
        scene.g.gMasterFiles = std::make_shared<cMasterFiles>();
        for (std::int32_t application = 1; application <= count; ++application) {
            (void)scene.g.gMasterFiles->Add(Template(application), true);
        }
        modKDLimitDesk::LoadRuleCatalogue(scene.g);
        modKDLimitDesk::BuildColumnCatalogue(scene.g);
        SetupGridColumns(scene.desk);
    }
    void Load() { LoadApplications(scene.desk); }
    /// One changed cell in each view.
    void EditEach(std::string_view limit) {
        for (std::int32_t row = 1; row <= scene.g.gFields->Count(); row += CommitScene::PerView) {
            scene.Edit(row, CommitScene::UslColumn, limit);
        }
    }
    void Commit() {
        scene.toolkit.boxes.clear();
        scene.Commit();
        ASSERT_EQ(scene.toolkit.boxes.size(), 1U) << scene.toolkit.boxes.front();
        EXPECT_EQ(scene.toolkit.boxes.front().text,
                  Digits(m_count * m_views) + " File(s) have been modified.");
    }
    std::int32_t Files() const { return m_count * m_views; }

private:
    Text Template(std::int32_t application) const {
        return m_folder.path + "/application" + Digits(application) + ".kdt";
    }
    static void Put(const Text& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }

    std::int32_t m_count;
    std::int32_t m_views;
    RealFolder m_folder;

public:
    CommitScene scene{m_folder.files, m_folder.path};
};

std::ptrdiff_t CountOf(const FailingCalls& calls, const std::set<std::string>& names) {
    return std::count_if(calls.Calls().begin(), calls.Calls().end(),
                         [&](const std::string& call) { return names.count(call) != 0; });
}
std::ptrdiff_t Flushes(const FailingCalls& calls) {
    return CountOf(calls, {"fsync", "syncfs"});
}
/// Calls that name a file: over a network each of them is a round trip.
std::ptrdiff_t Naming(const FailingCalls& calls) {
    return CountOf(calls, {"open", "stat", "lstat", "mkdir", "unlink", "rmdir", "opendir", "rename",
                           "renameat2", "mkostemp"});
}

void ExpectFewFlushes(std::int32_t count, std::int32_t views) {
    SCOPED_TRACE(Digits(count) + " applications of " + Digits(views) + " views");
    Applications applications(count, views);
    applications.Load();
    applications.EditEach("50");
    FailingCalls calls;
    applications.Commit();
    constexpr auto InAGroup = static_cast<std::int32_t>(GroupCommit::MostInAGroup);
    const std::int32_t groups = (applications.Files() + InAGroup - 1) / InAGroup;
    EXPECT_LE(Flushes(calls), 2 * groups + 3);
    std::cout << count << " applications of " << views << " views: " << Flushes(calls) << " flushes, "
              << Naming(calls) << " calls that name a file, " << groups << " groups" << std::endl;
}

TEST(CallCountsTest, ACommitFlushesTwiceForEachGroupAndThreeTimesBesides) {
    ExpectFewFlushes(1, 1);
    ExpectFewFlushes(1, 17);
    ExpectFewFlushes(33, 1);
    if (Torture()) {
        ExpectFewFlushes(300, 1);
        ExpectFewFlushes(300, 6);
    } else {
        ExpectFewFlushes(20, 6);
    }
}

TEST(CallCountsTest, ALoadNamesEachFileOnce) {
    Applications applications(20, 6);
    FailingCalls calls;
    applications.Load();
    EXPECT_EQ(applications.scene.g.gFields->Count(), 120 * CommitScene::PerView);
    EXPECT_LE(Naming(calls), applications.Files());
}

TEST(CallCountsTest, ACommitOfSixViewsInThreeApplicationsNamesFilesAHundredAndFiftyTimesAtMost) {
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

}  // namespace
}  // namespace kd

#endif
