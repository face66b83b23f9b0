#pragma once

#include <functional>

#include "platform/Toolkit.h"

namespace kd {

/// Where the user's doing enters the logic: every widget hands its event to Run, so that no failure reaches
/// the toolkit's event loop.
class EventEdge {
public:
    explicit EventEdge(Toolkit& toolkit) : m_toolkit(toolkit) {}
    EventEdge(const EventEdge&) = delete;
    EventEdge& operator=(const EventEdge&) = delete;

    /// Runs a handler. A failure that it does not handle itself is shown in a box and the pointer put back.
    /// @returns whether the handler ran to its end.
    bool Run(const std::function<void()>& handler);

private:
    Toolkit& m_toolkit;
};

}  // namespace kd
