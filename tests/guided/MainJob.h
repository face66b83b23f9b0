#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "guided/Guide.h"

namespace kd {

/// One limit that the main job changes.
struct LimitChange {
    std::string file;      // name of the template
    std::int16_t viewNo;   // of the view
    std::string variable;  // its name
    std::string oldUsl;    // as the grid shows it, set when the run comes to the cell
    std::string newUsl;    // what is typed
    std::string wrongUsl;  // what is typed first and refused at the commit; empty for none
};

/// A number that the grid shows, with the point of the files; a record's line likewise.
std::string WithPoint(std::string_view text);

/// Row of a variable; 0 when there is none.
std::int32_t RowOf(Application& program, const LimitChange& change);

/// The first steps: the list of applications is confirmed and loaded.
void LoadAll(Guide& guide, Application& program);

/// The steps of the main job once the applications are loaded: limits are changed, a text and an order
/// of limits are refused, and all is committed. `changes` must outlive the run.
void DoMainJob(Guide& guide, Application& program, std::vector<LimitChange>& changes);

/// What a run has left on the disk.
struct Outcome {
    std::vector<std::string> report;    // for people
    std::vector<std::string> failures;  // empty when the files are as they must be
};

/// Holds the files below `folder` against those before the run: only the changed views differ, in the changed
/// lines and the revision alone; the archive holds the files as they were; log and report have a record of
/// each change.
Outcome CheckFiles(const std::string& folder, const std::map<std::string, std::string>& before,
                   const std::vector<LimitChange>& changes);

}  // namespace kd
