#pragma once

#include <functional>
#include <utility>

#include "base/cError.h"

namespace kd {

/// The words of a failure that no command handled: "Run-time error '6':", two CR LF, the description, and
/// where a file is at hand CR LF and its path.
Text UnhandledErrorText(const cError& error);

/// The edge between the toolkit's event loop and the logic: what the user does enters through Run, and no
/// failure leaves it. The toolkit has the one that all windows share. The main form puts its own handlers and
/// the grid's events behind it, since commands run them too; whatever else a widget hands on, its binder
/// does.
class EventBoundary {
public:
    /// Runs what `putBack` puts back, which may be empty, and shows the words of a failure.
    using Tell = std::function<void(const std::function<void()>& putBack, const Text& words)>;
    explicit EventBoundary(Tell tell) : m_tell(std::move(tell)) {}
    virtual ~EventBoundary() = default;
    EventBoundary(const EventBoundary&) = delete;
    EventBoundary& operator=(const EventBoundary&) = delete;

    /// Runs a handler. A failure that it does not handle itself stops it where it is, without undoing; then
    /// the pointer and what PutBack knows are put back, one critical box tells what happened, and the
    /// program goes on. Runs may be nested: a failure ends in the innermost one, and the outer goes on.
    /// @returns whether the handler ran to its end.
    virtual bool Run(const std::function<void()>& handler);

    /// What a stopped handler may have left switched over, beside the pointer; nothing while empty. Set by
    /// the main form for as long as it lives.
    std::function<void()> PutBack;

private:
    Tell m_tell;
};

}  // namespace kd
