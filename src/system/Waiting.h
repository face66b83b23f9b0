#pragma once

#include <cstdint>

/// Waiting for a file that another program holds. Only for the sources of this folder and their tests.
namespace kd::waiting {

/// A virus scanner, an indexer or a backup holds a file for a moment: what is refused for that reason is
/// tried again after each of these pauses, then the refusal stands.
inline constexpr std::uint32_t GlanceInMilliseconds[] = {10, 20, 40, 80, 160};
/// A file that another program keeps for a save of its own is waited for as long as a save takes: so often,
/// and so long each time.
inline constexpr int PausesForASave = 100;
inline constexpr std::uint32_t PauseForASaveInMilliseconds = 10;

/// Lets that time pass. Tests put one of their own in its place, so that none of them sleeps.
extern void (*Pause)(std::uint32_t milliseconds);

/// Runs `call`, which returns 0 or a code of the system's, and again after a pause while `mayPass` holds for
/// the code; returns the last one.
template <typename Call, typename MayPass>
auto Glance(Call call, MayPass mayPass) {
    auto code = call();
    for (const std::uint32_t pause : GlanceInMilliseconds) {
        if (code == 0 || !mayPass(code)) {
            break;
        }
        Pause(pause);
        code = call();
    }
    return code;
}

/// The same for what another program keeps for a save.
template <typename Call, typename MayPass>
auto ASave(Call call, MayPass mayPass) {
    auto code = call();
    for (int pauses = 0; pauses < PausesForASave && code != 0 && mayPass(code); ++pauses) {
        Pause(PauseForASaveInMilliseconds);
        code = call();
    }
    return code;
}

}  // namespace kd::waiting
