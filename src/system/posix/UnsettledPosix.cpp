#include "system/posix/UnsettledPosix.h"

#include <fcntl.h>
#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#endif
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

#include "base/Paths.h"

namespace kd::posix {

bool OneFlushIsEnough(int fd) noexcept {
#ifdef __linux__
    // By the names that linux/magic.h gives them, where it gives one.
    constexpr std::uint32_t xfs = 0x58465342;
    constexpr std::uint32_t zfs = 0x2FC12FC1;
    struct statfs system {};
    if (::fstatfs(fd, &system) != 0) {
        return false;
    }
    switch (static_cast<std::uint32_t>(system.f_type)) {
        case EXT4_SUPER_MAGIC:
        case BTRFS_SUPER_MAGIC:
        case F2FS_SUPER_MAGIC:
        case TMPFS_MAGIC:
        case OVERLAYFS_SUPER_MAGIC:
        case NFS_SUPER_MAGIC:  // what is closed is on the server's disk
        case xfs:
        case zfs:
            return true;
        default:
            return false;
    }
#else
    (void)fd;  // the system knows no such flush
    return false;
#endif
}

bool Unsettled::Add(int fd, std::string_view path) {
    struct stat status {};
    const bool isShared = OneFlushIsEnough(fd) && ::fstat(fd, &status) == 0;
    if (isShared && m_systems.count(status.st_dev) != 0) {
        return true;
    }
    if (Descriptor second(::fcntl(fd, F_DUPFD_CLOEXEC, 0)); second.IsOpen()) {
        Kept kept{std::move(second), Text(path)};
        if (isShared) {
            m_systems.emplace(status.st_dev, std::move(kept));
        } else {
            m_files.push_back(std::move(kept));
        }
        return true;
    }
    if (const int code = Flush(fd); code != 0) {
        Raise("Settle", path, code);
    }
    return false;
}

void Unsettled::AddInFolder(int fd, const Text& path) {
    if (Add(fd, path) && OneFlushIsEnough(fd)) {
        m_folders.insert(paths::FolderToList(path));
    }
}

void Unsettled::Settle() {
    m_folders.clear();
    const auto systems = std::exchange(m_systems, {});
    const auto files = std::exchange(m_files, {});
    int first = 0;
    Text path;
    const auto note = [&](int code, const Kept& one) {
        if (code != 0 && first == 0) {
            first = code;
            path = one.path;
        }
    };
#ifdef __linux__
    for (const auto& [device, one] : systems) {
        note(::syncfs(one.file.Get()) == 0 ? 0 : errno, one);
    }
#endif
    for (const Kept& one : files) {
        const int code = Flush(one.file.Get());
        note(code == EINVAL || code == ENOTSUP ? 0 : code, one);  // some systems flush no folders
    }
    if (first != 0) {
        Raise("Settle", path, first);
    }
}

}  // namespace kd::posix
