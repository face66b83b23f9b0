#include "platform/EventBoundary.h"

#include <exception>

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

bool EventBoundary::Run(const std::function<void()>& handler) {
    try {
        handler();
        return true;
    } catch (const std::exception& failure) {
        m_tell(PutBack, UnhandledErrorText(AsError(failure, "EventBoundary")));
    }
    return false;
}

}  // namespace kd
