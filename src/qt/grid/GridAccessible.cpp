#include "qt/grid/GridAccessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "qt/grid/GridWidget.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// A selection beyond this many cells is told by its count, and cell by cell only where it is in sight:
/// nobody listens to a million cells.
constexpr int MostToldCells = 1000;

/// One cell, made when a screen reader asks for it. Row 0 is the header. The table forgets it before the
/// widget goes.
class GridCellAccessible : public QAccessibleInterface, public QAccessibleTableCellInterface {
public:
    GridCellAccessible(GridWidget& widget, std::int32_t row, std::int32_t screenCol)
        : m_widget(widget), m_row(row), m_screenCol(screenCol) {}

    // QAccessibleInterface
    bool isValid() const override { return m_row < Grid().Rows() && m_screenCol < Grid().Cols(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_widget.window()->windowHandle(); }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&m_widget); }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override;
    QAccessible::Role role() const override {
        return m_row == 0 ? QAccessible::ColumnHeader : QAccessible::Cell;
    }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TableCellInterface ? static_cast<QAccessibleTableCellInterface*>(this)
                                                       : nullptr;
    }

    // QAccessibleTableCellInterface
    bool isSelected() const override;
    QList<QAccessibleInterface*> columnHeaderCells() const override;
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return m_screenCol; }
    int rowIndex() const override { return m_row - 1; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return parent(); }

private:
    const VSFlexGrid& Grid() const { return m_widget.Grid(); }

    GridWidget& m_widget;
    std::int32_t m_row;
    std::int32_t m_screenCol;
};

QString GridCellAccessible::text(QAccessible::Text kind) const {
    if (!isValid()) {
        return {};
    }
    if (kind == QAccessible::Name || kind == QAccessible::Value) {
        return ToQt(Grid().TextMatrix(m_row, m_screenCol));
    }
    if (kind == QAccessible::Description) {
        if (m_row == 0) {
            return Grid().CellPicture(m_screenCol) == HeaderPicture::FilterOn ? QStringLiteral("Filtered")
                                                                              : QString();
        }
        return Grid().BackColor(m_row, m_screenCol) == ChangedColour ? QStringLiteral("Changed") : QString();
    }
    return {};
}

QRect GridCellAccessible::rect() const {
    if (!isValid()) {
        return {};
    }
    const QRect place = m_widget.Layout().CellRect(m_row, m_screenCol);
    return place.isEmpty() ? QRect() : QRect(m_widget.viewport()->mapToGlobal(place.topLeft()), place.size());
}

QAccessible::State GridCellAccessible::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const QRect place = m_widget.Layout().CellRect(m_row, m_screenCol);
    state.invisible = place.isEmpty();
    state.offscreen = !place.isEmpty() && m_widget.Layout().ShownRect(m_row, m_screenCol).isEmpty();
    if (m_row > 0) {
        const bool current = m_row == Grid().Row() && m_screenCol == Grid().Col();
        state.selectable = true;
        state.focusable = true;
        state.selected = isSelected();
        state.active = current;
        state.focused = current && m_widget.hasFocus();
        state.multiSelectable = true;
    }
    return state;
}

bool GridCellAccessible::isSelected() const {
    return isValid() && m_row > 0 && m_widget.Manner().IsSelected({m_row, m_screenCol});
}

QList<QAccessibleInterface*> GridCellAccessible::columnHeaderCells() const {
    return m_row == 0 ? QList<QAccessibleInterface*>()
                      : QList<QAccessibleInterface*>{parent()->child(m_screenCol)};
}

/// The grid as a table: data rows counted from 0, hidden rows and columns counted, the header told as the
/// columns' descriptions. Its children are all cells row by row, the header first; each is made when it is
/// asked for.
class GridAccessible : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    explicit GridAccessible(GridWidget* widget)
        : QAccessibleWidget(widget, QAccessible::Table), m_widget(*widget) {}
    ~GridAccessible() override { Forget(); }
    GridAccessible(const GridAccessible&) = delete;
    GridAccessible& operator=(const GridAccessible&) = delete;

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QAccessibleInterface* child(int index) const override;
    int childCount() const override { return Grid().Rows() * Grid().Cols(); }
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

    // QAccessibleTableInterface
    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override {
        return row < 0 ? nullptr : CellOf(row + 1, column);
    }
    int selectedCellCount() const override { return Manner().SelectedCount(); }
    QList<QAccessibleInterface*> selectedCells() const override;
    QString columnDescription(int column) const override {
        const QAccessibleInterface* const header = CellOf(0, column);
        return header == nullptr ? QString() : header->text(QAccessible::Name);
    }
    QString rowDescription(int /*row*/) const override { return {}; }
    int selectedColumnCount() const override { return static_cast<int>(selectedColumns().size()); }
    int selectedRowCount() const override { return static_cast<int>(Manner().SelectedRows().size()); }
    int columnCount() const override { return Grid().Cols(); }
    int rowCount() const override { return std::max(Grid().Rows() - 1, 0); }
    QList<int> selectedColumns() const override;
    QList<int> selectedRows() const override;
    bool isColumnSelected(int column) const override { return Manner().IsColSelected(column); }
    bool isRowSelected(int row) const override { return Manner().IsRowSelected(row + 1); }
    bool selectRow(int row) override { return m_widget.Manner().SelectRow(row + 1); }
    bool selectColumn(int column) override { return m_widget.Manner().SelectCol(column); }
    bool unselectRow(int row) override { return m_widget.Manner().UnselectRow(row + 1); }
    bool unselectColumn(int /*column*/) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent* /*event*/) override { Forget(); }

private:
    VSFlexGrid& Grid() const { return m_widget.Grid(); }
    const GridManner& Manner() const { return m_widget.Manner(); }
    /// Null outside the grid.
    QAccessibleInterface* CellOf(std::int32_t row, std::int32_t screenCol) const;
    void Forget();

    GridWidget& m_widget;
    mutable QHash<std::pair<std::int32_t, std::int32_t>, QAccessible::Id> m_cells;  // those asked for
};

QAccessibleInterface* GridAccessible::CellOf(std::int32_t row, std::int32_t screenCol) const {
    if (row < 0 || screenCol < 0 || row >= Grid().Rows() || screenCol >= Grid().Cols()) {
        return nullptr;
    }
    const std::pair key{row, screenCol};
    const auto known = m_cells.constFind(key);
    if (known != m_cells.constEnd()) {
        return QAccessible::accessibleInterface(*known);
    }
    auto* cell = new GridCellAccessible(m_widget, row, screenCol);  // NOLINT(cppcoreguidelines-owning-memory)
    m_cells.insert(key, QAccessible::registerAccessibleInterface(cell));  // which owns it from here on
    return cell;
}

void GridAccessible::Forget() {
    for (const QAccessible::Id id : std::as_const(m_cells)) {
        QAccessible::deleteAccessibleInterface(id);
    }
    m_cells.clear();
}

QAccessibleInterface* GridAccessible::child(int index) const {
    const std::int32_t cols = Grid().Cols();
    return cols == 0 ? nullptr : CellOf(index / cols, index % cols);
}

int GridAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* cell = dynamic_cast<const GridCellAccessible*>(child);
    return cell == nullptr || !cell->isValid() || cell->parent() != this
               ? -1
               : (cell->rowIndex() + 1) * Grid().Cols() + cell->columnIndex();
}

QAccessibleInterface* GridAccessible::childAt(int x, int y) const {
    const QPoint position = m_widget.viewport()->mapFromGlobal(QPoint(x, y));
    if (!m_widget.viewport()->rect().contains(position)) {
        return nullptr;
    }
    const GridCell cell = m_widget.Layout().CellAt(position);
    return CellOf(cell.row, cell.screenCol);
}

QAccessibleInterface* GridAccessible::focusChild() const {
    return Grid().Row() > 0 && m_widget.hasFocus() ? CellOf(Grid().Row(), Grid().Col())
                                                   : QAccessibleWidget::focusChild();
}

QList<QAccessibleInterface*> GridAccessible::selectedCells() const {
    const GridLayout& layout = m_widget.Layout();
    const auto& visible = Grid().VisibleRows();
    const auto top = static_cast<std::size_t>(layout.TopIndex());
    const auto bottom = std::min(top + static_cast<std::size_t>(layout.ShownRows()), visible.size());
    const bool inSight = top < bottom;
    QList<QAccessibleInterface*> told;
    for (const GridCell cell : Manner().SelectedCells(MostToldCells, inSight ? visible[top] : 0,
                                                      inSight ? visible[bottom - 1] : -1)) {
        told.append(CellOf(cell.row, cell.screenCol));
    }
    return told;
}

QList<int> GridAccessible::selectedRows() const {
    QList<int> rows;
    for (const std::int32_t row : Manner().SelectedRows()) {
        rows.append(row - 1);
    }
    return rows;
}

QList<int> GridAccessible::selectedColumns() const {
    QList<int> columns;
    for (int column = 0; column < columnCount(); ++column) {
        if (isColumnSelected(column)) {
            columns.append(column);
        }
    }
    return columns;
}

QAccessibleInterface* MakeGridAccessible(const QString& /*className*/, QObject* object) {
    auto* widget = qobject_cast<GridWidget*>(object);
    return widget == nullptr ? nullptr : new GridAccessible(widget);  // the toolkit's cache owns it
}

}  // namespace

void InstallGridAccessibility() {
    QAccessible::installFactory(MakeGridAccessible);  // which the toolkit keeps once
}

}  // namespace kd
