#pragma once

#include "base/Text.h"

namespace kd {

class cField;
struct Property;

/// The property of a key, in upper case; null for a key that no variable has. Lives as long as the program.
const Property* FindSchemaKey(std::string_view key) noexcept;

/// Stores a file's text of a property.
/// @throws cError(errOverflow) for a number that does not fit the property.
void StoreFileText(cField& field, const Property& property, std::string_view value);

}  // namespace kd
