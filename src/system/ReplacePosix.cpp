#ifndef _WIN32

#include "system/ReplacePosix.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string>

#include "base/Scope.h"
#include "system/FilesPosix.h"

namespace kd::posix {

namespace {

/// The file that a path leads to when all links are followed; the path itself where nothing is there yet.
Text FinalTarget(const Text& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? Text(real.get()) : path;
}

/// A new file beside the target, under a name that nobody can foresee, not readable by others before it is
/// done.
Descriptor NewBeside(const Text& target, Text& name) {
    const auto slash = target.find_last_of('/');
    const Text folder = slash == Text::npos ? Text() : target.substr(0, slash + 1);
    name = folder + ".kdsave-XXXXXX";
    return Descriptor(::mkostemp(name.data(), O_CLOEXEC));
}

/// Reads all of an open file. Returns 0 or an errno.
int ReadAll(int fd, std::string& bytes) {
    char buffer[65536];
    for (;;) {
        const ssize_t got = ::pread(fd, buffer, sizeof buffer, static_cast<off_t>(bytes.size()));
        if (got < 0 && errno != EINTR) {
            return errno;
        }
        if (got == 0) {
            return 0;
        }
        if (got > 0) {
            bytes.append(buffer, static_cast<std::size_t>(got));
        }
    }
}

/// Writes over an open file from its beginning, and flushes it. Returns 0 or an errno.
int WriteOver(int fd, std::string_view bytes) noexcept {
    if (::lseek(fd, 0, SEEK_SET) < 0) {
        return errno;
    }
    if (const int code = WriteAll(fd, bytes); code != 0) {
        return code;
    }
    if (::ftruncate(fd, static_cast<off_t>(bytes.size())) != 0 || ::fsync(fd) != 0) {
        return errno;
    }
    return 0;
}

void OverwriteInPlace(const char* operation, const Text& target, std::string_view bytes) {
    struct stat status {};
    Descriptor file = OpenRegular(operation, target, O_RDWR, 0, status);
    std::string before;
    int code = ReadAll(file.Get(), before);
    // Room first: a file that cannot grow is refused before a byte of it changes.
    if (code == 0 && bytes.size() > before.size()) {
        code = ::posix_fallocate(file.Get(), 0, static_cast<off_t>(bytes.size()));
        if (code == EOPNOTSUPP || code == EINVAL) {
            code = 0;
        }
        if (code != 0) {
            (void)::ftruncate(file.Get(),
                              static_cast<off_t>(before.size()));  // back to its size; the content stood
        }
    }
    if (code == 0) {
        code = WriteOver(file.Get(), bytes);
        if (code != 0) {
            (void)WriteOver(file.Get(), before);  // the first failure is the one to tell
        }
    }
    if (const int closed = file.Close(); code == 0) {
        code = closed;
    }
    if (code != 0) {
        Raise(operation, target, code);
    }
}

/// What came of writing beside the target.
enum class Outcome { Done, NotPossibleHere };

Outcome WriteBeside(const char* operation, const Text& target, std::string_view bytes,
                    const struct stat* present) {
    Text temporary;
    Descriptor file = NewBeside(target, temporary);
    if (!file.IsOpen()) {
        // A folder that lets nobody add to it: the file itself may still be written.
        if (present != nullptr && (errno == EACCES || errno == EPERM || errno == EROFS)) {
            return Outcome::NotPossibleHere;
        }
        Raise(operation, target, errno);
    }
    bool inPlace = false;
    const Scope cleaned([&] {
        if (!inPlace) {
            (void)::unlink(temporary.c_str());  // what cannot be removed now cannot be mended here
        }
    });
    int code = WriteAll(file.Get(), bytes);
    if (code == 0) {
        if (present != nullptr) {
            struct stat made {};
            if (::fstat(file.Get(), &made) != 0 ||
                ((made.st_uid != present->st_uid || made.st_gid != present->st_gid) &&
                 ::fchown(file.Get(), present->st_uid, present->st_gid) != 0)) {
                return Outcome::NotPossibleHere;
            }
            code = ::fchmod(file.Get(), present->st_mode & 07777U) == 0 ? 0 : errno;
        } else {
            const mode_t mask = ::umask(0);
            (void)::umask(mask);
            code = ::fchmod(file.Get(), 0666U & ~mask) == 0 ? 0 : errno;
        }
    }
    if (code == 0 && ::fsync(file.Get()) != 0) {
        code = errno;
    }
    if (const int closed = file.Close(); code == 0) {
        code = closed;
    }
    if (code == 0 && ::rename(temporary.c_str(), target.c_str()) != 0) {
        code = errno;
    }
    if (code != 0) {
        Raise(operation, target, code);
    }
    inPlace = true;
    (void)FlushFolderOf(target);  // the new file is in its place; only how soon that lasts is open
    return Outcome::Done;
}

}  // namespace

void ReplaceWhole(const char* operation, std::string_view path, std::string_view bytes) {
    const Text target = FinalTarget(Text(path));
    struct stat status {};
    const bool present = ::lstat(target.c_str(), &status) == 0;
    if (!present && errno != ENOENT) {
        Raise(operation, path, errno);
    }
    if (present) {
        if (!S_ISREG(status.st_mode) || !MayWrite(status) || ::access(target.c_str(), W_OK) != 0) {
            Raise(operation, path, EACCES);
        }
        if (status.st_nlink > 1) {
            OverwriteInPlace(operation, target, bytes);
            return;
        }
    }
    if (WriteBeside(operation, target, bytes, present ? &status : nullptr) == Outcome::NotPossibleHere) {
        OverwriteInPlace(operation, target, bytes);
    }
}

}  // namespace kd::posix

#endif
