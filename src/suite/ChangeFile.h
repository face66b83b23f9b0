#pragma once

#include "platform/Files.h"

namespace kd {

/// Whether a change file has yet to be begun.
/// @throws cError when a file is there and cannot be read.
inline bool IsMissingOrEmpty(Files& files, std::string_view path) {
    return !files.Exists(path) || files.Read(path).empty();
}

}  // namespace kd
