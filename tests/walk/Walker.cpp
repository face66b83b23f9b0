#include "walk/Walker.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QUrl>
#include <QWindow>
#include <algorithm>
#include <array>
#include <utility>

#include "model/Columns.h"
#include "model/modKDLimitDesk.h"
#include "qt/grid/GridMetrics.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

constexpr std::array<const char*, 4> Schemes{"file", "http", "https", "mailto"};
constexpr std::size_t TrailLength = 25;

std::string NameOf(const QObject& object) {
    const std::string name = object.objectName().toStdString();
    return name.empty() ? object.metaObject()->className() : name;
}

}  // namespace

Walker::Walker(std::uint32_t seed, QString folder, std::function<void(const std::string&)> fail)
    : m_random(seed),
      m_folder(std::move(folder)),
      m_fail(std::move(fail)),
      m_watch(m_folder.toStdString(), [this](const std::string& what) { Fail(what); }) {
    QObject::connect(&m_timer, &QTimer::timeout, this, &Walker::Tick);
    for (const char* scheme : Schemes) {
        QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "Opened");
    }
}

Walker::~Walker() {
    for (const char* scheme : Schemes) {
        QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }
}

void Walker::Opened(const QUrl& address) {
    ++m_counts["opened " + address.scheme().toStdString()];
    if (address.isLocalFile() && !address.toLocalFile().startsWith(m_folder)) {
        Fail("a page outside the program's folder is opened: " + address.toString().toStdString());
    }
}

int Walker::Walk(Application& program, int events) {
    m_program = &program;
    m_left = events;
    m_sent = 0;
    m_waiting.clear();
    m_watch.Begin(program);
    CountCommands();
    Did("start");
    m_timer.start(0);
    if (program.Start()) {
        QApplication::exec();
    }
    m_timer.stop();
    m_program = nullptr;
    QCoreApplication::sendPostedEvents();
    return m_sent;
}

/// Counts how often each command runs, and tells the watch of those that move the baseline.
void Walker::CountCommands() {
    Desk& d = m_program->Form().Controls();
    for (MenuItem* const item :
         {&d.mnuApplications, &d.mnuCommit,       &d.mnuClose,     &d.mnuEditRestore,
          &d.mnuEditCut,      &d.mnuEditCopy,     &d.mnuEditPaste, &d.mnuEditFill,
          &d.mnuEditReplace,  &d.mnuClearFilters, &d.mnuShowPaths, &d.mnuShowOnlyNumericVariables,
          &d.mnuShowAll,      &d.mnuHelpAbout,    &d.mnuRestore,   &d.mnuCut,
          &d.mnuCopy,         &d.mnuPaste,        &d.mnuFill,      &d.mnuReplace}) {
        item->Click = [this, item, handler = item->Click] {
            ++m_counts["command " + item->Name()];
            handler();
        };
    }
    d.mnuCommit.Click = [this, handler = d.mnuCommit.Click] {
        m_committing = true;
        handler();
        m_committing = false;
        m_watch.BaselineMoves();
    };
    d.mnuApplications.Click = [this, handler = d.mnuApplications.Click] {
        m_loading = true;
        handler();
        m_loading = false;
    };
    d.Grid.AfterEdit = [this, handler = d.Grid.AfterEdit](std::int32_t row, std::int32_t screenCol) {
        ++m_counts["cell edited"];
        handler(row, screenCol);
    };
}

void Walker::Tick() {
    // Queued, since a timer does not fire again while its own handler runs: an event may open a modal window
    // and come back only when that has gone, and the next ones are sent meanwhile.
    if (!m_pending && m_program != nullptr) {
        m_pending = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_pending = false;
                if (m_program != nullptr) {
                    Act();
                }
            },
            Qt::QueuedConnection);
    }
}

void Walker::Send() {
    --m_left;
    ++m_sent;
    ++m_total;
    m_watch.Event();
}

void Walker::Act() {
    if (m_program->Screen().InPass()) {
        ActInJob();
        return;
    }
    QWidget* const popup = QApplication::activePopupWidget();
    QWidget* const modal = QApplication::activeModalWidget();
    Notice(modal, popup);
    if (modal == nullptr && popup == nullptr && m_program->Window().isVisible()) {
        m_watch.Look();
    } else {
        m_watch.LookInJob();
    }
    if (m_left <= 0) {
        Finish();
        return;
    }
    if (modal == nullptr && popup == nullptr && !m_program->Window().isVisible()) {
        QApplication::exit();
        return;
    }
    if (!m_waiting.empty()) {
        ComeThrough();
        return;
    }
    Send();
    if (QApplication::activeWindow() == nullptr || QApplication::focusWidget() == nullptr) {
        // Without a window manager nobody gives the keyboard back when a window has gone.
        (modal != nullptr ? modal : &m_program->Window())->activateWindow();
    }
    if (popup != nullptr) {
        ActOnPopup(*popup);
    } else if (qobject_cast<QFileDialog*>(modal) != nullptr) {
        ActOnFileDialog(*modal);
    } else if (modal != nullptr) {
        ActOnDialog(*modal);
    } else {
        ActOnWindow();
    }
}

/// In the middle of a job the message loop keeps clicks and keys until the job is over; a request to close
/// comes through at once.
void Walker::ActInJob() {
    const std::string job = m_loading ? "a load" : m_committing ? "a commit" : "a filter's work";
    if (m_loading || m_committing) {
        m_watch.BaselineMoves();
    }
    m_watch.LookInJob();
    ++m_counts["looks in the middle of " + job];
    if (m_left <= 0 || !m_program->Window().isVisible() || !OneIn(3)) {
        return;
    }
    Send();
    ++m_counts["events in the middle of " + job];
    if (OneIn(8)) {
        Did("close in the middle of " + job);
        m_program->Window().close();
    } else if (OneIn(2)) {
        Did("click in the middle of " + job);
        m_waiting.push_back([x = Below(1000), y = Below(1000)](QWindow& window) {
            const QPointF place(x * window.width() / 1000.0, y * window.height() / 1000.0);
            const QPointF global = window.mapToGlobal(place);
            qt_handleMouseEvent(&window, place, global, Qt::LeftButton, Qt::LeftButton,
                                QEvent::MouseButtonPress, {}, 0);
            qt_handleMouseEvent(&window, place, global, Qt::NoButton, Qt::LeftButton,
                                QEvent::MouseButtonRelease, {}, 0);
        });
    } else {
        Did("key in the middle of " + job);
        m_waiting.emplace_back([](QWindow& window) {
            qt_handleKeyEvent(&window, QEvent::KeyPress, Qt::Key_5, {}, QStringLiteral("5"));
            qt_handleKeyEvent(&window, QEvent::KeyRelease, Qt::Key_5, {}, QStringLiteral("5"));
        });
    }
}

/// All that waited comes at once, with nobody looking in between.
void Walker::ComeThrough() {
    Did("what waited comes through");
    QPointer<QWindow> window(m_program->Window().windowHandle());
    for (const auto& input : std::exchange(m_waiting, {})) {
        if (window) {
            input(*window);
        }
    }
}

/// Counts the window that has come up, and what it lets the program write.
void Walker::Notice(QWidget* modal, QWidget* popup) {
    QWidget* const top = popup != nullptr ? popup : modal;
    if (top == m_noticed || top == nullptr) {
        m_noticed = top;
        return;
    }
    m_noticed = top;
    const std::string name = NameOf(*top);
    ++m_counts["window " + name];
    const std::string folder = m_folder.toStdString();
    if (name == "frmCommit") {
        m_watch.MayWrite(folder + "/apps/");
    } else if (name == "frmApplicationAdmin") {
        m_watch.MayWrite(folder + "/config/");
        m_watch.BaselineMoves();
    } else if (const auto* const box = qobject_cast<QMessageBox*>(top)) {
        const QString text = box->text();
        Did("box: " + text.toStdString());
        // A whole number that does not fit is the one failure that a user can bring about.
        if (text.startsWith(QLatin1String("Run-time error")) &&
            !text.startsWith(QLatin1String("Run-time error '6'"))) {
            Fail("a failure that nobody handled: " + text.toStdString());
        }
        if (text.endsWith(QLatin1String("File(s) have been modified."))) {
            ++m_counts["commit that came to its end"];
        }
    }
}

void Walker::Finish() {
    if (QWidget* const popup = QApplication::activePopupWidget()) {
        popup->close();
    } else if (QWidget* const modal = QApplication::activeModalWidget()) {
        Did("the end");
        QTest::keyClick(modal, Qt::Key_Escape);
        if (QApplication::activeModalWidget() == modal) {
            modal->close();
        }
    } else {
        m_program->Window().hide();
        QApplication::exit();
    }
}

GridWidget& Walker::Grid() const {
    return *m_program->Window().findChild<GridWidget*>(QStringLiteral("Grid"));
}

void Walker::ClickSomewhere(QWidget& widget) {
    const QPoint place(Below(std::max(widget.width(), 1)), Below(std::max(widget.height(), 1)));
    static constexpr std::array<Qt::KeyboardModifier, 6> Modifiers{Qt::NoModifier,    Qt::NoModifier,
                                                                   Qt::NoModifier,    Qt::NoModifier,
                                                                   Qt::ShiftModifier, Qt::ControlModifier};
    const auto modifier = Modifiers[static_cast<std::size_t>(Below(6))];
    const QPointer<QWidget> target(&widget);
    switch (Below(6)) {
        case 0:
            ++m_counts["double clicks"];
            QTest::mouseDClick(&widget, Qt::LeftButton, modifier, place);
            return;
        case 1: {
            ++m_counts["drags"];
            QTest::mousePress(&widget, Qt::LeftButton, modifier, place);
            const QPoint end(Below(std::max(widget.width(), 1)), Below(std::max(widget.height(), 1)));
            if (target) {
                QTest::mouseMove(&widget, end);
            }
            if (target) {
                QTest::mouseRelease(&widget, Qt::LeftButton, modifier, end);
            }
            return;
        }
        case 2: {
            ++m_counts["right clicks"];
            QTest::mouseClick(&widget, Qt::RightButton, modifier, place);
            if (target && QApplication::activePopupWidget() == nullptr) {
                QContextMenuEvent menu(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
                QApplication::sendEvent(&widget, &menu);
            }
            return;
        }
        default:
            ++m_counts["clicks"];
            QTest::mouseClick(&widget, Qt::LeftButton, modifier, place);
            return;
    }
}

void Walker::ClickAHeader() {
    QWidget& cells = *Grid().viewport();
    Did("header");
    ++m_counts["clicks"];
    QTest::mouseClick(&cells, Qt::LeftButton, {}, QPoint(Below(std::max(cells.width(), 1)), 5));
}

namespace {

/// How wide a drag makes a column at the most: a frozen one leaves a column's width to those that scroll, or
/// stays as wide as it is.
int MostByHand(const GridWidget& grid, const GridLayout::Column& column) {
    const GridLayout& layout = grid.Layout();
    if (!column.frozen || layout.Columns().back().frozen) {
        return std::numeric_limits<int>::max();
    }
    const int others = layout.FrozenWidth() - column.width;
    const int room = grid.viewport()->width() - others - layout.GetSizes().defaultColWidth;
    return std::max(room, column.width);
}

}  // namespace

void Walker::DragADivider() {
    GridWidget& grid = Grid();
    QWidget& cells = *grid.viewport();
    const auto& columns = grid.Layout().Columns();
    if (columns.empty()) {
        return;
    }
    const GridLayout::Column column =
        columns[static_cast<std::size_t>(Below(static_cast<int>(columns.size())))];
    const QPoint edge(grid.Layout().LeftOf(column) + column.width - 1, 5);
    if (grid.Layout().DividerAt(edge, 6) != column.screenCol || !cells.rect().contains(edge)) {
        return;  // scrolled out of sight
    }
    Did("divider");
    const int by = Below(200) - 100;
    const int width = std::max(std::min(column.width + by, MostByHand(grid, column)), LeastColWidth);
    QTest::mousePress(&cells, Qt::LeftButton, {}, edge);
    QMouseEvent move(QEvent::MouseMove, edge + QPoint(by, 0), cells.mapToGlobal(edge + QPoint(by, 0)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&cells, &move);
    QTest::mouseRelease(&cells, Qt::LeftButton, {}, edge + QPoint(by, 0));
    ++m_counts["dividers dragged"];
    if (grid.Grid().ColWidth(column.screenCol) != width) {
        Fail("a column has another width than it was dragged to");
    }
    if (QApplication::activeModalWidget() != nullptr) {
        Fail("a window has come up over a divider that was dragged");
    }
}

void Walker::PressSomeKey() {
    QWidget* const focus = QApplication::focusWidget();
    if (focus == nullptr) {
        return;
    }
    static constexpr std::array<Qt::Key, 22> Keys{
        Qt::Key_Return,   Qt::Key_Return, Qt::Key_Escape,    Qt::Key_Tab,  Qt::Key_Backtab, Qt::Key_Up,
        Qt::Key_Down,     Qt::Key_Left,   Qt::Key_Right,     Qt::Key_Home, Qt::Key_End,     Qt::Key_PageUp,
        Qt::Key_PageDown, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_F2,   Qt::Key_Space,   Qt::Key_C,
        Qt::Key_V,        Qt::Key_X,      Qt::Key_Z,         Qt::Key_A};
    const Qt::Key key = Keys[static_cast<std::size_t>(Below(static_cast<int>(Keys.size())))];
    const bool letter = key >= Qt::Key_A && key <= Qt::Key_Z;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    if (letter || OneIn(8)) {
        modifiers = Qt::ControlModifier;
    } else if (OneIn(4)) {
        modifiers = Qt::ShiftModifier;
    } else if (key >= Qt::Key_Left && key <= Qt::Key_Down && OneIn(3)) {
        modifiers = Qt::AltModifier;
    }
    Did("key " + std::to_string(key) + " to " + NameOf(*focus));
    ++m_counts["keys"];
    QTest::keyClick(focus, key, modifiers);
}

/// What suits the current column, mostly: letters of a limit, what stands elsewhere in it; or anything at
/// all.
QString Walker::SomethingToType() {
    const VSFlexGrid& grid = m_program->Form().Controls().Grid;
    static constexpr std::array<const char*, 16> Texts{"C",     "B",     "c",   "b",       "5", "12.5",
                                                       "-3,25", "F",     "1e9", "  7 ",    "x", "Y",
                                                       "AB",    "B\xE4", "C",   "99999999"};
    const bool known = grid.Rows() > 1 && grid.Col() >= 0 && grid.Col() < grid.Cols();
    const std::int32_t column = known ? grid.ColData(grid.Col()) : 0;
    if (LimitOf(column) != NoLimit && !OneIn(4)) {
        return QLatin1String(Texts[static_cast<std::size_t>(Below(4))]);
    }
    if (known && OneIn(2)) {
        return ToQt(grid.TextMatrix(1 + Below(grid.Rows() - 1), grid.Col()));
    }
    return QString::fromLatin1(Texts[static_cast<std::size_t>(Below(static_cast<int>(Texts.size())))]);
}

void Walker::TypeSomething() {
    const QString text = SomethingToType();
    Did("type " + text.toStdString());
    ++m_counts["texts typed"];
    for (const QChar c : text) {
        QWidget* const focus = QApplication::focusWidget();
        QWidget* const modal = QApplication::activeModalWidget();
        if (focus == nullptr || (modal != nullptr && modal != focus->window())) {
            return;  // a window came up in between
        }
        // Any letter, not those alone that the test driver knows a key of.
        QTest::sendKeyEvent(QTest::Click, focus, static_cast<Qt::Key>(c.toUpper().unicode()), QString(c), {});
    }
}

void Walker::ActOnPopup(QWidget& popup) {
    Did("pop-up " + NameOf(popup));
    auto* const menu = qobject_cast<QMenu*>(&popup);
    if (menu != nullptr && !OneIn(4)) {
        ActOnMenu(*menu);
        return;
    }
    ++m_counts["keys"];
    switch (Below(5)) {
        case 0:
            QTest::keyClick(&popup, Qt::Key_Escape);
            return;
        case 1:
            QTest::keyClick(&popup, Qt::Key_Return);
            return;
        case 2:
            ClickSomewhere(popup);
            return;
        default:
            QTest::keyClick(&popup, OneIn(2) ? Qt::Key_Down : Qt::Key_Up);
            return;
    }
}

void Walker::ActOnMenu(QMenu& menu) {
    QList<QAction*> actions = menu.actions();
    if (!OneIn(5)) {
        actions.removeIf([](const QAction* action) { return action->isSeparator() || !action->isEnabled(); });
    }
    if (actions.isEmpty()) {
        QTest::keyClick(&menu, Qt::Key_Escape);
        return;
    }
    QAction* action = actions[Below(static_cast<int>(actions.size()))];
    for (QAction* const entry : actions) {
        // A commit is why one goes to that menu.
        action = entry->objectName() == QLatin1String("mnuCommit") && OneIn(2) ? entry : action;
    }
    Did("entry " + action->text().toStdString());
    ++m_counts["clicks"];
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
}

/// The platform's own dialog can rename and delete files: it is left alone but for a choice and its end.
void Walker::ActOnFileDialog(QWidget& dialog) {
    Did("file dialog");
    auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (name != nullptr && !OneIn(3)) {
        static constexpr std::array<const char*, 4> Names{"/apps/primer.kdt6", "/apps/powerlv.kdt6",
                                                          "/apps/astmc150.kdt", "/apps/nobody.kdt"};
        name->setText(m_folder + QLatin1String(Names[static_cast<std::size_t>(Below(4))]));
        QTest::keyClick(name, Qt::Key_Return);
    } else {
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }
}

/// What most filters are made by: nothing but one value.
void Walker::ChooseOneValue(QWidget& dialog) {
    Did("one value of the filter");
    auto* const all = dialog.findChild<QWidget*>(QStringLiteral("chkSelectAll"));
    auto* const list = dialog.findChild<QListView*>();
    auto* const ok = dialog.findChild<QWidget*>(QStringLiteral("cmdOk"));
    const QPoint first(10, 5 + Below(60));
    QTest::mouseClick(all, Qt::LeftButton, {}, QPoint(8, all->height() / 2));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, first);
    m_counts["clicks"] += 3;
    QTest::mouseClick(ok, Qt::LeftButton, {}, QPoint(8, ok->height() / 2));
}

void Walker::ActOnDialog(QWidget& dialog) {
    if (OneIn(40)) {
        Did("close " + NameOf(dialog));
        ++m_counts["windows closed by their frame"];
        dialog.close();
        return;
    }
    if (dialog.objectName() == QLatin1String("frmAutoFilter") && OneIn(4)) {
        ChooseOneValue(dialog);
        return;
    }
    if (OneIn(5)) {
        PressSomeKey();
        return;
    }
    if (OneIn(6)) {
        TypeSomething();
        return;
    }
    // The parts of another window, such as a combo box's list, are not the dialog's.
    QList<QWidget*> widgets;
    QList<QWidget*> buttons;
    for (QWidget* const widget : dialog.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->isEnabled() && widget->window() == &dialog) {
            (qobject_cast<QPushButton*>(widget) != nullptr ? buttons : widgets).append(widget);
        }
    }
    const bool box = qobject_cast<QMessageBox*>(&dialog) != nullptr;
    QList<QWidget*>& chosen =
        widgets.isEmpty() || (!buttons.isEmpty() && (box || OneIn(3))) ? buttons : widgets;
    if (chosen.isEmpty()) {
        return;
    }
    auto* const ok = dialog.findChild<QPushButton*>(QStringLiteral("cmdOk"));
    const bool toEnd = &chosen == &buttons && ok != nullptr && ok->isEnabled() && OneIn(2);
    QWidget& widget = toEnd ? *ok : *chosen[Below(static_cast<int>(chosen.size()))];
    Did(NameOf(dialog) + " " + NameOf(widget));
    if (auto* const button = qobject_cast<QAbstractButton*>(&widget)) {
        ++m_counts["clicks"];
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    } else if (qobject_cast<QListView*>(widget.parentWidget()) != nullptr && OneIn(2)) {
        // Where the check boxes are.
        ++m_counts["clicks"];
        QTest::mouseClick(&widget, Qt::LeftButton, {}, QPoint(10, Below(std::max(widget.height(), 1))));
    } else {
        ClickSomewhere(widget);
    }
}

bool Walker::IsFiltered() const {
    const cLabels& labels = *m_program->Data().gLabels;
    return std::any_of(labels.begin(), labels.end(),
                       [](const auto& label) { return label->Filters()->Count() > 0; });
}

void Walker::ActOnGrid() {
    GridWidget& grid = Grid();
    switch (Below(10)) {
        case 0:
        case 1:
            PressSomeKey();
            return;
        case 2:
        case 3:
            grid.setFocus();
            TypeSomething();
            if (OneIn(2) && QApplication::activeModalWidget() == nullptr &&
                QApplication::focusWidget() != nullptr) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            }
            return;
        case 4:
            Did("scroll");
            ++m_counts["scrolls"];
            grid.verticalScrollBar()->setValue(Below(grid.verticalScrollBar()->maximum() + 1));
            grid.horizontalScrollBar()->setValue(Below(grid.horizontalScrollBar()->maximum() + 1));
            return;
        default: {
            QWidget* const editor = grid.findChild<QWidget*>(QStringLiteral("CellEditor"));
            const bool inEditor = OneIn(10) && editor != nullptr && editor->isVisible();
            Did(inEditor ? "editor" : "grid");
            ClickSomewhere(inEditor ? *editor : *grid.viewport());
            return;
        }
    }
}

void Walker::ActOnWindow() {
    MainWindow& window = m_program->Window();
    if (OneIn(150)) {
        Did("close");
        ++m_counts["windows closed by their frame"];
        window.close();
    } else if (OneIn(20)) {
        ClickAHeader();
    } else if (OneIn(40)) {
        DragADivider();
    } else if (OneIn(8)) {
        auto* const bar = window.findChild<QMenuBar*>();
        const QList<QAction*> menus = bar->actions();
        const int toFile = modKDLimitDesk::AnyChanges(m_program->Data()) && OneIn(4) ? 0 : -1;
        const int toOptions = IsFiltered() && OneIn(2) ? 2 : -1;
        const int wanted = std::max(toFile, toOptions);
        QAction* const menu = menus[wanted >= 0 ? wanted : Below(static_cast<int>(menus.size()))];
        Did("menu " + menu->text().toStdString());
        ++m_counts["clicks"];
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(menu).center());
    } else if (OneIn(40)) {
        Did("resize");
        ++m_counts["resizes"];
        window.resize(300 + Below(1200), 200 + Below(900));
    } else {
        ActOnGrid();
    }
}

void Walker::Did(std::string what) {
    m_trail.push_back(std::move(what));
    if (m_trail.size() > TrailLength) {
        m_trail.pop_front();
    }
}

/// Once: what follows from a thing out of order is not of interest.
void Walker::Fail(const std::string& what) {
    if (m_left <= 0 && m_total > 0) {
        return;
    }
    std::string trail;
    for (const std::string& step : m_trail) {
        trail += "\n  " + step;
    }
    m_fail(what + " (event " + std::to_string(m_total) + ", the last of them:" + trail + ")");
    m_left = 0;
}

}  // namespace kd
