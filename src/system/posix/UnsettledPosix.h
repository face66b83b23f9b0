#pragma once

#include <sys/stat.h>

#include <map>
#include <set>
#include <vector>

#include "base/Text.h"
#include "system/posix/FilesPosix.h"

namespace kd::posix {

/// Whether one flush of its file system brings an open file to the disk for good. Not where the files are a
/// server's or another program's: such a flush stops short of those.
bool OneFlushIsEnough(int fd) noexcept;

/// What was written or renamed and has not been brought to the disk yet.
class Unsettled {
public:
    /// Takes note of an open file or folder. One that cannot be noted is flushed at once, and false is
    /// returned.
    /// `path` is what a failure to flush it names.
    /// @throws cError(errDiskFull, errDevice)
    bool Add(int fd, std::string_view path);
    /// The same for a file that is itself in the folder of its path.
    void AddInFolder(int fd, const Text& path);
    /// Whether such a one has been added for the folder since the last call of Settle.
    bool HasIn(const Text& folder) const { return m_folders.count(folder) != 0; }
    /// Brings all of it to the disk: with one flush for each file system where that is enough, else each file
    /// by itself.
    /// @throws cError(errDiskFull, errDevice) the first failure; nothing is left in any case.
    void Settle();

private:
    std::set<Text> m_folders;
    struct Kept {
        Descriptor file;
        Text path;
    };
    /// One of each file system that one flush is enough for, opened before the later ones were written: its
    /// flush then tells their failures too.
    std::map<dev_t, Kept> m_systems;
    std::vector<Kept> m_files;  // of the others
};

}  // namespace kd::posix
