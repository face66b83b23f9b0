#include "qt/forms/FormDialog.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QMoveEvent>
#include <QPaintEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <optional>

#include "qt/Screen.h"
#include "qt/forms/Binders.h"
#include "qt/services/QtToolkit.h"

namespace kd {
namespace {

struct PlainForm : Form {
    PlainForm() : Form("frmPlain") { SetCaption("Plain"); }
    void UserClose() override {
        ++closes;
        if (!refuses) {
            Form::UserClose();
        }
    }
    int closes = 0;
    bool refuses = false;  // to be closed by its frame
    Button cmdOk{"cmdOk"};
    Button cmdCancel{"cmdCancel"};
    TextBox txtFind{"txtFind"};
    bool withCancel = true;
    std::optional<QMargins> frame;  // that the desktop tells instead of its own
    std::optional<QRect> free;      // what windows may take of the screen
    std::optional<QRect> second;    // another screen of the desktop
    bool anyScreen = true;
};

class PlainDialog : public FormDialog {
public:
    PlainDialog(PlainForm& form, EventBoundary& boundary, QWidget* parent)
        : FormDialog(form, boundary, parent), m_plain(form) {
        auto* const layout = new QVBoxLayout(this);
        auto* const text = new QLineEdit(this);
        auto* const ok = new QPushButton(this);
        auto* const cancel = new QPushButton(this);
        new TextBoxBinder(form.txtFind, *text, boundary);
        new ButtonBinder(form.cmdOk, *ok, boundary);
        new ButtonBinder(form.cmdCancel, *cancel, boundary);
        for (QWidget* const widget : std::initializer_list<QWidget*>{text, ok, cancel}) {
            layout->addWidget(widget);
        }
        SetButtons(ok, form.withCancel ? cancel : nullptr);
    }

protected:
    QMargins Frame() const override { return m_plain.frame ? *m_plain.frame : FormDialog::Frame(); }
    std::vector<Room> Rooms() const override {
        if (!m_plain.anyScreen) {
            return {};
        }
        std::vector<Room> rooms = FormDialog::Rooms();
        rooms.front().free = m_plain.free.value_or(rooms.front().free);
        if (m_plain.second) {
            rooms.push_back({*m_plain.second, *m_plain.second});
        }
        return rooms;
    }

private:
    PlainForm& m_plain;
};

class FormDialogTest : public testing::Test {
protected:
    QtToolkit toolkit;
    PlainForm form;
    int oks = 0;
    int cancels = 0;

    void SetUp() override {
        toolkit.Register<PlainForm, PlainDialog>();
        form.cmdOk.Click = [this] {
            ++oks;
            form.Hide();
        };
        form.cmdCancel.Click = [this] {
            ++cancels;
            form.Hide();
        };
    }
    void Show(const std::function<void(QWidget&)>& user) {
        NextModal next(user);
        toolkit.ShowModal(form);
        EXPECT_FALSE(form.Shown());
    }
};

TEST_F(FormDialogTest, WindowBearsNameAndCaptionAndEndsWhenTheFormHides) {
    Show([&](QWidget& window) {
        EXPECT_EQ(window.objectName(), "frmPlain");
        EXPECT_EQ(window.windowTitle(), "Plain");
        EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
        form.SetCaption("Other");
        EXPECT_EQ(window.windowTitle(), "Other");
        EXPECT_TRUE(form.Shown());
        form.Hide();
    });
    EXPECT_FALSE(form.OnHide);
    EXPECT_FALSE(form.OnChanged);
}

TEST_F(FormDialogTest, EnterPressesTheDefaultButtonAndEscTheCancelButton) {
    Show([&](QWidget&) { Press(Qt::Key_Return); });
    EXPECT_EQ(oks, 1);
    Show([&](QWidget&) { Press(Qt::Key_Escape); });
    EXPECT_EQ(cancels, 1);
    EXPECT_EQ(form.closes, 0);
}

TEST_F(FormDialogTest, EscDoesNothingWithoutACancelButton) {
    form.withCancel = false;
    Show([&](QWidget& window) {
        Press(Qt::Key_Escape);
        EXPECT_TRUE(window.isVisible());
        EXPECT_TRUE(form.Shown());
        form.Hide();
    });
    EXPECT_EQ(cancels, 0);
}

TEST_F(FormDialogTest, FramesCloseIsTheFormsOwn) {
    Show([&](QWidget& window) { EXPECT_TRUE(window.close()); });
    EXPECT_EQ(form.closes, 1);
    EXPECT_EQ(cancels, 0);
}

TEST_F(FormDialogTest, AFormThatRefusesToCloseStays) {
    form.refuses = true;
    Show([&](QWidget& window) {
        EXPECT_FALSE(window.close());
        EXPECT_TRUE(window.isVisible());
        EXPECT_TRUE(form.Shown());
        form.Hide();
    });
    EXPECT_EQ(form.closes, 1);
}

TEST_F(FormDialogTest, WhoeverHasTheKeyboardShowsItFromTheBeginning) {
    Show([&](QWidget& window) {
        EXPECT_TRUE(window.testAttribute(Qt::WA_KeyboardFocusChange));
        form.Hide();
    });
}

/// Notes whether the edge of a window, where no control stands, is drawn.
class EdgeWatch : public QObject {
public:
    bool drawn = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        drawn = drawn || (event->type() == QEvent::Paint &&
                          static_cast<QPaintEvent*>(event)->region().contains(QPoint(1, 1)));
        return QObject::eventFilter(watched, event);
    }
};

TEST_F(FormDialogTest, ADialogTakesOnOtherColoursWhileItIsOpen) {
    Show([&](QWidget& window) {
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        QApplication::processEvents();
        EdgeWatch watch;
        window.installEventFilter(&watch);
        QPalette colours = window.palette();
        colours.setColor(QPalette::Window, Qt::darkGreen);
        window.setPalette(colours);
        EXPECT_TRUE(QTest::qWaitFor([&watch] { return watch.drawn; }));
        form.Hide();
    });
}

// --- keyboard ---------------------------------------------------------------------------------------------

struct RowForm : Form {
    RowForm() : Form("frmRow") {}
    TextBox txtFind{"txtFind"};
    Button cmdFirst{"cmdFirst"};
    Button cmdSecond{"cmdSecond"};
    Button cmdLast{"cmdLast"};
    bool withDefault = true;
};

class RowDialog : public FormDialog {
public:
    RowDialog(RowForm& form, EventBoundary& boundary, QWidget* parent) : FormDialog(form, boundary, parent) {
        QLineEdit* const text = WidgetFor(form.txtFind, "Find what");
        QPushButton* const last = WidgetFor(form.cmdLast);
        QPushButton* const second = WidgetFor(form.cmdSecond);
        QPushButton* const first = WidgetFor(form.cmdFirst);
        auto* const column = new QVBoxLayout(this);
        column->addWidget(text);
        column->addLayout(Row({first}, {second, last}));
        SetButtons(form.withDefault ? second : nullptr, nullptr);
    }
};

class RowDialogTest : public testing::Test {
protected:
    QtToolkit toolkit;
    RowForm form;
    std::vector<Text> pressed;

    void SetUp() override {
        toolkit.Register<RowForm, RowDialog>();
        for (Button* const button : {&form.cmdFirst, &form.cmdSecond, &form.cmdLast}) {
            button->Click = [this, button] { pressed.push_back(button->Name()); };
        }
    }
    void Show(const std::function<void(QWidget&)>& user) {
        NextModal next([&](QWidget& window) {
            user(window);
            form.Hide();
        });
        toolkit.ShowModal(form);
    }
};

TEST_F(RowDialogTest, EnterPressesTheButtonThatHasTheKeyboardAndElsewhereTheDefaultOne) {
    Show([&](QWidget& window) {
        for (const char* const name : {"txtFind", "cmdLast", "cmdFirst", "txtFind"}) {
            Find(window, name).setFocus();
            Press(Qt::Key_Return);
        }
    });
    EXPECT_EQ(pressed, (std::vector<Text>{"cmdSecond", "cmdLast", "cmdFirst", "cmdSecond"}));
}

TEST_F(RowDialogTest, EnterPressesNothingWithoutADefaultButton) {
    form.withDefault = false;
    Show([&](QWidget& window) {
        Find(window, "txtFind").setFocus();
        Press(Qt::Key_Return);
    });
    EXPECT_EQ(pressed, std::vector<Text>());
}

TEST_F(RowDialogTest, TabGoesThroughTheWidgetsInTheOrderInWhichTheyAreMade) {
    Show([&](QWidget& window) {
        Find(window, "txtFind").setFocus();
        for (const char* const next : {"cmdLast", "cmdSecond", "cmdFirst", "txtFind"}) {
            Press(Qt::Key_Tab);
            EXPECT_EQ(Focused()->objectName(), next);
        }
    });
}

TEST_F(RowDialogTest, AFieldBearsTheNameThatIsSpoken) {
    Show([&](QWidget& window) { EXPECT_EQ(Find(window, "txtFind").accessibleName(), "Find what"); });
}

// --- place ------------------------------------------------------------------------------------------------

TEST_F(FormDialogTest, StandsInTheMiddleOfTheScreenOrAtItsOwnPlace) {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    Show([&](QWidget& window) {
        EXPECT_NEAR(window.frameGeometry().center().x(), room.center().x(), 2);
        EXPECT_NEAR(window.frameGeometry().center().y(), room.center().y(), 2);
        form.Hide();
    });
    form.SetOwnPlace({60, 70});
    Show([&](QWidget& window) {
        EXPECT_EQ(window.pos(), QPoint(60, 70));
        form.Hide();
    });
    form.SetOwnPlace({30000, 30000});
    Show([&](QWidget& window) {
        EXPECT_TRUE(room.contains(window.frameGeometry()));
        form.Hide();
    });
}

TEST_F(FormDialogTest, TheMiddleIsTheScreensAndTheEdgesAreThoseOfWhatIsFree) {
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    form.free = screen.adjusted(100, 120, 0, 0);
    Show([&](QWidget& window) {
        EXPECT_NEAR(window.frameGeometry().center().x(), screen.center().x(), 2);
        EXPECT_NEAR(window.frameGeometry().center().y(), screen.center().y(), 2);
        form.Hide();
    });
    form.Destroy();  // its place is forgotten
    form.free = QRect(screen.center(), screen.bottomRight());
    Show([&](QWidget& window) {
        EXPECT_EQ(window.frameGeometry().topLeft(), form.free->topLeft()) << "where the middle is not free";
        form.Hide();
    });
    form.Destroy();
    form.SetOwnPlace({0, 0});
    Show([&](QWidget& window) {
        EXPECT_EQ(window.frameGeometry().topLeft(), form.free->topLeft());
        form.Hide();
    });
}

TEST_F(FormDialogTest, APlaceOnAnotherScreenIsKeptThereAndInsideIt) {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    form.second = room.translated(room.width(), 0);
    form.SetOwnPlace({form.second->left() + 60, 70});
    Show([&](QWidget& window) {
        EXPECT_EQ(window.pos(), QPoint(form.second->left() + 60, 70));
        form.Hide();
    });
    form.SetOwnPlace({form.second->right() - 2, 70});
    Show([&](QWidget& window) {
        EXPECT_EQ(window.frameGeometry().right(), form.second->right());
        form.Hide();
    });
}

TEST_F(FormDialogTest, AFormShownAgainIsLeftAloneWhileItsTitleBarIsOnAnyScreen) {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect second = room.translated(room.width(), 0);
    struct Case {
        const char* label;
        QPoint left;  // there by the user
        bool extended;
        bool stays;
    };
    for (const Case& c :
         {Case{"on the second screen", second.topLeft() + QPoint(100, 50), true, true},
          Case{"between the two", QPoint(room.right() - 20, 50), true, true},
          Case{"beyond the edge in part", QPoint(room.right() - 20, 50), false, true},
          Case{"below the edge in part", QPoint(50, room.bottom() - 5), false, true},
          Case{"the second screen has gone", second.topLeft() + QPoint(100, 50), false, false},
          Case{"above the screen", QPoint(50, room.top() - 20), false, false}}) {
        form.second = second;
        Show([&](QWidget& window) {
            window.move(c.left);
            form.Hide();
        });
        if (!c.extended) {
            form.second.reset();
        }
        Show([&](QWidget& window) {
            EXPECT_EQ(window.pos() == c.left, c.stays) << c.label;
            EXPECT_TRUE(c.stays || room.contains(window.frameGeometry())) << c.label;
            form.Hide();
        });
        form.Destroy();
    }
}

TEST_F(FormDialogTest, AFormWhoseTitleBarHasGoneOutOfReachComesBackOnTheScreenWhereMostOfItIs) {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    form.second = room.translated(room.width(), 0);
    Show([&](QWidget& window) {
        window.move(form.second->topLeft() + QPoint(100, -20));
        form.Hide();
    });
    Show([&](QWidget& window) {
        EXPECT_EQ(window.pos(), form.second->topLeft() + QPoint(100, 0));
        form.Hide();
    });
}

TEST_F(FormDialogTest, AFormThatIsLargerThanWhatIsFreeBecomesSmaller) {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    form.free = QRect(room.topLeft(), room.size() / 2);
    form.SetLastGeometry({{30000, 30000}, room.width(), room.height()});
    Show([&](QWidget& window) {
        EXPECT_EQ(window.frameGeometry(), *form.free);
        form.Hide();
    });
}

/// The desktop tells a frame late, with a tall title bar; the window's way from where it stood.
QPoint WayWhenFramed(QWidget& window, PlainForm& form, const QMargins& frame = {6, 48, 6, 6},
                     QEvent::Type toldBy = QEvent::Move) {
    const QPoint before = window.pos();
    form.frame = frame;
    if (toldBy == QEvent::Move) {
        QMoveEvent told(before, before);
        QApplication::sendEvent(&window, &told);
    } else {
        QEvent told(toldBy);
        QApplication::sendEvent(&window, &told);
    }
    return window.pos() - before;
}

TEST_F(FormDialogTest, AFrameThatIsToldLateCountsAtTheScreensEdgeAndInTheMiddle) {
    const QPoint end = QGuiApplication::primaryScreen()->availableGeometry().bottomRight() + QPoint(1, 1);
    form.frame = QMargins();
    form.SetOwnPlace({30000, 30000});
    Show([&](QWidget& window) {
        EXPECT_EQ(window.pos() + QPoint(window.width(), window.height()), end);
        EXPECT_EQ(WayWhenFramed(window, form), QPoint(-12, -54));
        EXPECT_EQ(WayWhenFramed(window, form), QPoint(0, 0));
        EXPECT_EQ(WayWhenFramed(window, form, {0, 60, 0, 0}), QPoint(0, 0)) << "once";
        form.Hide();
    });
    for (const QEvent::Type toldBy : {QEvent::Move, QEvent::ActivationChange}) {
        PlainForm centred;
        centred.frame = QMargins();
        NextModal next([&](QWidget& window) {
            EXPECT_EQ(WayWhenFramed(window, centred, {6, 48, 6, 6}, toldBy), QPoint(-6, -27)) << toldBy;
            centred.Hide();
        });
        toolkit.ShowModal(centred);
    }
}

TEST_F(FormDialogTest, AFrameThatIsToldLateLeavesAPlaceInsideTheScreenAndTheUsersOwn) {
    form.frame = QMargins();
    form.SetOwnPlace({60, 70});
    Show([&](QWidget& window) {
        EXPECT_EQ(WayWhenFramed(window, form), QPoint(0, 0));
        EXPECT_EQ(window.pos(), QPoint(60, 70));
        window.move(30000, 210);
        EXPECT_EQ(WayWhenFramed(window, form), QPoint(0, 0));
        form.Hide();
    });
}

TEST_F(FormDialogTest, OverAWindowItReckonsWithThatOnesFrameUntilItHasOneItself) {
    QWidget below;
    toolkit.SetMainWindow(&below, {}, {});
    ShowActive(below);
    const QMargins others = below.windowHandle()->frameMargins();
    const QPoint end = QGuiApplication::primaryScreen()->availableGeometry().bottomRight() + QPoint(1, 1);
    for (const QMargins& own : {QMargins(), QMargins(6, 48, 6, 6)}) {
        form.frame = own;
        form.SetOwnPlace({30000, 30000});
        Show([&](QWidget& window) {
            const QSize outer = window.size().grownBy(own.isNull() ? others : own);
            EXPECT_EQ(window.pos() + QPoint(outer.width(), outer.height()), end);
            form.Hide();
        });
    }
}

TEST_F(FormDialogTest, AFrameThatIsToldLateAndIsTheOneReckonedWithLeavesThePlaceToTheUser) {
    QWidget below;
    toolkit.SetMainWindow(&below, {}, {});
    ShowActive(below);
    form.frame = QMargins();
    form.SetOwnPlace({30000, 30000});
    Show([&](QWidget& window) {
        window.move(60, 70);
        EXPECT_EQ(WayWhenFramed(window, form, below.windowHandle()->frameMargins()), QPoint(0, 0));
        EXPECT_EQ(window.pos(), QPoint(60, 70));
        form.Hide();
    });
}

TEST_F(FormDialogTest, ADialogOpensWhereNoScreenIsLeft) {
    form.anyScreen = false;
    Show([&](QWidget& window) {
        EXPECT_TRUE(window.isVisible());
        form.Hide();
    });
}

TEST_F(FormDialogTest, AFormWhoseFocusIsUnknownBeginsWithItsFirstControl) {
    for (const char* const name : {"", "cmdGone"}) {
        form.SetFocusedControl(name);
        Show([&](QWidget& window) {
            EXPECT_EQ(window.focusWidget(), &Find(window, "txtFind")) << name;
            form.Hide();
        });
    }
}

TEST_F(FormDialogTest, FormShownAgainHasTheFocusWhereItWas) {
    Show([&](QWidget& window) {
        Find(window, "cmdCancel").setFocus();
        form.Hide();
    });
    EXPECT_EQ(form.FocusedControl(), "cmdCancel");
    Show([&](QWidget& window) {
        EXPECT_EQ(window.focusWidget(), &Find(window, "cmdCancel"));
        form.Hide();
    });
}

TEST_F(FormDialogTest, BoxOverADialogComesBackToIt) {
    form.cmdOk.Click = [this] {
        ++oks;
        toolkit.Say("Find Text must be specified!", BoxIcon::Exclamation);
    };
    Show([&](QWidget& window) {
        {
            NextModal box([](QWidget& shown) { ClickBoxButton(shown, QMessageBox::Ok); });
            Click(Find(window, "cmdOk"));
        }
        EXPECT_TRUE(window.isVisible());
        form.Hide();
    });
    EXPECT_EQ(oks, 1);
}

}  // namespace
}  // namespace kd
