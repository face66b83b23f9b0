#pragma once

#include "model/cField.h"

/// Between the values of a record and their texts, by the property's row. cField::Value and cField::SetValue
/// are the door for who knows a column.
namespace kd {

struct Property;

/// Appends the value as text, in one of the three modes.
/// @throws cError(errInvalidArgument) for a limit or bound whose mask has no place for the point.
void AppendProperty(const cField& field, const Property& property, std::int32_t mode, const Locale& locale,
                    Text& text);

/// Stores the text of a cell. A word that is none of a method's, and a property that no cell shows, change
/// nothing.
/// @throws cError(errTypeMismatch) for a text that is no number where one is wanted, cError(errOverflow) for
/// a whole number outside 16 bits.
void StoreCellText(cField& field, const Property& property, std::string_view text, const Locale& locale);

}  // namespace kd
