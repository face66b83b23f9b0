#pragma once

#include <exception>
#include <functional>

#include "base/cError.h"
#include "platform/Platform.h"

namespace kd {

/// The words of a failure that no command handled: "Run-time error '6':", two CR LF, the description, and
/// where a file is at hand CR LF and its path.
Text UnhandledErrorText(const cError& error);

/// The edge between the toolkit's event loop and the logic: runs a handler; a failure that it does not handle
/// itself stops it where it is, without undoing; `putBack` then restores pointer, redraw and progress bar,
/// one critical box tells what happened, and the program goes on. Nothing escapes.
/// @returns whether the handler ran to its end.
bool AtEventBoundary(Toolkit& toolkit, const std::function<void()>& putBack,
                     const std::function<void()>& handler);
inline bool AtEventBoundary(Platform& platform, const std::function<void()>& putBack,
                            const std::function<void()>& handler) {
    return AtEventBoundary(platform.toolkit, putBack, handler);
}

}  // namespace kd
