#pragma once

#include <sys/stat.h>

#include <string_view>

#include "base/Text.h"

namespace kd::posix {

/// Whether a file's mode lets anybody write it. The mode counts, also for a user who could override it.
inline bool MayWrite(const struct stat& status) noexcept {
    return (status.st_mode & 0222U) != 0;
}

/// Makes `target` hold `bytes`, wholly or not at all: they are written and flushed beside it and put in its
/// place in one step, with its owner and mode; a symbolic link stays one. Where that is not possible without
/// losing a link, the owner or for want of rights in the folder, the file is written over in place, and
/// brought back if that fails.
/// Whether the new name is flushed as well, which is the folder's, is `flushName`'s to say: many files of one
/// folder need it once. The target of a link, which may be in any folder, is always flushed with its name.
/// `source` is the open file that the bytes come from, or -1: it is flushed before the target is written over
/// in place, for it is then the only place where they stand whole.
/// @throws cError as Files::CopyFile.
enum class FlushName : bool { No, Yes };
void ReplaceWhole(const char* operation, std::string_view target, std::string_view bytes, FlushName flushName,
                  int source);

/// Puts `source` itself in the place of `target`, flushed and with the target's owner, mode and list of
/// rights. Returns false where that would lose a name of the target or a link, or would leave it to somebody
/// who could not write it before, or where the folder forbids it: the target is untouched then and the source
/// still there, for ReplaceWhole.
/// @throws cError as Files::CopyFile, with the target untouched and the source still there.
bool PutInPlace(const Text& source, const Text& target);

}  // namespace kd::posix
