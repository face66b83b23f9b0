#include "system/posix/RightsPosix.h"

#include <unistd.h>

#ifdef __linux__
#include <sys/xattr.h>
#endif

#include <cerrno>

namespace kd::posix {

namespace {

#ifdef __linux__
constexpr const char* AccessListName = "system.posix_acl_access";
#endif

/// The list of access rights that `ask` tells; empty where there is none. Nothing where it could not be
/// asked.
template <typename Ask>
std::optional<std::string> AccessListBy(Ask ask) {
#ifdef __linux__
    std::string list;
    ssize_t size = ask(nullptr, 0);
    if (size > 0) {
        list.resize(static_cast<std::size_t>(size));
        size = ask(list.data(), list.size());
    }
    if (size < 0 && errno != ENODATA && errno != ENOTSUP) {
        return std::nullopt;
    }
    list.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return list;
#else
    (void)ask;
    return std::string();
#endif
}

}  // namespace

std::optional<std::string> AccessListOf(int fd) {
    return AccessListBy([fd](char* list, std::size_t size) {
#ifdef __linux__
        return ::fgetxattr(fd, AccessListName, list, size);
#else
        (void)fd, (void)list;
        return static_cast<ssize_t>(size);
#endif
    });
}

std::optional<std::string> AccessListOf(const Text& path) {
    return AccessListBy([&path](char* list, std::size_t size) {
#ifdef __linux__
        return ::getxattr(path.c_str(), AccessListName, list, size);
#else
        (void)path, (void)list;
        return static_cast<ssize_t>(size);
#endif
    });
}

namespace {

/// Gives the new file the list of access rights of the present one, if it has such a list. Without it the
/// mode alone would let the file's group do what the list kept from it.
bool TakeOverAccessList(int fd, const std::optional<std::string>& list) {
#ifdef __linux__
    if (list && list->empty()) {
        // The new file may have been given the folder's list.
        return ::fremovexattr(fd, AccessListName) == 0 || errno == ENODATA || errno == ENOTSUP;
    }
    return list && ::fsetxattr(fd, AccessListName, list->data(), list->size(), 0) == 0;
#else
    (void)fd;
    return list.has_value();
#endif
}

/// The present file is open or named.
template <typename Present>
bool TakeOver(int fd, const Present& presentFile, const struct stat& present) {
    struct stat made {};
    if (::fstat(fd, &made) != 0) {
        return false;
    }
    const bool sameOwner = made.st_uid == present.st_uid && made.st_gid == present.st_gid;
    if (!sameOwner && ::fchown(fd, present.st_uid, present.st_gid) != 0) {
        return false;
    }
    return TakeOverAccessList(fd, AccessListOf(presentFile)) && ::fchmod(fd, present.st_mode & 07777U) == 0;
}

/// The mode that the user's mask leaves.
mode_t UsualMode() noexcept {
    const mode_t mask = ::umask(0);
    (void)::umask(mask);
    return 0666U & ~mask;
}

}  // namespace

bool TakeOverRights(int fd, int presentFile, const struct stat& present) {
    return TakeOver(fd, presentFile, present);
}

bool TakeOverRights(int fd, const Text& presentFile, const struct stat& present) {
    return TakeOver(fd, presentFile, present);
}

int TakeUsualMode(int fd) noexcept {
    return ::fchmod(fd, UsualMode()) == 0 ? 0 : errno;
}

void TakeUsualModeWithin(int fd, const struct stat& present, const std::optional<std::string>& list) {
    struct stat made {};
    if (::fstat(fd, &made) != 0 || !list || !list->empty() || !TakeOverAccessList(fd, list)) {
        return;
    }
    constexpr mode_t All = 07;
    const mode_t group = (present.st_mode >> 3U) & All;
    const mode_t others = present.st_mode & All;
    const bool isSameGroup = made.st_gid == present.st_gid;
    const mode_t given = isSameGroup ? (group << 3U | others) : ((group & others) << 3U | (group & others));
    (void)::fchmod(fd, UsualMode() & (0600U | given));  // one that stays the user's alone harms nobody
}

bool IsOurs(const struct stat& made, const struct stat& present) noexcept {
    const mode_t others = made.st_mode & 0022U;
    return S_ISREG(made.st_mode) && made.st_nlink == 1 && made.st_uid == ::geteuid() &&
           (others & ~present.st_mode) == 0 && (others == 0 || made.st_gid == present.st_gid);
}

bool IsPrivate(const struct stat& made) noexcept {
    return S_ISREG(made.st_mode) && made.st_nlink == 1 && made.st_uid == ::geteuid() &&
           (made.st_mode & 0077U) == 0;
}

bool HasSameRights(int file, const struct stat& made, int presentFile, const struct stat& present) {
    return S_ISREG(made.st_mode) && made.st_nlink == 1 && made.st_uid == present.st_uid &&
           made.st_gid == present.st_gid && made.st_mode == present.st_mode &&
           AccessListOf(file) == AccessListOf(presentFile);
}

}  // namespace kd::posix
