#pragma once

#include "edit/EditMemory.h"
#include "grid/Desk.h"

namespace kd {

/// Fills what is visible of the selection with a constant, or one limit column with a calculation from
/// another limit of the same row. A refusal shows the dialog again; nothing is written before all cells have
/// passed.
void Fill(Desk& desk, EditMemory& memory);

}  // namespace kd
