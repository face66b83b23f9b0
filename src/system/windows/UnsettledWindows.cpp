#include "system/windows/UnsettledWindows.h"

#include <utility>

#include "base/Paths.h"
#include "system/windows/OpenModes.h"
#include "system/windows/WindowsApi.h"

namespace kd::windows {

Unsettled::Ticket Unsettled::Add(RawHandle file, const Text& path) {
    Handle second;
    if (Duplicate(file, second) == 0) {
        m_files.emplace(++m_last, Kept{std::move(second), path});
        return m_last;
    }
    if (const Code code = Flush(file); code != 0) {
        Raise("Settle", path, code);
    }
    return 0;
}

void Unsettled::AddOnce(RawHandle file, const Text& path) {
    // One that was flushed at once instead is flushed again when it has grown.
    if (m_once.count(path) == 0 && Add(file, path) != 0) {
        m_once.insert(path);
    }
}

void Unsettled::AddFolder(Text path) {
    m_folders.insert(std::move(path));
}

std::vector<cError> Unsettled::TrySettle(const std::function<void()>& meanwhile) {
    m_once.clear();
    const auto files = std::exchange(m_files, {});
    const auto folders = std::exchange(m_folders, {});
    std::vector<cError> failures;
    for (const auto& [ticket, kept] : files) {
        if (const Code code = Flush(kept.file.Get()); code != 0) {
            failures.push_back(FailureOf("Settle", kept.path, code));
        }
        meanwhile();
    }
    for (const Text& folder : folders) {
        const NativePath native = Native("Settle", paths::InFolder(folder, "", '\\'));
        const HANDLE handle = ::CreateFileW(native.text.c_str(), GENERIC_WRITE, ShareAll, nullptr,
                                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            const Handle closed(handle);
            (void)Flush(handle);
        }
        meanwhile();
    }
    return failures;
}

}  // namespace kd::windows
