#include "qt/forms/ListBinder.h"

#include <QScrollBar>

#include "qt/Screen.h"

namespace kd {
namespace {

ListBox::Entry Entry(Text text, bool selected) {
    return {std::move(text), selected, 0};
}

class ListBinderTest : public testing::Test {
protected:
    QtToolkit toolkit;
    ListBox control{"lstFiles"};
    QListView view;
    int changes = 0;

    void SetUp() override {
        control.SetEntries({Entry("a", true), Entry("<b>b</b>", false), Entry("c", true)});
        control.SelectionChange = [&] { ++changes; };
    }
    bool Shown(int row) const { return view.selectionModel()->isRowSelected(row, {}); }
    QPoint At(int row) const { return view.visualRect(view.model()->index(row, 0)).center(); }
};

TEST_F(ListBinderTest, EntriesAndSelectionAreShown) {
    new ListBinder(control, view, toolkit.Boundary());
    EXPECT_EQ(view.model()->rowCount(), 3);
    EXPECT_EQ(view.model()->index(1, 0).data().toString(), "<b>b</b>");
    EXPECT_TRUE(Shown(0));
    EXPECT_FALSE(Shown(1));
    EXPECT_TRUE(Shown(2));
    EXPECT_EQ(changes, 0);
}

TEST_F(ListBinderTest, NoPlaceInTheListHasNoText) {
    new ListBinder(control, view, toolkit.Boundary());
    EXPECT_EQ(view.model()->data(QModelIndex(), Qt::DisplayRole), QVariant());
    EXPECT_EQ(view.model()->data(QModelIndex(), Qt::CheckStateRole), QVariant());
    EXPECT_EQ(view.model()->rowCount(view.model()->index(0, 0)), 0);
}

TEST_F(ListBinderTest, ClickTurnsOneEntryOverAndLeavesTheOthers) {
    new ListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, At(1));
    EXPECT_TRUE(control.Selected(0));
    EXPECT_TRUE(control.Selected(1));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ControlModifier, At(0));
    EXPECT_FALSE(control.Selected(0));
    EXPECT_TRUE(control.Selected(2));
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(control.ListIndex(), 0);
}

TEST_F(ListBinderTest, KeyboardMovesAndTurnsOver) {
    new ListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    Press(Qt::Key_End);
    Press(Qt::Key_Space);
    EXPECT_FALSE(control.Selected(2));
    EXPECT_TRUE(control.Selected(0));
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(control.SelectedCount(), 3);
}

TEST_F(ListBinderTest, FormsRangeOperationIsShown) {
    new ListBinder(control, view, toolkit.Boundary());
    control.SetSelectedRange(0, 2, true);
    EXPECT_TRUE(Shown(1));
    control.SetSelectedRange(0, 2, false);
    EXPECT_FALSE(Shown(0) || Shown(1) || Shown(2));
    EXPECT_EQ(changes, 0);
}

TEST_F(ListBinderTest, HandlersChangeDuringTheUsersClickIsShown) {
    control.SelectionChange = [&] { control.SetSelectedRange(0, 2, false); };
    new ListBinder(control, view, toolkit.Boundary());
    view.show();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, At(1));
    EXPECT_EQ(control.SelectedCount(), 0);
    EXPECT_FALSE(Shown(0) || Shown(1) || Shown(2));
}

TEST_F(ListBinderTest, EntriesThatComeAndGoAreShown) {
    new ListBinder(control, view, toolkit.Boundary());
    control.Add("d", true);
    EXPECT_EQ(view.model()->rowCount(), 4);
    EXPECT_TRUE(Shown(3));
    control.Clear();
    EXPECT_EQ(view.model()->rowCount(), 0);
}

TEST_F(ListBinderTest, EntryThatIsWiderThanTheListCanBeScrolledToItsEnd) {
    control.SetEntries({Entry("a", true), Entry(Text(300, 'W'), false), Entry("c", true)});
    new ListBinder(control, view, toolkit.Boundary());
    view.resize(200, 100);
    view.show();
    QTest::qWait(0);
    EXPECT_GE(view.visualRect(view.model()->index(1, 0)).width(),
              view.fontMetrics().horizontalAdvance(QString(300, QLatin1Char('W'))));
    EXPECT_GT(view.horizontalScrollBar()->maximum(), 0);
}

TEST_F(ListBinderTest, ListAtTheLimitIsShownWhole) {
    std::vector<ListBox::Entry> entries;
    for (int i = 0; i < 32767; ++i) {
        entries.push_back(Entry(std::to_string(i), i % 2 == 0));
    }
    control.SetEntries(std::move(entries));
    new ListBinder(control, view, toolkit.Boundary());
    view.show();
    EXPECT_EQ(view.model()->rowCount(), 32767);
    EXPECT_TRUE(Shown(32766));
    EXPECT_FALSE(Shown(32765));
    control.SetSelectedRange(0, 32766, true);
    EXPECT_TRUE(Shown(32765));
}

class CheckListBinderTest : public ListBinderTest {
protected:
    Qt::CheckState Tick(int row) const {
        return view.model()->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>();
    }
};

TEST_F(CheckListBinderTest, TicksAreShownAndFollowTheForm) {
    new CheckListBinder(control, view, toolkit.Boundary());
    EXPECT_EQ(Tick(0), Qt::Checked);
    EXPECT_EQ(Tick(1), Qt::Unchecked);
    control.SetSelectedRange(0, 2, false);
    EXPECT_EQ(Tick(0), Qt::Unchecked);
    EXPECT_EQ(changes, 0);
}

TEST_F(CheckListBinderTest, ClickOnTheMarkAndOnTheTextTurnsTheTickOverOnce) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    const QRect entry = view.visualRect(view.model()->index(1, 0));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(entry.left() + 8, entry.center().y()));
    EXPECT_TRUE(control.Selected(1));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, entry.center());
    EXPECT_FALSE(control.Selected(1));
    EXPECT_EQ(changes, 2);
}

TEST_F(CheckListBinderTest, SpaceTurnsTheCurrentTickOver) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    Press(Qt::Key_End);
    Press(Qt::Key_Space);
    EXPECT_FALSE(control.Selected(2));
    EXPECT_EQ(control.ListIndex(), 2);
    EXPECT_EQ(changes, 1);
}

TEST_F(CheckListBinderTest, ListOpensWithoutACurrentEntryThoughItHasTheKeyboard) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    EXPECT_FALSE(view.currentIndex().isValid());
    EXPECT_EQ(control.ListIndex(), -1);
    Press(Qt::Key_Space);
    EXPECT_EQ(changes, 0);
    control.SetListIndex(1);
    EXPECT_EQ(view.currentIndex().row(), 1);
}

}  // namespace
}  // namespace kd
