#include "CoreBench.h"

#include "appfiles/DerivedBounds.h"
#include "appfiles/LoadApplications.h"
#include "appfiles/RuleLetters.h"
#include "appfiles/SchemaReader.h"
#include "grid/ColumnCatalogue.h"
#include "lifecycle/StartUp.h"

namespace kd::bench {

namespace {

void FinishView(Globals& g, modKDLimitDesk::RuleTranslators& translators, std::int32_t fileId,
                std::int32_t first) {
    const auto& rules = translators.For(g.gFiles->Ref(fileId).Rules());
    for (std::int32_t index = first; index <= g.gFields->Count(); ++index) {
        modKDLimitDesk::DeriveBounds(g.gSavedFields->Ref(index), g.gFields->Ref(index));
        modKDLimitDesk::TranslateLetters(rules, g.gSavedFields->Ref(index), g.gFields->Ref(index));
    }
}

}  // namespace

Bench::Bench(const std::string& folder) : files(AllFiles(folder)) {
    for (const std::string& path : Templates(files)) {
        (void)machine.g.gMasterFiles->Add(path, true);
    }
    modKDLimitDesk::LoadRuleCatalogue(machine.g);
    modKDLimitDesk::BuildColumnCatalogue(machine.g);
    SetupGridColumns(desk);
}

void Bench::Read() {
    Globals& g = desk.g;
    SchemaReader reader(g);
    modKDLimitDesk::RuleTranslators rules(g.gRuleNames, g.platform.locale.CodePage());
    for (const std::string& path : files) {
        const std::int32_t first = g.gFields->Count() + 1;
        (void)g.gFiles->Add(path, "", "", 0);
        reader.Read(path, g.gFiles->Count());
        FinishView(g, rules, g.gFiles->Count(), first);
    }
}

void Bench::Load() {
    LoadApplications(desk);
}

void Bench::ExpectRead() const {
    const Globals& g = desk.g;
    Expect(g.gFiles->Count() == static_cast<std::int32_t>(files.size()), "every file is a view");
    Expect(g.gFields->Count() == g.gFiles->Count() * VariablesPerFile, "every variable is there");
    Expect(g.gSavedFields->Count() == g.gFields->Count(), "every variable has its twin");
    for (const auto& field : *g.gFields) {
        Expect(!IsNumericType(field->FieldType()) || field->Maximum() > field->Minimum(),
               "bounds are finished");
    }
}

}  // namespace kd::bench
