#pragma once

#include <cstdint>
#include <utility>

#include "base/Text.h"
#include "platform/GridScreen.h"

namespace kd {

/// The lowest layer of VSFlexGrid: its name, and the road to its screen, which hears of every change at once
/// or, after bulk work with redraw off, of all of them together.
class GridOnScreen {
public:
    explicit GridOnScreen(Text name) : m_name(std::move(name)) {}
    GridOnScreen(const GridOnScreen&) = delete;
    GridOnScreen& operator=(const GridOnScreen&) = delete;

    const Text& Name() const noexcept { return m_name; }
    /// The screen side; not owned; null for none.
    void SetScreen(GridScreen* screen) noexcept { m_screen = screen; }

    bool Redraw() const noexcept { return m_redraw; }
    /// Off during bulk work: the screen is told nothing; on again: it is told once.
    void SetRedraw(bool redraw);
    /// Sizes the columns `first` to `last` by their texts, where there is a screen to measure them.
    void AutoSize(std::int32_t first, std::int32_t last);
    void ShowCell(std::int32_t row, std::int32_t screenCol);
    void SetTopRow(std::int32_t row);
    /// Of the current cell, in pixels from the grid's left top corner; 0 without a screen.
    std::int32_t CellLeft() const { return m_screen != nullptr ? m_screen->CellLeft() : 0; }
    std::int32_t CellTop() const { return m_screen != nullptr ? m_screen->CellTop() : 0; }
    std::int32_t CellHeight() const { return m_screen != nullptr ? m_screen->CellHeight() : 0; }
    const Text& ToolTipText() const noexcept { return m_toolTip; }
    void SetToolTipText(Text text);

protected:
    ~GridOnScreen() = default;

    void CellDiffers(std::int32_t row, std::int32_t screenCol);
    void LayoutDiffers();
    void SelectionDiffers();
    /// Told with redraw off too: an editor stands above the cells.
    void EditorDiffers();

private:
    Text m_name;
    GridScreen* m_screen = nullptr;
    Text m_toolTip;
    bool m_redraw = true;
    bool m_stale = false;  // something changed while redraw was off
};

}  // namespace kd
