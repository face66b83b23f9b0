#include <gtest/gtest.h>

#include <algorithm>

#include "appfiles/SchemaWriter.h"
#include "base/NumberTexts.h"
#include "fakes/AtSizes.h"
#include "fakes/Builders.h"
#include "fakes/FakeServices.h"
#include "fakes/MemoryFiles.h"
#include "fakes/TestMachine.h"
#include "faults/CommitScene.h"
#include "lifecycle/Settings.h"
#include "model/modKDLimitDesk.h"

namespace kd {
namespace {

/// An application of one file with that text.
struct SizedDesk : LoadedDesk {
    explicit SizedDesk(std::string text) {
        files.Put("/apps/a.kdt", std::move(text));
        suite.applications["/apps/a.kdt"] = {"A", {}};
        (void)g.gMasterFiles->Add("/apps/a.kdt", true);
    }
    /// Number of the error that stops the load; 0 for none.
    std::int32_t LoadError() {
        try {
            Load();
            return 0;
        } catch (const cError& error) {
            return error.Number();
        }
    }
};

constexpr std::int32_t MostVariables = 32'767;

std::string Blocks(std::size_t count, const std::string& block) {
    std::string text = "VERSION=7.\r\n";
    text.reserve(text.size() + count * block.size());
    for (std::size_t at = 0; at < count; ++at) {
        text += block;
    }
    return text;
}

TEST(SizeTest, MoreBlocksThanThereCanBeVariablesStopTheLoadAndNothingOfTheFileCanBeSaved) {
    AtSizes("blocks", 1'000'000, 40'000, [](std::size_t blocks) {
        std::string text = Blocks(blocks, "[FIELD]\r\nTYPE=T\r\n");
        const std::size_t input = text.size();
        SizedDesk t(std::move(text));
        EXPECT_EQ(t.LoadError(), errOverflow);
        EXPECT_EQ(t.g.gFields->Count(), MostVariables);
        EXPECT_LT(t.g.gFiles->Ref(1).EndFieldPtr(), t.g.gFiles->Ref(1).BegFieldPtr());
        EXPECT_FALSE(modKDLimitDesk::AnyChanges(t.g));
        return input;
    });
}

TEST(SizeTest, AsManyVariablesAsThereCanBeLoadAndOneMoreIsRefused) {
    const std::string block = "[FIELD]\r\nNAME=v\r\nTYPE=N\r\nLENGTH=8\r\nDECIMALS=2\r\nUSL=F5\r\n";
    AtSizes("variables", MostVariables + 1, MostVariables, [&](std::size_t count) {
        std::string text = Blocks(count, block);
        const std::size_t input = text.size();
        SizedDesk t(std::move(text));
        const bool tooMany = count > MostVariables;
        EXPECT_EQ(t.LoadError(), tooMany ? errOverflow : 0);
        if (!tooMany) {
            EXPECT_EQ(t.desk.Grid.Rows(), static_cast<std::int32_t>(count) + 1);
            EXPECT_TRUE(modKDLimitDesk::SaveSchema(t.g, 1));
        }
        return input;
    });
}

TEST(SizeTest, ALineOfGreatLengthIsKeptThroughALoadAndASave) {
    AtSizes("a line", 100'000'000, 2'000'000, [](std::size_t size) {
        const std::string line(size, 'x');
        SizedDesk t("VERSION=7.\r\n[FIELD]\r\nTYPE=T\r\nHELPFILE=" + line + "\r\n");
        EXPECT_EQ(t.LoadError(), 0);
        EXPECT_TRUE(modKDLimitDesk::SaveSchema(t.g, 1));
        EXPECT_NE(t.files.Get("/apps/a.kdt").find("   HELPFILE     = " + line + "\r\n"), std::string::npos);
        return size;
    });
}

TEST(SizeTest, AHeaderOfGreatLengthIsKeptThroughALoadAndASave) {
    AtSizes("a header", 50'000'000, 1'000'000, [](std::size_t size) {
        std::string header = "VERSION=7.\r\n";
        while (header.size() < size) {
            header += "; one line of many in a header that somebody wrote a book into\r\n";
        }
        SizedDesk t(header + "[FIELD]\r\nTYPE=T\r\n");
        EXPECT_EQ(t.LoadError(), 0);
        EXPECT_TRUE(modKDLimitDesk::SaveSchema(t.g, 1));
        EXPECT_TRUE(t.files.Get("/apps/a.kdt").starts_with("VERSION= 7.001" + header.substr(10)));
        return header.size();
    });
}

TEST(SizeTest, TheGreatestLengthInEveryVariableWhoseBoundsAreGivenLoadsAndIsSaved) {
    AtSizes("variables of length 32767", MostVariables, 600, [](std::size_t count) {
        std::string text =
            Blocks(count, "[FIELD]\r\nTYPE=N\r\nLENGTH=32767\r\nDECIMALS=2\r\nMAX=9\r\nMIN=0\r\nUSL=F5\r\n");
        const std::size_t input = text.size();
        SizedDesk t(std::move(text));
        EXPECT_EQ(t.LoadError(), 0);
        EXPECT_EQ(t.desk.Grid.Rows(), static_cast<std::int32_t>(count) + 1);
        EXPECT_TRUE(modKDLimitDesk::SaveSchema(t.g, 1));
        return input;
    });
}

TEST(SizeTest, TheGreatestLengthWithoutBoundsIsRefusedAtTheFirstVariable) {
    AtSizes("variables of length 32767 without bounds", MostVariables, 600, [](std::size_t count) {
        std::string text = Blocks(count, "[FIELD]\r\nTYPE=N\r\nLENGTH=32767\r\nDECIMALS=2\r\nUSL=F5\r\n");
        const std::size_t input = text.size();
        SizedDesk t(std::move(text));
        EXPECT_EQ(t.LoadError(), errOverflow) << "nines of that length are no number";
        return input;
    });
}

TEST(SizeTest, ThousandsOfApplicationsInTheSettingsAreReadAndWritten) {
    AtSizes("applications in the settings", 10'000, 500, [](std::size_t count) {
        TestMachine t;
        std::string text = "[FILES]\r\n";
        for (std::size_t application = count; application > 0; --application) {
            text += "File=/apps/" + std::to_string(application) + ".kdt\r\n";
        }
        t.files.Put("/s.IKD", text);
        modKDLimitDesk::ReadSettings(t.g, "/s.IKD");
        EXPECT_EQ(t.g.gMasterFiles->Count(), static_cast<std::int32_t>(count));
        modKDLimitDesk::WriteSettings(t.g, "/s.IKD");
        modKDLimitDesk::ReadSettings(t.g, "/s.IKD");
        EXPECT_EQ(t.g.gMasterFiles->Count(), static_cast<std::int32_t>(count));
        EXPECT_EQ(t.g.gMasterFiles->Ref(1).Filename(), "/apps/1.kdt");
        return text.size();
    });
}

TEST(SizeTest, ThousandsOfViewsOfOneApplicationAreLoadedAndCommitted) {
    AtSizes("views", 5'000, 200, [](std::size_t count) {
        MemoryFiles files;
        CommitScene scene(files, "/apps");
        const std::string variables = CommitScene::OriginalText(1);
        std::string text = "[VIEWS]\r\n";
        for (std::size_t view = 1; view <= count; ++view) {
            text += "   VIEW         = " + std::to_string(view) + ",view\r\n";
            files.Put(scene.FilePath(static_cast<std::int32_t>(view)), variables);
        }
        files.Put(scene.path, text + "\r\n" + variables);
        scene.Load();
        const auto views = static_cast<std::int32_t>(count) + 1;
        EXPECT_EQ(scene.g.gFiles->Count(), views);
        EXPECT_EQ(scene.g.gFields->Count(), views * CommitScene::PerView);
        for (std::int32_t row = 1; row <= scene.g.gFields->Count(); ++row) {
            scene.Edit(row, CommitScene::UslColumn, "50");
        }
        scene.Commit();
        EXPECT_EQ(scene.toolkit.boxes.size(), 1U);
        EXPECT_EQ(scene.toolkit.boxes.back().text, Digits(views) + " File(s) have been modified.");
        EXPECT_FALSE(modKDLimitDesk::AnyChanges(scene.g));
        return text.size() + (count + 1) * variables.size();
    });
}

TEST(SizeTest, ThousandsOfViewsOfWhichNoneIsThereLoadAsEmptyOnes) {
    AtSizes("views without a file", 5'000, 200, [](std::size_t count) {
        SizedDesk t("VERSION=7.\r\n[FIELD]\r\nTYPE=T\r\n");
        for (std::size_t view = 1; view <= count; ++view) {
            t.suite.applications["/apps/a.kdt"].views.push_back({"v", static_cast<std::int32_t>(view)});
        }
        EXPECT_EQ(t.LoadError(), 0);
        EXPECT_EQ(t.g.gFiles->Count(), static_cast<std::int32_t>(count) + 1);
        EXPECT_EQ(t.g.gFields->Count(), 1);
        return count * 10;
    });
}

}  // namespace
}  // namespace kd
