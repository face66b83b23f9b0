#include "system/posix/ArchivePosix.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>
#include <string>

#include "system/posix/FilesPosix.h"
#include "system/posix/RightsPosix.h"

namespace kd::posix {

namespace {

/// The mode of an archive's copy: its source's, but for everybody's right to write. The group has its rights
/// only where it is the source's group; else group and others have what the source gives both. A list may
/// keep out somebody who would count among the others.
mode_t ModeOfCopy(int fd, const struct stat& source, bool hasAccessList) noexcept {
    const mode_t mode = source.st_mode & 0775U;
    if (hasAccessList) {
        return mode & 0700U;
    }
    struct stat made {};
    const bool sameGroup =
        ::fstat(fd, &made) == 0 &&
        (made.st_gid == source.st_gid || ::fchown(fd, static_cast<uid_t>(-1), source.st_gid) == 0);
    const mode_t others = mode & (mode >> 3U) & 0005U;
    return sameGroup ? mode : (mode & 0700U) | others << 3U | others;
}

/// Gives a copy its mode, and its source's times. Returns 0 or an errno.
int FinishCopy(int fd, const struct stat& source, bool hasAccessList) noexcept {
    // A list that the folder gave it would let in whom the source keeps out.
    const mode_t most = DropAccessList(fd) ? 0775U : 0700U;
    const std::array<timespec, 2> times{source.st_atim, source.st_mtim};
    return ::fchmod(fd, ModeOfCopy(fd, source, hasAccessList) & most) == 0 &&
                   ::futimens(fd, times.data()) == 0
               ? 0
               : errno;
}

}  // namespace

void CopyToArchive(const Text& source, const Text& target, FlushCopy flush) {
    struct stat status {};
    std::string bytes;
    bool hasAccessList = false;
    {
        const Descriptor read = OpenRegular("CopyForArchive", source, O_RDONLY, status);
        // The group's rights say nothing of the group then.
        const std::optional<std::string> list = AccessListOf(read.Get());
        hasAccessList = !list || !list->empty();
        if (const int code = ReadToEnd(read.Get(), status.st_size, bytes); code != 0) {
            Raise("CopyForArchive", source, code);
        }
    }
    // Nothing is there before, so that it needs no look at what was opened.
    Descriptor file(Open(target, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600));
    if (!file.IsOpen()) {
        Raise("CopyForArchive", target, errno);
    }
    int code = WriteAll(file.Get(), bytes);
    if (code == 0) {
        code = FinishCopy(file.Get(), status, hasAccessList);
    }
    if (code == 0 && flush == FlushCopy::Yes) {
        code = Flush(file.Get());
    }
    if (const int closed = file.Close(); code == 0) {
        code = closed;
    }
    if (code != 0) {
        (void)::unlink(target.c_str());  // half a copy is none
        Raise("CopyForArchive", target, code);
    }
}

}  // namespace kd::posix
