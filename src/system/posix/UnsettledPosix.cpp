#include "system/posix/UnsettledPosix.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "base/Paths.h"

namespace kd::posix {

bool Unsettled::Add(int fd, std::string_view path) {
#ifdef __linux__
    struct stat status {};
    if (::fstat(fd, &status) == 0) {
        if (m_kept.count(status.st_dev) != 0) {
            return true;
        }
        if (Descriptor second(::fcntl(fd, F_DUPFD_CLOEXEC, 0)); second.IsOpen()) {
            m_kept.emplace(status.st_dev, Kept{std::move(second), Text(path)});
            return true;
        }
    }
#else
    if (Descriptor second(::fcntl(fd, F_DUPFD_CLOEXEC, 0)); second.IsOpen()) {
        m_kept.push_back({std::move(second), Text(path)});
        return true;
    }
#endif
    if (const int code = Flush(fd); code != 0) {
        Raise("Settle", path, code);
    }
    return false;
}

void Unsettled::AddInFolder(int fd, const Text& path) {
    if (Add(fd, path)) {
        m_folders.insert(paths::FolderToList(path));
    }
}

void Unsettled::Settle() {
    m_folders.clear();
    const auto kept = std::exchange(m_kept, {});
    int first = 0;
    Text path;
    const auto flush = [&](const Kept& one) {
#ifdef __linux__
        const int code = ::syncfs(one.file.Get()) == 0 ? 0 : errno;
#else
        const int code = Flush(one.file.Get());
#endif
        if (code != 0 && first == 0) {
            first = code;
            path = one.path;
        }
    };
#ifdef __linux__
    for (const auto& [device, one] : kept) {
        flush(one);
    }
#else
    for (const Kept& one : kept) {
        flush(one);
    }
#endif
    if (first != 0) {
        Raise("Settle", path, first);
    }
}

}  // namespace kd::posix
