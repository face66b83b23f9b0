#pragma once

#include <optional>
#include <set>

#include "grid/Desk.h"

/// The way back to disk.
namespace kd {

/// A cell of the grid.
struct GridCell {
    std::int32_t row;        // from 1 below the header row
    std::int32_t screenCol;  // from 0

    bool operator==(const GridCell&) const = default;
};

/// Whether the bounds and the fixed limits of all numeric variables are in order, from Maximum down to
/// Minimum; rows that are hidden count too.
/// @returns the first cell that is not; nothing when all are.
std::optional<GridCell> ValidateLimits(Desk& desk);

/// Whether the list has the key.
bool ItemExists(const Text& key, const std::set<Text>& list);

/// Checks all limits, asks which of the changed views to write, and archives, saves and reports each of them.
/// What fails is told in boxes; nothing of it escapes once the user has confirmed.
void CommitChanges(Desk& desk);

}  // namespace kd
