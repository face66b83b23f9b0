#pragma once

#include "fakes/FakeServices.h"
#include "fakes/FakeSuite.h"
#include "fakes/MemoryFiles.h"
#include "fakes/ScriptedToolkit.h"
#include "model/Globals.h"

namespace kd {

/// Everything a test of the core needs, afresh: fakes, the platform over them, and the globals.
struct TestMachine {
    MemoryFiles files;
    ScriptedToolkit toolkit;
    FakeLocale locale;
    FakeClock clock;
    FakeEnvironment environment;
    FakeShell shell;
    FakeFileDialog fileDialog;
    FakeSuite suite;
    Platform platform{files, toolkit, locale, clock, environment, shell, fileDialog, suite};
    Globals g{platform};
};

}  // namespace kd
