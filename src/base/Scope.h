#pragma once

#include <utility>

namespace kd {

/// Runs an action at the end of the scope, whichever way it is left. The action must not throw.
template <typename Action>
class Scope {
public:
    explicit Scope(Action action) : m_action(std::move(action)) {}
    ~Scope() { m_action(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

private:
    Action m_action;
};

}  // namespace kd
