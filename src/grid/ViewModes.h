#pragma once

#include "grid/Desk.h"

/// The entries of the View and the Options menu: what is in sight. None of them changes data. The ticks of
/// the entries are their only state; columns are told by their numbers, so that any order of columns serves.
namespace kd {

/// The Options menu opens: an open cell editor is settled, and Clear All Filters is enabled when any column
/// has a filter.
void mnuOptions_Click(Desk& desk);
void mnuClearFilters_Click(Desk& desk);

/// The View menu opens: an open cell editor is settled.
void mnuView_Click(Desk& desk);
void mnuShowPaths_Click(Desk& desk);
void mnuShowOnlyNumericVariables_Click(Desk& desk);
void mnuShowAll_Click(Desk& desk);

}  // namespace kd
