#include "system/posix/ReplacePosix.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "base/ApplicationNames.h"
#include "base/Scope.h"
#include "system/posix/FilesPosix.h"
#include "system/posix/RightsPosix.h"
#include "system/posix/UnsettledPosix.h"

namespace kd::posix {

namespace {

/// The file that a path leads to when all links are followed; the path itself where nothing is there yet.
Text FinalTarget(const Text& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0 && !S_ISLNK(status.st_mode)) {
        return path;
    }
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? Text(real.get()) : path;
}

/// A new file beside the target, under a name that nobody can foresee and that tells what it is for, not
/// readable by others before it is done. `lock` keeps it from those who look for what others have left
/// behind.
Descriptor NewBeside(const Text& target, Text& name, Descriptor& lock) {
    const auto slash = target.find_last_of('/');
    const Text folder = slash == Text::npos ? Text() : target.substr(0, slash + 1);
    const Text file = target.substr(folder.size());
    constexpr int Tries = 5;
    for (int tries = 1;; ++tries) {
        name = folder + names::WaitingName(file);
        Descriptor made(Open(name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0600));
        if (!made.IsOpen() && errno == ENAMETOOLONG) {
            name = folder + names::WaitingName({});
            made = Descriptor(Open(name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0600));
        }
        if (!made.IsOpen()) {
            return made;
        }
        struct stat status {};
        lock = Descriptor(::fcntl(made.Get(), F_DUPFD_CLOEXEC, 0));
        const bool isKept = Keep(made.Get());
        const bool isGone = ::fstat(made.Get(), &status) == 0 && status.st_nlink == 0;
        if ((isKept && !isGone) || tries == Tries) {
            return made;
        }
    }
}

/// Writes over an open file from its beginning, and flushes it. Returns 0 or an errno.
int WriteOver(int fd, std::string_view bytes) noexcept {
    if (::lseek(fd, 0, SEEK_SET) < 0) {
        return errno;
    }
    int code = WriteAll(fd, bytes);
    if (code == 0) {
        code = CutAt(fd, static_cast<off_t>(bytes.size()));
    }
    return code == 0 ? Flush(fd) : code;
}

/// Makes room for a file that grows, so that a full disk is met before a byte of it changes. Returns 0 or an
/// errno; the file has its size and its content all the while, also when the program is stopped in between.
int MakeRoom(int fd, std::size_t present, std::size_t wanted) noexcept {
    if (wanted <= present) {
        return 0;
    }
#ifdef __linux__
    while (::fallocate(fd, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(wanted)) != 0) {
        if (errno != EINTR) {
            // Where room cannot be had ahead, the old content is brought back instead.
            return errno == EOPNOTSUPP || errno == EINVAL || errno == ENOSYS ? 0 : errno;
        }
    }
#else
    (void)fd;
#endif
    return 0;
}

void OverwriteInPlace(const char* operation, const Text& target, std::string_view bytes, int source) {
    if (source >= 0) {
        if (const int code = Flush(source); code != 0) {
            Raise(operation, target, code);
        }
    }
    struct stat status {};
    Descriptor file = OpenRegular(operation, target, O_RDWR | O_NOFOLLOW, status);
    std::string before;
    int code = ReadToEnd(file.Get(), status.st_size, before);
    if (code == 0) {
        code = MakeRoom(file.Get(), before.size(), bytes.size());
        if (code == 0) {
            code = WriteOver(file.Get(), bytes);
            if (code != 0) {
                (void)WriteOver(file.Get(), before);  // the first failure is the one to tell
            }
        }
    }
    if (const int closed = file.Close(); code == 0) {
        code = closed;
    }
    if (code != 0) {
        Raise(operation, target, code);
    }
}

/// Whether the file at the path may be written, open so that it shows it; not open where not. The user's own
/// rights count too: who owns a folder could replace what he may not write.
Descriptor OpenToReplace(const Text& target, struct stat& present) {
    int code = 0;
    Descriptor file = TryRegular(target, O_RDWR | O_NOFOLLOW, present, code);
    return file;
}

/// Whether the present file may be written. The user's own rights count too: who owns a folder could replace
/// what he may not write.
bool MayReplace(const Text& target, const struct stat& present) {
    return S_ISREG(present.st_mode) && MayWrite(present) &&
           ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0;
}

/// Whether a folder that refuses a new entry leaves the way over the file itself.
bool FolderForbids(int code) noexcept {
    return code == EACCES || code == EPERM || code == EROFS || code == EBUSY || code == ENAMETOOLONG;
}

/// What came of writing beside the target.
enum class Outcome { Done, NotPossibleHere };

/// Writes the new file, makes it like the present one and closes it. Returns 0 or an errno; nothing where the
/// user may not give it that one's rights.
std::optional<int> Furnish(Descriptor& file, std::string_view bytes, const Text& target,
                           const struct stat* present) {
    int code = WriteAll(file.Get(), bytes);
    if (code == 0 && present != nullptr) {
        if (!TakeOverRights(file.Get(), target, *present)) {
            return std::nullopt;
        }
    } else if (code == 0) {
        code = TakeUsualRights(file.Get(), target);
    }
    if (code == 0) {
        code = Flush(file.Get());
    }
    const int closed = file.Close();
    return code != 0 ? code : closed;
}

Outcome WriteBeside(const char* operation, const Text& target, std::string_view bytes,
                    const struct stat* present) {
    Text temporary;
    Descriptor lock;
    Descriptor file = NewBeside(target, temporary, lock);
    if (!file.IsOpen()) {
        if (present != nullptr && FolderForbids(errno)) {
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
    const std::optional<int> furnished = Furnish(file, bytes, target, present);
    if (!furnished) {
        return Outcome::NotPossibleHere;
    }
    int code = *furnished;
    if (code == 0 && ::rename(temporary.c_str(), target.c_str()) != 0) {
        if (present != nullptr && FolderForbids(errno)) {
            return Outcome::NotPossibleHere;  // EBUSY: something is mounted on the file itself
        }
        code = errno;
    }
    if (code != 0) {
        Raise(operation, target, code);
    }
    inPlace = true;
    return Outcome::Done;
}

}  // namespace

void ReplaceWhole(const char* operation, std::string_view path, std::string_view bytes, FlushName flushName,
                  int source) {
    const Text target = FinalTarget(Text(path));
    struct stat status {};
    const bool isLink = ::lstat(Text(path).c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    const bool present = ::lstat(target.c_str(), &status) == 0;
    if (!present && errno != ENOENT) {
        Raise(operation, path, errno);
    }
    if (present) {
        if (!MayReplace(target, status)) {
            Raise(operation, path, EACCES);
        }
        if (status.st_nlink > 1) {
            OverwriteInPlace(operation, target, bytes, source);
            return;
        }
    }
    if (WriteBeside(operation, target, bytes, present ? &status : nullptr) == Outcome::NotPossibleHere) {
        OverwriteInPlace(operation, target, bytes, source);
        return;
    }
    if (flushName == FlushName::No && !isLink) {
        return;
    }
    // A folder that the user may enter but not list cannot be flushed by him; any other failure is told.
    if (const int code = FlushFolderOf(target); code != 0 && code != EACCES) {
        Raise(operation, target, code);
    }
}

namespace {

/// That of a file which is open, or could not be opened and may be there all the same.
FileState StateBy(const Descriptor& file, const Text& path, const struct stat& present) noexcept {
    if (file.IsOpen()) {
        return StateOf(present);
    }
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? StateOf(status) : FileState();
}

/// Gives the file `made`, open as `fd`, the rights of the one at `path` as far as may be. Returns 0 and tells
/// about that one, or why there is none.
int GiveRights(int fd, const struct stat& made, const Text& path, struct stat& present) {
    const Descriptor file = OpenToReplace(path, present);
    if (!file.IsOpen() && ::stat(path.c_str(), &present) != 0) {
        return errno;
    }
    const bool areGiven = file.IsOpen() && IsOurs(made, present) && TakeOverRights(fd, file.Get(), present);
    // What cannot be given is given later. A file that others can have opened must not look as if they could
    // not.
    if (!areGiven && IsPrivate(made)) {
        TakeRightsWithin(fd, present, file.IsOpen() ? AccessListOf(file.Get()) : AccessListOf(path));
    }
    return 0;
}

}  // namespace

FileState TakeOverRightsOf(int fd, std::string_view path, const OtherName& otherName) noexcept {
    try {
        struct stat made {};
        struct stat present {};
        const Text name(path);
        if (::fstat(fd, &made) != 0) {
            return {};
        }
        int code = GiveRights(fd, made, name, present);
        if (code == 0) {
            return StateOf(present);
        }
        if (code == ENOENT) {
            code = GiveRights(fd, made, otherName(name), present);
        }
        if (code == ENOENT && IsPrivate(made)) {
            (void)TakeUsualRights(fd, name);  // which the file itself will have
        }
    } catch (...) {
        // A folder that could not be looked through, or want of memory.
    }
    return {};
}

Placing PutInPlace(const Text& source, const Text& target, Unsettled* settled, const FileState* seen) {
    struct stat present {};
    Descriptor old = OpenToReplace(target, present);
    if (seen != nullptr && !(StateBy(old, target, present) == *seen)) {
        return Placing::Changed;
    }
    if (!old.IsOpen() || present.st_nlink > 1) {
        return Placing::NotPossibleHere;
    }
    struct stat made {};
    int code = 0;
    Descriptor file = TryRegular(source, O_RDWR | O_NOFOLLOW, made, code);
    if (!file.IsOpen()) {
        return Placing::NotPossibleHere;
    }
    const bool isReady = settled != nullptr && HasSameRights(file.Get(), made, old.Get(), present);
    if (!isReady && (!IsOurs(made, present) || !TakeOverRights(file.Get(), old.Get(), present))) {
        return Placing::NotPossibleHere;
    }
    // Only its rights were asked for, and some servers let nobody take the place of an open file.
    (void)old.Close();
    code = isReady ? 0 : Flush(file.Get());
    if (code == 0 && settled != nullptr) {
        settled->AddName(file.Get(), target);
    }
    if (const int closed = file.Close(); code == 0) {
        code = closed;
    }
    if (code == 0 && ::rename(source.c_str(), target.c_str()) != 0) {
        if (FolderForbids(errno) || errno == EXDEV) {
            return Placing::NotPossibleHere;
        }
        code = errno;
    }
    if (code != 0) {
        // No other way is tried: after a flush that failed nobody knows what the file holds.
        Raise("MoveOver", target, code);
    }
    return Placing::Done;
}

}  // namespace kd::posix
