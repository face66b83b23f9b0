#include "lifecycle/StartUp.h"

#include "appfiles/RuleLetters.h"
#include "base/Paths.h"
#include "model/modKDLimitDesk.h"

namespace kd::modKDLimitDesk {

void LoadRuleCatalogue(Globals& g) {
    const auto reader = g.platform.suite.NewApplicationFile();
    const auto& rules = reader->RuleList();
    g.gRuleNames.clear();
    g.gRuleLetters.clear();
    for (std::int32_t position = 1; position <= rules.Count(); ++position) {
        // An empty first name leaves no trace.
        if (!g.gRuleNames.empty()) {
            g.gRuleNames += ',';
        }
        g.gRuleNames += rules.Item(position).RuleEntryName();
        g.gRuleLetters += RuleLetter(static_cast<std::size_t>(position - 1), g.platform.locale.CodePage());
    }
    Text block = "[RULES]";
    block += CrLf;
    for (std::int32_t position = 1; position <= rules.Count(); ++position) {
        block += "   RULE         = " + rules.Item(position).RuleEntryName();
        block += CrLf;
    }
    block += CrLf;
    g.gRulesBlock = std::move(block);
}

Text GetUserName(Globals& g, std::uintptr_t window) {
    const auto login = g.platform.suite.NewLogin();
    if (!login->LoginRequired()) {
        return g.platform.environment.Variable("USERNAME");
    }
    const auto user = login->PromptLogin(window, WindowTitle, "Authentication Required.");
    return user && user->IsAuthenticated() ? user->LoginUserName() : Text();
}

Text SettingsPath(Globals& g) {
    const Text name(paths::BaseName(g.platform.environment.ProgramPath()));
    return ChangeFileExtension(
        g, paths::InFolder(GetSuiteContext(g).SettingsFolder(), name, g.platform.files.Delimiter()), ".IKD");
}

Text FallbackSettingsPath(Globals& g) {
    const Text program = g.platform.environment.ProgramPath();
    const Text beside =
        paths::InFolder(paths::Folder(program), paths::FileName(program), g.platform.files.Delimiter());
    return ChangeFileExtension(g, beside, ".ini");
}

}  // namespace kd::modKDLimitDesk
