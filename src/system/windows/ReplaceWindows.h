#pragma once

#include <string_view>

namespace kd::windows {

/// Makes `target` hold `bytes`, wholly or not at all: they are written and flushed beside it and put in its
/// place in one step, with its owner, access rights, attributes and time of creation; a link stays one. Where
/// that is not possible without losing a link, the owner or the rights, or for want of rights in the folder,
/// or because another program keeps the file open, the file is written over in place, and brought back if
/// that fails.
/// @throws cError as Files::CopyFile.
void ReplaceWhole(const char* operation, std::string_view target, std::string_view bytes);

/// Puts `source`, whose content is on the disk, itself in the place of `target`, with the target's owner,
/// access rights, attributes and time of creation. Returns false where ReplaceWhole would not replace the
/// target by a new file, or where there is none: both files stand as before then.
/// @throws cError as Files::CopyFile, with the target untouched and the source still there.
bool PutInPlace(const char* operation, std::string_view source, std::string_view target);

}  // namespace kd::windows
