#pragma once

#include "base/cError.h"
#include "platform/Files.h"

namespace kd {

/// What stands at the end of a change file, where the next lines are added.
enum class ChangeFileEnd {
    NothingYet,  // missing or empty
    WholeLine,
    OpenLine,  // the last line has no end: the machine went down while it was written
};

/// @throws cError when a file is there and cannot be read.
inline ChangeFileEnd EndOf(Files& files, std::string_view path) {
    const bool exists = files.Exists(path);
    std::string bytes;
    try {
        bytes = files.ReadEnd(path, CrLf.size());
    } catch (const cError& error) {
        // "No" counts only when the disk says it twice: a second heading would come into the log. In a folder
        // that may not be listed nothing more can be learned.
        const bool isMissing = error.Number() == errFileNotFound || error.Number() == errPathNotFound ||
                               error.Number() == errPermissionDenied;
        if (exists || !isMissing) {
            throw;
        }
    }
    if (bytes.empty()) {
        return ChangeFileEnd::NothingYet;
    }
    return bytes.ends_with(CrLf) ? ChangeFileEnd::WholeLine : ChangeFileEnd::OpenLine;
}

}  // namespace kd
