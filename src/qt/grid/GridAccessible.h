#pragma once

namespace kd {

/// Makes screen readers find the grid as a table. Once for the whole run, however often it is called.
void InstallGridAccessibility();

}  // namespace kd
