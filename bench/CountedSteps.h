#pragma once

#include <functional>
#include <string>

/// Runs the work, whose instructions are counted from its begin to its end: bench/instructions.py knows the
/// function by its name, which is plain for that. In a source of its own, or the compiler would make others
/// of it.
extern "C" void KdCounted(const std::function<void()>& work);

namespace kd::bench {

/// Does each step whose instructions are counted once, over the applications below `folder`, which may be
/// none; what is committed is a copy below `scratch`. Prints the step's name when it is done, and at the end
/// "variables N" and "bytes N". Steps that need a row are left out where there is none.
/// @throws std::runtime_error when a step has not done its work.
void CountSteps(const std::string& folder, const std::string& scratch);

}  // namespace kd::bench
