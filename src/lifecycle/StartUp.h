#pragma once

#include <cstdint>

#include "model/Globals.h"

/// The steps of the start that need no window.
namespace kd::modKDLimitDesk {

/// Fills gRuleNames, gRuleLetters and gRulesBlock from the suite's rule catalogue.
void LoadRuleCatalogue(Globals& g);

/// Who the user is: the environment's "USERNAME", or the name of the suite's login where one is required.
/// Empty when there is no identity. `window` is the handle of the main form's window.
Text GetUserName(Globals& g, std::uintptr_t window);

/// Path of the user's settings file.
Text SettingsPath(Globals& g);
/// Path of the settings beside the program, which are only read, and only while the user has none.
Text FallbackSettingsPath(Globals& g);

}  // namespace kd::modKDLimitDesk
