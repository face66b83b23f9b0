#pragma once

#include "grid/Desk.h"

namespace kd {

/// Appends the row of the variable at position `row` in gFields, which is also its grid row. Only while
/// loading, in ascending order: the rows behind it would be cut off.
void RefreshGridRow(Desk& desk, std::int32_t row);

}  // namespace kd
