#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <utility>

#include "fakes/ErrorOf.h"
#include "system/SystemFiles.h"
#include "system/Waiting.h"
#include "system/windows/FilesWindows.h"
#include "system/windows/WindowsApi.h"

namespace kd {

/// The files of the system over a fresh temporary folder. No test waits: what stands between two attempts is
/// counted instead, and may do something.
class SystemFilesTest : public testing::Test {
protected:
    SystemFilesTest() {
        wchar_t temporary[MAX_PATH + 1] = {};
        EXPECT_NE(::GetTempPathW(MAX_PATH, temporary), 0U);
        LARGE_INTEGER count{};
        (void)::QueryPerformanceCounter(&count);
        folder = windows::Narrow(temporary) + "kd-system-" + std::to_string(::GetCurrentProcessId()) + "-" +
                 std::to_string(count.QuadPart);
        EXPECT_NE(::CreateDirectoryW(windows::Wide(folder).c_str(), nullptr), 0);
        pauses = 0;
        duringPause = nullptr;
        waiting::Pause = [](std::uint32_t) {
            ++pauses;
            if (duringPause) {
                duringPause();
            }
        };
    }
    ~SystemFilesTest() override {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(Wide(folder))) {
            (void)::SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
        }
        std::error_code ignored;
        std::filesystem::remove_all(Wide(folder), ignored);
    }

    static std::wstring Wide(const Text& path) { return L"\\\\?\\" + windows::Wide(path); }
    Text At(const Text& name) const { return folder + "\\" + name; }
    Text Put(const Text& name, const std::string& bytes, DWORD attributes = FILE_ATTRIBUTE_NORMAL) const {
        std::ofstream(std::filesystem::path(Wide(At(name))), std::ios::binary) << bytes;
        EXPECT_NE(::SetFileAttributesW(Wide(At(name)).c_str(), attributes), 0) << name;
        return At(name);
    }
    static std::string Get(const Text& path) {
        std::ifstream file(std::filesystem::path(Wide(path)), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static DWORD AttributesOf(const Text& path) { return ::GetFileAttributesW(Wide(path).c_str()); }
    /// Names in the folder; what a failed operation left behind is seen here.
    std::set<Text> Names(const Text& of) const {
        std::set<Text> names;
        for (const auto& entry : std::filesystem::directory_iterator(Wide(of))) {
            names.insert(windows::Narrow(entry.path().filename().wstring()));
        }
        return names;
    }
    std::set<Text> Names() const { return Names(folder); }
    Text MakeFolderAt(const Text& name) const {
        std::filesystem::create_directories(Wide(At(name)));
        return At(name);
    }
    /// The file, open as another program has it, with that sharing.
    windows::Handle HeldOpen(const Text& path, DWORD sharing, DWORD access = GENERIC_READ) const {
        const HANDLE file =
            ::CreateFileW(Wide(path).c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr);
        EXPECT_NE(file, INVALID_HANDLE_VALUE) << path;
        return windows::Handle(file);
    }

    static inline int pauses = 0;
    static inline std::function<void()> duringPause;
    Text folder;
    SystemFiles files{CodePage::Of(1252)};
};

constexpr int AllPauses = static_cast<int>(std::size(waiting::GlanceInMilliseconds));

}  // namespace kd
