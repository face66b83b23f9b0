#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "base/cError.h"
#include "platform/Files.h"

/// The system's calls, with the failures of the house. Only for the sources beside this header and their
/// tests.
namespace kd::windows {

/// What the system calls a HANDLE and a DWORD, without its header.
using RawHandle = void*;
using Code = unsigned long;

std::wstring Wide(std::string_view text);
Text Narrow(std::wstring_view text);

/// A path as the system takes it: complete, with backslashes, and beyond the old limit of 260 characters in
/// the form that has none.
struct NativePath {
    std::wstring text;
    /// Why nothing can be there, 0 for no reason: "NUL", "COM1" and pipes are no files in whatever folder
    /// they stand, and no name is longer than 255 letters.
    Code refusal = 0;
};
/// @throws cError(errFileNotFound) for an empty path.
NativePath Native(const char* operation, std::string_view path);

/// An open file of the system, given back at the end of the scope.
class Handle {
public:
    explicit Handle(RawHandle handle = nullptr) noexcept : m_handle(handle) {}
    ~Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&& other) noexcept : m_handle(other.m_handle) { other.m_handle = nullptr; }
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }

    RawHandle Get() const noexcept { return m_handle; }
    bool IsOpen() const noexcept { return m_handle != nullptr; }
    /// Closes, and tells what the system says of it (0 for nothing).
    Code Close() noexcept;

private:
    RawHandle m_handle;
};

/// The failure that `code` stands for.
cError FailureOf(const char* operation, std::string_view path, Code code);
/// Raises it.
[[noreturn]] void Raise(const char* operation, std::string_view path, Code code);

/// Whether a code says that another program is in the way.
bool IsShared(Code code) noexcept;
/// The same, and a bare refusal as well: that is what a name gets which another program keeps busy.
bool IsSharedOrRefused(Code code) noexcept;

/// Milliseconds of the system's clock, which goes on in steps of some of them. May be replaced by tests.
extern std::uint64_t (*Ticks)();

/// The system's flush of an open file or folder; 0 for a failure. May be replaced by tests.
extern int (*FlushBuffers)(RawHandle);

/// What is known of an open file.
struct FileStatus {
    std::uint32_t attributes = 0;
    std::uint32_t links = 0;
    std::uint64_t size = 0;
};

/// How to open a file; the values are the system's.
struct OpenMode {
    Code access;
    Code sharing;
    Code disposition;
    Code flags = 0;
};

/// The system's opening of a file; what it calls an invalid handle for a failure. May be replaced by tests.
extern RawHandle (*OpenByName)(const wchar_t* path, const OpenMode& mode);

/// Opens a regular file; what cannot be one is not even opened, a folder is refused. The code of a failure is
/// 0 for none.
Handle OpenAtOnce(const NativePath& path, const OpenMode& mode, Code& code);
/// The same, and waits while somebody else is in the way.
Handle TryOpen(const NativePath& path, const OpenMode& mode, Code& code);
/// The same, with the failure raised.
Handle OpenRegular(const char* operation, std::string_view path, const OpenMode& mode, FileStatus& status);

/// Which file a path leads to, and in which state; unknown where that is none, or the system does not tell.
FileState StateOf(std::string_view path) noexcept;

/// Attributes of what stands at the path itself (a link is not followed); false where there is nothing.
bool Attributes(const NativePath& path, std::uint32_t& attributes, Code& code) noexcept;

/// The same, with the failure raised as the operation's.
std::uint32_t AttributesOf(const char* operation, std::string_view path, const NativePath& native);

/// Deletes one name, waiting while somebody else is in the way. Returns 0 or a code.
Code Remove(const NativePath& path);

/// Whether a file's attributes let anybody write it.
bool MayWrite(std::uint32_t attributes) noexcept;

/// Each returns 0 or a code.
Code StatusOf(RawHandle file, FileStatus& status) noexcept;
Code ReadAll(RawHandle file, std::uint64_t size, std::string& bytes);
Code WriteAll(RawHandle file, std::string_view bytes) noexcept;
/// Writes behind the last byte, wherever that is by now.
Code AppendAll(RawHandle file, std::string_view bytes) noexcept;
Code Flush(RawHandle file) noexcept;
/// Gives an open file that size; writing goes on there.
Code CutAt(RawHandle file, std::uint64_t size) noexcept;
/// The turn of one among those that add to a file, as long as the object lives: on a server the end is looked
/// up first, and what another one has written there since would be lost. A turn that does not come in the
/// time of a save is done without, and so it is where the file system has none.
class AppendTurn {
public:
    /// `waits` is whether to wait for it.
    AppendTurn(RawHandle file, bool waits);
    ~AppendTurn();
    AppendTurn(const AppendTurn&) = delete;
    AppendTurn& operator=(const AppendTurn&) = delete;
    bool IsTaken() const noexcept { return m_isTaken; }

private:
    RawHandle m_file;
    bool m_isTaken = false;
};
/// A second handle of the same opening, which goes on keeping the file as the first one did.
Code Duplicate(RawHandle file, Handle& second) noexcept;

}  // namespace kd::windows
