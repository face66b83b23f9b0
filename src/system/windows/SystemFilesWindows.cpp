#include <memory>
#include <utility>

#include "base/cError.h"
#include "system/SystemFiles.h"
#include "system/Waiting.h"
#include "system/windows/FilesWindows.h"
#include "system/windows/OpenModes.h"
#include "system/windows/OutputWindows.h"
#include "system/windows/ReplaceWindows.h"
#include "system/windows/UnsettledWindows.h"
#include "system/windows/WindowsApi.h"

namespace kd {

using namespace windows;

namespace {

/// Opens a file to be written anew, as the only one who may write it; it is not emptied yet.
/// `meanwhile` runs before each try.
Handle OpenAlone(std::string_view path, const NativePath& native, Patience patience, FileStatus& status,
                 const std::function<void()>& meanwhile) {
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
        meanwhile();
        file = OpenAtOnce(native, Alone, code);
        return code;
    };
    if (patience == Patience::None) {
        (void)open();
    } else {
        // A name that was deleted is refused until the last who has the file open is gone.
        (void)waiting::Glance([&] { return waiting::ASave(open, IsShared); },
                              [](Code refused) noexcept { return refused == ERROR_ACCESS_DENIED; });
    }
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

/// Deletes an open file, or the name that it was opened by where it has several. Returns 0 or a code.
Code RemoveOpen(const Handle& file) noexcept {
    FILE_DISPOSITION_INFO gone{TRUE};
    return ::SetFileInformationByHandle(file.Get(), FileDispositionInfo, &gone, sizeof gone) != 0
               ? 0
               : ::GetLastError();
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
        code = RemoveOpen(file);
    }
    return code == ERROR_FILE_NOT_FOUND ? 0 : code;
}

}  // namespace

SystemFiles::SystemFiles(const CodePage& page) : m_page(page), m_unsettled(std::make_unique<Unsettled>()) {}

SystemFiles::~SystemFiles() = default;

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

std::unique_ptr<OutputFile> SystemFiles::OpenForOutput(std::string_view path, Patience patience) {
    const NativePath native = Native("OpenForOutput", path);
    FileStatus status;
    const auto meanwhile = [this] { LiveOn(); };
    Handle file = OpenAlone(path, native, patience, status, meanwhile);
    Code code = 0;
    if (status.links > 1) {
        // Somebody else's name for the same file: what is written here must not reach it.
        (void)file.Close();
        code = RemoveOneOfSeveralNames(native);
        if (IsShared(code)) {
            throw cError(errFileAlreadyOpen, "SystemFiles.OpenForOutput", {}, Text(path));
        }
        if (code == 0) {
            file = OpenAlone(path, native, patience, status, meanwhile);
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
    return std::make_unique<WindowsOutput>(*m_unsettled, std::move(file), Text(path),
                                           WindowsOutput::Kind::Fresh, std::move(lock));
}

std::unique_ptr<OutputFile> SystemFiles::OpenForAppend(std::string_view path) {
    FileStatus status;
    Handle file = OpenRegular("OpenForAppend", path, {GENERIC_WRITE, ShareAll, OPEN_ALWAYS}, status);
    if (!MayWrite(status.attributes)) {
        Raise("OpenForAppend", path, ERROR_ACCESS_DENIED);
    }
    return std::make_unique<WindowsOutput>(*m_unsettled, std::move(file), Text(path),
                                           WindowsOutput::Kind::Appended);
}

void SystemFiles::CopyFile(std::string_view source, std::string_view target) {
    const std::string bytes = Read(source);
    ReplaceWhole("CopyFile", target, bytes);
}

void SystemFiles::ReplaceFile(std::string_view path, std::string_view bytes) {
    ReplaceWhole("ReplaceFile", path, bytes);
}

bool SystemFiles::MoveSettled(std::string_view source, std::string_view target, const FileState& seen) {
    if (!(StateOf(target) == seen)) {
        return false;
    }
    if (!PutInPlace("MoveSettled", source, target)) {
        Files::MoveOver(source, target);
    }
    return true;
}

std::vector<cError> SystemFiles::TrySettle() {
    return m_unsettled->TrySettle([this] { LiveOn(); });
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

void SystemFiles::DeleteAbandoned(std::string_view path) noexcept {
    try {
        const NativePath native = Native("DeleteAbandoned", path);
        Code code = 0;
        FileStatus status;
        const auto mode = [](Code access) {
            return OpenMode{access, ShareAllButWriting, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT};
        };
        // One that is kept is not waited for, but whoever looks at one that is not mostly has soon done.
        if (!OpenAtOnce(native, mode(GENERIC_WRITE), code).IsOpen()) {
            return;
        }
        // Kept from others until it is gone: by its name it might be somebody's again.
        const Handle file = TryOpen(native, mode(GENERIC_WRITE | DELETE), code);
        if (file.IsOpen() && StatusOf(file.Get(), status) == 0 && !IsLink(status.attributes)) {
            (void)RemoveOpen(file);  // what cannot be removed stays
        }
    } catch (...) {
        // For want of memory: it stays.
    }
}

}  // namespace kd
