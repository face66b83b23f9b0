#include "platform/GridColumns.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/cError.h"
#include "fakes/ErrorOf.h"
#include "platform/VSFlexGrid.h"

namespace kd {
namespace {

/// Three rows and two columns.
class GridColumnsTest : public testing::Test, public GridScreen {
protected:
    GridColumnsTest() {
        grid.SetCols(2);
        grid.SetRows(4);
    }
    void LayoutChanged() override { editorWhenTold.push_back(grid.EditWindow()); }

    VSFlexGrid grid{"Grid"};
    std::vector<bool> editorWhenTold;
};

TEST_F(GridColumnsTest, AFailureNamesTheOperation) {
    EXPECT_EQ(SourceOf([&] { (void)grid.ColWidth(2); }), "VSFlexGrid.Col");
    EXPECT_EQ(SourceOf([&] { grid.SetFrozenCols(3); }), "VSFlexGrid.FrozenCols");
}

TEST_F(GridColumnsTest, EachNumberOfColumnsCanStayInSight) {
    for (const std::int32_t cols : {2, 1, 0}) {
        grid.SetFrozenCols(cols);
        EXPECT_EQ(grid.FrozenCols(), cols);
    }
}

TEST_F(GridColumnsTest, WhenTheScreenHearsOfAHiddenColumnItsEditorIsClosed) {
    grid.Select(1, 1);
    ASSERT_TRUE(grid.StartEdit());
    grid.SetScreen(this);
    grid.SetColHidden(1, true);
    EXPECT_EQ(editorWhenTold, std::vector<bool>{false});
}

}  // namespace
}  // namespace kd
