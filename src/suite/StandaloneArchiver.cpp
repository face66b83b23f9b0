#include "suite/StandaloneArchiver.h"

#include <algorithm>

#include "base/ApplicationNames.h"
#include "base/NumberTexts.h"
#include "base/Paths.h"
#include "base/cError.h"
#include "platform/Missing.h"

namespace kd {

namespace {

/// "Error 61: Disk full", CR LF, and the file.
Text Describe(const cError& error, std::string_view path) {
    Text text = "Error " + Digits(error.Number()) + ": " + error.Description();
    text += CrLf;
    text += error.Path().empty() ? Text(path) : error.Path();
    return text;
}

}  // namespace

bool StandaloneArchiver::IsFile(const Text& path) {
    if (m_files.IsRegularFile(path)) {
        return true;
    }
    // The disk may not have answered: only what cannot be read as a file is left out of an archive.
    // StandaloneArchiverTest.AFileThatTheDiskDeniesForAMomentIsNotLeftOut
    try {
        (void)m_files.Read(path);
        return true;
    } catch (const cError& error) {
        // The folder has just been listed: that it should be missing is no answer.
        if (error.Number() == errPathNotFound || !SaysMissing(error, Refusal::CountsAsMissing)) {
            throw;
        }
        return false;
    }
}

const StandaloneArchiver::Listing& StandaloneArchiver::ListingOf(const Text& folder) {
    const auto known = m_listings.find(folder);
    if (known != m_listings.end()) {
        return known->second;
    }
    Listing listing;
    for (Text& name : m_files.FolderEntries(folder)) {
        Text upper = m_locale.CodePage().Upper(name);
        listing.emplace_back(std::move(upper), std::move(name));
    }
    std::sort(listing.begin(), listing.end());
    return m_listings[folder] = std::move(listing);
}

std::vector<Text> StandaloneArchiver::FilesOf(std::string_view templatePath) {
    const CodePage& page = m_locale.CodePage();
    const Text folder = paths::FolderToList(templatePath);
    const auto templateName = paths::FileName(templatePath);
    const Text upperTemplate = page.Upper(templateName);
    const Text upperLog =
        page.Upper(paths::ChangeExtension(templateName, names::ChangeLogExtension(templateName)));
    const Text upperReport =
        page.Upper(paths::ChangeExtension(templateName, names::ChangeReportExtension(templateName)));

    // All names of an application begin as its template's does.
    const Listing& listing = ListingOf(folder);
    const Text begin = page.Upper(paths::BaseName(templateName));
    const auto first = std::lower_bound(listing.begin(), listing.end(), std::pair(begin, Text()));
    const auto last = std::find_if(first, listing.end(),
                                   [&](const auto& entry) { return !entry.first.starts_with(begin); });
    // Where several names differ in case alone, the exact one is the application's.
    const bool exact =
        std::any_of(first, last, [&](const auto& entry) { return entry.second == templateName; });
    std::vector<Text> found;
    bool hasTemplate = false;
    std::for_each(first, last, [&](const auto& entry) {
        const auto& [upper, name] = entry;
        const bool isTemplate = exact ? name == templateName : upper == upperTemplate;
        if (isTemplate || upper == upperLog || upper == upperReport ||
            names::ViewNumberOf(name, templateName, page) >= 1) {
            hasTemplate = hasTemplate || isTemplate;
            found.push_back(paths::InFolder(folder, name, m_files.Delimiter()));
        }
    });
    if (!hasTemplate) {
        throw cError(errFileNotFound, "StandaloneArchiver.FilesOf", {}, Text(templatePath));
    }
    std::sort(found.begin(), found.end());
    return found;
}

void StandaloneArchiver::CopyAll(std::vector<Text> sources, const Text& folder,
                                 std::string_view templatePath) {
    const CodePage& page = m_locale.CodePage();
    const auto isTemplate = [&](const Text& source) {
        return page.Upper(paths::FileName(source)) == page.Upper(paths::FileName(templatePath));
    };
    while (!sources.empty()) {
        try {
            m_files.CopyAllForArchive(sources, folder);
            return;
        } catch (const cError& error) {
            const auto failed = std::find(sources.begin(), sources.end(), error.Path());
            if (failed == sources.end() || isTemplate(*failed) || IsFile(*failed)) {
                throw;
            }
            sources.erase(sources.begin(), failed + 1);
        }
    }
}

Text StandaloneArchiver::FreeName(const std::vector<Text>& present) {
    const DateTime now = m_clock.Now();
    Text time = TimeText(now);
    std::replace(time.begin(), time.end(), ':', '-');  // no file system of any platform minds it
    const Text name = DateText(now) + "_" + time;
    Text free = name;
    for (int counter = 2; std::find(present.begin(), present.end(), free) != present.end(); ++counter) {
        free = name + "_" + Digits(counter);
    }
    return free;
}

Text StandaloneArchiver::TakeName(const Text& made, std::string_view parent) {
    std::vector<Text> present;
    try {
        present = m_files.FolderEntries(parent);
    } catch (const cError& error) {
        if (error.Number() != errPermissionDenied) {
            throw;
        }
        // One that may not be listed tells at the renaming which names are taken.
    }
    const char delimiter = m_files.Delimiter();
    constexpr int Tries = 10;
    for (int tries = 1;; ++tries) {
        const Text name = FreeName(present);
        Text path = paths::InFolder(parent, name, delimiter);
        try {
            m_files.Rename(made, path);
        } catch (const cError&) {
            // Another program may have taken the name since it was looked for.
            if (tries == Tries || !m_files.Exists(path) || !m_files.Exists(made)) {
                throw;
            }
            present.push_back(name);
            continue;
        }
        for (const Text& left : present) {
            if (names::IsUnfinishedArchive(left) && left != paths::FileName(made)) {
                m_files.DeleteAbandonedFolder(paths::InFolder(parent, left, delimiter));
            }
        }
        return path;
    }
}

Text StandaloneArchiver::BeginArchive(std::string_view path) {
    const Text key(path);
    try {
        const auto sources = FilesOf(path);
        const char delimiter = m_files.Delimiter();
        const Text parent = names::ArchivesOf(path, delimiter);
        const Text folder = paths::InFolder(parent, names::UnfinishedArchiveName(), delimiter);
        m_begun[key] = {folder, {}};
        m_files.MakeKeptFolder(folder);
        CopyAll(sources, folder, path);
        return {};
    } catch (const std::exception& failure) {
        Text description = Describe(AsError(failure, "ArchiveApplication"), path);
        DropArchive(path);
        return description;
    }
}

Text StandaloneArchiver::NameArchive(std::string_view path) {
    m_listings.clear();
    try {
        Begun& begun = m_begun.at(Text(path));
        begun.name = TakeName(begun.folder, paths::Folder(begun.folder));
        return {};
    } catch (const std::exception& failure) {
        Text description = Describe(AsError(failure, "ArchiveApplication"), path);
        DropArchive(path);
        return description;
    }
}

void StandaloneArchiver::DropArchive(std::string_view path) noexcept {
    m_listings.clear();
    try {
        const auto found = m_begun.find(Text(path));
        if (found == m_begun.end()) {
            return;
        }
        const Begun begun = std::move(found->second);
        m_begun.erase(found);
        if (!begun.name.empty()) {
            // The name goes before the content: a removal that breaks off must not leave half an archive.
            m_files.Rename(begun.name, begun.folder);
        }
        m_files.RemoveFolder(begun.folder);
        // Those above it go too where there never was an archive in them.
        const Text parent(paths::Folder(begun.folder));
        m_files.RemoveEmptyFolder(parent);
        m_files.RemoveEmptyFolder(paths::Folder(parent));
    } catch (...) {
        // A whole archive stays, or one without a name. The failure that led here is the one to tell.
    }
}

Text StandaloneArchiver::ArchiveApplication(std::string_view path) {
    m_listings.clear();
    Text failure = BeginArchive(path);
    if (failure.empty()) {
        failure = Settled(path);
    }
    if (failure.empty()) {
        failure = NameArchive(path);
    }
    if (failure.empty()) {
        failure = Settled(path);
    }
    m_begun.erase(Text(path));
    return failure;
}

Text StandaloneArchiver::Settled(std::string_view path) {
    try {
        m_files.Settle();
        return {};
    } catch (const std::exception& failure) {
        Text description = Describe(AsError(failure, "ArchiveApplication"), path);
        DropArchive(path);
        return description;
    }
}

}  // namespace kd
