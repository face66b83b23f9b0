#pragma once

#include <QAbstractItemView>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QWheelEvent>

#include <functional>

/// Widgets that leave to their control what the toolkit's own would decide themselves.
namespace kd {

/// A check box whose click changes nothing by itself.
class CheckBoxWidget : public QCheckBox {
public:
    using QCheckBox::QCheckBox;

protected:
    void nextCheckState() override {}
};

/// A radio button whose click changes nothing by itself.
class OptionWidget : public QRadioButton {
public:
    explicit OptionWidget(QWidget* parent = nullptr) : QRadioButton(parent) {
        // A group of its own leaves the state to the control; without the button's own exclusiveness screen
        // readers would tell it as a check box.
        auto* const alone = new QButtonGroup(this);
        alone->setExclusive(false);
        alone->addButton(this);
    }

protected:
    void nextCheckState() override {}
};

/// An edit field with a list: typed text stays as typed (no completion, no jump to a like entry), and nothing
/// but opening the list and choosing from it touches the list.
class ComboBoxWidget : public QComboBox {
public:
    explicit ComboBoxWidget(QWidget* parent = nullptr) : QComboBox(parent) {
        setEditable(true);
        setInsertPolicy(QComboBox::NoInsert);
        setCompleter(nullptr);
        setMaxVisibleItems(21);
        // The toolkit takes a typed text that is the same as an entry for a choice once the focus goes.
        disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
    }
    /// A screen reader meets the field and the list as objects of their own: they bear the same name.
    void SetSpokenName(const QString& name) {
        setAccessibleName(name);
        lineEdit()->setAccessibleName(name);
        view()->setAccessibleName(name);
    }
    std::function<void()> AboutToDropDown;
    /// Whether the Enter key in the field is used up; else it is the window's.
    std::function<bool()> EnterPressed;
    void showPopup() override {
        if (AboutToDropDown) {
            AboutToDropDown();
        }
        QComboBox::showPopup();
    }

protected:
    // The arrow keys in the closed field would choose from the list, and the typed text were lost.
    void keyPressEvent(QKeyEvent* event) override {
        switch (event->key()) {
            case Qt::Key_Up:
            case Qt::Key_PageUp:
            case Qt::Key_PageDown:
                return;
            case Qt::Key_Down:
                showPopup();
                return;
            case Qt::Key_Return:
            case Qt::Key_Enter:
                if (EnterPressed && EnterPressed()) {
                    return;
                }
                [[fallthrough]];
            default:
                QComboBox::keyPressEvent(event);
        }
    }
    // The wheel over the closed field would choose from the list by accident.
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

/// A progress bar in plain colours. The style's own is drawn with gradients, which cost a load of all
/// applications a quarter of its time.
class ProgressWidget : public QProgressBar {
public:
    using QProgressBar::QProgressBar;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A line of text that leads somewhere: blue and underlined, by mouse or with the keyboard, and seen when it
/// has the latter.
class LinkWidget : public QLabel {
public:
    explicit LinkWidget(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A line of text that never widens its window: what does not fit is cut in the middle, and the whole text is
/// the tool tip.
class StatusPanel : public QLabel {
public:
    explicit StatusPanel(QWidget* parent = nullptr);
    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;
    /// What is drawn at the present width.
    QString ShownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace kd
