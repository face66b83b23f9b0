#pragma once

#include "base/Text.h"

/// Copies for an archive. Only for the sources beside this header.
namespace kd::posix {

/// Whether a copy goes to the disk at once; several are flushed together by their caller.
enum class FlushCopy : bool { No, Yes };

/// Copies one regular file to a new place: bytes, times and mode. Nobody gets a right by it that the source
/// does not give him. A copy that fails leaves none.
/// @throws cError as Files::CopyForArchive, with the source or the target, whichever failed.
void CopyToArchive(const Text& source, const Text& target, FlushCopy flush);

}  // namespace kd::posix
