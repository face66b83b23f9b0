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

namespace {

/// Whether any of a window's title bar is to be seen, so that the user can take it from where it is.
bool InReach(const QRect& outer, const QMargins& frame, const std::vector<Room>& rooms) {
    const QRect title(outer.topLeft(), QSize(outer.width(), std::max(frame.top(), 1)));
    return std::any_of(rooms.begin(), rooms.end(),
                       [&](const Room& room) { return room.free.intersects(title); });
}

/// What windows may take of the screen on which a point lies; that of the first screen where it is on none.
QRect RoomAt(QPoint point, const std::vector<Room>& rooms) {
    const auto found = std::find_if(rooms.begin(), rooms.end(),
                                    [point](const Room& room) { return room.screen.contains(point); });
    return found != rooms.end() ? found->free : rooms.front().free;
}

/// Moved and made smaller only as far as needed.
QRect KeptInside(QRect outer, const QRect& room) {
    outer.setSize(outer.size().boundedTo(room.size()));
    outer.moveRight(std::min(outer.right(), room.right()));
    outer.moveBottom(std::min(outer.bottom(), room.bottom()));
    outer.moveLeft(std::max(outer.left(), room.left()));
    outer.moveTop(std::max(outer.top(), room.top()));
    return outer;
}

QPoint CornerOf(const Place& place) {
    return {place.left, place.top};
}

}  // namespace

FormDialog::FormDialog(Form& form, EventBoundary& boundary, QWidget* parent)
    : QDialog(parent), m_form(form), m_boundary(boundary) {
    setObjectName(ToQt(form.Name()));
    setWindowTitle(ToQt(form.Caption()));
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

std::vector<Room> FormDialog::Rooms() const {
    std::vector<Room> rooms;
    if (const QScreen* const own = screen()) {
        for (const QScreen* const each : own->virtualSiblings()) {
            rooms.insert(each == own ? rooms.begin() : rooms.end(), RoomOf(*each));
        }
    }
    return rooms;
}

QRect FormDialog::Placed(const QMargins& frame, const std::vector<Room>& rooms) const {
    if (const auto& last = m_form.LastGeometry()) {
        const QRect outer(CornerOf(last->corner), QSize(last->width, last->height).grownBy(frame));
        return InReach(outer, frame, rooms) ? outer : KeptInside(outer, RoomAt(outer.center(), rooms));
    }
    QRect outer(QPoint(), size().grownBy(frame));
    if (const auto& own = m_form.OwnPlace()) {
        outer.moveTopLeft(CornerOf(*own));
        return KeptInside(outer, RoomAt(outer.topLeft(), rooms));
    }
    outer.moveCenter(rooms.front().screen.center());
    return KeptInside(outer, rooms.front().free);
}

void FormDialog::MoveToPlace(const QMargins& frame) {
    m_frame = frame;
    const std::vector<Room> rooms = Rooms();
    if (rooms.empty()) {
        return;
    }
    const QRect outer = Placed(frame, rooms);
    resize(outer.size().shrunkBy(frame));
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
    setAttribute(Qt::WA_KeyboardFocusChange);  // whoever has the keyboard shows it from the beginning
}

}  // namespace kd
