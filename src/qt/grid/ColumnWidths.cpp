#include "qt/grid/ColumnWidths.h"

#include <algorithm>
#include <cmath>

#include "qt/grid/Funnel.h"
#include "qt/grid/GridMetrics.h"

namespace kd {

std::vector<int> ColumnWidths(const VSFlexGrid& grid, const TextWidths& widths, std::int32_t first,
                              std::int32_t last) {
    std::vector<double> widest(static_cast<std::size_t>(last - first + 1), 0.0);
    for (std::int32_t row = 0; row < grid.Rows(); ++row) {
        for (std::int32_t screenCol = first; screenCol <= last; ++screenCol) {
            const std::string_view text = grid.TextMatrix(row, screenCol);
            double& known = widest[static_cast<std::size_t>(screenCol - first)];
            const bool picture = row == 0 && grid.CellPicture(screenCol) != HeaderPicture::None;
            const double beside = picture ? FunnelSize + PictureGap : 0;
            if (widths.AtMost(text) + beside > known) {
                known = std::max(known, widths.Exact(text) + beside);
            }
        }
    }
    std::vector<int> needed;
    needed.reserve(widest.size());
    for (const double width : widest) {
        needed.push_back(static_cast<int>(std::ceil(width)) + 2 * CellMargin + 1);
    }
    return needed;
}

}  // namespace kd
