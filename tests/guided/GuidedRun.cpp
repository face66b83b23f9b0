// The main job on the sample applications, by simulated mouse and keyboard through the real program:
//     guided_run --samples DIR --pictures DIR [--camera "PROGRAM ARGUMENTS"] [--places] [--dark]
// DIR/../bin holds the program's data and the list of applications. Exits with 0 only if the files on the
// disk are as they must be.

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QPalette>
#include <cstdio>

#include "guided/Commands.h"
#include "guided/MainJob.h"
#include "guided/Snapshot.h"
#include "qt/Application.h"
#include "qt/services/QtText.h"
#include "qt/services/ReadableStyle.h"
#include "qt/services/WindowSystem.h"

namespace {

using namespace kd;

void Print(const std::string& line) {
    std::printf("guided run: %s\n", line.c_str());
    std::fflush(stdout);
}

ApplicationFolders FoldersBeside(const QString& samples) {
    const QDir root(QDir(samples).absoluteFilePath(QStringLiteral("..")));
    ApplicationFolders folders;
    const QString bin = QDir::cleanPath(root.absoluteFilePath(QStringLiteral("bin")));
    folders.programPath = FromQt(bin + QStringLiteral("/KDLimitDesk"));
    folders.suite.settingsFolder =
        FromQt(QDir::cleanPath(root.absoluteFilePath(QStringLiteral("config/kd6"))));
    folders.suite.applicationsFolder = FromQt(QDir(samples).absolutePath());
    folders.suite.programDataFolder = FromQt(bin);
    folders.suite.helpFolder = FromQt(bin + QStringLiteral("/help"));
    return folders;
}

/// A dark desktop's colours, for pictures of it.
void BeDark() {
    QPalette dark;
    const QColor ground(0x20, 0x23, 0x28);
    const QColor text(0xe6, 0xe8, 0xea);
    for (const auto role : {QPalette::Window, QPalette::Button, QPalette::ToolTipBase}) {
        dark.setColor(role, ground.lighter(130));
    }
    dark.setColor(QPalette::Base, ground);
    dark.setColor(QPalette::AlternateBase, ground.lighter(115));
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        dark.setColor(role, text);
        dark.setColor(QPalette::Disabled, role, text.darker(200));
    }
    dark.setColor(QPalette::Highlight, QColor(0x2a, 0x7a, 0xc0));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Link, QColor(0x7f, 0xb8, 0xde));
    QApplication::setPalette(dark);
}

}  // namespace

int main(int argc, char** argv) {
    // Whatever the user's language: the samples are western text. (Windows takes its language from
    // elsewhere.)
    qputenv("LC_ALL", "C.UTF-8");
    ReadableStyle::AskForDarkColours();
    WindowSystem::PreferX11();
    const QApplication loop(argc, argv);
    WindowSystem::ForgetChoice();
    ReadableStyle::Settle(QApplication::style()->name());
    QApplication::setApplicationName(QStringLiteral("KDLimitDesk"));
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser options;
    options.addOption(
        {QStringLiteral("samples"), QStringLiteral("Folder of the applications."), QStringLiteral("DIR")});
    options.addOption(
        {QStringLiteral("pictures"), QStringLiteral("Folder for the pictures."), QStringLiteral("DIR")});
    options.addOption(
        {QStringLiteral("camera"),
         QStringLiteral("Takes the pictures where the program may not: gets a path behind its arguments."),
         QStringLiteral("COMMAND")});
    options.addOption({QStringLiteral("places"),
                       QStringLiteral("The desktop puts windows where they ask to be: places are judged.")});
    options.addOption({QStringLiteral("dark"), QStringLiteral("In the colours of a dark desktop.")});
    options.process(loop);
    if (options.isSet(QStringLiteral("dark"))) {
        BeDark();
    }
    const QString samples = options.value(QStringLiteral("samples"));
    if (samples.isEmpty()) {
        std::fprintf(stderr,
                     "guided_run --samples DIR [--pictures DIR] [--camera COMMAND] [--places] [--dark]\n");
        return 2;
    }
    ProvideUserName();

    const std::string folder = samples.toStdString();
    const Snapshot before = TakeSnapshot(folder);
    std::vector<LimitChange> changes{
        {"diesel.kdt", 0, "Density at 15 °C", {}, "844.9", {}},
        {"water.kdt6", 1, "Lead", {}, "4.5", "2000"},
    };
    Application program(FoldersBeside(samples));
    Guide guide(program, options.value(QStringLiteral("pictures")), Print);
    guide.TakePicturesWith(
        options.value(QStringLiteral("camera")).split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (options.isSet(QStringLiteral("places"))) {
        guide.JudgePlaces();
    }
    Print("on " + QGuiApplication::platformName().toStdString());
    LoadAll(guide, program);
    TryCommands(guide, program, changes.front());
    DoMainJob(guide, program, changes);
    QApplication::setQuitOnLastWindowClosed(true);
    bool good = guide.Run();
    Print(program.Form().Controls().Panel2.Caption());

    const Outcome outcome = CheckFiles(folder, before, changes);
    for (const std::string& line : outcome.report) {
        Print(line);
    }
    for (const std::string& failure : outcome.failures) {
        Print("FAILED: " + failure);
        good = false;
    }
    Print(good ? "done, the files on the disk are as they must be" : "FAILED");
    return good ? 0 : 1;
}
