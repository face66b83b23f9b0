#include <gmock/gmock.h>

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <array>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "SourceFolder.h"
#include "qt/QtText.h"
#include "walk/Walker.h"

namespace kd {
namespace {

/// Three of the sample applications, the help, and the settings that list them.
void PutFiles(const QTemporaryDir& folder) {
    for (const char* const name : {"apps", "program/help", "config"}) {
        ASSERT_TRUE(QDir(folder.path()).mkpath(name));
    }
    const QDir samples(QStringLiteral(KD_SOURCE_DIR "/samples"));
    for (const QString& name : samples.entryList({"primer.*", "powerlv.*", "astmc150.*"}, QDir::Files)) {
        ASSERT_TRUE(QFile::copy(samples.filePath(name), folder.filePath("apps/" + name)));
    }
    ASSERT_TRUE(QFile::copy(QStringLiteral(KD_SOURCE_DIR "/help/KDLimitDeskHelp.xml"),
                            folder.filePath("program/help/KDLimitDeskHelp.xml")));
}

void PutSettings(const QTemporaryDir& folder) {
    QFile list(folder.filePath("config/KDLimitDesk.IKD"));
    ASSERT_TRUE(list.open(QIODevice::WriteOnly));
    list.write("[FILES]\r\n");
    for (const char* name : {"primer.kdt6", "powerlv.kdt6", "astmc150.kdt"}) {
        list.write("File=" + (folder.path() + "/apps/" + name).toUtf8() + "\r\n");
    }
}

int Number(const char* name, int otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr && std::atoi(text) > 0 ? std::atoi(text) : otherwise;
}

/// A walk that never comes by somewhere proves nothing about it.
constexpr auto Places = std::to_array<const char*>({"cell edited",
                                                    "clicks",
                                                    "command mnuApplications",
                                                    "command mnuClearFilters",
                                                    "command mnuClose",
                                                    "command mnuCommit",
                                                    "command mnuCopy",
                                                    "command mnuCut",
                                                    "command mnuFill",
                                                    "command mnuHelpAbout",
                                                    "command mnuPaste",
                                                    "command mnuReplace",
                                                    "command mnuRestore",
                                                    "command mnuShowAll",
                                                    "command mnuShowOnlyNumericVariables",
                                                    "command mnuShowPaths",
                                                    "commit that came to its end",
                                                    "double clicks",
                                                    "drags",
                                                    "events in the middle of a filter's work",
                                                    "events in the middle of a load",
                                                    "keys",
                                                    "right clicks",
                                                    "texts typed",
                                                    "window FileDialog",
                                                    "window MessageBox",
                                                    "window frmAbout",
                                                    "window frmApplicationAdmin",
                                                    "window frmAutoFilter",
                                                    "window frmCommit",
                                                    "window frmFill",
                                                    "window frmReplace",
                                                    "window mnuEditMenu",
                                                    "windows closed by their frame"});

std::vector<std::string> NeverReached(const Walker& walker) {
    std::vector<std::string> places;
    for (const char* const place : Places) {
        if (!walker.Reached().contains(place)) {
            places.emplace_back(place);
        }
    }
    return places;
}

void Print(const Walker& walker, int events, int runs) {
    std::cout << events << " events in " << runs << " runs, " << walker.Watch().Looks() << " looks, "
              << walker.Watch().Marks() << " marks seen\n";
    for (const auto& [what, count] : walker.Reached()) {
        std::cout << "  " << what << ": " << count << '\n';
    }
    std::cout << std::flush;
}

TEST(WalkTest, WhateverTheUserDoesGridRecordsMarksAndFilesStayInOrder) {
    qputenv("USERNAME", "anna");
    const int wanted = Number("KD_WALK_EVENTS", std::getenv("KD_TORTURE") != nullptr ? 25'000 : 2'000);
    const QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    PutFiles(folder);
    const Text root = FromQt(folder.path());
    Walker walker(static_cast<std::uint32_t>(Number("KD_WALK_SEED", 6)), folder.path(),
                  [](const std::string& what) { ADD_FAILURE() << what; });
    int events = 0;
    int runs = 0;
    // A run may come to its end by the user's own doing; then the next one begins, with the full list. How
    // soon a rare place comes up hangs on the machine a little, so the walk goes on until it has seen all.
    const auto goesOn = [&] {
        return !testing::Test::HasFailure() &&
               (events < wanted || (events < 4 * wanted && !NeverReached(walker).empty()));
    };
    while (goesOn()) {
        PutSettings(folder);
        Application program({root + "/program/KDLimitDesk",
                             {root + "/config", root + "/apps", root + "/program/help", root + "/program"}});
        events += walker.Walk(program, events < wanted ? wanted - events : 500);
        ASSERT_LT(++runs, wanted);
    }
    Print(walker, events, runs);
    EXPECT_THAT(NeverReached(walker), testing::IsEmpty());
    EXPECT_GT(walker.Watch().Looks(), events / 5);
    EXPECT_GT(walker.Watch().Marks(), events / 10);
}

}  // namespace
}  // namespace kd

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
