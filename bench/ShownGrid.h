#pragma once

#include <memory>

#include "platform/VSFlexGrid.h"

namespace kd::bench {

/// A grid on the screen: a window with the program's grid widget, on the offscreen platform. At most one in a
/// process.
class ShownGrid {
public:
    explicit ShownGrid(VSFlexGrid& grid);
    ~ShownGrid();
    ShownGrid(const ShownGrid&) = delete;
    ShownGrid& operator=(const ShownGrid&) = delete;

    /// Brings everything that has changed to the screen.
    void Paint();

private:
    struct Window;
    std::unique_ptr<Window> m_window;
};

}  // namespace kd::bench
