#pragma once

#include <map>
#include <utility>
#include <vector>

#include "platform/Files.h"
#include "platform/Suite.h"

namespace kd {

/// Keeps a copy of an application's files in "Archive/<base name>/<date>_<time>/" beside its template. The
/// folder appears under that name only when all is in it and on the disk; a failed archive leaves none.
class StandaloneArchiver : public KDArchiver {
public:
    StandaloneArchiver(Files& files, Clock& clock, const Locale& locale)
        : m_files(files), m_clock(clock), m_locale(locale) {}

    Text ArchiveApplication(std::string_view path) override;
    Text BeginArchive(std::string_view path) override;
    Text NameArchive(std::string_view path) override;
    void DropArchive(std::string_view path) noexcept override;

private:
    /// Names of a folder's entries, and before each of them the same in capitals, which they are ordered by.
    using Listing = std::vector<std::pair<Text, Text>>;
    /// That of a folder that holds templates. One serves all archives that are begun together.
    const Listing& ListingOf(const Text& folder);
    /// The template, its view files and its change files, as far as they are there.
    std::vector<Text> FilesOf(std::string_view templatePath);
    /// Copies the application's files; what turns out to be no file is none of them.
    void CopyAll(std::vector<Text> sources, const Text& folder, std::string_view templatePath);
    /// Whether a file is there; a folder or FIFO that only bears a file's name is none of the application's.
    bool IsFile(const Text& path);
    /// Name of an archive of this moment that is not among those present.
    Text FreeName(const std::vector<Text>& present);
    /// Gives the finished folder a name that is free, and returns its path. What earlier programs have left
    /// unfinished beside it goes.
    Text TakeName(const Text& made, std::string_view parent);
    /// Settles what is begun or named; what failed, with the archive dropped.
    Text Settled(std::string_view path);

    /// What is on its way to an archive.
    struct Begun {
        Text folder;  // the one that is being filled
        Text name;    // the one that it has got since
    };

    Files& m_files;
    Clock& m_clock;
    const Locale& m_locale;
    std::map<Text, Begun> m_begun;       // by template
    std::map<Text, Listing> m_listings;  // by folder, until the first archive gets its name
};

}  // namespace kd
