#pragma once

#include "platform/Toolkit.h"

namespace kd {

/// Shows the hourglass until the end of the scope; the default pointer afterwards.
class Hourglass {
public:
    explicit Hourglass(Toolkit& toolkit) : m_toolkit(toolkit) {
        m_toolkit.SetMousePointer(Pointer::Hourglass);
    }
    ~Hourglass() { m_toolkit.SetMousePointer(Pointer::Default); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

private:
    Toolkit& m_toolkit;
};

}  // namespace kd
