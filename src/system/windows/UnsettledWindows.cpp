#include "system/windows/UnsettledWindows.h"

#include <utility>

#include "base/Paths.h"
#include "system/windows/OpenModes.h"
#include "system/windows/WindowsApi.h"

namespace kd::windows {

void Unsettled::Add(RawHandle file, const Text& path) {
    if (m_files.count(path) != 0) {
        return;
    }
    Handle second;
    Code code = Duplicate(file, second);
    if (code == 0) {
        m_files.emplace(path, std::move(second));
        return;
    }
    code = Flush(file);
    if (code != 0) {
        Raise("Settle", path, code);
    }
}

void Unsettled::AddFolder(Text path) {
    m_folders.insert(std::move(path));
}

void Unsettled::Settle() {
    const auto files = std::exchange(m_files, {});
    const auto folders = std::exchange(m_folders, {});
    Code first = 0;
    Text failed;
    for (const auto& [path, file] : files) {
        if (const Code code = Flush(file.Get()); code != 0 && first == 0) {
            first = code;
            failed = path;
        }
    }
    for (const Text& folder : folders) {
        const NativePath native = Native("Settle", paths::Join(folder, "", '\\'));
        const HANDLE handle = ::CreateFileW(native.text.c_str(), GENERIC_WRITE, ShareAll, nullptr,
                                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            const Handle closed(handle);
            (void)Flush(handle);
        }
    }
    if (first != 0) {
        Raise("Settle", failed, first);
    }
}

}  // namespace kd::windows
