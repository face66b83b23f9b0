#pragma once

#include "appfiles/LoadApplications.h"
#include "fakes/FakeServices.h"
#include "fakes/FakeSuite.h"
#include "fakes/MemoryFiles.h"
#include "fakes/ScriptedToolkit.h"
#include "fuzz/FuzzTargets.h"
#include "grid/ColumnCatalogue.h"
#include "grid/Desk.h"
#include "model/Columns.h"
#include "model/Globals.h"
#include "model/modKDLimitDesk.h"

namespace kd::fuzz {

/// A column of the variable for each byte.
inline std::int32_t ColumnFor(std::int32_t byte) {
    return FirstVariableColumn + byte % (ColumnCount - FirstVariableColumn + 1);
}

/// Everything in memory, with one application of one view whose file is the input.
struct FuzzDesk {
    static constexpr const char* Path = "/apps/a.kdt";

    explicit FuzzDesk(std::string_view schema) {
        toolkit.AnswerAll([](Form&) {});
        files.Put(Path, std::string(schema));
        suite.applications[Path] = {"Plant", {}};
        g.gRuleNames = "Point beyond limit,Run of nine";
        g.gRuleLetters = "AB";
        g.gRulesBlock =
            "[RULES]\r\n   RULE         = Point beyond limit\r\n   RULE         = Run of nine\r\n\r\n";
        (void)g.gMasterFiles->Add(Path, true);
    }
    /// Whether the load came to its end; one that a failure stops is told and leaves what it had.
    bool Load() {
        modKDLimitDesk::BuildColumnCatalogue(g);
        SetupGridColumns(desk);
        try {
            LoadApplications(desk);
            return true;
        } catch (const cError&) {
            return false;
        }
    }
    /// Every text of the grid is that of its record, and every mark obeys its rule.
    void CheckGrid() const {
        Promise(g.gFields->Count() == g.gSavedFields->Count(), "each variable has its twin");
        for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
            const std::int32_t index = desk.Grid.RowData(row);
            for (std::int32_t column = FirstVariableColumn; column <= ColumnCount; ++column) {
                const Text text = g.gFields->Ref(index).ValueText(column, vmGrid, locale);
                Promise(desk.Grid.TextMatrix(row, column - 1) == text, "a cell shows its record's value");
            }
        }
    }

    MemoryFiles files;
    ScriptedToolkit toolkit;
    FakeLocale locale;
    FakeClock clock;
    FakeEnvironment environment;
    FakeShell shell;
    FakeFileDialog fileDialog;
    FakeSuite suite;
    Platform platform{files, toolkit, locale, clock, environment, shell, fileDialog, suite};
    Globals g{platform};
    Desk desk{g};
};

}  // namespace kd::fuzz
