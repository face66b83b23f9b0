#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "SourceFolder.h"
#include "appfiles/FileNames.h"
#include "appfiles/RuleLetters.h"
#include "appfiles/SchemaHeader.h"
#include "appfiles/SchemaReader.h"
#include "appfiles/SchemaWriter.h"
#include "base/Paths.h"
#include "fakes/TestMachine.h"

namespace kd {
namespace {

namespace fs = std::filesystem;

std::string BytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A sample's place among the files of its application.
struct Sample {
    fs::path path;
    Text templateName;
    std::int16_t viewNo;
};

Sample SampleAt(const fs::path& path) {
    const Text name = path.filename().string();
    const Text base = name.substr(0, name.find('.'));
    const std::size_t view = name.rfind(".V");
    if (view == Text::npos) {
        return {path, name, 0};
    }
    const bool generation6 = name.find(".KDV6") != Text::npos;
    return {path, base + (generation6 ? ".kdt6" : ".kdt"),
            static_cast<std::int16_t>(std::stoi(name.substr(view + 2)))};
}

std::vector<Sample> Samples() {
    std::vector<Sample> samples;
    for (const auto& entry : fs::directory_iterator(fs::path(KD_SOURCE_DIR) / "samples")) {
        const Text extension = entry.path().extension().string();
        if (extension == ".kdt" || extension == ".kdt6" || extension.starts_with(".V")) {
            samples.push_back(SampleAt(entry.path()));
        }
    }
    std::sort(samples.begin(), samples.end(),
              [](const Sample& a, const Sample& b) { return a.path < b.path; });
    return samples;
}

std::vector<Text> ShippedRules() {
    std::vector<Text> rules;
    std::ifstream file(fs::path(KD_SOURCE_DIR) / "samples" / "Rules.ini", std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        const std::size_t at = line.find("= ");
        if (at != std::string::npos) {
            rules.push_back(line.substr(at + 2, line.size() - at - 3));  // a CR stands at the end
        }
    }
    return rules;
}

void UseCatalogue(Globals& g, const std::vector<Text>& rules) {
    g.gRulesBlock = "[RULES]\r\n";
    for (const Text& rule : rules) {
        g.gRuleNames += (g.gRuleNames.empty() ? "" : ",") + rule;
        g.gRulesBlock += "   RULE         = " + rule + "\r\n";
    }
    g.gRulesBlock += "\r\n";
}

/// The bytes with the value of VERSION taken out, up to its line end.
std::string WithoutRevision(const std::string& bytes) {
    const std::size_t equals = bytes.find('=', bytes.find("VERSION"));
    return bytes.substr(0, equals + 1) + bytes.substr(bytes.find("\r\n", equals));
}

class SamplesTest : public testing::Test {
protected:
    /// Loads a sample from the memory files into the globals, finished as a load finishes it; its position.
    std::int32_t Load(const Sample& sample) {
        Globals& g = desk.g;
        const Text templatePath = "/samples/" + sample.templateName;
        const auto file = g.gFiles->Add(templatePath, "", "", sample.viewNo);
        file->SetBegFieldPtr(g.gFields->Count() + 1);
        modKDLimitDesk::ReadSchema(g, modKDLimitDesk::SchemaPath(g, *file), g.gFiles->Count());
        file->SetEndFieldPtr(g.gFields->Count());
        for (std::int32_t index = file->BegFieldPtr(); index <= file->EndFieldPtr(); ++index) {
            modKDLimitDesk::TranslateRules(g, g.gFiles->Count(), index);
        }
        return g.gFiles->Count();
    }
    std::string Put(const Sample& sample) {
        std::string bytes = BytesOf(sample.path);
        desk.files.Put(Placed(sample), bytes);
        return bytes;
    }
    static Text Placed(const Sample& sample) { return "/samples/" + sample.path.filename().string(); }

    TestMachine desk;
};

TEST_F(SamplesTest, ThereAreThirteenApplicationsWithSeventyFiveFilesAnd1062Variables) {
    UseCatalogue(desk.g, ShippedRules());
    const std::vector<Sample> samples = Samples();
    for (const Sample& sample : samples) {
        Put(sample);
        Load(sample);
    }
    EXPECT_EQ(samples.size(), 75U);
    EXPECT_EQ(std::count_if(samples.begin(), samples.end(), [](const Sample& s) { return s.viewNo == 0; }),
              13);
    EXPECT_EQ(desk.g.gFields->Count(), 1062);
}

TEST_F(SamplesTest, EverySampleIsSavedAsItWasButForTheRevision) {
    UseCatalogue(desk.g, ShippedRules());
    for (const Sample& sample : Samples()) {
        SCOPED_TRACE(sample.path.filename().string());
        const std::string before = Put(sample);
        ASSERT_TRUE(modKDLimitDesk::SaveSchema(desk.g, Load(sample)));
        const std::string after = desk.files.Get(Placed(sample));
        EXPECT_NE(after, before);
        EXPECT_EQ(WithoutRevision(after), WithoutRevision(before));
    }
}

TEST_F(SamplesTest, BoundsOfTheSamplesNeedNoDeriving) {
    for (const Sample& sample : Samples()) {
        Put(sample);
        Load(sample);
    }
    for (std::int32_t index = 1; index <= desk.g.gFields->Count(); ++index) {
        const cField& field = *desk.g.gFields->Item(index);
        if (Text("NARC").find(field.FieldType()) != Text::npos) {
            EXPECT_FALSE(field.Maximum() == 0 && field.Minimum() == 0) << field.Name();
        }
    }
}

TEST_F(SamplesTest, AnotherCatalogueSwapsTheRulesBlockAndTheLettersFollow) {
    std::vector<Text> rules = ShippedRules();
    std::reverse(rules.begin(), rules.end());
    UseCatalogue(desk.g, rules);
    const Sample sample = SampleAt(fs::path(KD_SOURCE_DIR) / "samples" / "dairy.kdt6");
    const std::string before = Put(sample);
    ASSERT_NE(before.find("   RULES        = AB\r\n"), std::string::npos);
    ASSERT_TRUE(modKDLimitDesk::SaveSchema(desk.g, Load(sample)));
    const std::string after = desk.files.Get(Placed(sample));
    EXPECT_NE(after.find("[RULES]\r\n   RULE         = Eight outside zone C\r\n"), std::string::npos);
    EXPECT_EQ(after.find("   RULES        = AB\r\n"), std::string::npos);
    EXPECT_NE(after.find("   RULES        = GH\r\n"), std::string::npos);
}

}  // namespace
}  // namespace kd
