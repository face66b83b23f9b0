#pragma once

#include "platform/GridManner.h"
#include "platform/GridPresses.h"
#include "qt/grid/GridScroll.h"

namespace kd {

/// What mouse, keyboard and editor of a grid's widget see of it, and no more. All of it outlives them.
struct GridParts {
    QAbstractScrollArea& area;  // viewport, scroll bars and focus
    VSFlexGrid& grid;
    GridManner& manner;
    GridPresses& presses;
    GridScroll& scroll;
};

}  // namespace kd
