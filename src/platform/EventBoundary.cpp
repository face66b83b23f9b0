#include "platform/EventBoundary.h"

#include <new>

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
    } catch (const cError& error) {
        report(error);
    } catch (const std::bad_alloc&) {
        report(cError(errOutOfMemory, "AtEventBoundary"));
    } catch (const std::exception& error) {
        report(cError(errInvalidArgument, "AtEventBoundary", error.what()));
    }
    return false;
}

}  // namespace kd
