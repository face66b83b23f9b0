#include "qt/forms/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QWindow>
#include <algorithm>

#include "qt/forms/Binders.h"
#include "qt/forms/Widgets.h"
#include "qt/grid/GridWidget.h"
#include "qt/services/MenuBinder.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// The grid's top in the window's inner area, as high as the margin at its sides.
constexpr std::int32_t GridTop = 4;

}  // namespace

MainWindow::MainWindow(frmKDLimitDesk& form, QtToolkit& toolkit) : m_form(form), m_toolkit(toolkit) {
    setObjectName(ToQt(form.Name()));
    auto* const inner = new QWidget(this);
    setCentralWidget(inner);
    Desk& desk = form.Controls();
    m_grid = new GridWidget(desk.Grid, inner);
    m_grid->setAccessibleName(tr("Variables"));
    m_progress = new ProgressWidget(inner);
    m_progress->setAccessibleName(tr("Progress"));
    m_progress->setFixedHeight(fontMetrics().height());
    new ProgressBarBinder(desk.ProgressBar1, *m_progress, toolkit.Boundary());
    form.GridPlace = [this] {
        const QPoint corner = frameGeometry().topLeft() + m_grid->pos();
        return Place{corner.x(), corner.y()};
    };
    BuildMenuBar();
    BuildStatusBar();
    inner->installEventFilter(this);

    setWindowTitle(ToQt(form.Caption()));
    m_form.OnChanged = [this] { setWindowTitle(ToQt(m_form.Caption())); };
    m_form.Unload = [this] { close(); };
    m_toolkit.SetMainWindow(
        this, [this] { ShowForm(); }, [this] { return m_grid->MenuPlace(); });
    m_toolkit.Paused = [this] {
        if (m_closeWaits) {
            // When the event comes, the job is over, or it comes in the job's next pass, which asks anew.
            QMetaObject::invokeMethod(
                this, [this] { AskWaitingClose(); }, Qt::QueuedConnection);
        }
    };
    // The system makes the window before it is shown: without a place it would stand where the pointer is.
    PlaceRestored(RoomOf(*screen()));
}

MainWindow::~MainWindow() {
    m_form.OnChanged = nullptr;
    m_form.Unload = nullptr;
    m_form.GridPlace = nullptr;
    m_toolkit.Paused = nullptr;
    m_toolkit.SetMainWindow(nullptr, nullptr, nullptr);
}

void MainWindow::BuildMenuBar() {
    // The desktop's own menu bar and screen readers send no key and no press: they reach the passes of a job,
    // and the window behind a dialog.
    const auto choose = [this](MenuItem& item) {
        if (!m_toolkit.InPass() && QGuiApplication::modalWindow() == nullptr) {
            item.UserClick();
        }
    };
    for (MenuItem* const item : m_form.MenuBar()) {
        FillMenu(*item, *menuBar()->addMenu(QString()), choose);
    }
}

void MainWindow::BuildStatusBar() {
    Desk& desk = m_form.Controls();
    for (Label* const panel : {&desk.Panel1, &desk.Panel2}) {
        auto* const view = new StatusPanel(statusBar());
        new LabelBinder(*panel, *view, m_toolkit.Boundary());
        statusBar()->addWidget(view, 1);
    }
}

Room MainWindow::OwnRoom() const {
    return RoomOf(*screen());
}

void MainWindow::PlaceRestored(const Room& room) {
    const QRect& whole = room.screen;
    const QSize wanted(fontMetrics().averageCharWidth() * 170, fontMetrics().height() * 48);
    const QSize size = wanted.boundedTo(room.free.size() * 9 / 10);
    const QSize framed = size.grownBy(m_toolkit.KnownFrame());
    const Area at = frmKDLimitDesk::Centred(whole.width(), whole.height(), framed.width(), framed.height());
    const QPoint corner = whole.topLeft() + QPoint(at.left, at.top);
    resize(size);
    move(corner);
    if (QWindow* const window = windowHandle()) {
        // A window that the desktop has not framed yet takes the corner for its inside's.
        window->setFramePosition(corner);
    }
}

void MainWindow::ShowForm() {
    if (isVisible()) {
        return;
    }
    PlaceRestored(OwnRoom());  // a dialog has come first: the desktop's frames are known
    if (m_form.Maximised()) {
        showMaximized();
    } else {
        show();
    }
}

void MainWindow::LayOut() {
    const QRect inner = centralWidget()->rect();
    const int statusHeight = statusBar()->height();
    const Area whole{inner.left(), inner.top(), inner.width(), inner.height() + statusHeight};
    const auto layout = frmKDLimitDesk::Form_Resize(whole, GridTop, statusHeight, m_progress->height());
    const auto rect = [](const Area& area) {
        return QRect(area.left, area.top, std::max(area.width, 0), std::max(area.height, 0));
    };
    m_progress->setGeometry(rect(layout.progressBar));
    m_grid->setGeometry(rect(layout.grid));
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {  // of the inner area, which alone is watched
        LayOut();
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    bool mayClose = false;
    if (m_toolkit.InPass()) {
        m_closeWaits = true;
    } else {
        m_toolkit.Boundary().Run([&] { mayClose = m_form.Form_QueryUnload(); });
    }
    event->setAccepted(mayClose);
}

void MainWindow::AskWaitingClose() {
    const bool asking =
        QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr;
    if (m_closeWaits && !asking) {
        m_closeWaits = false;
        close();
    }
}

}  // namespace kd
