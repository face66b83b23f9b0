#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

/// Input of great size, with what it costs.
namespace kd {

/// Memory of the process in megabytes, as Linux tells it: "VmRSS:" for now, "VmHWM:" for the most since the
/// last ForgetPeak. 0 where it is not known.
inline double Megabytes(const std::string& kind) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == kind) {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes / 1024;
        }
    }
    return 0;
}

/// Whether the peak could be set back.
inline bool ForgetPeak() {
#ifdef __GLIBC__
    (void)::malloc_trim(0);
#endif
    std::ofstream clear("/proc/self/clear_refs");
    clear << "5" << std::flush;
    return clear.good();
}

/// Under the sanitizers memory says nothing: they keep what is given back.
constexpr bool MemoryCounts() {
#ifdef KD_SANITIZED
    return false;
#else
    return true;
#endif
}

/// The most that anything here may take: so much for each byte of its input, the copies of the disk in memory
/// and of the test included, and so much besides, which is what 32,767 variables with their baseline, their
/// rows and their texts need.
inline constexpr double BytesForEach = 16;
inline constexpr double BesidesMegabytes = 512;

/// Runs `work`, which returns the bytes of its input, with a small size each day, and in the long run with a
/// quarter of the full size and with all of it. Says what each took; the figures of the reliability page come
/// from here.
inline void AtSizes(const std::string& what, std::size_t full, std::size_t everyday,
                    const std::function<std::size_t(std::size_t)>& work) {
    const bool all = std::getenv("KD_TORTURE") != nullptr;
    const std::vector<std::size_t> sizes =
        all ? std::vector<std::size_t>{full / 4, full} : std::vector<std::size_t>{everyday};
    for (const std::size_t size : sizes) {
        SCOPED_TRACE(what + " " + std::to_string(size));
        const bool known = ForgetPeak();
        const double before = Megabytes("VmRSS:");
        const std::clock_t begin = std::clock();
        const double input = static_cast<double>(work(size)) / (1024 * 1024);
        const auto taken = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;  // of the processor
        const double memory = known ? Megabytes("VmHWM:") - before : 0;
        std::cout << what << ", " << size << ": " << static_cast<long>(taken * 1000) << " ms, "
                  << static_cast<long>(memory) << " MB for " << input << " MB of input" << std::endl;
        if (MemoryCounts()) {
            EXPECT_LE(memory, BesidesMegabytes + BytesForEach * input);
        }
    }
}

}  // namespace kd
