#include <QHelpEvent>
#include <QScreen>
#include <QToolTip>

#include "qt/WindowFixture.h"
#include "qt/grid/Funnel.h"

namespace kd {
namespace {

/// The column filter through the main window, from the press on a header to the rows in sight.
class ColumnFilterTest : public WindowFixture {
protected:
    void LoadThree() {
        Load({aField().Name("Fat").Usl(5), aField().Name("Protein").Usl(7), aField().Name("Sugar").Usl(5)});
    }
    /// Presses a header and does something in the dialog, which then must have gone.
    void Filter(ColumnNumber number, std::function<void(QWidget&)> user,
                Qt::MouseButton button = Qt::LeftButton) {
        Modals modals;
        modals.Then("frmAutoFilter", std::move(user));
        PressHeader(number, button);
        Activate();
    }
    /// Leaves these values ticked, the others not.
    void Keep(ColumnNumber number, const QStringList& wanted) {
        Filter(number, [&wanted](QWidget& dialog) {
            const QStringList ticked = Ticked(dialog, "lstAutoFilter");
            const QStringList all = Entries(dialog, "lstAutoFilter");
            for (int row = 0; row < all.size(); ++row) {
                if (ticked.contains(all[row]) != wanted.contains(all[row])) {
                    ClickEntry(dialog, "lstAutoFilter", row);
                }
            }
            Click(Find(dialog, "cmdOk"));
        });
    }
    QStringList Offered(ColumnNumber number) {
        QStringList entries;
        Filter(number, [&entries](QWidget& dialog) {
            entries = Entries(dialog, "lstAutoFilter");
            Press(Qt::Key_Escape);
        });
        return entries;
    }
    /// What the user reads when the mouse rests on a header.
    QString TipOf(ColumnNumber number) {
        const QPoint at = Middle(0, number);
        const QPoint global = Widget().viewport()->mapToGlobal(at);
        QMouseEvent move(QEvent::MouseMove, at, global, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(Widget().viewport(), &move);
        QHelpEvent help(QEvent::ToolTip, at, global);
        QApplication::sendEvent(Widget().viewport(), &help);
        return QToolTip::text();
    }
    /// Whether the header's picture is red on the screen.
    bool RedFunnel(ColumnNumber number) {
        (void)Middle(0, number);
        const QRect header = Widget().Layout().ShownRect(0, number - 1);
        const QPoint inFunnel(header.right() - 1 - FunnelSize / 2, header.bottom() - 1 - FunnelSize + 5);
        const QColor colour = Widget().viewport()->grab().toImage().pixelColor(inFunnel);
        EXPECT_EQ(desk.Grid.CellPicture(number - 1) == HeaderPicture::FilterOn,
                  colour.red() > colour.green() + 80);
        return colour.red() > colour.green() + 80;
    }
};

TEST_F(ColumnFilterTest, UntickedValuesLoseTheirRowsColumnsAddUpAndClearBringsAllBack) {
    LoadThree();
    ClickCell(2, cnUSL);
    EXPECT_EQ(PanelOne(), "/apps/plant.kdt []");
    Keep(cnVariableName, {"Fat", "Sugar"});
    EXPECT_EQ(ShownRows(), (Rows{1, 3}));
    EXPECT_EQ(PanelOne(), "") << "the header cell is the current one";
    EXPECT_EQ(desk.Grid.Row(), 0);
    EXPECT_EQ(desk.Grid.Col(), cnVariableName - 1);
    EXPECT_TRUE(RedFunnel(cnVariableName));
    EXPECT_FALSE(RedFunnel(cnUSL));
    ClickCell(3, cnUSL);
    EXPECT_EQ(PanelOne(), "/apps/plant.kdt []");

    EXPECT_EQ(Offered(cnUSL), QStringList({Cell(1, cnUSL).c_str()})) << "what the other column leaves";
    Keep(cnVariableName, {"Fat", "Protein", "Sugar"});
    Keep(cnUSL, {Cell(1, cnUSL).c_str()});
    EXPECT_EQ(ShownRows(), (Rows{1, 3}));
    Keep(cnVariableName, {"Sugar"});
    EXPECT_EQ(ShownRows(), Rows{3});
    EXPECT_TRUE(RedFunnel(cnUSL));

    Choose("mnuOptions", "mnuClearFilters");
    EXPECT_EQ(ShownRows(), (Rows{1, 2, 3}));
    EXPECT_FALSE(RedFunnel(cnUSL));
    EXPECT_FALSE(RedFunnel(cnVariableName));
}

TEST_F(ColumnFilterTest, AllTickedRemovesTheFilterAndTheRedFunnel) {
    LoadThree();
    Keep(cnVariableName, {"Fat"});
    ASSERT_EQ(ShownRows(), Rows{1});
    Filter(cnVariableName, [](QWidget& dialog) {
        EXPECT_EQ(Ticked(dialog, "lstAutoFilter"), QStringList{"Fat"});
        EXPECT_EQ(Entries(dialog, "lstAutoFilter"), QStringList({"Fat", "Protein", "Sugar"}));
        ClickMark(Find(dialog, "chkSelectAll"));
        Press(Qt::Key_Return);
    });
    EXPECT_EQ(ShownRows(), (Rows{1, 2, 3}));
    EXPECT_FALSE(RedFunnel(cnVariableName));
}

TEST_F(ColumnFilterTest, DialogBearsTheColumnsNameAndStandsBelowItsHeader) {
    LoadThree();
    for (const ColumnNumber number : {cnVariableName, cnUSL}) {
        (void)Middle(0, number);
        QPoint corner;
        int last = 0;  // where it still stands on the screen as a whole
        QString title;
        Filter(number, [&](QWidget& dialog) {
            corner = dialog.frameGeometry().topLeft();
            last = dialog.screen()->availableGeometry().right() + 1 - dialog.frameGeometry().width();
            title = dialog.windowTitle();
            dialog.close();
        });
        const QRect header = Widget().Layout().ShownRect(0, number - 1);
        const QPoint grid = window.frameGeometry().topLeft() + Widget().pos();
        const int left = grid.x() + desk.Grid.CellLeft() + 10;
        const int top = grid.y() + desk.Grid.CellTop() + desk.Grid.CellHeight() + 50;
        EXPECT_EQ(title.toStdString(), number == cnUSL ? "USL" : "Variable Name");
        EXPECT_EQ(corner, QPoint(std::min(left, last), top));
        EXPECT_GT(corner.y(), Widget().viewport()->mapToGlobal(header.bottomLeft()).y());
        EXPECT_GE(left, Widget().viewport()->mapToGlobal(header.topLeft()).x());
        EXPECT_LE(left, Widget().viewport()->mapToGlobal(header.topRight()).x());
    }
}

TEST_F(ColumnFilterTest, AnyMouseButtonOpensTheDialogAndNoMenu) {
    LoadThree();
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton}) {
        Filter(
            cnVariableName,
            [](QWidget& dialog) {
                EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
                Press(Qt::Key_Escape);
                EXPECT_FALSE(dialog.isVisible());
            },
            button);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }
    EXPECT_EQ(ShownRows(), (Rows{1, 2, 3}));
}

TEST_F(ColumnFilterTest, KeyboardAloneFiltersTheCurrentCellsColumn) {
    LoadThree();
    ClickCell(2, cnVariableName);
    Modals modals;
    modals.Then("frmAutoFilter", [](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Variable Name");
        Press(Qt::Key_Down);
        Press(Qt::Key_Space);
        Press(Qt::Key_Return);
    });
    Press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(ShownRows(), (Rows{2, 3}));
}

TEST_F(ColumnFilterTest, ValuesStandInTheListsOrder) {
    Load({aField().Name("b").Units("10"), aField().Name("A").Units("9"), aField().Name("B").Units(" "),
          aField().Name("c").Units("")});
    EXPECT_EQ(Offered(cnVariableName), QStringList({"A", "b", "c"})) << "b and B are one, as first spelt";
    Choose("mnuView", "mnuShowAll");
    EXPECT_EQ(Offered(cnUnits), QStringList({"(Blank)", "10", "9"}));
}

TEST_F(ColumnFilterTest, BlankIsTickedAloneAndItsRowComesBack) {
    Load({aField().Units("kg"), aField().Units("")});
    Choose("mnuView", "mnuShowAll");
    Keep(cnUnits, {"(Blank)"});
    EXPECT_EQ(ShownRows(), Rows{2});
    EXPECT_EQ(TipOf(cnUnits), GridMouse::ToolTipMarkup(" Equals \"\" "));
    Filter(cnUnits, [](QWidget& dialog) {
        EXPECT_EQ(Ticked(dialog, "lstAutoFilter"), QStringList{"(Blank)"});
        dialog.close();
    });
    EXPECT_EQ(ShownRows(), Rows{2});
}

TEST_F(ColumnFilterTest, ToolTipOfAHeaderTellsWhatIsFiltered) {
    LoadThree();
    EXPECT_EQ(TipOf(cnVariableName), GridMouse::ToolTipMarkup(" Click to Filter Column "));
    Keep(cnVariableName, {"Fat", "Sugar"});
    EXPECT_EQ(TipOf(cnUSL), GridMouse::ToolTipMarkup(" (Showing All) "));
    EXPECT_EQ(TipOf(cnVariableName), GridMouse::ToolTipMarkup(" Equals \"Fat, Sugar\" "));
    Choose("mnuOptions", "mnuClearFilters");
    EXPECT_EQ(TipOf(cnUSL), GridMouse::ToolTipMarkup(" Click to Filter Column "));
}

TEST_F(ColumnFilterTest, CancelEscAndFrameChangeNothing) {
    LoadThree();
    Keep(cnVariableName, {"Fat"});
    const std::function<void(QWidget&)> ways[] = {[](QWidget& dialog) { Click(Find(dialog, "cmdCancel")); },
                                                  [](QWidget&) { Press(Qt::Key_Escape); },
                                                  [](QWidget& dialog) { dialog.close(); }};
    for (const auto& leave : ways) {
        Filter(cnVariableName, [&leave](QWidget& dialog) {
            ClickMark(Find(dialog, "chkSelectAll"));
            leave(dialog);
        });
        EXPECT_EQ(ShownRows(), Rows{1});
        EXPECT_TRUE(RedFunnel(cnVariableName));
    }
}

TEST_F(ColumnFilterTest, EditedRowStaysInSightUntilTheNextFilter) {
    LoadThree();
    Keep(cnVariableName, {"Fat"});
    ClickCell(1, cnVariableName);
    Type("Salt");
    Press(Qt::Key_Return);
    EXPECT_EQ(Cell(1, cnVariableName), "Salt");
    EXPECT_EQ(ShownRows(), Rows{1});
    EXPECT_EQ(Offered(cnVariableName), QStringList({"Protein", "Salt", "Sugar"}));
    Keep(cnVariableName, {"Protein", "Sugar"});
    EXPECT_EQ(ShownRows(), (Rows{2, 3}));
}

// --- a cell editor stands open ----------------------------------------------------------------------------

TEST_F(ColumnFilterTest, PressTakesAnAcceptedTextFromTheEditorBeforeTheValuesAreRead) {
    LoadThree();
    ClickCell(1, cnVariableName);
    Type("Water");
    ASSERT_TRUE(desk.Grid.EditWindow());
    EXPECT_EQ(Offered(cnVariableName), QStringList({"Protein", "Sugar", "Water"}));
    EXPECT_FALSE(desk.Grid.EditWindow());
    EXPECT_TRUE(Marked(1, cnVariableName));
}

TEST_F(ColumnFilterTest, RefusedTextKeepsItsEditorAndNoDialogOpens) {
    LoadThree();
    const Text before = Cell(1, cnUSL);
    ClickCell(1, cnUSL);
    Type("abc");
    {
        Modals modals;
        modals.ThenBox("Invalid value 'abc' entered for cell!", QMessageBox::NoIcon);
        PressHeader(cnVariableName);
    }
    EXPECT_TRUE(desk.Grid.EditWindow());
    EXPECT_EQ(desk.Grid.EditText(), "abc");
    EXPECT_EQ(desk.Grid.Row(), 1);
    EXPECT_EQ(desk.Grid.Col(), cnUSL - 1);
    EXPECT_EQ(Cell(1, cnUSL), before);
    desk.Grid.SetEditText(before);
}

TEST_F(ColumnFilterTest, UntouchedTextIsNotJudgedAndTheDialogOpens) {
    // A blank limit came from the file and would be refused if it were typed.
    LoadThree();
    desk.Grid.SetTextMatrix(1, cnUSL - 1, "");
    ClickCell(1, cnUSL);
    Press(Qt::Key_F2);
    ASSERT_TRUE(desk.Grid.EditWindow());
    EXPECT_EQ(Offered(cnVariableName).size(), 3);
    EXPECT_FALSE(desk.Grid.EditWindow());
}

// --- Clear All Filters ------------------------------------------------------------------------------------

TEST_F(ColumnFilterTest, ClearAllFiltersIsThereOnlyWhenAColumnIsFiltered) {
    LoadThree();
    QMenu& menu = Open("mnuOptions");
    EXPECT_EQ(Find<QAction>(window, "mnuClearFilters").text(), "&Clear All Filters");
    EXPECT_FALSE(Find<QAction>(window, "mnuClearFilters").isEnabled());
    menu.close();
    Keep(cnUSL, {Cell(2, cnUSL).c_str()});
    Open("mnuOptions");
    EXPECT_TRUE(Find<QAction>(window, "mnuClearFilters").isEnabled());
    menu.close();
    Choose("mnuOptions", "mnuClearFilters");
    Open("mnuOptions");
    EXPECT_FALSE(Find<QAction>(window, "mnuClearFilters").isEnabled());
    menu.close();
}

TEST_F(ColumnFilterTest, ClearAllFiltersShowsNonNumericRowsUntilTheNextFilterThoughTheTickStays) {
    Load({aField().Name("Fat"), aField().Name("Note").Type("T"), aField().Name("Sugar")});
    ASSERT_EQ(ShownRows(), (Rows{1, 3}));
    EXPECT_EQ(Offered(cnVariableName), QStringList({"Fat", "Sugar"}));
    Keep(cnVariableName, {"Fat"});
    Choose("mnuOptions", "mnuClearFilters");
    EXPECT_EQ(ShownRows(), (Rows{1, 2, 3}));
    EXPECT_TRUE(Find<QAction>(window, "mnuShowOnlyNumericVariables").isChecked());
    Filter(cnVariableName, [](QWidget&) { Press(Qt::Key_Return); });
    EXPECT_EQ(ShownRows(), (Rows{1, 3}));
}

}  // namespace
}  // namespace kd
