#pragma once

#include <cmath>

#include "base/Numbers.h"
#include "base/cError.h"

namespace kd {

/// The number at the front of a file's text.
/// @throws cError(errOverflow) beyond the range of a double.
inline double FileNumber(std::string_view text) {
    const double number = NumberAtFront(text);
    if (!std::isfinite(number)) {
        throw cError(errOverflow, "FileNumber");
    }
    return number;
}

}  // namespace kd
