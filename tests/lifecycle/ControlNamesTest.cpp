#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "admin/frmApplicationAdmin.h"
#include "commit/frmCommit.h"
#include "edit/frmFill.h"
#include "edit/frmReplace.h"
#include "fakes/TestMachine.h"
#include "grid/Desk.h"
#include "grid/frmAutoFilter.h"
#include "help/frmAbout.h"

namespace kd {
namespace {

/// Names that controls bear, each with the one that it must be; windows and screen readers go by them.
using Names = std::vector<std::pair<Text, const char*>>;

void ExpectNames(const Names& names) {
    for (const auto& [name, expected] : names) {
        EXPECT_EQ(name, expected);
    }
}

TEST(ControlNamesTest, EachControlOffrmAboutBearsItsName) {
    TestMachine desk;
    const frmAbout form(desk.g);
    EXPECT_EQ(form.Name(), "frmAbout");
    ExpectNames({{form.Image1.Name(), "Image1"},
                 {form.lblAppTitle.Name(), "lblAppTitle"},
                 {form.lblVersion.Name(), "lblVersion"},
                 {form.lblCompanyInfo.Name(), "lblCompanyInfo"},
                 {form.lblWebsite.Name(), "lblWebsite"},
                 {form.lblEmail.Name(), "lblEmail"},
                 {form.cmdOk.Name(), "cmdOk"}});
}

TEST(ControlNamesTest, EachControlOffrmApplicationAdminBearsItsName) {
    TestMachine desk;
    const frmApplicationAdmin form(desk.g);
    EXPECT_EQ(form.Name(), "frmApplicationAdmin");
    ExpectNames({{form.Label1.Name(), "Label1"},
                 {form.cboFilter.Name(), "cboFilter"},
                 {form.cmdFilter.Name(), "cmdFilter"},
                 {form.Grid.Name(), "Grid"},
                 {form.cmdAddApplication.Name(), "cmdAddApplication"},
                 {form.cmdRemoveApplication.Name(), "cmdRemoveApplication"},
                 {form.cmdHelp.Name(), "cmdHelp"},
                 {form.cmdOk.Name(), "cmdOk"},
                 {form.cmdCancel.Name(), "cmdCancel"}});
}

TEST(ControlNamesTest, EachControlOffrmAutoFilterBearsItsName) {
    TestMachine desk;
    const frmAutoFilter form(desk.g);
    EXPECT_EQ(form.Name(), "frmAutoFilter");
    ExpectNames({{form.chkSelectAll.Name(), "chkSelectAll"},
                 {form.lstAutoFilter.Name(), "lstAutoFilter"},
                 {form.cmdOk.Name(), "cmdOk"},
                 {form.cmdCancel.Name(), "cmdCancel"}});
}

TEST(ControlNamesTest, EachControlOffrmCommitBearsItsName) {
    TestMachine desk;
    const frmCommit form(desk.g);
    EXPECT_EQ(form.Name(), "frmCommit");
    ExpectNames({{form.Label1.Name(), "Label1"},
                 {form.lstFiles.Name(), "lstFiles"},
                 {form.chkSelectAll.Name(), "chkSelectAll"},
                 {form.cmdOk.Name(), "cmdOk"},
                 {form.cmdCancel.Name(), "cmdCancel"}});
}

TEST(ControlNamesTest, EachControlOffrmFillBearsItsName) {
    TestMachine desk;
    const frmFill form(desk.g);
    EXPECT_EQ(form.Name(), "frmFill");
    ExpectNames({{form.optFillConstant.Name(), "optFillConstant"},
                 {form.txtConstant.Name(), "txtConstant"},
                 {form.optFillLimit.Name(), "optFillLimit"},
                 {form.lblLimit.Name(), "lblLimit"},
                 {form.fraLimits.Name(), "fraLimits"},
                 {form.optLimits.Name(), "optLimits"},
                 {form.fraPlusMinus.Name(), "fraPlusMinus"},
                 {form.optPlusMinus.Name(), "optPlusMinus"},
                 {form.txtLimitValue.Name(), "txtLimitValue"},
                 {form.cmdOk.Name(), "cmdOk"},
                 {form.cmdCancel.Name(), "cmdCancel"}});
}

TEST(ControlNamesTest, EachControlOffrmReplaceBearsItsName) {
    TestMachine desk;
    const frmReplace form(desk.g);
    EXPECT_EQ(form.Name(), "frmReplace");
    ExpectNames({{form.Label1.Name(), "Label1"},
                 {form.lblColumn.Name(), "lblColumn"},
                 {form.lblFind.Name(), "lblFind"},
                 {form.txtFind.Name(), "txtFind"},
                 {form.LblReplace.Name(), "LblReplace"},
                 {form.txtReplace.Name(), "txtReplace"},
                 {form.chkMatchCase.Name(), "chkMatchCase"},
                 {form.cmdReplace.Name(), "cmdReplace"},
                 {form.cmdCancel.Name(), "cmdCancel"}});
}

TEST(ControlNamesTest, EachControlOfTheMainFormBearsItsName) {
    TestMachine test;
    const Desk desk(test.g);
    ExpectNames({{desk.Grid.Name(), "Grid"},
                 {desk.Panel1.Name(), "Panel1"},
                 {desk.Panel2.Name(), "Panel2"},
                 {desk.ProgressBar1.Name(), "ProgressBar1"},
                 {desk.mnuFile.Name(), "mnuFile"},
                 {desk.mnuApplications.Name(), "mnuApplications"},
                 {desk.mnuCommit.Name(), "mnuCommit"},
                 {desk.mnuClose.Name(), "mnuClose"},
                 {desk.mnuEdit.Name(), "mnuEdit"},
                 {desk.mnuEditRestore.Name(), "mnuEditRestore"},
                 {desk.mnuEditCut.Name(), "mnuEditCut"},
                 {desk.mnuEditCopy.Name(), "mnuEditCopy"},
                 {desk.mnuEditPaste.Name(), "mnuEditPaste"},
                 {desk.mnuEditFill.Name(), "mnuEditFill"},
                 {desk.mnuEditReplace.Name(), "mnuEditReplace"},
                 {desk.mnuOptions.Name(), "mnuOptions"},
                 {desk.mnuClearFilters.Name(), "mnuClearFilters"},
                 {desk.mnuView.Name(), "mnuView"},
                 {desk.mnuShowPaths.Name(), "mnuShowPaths"},
                 {desk.mnuShowOnlyNumericVariables.Name(), "mnuShowOnlyNumericVariables"},
                 {desk.mnuShowAll.Name(), "mnuShowAll"},
                 {desk.mnuHelp.Name(), "mnuHelp"},
                 {desk.mnuHelpAbout.Name(), "mnuHelpAbout"},
                 {desk.mnuEditMenu.Name(), "mnuEditMenu"},
                 {desk.mnuRestore.Name(), "mnuRestore"},
                 {desk.mnuCut.Name(), "mnuCut"},
                 {desk.mnuCopy.Name(), "mnuCopy"},
                 {desk.mnuPaste.Name(), "mnuPaste"},
                 {desk.mnuFill.Name(), "mnuFill"},
                 {desk.mnuReplace.Name(), "mnuReplace"}});
}

}  // namespace
}  // namespace kd
