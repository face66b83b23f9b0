#include "system/windows/FilesWindows.h"

#include <algorithm>
#include <array>

#include "base/cError.h"
#include "system/Waiting.h"
#include "system/WholeRead.h"
#include "system/windows/WindowsApi.h"

namespace kd::windows {

namespace {

/// From this length on a path needs the form without a limit; a folder leaves room for a short name in it.
constexpr std::size_t LongPath = 240;
constexpr std::size_t MostLettersInAName = 255;
/// The most that one call reads or writes.
constexpr std::size_t Portion = 1U << 24U;

/// A code that not every edition of the system's header names.
constexpr Code DiskQuotaExceeded = 1295;

constexpr std::wstring_view Unlimited = L"\\\\?\\";
constexpr std::wstring_view Device = L"\\\\.\\";

/// The complete path, with the current folder before a relative one; empty on failure.
std::wstring FullPath(const std::wstring& path) {
    std::wstring full(path.size() + MAX_PATH, L'\0');
    for (;;) {
        const DWORD size =
            ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        if (size < full.size()) {
            full.resize(size);
            return full;
        }
        full.resize(size);
    }
}

/// Letters of the longest part of a path.
std::size_t LongestName(std::wstring_view path) noexcept {
    std::size_t longest = 0;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find(L'\\', begin), path.size());
        longest = std::max(longest, end - begin);
        begin = end + 1;
    }
    return longest;
}

}  // namespace

int (*FlushBuffers)(RawHandle) = [](RawHandle file) -> int { return ::FlushFileBuffers(file); };

RawHandle (*OpenByName)(const wchar_t*, const OpenMode&) = [](const wchar_t* path,
                                                              const OpenMode& mode) -> RawHandle {
    return ::CreateFileW(path, mode.access, mode.sharing, nullptr, mode.disposition,
                         FILE_ATTRIBUTE_NORMAL | mode.flags, nullptr);
};

std::uint64_t (*Ticks)() = []() -> std::uint64_t { return ::GetTickCount64(); };

std::wstring Wide(std::string_view text) {
    const int bytes = static_cast<int>(text.size());
    const int size = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(std::max(size, 0)), L'\0');
    (void)::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), size);
    return wide;
}

Text Narrow(std::wstring_view text) {
    const int letters = static_cast<int>(text.size());
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), letters, nullptr, 0, nullptr, nullptr);
    Text narrow(static_cast<std::size_t>(std::max(size, 0)), '\0');
    (void)::WideCharToMultiByte(CP_UTF8, 0, text.data(), letters, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

NativePath Native(const char* operation, std::string_view path) {
    if (path.empty()) {
        Raise(operation, path, ERROR_FILE_NOT_FOUND);
    }
    NativePath native{Wide(path)};
    std::replace(native.text.begin(), native.text.end(), L'/', L'\\');
    if (native.text.compare(0, Unlimited.size(), Unlimited) == 0) {
        return native;
    }
    std::wstring full = FullPath(native.text);
    if (full.empty()) {
        return native;
    }
    if (full.compare(0, Device.size(), Device) == 0) {
        native.refusal = ERROR_ACCESS_DENIED;
        return native;
    }
    if (LongestName(full) > MostLettersInAName) {
        native.refusal = ERROR_FILENAME_EXCED_RANGE;  // not every system says so by itself
    }
    if (full.size() >= LongPath) {
        const bool onServer = full.compare(0, 2, L"\\\\") == 0;
        full = std::wstring(Unlimited) + (onServer ? L"UNC" + full.substr(1) : full);
    }
    native.text = std::move(full);
    return native;
}

Handle::~Handle() {
    (void)Close();  // nothing was written that a caller counts on: writers call Close
}

Code Handle::Close() noexcept {
    if (m_handle == nullptr) {
        return 0;
    }
    const Code code = ::CloseHandle(m_handle) != 0 ? 0 : ::GetLastError();
    m_handle = nullptr;
    return code;
}

cError FailureOf(const char* operation, std::string_view path, Code code) {
    std::int32_t number = errDevice;
    switch (code) {
        case ERROR_FILE_NOT_FOUND:
            number = errFileNotFound;
            break;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_DIRECTORY:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            number = errPathNotFound;
            break;
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT:
        case ERROR_USER_MAPPED_FILE:
        case ERROR_NETWORK_ACCESS_DENIED:
        case ERROR_PRIVILEGE_NOT_HELD:
        case ERROR_CANT_RESOLVE_FILENAME:
        case ERROR_DELETE_PENDING:
        case ERROR_DIR_NOT_EMPTY:
            number = errPermissionDenied;
            break;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case DiskQuotaExceeded:
        case ERROR_FILE_TOO_LARGE:
            number = errDiskFull;
            break;
        default:
            break;
    }
    return {number, std::string("SystemFiles.").append(operation), {}, Text(path)};
}

void Raise(const char* operation, std::string_view path, Code code) {
    throw cError(FailureOf(operation, path, code));
}

bool IsShared(Code code) noexcept {
    return code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION || code == ERROR_DELETE_PENDING;
}

bool IsSharedOrRefused(Code code) noexcept {
    return IsShared(code) || code == ERROR_ACCESS_DENIED || code == ERROR_USER_MAPPED_FILE;
}

Handle OpenAtOnce(const NativePath& path, const OpenMode& mode, Code& code) {
    code = path.refusal;
    if (code != 0) {
        return Handle();
    }
    const HANDLE file = OpenByName(path.text.c_str(), mode);
    if (file == INVALID_HANDLE_VALUE) {
        code = ::GetLastError();
        return Handle();
    }
    Handle handle(file);
    if (::GetFileType(file) != FILE_TYPE_DISK) {
        code = ERROR_ACCESS_DENIED;
        return Handle();
    }
    return handle;
}

Handle TryOpen(const NativePath& path, const OpenMode& mode, Code& code) {
    Handle file;
    (void)waiting::Glance(
        [&] {
            file = OpenAtOnce(path, mode, code);
            return code;
        },
        IsShared);
    return file;
}

Handle OpenRegular(const char* operation, std::string_view path, const OpenMode& mode, FileStatus& status) {
    Code code = 0;
    Handle file = TryOpen(Native(operation, path), mode, code);
    if (code == 0) {
        code = StatusOf(file.Get(), status);
    }
    if (code != 0) {
        Raise(operation, path, code);
    }
    return file;
}

FileState StateOf(std::string_view path) noexcept {
    try {
        const NativePath native = Native("StateOf", path);
        const HANDLE handle = ::CreateFileW(native.text.c_str(), FILE_READ_ATTRIBUTES,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        const Handle file(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
        BY_HANDLE_FILE_INFORMATION known{};
        if (!file.IsOpen() || ::GetFileInformationByHandle(handle, &known) == 0) {
            return {};
        }
        const auto joined = [](Code high, Code low) { return (std::uint64_t{high} << 32U) | low; };
        const FILETIME& written = known.ftLastWriteTime;
        return {{known.dwVolumeSerialNumber, joined(known.nFileIndexHigh, known.nFileIndexLow)},
                joined(known.nFileSizeHigh, known.nFileSizeLow),
                static_cast<std::int64_t>(joined(written.dwHighDateTime, written.dwLowDateTime))};
    } catch (...) {
        return {};  // for want of memory
    }
}

bool Attributes(const NativePath& path, std::uint32_t& attributes, Code& code) noexcept {
    code = path.refusal;
    if (code != 0) {
        return false;
    }
    attributes = ::GetFileAttributesW(path.text.c_str());
    code = attributes == INVALID_FILE_ATTRIBUTES ? ::GetLastError() : 0;
    return code == 0;
}

std::uint32_t AttributesOf(const char* operation, std::string_view path, const NativePath& native) {
    std::uint32_t attributes = 0;
    Code code = 0;
    if (!Attributes(native, attributes, code)) {
        Raise(operation, path, code);
    }
    return attributes;
}

Code Remove(const NativePath& path) {
    return waiting::Glance([&] { return ::DeleteFileW(path.text.c_str()) != 0 ? 0 : ::GetLastError(); },
                           IsSharedOrRefused);
}

bool MayWrite(std::uint32_t attributes) noexcept {
    return (attributes & FILE_ATTRIBUTE_READONLY) == 0;
}

Code StatusOf(RawHandle file, FileStatus& status) noexcept {
    BY_HANDLE_FILE_INFORMATION information{};
    if (::GetFileInformationByHandle(file, &information) == 0) {
        return ::GetLastError();
    }
    status.attributes = information.dwFileAttributes;
    status.links = information.nNumberOfLinks;
    status.size = (std::uint64_t{information.nFileSizeHigh} << 32U) | information.nFileSizeLow;
    return 0;
}

Code ReadAll(RawHandle file, std::uint64_t size, std::string& bytes) {
    const auto read = [file](char* into, std::size_t most, std::size_t& got) -> Code {
        DWORD count = 0;
        const auto wanted = static_cast<DWORD>(std::min(most, Portion));
        const Code code = ::ReadFile(file, into, wanted, &count, nullptr) != 0 ? 0 : ::GetLastError();
        got = count;
        return code == ERROR_HANDLE_EOF ? 0 : code;
    };
    return ReadWhole(read, static_cast<std::size_t>(size), bytes);
}

namespace {

Code WriteAt(RawHandle file, std::string_view bytes, bool atTheEnd) noexcept {
    while (!bytes.empty()) {
        OVERLAPPED end{};
        end.Offset = 0xFFFFFFFFU;  // the two together stand for "behind the last byte"
        end.OffsetHigh = 0xFFFFFFFFU;
        DWORD written = 0;
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), Portion));
        if (::WriteFile(file, bytes.data(), wanted, &written, atTheEnd ? &end : nullptr) == 0) {
            return ::GetLastError();
        }
        if (written == 0) {
            return ERROR_DISK_FULL;
        }
        bytes.remove_prefix(written);
    }
    return 0;
}

}  // namespace

Code WriteAll(RawHandle file, std::string_view bytes) noexcept {
    return WriteAt(file, bytes, false);
}

Code AppendAll(RawHandle file, std::string_view bytes) noexcept {
    return WriteAt(file, bytes, true);
}

Code Flush(RawHandle file) noexcept {
    return FlushBuffers(file) != 0 ? 0 : ::GetLastError();
}

Code CutAt(RawHandle file, std::uint64_t size) noexcept {
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    const bool cut = ::SetFilePointerEx(file, end, nullptr, FILE_BEGIN) != 0 && ::SetEndOfFile(file) != 0;
    return cut ? 0 : ::GetLastError();
}

namespace {

/// The byte that stands for the turn, where no file has one.
OVERLAPPED FarBehindTheEnd() noexcept {
    OVERLAPPED place{};
    place.OffsetHigh = 0x7FFFFFFFU;
    return place;
}

}  // namespace

AppendTurn::AppendTurn(RawHandle file, bool waits) : m_file(file) {
    const auto take = [&] {
        OVERLAPPED place = FarBehindTheEnd();
        const DWORD how = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
        return ::LockFileEx(m_file, how, 0, 1, 0, &place) != 0 ? 0 : ::GetLastError();
    };
    m_isTaken = (waits ? waiting::ASave(take, IsShared) : take()) == 0;
}

AppendTurn::~AppendTurn() {
    if (m_isTaken) {
        OVERLAPPED place = FarBehindTheEnd();
        (void)::UnlockFileEx(m_file, 0, 1, 0, &place);  // fails for a handle that is none only
    }
}

Code Duplicate(RawHandle file, Handle& second) noexcept {
    const HANDLE process = ::GetCurrentProcess();
    HANDLE made = nullptr;
    if (::DuplicateHandle(process, file, process, &made, 0, FALSE, DUPLICATE_SAME_ACCESS) == 0) {
        return ::GetLastError();
    }
    second = Handle(made);
    return 0;
}

}  // namespace kd::windows
