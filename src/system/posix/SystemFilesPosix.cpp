#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <utility>

#include "base/Bytes.h"
#include "base/cError.h"
#include "system/SystemFiles.h"
#include "system/posix/FilesPosix.h"
#include "system/posix/ReplacePosix.h"

namespace kd {

using namespace posix;

namespace {

class PosixOutput : public OutputFile {
public:
    enum class Kind { Fresh, Appended };

    /// `lock` is a second descriptor of a file that is kept from others as long as the object lives or until
    /// it lets them in.
    PosixOutput(Descriptor file, Text path, Kind kind, Descriptor lock = Descriptor())
        : m_file(std::move(file)), m_lock(std::move(lock)), m_path(std::move(path)), m_kind(kind) {}

    void Write(std::string_view bytes) override {
        std::size_t written = 0;
        if (const int code = WriteAll(m_file.Get(), bytes, written); code != 0) {
            if (m_kind == Kind::Appended && written > 0) {
                CutOff(written);
            }
            Raise("Write", m_path, code);
        }
    }
    void Flush() override {
        if (const int code = posix::Flush(m_file.Get()); code != 0) {
            Raise("Flush", m_path, code);
        }
    }
    void Close() override {
        if (const int code = m_file.Close(); code != 0) {
            Raise("Close", m_path, code);
        }
    }

    void LetOthersIn() noexcept override {
        if (m_lock.IsOpen()) {
            (void)::flock(m_lock.Get(), LOCK_UN);  // fails for a descriptor that is none only
        }
    }

private:
    /// Takes half a record away again, which would spoil the next one, but nothing that another program has
    /// added behind it. The failure that left it is the one to tell.
    void CutOff(std::size_t written) const noexcept {
        struct stat status {};
        const off_t end = ::lseek(m_file.Get(), 0, SEEK_CUR);
        if (::fstat(m_file.Get(), &status) == 0 && status.st_size == end) {
            (void)CutAt(m_file.Get(), end - static_cast<off_t>(written));
        }
    }

    Descriptor m_file;
    Descriptor m_lock;
    Text m_path;
    Kind m_kind;
};

/// Opens a regular file of exactly that name for reading; closed when that does not work, for whatever
/// reason.
Descriptor OpenAsGiven(const Text& path, struct stat& status) {
    // Asked before the opening, which alone sets some devices going.
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return Descriptor();
    }
    Descriptor file(Open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY));
    return file.IsOpen() && ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode) ? std::move(file)
                                                                                         : Descriptor();
}

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

SystemFiles::SystemFiles(const CodePage& page) : m_page(page) {
    struct sigaction action {};
    if (::sigaction(SIGXFSZ, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) == 0 &&
        action.sa_handler == SIG_DFL) {
        action.sa_handler = SIG_IGN;
        (void)::sigaction(SIGXFSZ, &action, nullptr);  // fails for a number that is no signal only
    }
}

char SystemFiles::Delimiter() const {
    return '/';
}

Text SystemFiles::Resolved(std::string_view path) const {
    int code = 0;
    return Resolved(path, code);
}

Text SystemFiles::Resolved(std::string_view path, int& code) const {
    code = 0;
    Text asGiven(path);
    if (IsPresent(asGiven) || errno != ENOENT) {
        return asGiven;  // a disk that did not answer says nothing of another name
    }
    const auto slash = path.find_last_of('/');
    const Text folder = slash == std::string_view::npos ? Text(".")
                        : slash == 0                    ? Text("/")
                                                        : Text(path.substr(0, slash));
    const auto name = slash == std::string_view::npos ? path : path.substr(slash + 1);
    const Listing listing(::opendir(folder.c_str()));
    if (!listing) {
        code = errno == ENOENT || errno == ENOTDIR ? 0 : errno;
        return asGiven;
    }
    if (name.empty()) {
        return asGiven;
    }
    const SameName isSame(name, m_page);
    Text found;
    errno = 0;
    while (const dirent* entry = ::readdir(listing.get())) {
        // Of several names the first in order, so that the choice does not hang on the listing.
        if (const std::string_view present = entry->d_name;
            isSame(present) && (found.empty() || present < found)) {
            found = present;
        }
        errno = 0;
    }
    code = errno;
    if (found.empty()) {
        return asGiven;
    }
    return slash == std::string_view::npos ? found : Text(path.substr(0, slash + 1)) + found;
}

bool SystemFiles::Exists(std::string_view path) {
    struct stat status {};
    return ::stat(Text(path).c_str(), &status) == 0 || ::stat(Resolved(path).c_str(), &status) == 0;
}

bool SystemFiles::IsRegularFile(std::string_view path) {
    struct stat status {};
    return ::stat(Resolved(path).c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::string SystemFiles::Read(std::string_view path) {
    std::string bytes;
    Read(path, bytes);
    return bytes;
}

Descriptor SystemFiles::OpenToRead(std::string_view path, struct stat& status) const {
    // Nearly every path stands as it is, and is then looked up no more often than it must be.
    Descriptor given = OpenAsGiven(Text(path), status);
    if (given.IsOpen()) {
        return given;
    }
    int code = 0;
    const Text meant = Resolved(path, code);
    if (code != 0) {
        // The file may be there under a name of another case: whoever takes it for a missing one would make
        // a second.
        Raise("Read", path, code);
    }
    return OpenRegular("Read", meant, O_RDONLY, 0, status);
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

/// A file opened anew at its place, and not yet emptied. One with another name is left to that name.
Descriptor OpenAnew(const Text& target) {
    struct stat status {};
    if (::lstat(target.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode) || !MayWrite(status)) {
            Raise("OpenForOutput", target, EACCES);
        }
        if (status.st_nlink > 1) {
            // Somebody else's name for the same file: what is written here must not reach it.
            if (::unlink(target.c_str()) != 0) {
                Raise("OpenForOutput", target, errno);
            }
        }
    }
    Descriptor file = OpenRegular("OpenForOutput", target, O_WRONLY | O_CREAT | O_NOFOLLOW, 0666, status);
    if (status.st_nlink > 1) {
        Raise("OpenForOutput", target, EACCES);  // it got another name since it was looked at
    }
    return file;
}

/// Whether the open file is still the one of that name; `open` tells about it.
bool IsStillThere(int fd, const Text& target, struct stat& open) noexcept {
    struct stat named {};
    return ::fstat(fd, &open) == 0 && ::lstat(target.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino;
}

}  // namespace

std::unique_ptr<OutputFile> SystemFiles::OpenForOutput(std::string_view path) {
    // Another program may be at the same file, for the moment that a save takes.
    constexpr int Tries = 100;
    constexpr timespec Pause{0, 10'000'000};
    Text target(path);
    bool hasRemoved = false;
    for (int tries = 1;; ++tries) {
        Descriptor file = OpenAnew(target);
        // A file system without locks gives another errno: there the file is taken as it is.
        const bool taken = ::flock(file.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (taken && tries == Tries) {
            throw cError(errFileAlreadyOpen, "SystemFiles.OpenForOutput", {}, target);
        }
        if (taken) {
            (void)::nanosleep(&Pause, nullptr);  // cut short by a signal it is a shorter pause
            continue;
        }
        struct stat status {};
        if (!IsStillThere(file.Get(), target, status)) {
            if (tries == Tries) {
                throw cError(errFileAlreadyOpen, "SystemFiles.OpenForOutput", {}, target);
            }
            continue;  // the other program has done with it and taken it away
        }
        if (status.st_uid != ::geteuid() && !std::exchange(hasRemoved, true)) {
            // Its owner may have it open, and could write into what is saved here.
            if (::unlink(target.c_str()) != 0) {
                Raise("OpenForOutput", target, errno);
            }
            continue;
        }
        // Only where there is something to cut: a file that was cut is brought to the disk by its closing.
        if (const int code = status.st_size == 0 ? 0 : CutAt(file.Get(), 0); code != 0) {
            Raise("OpenForOutput", path, code);
        }
        Descriptor lock(::fcntl(file.Get(), F_DUPFD_CLOEXEC, 0));
        if (!lock.IsOpen()) {
            Raise("OpenForOutput", target, errno);
        }
        return std::make_unique<PosixOutput>(std::move(file), std::move(target), PosixOutput::Kind::Fresh,
                                             std::move(lock));
    }
}

std::unique_ptr<OutputFile> SystemFiles::OpenForAppend(std::string_view path) {
    const Text target = Resolved(path);
    struct stat status {};
    if (::stat(target.c_str(), &status) == 0 && (!S_ISREG(status.st_mode) || !MayWrite(status))) {
        Raise("OpenForAppend", path, EACCES);
    }
    Descriptor file = OpenRegular("OpenForAppend", target, O_WRONLY | O_CREAT | O_APPEND, 0666, status);
    return std::make_unique<PosixOutput>(std::move(file), target, PosixOutput::Kind::Appended);
}

void SystemFiles::CopyFile(std::string_view source, std::string_view target) {
    std::string bytes;
    struct stat status {};
    const Descriptor file = OpenRegular("CopyFile", Resolved(source), O_RDONLY, 0, status);
    if (const int code = ReadToEnd(file.Get(), status.st_size, bytes); code != 0) {
        Raise("CopyFile", source, code);
    }
    ReplaceWhole("CopyFile", Resolved(target), bytes, FlushName::No, file.Get());
}

void SystemFiles::MoveOver(std::string_view source, std::string_view target) {
    if (!PutInPlace(Resolved(source), Resolved(target))) {
        Files::MoveOver(source, target);
    }
}

void SystemFiles::ReplaceFile(std::string_view path, std::string_view bytes) {
    ReplaceWhole("ReplaceFile", Resolved(path), bytes, FlushName::Yes, -1);
}

void SystemFiles::DeleteFile(std::string_view path) {
    const Text target = Resolved(path);
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

}  // namespace kd
