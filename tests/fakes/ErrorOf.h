#pragma once

#include <cstdint>

#include "base/cError.h"

namespace kd {

/// Number of the error that the action raises; 0 when it raises none.
template <typename Action>
std::int32_t ErrorOf(Action action) {
    try {
        action();
    } catch (const cError& error) {
        return error.Number();
    }
    return 0;
}

}  // namespace kd
