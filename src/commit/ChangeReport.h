#pragma once

#include "grid/Desk.h"

namespace kd {

/// What all records of one commit share.
struct CommitStamp {
    Text date;  // "yyyy-mm-dd"
    Text time;  // "hh:mm:ss"
    DateTime moment;
    Text user;
};

/// Records each marked cell of a view that was just saved in the two change files beside its template, takes
/// the marks away, and makes the saved values the baseline.
/// @throws cError from the writers and from values that have no text; marks and baseline then stay as far as
/// they have come.
void ReportChanges(Desk& desk, const cFile& file, const CommitStamp& stamp);

}  // namespace kd
