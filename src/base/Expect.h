#pragma once

#include <cstdio>
#include <cstdlib>

/// Preconditions that only a fault of our own can break. Where builds check themselves (KD_CHECKS: the
/// presets debug, dev and asan) a broken one is told on the error stream and ends the program on the spot,
/// where a debugger sees who called; the shipped program does not ask. What a user, a file or a service can
/// bring about is never a precondition: that is a cError.
namespace kd {

#ifdef KD_CHECKED
inline constexpr bool Checked = true;
#else
inline constexpr bool Checked = false;
#endif

[[noreturn]] inline void PreconditionBroken(const char* condition, const char* file, int line) {
    static_cast<void>(std::fprintf(stderr, "%s:%d: precondition broken: %s\n", file, line, condition));
    std::abort();
}

}  // namespace kd

/// A macro for the condition's own words and place. The condition must have no effect.
#define KD_EXPECT(condition)                                          \
    do {                                                              \
        if (::kd::Checked && !(condition)) {                          \
            ::kd::PreconditionBroken(#condition, __FILE__, __LINE__); \
        }                                                             \
    } while (false)
