#include "qt/forms/FormDialog.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "qt/services/QtText.h"

namespace kd {

FormDialog::FormDialog(Form& form, EventBoundary& boundary, QWidget* parent)
    : QDialog(parent), m_form(form), m_boundary(boundary) {
    setObjectName(ToQt(form.Name()));
    setWindowTitle(ToQt(form.Caption()));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setSizeGripEnabled(true);
    m_form.OnChanged = [this] { setWindowTitle(ToQt(m_form.Caption())); };
    m_form.OnHide = [this] { done(QDialog::Accepted); };
}

FormDialog::~FormDialog() {
    if (const QWidget* const focus = focusWidget()) {
        m_form.SetFocusedControl(FromQt(focus->objectName()));
    }
    if (m_placed) {
        m_form.SetLastGeometry({{pos().x(), pos().y()}, width(), height()});
    }
    m_form.OnChanged = nullptr;
    m_form.OnHide = nullptr;
}

void FormDialog::SetButtons(QPushButton* defaultButton, QPushButton* cancelButton) {
    for (QPushButton* const button : findChildren<QPushButton*>()) {
        button->setAutoDefault(defaultButton != nullptr);
        button->setDefault(button == defaultButton);
    }
    m_cancelButton = cancelButton;
}

void FormDialog::TabThrough(std::initializer_list<QWidget*> widgets) {
    QWidget* before = nullptr;
    for (QWidget* const widget : widgets) {
        if (before != nullptr) {
            setTabOrder(before, widget);
        }
        before = widget;
    }
}

void FormDialog::reject() {
    if (m_cancelButton != nullptr) {
        m_cancelButton->click();
    }
}

void FormDialog::closeEvent(QCloseEvent* event) {
    m_boundary.Run([this] { m_form.UserClose(); });
    event->setAccepted(!m_form.Shown());
}

void FormDialog::MoveToPlace() {
    const QScreen* const at = screen();
    if (at == nullptr) {
        return;
    }
    const QRect room = at->availableGeometry();
    const auto& last = m_form.LastGeometry();
    resize((last ? QSize(last->width, last->height) : size()).boundedTo(room.size()));
    QRect frame(QPoint(), frameGeometry().size());
    const auto& own = m_form.OwnPlace();
    if (own || last) {
        const Place corner = last ? last->corner : *own;
        frame.moveTo(corner.left, corner.top);
        frame.moveRight(std::min(frame.right(), room.right()));
        frame.moveBottom(std::min(frame.bottom(), room.bottom()));
        frame.moveLeft(std::max(frame.left(), room.left()));
        frame.moveTop(std::max(frame.top(), room.top()));
    } else {
        frame.moveCenter(room.center());
    }
    move(frame.topLeft());
    if (QWindow* const window = windowHandle()) {
        // The corner is the frame's, however high its title bar is, which is known only when it is there.
        window->setFramePosition(frame.topLeft());
    }
}

void FormDialog::showEvent(QShowEvent* event) {
    if (!m_placed) {
        m_placed = true;
        MoveToPlace();
        if (auto* const focus = findChild<QWidget*>(ToQt(m_form.FocusedControl()));
            focus != nullptr && !m_form.FocusedControl().empty()) {
            focus->setFocus(Qt::ActiveWindowFocusReason);  // the user did not move it
        }
    }
    QDialog::showEvent(event);
}

void FormDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        setAttribute(Qt::WA_KeyboardFocusChange);  // whoever has the keyboard shows it from the beginning
    }
}

}  // namespace kd
