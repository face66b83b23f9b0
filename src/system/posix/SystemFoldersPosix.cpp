#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <set>
#include <utility>

#include "base/Paths.h"
#include "base/cError.h"
#include "system/SystemFiles.h"
#include "system/posix/ArchivePosix.h"
#include "system/posix/FilesPosix.h"

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

}  // namespace

std::vector<Text> SystemFiles::FolderEntries(std::string_view folder) {
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

void SystemFiles::MakeFolder(std::string_view folder) {
    const Text path(folder);
    for (std::size_t at = path.find('/', 1);; at = path.find('/', at + 1)) {
        const Text part = path.substr(0, at);
        if (::mkdir(part.c_str(), 0777) != 0) {
            const int code = errno;  // an existing folder above may also be one that nobody may write
            struct stat status {};
            if (::stat(part.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
                Raise("MakeFolder", part, code == EEXIST ? EACCES : code);
            }
        }
        if (at == Text::npos) {
            return;
        }
    }
}

void SystemFiles::CopyForArchive(std::string_view source, std::string_view target) {
    CopyToArchive(Resolved(source), Text(target), FlushCopy::Yes);
}

#ifdef __linux__
void SystemFiles::CopyAllForArchive(const std::vector<Text>& sources, std::string_view folder) {
    // Opened first: a failure to write what is copied is then told by this one's flush, whenever it comes.
    const Descriptor target(Open(Text(folder), O_RDONLY | O_DIRECTORY));
    if (!target.IsOpen()) {
        Raise("CopyForArchive", folder, errno);
    }
    for (const Text& source : sources) {
        try {
            CopyToArchive(Resolved(source), paths::Join(folder, paths::FileName(source), Delimiter()),
                          FlushCopy::No);
        } catch (const cError& error) {
            throw cError(error.Number(), error.Source(), error.Description(), source);
        }
    }
    // One flush of the file system they are in costs what one file's does.
    if (::syncfs(target.Get()) != 0) {
        Raise("CopyForArchive", folder, errno);
    }
}

void SystemFiles::FlushFolders(const std::vector<Text>& folders) {
    std::set<dev_t> flushed;  // file systems, each of which is flushed once for all its folders
    for (const Text& folder : folders) {
        struct stat status {};
        const Descriptor file(Open(folder + "/.", O_RDONLY | O_DIRECTORY));
        if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0 ||
            (flushed.insert(status.st_dev).second && ::syncfs(file.Get()) != 0)) {
            RaiseOfFolder(folder, errno);
        }
    }
}
#endif

void SystemFiles::Rename(std::string_view from, std::string_view to) {
    const Text target(to);
    struct stat status {};
    if (::lstat(target.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
        Raise("Rename", to, EACCES);
    }
    const Text present(from);
    if (::rename(present.c_str(), target.c_str()) != 0) {
        const int code = errno == ENOTEMPTY || errno == EEXIST ? EACCES : errno;
        // What is missing is either the one that gets the name, or the folder of the new name.
        Raise("Rename", code == ENOENT && IsPresent(present) ? to : from, code);
    }
}

void SystemFiles::FlushFolder(std::string_view folder) {
    Text inside(folder);
    inside += "/.";
    if (const int code = FlushFolderOf(inside); code != 0) {
        RaiseOfFolder(folder, code);
    }
}

void SystemFiles::RemoveFolder(std::string_view folder) {
    const Text path(folder);
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) {
        if (errno == ENOENT) {
            return;
        }
        Raise("RemoveFolder", folder, errno);
    }
    if (!S_ISDIR(status.st_mode)) {
        if (::unlink(path.c_str()) != 0) {  // a link is removed, never followed
            Raise("RemoveFolder", folder, errno);
        }
        return;
    }
    for (const Text& name : FolderEntries(path)) {
        RemoveFolder(path + "/" + name);
    }
    if (::rmdir(path.c_str()) != 0) {
        Raise("RemoveFolder", folder, errno);
    }
}

}  // namespace kd
