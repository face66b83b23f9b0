#include <memory>
#include <utility>

#include "base/Paths.h"
#include "base/cError.h"
#include "system/SystemFiles.h"
#include "system/Waiting.h"
#include "system/windows/FilesWindows.h"
#include "system/windows/OpenModes.h"
#include "system/windows/UnsettledWindows.h"
#include "system/windows/WindowsApi.h"

namespace kd {

using namespace windows;

namespace {

/// Closes a folder's listing at the end of the scope.
struct CloseListing {
    using pointer = HANDLE;
    void operator()(HANDLE listing) const noexcept { (void)::FindClose(listing); }
};
using Listing = std::unique_ptr<HANDLE, CloseListing>;

/// Gives a copy its source's times and attributes. Returns 0 or a code.
Code TakeOverTimes(RawHandle made, const FILE_BASIC_INFO& source) noexcept {
    constexpr DWORD Kept = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                           FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    FILE_BASIC_INFO information = source;
    information.ChangeTime.QuadPart = 0;  // the system's own
    information.FileAttributes = source.FileAttributes & Kept;
    if (information.FileAttributes == 0) {
        information.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    }
    return ::SetFileInformationByHandle(made, FileBasicInfo, &information, sizeof information) != 0
               ? 0
               : ::GetLastError();
}

/// Offset behind what a path begins with and nobody can make: a drive, a server with its share, a delimiter.
std::size_t RootSize(std::string_view path) noexcept {
    constexpr std::string_view Delimiters = "\\/";
    const auto behind = [&](std::size_t from) {
        const auto at = path.find_first_of(Delimiters, from);
        return at == std::string_view::npos ? path.size() : at + 1;
    };
    const auto isDelimiter = [&](std::size_t at) {
        return at < path.size() && Delimiters.find(path[at]) != std::string_view::npos;
    };
    if (isDelimiter(0) && isDelimiter(1)) {
        return behind(behind(2));
    }
    if (path.size() >= 2 && path[1] == ':') {
        return isDelimiter(2) ? 3 : 2;
    }
    return isDelimiter(0) ? 1 : 0;
}

}  // namespace

std::vector<Text> SystemFiles::FolderEntries(std::string_view folder) {
    NativePath pattern = Native("FolderEntries", paths::InFolder(folder, "*", Delimiter()));
    WIN32_FIND_DATAW entry{};
    std::uint32_t attributes = 0;
    Code failure = 0;
    if (Attributes(Native("FolderEntries", folder.empty() ? "\\" : folder), attributes, failure) &&
        !IsFolder(attributes)) {
        Raise("FolderEntries", folder, ERROR_DIRECTORY);
    }
    HANDLE found = ::FindFirstFileExW(pattern.text.c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch,
                                      nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (found == INVALID_HANDLE_VALUE) {
        const Code code = ::GetLastError();
        if (code == ERROR_FILE_NOT_FOUND && Exists(folder)) {
            return {};  // the folder of a whole disk has not even entries for itself
        }
        Raise("FolderEntries", folder, code == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND : code);
    }
    const Listing listing(found);
    std::vector<Text> names;
    do {
        if (Text name = Narrow(entry.cFileName); name != "." && name != "..") {
            names.push_back(std::move(name));
        }
    } while (::FindNextFileW(found, &entry) != 0);
    if (const Code code = ::GetLastError(); code != ERROR_NO_MORE_FILES) {
        Raise("FolderEntries", folder, code);
    }
    return names;
}

void SystemFiles::MakeFolder(std::string_view folder) {
    for (std::size_t at = RootSize(folder); at < folder.size();) {
        const std::size_t end = std::min(folder.find_first_of("\\/", at), folder.size());
        const std::string_view part = folder.substr(0, end);
        at = end + 1;
        const NativePath native = Native("MakeFolder", part);
        if (::CreateDirectoryW(native.text.c_str(), nullptr) == 0) {
            const Code code = ::GetLastError();  // an existing folder above may also be one nobody may write
            std::uint32_t attributes = 0;
            Code ignored = 0;
            if (!Attributes(native, attributes, ignored) || !IsFolder(attributes)) {
                Raise("MakeFolder", part, code == ERROR_ALREADY_EXISTS ? ERROR_ACCESS_DENIED : code);
            }
        }
    }
}

void SystemFiles::CopyForArchive(std::string_view source, std::string_view target) {
    FILE_BASIC_INFO times{};
    std::string bytes;
    {
        FileStatus status;
        const Handle read = OpenRegular("CopyForArchive", source, ForReading, status);
        Code code = ReadAll(read.Get(), status.size, bytes);
        if (code == 0 &&
            ::GetFileInformationByHandleEx(read.Get(), FileBasicInfo, &times, sizeof times) == 0) {
            code = ::GetLastError();
        }
        if (code != 0) {
            Raise("CopyForArchive", source, code);
        }
    }
    FileStatus made;
    Handle file = OpenRegular("CopyForArchive", target,
                              {GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ, CREATE_NEW}, made);
    Code code = WriteAll(file.Get(), bytes);
    if (code == 0) {
        code = windows::Flush(file.Get());
    }
    if (code == 0) {
        code = TakeOverTimes(file.Get(), times);
    }
    if (const Code closed = file.Close(); code == 0) {
        code = closed;
    }
    if (code != 0) {
        const NativePath half = Native("CopyForArchive", target);
        (void)::SetFileAttributesW(half.text.c_str(), FILE_ATTRIBUTE_NORMAL);
        (void)Remove(half);  // half a copy is none
        Raise("CopyForArchive", target, code);
    }
}

void SystemFiles::Rename(std::string_view from, std::string_view to) {
    const NativePath present = Native("Rename", from);
    const NativePath wanted = Native("Rename", to);
    const bool isFolder = IsFolder(AttributesOf("Rename", from, present));
    std::uint32_t attributes = 0;
    Code code = 0;
    if (Attributes(wanted, attributes, code)) {
        const bool mayGo = IsFolder(attributes) && !IsLink(attributes);
        if (!mayGo || ::RemoveDirectoryW(wanted.text.c_str()) == 0) {
            Raise("Rename", from, ERROR_ACCESS_DENIED);
        }
    }
    code = waiting::Glance(
        [&] {
            return ::MoveFileExW(present.text.c_str(), wanted.text.c_str(), MOVEFILE_WRITE_THROUGH) != 0
                       ? 0
                       : ::GetLastError();
        },
        IsSharedOrRefused);
    if (code != 0) {
        // What is missing now can only be the folder of the new name.
        Raise("Rename", code == ERROR_PATH_NOT_FOUND ? to : from, code);
    }
    if (isFolder) {  // a file that is renamed is on its way to another name
        m_unsettled->AddFolder(paths::FolderToList(to));
    }
}

void SystemFiles::RemoveEmptyFolder(std::string_view folder) noexcept {
    try {
        // One that is not empty is refused.
        (void)::RemoveDirectoryW(Native("RemoveEmptyFolder", folder).text.c_str());
    } catch (...) {
        // For want of memory: it stays.
    }
}

void SystemFiles::FlushFolder(std::string_view folder) {
    const NativePath native = Native("FlushFolder", paths::InFolder(folder, "", Delimiter()));
    std::uint32_t attributes = 0;
    Code code = 0;
    if (!Attributes(native, attributes, code) || !IsFolder(attributes)) {
        throw cError(errPathNotFound, "SystemFiles.FlushFolder", {}, Text(folder));
    }
    // The system keeps a journal of names, and renames here are written through. Few may flush a folder.
    const HANDLE handle = ::CreateFileW(native.text.c_str(), GENERIC_WRITE, ShareAll, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle != INVALID_HANDLE_VALUE) {
        const Handle closed(handle);
        (void)windows::Flush(handle);
    }
}

void SystemFiles::RemoveFolder(std::string_view folder) {
    const NativePath native = Native("RemoveFolder", folder);
    std::uint32_t attributes = 0;
    Code code = 0;
    if (!Attributes(native, attributes, code)) {
        if (code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND) {
            return;
        }
        Raise("RemoveFolder", folder, code);
    }
    if (!MayWrite(attributes)) {
        (void)::SetFileAttributesW(native.text.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    if (!IsFolder(attributes)) {
        code = Remove(native);
    } else {
        if (!IsLink(attributes)) {  // a link is removed, never followed
            for (const Text& name : FolderEntries(folder)) {
                RemoveFolder(paths::InFolder(folder, name, Delimiter()));
            }
        }
        code = waiting::Glance(
            [&] { return ::RemoveDirectoryW(native.text.c_str()) != 0 ? 0 : ::GetLastError(); },
            [](Code refused) noexcept {
                return IsSharedOrRefused(refused) || refused == ERROR_DIR_NOT_EMPTY;
            });
    }
    if (code != 0) {
        Raise("RemoveFolder", folder, code);
    }
}

}  // namespace kd
