#ifdef _WIN32
#include <process.h>

#include <cstdint>
#else
#include <sys/wait.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <utility>
#include <vector>

#include "base/NumberTexts.h"
#include "faults/RealFolder.h"
#include "system/Waiting.h"

namespace kd {
namespace {

constexpr int Programs = 3;

/// One program that commits again and again, each time with another limit. Returns what went wrong: the
/// number of boxes that told of anything but success.
int CommitAgainAndAgain(const Text& folder, int program, int rounds) {
    SystemFiles files(CodePage::Of(1252));
    CommitScene scene(files, folder);
    scene.g.gUserName = "user" + Digits(program);
    scene.Load();
    int told = 0;
    for (int round = 0; round < rounds; ++round) {
        scene.EditAll(Digits(100 + round * Programs + program));
        scene.toolkit.boxes.clear();
        scene.Commit();
        for (const ScriptedToolkit::Box& box : scene.toolkit.boxes) {
            if (box.icon != BoxIcon::Information) {
                ++told;
                std::cerr << box << std::endl;
            }
        }
    }
    return told;
}

#ifdef _WIN32

/// Tells one of the programs its folder and, on the next line, its number and how often it commits.
constexpr const char* ToldVariable = "KD_ONE_OF_SEVERAL";

/// Not a test of its own: what the test below starts this program for, several times.
TEST(TwoProgramsTest, DISABLED_OneOfThem) {
    const char* const told = std::getenv(ToldVariable);
    ASSERT_NE(told, nullptr);
    std::istringstream lines(told);
    Text folder;
    int program = 0;
    int rounds = 0;
    ASSERT_TRUE(std::getline(lines, folder) && lines >> program >> rounds);
    std::_Exit(CommitAgainAndAgain(folder, program, rounds));
}

/// Starts the programs, waits for all of them, and returns what each of them ended with.
std::vector<int> RunAtOnce(const Text& folder, int rounds) {
    std::vector<std::intptr_t> children;
    for (int program = 0; program < Programs; ++program) {
        const Text told = folder + "\n" + Digits(program) + " " + Digits(rounds);
        EXPECT_EQ(::_putenv_s(ToldVariable, told.c_str()), 0);
        children.push_back(::_spawnl(_P_NOWAIT, _pgmptr, "one-of-them", "--gtest_also_run_disabled_tests",
                                     "--gtest_brief=1", "--gtest_filter=*.DISABLED_OneOfThem", nullptr));
        EXPECT_NE(children.back(), -1);
    }
    std::vector<int> ends;
    for (const std::intptr_t child : children) {
        int end = -1;
        EXPECT_EQ(::_cwait(&end, child, 0), child);
        ends.push_back(end);
    }
    return ends;
}

#else

/// Starts the programs, waits for all of them, and returns what each of them ended with; -1 for one that was
/// ended.
std::vector<int> RunAtOnce(const Text& folder, int rounds) {
    std::vector<pid_t> children;
    for (int program = 0; program < Programs; ++program) {
        const pid_t child = ::fork();
        EXPECT_GE(child, 0);
        if (child == 0) {
            ::_exit(CommitAgainAndAgain(folder, program, rounds));
        }
        children.push_back(child);
    }
    std::vector<int> ends;
    for (const pid_t child : children) {
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        ends.push_back(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    }
    return ends;
}

#endif

/// The limits that stand in a file of the application.
std::set<Text> LimitsIn(const std::string& bytes) {
    std::set<Text> limits;
    const Text sign = "USL          = F";
    for (std::size_t at = bytes.find(sign); at != std::string::npos; at = bytes.find(sign, at + 1)) {
        limits.insert(bytes.substr(at + sign.size(), bytes.find("\r\n", at) - at - sign.size()));
    }
    return limits;
}

TEST(TwoProgramsTest, ThatCommitOneApplicationAtOnceLeaveEveryFileWholeAndEveryRecordInTheLog) {
    const RealFolder folder;
    const int rounds = Torture() ? 200 : 8;
    EXPECT_EQ(RunAtOnce(folder.path, rounds), std::vector<int>(Programs, 0)) << "something was told";

    CommitScene scene(folder.files, folder.path);
    const auto whole = [&](const std::string& bytes, std::int32_t view) {
        EXPECT_EQ(LimitsIn(bytes).size(), 1U) << "view " << view << " holds two saves:\n" << bytes;
        EXPECT_TRUE(bytes.starts_with("[APPLICATION]\r\n")) << bytes;
        for (std::int32_t variable = 1; variable <= CommitScene::PerView; ++variable) {
            EXPECT_NE(bytes.find(CommitScene::VariableName(view, variable)), std::string::npos);
        }
    };
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        whole(RealFolder::Get(scene.FilePath(view)), view);
    }
    int archives = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path + "/Archive/plant")) {
        ++archives;
        EXPECT_FALSE(entry.path().filename().string().starts_with(".unfinished-"));
        for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
            const auto name = std::filesystem::path(scene.FilePath(view)).filename();
            const std::string bytes = RealFolder::Get((entry.path() / name).string());
            if (bytes != CommitScene::OriginalText(view)) {
                whole(bytes, view);
            }
        }
    }
    EXPECT_EQ(archives, Programs * rounds);
    const std::string log = RealFolder::Get(scene.LogPath());
    std::size_t lines = 0;
    for (std::size_t at = 0, end = 0; (end = log.find("\r\n", at)) != std::string::npos; at = end + 2) {
        const std::string line = log.substr(at, end - at);
        EXPECT_TRUE(std::count(line.begin(), line.end(), '\t') == 9 || line == "earlier record") << line;
        lines += line.find("\tUSL\t") != std::string::npos ? 1U : 0U;
    }
    EXPECT_EQ(lines, static_cast<std::size_t>(Programs * rounds * CommitScene::Views * CommitScene::PerView));
}

TEST(TwoProgramsTest, ATemporaryFileThatAnotherProgramHoldsIsNotTaken) {
    const RealFolder folder;
    SystemFiles other(CodePage::Of(1252));
    CommitScene scene(folder.files, folder.path);
    scene.Load();
    scene.EditAll();
    const auto held = other.OpenForOutput(scene.TemporaryPath(0));
    held->Write("half of another program's");
    const auto pause = std::exchange(waiting::Pause, [](std::uint32_t) {});
    scene.Commit();
    waiting::Pause = pause;
    const ScriptedToolkit::Box refused{"Error 55: File already open occurred in SaveSchema.",
                                       BoxIcon::Exclamation, "KDLimitDesk"};
    ASSERT_EQ(scene.toolkit.boxes.size(), 5U);
    EXPECT_EQ(scene.toolkit.boxes.front(), refused);
    EXPECT_EQ(RealFolder::Get(scene.TemporaryPath(0)), "half of another program's");
    for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
        EXPECT_EQ(RealFolder::Get(scene.FilePath(view)), CommitScene::OriginalText(view));
        EXPECT_TRUE(scene.ChangesMade(view));
    }
}

TEST(TwoProgramsTest, WhatAnotherProgramHoldsIsWaitedForWhenTheOthersOfItsGroupAreThrough) {
    const Text extension = ".kdt6";  // the template has a temporary file of its own
    const RealFolder folder(extension);
    SystemFiles other(CodePage::Of(1252));
    CommitScene scene(folder.files, folder.path, extension);
    scene.Load();
    scene.EditAll();
    static std::unique_ptr<OutputFile> held;
    static int pauses;
    static std::function<bool()> isFirstThrough;
    held = other.OpenForOutput(scene.TemporaryPath(1));
    pauses = 0;
    isFirstThrough = [&] {
        const Text record = CommitScene::LogLine(0, 1, CommitScene::UslColumn);
        return !scene.ChangesMade(0) && RealFolder::Get(scene.LogPath()).find(record) != Text::npos;
    };
    const auto pause = std::exchange(waiting::Pause, [](std::uint32_t) {
        EXPECT_TRUE(isFirstThrough());
        if (++pauses == 3) {
            held.reset();
        }
    });
    scene.Commit();
    waiting::Pause = pause;
    isFirstThrough = nullptr;
    EXPECT_EQ(pauses, 3);
    EXPECT_EQ(scene.toolkit.boxes,
              (std::vector<ScriptedToolkit::Box>{
                  {"4 File(s) have been modified.", BoxIcon::Information, "KDLimitDesk"}}));
}

}  // namespace
}  // namespace kd
