#pragma once

#include <cstdint>

#include "base/Text.h"
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

/// The operation in which the error that the action raises arose; "none" when it raises none.
template <typename Action>
Text SourceOf(Action action) {
    try {
        action();
    } catch (const cError& error) {
        return error.Source();
    }
    return "none";
}

}  // namespace kd
