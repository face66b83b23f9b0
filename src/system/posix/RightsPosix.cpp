#include "system/posix/RightsPosix.h"

#include <unistd.h>

#ifdef __linux__
#include <sys/xattr.h>
#endif

#include <cerrno>

#include "base/Paths.h"

namespace kd::posix {

namespace {

constexpr const char* AccessListName = "system.posix_acl_access";
constexpr const char* ListOfNewFilesName = "system.posix_acl_default";

#ifdef __linux__
ssize_t Ask(int fd, const char* name, char* list, std::size_t size) noexcept {
    return ::fgetxattr(fd, name, list, size);
}
ssize_t Ask(const Text& path, const char* name, char* list, std::size_t size) noexcept {
    return ::getxattr(path.c_str(), name, list, size);
}
#else
/// No such lists are kept.
template <typename File>
ssize_t Ask(const File&, const char*, char*, std::size_t) noexcept {
    return 0;
}
#endif

bool MeansThatThereIsNone(int code) noexcept {
    return code == ENODATA || code == ENOTSUP;
}

/// That list of access rights of a file or folder, which is open or named; empty where there is none. Nothing
/// where it could not be asked.
template <typename File>
std::optional<std::string> ListOf(const File& file, const char* name) {
    std::string list;
    ssize_t size = Ask(file, name, nullptr, 0);
    if (size > 0) {
        list.resize(static_cast<std::size_t>(size));
        size = Ask(file, name, list.data(), list.size());
    }
    if (size < 0 && !MeansThatThereIsNone(errno)) {
        return std::nullopt;
    }
    list.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return list;
}

/// What the folder of that path gives its new files instead of what the user's mask leaves.
std::optional<std::string> ListOfNewFilesBeside(const Text& path) {
    return ListOf(Text(paths::FolderToList(path) + "/."), ListOfNewFilesName);
}

}  // namespace

std::optional<std::string> AccessListOf(int fd) {
    return ListOf(fd, AccessListName);
}

std::optional<std::string> AccessListOf(const Text& path) {
    return ListOf(path, AccessListName);
}

bool DropAccessList(int fd) noexcept {
#ifdef __linux__
    return ::fremovexattr(fd, AccessListName) == 0 || MeansThatThereIsNone(errno);
#else
    (void)fd;
    return true;
#endif
}

namespace {

/// Gives the new file the list of access rights of the present one, if it has such a list. Without it the
/// mode alone would let the file's group do what the list kept from it.
bool TakeOverAccessList(int fd, const std::optional<std::string>& list) {
#ifdef __linux__
    if (list && list->empty()) {
        return DropAccessList(fd);
    }
    return list && ::fsetxattr(fd, AccessListName, list->data(), list->size(), 0) == 0;
#else
    (void)fd;
    return list.has_value();
#endif
}

/// The kinds of a list's entries that say what the mode says too; all but the mask stand in every list.
constexpr char OfTheOwner = 0x01;
constexpr char OfTheGroup = 0x04;
constexpr char Mask = 0x10;
constexpr char OfOthers = 0x20;

/// Runs `action` with the kind and the rights of each entry. Each has eight bytes, behind the four of the
/// list's own; a number's lowest byte comes first, and is all of it that is used here.
template <typename Action>
void ForEachEntry(std::string& list, Action action) {
    constexpr std::size_t Head = 4;
    constexpr std::size_t Size = 8;
    constexpr std::size_t Rights = 2;
    for (std::size_t at = Head; at + Size <= list.size(); at += Size) {
        action(list[at], list[at + Rights]);
    }
}

void Limit(char& rights, int most) noexcept {
    rights = static_cast<char>(rights & most);
}

/// The list for a file of another group. That group gets nothing by it, since some of its people may be on
/// the list with less. Those of the present one's group count among the others now, who get no more than
/// they did.
std::string ForAnotherGroup(std::string list) {
    char ofTheGroup = 07;
    ForEachEntry(list, [&](char kind, char rights) {
        if (kind == OfTheGroup || kind == Mask) {
            Limit(ofTheGroup, rights);
        }
    });
    ForEachEntry(list, [&](char kind, char& rights) {
        if (kind == OfTheGroup || kind == OfOthers) {
            Limit(rights, kind == OfOthers ? ofTheGroup : 0);
        }
    });
    return list;
}

/// The list that a new file gets of its folder's, which nobody may run.
std::string ForANewFile(std::string list) {
    bool hasMask = false;
    ForEachEntry(list, [&](char kind, char) { hasMask = hasMask || kind == Mask; });
    ForEachEntry(list, [&](char kind, char& rights) {
        if (kind == OfTheOwner || kind == OfOthers || kind == (hasMask ? Mask : OfTheGroup)) {
            Limit(rights, 06);
        }
    });
    return list;
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

int TakeUsualRights(int fd, const Text& path) {
    const std::optional<std::string> list = ListOfNewFilesBeside(path);
    if (!list) {
        return 0;  // whom the folder lets in is not known: it stays the user's alone
    }
    const bool areTaken =
        list->empty() ? ::fchmod(fd, UsualMode()) == 0 : TakeOverAccessList(fd, ForANewFile(*list));
    return areTaken ? 0 : errno;
}

void TakeRightsWithin(int fd, const struct stat& present, const std::optional<std::string>& list) {
    struct stat made {};
    if (!list || ::fstat(fd, &made) != 0) {
        return;
    }
    const bool isSameGroup =
        made.st_gid == present.st_gid || ::fchown(fd, static_cast<uid_t>(-1), present.st_gid) == 0;
    const bool isOnTheList = !list->empty();
    if (!TakeOverAccessList(fd, isOnTheList && !isSameGroup ? ForAnotherGroup(*list) : *list) ||
        ::fstat(fd, &made) != 0) {
        return;
    }
    constexpr mode_t All = 07;
    const mode_t group = (present.st_mode >> 3U) & All;
    const mode_t others = present.st_mode & All;
    const mode_t given = isOnTheList   ? made.st_mode  // the group's bits are the list's mask
                         : isSameGroup ? (group << 3U | others)
                                       : ((group & others) << 3U | (group & others));
    (void)::fchmod(fd, 0600U | (given & 0066U));  // what fails leaves it no more open than that
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
    if (!S_ISREG(made.st_mode) || made.st_nlink != 1 || made.st_uid != present.st_uid ||
        made.st_gid != present.st_gid || made.st_mode != present.st_mode) {
        return false;
    }
    const std::optional<std::string> list = AccessListOf(file);
    return list && list == AccessListOf(presentFile);
}

}  // namespace kd::posix
