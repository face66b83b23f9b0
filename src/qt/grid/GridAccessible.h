#pragma once

namespace kd {

/// Makes screen readers find every grid as a table. Once for the whole run, however often it is called;
/// before the first grid is asked for.
void InstallGridAccessibility();

}  // namespace kd
