#pragma once

#include <string>
#include <vector>

#include "Measure.h"

namespace kd::bench {

/// All medians at one size.
struct Size {
    std::size_t files = 0;
    Medians medians;

    double Variables() const;
};

/// Prints the figures of the largest size, which is the first, with floor, ratio and target; how the costs
/// grow from the smallest, which is the last; and the costs at all sizes.
void PrintTables(const std::vector<Size>& sizes);

}  // namespace kd::bench
