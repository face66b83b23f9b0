#include "system/posix/UnsettledPosix.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "base/Paths.h"
#include "system/posix/DrivePosix.h"

namespace kd::posix {

std::optional<dev_t> Unsettled::SystemOf(int fd) {
    struct stat status {};
    if (::fstat(fd, &status) != 0) {
        return std::nullopt;
    }
    const auto known = m_drives.find(status.st_dev);
    const bool isEnough = known != m_drives.end() ? known->second : OneFlushIsEnough(fd);
    m_drives.emplace(status.st_dev, isEnough);
    return isEnough ? std::optional(status.st_dev) : std::nullopt;
}

Unsettled::Way Unsettled::Add(int fd, std::string_view path, std::optional<dev_t> system) {
    if (system && m_systems.count(*system) != 0) {
        return Way::WithAll;
    }
    if (Descriptor second(::fcntl(fd, F_DUPFD_CLOEXEC, 0)); second.IsOpen()) {
        return Take(std::move(second), path, system);
    }
    if (const int code = Flush(fd); code != 0) {
        Raise("Settle", path, code);
    }
    return Way::AtOnce;
}

Unsettled::Way Unsettled::Take(Descriptor file, std::string_view path, std::optional<dev_t> system) {
    if (system) {
        m_systems.emplace(*system, std::move(file));
        return Way::WithAll;
    }
    m_files.push_back({std::move(file), Text(path)});
    return Way::Alone;
}

void Unsettled::AddOnce(int fd, const Text& path) {
    // One that was flushed at once instead is flushed again when it has grown.
    if (m_once.count(path) == 0 && Add(fd, path) != Way::AtOnce) {
        m_once.insert(path);
    }
}

void Unsettled::AddInFolder(int fd, const Text& path) {
    if (Add(fd, path) == Way::WithAll) {
        m_folders.insert(paths::FolderToList(path));
    }
}

void Unsettled::AddName(int fd, const Text& path) {
    // The flush of a file alone need not be that of its name, and one that has come to pass already is not.
    const std::optional<dev_t> system = SystemOf(fd);
    if (!system || Add(fd, path, system) != Way::WithAll) {
        AddName(path);
    }
}

void Unsettled::AddName(const Text& path) {
    const Text folder = paths::FolderToList(path);
    if (m_folders.count(folder) != 0) {
        return;
    }
    Descriptor open(Open(folder + "/.", O_RDONLY | O_DIRECTORY));
    if (open.IsOpen()) {
        const std::optional<dev_t> system = SystemOf(open.Get());
        (void)Take(std::move(open), folder, system);  // its flush is that of all names in it
        m_folders.insert(folder);
    } else if (errno != EACCES && errno != ENOENT && errno != ENOTDIR) {
        Raise("Settle", path, errno);
    }
}

std::vector<cError> Unsettled::TrySettle(const std::function<void()>& meanwhile) {
    m_folders.clear();
    m_once.clear();
    m_drives.clear();
    const auto systems = std::exchange(m_systems, {});
    const auto files = std::exchange(m_files, {});
    std::vector<cError> failures;
    const auto note = [&](int code, const Text& path) {
        if (code != 0) {
            failures.push_back(FailureOf("Settle", path, code));
        }
    };
    for (const Kept& one : files) {
        const int code = Flush(one.file.Get());
        note(code == EINVAL || code == ENOTSUP ? 0 : code, one.path);  // some systems flush no folders
        meanwhile();
    }
#ifdef __linux__
    for (const auto& [device, file] : systems) {
        note(::syncfs(file.Get()) == 0 ? 0 : errno, {});
        meanwhile();
    }
#endif
    return failures;
}

}  // namespace kd::posix
