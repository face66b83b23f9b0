#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <array>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "walk/WalkFolder.h"
#include "walk/Walker.h"

namespace kd {
namespace {

int Number(const char* name, int otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr && std::atoi(text) > 0 ? std::atoi(text) : otherwise;
}

/// A walk that never comes by somewhere proves nothing about it.
constexpr auto Happenings = std::to_array<const char*>({"cell edited",
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
                                                        "dividers dragged",
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
    std::vector<std::string> missing;
    for (const char* const happening : Happenings) {
        if (!walker.Reached().contains(happening)) {
            missing.emplace_back(happening);
        }
    }
    return missing;
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
    const WalkFolder folder;
    Walker walker(static_cast<std::uint32_t>(Number("KD_WALK_SEED", 6)), folder.Path(),
                  [](const std::string& what) { ADD_FAILURE() << what; });
    int events = 0;
    int runs = 0;
    // A run may come to its end by the user's own doing; then the next one begins, with the full list. How
    // soon a rare happening comes up hangs on the machine a little, so the walk goes on until it has seen
    // all.
    const auto goesOn = [&] {
        return !testing::Test::HasFailure() &&
               (events < wanted || (events < 4 * wanted && !NeverReached(walker).empty()));
    };
    while (goesOn()) {
        folder.PutSettings();
        Application program(folder.Folders());
        events += walker.Walk(program, events < wanted ? wanted - events : 500);
        ASSERT_LT(++runs, wanted);
    }
    Print(walker, events, runs);
    EXPECT_THAT(NeverReached(walker), testing::IsEmpty());
    EXPECT_GT(walker.Watch().Looks(), events / 5);
    EXPECT_GT(walker.Watch().Marks(), events / 10);
}

TEST(WalkTest, ScreenReadersFindTheProgramsGridAsATable) {
    const WalkFolder folder;
    Application program(folder.Folders());
    const QAccessibleInterface* const told =
        QAccessible::queryAccessibleInterface(program.Window().findChild<QWidget*>("Grid"));
    ASSERT_NE(told, nullptr);
    EXPECT_EQ(told->role(), QAccessible::Table);
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
