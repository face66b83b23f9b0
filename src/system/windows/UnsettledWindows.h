#pragma once

#include <map>
#include <set>
#include <vector>

#include "base/Text.h"
#include "system/windows/FilesWindows.h"

namespace kd::windows {

/// What was written or renamed and has not been brought to the disk yet. A plain user cannot flush a volume:
/// each file is flushed by itself, once however often it was added.
class Unsettled {
public:
    /// Takes note of an open file. One that cannot be noted is flushed at once.
    /// @throws cError(errDiskFull, errDevice)
    void Add(RawHandle file, const Text& path);
    /// Takes note of a folder in which a name has changed. The system keeps a journal of names, and renames
    /// are written through: that one cannot be flushed, as few may, is no failure.
    void AddFolder(Text path);
    /// Brings all of it to the disk.
    /// @throws cError(errDiskFull, errDevice) the first failure; nothing is left in any case.
    void Settle();

private:
    std::map<Text, Handle> m_files;  // by path
    std::set<Text> m_folders;
};

}  // namespace kd::windows
