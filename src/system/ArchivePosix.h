#pragma once

#include "base/Text.h"

/// Copies for an archive. Only for the sources beside this header.
namespace kd::posix {

/// Copies one regular file to a new place: bytes, times and mode. Nobody gets a right by it that the source
/// does not give him. A copy that fails leaves none. Whether it is flushed at once is `flush`'s to say:
/// several are flushed together.
/// @throws cError as Files::CopyForArchive, with the source or the target, whichever failed.
enum class FlushCopy : bool { No, Yes };
void CopyToArchive(const Text& source, const Text& target, FlushCopy flush);

}  // namespace kd::posix
