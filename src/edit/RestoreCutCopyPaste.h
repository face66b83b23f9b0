#pragma once

#include "grid/Desk.h"

/// The commands over the selection that need no dialog. Restore, Cut and Copy work on what is visible of the
/// selected rectangle, Paste works from the current cell. Cut and Paste check all cells before
/// they write the first. Without a selection each ends without a word.
///
/// On the clipboard a TAB stands between cells and a CR between rows, and nothing else: no line feed, no
/// separator at the end, no quoting.
namespace kd {

/// Puts the baseline's texts back, in read-only columns too. Flags that a view was changed stay.
void Restore(Desk& desk);
/// Copies, then blanks. The clipboard is touched last.
void Cut(Desk& desk);
void Copy(Desk& desk);
void Paste(Desk& desk);

}  // namespace kd
