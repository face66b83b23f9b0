#include "qt/forms/FormDialog.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "qt/forms/Binders.h"
#include "qt/forms/Widgets.h"
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

QLabel* FormDialog::WidgetFor(Label& control) {
    auto* const label = new QLabel(this);
    new LabelBinder(control, *label, m_boundary);
    return label;
}

QPushButton* FormDialog::WidgetFor(Button& control, QChar mnemonic) {
    auto* const button = new QPushButton(this);
    new ButtonBinder(control, *button, m_boundary, mnemonic);
    return button;
}

QCheckBox* FormDialog::WidgetFor(CheckBox& control, QChar mnemonic) {
    auto* const check = new CheckBoxWidget(this);
    new CheckBoxBinder(control, *check, m_boundary, mnemonic);
    return check;
}

QRadioButton* FormDialog::WidgetFor(OptionButton& control, QChar mnemonic) {
    auto* const option = new OptionWidget(this);
    new OptionButtonBinder(control, *option, m_boundary, mnemonic);
    return option;
}

QLineEdit* FormDialog::WidgetFor(TextBox& control, const QString& spokenName) {
    auto* const field = new QLineEdit(this);
    field->setAccessibleName(spokenName);
    new TextBoxBinder(control, *field, m_boundary);
    return field;
}

QHBoxLayout* FormDialog::Row(std::initializer_list<QWidget*> left, std::initializer_list<QWidget*> right) {
    auto* const row = new QHBoxLayout;
    for (QWidget* const widget : left) {
        row->addWidget(widget);
    }
    row->addStretch();
    for (QWidget* const widget : right) {
        row->addWidget(widget);
    }
    return row;
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

QMargins FormDialog::Frame() const {
    const QWindow* const window = windowHandle();
    return window != nullptr ? window->frameMargins() : QMargins();
}

void FormDialog::MoveToPlace(const QMargins& frame) {
    m_frame = frame;
    const QScreen* const at = screen();
    if (at == nullptr) {
        return;
    }
    const QRect room = at->availableGeometry();
    const auto& last = m_form.LastGeometry();
    resize((last ? QSize(last->width, last->height) : size()).boundedTo(room.size().shrunkBy(frame)));
    QRect outer(QPoint(), size().grownBy(frame));
    const auto& own = m_form.OwnPlace();
    if (own || last) {
        const Place corner = last ? last->corner : *own;
        outer.moveTo(corner.left, corner.top);
        outer.moveRight(std::min(outer.right(), room.right()));
        outer.moveBottom(std::min(outer.bottom(), room.bottom()));
        outer.moveLeft(std::max(outer.left(), room.left()));
        outer.moveTop(std::max(outer.top(), room.top()));
    } else {
        outer.moveCenter(room.center());
    }
    move(outer.topLeft());
    if (QWindow* const window = windowHandle(); window != nullptr && !window->isVisible()) {
        // The corner is the frame's, however high its title bar is, which is known only when it is there.
        window->setFramePosition(outer.topLeft());
    }
}

void FormDialog::FollowFrame() {
    const QMargins frame = m_placed && m_frameWaits ? Frame() : QMargins();
    if (frame.isNull()) {
        return;
    }
    m_frameWaits = false;  // from here on the place is the user's
    if (frame != m_frame) {
        MoveToPlace(frame);
    }
}

void FormDialog::showEvent(QShowEvent* event) {
    if (!m_placed) {
        m_placed = true;
        // The desktop frames a window when it is there; most likely as it has framed the one below.
        const QWindow* const below = parentWidget() != nullptr ? parentWidget()->windowHandle() : nullptr;
        MoveToPlace(Frame().isNull() && below != nullptr ? below->frameMargins() : Frame());
        if (auto* const focus = findChild<QWidget*>(ToQt(m_form.FocusedControl()));
            focus != nullptr && !m_form.FocusedControl().empty()) {
            focus->setFocus(Qt::ActiveWindowFocusReason);  // the user did not move it
        }
    }
    QDialog::showEvent(event);
}

void FormDialog::moveEvent(QMoveEvent* event) {
    QDialog::moveEvent(event);
    FollowFrame();
}

void FormDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    FollowFrame();
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        setAttribute(Qt::WA_KeyboardFocusChange);  // whoever has the keyboard shows it from the beginning
    }
}

}  // namespace kd
