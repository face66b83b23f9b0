#include <QProgressBar>

#include "model/Columns.h"
#include "qt/WindowFixture.h"

namespace kd {
namespace {

/// The View menu and the status panels in the main window, chosen by the mouse.
class ViewModesWindowTest : public WindowFixture {
protected:
    void LoadFour() {
        Load(ApplicationBuilder()
                 .Field(aField().Name("Fat"))
                 .Field(aField().Name("Note").Type("T"))
                 .View("Line 2", 1)
                 .Field(aField().Name("Sugar"))
                 .Field(aField().Name("Taste").Type("L")));
    }
    bool Ticked(const char* entry) {
        const auto& action = Find<QAction>(window, entry);
        EXPECT_TRUE(action.isCheckable()) << entry;
        return action.isChecked();
    }
    void ShowPaths() { Choose("mnuView", "mnuShowPaths"); }
    void ShowNumeric() { Choose("mnuView", "mnuShowOnlyNumericVariables"); }
    void ShowAll() { Choose("mnuView", "mnuShowAll"); }
    /// Numbers of the columns that can be seen, left to right, as the widget lays them out.
    std::vector<int> ColumnsInSight() {
        std::vector<int> numbers;
        for (const auto& column : Widget().Layout().Columns()) {
            numbers.push_back(desk.Grid.ColData(column.screenCol));
        }
        return numbers;
    }
    static std::vector<int> Numbers(std::vector<int> numbers, int first, int last) {
        for (int number = first; number <= last; ++number) {
            numbers.push_back(number);
        }
        return numbers;
    }
    const std::vector<int> plain =
        Numbers({cnFilename, cnTitle, cnViewName}, FirstVariableColumn, cnDecimals);
    const std::vector<int> all = Numbers({cnFilename, cnTitle, cnViewName}, FirstVariableColumn, ColumnCount);
    const std::vector<int> withoutPaths = Numbers({}, FirstVariableColumn, cnDecimals);
    const std::vector<int> allWithoutPaths = Numbers({}, FirstVariableColumn, ColumnCount);
    void SetFilter(ColumnNumber number) {
        Modals modals;
        modals.Then("frmAutoFilter", [](QWidget& dialog) {
            ClickEntry(dialog, "lstAutoFilter", 0);
            Click(Find(dialog, "cmdOk"));
        });
        PressHeader(number);
        Activate();
    }
};

TEST_F(ViewModesWindowTest, TicksOfALoadAreShownInTheMenu) {
    LoadFour();
    QMenu& menu = Open("mnuView");
    QStringList captions;
    for (const QAction* const action : menu.actions()) {
        captions << action->text().remove('&');
    }
    EXPECT_EQ(captions, QStringList({"Show Paths", "Show Only Numeric Variables", "Show All Properties"}));
    EXPECT_TRUE(Ticked("mnuShowPaths"));
    EXPECT_TRUE(Ticked("mnuShowOnlyNumericVariables"));
    EXPECT_FALSE(Ticked("mnuShowAll"));
    menu.close();
    EXPECT_EQ(ColumnsInSight(), plain);
    EXPECT_EQ(desk.Grid.FrozenCols(), 0);
    EXPECT_EQ(ShownRows(), (Rows{1, 3}));
}

TEST_F(ViewModesWindowTest, WithoutPathsTheVariablesStayAtTheLeftWhileTheLimitsScroll) {
    LoadFour();
    ShowPaths();
    EXPECT_FALSE(Ticked("mnuShowPaths"));
    EXPECT_EQ(ColumnsInSight(), withoutPaths);
    EXPECT_EQ(desk.Grid.FrozenCols(), 8);
    const int nameBefore = Widget().Layout().CellRect(1, cnVariableName - 1).left();
    const int limitBefore = Widget().Layout().CellRect(1, cnUSL - 1).left();
    Widget().ShowCell(1, cnDecimals - 1);
    EXPECT_EQ(Widget().Layout().CellRect(1, cnVariableName - 1).left(), nameBefore);
    EXPECT_LT(Widget().Layout().CellRect(1, cnUSL - 1).left(), limitBefore);
    ShowPaths();
    EXPECT_TRUE(Ticked("mnuShowPaths"));
    EXPECT_EQ(ColumnsInSight(), plain);
    EXPECT_EQ(desk.Grid.FrozenCols(), 0);
}

TEST_F(ViewModesWindowTest, AllPropertiesComeAndGo) {
    LoadFour();
    ShowAll();
    EXPECT_TRUE(Ticked("mnuShowAll"));
    EXPECT_EQ(ColumnsInSight(), all);
    ShowAll();
    EXPECT_FALSE(Ticked("mnuShowAll"));
    EXPECT_EQ(ColumnsInSight(), plain);
}

TEST_F(ViewModesWindowTest, TickingShowPathsHidesThePropertiesThoughTheirTickStaysAndTwoClicksBringThemBack) {
    LoadFour();
    ShowAll();
    ShowPaths();
    EXPECT_EQ(ColumnsInSight(), allWithoutPaths) << "unticking leaves the properties";
    ShowPaths();
    EXPECT_TRUE(Ticked("mnuShowAll"));
    EXPECT_EQ(ColumnsInSight(), plain);
    ShowAll();
    EXPECT_FALSE(Ticked("mnuShowAll"));
    EXPECT_EQ(ColumnsInSight(), plain);
    ShowAll();
    EXPECT_TRUE(Ticked("mnuShowAll"));
    EXPECT_EQ(ColumnsInSight(), all);
}

TEST_F(ViewModesWindowTest, PropertiesComeWhileThePathsAreHiddenAndLeaveThemAndTheFrozenColumns) {
    LoadFour();
    ShowPaths();
    ShowAll();
    EXPECT_EQ(ColumnsInSight(), allWithoutPaths);
    EXPECT_EQ(desk.Grid.FrozenCols(), 8);
    EXPECT_FALSE(Ticked("mnuShowPaths"));
}

TEST_F(ViewModesWindowTest, ALoadTicksPathsAndNumericAnewAndHidesThePropertiesUnderTheirTick) {
    LoadFour();
    ShowPaths();
    ShowNumeric();
    ShowAll();
    SetFilter(cnVariableName);
    form.LoadAndShowApplications();
    EXPECT_TRUE(Ticked("mnuShowPaths"));
    EXPECT_TRUE(Ticked("mnuShowOnlyNumericVariables"));
    EXPECT_TRUE(Ticked("mnuShowAll"));
    EXPECT_EQ(desk.Grid.FrozenCols(), 0);
    EXPECT_EQ(ShownRows(), (Rows{1, 3}));
    EXPECT_EQ(desk.Grid.CellPicture(cnVariableName - 1), HeaderPicture::FilterOff);
    EXPECT_FALSE(Shown(cnUnits));
    EXPECT_TRUE(Shown(cnFilename));
}

TEST_F(ViewModesWindowTest, NumericRuleTogglesRowsAndDropsEveryFilterBothWays) {
    LoadFour();
    for (const bool untick : {true, false}) {
        SetFilter(cnVariableName);
        ASSERT_EQ(desk.Grid.CellPicture(cnVariableName - 1), HeaderPicture::FilterOn);
        ShowNumeric();
        EXPECT_EQ(Ticked("mnuShowOnlyNumericVariables"), !untick);
        EXPECT_EQ(ShownRows(), untick ? (Rows{1, 2, 3, 4}) : (Rows{1, 3}));
        EXPECT_EQ(desk.Grid.CellPicture(cnVariableName - 1), HeaderPicture::FilterOff);
    }
    const QMenu& menu = Open("mnuOptions");
    EXPECT_FALSE(Find<QAction>(window, "mnuClearFilters").isEnabled());
    EXPECT_TRUE(menu.isVisible());
    Find<QMenu>(window, "mnuOptions").close();
}

TEST_F(ViewModesWindowTest, TwoClicksOfTheNumericRuleHideAgainWhatClearAllFiltersShowed) {
    LoadFour();
    SetFilter(cnVariableName);
    Choose("mnuOptions", "mnuClearFilters");
    EXPECT_EQ(ShownRows(), (Rows{1, 2, 3, 4}));
    EXPECT_TRUE(Ticked("mnuShowOnlyNumericVariables"));
    ShowNumeric();
    EXPECT_EQ(ShownRows(), (Rows{1, 2, 3, 4}));
    ShowNumeric();
    EXPECT_EQ(ShownRows(), (Rows{1, 3}));
}

TEST_F(ViewModesWindowTest, KeyboardAloneChoosesAViewMode) {
    LoadFour();
    QTest::keyClick(&window, Qt::Key_V, Qt::AltModifier);
    QMenu& menu = Find<QMenu>(window, "mnuView");
    ASSERT_TRUE(menu.isVisible());
    while (menu.activeAction() == nullptr || menu.activeAction()->objectName() != "mnuShowAll") {
        const QAction* const before = menu.activeAction();
        QTest::keyClick(&menu, Qt::Key_Down);
        ASSERT_NE(menu.activeAction(), before);
    }
    QTest::keyClick(&menu, Qt::Key_Return);
    EXPECT_FALSE(menu.isVisible());
    EXPECT_TRUE(Ticked("mnuShowAll"));
    EXPECT_EQ(ColumnsInSight(), all);
}

// --- a cell editor stands open ----------------------------------------------------------------------------

TEST_F(ViewModesWindowTest, OpeningAMenuTakesAnAcceptedText) {
    for (const char* const menu : {"mnuView", "mnuOptions"}) {
        LoadFour();
        ClickCell(1, cnVariableName);
        Type("Water");
        ASSERT_TRUE(desk.Grid.EditWindow());
        QMenu& opened = Open(menu);
        EXPECT_FALSE(desk.Grid.EditWindow()) << menu;
        EXPECT_EQ(Cell(1, cnVariableName), "Water") << menu;
        EXPECT_EQ(desk.Grid.Row(), 1);
        opened.close();
    }
}

TEST_F(ViewModesWindowTest, RefusedTextStaysAndTheMenuOpens) {
    LoadFour();
    ClickCell(1, cnUSL);
    Type("abc");
    Modals modals;
    modals.ThenBox("Invalid value 'abc' entered for cell!", QMessageBox::NoIcon);
    QMenu& menu = Open("mnuView");
    EXPECT_TRUE(desk.Grid.EditWindow());
    EXPECT_EQ(desk.Grid.EditText(), "abc");
    menu.close();
    desk.Grid.SetEditText(Cell(1, cnUSL));
}

TEST_F(ViewModesWindowTest, ARowThatIsHiddenLeavesItsRefusedTextToldOnce) {
    LoadFour();
    ShowNumeric();
    ClickCell(2, cnVariableName);
    Type("abc");
    desk.Grid.ValidateEdit = [this](std::int32_t, std::int32_t, bool& cancel) {
        screen.toolkit.Say("refused");
        cancel = true;
    };
    const Text before = Cell(2, cnVariableName);
    {
        Modals modals;
        modals.ThenBox("refused", QMessageBox::NoIcon);
        QMenu& menu = Open("mnuView");
        Activate();
        QTest::mouseClick(
            &menu, Qt::LeftButton, {},
            menu.actionGeometry(&Find<QAction>(window, "mnuShowOnlyNumericVariables")).center());
    }
    EXPECT_TRUE(desk.Grid.RowHidden(2));
    EXPECT_FALSE(desk.Grid.EditWindow());
    EXPECT_FALSE(Widget().findChild<QLineEdit*>("CellEditor")->isVisible());
    EXPECT_EQ(Cell(2, cnVariableName), before);
}

// --- panels -----------------------------------------------------------------------------------------------

TEST_F(ViewModesWindowTest, PanelOneTellsThePathAndEmptyBracketsForAViewWithoutAName) {
    LoadFour();
    EXPECT_EQ(PanelOne(), "");
    ClickCell(1, cnUSL);
    EXPECT_EQ(PanelOne(), "/apps/plant.kdt []");
    ClickCell(3, cnUSL);
    EXPECT_EQ(PanelOne(), "/apps/plant.kdt");
    Press(Qt::Key_Up);
    EXPECT_EQ(PanelOne(), "/apps/plant.kdt []") << "the hidden row between them is passed over";
}

TEST_F(ViewModesWindowTest, PanelOneGoesEmptyWithAHeaderPress) {
    LoadFour();
    ClickCell(1, cnUSL);
    Modals modals;
    modals.Then("frmAutoFilter", [this](QWidget&) {
        EXPECT_EQ(PanelOne(), "");
        Press(Qt::Key_Escape);
    });
    PressHeader(cnUSL);
    EXPECT_EQ(PanelOne(), "");
}

TEST_F(ViewModesWindowTest, PanelTwoTellsTheOutcomeOfTheLoadAndKeepsIt) {
    LoadFour();
    const std::string outcome = "Done ... , Applications: 1, Views: 1, Variables: 4";
    EXPECT_EQ(Find<QLabel>(window, "Panel2").text().toStdString(), outcome);
    ClickCell(1, cnUSL);
    ShowPaths();
    ShowAll();
    ShowNumeric();
    EXPECT_EQ(Find<QLabel>(window, "Panel2").text().toStdString(), outcome);
    EXPECT_EQ(Find<QProgressBar>(window, "ProgressBar1").value(), 0);
}

}  // namespace
}  // namespace kd
