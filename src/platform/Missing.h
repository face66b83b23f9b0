#pragma once

#include "base/cError.h"
#include "platform/Files.h"

namespace kd {

/// Whether a refusal counts as well as the words that a file is missing. It does where nothing more can be
/// learned of a file, as in a folder that may not be listed.
enum class Refusal : bool { SaysNothing, CountsAsMissing };

/// Whether a failed reading says that the file is missing.
inline bool SaysMissing(const cError& error, Refusal refusal) {
    const std::int32_t number = error.Number();
    return number == errFileNotFound || number == errPathNotFound ||
           (number == errPermissionDenied && refusal == Refusal::CountsAsMissing);
}

/// Runs `read`, which reads the file of that path, and returns true; false where the file is missing. It is
/// missing only where the disk says so twice: one that does not answer for a moment must not be taken for one
/// without the file where that would cost what the file holds. A file that is there after all is read anew.
/// @throws cError what `read` raises of a file that may be there.
template <typename Read>
bool ReadUnlessMissing(Files& files, std::string_view path, Refusal refusal, Read read) {
    try {
        read();
        return true;
    } catch (const cError& error) {
        if (!SaysMissing(error, refusal)) {
            throw;
        }
    }
    if (!files.Exists(path)) {
        return false;
    }
    read();
    return true;
}

/// What is known of a file: Unknown where the disk denies it without saying that it is missing.
enum class Presence { Here, Missing, Unknown };

/// Whether a file is there; missing where that was said twice.
inline Presence PresenceOf(Files& files, std::string_view path) {
    if (files.Exists(path)) {
        return Presence::Here;
    }
    try {
        (void)files.Read(path);
        return Presence::Here;
    } catch (const cError& error) {
        return SaysMissing(error, Refusal::SaysNothing) ? Presence::Missing : Presence::Unknown;
    }
}

}  // namespace kd
