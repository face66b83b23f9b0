#include "platform/SelectAll.h"

#include <gtest/gtest.h>

namespace kd {
namespace {

struct SelectAllTest : testing::Test {
    CheckBox box{"chkSelectAll"};
    ListBox list{"lstFiles"};
    SelectAll selectAll{box, list};

    void SetUp() override { list.SetEntries({{"a", true}, {"b", false}}); }
};

TEST_F(SelectAllTest, ShowsAllNoneOrSome) {
    selectAll.Show();
    EXPECT_EQ(box.Value(), csGrayed);
    list.UserSelect(1, true);
    EXPECT_EQ(box.Value(), csChecked);
    list.UserSelect({0, 1}, false);
    EXPECT_EQ(box.Value(), csUnchecked);
    list.Clear();
    EXPECT_EQ(selectAll.GetCheckState(), csChecked) << "an empty list";
}

TEST_F(SelectAllTest, AClickSelectsAllOrNoneAndAllWhereSomeWere) {
    selectAll.Show();
    box.UserClick();
    EXPECT_EQ(list.SelectedCount(), 2);
    EXPECT_EQ(box.Value(), csChecked);
    box.UserClick();
    EXPECT_EQ(list.SelectedCount(), 0);
    EXPECT_EQ(box.Value(), csUnchecked);
    box.UserClick();
    EXPECT_EQ(list.SelectedCount(), 2);
}

TEST_F(SelectAllTest, NeitherControlReactsBeforeTheListIsShown) {
    list.UserSelect(1, true);
    EXPECT_EQ(box.Value(), csUnchecked);
    list.UserSelect(0, false);
    box.UserClick();
    EXPECT_EQ(list.SelectedCount(), 1);
    box.UserClick();
    EXPECT_EQ(list.SelectedCount(), 1);
}

TEST_F(SelectAllTest, AnEmptyListStaysChecked) {
    list.Clear();
    selectAll.Show();
    box.UserClick();
    EXPECT_EQ(box.Value(), csChecked);
}

}  // namespace
}  // namespace kd
