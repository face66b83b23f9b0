#include "qt/forms/MainWindow.h"

#include <QAccessible>
#include <QMenuBar>
#include <QProgressBar>
#include <QStatusBar>

#include "qt/WindowFixture.h"
#include "qt/forms/AboutDialog.h"
#include "qt/forms/Widgets.h"
#include "qt/grid/GridWidget.h"

namespace kd {
namespace {

class MainWindowTest : public testing::Test {
protected:
    ScreenDesk desk;
    frmKDLimitDesk form{desk.g};
    MainWindow window{form, desk.toolkit};

    void MakeChange() { desk.g.gFiles->Add("/data/milk.kdt", "Milk", "", 0)->SetChangesMade(true); }
    QMenu& Menu(const char* name) { return Find<QMenu>(window, name); }
};

TEST_F(MainWindowTest, PartsBearTheirNames) {
    EXPECT_EQ(window.objectName(), "frmKDLimitDesk");
    for (const char* const name : {"Grid", "ProgressBar1", "Panel1", "Panel2", "mnuFile", "mnuEdit",
                                   "mnuOptions", "mnuView", "mnuHelp"}) {
        EXPECT_NE(window.findChild<QWidget*>(name), nullptr) << name;
    }
    EXPECT_EQ(Find(window, "Grid").accessibleName(), "Variables");
    EXPECT_EQ(Find(window, "ProgressBar1").accessibleName(), "Progress");
    EXPECT_TRUE(Find(window, "Panel1").accessibleName().isEmpty());
}

TEST_F(MainWindowTest, MenuBarHasTheMenusInOrder) {
    QStringList titles;
    for (const QAction* const action : window.menuBar()->actions()) {
        titles << action->text();
    }
    EXPECT_EQ(titles, QStringList({"&File", "&Edit", "&Options", "&View", "&Help"}));
}

TEST_F(MainWindowTest, ScreenReadersMeetTheMenusBeforeTheStatusBar) {
    const auto told = [](QWidget* widget) { return QAccessible::queryAccessibleInterface(widget); };
    const int menus = told(&window)->indexOfChild(told(window.menuBar()));
    EXPECT_GE(menus, 0);
    EXPECT_GT(told(&window)->indexOfChild(told(window.statusBar())), menus);
}

TEST_F(MainWindowTest, CaptionFollowsTheForm) {
    form.SetCaption("KD LimitDesk (v6.1.0)");
    EXPECT_EQ(window.windowTitle(), "KD LimitDesk (v6.1.0)");
    const MainWindow later(form, desk.toolkit);
    EXPECT_EQ(later.windowTitle(), "KD LimitDesk (v6.1.0)") << "whatever it was before the window";
}

TEST_F(MainWindowTest, AWindowThatGoesIsAskedAndShownNoMore) {
    auto going = std::make_unique<MainWindow>(form, desk.toolkit);
    going.reset();
    EXPECT_FALSE(form.OnChanged);
    EXPECT_FALSE(form.Unload);
    EXPECT_FALSE(form.GridPlace);
    EXPECT_FALSE(desk.toolkit.Paused);
    desk.toolkit.ShowModeless(form);
    EXPECT_TRUE(form.Shown()) << "though no window can be put on the screen";
}

TEST_F(MainWindowTest, ProgressBarStandsAboveTheStatusBarAndTheGridTakesTheRest) {
    window.resize(700, 500);
    window.show();
    const QRect inner = window.centralWidget()->rect();
    const QRect bar = Find(window, "ProgressBar1").geometry();
    const QRect grid = Find(window, "Grid").geometry();
    EXPECT_EQ(bar.left(), 0);
    EXPECT_EQ(bar.width(), inner.width());
    EXPECT_EQ(bar.bottom(), inner.bottom());
    EXPECT_EQ(bar.height(), window.fontMetrics().height());
    EXPECT_EQ(grid.left(), 4);
    EXPECT_EQ(grid.width(), inner.width() - 8);
    EXPECT_EQ(grid.bottom() + 1, bar.top());
    window.resize(600, 400);
    EXPECT_EQ(Find(window, "ProgressBar1").width(), window.centralWidget()->width());
}

TEST_F(MainWindowTest, InnerAreaTooSmallForItsPartsLeavesTheGridNoRoomAndNoLess) {
    window.resize(700, 500);
    window.show();
    window.centralWidget()->resize(5, 3);
    const QRect bar = Find(window, "ProgressBar1").geometry();
    const QRect grid = Find(window, "Grid").geometry();
    EXPECT_EQ(bar.size(), QSize(5, Find(window, "ProgressBar1").minimumHeight()));
    EXPECT_EQ(bar.bottom(), 2);
    EXPECT_EQ(grid.topLeft(), QPoint(4, 4));
    EXPECT_EQ(grid.size(), QSize(0, 0));
}

TEST_F(MainWindowTest, GridsPlaceIsCountedFromTheCornerOfTheWindowsFrame) {
    window.move(70, 90);
    window.show();
    const QPoint corner = window.frameGeometry().topLeft();
    const QPoint grid = Find(window, "Grid").pos();
    ASSERT_FALSE(corner.isNull() || grid.isNull());
    EXPECT_EQ(form.GridPlace(), (Place{corner.x() + grid.x(), corner.y() + grid.y()}));
}

TEST_F(MainWindowTest, PanelsShareTheStatusBarEvenly) {
    window.resize(700, 500);
    window.show();
    const QRect first = Find(window, "Panel1").geometry();
    const QRect second = Find(window, "Panel2").geometry();
    EXPECT_LT(first.right(), second.left());
    EXPECT_NEAR(first.width(), second.width(), 1);
    EXPECT_GT(first.width() + second.width(), window.statusBar()->width() * 9 / 10);
}

TEST_F(MainWindowTest, LongPanelTextNeverWidensTheWindow) {
    window.resize(500, 400);
    window.show();
    form.Controls().Panel1.SetCaption("/home/" + Text(2000, 'x') + "/milk.kdt");
    form.Controls().Panel2.SetCaption("Loading: /home/" + Text(2000, 'x') + "/milk.kdt");
    QTest::qWait(0);
    EXPECT_EQ(window.width(), 500);
    EXPECT_LE(window.minimumSizeHint().width(), 500);
    EXPECT_TRUE(Find<StatusPanel>(window, "Panel1").ShownText().endsWith("milk.kdt"));
}

TEST_F(MainWindowTest, FileMenuKnowsAtOpeningWhetherThereAreChanges) {
    ShowActive(window);
    for (const bool changes : {false, true}) {
        if (changes) {
            MakeChange();
        }
        QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
        ASSERT_TRUE(Menu("mnuFile").isVisible());
        EXPECT_EQ(Find<QAction>(window, "mnuCommit").isEnabled(), changes);
        Menu("mnuFile").close();
    }
}

TEST_F(MainWindowTest, OpeningAMenuSettlesAnOpenEditor) {
    auto& grid = form.Controls().Grid;
    grid.RowColChange = nullptr;  // there are no records behind these rows
    grid.BeforeEdit = nullptr;
    grid.ValidateEdit = nullptr;
    grid.AfterEdit = nullptr;
    grid.SetCols(2);
    grid.SetRows(3);
    ShowActive(window);
    grid.Select(1, 1);
    ASSERT_TRUE(grid.StartEdit());
    grid.SetEditText("7");
    QTest::keyClick(&window, Qt::Key_V, Qt::AltModifier);
    ASSERT_TRUE(Menu("mnuView").isVisible());
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_EQ(grid.TextMatrix(1, 1), "7");
    Menu("mnuView").close();
}

// --- closing ----------------------------------------------------------------------------------------------

TEST_F(MainWindowTest, WindowWithoutChangesClosesWithoutAQuestion) {
    window.show();
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MainWindowTest, WindowWithChangesAsksAndNoKeepsIt) {
    MakeChange();
    window.show();
    QString text;
    {
        NextModal box([&](QWidget& shown) {
            text = dynamic_cast<QMessageBox&>(shown).text();
            EXPECT_EQ(dynamic_cast<QMessageBox&>(shown).icon(), QMessageBox::Question);
            ClickBoxButton(shown, QMessageBox::No);
        });
        EXPECT_FALSE(window.close());
    }
    EXPECT_EQ(text, "You have outstanding changes. Are you sure you want to quit without saving?");
    EXPECT_TRUE(window.isVisible());
    NextModal box([](QWidget& shown) { ClickBoxButton(shown, QMessageBox::Yes); });
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MainWindowTest, CloseOfTheFileMenuGoesTheSameWay) {
    MakeChange();
    ShowActive(window);
    NextModal box([](QWidget& shown) { ClickBoxButton(shown, QMessageBox::Yes); });
    Find<QAction>(window, "mnuClose").trigger();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MainWindowTest, RequestToCloseDuringAJobIsAskedWhenTheJobIsOver) {
    MakeChange();
    window.show();
    bool asked = false;
    NextModal box([&](QWidget& shown) {
        asked = true;
        ClickBoxButton(shown, QMessageBox::Yes);
    });
    desk.toolkit.Boundary().Run([&] {
        QTimer::singleShot(0, &window, [&] { window.close(); });
        for (int pass = 0; pass < 50; ++pass) {
            desk.toolkit.ProcessEvents();
            EXPECT_TRUE(window.isVisible());
        }
        EXPECT_FALSE(asked);
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isVisible(); }));
    EXPECT_TRUE(asked);
}

TEST_F(MainWindowTest, WindowThatNobodyClosesStaysWhenAPassIsOver) {
    window.show();
    desk.toolkit.ProcessEvents();
    QApplication::processEvents();
    EXPECT_TRUE(window.isVisible());
}

TEST_F(MainWindowTest, RequestToCloseDuringAJobIsAskedOnceAndWaitsForWhatTheJobShowsToo) {
    MakeChange();
    ShowActive(window);
    QStringList order;
    MenuItem entry("mnuEntry", "Entry");
    MenuItem menu("mnuAny", "Any");
    menu.SetEntries({&entry});
    const auto answer = [&order](QMessageBox::StandardButton button) {
        return [&order, button](QWidget& box) {
            QApplication::processEvents();  // whatever waits comes now
            order << dynamic_cast<QMessageBox&>(box).text().section(' ', 0, 2);
            ClickBoxButton(box, button);
        };
    };
    const auto showMenu = [&] {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (QWidget* const popup = QApplication::activePopupWidget()) {
                timer.stop();
                QApplication::processEvents();
                order << "a menu";
                QTest::keyClick(popup, Qt::Key_Escape);
            }
        });
        timer.start(0);
        desk.toolkit.ShowPopupMenu(menu);
    };
    struct Case {
        const char* label;
        std::function<void()> shows;
        QStringList order;
    };
    for (const Case& c :
         {Case{"nothing", [] {}, {"job over", "You have outstanding"}},
          Case{"a box", [&] { desk.toolkit.Say("a box"); }, {"a box", "job over", "You have outstanding"}},
          Case{"a menu", showMenu, {"a menu", "job over", "You have outstanding"}}}) {
        SCOPED_TRACE(c.label);
        order.clear();
        Modals modals;
        if (c.order.front() == "a box") {
            modals.Then("MessageBox", answer(QMessageBox::Ok));
        }
        modals.Then("MessageBox", answer(QMessageBox::No));
        desk.toolkit.Boundary().Run([&] {
            QMetaObject::invokeMethod(
                &window, [&] { EXPECT_FALSE(window.close()); }, Qt::QueuedConnection);
            desk.toolkit.ProcessEvents();
            c.shows();
            desk.toolkit.ProcessEvents();
            order << "job over";
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return order.size() == c.order.size(); }));
        QApplication::processEvents();
        QApplication::processEvents();
        EXPECT_EQ(order, c.order);
        EXPECT_TRUE(window.isVisible());
    }
}

TEST_F(MainWindowTest, ACommandThatIsChosenWithoutKeyOrPressDoesNothingDuringAJobAndBehindADialog) {
    MenuItem& paths = form.Controls().mnuShowPaths;
    auto& action = Find<QAction>(window, "mnuShowPaths");
    auto& menu = Find<QMenu>(window, "mnuView");
    const bool shown = paths.Checked();
    int opened = 0;
    form.Controls().mnuView.Click = [&] { ++opened; };
    desk.toolkit.Boundary().Run([&] {
        QMetaObject::invokeMethod(&action, &QAction::trigger, Qt::QueuedConnection);
        QMetaObject::invokeMethod(&menu, &QMenu::aboutToShow, Qt::QueuedConnection);
        desk.toolkit.ProcessEvents();
    });
    desk.toolkit.Register<frmAbout, AboutDialog>();
    {
        NextModal about([&](QWidget&) {
            action.trigger();
            emit menu.aboutToShow();
            Press(Qt::Key_Escape);
        });
        Find<QAction>(window, "mnuHelpAbout").trigger();
    }
    EXPECT_EQ(paths.Checked(), shown);
    EXPECT_EQ(action.isChecked(), shown) << "its mark is the entry's, all the same";
    EXPECT_EQ(opened, 0);
    action.trigger();
    emit menu.aboutToShow();
    EXPECT_NE(paths.Checked(), shown) << "outside of a job it is a choice like any other";
    EXPECT_EQ(opened, 1);
}

TEST_F(MainWindowTest, WindowIsShownMaximisedOnceTheStartHasAskedForIt) {
    desk.toolkit.ShowModeless(form);
    EXPECT_FALSE(window.isMaximized());
    window.hide();
    desk.suite.loginRequired = true;  // nobody logs in: the start goes no further
    EXPECT_FALSE(form.Form_Load(1));
    desk.toolkit.ShowModeless(form);
    EXPECT_TRUE(window.isMaximized());
}

TEST_F(MainWindowTest, WindowThatIsShownKeepsThePlaceThatTheUserGaveIt) {
    desk.toolkit.ShowModeless(form);
    window.resize(510, 340);
    window.move(30, 40);
    const QRect users = window.geometry();
    desk.toolkit.ShowModeless(form);
    EXPECT_EQ(window.geometry(), users);
}

/// On a screen beside another, of which the desktop keeps much for itself.
class WindowBesidePanels : public MainWindow {
public:
    using MainWindow::MainWindow;
    static constexpr QRect Whole{50, 30, 700, 600};
    static constexpr QRect Free{150, 230, 600, 400};

protected:
    Room OwnRoom() const override { return {Whole, Free}; }
};

TEST_F(MainWindowTest, RestoredWindowIsCentredOnTheScreenAndNoGreaterThanNineTenthsOfWhatIsFree) {
    for (const bool isMadeBefore : {false, true}) {
        SCOPED_TRACE(isMadeBefore ? "the system has made it before it is shown" : "made when it is shown");
        WindowBesidePanels beside(form, desk.toolkit);
        if (isMadeBefore) {
            ASSERT_NE(beside.winId(), 0U);
        }
        desk.toolkit.ShowModeless(form);
        const QPoint corner(50 + (700 - 540) / 2, 30 + (600 - 360) / 2);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&beside));
        EXPECT_TRUE(QTest::qWaitFor([&] { return beside.pos() == corner; }))
            << beside.pos().x() << ", " << beside.pos().y();
        EXPECT_EQ(beside.size(), QSize(540, 360));
    }
}

TEST_F(MainWindowTest, WindowHasItsSizeBeforeItIsShown) {
    const QSize before = window.size();
    desk.toolkit.ShowModeless(form);
    EXPECT_EQ(window.size(), before);
}

TEST_F(MainWindowTest, FirstPlaceCountsTheFrameThatADialogHasShown) {
    desk.toolkit.Register<frmAbout, AboutDialog>();
    {
        NextModal about([](QWidget&) { Press(Qt::Key_Escape); });
        Find<QAction>(window, "mnuHelpAbout").trigger();
    }
    const QMargins frame = desk.toolkit.KnownFrame();
    ASSERT_FALSE(frame.isNull());
    desk.toolkit.ShowModeless(form);
    const QSize whole = window.screen()->geometry().size();
    const QSize framed = window.size().grownBy(frame);
    EXPECT_EQ(window.pos(),
              QPoint((whole.width() - framed.width()) / 2, (whole.height() - framed.height()) / 2));
}

}  // namespace
}  // namespace kd
