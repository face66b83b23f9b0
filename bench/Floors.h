#pragma once

#include <string>

#include "Measure.h"

namespace kd::bench {

/// What the same files cost tools that do next to nothing, by these names: "wc", "cat", "cp" (a copy brought
/// to the disk, twice), "sed" (one key in all files). The copies go below `scratch`.
Costs MeasureFloors(const std::string& folder, const std::string& scratch);

/// Whether an office program is there to be compared with.
bool HasOffice();
/// The office program turns the grid's comma separated values into its own form.
Cost MeasureOffice(const std::string& grid, const std::string& scratch);

}  // namespace kd::bench
