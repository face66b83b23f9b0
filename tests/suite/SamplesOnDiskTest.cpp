#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "SourceFolder.h"
#include "appfiles/FileNames.h"
#include "appfiles/LoadApplications.h"
#include "appfiles/SchemaWriter.h"
#include "fakes/FakeServices.h"
#include "fakes/ScriptedToolkit.h"
#include "grid/ColumnCatalogue.h"
#include "lifecycle/StartUp.h"
#include "model/Globals.h"
#include "suite/StandaloneSuite.h"
#include "system/SystemFiles.h"

namespace kd {
namespace {

namespace fs = std::filesystem;

/// The real files and services over a copy of the samples in a fresh folder.
class SamplesOnDiskTest : public testing::Test {
public:
    ~SamplesOnDiskTest() override { fs::remove_all(folder); }

protected:
    SamplesOnDiskTest() {
        std::random_device random;
        do {
            folder = fs::temp_directory_path() / ("kd-samples-" + std::to_string(random()));
        } while (!fs::create_directory(folder));
        for (const auto& entry : fs::directory_iterator(fs::path(KD_SOURCE_DIR) / "samples")) {
            const fs::path extension = entry.path().extension();
            if (entry.is_regular_file() && extension != ".md" && extension != ".ini") {
                fs::copy_file(entry.path(), folder / entry.path().filename());
            }
            if (extension == ".kdt" || extension == ".kdt6") {
                (void)g.gMasterFiles->Add((folder / entry.path().filename()).string(), true);
            }
        }
        modKDLimitDesk::LoadRuleCatalogue(g);
        modKDLimitDesk::BuildColumnCatalogue(g);
        SetupGridColumns(desk);
        LoadApplications(desk);
    }

    static std::string BytesOf(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static std::string WithoutRevision(const std::string& bytes) {
        const std::size_t equals = bytes.find('=', bytes.find("VERSION"));
        return bytes.substr(0, equals + 1) + bytes.substr(bytes.find("\r\n", equals));
    }

    fs::path folder;
    FakeLocale locale;
    SystemFiles files{locale.CodePage()};
    ScriptedToolkit toolkit;
    FakeClock clock;
    FakeEnvironment environment;
    FakeShell shell;
    FakeFileDialog fileDialog;
    StandaloneSuite suite{{"", "", "", KD_SOURCE_DIR "/samples"}, files, locale, clock, {}};
    Platform platform{files, toolkit, locale, clock, environment, shell, fileDialog, suite};
    Globals g{platform};
    Desk desk{g};
};

TEST_F(SamplesOnDiskTest, AllApplicationsLoadIntoTheGrid) {
    EXPECT_EQ(desk.Panel2.Caption(), "Done ... , Applications: 13, Views: 62, Variables: 1062");
    EXPECT_EQ(desk.Grid.Rows(), 1063);
    EXPECT_EQ(g.gMasterFiles->TotalFilesEnabled(), 13);
    EXPECT_EQ(g.gRuleLetters, "ABCDEFGH");
}

TEST_F(SamplesOnDiskTest, EveryViewIsSavedAsItWasButForTheRevision) {
    ASSERT_EQ(g.gFiles->Count(), 75);
    for (std::int32_t index = 1; index <= g.gFiles->Count(); ++index) {
        const Text path = modKDLimitDesk::SchemaPath(g, *g.gFiles->Item(index));
        SCOPED_TRACE(path);
        const std::string before = BytesOf(path);
        ASSERT_TRUE(modKDLimitDesk::SaveSchema(g, index));
        const std::string after = BytesOf(path);
        EXPECT_NE(after, before);
        EXPECT_EQ(WithoutRevision(after), WithoutRevision(before));
    }
}

TEST_F(SamplesOnDiskTest, SavingLeavesNoOtherFileBehind) {
    for (std::int32_t index = 1; index <= g.gFiles->Count(); ++index) {
        ASSERT_TRUE(modKDLimitDesk::SaveSchema(g, index));
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 75);
}

}  // namespace
}  // namespace kd
