#pragma once

#include <cstddef>
#include <functional>
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
    using Ticket = std::size_t;
    /// Takes note of an open file, and keeps it open. One that cannot be noted is flushed at once.
    /// @returns what to give to Forget.
    /// @throws cError(errDiskFull, errDevice)
    Ticket Add(RawHandle file, const Text& path);
    /// The same for a file that is added to again and again under one name.
    void AddOnce(RawHandle file, const Text& path);
    /// Drops what Add has noted, if it is not settled yet.
    void Forget(Ticket ticket) noexcept { m_files.erase(ticket); }
    /// Takes note of a folder in which a name has changed. The system keeps a journal of names, and renames
    /// are written through: that one cannot be flushed, as few may, is no failure.
    void AddFolder(Text path);
    /// Brings all of it to the disk; `meanwhile` runs behind each flush. Nothing is left in any case.
    /// @returns all failures (errDiskFull, errDevice), with their paths.
    [[nodiscard]] std::vector<cError> TrySettle(const std::function<void()>& meanwhile);

private:
    struct Kept {
        Handle file;
        Text path;
    };
    std::map<Ticket, Kept> m_files;  // in the order in which they were added
    std::set<Text> m_once;           // paths of those that were added once
    std::set<Text> m_folders;
    Ticket m_last = 0;
};

}  // namespace kd::windows
