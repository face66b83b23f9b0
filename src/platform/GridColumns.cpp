#include "platform/GridColumns.h"

#include <algorithm>

#include "base/cError.h"

namespace kd {

std::size_t GridColumns::Index(std::int32_t screenCol) const {
    if (screenCol < 0 || screenCol >= Cols()) {
        throw cError(errSubscript, "VSFlexGrid.Col");
    }
    return static_cast<std::size_t>(screenCol);
}

void GridColumns::ResetColumns(std::int32_t cols) {
    m_columns.assign(static_cast<std::size_t>(cols), {});
    m_frozenCols = std::min(m_frozenCols, cols);
}

void GridColumns::SetFrozenCols(std::int32_t cols) {
    if (cols < 0 || cols > Cols()) {
        throw cError(errInvalidArgument, "VSFlexGrid.FrozenCols");
    }
    m_frozenCols = cols;
    LayoutDiffers();
}

void GridColumns::SetColAlignment(std::int32_t screenCol, CellAlignment alignment) {
    Column(screenCol).alignment = alignment;
    LayoutDiffers();
}

void GridColumns::SetColHidden(std::int32_t screenCol, bool hidden) {
    bool& present = Column(screenCol).hidden;
    if (present != hidden) {
        present = hidden;
        CellsHide();
        LayoutDiffers();
    }
}

void GridColumns::SetColWidth(std::int32_t screenCol, std::int32_t pixels) {
    Column(screenCol).width = pixels;
    LayoutDiffers();
}

std::int32_t GridColumns::VisibleColFrom(std::int32_t screenCol, std::int32_t step) const {
    screenCol = step == 1 ? std::max(screenCol, 0) : std::min(screenCol, Cols() - 1);
    while (screenCol >= 0 && screenCol < Cols()) {
        if (!m_columns[static_cast<std::size_t>(screenCol)].hidden) {
            return screenCol;
        }
        screenCol += step;
    }
    return -1;
}

}  // namespace kd
