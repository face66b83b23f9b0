#include "qt/Application.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "Screen.h"
#include "SourceFolder.h"
#include "WindowFixture.h"
#include "base/Paths.h"
#include "base/Scope.h"
#include "qt/services/QtText.h"

namespace kd {
namespace {

/// The real program on folders of its own, with two of the sample applications.
class ApplicationTest : public testing::Test {
protected:
    QTemporaryDir folder;

    void SetUp() override {
        ProvideUserName();
        ASSERT_TRUE(folder.isValid());
        for (const char* const name : {"apps", "program/help", "config"}) {
            ASSERT_TRUE(QDir(folder.path()).mkpath(name));
        }
        const QDir samples(QStringLiteral(KD_SOURCE_DIR "/samples"));
        for (const QString& name : samples.entryList({"dairy.*", "diesel.*"}, QDir::Files)) {
            ASSERT_TRUE(QFile::copy(samples.filePath(name), folder.filePath("apps/" + name)));
        }
        ASSERT_TRUE(QFile::copy(samples.filePath("Rules.ini"), folder.filePath("program/Rules.ini")));
    }
    Text Path(const char* name) const { return FromQt(folder.filePath(name)); }
    ApplicationFolders Folders() const {
        return {Path("program/KDLimitDesk"),
                {Path("config/kd6"), Path("apps"), Path("program/help"), Path("program")}};
    }
    void ListApplications(const std::vector<Text>& names) const {
        QFile ini(folder.filePath("program/KDLimitDesk.ini"));
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
        Text text = "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n";
        for (const Text& name : names) {
            text += "   File   = " + Path("apps") + "/" + name + "\r\n";
        }
        ini.write(text.data(), static_cast<qint64>(text.size()));
    }
};

TEST_F(ApplicationTest, CancelOfTheFirstDialogEndsTheProgramWithoutAWindow) {
    ListApplications({"dairy.kdt6"});
    Application program(Folders());
    NextModal admin([](QWidget& window) {
        EXPECT_EQ(window.objectName(), "frmApplicationAdmin");
        Press(Qt::Key_Escape);
    });
    EXPECT_FALSE(program.Start());
    EXPECT_FALSE(program.Window().isVisible());
}

TEST_F(ApplicationTest, OkLoadsAndShowsTheWindow) {
    ListApplications({"dairy.kdt6"});
    Application program(Folders());
    NextModal admin([](QWidget&) { Press(Qt::Key_Return); });
    ASSERT_TRUE(program.Start());
    EXPECT_TRUE(program.Window().isVisible());
    EXPECT_TRUE(program.Window().isMaximized());
    EXPECT_TRUE(program.Window().windowTitle().startsWith("KD LimitDesk (v"));
    EXPECT_GT(program.Form().Controls().Grid.Rows(), 1);
    EXPECT_TRUE(
        Find<QLabel>(program.Window(), "Panel2").text().startsWith("Done ... , Applications: 1, Views: "));
    EXPECT_EQ(program.Screen().MousePointer(), Pointer::Default);
    EXPECT_TRUE(QFile::exists(folder.filePath("config/kd6/KDLimitDesk.IKD")));
    EXPECT_TRUE(program.Window().close());
}

TEST_F(ApplicationTest, StartWhoseLoadStopsBeforeTheWindowIsShownShowsItAllTheSame) {
    ListApplications({"dairy.kdt6"});
    Application program(Folders());
    program.Form().Controls().mnuShowPaths.OnChanged = [] {
        throw cError(errOutOfMemory, "ApplicationTest");
    };
    Modals modals;
    modals.Then("frmApplicationAdmin", [](QWidget&) { Press(Qt::Key_Return); })
        .Then("MessageBox", [&](QWidget& box) {
            EXPECT_EQ(dynamic_cast<QMessageBox&>(box).text(), "Run-time error '7':\n\nOut of memory");
            EXPECT_FALSE(program.Window().isVisible());
            ClickBoxButton(box, QMessageBox::Ok);
        });
    EXPECT_TRUE(program.Start());
    EXPECT_TRUE(program.Window().isVisible());
    EXPECT_TRUE(program.Window().close());
}

TEST_F(ApplicationTest, FirstStartOfAnInstalledProgramOffersCopiesOfItsSamples) {
    ApplicationFolders folders = Folders();
    folders.installedSamples = Path("apps");
    folders.ownSamples = Path("own/samples");
    Application program(folders);
    NextModal admin([](QWidget&) { Press(Qt::Key_Return); });
    ASSERT_TRUE(program.Start());
    EXPECT_TRUE(
        Find<QLabel>(program.Window(), "Panel2").text().startsWith("Done ... , Applications: 2, Views: "));
    EXPECT_EQ(QDir::fromNativeSeparators(ToQt(program.Data().gMasterFiles->Item(1)->Filename())),
              folder.filePath("own/samples/dairy.kdt6"));
    EXPECT_TRUE(program.Window().close());
}

TEST_F(ApplicationTest, WhatTakesLongInTheFilesLetsTheWindowLive) {
    Application program(Folders());
    const Files& files = program.Data().platform.files;
    ASSERT_TRUE(files.Meanwhile);
    bool hadPass = false;
    QMetaObject::invokeMethod(
        qApp, [&] { hadPass = program.Screen().InPass(); }, Qt::QueuedConnection);
    while (!hadPass) {  // the last one may have been a moment ago
        files.Meanwhile();
    }
}

TEST_F(ApplicationTest, IconIsThereInAllSizes) {
    const Application program(Folders());
    for (const int size : {16, 20, 24, 32, 40, 48, 64, 128, 256}) {
        EXPECT_TRUE(QApplication::windowIcon().availableSizes().contains(QSize(size, size))) << size;
    }
}

TEST_F(ApplicationTest, MissingHelpIsToldInABoxOverTheDialog) {
    ListApplications({"dairy.kdt6"});
    Application program(Folders());
    QString text;
    NextModal admin([&](QWidget& window) {
        {
            NextModal box([&](QWidget& shown) {
                text = dynamic_cast<QMessageBox&>(shown).text();
                ClickBoxButton(shown, QMessageBox::Ok);
            });
            Click(Find(window, "cmdHelp"));
        }
        EXPECT_TRUE(window.isVisible());
        window.close();
    });
    EXPECT_FALSE(program.Start());
    EXPECT_TRUE(text.startsWith("Run-time error '53':\n\nFile not found\n")) << text.toStdString();
}

// --- where the user's settings lie -------------------------------------------------------------------------

#ifdef Q_OS_WIN
constexpr const char* SettingsVariable = "APPDATA";
constexpr const char* SettingsOf = "C:\\Users\\anna\\AppData\\Roaming";
constexpr const char* SettingsName = "\\KD6";
constexpr char PathDelimiter = '\\';

QString DesktopsOwnFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}
#else
constexpr const char* SettingsVariable = "XDG_CONFIG_HOME";
constexpr const char* SettingsOf = "/home/anna/settings";
constexpr const char* SettingsName = "/kd6";
constexpr char PathDelimiter = '/';

QString DesktopsOwnFolder() {
    return QDir::homePath() + "/.config";
}
#endif

TEST(SettingsFolderTest, IsInTheFolderThatTheEnvironmentNames) {
    FakeEnvironment environment;
    environment.variables[SettingsVariable] = SettingsOf;
    EXPECT_EQ(SettingsFolder(environment, PathDelimiter), Text(SettingsOf) + SettingsName);
}

TEST(SettingsFolderTest, IsInTheDesktopsOwnFolderWhereTheEnvironmentNamesNone) {
    FakeEnvironment environment;
    for (const char* const named : {"not set", "", "relative", "C:relative"}) {
        SCOPED_TRACE(named);
        environment.variables.clear();
        if (Text(named) != "not set") {
            environment.variables[SettingsVariable] = named;
        }
        const Text folder = SettingsFolder(environment, PathDelimiter);
        EXPECT_EQ(folder, FromQt(QDir::toNativeSeparators(DesktopsOwnFolder())) + SettingsName);
    }
}

// --- where the program's data lie -------------------------------------------------------------------------

class ProgramDataFolderTest : public testing::Test {
protected:
    MemoryFiles files;
    void PutData(const char* folder) { files.Put(Text(folder) + "/help/KDLimitDeskHelp.xml", "<help/>"); }
};

TEST_F(ProgramDataFolderTest, BesideTheProgramComesFirst) {
    PutData("/opt/kd");
    PutData("/opt/share/kdlimitdesk");
    EXPECT_EQ(ProgramDataFolder(files, "/opt/kd/KDLimitDesk"), "/opt/kd");
}

TEST_F(ProgramDataFolderTest, ShareFolderOfAnInstallationComesNext) {
    PutData("/usr/share/kdlimitdesk");
    EXPECT_EQ(ProgramDataFolder(files, "/usr/bin/KDLimitDesk"), "/usr/share/kdlimitdesk");
}

TEST_F(ProgramDataFolderTest, SourceTreeAboveABuildTreeIsFound) {
    PutData("/home/anna/kd");
    EXPECT_EQ(ProgramDataFolder(files, "/home/anna/kd/build/dev/bin/KDLimitDesk"), "/home/anna/kd");
}

TEST_F(ProgramDataFolderTest, WithoutDataTheProgramsOwnFolderIsMeant) {
    EXPECT_EQ(ProgramDataFolder(files, "/usr/bin/KDLimitDesk"), "/usr/bin");
}

// --- the folders of the user who runs the program ---------------------------------------------------------

Text UsersFolder(QStandardPaths::StandardLocation location) {
    return FromQt(QDir::toNativeSeparators(QStandardPaths::writableLocation(location)));
}

TEST(ApplicationFoldersTest, SettingsAndSamplesAreTheUsersAndAllElseLiesWithTheProgramsData) {
    const SystemLocale locale;
    const SystemEnvironment environment;
    SystemFiles files(locale.CodePage());
    const Text program = environment.ProgramPath();
    const Text data = ProgramDataFolder(files, program);
    ASSERT_FALSE(data.empty());
    const ApplicationFolders folders = ApplicationFolders::OfUser();
    EXPECT_EQ(folders.programPath, program);
    EXPECT_EQ(folders.suite.settingsFolder, SettingsFolder(environment, PathDelimiter));
    EXPECT_EQ(folders.suite.programDataFolder, data);
    EXPECT_EQ(folders.suite.helpFolder, data + PathDelimiter + "help");
    EXPECT_EQ(folders.installedSamples, data + PathDelimiter + "samples");
    EXPECT_EQ(folders.ownSamples, UsersFolder(QStandardPaths::GenericDataLocation) + PathDelimiter +
                                      "kdlimitdesk" + PathDelimiter + "samples");
}

TEST(ApplicationFoldersTest, ApplicationsAreLookedForInTheUsersDocumentsElseInTheHomeFolder) {
    const QTemporaryDir home;
    const QByteArray before = qgetenv("HOME");
    const Scope putBack([&] { before.isNull() ? qunsetenv("HOME") : qputenv("HOME", before); });
    qputenv("HOME", home.path().toLocal8Bit());  // Windows has its folders elsewhere
    for (const char* const made : {".", "Documents"}) {
        ASSERT_TRUE(QDir(home.path()).mkpath(made));
        const Text documents = UsersFolder(QStandardPaths::DocumentsLocation);
        EXPECT_EQ(ApplicationFolders::OfUser().suite.applicationsFolder,
                  QFileInfo::exists(ToQt(documents)) ? documents : UsersFolder(QStandardPaths::HomeLocation))
            << made;
    }
}

}  // namespace
}  // namespace kd
