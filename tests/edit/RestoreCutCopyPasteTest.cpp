#include "edit/RestoreCutCopyPaste.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "edit/EditDesk.h"

namespace kd {
namespace {

struct RestoreCutCopyPasteTest : testing::Test, EditDesk {};

/// A command that must do nothing, and say nothing, without a selection.
using Command = void (*)(Desk&);

TEST_F(RestoreCutCopyPasteTest, EveryCommandWithoutASelectionIsASilentNoOp) {
    AddUnits({"g", "kg"});
    suite.clipboard = "x";
    for (const Command command : {Restore, Cut, Copy, Paste}) {
        command(desk);
        desk.Grid.Select(0, Position(cnUnits));
        command(desk);
    }
    EXPECT_EQ(suite.clipboard, "x");
    ExpectUntouched({"g", "kg"}, cnUnits);
}

TEST_F(RestoreCutCopyPasteTest, EveryCommandInAnEmptyGridIsASilentNoOp) {
    suite.clipboard = "x";
    for (const Command command : {Restore, Cut, Copy, Paste}) {
        command(desk);
    }
    EXPECT_EQ(suite.clipboard, "x");
    EXPECT_EQ(desk.Grid.Rows(), 1);
}

TEST_F(RestoreCutCopyPasteTest, SelectionWithNothingVisibleIsASilentNoOp) {
    AddUnits({"g", "kg"});
    suite.clipboard = "x";
    Hide({1});
    Select(1, cnUnits, 1, cnUnits);
    for (const Command command : {Restore, Cut, Copy}) {
        command(desk);
    }
    EXPECT_EQ(suite.clipboard, "x");
    ExpectUntouched({"g", "kg"}, cnUnits);
}

}  // namespace
}  // namespace kd
