#pragma once

#include <functional>

#include "platform/EventBoundary.h"

namespace kd {

/// The program's edge as the parts of a grid's widget see it: none before the owner has given one.
class GridEdge {
public:
    void Set(EventBoundary* edge) noexcept { m_edge = edge; }
    /// Runs what may reach the grid's handlers.
    void Run(const std::function<void()>& handler) const {
        if (m_edge != nullptr) {
            (void)m_edge->Run(handler);  // a failure was shown; there is nothing left to do
        } else {
            handler();
        }
    }

private:
    EventBoundary* m_edge = nullptr;  // not owned
};

}  // namespace kd
