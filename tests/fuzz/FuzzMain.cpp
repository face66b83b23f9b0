#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzTargets.h"

/// The one target that this program tries; its name comes from the build.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kd::fuzz::KD_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
    return 0;
}
