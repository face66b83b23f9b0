#include "qt/services/EventEdge.h"

#include "platform/EventBoundary.h"

namespace kd {

bool EventEdge::Run(const std::function<void()>& handler) {
    return AtEventBoundary(
        m_toolkit, [this] { m_toolkit.SetMousePointer(Pointer::Default); }, handler);
}

}  // namespace kd
