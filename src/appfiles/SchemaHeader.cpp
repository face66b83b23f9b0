#include "appfiles/SchemaHeader.h"

#include <algorithm>
#include <optional>

#include "appfiles/FileNumbers.h"
#include "base/NumberTexts.h"
#include "platform/Missing.h"

namespace kd::modKDLimitDesk {

namespace {

constexpr std::string_view FieldLine = "[FIELD]";
constexpr std::string_view RulesLine = "[RULES]";
constexpr std::string_view VersionLetters = "VERSION";
constexpr std::string_view NoVersion = "6.000";
constexpr double VersionStep = 0.001;

/// Where the revision stands in a header: behind the "=", up to the line's end.
struct VersionPlace {
    std::size_t begin;
    std::size_t end;
};

std::optional<VersionPlace> FindVersion(std::string_view header, const CodePage& page) {
    const Text upper = page.Upper(header);
    const auto letters = upper.find(VersionLetters);
    if (letters == Text::npos) {
        return std::nullopt;
    }
    // A capital may take more or fewer bytes than its small letter, but it is one character as well.
    const std::size_t position = CharacterCount(std::string_view(upper).substr(0, letters)) + 1;
    const auto equals = header.find('=', ByteOffset(header, position));
    const auto end = equals == std::string_view::npos ? equals : header.find(CrLf, equals);
    if (end == std::string_view::npos) {
        throw cError(errInvalidArgument, "SchemaHeader.FindVersion");
    }
    return VersionPlace{equals + 1, end};
}

double VersionAt(std::string_view header, const VersionPlace& place) {
    return FileNumber(header.substr(place.begin, place.end - place.begin));
}

/// Whether a line opens a section in the eyes of the reader.
bool IsSectionLine(std::string_view line) {
    const auto first = line.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && line[first] == '[';
}

/// Whether a section begins within `lines`, the rest of the first line apart.
bool HoldsSection(std::string_view lines) {
    for (auto end = lines.find(CrLf); end != std::string_view::npos; end = lines.find(CrLf)) {
        lines.remove_prefix(end + CrLf.size());
        if (IsSectionLine(lines.substr(0, lines.find(CrLf)))) {
            return true;
        }
    }
    return false;
}

/// The bytes of a file; none where it does not exist. A save that took a disk in trouble for a missing file
/// would write the variables without their header.
/// ReadHeaderTextTest.AFileThatTheDiskDeniesForAMomentIsReadAllTheSame
std::string BytesOf(Globals& g, std::string_view path) {
    std::string bytes;
    (void)ReadUnlessMissing(g.platform.files, path, Refusal::SaysNothing,
                            [&] { bytes = g.platform.files.Read(path); });
    return bytes;
}

}  // namespace

Text ReadHeaderText(Globals& g, std::string_view path) {
    const CodePage& page = g.platform.locale.CodePage();
    const std::string file = BytesOf(g, path);
    const std::string_view bytes = file;
    std::size_t position = 0;
    while (position < bytes.size()) {
        const auto end = bytes.find(CrLf, position);
        const std::string_view line = bytes.substr(position, end - position);
        if (line.size() == FieldLine.size() && page.Upper(page.Decode(line)) == FieldLine) {
            break;
        }
        if (end == std::string_view::npos) {
            return page.Decode(bytes).append(CrLf);
        }
        position = end + CrLf.size();
    }
    return page.Decode(bytes.substr(0, position));
}

Text HeaderVersion(std::string_view header, const CodePage& page) {
    const auto place = FindVersion(header, page);
    return place ? RevisionText(VersionAt(header, *place)) : Text(NoVersion);
}

Text BumpHeaderVersion(std::string_view header, const CodePage& page) {
    const auto place = FindVersion(header, page);
    if (!place) {
        return Text(header);
    }
    Text bumped(header.substr(0, place->begin));
    bumped += ' ';
    bumped += RevisionText(VersionAt(header, *place) + VersionStep);
    bumped += header.substr(place->end);
    return bumped;
}

Text ReplaceRulesBlock(std::string_view header, std::string_view rulesBlock) {
    constexpr std::string_view EmptyLine = "\r\n\r\n";
    const auto begin = header.find(RulesLine);
    if (begin == std::string_view::npos) {
        return Text(header);
    }
    const auto end = header.find(EmptyLine, begin);
    // A section that stands in between would be lost with the rules.
    if (end == std::string_view::npos || HoldsSection(header.substr(begin, end - begin))) {
        return Text(header);
    }
    Text replaced(header.substr(0, begin));
    replaced += rulesBlock;
    replaced += header.substr(end + EmptyLine.size());
    return replaced;
}

}  // namespace kd::modKDLimitDesk
