#pragma once

#include "guided/MainJob.h"

namespace kd {

/// The steps of a user who tries the commands on one variable and takes everything back: filter a column,
/// fill a calculation, paste, replace, restore, the view modes, and the About box. Leaves no marked cell.
void TryCommands(Guide& guide, Application& program, const LimitChange& variable);

}  // namespace kd
