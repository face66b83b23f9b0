#pragma once

#include <QAbstractScrollArea>
#include <memory>

#include "platform/GridPresses.h"
#include "qt/grid/GridEditing.h"
#include "qt/grid/GridKeyboard.h"
#include "qt/grid/GridMouse.h"
#include "qt/grid/GridPainter.h"
#include "qt/grid/GridTelling.h"

namespace kd {

/// The screen side of a grid: draws the state that VSFlexGrid holds, turns mouse and keyboard into its
/// selection, its cell editor and its events, and decides nothing else. It joins the parts that do so. The
/// grid outlives the widget. What the grid's handlers throw would reach the toolkit's event loop: they are
/// to go through the EventBoundary, as GridEvents' do.
class GridWidget : public QAbstractScrollArea, public GridScreen {
    Q_OBJECT
public:
    /// `manner` says how the user selects in the grid; without one a rectangle of cells.
    explicit GridWidget(VSFlexGrid& grid, QWidget* parent = nullptr,
                        std::unique_ptr<GridManner> manner = nullptr);
    ~GridWidget() override;

    VSFlexGrid& Grid() const noexcept { return m_grid; }
    GridManner& Manner() const noexcept { return *m_manner; }
    /// Where the cells stand now.
    const GridLayout& Layout() const { return m_scroll.Layout(); }
    /// Where a pop-up menu belongs, in screen coordinates: at the pointer, or below the current cell while
    /// the menu key is at work.
    QPoint MenuPlace() const { return m_keyboard.MenuPlace(); }

    // GridScreen
    void CellChanged(std::int32_t row, std::int32_t screenCol) override;
    void LayoutChanged() override { m_scroll.LayoutChanged(); }
    void SelectionChanged() override;
    void EditorChanged() override { m_editing.Changed(); }
    void ToolTipChanged() override { m_mouse.ToolTipChanged(); }
    void AutoSize(std::int32_t first, std::int32_t last) override { m_scroll.AutoSize(first, last); }
    void ShowCell(std::int32_t row, std::int32_t screenCol) override { m_scroll.ShowCell(row, screenCol); }
    void SetTopRow(std::int32_t row) override { m_scroll.SetTopRow(row); }
    std::int32_t CellLeft() const override;
    std::int32_t CellTop() const override;
    std::int32_t CellHeight() const override;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void FocusChanged(bool gained);

    VSFlexGrid& m_grid;
    std::unique_ptr<GridManner> m_manner;
    GridPresses m_presses;
    GridScroll m_scroll;
    GridPainter m_painter;
    ColumnDividers m_dividers;
    GridMouse m_mouse;  // ahead of the editor, whose making is an event of the viewport
    GridEditing m_editing;
    GridKeyboard m_keyboard;
    GridTelling m_telling;
};

}  // namespace kd
