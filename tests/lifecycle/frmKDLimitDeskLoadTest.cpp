#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "lifecycle/MainFormDesk.h"
#include "model/Columns.h"
#include "platform/EventBoundary.h"

namespace kd {
namespace {

struct frmKDLimitDeskLoadTest : testing::Test, MainFormDesk {};

TEST_F(frmKDLimitDeskLoadTest, WindowIsPaintedWithTheGridLaidOutAndEmpty) {
    Load();
    desk.Panel1.SetCaption("old");
    desk.ProgressBar1.SetValue(50);
    desk.mnuShowPaths.SetChecked(false);
    desk.mnuShowOnlyNumericVariables.SetChecked(false);
    int pass = 0;
    toolkit.onProcessEvents = [&] {
        if (++pass > 3) {
            return;
        }
        EXPECT_EQ(desk.ProgressBar1.Value(), 0);
        EXPECT_EQ(desk.Panel1.Caption(), "");
        EXPECT_TRUE(desk.mnuShowPaths.Checked());
        EXPECT_TRUE(desk.mnuShowOnlyNumericVariables.Checked());
        EXPECT_EQ(desk.Grid.Rows(), 1);
        EXPECT_EQ(desk.Grid.Cols(), ColumnCount);
        EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
    };
    form.LoadAndShowApplications();
    EXPECT_EQ(pass, 5) << "three to paint, one for the application, one at the end";
}

TEST_F(frmKDLimitDeskLoadTest, LoadTellsItsProgress) {
    globals.gMasterFiles->Add(Install("/apps/a.kdt"), true);
    globals.gMasterFiles->Add(Install("/apps/b.kdt"), true);
    std::vector<std::pair<double, Text>> seen;
    toolkit.onProcessEvents = [&] { seen.emplace_back(desk.ProgressBar1.Value(), desk.Panel2.Caption()); };
    form.LoadAndShowApplications();
    const Text done = "Done ... , Applications: 2, Views: 0, Variables: 2";
    ASSERT_EQ(seen.size(), 6U);
    EXPECT_EQ(seen[3], (std::pair<double, Text>(50, "Loading: /apps/a.kdt")));
    EXPECT_EQ(seen[4], (std::pair<double, Text>(100, "Loading: /apps/b.kdt")));
    EXPECT_EQ(seen[5], (std::pair<double, Text>(0, done)));
    EXPECT_EQ(desk.Panel2.Caption(), done) << "it stays";
}

TEST_F(frmKDLimitDeskLoadTest, LaterLoadDropsRowsFiltersMarksAndTheCurrentCell) {
    Load(aField().Usl(5));
    TypeUsl("6");
    ASSERT_TRUE(desk.Grid.FinishEdit());
    ASSERT_EQ(desk.Grid.BackColor(1, cnUSL - 1), ChangedColour);
    globals.gLabels->Ref(10).Filters()->Add("6.000", true);
    desk.Grid.SetCellPicture(cnUSL - 1, HeaderPicture::FilterOn);
    desk.Grid.SetFrozenCols(8);
    ASSERT_FALSE(desk.Panel1.Caption().empty());
    form.LoadAndShowApplications();
    EXPECT_EQ(desk.Grid.TextMatrix(1, cnUSL - 1), "5.000");
    EXPECT_EQ(desk.Grid.BackColor(1, cnUSL - 1), 0U);
    EXPECT_EQ(globals.gLabels->Ref(10).Filters()->Count(), 0);
    EXPECT_EQ(desk.Grid.CellPicture(cnUSL - 1), HeaderPicture::FilterOff);
    EXPECT_EQ(desk.Grid.FrozenCols(), 0);
    EXPECT_EQ(desk.Grid.Row(), 0) << "no current cell";
    EXPECT_EQ(desk.Panel1.Caption(), "");
    EXPECT_FALSE(globals.gFiles->Ref(1).ChangesMade());
}

TEST_F(frmKDLimitDeskLoadTest, LoadLeavesShowAllPropertiesTickedAndHidesTheirColumns) {
    Load();
    EXPECT_FALSE(desk.mnuShowAll.Checked()) << "not ticked when the program starts";
    desk.mnuShowAll.SetChecked(true);
    desk.Grid.SetColHidden(cnUnits - 1, false);
    form.LoadAndShowApplications();
    EXPECT_TRUE(desk.mnuShowAll.Checked());
    EXPECT_TRUE(desk.Grid.ColHidden(cnUnits - 1));
}

TEST_F(frmKDLimitDeskLoadTest, StoppedLoadPutsPointerRedrawAndProgressBack) {
    globals.gMasterFiles->Add(Install("/apps/a.kdt"), true);
    globals.gMasterFiles->Add(Install("/apps/b.kdt", aField().Length(2).Decimals(2)), true);
    ExpectAdmin(Ok);
    toolkit.ExpectBox(UnhandledErrorText(cError(errInvalidArgument, "x", {}, "/apps/b.kdt")),
                      BoxIcon::Critical, "KDLimitDesk");
    desk.mnuApplications.UserClick();
    EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
    EXPECT_EQ(desk.ProgressBar1.Value(), 0);
    EXPECT_TRUE(desk.Grid.Redraw());
    for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
        desk.Grid.Select(row, cnUSL - 1);
        EXPECT_FALSE(desk.Panel1.Caption().empty()) << "row " << row << " belongs to a variable";
    }
}

}  // namespace
}  // namespace kd
