#include "system/Waiting.h"

#include <chrono>
#include <thread>

namespace kd::waiting {

void (*Pause)(std::uint32_t) = [](std::uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
};

}  // namespace kd::waiting
