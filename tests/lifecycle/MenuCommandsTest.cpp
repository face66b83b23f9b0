#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <set>

#include "admin/frmApplicationAdmin.h"
#include "edit/frmFill.h"
#include "edit/frmReplace.h"
#include "fakes/Builders.h"
#include "grid/AutoFilter.h"
#include "grid/frmAutoFilter.h"
#include "help/frmAbout.h"
#include "lifecycle/frmKDLimitDesk.h"
#include "model/Columns.h"
#include "platform/EventBoundary.h"

namespace kd {
namespace {

using testing::ElementsAre;

constexpr std::int32_t ColName = cnVariableName - 1;
constexpr std::int32_t ColUsl = cnUSL - 1;
constexpr std::int32_t ColSample = cnSample - 1;

/// The main form over one application with three variables, loaded: every command as the user reaches it.
struct MenuCommandsTest : testing::Test, TestMachine {
    frmKDLimitDesk form{g};
    Desk& desk = form.Controls();
    VSFlexGrid& grid = desk.Grid;

    MenuCommandsTest() {
        anApplication()
            .Field(aField().Name("first").Usl(12.5))
            .Field(aField().Name("second").Usl(20))
            .Field(aField().Name("text").Type("T"))
            .PutInto(*this);
        form.LoadAndShowApplications();
        toolkit.log.clear();
    }
    Text Cell(std::int32_t row, std::int32_t col) const { return Text(grid.TextMatrix(row, col)); }
    void Select(std::int32_t firstRow, std::int32_t lastRow, std::int32_t col) {
        grid.Select(firstRow, col);
        grid.ExtendSelection(lastRow, col);
    }
    void OpenEditor(std::int32_t row, std::int32_t col, std::string_view text) {
        grid.Select(row, col);
        ASSERT_TRUE(grid.StartEdit());
        grid.SetEditText(text);
    }
    /// Whether the grid may react.
    bool Press(std::int32_t row, std::int32_t col) {
        grid.SetMouseCell(row, col);
        bool cancel = false;
        grid.BeforeMouseDown(MouseButton::Left, 0, 0, 0, cancel);
        return !cancel;
    }
    void ExpectFill(const Text& before, const Text& constant) {
        toolkit.ExpectForm<frmFill>("frmFill", [=](frmFill& dialog) {
            EXPECT_EQ(dialog.txtConstant.Value(), before);
            dialog.txtConstant.UserType(constant);
            dialog.cmdOk.UserClick();
        });
    }
    void ExpectReplace(const Text& before, const Text& find, const Text& replacement) {
        toolkit.ExpectForm<frmReplace>("frmReplace", [=](frmReplace& dialog) {
            EXPECT_EQ(dialog.txtFind.Value(), before);
            dialog.txtFind.UserType(find);
            dialog.txtReplace.UserType(replacement);
            dialog.cmdReplace.UserClick();
        });
    }
};

TEST_F(MenuCommandsTest, EveryEntryIsAlive) {
    for (const MenuItem* menu : form.MenuBar()) {
        for (const MenuItem* entry : menu->Entries()) {
            if (entry != nullptr) {
                EXPECT_TRUE(entry->Enabled()) << entry->Name();
                EXPECT_TRUE(static_cast<bool>(entry->Click)) << entry->Name();
            }
        }
    }
    for (const MenuItem* entry : desk.mnuEditMenu.Entries()) {
        if (entry != nullptr) {
            EXPECT_TRUE(static_cast<bool>(entry->Click)) << entry->Name();
        }
    }
}

TEST_F(MenuCommandsTest, CopyCutPasteAndRestoreFromTheEditMenu) {
    Select(1, 2, ColName);
    desk.mnuEditCopy.UserClick();
    EXPECT_EQ(suite.clipboard, "first\rsecond");
    Select(1, 1, ColName);
    desk.mnuEditCut.UserClick();
    EXPECT_EQ(suite.clipboard, "first");
    EXPECT_EQ(Cell(1, ColName), "");
    Select(2, 2, ColName);
    desk.mnuEditPaste.UserClick();
    EXPECT_EQ(Cell(2, ColName), "first");
    Select(1, 2, ColName);
    desk.mnuEditRestore.UserClick();
    EXPECT_EQ(Cell(1, ColName), "first");
    EXPECT_EQ(Cell(2, ColName), "second");
}

TEST_F(MenuCommandsTest, CopyCutPasteAndRestoreFromThePopUpMenu) {
    Select(1, 1, ColName);
    desk.mnuCopy.UserClick();
    EXPECT_EQ(suite.clipboard, "first");
    desk.mnuCut.UserClick();
    EXPECT_EQ(Cell(1, ColName), "");
    Select(2, 2, ColName);
    desk.mnuPaste.UserClick();
    EXPECT_EQ(Cell(2, ColName), "first");
    Select(1, 2, ColName);
    desk.mnuRestore.UserClick();
    EXPECT_EQ(Cell(2, ColName), "second");
}

TEST_F(MenuCommandsTest, PasteOfTheEditMenuRunsThoughThePopUpsEntryIsDisabled) {
    suite.clipboard = "x";
    desk.mnuPaste.SetEnabled(false);
    Select(1, 1, ColName);
    desk.mnuEditPaste.UserClick();
    EXPECT_EQ(Cell(1, ColName), "x");
}

TEST_F(MenuCommandsTest, CtrlCAndCtrlVCopyAndPaste) {
    Select(1, 1, ColName);
    grid.KeyDown('C', sbCtrl);
    EXPECT_EQ(suite.clipboard, "first");
    Select(2, 2, ColName);
    grid.KeyDown('V', sbCtrl);
    EXPECT_EQ(Cell(2, ColName), "first");
}

TEST_F(MenuCommandsTest, FillRemembersItsConstantFromCommandToCommand) {
    Select(1, 1, ColName);
    ExpectFill("first", "x");
    desk.mnuEditFill.UserClick();
    Select(2, 2, ColName);
    ExpectFill("x", "y");
    desk.mnuFill.UserClick();
    EXPECT_EQ(Cell(1, ColName), "x");
    EXPECT_EQ(Cell(2, ColName), "y");
}

TEST_F(MenuCommandsTest, ReplaceRemembersItsTextsFromCommandToCommand) {
    Select(1, 1, ColName);
    ExpectReplace("first", "i", "u");
    desk.mnuEditReplace.UserClick();
    Select(2, 2, ColName);
    ExpectReplace("i", "e", "o");
    desk.mnuReplace.UserClick();
    EXPECT_EQ(Cell(1, ColName), "furst");
    EXPECT_EQ(Cell(2, ColName), "socond");
}

TEST_F(MenuCommandsTest, CommandSeesTheTextThatTheMenuTookFromTheEditor) {
    OpenEditor(1, ColUsl, "30");
    desk.mnuEdit.UserClick();
    EXPECT_FALSE(grid.EditWindow());
    desk.mnuEditCopy.UserClick();
    EXPECT_EQ(suite.clipboard, "30.000");
}

TEST_F(MenuCommandsTest, CommandWorksOnTheOldTextWhileARefusedOneStandsInTheEditor) {
    OpenEditor(1, ColUsl, "abc");
    toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    desk.mnuEdit.UserClick();
    EXPECT_TRUE(grid.EditWindow());
    desk.mnuEditCopy.UserClick();
    EXPECT_EQ(suite.clipboard, "12.500");
    EXPECT_EQ(grid.EditText(), "abc");
}

TEST_F(MenuCommandsTest, HeaderPressFiltersAtThePlaceOfTheGrid) {
    form.GridPlace = [] { return Place{200, 100}; };
    toolkit.ExpectForm<frmAutoFilter>("frmAutoFilter", [](frmAutoFilter& dialog) {
        EXPECT_EQ(dialog.FormCaption(), "Variable Name");
        ASSERT_TRUE(dialog.OwnPlace().has_value());
        EXPECT_EQ(*dialog.OwnPlace(), (Place{210, 150}));
        dialog.lstAutoFilter.UserSelect(0, false);
        dialog.cmdOk.UserClick();
    });
    EXPECT_FALSE(Press(0, ColName));
    EXPECT_THAT(grid.VisibleRows(), ElementsAre(2));
    EXPECT_EQ(grid.CellPicture(ColName), HeaderPicture::FilterOn);
}

TEST_F(MenuCommandsTest, HeaderPressTakesAnAcceptedTextFromTheEditorIntoItsList) {
    OpenEditor(1, ColName, "edited");
    std::vector<Text> offered;
    toolkit.ExpectForm<frmAutoFilter>("frmAutoFilter", [&](frmAutoFilter& dialog) {
        for (const auto& entry : dialog.lstAutoFilter.Entries()) {
            offered.push_back(entry.text);
        }
        dialog.UserClose();
    });
    Press(0, ColName);
    EXPECT_THAT(offered, ElementsAre("edited", "second"));
}

TEST_F(MenuCommandsTest, HeaderPressWithARefusedTextTellsSoOnceAndKeepsTheEditor) {
    OpenEditor(1, ColUsl, "abc");
    toolkit.ExpectBox("Invalid value 'abc' entered for cell!");
    EXPECT_FALSE(Press(0, ColName));
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_EQ(grid.EditText(), "abc");
    EXPECT_EQ(grid.Row(), 1);
}

TEST_F(MenuCommandsTest, TipOfTheHeaderTellsTheFilter) {
    grid.SetMouseCell(0, ColName);
    grid.MouseMove(MouseButton::Left, 0, 0, 0);
    EXPECT_EQ(grid.ToolTipText(), " Click to Filter Column ");
    g.gLabels->Ref(ColName + 1).Filters()->Add("first", true);
    grid.SetMouseCell(0, ColUsl);
    grid.MouseMove(MouseButton::Left, 0, 0, 0);
    EXPECT_EQ(grid.ToolTipText(), " (Showing All) ");
    grid.SetMouseCell(0, ColName);
    grid.MouseMove(MouseButton::Left, 0, 0, 0);
    EXPECT_EQ(grid.ToolTipText(), " Equals \"first\" ");
}

TEST_F(MenuCommandsTest, OptionsAndViewDoWhatTheySay) {
    desk.mnuOptions.UserClick();
    EXPECT_FALSE(desk.mnuClearFilters.Enabled());
    g.gLabels->Ref(ColName + 1).Filters()->Add("first", true);
    desk.mnuOptions.UserClick();
    EXPECT_TRUE(desk.mnuClearFilters.Enabled());
    desk.mnuClearFilters.UserClick();
    EXPECT_EQ(CountActiveFilters(desk), 0);
    EXPECT_THAT(grid.VisibleRows(), ElementsAre(1, 2, 3));

    desk.mnuView.UserClick();
    desk.mnuShowOnlyNumericVariables.UserClick();
    desk.mnuShowOnlyNumericVariables.UserClick();
    EXPECT_THAT(grid.VisibleRows(), ElementsAre(1, 2));
    desk.mnuShowPaths.UserClick();
    EXPECT_EQ(grid.FrozenCols(), 8);
    desk.mnuShowAll.UserClick();
    EXPECT_FALSE(grid.ColHidden(ColSample));
}

TEST_F(MenuCommandsTest, RebuildHidesThePropertiesDropsTheFiltersAndUnfreezesThePaths) {
    desk.mnuShowAll.UserClick();
    desk.mnuShowPaths.UserClick();
    g.gLabels->Ref(ColName + 1).Filters()->Add("first", true);
    form.LoadAndShowApplications();
    EXPECT_TRUE(desk.mnuShowAll.Checked());
    EXPECT_TRUE(desk.mnuShowPaths.Checked());
    EXPECT_TRUE(grid.ColHidden(ColSample));
    EXPECT_EQ(grid.FrozenCols(), 0);
    EXPECT_EQ(CountActiveFilters(desk), 0);
    EXPECT_EQ(grid.CellPicture(ColName), HeaderPicture::FilterOff);
}

TEST_F(MenuCommandsTest, HeaderPressEmptiesPanelOne) {
    grid.Select(1, ColUsl);
    EXPECT_NE(desk.Panel1.Caption(), "");
    toolkit.ExpectForm("frmAutoFilter", [](Form& dialog) { dialog.UserClose(); });
    Press(0, ColUsl);
    EXPECT_EQ(desk.Panel1.Caption(), "");
    grid.Select(1, ColUsl);
    EXPECT_NE(desk.Panel1.Caption(), "");
}

TEST_F(MenuCommandsTest, CommandThatFailsIsToldStopsAndTheProgramGoesOn) {
    desk.mnuShowAll.UserClick();
    suite.clipboard = "5\r99999";
    grid.Select(1, ColSample);
    toolkit.ExpectBox(UnhandledErrorText(cError(errOverflow, "")), BoxIcon::Critical);
    desk.mnuEditPaste.UserClick();
    EXPECT_EQ(Cell(1, ColSample), "5") << "nothing is undone";
    EXPECT_EQ(Cell(2, ColSample), "0");
    EXPECT_TRUE(grid.Redraw());
    EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
    Select(1, 1, ColName);
    desk.mnuEditCopy.UserClick();
    EXPECT_EQ(suite.clipboard, "first");
}

TEST_F(MenuCommandsTest, OpeningTheHelpMenuDoesNothing) {
    OpenEditor(1, ColUsl, "30");
    desk.mnuHelp.UserClick();
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_EQ(Cell(1, ColUsl), "12.500");
    EXPECT_TRUE(toolkit.log.empty());
}

TEST_F(MenuCommandsTest, AboutShowsTheOneBoxAgain) {
    Form* first = nullptr;
    for (int showing = 0; showing < 2; ++showing) {
        toolkit.ExpectForm<frmAbout>("frmAbout", [&](frmAbout& box) {
            EXPECT_TRUE(first == nullptr || first == &box);
            first = &box;
            EXPECT_EQ(box.lblVersion.Caption(), "6.1 Build 0");
            box.cmdOk.UserClick();
        });
        desk.mnuHelpAbout.UserClick();
    }
}

TEST_F(MenuCommandsTest, HelpOfManageApplicationsOpensTheDocumentation) {
    suite.helpTopics["Documentation"] = 0;
    toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", [](frmApplicationAdmin& dialog) {
        dialog.cmdHelp.UserClick();
        dialog.cmdCancel.UserClick();
    });
    desk.mnuApplications.UserClick();
    EXPECT_EQ(suite.helpTopics["Documentation"], 1);
}

TEST_F(MenuCommandsTest, EveryEntryHasAnAccessLetterOfItsOwnInItsMenu) {
    std::vector<MenuItem*> menus = form.MenuBar();
    menus.push_back(&desk.mnuEditMenu);
    for (const MenuItem* const menu : menus) {
        std::set<int> letters;
        for (const MenuItem* const entry : menu->Entries()) {
            if (entry == nullptr) {
                continue;
            }
            const char letter = entry->AccessLetter();
            EXPECT_NE(entry->Caption().find(letter), Text::npos) << entry->Caption();
            EXPECT_TRUE(letters.insert(std::tolower(static_cast<unsigned char>(letter))).second)
                << entry->Caption();
        }
    }
}

}  // namespace
}  // namespace kd
