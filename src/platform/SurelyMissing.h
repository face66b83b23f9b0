#pragma once

#include "base/cError.h"
#include "platform/Files.h"

namespace kd {

/// Whether no file is there, said twice: a disk that does not answer for a moment must not be taken for one
/// without the file where that would cost what the file holds.
inline bool IsSurelyMissing(Files& files, std::string_view path) {
    if (files.Exists(path)) {
        return false;
    }
    try {
        (void)files.Read(path);
        return false;
    } catch (const cError& error) {
        return error.Number() == errFileNotFound || error.Number() == errPathNotFound;
    }
}

}  // namespace kd
