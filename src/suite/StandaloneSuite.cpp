#include "suite/StandaloneSuite.h"

#include <utility>

#include "base/Paths.h"
#include "suite/RuleCatalogue.h"
#include "suite/StandaloneApplicationFile.h"
#include "suite/StandaloneArchiver.h"
#include "suite/StandaloneChangeLog.h"
#include "suite/StandaloneChangeMemo.h"

namespace kd {

namespace {

class StandaloneContext : public KDSuiteContext {
public:
    StandaloneContext(const SuiteFolders& folders, Files& files) : m_folders(folders), m_files(files) {}
    void SetSystemCode(std::string_view) override {}  // there is one system only
    void OpenContext() override {
        try {
            m_files.MakeFolder(m_folders.settingsFolder);
        } catch (const cError&) {
            // Deliberately silent: without the folder the settings are not kept, and the program runs all the
            // same.
        }
    }
    Text SettingsFolder() override { return m_folders.settingsFolder; }
    Text ApplicationsFolder() override { return m_folders.applicationsFolder; }
    Text HelpFolder() override { return m_folders.helpFolder; }

private:
    const SuiteFolders& m_folders;
    Files& m_files;
};

/// No login is in force: the user's name is the environment's.
class StandaloneLogin : public KDLogin {
public:
    bool LoginRequired() override { return false; }
    std::unique_ptr<KDLoginUser> PromptLogin(std::uintptr_t, std::string_view, std::string_view) override {
        return nullptr;
    }
};

class StandalonePathTools : public KDPathTools {
public:
    Text ChangeExtension(std::string_view path, std::string_view extension) override {
        return paths::ChangeExtension(path, extension);
    }
    Text GetFolderPart(std::string_view path) override { return Text(paths::Folder(path)); }
    Text GetFileNamePart(std::string_view path) override { return Text(paths::FileName(path)); }
};

}  // namespace

StandaloneSuite::StandaloneSuite(SuiteFolders folders, Files& files, const Locale& locale, Clock& clock,
                                 Makers makers)
    : m_folders(std::move(folders)),
      m_files(files),
      m_locale(locale),
      m_clock(clock),
      m_makers(std::move(makers)) {}

std::unique_ptr<KDSuiteContext> StandaloneSuite::NewSuiteContext() {
    return std::make_unique<StandaloneContext>(m_folders, m_files);
}

std::unique_ptr<KDLogin> StandaloneSuite::NewLogin() {
    return std::make_unique<StandaloneLogin>();
}

std::unique_ptr<KDPathTools> StandaloneSuite::NewPathTools() {
    return std::make_unique<StandalonePathTools>();
}

std::unique_ptr<KDApplicationFile> StandaloneSuite::NewApplicationFile() {
    return std::make_unique<StandaloneApplicationFile>(m_files, m_locale, [this] {
        return ReadRuleCatalogue(m_files, m_locale, {m_folders.settingsFolder, m_folders.programDataFolder});
    });
}

std::unique_ptr<KDArchiver> StandaloneSuite::NewArchiver() {
    return std::make_unique<StandaloneArchiver>(m_files, m_clock, m_locale);
}

std::unique_ptr<KDArchiveContext> StandaloneSuite::NewArchiveContext() {
    return std::make_unique<KDArchiveContext>();
}

std::unique_ptr<KDChangeLog> StandaloneSuite::NewChangeLog() {
    return std::make_unique<StandaloneChangeLog>(m_files, m_locale.CodePage());
}

std::unique_ptr<KDChangeMemo> StandaloneSuite::NewChangeMemo() {
    return std::make_unique<StandaloneChangeMemo>(m_files, m_locale.CodePage());
}

std::unique_ptr<KDClipboard> StandaloneSuite::NewClipboard() {
    return m_makers.clipboard();
}

std::unique_ptr<KDHelpIndex> StandaloneSuite::NewHelpIndex() {
    return m_makers.helpIndex();
}

}  // namespace kd
