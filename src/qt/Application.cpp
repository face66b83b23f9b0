#include "qt/Application.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QStandardPaths>

#include "admin/frmApplicationAdmin.h"
#include "base/Paths.h"
#include "commit/frmCommit.h"
#include "edit/frmFill.h"
#include "edit/frmReplace.h"
#include "grid/frmAutoFilter.h"
#include "help/frmAbout.h"
#include "lifecycle/FirstStart.h"
#include "qt/forms/AboutDialog.h"
#include "qt/forms/AdminDialog.h"
#include "qt/forms/AutoFilterDialog.h"
#include "qt/forms/CommitDialog.h"
#include "qt/forms/FillDialog.h"
#include "qt/forms/ReplaceDialog.h"
#include "qt/grid/GridAccessible.h"
#include "qt/services/QtText.h"

// Outside the namespace: the resources' own function is global.
static void InitResources() {
    Q_INIT_RESOURCE(resources);
}

namespace kd {

namespace {

constexpr std::string_view HelpFolderName = "help";
constexpr std::string_view CatalogueName = "KDLimitDeskHelp.xml";

bool HoldsData(Files& files, const Text& folder) {
    const char delimiter = files.Delimiter();
    return files.Exists(
        paths::InFolder(paths::InFolder(folder, HelpFolderName, delimiter), CatalogueName, delimiter));
}

QIcon ProgramIcon() {
    QIcon icon;
    for (const int size : {16, 20, 24, 32, 40, 48, 64, 128, 256}) {
        icon.addFile(QStringLiteral(":/icons/KDLimitDesk-%1.png").arg(size), QSize(size, size));
    }
    return icon;
}

/// A folder of the user as the desktop tells it, in the platform's own writing.
Text UserFolder(QStandardPaths::StandardLocation location) {
    return FromQt(QDir::toNativeSeparators(QStandardPaths::writableLocation(location)));
}

}  // namespace

Text SettingsFolder(const Environment& environment, char delimiter) {
#ifdef Q_OS_WIN
    const Text configured = environment.Variable("APPDATA");
    const std::string_view name = "KD6";
    const auto ends = [&](std::size_t at) { return configured[at] == '\\' || configured[at] == '/'; };
    // "C:kd" is not absolute: it hangs on the folder where the program was started.
    const bool isNamed = configured.size() > 2 && (configured[1] == ':' ? ends(2) : ends(0) && ends(1));
    const Text folder = isNamed ? configured : UserFolder(QStandardPaths::GenericConfigLocation);
#else
    const Text configured = environment.Variable("XDG_CONFIG_HOME");
    const std::string_view name = "kd6";
    const bool isNamed = configured.starts_with('/');
    const Text folder = isNamed ? configured : FromQt(QDir::homePath() + QStringLiteral("/.config"));
#endif
    return paths::InFolder(folder, name, delimiter);
}

Text ProgramDataFolder(Files& files, std::string_view programPath) {
    Text programFolder(paths::Folder(programPath));
    const char delimiter = files.Delimiter();
    if (HoldsData(files, programFolder)) {
        return programFolder;
    }
    for (Text folder(paths::Folder(programFolder)); !folder.empty(); folder = Text(paths::Folder(folder))) {
        Text shared = paths::InFolder(paths::InFolder(folder, "share", delimiter), "kdlimitdesk", delimiter);
        if (HoldsData(files, shared)) {
            return shared;
        }
        if (HoldsData(files, folder)) {
            return folder;
        }
    }
    return programFolder;
}

ApplicationFolders ApplicationFolders::OfUser() {
    const SystemLocale locale;
    const SystemEnvironment environment;
    SystemFiles files(locale.CodePage());
    const char delimiter = files.Delimiter();
    ApplicationFolders folders;
    folders.programPath = environment.ProgramPath();
    folders.suite.settingsFolder = SettingsFolder(environment, delimiter);
    folders.suite.applicationsFolder = UserFolder(QStandardPaths::DocumentsLocation);
    if (!files.Exists(folders.suite.applicationsFolder)) {
        folders.suite.applicationsFolder = UserFolder(QStandardPaths::HomeLocation);
    }
    folders.suite.programDataFolder = ProgramDataFolder(files, folders.programPath);
    folders.installedSamples = paths::InFolder(folders.suite.programDataFolder, "samples", delimiter);
    folders.ownSamples = paths::InFolder(
        paths::InFolder(UserFolder(QStandardPaths::GenericDataLocation), "kdlimitdesk", delimiter), "samples",
        delimiter);
    folders.suite.helpFolder = paths::InFolder(folders.suite.programDataFolder, HelpFolderName, delimiter);
    return folders;
}

Application::Application(ApplicationFolders folders)
    : m_installedSamples(folders.installedSamples),
      m_ownSamples(folders.ownSamples),
      m_environment(folders.programPath),
      m_files(m_locale.CodePage()),
      m_suite(std::move(folders.suite), m_files, m_locale, m_clock, Makers()),
      m_platform{m_files, m_toolkit, m_locale, m_clock, m_environment, m_shell, m_fileDialog, m_suite},
      m_globals(m_platform) {
    m_files.Meanwhile = [this] { m_toolkit.KeepAlive(); };
    InitResources();
    InstallGridAccessibility();
    QApplication::setWindowIcon(ProgramIcon());
    m_toolkit.Register<frmCommit, CommitDialog>();
    m_toolkit.Register<frmApplicationAdmin, AdminDialog>();
    m_toolkit.Register<frmAutoFilter, AutoFilterDialog>();
    m_toolkit.Register<frmFill, FillDialog>();
    m_toolkit.Register<frmReplace, ReplaceDialog>();
    m_toolkit.Register<frmAbout, AboutDialog>();
    m_form = std::make_unique<frmKDLimitDesk>(m_globals);
    m_window = std::make_unique<MainWindow>(*m_form, m_toolkit);
}

Application::~Application() = default;

StandaloneSuite::Makers Application::Makers() {
    return {[] { return std::make_unique<QtClipboard>(); },
            [this] { return std::make_unique<HelpIndex>(m_files, m_shell); }};
}

bool Application::Start() {
    modKDLimitDesk::ProvideSampleApplications(m_globals, m_installedSamples, m_ownSamples);
    if (!m_form->Form_Load(static_cast<std::uintptr_t>(m_window->winId()))) {
        return false;
    }
    m_toolkit.ShowModeless(*m_form);  // a load that was stopped early has not shown it
    return true;
}

}  // namespace kd
