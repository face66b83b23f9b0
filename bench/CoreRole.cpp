#include "CoreRole.h"

#include <fstream>

#include "Machine.h"
#include "Measure.h"
#include "appfiles/LoadApplications.h"
#include "appfiles/SchemaReader.h"
#include "appfiles/Variables.h"
#include "grid/ColumnCatalogue.h"
#include "lifecycle/StartUp.h"

namespace kd::bench {

namespace {

/// The program without its window, before its first load.
struct Bench {
    explicit Bench(const std::string& folder) : files(AllFiles(folder)) {
        for (const std::string& path : Templates(files)) {
            (void)machine.g.gMasterFiles->Add(path, true);
        }
        modKDLimitDesk::LoadRuleCatalogue(machine.g);
        modKDLimitDesk::BuildColumnCatalogue(machine.g);
        SetupGridColumns(desk);
    }
    std::vector<std::string> files;
    Machine machine;
    Desk desk{machine.g};
};

void FinishView(Globals& g, modKDLimitDesk::RuleTranslators& translators, std::int32_t fileId,
                std::int32_t first) {
    const auto& rules = translators.For(g.gFiles->Ref(fileId).Rules());
    for (std::int32_t index = first; index <= g.gFields->Count(); ++index) {
        modKDLimitDesk::FinishVariable(rules, g.gSavedFields->Ref(index), g.gFields->Ref(index));
    }
}

/// Every variable has its twin, and one of the first file has all that a load gives it.
void ExpectRead(const Globals& g, std::size_t files) {
    Expect(g.gFiles->Count() == static_cast<std::int32_t>(files), "every file is a view");
    Expect(g.gFields->Count() == g.gFiles->Count() * VariablesPerFile, "every variable is there");
    Expect(g.gSavedFields->Count() == g.gFields->Count(), "every variable has its twin");
    for (const auto& field : *g.gFields) {
        Expect(!IsNumericType(field->FieldType()) || field->Maximum() > field->Minimum(),
               "bounds are finished");
    }
}

}  // namespace

void RunRead(const std::string& folder) {
    const Bench bench(folder);
    Globals& g = bench.desk.g;
    Meter meter;
    SchemaReader reader(g);
    modKDLimitDesk::RuleTranslators rules(g.gRuleNames, g.platform.locale.CodePage());
    for (const std::string& path : bench.files) {
        const std::int32_t first = g.gFields->Count() + 1;
        (void)g.gFiles->Add(path, "", "", 0);
        reader.Read(path, g.gFiles->Count());
        FinishView(g, rules, g.gFiles->Count(), first);
    }
    const Cost cost = meter.Stop();
    ExpectRead(g, bench.files.size());
    Report("read", cost);
}

void RunTexts(const std::string& folder) {
    Bench bench(folder);
    Meter meter;
    LoadApplications(bench.desk);
    const Cost cost = meter.Stop();
    ExpectRead(bench.desk.g, bench.files.size());
    Expect(bench.desk.Grid.Rows() == bench.desk.g.gFields->Count() + 1, "every variable has its row");
    Report("texts", cost);
}

void WriteGrid(const std::string& folder, const std::string& path) {
    Bench bench(folder);
    LoadApplications(bench.desk);
    std::ofstream file(path, std::ios::binary);
    const VSFlexGrid& grid = bench.desk.Grid;
    for (std::int32_t row = 0; row < grid.Rows(); ++row) {
        for (std::int32_t col = 0; col < grid.Cols(); ++col) {
            Text cell(grid.TextMatrix(row, col));  // the corpus has no quotation marks
            file << (col == 0 ? "\"" : ",\"") << cell << '"';
        }
        file << "\r\n";
    }
    Expect(file.flush().good(), "the grid is written");
}

}  // namespace kd::bench
