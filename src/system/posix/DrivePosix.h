#pragma once

#include <cstdint>
#include <string_view>

/// What the drive of an open file or folder is known to do.
namespace kd::posix {

/// Whether a system of that release ("5.17.0") tells the failures of the flush of a whole file system.
bool TellsFailedFlushes(std::string_view release) noexcept;

/// What is known of a file system: one of this machine's own disks, one that lies over another, one of a
/// server's, or nothing.
enum class Drive { Unknown, Disk, Overlay, Nfs };
/// What the system's number for a kind of file system stands for: `f_type` of fstatfs.
Drive DriveOfType(std::uint32_t type) noexcept;

/// Whether one flush of such a file system brings its files to the disk for good, and tells where it does
/// not.
bool IsFlushedAtOnce(Drive drive) noexcept;
/// Whether a lock there is one for all that use it.
bool HasLocksForAll(Drive drive) noexcept;

/// Whether one flush of its file system brings an open file to the disk for good, and tells where it does
/// not. Not where the files are a server's, another program's or in a file system below: such a flush stops
/// short of those, or of what fails in them.
bool OneFlushIsEnough(int fd) noexcept;

/// Whether a lock on an open file or folder is one for all that use it: where they may be on other machines,
/// it mostly holds on this one alone.
bool LocksReachEverybody(int fd) noexcept;

}  // namespace kd::posix
