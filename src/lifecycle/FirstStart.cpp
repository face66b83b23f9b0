#include "lifecycle/FirstStart.h"

#include "base/Paths.h"
#include "base/cError.h"
#include "lifecycle/Settings.h"
#include "lifecycle/StartUp.h"
#include "platform/Missing.h"

namespace kd::modKDLimitDesk {

namespace {

bool IsTemplate(std::string_view name) {
    const std::string_view extension = name.substr(paths::BaseName(name).size());
    return EqualsNoCaseAscii(extension, ".kdt") || EqualsNoCaseAscii(extension, ".kdt6");
}

std::vector<Text> TemplatesIn(Files& files, std::string_view folder) {
    std::vector<Text> names = files.FolderEntries(folder);
    std::erase_if(names, [](const Text& name) { return !IsTemplate(name); });
    return names;
}

/// Name of a folder while it is being filled or taken away.
Text Unfinished(std::string_view folder) {
    return Text(folder) + ".new";
}

/// Removes a folder whose name goes first, so that no part of it is taken for all. What cannot be renamed
/// stays whole.
void TakeAway(Files& files, std::string_view folder) {
    try {
        files.Rename(folder, Unfinished(folder));
        files.RemoveFolder(Unfinished(folder));
    } catch (const std::exception&) {
        // The next first start lists what has kept its name, and removes the rest.
    }
}

/// Copies the files of a folder to a new one, which appears only when all are in it.
void CopyFolder(Files& files, std::string_view from, std::string_view to) {
    const char delimiter = files.Delimiter();
    const Text unfinished = Unfinished(to);
    files.RemoveFolder(unfinished);
    files.MakeFolder(unfinished);
    try {
        for (const Text& name : files.FolderEntries(from)) {
            if (const Text source = paths::InFolder(from, name, delimiter); files.IsRegularFile(source)) {
                files.CopyForArchive(source, paths::InFolder(unfinished, name, delimiter));
            }
        }
        files.Rename(unfinished, to);
    } catch (const std::exception&) {
        files.RemoveFolder(unfinished);
        throw;
    }
}

}  // namespace

void ProvideSampleApplications(Globals& g, std::string_view installedFolder, std::string_view ownFolder) {
    Files& files = g.platform.files;
    const Text settings = SettingsPath(g);
    if (PresenceOf(files, settings) != Presence::Missing || files.Exists(FallbackSettingsPath(g)) ||
        !files.Exists(installedFolder)) {
        return;
    }
    bool isMade = false;  // only what this start has made may be taken away again
    try {
        if (TemplatesIn(files, installedFolder).empty()) {
            return;
        }
        if (!files.Exists(ownFolder)) {
            CopyFolder(files, installedFolder, ownFolder);
            isMade = true;
        }
        g.gMasterFiles = std::make_shared<cMasterFiles>();
        for (const Text& name : TemplatesIn(files, ownFolder)) {
            g.gMasterFiles->Add(paths::InFolder(ownFolder, name, files.Delimiter()), true);
        }
        g.gMasterFiles->Sort("A");
        if (g.gMasterFiles->Count() > 0) {
            WriteSettings(g, settings);  // without a word when it fails
        }
    } catch (const std::exception&) {
        // Nothing to try is no reason not to start.
    }
    if (isMade && PresenceOf(files, settings) == Presence::Missing) {
        TakeAway(files, ownFolder);
    }
}

}  // namespace kd::modKDLimitDesk
