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
    for (std::size_t at = text.find(CrLf); at != Text::npos; at = text.find(CrLf, at)) {
        text.replace(at, CrLf.size(), CrLf.size(), ' ');
    }
    return text;
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

void SetAside(Files& files, const Text& path) {
    const Text aside = path + ".old";
    try {
        files.Rename(path, aside);  // needs no right to read it
        return;
    } catch (const cError&) {
        // An earlier one is in the way, or there is nothing to rename.
    }
    try {
        files.MoveOver(path, aside);
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
