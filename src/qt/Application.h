#pragma once

#include <memory>

#include "lifecycle/frmKDLimitDesk.h"
#include "model/Globals.h"
#include "qt/forms/MainWindow.h"
#include "qt/services/HelpIndex.h"
#include "qt/services/QtClipboard.h"
#include "qt/services/QtFileDialog.h"
#include "qt/services/QtShell.h"
#include "qt/services/QtToolkit.h"
#include "suite/StandaloneSuite.h"
#include "system/SystemFiles.h"
#include "system/SystemServices.h"

namespace kd {

/// Where one run of the program finds and keeps its things.
struct ApplicationFolders {
    Text programPath;  // of the program's own file; the settings for a first start lie beside it
    SuiteFolders suite;
    /// The sample applications that an installation brings, and the user's copy of them.
    Text installedSamples{};
    Text ownSamples{};

    /// The folders of the user who runs the program: settings in the user's configuration folder, the
    /// program's data beside the program, or where an installation or a build tree keeps them.
    static ApplicationFolders OfUser();
};

/// The folder of the user's settings, in the folder that the environment names for such ("APPDATA" on
/// Windows, "XDG_CONFIG_HOME" elsewhere), or in the desktop's own where it names none, or one that is not
/// absolute.
Text SettingsFolder(const Environment& environment, char delimiter);

/// The folder that holds the program's data (the help folder and the rule catalogue) for a program file: the
/// file's own folder, the share folder of an installation, else the first folder above that holds a help
/// catalogue; the file's own folder where there is none. No delimiter at its end.
Text ProgramDataFolder(Files& files, std::string_view programPath);

/// The whole program, put together: the machine's services, the suite, the main form and its window. Needs a
/// QApplication.
class Application {
public:
    explicit Application(ApplicationFolders folders);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Runs the start. False when the program must end at once, without a word.
    [[nodiscard]] bool Start();

    Globals& Data() noexcept { return m_globals; }
    frmKDLimitDesk& Form() noexcept { return *m_form; }
    MainWindow& Window() noexcept { return *m_window; }
    QtToolkit& Screen() noexcept { return m_toolkit; }

private:
    StandaloneSuite::Makers Makers();

    Text m_installedSamples;
    Text m_ownSamples;
    SystemLocale m_locale;
    SystemClock m_clock;
    SystemEnvironment m_environment;
    SystemFiles m_files;
    QtToolkit m_toolkit;
    QtShell m_shell;
    QtFileDialog m_fileDialog;
    StandaloneSuite m_suite;
    Platform m_platform;
    Globals m_globals;
    std::unique_ptr<frmKDLimitDesk> m_form;
    std::unique_ptr<MainWindow> m_window;
};

}  // namespace kd
