#pragma once

#include "model/cField.h"

/// The bounds of variables whose files give none: as much as their masks hold.
namespace kd::modKDLimitDesk {

/// The largest number of a mask: 999.99 for a length of 6 with 2 decimals.
/// @throws cError(errInvalidArgument) where the mask has no place for the point, cError(errOverflow) for a
/// number beyond a double.
double MaxForMask(std::int32_t length, std::int32_t decimals);
/// The smallest number of a mask, the sign taking one place: -99.99 for a length of 6 with 2 decimals. 0
/// where there is no room for a sign. Errors as MaxForMask.
double MinForMask(std::int32_t length, std::int32_t decimals);

/// Gives a freshly read variable its bounds where it is numeric and its file gives none; they count as
/// loaded. `saved` and `field` are twins with the same values. Errors as MaxForMask.
void DeriveBounds(cField& saved, cField& field);

}  // namespace kd::modKDLimitDesk
