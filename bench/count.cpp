// Does the steps whose instructions bench/instructions.py counts: kd_count FOLDER SCRATCH
#include <cstdio>
#include <exception>

#include "CountedSteps.h"

void KdCounted(const std::function<void()>& work) {
    work();
    __asm__ volatile("");  // or the call would become a jump, and the count end elsewhere
}

int main(int argc, char** argv) {
    try {
        if (argc != 3) {
            (void)std::fprintf(stderr, "usage: kd_count FOLDER SCRATCH\n");
            return 1;
        }
        kd::bench::CountSteps(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        (void)std::fprintf(stderr, "kd_count: %s\n", error.what());
        return 1;
    }
}
