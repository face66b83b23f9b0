#pragma once

#include <sys/stat.h>

#include <functional>
#include <string_view>

#include "base/Text.h"
#include "platform/Files.h"

namespace kd::posix {

/// Makes `target` hold `bytes`, wholly or not at all: they are written and flushed beside it and put in its
/// place in one step, with its owner and mode; a symbolic link stays one. Where that is not possible without
/// losing a link, the owner or for want of rights in the folder, the file is written over in place, and
/// brought back if that fails.
/// Whether the new name is flushed as well, which is the folder's, is `flushName`'s to say: many files of one
/// folder need it once. The target of a link, which may be in any folder, is always flushed with its name.
/// `source` is the open file that the bytes come from: it is flushed before the target is written over in
/// place, for it is then the only place where they stand whole.
/// @throws cError as Files::CopyFile.
enum class FlushName : bool { No, Yes };
/// For a source that is on the disk already, and for bytes that come from none.
constexpr int AlreadySettled = -1;
constexpr int NoSource = -1;
void ReplaceWhole(const char* operation, std::string_view target, std::string_view bytes, FlushName flushName,
                  int source);

class Unsettled;

/// What came of putting a file in the place of another: `Changed` where that one is another than it was.
enum class Placing { Done, NotPossibleHere, Changed };

/// Puts `source` itself in the place of `target`, flushed and with the target's owner, mode and list of
/// rights. Not possible where that would lose a name of the target or a link, or would leave it to somebody
/// who could not write it before, or where the folder forbids it: the target is untouched then and the source
/// still there, for ReplaceWhole.
/// A source that has been settled is told by `settled`, which takes note of its new name: such a one is
/// flushed only where it has to be given rights that it has not yet.
/// `seen` is the state that the target has to be in, if any.
/// @throws cError as Files::CopyFile, with the target untouched and the source still there.
Placing PutInPlace(const Text& source, const Text& target, Unsettled* settled, const FileState* seen);

/// The path of the file that is meant where nothing stands at the given one: its name differs only in case.
/// The given one where there is none. Raises cError where that cannot be known.
using OtherName = std::function<Text(const Text& missing)>;

/// Gives an open file of the user's own the owner, the mode and the list of rights of the file at `path`
/// where PutInPlace would do it. One that gets none of these, and is the user's alone so far, lets in those
/// whom the file at `path` lets in as one of its group, of those on its list or of all others, and nobody
/// else: those who may write that one can then see that this one is kept, and take over what is left of it.
/// The owner of that one is kept out where he is none of these, and its group where the user is not in it,
/// but for what all others may. Where that one is missing, it gets what that one would have got. Returns
/// which file that one is, by whatever name, and in which state; nothing for one that only another case of
/// its name finds.
FileState TakeOverRightsOf(int fd, std::string_view path, const OtherName& otherName) noexcept;

}  // namespace kd::posix
