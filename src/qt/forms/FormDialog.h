#pragma once

#include <QDialog>
#include <QMargins>
#include <QRect>
#include <initializer_list>
#include <vector>

#include "platform/Controls.h"
#include "platform/EventBoundary.h"
#include "platform/Toolkit.h"
#include "qt/forms/Room.h"

class QCheckBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kd {

/// The window of a modal form: caption and name from the form; it ends when the form hides. It stands at the
/// form's own place, else in the middle of the screen; either place is that of its frame, and the window is
/// moved from there only as far as needed to stay on that screen. Esc presses the cancel button; the frame's
/// close is the form's UserClose. A form that is shown again has place, size and focus as they were; only a
/// window whose title bar is on no screen any more is moved.
class FormDialog : public QDialog {
public:
    FormDialog(Form& form, EventBoundary& boundary, QWidget* parent);
    ~FormDialog() override;

    /// Esc: presses the cancel button; does nothing where there is none.
    void reject() override;

protected:
    /// A widget of this window for a control of its form, joined with it by the binder of its kind.
    /// `mnemonic` is the letter that leads there with Alt; `spokenName` what a screen reader calls a field,
    /// which has no text of its own. Tab goes through the widgets in the order in which they are made, and
    /// the first of them has the keyboard where the window gives it to none.
    QLabel* WidgetFor(Label& control);
    QPushButton* WidgetFor(Button& control, QChar mnemonic = {});
    QCheckBox* WidgetFor(CheckBox& control, QChar mnemonic);
    QRadioButton* WidgetFor(OptionButton& control, QChar mnemonic);
    QLineEdit* WidgetFor(TextBox& control, const QString& spokenName);
    /// A row of widgets at the left and some at the right.
    static QHBoxLayout* Row(std::initializer_list<QWidget*> left, std::initializer_list<QWidget*> right);

    /// The button that Enter presses wherever no other button has the focus, and the one that Esc presses;
    /// either may be null. To be called when all widgets are there.
    void SetButtons(QPushButton* defaultButton, QPushButton* cancelButton);

    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    EventBoundary& Boundary() const noexcept { return m_boundary; }
    /// What the desktop has put around the window; null before it has, and where it puts nothing.
    virtual QMargins Frame() const;
    /// The screens over which the desktop extends, the one where the window belongs first.
    virtual std::vector<Room> Rooms() const;

private:
    /// Where the frame goes, when it takes that much around the window.
    QRect Placed(const QMargins& frame, const std::vector<Room>& rooms) const;
    /// Moves the window to its place, with that much of a frame around it.
    void MoveToPlace(const QMargins& frame);
    /// Moves it once more when the desktop has put another frame around it than was reckoned with.
    void FollowFrame();

    Form& m_form;
    EventBoundary& m_boundary;
    QPushButton* m_cancelButton = nullptr;
    bool m_placed = false;
    bool m_frameWaits = true;  // for the desktop to tell it
    QMargins m_frame;          // that the window was placed with
};

}  // namespace kd
