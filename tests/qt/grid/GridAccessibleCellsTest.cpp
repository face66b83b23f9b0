#include <QAccessible>

#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class GridAccessibleCellsTest : public GridFixture {
protected:
    QAccessibleInterface* Interface() const { return QAccessible::queryAccessibleInterface(widget); }
    QAccessibleTableInterface* Table() const { return Interface()->tableInterface(); }
};

/// Nothing is told of a cell that there is no more.
void ExpectInvalid(QAccessibleInterface& cell) {
    QAccessible::State invalid;
    invalid.invalid = 1;
    EXPECT_FALSE(cell.isValid());
    EXPECT_EQ(cell.text(QAccessible::Name), QString());
    EXPECT_EQ(cell.rect(), QRect());
    EXPECT_TRUE(cell.state() == invalid);
    EXPECT_FALSE(cell.tableCellInterface()->isSelected());
}

TEST_F(GridAccessibleCellsTest, CellsOfRowsAndColumnsThatWentAreInvalid) {
    Make(5, 3);
    QAccessibleInterface* const header = Interface()->child(0);
    const auto at = [this](int row, int column) { return Table()->cellAt(row, column); };
    const std::vector<QAccessibleInterface*> kept{header, at(1, 0), at(1, 1)};
    const std::vector<QAccessibleInterface*> gone{at(1, 2), at(2, 0), at(4, 1)};
    for (const auto* const cell : {at(1, 2), at(2, 0), at(4, 1), header}) {
        EXPECT_TRUE(cell->isValid());
    }
    grid.SetCols(2);
    grid.SetRows(3);
    for (QAccessibleInterface* const cell : gone) {
        ExpectInvalid(*cell);
        EXPECT_EQ(Interface()->indexOfChild(cell), -1);
    }
    for (const auto* const cell : kept) {
        EXPECT_TRUE(cell->isValid());
    }
    grid.SetRows(0);
    ExpectInvalid(*header);
}

TEST_F(GridAccessibleCellsTest, CellsAreForgottenWhenTheTableChangesAndWhenItGoes) {
    Make(5, 3);
    const auto idOfCell = [this] { return QAccessible::uniqueId(Table()->cellAt(2, 1)); };
    const QAccessible::Id before = idOfCell();
    EXPECT_EQ(QAccessible::accessibleInterface(before), Table()->cellAt(2, 1));
    QAccessibleTableModelChangeEvent change(widget, QAccessibleTableModelChangeEvent::ModelReset);
    Table()->modelChange(&change);
    EXPECT_EQ(QAccessible::accessibleInterface(before), nullptr);
    ASSERT_NE(Table()->cellAt(2, 1), nullptr);
    EXPECT_EQ(Table()->cellAt(2, 1)->text(QAccessible::Name), QString("r3c1"));
    const QAccessible::Id after = idOfCell();
    top.reset();
    EXPECT_EQ(QAccessible::accessibleInterface(after), nullptr);
}

TEST_F(GridAccessibleCellsTest, ACellTellsItsTextAsItsValueTooAndNoMarkThatItHasNot) {
    Make(5, 3);
    grid.SetCellPicture(1, HeaderPicture::FilterOff);
    for (const auto* const cell : {Interface()->child(1), Table()->cellAt(0, 1)}) {
        EXPECT_EQ(cell->text(QAccessible::Value), cell->text(QAccessible::Name));
        EXPECT_FALSE(cell->text(QAccessible::Value).isEmpty());
        EXPECT_EQ(cell->text(QAccessible::Description), QString());
        EXPECT_EQ(cell->text(QAccessible::Help), QString());
    }
}

TEST_F(GridAccessibleCellsTest, ACellIsOnePlaceOfTheWindowsTableWithNothingInside) {
    Make(5, 3);
    for (QAccessibleInterface* const cell : {Interface()->child(1), Table()->cellAt(0, 1)}) {
        EXPECT_EQ(cell->tableCellInterface()->rowExtent(), 1);
        EXPECT_EQ(cell->tableCellInterface()->columnExtent(), 1);
        EXPECT_EQ(cell->window(), top->windowHandle());
        EXPECT_EQ(cell->childCount(), 0);
        EXPECT_EQ(cell->child(0), nullptr);
        EXPECT_EQ(cell->indexOfChild(Interface()), -1);
    }
    QAccessibleInterface* const header = Interface()->child(1);
    EXPECT_TRUE(header->tableCellInterface()->columnHeaderCells().isEmpty());
    EXPECT_EQ(Table()->cellAt(0, 1)->tableCellInterface()->columnHeaderCells(),
              QList<QAccessibleInterface*>{header});
}

TEST_F(GridAccessibleCellsTest, TheCurrentCellAloneIsActiveAndHasTheKeyboardWithTheGrid) {
    Make(3, 3);
    for (const GridCell current : {GridCell{1, 0}, GridCell{2, 1}, GridCell{3, 2}}) {
        for (const bool focus : {true, false}) {
            SCOPED_TRACE(std::to_string(current.row) + (focus ? " in the grid" : " elsewhere"));
            (focus ? static_cast<QWidget*>(widget) : other)->setFocus();
            grid.Select(current.row, current.screenCol);
            for (int index = 3; index < 12; ++index) {
                const QAccessible::State state = Interface()->child(index)->state();
                const bool here = index == current.row * 3 + current.screenCol;
                EXPECT_EQ(state.active == 1, here) << index;
                EXPECT_EQ(state.focused == 1, here && focus) << index;
                EXPECT_EQ(state.selected == 1, here) << index;
                EXPECT_TRUE(state.selectable && state.focusable && state.multiSelectable) << index;
            }
            EXPECT_EQ(Interface()->focusChild() == Table()->cellAt(current.row - 1, current.screenCol),
                      focus);
        }
    }
}

}  // namespace
}  // namespace kd
