#include "system/posix/DrivePosix.h"

#ifdef __linux__
#include <linux/magic.h>
#include <sys/utsname.h>
#include <sys/vfs.h>
#endif

#include <charconv>

namespace kd::posix {

bool TellsFailedFlushes(std::string_view release) noexcept {
    // Until then the flush of a file system drops what the file system says of it.
    constexpr unsigned First = 5;
    constexpr unsigned FirstMinor = 17;
    unsigned major = 0;
    unsigned minor = 0;
    const char* const end = release.data() + release.size();
    const auto upToPoint = std::from_chars(release.data(), end, major);
    if (upToPoint.ec != std::errc() || upToPoint.ptr == end || *upToPoint.ptr != '.' ||
        std::from_chars(upToPoint.ptr + 1, end, minor).ec != std::errc()) {
        return false;
    }
    return major > First || (major == First && minor >= FirstMinor);
}

Drive DriveOfType(std::uint32_t type) noexcept {
#ifdef __linux__
    // By the names that linux/magic.h gives them, where it gives one.
    constexpr std::uint32_t xfs = 0x58465342;
    constexpr std::uint32_t zfs = 0x2FC12FC1;
    switch (type) {
        case EXT4_SUPER_MAGIC:
        case BTRFS_SUPER_MAGIC:
        case F2FS_SUPER_MAGIC:
        case TMPFS_MAGIC:
        case xfs:
        case zfs:
            return Drive::Disk;
        case OVERLAYFS_SUPER_MAGIC:
            return Drive::Overlay;
        case NFS_SUPER_MAGIC:
            return Drive::Nfs;
        default:
            return Drive::Unknown;
    }
#else
    (void)type;
    return Drive::Unknown;
#endif
}

bool IsFlushedAtOnce(Drive drive) noexcept {
    // What is closed on an NFS drive is on the server's disk. An overlay does not hear of what fails in the
    // file system below it.
    return drive == Drive::Disk || drive == Drive::Nfs;
}

bool HasLocksForAll(Drive drive) noexcept {
    return drive == Drive::Disk || drive == Drive::Overlay;
}

namespace {

Drive DriveOf(int fd) noexcept {
#ifdef __linux__
    struct statfs system {};
    return ::fstatfs(fd, &system) == 0 ? DriveOfType(static_cast<std::uint32_t>(system.f_type))
                                       : Drive::Unknown;
#else
    (void)fd;
    return Drive::Unknown;
#endif
}

}  // namespace

bool OneFlushIsEnough(int fd) noexcept {
#ifdef __linux__
    struct utsname machine {};
    (void)::uname(&machine);  // a system that does not tell it has no release
    if (!TellsFailedFlushes(machine.release)) {
        return false;
    }
#endif
    return IsFlushedAtOnce(DriveOf(fd));
}

bool LocksReachEverybody(int fd) noexcept {
    return HasLocksForAll(DriveOf(fd));
}

}  // namespace kd::posix
