#include "platform/EventBoundary.h"

namespace kd {

Text UnhandledErrorText(const cError& error) {
    Text text = "Run-time error '" + std::to_string(error.Number()) + "':";
    text += CrLf;
    text += CrLf;
    text += error.Description();
    if (!error.Path().empty()) {
        text += CrLf;
        text += error.Path();
    }
    return text;
}

bool AtEventBoundary(Toolkit& toolkit, const std::function<void()>& putBack,
                     const std::function<void()>& handler) {
    const auto report = [&](const cError& error) {
        if (putBack) {
            putBack();
        }
        toolkit.Say(UnhandledErrorText(error), BoxIcon::Critical);
    };
    try {
        handler();
        return true;
    } catch (const std::exception& failure) {
        report(AsError(failure, "AtEventBoundary"));
    }
    return false;
}

}  // namespace kd
