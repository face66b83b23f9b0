#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/Text.h"

namespace kd {

enum class MouseButton : std::uint8_t { Left = 1, Right = 2, Middle = 4 };

/// Bits of the Shift argument of the mouse and key events.
enum ShiftBits : std::uint8_t { sbShift = 1, sbCtrl = 2, sbAlt = 4 };

/// Alignment of cells, with the numbers that the grid's users know.
enum CellAlignment : std::uint8_t { caLeftCenter = 1, caCenterCenter = 4, caRightCenter = 7 };

/// Pictures of header cells: the pair `ImgList`.
enum class HeaderPicture : std::uint8_t { None, FilterOff, FilterOn };

/// Back colours are 0xBBGGRR; 0 stands for the default colour.
using BackColour = std::uint32_t;
/// The mark of a changed cell: red FF, green FF, blue C0.
inline constexpr BackColour ChangedColour = 0xC0FFFF;

/// A rectangle of cells, hidden ones counted; both ends inclusive, first not beyond last.
struct GridSelection {
    std::int32_t firstRow = 0;
    std::int32_t firstCol = 0;
    std::int32_t lastRow = 0;
    std::int32_t lastCol = 0;

    bool operator==(const GridSelection&) const = default;
    bool Contains(std::int32_t row, std::int32_t col) const noexcept {
        return row >= firstRow && row <= lastRow && col >= firstCol && col <= lastCol;
    }
};

/// The screen side of a grid: draws the state and answers what only a screen knows. The calls tell what
/// changed; none of them may change the grid. Everything is optional, so that a test needs none of it.
class GridScreen {
public:
    virtual ~GridScreen() = default;
    /// One cell's text, colour or picture changed.
    virtual void CellChanged(std::int32_t /*row*/, std::int32_t /*screenCol*/) {}
    /// Rows, columns, hidden flags, widths or frozen columns changed, or many cells at once.
    virtual void LayoutChanged() {}
    /// Current cell, selection or selected rows changed.
    virtual void SelectionChanged() {}
    /// The cell editor was opened, its text was changed by the grid, or it was closed.
    virtual void EditorChanged() {}
    virtual void ToolTipChanged() {}
    /// Sets the widths of the columns `first` to `last` by their content, all rows counted, hidden ones too.
    virtual void AutoSize(std::int32_t /*first*/, std::int32_t /*last*/) {}
    /// Scrolls a cell into sight; a hidden row's cell scrolls to the next visible row.
    virtual void ShowCell(std::int32_t /*row*/, std::int32_t /*screenCol*/) {}
    /// Scrolls so that `row` is the first one below the header.
    virtual void SetTopRow(std::int32_t /*row*/) {}
    /// Of the current cell, in pixels from the grid's left top corner.
    virtual std::int32_t CellLeft() const { return 0; }
    virtual std::int32_t CellTop() const { return 0; }
    virtual std::int32_t CellHeight() const { return 0; }
};

/// The texts of one row, cell behind cell, to be handed to the grid at once.
class RowText {
public:
    /// Makes room ahead, for that many bytes in all.
    void Reserve(std::size_t bytes, std::size_t cells) {
        m_bytes.reserve(bytes);
        m_ends.reserve(cells);
    }
    void Clear() noexcept {
        m_bytes.clear();
        m_ends.clear();
    }
    /// Adds the next cell.
    void Add(std::string_view text) {
        m_bytes += text;
        EndCell();
    }
    /// For text that is appended in place: append to Bytes(), then end the cell.
    std::string& Bytes() noexcept { return m_bytes; }
    void EndCell() { m_ends.push_back(static_cast<std::uint32_t>(m_bytes.size())); }

    /// Takes back what was appended to a cell that has not been ended.
    void DropOpenCell() { m_bytes.resize(m_ends.empty() ? 0 : m_ends.back()); }

    const std::string& Bytes() const noexcept { return m_bytes; }
    const std::vector<std::uint32_t>& Ends() const noexcept { return m_ends; }

private:
    std::string m_bytes;
    std::vector<std::uint32_t> m_ends;
};

/// The grid as plain state, with a screen side attached to it. Row 0 is the header row, data rows count from
/// 1; columns are screen positions from 0. Everything holds for hidden rows and columns too.
///
/// @throws cError(errSubscript) for a row or column outside the grid, in every operation that takes one,
/// unless told otherwise.
class VSFlexGrid {
public:
    explicit VSFlexGrid(Text name) : m_name(std::move(name)) {}
    VSFlexGrid(const VSFlexGrid&) = delete;
    VSFlexGrid& operator=(const VSFlexGrid&) = delete;

    const Text& Name() const noexcept { return m_name; }
    /// The screen side; not owned; null for none.
    void SetScreen(GridScreen* screen) noexcept { m_screen = screen; }

    // --- size
    // -----------------------------------------------------------------------------------------------

    std::int32_t Rows() const noexcept { return static_cast<std::int32_t>(m_rows.size()); }
    /// New rows are empty and shown; rows that go take everything of theirs along.
    void SetRows(std::int32_t rows);
    std::int32_t Cols() const noexcept { return m_cols; }
    /// Empties all cells when the number changes.
    void SetCols(std::int32_t cols);
    std::int32_t FixedRows() const noexcept { return m_fixedRows; }
    void SetFixedRows(std::int32_t rows) { m_fixedRows = rows; }
    std::int32_t FixedCols() const noexcept { return m_fixedCols; }
    void SetFixedCols(std::int32_t cols) { m_fixedCols = cols; }
    std::int32_t FrozenCols() const noexcept { return m_frozenCols; }
    /// The leading columns, hidden ones counted, that stay in sight when the rest scrolls.
    void SetFrozenCols(std::int32_t cols);
    void RemoveItem(std::int32_t row);
    /// Makes room for that many rows beforehand.
    void ReserveRows(std::int32_t rows);

    // --- cells
    // ----------------------------------------------------------------------------------------------

    /// Good until the row changes.
    std::string_view TextMatrix(std::int32_t row, std::int32_t screenCol) const;
    void SetTextMatrix(std::int32_t row, std::int32_t screenCol, std::string_view text);
    /// All texts of a row at once; `texts` has one for each column.
    void SetRowTexts(std::int32_t row, const RowText& texts);
    std::int32_t RowData(std::int32_t row) const;
    void SetRowData(std::int32_t row, std::int32_t value);
    std::int32_t ColData(std::int32_t screenCol) const;
    void SetColData(std::int32_t screenCol, std::int32_t value);
    BackColour BackColor(std::int32_t row, std::int32_t screenCol) const;
    void SetBackColor(std::int32_t row, std::int32_t screenCol, BackColour colour);
    /// Alignment of a whole column, the header included.
    CellAlignment ColAlignment(std::int32_t screenCol) const;
    void SetColAlignment(std::int32_t screenCol, CellAlignment alignment);
    /// The header cell's picture, at its right bottom corner.
    HeaderPicture CellPicture(std::int32_t screenCol) const;
    void SetCellPicture(std::int32_t screenCol, HeaderPicture picture);

    // --- what is shown
    // --------------------------------------------------------------------------------------

    bool RowHidden(std::int32_t row) const;
    void SetRowHidden(std::int32_t row, bool hidden);
    bool ColHidden(std::int32_t screenCol) const;
    void SetColHidden(std::int32_t screenCol, bool hidden);
    /// Width in pixels, as the screen last sized it.
    std::int32_t ColWidth(std::int32_t screenCol) const;
    void SetColWidth(std::int32_t screenCol, std::int32_t pixels);
    void AutoSize(std::int32_t first, std::int32_t last);
    bool Redraw() const noexcept { return m_redraw; }
    /// Off during bulk work: the screen is told nothing; on again: it is told once.
    void SetRedraw(bool redraw);
    /// Repaints after a change.
    void Refresh();
    const Text& ToolTipText() const noexcept { return m_toolTip; }
    void SetToolTipText(Text text);

    /// The data rows (header not counted) that are shown, in order.
    const std::vector<std::int32_t>& VisibleRows() const;
    /// The nearest shown data row from `row` on (itself included) in the direction `step` (1 or -1); 0 for
    /// none. `row` may lie outside the grid.
    std::int32_t VisibleRowFrom(std::int32_t row, std::int32_t step) const;
    /// The nearest shown column from `screenCol` on in the direction `step`; -1 for none.
    std::int32_t VisibleColFrom(std::int32_t screenCol, std::int32_t step) const;

    // --- current cell and selection
    // -------------------------------------------------------------------------

    /// The current cell, where the selection began. Row 0 for none, or for a header cell.
    std::int32_t Row() const noexcept { return m_row; }
    std::int32_t Col() const noexcept { return m_col; }
    /// Each closes an open editor first and then collapses the selection to the current cell; a refused edit
    /// keeps the editor and the current cell.
    void SetRow(std::int32_t row);
    void SetCol(std::int32_t screenCol);
    void Select(std::int32_t row, std::int32_t screenCol);
    /// Moves the corner opposite to the current cell.
    void ExtendSelection(std::int32_t row, std::int32_t screenCol);
    GridSelection GetSelection() const noexcept;
    /// The corner opposite to the current cell.
    std::int32_t EndRow() const noexcept { return m_endRow; }
    std::int32_t EndCol() const noexcept { return m_endCol; }

    /// Rows that are selected one by one, in a list box's manner.
    bool IsSelected(std::int32_t row) const;
    void SetIsSelected(std::int32_t row, bool selected);

    void ShowCell(std::int32_t row, std::int32_t screenCol);
    void SetTopRow(std::int32_t row);
    std::int32_t CellLeft() const { return m_screen != nullptr ? m_screen->CellLeft() : 0; }
    std::int32_t CellTop() const { return m_screen != nullptr ? m_screen->CellTop() : 0; }
    std::int32_t CellHeight() const { return m_screen != nullptr ? m_screen->CellHeight() : 0; }

    // --- pointer and cell editor
    // ----------------------------------------------------------------------------

    /// The cell under the pointer; -1 outside the cells.
    std::int32_t MouseRow() const noexcept { return m_mouseRow; }
    std::int32_t MouseCol() const noexcept { return m_mouseCol; }
    /// For the screen, before it raises a mouse event.
    void SetMouseCell(std::int32_t row, std::int32_t screenCol) noexcept {
        m_mouseRow = row;
        m_mouseCol = screenCol;
    }

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
    /// Closes the editor with neither validation nor AfterEdit.
    void CancelEdit();

    // --- events, set by the grid's user
    // ---------------------------------------------------------------------

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

private:
    struct GridRow {
        std::string bytes;  // the cells' texts, one behind the other; where each ends stands in m_ends
        std::int32_t data = 0;
        bool hidden = false;
        bool selected = false;
    };
    struct GridColumn {
        std::int32_t data = 0;
        std::int32_t width = 0;
        CellAlignment alignment = caLeftCenter;
        HeaderPicture picture = HeaderPicture::None;
        bool hidden = false;
    };

    std::size_t RowIndex(std::int32_t row) const;
    std::size_t ColIndex(std::int32_t screenCol) const;
    std::size_t CellIndex(std::int32_t row, std::int32_t screenCol) const;
    void CellDiffers(std::int32_t row, std::int32_t screenCol);
    void LayoutDiffers();
    void SelectionDiffers();
    void SetCurrent(std::int32_t row, std::int32_t screenCol);
    void KeepCurrentInside();

    Text m_name;
    GridScreen* m_screen = nullptr;
    std::vector<GridRow> m_rows;
    std::vector<GridColumn> m_columns;
    std::vector<std::uint32_t> m_ends;  // row by row: offset behind each cell's text
    std::vector<std::uint8_t>
        m_colours;  // row by row: index into m_palette; empty while no cell has a colour
    std::vector<BackColour> m_palette{0};
    std::int32_t m_cols = 0;
    std::int32_t m_fixedRows = 0;
    std::int32_t m_fixedCols = 0;
    std::int32_t m_frozenCols = 0;
    std::int32_t m_row = 0;
    std::int32_t m_col = 0;
    std::int32_t m_endRow = 0;
    std::int32_t m_endCol = 0;
    std::int32_t m_mouseRow = -1;
    std::int32_t m_mouseCol = -1;
    mutable std::vector<std::int32_t> m_visible;
    mutable bool m_visibleStale = true;
    bool m_redraw = true;
    bool m_stale = false;  // something changed while redraw was off
    bool m_editing = false;
    bool m_finishing = false;
    Text m_editText;
    Text m_toolTip;
};

}  // namespace kd
