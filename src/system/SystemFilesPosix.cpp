#ifndef _WIN32

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "base/Paths.h"
#include "base/cError.h"
#include "system/FilesPosix.h"
#include "system/ReplacePosix.h"
#include "system/SystemFiles.h"

namespace kd {

using namespace posix;

namespace {

/// Closes a folder's listing at the end of the scope.
struct CloseListing {
    void operator()(DIR* listing) const noexcept { (void)::closedir(listing); }
};
using Listing = std::unique_ptr<DIR, CloseListing>;

bool IsPresent(const Text& path) noexcept {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

class PosixOutput : public OutputFile {
public:
    PosixOutput(Descriptor file, Text path) : m_file(std::move(file)), m_path(std::move(path)) {}

    void Write(std::string_view bytes) override {
        if (const int code = WriteAll(m_file.Get(), bytes); code != 0) {
            Raise("Write", m_path, code);
        }
    }
    void Flush() override {
        if (::fsync(m_file.Get()) != 0) {
            Raise("Flush", m_path, errno);
        }
    }
    void Close() override {
        if (const int code = m_file.Close(); code != 0) {
            Raise("Close", m_path, code);
        }
    }

private:
    Descriptor m_file;
    Text m_path;
};

}  // namespace

char SystemFiles::Delimiter() const {
    return '/';
}

Text SystemFiles::Resolved(std::string_view path) const {
    Text asGiven(path);
    if (IsPresent(asGiven)) {
        return asGiven;
    }
    const auto slash = path.find_last_of('/');
    const Text folder = slash == std::string_view::npos ? Text(".")
                        : slash == 0                    ? Text("/")
                                                        : Text(path.substr(0, slash));
    const auto name = slash == std::string_view::npos ? path : path.substr(slash + 1);
    const Listing listing(::opendir(folder.c_str()));
    if (!listing || name.empty()) {
        return asGiven;
    }
    const Text wanted = m_page.Upper(name);
    Text found;
    while (const dirent* entry = ::readdir(listing.get())) {
        // Of several names the first in order, so that the choice does not hang on the listing.
        if (const Text present = entry->d_name;
            m_page.Upper(present) == wanted && (found.empty() || present < found)) {
            found = present;
        }
    }
    if (found.empty()) {
        return asGiven;
    }
    return slash == std::string_view::npos ? found : Text(path.substr(0, slash + 1)) + found;
}

bool SystemFiles::Exists(std::string_view path) {
    struct stat status {};
    return ::stat(Text(path).c_str(), &status) == 0 || ::stat(Resolved(path).c_str(), &status) == 0;
}

bool SystemFiles::IsRegularFile(std::string_view path) {
    struct stat status {};
    return ::stat(Resolved(path).c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::string SystemFiles::Read(std::string_view path) {
    std::string bytes;
    Read(path, bytes);
    return bytes;
}

void SystemFiles::Read(std::string_view path, std::string& bytes) {
    bytes.clear();
    Text present(path);
    Descriptor probe(Open(present, O_RDONLY | O_NONBLOCK | O_NOCTTY));
    if (!probe.IsOpen() && errno == ENOENT) {
        present = Resolved(path);
    }
    struct stat status {};
    Descriptor file = probe.IsOpen() ? std::move(probe) : OpenRegular("Read", present, O_RDONLY, 0, status);
    if (::fstat(file.Get(), &status) != 0) {
        Raise("Read", path, errno);
    }
    if (!S_ISREG(status.st_mode)) {
        Raise("Read", path, EACCES);
    }
    // One byte more than the file has: a read that fills all but that one has met the end.
    std::size_t filled = 0;
    bytes.resize(static_cast<std::size_t>(status.st_size) + 1);
    for (;;) {
        if (filled == bytes.size()) {
            bytes.resize(bytes.size() * 2);  // the file grew meanwhile
        }
        const ssize_t got = ::read(file.Get(), bytes.data() + filled, bytes.size() - filled);
        if (got < 0) {
            if (errno == EINTR) {
                continue;
            }
            const int code = errno;
            bytes.clear();
            Raise("Read", path, code);
        }
        filled += static_cast<std::size_t>(got);
        if (got == 0 || (filled + 1 == bytes.size() && filled == static_cast<std::size_t>(status.st_size))) {
            break;
        }
    }
    bytes.resize(filled);
}

std::unique_ptr<OutputFile> SystemFiles::OpenForOutput(std::string_view path) {
    struct stat status {};
    Text target(path);
    if (::lstat(target.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode) || !MayWrite(status)) {
            Raise("OpenForOutput", path, EACCES);
        }
        if (status.st_nlink > 1) {
            // Somebody else's name for the same file: what is written here must not reach it.
            if (::unlink(target.c_str()) != 0) {
                Raise("OpenForOutput", path, errno);
            }
        }
    }
    Descriptor file = OpenRegular("OpenForOutput", path, O_WRONLY | O_CREAT | O_NOFOLLOW, 0666, status);
    if (::ftruncate(file.Get(), 0) != 0) {
        Raise("OpenForOutput", path, errno);
    }
    return std::make_unique<PosixOutput>(std::move(file), std::move(target));
}

std::unique_ptr<OutputFile> SystemFiles::OpenForAppend(std::string_view path) {
    const Text target = Resolved(path);
    struct stat status {};
    if (::stat(target.c_str(), &status) == 0 && (!S_ISREG(status.st_mode) || !MayWrite(status))) {
        Raise("OpenForAppend", path, EACCES);
    }
    Descriptor file = OpenRegular("OpenForAppend", target, O_WRONLY | O_CREAT | O_APPEND, 0666, status);
    return std::make_unique<PosixOutput>(std::move(file), target);
}

void SystemFiles::CopyFile(std::string_view source, std::string_view target) {
    const std::string bytes = Read(source);
    ReplaceWhole("CopyFile", Resolved(target), bytes);
}

void SystemFiles::ReplaceFile(std::string_view path, std::string_view bytes) {
    ReplaceWhole("ReplaceFile", Resolved(path), bytes);
}

void SystemFiles::DeleteFile(std::string_view path) {
    const Text target = Resolved(path);
    struct stat status {};
    if (::lstat(target.c_str(), &status) != 0) {
        Raise("DeleteFile", path, errno);
    }
    if (S_ISDIR(status.st_mode) || (S_ISREG(status.st_mode) && !MayWrite(status))) {
        Raise("DeleteFile", path, EACCES);
    }
    if (::unlink(target.c_str()) != 0) {
        Raise("DeleteFile", path, errno);
    }
}

std::vector<Text> SystemFiles::FolderEntries(std::string_view folder) {
    const Listing listing(::opendir(folder.empty() ? "/" : Text(folder).c_str()));
    if (!listing) {
        if (errno == ENOENT) {
            throw cError(errPathNotFound, "SystemFiles.FolderEntries", {}, Text(folder));
        }
        Raise("FolderEntries", folder, errno);
    }
    std::vector<Text> names;
    while (const dirent* entry = ::readdir(listing.get())) {
        Text name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(std::move(name));
        }
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
    const Text from = Resolved(source);
    struct stat status {};
    const Descriptor read = OpenRegular("CopyForArchive", from, O_RDONLY, 0, status);
    const std::string bytes = Read(from);
    struct stat made {};
    Descriptor file = OpenRegular("CopyForArchive", target, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW,
                                  status.st_mode & 0777, made);
    int code = WriteAll(file.Get(), bytes);
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    if (code == 0 && ::futimens(file.Get(), times.data()) != 0) {
        code = errno;
    }
    if (code == 0 && ::fsync(file.Get()) != 0) {
        code = errno;
    }
    if (const int closed = file.Close(); code == 0) {
        code = closed;
    }
    if (code != 0) {
        (void)::unlink(Text(target).c_str());  // half a copy is none
        Raise("CopyForArchive", target, code);
    }
}

void SystemFiles::Rename(std::string_view from, std::string_view to) {
    const Text target(to);
    struct stat status {};
    if (::lstat(target.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
        Raise("Rename", to, EACCES);
    }
    if (::rename(Text(from).c_str(), target.c_str()) != 0) {
        Raise("Rename", from, errno == ENOTEMPTY || errno == EEXIST ? EACCES : errno);
    }
}

void SystemFiles::FlushFolder(std::string_view folder) {
    Text inside(folder);
    inside += "/.";
    if (const int code = FlushFolderOf(inside); code != 0) {
        Raise("FlushFolder", folder, code);
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

#endif
