#include <QAccessible>

#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridWidgetAccessibleTest : public GridFixture {
protected:
    QAccessibleInterface* Interface() const { return QAccessible::queryAccessibleInterface(widget); }
    QAccessibleTableInterface* Table() const { return Interface()->tableInterface(); }
    QString NameAt(int row, int column) const {
        return Table()->cellAt(row, column)->text(QAccessible::Name);
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

TEST_F(GridWidgetAccessibleTest, AHiddenCellHasNoPlaceAndAScrolledOneItsWholeOne) {
    Make(100, 3);
    grid.SetRowHidden(2, true);
    grid.SetColHidden(2, true);
    EXPECT_TRUE(Table()->cellAt(1, 0)->rect().isEmpty());
    EXPECT_TRUE(Table()->cellAt(1, 0)->state().invisible);
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

TEST_F(GridWidgetAccessibleTest, ACellOfARowThatWentIsInvalid) {
    Make(5, 3);
    QAccessibleInterface* cell = Table()->cellAt(4, 1);
    EXPECT_TRUE(cell->isValid());
    grid.SetRows(3);
    EXPECT_FALSE(cell->isValid());
    EXPECT_EQ(cell->text(QAccessible::Name), QString());
    EXPECT_TRUE(cell->state().invalid);
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

TEST_F(GridWidgetAccessibleTest, TheEditorIsNamedAfterItsColumn) {
    Make(5, 3);
    grid.Select(2, 1);
    Press(Qt::Key_F2);
    EXPECT_EQ(Editor()->accessibleName(), QString("Column 1"));
}

}  // namespace
}  // namespace kd
