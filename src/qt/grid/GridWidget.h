#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QCache>
#include <QStaticText>
#include <functional>
#include <optional>

#include "platform/VSFlexGrid.h"
#include "qt/grid/GridLayout.h"
#include "qt/grid/TextWidths.h"

class QPainter;

namespace kd {

class CellEditor;
class EventEdge;

/// The screen side of a grid: draws the state that VSFlexGrid holds, turns mouse and keyboard into its
/// selection, its cell editor and its events, and decides nothing else. The grid outlives the widget.
class GridWidget : public QAbstractScrollArea, public GridScreen {
    Q_OBJECT
public:
    enum class Manner : std::uint8_t {
        Cells,   // one rectangle of cells is selected; cells can be edited
        ListBox  // whole rows are selected one by one; no editor; the last column reaches the right edge
    };

    explicit GridWidget(VSFlexGrid& grid, QWidget* parent = nullptr, Manner manner = Manner::Cells);
    ~GridWidget() override;

    VSFlexGrid& Grid() noexcept { return m_grid; }
    const VSFlexGrid& Grid() const noexcept { return m_grid; }
    Manner GetManner() const noexcept { return m_manner; }
    /// Where the user's doing enters the logic; not owned. Without one, what the grid's handlers throw
    /// reaches the toolkit's event loop.
    void SetEdge(EventEdge* edge) noexcept { m_edge = edge; }
    /// Where the cells stand now.
    const GridLayout& Layout() const;
    /// Where a pop-up menu belongs, in screen coordinates: at the pointer, or below the current cell while
    /// the menu key is at work.
    QPoint MenuPlace() const;

    // GridScreen
    void CellChanged(std::int32_t row, std::int32_t screenCol) override;
    void LayoutChanged() override;
    void SelectionChanged() override;
    void EditorChanged() override;
    void ToolTipChanged() override;
    void AutoSize(std::int32_t first, std::int32_t last) override;
    void ShowCell(std::int32_t row, std::int32_t screenCol) override;
    void SetTopRow(std::int32_t row) override;
    std::int32_t CellLeft() const override;
    std::int32_t CellTop() const override;
    std::int32_t CellHeight() const override;

    /// What a tool tip shows of a text: rich text that looks as typed, with an ellipsis behind the first
    /// 1,000 characters. Empty for the empty text.
    static QString ToolTipMarkup(std::string_view text);

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /// Runs what may reach the grid's handlers at the edge.
    void AtEdge(const std::function<void()>& handler);

    // layout (GridWidget.cpp)
    void MeasureFont();
    void MeasureAnew();
    void BuildLayout() const;
    void QueueRelayout();
    void Relayout();
    void SetScrollBars(QSize viewport);
    int ListWidth() const;
    /// The texts' widths of the columns, header with picture, all rows, margins included.
    std::vector<int> ColumnWidths(std::int32_t first, std::int32_t last) const;

    // painting (GridPainting.cpp)
    struct CellLook {
        QColor ground;
        QColor text;
    };
    bool IsCurrent(std::int32_t row, std::int32_t screenCol) const;
    bool LooksSelected(std::int32_t row, std::int32_t screenCol) const;
    CellLook LookOf(std::int32_t row, std::int32_t screenCol) const;
    void PaintColumns(QPainter& painter, const QRect& exposed, bool frozen) const;
    /// The lines below `rows` rows and beside the columns.
    void PaintLines(QPainter& painter, const QRect& area, bool frozen, int rows) const;
    void PaintHeaderCell(QPainter& painter, const QRect& place, std::int32_t screenCol) const;
    void PaintCell(QPainter& painter, const QRect& place, std::int32_t row, std::int32_t screenCol) const;
    void PaintText(QPainter& painter, const QRect& place, std::string_view text,
                   CellAlignment alignment) const;
    void PaintCurrentFrame(QPainter& painter) const;
    void DrawFrame(QPainter& painter, const QRect& place, const QColor& colour) const;

    // mouse (GridInput.cpp)
    struct CellPlace {
        std::int32_t row = -1;
        std::int32_t screenCol = -1;
    };
    CellPlace PlaceAt(QPoint position) const;
    QPoint FromCorner(QPoint position) const;
    /// Returns whether the press was left to the grid: neither cancelled nor stopped by a refused text.
    bool Press(MouseButton button, Qt::KeyboardModifiers modifiers, QPoint position, CellPlace place);
    void Release(MouseButton button, Qt::KeyboardModifiers modifiers, QPoint position, CellPlace place);
    void PickCell(CellPlace place, bool extend);
    void DragTo(QPoint position);
    void ScrollTowards(QPoint position);
    void KeyboardMenu();
    void KeyboardHeaderPress();

    // keyboard (GridKeys.cpp)
    enum class Step : std::uint8_t { One, Page, End };
    bool MoveKey(int key, Qt::KeyboardModifiers modifiers);
    void MoveRows(int direction, Step step, bool extend);
    void MoveCols(int direction, Step step, bool extend);
    void MoveTo(std::int32_t row, std::int32_t screenCol, bool extend);
    bool MoveOn(bool forward);
    std::int32_t RowFrom(std::int32_t row, int direction, Step step) const;
    /// The row itself when it is visible, else the next visible one, else the one before.
    std::int32_t NearestRow(std::int32_t row) const;
    std::int32_t ColFrom(std::int32_t screenCol, int direction, Step step) const;
    void SelectAllCells();
    bool TypeKey(const QKeyEvent& event);
    bool GridKey(const QKeyEvent& event);

    // rows in a list box's manner (GridList.cpp)
    void ListPick(std::int32_t row, bool range);
    void ListRange(std::int32_t row);
    bool ListKey(int key, Qt::KeyboardModifiers modifiers);

    // cell editor (GridEditor.cpp)
    bool OpenEditor();
    void ShowEditor();
    void CloseEditor();
    void PlaceEditor();
    void ColourEditor();
    void FinishAfterFocusLoss();
    bool EditorKey(const QKeyEvent& event);
    bool EditorMouse(const QMouseEvent& event);

    // screen readers
    void TellCurrentCell();
    void TellNewTable();

    VSFlexGrid& m_grid;
    EventEdge* m_edge = nullptr;
    const Manner m_manner;
    TextWidths m_widths;
    mutable QCache<QString, QStaticText> m_shaped;  // texts as they were last drawn
    mutable GridLayout m_layout;
    mutable bool m_layoutStale = true;
    bool m_relayoutQueued = false;
    bool m_relayouting = false;
    std::int32_t m_topRow = 0;             // stays the first one below the header when rows are hidden
    std::int32_t m_sizedFirst = 0;         // the columns that AutoSize was last asked for, sized again when
    std::int32_t m_sizedLast = -1;         // the font changes
    CellEditor* m_editor;                  // hidden while no cell is edited
    std::optional<MouseButton> m_pressed;  // the button whose MouseUp is due
    bool m_dragging = false;               // the left button is extending the selection
    QPoint m_dragPosition;
    QBasicTimer m_dragTimer;        // scrolls on while the pointer rests beyond an edge
    std::int32_t m_listAnchor = 0;  // where a range of selected rows began, and where it ends
    std::int32_t m_listEnd = 0;
    std::optional<QPoint> m_keyboardMenuPlace;
    std::int32_t m_toldRows = 0;  // size of the table that screen readers know
    std::int32_t m_toldCols = 0;
};

}  // namespace kd
