#include "platform/Controls.h"

#include <gtest/gtest.h>

#include "platform/Toolkit.h"

namespace kd {
namespace {

/// Counts what a control tells its screen.
int& Watch(Control& control, int& changes) {
    changes = 0;
    control.OnChanged = [&changes] { ++changes; };
    return changes;
}

TEST(ControlTest, NewControlIsEnabledAndVisible) {
    const Label label("lblFind");
    EXPECT_EQ(label.Name(), "lblFind");
    EXPECT_EQ(label.Caption(), "");
    EXPECT_TRUE(label.Enabled());
    EXPECT_TRUE(label.Visible());
}

TEST(ControlTest, WhatTheUserDoesArrivesWhereTheFormDoesNotListen) {
    OptionButton option("optFixed");
    option.UserClick();
    EXPECT_FALSE(option.Value()) << "the form decides";
    ListBox list("lstNames");
    list.SetEntries({{"a", false}, {"b", false}});
    list.UserSelect(0, true);
    list.UserSelect(std::vector<std::int32_t>{1}, true);
    EXPECT_EQ(list.SelectedCount(), 2);
    ComboBox combo("cboFilter");
    combo.SetEntries({"", "water"});
    combo.UserDropDown();
    combo.UserChoose(1);
    EXPECT_EQ(combo.Value(), "water");
    EXPECT_FALSE(combo.UserEnter()) << "the key is left to the window";
}

TEST(ControlTest, ScreenIsToldOfEachDifferenceAlone) {
    Label label("lblFind");
    int changes = 0;
    Watch(label, changes);
    label.SetCaption("");
    label.SetEnabled(true);
    label.SetVisible(true);
    EXPECT_EQ(changes, 0);
    label.SetCaption("Find:");
    label.SetEnabled(false);
    label.SetVisible(false);
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(label.Caption(), "Find:");
    EXPECT_FALSE(label.Enabled());
    EXPECT_FALSE(label.Visible());
}

TEST(ControlTest, WhenTheScreenHearsOfAChangeTheControlHasIt) {
    Label label("lblFind");
    std::vector<Text> heard;
    label.OnChanged = [&] {
        heard.push_back(label.Caption() + (label.Enabled() ? " on" : " off") +
                        (label.Visible() ? " shown" : " hidden"));
    };
    label.SetCaption("Find:");
    label.SetEnabled(false);
    label.SetVisible(false);
    EXPECT_EQ(heard, (std::vector<Text>{"Find: on shown", "Find: off shown", "Find: off hidden"}));
}

TEST(ControlTest, FocusIsAskedOfTheScreenAndToldToTheForm) {
    TextBox box("txtFind");
    box.SetFocus();
    box.UserFocus();
    box.SelectAll();
    std::vector<Text> log;
    box.OnFocusWanted = [&] { log.emplace_back("wanted"); };
    box.GotFocus = [&] { log.emplace_back("got"); };
    box.OnSelectAll = [&] { log.emplace_back("all"); };
    box.SetFocus();
    EXPECT_EQ(log, (std::vector<Text>{"wanted"})) << "asking is not yet having";
    box.UserFocus();
    box.SelectAll();
    EXPECT_EQ(log, (std::vector<Text>{"wanted", "got", "all"}));
}

TEST(LabelTest, ActsAsALink) {
    Label label("lblWeb");
    label.UserClick();
    int clicks = 0;
    label.Click = [&] { ++clicks; };
    label.UserClick();
    EXPECT_EQ(clicks, 1);
}

TEST(ButtonTest, DisabledButtonDoesNothing) {
    Button button("cmdOk");
    button.UserClick();
    int clicks = 0;
    button.Click = [&] { ++clicks; };
    button.UserClick();
    button.SetEnabled(false);
    button.UserClick();
    EXPECT_EQ(clicks, 1);
}

TEST(TextBoxTest, TextFromTheUserAndFromTheForm) {
    TextBox box("txtFind");
    int changes = 0;
    Watch(box, changes);
    box.UserType("a");
    box.SetValue("b");
    box.SetValue("b");
    EXPECT_EQ(box.Value(), "b");
    EXPECT_EQ(changes, 2);
}

TEST(TextBoxTest, WishToSelectAllWaitsForAScreenAndIsAskedOnce) {
    TextBox box("txtFind");
    EXPECT_FALSE(box.TakeSelectAll());
    box.SelectAll();
    EXPECT_TRUE(box.TakeSelectAll());
    EXPECT_FALSE(box.TakeSelectAll());
    box.OnSelectAll = [] {};
    box.SelectAll();
    EXPECT_FALSE(box.TakeSelectAll()) << "the screen has done it";
}

TEST(CheckBoxTest, UsersClickClearsAnyMark) {
    struct Case {
        CheckState before;
        CheckState after;
    };
    for (const Case& c :
         {Case{csUnchecked, csChecked}, Case{csChecked, csUnchecked}, Case{csGrayed, csUnchecked}}) {
        CheckBox box("chkSelectAll");
        int clicks = 0;
        box.Click = [&] {
            ++clicks;
            EXPECT_EQ(box.Value(), c.after) << "the handler sees the new state";
        };
        box.SetValue(c.before);
        EXPECT_EQ(clicks, 0) << "no handler for the form's own change";
        box.UserClick();
        EXPECT_EQ(clicks, 1);
        EXPECT_EQ(box.Value(), c.after);
    }
    EXPECT_EQ(CheckBox("chkSelectAll").Value(), csUnchecked);
}

TEST(OptionButtonTest, FormDecidesWhatAClickMeans) {
    OptionButton option("optLimits");
    int clicks = 0;
    int changes = 0;
    Watch(option, changes);
    option.Click = [&] { ++clicks; };
    option.UserClick();
    EXPECT_FALSE(option.Value());
    option.SetValue(true);
    EXPECT_TRUE(option.Value());
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(changes, 1);
}

TEST(OptionGroupTest, UserSelectsAndGivesTheFocus) {
    OptionGroup group("optLimits", {"USL", "UCL", "UWL"});
    int focus = 0;
    int changes = 0;
    Watch(group, changes);
    group.GotFocus = [&] {
        ++focus;
        EXPECT_EQ(group.Selected(), 2) << "selected before the handler";
    };
    EXPECT_EQ(group.Captions(), (std::vector<Text>{"USL", "UCL", "UWL"}));
    EXPECT_EQ(group.Selected(), 0);
    group.SetSelected(1);
    EXPECT_EQ(focus, 0);
    group.UserSelect(2);
    EXPECT_EQ(focus, 1);
    EXPECT_EQ(changes, 2);
}

class ListBoxTest : public testing::Test {
protected:
    ListBoxTest() {
        list.Add("a", true, 10);
        list.Add("b", false, 20);
        list.Add("c", false);
        Watch(list, changes);
        list.SelectionChange = [this] { ++handled; };
    }
    ListBox list{"lstFiles"};
    int changes = 0;
    int handled = 0;
};

TEST_F(ListBoxTest, EntriesCountFromZero) {
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(list.Entries()[0].text, "a");
    EXPECT_EQ(list.Entries()[1].data, 20);
    EXPECT_EQ(list.Entries()[2].data, 0);
    EXPECT_TRUE(list.Selected(0));
    EXPECT_FALSE(list.Selected(2));
    EXPECT_EQ(list.SelectedCount(), 1);
    EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(ListBoxTest, FormsChangesRunNoHandler) {
    list.SetSelected(1, true);
    list.SetSelectedRange(0, 2, false);
    list.Add("d", true);
    EXPECT_EQ(handled, 0);
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(list.SelectedCount(), 1);
}

TEST_F(ListBoxTest, RangeIsOneChangeForTheScreen) {
    list.SetSelectedRange(0, 2, true);
    EXPECT_EQ(list.SelectedCount(), 3);
    EXPECT_EQ(changes, 1);
    list.SetSelectedRange(0, 2, true);
    EXPECT_EQ(changes, 1) << "nothing differs";
    list.SetSelectedRange(1, 1, false);
    EXPECT_EQ(list.SelectedCount(), 2);
    EXPECT_FALSE(list.Selected(1));
}

TEST_F(ListBoxTest, RangeBeyondTheEntriesIsCut) {
    list.SetSelectedRange(-5, 99, true);
    EXPECT_EQ(list.SelectedCount(), 3);
    list.SetSelectedRange(2, 1, false);
    list.SetSelectedRange(7, 9, false);
    EXPECT_EQ(list.SelectedCount(), 3);
    list.Clear();
    list.SetSelectedRange(0, -1, true);
    EXPECT_EQ(list.SelectedCount(), 0);
}

TEST_F(ListBoxTest, UserRunsTheHandlerOnce) {
    list.UserSelect(1, true);
    EXPECT_EQ(handled, 1);
    list.UserSelect(std::vector<std::int32_t>{0, 2}, true);
    EXPECT_EQ(handled, 2);
    EXPECT_EQ(list.SelectedCount(), 3);
    list.UserSelect(std::vector<std::int32_t>{0, 1}, false);
    EXPECT_EQ(list.SelectedCount(), 1);
}

TEST_F(ListBoxTest, WhoHearsOfAChangeFindsTheListAsItIsAfterwards) {
    std::vector<std::int32_t> counts;
    list.OnChanged = [&] { counts.push_back(list.SelectedCount()); };
    list.SetSelectedRange(0, 1, false);
    list.Add("fourth", true, 4);
    list.SetEntries({{"x", true, 1}, {"y", true, 2}});
    list.Clear();
    EXPECT_EQ(counts, (std::vector<std::int32_t>{0, 1, 2, 0}));
}

TEST_F(ListBoxTest, AnotherCurrentEntryIsOneChangeForTheScreen) {
    list.SetListIndex(1);
    list.SetListIndex(1);
    EXPECT_EQ(list.ListIndex(), 1);
    EXPECT_EQ(changes, 1);
}

TEST_F(ListBoxTest, NoEntryIsCurrentWhenTheScreenHearsOfOtherEntries) {
    std::vector<std::int32_t> heard;
    list.SetListIndex(1);
    list.OnChanged = [&] { heard.push_back(list.ListIndex()); };
    list.SetEntries({{"x", true, 1}, {"y", true, 2}});
    list.SetListIndex(1);
    list.Clear();
    EXPECT_EQ(heard, (std::vector<std::int32_t>{-1, 1, -1}));
}

TEST_F(ListBoxTest, AnEntryIsNeitherSelectedNorNumberedUnlessToldSo) {
    ListBox::Entry entry;
    entry.text = "x";
    list.SetEntries({entry});
    EXPECT_FALSE(list.Selected(0));
    EXPECT_EQ(list.Entries().front().data, 0);
}

TEST_F(ListBoxTest, AllEntriesAtOnce) {
    list.SetListIndex(1);
    changes = 0;
    list.SetEntries({{"x", true, 1}, {"y", true, 2}});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.SelectedCount(), 2);
    EXPECT_EQ(list.ListIndex(), -1);
    list.SetListIndex(0);
    list.Clear();
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.SelectedCount(), 0);
    EXPECT_EQ(list.ListIndex(), -1);
}

TEST(ComboBoxTest, ChoosingTakesTheEntryThenRunsTheHandler) {
    ComboBox combo("cboFilter");
    std::vector<Text> log;
    combo.DropDown = [&] {
        log.emplace_back("drop");
        combo.SetEntries({"first", "second"});
    };
    combo.Click = [&] { log.push_back("click " + combo.Value()); };
    combo.SetValue("typed by the form");
    combo.UserType("typed");
    EXPECT_EQ(combo.Value(), "typed");
    EXPECT_TRUE(log.empty());
    combo.UserDropDown();
    combo.UserChoose(1);
    EXPECT_EQ(log, (std::vector<Text>{"drop", "click second"}));
}

TEST(ProgressBarTest, ValueStaysBetweenItsEnds) {
    ProgressBar bar("ProgressBar1");
    int changes = 0;
    Watch(bar, changes);
    EXPECT_EQ(bar.Value(), 0);
    bar.SetValue(33.25);
    EXPECT_EQ(bar.Value(), 33.25);
    bar.SetValue(99.5);
    EXPECT_EQ(bar.Value(), 99.5);
    bar.SetValue(100.5);
    EXPECT_EQ(bar.Value(), 100);
    bar.SetValue(0.5);
    EXPECT_EQ(bar.Value(), 0.5);
    bar.SetValue(-1);
    EXPECT_EQ(bar.Value(), 0);
    EXPECT_EQ(changes, 5);
}

TEST(MenuItemTest, CheckMarkMakesItCheckable) {
    MenuItem item("mnuPaths", "Show Paths");
    EXPECT_EQ(item.Caption(), "Show Paths");
    EXPECT_FALSE(item.Checkable());
    EXPECT_FALSE(item.Checked());
    item.SetChecked(false);
    EXPECT_TRUE(item.Checkable());
    EXPECT_FALSE(item.Checked());
    int changes = 0;
    Watch(item, changes);
    item.SetChecked(true);
    item.SetChecked(true);
    EXPECT_TRUE(item.Checked());
    EXPECT_EQ(changes, 1);
}

TEST(MenuItemTest, WhenTheScreenHearsOfTheFirstCheckMarkTheEntryIsCheckable) {
    MenuItem item("mnuPaths", "Show Paths");
    bool heard = false;
    item.OnChanged = [&] { heard = item.Checkable() && item.Checked(); };
    item.SetChecked(true);
    EXPECT_TRUE(heard);
}

TEST(MenuItemTest, DisabledEntryDoesNothing) {
    MenuItem item("mnuCommit", "Commit Changes");
    MenuItem menu("mnuFile", "File");
    menu.SetEntries({&item, nullptr});
    EXPECT_EQ(menu.Entries(), (std::vector<MenuItem*>{&item, nullptr}));
    item.UserClick();
    int clicks = 0;
    item.Click = [&] { ++clicks; };
    item.UserClick();
    item.SetEnabled(false);
    item.UserClick();
    EXPECT_EQ(clicks, 1);
}

TEST(FormTest, KeepsItsPlaceAndWhoHadTheFocus) {
    Form form("frmAutoFilter");
    EXPECT_FALSE(form.OwnPlace().has_value());
    EXPECT_EQ(form.FocusedControl(), "");
    form.SetOwnPlace({});
    form.SetFocusedControl("txtFind");
    form.Hide();
    EXPECT_TRUE(form.OwnPlace().has_value());
    EXPECT_EQ(form.FocusedControl(), "txtFind");
}

TEST(FormTest, HidingEndsTheShowingAndKeepsTheState) {
    Form form("frmFill");
    std::vector<Text> log;
    form.OnChanged = [&] { log.emplace_back("changed"); };
    form.OnHide = [&] { log.emplace_back("hide"); };
    form.SetCaption("Fill");
    EXPECT_FALSE(form.Shown());
    form.MarkShown();
    EXPECT_TRUE(form.Shown());
    form.UserClose();
    EXPECT_FALSE(form.Shown());
    EXPECT_EQ(form.Caption(), "Fill");
    EXPECT_EQ(form.Name(), "frmFill");
    EXPECT_EQ(log, (std::vector<Text>{"changed", "hide"}));
}

#ifdef KD_CHECKED
TEST_F(ListBoxTest, AnIndexThatNoEntryHasBreaksThePrecondition) {
    EXPECT_DEATH(static_cast<void>(list.Selected(3)), "precondition broken: index >= 0 && index < Count");
    EXPECT_DEATH(static_cast<void>(list.Selected(-1)), "precondition broken");
    EXPECT_DEATH(list.SetListIndex(3), "precondition broken");
    EXPECT_DEATH(list.SetListIndex(-2), "precondition broken");
}

TEST(ComboBoxTest, ChoosingAnEntryThatIsNotThereBreaksThePrecondition) {
    ComboBox combo("cboFilter");
    EXPECT_DEATH(combo.UserChoose(0), "precondition broken");
    combo.SetEntries({"first"});
    EXPECT_DEATH(combo.UserChoose(-1), "precondition broken");
    EXPECT_DEATH(combo.UserChoose(1), "precondition broken");
}

TEST(OptionGroupTest, AMemberThatIsNotThereBreaksThePrecondition) {
    OptionGroup group("optLimits", {"USL", "LSL"});
    EXPECT_DEATH(group.SetSelected(2), "precondition broken");
    EXPECT_DEATH(group.UserSelect(-1), "precondition broken");
}
#endif

TEST(ControlsTest, WhatIsTypedIntoAFieldIsOneLine) {
    TextBox text("txtFind");
    text.UserType("a\tb\r\nc");
    EXPECT_EQ(text.Value(), "a b  c");
    ComboBox combo("cboFilter");
    combo.UserType("x\r\n[FILES]\r\nFile = /a.kdt");
    EXPECT_EQ(combo.Value(), "x  [FILES]  File = /a.kdt");
}

TEST(ControlsTest, ATextThatNobodyTouchesStaysAsItWasSet) {
    TextBox text("txtFind");
    text.SetValue("a\nb");
    EXPECT_EQ(text.Value(), "a\nb");
}

}  // namespace
}  // namespace kd
