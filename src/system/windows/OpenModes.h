#pragma once

#include "system/windows/FilesWindows.h"
#include "system/windows/WindowsApi.h"

/// How files are opened and shared. Only for the sources beside this header.
namespace kd::windows {

inline constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
inline constexpr OpenMode ForReading{GENERIC_READ, ShareAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN};
/// Others may read the file and take its name away, but nobody else may write it.
inline constexpr DWORD ShareAllButWriting = FILE_SHARE_READ | FILE_SHARE_DELETE;

inline bool IsFolder(std::uint32_t attributes) noexcept {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}
inline bool IsLink(std::uint32_t attributes) noexcept {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace kd::windows
