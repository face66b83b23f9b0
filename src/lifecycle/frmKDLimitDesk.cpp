#include "lifecycle/frmKDLimitDesk.h"

#include <utility>

#include "admin/ManageApplications.h"
#include "appfiles/LoadApplications.h"
#include "base/NumberTexts.h"
#include "base/Scope.h"
#include "commit/CommitChanges.h"
#include "edit/Fill.h"
#include "edit/Replace.h"
#include "edit/RestoreCutCopyPaste.h"
#include "grid/AutoFilter.h"
#include "grid/CellEditing.h"
#include "grid/ColumnCatalogue.h"
#include "grid/GridEvents.h"
#include "grid/ViewModes.h"
#include "help/ShowHelpTopic.h"
#include "lifecycle/Settings.h"
#include "lifecycle/StartUp.h"
#include "model/modKDLimitDesk.h"
#include "platform/Hourglass.h"
#include "platform/Missing.h"

namespace kd {

using namespace modKDLimitDesk;

frmKDLimitDesk::frmKDLimitDesk(Globals& g)
    : Form("frmKDLimitDesk"),
      m_g(g),
      m_desk(g),
      m_gridEvents(std::make_unique<GridEvents>(m_desk)),
      m_about(g) {
    m_desk.Grid.SetRows(1);
    m_desk.mnuShowPaths.SetChecked(false);
    m_desk.mnuShowOnlyNumericVariables.SetChecked(false);
    m_desk.mnuShowAll.SetChecked(false);
    m_g.platform.toolkit.Boundary().PutBack = [this] {
        m_desk.Grid.SetRedraw(true);
        m_desk.ProgressBar1.SetValue(0);
    };
    SetUpMenus();
    WireMenus();
    WireGrid();
}

frmKDLimitDesk::~frmKDLimitDesk() {
    m_g.platform.toolkit.Boundary().PutBack = nullptr;
}

void frmKDLimitDesk::SetUpMenus() {
    Desk& d = m_desk;
    d.mnuFile.SetEntries({&d.mnuApplications, &d.mnuCommit, nullptr, &d.mnuClose});
    d.mnuEdit.SetEntries({&d.mnuEditRestore, nullptr, &d.mnuEditCut, &d.mnuEditCopy, &d.mnuEditPaste, nullptr,
                          &d.mnuEditFill, &d.mnuEditReplace});
    d.mnuOptions.SetEntries({&d.mnuClearFilters});
    d.mnuView.SetEntries({&d.mnuShowPaths, &d.mnuShowOnlyNumericVariables, &d.mnuShowAll});
    d.mnuHelp.SetEntries({&d.mnuHelpAbout});
    d.mnuEditMenu.SetEntries(
        {&d.mnuRestore, nullptr, &d.mnuCut, &d.mnuCopy, &d.mnuPaste, nullptr, &d.mnuFill, &d.mnuReplace});
    m_menuBar = {&d.mnuFile, &d.mnuEdit, &d.mnuOptions, &d.mnuView, &d.mnuHelp};
}

void frmKDLimitDesk::WireMenus() {
    Desk& d = m_desk;
    d.mnuFile.Click = Bounded([this] { mnuFile_Click(); });
    d.mnuApplications.Click = Bounded([this] { mnuApplications_Click(); });
    d.mnuCommit.Click = Bounded([this] {
        LeaveToldCellEditor(m_desk);
        CommitChanges(m_desk);
    });
    d.mnuClose.Click = Bounded([this] {
        LeaveToldCellEditor(m_desk);
        if (Unload) {
            Unload();
        }
    });

    d.mnuEdit.Click = Bounded([this] { CloseCellEditor(m_desk); });
    d.mnuOptions.Click = Bounded([this] { mnuOptions_Click(m_desk); });
    d.mnuClearFilters.Click = Bounded([this] { mnuClearFilters_Click(m_desk); });
    d.mnuView.Click = Bounded([this] { mnuView_Click(m_desk); });
    d.mnuShowPaths.Click = Bounded([this] { mnuShowPaths_Click(m_desk); });
    d.mnuShowOnlyNumericVariables.Click = Bounded([this] { mnuShowOnlyNumericVariables_Click(m_desk); });
    d.mnuShowAll.Click = Bounded([this] { mnuShowAll_Click(m_desk); });
    d.mnuHelpAbout.Click = Bounded([this] { m_about.Display(); });
    WireEditCommands();
}

void frmKDLimitDesk::WireEditCommands() {
    Desk& d = m_desk;
    d.mnuRestore.Click = Bounded([this] { Restore(m_desk); });
    d.mnuCut.Click = Bounded([this] { Cut(m_desk); });
    d.mnuCopy.Click = Bounded([this] { Copy(m_desk); });
    d.mnuPaste.Click = Bounded([this] { Paste(m_desk); });
    d.mnuFill.Click = Bounded([this] { Fill(m_desk, m_editMemory); });
    d.mnuReplace.Click = Bounded([this] { Replace(m_desk, m_editMemory); });

    // The main menu's entries forward to the pop-up's, which hold the commands.
    const std::pair<MenuItem*, MenuItem*> forwarded[] = {
        {&d.mnuEditRestore, &d.mnuRestore}, {&d.mnuEditCut, &d.mnuCut},   {&d.mnuEditCopy, &d.mnuCopy},
        {&d.mnuEditPaste, &d.mnuPaste},     {&d.mnuEditFill, &d.mnuFill}, {&d.mnuEditReplace, &d.mnuReplace}};
    for (const auto& [entry, command] : forwarded) {
        entry->Click = [target = command] { target->Click(); };
    }
}

void frmKDLimitDesk::WireGrid() {
    m_gridEvents->ShowColumnFilter = [this](std::int32_t screenCol) {
        ShowColumnFilter(m_desk, screenCol, GridPlace ? GridPlace() : Place{});
    };
    m_gridEvents->GetFilterCaption = [this](std::int32_t screenCol) {
        return GetFilterCaption(m_desk, screenCol);
    };
}

std::function<void()> frmKDLimitDesk::Bounded(std::function<void()> handler) {
    return [&boundary = m_g.platform.toolkit.Boundary(), handler = std::move(handler)] {
        (void)boundary.Run(handler);  // the box has told what failed
    };
}

Area frmKDLimitDesk::Centred(std::int32_t screenWidth, std::int32_t screenHeight, std::int32_t width,
                             std::int32_t height) {
    return {(screenWidth - width) / 2, (screenHeight - height) / 2, width, height};
}

bool frmKDLimitDesk::Form_Load(std::uintptr_t window) {
    bool goesOn = false;
    // A failure that ends the start ends the program: there is nothing yet to go on with.
    return m_g.platform.toolkit.Boundary().Run([&] { goesOn = RunStart(window); }) && goesOn;
}

bool frmKDLimitDesk::RunStart(std::uintptr_t window) {
    SetCaption(Text(WindowTitle) + " (v" + Digits(KD_VERSION_MAJOR) + "." + Digits(KD_VERSION_MINOR) + "." +
               Digits(KD_VERSION_REVISION) + ")");
    m_g.gSettingsPath = SettingsPath(m_g);
    m_maximised = true;
    LoadRuleCatalogue(m_g);
    FindSettings();
    m_g.gStartingUp = true;
    const Scope started([this] { m_g.gStartingUp = false; });
    m_g.gUserName = GetUserName(m_g, window);
    if (m_g.gUserName.empty()) {
        return false;
    }
    m_desk.mnuApplications
        .Click();  // the command with its own boundary: a stopped load does not end the program
    return m_g.gMasterFiles->Count() > 0;
}

void frmKDLimitDesk::FindSettings() {
    const Presence settings = PresenceOf(m_g.platform.files, m_g.gSettingsPath);
    m_settingsKnown = settings != Presence::Missing && ReadSettings(m_g, m_g.gSettingsPath);
    if (settings == Presence::Missing || (settings == Presence::Unknown && !m_settingsKnown)) {
        (void)ReadSettings(m_g, FallbackSettingsPath(m_g));  // a missing one leaves the lists empty
    }
    if (settings == Presence::Missing) {
        m_settingsKnown = WriteSettings(m_g, m_g.gSettingsPath);
    }
}

void frmKDLimitDesk::KeepSettings() {
    Files& files = m_g.platform.files;
    // The user's own list, which was only out of sight, would be lost by the one that goes over it.
    const bool aside = !m_settingsKnown && SetAside(files, m_g.gSettingsPath);
    bool written = false;
    const Scope kept([&] {
        if (aside && !written) {
            PutBack(files, m_g.gSettingsPath);
        }
    });
    // Also where nothing could be kept: what has just been confirmed is what the next start must show.
    written = WriteSettings(m_g, m_g.gSettingsPath);
    m_settingsKnown = written || m_settingsKnown;
}

void frmKDLimitDesk::mnuFile_Click() {
    CloseCellEditor(m_desk);
    m_desk.mnuCommit.SetEnabled(AnyChanges(m_g));
}

void frmKDLimitDesk::mnuApplications_Click() {
    ManageApplications(m_g, {[this] { KeepSettings(); }, [this] { LoadAndShowApplications(); },
                             [this] { ShowHelpTopic(m_g, DocumentationTopic); }});
}

void frmKDLimitDesk::LoadAndShowApplications() {
    Toolkit& toolkit = m_g.platform.toolkit;
    m_desk.ProgressBar1.SetValue(0);
    m_desk.Panel1.SetCaption({});
    m_desk.mnuShowPaths.SetChecked(true);
    m_desk.mnuShowOnlyNumericVariables.SetChecked(true);
    BuildColumnCatalogue(m_g);
    SetupGridColumns(m_desk);
    toolkit.ShowModeless(*this);
    for (int pass = 0; pass < 3; ++pass) {
        toolkit.ProcessEvents();
    }
    const Hourglass hourglass(toolkit);
    LoadApplications(m_desk);
    m_desk.ProgressBar1.SetValue(0);
    toolkit.ProcessEvents();
}

bool frmKDLimitDesk::Form_QueryUnload() {
    // A menu may have told of the refused text long before this, so that nobody would know why it is gone.
    m_desk.toldText.reset();
    LeaveCellEditor(m_desk);  // what stands in it is an edit too
    if (!AnyChanges(m_g)) {
        return true;
    }
    return m_g.platform.toolkit.MessageBox(
               "You have outstanding changes. Are you sure you want to quit without saving?",
               BoxIcon::Question, BoxButtons::YesNo, WindowTitle) == BoxAnswer::Yes;
}

frmKDLimitDesk::Layout frmKDLimitDesk::Form_Resize(const Area& inner, std::int32_t gridTop,
                                                   std::int32_t statusBarHeight,
                                                   std::int32_t progressBarHeight, std::int32_t pixel) {
    const std::int32_t margin = 4 * pixel;
    const Area bar{0, inner.height - statusBarHeight - progressBarHeight, inner.width, progressBarHeight};
    return {bar, {inner.left + margin, gridTop, inner.width - 2 * margin, bar.top - gridTop}};
}

}  // namespace kd
