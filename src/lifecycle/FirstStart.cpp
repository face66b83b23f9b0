#include "lifecycle/FirstStart.h"

#include <algorithm>

#include "base/Paths.h"
#include "base/cError.h"
#include "lifecycle/Settings.h"
#include "lifecycle/StartUp.h"
#include "platform/SurelyMissing.h"

namespace kd::modKDLimitDesk {

namespace {

bool IsTemplate(std::string_view name) {
    const std::string_view extension = name.substr(paths::BaseName(name).size());
    return EqualsNoCaseAscii(extension, ".kdt") || EqualsNoCaseAscii(extension, ".kdt6");
}

/// Copies the files of a folder to a new one, which appears only when all are in it.
void CopyFolder(Files& files, std::string_view from, std::string_view to) {
    const char delimiter = files.Delimiter();
    const Text unfinished = Text(to) + ".new";
    files.RemoveFolder(unfinished);
    files.MakeFolder(unfinished);
    try {
        for (const Text& name : files.FolderEntries(from)) {
            if (const Text source = paths::Join(from, name, delimiter); files.IsRegularFile(source)) {
                files.CopyForArchive(source, paths::Join(unfinished, name, delimiter));
            }
        }
        files.Rename(unfinished, to);
    } catch (const cError&) {
        files.RemoveFolder(unfinished);
        throw;
    }
}

}  // namespace

void ProvideSampleApplications(Globals& g, std::string_view installedFolder, std::string_view ownFolder) {
    Files& files = g.platform.files;
    const Text settings = SettingsPath(g);
    if (!IsSurelyMissing(files, settings) || files.Exists(FallbackSettingsPath(g)) ||
        !files.Exists(installedFolder)) {
        return;
    }
    try {
        if (!files.Exists(ownFolder)) {
            CopyFolder(files, installedFolder, ownFolder);
        }
        g.gRecents = std::make_shared<cRecents>();
        g.gMasterFiles = std::make_shared<cMasterFiles>();
        for (const Text& name : files.FolderEntries(ownFolder)) {
            if (IsTemplate(name)) {
                g.gMasterFiles->Add(paths::Join(ownFolder, name, files.Delimiter()), true);
            }
        }
        g.gMasterFiles->Sort("A");
        if (g.gMasterFiles->Count() > 0) {
            WriteSettings(g, settings);
        }
    } catch (const cError&) {
        // Nothing to try is no reason not to start.
    }
}

}  // namespace kd::modKDLimitDesk
