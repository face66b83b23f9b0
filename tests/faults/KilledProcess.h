#pragma once

#ifdef __linux__

#include <sys/ptrace.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace kd {

/// Runs an action in a process of its own and kills it at one of its calls of the system.
class KilledProcess {
public:
    /// `before` runs undisturbed, `action` under observation.
    KilledProcess(const std::function<void()>& before, const std::function<void()>& action) {
        m_child = ::fork();
        if (m_child == 0) {
            // The end of this process is not the end of a test: it goes without a farewell.
            (void)::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            before();
            (void)::raise(SIGSTOP);
            action();
            ::_exit(0);
        }
    }
    ~KilledProcess() {
        if (m_child > 0 && !m_gone) {
            (void)::kill(m_child, SIGKILL);
            (void)::waitpid(m_child, nullptr, 0);
        }
    }
    KilledProcess(const KilledProcess&) = delete;
    KilledProcess& operator=(const KilledProcess&) = delete;

    /// Whether this machine lets a process watch its own child.
    static bool Possible() {
        KilledProcess probe([] {}, [] {});
        return probe.KillAt(1) == 1;
    }

    /// Goes on to the moment with that number, from 1: each call of the system has two, before it and behind
    /// it. Kills the process there. Returns how many moments went by, which is fewer when the action ended
    /// first.
    int KillAt(int moment) {
        int status = 0;
        // Signals that come before the action begins are passed over, but for the stop that begins it.
        if (::waitpid(m_child, &status, 0) != m_child || !WIFSTOPPED(status)) {
            m_gone = true;
            return 0;
        }
        int passed = 0;
        while (passed < moment) {
            if (::ptrace(PTRACE_SYSCALL, m_child, nullptr, nullptr) != 0 ||
                ::waitpid(m_child, &status, 0) != m_child || !WIFSTOPPED(status)) {
                m_gone = true;
                return passed;
            }
            ++passed;
        }
        (void)::kill(m_child, SIGKILL);
        (void)::waitpid(m_child, &status, 0);
        m_gone = true;
        return passed;
    }
    /// Lets the action run for that many microseconds, unwatched, and kills it wherever it is.
    void KillAfter(unsigned microseconds) {
        int status = 0;
        (void)::waitpid(m_child, &status, 0);
        (void)::ptrace(PTRACE_DETACH, m_child, nullptr, nullptr);
        (void)::usleep(microseconds);
        (void)::kill(m_child, SIGKILL);
        (void)::waitpid(m_child, &status, 0);
        m_gone = true;
    }

private:
    pid_t m_child = -1;
    bool m_gone = false;
};

}  // namespace kd

#endif
