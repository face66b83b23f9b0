#include <QAccessible>

#include "qt/grid/GridFixture.h"
#include "qt/services/QtText.h"

namespace kd {
namespace {

class GridWidgetAccessibleTest : public GridFixture {
protected:
    QAccessibleInterface* Interface() const { return QAccessible::queryAccessibleInterface(widget); }
    QAccessibleTableInterface* Table() const { return Interface()->tableInterface(); }
    QString NameAt(int row, int column) const {
        return Table()->cellAt(row, column)->text(QAccessible::Name);
    }
    QAccessibleInterface* ChildAt(QPoint ofPort) const {
        const QPoint place = Port()->mapToGlobal(ofPort);
        return Interface()->childAt(place.x(), place.y());
    }
    /// Rows of the selected cells, as they are told.
    QList<int> ToldRows() const {
        QList<int> rows;
        for (QAccessibleInterface* const cell : Table()->selectedCells()) {
            rows << cell->tableCellInterface()->rowIndex();
        }
        return rows;
    }
    /// Rows of which some pixels are seen.
    QList<int> RowsInSight() const {
        QList<int> rows;
        for (std::int32_t row = 1; row < grid.Rows(); ++row) {
            if (!widget->Layout().ShownRect(row, 0).isEmpty()) {
                rows << row - 1;
            }
        }
        return rows;
    }
};

TEST_F(GridWidgetAccessibleTest, TheGridIsATableWithTheNameItsOwnerGave) {
    Make(5, 3);
    widget->setAccessibleName("Limits of all variables");
    ASSERT_NE(Interface(), nullptr);
    EXPECT_EQ(Interface()->role(), QAccessible::Table);
    EXPECT_EQ(Interface()->text(QAccessible::Name), QString("Limits of all variables"));
    ASSERT_NE(Table(), nullptr);
}

TEST_F(GridWidgetAccessibleTest, ALargeGridIsAnsweredForTheCellsAskedForAlone) {
    constexpr std::int32_t rows = 32767;
    Make(rows, 35);
    EXPECT_EQ(Table()->rowCount(), rows);
    EXPECT_EQ(Table()->columnCount(), 35);
    EXPECT_EQ(Interface()->childCount(), (rows + 1) * 35);
    EXPECT_EQ(NameAt(rows - 1, 34), QString("r32767c34"));
    QAccessibleInterface* last = Table()->cellAt(rows - 1, 34);
    EXPECT_EQ(Interface()->indexOfChild(last), (rows + 1) * 35 - 1);
    EXPECT_EQ(Interface()->child((rows + 1) * 35 - 1), last);
    grid.Select(1, 0);
    grid.ExtendSelection(rows, 34);
    EXPECT_EQ(Table()->selectedCellCount(), rows * 35);
    EXPECT_LE(Table()->selectedCells().size(), 1035);
    EXPECT_EQ(Table()->selectedRowCount(), rows);
    EXPECT_TRUE(Table()->isRowSelected(20000));
    EXPECT_TRUE(Table()->isColumnSelected(34));
}

TEST_F(GridWidgetAccessibleTest, HeaderTextsDescribeTheColumns) {
    Make(5, 3);
    grid.SetCellPicture(1, HeaderPicture::FilterOn);
    EXPECT_EQ(Table()->columnDescription(1), QString("Column 1"));
    EXPECT_EQ(Table()->columnDescription(3), QString());
    QAccessibleInterface* header = Interface()->child(1);
    EXPECT_EQ(header->role(), QAccessible::ColumnHeader);
    EXPECT_EQ(header->text(QAccessible::Name), QString("Column 1"));
    EXPECT_EQ(header->text(QAccessible::Description), QString("Filtered"));
    EXPECT_EQ(Table()->cellAt(2, 1)->tableCellInterface()->columnHeaderCells(),
              QList<QAccessibleInterface*>{header});
}

TEST_F(GridWidgetAccessibleTest, CellsTellTextPlaceInTheTableAndMark) {
    Make(5, 3);
    grid.SetBackColor(3, 1, ChangedColour);
    QAccessibleInterface* cell = Table()->cellAt(2, 1);
    EXPECT_EQ(cell->role(), QAccessible::Cell);
    EXPECT_EQ(cell->text(QAccessible::Name), QString("r3c1"));
    EXPECT_EQ(cell->text(QAccessible::Description), QString("Changed"));
    EXPECT_EQ(cell->tableCellInterface()->rowIndex(), 2);
    EXPECT_EQ(cell->tableCellInterface()->columnIndex(), 1);
    EXPECT_EQ(cell->tableCellInterface()->table(), Interface());
    EXPECT_EQ(cell->parent(), Interface());
    EXPECT_EQ(Table()->cellAt(5, 0), nullptr);
    EXPECT_EQ(Table()->cellAt(0, 3), nullptr);
    EXPECT_EQ(Table()->cellAt(-1, 0), nullptr);
}

TEST_F(GridWidgetAccessibleTest, SelectionAndStatesFollowTheGrid) {
    Make(5, 3);
    EXPECT_EQ(Table()->selectedCellCount(), 0);
    EXPECT_TRUE(Table()->selectedCells().isEmpty());
    grid.Select(2, 0);
    grid.ExtendSelection(3, 1);
    EXPECT_EQ(Table()->selectedCellCount(), 4);
    EXPECT_EQ(Table()->selectedCells().size(), 4);
    QAccessibleInterface* current = Table()->cellAt(1, 0);
    EXPECT_TRUE(current->state().selected);
    EXPECT_TRUE(current->state().focused);
    EXPECT_TRUE(current->tableCellInterface()->isSelected());
    EXPECT_TRUE(Table()->cellAt(2, 1)->state().selected);
    EXPECT_FALSE(Table()->cellAt(2, 1)->state().focused);
    EXPECT_FALSE(Table()->cellAt(3, 1)->state().selected);
    EXPECT_EQ(Interface()->focusChild(), current);
    EXPECT_FALSE(Table()->isRowSelected(1));
    grid.ExtendSelection(3, 2);
    EXPECT_TRUE(Table()->isRowSelected(1));
    EXPECT_EQ(Table()->selectedRows(), (QList<int>{1, 2}));
    EXPECT_EQ(Table()->selectedColumnCount(), 0);
}

TEST_F(GridWidgetAccessibleTest, RowsAndColumnsAreSelectedWhereAllTheirCellsAre) {
    Make(5, 3);
    grid.Select(2, 0);
    grid.ExtendSelection(3, 2);
    for (int row = 0; row < 5; ++row) {
        EXPECT_EQ(Table()->isRowSelected(row), row == 1 || row == 2) << row;
    }
    grid.Select(1, 0);
    grid.ExtendSelection(5, 1);
    EXPECT_EQ(Table()->selectedColumns(), (QList<int>{0, 1}));
    EXPECT_EQ(Table()->selectedColumnCount(), 2);
    EXPECT_TRUE(Table()->selectedRows().isEmpty());
}

TEST_F(GridWidgetAccessibleTest, OfMoreThanAThousandSelectedCellsThoseInSightAreTold) {
    Make(1100, 1);
    grid.SetTopRow(501);
    const QList<int> inSight = RowsInSight();
    ASSERT_GT(inSight.size(), 1);
    EXPECT_EQ(inSight.front(), 500);
    grid.Select(1, 0);
    grid.ExtendSelection(1000, 0);
    EXPECT_EQ(ToldRows().size(), 1000);
    grid.ExtendSelection(1001, 0);
    EXPECT_EQ(ToldRows(), inSight);
    for (std::int32_t row = 1; row <= 1100; ++row) {
        grid.SetRowHidden(row, true);
    }
    QApplication::processEvents();
    EXPECT_TRUE(ToldRows().isEmpty());
    grid.ExtendSelection(2, 0);
    EXPECT_EQ(ToldRows(), (QList<int>{0, 1}));
}

TEST_F(GridWidgetAccessibleTest, AHiddenCellHasNoPlaceAndAScrolledOneItsWholeOne) {
    Make(100, 3);
    grid.SetRowHidden(2, true);
    grid.SetColHidden(2, true);
    EXPECT_TRUE(Table()->cellAt(1, 0)->rect().isEmpty());
    EXPECT_TRUE(Table()->cellAt(1, 0)->state().invisible);
    EXPECT_FALSE(Table()->cellAt(1, 0)->state().offscreen);
    EXPECT_TRUE(Table()->cellAt(0, 2)->rect().isEmpty());
    QAccessibleInterface* below = Table()->cellAt(90, 1);
    EXPECT_EQ(below->rect().size(), QSize(ColumnWidth, widget->Layout().GetSizes().rowHeight));
    EXPECT_TRUE(below->state().offscreen);
    EXPECT_FALSE(below->state().invisible);
    QAccessibleInterface* shown = Table()->cellAt(3, 1);
    EXPECT_FALSE(shown->state().offscreen);
    EXPECT_EQ(shown->rect().topLeft(), Port()->mapToGlobal(widget->Layout().CellRect(4, 1).topLeft()));
    const QPoint middle = shown->rect().center();
    EXPECT_EQ(Interface()->childAt(middle.x(), middle.y()), shown);
}

TEST_F(GridWidgetAccessibleTest, ChildrenAreAllCellsRowByRowTheHeaderFirst) {
    Make(2, 3);
    for (int index = 0; index < 9; ++index) {
        QAccessibleInterface* const cell = Interface()->child(index);
        ASSERT_NE(cell, nullptr) << index;
        EXPECT_EQ(cell->text(QAccessible::Name), ToQt(grid.TextMatrix(index / 3, index % 3)));
        EXPECT_EQ(Interface()->indexOfChild(cell), index);
    }
    VSFlexGrid second{"Second"};
    second.SetCols(3);
    second.SetRows(3);
    GridWidget beside(second);
    EXPECT_EQ(Interface()->indexOfChild(QAccessible::queryAccessibleInterface(&beside)->child(4)), -1);
    EXPECT_EQ(Interface()->indexOfChild(QAccessible::queryAccessibleInterface(other)), -1);
    EXPECT_EQ(Interface()->indexOfChild(nullptr), -1);
}

TEST_F(GridWidgetAccessibleTest, TheTableHasWhatTheGridHasHoweverLittle) {
    Make(5, 3);
    struct Case {
        const char* label;
        std::int32_t rows;
        std::int32_t cols;
        int rowCount;
        const char* description;
    };
    for (const Case& c : {Case{"the header alone", 1, 3, 0, "Column 0"}, Case{"no row", 0, 3, 0, ""},
                          Case{"one column", 3, 1, 2, "Column 0"}, Case{"no column", 3, 0, 2, ""}}) {
        SCOPED_TRACE(c.label);
        grid.SetCols(c.cols);
        grid.SetRows(c.rows);
        const int cells = c.rows * c.cols;
        if (cells > 0) {
            grid.SetTextMatrix(0, 0, "Column 0");
        }
        EXPECT_EQ(Table()->rowCount(), c.rowCount);
        EXPECT_EQ(Table()->columnCount(), c.cols);
        EXPECT_EQ(Interface()->childCount(), cells);
        EXPECT_EQ(Interface()->child(0) != nullptr, cells > 0);
        EXPECT_EQ(Interface()->child(cells), nullptr);
        EXPECT_EQ(Interface()->child(-1), nullptr);
        EXPECT_EQ(Table()->columnDescription(0), QString(c.description));
        EXPECT_EQ(Table()->columnDescription(c.cols), QString());
        EXPECT_EQ(Table()->columnDescription(-1), QString());
        EXPECT_EQ(Table()->cellAt(0, -1), nullptr);
    }
}

TEST_F(GridWidgetAccessibleTest, APlaceWithoutACellHasNoChild) {
    Make(2, 3);
    const QRect last = widget->Layout().CellRect(2, 2);
    EXPECT_EQ(ChildAt(last.bottomRight()), Table()->cellAt(1, 2));
    for (const QPoint place : {QPoint(last.right(), last.bottom() + 1),
                               QPoint(last.right() + 1, last.bottom()), QPoint(last.right() + 1, 0)}) {
        EXPECT_TRUE(Port()->rect().contains(place));
        EXPECT_EQ(ChildAt(place), nullptr) << place.x() << "," << place.y();
    }
}

TEST_F(GridWidgetAccessibleTest, CellsEndAtTheEdgeOfTheViewport) {
    Make(100, 10);
    const QPoint corner = Port()->rect().bottomRight();
    EXPECT_NE(ChildAt(corner), nullptr);
    EXPECT_EQ(ChildAt(corner + QPoint(1, 0)), nullptr);
    EXPECT_EQ(ChildAt(corner + QPoint(0, 1)), nullptr);
}

TEST_F(GridWidgetAccessibleTest, WithoutACurrentCellTheGridItselfHasTheKeyboard) {
    Make(3, 3);
    grid.Select(0, 1);
    EXPECT_EQ(Interface()->focusChild(), Interface());
}

TEST_F(GridWidgetAccessibleTest, AnOpenEditorHasTheKeyboardInItsCellsPlace) {
    Make(3, 3);
    grid.Select(2, 1);
    Press(Qt::Key_F2);
    ASSERT_NE(Interface()->focusChild(), nullptr);
    EXPECT_EQ(Interface()->focusChild()->object(), Editor());
}

TEST_F(GridWidgetAccessibleTest, OnlyCellsBelowTheHeaderCanBeSelectedAndSeveralOfThem) {
    Make(5, 3);
    const QAccessible::State header = Interface()->child(1)->state();
    const QAccessible::State cell = Table()->cellAt(2, 1)->state();
    EXPECT_FALSE(header.selectable || header.focusable || header.multiSelectable);
    EXPECT_TRUE(cell.selectable);
    EXPECT_TRUE(cell.focusable);
    EXPECT_TRUE(cell.multiSelectable);
}

TEST_F(GridWidgetAccessibleTest, RowsAndColumnsCanBeSelected) {
    Make(5, 3);
    EXPECT_TRUE(Table()->selectRow(2));
    EXPECT_EQ(Selection(), (Cell{3, 0, 3, 2}));
    EXPECT_TRUE(Table()->selectColumn(1));
    EXPECT_EQ(Selection(), (Cell{1, 1, 5, 1}));
    EXPECT_FALSE(Table()->selectRow(5));
    EXPECT_FALSE(Table()->unselectRow(2));
    EXPECT_FALSE(Table()->unselectColumn(1));
}

TEST_F(GridWidgetAccessibleTest, AListTellsItsSelectedRows) {
    Make(5, 1, std::make_unique<ListManner>(grid));
    EXPECT_TRUE(Table()->selectRow(1));
    EXPECT_TRUE(Table()->selectRow(3));
    EXPECT_EQ(Table()->selectedRows(), (QList<int>{1, 3}));
    EXPECT_EQ(Table()->selectedCells().size(), 2);
    EXPECT_TRUE(Table()->unselectRow(1));
    EXPECT_TRUE(grid.IsSelected(4));
    EXPECT_FALSE(grid.IsSelected(2));
}

TEST_F(GridWidgetAccessibleTest, AListsHeaderIsNeverSelectedItsFirstRowMayBe) {
    Make(5, 1, std::make_unique<ListManner>(grid));
    grid.SetIsSelected(0, true);
    grid.SetIsSelected(1, true);
    EXPECT_FALSE(Interface()->child(0)->tableCellInterface()->isSelected());
    EXPECT_TRUE(Interface()->child(1)->tableCellInterface()->isSelected());
    EXPECT_EQ(ToldRows(), QList<int>{0});
}

TEST_F(GridWidgetAccessibleTest, ARowThatWentFromAListIsNotSelected) {
    Make(5, 1, std::make_unique<ListManner>(grid));
    grid.SetIsSelected(5, true);
    QAccessibleInterface* const last = Table()->cellAt(4, 0);
    EXPECT_TRUE(last->tableCellInterface()->isSelected());
    grid.SetRows(3);
    EXPECT_FALSE(last->tableCellInterface()->isSelected());
}

TEST_F(GridWidgetAccessibleTest, TheEditorIsNamedAfterItsColumn) {
    Make(5, 3);
    grid.Select(2, 1);
    Press(Qt::Key_F2);
    EXPECT_EQ(Editor()->accessibleName(), QString("Column 1"));
}

}  // namespace
}  // namespace kd
