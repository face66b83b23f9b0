#pragma once

#include "base/Text.h"

namespace kd {

/// What the dialogs of Fill and Replace begin with: kept by the main form between commands, for the run.
struct EditMemory {
    Text LastFillText;
    Text LastFindText;
    Text LastReplaceText;
};

}  // namespace kd
