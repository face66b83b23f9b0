#include "suite/StandaloneArchiver.h"

#include <algorithm>
#include <random>

#include "base/ApplicationNames.h"
#include "base/Numbers.h"
#include "base/Paths.h"
#include "base/cError.h"
#include "platform/Missing.h"

namespace kd {

namespace {

/// A name that nobody can foresee, for a folder that is being filled.
Text UnfinishedName() {
    std::random_device random;
    Text name(names::UnfinishedArchive);
    for (int i = 0; i < 16; ++i) {
        name += static_cast<char>('a' + static_cast<int>(random() % 26U));
    }
    return name;
}

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

void StandaloneArchiver::Publish(const Text& made, std::string_view parent, const std::vector<Text>& above) {
    const Text name = TakeName(made, parent);
    try {
        m_files.FlushFolders(above);
    } catch (const cError&) {
        try {
            // The name goes before the content: a removal that breaks off must not leave half an archive.
            m_files.Rename(name, made);
        } catch (const cError&) {
            // Then a whole archive stays; the first failure is the one to tell.
        }
        throw;
    }
}

Text StandaloneArchiver::ArchiveApplication(std::string_view path) {
    Text made;  // the archive's folder while it is being filled
    try {
        const auto sources = FilesOf(path);
        const char delimiter = m_files.Delimiter();
        const Text folder = paths::FolderToList(path);
        const Text parent = names::ArchivesOf(path, delimiter);
        const Text archives(paths::Folder(parent));
        m_files.MakeFolder(parent);
        made = paths::Join(parent, UnfinishedName(), delimiter);
        m_files.MakeFolder(made);
        m_files.CopyAllForArchive(sources, made);
        Publish(made, parent, {parent, archives, folder});
        return {};
    } catch (const std::exception& failure) {
        Text description = Describe(AsError(failure, "ArchiveApplication"), path);
        if (!made.empty()) {
            try {
                m_files.RemoveFolder(made);
            } catch (const std::exception&) {
                // The first failure is the one to tell; what cannot be removed now cannot be mended here.
            }
        }
        return description;
    }
}

}  // namespace kd
