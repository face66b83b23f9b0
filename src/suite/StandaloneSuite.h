#pragma once

#include <functional>

#include "platform/Files.h"
#include "platform/Suite.h"

namespace kd {

/// Where a machine without the suite keeps things; folders without a delimiter at their end.
struct SuiteFolders {
    Text settingsFolder;      // of the user; made when missing
    Text applicationsFolder;  // where the Add dialog opens
    Text helpFolder;
    Text programDataFolder;  // holds the rule catalogue that ships with the program
};

/// The suite's services for a machine without the suite: real folders, archive and change files. All file
/// access goes through `files`, all file text through the locale's code page.
class StandaloneSuite : public Suite {
public:
    /// What comes from the screen's side.
    struct Makers {
        std::function<std::unique_ptr<KDClipboard>()> clipboard;
        std::function<std::unique_ptr<KDHelpIndex>()> helpIndex;
    };

    StandaloneSuite(SuiteFolders folders, Files& files, const Locale& locale, Clock& clock, Makers makers);

    std::unique_ptr<KDSuiteContext> NewSuiteContext() override;
    std::unique_ptr<KDLogin> NewLogin() override;
    std::unique_ptr<KDPathTools> NewPathTools() override;
    std::unique_ptr<KDApplicationFile> NewApplicationFile() override;
    std::unique_ptr<KDArchiver> NewArchiver() override;
    std::unique_ptr<KDArchiveContext> NewArchiveContext() override;
    std::unique_ptr<KDChangeLog> NewChangeLog() override;
    std::unique_ptr<KDChangeMemo> NewChangeMemo() override;
    std::unique_ptr<KDClipboard> NewClipboard() override;
    std::unique_ptr<KDHelpIndex> NewHelpIndex() override;

private:
    SuiteFolders m_folders;
    Files& m_files;
    const Locale& m_locale;
    Clock& m_clock;
    Makers m_makers;
};

}  // namespace kd
