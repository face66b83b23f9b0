#pragma once

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "base/cError.h"
#include "platform/Files.h"

/// The system's calls, with the failures of the house. Only for the sources beside this header.
namespace kd::posix {

/// An open file of the system, given back at the end of the scope.
class Descriptor {
public:
    explicit Descriptor(int fd = -1) noexcept : m_fd(fd) {}
    ~Descriptor() {
        if (m_fd >= 0) {
            (void)::close(m_fd);  // nothing was written that a caller counts on: writers call Close
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : m_fd(other.m_fd) { other.m_fd = -1; }
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_fd, other.m_fd);
        return *this;
    }

    int Get() const noexcept { return m_fd; }
    bool IsOpen() const noexcept { return m_fd >= 0; }
    /// Closes, and tells what the system says of it (0 or an errno).
    int Close() noexcept;

private:
    int m_fd;
};

/// Folders that are kept from other programs as long as they are open here, by path.
struct KeptFolders {
    std::map<Text, Descriptor> open;
};

/// A folder's listing, closed at the end of the scope.
struct CloseListing {
    void operator()(DIR* listing) const noexcept { (void)::closedir(listing); }
};
using Listing = std::unique_ptr<DIR, CloseListing>;

/// Whether something stands at the path, be it a link to nowhere; errno says why not.
bool IsPresent(const Text& path) noexcept;

/// Whether the open file or folder is still the one of that name; `open` tells about it.
bool IsStillThere(int fd, const Text& path, struct stat& open) noexcept;

/// Which file the system has told about, and in which state.
FileState StateOf(const struct stat& status) noexcept;

/// Keeps an open file or folder from other programs that ask the same, as long as it is open; false where one
/// of them keeps it. A file system without locks keeps nothing, and says yes.
bool Keep(int fd) noexcept;

/// The failure that `code` (an errno) stands for. A missing file in a missing folder is errPathNotFound.
cError FailureOf(const char* operation, std::string_view path, int code);
/// Raises it.
[[noreturn]] void Raise(const char* operation, std::string_view path, int code);

/// Opens with O_CLOEXEC, and again when a signal came in between; -1 with errno set on failure.
int Open(const Text& path, int flags, mode_t mode = 0666);

/// Whether a file's mode lets anybody write it. The mode counts, also for a user who could override it.
inline bool MayWrite(const struct stat& status) noexcept {
    return (status.st_mode & 0222U) != 0;
}

/// Opens a regular file that is there; never waits on a FIFO or device, which are not even opened, and
/// neither are folders; with O_NOFOLLOW no link either. The file is named once, and then asked itself what it
/// is: its name may stand for another one a moment later. `code` is 0 or an errno, and the file not open
/// then.
Descriptor TryRegular(const Text& path, int flags, struct stat& status, int& code);
/// The same, with the failure raised.
Descriptor OpenRegular(const char* operation, std::string_view path, int flags, struct stat& status);
/// The same for one that is mostly missing, and is made then with that mode, which `isMade` tells; a link to
/// nowhere is refused.
Descriptor CreateOrOpen(const char* operation, std::string_view path, int flags, mode_t mode,
                        struct stat& status, bool& isMade);

/// Reads an open regular file of about `size` bytes from where it stands to its end; what `bytes` held before
/// is gone. Returns 0 or an errno, with no bytes then.
int ReadToEnd(int fd, off_t size, std::string& bytes);

/// Writes all bytes. Returns 0 or an errno.
int WriteAll(int fd, std::string_view bytes) noexcept;
/// The same; `written` is how many of them got there.
int WriteAll(int fd, std::string_view bytes, std::size_t& written) noexcept;

/// Brings an open file to the disk itself. Returns 0 or an errno.
int Flush(int fd) noexcept;

/// Gives an open file that size. Returns 0 or an errno.
int CutAt(int fd, off_t size) noexcept;

/// Flushes the folder that holds the path, so that a rename in it lasts. Returns 0 or an errno.
int FlushFolderOf(const Text& path) noexcept;

}  // namespace kd::posix
