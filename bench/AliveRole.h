#pragma once

#include <string>

namespace kd::bench {

/// No figure: load, filter and commit of all views, on a copy of the folder below `scratch` and on the
/// display that is there. Tells on the standard output when each of them begins and ends, as "begin NAME MS"
/// and "end NAME MS" by the clock CLOCK_MONOTONIC, for scripts/trials/liveness.py.
void RunAlive(const std::string& folder, const std::string& scratch);

}  // namespace kd::bench
