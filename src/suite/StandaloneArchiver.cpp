#include "suite/StandaloneArchiver.h"

#include <algorithm>

#include "base/ApplicationNames.h"
#include "base/Numbers.h"
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

std::vector<Text> StandaloneArchiver::FilesOf(std::string_view templatePath) {
    const CodePage& page = m_locale.CodePage();
    const Text folder = paths::FolderToList(templatePath);
    const auto templateName = paths::FileName(templatePath);
    const Text upperTemplate = page.Upper(templateName);
    const Text upperLog =
        page.Upper(paths::ChangeExtension(templateName, names::ChangeLogExtension(templateName)));
    const Text upperReport =
        page.Upper(paths::ChangeExtension(templateName, names::ChangeReportExtension(templateName)));

    const auto entries = m_files.FolderEntries(folder);
    // Where several names differ in case alone, the exact one is the application's.
    const bool exact = std::find(entries.begin(), entries.end(), templateName) != entries.end();
    std::vector<Text> found;
    bool hasTemplate = false;
    for (const Text& name : entries) {
        const Text upper = page.Upper(name);
        const bool isTemplate = exact ? name == templateName : upper == upperTemplate;
        const bool isOther =
            upper == upperLog || upper == upperReport || names::ViewNumberOf(name, templateName, page) >= 1;
        const Text path = paths::Join(folder, name, m_files.Delimiter());
        if (isTemplate || (isOther && IsFile(path))) {
            hasTemplate = hasTemplate || isTemplate;
            found.push_back(path);
        }
    }
    if (!hasTemplate) {
        throw cError(errFileNotFound, "StandaloneArchiver.FilesOf", {}, Text(templatePath));
    }
    std::sort(found.begin(), found.end());
    return found;
}

Text StandaloneArchiver::FreeName(std::string_view parent) {
    const DateTime now = m_clock.Now();
    Text time = TimeText(now);
    std::replace(time.begin(), time.end(), ':', '-');  // no file system of any platform minds it
    const Text name = paths::Join(parent, DateText(now) + "_" + time, m_files.Delimiter());
    Text free = name;
    for (int counter = 2; m_files.Exists(free); ++counter) {
        free = name + "_" + Digits(counter);
    }
    return free;
}

Text StandaloneArchiver::TakeName(const Text& made, std::string_view parent) {
    constexpr int Tries = 10;
    for (int tries = 1;; ++tries) {
        Text name = FreeName(parent);
        try {
            m_files.Rename(made, name);
            return name;
        } catch (const cError&) {
            // Another program may have taken the name since it was looked for.
            if (tries == Tries || !m_files.Exists(name) || !m_files.Exists(made)) {
                throw;
            }
        }
    }
}

Text StandaloneArchiver::BeginArchive(std::string_view path) {
    const Text key(path);
    try {
        const auto sources = FilesOf(path);
        const char delimiter = m_files.Delimiter();
        const Text parent = names::ArchivesOf(path, delimiter);
        const Text folder = paths::Join(parent, names::UnfinishedArchiveName(), delimiter);
        m_files.MakeFolder(parent);
        m_begun[key] = {folder, {}};
        m_files.MakeFolder(folder);
        m_files.CopyAllForArchive(sources, folder);
        return {};
    } catch (const std::exception& failure) {
        Text description = Describe(AsError(failure, "ArchiveApplication"), path);
        DropArchive(path);
        return description;
    }
}

Text StandaloneArchiver::NameArchive(std::string_view path) {
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
    } catch (...) {
        // A whole archive stays, or one without a name. The failure that led here is the one to tell.
    }
}

Text StandaloneArchiver::ArchiveApplication(std::string_view path) {
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
