#include "guided/Guide.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QImage>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <algorithm>
#include <utility>

#include "qt/services/QtText.h"

namespace kd {

namespace {

/// How long a step may wait for the program; far beyond what any takes, so that only a run that hangs meets
/// it.
constexpr int PatienceMs = 120000;
constexpr int TickMs = 10;

/// For so many ticks on end a step's condition must hold: a compositor tells a window late, and more than
/// once, that it has the keyboard again, and whoever has opened a menu meanwhile loses it.
constexpr int SettledTicks = 10;

/// Two grabs of the screen so far apart that are alike show a screen on which no mark fades in any more. A
/// cursor that blinks ends the wait all the same.
constexpr int RestMs = 100;
constexpr int MostGrabs = 8;
constexpr int CameraMs = 500;

/// Where a window stands in a picture of the screen, as ImageMagick writes it: width x height + left + top.
QString PlaceOn(const QScreen& screen, const QWidget& window) {
    const QRect frame = window.frameGeometry();
    const auto pixels = [scale = screen.devicePixelRatio()](int length) { return qRound(length * scale); };
    return QStringLiteral("%1x%2+%3+%4")
        .arg(pixels(frame.width()))
        .arg(pixels(frame.height()))
        .arg(pixels(std::max(frame.left(), 0)))
        .arg(pixels(std::max(frame.top(), 0)));
}

QString BoxText(const QMessageBox& box) {
    return box.text();
}

}  // namespace

Guide::Guide(Application& program, QString pictures, std::function<void(const std::string&)> tell)
    : m_program(program), m_pictures(std::move(pictures)), m_tell(std::move(tell)) {
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Tick(); });
    m_patience.setSingleShot(true);
    QObject::connect(&m_patience, &QTimer::timeout, &m_patience, [this] {
        Fail("waited in vain for: " + (m_steps.empty() ? std::string("the end") : m_steps.front().title));
    });
}

void Guide::Then(std::string title, std::function<bool()> ready, std::function<void()> act) {
    m_steps.push_back({std::move(title), std::move(ready), std::move(act)});
}

bool Guide::IsIdle() const {
    return m_acting == 0 && QApplication::activeModalWidget() == nullptr &&
           QApplication::activePopupWidget() == nullptr && m_program.Window().isVisible() &&
           m_program.Window().isActiveWindow() && QApplication::focusWidget() != nullptr &&
           m_program.Screen().MousePointer() == Pointer::Default;
}

void Guide::KeepActive() const {
    // Without a window manager nobody gives the keyboard back to a window when a box over it has gone.
    if (QApplication::activeWindow() == nullptr || QApplication::focusWidget() == nullptr) {
        QWidget* const modal = QApplication::activeModalWidget();
        if (modal != nullptr) {
            modal->activateWindow();
        } else if (m_program.Window().isVisible()) {
            m_program.Window().activateWindow();
        }
    }
}

void Guide::Tick() {
    KeepActive();
    if (m_failed || m_begins || m_steps.empty()) {
        return;
    }
    m_settled = m_steps.front().ready() ? m_settled + 1 : 0;
    if (m_settled < SettledTicks) {
        return;
    }
    m_settled = 0;
    m_patience.start(PatienceMs);
    // Queued, since a timer does not fire again while its own handler runs: the step may open a modal window
    // and come back only when that has gone, and the next steps run meanwhile.
    m_begins = true;
    QMetaObject::invokeMethod(
        &m_timer,
        [this, step = std::move(m_steps.front())] {
            m_begins = false;
            if (!step.title.empty()) {
                m_tell(step.title);
            }
            ++m_acting;
            step.act();
            --m_acting;
        },
        Qt::QueuedConnection);
    m_steps.pop_front();
}

void Guide::Fail(const std::string& why) {
    if (m_failed) {
        return;
    }
    m_failed = true;
    m_tell("FAILED: " + why);
    SavePicture("failed");
    m_steps.clear();
    // Whatever is open must go, or the run would never end.
    while (QWidget* modal = QApplication::activeModalWidget()) {
        modal->hide();
    }
    QApplication::exit(1);
}

QWidget* Guide::Modal(const char* name) {
    QWidget* const modal = QApplication::activeModalWidget();
    return modal != nullptr && modal->objectName() == QLatin1String(name) && modal->isVisible() &&
                   modal->isActiveWindow()
               ? modal
               : nullptr;
}

void Guide::Press(QWidget& window, const char* control) {
    auto* const widget = window.findChild<QWidget*>(QLatin1String(control));
    Q_ASSERT(widget != nullptr);
    // A check box or an option may be wider than what takes the click: its mark always does.
    const bool marked =
        qobject_cast<QCheckBox*>(widget) != nullptr || qobject_cast<QRadioButton*>(widget) != nullptr;
    QTest::mouseClick(widget, Qt::LeftButton, {}, marked ? QPoint(8, widget->height() / 2) : QPoint());
}

QWidget* Guide::Focused() const {
    // A window that had lost the keyboard has it again only when the desktop says so.
    (void)QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }, PatienceMs);
    QWidget* const focus = QApplication::focusWidget();
    return focus != nullptr ? focus : &m_program.Window();
}

void Guide::Keys(const std::string& text) const {
    for (const QChar c : QString::fromStdString(text)) {
        QTest::keyClick(Focused(), c.toLatin1());  // the focus moves when an editor opens
    }
}

void Guide::Key(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    QTest::keyClick(Focused(), key, modifiers);
}

GridWidget& Guide::Grid() const {
    return *m_program.Window().findChild<GridWidget*>(QStringLiteral("Grid"));
}

void Guide::ClickCell(std::int32_t row, std::int32_t screenCol, Qt::MouseButton button) const {
    Grid().ShowCell(row, screenCol);
    QApplication::processEvents();
    QTest::mouseClick(Grid().viewport(), button, {}, Grid().Layout().ShownRect(row, screenCol).center());
}

void Guide::PressHeader(std::int32_t screenCol) const {
    Grid().ShowCell(0, screenCol);
    QApplication::processEvents();
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {},
                      Grid().Layout().ShownRect(0, screenCol).center());
}

QPoint Guide::DividerOf(std::int32_t screenCol) const {
    Grid().ShowCell(0, screenCol);
    QApplication::processEvents();
    const QRect header = Grid().Layout().ShownRect(0, screenCol);
    return {header.right(), header.center().y()};
}

void Guide::DragDivider(std::int32_t screenCol, int by) const {
    QWidget* const cells = Grid().viewport();
    const QPoint from = DividerOf(screenCol);
    const QPoint to = from + QPoint(by, 0);
    QTest::mousePress(cells, Qt::LeftButton, {}, from);
    // With the button down, which a simulated move would leave to the real mouse.
    QMouseEvent move(QEvent::MouseMove, to, cells->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(cells, &move);
    QTest::mouseRelease(cells, Qt::LeftButton, {}, to);
}

void Guide::DoubleClickDivider(std::int32_t screenCol) const {
    QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, DividerOf(screenCol));
}

void Guide::ClickEntry(QWidget& window, const char* list, const std::string& text) {
    auto* const view = window.findChild<QListView*>(QLatin1String(list));
    for (int row = 0; view != nullptr && row < view->model()->rowCount(); ++row) {
        const QModelIndex index = view->model()->index(row, 0);
        if (index.data().toString().toStdString() == text) {
            view->scrollTo(index);
            QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(index).center());
            return;
        }
    }
    Fail("no entry " + text + " in " + list);
}

QImage Guide::ScreenAtRest() {
    // No step begins meanwhile: it might answer the window whose picture is taken.
    const bool wasTicking = m_timer.isActive();
    m_timer.stop();
    QImage shown;
    for (int grabs = 0; grabs < MostGrabs; ++grabs) {
        QTest::qWait(RestMs);
        QImage now = QApplication::primaryScreen()->grabWindow(0).toImage();
        const bool atRest = now == shown;
        shown = std::move(now);
        if (atRest) {
            break;
        }
    }
    if (wasTicking) {
        m_timer.start(TickMs);
    }
    return shown;
}

void Guide::SavePicture(const char* name) {
    if (m_pictures.isEmpty() || name == nullptr) {
        return;
    }
    const QString path = QDir(m_pictures).filePath(QLatin1String(name) + QStringLiteral(".png"));
    if (!m_camera.isEmpty()) {
        QTest::qWait(CameraMs);  // the compositor paints later than the program
        m_failed = QProcess::execute(m_camera.first(), m_camera.mid(1) + QStringList(path)) != 0 || m_failed;
        return;
    }
    QImage screen = ScreenAtRest();
    if (const QWidget* const window = QApplication::activeWindow()) {
        screen.setText(QStringLiteral("window"), PlaceOn(*QApplication::primaryScreen(), *window));
    }
    if (!screen.save(path)) {
        m_tell("no picture could be written to " + path.toStdString());
        m_failed = true;
    }
}

void Guide::Form(const char* name, const char* picture, std::function<void(QWidget&)> act) {
    Then(
        std::string(), [name] { return Modal(name) != nullptr; },
        [this, name, picture, act = std::move(act)] {
            SavePicture(picture);
            if (QWidget* const modal = Modal(name)) {
                act(*modal);
            } else {
                Fail(std::string("a window went while its picture was taken: ") + name);
            }
        });
}

void Guide::Box(const std::string& text, const char* picture, const char* button) {
    Then(
        "box: " + text, [] { return Modal("MessageBox") != nullptr; },
        [this, text, picture, button] {
            auto* const box = qobject_cast<QMessageBox*>(Modal("MessageBox"));
            SavePicture(picture);
            if (box == nullptr || !BoxText(*box).startsWith(QString::fromStdString(text))) {
                Fail("another box: " + (box == nullptr ? std::string() : BoxText(*box).toStdString()));
                return;
            }
            for (QAbstractButton* each : box->buttons()) {
                if (each->text().remove(QLatin1Char('&')) == QLatin1String(button)) {
                    QTest::mouseClick(each, Qt::LeftButton);
                    return;
                }
            }
            Fail(std::string("no button ") + button);
        });
}

void Guide::TypeInto(std::function<std::int32_t()> row, std::int32_t column, std::string text) {
    Then(
        std::string(), [this] { return IsIdle(); },
        [this, row = std::move(row), column, text = std::move(text)] {
            ClickCell(row(), column - 1);
            Keys(text);
            Key(Qt::Key_Return);
        });
}

void Guide::Choose(const char* menu, const char* entry, const char* picture) {
    Then(
        std::string(), [this] { return IsIdle(); },
        [this, menu] {
            auto* const bar = m_program.Window().menuBar();
            for (QAction* action : bar->actions()) {
                if (action->menu() != nullptr && action->menu()->objectName() == QLatin1String(menu)) {
                    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(action).center());
                    return;
                }
            }
            Fail(std::string("no menu ") + menu);
        });
    Then(
        std::string(), [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()) != nullptr; },
        [this, entry, picture] {
            SavePicture(picture);
            auto* const popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            for (QAction* action : popup != nullptr ? popup->actions() : QList<QAction*>()) {
                if (action->objectName() == QLatin1String(entry)) {
                    if (!action->isEnabled()) {
                        break;
                    }
                    QTest::mouseClick(popup, Qt::LeftButton, {}, popup->actionGeometry(action).center());
                    return;
                }
            }
            Fail(std::string("no entry to choose: ") + entry);
        });
}

void Guide::Check(std::string what, std::function<bool()> holds) {
    Then(
        std::string(), [this] { return IsIdle(); },
        [this, what = std::move(what), holds = std::move(holds)] {
            if (holds()) {
                m_tell(what);
            } else {
                Fail("not true: " + what);
            }
        });
}

void Guide::ExpectQuestionAtClosing(std::string text) {
    m_closingQuestion = std::move(text);
}

void Guide::Picture(const char* name) {
    Then(
        std::string(), [this] { return IsIdle(); }, [this, name] { SavePicture(name); });
}

bool Guide::Run() {
    bool closed = false;
    Then(
        "close the window", [this] { return IsIdle(); },
        [this, &closed] {
            closed = true;
            m_program.Window().close();
        });
    if (!m_closingQuestion.empty()) {
        Box(m_closingQuestion, nullptr, "Yes");
    }
    m_timer.start(TickMs);
    m_patience.start(PatienceMs);
    if (!m_program.Start()) {
        Fail("the program ended at its start");
    }
    if (!m_failed && m_program.Window().isVisible()) {
        (void)QApplication::exec();
    }
    m_timer.stop();
    m_patience.stop();
    if (!closed) {
        Fail("the run did not come to its end");
    }
    return !m_failed;
}

}  // namespace kd
