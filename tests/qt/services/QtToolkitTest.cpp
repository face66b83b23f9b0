#include "qt/services/QtToolkit.h"

#include <QLineEdit>
#include <QMenu>
#include <QMoveEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <optional>

#include "qt/Screen.h"
#include "qt/forms/Binders.h"
#include "qt/forms/FormDialog.h"

namespace kd {
namespace {

class QtToolkitTest : public testing::Test {
protected:
    QtToolkit toolkit;

    /// What a box shows, answered by `user`.
    struct Narrowed {
        QString name;
        QString text;
        QString title;
        Qt::TextFormat format = Qt::AutoText;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        bool hourglass = false;
        BoxAnswer answer = BoxAnswer::Ok;
    };
    Narrowed Box(std::string_view text, BoxIcon icon, BoxButtons buttons, std::string_view title,
                 const std::function<void(QMessageBox&)>& user) {
        Narrowed seen;
        NextModal next([&](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            seen.name = box.objectName();
            seen.text = box.text();
            seen.title = box.windowTitle();
            seen.format = box.textFormat();
            seen.icon = box.icon();
            seen.hourglass = QGuiApplication::overrideCursor() != nullptr;
            user(box);
        });
        seen.answer = toolkit.MessageBox(text, icon, buttons, title);
        return seen;
    }
    static void PressOk(QMessageBox& box) { ClickBoxButton(box, QMessageBox::Ok); }
};

TEST_F(QtToolkitTest, BoxShowsPlainTextWithItsLines) {
    const Narrowed seen =
        Box("Found: <b>x</b>\r\n\r\n&amp;", BoxIcon::Exclamation, BoxButtons::Ok, "KD LimitDesk", PressOk);
    EXPECT_EQ(seen.name, "MessageBox");
    EXPECT_EQ(seen.text, "Found: <b>x</b>\n\n&amp;");
    EXPECT_EQ(seen.format, Qt::PlainText);
    EXPECT_EQ(seen.title, "KD LimitDesk");
    EXPECT_EQ(seen.answer, BoxAnswer::Ok);
}

TEST_F(QtToolkitTest, MarkupInABoxStaysVisible) {
    QString shown;
    (void)Box("<b>x</b>", BoxIcon::None, BoxButtons::Ok, DefaultTitle, [&](QMessageBox& box) {
        const auto* const label = box.findChild<QLabel*>("qt_msgbox_label");
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        shown = label->text();
        PressOk(box);
    });
    EXPECT_EQ(shown, "<b>x</b>");
}

TEST_F(QtToolkitTest, IconsAreTheNamedOnesAndNoneWhereNoneIsNamed) {
    struct Case {
        const char* label;
        BoxIcon icon;
        QMessageBox::Icon shown;
    };
    for (const Case& c : {Case{"none", BoxIcon::None, QMessageBox::NoIcon},
                          Case{"information", BoxIcon::Information, QMessageBox::Information},
                          Case{"exclamation", BoxIcon::Exclamation, QMessageBox::Warning},
                          Case{"critical", BoxIcon::Critical, QMessageBox::Critical},
                          Case{"question", BoxIcon::Question, QMessageBox::Question}}) {
        EXPECT_EQ(Box("x", c.icon, BoxButtons::Ok, DefaultTitle, PressOk).icon, c.shown) << c.label;
    }
}

TEST_F(QtToolkitTest, SayTakesTheDefaultTitleAndNoIcon) {
    QString title;
    NextModal next([&](QWidget& box) {
        title = box.windowTitle();
        EXPECT_EQ(dynamic_cast<QMessageBox&>(box).icon(), QMessageBox::NoIcon);
        ClickBoxButton(box, QMessageBox::Ok);
    });
    toolkit.Say("x");
    EXPECT_EQ(title, "KDLimitDesk");
}

TEST_F(QtToolkitTest, QuestionIsAnsweredByMouseKeyboardAndFrame) {
    struct Case {
        const char* label;
        std::function<void(QMessageBox&)> user;
        BoxAnswer answer;
    };
    const std::vector<Case> cases{
        {"Yes by mouse", [](QMessageBox& box) { ClickBoxButton(box, QMessageBox::Yes); }, BoxAnswer::Yes},
        {"No by mouse", [](QMessageBox& box) { ClickBoxButton(box, QMessageBox::No); }, BoxAnswer::No},
        {"Yes by mnemonic",
         [](QMessageBox& box) {
             QTest::keyClick(&box, Qt::Key_Y, Qt::AltModifier);
             EXPECT_TRUE(QTest::qWaitFor([&] { return !box.isVisible(); }));
         },
         BoxAnswer::Yes},
        {"Esc", [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }, BoxAnswer::No},
        {"frame", [](QMessageBox& box) { box.close(); }, BoxAnswer::No},
        {"Enter gives nothing up", [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); },
         BoxAnswer::No},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Box("Quit?", BoxIcon::Question, BoxButtons::YesNo, "KD LimitDesk", c.user).answer, c.answer)
            << c.label;
    }
}

TEST_F(QtToolkitTest, HourglassIsNeverNestedAndLaidAsideForABox) {
    EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
    toolkit.SetMousePointer(Pointer::Hourglass);
    toolkit.SetMousePointer(Pointer::Hourglass);
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    EXPECT_FALSE(Box("x", BoxIcon::None, BoxButtons::Ok, DefaultTitle, PressOk).hourglass);
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(toolkit.MousePointer(), Pointer::Hourglass);
    toolkit.SetMousePointer(Pointer::Default);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    toolkit.SetMousePointer(Pointer::Default);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(QtToolkitTest, PassRepaintsAndKnowsThatItIsOne) {
    struct Painted : QWidget {
        int paints = 0;
        bool inPass = false;
        QtToolkit* toolkit = nullptr;
        void paintEvent(QPaintEvent*) override {
            ++paints;
            inPass = toolkit->InPass();
        }
    } window;
    window.toolkit = &toolkit;
    ShowActive(window);
    window.paints = 0;
    window.update();
    toolkit.ProcessEvents();
    EXPECT_EQ(window.paints, 1);
    EXPECT_TRUE(window.inPass);
    EXPECT_FALSE(toolkit.InPass());
}

/// Whether a call gives the message loop a pass.
class PassListener : public QObject {
public:
    bool HearsOneIn(const std::function<void()>& call) {
        m_heard = false;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        call();
        return m_heard;
    }

protected:
    bool event(QEvent* event) override {
        m_heard = m_heard || event->type() == QEvent::User;
        return QObject::event(event);
    }

private:
    bool m_heard = false;
};

TEST_F(QtToolkitTest, PassesOfAJobThatComeRightBehindAnotherAreLeftOutAndOthersNever) {
    PassListener listener;
    EXPECT_TRUE(listener.HearsOneIn([&] { toolkit.ProcessEventsInJob(); })) << "the first one";
    constexpr int units = 1000;
    int given = 0;
    for (int unit = 0; unit < units; ++unit) {
        given += listener.HearsOneIn([&] { toolkit.ProcessEventsInJob(); }) ? 1 : 0;
    }
    EXPECT_LT(given, units);
    for (int unit = 0; unit < 3; ++unit) {
        EXPECT_TRUE(listener.HearsOneIn([&] { toolkit.ProcessEvents(); }));
    }
}

TEST_F(QtToolkitTest, AJobIsKeptAliveByAPassUnlessTheLastOneWasAMomentAgo) {
    PassListener listener;
    EXPECT_TRUE(listener.HearsOneIn([&] { toolkit.KeepAlive(); })) << "the last one was long ago";
    constexpr int calls = 1000;
    int given = 0;
    for (int call = 0; call < calls; ++call) {
        given += listener.HearsOneIn([&] { toolkit.KeepAlive(); }) ? 1 : 0;
    }
    EXPECT_LT(given, calls);
    bool again = false;
    while (!again) {
        again = listener.HearsOneIn([&] { toolkit.KeepAlive(); });
    }
    EXPECT_TRUE(again) << "the next comes when it is time";
}

// --- forms ------------------------------------------------------------------------------------------------

struct PlainForm : Form {
    PlainForm() : Form("frmPlain") { SetCaption("Plain"); }
    void UserClose() override {
        ++closes;
        Form::UserClose();
    }
    int closes = 0;
    Button cmdOk{"cmdOk"};
    Button cmdCancel{"cmdCancel"};
    TextBox txtFind{"txtFind"};
    bool withCancel = true;
    std::optional<QMargins> frame;  // that the desktop tells instead of its own
    std::optional<QRect> second;    // another screen of the desktop
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
        std::vector<Room> rooms = FormDialog::Rooms();
        if (m_plain.second) {
            rooms.push_back({*m_plain.second, *m_plain.second});
        }
        return rooms;
    }

private:
    PlainForm& m_plain;
};

class FormDialogTest : public QtToolkitTest {
protected:
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
        form.SetCaption("Other");
        EXPECT_EQ(window.windowTitle(), "Other");
        EXPECT_TRUE(form.Shown());
        form.Hide();
    });
    EXPECT_FALSE(form.OnHide);
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
    Show([&](QWidget& window) { window.close(); });
    EXPECT_EQ(form.closes, 1);
    EXPECT_EQ(cancels, 0);
}

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

/// The desktop tells a frame late, with a tall title bar; the window's way from where it stood.
QPoint WayWhenFramed(QWidget& window, PlainForm& form, const QMargins& frame = {6, 48, 6, 6}) {
    const QPoint before = window.pos();
    form.frame = frame;
    QMoveEvent told(before, before);
    QApplication::sendEvent(&window, &told);
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
    PlainForm centred;
    centred.frame = QMargins();
    NextModal next([&](QWidget& window) {
        EXPECT_EQ(WayWhenFramed(window, centred), QPoint(-6, -27));
        centred.Hide();
    });
    toolkit.ShowModal(centred);
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

TEST_F(QtToolkitTest, FormWithoutADialogIsAFailure) {
    PlainForm form;
    EXPECT_THROW(toolkit.ShowModal(form), std::logic_error);
}

// --- pop-up menu ------------------------------------------------------------------------------------------

class PopupTest : public QtToolkitTest {
protected:
    MenuItem menu{"mnuEditMenu", "Edit"};
    MenuItem cut{"mnuCut", "Cut"};
    MenuItem paste{"mnuPaste", "Paste"};
    QTimer timer;

    void SetUp() override { menu.SetEntries({&cut, nullptr, &paste}); }
    void WhenUp(const std::function<void(QMenu&)>& user) {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this, user] {
            if (auto* const popup = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                timer.stop();
                user(*popup);
            }
        });
        timer.start(0);
    }
};

TEST_F(PopupTest, ChosenEntryRunsWhenTheMenuIsGoneAndBeforeTheCallComesBack) {
    bool ran = false;
    paste.Click = [&] {
        ran = true;
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    };
    WhenUp([](QMenu& popup) {
        EXPECT_EQ(popup.objectName(), "mnuEditMenu");
        QTest::mouseClick(&popup, Qt::LeftButton, {}, popup.actionGeometry(popup.actions()[2]).center());
    });
    toolkit.ShowPopupMenu(menu);
    EXPECT_TRUE(ran);
}

TEST_F(PopupTest, DismissedMenuRunsNothingAndDisabledEntriesAreGrey) {
    paste.SetEnabled(false);
    cut.Click = paste.Click = [] { FAIL() << "ran"; };
    WhenUp([](QMenu& popup) {
        EXPECT_FALSE(popup.actions()[2]->isEnabled());
        QTest::keyClick(&popup, Qt::Key_Escape);
    });
    toolkit.ShowPopupMenu(menu);
    EXPECT_FALSE(cut.OnChanged);
}

}  // namespace
}  // namespace kd
