#pragma once

#include <QDialog>
#include <QMargins>
#include <initializer_list>

#include "platform/EventBoundary.h"
#include "platform/Toolkit.h"

class QPushButton;

namespace kd {

/// The window of a modal form: caption and name from the form; it ends when the form hides. It stands at the
/// form's own place, else in the middle of the screen; either place is that of its frame, and the window is
/// moved from there only as far as needed to stay on the screen. Esc presses the cancel button; the frame's
/// close is the form's UserClose. A form that is shown again has place, size and focus as they were.
class FormDialog : public QDialog {
public:
    FormDialog(Form& form, EventBoundary& boundary, QWidget* parent);
    ~FormDialog() override;

    /// Esc: presses the cancel button; does nothing where there is none.
    void reject() override;

protected:
    /// The button that Enter presses wherever no other button has the focus, and the one that Esc presses;
    /// either may be null. To be called when all widgets are there.
    void SetButtons(QPushButton* defaultButton, QPushButton* cancelButton);
    /// The order in which Tab goes through the widgets.
    static void TabThrough(std::initializer_list<QWidget*> widgets);

    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    EventBoundary& Boundary() const noexcept { return m_boundary; }
    /// What the desktop has put around the window; null before it has, and where it puts nothing.
    virtual QMargins Frame() const;

private:
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
