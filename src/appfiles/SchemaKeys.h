#pragma once

#include "base/Text.h"

namespace kd {

class cField;

/// Stores the text of one key of a variable's block.
/// @throws cError(errOverflow) for a number that does not fit its property.
using SchemaKeyReader = void (*)(cField& field, std::string_view value);

/// What reads the values of a key, in upper case; null for a key that no variable has.
SchemaKeyReader FindSchemaKey(std::string_view key) noexcept;

}  // namespace kd
