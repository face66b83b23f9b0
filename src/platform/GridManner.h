#pragma once

#include <vector>

#include "platform/VSFlexGrid.h"

namespace kd {

/// How the user selects in a grid, and what counts as selected. A widget asks and hands on; the grid, which
/// outlives the manner, holds the state.
class GridManner {
public:
    explicit GridManner(VSFlexGrid& grid) : m_grid(grid) {}
    virtual ~GridManner() = default;
    GridManner(const GridManner&) = delete;
    GridManner& operator=(const GridManner&) = delete;

    /// Whether rows are selected, framed and stretched to the right edge as a whole. Cells are edited where
    /// they are not.
    virtual bool WholeRows() const noexcept = 0;

    /// The left button on a cell below the header; `extend` with Shift. Returns whether a drag goes on from
    /// it.
    virtual bool Pick(GridCell cell, bool extend) = 0;
    /// A key, by the numbers and bits of KeyDown; `page` rows fit below the header. Returns whether it has a
    /// use here. The cell that it leads to is shown.
    virtual bool KeyPress(int keyCode, int shift, int page) = 0;
    /// Tab, or with `forward` off Shift and Tab. False where the focus leaves the grid.
    virtual bool Tab(bool forward) = 0;
    /// Opens the cell editor on the current cell and shows it. False where there is none to open.
    virtual bool OpenEditor() = 0;

    /// Whether the cell is drawn as the current one.
    virtual bool IsCurrent(GridCell cell) const = 0;
    /// Whether the cell is drawn as selected: all that are, but for a current cell that keeps its ground.
    virtual bool LooksSelected(GridCell cell) const = 0;
    virtual bool IsSelected(GridCell cell) const = 0;
    /// Whether all cells of a data row, of a column, are. False outside the grid.
    virtual bool IsRowSelected(std::int32_t row) const = 0;
    virtual bool IsColSelected(std::int32_t screenCol) const = 0;
    /// The rows of which all cells are, in order.
    virtual std::vector<std::int32_t> SelectedRows() const = 0;
    virtual std::int32_t SelectedCount() const = 0;
    /// The selected cells, by row; from `most` on no further row is begun. Of more than `most` cells only
    /// those of the shown rows from `firstShown` to `lastShown` are told. A row that is selected as a whole
    /// is told by its first cell.
    virtual std::vector<GridCell> SelectedCells(std::int32_t most, std::int32_t firstShown,
                                                std::int32_t lastShown) const = 0;
    /// Select a data row or a column. False when it cannot be: outside the grid, or a refused text keeps its
    /// editor.
    virtual bool SelectRow(std::int32_t row) = 0;
    virtual bool UnselectRow(std::int32_t row) = 0;
    virtual bool SelectCol(std::int32_t screenCol) = 0;

protected:
    bool IsDataRow(std::int32_t row) const noexcept { return row >= 1 && row < m_grid.Rows(); }

    VSFlexGrid& m_grid;
};

/// One rectangle of cells is selected, which begins at the current cell; cells can be edited.
class CellManner : public GridManner {
public:
    using GridManner::GridManner;

    bool WholeRows() const noexcept override { return false; }
    bool Pick(GridCell cell, bool extend) override;
    bool KeyPress(int keyCode, int shift, int page) override;
    bool Tab(bool forward) override;
    bool OpenEditor() override;
    bool IsCurrent(GridCell cell) const override;
    bool LooksSelected(GridCell cell) const override;
    bool IsSelected(GridCell cell) const override;
    bool IsRowSelected(std::int32_t row) const override;
    bool IsColSelected(std::int32_t screenCol) const override;
    std::vector<std::int32_t> SelectedRows() const override;
    std::int32_t SelectedCount() const override;
    std::vector<GridCell> SelectedCells(std::int32_t most, std::int32_t firstShown,
                                        std::int32_t lastShown) const override;
    bool SelectRow(std::int32_t row) override;
    bool UnselectRow(std::int32_t /*row*/) override { return false; }
    bool SelectCol(std::int32_t screenCol) override;

private:
    bool HasSelection() const noexcept { return m_grid.Row() > 0; }
    void MoveTo(GridCell cell, bool extend);
    void SelectAll();
};

/// A list box: whole rows are selected one by one, or with Shift a range, which begins at the current row,
/// and nothing is edited.
class ListManner : public GridManner {
public:
    using GridManner::GridManner;

    bool WholeRows() const noexcept override { return true; }
    bool Pick(GridCell cell, bool extend) override;
    bool KeyPress(int keyCode, int shift, int page) override;
    bool Tab(bool /*forward*/) override { return false; }
    bool OpenEditor() override { return false; }
    bool IsCurrent(GridCell cell) const override { return cell.row > 0 && cell.row == m_grid.Row(); }
    bool LooksSelected(GridCell cell) const override { return m_grid.IsSelected(cell.row); }
    bool IsSelected(GridCell cell) const override { return m_grid.IsSelected(cell.row); }
    bool IsRowSelected(std::int32_t row) const override { return IsDataRow(row) && m_grid.IsSelected(row); }
    bool IsColSelected(std::int32_t /*screenCol*/) const override { return false; }
    std::vector<std::int32_t> SelectedRows() const override;
    std::int32_t SelectedCount() const override;
    std::vector<GridCell> SelectedCells(std::int32_t most, std::int32_t firstShown,
                                        std::int32_t lastShown) const override;
    bool SelectRow(std::int32_t row) override { return SetSelected(row, true); }
    bool UnselectRow(std::int32_t row) override { return SetSelected(row, false); }
    bool SelectCol(std::int32_t /*screenCol*/) override { return false; }

private:
    bool SetSelected(std::int32_t row, bool selected);
    void MoveTo(std::int32_t row, bool extend);
    /// The range follows its moving end: what it leaves is unselected, what it takes is selected.
    void ExtendTo(std::int32_t row);
    void MarkRange(std::int32_t end, bool selected);

    std::int32_t m_anchor = 0;  // where a range of selected rows began, and where it ends; 0 for none
    std::int32_t m_end = 0;
};

}  // namespace kd
