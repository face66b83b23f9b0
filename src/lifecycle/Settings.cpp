#include "lifecycle/Settings.h"

#include "ini/INIfile.h"

namespace kd::modKDLimitDesk {

namespace {

// Section headers and keys of the file. Nothing stands in the first section, and nothing uses it.
constexpr const char* ProgramGroup = "[KDLIMITDESK]";
constexpr const char* RecentsGroup = "[RECENTS]";
constexpr const char* RecentKey = "Recent";
constexpr const char* FilesGroup = "[FILES]";
constexpr const char* FileKey = "File";

constexpr std::int32_t Indent = 3;
constexpr std::int32_t EqualColumn = 11;

/// A line end in the name of a file would begin a line of its own, which could list another application.
Text WithoutLineEnds(Text text) {
    BlankLineEnds(text);
    return text;
}

/// Puts a file that may be neither read nor written in another's place; the other one, of which the same is
/// so, goes when that is done.
void RenameOver(Files& files, const Text& from, const Text& to) {
    const Text earlier = to + ".temp";
    files.RemoveFolder(earlier);  // of a run that ended in the middle of this
    files.Rename(to, earlier);
    try {
        files.Rename(from, to);
    } catch (const cError&) {
        files.Rename(earlier, to);
        throw;
    }
    try {
        files.RemoveFolder(earlier);
    } catch (const cError&) {  // the next time it goes
    }
}

Text AsideOf(const Text& path) {
    return path + ".old";
}

bool IsEntry(const INIline& line, std::string_view group, std::string_view key) {
    return EqualsNoCaseAscii(line.Group(), group) && EqualsNoCaseAscii(line.Section(), key);
}

}  // namespace

bool ReadSettings(Globals& g, std::string_view path) {
    g.gMasterFiles = std::make_shared<cMasterFiles>();
    g.gRecents = std::make_shared<cRecents>();
    g.gFiles = std::make_shared<cFiles>();

    INIfile file(g.platform.files, g.platform.locale);
    const bool read = file.LoadFile(path);
    for (const auto& line : file.INIlines()) {
        if (IsEntry(*line, RecentsGroup, RecentKey)) {
            g.gRecents->Add(line->Value());
        } else if (IsEntry(*line, FilesGroup, FileKey)) {
            g.gMasterFiles->Add(line->Value(), true);
        }
    }
    g.gMasterFiles->Sort("A");
    return read;
}

bool SetAside(Files& files, const Text& path) {
    const Text aside = AsideOf(path);
    if (!files.Exists(path)) {
        return false;  // an earlier one then need not be touched
    }
    try {
        files.Rename(path, aside);
        return true;
    } catch (const cError&) {  // an earlier one may be in the way
    }
    try {
        RenameOver(files, path, aside);
        return true;
    } catch (const cError&) {
        return false;  // by contract without a word
    }
}

void PutBack(Files& files, const Text& path) {
    try {
        files.Rename(AsideOf(path), path);
    } catch (const cError&) {  // by contract without a word
    }
}

bool WriteSettings(Globals& g, std::string_view path) {
    INIfile file(g.platform.files, g.platform.locale);
    file.SetLeadingSpaces(Indent);
    file.SetEqualPos(EqualColumn);
    INIlines& lines = file.INIlines();
    lines.Add(ProgramGroup, {}, {});
    lines.Add({}, {}, {});
    lines.Add(RecentsGroup, {}, {});
    for (const auto& recent : *g.gRecents) {
        lines.Add(RecentsGroup, RecentKey, WithoutLineEnds(recent->Criteria()));
    }
    lines.Add({}, {}, {});
    lines.Add(FilesGroup, {}, {});
    for (const auto& application : *g.gMasterFiles) {
        lines.Add(FilesGroup, FileKey, WithoutLineEnds(application->Filename()));
    }
    return file.SaveFile(path);
}

}  // namespace kd::modKDLimitDesk
