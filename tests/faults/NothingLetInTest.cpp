#ifndef _WIN32

#include "base/Scope.h"
#include "fakes/FailingFiles.h"
#include "faults/RealFolder.h"
#include "lifecycle/Settings.h"

namespace kd {
namespace {

namespace fs = std::filesystem;

/// Every file below a folder, with its content.
std::map<Text, std::string> AllBelow(const Text& folder) {
    std::map<Text, std::string> all;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        all[entry.path().string()] = entry.is_regular_file() ? RealFolder::Get(entry.path().string()) : "";
    }
    return all;
}

/// An application whose texts try to lead out of its folder, or to run something.
std::string HostileTemplate() {
    std::string text =
        "[APPLICATION]\r\n   TITLE        = ../../outside/title; touch run\r\n   VERSION      = "
        "7.\r\n\r\n[VIEWS]\r\n";
    for (const char* view :
         {"1,../../outside/victim", "../../outside/victim,2", "2/../../outside/victim,$(touch run)",
          "-1,minus", "0,none", "3,|touch run", "4.9,`touch run`"}) {
        text += Text("   VIEW         = ") + view + "\r\n";
    }
    text += "\r\n[RULES]\r\n   RULE         = ../../outside/rule\r\n\r\n";
    text +=
        "[FIELD]\r\nNAME=../../outside/victim\r\nTYPE=N\r\nLENGTH=8\r\nDECIMALS=2\r\nMAX=1000\r\nUSL=F100\r\n"
        "LOOKUP=../../outside/victim\r\nHELPFILE=file:///bin/sh\r\nCALC=$(touch run)\r\n"
        "UNITS=\r\nPOPUP=|touch run\r\n";
    return text;
}

TEST(NothingLetInTest, WhatATemplateHoldsNeverLeadsOutOfItsFolderAndNothingRuns) {
    const RealFolder folder;
    const Text inner = folder.path + "/some/apps";
    fs::create_directories(inner);
    fs::create_directories(folder.path + "/outside");
    for (const char* victim : {"victim", "title", "rule", "victim.V1", "victim.temp"}) {
        std::ofstream(folder.path + "/outside/" + victim, std::ios::binary) << "precious";
    }
    const auto around = AllBelow(folder.path);
    CommitScene scene(folder.files, inner);
    std::ofstream(scene.path, std::ios::binary) << HostileTemplate();
    for (const std::int32_t view : {1, 2, 3}) {
        std::ofstream(scene.FilePath(view), std::ios::binary) << HostileTemplate();
    }
    scene.Load();
    ASSERT_GE(scene.g.gFields->Count(), 2);
    for (std::int32_t row = 1; row <= scene.g.gFields->Count(); ++row) {
        scene.Edit(row, CommitScene::UslColumn, "50");
    }
    scene.Commit();
    ASSERT_EQ(scene.toolkit.boxes.size(), 1U) << scene.toolkit.boxes.front();
    EXPECT_EQ(scene.shell.opened, std::vector<Text>{});
    auto left = AllBelow(folder.path);
    for (const auto& [path, bytes] : around) {
        EXPECT_EQ(left.at(path), bytes) << path;
        left.erase(path);
    }
    for (const auto& [path, bytes] : left) {
        EXPECT_TRUE(path.starts_with(inner + "/plant.") || path.starts_with(inner + "/Archive")) << path;
    }
    EXPECT_NE(RealFolder::Get(scene.path).find("F50."), std::string::npos);
}

TEST(NothingLetInTest, TheFolderForEverybodysTemporaryFilesIsNotUsed) {
    const RealFolder folder;
    const Text temporary = folder.path + "/everybody's";
    fs::create_directories(temporary);
    std::map<Text, Text> before;
    for (const char* name : {"TMPDIR", "TEMP", "TMP"}) {
        const char* const value = std::getenv(name);
        before[name] = value != nullptr ? value : "";
        ASSERT_EQ(::setenv(name, temporary.c_str(), 1), 0);
    }
    const Scope restored([&] {
        for (const auto& [name, value] : before) {
            (void)(value.empty() ? ::unsetenv(name.c_str()) : ::setenv(name.c_str(), value.c_str(), 1));
        }
    });
    // Nothing could be made there; so whatever asked for it would fail.
    ASSERT_EQ(::chmod(temporary.c_str(), 0), 0);
    CommitScene scene(folder.files, folder.path);
    scene.Load();
    scene.EditAll();
    scene.Commit();
    ASSERT_EQ(::chmod(temporary.c_str(), 0700), 0);
    EXPECT_EQ(scene.toolkit.boxes.size(), 1U) << scene.toolkit.boxes.front();
    EXPECT_TRUE(fs::is_empty(temporary));
}

TEST(NothingLetInTest, SettingsArchiveAndChangeFilesHaveTheUsersOwnPermissions) {
    for (const mode_t mask : {mode_t{0022}, mode_t{0077}, mode_t{0027}}) {
        SCOPED_TRACE(mask);
        const mode_t usual = ::umask(mask);
        const Scope restored([&] { (void)::umask(usual); });
        const RealFolder folder;
        CommitScene scene(folder.files, folder.path);
        fs::remove(scene.LogPath());
        fs::remove(scene.ReportPath());
        scene.Load();
        scene.EditAll();
        scene.Commit();
        const Text settings = folder.path + "/config/KDLimitDesk.IKD";
        folder.files.MakeFolder(folder.path + "/config");
        scene.g.gRecents = std::make_shared<cRecents>();
        modKDLimitDesk::WriteSettings(scene.g, settings);
        ASSERT_TRUE(fs::exists(settings));
        int looked = 0;
        for (const auto& entry : fs::recursive_directory_iterator(folder.path)) {
            const auto mode = static_cast<unsigned>(entry.status().permissions());
            EXPECT_EQ(mode, (entry.is_directory() ? 0777U : 0666U) & ~mask) << entry.path();
            ++looked;
        }
        EXPECT_EQ(looked, 15) << "four views and their archive, two change files, the settings, four folders";
    }
}

/// Names that come up while a commit runs and are gone behind it.
std::set<Text> PassingNames(Files& disk, const Text& path) {
    FailingFiles files(disk);
    CommitScene scene(files, path);
    scene.Load();
    scene.EditAll();
    std::set<Text> names;
    files.OnDone = [&](const FailingFiles::Step& step) {
        if (step.operation == "MakeFolder" && !step.path.ends_with("/plant")) {
            names.insert(step.path);
        }
    };
    scene.Commit();
    return names;
}

TEST(NothingLetInTest, NobodyCanForeseeTheFolderThatAnArchiveIsFilledIn) {
    const RealFolder folder;
    const auto first = PassingNames(folder.files, folder.path);
    folder.PutAll();
    const auto second = PassingNames(folder.files, folder.path);
    ASSERT_EQ(first.size(), 1U);
    ASSERT_EQ(second.size(), 1U);
    EXPECT_TRUE(first.begin()->starts_with(folder.path + "/Archive/plant/.unfinished-")) << *first.begin();
    EXPECT_NE(*first.begin(), *second.begin());
}

}  // namespace
}  // namespace kd

#endif
