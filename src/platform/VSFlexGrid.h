#pragma once

#include <functional>

#include "platform/GridCursor.h"

namespace kd {

enum class MouseButton : std::uint8_t { Left = 1, Right = 2, Middle = 4 };

/// Bits of the Shift argument of the mouse and key events.
enum ShiftBits : std::uint8_t { sbShift = 1, sbCtrl = 2, sbAlt = 4 };

/// The events of a grid, set by its user; each may be empty. `x` and `y` are pixels from the grid's left top
/// corner.
struct GridHandlers {
    std::function<void(MouseButton button, int shift, int x, int y, bool& cancel)> BeforeMouseDown;
    std::function<void(MouseButton button, int shift, int x, int y)> MouseDown;
    std::function<void(MouseButton button, int shift, int x, int y)> MouseUp;
    std::function<void(MouseButton button, int shift, int x, int y)> MouseMove;
    std::function<void(std::int32_t row, std::int32_t screenCol, bool& cancel)> BeforeEdit;
    std::function<void(std::int32_t row, std::int32_t screenCol, bool& cancel)> ValidateEdit;
    std::function<void(std::int32_t row, std::int32_t screenCol)> AfterEdit;
    std::function<void()> RowColChange;
    std::function<void(int keyCode, int shift)> KeyDown;
    /// What becomes of typed text before the editor takes it; as it stands when empty.
    std::function<Text(std::string_view)> TypedText;
};

/// The grid as plain state, with a screen side attached to it. It is built in layers, each of which knows
/// nothing of those above: GridOnScreen tells the screen, GridColumns and GridTable hold the cells,
/// GridCursor the current cell and the selection; the cell editor, the pointer and the events are here.
// Final, and no layer below can be deleted. NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class VSFlexGrid final : public GridCursor, public GridHandlers {
public:
    using GridCursor::GridCursor;

    /// The cell under the pointer; -1 outside the cells.
    std::int32_t MouseRow() const noexcept { return m_mouse.row; }
    std::int32_t MouseCol() const noexcept { return m_mouse.screenCol; }
    /// For the screen, before it raises a mouse event.
    void SetMouseCell(std::int32_t row, std::int32_t screenCol) noexcept { m_mouse = {row, screenCol}; }

    /// Whether a cell editor is open. It edits the current cell.
    bool EditWindow() const noexcept { return m_editing; }
    /// Text of the open editor.
    const Text& EditText() const noexcept { return m_editText; }
    /// What is typed enters here, through TypedText.
    void SetEditText(std::string_view text);
    /// Opens the editor on the current cell with its text, if BeforeEdit lets it. Returns whether one is
    /// open.
    bool StartEdit();
    /// The one way out that keeps the text: ValidateEdit; then the text goes to the cell, the editor closes
    /// and AfterEdit runs. False when the text was refused: the editor stays open. True without an editor.
    bool FinishEdit();
    /// Closes the editor with neither validation nor AfterEdit. The same happens when the cell's row or
    /// column goes or is hidden.
    void CancelEdit();

private:
    void CellsLeave(std::int32_t first) override;
    /// An editor that goes out of sight with its cell would keep a text that nobody sees: what could stand
    /// was taken, and a refusal told, by what hides the cell.
    void CellsHide() override;
    bool LeaveCell() override { return FinishEdit(); }
    void CurrentCellMoved() override;

    GridCell m_mouse;
    bool m_editing = false;
    bool m_finishing = false;
    Text m_editText;
};

}  // namespace kd
