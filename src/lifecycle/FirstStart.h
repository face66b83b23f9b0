#pragma once

#include "model/Globals.h"

namespace kd::modKDLimitDesk {

/// An installation keeps its sample applications where users may not write. So that a first start has
/// something to try, they are copied to `ownFolder` (unless that exists: what was tried out on them stays)
/// and listed in a new settings file. Does nothing when settings exist already, for this user or beside the
/// program, or when `installedFolder` holds no application. What fails leaves neither a new folder nor
/// settings, without a word: the program starts with an empty list, and the next first start tries again.
void ProvideSampleApplications(Globals& g, std::string_view installedFolder, std::string_view ownFolder);

}  // namespace kd::modKDLimitDesk
