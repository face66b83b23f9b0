#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "Screen.h"
#include "commit/frmCommit.h"
#include "edit/frmFill.h"
#include "edit/frmReplace.h"
#include "fakes/Builders.h"
#include "fakes/GridDesk.h"
#include "grid/frmAutoFilter.h"
#include "lifecycle/frmKDLimitDesk.h"
#include "qt/forms/AboutDialog.h"
#include "qt/forms/AdminDialog.h"
#include "qt/forms/AutoFilterDialog.h"
#include "qt/forms/CommitDialog.h"
#include "qt/forms/FillDialog.h"
#include "qt/forms/MainWindow.h"
#include "qt/forms/ReplaceDialog.h"
#include "qt/grid/GridWidget.h"
#include "qt/services/QtText.h"

namespace kd {

/// The modal windows that come up while a test does what a user does, in order, each with what the user does
/// in it. A window that nobody foresaw is closed and fails the test, and so does one that never came, or a
/// dialog that is not laid out.
class Modals {
public:
    Modals() {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Look(); });
        m_timer.start(0);
    }
    ~Modals() {
        for (const auto& step : m_steps) {
            ADD_FAILURE() << step.name << " did not come up";
        }
    }
    Modals(const Modals&) = delete;
    Modals& operator=(const Modals&) = delete;

    Modals& Then(const char* name, std::function<void(QWidget&)> user) {
        m_steps.push_back({name, std::move(user)});
        return *this;
    }
    /// A message box with the OK button alone, which is pressed.
    Modals& ThenBox(std::string text, QMessageBox::Icon icon = QMessageBox::Warning,
                    std::string title = "KDLimitDesk") {
        return Then("MessageBox", [text = std::move(text), icon, title = std::move(title)](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            EXPECT_EQ(box.text().toStdString(), text);
            EXPECT_EQ(box.icon(), icon);
            EXPECT_EQ(box.windowTitle().toStdString(), title);
            EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
            ClickBoxButton(box, QMessageBox::Ok);
        });
    }

private:
    struct Step {
        std::string name;
        std::function<void(QWidget&)> user;
    };

    void Look() {
        QWidget* const modal = QApplication::activeModalWidget();
        if (m_begins || modal == nullptr || !modal->isVisible() ||
            std::find(m_inUse.begin(), m_inUse.end(), modal) != m_inUse.end()) {
            return;
        }
        if (!modal->isActiveWindow()) {
            modal->activateWindow();  // nobody else gives the keyboard back when a box over it has gone
            return;
        }
        if (m_steps.empty() || modal->objectName().toStdString() != m_steps.front().name) {
            auto* const box = qobject_cast<QMessageBox*>(modal);
            ADD_FAILURE() << "nobody foresaw " << modal->objectName().toStdString() << " "
                          << (box != nullptr ? box->text().toStdString() : std::string());
            modal->hide();
            return;
        }
        // Queued, since the timer rests while its own handler runs, which may open the next window.
        m_begins = true;
        QMetaObject::invokeMethod(
            &m_timer,
            [this, step = std::move(m_steps.front()), window = QPointer<QWidget>(modal)] {
                m_begins = false;
                if (window != nullptr) {
                    m_inUse.push_back(window);
                    LookAtLayout(*window);
                    step.user(*window);
                    m_inUse.pop_back();
                }
            },
            Qt::QueuedConnection);
        m_steps.pop_front();
    }

    std::deque<Step> m_steps;
    std::vector<QWidget*> m_inUse;  // the user is at work in them
    QTimer m_timer;
    bool m_begins = false;
};

/// The real main window with its real dialogs over fakes of files and suite, and the variables of one
/// application in its grid.
class WindowFixture : public testing::Test {
protected:
    ScreenDesk screen;
    frmKDLimitDesk form{screen.g};
    MainWindow window{form, screen.toolkit};
    Desk& desk = form.Controls();

    void SetUp() override {
        screen.toolkit.Register<frmAutoFilter, AutoFilterDialog>();
        screen.toolkit.Register<frmCommit, CommitDialog>();
        screen.toolkit.Register<frmFill, FillDialog>();
        screen.toolkit.Register<frmReplace, ReplaceDialog>();
        screen.toolkit.Register<frmAbout, AboutDialog>();
        screen.toolkit.Register<frmApplicationAdmin, AdminDialog>();
    }
    void Load(const ApplicationBuilder& application) {
        SetCatalogue(screen.g, screen.suite.rules);
        application.PutInto(screen);
        form.LoadAndShowApplications();
        Activate();
    }
    /// One row for each.
    void Load(const std::vector<FieldBuilder>& fields) {
        ApplicationBuilder application;
        for (const FieldBuilder& field : fields) {
            application.Field(field);
        }
        Load(application);
    }
    void Activate() {
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        Widget().setFocus();
    }

    GridWidget& Widget() { return Find<GridWidget>(window, "Grid"); }
    QPoint Middle(std::int32_t row, ColumnNumber number) {
        Widget().ShowCell(row, number - 1);
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        return Widget().Layout().ShownRect(row, number - 1).center();
    }
    void ClickCell(std::int32_t row, ColumnNumber number, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(Widget().viewport(), Qt::LeftButton, modifiers, Middle(row, number));
    }
    void PressHeader(ColumnNumber number, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(Widget().viewport(), button, {}, Middle(0, number));
    }
    void SelectCells(std::int32_t firstRow, ColumnNumber first, std::int32_t lastRow, ColumnNumber last) {
        ClickCell(firstRow, first);
        ClickCell(lastRow, last, Qt::ShiftModifier);
    }
    /// Opens a menu of the menu bar by the mouse; its entries are then as the user sees them.
    QMenu& Open(const char* menu) {
        auto& opened = Find<QMenu>(window, menu);
        QTest::mouseClick(window.menuBar(), Qt::LeftButton, {},
                          window.menuBar()->actionGeometry(opened.menuAction()).center());
        EXPECT_TRUE(opened.isVisible()) << menu;
        return opened;
    }
    void Choose(const char* menu, const char* entry) {
        QMenu& opened = Open(menu);
        QTest::mouseClick(&opened, Qt::LeftButton, {},
                          opened.actionGeometry(&Find<QAction>(window, entry)).center());
        EXPECT_FALSE(opened.isVisible());
        Activate();
    }

    Text Cell(std::int32_t row, ColumnNumber number) const {
        return Text(desk.Grid.TextMatrix(row, number - 1));
    }
    bool Marked(std::int32_t row, ColumnNumber number) const {
        return desk.Grid.BackColor(row, number - 1) == ChangedColour;
    }
    bool Shown(ColumnNumber number) const { return !desk.Grid.ColHidden(number - 1); }
    std::vector<std::int32_t> ShownRows() const { return desk.Grid.VisibleRows(); }
    QString PanelOne() { return Find<QLabel>(window, "Panel1").text(); }
};

using Rows = std::vector<std::int32_t>;

/// Texts of a list's entries, top to bottom.
inline QStringList Entries(QWidget& dialog, const char* list) {
    QStringList texts;
    const QAbstractItemModel& model = *Find<QListView>(dialog, list).model();
    for (int row = 0; row < model.rowCount(); ++row) {
        texts << model.index(row, 0).data().toString();
    }
    return texts;
}

/// The entries that bear a tick.
inline QStringList Ticked(QWidget& dialog, const char* list) {
    QStringList texts;
    const QAbstractItemModel& model = *Find<QListView>(dialog, list).model();
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.index(row, 0).data(Qt::CheckStateRole) == Qt::Checked) {
            texts << model.index(row, 0).data().toString();
        }
    }
    return texts;
}

inline void ClickEntry(QWidget& dialog, const char* list, int row) {
    auto& view = Find<QListView>(dialog, list);
    view.scrollTo(view.model()->index(row, 0));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                      view.visualRect(view.model()->index(row, 0)).center());
}

/// Replaces the text of an edit field by typing, with the keyboard alone once it has the focus.
inline void TypeInto(QWidget& dialog, const char* control, const char* text) {
    auto& edit = Find<QLineEdit>(dialog, control);
    QTest::mouseClick(&edit, Qt::LeftButton);
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, QString::fromUtf8(text));
}

/// Names of the widgets that Tab goes through, beginning with the one that has the focus.
inline std::vector<std::string> TabOrder(QWidget& dialog) {
    std::vector<std::string> names;
    for (QWidget* at = Focused(); at != nullptr; at = Focused()) {
        const std::string name = at->objectName().toStdString();
        if (std::find(names.begin(), names.end(), name) != names.end()) {
            break;
        }
        names.push_back(name);
        QTest::keyClick(at, Qt::Key_Tab);
        if (!dialog.isVisible()) {
            break;
        }
    }
    return names;
}

}  // namespace kd
