#pragma once

#include "model/Globals.h"

namespace kd::modKDLimitDesk {

/// Shows a topic of the help catalogue, which lies in the suite's help folder under the program's name. A
/// topic that the catalogue does not hold shows nothing and says nothing.
/// @throws cError what the help service raises for a missing catalogue.
void ShowHelpTopic(Globals& g, std::string_view topic);

/// Topic of the Help button of Manage Applications.
inline constexpr std::string_view DocumentationTopic = "Documentation";

}  // namespace kd::modKDLimitDesk
