#include "qt/services/QtToolkit.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <stdexcept>
#include <unordered_map>

#include "base/Scope.h"
#include "qt/services/BoxText.h"
#include "qt/services/MenuBinder.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// A screen shows some sixty pictures a second.
constexpr std::chrono::milliseconds BetweenPasses(16);
/// A desktop expects an answer within seconds, an eye that something moves within a quarter of one. What
/// comes between two questions may itself take a while, as a flush of the disk does.
constexpr std::chrono::milliseconds LongestSilence(50);

QMessageBox::Icon QtIcon(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::Information:
            return QMessageBox::Information;
        case BoxIcon::Exclamation:
            return QMessageBox::Warning;
        case BoxIcon::Critical:
            return QMessageBox::Critical;
        case BoxIcon::Question:
            return QMessageBox::Question;
        case BoxIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

}  // namespace

/// The hourglass is laid aside while the user is asked something in the middle of a job.
class QtToolkit::PointerAside {
public:
    explicit PointerAside(QtToolkit& toolkit) : m_toolkit(toolkit) { toolkit.ShowPointer(false); }
    ~PointerAside() { m_toolkit.ShowPointer(m_toolkit.m_pointer == Pointer::Hourglass); }
    PointerAside(const PointerAside&) = delete;
    PointerAside& operator=(const PointerAside&) = delete;

private:
    QtToolkit& m_toolkit;
};

QtToolkit::QtToolkit() = default;

QtToolkit::~QtToolkit() {
    ShowPointer(false);
}

void QtToolkit::SetMainWindow(QWidget* window, std::function<void()> show,
                              std::function<QPoint()> menuPlace) {
    m_window = window;
    m_showWindow = std::move(show);
    m_menuPlace = std::move(menuPlace);
}

QWidget* QtToolkit::Owner() const {
    if (QWidget* const modal = QApplication::activeModalWidget()) {
        return modal;
    }
    return m_window != nullptr && m_window->isVisible() ? m_window : nullptr;
}

BoxAnswer QtToolkit::MessageBox(std::string_view text, BoxIcon icon, BoxButtons buttons,
                                std::string_view title) {
    const Scope paused([this] { TellPaused(); });
    const PointerAside aside(*this);
    QMessageBox box(Owner());
    box.setObjectName(QStringLiteral("MessageBox"));
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(ToQt(title));
    QString lines = ToQt(text);
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    box.setText(lines);
    box.setIcon(QtIcon(icon));
    if (buttons == BoxButtons::YesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        // Enter pressed without reading must not give up anybody's work.
        box.setDefaultButton(QMessageBox::No);
    } else {
        box.setStandardButtons(QMessageBox::Ok);
        box.setDefaultButton(QMessageBox::Ok);
    }
    SettleBoxText(box, ScreenSize());
    const int answer = box.exec();
    if (buttons == BoxButtons::Ok) {
        return BoxAnswer::Ok;
    }
    return answer == QMessageBox::Yes ? BoxAnswer::Yes : BoxAnswer::No;
}

void QtToolkit::ShowModal(Form& form) {
    const auto maker = m_makers.find(std::type_index(typeid(form)));
    if (maker == m_makers.end()) {
        throw std::logic_error("No dialog for the form " + form.Name());
    }
    const Scope paused([this] { TellPaused(); });
    const PointerAside aside(*this);
    const std::unique_ptr<QDialog> dialog = maker->second(form, Boundary(), Owner());
    form.MarkShown();
    (void)dialog->exec();  // the form itself knows how it ended
    const QRect inner = dialog->geometry();
    const QRect outer = dialog->frameGeometry();
    m_frame = {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
               outer.bottom() - inner.bottom()};
    if (form.Shown()) {
        form.Hide();  // the program is being ended while the dialog stands open
    }
}

void QtToolkit::ShowModeless(Form& form) {
    form.MarkShown();
    if (m_showWindow) {
        m_showWindow();
    }
}

void QtToolkit::ShowPopupMenu(MenuItem& menu) {
    const Scope paused([this] { TellPaused(); });
    MenuItem* chosen = nullptr;
    {
        const PointerAside aside(*this);
        QMenu popup(Owner());
        popup.setObjectName(ToQt(menu.Name()));
        std::unordered_map<const QAction*, MenuItem*> entryOf;
        for (MenuItem* const entry : menu.Entries()) {
            entryOf[entry == nullptr ? popup.addSeparator() : AddAction(*entry, popup)] = entry;
        }
        chosen =
            entryOf[popup.exec(m_menuPlace ? m_menuPlace() : QCursor::pos())];  // null where none is chosen
    }
    // The menu is gone before its command begins, which may open a dialog.
    if (chosen != nullptr) {
        chosen->UserClick();
    }
}

void QtToolkit::ProcessEvents() {
    const Scope paused([this] { TellPaused(); });
    ++m_passes;
    const Scope leave([this] { --m_passes; });
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_lastPass = std::chrono::steady_clock::now();
}

void QtToolkit::TellPaused() {
    if (Paused) {
        Paused();
    }
}

void QtToolkit::ProcessEventsInJob() {
    if (std::chrono::steady_clock::now() - m_lastPass >= BetweenPasses) {
        ProcessEvents();
    }
}

void QtToolkit::KeepAlive() {
    if (std::chrono::steady_clock::now() - m_lastPass >= LongestSilence) {
        ProcessEvents();
    }
}

void QtToolkit::SetMousePointer(Pointer pointer) {
    m_pointer = pointer;
    ShowPointer(pointer == Pointer::Hourglass);
}

void QtToolkit::ShowPointer(bool hourglass) {
    if (hourglass == m_hourglassShown) {
        return;
    }
    m_hourglassShown = hourglass;
    if (hourglass) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QGuiApplication::restoreOverrideCursor();
    }
}

QSize QtToolkit::ScreenSize() const {
    const QWidget* const owner = Owner();
    const QScreen* const screen = owner != nullptr ? owner->screen() : QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->availableGeometry().size() : QSize();
}

}  // namespace kd
