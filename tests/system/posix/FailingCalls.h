#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace kd {

/// Makes the system's calls on files fail, for the length of a scope. The test program has its own versions
/// of these calls, which ask here first.
class FailingCalls {
public:
    /// The call with that number, from 1, fails with `code`, an errno; 0 for none. With `forGood` all later
    /// ones fail as well.
    explicit FailingCalls(int failAt = 0, int code = 0, bool forGood = false);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    /// Every call of that name fails.
    void FailEach(const std::string& name, int code);
    /// Reads and writes carry a byte or so, and every other call is cut off by a signal first.
    void Stutter() { m_stutters = true; }
    /// Runs `action`, undisturbed, before the call with that number: what another program does meanwhile.
    void Before(int call, std::function<void()> action);
    /// The same before the next call of that name, also of those that are not counted.
    void Before(const std::string& name, std::function<void()> action);
    /// Names of the calls so far, in order.
    const std::vector<std::string>& Calls() const { return m_calls; }

    /// Names of the files and folders that were flushed by themselves so far, in order, as they were then.
    const std::vector<std::string>& Flushed() const { return m_flushed; }

    /// For the calls alone: takes note of what is flushed.
    static void NoteFlush(int fd);
    /// For the calls alone: the errno that this one has to fail with, or 0.
    static int Ask(const char* name);
    /// The same for a call that is not counted and fails with its name alone.
    static int FailureOf(const std::string& name);
    static bool Stutters();

private:
    int m_failAt;
    int m_code;
    bool m_forGood;
    bool m_stutters = false;
    bool m_interrupted = false;
    std::string m_failing;
    int m_failingCode = 0;
    std::vector<std::string> m_calls;
    std::vector<std::string> m_flushed;
    void Act();

    int m_actionAt = 0;
    std::string m_actionBefore;
    std::function<void()> m_action;
};

}  // namespace kd
