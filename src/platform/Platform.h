#pragma once

#include "platform/Files.h"
#include "platform/Services.h"
#include "platform/Suite.h"
#include "platform/Toolkit.h"

namespace kd {

/// Everything that the logic asks of the machine and of the suite, handed down by reference. Lends; owns
/// nothing.
struct Platform {
    Files& files;
    Toolkit& toolkit;
    Locale& locale;
    Clock& clock;
    Environment& environment;
    Shell& shell;
    FileDialog& fileDialog;
    Suite& suite;
};

}  // namespace kd
