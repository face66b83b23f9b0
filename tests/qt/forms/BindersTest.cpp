#include "qt/forms/Binders.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QClipboard>
#include <QProgressBar>
#include <QVBoxLayout>

#include "qt/Screen.h"
#include "qt/forms/Widgets.h"
#include "qt/services/QtText.h"

namespace kd {
namespace {

class BindersTest : public testing::Test {
protected:
    std::vector<std::unique_ptr<Control>> controls;  // they outlive the window
    QtToolkit toolkit;
    EventBoundary& boundary = toolkit.Boundary();
    QWidget window;
    QVBoxLayout layout{&window};

    template <typename C, typename... Arguments>
    C& New(Arguments&&... arguments) {
        controls.push_back(std::make_unique<C>(std::forward<Arguments>(arguments)...));
        return static_cast<C&>(*controls.back());
    }
    template <typename W>
    W& Add() {
        auto* const widget = new W(&window);
        layout.addWidget(widget);
        return *widget;
    }
    template <typename B, typename C, typename W>
    std::pair<Control*, QWidget*> Bound(const char* name) {
        auto& control = New<C>(name);
        auto& widget = Add<W>();
        new B(control, widget, boundary);
        return {&control, &widget};
    }
    /// Something gives the widget the keyboard, for that reason.
    static void GiveFocus(QWidget& widget, Qt::FocusReason reason) {
        QFocusEvent given(QEvent::FocusIn, reason);
        QApplication::sendEvent(&widget, &given);
    }
};

TEST_F(BindersTest, WidgetBearsTheControlsName) {
    auto& control = New<Button>("cmdOk");
    auto& widget = Add<QPushButton>();
    new ButtonBinder(control, widget, boundary);
    EXPECT_EQ(widget.objectName(), "cmdOk");
}

TEST_F(BindersTest, EnabledAndVisibleFollowTheControlBothWays) {
    auto& group = New<OptionGroup>("optLimits", std::vector<Text>());
    auto& box = Add<QWidget>();
    new OptionGroupBinder(group, box, {}, boundary);
    const std::pair<Control*, QWidget*> all[] = {
        Bound<LabelBinder, Label, QLabel>("Label1"),
        Bound<ButtonBinder, Button, QPushButton>("cmdOk"),
        Bound<CheckBoxBinder, CheckBox, CheckBoxWidget>("chkMatchCase"),
        Bound<OptionButtonBinder, OptionButton, OptionWidget>("optFillLimit"),
        {&group, &box},
        Bound<TextBoxBinder, TextBox, QLineEdit>("txtFind"),
        Bound<ComboBoxBinder, ComboBox, ComboBoxWidget>("cboFilter"),
        Bound<ProgressBarBinder, ProgressBar, QProgressBar>("ProgressBar1")};
    window.show();
    for (const auto& each : all) {
        for (const bool on : {false, true, false, true}) {
            each.first->SetEnabled(on);
            EXPECT_EQ(each.second->isEnabled(), on) << each.first->Name();
            each.first->SetVisible(on);
            EXPECT_EQ(each.second->isVisible(), on) << each.first->Name();
        }
    }
}

TEST_F(BindersTest, AWidgetThatHasNoWindowYetDoesNotOpenByItself) {
    auto& control = New<Button>("cmdOk");
    QPushButton widget;
    new ButtonBinder(control, widget, boundary);
    control.SetCaption("Ok");
    EXPECT_FALSE(widget.isVisible());
}

TEST_F(BindersTest, ControlThatIsHiddenBeforehandStaysHiddenWhenTheWindowComes) {
    auto& control = New<Button>("cmdOk");
    control.SetVisible(false);
    auto& widget = Add<QPushButton>();
    new ButtonBinder(control, widget, boundary);
    window.show();
    EXPECT_FALSE(widget.isVisible());
}

TEST_F(BindersTest, WidgetThatGoesLeavesTheControlWithoutListeners) {
    auto& control = New<TextBox>("txtFind");
    auto* const widget = new QLineEdit;
    new TextBoxBinder(control, *widget, boundary);
    delete widget;
    EXPECT_FALSE(control.OnChanged);
    EXPECT_FALSE(control.OnFocusWanted);
    EXPECT_FALSE(control.OnSelectAll);
}

TEST_F(BindersTest, FormGivesTheFocusAndTheUsersFocusReachesTheForm) {
    auto& first = New<TextBox>("txtFind");
    auto& second = New<TextBox>("txtReplace");
    int got = 0;
    second.GotFocus = [&] { ++got; };
    auto& firstWidget = Add<QLineEdit>();
    auto& secondWidget = Add<QLineEdit>();
    new TextBoxBinder(first, firstWidget, boundary);
    new TextBoxBinder(second, secondWidget, boundary);
    ShowActive(window);
    firstWidget.setFocus();
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &secondWidget);
    EXPECT_EQ(got, 1);
    first.SetFocus();
    EXPECT_EQ(QApplication::focusWidget(), &firstWidget);
}

TEST_F(BindersTest, AWindowThatComesBackAndAMenuThatGoesAreNoMoveOfTheUser) {
    auto& control = New<TextBox>("txtFind");
    int got = 0;
    control.GotFocus = [&] { ++got; };
    auto& widget = Add<QLineEdit>();
    new TextBoxBinder(control, widget, boundary);
    for (const Qt::FocusReason reason :
         {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason, Qt::MenuBarFocusReason}) {
        GiveFocus(widget, reason);
        EXPECT_EQ(got, 0) << reason;
    }
    GiveFocus(widget, Qt::TabFocusReason);
    EXPECT_EQ(got, 1);
}

TEST(IsUserFocusTest, WindowsAndMenusComingAndGoingAreNotTheUsersMove) {
    struct Case {
        const char* label;
        Qt::FocusReason reason;
        bool user;
    };
    for (const Case& c :
         {Case{"tab", Qt::TabFocusReason, true}, Case{"mouse", Qt::MouseFocusReason, true},
          Case{"mnemonic", Qt::ShortcutFocusReason, true}, Case{"form", Qt::OtherFocusReason, true},
          Case{"window", Qt::ActiveWindowFocusReason, false}, Case{"pop-up", Qt::PopupFocusReason, false},
          Case{"menu bar", Qt::MenuBarFocusReason, false}}) {
        EXPECT_EQ(IsUserFocus(QFocusEvent(QEvent::FocusIn, c.reason)), c.user) << c.label;
    }
}

// --- label ------------------------------------------------------------------------------------------------

TEST_F(BindersTest, LabelShowsMarkupAndAmpersandsAsTheyStand) {
    auto& control = New<Label>("Label1");
    control.SetCaption("<b>x</b> & y\r\nz");
    auto& widget = Add<QLabel>();
    new LabelBinder(control, widget, boundary);
    EXPECT_EQ(widget.text(), "<b>x</b> & y\nz");
    EXPECT_EQ(widget.textFormat(), Qt::PlainText);
    control.SetCaption("later");
    EXPECT_EQ(widget.text(), "later");
}

TEST_F(BindersTest, LabelThatActsAsLinkIsClickedByMouseAndKeyboard) {
    auto& control = New<Label>("lblWebsite");
    int clicks = 0;
    control.Click = [&] { ++clicks; };
    auto& widget = Add<QLabel>();
    new LabelBinder(control, widget, boundary, true);
    ShowActive(window);
    Click(widget);
    EXPECT_EQ(clicks, 1);
    widget.setFocus();
    Press(Qt::Key_Return);
    Press(Qt::Key_Space);
    Press(Qt::Key_Enter);
    EXPECT_EQ(clicks, 4);
    Press(Qt::Key_A);
    QTest::mouseClick(&widget, Qt::RightButton);
    QTest::mousePress(&widget, Qt::LeftButton);
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, QPoint(-2, widget.height() / 2));
    EXPECT_EQ(clicks, 4);
}

TEST_F(BindersTest, AKeyThatClicksALinkIsNotTheWindowsToo) {
    auto& control = New<Label>("lblWebsite");
    auto& widget = Add<QLabel>();
    new LabelBinder(control, widget, boundary, true);
    struct Case {
        Qt::Key key;
        bool usedUp;
    };
    for (const Case& c : {Case{Qt::Key_Return, true}, Case{Qt::Key_Enter, true}, Case{Qt::Key_Space, true},
                          Case{Qt::Key_Escape, false}}) {
        QKeyEvent pressed(QEvent::KeyPress, c.key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &pressed);
        EXPECT_EQ(pressed.isAccepted(), c.usedUp) << c.key;
    }
}

TEST_F(BindersTest, PlainLabelIsNotClicked) {
    auto& control = New<Label>("Label1");
    control.Click = [] { FAIL() << "clicked"; };
    auto& widget = Add<QLabel>();
    new LabelBinder(control, widget, boundary);
    window.show();
    Click(widget);
}

// --- buttons ----------------------------------------------------------------------------------------------

TEST_F(BindersTest, ButtonShowsItsCaptionAndClicks) {
    auto& control = New<Button>("cmdFilter");
    control.SetCaption("Apply");
    int clicks = 0;
    control.Click = [&] { ++clicks; };
    auto& widget = Add<QPushButton>();
    new ButtonBinder(control, widget, boundary);
    ShowActive(window);
    EXPECT_EQ(widget.text(), "Apply");
    Click(widget);
    widget.setFocus();
    Press(Qt::Key_Space);
    EXPECT_EQ(clicks, 2);
    control.SetCaption("Other");
    EXPECT_EQ(widget.text(), "Other");
    control.SetEnabled(false);
    Click(widget);
    EXPECT_EQ(clicks, 2);
}

TEST(CaptionWithMnemonicTest, MarksTheFirstLetterOfThatKindUnlessTheCaptionMarksOne) {
    EXPECT_EQ(CaptionWithMnemonic("Add Application(s)", QLatin1Char('P')), "Add A&pplication(s)");
    EXPECT_EQ(CaptionWithMnemonic("&OK", QLatin1Char('K')), "&OK");
    EXPECT_EQ(CaptionWithMnemonic("Ok", QLatin1Char('z')), "Ok");
    EXPECT_EQ(CaptionWithMnemonic("Ok", QChar()), "Ok");
}

TEST_F(BindersTest, CheckBoxShowsThreeStatesAndItsClickIsTheControls) {
    auto& control = New<CheckBox>("chkSelectAll");
    control.SetCaption(" (Select All)");
    control.SetValue(csGrayed);
    auto& widget = Add<CheckBoxWidget>();
    new CheckBoxBinder(control, widget, boundary);
    ShowActive(window);
    EXPECT_EQ(widget.text(), " (Select All)");
    EXPECT_EQ(widget.checkState(), Qt::PartiallyChecked);
    ClickMark(widget);
    EXPECT_EQ(control.Value(), csUnchecked);
    EXPECT_EQ(widget.checkState(), Qt::Unchecked);
    widget.setFocus();
    Press(Qt::Key_Space);
    EXPECT_EQ(control.Value(), csChecked);
    EXPECT_EQ(widget.checkState(), Qt::Checked);
    // A handler that decides otherwise has the last word.
    control.Click = [&] { control.SetValue(csGrayed); };
    ClickMark(widget);
    EXPECT_EQ(widget.checkState(), Qt::PartiallyChecked);
}

TEST_F(BindersTest, OptionButtonIsSelectedByItsFormAlone) {
    auto& control = New<OptionButton>("optFillLimit");
    control.SetCaption("Limit");
    auto& widget = Add<OptionWidget>();
    new OptionButtonBinder(control, widget, boundary);
    EXPECT_EQ(widget.text(), "Limit");
    window.show();
    ClickMark(widget);
    EXPECT_FALSE(widget.isChecked());
    control.Click = [&] { control.SetValue(true); };
    ClickMark(widget);
    EXPECT_TRUE(widget.isChecked());
    control.SetValue(false);
    EXPECT_FALSE(widget.isChecked());
}

TEST_F(BindersTest, AnOptionButtonLeavesTheOneBesideItToTheForm) {
    auto& first = New<OptionButton>("optFillConstant");
    auto& second = New<OptionButton>("optFillLimit");
    auto& firstWidget = Add<OptionWidget>();
    auto& secondWidget = Add<OptionWidget>();
    new OptionButtonBinder(first, firstWidget, boundary);
    new OptionButtonBinder(second, secondWidget, boundary);
    first.SetValue(true);
    second.SetValue(true);
    EXPECT_TRUE(firstWidget.isChecked());
    EXPECT_TRUE(secondWidget.isChecked());
    first.SetValue(false);
    EXPECT_FALSE(firstWidget.isChecked());
    EXPECT_TRUE(secondWidget.isChecked());
}

class OptionGroupTest : public BindersTest {
protected:
    OptionGroup& control = New<OptionGroup>("optLimits", std::vector<Text>{"USL", "UCL", "UWL"});
    int got = 0;
    std::vector<QRadioButton*> buttons;
    QWidget& box = Add<QWidget>();

    void SetUp() override {
        control.GotFocus = [&] { ++got; };
        auto* const row = new QVBoxLayout(&box);
        for (int i = 0; i < 3; ++i) {
            buttons.push_back(new QRadioButton(&box));
            row->addWidget(buttons.back());
        }
        new OptionGroupBinder(control, box, buttons, boundary);
        ShowActive(window);
    }
};

TEST_F(OptionGroupTest, MembersShowCaptionsAndTheSelectedOne) {
    for (std::size_t index = 0; index < buttons.size(); ++index) {
        EXPECT_EQ(buttons[index]->text().toStdString(), control.Captions()[index]);
        EXPECT_EQ(buttons[index]->objectName(), QString("optLimits_%1").arg(index));
    }
    EXPECT_TRUE(buttons[0]->isChecked());
    control.SetSelected(2);
    EXPECT_TRUE(buttons[2]->isChecked());
    EXPECT_FALSE(buttons[0]->isChecked());
}

TEST_F(OptionGroupTest, ClickSelectsAMemberOnce) {
    ClickMark(*buttons[1]);
    EXPECT_EQ(control.Selected(), 1);
    EXPECT_TRUE(buttons[1]->isChecked());
    EXPECT_EQ(got, 1);
}

TEST_F(OptionGroupTest, AMemberThatIsPressedWithoutTheKeyboardIsChosen) {
    ASSERT_FALSE(buttons[1]->hasFocus());
    buttons[1]->click();
    EXPECT_EQ(control.Selected(), 1);
    EXPECT_TRUE(buttons[1]->isChecked());
    EXPECT_EQ(got, 1);
    buttons[1]->click();
    EXPECT_EQ(control.Selected(), 1);
    EXPECT_EQ(got, 2);
}

TEST_F(OptionGroupTest, AMemberThatHasTheKeyboardIsChosenAgainAfterTheFormChoseAnother) {
    ClickMark(*buttons[1]);
    control.SetSelected(0);
    Press(Qt::Key_Space);
    EXPECT_EQ(control.Selected(), 1);
    EXPECT_TRUE(buttons[1]->isChecked());
    EXPECT_EQ(got, 2);
}

TEST_F(OptionGroupTest, AWindowThatComesBackSelectsNoMember) {
    GiveFocus(*buttons[2], Qt::ActiveWindowFocusReason);
    EXPECT_EQ(control.Selected(), 0);
    EXPECT_EQ(got, 0);
}

TEST_F(OptionGroupTest, ArrowKeySelectsTheNextMember) {
    ClickMark(*buttons[0]);
    Press(Qt::Key_Down);
    EXPECT_EQ(control.Selected(), 1);
    EXPECT_TRUE(buttons[1]->isChecked());
}

TEST_F(OptionGroupTest, TabComesToTheSelectedMemberAndLeavesTheSelection) {
    control.SetSelected(1);
    auto* const before = new QLineEdit(&window);
    QWidget::setTabOrder(before, buttons[0]);
    before->show();
    before->setFocus();
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), buttons[1]);
    EXPECT_EQ(control.Selected(), 1);
}

TEST_F(OptionGroupTest, FocusSelectsTheMember) {
    buttons[2]->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(control.Selected(), 2);
    EXPECT_TRUE(buttons[2]->isChecked());
}

// --- text -------------------------------------------------------------------------------------------------

TEST_F(BindersTest, TextBoxShowsAndTakesText) {
    auto& control = New<TextBox>("txtFind");
    control.SetValue("10.5");
    auto& widget = Add<QLineEdit>();
    new TextBoxBinder(control, widget, boundary);
    ShowActive(window);
    EXPECT_EQ(widget.text(), "10.5");
    widget.setFocus();
    Type("0");
    EXPECT_EQ(control.Value(), "10.50");
    control.SetValue("\xC3\xA4");
    EXPECT_EQ(widget.text(), QString::fromUtf8("\xC3\xA4"));
    control.SetValue("cement");
    EXPECT_EQ(widget.cursorPosition(), 6) << "behind a text of another length";
    control.SelectAll();
    EXPECT_EQ(widget.selectedText(), widget.text());
}

TEST_F(BindersTest, TextThatWasToBeSelectedBeforeItsWidgetCameIsSelectedOnce) {
    TextBox control("txtFind");
    control.SetValue("milk");
    control.SelectAll();
    QLineEdit first;
    QLineEdit second;
    {
        const TextBoxBinder binder(control, first, boundary);
        EXPECT_EQ(first.selectedText(), "milk");
    }
    const TextBoxBinder binder(control, second, boundary);
    EXPECT_EQ(second.selectedText(), "");
}

TEST_F(BindersTest, ALongTextIsNeverCut) {
    auto& control = New<TextBox>("txtFind");
    const Text before(40000, 'a');
    control.SetValue(before);
    auto& widget = Add<QLineEdit>();
    new TextBoxBinder(control, widget, boundary);
    EXPECT_EQ(widget.text().size(), 40000);
    ShowActive(window);
    widget.setFocus();
    Type("b");
    EXPECT_EQ(control.Value(), before + "b");
}

TEST_F(BindersTest, TypingInTheMiddleKeepsTheCursorThere) {
    auto& control = New<TextBox>("txtFind");
    control.SetValue("ac");
    auto& widget = Add<QLineEdit>();
    new TextBoxBinder(control, widget, boundary);
    ShowActive(window);
    widget.setFocus();
    widget.setCursorPosition(1);
    Type("b");
    EXPECT_EQ(control.Value(), "abc");
    EXPECT_EQ(widget.cursorPosition(), 2);
}

TEST_F(BindersTest, APastedLineEndIsSeenAsABlankWhereItWasPasted) {
    auto& control = New<TextBox>("txtFind");
    control.SetValue("ad");
    auto& widget = Add<QLineEdit>();
    new TextBoxBinder(control, widget, boundary);
    ShowActive(window);
    widget.setFocus();
    widget.setCursorPosition(1);
    QApplication::clipboard()->setText("b\r\nc");
    widget.paste();
    EXPECT_EQ(control.Value(), "ab  cd");
    EXPECT_EQ(widget.text(), "ab  cd");
    EXPECT_EQ(widget.cursorPosition(), 5);
}

TEST_F(BindersTest, ATabThatIsPastedOverABlankIsSeenAsABlankThoughTheTextIsTheSame) {
    auto& text = New<TextBox>("txtFind");
    auto& edit = Add<QLineEdit>();
    new TextBoxBinder(text, edit, boundary);
    auto& combo = New<ComboBox>("cboFilter");
    auto& box = Add<ComboBoxWidget>();
    new ComboBoxBinder(combo, box, boundary);
    text.SetValue("a b");
    combo.SetValue("a b");
    ShowActive(window);
    QApplication::clipboard()->setText("\t");
    for (QLineEdit* const field : {&edit, box.lineEdit()}) {
        field->setFocus();
        field->setSelection(1, 1);
        field->paste();
        EXPECT_EQ(field->text(), "a b");
    }
}

TEST_F(BindersTest, OptionButtonIsARadioButtonForScreenReaders) {
    auto& control = New<OptionButton>("optFillLimit");
    auto& widget = Add<OptionWidget>();
    new OptionButtonBinder(control, widget, boundary);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&widget)->role(), QAccessible::RadioButton);
}

class ComboBoxTest : public BindersTest {
protected:
    ComboBox& control = New<ComboBox>("cboFilter");
    ComboBoxWidget& widget = Add<ComboBoxWidget>();
    int chosen = 0;

    void SetUp() override {
        control.DropDown = [&] { control.SetEntries({"", "Milk", "milk"}); };
        control.Click = [&] { ++chosen; };
        new ComboBoxBinder(control, widget, boundary);
        ShowActive(window);
        widget.setFocus();
    }
};

TEST_F(ComboBoxTest, TypedTextStaysAsTyped) {
    control.SetEntries({"", "Milk", "milk"});
    Type("MIL");
    EXPECT_EQ(control.Value(), "MIL");
    Type("K");
    Press(Qt::Key_Return);
    EXPECT_EQ(control.Value(), "MILK");
    EXPECT_EQ(widget.currentText(), "MILK");
    EXPECT_EQ(chosen, 0);
}

TEST_F(ComboBoxTest, TypedTextThatIsAnEntryToTheLetterIsNoChoice) {
    auto& other = Add<QLineEdit>();
    other.show();
    widget.showPopup();
    widget.hidePopup();
    Type("milk");
    Press(Qt::Key_Return);
    EXPECT_EQ(chosen, 0);
    other.setFocus();
    EXPECT_EQ(chosen, 0);
    EXPECT_EQ(control.Value(), "milk");
}

TEST_F(ComboBoxTest, APastedLineEndIsSeenAsABlankWhereItWasPasted) {
    Type("ad");
    widget.lineEdit()->setCursorPosition(1);
    QApplication::clipboard()->setText("b\r\nc");
    widget.lineEdit()->paste();
    EXPECT_EQ(control.Value(), "ab  cd");
    EXPECT_EQ(widget.currentText(), "ab  cd");
    EXPECT_EQ(widget.lineEdit()->cursorPosition(), 5);
}

TEST_F(ComboBoxTest, EnterIsTheFormsWhereItUsesTheKeyUp) {
    EXPECT_FALSE(widget.EnterPressed());
    for (const bool usedUp : {true, false}) {
        control.Enter = [usedUp] { return usedUp; };
        EXPECT_EQ(widget.EnterPressed(), usedUp);
    }
}

TEST_F(BindersTest, TextAndEntriesThatAComboBoxBeginsWithAreShown) {
    auto& control = New<ComboBox>("cboFilter");
    control.SetEntries({"Milk", "cement"});
    control.SetValue("lime");
    auto& widget = Add<ComboBoxWidget>();
    new ComboBoxBinder(control, widget, boundary);
    EXPECT_EQ(widget.count(), 2);
    EXPECT_EQ(widget.currentText(), "lime");
    EXPECT_EQ(widget.currentIndex(), -1);
    control.SetEntries({"sand"});
    EXPECT_EQ(widget.count(), 1) << "instead of those";
    EXPECT_EQ(widget.itemText(0), "sand");
    EXPECT_EQ(widget.currentText(), "lime");
}

TEST_F(ComboBoxTest, FormsTextIsShown) {
    control.SetValue("cement | lime");
    EXPECT_EQ(widget.currentText(), "cement | lime");
}

TEST_F(ComboBoxTest, ListIsBuiltAsItOpensAndTheTextStays) {
    Type("mi");
    widget.showPopup();
    EXPECT_EQ(widget.count(), 3);
    EXPECT_EQ(widget.itemText(2), "milk");
    EXPECT_EQ(control.Value(), "mi");
    EXPECT_EQ(widget.currentText(), "mi");
    widget.hidePopup();
}

TEST_F(ComboBoxTest, ChoiceFromTheListReachesTheForm) {
    int choices = 0;
    for (const int row : {2, 0, 1}) {
        widget.showPopup();
        EXPECT_TRUE(widget.view()->isVisible());
        widget.view()->setCurrentIndex(widget.model()->index(row, 0));
        QTest::keyClick(static_cast<QWidget*>(widget.view()), Qt::Key_Return);
        EXPECT_EQ(chosen, ++choices);
        EXPECT_EQ(control.Value(), control.Entries()[static_cast<std::size_t>(row)]);
        EXPECT_EQ(widget.currentText().toStdString(), control.Value());
    }
}

TEST_F(ComboBoxTest, WheelDoesNotChooseAndGoesOnToWhatIsAround) {
    control.SetEntries({"", "Milk", "milk"});
    QWheelEvent wheel(QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &wheel);
    EXPECT_FALSE(wheel.isAccepted());
    EXPECT_EQ(chosen, 0);
    EXPECT_EQ(control.Value(), "");
}

// --- others -----------------------------------------------------------------------------------------------

TEST_F(BindersTest, ProgressBarShowsPercent) {
    auto& control = New<ProgressBar>("ProgressBar1");
    auto& widget = Add<QProgressBar>();
    new ProgressBarBinder(control, widget, boundary);
    EXPECT_EQ(widget.value(), 0);
    EXPECT_EQ(widget.maximum(), 100);
    control.SetValue(66.6);
    EXPECT_EQ(widget.value(), 67);
    control.SetValue(200);
    EXPECT_EQ(widget.value(), 100);
}

TEST_F(BindersTest, ProgressIsFilledFromTheLeft) {
    auto& control = New<ProgressBar>("ProgressBar1");
    auto& widget = Add<ProgressWidget>();
    widget.resize(200, 16);
    new ProgressBarBinder(control, widget, boundary);
    control.SetValue(50);
    const QImage picture = widget.grab().toImage();
    EXPECT_EQ(picture.pixelColor(80, 8), widget.palette().color(QPalette::Highlight));
    EXPECT_EQ(picture.pixelColor(120, 8), widget.palette().color(QPalette::Base));
}

TEST_F(BindersTest, FailureInAHandlerEndsInOneBox) {
    auto& control = New<Button>("cmdOk");
    control.Click = [] { throw cError(errOverflow, "Test", {}, "/a/b.kdt"); };
    auto& widget = Add<QPushButton>();
    new ButtonBinder(control, widget, boundary);
    window.show();
    toolkit.SetMousePointer(Pointer::Hourglass);
    QString text;
    NextModal box([&](QWidget& shown) {
        text = dynamic_cast<QMessageBox&>(shown).text();
        ClickBoxButton(shown, QMessageBox::Ok);
    });
    Click(widget);
    EXPECT_EQ(text, "Run-time error '6':\n\nOverflow\n/a/b.kdt");
    EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
}

TEST_F(BindersTest, StatusPanelHasAFrame) {
    auto& widget = Add<StatusPanel>();
    window.resize(300, 40);
    window.show();
    const QImage picture = widget.grab().toImage();
    const QColor inside = picture.pixelColor(picture.width() / 2, picture.height() / 2);
    EXPECT_NE(picture.pixelColor(picture.width() / 2, 0), inside);
    EXPECT_NE(picture.pixelColor(0, picture.height() / 2), inside);
}

TEST_F(BindersTest, StatusPanelCutsInTheMiddleAndTellsAllInItsToolTip) {
    auto& control = New<Label>("Panel1");
    auto& widget = Add<StatusPanel>();
    new LabelBinder(control, widget, boundary);
    const Text path = "/home/anna/documents/" + Text(300, 'x') + "/<b>milk</b>.kdt";
    control.SetCaption(path);
    window.resize(300, 100);
    window.show();
    EXPECT_EQ(widget.text().toStdString(), path);
    EXPECT_LE(window.width(), 300);
    const QString shown = widget.ShownText();
    EXPECT_TRUE(shown.startsWith("/home/an")) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith("</b>.kdt")) << shown.toStdString();
    EXPECT_LT(shown.size(), 100);
    EXPECT_TRUE(widget.toolTip().contains("&lt;b&gt;milk&lt;/b&gt;.kdt"));
    control.SetCaption("");
    EXPECT_EQ(widget.toolTip(), "");
    EXPECT_EQ(widget.ShownText(), "");
}

}  // namespace
}  // namespace kd
