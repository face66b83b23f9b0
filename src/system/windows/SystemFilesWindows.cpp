#include <memory>
#include <utility>

#include "base/Paths.h"
#include "base/cError.h"
#include "system/SystemFiles.h"
#include "system/windows/FilesWindows.h"
#include "system/windows/ReplaceWindows.h"
#include "system/windows/WindowsApi.h"

namespace kd {

using namespace windows;

namespace {

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr OpenMode ForReading{GENERIC_READ, ShareAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN};
/// Others may read the file and take its name away, but nobody else may write it.
constexpr DWORD ShareAllButWriting = FILE_SHARE_READ | FILE_SHARE_DELETE;

bool IsFolder(std::uint32_t attributes) noexcept {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}
bool IsLink(std::uint32_t attributes) noexcept {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

/// Closes a folder's listing at the end of the scope.
struct CloseListing {
    using pointer = HANDLE;
    void operator()(HANDLE listing) const noexcept { (void)::FindClose(listing); }
};
using Listing = std::unique_ptr<HANDLE, CloseListing>;

class WindowsOutput : public OutputFile {
public:
    enum class Kind { Fresh, Appended };

    /// `lock` is a second handle of a file that is kept from others as long as the object lives or until it
    /// lets them in.
    WindowsOutput(Handle file, Text path, Kind kind, Handle lock = Handle())
        : m_file(std::move(file)), m_lock(std::move(lock)), m_path(std::move(path)), m_kind(kind) {}

    void Write(std::string_view bytes) override {
        if (m_kind == Kind::Fresh) {
            Check("Write", WriteAll(m_file.Get(), bytes));
            return;
        }
        const AppendTurn turn(m_file.Get(), m_waits);
        m_waits = turn.IsTaken();  // one that has not come once would be waited for at every record
        FileStatus before;
        Check("Write", StatusOf(m_file.Get(), before));
        const Code code = AppendAll(m_file.Get(), bytes);
        if (code != 0) {
            // Half a record would spoil the next one that is added.
            (void)CutAt(m_file.Get(), before.size);  // the first failure is the one to tell
        }
        Check("Write", code);
    }
    void Flush() override { Check("Flush", windows::Flush(m_file.Get())); }
    void Close() override { Check("Close", m_file.Close()); }
    void LetOthersIn() noexcept override {
        // Either handle keeps the file, and what was not written by now never will be.
        (void)m_lock.Close();
        (void)m_file.Close();
    }

private:
    void Check(const char* operation, Code code) const {
        if (code != 0) {
            Raise(operation, m_path, code);
        }
    }

    Handle m_file;
    Handle m_lock;
    Text m_path;
    Kind m_kind;
    bool m_waits = true;
};

/// Attributes of what stands at the path, raised as the operation's failure where there is nothing.
std::uint32_t AttributesOf(const char* operation, std::string_view path, const NativePath& native) {
    std::uint32_t attributes = 0;
    Code code = 0;
    if (!Attributes(native, attributes, code)) {
        Raise(operation, path, code);
    }
    return attributes;
}

/// Deletes one name, and says with 0 or a code what came of it.
Code Remove(const NativePath& path) {
    return Patiently([&] { return ::DeleteFileW(path.text.c_str()) != 0 ? 0 : ::GetLastError(); },
                     IsSharedOrRefused);
}

/// Opens a file to be written anew, as the only one who may write it; it is not emptied yet. Another program
/// that has it in hand is waited for, as long as a save takes.
Handle OpenAlone(std::string_view path, const NativePath& native, FileStatus& status) {
    constexpr OpenMode Alone{GENERIC_WRITE, ShareAllButWriting, OPEN_ALWAYS, FILE_FLAG_OPEN_REPARSE_POINT};
    Code code = 0;
    std::uint32_t attributes = 0;
    if (Attributes(native, attributes, code) &&
        (IsFolder(attributes) || IsLink(attributes) || !MayWrite(attributes))) {
        Raise("OpenForOutput", path, ERROR_ACCESS_DENIED);
    }
    if (native.refusal != 0) {
        Raise("OpenForOutput", path, native.refusal);
    }
    Handle file;
    const auto open = [&] {
        file = OpenAtOnce(native, Alone, code);
        return code;
    };
    // A name that was deleted is refused until the last who has the file open is gone.
    (void)Patiently([&] { return PatientlyForASave(open, IsShared); },
                    [](Code refused) noexcept { return refused == ERROR_ACCESS_DENIED; });
    if (IsShared(code)) {
        throw cError(errFileAlreadyOpen, "SystemFiles.OpenForOutput", {}, Text(path));
    }
    if (code == 0) {
        code = StatusOf(file.Get(), status);
    }
    if (code == 0 &&
        (IsFolder(status.attributes) || IsLink(status.attributes) || !MayWrite(status.attributes))) {
        code = ERROR_ACCESS_DENIED;  // it came since the attributes were looked at
    }
    if (code != 0) {
        Raise("OpenForOutput", path, code);
    }
    return file;
}

/// Takes away a name of a file that has others; nothing else, whatever has come to stand there meanwhile.
/// Returns 0 or a code.
Code RemoveOneOfSeveralNames(const NativePath& path) {
    Code code = 0;
    FileStatus status;
    const Handle file = TryOpen(
        path, {GENERIC_WRITE | DELETE, ShareAllButWriting, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT},
        code);
    if (code == 0) {
        code = StatusOf(file.Get(), status);
    }
    if (code == 0 && status.links > 1) {
        FILE_DISPOSITION_INFO gone{TRUE};
        if (::SetFileInformationByHandle(file.Get(), FileDispositionInfo, &gone, sizeof gone) == 0) {
            code = ::GetLastError();
        }
    }
    return code == ERROR_FILE_NOT_FOUND ? 0 : code;
}

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

SystemFiles::SystemFiles(const CodePage& page) : m_page(page) {}

char SystemFiles::Delimiter() const {
    return '\\';
}

bool SystemFiles::Exists(std::string_view path) {
    if (path.empty()) {
        return false;
    }
    const NativePath native = Native("Exists", path);
    std::uint32_t attributes = 0;
    Code code = 0;
    if (!Attributes(native, attributes, code)) {
        return false;
    }
    if (!IsLink(attributes)) {
        return true;
    }
    const HANDLE target = ::CreateFileW(native.text.c_str(), FILE_READ_ATTRIBUTES, ShareAll, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    const Handle closed(target == INVALID_HANDLE_VALUE ? nullptr : target);
    return closed.IsOpen();
}

bool SystemFiles::IsRegularFile(std::string_view path) {
    if (path.empty()) {
        return false;
    }
    const NativePath native = Native("IsRegularFile", path);
    std::uint32_t attributes = 0;
    Code code = 0;
    return Attributes(native, attributes, code) && !IsFolder(attributes) &&
           (!IsLink(attributes) || Exists(path));
}

std::string SystemFiles::Read(std::string_view path) {
    std::string bytes;
    Read(path, bytes);
    return bytes;
}

void SystemFiles::Read(std::string_view path, std::string& bytes) {
    bytes.clear();
    FileStatus status;
    const Handle file = OpenRegular("Read", path, ForReading, status);
    if (const Code code = ReadAll(file.Get(), status.size, bytes); code != 0) {
        Raise("Read", path, code);
    }
}

std::unique_ptr<OutputFile> SystemFiles::OpenForOutput(std::string_view path) {
    const NativePath native = Native("OpenForOutput", path);
    FileStatus status;
    Handle file = OpenAlone(path, native, status);
    Code code = 0;
    if (status.links > 1) {
        // Somebody else's name for the same file: what is written here must not reach it.
        (void)file.Close();
        code = RemoveOneOfSeveralNames(native);
        if (IsShared(code)) {
            throw cError(errFileAlreadyOpen, "SystemFiles.OpenForOutput", {}, Text(path));
        }
        if (code == 0) {
            file = OpenAlone(path, native, status);
            code = status.links > 1 ? ERROR_ACCESS_DENIED : 0;
        }
    }
    Handle lock;
    if (code == 0) {
        code = Duplicate(file.Get(), lock);
    }
    if (code == 0) {
        code = CutAt(file.Get(), 0);
    }
    if (code != 0) {
        Raise("OpenForOutput", path, code);
    }
    return std::make_unique<WindowsOutput>(std::move(file), Text(path), WindowsOutput::Kind::Fresh,
                                           std::move(lock));
}

std::unique_ptr<OutputFile> SystemFiles::OpenForAppend(std::string_view path) {
    FileStatus status;
    Handle file = OpenRegular("OpenForAppend", path, {GENERIC_WRITE, ShareAll, OPEN_ALWAYS}, status);
    if (!MayWrite(status.attributes)) {
        Raise("OpenForAppend", path, ERROR_ACCESS_DENIED);
    }
    return std::make_unique<WindowsOutput>(std::move(file), Text(path), WindowsOutput::Kind::Appended);
}

void SystemFiles::CopyFile(std::string_view source, std::string_view target) {
    const std::string bytes = Read(source);
    ReplaceWhole("CopyFile", target, bytes);
}

void SystemFiles::ReplaceFile(std::string_view path, std::string_view bytes) {
    ReplaceWhole("ReplaceFile", path, bytes);
}

void SystemFiles::DeleteFile(std::string_view path) {
    const NativePath native = Native("DeleteFile", path);
    const std::uint32_t attributes = AttributesOf("DeleteFile", path, native);
    if (IsFolder(attributes) || !MayWrite(attributes)) {
        Raise("DeleteFile", path, ERROR_ACCESS_DENIED);
    }
    Code code = 0;
    if (!IsLink(attributes)) {
        // The right to write is asked for too: a folder's owner could delete what he may not write. That
        // somebody keeps the file says that the right is there, and he may be this program.
        (void)OpenAtOnce(native, {FILE_WRITE_DATA, ShareAll, OPEN_EXISTING}, code);
        code = IsShared(code) ? 0 : code;
    }
    if (code == 0) {
        code = Remove(native);
    }
    if (code != 0) {
        Raise("DeleteFile", path, code);
    }
}

std::vector<Text> SystemFiles::FolderEntries(std::string_view folder) {
    NativePath pattern = Native("FolderEntries", paths::Join(folder, "*", Delimiter()));
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
    (void)AttributesOf("Rename", from, present);
    std::uint32_t attributes = 0;
    Code code = 0;
    if (Attributes(wanted, attributes, code)) {
        const bool mayGo = IsFolder(attributes) && !IsLink(attributes);
        if (!mayGo || ::RemoveDirectoryW(wanted.text.c_str()) == 0) {
            Raise("Rename", from, ERROR_ACCESS_DENIED);
        }
    }
    code = Patiently(
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
}

void SystemFiles::FlushFolder(std::string_view folder) {
    const NativePath native = Native("FlushFolder", paths::Join(folder, "", Delimiter()));
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
                RemoveFolder(paths::Join(folder, name, Delimiter()));
            }
        }
        code = Patiently([&] { return ::RemoveDirectoryW(native.text.c_str()) != 0 ? 0 : ::GetLastError(); },
                         [](Code refused) noexcept {
                             return IsSharedOrRefused(refused) || refused == ERROR_DIR_NOT_EMPTY;
                         });
    }
    if (code != 0) {
        Raise("RemoveFolder", folder, code);
    }
}

}  // namespace kd
