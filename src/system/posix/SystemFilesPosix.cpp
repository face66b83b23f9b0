#include <dirent.h>
#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigaction is the system's, not the language's
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "base/Bytes.h"
#include "base/Paths.h"
#include "base/cError.h"
#include "system/SystemFiles.h"
#include "system/Waiting.h"
#include "system/posix/DrivePosix.h"
#include "system/posix/FilesPosix.h"
#include "system/posix/OutputPosix.h"
#include "system/posix/OwnOutputs.h"
#include "system/posix/ReplacePosix.h"
#include "system/posix/RightsPosix.h"
#include "system/posix/UnsettledPosix.h"

namespace kd {

using namespace posix;

namespace {

/// Whether a name is the wanted one but for case. A folder may hold thousands: plain letters are compared
/// without their capitals being made.
class SameName {
public:
    SameName(std::string_view wanted, const CodePage& page)
        : m_wanted(wanted), m_upper(page.Upper(wanted)), m_isAscii(IsAscii(wanted)), m_page(page) {}

    bool operator()(std::string_view present) const {
        return m_isAscii && IsAscii(present) ? EqualsNoCaseAscii(present, m_wanted)
                                             : m_page.Upper(present) == m_upper;
    }

private:
    static bool IsAscii(std::string_view text) noexcept { return AsciiRun(text) == text.size(); }

    std::string_view m_wanted;
    Text m_upper;
    bool m_isAscii;
    const CodePage& m_page;
};

}  // namespace

SystemFiles::SystemFiles(const CodePage& page)
    : m_page(page),
      m_unsettled(std::make_unique<Unsettled>()),
      m_keptFolders(std::make_unique<KeptFolders>()),
      m_ownOutputs(std::make_shared<OwnOutputs>()) {
    struct sigaction action {};
    if (::sigaction(SIGXFSZ, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) == 0 &&
        action.sa_handler == SIG_DFL) {
        action.sa_handler = SIG_IGN;
        (void)::sigaction(SIGXFSZ, &action, nullptr);  // fails for a number that is no signal only
    }
}

SystemFiles::~SystemFiles() = default;

char SystemFiles::Delimiter() const {
    return '/';
}

namespace {

/// The path of a file; empty where there is none. `code` is the errno of a folder that could not be looked
/// through, and 0 otherwise.
struct Found {
    Text path;
    int code;
};

/// The file in the folder with that name, exactly or but for case.
Found InAnyCase(std::string_view path, const CodePage& page) {
    const auto slash = path.find_last_of('/');
    const Text folder = slash == std::string_view::npos ? Text(".")
                        : slash == 0                    ? Text("/")
                                                        : Text(path.substr(0, slash));
    const auto name = slash == std::string_view::npos ? path : path.substr(slash + 1);
    const Listing listing(::opendir(folder.c_str()));
    if (!listing) {
        return {{}, errno};
    }
    const SameName isSame(name, page);
    Text found;
    errno = 0;
    while (const dirent* entry = ::readdir(listing.get())) {
        const std::string_view present = entry->d_name;
        if (present == name) {
            return {Text(path), 0};
        }
        // Of several names the first in order, so that the choice does not hang on the listing.
        if (isSame(present) && (found.empty() || present < found)) {
            found = present;
        }
        errno = 0;
    }
    const int code = errno;
    if (found.empty() || name.empty()) {
        return {{}, code};
    }
    return {slash == std::string_view::npos ? found : Text(path.substr(0, slash + 1)) + found, code};
}

/// The path of the file that is meant where nothing stands at the given one; the given one where there is
/// none, or where the folder never tells its names. One that could not tell them now fails: whoever took the
/// file for a missing one would make a second.
Text MeantBy(const char* operation, const Text& missing, const CodePage& page) {
    Found found = InAnyCase(missing, page);
    if (found.code != 0 && found.code != EACCES && found.code != ENOENT && found.code != ENOTDIR) {
        Raise(operation, missing, found.code);
    }
    if (found.path.empty()) {
        return missing;
    }
    return std::move(found.path);
}

}  // namespace

Text SystemFiles::Resolved(const char* operation, std::string_view path) const {
    Text asGiven(path);
    if (IsPresent(asGiven) || errno != ENOENT) {
        return asGiven;  // a disk that did not answer says nothing of another name
    }
    return MeantBy(operation, asGiven, m_page);
}

bool SystemFiles::StatusOf(std::string_view path, struct stat& status) const {
    if (::stat(Text(path).c_str(), &status) == 0) {
        return true;
    }
    if (errno != ENOENT) {
        return false;
    }
    const Text found = InAnyCase(path, m_page).path;
    return !found.empty() && ::stat(found.c_str(), &status) == 0;
}

bool SystemFiles::Exists(std::string_view path) {
    struct stat status {};
    return StatusOf(path, status);
}

bool SystemFiles::IsRegularFile(std::string_view path) {
    struct stat status {};
    return StatusOf(path, status) && S_ISREG(status.st_mode);
}

std::string SystemFiles::Read(std::string_view path) {
    std::string bytes;
    Read(path, bytes);
    return bytes;
}

Descriptor SystemFiles::OpenToRead(std::string_view path, struct stat& status) const {
    // Nearly every path stands as it is, and is then named no more often than it must be.
    int code = 0;
    Descriptor given = TryRegular(Text(path), O_RDONLY, status, code);
    if (code == ENOENT) {
        const Found meant = InAnyCase(path, m_page);
        if (meant.code == 0 && meant.path.empty()) {
            throw cError(errFileNotFound, "SystemFiles.Read", {}, Text(path));
        }
        if (meant.code == 0) {
            return OpenRegular("Read", meant.path, O_RDONLY, status);
        }
        // The file may be there under a name of another case.
        code = meant.code;
    }
    if (code != 0) {
        Raise("Read", path, code);
    }
    return given;
}

void SystemFiles::Read(std::string_view path, std::string& bytes) {
    struct stat status {};
    const Descriptor file = OpenToRead(path, status);
    if (const int code = ReadToEnd(file.Get(), status.st_size, bytes); code != 0) {
        Raise("Read", path, code);
    }
}

std::string SystemFiles::ReadEnd(std::string_view path, std::size_t count) {
    struct stat status {};
    const Descriptor file = OpenToRead(path, status);
    const auto size = static_cast<std::size_t>(status.st_size);
    const std::size_t wanted = std::min(size, count);
    std::string bytes;
    int code = ::lseek(file.Get(), static_cast<off_t>(size - wanted), SEEK_SET) < 0 ? errno : 0;
    if (code == 0) {
        code = ReadToEnd(file.Get(), static_cast<off_t>(wanted), bytes);
    }
    if (code != 0) {
        Raise("Read", path, code);
    }
    bytes.erase(0, bytes.size() - std::min(bytes.size(), count));  // it may have grown meanwhile
    return bytes;
}

namespace {

/// A file opened at its place, and not yet emptied. One that is made is the user's alone until it gets the
/// rights that it is to have: whoever had it open before could write it for good, and it could not take the
/// place of a file that he may not write.
Descriptor OpenAtItsPlace(const Text& target, struct stat& status, bool& isMade) {
    constexpr mode_t Own = 0600;
    return CreateOrOpen("OpenForOutput", target, O_WRONLY | O_NOFOLLOW, Own, status, isMade);
}

/// A file that nobody else has in hand, emptied, and kept from others from here on.
std::unique_ptr<OutputFile> EmptyOutput(Unsettled& unsettled, Descriptor file, const Text& target,
                                        const struct stat& status, KeptOutput kept) {
    // Only where there is something to cut: a file that was cut is brought to the disk by its closing.
    if (const int code = status.st_size == 0 ? 0 : CutAt(file.Get(), 0); code != 0) {
        Raise("OpenForOutput", target, code);
    }
    kept.lock = Descriptor(::fcntl(file.Get(), F_DUPFD_CLOEXEC, 0));
    if (!kept.lock.IsOpen()) {
        Raise("OpenForOutput", target, errno);
    }
    return std::make_unique<PosixOutput>(unsettled, std::move(file), target, PosixOutput::Kind::Fresh,
                                         std::move(kept));
}

/// Another program may be at the same file, for the moment that a save takes.
constexpr int MostTries = waiting::PausesForASave + 1;

}  // namespace

std::unique_ptr<OutputFile> SystemFiles::OpenForOutput(std::string_view path, Patience patience) {
    const Text target(path);
    struct stat status {};
    // At most once, whoever goes on making files of that name.
    bool hasRemoved = false;
    for (int tries = 1;; ++tries) {
        bool isMade = false;
        Descriptor file = OpenAtItsPlace(target, status, isMade);
        const bool isKept = m_ownOutputs->IsOpen(StateOf(status).file) || !Keep(file.Get());
        // One that is gone was another program's, which has done with it.
        const bool isOurs = !isKept && IsStillThere(file.Get(), target, status);
        const bool hasOtherNames = status.st_nlink > 1;
        if (isOurs && hasOtherNames && hasRemoved) {
            Raise("OpenForOutput", target, EACCES);
        }
        if (isOurs && (hasRemoved || IsPrivate(status) || (isMade && !hasOtherNames))) {
            return EmptyOutput(*m_unsettled, std::move(file), target, status,
                               {Descriptor(), OwnOutput(m_ownOutputs, StateOf(status).file),
                                [this](const Text& missing) { return Resolved("TakeRightsOf", missing); }});
        }
        if (tries >= MostTries || (isKept && patience == Patience::None)) {
            throw cError(errFileAlreadyOpen, "SystemFiles.OpenForOutput", {}, target);
        }
        if (isOurs) {
            // Others may have it open, and could read or write what is saved here, which must not reach
            // another name of it either. One of the user's own that cannot go is taken as it is.
            hasRemoved = true;
            if (::unlink(target.c_str()) == 0) {
                m_ownOutputs->Forget(StateOf(status).file);
            } else if (errno != ENOENT && (hasOtherNames || status.st_uid != ::geteuid())) {
                Raise("OpenForOutput", target, errno);
            }
        } else if (isKept) {
            LiveOn();
            waiting::Pause(waiting::PauseForASaveInMilliseconds);
        }
    }
}

std::unique_ptr<OutputFile> SystemFiles::OpenForAppend(std::string_view path) {
    constexpr int Flags = O_WRONLY | O_APPEND;
    Text target(path);
    struct stat status {};
    int code = 0;
    Descriptor file = TryRegular(target, Flags, status, code);
    auto kind = PosixOutput::Kind::Appended;
    if (code == ENOENT) {
        kind = PosixOutput::Kind::MadeToAppend;
        target = MeantBy("OpenForAppend", target, m_page);
        Descriptor made(Open(target, Flags | O_CREAT | O_NONBLOCK | O_NOCTTY));
        code = !made.IsOpen() || ::fstat(made.Get(), &status) != 0 ? errno
               : S_ISREG(status.st_mode)                           ? 0
                                                                   : EACCES;
        file = std::move(made);
    }
    if (code != 0) {
        Raise("OpenForAppend", path, code);
    }
    return std::make_unique<PosixOutput>(*m_unsettled, std::move(file), target, kind);
}

void SystemFiles::CopyFile(std::string_view source, std::string_view target) {
    std::string bytes;
    struct stat status {};
    const Descriptor file = OpenRegular("CopyFile", Resolved("CopyFile", source), O_RDONLY, status);
    if (const int code = ReadToEnd(file.Get(), status.st_size, bytes); code != 0) {
        Raise("CopyFile", source, code);
    }
    ReplaceWhole("CopyFile", Resolved("CopyFile", target), bytes, FlushName::No, file.Get());
}

void SystemFiles::MoveOver(std::string_view source, std::string_view target) {
    m_unsettled->AddName(Text(target));
    if (PutInPlace(Resolved("MoveOver", source), Resolved("MoveOver", target), nullptr, nullptr) !=
        Placing::Done) {
        Files::MoveOver(source, target);
    }
}

bool SystemFiles::MoveSettled(std::string_view source, std::string_view target, const FileState& seen) {
    // Both stand as they are: the one was just written, the other just read, and a target that only another
    // case of its name finds is taken the other way.
    const Placing placing = PutInPlace(Text(source), Text(target), m_unsettled.get(), &seen);
    if (placing == Placing::NotPossibleHere) {
        struct stat status {};
        const Descriptor file = OpenToRead(source, status);
        std::string bytes;
        if (const int code = ReadToEnd(file.Get(), status.st_size, bytes); code != 0) {
            Raise("MoveSettled", source, code);
        }
        m_unsettled->AddName(file.Get(), Text(target));
        ReplaceWhole("MoveSettled", Resolved("MoveSettled", target), bytes, FlushName::No, AlreadySettled);
        DeleteFile(source);
    }
    return placing != Placing::Changed;
}

std::vector<cError> SystemFiles::TrySettle() {
    return m_unsettled->TrySettle([this] { LiveOn(); });
}

void SystemFiles::ReplaceFile(std::string_view path, std::string_view bytes) {
    ReplaceWhole("ReplaceFile", Resolved("ReplaceFile", path), bytes, FlushName::Yes, NoSource);
}

void SystemFiles::DeleteFile(std::string_view path) {
    const Text target = Resolved("DeleteFile", path);
    struct stat status {};
    if (::lstat(target.c_str(), &status) != 0) {
        Raise("DeleteFile", path, errno);
    }
    // A link is only a name: it goes, whatever it leads to.
    const bool mayGo =
        S_ISLNK(status.st_mode) || (S_ISREG(status.st_mode) && MayWrite(status) &&
                                    ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0);
    if (!mayGo) {
        Raise("DeleteFile", path, EACCES);
    }
    if (::unlink(target.c_str()) != 0) {
        Raise("DeleteFile", path, errno);
    }
}

namespace {

/// Whether nobody keeps an open file. Where there are no locks, that is known of those alone that this
/// program has let go itself.
bool IsUnkept(int fd, const FileState& file, const OwnOutputs& own) noexcept {
    return ::flock(fd, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && own.IsLetGo(file));
}

/// Deletes a file that nobody keeps and of which `mayGo` holds.
template <typename MayGo>
void DeleteUnkept(std::string_view path, OwnOutputs& own, MayGo mayGo) noexcept {
    try {
        const Text name(path);
        struct stat status {};
        const Descriptor file(Open(name, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
        // By its name at last: who kept it may have given it another one since it was opened.
        if (file.IsOpen() && ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode) &&
            mayGo(file.Get()) && IsUnkept(file.Get(), StateOf(status), own) &&
            IsStillThere(file.Get(), name, status) && ::unlink(name.c_str()) == 0) {
            own.Forget(StateOf(status).file);
        }
    } catch (...) {
        // For want of memory: it stays.
    }
}

}  // namespace

void SystemFiles::DeleteAbandoned(std::string_view path) noexcept {
    DeleteUnkept(path, *m_ownOutputs, [](int) { return true; });
}

void SystemFiles::DeleteLeftover(std::string_view path) noexcept {
    DeleteUnkept(path, *m_ownOutputs, LocksReachEverybody);
}

}  // namespace kd
