#pragma once

#include "platform/Files.h"
#include "platform/Missing.h"

namespace kd {

/// What stands at the end of a change file, where the next lines are added.
enum class ChangeFileEnd {
    NothingYet,  // missing or empty
    WholeLine,
    OpenLine,  // the last line has no end: the machine went down while it was written
};

/// @throws cError when a file is there and cannot be read.
inline ChangeFileEnd EndOf(Files& files, std::string_view path) {
    std::string bytes;
    // A second heading would come into the log of a file that is taken for a missing one.
    (void)ReadUnlessMissing(files, path, Refusal::CountsAsMissing,
                            [&] { bytes = files.ReadEnd(path, CrLf.size()); });
    if (bytes.empty()) {
        return ChangeFileEnd::NothingYet;
    }
    return bytes.ends_with(CrLf) ? ChangeFileEnd::WholeLine : ChangeFileEnd::OpenLine;
}

}  // namespace kd
