#include "base/ApplicationNames.h"

#include <algorithm>
#include <charconv>
#include <random>

#include "base/NumberTexts.h"
#include "base/Paths.h"

namespace kd::names {

namespace {

/// Extension of a view's file up to its number.
std::string_view ViewStem(std::string_view templatePath) noexcept {
    return IsGeneration6(templatePath) ? ".KDV6.V" : ".V";
}

constexpr std::string_view Waiting = ".kdsave-";
constexpr std::string_view Unfinished = ".unfinished-";
constexpr std::size_t RandomLetters = 16;

/// Whether these are letters as WithRandomLetters makes them.
bool AreRandomLetters(std::string_view letters) noexcept {
    return letters.size() == RandomLetters &&
           std::all_of(letters.begin(), letters.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

Text WithRandomLetters(std::string_view stem) {
    static std::random_device random;  // to make one costs more than all its letters
    Text name(stem);
    for (std::size_t i = 0; i < RandomLetters; ++i) {
        name += static_cast<char>('a' + static_cast<int>(random() % 26U));
    }
    return name;
}

}  // namespace

bool IsGeneration6(std::string_view templatePath) noexcept {
    return templatePath.ends_with('6');
}

Text ViewExtension(std::string_view templatePath, std::int32_t number) {
    return Text(ViewStem(templatePath)) + Digits(number);
}

Text ChangeLogExtension(std::string_view templatePath) {
    return IsGeneration6(templatePath) ? ".KDL6" : ".KDL";
}

Text ChangeReportExtension(std::string_view templatePath) {
    return IsGeneration6(templatePath) ? ".KDM6" : ".KDM";
}

std::int32_t ViewNumberOf(std::string_view fileName, std::string_view templateName, const CodePage& page) {
    if (fileName.empty() || fileName.back() < '0' || fileName.back() > '9') {
        return 0;  // most names of a large folder are told apart here
    }
    const Text prefix = page.Upper(paths::ChangeExtension(templateName, ViewStem(templateName)));
    const Text name = page.Upper(fileName);
    if (!name.starts_with(prefix) || name[prefix.size()] == '0') {
        return 0;  // a number has no leading zero, or the file would not be the one that a save writes
    }
    std::int32_t number = 0;  // and stays so where it is none, or too large
    const char* const end = name.data() + name.size();
    const char* const behind = std::from_chars(name.data() + prefix.size(), end, number).ptr;
    return behind == end ? std::max(number, 0) : 0;
}

Text ArchivesOf(std::string_view templatePath, char delimiter) {
    const Text archives = paths::InFolder(paths::FolderToList(templatePath), "Archive", delimiter);
    return paths::InFolder(archives, paths::BaseName(templatePath), delimiter);
}

Text UnfinishedArchiveName() {
    return WithRandomLetters(Unfinished);
}

bool IsUnfinishedArchive(std::string_view folderName) noexcept {
    return folderName.starts_with(Unfinished) && AreRandomLetters(folderName.substr(Unfinished.size()));
}

Text WaitingName(std::string_view fileName) {
    return WithRandomLetters(Waiting).append("-").append(fileName);
}

std::string_view WaitsFor(std::string_view fileName) noexcept {
    constexpr std::size_t Dash = Waiting.size() + RandomLetters;
    const bool waits = fileName.size() > Dash && fileName.starts_with(Waiting) && fileName[Dash] == '-' &&
                       AreRandomLetters(fileName.substr(Waiting.size(), RandomLetters));
    return waits ? fileName.substr(Dash + 1) : std::string_view();
}

}  // namespace kd::names
