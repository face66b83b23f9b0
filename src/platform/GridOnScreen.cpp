#include "platform/GridOnScreen.h"

namespace kd {

void GridOnScreen::CellDiffers(std::int32_t row, std::int32_t screenCol) {
    if (!m_redraw) {
        m_stale = true;
    } else if (m_screen != nullptr) {
        m_screen->CellChanged(row, screenCol);
    }
}

void GridOnScreen::LayoutDiffers() {
    if (!m_redraw) {
        m_stale = true;
    } else if (m_screen != nullptr) {
        m_screen->LayoutChanged();
    }
}

void GridOnScreen::SelectionDiffers() {
    if (!m_redraw) {
        m_stale = true;
    } else if (m_screen != nullptr) {
        m_screen->SelectionChanged();
    }
}

void GridOnScreen::EditorDiffers() {
    if (m_screen != nullptr) {
        m_screen->EditorChanged();
    }
}

void GridOnScreen::SetRedraw(bool redraw) {
    m_redraw = redraw;
    if (std::exchange(m_stale, false)) {  // told now, or noted once more while it is off
        LayoutDiffers();
        SelectionDiffers();
    }
}

void GridOnScreen::AutoSize(std::int32_t first, std::int32_t last) {
    if (m_screen != nullptr) {
        m_screen->AutoSize(first, last);
    }
}

void GridOnScreen::ShowCell(std::int32_t row, std::int32_t screenCol) {
    if (m_screen != nullptr) {
        m_screen->ShowCell(row, screenCol);
    }
}

void GridOnScreen::SetTopRow(std::int32_t row) {
    if (m_screen != nullptr) {
        m_screen->SetTopRow(row);
    }
}

void GridOnScreen::SetToolTipText(Text text) {
    if (m_toolTip != text) {
        m_toolTip = std::move(text);
        if (m_screen != nullptr) {
            m_screen->ToolTipChanged();
        }
    }
}

}  // namespace kd
