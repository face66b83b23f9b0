#include "guided/Commands.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <algorithm>
#include <memory>

#include "grid/ColumnCatalogue.h"
#include "model/Columns.h"

namespace kd {

namespace {

constexpr std::int32_t ColName = cnVariableName - 1;  // screen positions
constexpr std::int32_t ColUsl = cnUSL - 1;
constexpr std::int32_t ColLsl = cnLSL - 1;
constexpr std::int32_t ColUnits = cnUnits - 1;
constexpr int LongText = 4000;  // characters
/// A desktop does what a window asks for some time after it has asked.
constexpr int SettledMs = 500;

/// The texts that the steps hand on.
struct Noted {
    Text usl;
    Text lsl;
    std::int32_t row = 0;
    std::int32_t width = 0;
};

class Trial {
public:
    Trial(Guide& guide, Application& program, const LimitChange& variable)
        : m_guide(guide), m_program(program), m_variable(variable) {}

    /// The window that is not maximised stands in the middle of the screen, its frame counted.
    void RestoreWindow() {
        if (!m_guide.JudgesPlaces()) {
            return;
        }
        Idle("the window as it is when it does not take the whole screen", [this] {
            QWidget& window = m_program.Window();
            window.showNormal();
            QTest::qWait(SettledMs);
            const QPoint off = window.frameGeometry().center() - window.screen()->geometry().center();
            if (off.manhattanLength() > 2) {  // halves are cut, of points that may be several pixels
                m_guide.Fail("the window stands beside the middle by " + PlaceText(off));
            }
            m_guide.SavePicture("24-restored");
            window.showMaximized();
            QTest::qWait(SettledMs);
        });
    }

    void SizeAColumn() {
        Idle("drag the divider of the variable names", [this] {
            m_noted->width = Grid().ColWidth(ColName);
            m_guide.DragDivider(ColName, -60);
        });
        m_guide.Check("the column has become narrower, and no filter has come up", [this] {
            return Grid().ColWidth(ColName) == m_noted->width - 60 &&
                   QApplication::activeModalWidget() == nullptr;
        });
        Idle("", [this] { m_guide.DoubleClickDivider(ColName); });
        m_guide.Check("fitted to its texts again",
                      [this] { return Grid().ColWidth(ColName) == m_noted->width; });
    }

    void FilterAtTheEdge() {
        Idle("a filter at the edge of the screen",
             [this] { m_guide.PressHeader(Grid().VisibleColFrom(Grid().Cols() - 1, -1)); });
        m_guide.Form("frmAutoFilter", "21-filter-at-the-edge", [this](QWidget& dialog) {
            CheckPlace(dialog);
            Guide::Press(dialog, "cmdCancel");
        });
    }

    void Filter() {
        Idle("filter the variable names", [this] { m_guide.PressHeader(ColName); });
        m_guide.Form("frmAutoFilter", nullptr, [this](QWidget& dialog) {
            CheckPlace(dialog);
            Guide::Press(dialog, "chkSelectAll");
            m_guide.ClickEntry(dialog, "lstAutoFilter", m_variable.variable);
            m_guide.SavePicture("10-filter");
            Guide::Press(dialog, "cmdOk");
        });
        m_guide.Check("only the rows of " + m_variable.variable + " are in sight", [this] {
            const VSFlexGrid& grid = Grid();
            for (const std::int32_t row : grid.VisibleRows()) {
                if (grid.TextMatrix(row, ColName) != m_variable.variable) {
                    return false;
                }
            }
            return !grid.VisibleRows().empty() && grid.CellPicture(ColName) == HeaderPicture::FilterOn;
        });
        m_guide.Picture("11-filtered");
    }

    void PopUp() {
        Idle("", [this] {
            m_guide.ClickCell(Row(), ColUsl);
            // The menu comes up at the pointer, which a simulated click does not move.
            const GridWidget& grid = m_guide.Grid();
            // Wayland lets nobody move it; the menu stands where it is then.
            QCursor::setPos(grid.viewport()->mapToGlobal(grid.Layout().ShownRect(Row(), ColUsl).center()));
            // Queued: the menu stays open in the handler of the click.
            QMetaObject::invokeMethod(
                &m_guide.Grid(), [this] { m_guide.ClickCell(Row(), ColUsl, Qt::RightButton); },
                Qt::QueuedConnection);
        });
        m_guide.Then(
            "the pop-up menu", [] { return QApplication::activePopupWidget() != nullptr; },
            [this] {
                m_guide.SavePicture("18-pop-up-menu");
                QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
            });
    }

    void FillAndRestore() {
        Idle("", [this] {
            m_noted->usl = Grid().TextMatrix(Row(), ColUsl);
            m_noted->lsl = Grid().TextMatrix(Row(), ColLsl);
            m_guide.ClickCell(Row(), ColUsl);
        });
        m_guide.Choose("mnuEdit", "mnuEditFill", "12-edit-menu");
        m_guide.Form("frmFill", nullptr, [this](QWidget& dialog) {
            Guide::Press(dialog, "optLimits_6");
            Guide::Press(dialog, "optPlusMinus_2");
            auto* const value = dialog.findChild<QLineEdit*>(QStringLiteral("txtLimitValue"));
            QTest::mouseClick(value, Qt::LeftButton);
            QTest::keyClicks(value, QStringLiteral("1"));
            m_guide.SavePicture("13-fill");
            Guide::Press(dialog, "cmdOk");
        });
        m_guide.Check("USL is filled with LSL plus one per cent", [this] {
            return Grid().BackColor(Row(), ColUsl) == ChangedColour &&
                   NumberAtFront(WithPoint(Grid().TextMatrix(Row(), ColUsl))) ==
                       NumberAtFront(WithPoint(m_noted->lsl)) * 1.01;
        });
        Restore("filled");
    }

    /// A refused Fill comes back where it stood, and as large.
    void FillRefused() {
        const auto before = std::make_shared<QRect>();
        Idle("", [this] { m_guide.ClickCell(Row(), ColUsl); });
        m_guide.Choose("mnuEdit", "mnuEditFill");
        m_guide.Form("frmFill", nullptr, [before](QWidget& dialog) {
            dialog.move(dialog.pos() + QPoint(40, 30));
            dialog.resize(dialog.size() + QSize(60, 20));
            QTest::qWait(SettledMs);
            *before = QRect(dialog.pos(), dialog.size());
            QTest::keyClicks(dialog.findChild<QLineEdit*>(QStringLiteral("txtConstant")),
                             QStringLiteral("abc"));
            Guide::Press(dialog, "cmdOk");
        });
        m_guide.Box("Fill contains invalid data - Could not Fill!", nullptr);
        m_guide.Form("frmFill", "22-fill-again", [this, before](QWidget& dialog) {
            if (m_guide.JudgesPlaces() && QRect(dialog.pos(), dialog.size()) != *before) {
                m_guide.Fail("Fill came back at " + PlaceText(dialog.pos()) + " instead of " +
                             PlaceText(before->topLeft()));
            }
            Guide::Press(dialog, "cmdCancel");
        });
    }

    /// However long a message is, its button stays on the screen.
    void LongMessage() {
        Idle("a text of 4,000 characters is refused", [this] {
            m_guide.ClickCell(Row(), ColUsl);
            m_guide.Key(Qt::Key_F2);
            QGuiApplication::clipboard()->setText(QString(LongText, QLatin1Char('x')));
            m_guide.Key(Qt::Key_V, Qt::ControlModifier);
            m_guide.Key(Qt::Key_Return);
        });
        m_guide.Then(
            "", [] { return Guide::Modal("MessageBox") != nullptr; }, [this] { CheckOnScreen(); });
        m_guide.Box("Invalid value 'xxx", "23-long-message");
        Idle("", [this] { m_guide.Key(Qt::Key_Escape); });
        m_guide.Check("Esc has left the cell as it was",
                      [this] { return Grid().TextMatrix(Row(), ColUsl) == m_noted->usl; });
    }

    void PasteAndRestore() {
        Idle("copy LSL and paste it over USL", [this] {
            m_guide.ClickCell(Row(), ColLsl);
            m_guide.Key(Qt::Key_C, Qt::ControlModifier);
            m_guide.ClickCell(Row(), ColUsl);
            m_guide.Key(Qt::Key_V, Qt::ControlModifier);
        });
        m_guide.Check("pasted", [this] { return Grid().TextMatrix(Row(), ColUsl) == m_noted->lsl; });
        Restore("pasted");
    }

    void ReplaceAndRestore() {
        Idle("", [this] { m_guide.ClickCell(Row(), ColName); });
        m_guide.Choose("mnuEdit", "mnuEditReplace");
        m_guide.Form("frmReplace", nullptr, [this](QWidget& dialog) {
            QTest::keyClicks(dialog.findChild<QLineEdit*>(QStringLiteral("txtFind")),
                             QStringLiteral("density"));
            QTest::keyClicks(dialog.findChild<QLineEdit*>(QStringLiteral("txtReplace")),
                             QStringLiteral("Mass"));
            m_guide.SavePicture("14-replace");
            Guide::Press(dialog, "cmdReplace");
        });
        m_guide.Check("replaced in any case",
                      [this] { return Grid().TextMatrix(Row(), ColName).rfind("Mass ", 0) == 0; });
        m_guide.Choose("mnuEdit", "mnuEditRestore");
        m_guide.Check("restored",
                      [this] { return Grid().TextMatrix(Row(), ColName) == m_variable.variable; });
    }

    void View() {
        m_guide.Choose("mnuOptions", "mnuClearFilters");
        m_guide.Check("no row is hidden", [this] {
            return static_cast<std::int32_t>(Grid().VisibleRows().size()) == Grid().Rows() - 1;
        });
        m_guide.Choose("mnuView", "mnuShowOnlyNumericVariables", "15-view-menu");
        m_guide.Choose("mnuView", "mnuShowOnlyNumericVariables");
        m_guide.Choose("mnuView", "mnuShowPaths");
        m_guide.Check("VarNo and Variable Name are frozen", [this] { return Grid().FrozenCols() == 8; });
        m_guide.Picture("16-frozen-columns");
        m_guide.Choose("mnuView", "mnuShowAll");
        Idle("", [this] { m_guide.Grid().ShowCell(1, ColUnits); });
        m_guide.Picture("19-properties");
        m_guide.Choose("mnuView", "mnuShowAll");
        m_guide.Choose("mnuView", "mnuShowPaths");
        m_guide.Choose("mnuHelp", "mnuHelpAbout");
        m_guide.Form("frmAbout", "17-about", [](QWidget& dialog) { Guide::Press(dialog, "cmdOk"); });
    }

private:
    VSFlexGrid& Grid() { return m_program.Form().Controls().Grid; }
    /// The variable's row; found by its name while it bears that name.
    std::int32_t Row() {
        if (m_noted->row == 0) {
            m_noted->row = RowOf(m_program, m_variable);
        }
        return m_noted->row;
    }
    void Idle(std::string title, std::function<void()> act) {
        m_guide.Then(
            std::move(title), [this] { return m_guide.IsIdle(); }, std::move(act));
    }
    /// The frame of a column's filter stands 10 pixels to the right of the header cell's left edge and 50
    /// below its end, counted from the window's corner, unless the screen ends before.
    void CheckPlace(const QWidget& dialog) {
        const VSFlexGrid& grid = Grid();
        const Place from = m_program.Form().GridPlace();
        const QRect room = dialog.screen()->availableGeometry();
        const QRect frame = dialog.frameGeometry();
        const QPoint place(
            std::min(from.left + grid.CellLeft() + 10, room.right() + 1 - frame.width()),
            std::min(from.top + grid.CellTop() + grid.CellHeight() + 50, room.bottom() + 1 - frame.height()));
        if (m_guide.JudgesPlaces() && frame.topLeft() != place) {
            m_guide.Fail("the filter stands at " + PlaceText(frame.topLeft()) + " instead of " +
                         PlaceText(place));
        }
    }
    /// A message box stands on its screen with its button; where windows are not told their places, it would
    /// have room there.
    void CheckOnScreen() {
        const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        const QWidget* const ok = box != nullptr ? box->button(QMessageBox::Ok) : nullptr;
        if (ok == nullptr) {
            m_guide.Fail("no box to look at");
            return;
        }
        const QRect room = box->screen()->availableGeometry();
        QRect frame = box->frameGeometry();
        if (!m_guide.JudgesPlaces()) {
            frame.moveTopLeft(room.topLeft());
        }
        if (!room.contains(frame)) {
            m_guide.Fail("a box of " + PlaceText({frame.width(), frame.height()}) + " stands at " +
                         PlaceText(frame.topLeft()) + ", off the screen");
        }
        if (!box->rect().contains(QRect(ok->mapTo(box, QPoint()), ok->size()))) {
            m_guide.Fail("the button is not in its box");
        }
    }
    static std::string PlaceText(QPoint place) {
        return std::to_string(place.x()) + ", " + std::to_string(place.y());
    }
    void Restore(const char* what) {
        m_guide.Choose("mnuEdit", "mnuEditRestore");
        m_guide.Check(std::string(what) + ", and restored", [this] {
            return Grid().TextMatrix(Row(), ColUsl) == m_noted->usl && Grid().BackColor(Row(), ColUsl) == 0;
        });
    }

    Guide& m_guide;
    Application& m_program;
    LimitChange m_variable;
    std::shared_ptr<Noted> m_noted = std::make_shared<Noted>();
};

}  // namespace

void TryCommands(Guide& guide, Application& program, const LimitChange& variable) {
    // The steps run later: they keep the trial alive.
    const auto trial = std::make_shared<Trial>(guide, program, variable);
    trial->RestoreWindow();
    trial->SizeAColumn();
    trial->FilterAtTheEdge();
    trial->Filter();
    trial->PopUp();
    trial->FillAndRestore();
    trial->FillRefused();
    trial->LongMessage();
    trial->PasteAndRestore();
    trial->ReplaceAndRestore();
    trial->View();
    guide.Then(
        "", [trial] { return true; }, [] {});
}

}  // namespace kd
