#pragma once

#include "base/cError.h"
#include "platform/Files.h"

namespace kd {

/// What is known of a file: Unknown where the disk denies it without saying that it is missing.
enum class Presence { Here, Missing, Unknown };

/// Whether a file is there. It is missing only where that was said twice: a disk that does not answer for a
/// moment must not be taken for one without the file where that would cost what the file holds.
inline Presence PresenceOf(Files& files, std::string_view path) {
    if (files.Exists(path)) {
        return Presence::Here;
    }
    try {
        (void)files.Read(path);
        return Presence::Here;
    } catch (const cError& error) {
        const bool isMissing = error.Number() == errFileNotFound || error.Number() == errPathNotFound;
        return isMissing ? Presence::Missing : Presence::Unknown;
    }
}

}  // namespace kd
