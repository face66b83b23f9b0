#pragma once

#include "model/cField.h"
#include "platform/Services.h"

namespace kd {

/// Appends a key line of a schema file up to its value: three blanks, the key, blanks up to column 16, "= ".
void AppendSchemaKey(std::string_view key, Text& text);

/// Appends the block of a variable; `isView` adds the keys that only view files have. Which keys follow
/// "LENGTH" depends on the variable's type, to the letter. A line end within a value is written as blanks.
/// @throws cError(errInvalidArgument) where a limit's or bound's mask has no place for the point.
void AppendSchemaBlock(const cField& field, bool isView, const Locale& locale, Text& text);

}  // namespace kd
