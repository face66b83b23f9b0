#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "base/ApplicationNames.h"
#include "base/Paths.h"
#include "base/cError.h"
#include "system/SystemFiles.h"
#include "system/posix/ArchivePosix.h"
#include "system/posix/DrivePosix.h"
#include "system/posix/FilesPosix.h"
#include "system/posix/UnsettledPosix.h"

namespace kd {

using namespace posix;

namespace {

/// Raises the failure of a folder's flush; what is missing is the folder itself.
[[noreturn]] void RaiseOfFolder(std::string_view folder, int code) {
    if (code == ENOENT) {
        throw cError(errPathNotFound, "SystemFiles.FlushFolder", {}, Text(folder));
    }
    Raise("FlushFolder", folder, code);
}

/// Renames to a name that is not taken, or is an empty folder's. Returns 0 or an errno, EEXIST for a name
/// that is taken by anything but a folder.
int RenameToNew(const Text& present, const Text& target) noexcept {
#ifdef __linux__
    if (::renameat2(AT_FDCWD, present.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EEXIST && errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
#endif
    struct stat status {};
    if (::lstat(target.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
        return EEXIST;
    }
    return ::rename(present.c_str(), target.c_str()) == 0 ? 0 : errno;
}

/// The names in a folder, but its own and that of the one above.
std::vector<Text> NamesIn(std::string_view folder) {
    const Listing listing(::opendir(folder.empty() ? "/" : Text(folder).c_str()));
    if (!listing) {
        if (errno == ENOENT) {
            throw cError(errPathNotFound, "SystemFiles.FolderEntries", {}, Text(folder));
        }
        Raise("FolderEntries", folder, errno);
    }
    std::vector<Text> names;
    errno = 0;
    while (const dirent* entry = ::readdir(listing.get())) {
        Text name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(std::move(name));
        }
        errno = 0;
    }
    if (errno != 0) {
        Raise("FolderEntries", folder, errno);
    }
    return names;
}

/// Makes a folder and the missing ones above it; `made` gets the paths of those that were not there.
void MakeAll(const Text& path, std::vector<Text>& made) {
    const auto make = [&path] { return ::mkdir(path.c_str(), 0777) == 0 ? 0 : errno; };
    int code = make();
    const auto slash = path.find_last_of('/');
    if (code == ENOENT && slash != Text::npos && slash > 0) {
        MakeAll(path.substr(0, slash), made);
        code = make();
    }
    if (code == 0) {
        made.push_back(path);
        return;
    }
    struct stat status {};  // an existing folder may also be one above which nobody may write
    if (::stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
        Raise("MakeFolder", path, code == EEXIST ? EACCES : code);
    }
}

/// Removes a folder with all that is in it; none of it is kept any more.
void RemoveTree(const Text& path, KeptFolders& kept) {
    kept.open.erase(path);
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) {
        if (errno == ENOENT) {
            return;
        }
        Raise("RemoveFolder", path, errno);
    }
    if (!S_ISDIR(status.st_mode)) {
        if (::unlink(path.c_str()) != 0) {  // a link is removed, never followed
            Raise("RemoveFolder", path, errno);
        }
        return;
    }
    for (const Text& name : NamesIn(path)) {
        RemoveTree(paths::InFolder(path, name, '/'), kept);
    }
    if (::rmdir(path.c_str()) != 0) {
        Raise("RemoveFolder", path, errno);
    }
}

}  // namespace

std::vector<Text> SystemFiles::FolderEntries(std::string_view folder) {
    return NamesIn(folder);
}

void SystemFiles::MakeFolder(std::string_view folder) {
    std::vector<Text> made;
    MakeAll(Text(folder), made);
}

void SystemFiles::MakeKeptFolder(std::string_view folder) {
    constexpr int Tries = 5;
    const Text path(folder);
    std::vector<Text> names;  // what a try that has to be done again has made stays made
    for (int tries = 1;; ++tries) {
        MakeAll(path, names);
        Descriptor made(Open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW));
        struct stat status {};
        // Another program may have taken it for an abandoned one before it was kept.
        if (made.IsOpen() && Keep(made.Get()) && ::fstat(made.Get(), &status) == 0 && status.st_nlink > 0) {
            const bool isShared = m_unsettled->SharesItsFlush(made.Get());
            m_keptFolders->open.insert_or_assign(path, std::move(made));
            // What is in a folder is not on the disk before the folder's own name is.
            for (const Text& name : isShared ? std::vector<Text>() : names) {
                m_unsettled->AddName(name);
            }
            return;
        }
        if (tries == Tries) {
            Raise("MakeFolder", path, errno);
        }
    }
}

void SystemFiles::CopyForArchive(std::string_view source, std::string_view target) {
    CopyToArchive(Resolved("CopyForArchive", source), Text(target), FlushCopy::Yes);
}

void SystemFiles::CopyAllForArchive(const std::vector<Text>& sources, std::string_view folder) {
    // Opened and noted first: a failure to write what is copied is then told by this one's flush, whenever it
    // comes.
    const auto kept = m_keptFolders->open.find(Text(folder));
    const bool isKept = kept != m_keptFolders->open.end();
    const Descriptor opened(isKept ? -1 : Open(Text(folder), O_RDONLY | O_DIRECTORY));
    const int target = isKept ? kept->second.Get() : opened.Get();
    if (target < 0) {
        Raise("CopyForArchive", folder, errno);
    }
    // One by one where the folder's flush is not that of all that is in it.
    const bool isFlushedWithAll = m_unsettled->Add(target, folder) == Unsettled::Way::WithAll;
    const FlushCopy flush = isFlushedWithAll ? FlushCopy::No : FlushCopy::Yes;
    for (const Text& source : sources) {
        try {
            CopyToArchive(source, paths::InFolder(folder, paths::FileName(source), Delimiter()), flush);
        } catch (const cError& error) {
            throw cError(error.Number(), error.Source(), error.Description(), source);
        }
        LiveOn();
    }
}

void SystemFiles::Rename(std::string_view from, std::string_view to) {
    const Text target(to);
    const Text present(from);
    m_unsettled->AddName(target);
    if (const int code = RenameToNew(present, target); code != 0) {
        // What is missing is either the one that gets the name, or the folder of the new name.
        Raise("Rename", code == EEXIST || (code == ENOENT && IsPresent(present)) ? to : from,
              code == ENOTEMPTY || code == EEXIST ? EACCES : code);
    }
    m_keptFolders->open.erase(present);
}

void SystemFiles::FlushFolder(std::string_view folder) {
    Text inside(folder);
    inside += "/.";
    if (const int code = FlushFolderOf(inside); code != 0) {
        RaiseOfFolder(folder, code);
    }
}

void SystemFiles::RemoveFolder(std::string_view folder) {
    RemoveTree(Text(folder), *m_keptFolders);
}

void SystemFiles::RemoveEmptyFolder(std::string_view folder) noexcept {
    try {
        (void)::rmdir(Text(folder).c_str());  // one that is not empty is refused
    } catch (...) {
        // For want of memory: it stays.
    }
}

void SystemFiles::DeleteAbandonedFolder(std::string_view folder) noexcept {
    try {
        const Text path(folder);
        struct stat status {};
        const Descriptor left(Open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW));
        // By its name at last: it may have got another one since it was opened. A file system without locks
        // does not tell whether it is kept, and neither does one that other machines use.
        if (!left.IsOpen() || !LocksReachEverybody(left.Get()) ||
            ::flock(left.Get(), LOCK_EX | LOCK_NB) != 0 || !IsStillThere(left.Get(), path, status)) {
            return;
        }
        // Under another name first: who fills it all the same must not give what is left of it an archive's.
        const Text gone =
            paths::InFolder(paths::FolderToList(path), names::UnfinishedArchiveName(), Delimiter());
        if (RenameToNew(path, gone) == 0) {
            RemoveFolder(gone);
        }
    } catch (...) {
        // What cannot be removed stays.
    }
}

}  // namespace kd
