#include "grid/CellEditing.h"

#include <gtest/gtest.h>

#include <utility>

#include "fakes/GridDesk.h"
#include "grid/GridEvents.h"

namespace kd {
namespace {

using Leave = void (*)(Desk&);

/// One row, whose "USL" is 1.5, under the events that judge what is typed.
struct CellEditingTest : testing::Test, GridDesk {
    GridEvents events{desk};

    CellEditingTest() { AddLimits(cnUSL, {1.5}); }
    void Type(std::string_view text) {
        desk.Grid.Select(1, Position(cnUSL));
        ASSERT_TRUE(desk.Grid.StartEdit());
        desk.Grid.SetEditText(text);
    }
};

TEST_F(CellEditingTest, ATextThatMayStandIsTakenHoweverTheEditorIsLeft) {
    const std::pair<Leave, const char*> cases[] = {
        {CloseCellEditor, "2.500"}, {LeaveCellEditor, "3.500"}, {LeaveToldCellEditor, "4.500"}};
    for (const auto& [leave, text] : cases) {
        Type(text);
        leave(desk);
        EXPECT_FALSE(desk.Grid.EditWindow()) << text;
        EXPECT_EQ(Cell(1, cnUSL), text);
    }
}

TEST_F(CellEditingTest, ARefusedTextIsToldOnceAndGivenUpWhenTheEditorIsLeft) {
    Type("abc");
    toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    LeaveCellEditor(desk);
    EXPECT_FALSE(desk.Grid.EditWindow());
    EXPECT_EQ(Cell(1, cnUSL), "1.500");
}

TEST_F(CellEditingTest, ARefusedTextThatEnterHasToldIsGivenUpWithoutAnotherWord) {
    Type("abc");
    toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    EXPECT_FALSE(desk.Grid.FinishEdit());
    LeaveToldCellEditor(desk);
    EXPECT_FALSE(desk.Grid.EditWindow());
    EXPECT_EQ(Cell(1, cnUSL), "1.500");
    EXPECT_EQ(toolkit.boxes.size(), 1U);
}

TEST(CellEditingInAnEmptyGridTest, WithoutACellThereIsNoEditorToLeave) {
    TestMachine machine;
    Desk desk(machine.g);
    for (const Leave leave : {CloseCellEditor, LeaveCellEditor, LeaveToldCellEditor}) {
        leave(desk);
        EXPECT_FALSE(desk.Grid.EditWindow());
    }
    EXPECT_TRUE(machine.toolkit.log.empty());
}

}  // namespace
}  // namespace kd
