#include "system/FilesScene.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <filesystem>
#include <random>

#include "fakes/MemoryFiles.h"
#include "system/SystemFiles.h"
#include "system/Waiting.h"

namespace kd {
namespace {

namespace fs = std::filesystem;

class MemoryScene : public FilesScene {
public:
    MemoryScene() { m_files.MakeFolder(Folder()); }
    Files& GetFiles() override { return m_files; }
    Text Folder() const override { return "/plant"; }
    bool TellsCaseApart() const override { return true; }
    void SetReadOnly(const Text& path) override { m_files.SetReadOnly(path); }
    bool IsReadOnly(const Text& path) const override { return m_files.IsReadOnly(path); }
    Text MakeSpecial(const Text& path) override {
        m_files.PutSpecial(path);
        return path;
    }

private:
    MemoryFiles m_files;
};

/// A fresh temporary folder. Nothing waits: what somebody else has in hand is asked for without a pause.
class DiskScene : public FilesScene {
public:
    DiskScene() {
        m_pauseBefore = waiting::Pause;
        waiting::Pause = [](std::uint32_t) {};
        m_folder = fs::temp_directory_path() / ("kd-contract-" + std::to_string(std::random_device{}()));
        EXPECT_TRUE(fs::create_directory(m_folder));
    }
    ~DiskScene() override {
        waiting::Pause = m_pauseBefore;
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(m_folder, ignored)) {
            fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add, ignored);
        }
        fs::remove_all(m_folder, ignored);
    }
    Files& GetFiles() override { return m_files; }
    Text Folder() const override {
        const auto text = m_folder.u8string();
        return {text.begin(), text.end()};
    }
#ifdef _WIN32
    bool TellsCaseApart() const override {
        return false;
    }
    Text MakeSpecial(const Text& path) override {
        return path.substr(0, path.find_last_of('\\') + 1) + "NUL";  // it is there in every folder
    }
#else
    bool TellsCaseApart() const override {
        return true;
    }
    Text MakeSpecial(const Text& path) override {
        EXPECT_EQ(::mkfifo(path.c_str(), 0666), 0);
        return path;
    }
#endif
    void SetReadOnly(const Text& path) override {
        fs::permissions(Native(path), AnybodysWriting, fs::perm_options::remove);
    }
    bool IsReadOnly(const Text& path) const override {
        return (fs::status(Native(path)).permissions() & AnybodysWriting) == fs::perms::none;
    }

private:
    static constexpr fs::perms AnybodysWriting =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

    static fs::path Native(const Text& path) {
        return {std::u8string(path.begin(), path.end())};
    }

    void (*m_pauseBefore)(std::uint32_t);
    fs::path m_folder;
    SystemFiles m_files{CodePage::Of(1252)};
};

}  // namespace

std::unique_ptr<FilesScene> SceneInMemory() {
    return std::make_unique<MemoryScene>();
}

std::unique_ptr<FilesScene> SceneOnDisk() {
    return std::make_unique<DiskScene>();
}

}  // namespace kd
