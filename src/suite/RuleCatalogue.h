#pragma once

#include <vector>

#include "platform/Files.h"
#include "platform/Services.h"

namespace kd {

/// Names of the rules in order: those of the first "Rules.ini" that has any, of the given folders in order;
/// else the list built into the program. Never empty: an empty catalogue would erase the rules of every file
/// that is saved.
std::vector<Text> ReadRuleCatalogue(Files& files, const Locale& locale, const std::vector<Text>& folders);

}  // namespace kd
