#include "system/posix/FilesPosix.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

#include "base/Paths.h"
#include "base/cError.h"
#include "system/WholeRead.h"

namespace kd::posix {

int Descriptor::Close() noexcept {
    if (m_fd < 0) {
        return 0;
    }
    const int result = ::close(m_fd) == 0 ? 0 : errno;
    m_fd = -1;
    return result == EINTR ? 0 : result;  // the descriptor is gone all the same
}

cError FailureOf(const char* operation, std::string_view path, int code) {
    std::int32_t number = errDevice;
    switch (code) {
        case ENOENT: {
            Text folder(paths::Folder(path));
            if (folder.empty()) {
                folder.assign(1, path.empty() || path.front() != '/' ? '.' : '/');
            }
            struct stat status {};
            number = ::stat(folder.c_str(), &status) == 0 ? errFileNotFound : errPathNotFound;
            break;
        }
        case ENOTDIR:
            number = errPathNotFound;
            break;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
        case ETXTBSY:
        case ELOOP:
            number = errPermissionDenied;
            break;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            number = errDiskFull;
            break;
        default:
            break;
    }
    return {number, std::string("SystemFiles.").append(operation), {}, Text(path)};
}

void Raise(const char* operation, std::string_view path, int code) {
    throw cError(FailureOf(operation, path, code));
}

bool IsPresent(const Text& path) noexcept {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

bool IsStillThere(int fd, const Text& path, struct stat& open) noexcept {
    struct stat named {};
    return ::fstat(fd, &open) == 0 && ::lstat(path.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino;
}

FileState StateOf(const struct stat& status) noexcept {
#ifdef __APPLE__
    const timespec& written = status.st_mtimespec;
#else
    const timespec& written = status.st_mtim;
#endif
    constexpr std::int64_t NanosecondsInASecond = 1000000000;
    return {{status.st_dev, status.st_ino},
            static_cast<std::uint64_t>(status.st_size),
            std::int64_t{written.tv_sec} * NanosecondsInASecond + written.tv_nsec};
}

bool Keep(int fd) noexcept {
    return ::flock(fd, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

int Open(const Text& path, int flags, mode_t mode) {
    int fd = -1;
    do {
        fd = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

namespace {

/// Opens what has been looked at for good: not by its name, which may stand for something else by now.
Descriptor Reopened(const Descriptor& look, const Text& path, int flags) {
#ifdef O_PATH
    Descriptor file(Open("/proc/self/fd/" + std::to_string(look.Get()), flags & ~O_NOFOLLOW));
    if (file.IsOpen() || errno != ENOENT) {
        return file;
    }
#else
    (void)look;
#endif
    return Descriptor(Open(path, flags));  // a machine that does not show a program its open files
}

}  // namespace

Descriptor TryRegular(const Text& path, int flags, struct stat& status, int& code) {
    flags |= O_NONBLOCK | O_NOCTTY;
    // Looked at before the opening, which alone sets some devices going, and wakes whoever waits at a FIFO.
#ifdef O_PATH
    const Descriptor look(Open(path, O_PATH | (flags & O_NOFOLLOW)));
    const bool isHere = look.IsOpen() && ::fstat(look.Get(), &status) == 0;
#else
    const Descriptor look;
    const bool isHere =
        ((flags & O_NOFOLLOW) != 0 ? ::lstat(path.c_str(), &status) : ::stat(path.c_str(), &status)) == 0;
#endif
    const auto refusal = [&] {
        const bool mayBe = S_ISREG(status.st_mode) && ((flags & O_ACCMODE) == O_RDONLY || MayWrite(status));
        return mayBe ? 0 : EACCES;
    };
    code = isHere ? refusal() : errno;
    if (code != 0) {
        return Descriptor();
    }
    Descriptor file = Reopened(look, path, flags);
    code = file.IsOpen() && ::fstat(file.Get(), &status) == 0 ? refusal() : errno;
    return code == 0 ? std::move(file) : Descriptor();
}

Descriptor OpenRegular(const char* operation, std::string_view path, int flags, struct stat& status) {
    int code = 0;
    Descriptor file = TryRegular(Text(path), flags, status, code);
    if (code != 0) {
        Raise(operation, path, code);
    }
    return file;
}

Descriptor CreateOrOpen(const char* operation, std::string_view path, int flags, mode_t mode,
                        struct stat& status, bool& isMade) {
    constexpr int Tries = 5;
    const Text name(path);
    for (int tries = 1;; ++tries) {
        // Made anew, or not at all: nothing can come to stand there in between that is not seen.
        Descriptor file(Open(name, flags | O_CREAT | O_EXCL, mode));
        isMade = file.IsOpen();
        int code = isMade && ::fstat(file.Get(), &status) == 0 ? 0 : errno;
        const bool isThere = !isMade && code == EEXIST;
        if (isThere) {
            file = TryRegular(name, flags, status, code);
        }
        if (code == 0) {
            return file;
        }
        // Another program may have taken it away since.
        if (!isThere || code != ENOENT || tries == Tries) {
            Raise(operation, path, code);
        }
    }
}

int ReadToEnd(int fd, off_t size, std::string& bytes) {
    const auto read = [fd](char* into, std::size_t most, std::size_t& got) {
        ssize_t count = -1;
        do {
            count = ::read(fd, into, most);
        } while (count < 0 && errno == EINTR);
        got = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        return count < 0 ? errno : 0;
    };
    return ReadWhole(read, static_cast<std::size_t>(size), bytes);
}

int WriteAll(int fd, std::string_view bytes) noexcept {
    std::size_t written = 0;
    return WriteAll(fd, bytes, written);
}

int WriteAll(int fd, std::string_view bytes, std::size_t& written) noexcept {
    written = 0;
    while (written < bytes.size()) {
        const ssize_t portion = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (portion < 0) {
            if (errno == EINTR) {
                continue;
            }
            return errno;
        }
        if (portion == 0) {
            return ENOSPC;
        }
        written += static_cast<std::size_t>(portion);
    }
    return 0;
}

int Flush(int fd) noexcept {
    while (::fsync(fd) != 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

int CutAt(int fd, off_t size) noexcept {
    while (::ftruncate(fd, size) != 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

int FlushFolderOf(const Text& path) noexcept {
    const auto slash = path.find_last_of('/');
    const Text folder = slash == Text::npos ? Text(1, '.') : path.substr(0, slash == 0 ? 1 : slash);
    Descriptor handle(Open(folder, O_RDONLY | O_DIRECTORY));
    if (!handle.IsOpen()) {
        return errno;
    }
    const int code = Flush(handle.Get());
    return code == EINVAL || code == ENOTSUP ? 0 : code;  // some file systems have nothing to flush for one
}

}  // namespace kd::posix
