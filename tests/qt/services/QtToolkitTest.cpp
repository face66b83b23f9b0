#include "qt/services/QtToolkit.h"

#include <QCursor>
#include <QMenu>
#include <QWindow>

#include "qt/Screen.h"
#include "qt/forms/FormDialog.h"

namespace kd {
namespace {

struct BareForm : Form {
    BareForm() : Form("frmBare") {}
};

class BareDialog : public FormDialog {
public:
    BareDialog(BareForm& form, EventBoundary& boundary, QWidget* parent)
        : FormDialog(form, boundary, parent) {}
};

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

TEST_F(QtToolkitTest, EnterAnswersABoxThatOnlyTells) {
    const auto user = [](QMessageBox& box) {
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Ok)) << "the user sees what Enter presses";
        QTest::keyClick(&box, Qt::Key_Return);
    };
    EXPECT_EQ(Box("x", BoxIcon::None, BoxButtons::Ok, DefaultTitle, user).answer, BoxAnswer::Ok);
}

TEST_F(QtToolkitTest, BoxBelongsToTheDialogInFrontElseToTheMainWindowOnceThatIsShown) {
    const auto ownerOfABox = [this] {
        const QWidget* owner = nullptr;
        (void)Box("x", BoxIcon::None, BoxButtons::Ok, DefaultTitle, [&](QMessageBox& box) {
            owner = box.parentWidget();
            PressOk(box);
        });
        return owner;
    };
    QWidget window;
    toolkit.SetMainWindow(&window, nullptr, nullptr);
    EXPECT_EQ(ownerOfABox(), nullptr) << "nothing is seen of the window yet";
    ShowActive(window);
    EXPECT_EQ(ownerOfABox(), &window);
    toolkit.Register<BareForm, BareDialog>();
    BareForm form;
    NextModal next([&](QWidget& dialog) {
        EXPECT_EQ(dialog.parentWidget(), &window);
        EXPECT_EQ(ownerOfABox(), &dialog);
        form.Hide();
    });
    toolkit.ShowModal(form);
    toolkit.SetMainWindow(nullptr, nullptr, nullptr);
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

TEST_F(QtToolkitTest, ToolkitThatGoesLeavesThePointerAsItWasBefore) {
    for (const Pointer pointer : {Pointer::Default, Pointer::Hourglass}) {
        {
            QtToolkit going;
            going.SetMousePointer(pointer);
        }
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr) << (pointer == Pointer::Hourglass);
    }
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

TEST_F(QtToolkitTest, APassThatTakesLongIsNotFollowedByAnotherRightAway) {
    bool leftOut = false;
    // The machine may lose time between a pass and the next call; it does not do so each time.
    for (int tries = 0; tries < 20 && !leftOut; ++tries) {
        QMetaObject::invokeMethod(
            qApp,
            [] {
                QtToolkit other;
                PassListener listener;
                other.ProcessEvents();
                while (!listener.HearsOneIn([&] { other.KeepAlive(); })) {  // until a pass is due again
                }
            },
            Qt::QueuedConnection);
        toolkit.ProcessEvents();
        PassListener listener;
        leftOut = !listener.HearsOneIn([&] { toolkit.KeepAlive(); });
    }
    EXPECT_TRUE(leftOut);
}

TEST_F(QtToolkitTest, FormWithoutADialogIsAFailure) {
    BareForm form;
    try {
        toolkit.ShowModal(form);
        FAIL() << "no failure";
    } catch (const std::logic_error& failure) {
        EXPECT_STREQ(failure.what(), "No dialog for the form frmBare");
    }
}

TEST_F(QtToolkitTest, ADialogThatIsTakenOffTheScreenHidesItsFormAndLeavesWhatTheDesktopPutAroundIt) {
    toolkit.Register<BareForm, BareDialog>();
    BareForm form;
    EXPECT_TRUE(toolkit.KnownFrame().isNull());
    QMargins frame;
    NextModal next([&](QWidget& dialog) {
        frame = dialog.windowHandle()->frameMargins();
        EXPECT_TRUE(form.Shown());
        dialog.hide();
        EXPECT_TRUE(form.Shown()) << "it has not been asked";
    });
    toolkit.ShowModal(form);
    EXPECT_FALSE(form.Shown());
    EXPECT_FALSE(frame.isNull());
    EXPECT_EQ(toolkit.KnownFrame(), frame);
}

TEST_F(QtToolkitTest, MainFormIsShownByItsWindowOrCountsAsShownWhereThereIsNone) {
    BareForm form;
    toolkit.ShowModeless(form);
    EXPECT_TRUE(form.Shown());
    int shows = 0;
    toolkit.SetMainWindow(
        nullptr, [&] { ++shows; }, nullptr);
    toolkit.ShowModeless(form);
    EXPECT_EQ(shows, 1);
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
        timer.disconnect();
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

TEST_F(PopupTest, EachEntryRunsItsOwnCommand) {
    QStringList ran;
    cut.Click = [&] { ran << "cut"; };
    paste.Click = [&] { ran << "paste"; };
    for (const int at : {0, 2, 1}) {
        WhenUp([at](QMenu& popup) {
            QTest::mouseClick(&popup, Qt::LeftButton, {},
                              popup.actionGeometry(popup.actions().value(at)).center());
            popup.close();  // a click on the line between the two leaves it open
        });
        toolkit.ShowPopupMenu(menu);
    }
    EXPECT_EQ(ran, QStringList({"cut", "paste"}));
}

TEST_F(PopupTest, ComesUpWhereTheMainWindowWantsItElseAtThePointer) {
    QPoint place;
    const auto dismiss = [&](QMenu& popup) {
        place = popup.pos();
        QTest::keyClick(&popup, Qt::Key_Escape);
    };
    QCursor::setPos(40, 60);
    toolkit.SetMainWindow(nullptr, nullptr, [] { return QPoint(120, 90); });
    WhenUp(dismiss);
    toolkit.ShowPopupMenu(menu);
    EXPECT_EQ(place, QPoint(120, 90));
    toolkit.SetMainWindow(nullptr, nullptr, nullptr);
    WhenUp(dismiss);
    toolkit.ShowPopupMenu(menu);
    EXPECT_EQ(place, QCursor::pos());
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
