#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "appfiles/FileNames.h"
#include "appfiles/LoadApplications.h"
#include "base/NumberTexts.h"
#include "base/Paths.h"
#include "commit/CommitChanges.h"
#include "commit/frmCommit.h"
#include "fakes/FakeServices.h"
#include "fakes/ScriptedToolkit.h"
#include "grid/CellGate.h"
#include "grid/ColumnCatalogue.h"
#include "lifecycle/StartUp.h"
#include "model/Columns.h"
#include "model/Globals.h"
#include "model/modKDLimitDesk.h"
#include "suite/StandaloneSuite.h"

namespace kd {

/// An application with three views and the whole way from its files into the grid and back, over any file
/// service: the real commit, the real services of the suite, no screen.
class CommitScene {
public:
    static constexpr std::int32_t Views = 4;          // the template's own, and three more
    static constexpr std::int32_t PerView = 2;        // variables of each
    static constexpr std::int32_t UslColumn = cnUSL;  // the two columns that an edit touches
    static constexpr std::int32_t UnitsColumn = cnUnits;

    CommitScene(Files& files, const Text& folder, const Text& extension = ".kdt", const Text& base = "plant")
        : path(folder + "/" + base + extension),
          m_folder(folder),
          suite({folder + "/config", folder, "", ""}, files, locale, clock, {}),
          platform{files, toolkit, locale, clock, environment, shell, fileDialog, suite},
          g(platform),
          desk(g) {
        g.gUserName = "anna";
        toolkit.AnswerAll([](Form& form) { dynamic_cast<frmCommit&>(form).cmdOk.UserClick(); });
    }

    /// Path and content of each file of the application, before any commit.
    std::vector<std::pair<Text, std::string>> OriginalFiles() const {
        std::vector<std::pair<Text, std::string>> files;
        for (std::int32_t view = 0; view < Views; ++view) {
            files.emplace_back(FilePath(view), OriginalText(view));
        }
        files.emplace_back(LogPath(), "earlier record\r\n");
        files.emplace_back(ReportPath(), "earlier entry\r\n\r\n");
        return files;
    }
    Text FilePath(std::int32_t view) const {
        if (view == 0) {
            return path;
        }
        return paths::ChangeExtension(path, Six(".KDV6", "") + ".V" + Digits(view));
    }
    Text LogPath() const { return paths::ChangeExtension(path, Six(".KDL6", ".KDL")); }
    Text ReportPath() const { return paths::ChangeExtension(path, Six(".KDM6", ".KDM")); }
    Text TemporaryPath(std::int32_t view) const { return paths::ChangeExtension(FilePath(view), ".temp"); }
    const Text& Folder() const { return m_folder; }

    static std::string OriginalText(std::int32_t view) {
        std::string text = "[APPLICATION]\r\n   TITLE        = Plant\r\n   VERSION      = 7.\r\n\r\n";
        if (view == 0) {
            text +=
                "[VIEWS]\r\n   VIEW         = 1,Inlet\r\n   VIEW         = 2,Outlet\r\n"
                "   VIEW         = 3,Drain\r\n\r\n";
        }
        text += "[RULES]\r\n   RULE         = Run of nine\r\n\r\n";
        for (std::int32_t variable = 1; variable <= PerView; ++variable) {
            text += "[FIELD]\r\nNAME=" + VariableName(view, variable) +
                    "\r\nTYPE=N\r\nLENGTH=8\r\nDECIMALS=2\r\nMAX=1000\r\nMIN=0\r\nUSL=F100\r\nUNITS=kg\r\n";
        }
        return text;
    }
    static Text VariableName(std::int32_t view, std::int32_t variable) {
        return "v" + Digits(view) + "x" + Digits(variable);
    }
    /// Grid row of a variable, which is also its position in gFields.
    static std::int32_t RowOf(std::int32_t view, std::int32_t variable) { return view * PerView + variable; }

    void Load() {
        g.gMasterFiles = std::make_shared<cMasterFiles>();
        (void)g.gMasterFiles->Add(path, true);
        modKDLimitDesk::LoadRuleCatalogue(g);
        modKDLimitDesk::BuildColumnCatalogue(g);
        SetupGridColumns(desk);
        LoadApplications(desk);
    }
    /// What the user types into a cell.
    void Edit(std::int32_t row, std::int32_t column, std::string_view text) {
        SetCellValue(desk, row, column - 1, text);
    }
    /// Two changed cells in every variable.
    void EditAll(std::string_view limit = "50") {
        for (std::int32_t row = 1; row <= Views * PerView; ++row) {
            Edit(row, UslColumn, limit);
            Edit(row, UnitsColumn, "t");
        }
    }
    void Commit() { CommitChanges(desk); }

    bool Marked(std::int32_t row, std::int32_t column) const {
        return desk.Grid.BackColor(row, column - 1) == ChangedColour;
    }
    double SavedUsl(std::int32_t row) const { return g.gSavedFields->Ref(row).USL(); }
    bool ChangesMade(std::int32_t view) const { return g.gFiles->Ref(view + 1).ChangesMade(); }

    /// The line of the change log for one changed cell, without its line end.
    static Text LogLine(std::int32_t view, std::int32_t variable, std::int32_t column,
                        const Text& revision = "7.001") {
        static const char* const names[] = {"MAIN", "Inlet", "Outlet", "Drain"};
        const bool usl = column == UslColumn;
        return Text("2026-03-04 05:06:07\tanna\t") + names[view] + "\t" + revision + "\tPROPERTY\tFIELD\t" +
               VariableName(view, variable) + "\t" + (usl ? "USL" : "Units") + "\t" +
               (usl ? "100.000\t50.000" : "kg\tt");
    }

    Text path;  // of the template

private:
    Text Six(const char* six, const char* five) const { return path.ends_with('6') ? six : five; }
    Text m_folder;

public:
    ScriptedToolkit toolkit;
    FakeLocale locale;
    FakeClock clock;
    FakeEnvironment environment;
    FakeShell shell;
    FakeFileDialog fileDialog;
    StandaloneSuite suite;
    Platform platform;
    Globals g;
    Desk desk;
};

}  // namespace kd
