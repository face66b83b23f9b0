#pragma once

#include <optional>

#include "edit/EditMemory.h"
#include "grid/Desk.h"

namespace kd {

/// Replaces the first occurrence of a text in each visible selected cell of one column. A refusal shows the
/// dialog again; nothing is written before all new texts have passed.
void Replace(Desk& desk, EditMemory& memory);

/// The text with the first occurrence of `find` replaced; nothing when it does not occur. Without `matchCase`
/// both are compared in upper case; the parts around the match stay as they are.
std::optional<Text> ReplaceFirst(const CodePage& page, std::string_view text, std::string_view find,
                                 std::string_view replacement, bool matchCase);

}  // namespace kd
