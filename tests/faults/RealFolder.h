#pragma once

#include <gtest/gtest.h>
#ifdef _WIN32
#include <process.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include "base/ApplicationNames.h"
#include "faults/CommitScene.h"
#include "system/SystemFiles.h"

namespace kd {

/// Whether the long form of the tests is wanted ("make torture").
inline bool Torture() {
    return std::getenv("KD_TORTURE") != nullptr;
}

/// A fresh folder of the machine with the files of an application in it.
class RealFolder {
public:
    explicit RealFolder(const Text& extension = ".kdt") : m_extension(extension) {
        path = Made();
        PutAll();
    }
    ~RealFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    RealFolder(const RealFolder&) = delete;
    RealFolder& operator=(const RealFolder&) = delete;

    /// The application as it was at first, and nothing else.
    void PutAll() const {
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            std::filesystem::remove_all(entry.path());
        }
        CommitScene scene(files, path, m_extension);
        for (const auto& [name, bytes] : scene.OriginalFiles()) {
            std::ofstream(name, std::ios::binary) << bytes;
        }
    }
    static std::string Get(const Text& name) {
        std::ifstream file(name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// What a commit without any fault writes to each file of a view.
    std::vector<std::string> NewTexts() const {
        PutAll();
        CommitScene scene(files, path, m_extension);
        scene.Load();
        scene.EditAll();
        scene.Commit();
        std::vector<std::string> texts;
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            texts.push_back(Get(scene.FilePath(view)));
        }
        PutAll();
        return texts;
    }

    Text path;
    mutable SystemFiles files{CodePage::Of(1252)};

private:
    static Text Made() {
#ifdef _WIN32
        const auto moment = std::chrono::steady_clock::now().time_since_epoch().count();
        Text folder = std::filesystem::temp_directory_path().string() + "kd-faults-" +
                      std::to_string(::_getpid()) + "-" + std::to_string(moment);
        EXPECT_TRUE(std::filesystem::create_directory(folder)) << folder;
        return folder;
#else
        // In memory where there is such a place: these tests ask for thousands of flushes.
        const char* const memory = "/dev/shm";
        const bool quick = ::access(memory, W_OK) == 0;
        std::string pattern =
            (quick ? Text(memory) : std::filesystem::temp_directory_path().string()) + "/kd-faults-XXXXXX";
        return ::mkdtemp(pattern.data());
#endif
    }

    Text m_extension;
};

/// What must hold of an application's files however a commit ended.
class FilesCheck {
public:
    FilesCheck(const RealFolder& folder, const Text& extension, const std::vector<std::string>& newTexts)
        : m_folder(folder), m_extension(extension), m_newTexts(newTexts) {}

    void Targets() {
        CommitScene scene(m_folder.files, m_folder.path, m_extension);
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            const std::string left = RealFolder::Get(scene.FilePath(view));
            const bool isNew = left == m_newTexts[static_cast<std::size_t>(view)];
            EXPECT_TRUE(isNew || left == CommitScene::OriginalText(view))
                << "view " << view << " holds half:\n"
                << left;
            written.push_back(isNew);
        }
    }
    /// Whole lines only, those of earlier commits first; which records of each view are there.
    void Log() {
        CommitScene scene(m_folder.files, m_folder.path, m_extension);
        const std::string log = RealFolder::Get(scene.LogPath());
        EXPECT_TRUE(log.starts_with("earlier record\r\n"));
        EXPECT_TRUE(log.ends_with("\r\n")) << "half a record: " << log;
        EXPECT_TRUE(RealFolder::Get(scene.ReportPath()).starts_with("earlier entry\r\n\r\n"));
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            std::size_t there = 0;
            for (std::int32_t variable = 1; variable <= CommitScene::PerView; ++variable) {
                for (const std::int32_t column : {CommitScene::UslColumn, CommitScene::UnitsColumn}) {
                    const Text line = CommitScene::LogLine(view, variable, column) + "\r\n";
                    there += log.find(line) != std::string::npos ? 1U : 0U;
                }
            }
            records.push_back(there);
        }
    }
    /// Each archive under a final name holds every file as it was before the commit.
    void Archives() {
        const std::filesystem::path archives = m_folder.path + "/Archive/plant";
        std::error_code none;
        CommitScene scene(m_folder.files, m_folder.path, m_extension);
        const auto originals = scene.OriginalFiles();
        for (const auto& entry : std::filesystem::directory_iterator(archives, none)) {
            const Text name = entry.path().filename().string();
            if (name.starts_with(".unfinished-")) {
                continue;
            }
            EXPECT_TRUE(name.starts_with("2026-03-04_05-06-07")) << name;
            ++archiveCount;
            for (const auto& [path, bytes] : originals) {
                EXPECT_EQ(RealFolder::Get((entry.path() / std::filesystem::path(path).filename()).string()),
                          bytes)
                    << path;
            }
        }
    }
    /// Nothing lies beside the application but what a broken-off commit may leave.
    void Leftovers() {
        CommitScene scene(m_folder.files, m_folder.path, m_extension);
        std::set<Text> known{"Archive"};
        for (const auto& [path, bytes] : scene.OriginalFiles()) {
            known.insert(Text(paths::FileName(path)));
        }
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            known.insert(Text(paths::FileName(scene.TemporaryPath(view))));
        }
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path)) {
            const Text name = entry.path().filename().string();
            EXPECT_TRUE(known.count(name) == 1 || name.starts_with(".kdsave-")) << name;
        }
    }
    /// The next start loads everything, and its commit works.
    void NextStart() {
        CommitScene next(m_folder.files, m_folder.path, m_extension);
        next.Load();
        ASSERT_EQ(next.g.gFields->Count(), CommitScene::Views * CommitScene::PerView);
        for (std::int32_t row = 1; row <= next.g.gFields->Count(); ++row) {
            const double usl = next.g.gFields->Ref(row).USL();
            EXPECT_TRUE(usl == 100 || usl == 50) << row;
        }
        next.EditAll("40");
        next.Commit();
        EXPECT_EQ(next.toolkit.boxes,
                  (std::vector<ScriptedToolkit::Box>{
                      {"4 File(s) have been modified.", BoxIcon::Information, "KDLimitDesk"}}));
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            EXPECT_NE(RealFolder::Get(next.FilePath(view)).find("F40."), std::string::npos);
            EXPECT_FALSE(std::filesystem::exists(next.TemporaryPath(view)));
        }
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path)) {
            const Text name = entry.path().filename().string();
            EXPECT_FALSE(name.starts_with(".kdsave-")) << name << " is left though its file is whole";
        }
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path + "/Archive/plant")) {
            const Text name = entry.path().filename().string();
            EXPECT_FALSE(name.starts_with(".unfinished-")) << name << " is left though there is a whole one";
        }
    }

    std::vector<bool> written;         // the views whose file is the new one
    std::vector<std::size_t> records;  // of each view in the log
    int archiveCount = 0;

private:
    const RealFolder& m_folder;
    Text m_extension;
    const std::vector<std::string>& m_newTexts;
};

}  // namespace kd
