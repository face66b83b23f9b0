#include "system/posix/UnsettledPosix.h"

#include <fcntl.h>
#ifdef __linux__
#include <linux/magic.h>
#include <sys/utsname.h>
#include <sys/vfs.h>
#endif
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <utility>

#include "base/Paths.h"

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

bool OneFlushIsEnough(int fd) noexcept {
#ifdef __linux__
    struct utsname machine {};
    if (::uname(&machine) != 0 || !TellsFailedFlushes(machine.release)) {
        return false;
    }
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
        case NFS_SUPER_MAGIC:  // what is closed is on the server's disk
        case xfs:
        case zfs:
            return true;
        default:  // an overlay too: it does not hear of what fails in the file system below it
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
        if (isShared) {
            m_systems.emplace(status.st_dev, std::move(second));
        } else {
            m_files.push_back({std::move(second), Text(path)});
        }
        return true;
    }
    if (const int code = Flush(fd); code != 0) {
        Raise("Settle", path, code);
    }
    return false;
}

void Unsettled::AddOnce(int fd, const Text& path) {
    // One that was flushed at once instead is flushed again when it has grown.
    if (m_once.count(path) == 0 && Add(fd, path)) {
        m_once.insert(path);
    }
}

void Unsettled::AddInFolder(int fd, const Text& path) {
    if (Add(fd, path) && OneFlushIsEnough(fd)) {
        m_folders.insert(paths::FolderToList(path));
    }
}

void Unsettled::AddName(int fd, const Text& path) {
    if (OneFlushIsEnough(fd)) {
        (void)Add(fd, path);
    } else {
        AddName(path);  // the flush of a file alone need not be that of its name
    }
}

void Unsettled::AddName(const Text& path) {
    const Text folder = paths::FolderToList(path);
    if (m_folders.count(folder) != 0) {
        return;
    }
    if (const Descriptor open(Open(folder + "/.", O_RDONLY | O_DIRECTORY)); open.IsOpen()) {
        (void)Add(open.Get(), path);
        m_folders.insert(folder);
    }
}

void Unsettled::Settle() {
    m_folders.clear();
    m_once.clear();
    const auto systems = std::exchange(m_systems, {});
    const auto files = std::exchange(m_files, {});
    int first = 0;
    Text path;
    const auto note = [&](int code, const Text& failed) {
        if (code != 0 && first == 0) {
            first = code;
            path = failed;
        }
    };
    for (const Kept& one : files) {
        const int code = Flush(one.file.Get());
        note(code == EINVAL || code == ENOTSUP ? 0 : code, one.path);  // some systems flush no folders
    }
#ifdef __linux__
    for (const auto& [device, file] : systems) {
        note(::syncfs(file.Get()) == 0 ? 0 : errno, {});
    }
#endif
    if (first != 0) {
        Raise("Settle", path, first);
    }
}

}  // namespace kd::posix
