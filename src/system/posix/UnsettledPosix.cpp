#include "system/posix/UnsettledPosix.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "base/Paths.h"
#include "system/posix/DrivePosix.h"

namespace kd::posix {

bool Unsettled::Add(int fd, std::string_view path) {
    struct stat status {};
    const bool isShared = OneFlushIsEnough(fd) && ::fstat(fd, &status) == 0;
    if (isShared && m_systems.count(status.st_dev) != 0) {
        return true;
    }
    if (Descriptor second(::fcntl(fd, F_DUPFD_CLOEXEC, 0)); second.IsOpen()) {
        Take(std::move(second), path);
        return true;
    }
    if (const int code = Flush(fd); code != 0) {
        Raise("Settle", path, code);
    }
    return false;
}

void Unsettled::Take(Descriptor file, std::string_view path) {
    struct stat status {};
    if (OneFlushIsEnough(file.Get()) && ::fstat(file.Get(), &status) == 0) {
        m_systems.emplace(status.st_dev, std::move(file));
    } else {
        m_files.push_back({std::move(file), Text(path)});
    }
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
    // The flush of a file alone need not be that of its name, and one that has come to pass already is not.
    if (!OneFlushIsEnough(fd) || !Add(fd, path)) {
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
        Take(std::move(open), path);
        m_folders.insert(folder);
    } else if (errno != EACCES && errno != ENOENT && errno != ENOTDIR) {
        Raise("Settle", path, errno);
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
