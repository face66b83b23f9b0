#pragma once

#include <sys/stat.h>

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "base/Text.h"
#include "system/posix/FilesPosix.h"

namespace kd::posix {

/// What was written or renamed and has not been brought to the disk yet.
class Unsettled {
public:
    /// What brings a file or folder to the disk: a flush that has come to pass already, one of its own, or
    /// that of all that is on its file system.
    enum class Way { AtOnce, Alone, WithAll };

    /// Takes note of an open file or folder. One that cannot be noted is flushed at once.
    /// `path` is what a failure to flush it names.
    /// @throws cError(errDiskFull, errDevice)
    Way Add(int fd, std::string_view path) { return Add(fd, path, SystemOf(fd)); }
    /// The same for a file that is added to again and again under one name.
    void AddOnce(int fd, const Text& path);
    /// The same for a file that is itself in the folder of its path.
    void AddInFolder(int fd, const Text& path);
    /// Takes note that the open file gets the name `path`, in the same file system.
    /// @throws cError as Add.
    void AddName(int fd, const Text& path);
    /// The same where the file is not at hand. A folder that may not be listed cannot be flushed, and is not
    /// noted; neither is a missing one, where nothing gets a name.
    /// @throws cError as Add.
    void AddName(const Text& path);
    /// OneFlushIsEnough for an open file or folder. A server is asked once for each of its drives until all
    /// is settled.
    bool SharesItsFlush(int fd) { return SystemOf(fd).has_value(); }
    /// Brings all of it to the disk: with one flush for each file system where that is enough, else each file
    /// by itself, in the order in which they were added; `meanwhile` runs between the flushes. Nothing is
    /// left in any case.
    /// @returns all failures (errDiskFull, errDevice): without a path where it is a file system's, with the
    /// folder's where it is that of names.
    [[nodiscard]] std::vector<cError> TrySettle(const std::function<void()>& meanwhile);

private:
    /// The file system of an open file or folder where one flush of it is enough.
    std::optional<dev_t> SystemOf(int fd);
    /// Each asks for the file system but once: an answer that fails and one that does not would leave what
    /// one flush is thought to be enough for without it.
    Way Add(int fd, std::string_view path, std::optional<dev_t> system);
    /// Keeps an open file or folder until it is settled.
    Way Take(Descriptor file, std::string_view path, std::optional<dev_t> system);

    std::map<dev_t, bool> m_drives;  // whether one flush is enough
    std::set<Text> m_folders;        // whose names are settled with what has been noted
    std::set<Text> m_once;           // paths of those that were added once
    struct Kept {
        Descriptor file;
        Text path;
    };
    /// One of each file system that one flush is enough for, opened before the later ones were written: its
    /// flush then tells their failures too.
    std::map<dev_t, Descriptor> m_systems;
    std::vector<Kept> m_files;  // of the others
};

}  // namespace kd::posix
