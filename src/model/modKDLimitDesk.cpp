#include "model/modKDLimitDesk.h"

#include <algorithm>

namespace kd::modKDLimitDesk {

KDSuiteContext& GetSuiteContext(Globals& g) {
    if (!g.suiteContext) {
        auto context = g.platform.suite.NewSuiteContext();
        context->SetSystemCode("KD6");
        context->OpenContext();
        g.suiteContext = std::move(context);
    }
    return *g.suiteContext;
}

Text ChangeFileExtension(Globals& g, std::string_view path, std::string_view extension) {
    return g.platform.suite.NewPathTools()->ChangeExtension(path, extension);
}

bool AnyChanges(const Globals& g) {
    return std::any_of(g.gFiles->begin(), g.gFiles->end(),
                       [](const cFiles::Record& file) { return file->ChangesMade(); });
}

void CopyFieldValues(const cField& source, cField& target) {
    target.CopyFrom(source);
}

Text JoinPath(std::string_view delimiter, const std::vector<Text>& parts) {
    Text path;
    for (const Text& part : parts) {
        path += part;
        if (!std::string_view(part).ends_with(delimiter)) {
            path += delimiter;
        }
    }
    if (std::string_view(path).ends_with(delimiter)) {
        path.resize(path.size() - delimiter.size());
    }
    return path;
}

}  // namespace kd::modKDLimitDesk
