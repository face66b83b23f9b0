#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSizeGrip>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "fakes/FakeServices.h"
#include "fakes/FakeSuite.h"
#include "fakes/MemoryFiles.h"
#include "model/Globals.h"
#include "qt/services/QtToolkit.h"

namespace kd {

/// What a test of the screen needs, afresh: the real toolkit over fakes of everything else.
struct ScreenDesk {
    MemoryFiles files;
    QtToolkit toolkit;
    FakeLocale locale;
    FakeClock clock;
    FakeEnvironment environment;
    FakeShell shell;
    FakeFileDialog fileDialog;
    FakeSuite suite;
    Platform platform{files, toolkit, locale, clock, environment, shell, fileDialog, suite};
    Globals g{platform};
};

/// The controls of a dialog, and those of each of its frames, stand on it and beside each other.
inline void ExpectLaidOut(const QWidget& of) {
    QRegion taken;
    for (const QWidget* const each : of.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!each->isVisible() || each->isWindow() || qobject_cast<const QSizeGrip*>(each) != nullptr) {
            continue;
        }
        EXPECT_FALSE(taken.intersects(each->geometry())) << each->objectName().toStdString();
        EXPECT_TRUE(of.rect().contains(each->geometry())) << each->objectName().toStdString();
        taken += each->geometry();
        if (qobject_cast<const QGroupBox*>(each) != nullptr) {
            ExpectLaidOut(*each);
        }
    }
}

/// The same of a dialog of ours; the toolkit's see to theirs.
inline void LookAtLayout(const QWidget& dialog) {
    if (qobject_cast<const QMessageBox*>(&dialog) == nullptr &&
        qobject_cast<const QFileDialog*>(&dialog) == nullptr) {
        ExpectLaidOut(dialog);
    }
}

/// Foresees that a further modal window comes up and has the keyboard, and does then what the user does with
/// it. Fails the test when none has come by the end of the scope, and when a dialog is not laid out.
class NextModal {
public:
    explicit NextModal(std::function<void(QWidget&)> user)
        : m_before(QApplication::activeModalWidget()), m_user(std::move(user)) {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            QWidget* const modal = QApplication::activeModalWidget();
            if (modal != nullptr && modal != m_before && modal->isActiveWindow()) {
                m_timer.stop();
                m_came = true;
                LookAtLayout(*modal);
                m_user(*modal);
                if (modal->isVisible()) {
                    ADD_FAILURE() << modal->objectName().toStdString() << " was left open";
                    modal->close();
                    QTest::keyClick(modal, Qt::Key_Escape);
                }
            }
        });
        m_timer.start(0);
    }
    ~NextModal() { EXPECT_TRUE(m_came) << "no modal window came up"; }
    NextModal(const NextModal&) = delete;
    NextModal& operator=(const NextModal&) = delete;

private:
    QWidget* m_before;
    std::function<void(QWidget&)> m_user;
    QTimer m_timer;
    bool m_came = false;
};

/// A widget of a window by its control's name.
template <typename W = QWidget>
W& Find(QWidget& window, const char* name) {
    W* const found = window.findChild<W*>(QLatin1String(name));
    if (found == nullptr) {
        throw std::runtime_error(std::string("no widget ") + name);
    }
    return *found;
}

inline void Click(QWidget& widget) {
    QTest::mouseClick(&widget, Qt::LeftButton);
}

/// A click on a check box or radio button: on its mark.
inline void ClickMark(QWidget& widget) {
    QTest::mouseClick(&widget, Qt::LeftButton, {}, QPoint(8, widget.height() / 2));
}

/// The widget that has the keyboard. Without a window manager nobody gives it back to a window when a box
/// over it has gone.
inline QWidget* Focused() {
    if (QApplication::focusWidget() == nullptr && QApplication::activeModalWidget() != nullptr) {
        QApplication::activeModalWidget()->activateWindow();
        (void)QTest::qWaitForWindowActive(QApplication::activeModalWidget());
    }
    return QApplication::focusWidget();
}

/// A key to whatever widget has the focus.
inline void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* const focus = Focused();
    ASSERT_NE(focus, nullptr);
    QTest::keyClick(focus, key, modifiers);
}

inline void Type(const char* text) {
    QWidget* const focus = Focused();
    ASSERT_NE(focus, nullptr);
    QTest::keyClicks(focus, QLatin1String(text));
}

inline void ClickBoxButton(QWidget& box, QMessageBox::StandardButton button) {
    auto* const messageBox = qobject_cast<QMessageBox*>(&box);
    ASSERT_NE(messageBox, nullptr);
    ASSERT_NE(messageBox->button(button), nullptr);
    QTest::mouseClick(messageBox->button(button), Qt::LeftButton);
}

/// A window that is on the screen and has the keyboard.
inline void ShowActive(QWidget& window) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

}  // namespace kd
