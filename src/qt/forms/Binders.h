#pragma once

#include <QEvent>
#include <QFocusEvent>
#include <QObject>

#include "platform/Controls.h"
#include "platform/EventBoundary.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;

/// A binder joins one control of a form with one widget: the widget shows the control's state, and what the
/// user does goes to the control's User... operations. It belongs to its widget; the control outlives it.
namespace kd {

/// What all binders do: object name, enabled, visible, focus both ways.
class ControlBinder : public QObject {
public:
    ControlBinder(Control& control, QWidget& widget, EventBoundary& boundary);
    ~ControlBinder() override;
    ControlBinder(const ControlBinder&) = delete;
    ControlBinder& operator=(const ControlBinder&) = delete;

protected:
    /// Shows the whole state. Called for the first time by the derived class's constructor.
    virtual void Show();
    bool eventFilter(QObject* watched, QEvent* event) override;
    EventBoundary& Boundary() const noexcept { return m_boundary; }

private:
    Control& m_control;
    QWidget& m_anyWidget;
    EventBoundary& m_boundary;
};

/// Whether an event is the user's own move to the widget, and not the window's coming to the front or the end
/// of a menu.
bool IsUserFocus(const QEvent& event);

/// The caption is shown as it stands. With `clickable` a click of the mouse, Enter or Space is the label's
/// click; the widget must be able to have the keyboard then, as a LinkWidget is.
class LabelBinder : public ControlBinder {
public:
    LabelBinder(Label& control, QLabel& widget, EventBoundary& boundary, bool clickable = false);

protected:
    void Show() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Label& m_label;
    QLabel& m_widget;
    bool m_clickable;
};

class ButtonBinder : public ControlBinder {
public:
    ButtonBinder(Button& control, QPushButton& widget, EventBoundary& boundary, QChar mnemonic = {});

protected:
    void Show() override;

private:
    Button& m_button;
    QPushButton& m_widget;
    QChar m_mnemonic;
};

class TextBoxBinder : public ControlBinder {
public:
    TextBoxBinder(TextBox& control, QLineEdit& widget, EventBoundary& boundary);
    ~TextBoxBinder() override;

protected:
    void Show() override;

private:
    TextBox& m_text;
    QLineEdit& m_widget;
};

/// The widget must be a CheckBoxWidget: its state is the control's alone.
class CheckBoxBinder : public ControlBinder {
public:
    CheckBoxBinder(CheckBox& control, QCheckBox& widget, EventBoundary& boundary, QChar mnemonic = {});

protected:
    void Show() override;

private:
    CheckBox& m_check;
    QCheckBox& m_widget;
    QChar m_mnemonic;
};

/// The widget must be an OptionWidget: its state is the control's alone.
class OptionButtonBinder : public ControlBinder {
public:
    OptionButtonBinder(OptionButton& control, QRadioButton& widget, EventBoundary& boundary,
                       QChar mnemonic = {});

protected:
    void Show() override;

private:
    OptionButton& m_option;
    QRadioButton& m_widget;
    QChar m_mnemonic;
};

/// The group's members are the radio buttons of `buttons`, in order; `box` is the widget that holds them. A
/// member that gets the focus is selected. Member i has the object name NAME_i.
class OptionGroupBinder : public ControlBinder {
public:
    OptionGroupBinder(OptionGroup& control, QWidget& box, std::vector<QRadioButton*> buttons,
                      EventBoundary& boundary);

protected:
    void Show() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    OptionGroup& m_group;
    std::vector<QRadioButton*> m_buttons;
};

/// The widget must be a ComboBoxWidget.
class ComboBoxWidget;
class ComboBoxBinder : public ControlBinder {
public:
    ComboBoxBinder(ComboBox& control, ComboBoxWidget& widget, EventBoundary& boundary);

protected:
    void Show() override;

private:
    ComboBox& m_combo;
    ComboBoxWidget& m_widget;
    std::vector<Text> m_shown;
};

class ProgressBarBinder : public ControlBinder {
public:
    ProgressBarBinder(ProgressBar& control, QProgressBar& widget, EventBoundary& boundary);

protected:
    void Show() override;

private:
    ProgressBar& m_progress;
    QProgressBar& m_widget;
};

}  // namespace kd
