#pragma once

#include <memory>
#include <vector>

#include "model/Records.h"
#include "model/cField.h"
#include "platform/Platform.h"

namespace kd {

/// All that lives until a load replaces it. Made by Application and afresh in each test; handed down by
/// reference. A replacement always takes a new object; nothing empties these in place.
struct Globals {
    explicit Globals(Platform& thePlatform) : platform(thePlatform) {}

    Platform& platform;

    std::shared_ptr<cMasterFiles> gMasterFiles =
        std::make_shared<cMasterFiles>();                               // the list of applications
    std::shared_ptr<cRecents> gRecents = std::make_shared<cRecents>();  // filter criteria, newest first
    std::shared_ptr<cFiles> gFiles = std::make_shared<cFiles>();        // all views
    std::shared_ptr<cFields> gFields = std::make_shared<cFields>();  // current values, catalogue rule letters
    std::shared_ptr<cFields> gSavedFields = std::make_shared<cFields>();  // the baseline, index for index
    std::shared_ptr<cLabels> gLabels = std::make_shared<cLabels>();       // the grid's columns

    Text gSettingsPath;
    bool gStartingUp = false;  // while the first Manage Applications runs
    Text gUserName;
    Text gRuleNames;    // the rule catalogue: names joined with ","
    Text gRuleLetters;  // one letter for each, from "A"
    Text gRulesBlock;   // a ready rules section

    /// Made and opened on first use by GetSuiteContext.
    std::unique_ptr<KDSuiteContext> suiteContext;
    /// Temporary paths of failed saves, which stay open for the run.
    std::vector<Text> openTemporaries;
    /// Their files.
    std::vector<std::unique_ptr<OutputFile>> openTemporaryFiles;
};

}  // namespace kd
