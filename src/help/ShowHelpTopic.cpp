#include "help/ShowHelpTopic.h"

#include "base/Paths.h"
#include "model/modKDLimitDesk.h"

namespace kd::modKDLimitDesk {

void ShowHelpTopic(Globals& g, std::string_view topic) {
    const auto index = g.platform.suite.NewHelpIndex();
    const Text catalogue = Text(paths::BaseName(g.platform.environment.ProgramPath())) + "Help.xml";
    const char delimiter = g.platform.files.Delimiter();
    index->SetFileName(
        JoinPath(std::string_view(&delimiter, 1), {GetSuiteContext(g).HelpFolder(), catalogue}));
    index->LoadIndex();
    if (const auto found = index->FindTopic(topic)) {
        found->OpenTopic();
    }
}

}  // namespace kd::modKDLimitDesk
