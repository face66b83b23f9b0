#include "qt/services/MenuBinder.h"

#include <QMainWindow>
#include <QMenuBar>

#include "qt/Screen.h"

namespace kd {
namespace {

class MenuBinderTest : public testing::Test {
protected:
    QtToolkit toolkit;
    MenuItem view{"mnuView", "&View"};
    MenuItem paths{"mnuShowPaths", "Show Paths", 'P'};
    MenuItem clear{"mnuClearFilters", "Clear All Filters"};
    QMainWindow window;
    QMenu* menu = nullptr;

    void SetUp() override {
        paths.SetChecked(true);
        view.SetEntries({&paths, nullptr, &clear});
        menu = window.menuBar()->addMenu(QString());
        FillMenu(view, *menu, [](MenuItem& item) { item.UserClick(); });
    }
};

TEST_F(MenuBinderTest, EntriesStandInOrderWithTheirNames) {
    ASSERT_EQ(menu->actions().size(), 3);
    EXPECT_EQ(menu->title(), "&View");
    EXPECT_EQ(menu->objectName(), "mnuView");
    EXPECT_EQ(menu->actions()[0]->objectName(), "mnuShowPaths");
    EXPECT_EQ(menu->actions()[0]->text(), "Show &Paths");
    EXPECT_TRUE(menu->actions()[1]->isSeparator());
    EXPECT_EQ(menu->actions()[2]->text(), "Clear All Filters");
    for (const QAction* const action : {menu->actions()[0], menu->actions()[2]}) {
        EXPECT_EQ(action->menuRole(), QAction::NoRole) << "no desktop moves it to a menu of its own";
    }
}

TEST_F(MenuBinderTest, CheckMarkIsTheControlsAlone) {
    QAction* const action = menu->actions()[0];
    EXPECT_TRUE(action->isCheckable());
    EXPECT_TRUE(action->isChecked());
    EXPECT_FALSE(menu->actions()[2]->isCheckable());
    bool seen = false;
    paths.Click = [&] { seen = paths.Checked(); };
    action->trigger();
    EXPECT_TRUE(seen);
    EXPECT_TRUE(action->isChecked());
    paths.SetChecked(false);
    EXPECT_FALSE(action->isChecked());
}

TEST_F(MenuBinderTest, StateIsRightWhenTheMenuIsSeen) {
    view.Click = [&] { clear.SetEnabled(false); };
    ShowActive(window);
    QTest::keyClick(&window, Qt::Key_V, Qt::AltModifier);
    ASSERT_TRUE(menu->isVisible());
    EXPECT_FALSE(menu->actions()[2]->isEnabled());
    menu->close();
}

TEST_F(MenuBinderTest, DisabledEntryDoesNothing) {
    clear.Click = [] { FAIL() << "clicked"; };
    clear.SetEnabled(false);
    ShowActive(window);
    menu->popup(QPoint(20, 20));
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions()[2]).center());
    menu->close();
}

TEST_F(MenuBinderTest, HiddenEntryIsNotSeenUntilItIsShown) {
    const QAction* const action = menu->actions()[2];
    ShowActive(window);
    for (const bool visible : {true, false, true}) {
        clear.SetVisible(visible);
        menu->popup(QPoint(20, 20));
        EXPECT_EQ(menu->actionGeometry(menu->actions()[2]).isValid(), visible);
        EXPECT_EQ(action->isVisible(), visible);
        menu->close();
    }
}

TEST_F(MenuBinderTest, MenuWithinAMenuIsFilledTooAndOpensFirst) {
    MenuItem entry{"mnuEntry", "Entry"};
    MenuItem within{"mnuWithin", "&Within"};
    MenuItem outer{"mnuOuter", "&Outer"};
    within.SetEntries({&entry});
    outer.SetEntries({&within});
    std::vector<Text> chosen;
    QMenu top;  // goes before its items
    FillMenu(outer, top, [&](MenuItem& item) { chosen.push_back(item.Name()); });
    auto& inner = Find<QMenu>(top, "mnuWithin");
    EXPECT_EQ(inner.title(), "&Within");
    EXPECT_EQ(top.actions(), QList<QAction*>{inner.menuAction()});
    top.popup(QPoint(20, 20));
    QTest::keyClick(&top, Qt::Key_Down);
    QTest::keyClick(&top, Qt::Key_Right);
    EXPECT_TRUE(inner.isVisible());
    QTest::keyClick(&inner, Qt::Key_Return);
    EXPECT_EQ(chosen, (std::vector<Text>{"mnuOuter", "mnuWithin", "mnuEntry"}));
    top.close();
}

TEST_F(MenuBinderTest, MouseAndKeyboardChoose) {
    int clicks = 0;
    clear.Click = [&] { ++clicks; };
    ShowActive(window);
    menu->popup(QPoint(20, 20));
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions()[2]).center());
    EXPECT_EQ(clicks, 1);
    menu->popup(QPoint(20, 20));
    QTest::keyClick(menu, Qt::Key_Up);
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_EQ(clicks, 2);
}

TEST_F(MenuBinderTest, MenuThatGoesLeavesTheItemsWithoutListeners) {
    delete menu;
    EXPECT_FALSE(paths.OnChanged);
    EXPECT_FALSE(view.OnChanged);
}

}  // namespace
}  // namespace kd
