#include "suite/RuleCatalogue.h"

#include <gtest/gtest.h>

#include "SourceFolder.h"
#include "fakes/FakeServices.h"
#include "fakes/MemoryFiles.h"
#include "system/SystemFiles.h"

namespace kd {
namespace {

class RuleCatalogueTest : public testing::Test {
protected:
    using Names = std::vector<Text>;
    Names Read() { return ReadRuleCatalogue(files, locale, {"/settings", "/data"}); }

    const Names builtIn{"Point beyond limit",     "Run of nine",
                        "Trend of six",           "Fourteen alternating",
                        "Two of three in zone A", "Four of five in zone B",
                        "Fifteen in zone C",      "Eight outside zone C"};
    MemoryFiles files;
    FakeLocale locale;
};

TEST_F(RuleCatalogueTest, TheSettingsFolderGoesBeforeTheProgramsOwn) {
    files.Put("/settings/Rules.ini", "[RULES]\r\nRULE = Mine\r\n   rule = Other, too \r\n");
    files.Put("/data/Rules.ini", "[RULES]\r\nRULE = Shipped\r\n");
    EXPECT_EQ(Read(), (Names{"Mine", "Other, too"}));
    files.Erase("/settings/Rules.ini");
    EXPECT_EQ(Read(), Names{"Shipped"});
}

TEST_F(RuleCatalogueTest, AFileMarkedAsUtf8IsReadAsSuch) {
    files.Put("/settings/Rules.ini", "\xEF\xBB\xBF[RULES]\r\nRULE = M\xC3\xBCller\r\nRULE = \xCE\xA9\r\n");
    files.Put("/data/Rules.ini", "[RULES]\r\nRULE = Shipped\r\n");
    EXPECT_EQ(Read(), (Names{"M\xC3\xBCller", "?"}))
        << "what the files' code page lacks is no part of a name";
}

TEST_F(RuleCatalogueTest, WithoutAnyFileItIsTheListBuiltIn) {
    EXPECT_EQ(Read(), builtIn);
}

TEST_F(RuleCatalogueTest, ItIsNeverEmpty) {
    struct Case {
        const char* label;
        const char* bytes;
    };
    const Case cases[] = {{"empty", ""},
                          {"no rules", "[RULES]\r\n"},
                          {"rules without a name", "[RULES]\r\nRULE =\r\n"},
                          {"another section", "[OTHER]\r\nRULE = X\r\n"},
                          {"another key", "[RULES]\r\nNAME = X\r\n"},
                          {"lone line feeds", "[RULES]\nRULE = X\n"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        files.Put("/settings/Rules.ini", c.bytes);
        files.Put("/data/Rules.ini", c.bytes);
        EXPECT_EQ(Read(), builtIn);
        files.Put("/data/Rules.ini", "[RULES]\r\nRULE = Shipped\r\n");
        EXPECT_EQ(Read(), Names{"Shipped"});
    }
}

TEST_F(RuleCatalogueTest, AFileThatCannotBeReadIsPassedOver) {
    files.Put("/settings/Rules.ini", "[RULES]\r\nRULE = Mine\r\n");
    files.SetUnreadable("/settings/Rules.ini");
    files.PutSpecial("/data/Rules.ini");
    EXPECT_EQ(Read(), builtIn);
}

TEST_F(RuleCatalogueTest, NamesComeThroughTheCodePage) {
    locale.page = 1251;
    files.Put("/settings/Rules.ini", "[RULES]\r\nRULE = \xCF\xF0\xEE\xE1\xE0\r\n");
    EXPECT_EQ(Read(), Names{"Проба"});
}

TEST_F(RuleCatalogueTest, TheListThatShipsIsTheListBuiltIn) {
    SystemFiles disk(locale.CodePage());
    EXPECT_TRUE(disk.Exists(KD_SOURCE_DIR "/samples/Rules.ini"));
    EXPECT_EQ(ReadRuleCatalogue(disk, locale, {KD_SOURCE_DIR "/samples"}), builtIn);
}

TEST_F(RuleCatalogueTest, AFolderWithoutANameIsNotTheRoot) {
    files.Put("/Rules.ini", "[RULES]\r\nRULE = Stray\r\n");
    EXPECT_EQ(ReadRuleCatalogue(files, locale, {"", ""}), builtIn);
}

}  // namespace
}  // namespace kd
