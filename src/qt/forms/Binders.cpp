#include "qt/forms/Binders.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>
#include <limits>

#include "qt/forms/Widgets.h"
#include "qt/services/QtText.h"

namespace kd {

bool IsUserFocus(const QEvent& event) {
    if (event.type() != QEvent::FocusIn) {
        return false;
    }
    switch (static_cast<const QFocusEvent&>(event).reason()) {
        case Qt::ActiveWindowFocusReason:
        case Qt::PopupFocusReason:
        case Qt::MenuBarFocusReason:
            return false;
        default:
            return true;
    }
}

// --- what all have in common ------------------------------------------------------------------------------

ControlBinder::ControlBinder(Control& control, QWidget& widget, EventBoundary& boundary)
    : QObject(&widget), m_control(control), m_anyWidget(widget), m_boundary(boundary) {
    m_anyWidget.setObjectName(ToQt(control.Name()));
    m_anyWidget.installEventFilter(this);
    m_control.OnChanged = [this] { Show(); };
    m_control.OnFocusWanted = [this] { m_anyWidget.setFocus(Qt::OtherFocusReason); };
}

ControlBinder::~ControlBinder() {
    m_control.OnChanged = nullptr;
    m_control.OnFocusWanted = nullptr;
}

void ControlBinder::Show() {
    m_anyWidget.setEnabled(m_control.Enabled());
    // A widget that was never hidden comes with its window; showing it before it has one would open it alone.
    const bool hidden = m_anyWidget.isHidden() && m_anyWidget.testAttribute(Qt::WA_WState_ExplicitShowHide);
    if (hidden == m_control.Visible()) {
        m_anyWidget.setVisible(m_control.Visible());
    }
}

bool ControlBinder::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_anyWidget && IsUserFocus(*event)) {
        m_boundary.Run([this] { m_control.UserFocus(); });
    }
    return QObject::eventFilter(watched, event);
}

// --- label ------------------------------------------------------------------------------------------------

LabelBinder::LabelBinder(Label& control, QLabel& widget, EventBoundary& boundary, bool clickable)
    : ControlBinder(control, widget, boundary), m_label(control), m_widget(widget), m_clickable(clickable) {
    m_widget.setTextFormat(Qt::PlainText);
    Show();
}

void LabelBinder::Show() {
    ControlBinder::Show();
    QString text = ToQt(m_label.Caption());
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    m_widget.setText(text);
    if (dynamic_cast<StatusPanel*>(&m_widget) != nullptr) {
        m_widget.setToolTip(ToPlainToolTip(text));
    }
}

bool LabelBinder::eventFilter(QObject* watched, QEvent* event) {
    if (m_clickable) {
        bool click = false;
        if (event->type() == QEvent::MouseButtonRelease) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            click =
                mouse->button() == Qt::LeftButton && m_widget.rect().contains(mouse->position().toPoint());
        } else if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            click = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
        }
        if (click) {
            Boundary().Run([this] { m_label.UserClick(); });
            return true;
        }
    }
    return ControlBinder::eventFilter(watched, event);
}

// --- buttons ----------------------------------------------------------------------------------------------

ButtonBinder::ButtonBinder(Button& control, QPushButton& widget, EventBoundary& boundary, QChar mnemonic)
    : ControlBinder(control, widget, boundary), m_button(control), m_widget(widget), m_mnemonic(mnemonic) {
    connect(&m_widget, &QPushButton::clicked, this,
            [this] { Boundary().Run([this] { m_button.UserClick(); }); });
    Show();
}

void ButtonBinder::Show() {
    ControlBinder::Show();
    m_widget.setText(CaptionWithMnemonic(m_button.Caption(), m_mnemonic));
}

CheckBoxBinder::CheckBoxBinder(CheckBox& control, QCheckBox& widget, EventBoundary& boundary, QChar mnemonic)
    : ControlBinder(control, widget, boundary), m_check(control), m_widget(widget), m_mnemonic(mnemonic) {
    connect(&m_widget, &QCheckBox::clicked, this,
            [this] { Boundary().Run([this] { m_check.UserClick(); }); });
    Show();
}

void CheckBoxBinder::Show() {
    ControlBinder::Show();
    m_widget.setText(CaptionWithMnemonic(m_check.Caption(), m_mnemonic));
    m_widget.setCheckState(m_check.Value() == csChecked  ? Qt::Checked
                           : m_check.Value() == csGrayed ? Qt::PartiallyChecked
                                                         : Qt::Unchecked);
}

OptionButtonBinder::OptionButtonBinder(OptionButton& control, QRadioButton& widget, EventBoundary& boundary,
                                       QChar mnemonic)
    : ControlBinder(control, widget, boundary), m_option(control), m_widget(widget), m_mnemonic(mnemonic) {
    connect(&m_widget, &QRadioButton::clicked, this,
            [this] { Boundary().Run([this] { m_option.UserClick(); }); });
    Show();
}

void OptionButtonBinder::Show() {
    ControlBinder::Show();
    m_widget.setText(CaptionWithMnemonic(m_option.Caption(), m_mnemonic));
    m_widget.setChecked(m_option.Value());
}

OptionGroupBinder::OptionGroupBinder(OptionGroup& control, QWidget& box, std::vector<QRadioButton*> buttons,
                                     EventBoundary& boundary)
    : ControlBinder(control, box, boundary), m_group(control), m_buttons(std::move(buttons)) {
    for (std::size_t index = 0; index < m_buttons.size(); ++index) {
        QRadioButton* const button = m_buttons[index];
        const auto member = static_cast<std::int32_t>(index);
        button->setObjectName(ToQt(control.Name()) + QStringLiteral("_%1").arg(member));
        button->setText(ToQt(control.Captions()[index]));
        button->installEventFilter(this);
        connect(button, &QRadioButton::clicked, this, [this, button, member] {
            // With the focus comes the selection already; a click adds nothing to it.
            if (m_group.Selected() != member || !button->hasFocus()) {
                Boundary().Run([this, member] { m_group.UserSelect(member); });
            }
        });
    }
    Show();
}

void OptionGroupBinder::Show() {
    ControlBinder::Show();
    for (std::size_t index = 0; index < m_buttons.size(); ++index) {
        const bool selected = m_group.Selected() == static_cast<std::int32_t>(index);
        if (selected) {
            m_buttons[index]->setChecked(true);
        }
        // Tab comes to the selected member alone: on another one it would select that.
        m_buttons[index]->setFocusPolicy(selected ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

bool OptionGroupBinder::eventFilter(QObject* watched, QEvent* event) {
    if (IsUserFocus(*event)) {
        const auto found = std::find(m_buttons.begin(), m_buttons.end(), watched);
        if (found != m_buttons.end()) {
            const auto member = static_cast<std::int32_t>(found - m_buttons.begin());
            Boundary().Run([this, member] { m_group.UserSelect(member); });
        }
    }
    return ControlBinder::eventFilter(watched, event);
}

// --- text -------------------------------------------------------------------------------------------------

TextBoxBinder::TextBoxBinder(TextBox& control, QLineEdit& widget, EventBoundary& boundary)
    : ControlBinder(control, widget, boundary), m_text(control), m_widget(widget) {
    connect(&m_widget, &QLineEdit::textEdited, this, [this](const QString& text) {
        Boundary().Run([&] { m_text.UserType(FromQt(text)); });
        Show();  // what the control makes of the text need not be what was pasted
    });
    m_text.OnSelectAll = [this] { m_widget.selectAll(); };
    m_widget.setMaxLength(std::numeric_limits<int>::max());  // a text is never cut
    Show();
    if (m_text.TakeSelectAll()) {
        m_widget.selectAll();
    }
}

TextBoxBinder::~TextBoxBinder() {
    m_text.OnSelectAll = nullptr;
}

void TextBoxBinder::Show() {
    ControlBinder::Show();
    const QString text = ToQt(m_text.Value());
    if (m_widget.text() != text) {
        const bool isAsLong = m_widget.text().size() == text.size();  // blanks stand for pasted line ends
        const int cursor = m_widget.cursorPosition();
        m_widget.setText(text);
        if (isAsLong) {
            m_widget.setCursorPosition(cursor);
        }
    }
}

ComboBoxBinder::ComboBoxBinder(ComboBox& control, ComboBoxWidget& widget, EventBoundary& boundary)
    : ControlBinder(control, widget, boundary), m_combo(control), m_widget(widget) {
    m_widget.AboutToDropDown = [this] { Boundary().Run([this] { m_combo.UserDropDown(); }); };
    connect(&m_widget, &QComboBox::editTextChanged, this, [this](const QString& text) {
        Boundary().Run([&] { m_combo.UserType(FromQt(text)); });
        Show();  // what the control makes of the text need not be what was pasted
    });
    m_widget.EnterPressed = [this] {
        bool usedUp = true;  // by a handler that fails too: its message is the answer to the key
        Boundary().Run([&] { usedUp = m_combo.UserEnter(); });
        return usedUp;
    };
    connect(&m_widget, &QComboBox::activated, this,
            [this](int index) { Boundary().Run([this, index] { m_combo.UserChoose(index); }); });
    Show();
}

void ComboBoxBinder::Show() {
    ControlBinder::Show();
    const QSignalBlocker blocker(m_widget);
    if (m_shown != m_combo.Entries()) {
        m_shown = m_combo.Entries();
        m_widget.clear();
        for (const Text& entry : m_shown) {
            m_widget.addItem(ToQt(entry));
        }
        m_widget.setCurrentIndex(-1);
    }
    const QString text = ToQt(m_combo.Value());
    if (m_widget.currentText() != text) {
        const int cursor = m_widget.lineEdit()->cursorPosition();
        m_widget.setEditText(text);
        m_widget.lineEdit()->setCursorPosition(cursor);
    }
}

// --- progress bar -----------------------------------------------------------------------------------------

ProgressBarBinder::ProgressBarBinder(ProgressBar& control, QProgressBar& widget, EventBoundary& boundary)
    : ControlBinder(control, widget, boundary), m_progress(control), m_widget(widget) {
    Show();
}

void ProgressBarBinder::Show() {
    ControlBinder::Show();
    m_widget.setValue(static_cast<int>(std::lround(m_progress.Value())));
}

}  // namespace kd
