#include "platform/EventBoundary.h"

#include <exception>

#include "platform/Toolkit.h"

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
        const cError error = AsError(failure, "EventBoundary");
        m_toolkit.SetMousePointer(Pointer::Default);
        if (PutBack) {
            PutBack();
        }
        m_toolkit.Say(UnhandledErrorText(error), BoxIcon::Critical);
    }
    return false;
}

}  // namespace kd
