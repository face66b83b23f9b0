#pragma once

#include "base/NumberTexts.h"
#include "faults/RealFolder.h"

namespace kd {

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

}  // namespace kd
