#include "system/windows/ReplaceWindows.h"

#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Scope.h"
#include "system/Waiting.h"
#include "system/windows/FilesWindows.h"
#include "system/windows/OpenModes.h"
#include "system/windows/WindowsApi.h"

namespace kd::windows {

namespace {

/// Attributes that go with a file whose content is replaced; the others tell how it is stored.
constexpr DWORD KeptAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                                 FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
constexpr SECURITY_INFORMATION OwnerAndRights = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;

/// Writes over an open file from its beginning, and flushes it. Returns 0 or a code.
Code WriteOver(RawHandle file, std::string_view bytes) noexcept {
    LARGE_INTEGER begin{};
    if (::SetFilePointerEx(file, begin, nullptr, FILE_BEGIN) == 0) {
        return ::GetLastError();
    }
    Code code = WriteAll(file, bytes);
    if (code == 0) {
        code = CutAt(file, bytes.size());
    }
    return code == 0 ? Flush(file) : code;
}

/// Makes room for a file that grows, so that a full disk is met before a byte of it changes. Returns 0 or a
/// code; the file then has its size back.
Code MakeRoom(RawHandle file, std::size_t present, std::size_t wanted) noexcept {
    if (wanted <= present) {
        return 0;
    }
    const Code code = CutAt(file, wanted);
    if (code != 0) {
        (void)CutAt(file, present);  // the content stood all the while
    }
    return code;
}

void OverwriteInPlace(const char* operation, std::string_view target, const NativePath& path,
                      std::string_view bytes) {
    Code code = 0;
    Handle file = TryOpen(path, {GENERIC_READ | GENERIC_WRITE, ShareAll, OPEN_EXISTING}, code);
    FileStatus status;
    std::string before;
    if (code == 0) {
        code = StatusOf(file.Get(), status);
    }
    if (code == 0) {
        code = ReadAll(file.Get(), status.size, before);
    }
    if (code == 0) {
        code = MakeRoom(file.Get(), before.size(), bytes.size());
        if (code == 0) {
            code = WriteOver(file.Get(), bytes);
            if (code != 0) {
                (void)WriteOver(file.Get(), before);  // the first failure is the one to tell
            }
        }
    }
    if (const Code closed = file.Close(); code == 0) {
        code = closed;
    }
    if (code != 0) {
        Raise(operation, target, code);
    }
}

/// Owner and access rights of an open file; empty where the system does not tell.
std::vector<unsigned char> SecurityOf(RawHandle file) {
    DWORD size = 0;
    (void)::GetKernelObjectSecurity(file, OwnerAndRights, nullptr, 0, &size);
    std::vector<unsigned char> security(size);
    if (size == 0 || ::GetKernelObjectSecurity(file, OwnerAndRights, security.data(), size, &size) == 0) {
        security.clear();
    }
    return security;
}

bool HaveSameOwner(std::vector<unsigned char>& a, std::vector<unsigned char>& b) noexcept {
    PSID ownerA = nullptr;
    PSID ownerB = nullptr;
    BOOL byDefault = 0;
    return ::GetSecurityDescriptorOwner(a.data(), &ownerA, &byDefault) != 0 &&
           ::GetSecurityDescriptorOwner(b.data(), &ownerB, &byDefault) != 0 && ownerA != nullptr &&
           ownerB != nullptr && ::EqualSid(ownerA, ownerB) != 0;
}

bool HaveSameRights(std::vector<unsigned char>& a, std::vector<unsigned char>& b) noexcept {
    PACL rightsA = nullptr;
    PACL rightsB = nullptr;
    BOOL present = 0;
    BOOL byDefault = 0;
    if (::GetSecurityDescriptorDacl(a.data(), &present, &rightsA, &byDefault) == 0 ||
        ::GetSecurityDescriptorDacl(b.data(), &present, &rightsB, &byDefault) == 0) {
        return false;
    }
    if (rightsA == nullptr || rightsB == nullptr) {
        return rightsA == rightsB;
    }
    return rightsA->AclSize == rightsB->AclSize && std::memcmp(rightsA, rightsB, rightsA->AclSize) == 0;
}

/// Gives the new file the owner and the access rights of the present one; false where the user may not. A
/// file system without either has nothing to lose.
bool TakeOverRights(RawHandle made, RawHandle present) {
    std::vector<unsigned char> wanted = SecurityOf(present);
    std::vector<unsigned char> given = SecurityOf(made);
    if (wanted.empty() || given.empty()) {
        return wanted.empty() && given.empty();
    }
    if (!HaveSameOwner(wanted, given) &&
        ::SetKernelObjectSecurity(made, OWNER_SECURITY_INFORMATION, wanted.data()) == 0) {
        return false;
    }
    return HaveSameRights(wanted, given) ||
           ::SetKernelObjectSecurity(made, DACL_SECURITY_INFORMATION, wanted.data()) != 0;
}

/// Gives the new file the attributes and the time of creation of the present one. Returns 0 or a code.
Code TakeOverAttributes(RawHandle made, RawHandle present) noexcept {
    FILE_BASIC_INFO old{};
    if (::GetFileInformationByHandleEx(present, FileBasicInfo, &old, sizeof old) == 0) {
        return ::GetLastError();
    }
    FILE_BASIC_INFO information{};  // a time of 0 stays as it is
    information.CreationTime = old.CreationTime;
    information.FileAttributes = old.FileAttributes & KeptAttributes;
    if (information.FileAttributes == 0) {
        information.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    }
    return ::SetFileInformationByHandle(made, FileBasicInfo, &information, sizeof information) != 0
               ? 0
               : ::GetLastError();
}

/// A new file beside the target, under a name that is not in use.
Handle NewBeside(const std::wstring& target, DWORD access, NativePath& temporary, Code& code) {
    const std::wstring folder = target.substr(0, target.find_last_of(L'\\') + 1);
    LARGE_INTEGER count{};
    (void)::QueryPerformanceCounter(&count);
    auto number = static_cast<std::uint64_t>(count.QuadPart) ^ ::GetCurrentProcessId();
    for (int attempt = 0; attempt < 100; ++attempt, ++number) {
        temporary.text = folder + L".kdsave-" + std::to_wstring(number % 1000000U);
        Handle file = TryOpen(temporary, {access, FILE_SHARE_READ, CREATE_NEW}, code);
        if (code != ERROR_FILE_EXISTS) {
            return file;
        }
    }
    return Handle();
}

/// Whether a folder that refuses a new entry, or another program, leaves the way over the file itself.
bool LeavesTheFileItself(Code code) noexcept {
    return IsSharedOrRefused(code) || code == ERROR_WRITE_PROTECT || code == ERROR_FILENAME_EXCED_RANGE ||
           code == ERROR_INVALID_NAME;
}

/// Puts one file in the place of another. Returns 0 or a code.
Code TakePlace(const NativePath& source, const std::wstring& target) {
    return waiting::Glance(
        [&] {
            const DWORD how = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
            return ::MoveFileExW(source.text.c_str(), target.c_str(), how) != 0 ? 0 : ::GetLastError();
        },
        IsSharedOrRefused);
}

/// What came of writing beside the target.
enum class Outcome { Done, NotPossibleHere };

/// Opens a new file with `access`, so that it can be given the owner and the access rights of another one as
/// far as the user may: many a server lets nobody change rights, and who may only modify what is in a folder
/// gives no file away. Mostly the new file has those of the old one by itself.
template <typename Open>
Handle OpenToGiveRights(DWORD access, Code& code, Open open) {
    Handle file = open(access | WRITE_DAC | WRITE_OWNER);
    for (const DWORD given : {access | WRITE_DAC, access}) {
        if (code == ERROR_ACCESS_DENIED) {
            file = open(given);
        }
    }
    return file;
}

/// A new file beside the target, and like the present one if there is one.
Handle NewInsteadOf(const std::wstring& target, bool isNew, NativePath& temporary, Code& code) {
    constexpr DWORD Usual = GENERIC_READ | GENERIC_WRITE | DELETE;
    const auto open = [&](DWORD access) { return NewBeside(target, access, temporary, code); };
    return isNew ? open(Usual) : OpenToGiveRights(Usual, code, open);
}

/// Writes the new file, makes it like the present one, which is open or there is none, and closes both.
/// Returns 0 or a code; nothing where the user may not give it that one's rights.
std::optional<Code> Furnish(Handle& file, std::string_view bytes, Handle& present) {
    Code code = WriteAll(file.Get(), bytes);
    if (code == 0 && present.IsOpen()) {
        if (!TakeOverRights(file.Get(), present.Get())) {
            return std::nullopt;
        }
        code = TakeOverAttributes(file.Get(), present.Get());
    }
    if (code == 0) {
        code = Flush(file.Get());
    }
    const Code closed = file.Close();
    (void)present.Close();  // only its rights were asked for
    return code != 0 ? code : closed;
}

/// `present` is the open target, not open where there is none; it is closed before its place is taken.
Outcome WriteBeside(const char* operation, std::string_view path, const std::wstring& target, Handle present,
                    std::string_view bytes) {
    const bool isNew = !present.IsOpen();
    NativePath temporary;
    Code code = 0;
    Handle file = NewInsteadOf(target, isNew, temporary, code);
    if (!file.IsOpen()) {
        if (!isNew && LeavesTheFileItself(code)) {
            return Outcome::NotPossibleHere;
        }
        Raise(operation, path, code);
    }
    bool inPlace = false;
    const Scope removed([&] {
        (void)file.Close();  // an open file cannot be removed
        if (!inPlace) {
            // What failed before is told instead.
            (void)Remove(temporary);
        }
    });
    const std::optional<Code> furnished = Furnish(file, bytes, present);
    if (!furnished) {
        return Outcome::NotPossibleHere;
    }
    code = *furnished;
    if (code == 0) {
        code = TakePlace(temporary, target);
        if (code != 0 && !isNew && LeavesTheFileItself(code)) {
            return Outcome::NotPossibleHere;
        }
    }
    if (code != 0) {
        Raise(operation, path, code);
    }
    inPlace = true;
    return Outcome::Done;
}

/// Where an open file stands when all links are followed; `asGiven` where the system does not tell.
std::wstring FinalPath(RawHandle file, const std::wstring& asGiven) {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = ::GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0);
        if (size < path.size()) {
            path.resize(size);
            return path.empty() ? asGiven : path;
        }
        path.resize(size);
    }
}

}  // namespace

namespace {

/// The target, open so that it shows whether it may be written; the user's own rights count too: who may
/// write a folder could replace what he may not write. Not open where it may not, with the reason in `code`.
Handle OpenTarget(const NativePath& target, FileStatus& status, Code& code) {
    Handle present = TryOpen(
        target, {FILE_GENERIC_WRITE | FILE_READ_ATTRIBUTES | READ_CONTROL, ShareAll, OPEN_EXISTING}, code);
    if (code == 0) {
        code = StatusOf(present.Get(), status);
    }
    return present;
}

/// Whether a new file would not be kept secret as this one is, or would leave its other names with the old
/// content.
bool IsWrittenInPlace(const FileStatus& status) noexcept {
    return status.links > 1 || (status.attributes & FILE_ATTRIBUTE_ENCRYPTED) != 0;
}

}  // namespace

void ReplaceWhole(const char* operation, std::string_view path, std::string_view bytes) {
    NativePath target = Native(operation, path);
    std::uint32_t attributes = 0;
    Code code = 0;
    if (!Attributes(target, attributes, code)) {
        if (code != ERROR_FILE_NOT_FOUND) {
            Raise(operation, path, code);
        }
        (void)WriteBeside(operation, path, target.text, Handle(), bytes);
        return;
    }
    const bool isLink = IsLink(attributes);
    FileStatus status;
    Handle present = OpenTarget(target, status, code);
    if (code != 0) {
        Raise(operation, path, isLink ? ERROR_ACCESS_DENIED : code);
    }
    if (!MayWrite(status.attributes)) {
        Raise(operation, path, ERROR_ACCESS_DENIED);
    }
    if (isLink) {
        target.text = FinalPath(present.Get(), target.text);
    }
    if (IsWrittenInPlace(status) ||
        WriteBeside(operation, path, target.text, std::move(present), bytes) == Outcome::NotPossibleHere) {
        OverwriteInPlace(operation, path, target, bytes);
    }
}

bool PutInPlace(const char* operation, std::string_view source, std::string_view target) {
    const NativePath from = Native(operation, source);
    const NativePath to = Native(operation, target);
    std::uint32_t attributes = 0;
    Code code = 0;
    FileStatus status;
    if (!Attributes(to, attributes, code) || IsLink(attributes)) {
        return false;
    }
    Handle present = OpenTarget(to, status, code);
    if (code != 0 || !MayWrite(status.attributes) || IsWrittenInPlace(status)) {
        return false;
    }
    constexpr DWORD Usual = READ_CONTROL | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES;
    Handle file = OpenToGiveRights(Usual, code, [&](DWORD access) {
        return TryOpen(from, {access, ShareAll, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT}, code);
    });
    if (code != 0 || !TakeOverRights(file.Get(), present.Get()) ||
        TakeOverAttributes(file.Get(), present.Get()) != 0) {
        return false;
    }
    (void)file.Close();
    (void)present.Close();  // only its rights were asked for
    code = TakePlace(from, to.text);
    if (code != 0 && !LeavesTheFileItself(code)) {
        Raise(operation, target, code);
    }
    return code == 0;
}

}  // namespace kd::windows
