#include "suite/StandaloneApplicationFile.h"

#include <gtest/gtest.h>

#include "fakes/FakeServices.h"
#include "fakes/MemoryFiles.h"

namespace kd {
namespace {

class StandaloneApplicationFileTest : public testing::Test {
protected:
    using Views = std::vector<std::pair<std::int32_t, Text>>;

    Views ViewsOf(const Text& path) {
        reader.OpenFile(path);
        reader.LoadViews();
        Views views;
        for (std::int32_t position = 1; position <= reader.Views().Count(); ++position) {
            const KDViewEntry& view = reader.Views().Item(position);
            views.emplace_back(view.ViewEntryNumber(), view.ViewEntryName());
        }
        return views;
    }
    Text TitleOf(const Text& path) {
        reader.OpenFile(path);
        return reader.ApplicationTitle();
    }
    std::int32_t ErrorOfOpen(const Text& path) {
        try {
            reader.OpenFile(path);
        } catch (const cError& error) {
            return error.Number();
        }
        return 0;
    }

    MemoryFiles files;
    FakeLocale locale;
    StandaloneApplicationFile reader{files, locale, [] { return std::vector<Text>{"X", "Y"}; }};
};

TEST_F(StandaloneApplicationFileTest, TheTitleIsThatOfTheApplicationSection) {
    files.Put("/a/plant.kdt",
              "[OTHER]\r\nTITLE = Other\r\n[application]\r\n   Title        =   Plant, line 3   \r\n"
              "VERSION = 7.\r\n[FIELD]\r\n[APPLICATION]\r\nTITLE = Behind\r\n");
    EXPECT_EQ(TitleOf("/a/plant.kdt"), "Plant, line 3");
}

TEST_F(StandaloneApplicationFileTest, WithoutATitleItIsTheFileNameWithoutExtension) {
    struct Case {
        const char* label;
        const char* path;
        const char* bytes;
        const char* title;
    };
    const Case cases[] = {{"empty file", "/a/plant.kdt", "", "plant"},
                          {"generation 6", "/a/plant.2.kdt6", "", "plant.2"},
                          {"no extension", "/a.b/plant", "", "plant"},
                          {"empty title", "/a/plant.kdt", "[APPLICATION]\r\nTITLE =\r\n", "plant"},
                          {"other section", "/a/plant.kdt", "TITLE = X\r\n[X]\r\nTITLE = X\r\n", "plant"},
                          {"last line without an end", "/a/plant.kdt", "[APPLICATION]\r\nTITLE = X", "plant"},
                          {"lone line feeds", "/a/plant.kdt", "[APPLICATION]\nTITLE = X\n", "plant"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        files.Put(c.path, c.bytes);
        EXPECT_EQ(TitleOf(c.path), c.title);
    }
}

TEST_F(StandaloneApplicationFileTest, ATitleHoldsEveryCharacterOfTheCodePage) {
    std::string bytes = "t";
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\t' && byte != '\r' && byte != '\n') {
            bytes += static_cast<char>(byte);
        }
    }
    bytes += "t";
    for (const int page : {1252, 1250, 1251, 1255, 874}) {
        SCOPED_TRACE(page);
        locale.page = page;
        files.Put("/a/plant.kdt", "[APPLICATION]\r\nTITLE = " + bytes + "\r\n");
        EXPECT_EQ(locale.CodePage().Encode(TitleOf("/a/plant.kdt")), bytes);
    }
}

TEST_F(StandaloneApplicationFileTest, ViewsComeInTheOrderOfTheLines) {
    files.Put("/a/plant.kdt",
              "[VIEWS]\r\nVIEW = 3,Shift\r\n   view=1,Lab, daily\r\nVIEW = 12 , Night \r\nOTHER = 9,No\r\n"
              "VIEW = 2\r\n[X]\r\nVIEW = 8,No\r\n[VIEWS]\r\nVIEW = 3,Again\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"),
              (Views{{3, "Shift"}, {1, "Lab, daily"}, {12, "Night"}, {2, ""}, {3, "Again"}}));
}

TEST_F(StandaloneApplicationFileTest, AViewBelowNumberOneIsNotTaken) {
    files.Put("/a/plant.kdt",
              "[VIEWS]\r\nVIEW = 0,Zero\r\nVIEW = -1,Minus\r\nVIEW = ,None\r\nVIEW = x,Letter\r\n"
              "VIEW = 0.9,Part\r\nVIEW =\r\nVIEW = 1,One\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), (Views{{1, "One"}}));
}

TEST_F(StandaloneApplicationFileTest, AViewNumberBeyondSixteenBitsIsGivenAsItStands) {
    files.Put("/a/plant.kdt",
              "[VIEWS]\r\nVIEW = 32768,A\r\nVIEW = 2147483647,B\r\nVIEW = 1E300,C\r\nVIEW = 1E999,D\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"),
              (Views{{32768, "A"}, {2147483647, "B"}, {2147483647, "C"}, {2147483647, "D"}}));
}

TEST_F(StandaloneApplicationFileTest, AnEmptyViewsSectionMeansNoViews) {
    files.Put("/a/plant.kdt", "[VIEWS]\r\n[FIELD]\r\n");
    files.Put("/a/plant.V1", "");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), Views{});
}

TEST_F(StandaloneApplicationFileTest, TheHeaderEndsAtTheFirstFieldLine) {
    files.Put("/a/plant.kdt",
              "[APPLICATION]\r\nTITLE = T\r\n[field]\r\nNAME = X\r\n[VIEWS]\r\nVIEW = 1,Behind\r\n");
    files.Put("/a/plant.V7", "");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), (Views{{7, "View 7"}}));
}

TEST_F(StandaloneApplicationFileTest, AFieldLineWithBlanksInFrontIsHeaderText) {
    files.Put("/a/plant.kdt", "  [FIELD]\r\n[FIELD] x\r\n[VIEWS]\r\nVIEW = 1,Lab\r\n[FIELD]\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), (Views{{1, "Lab"}}));
}

TEST_F(StandaloneApplicationFileTest, WithoutAListTheViewFilesBesideTheTemplateCount) {
    files.Put("/a/plant.kdt", "");
    files.Put("/a/plant.V10", "[APPLICATION]\r\nTITLE = Ten\r\n");
    files.Put("/a/plant.V2", "[APPLICATION]\r\nTITLE = Two\r\n[FIELD]\r\n");
    files.Put("/a/plant.V3", "[FIELD]\r\n[APPLICATION]\r\nTITLE = Behind\r\n");
    files.Put("/a/PLANT.v4", "");
    for (const char* other :
         {"/a/plant.V", "/a/plant.V0", "/a/plant.V05", "/a/plant.V1x", "/a/plant.V-1", "/a/plant.V+1",
          "/a/plant.V 1", "/a/plant.V1.bak", "/a/plant.KDV6.V1", "/a/plant2.V1", "/a/xplant.V1",
          "/a/plant.kdt1", "/a/plant.V99999999999", "/b/plant.V1", "/a/plant.V8/inner"}) {
        files.Put(other, "");
    }
    files.PutSpecial("/a/plant.V9");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), (Views{{2, "Two"}, {3, "View 3"}, {4, "View 4"}, {10, "Ten"}}));
}

TEST_F(StandaloneApplicationFileTest, WithoutAListGenerationSixHasItsOwnNames) {
    files.Put("/a/plant.kdt6", "");
    files.Put("/a/plant.KDV6.V11", "");
    files.Put("/a/plant.kdv6.v2", "[APPLICATION]\r\nTITLE = Two\r\n");
    files.Put("/a/plant.V1", "");
    files.Put("/a/plant.kdt6.V1", "");
    EXPECT_EQ(ViewsOf("/a/plant.kdt6"), (Views{{2, "Two"}, {11, "View 11"}}));
}

TEST_F(StandaloneApplicationFileTest, AViewFileIsTitledByTheOneThatTheLoadTakes) {
    files.Put("/a/plant.kdt", "");
    files.Put("/a/PLANT.V1", "[APPLICATION]\r\nTITLE = Other case\r\n");
    files.Put("/a/plant.V1", "[APPLICATION]\r\nTITLE = Exact\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), (Views{{1, "Exact"}}));
}

TEST_F(StandaloneApplicationFileTest, AViewFileThatCannotBeReadIsListedByItsNumber) {
    files.Put("/a/plant.kdt", "");
    files.Put("/a/plant.V1", "[APPLICATION]\r\nTITLE = One\r\n");
    files.SetUnreadable("/a/plant.V1");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), (Views{{1, "View 1"}}));
}

TEST_F(StandaloneApplicationFileTest, ATemplateInTheRootHasItsViewsBesideIt) {
    files.Put("/plant.kdt", "");
    files.Put("/plant.V1", "");
    EXPECT_EQ(ViewsOf("/plant.kdt"), (Views{{1, "View 1"}}));
}

TEST_F(StandaloneApplicationFileTest, ATemplateThatCannotBeReadRaisesAnError) {
    files.Put("/a/unreadable.kdt", "");
    files.SetUnreadable("/a/unreadable.kdt");
    files.PutSpecial("/a/special.kdt");
    EXPECT_EQ(ErrorOfOpen("/a/missing.kdt"), errFileNotFound);
    EXPECT_EQ(ErrorOfOpen("/none/missing.kdt"), errPathNotFound);
    EXPECT_EQ(ErrorOfOpen("/a/unreadable.kdt"), errPermissionDenied);
    EXPECT_EQ(ErrorOfOpen("/a/special.kdt"), errPermissionDenied);
}

TEST_F(StandaloneApplicationFileTest, AFailedOpenLeavesNothingOfTheLastApplication) {
    files.Put("/a/plant.kdt", "[APPLICATION]\r\nTITLE = T\r\n[VIEWS]\r\nVIEW = 1,Lab\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt").size(), 1U);
    EXPECT_NE(ErrorOfOpen("/a/missing.kdt"), 0);
    EXPECT_EQ(reader.ApplicationTitle(), "");
    reader.LoadViews();
    EXPECT_EQ(reader.Views().Count(), 0);
}

TEST_F(StandaloneApplicationFileTest, OneReaderServesOneApplicationAfterTheOther) {
    files.Put("/a/plant.kdt", "[APPLICATION]\r\nTITLE = T\r\n[VIEWS]\r\nVIEW = 1,Lab\r\n");
    files.Put("/a/other.kdt", "[VIEWS]\r\nVIEW = 2,Two\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), (Views{{1, "Lab"}}));
    reader.CloseFile();
    EXPECT_EQ(reader.Views().Count(), 0);
    EXPECT_EQ(ViewsOf("/a/other.kdt"), (Views{{2, "Two"}}));
    EXPECT_EQ(reader.ApplicationTitle(), "other");
}

TEST_F(StandaloneApplicationFileTest, ViewsThatAreReadOnceMoreAreThereOnce) {
    files.Put("/a/plant.kdt", "[VIEWS]\r\nVIEW = 1,Lab\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt").size(), 1U);
    reader.LoadViews();
    EXPECT_EQ(reader.Views().Count(), 1);
}

TEST_F(StandaloneApplicationFileTest, ListsCountFromOne) {
    files.Put("/a/plant.kdt", "[VIEWS]\r\nVIEW = 1,Lab\r\n");
    EXPECT_EQ(ViewsOf("/a/plant.kdt").size(), 1U);
    EXPECT_THROW((void)reader.Views().Item(0), cError);
    try {
        (void)reader.Views().Item(2);
        ADD_FAILURE() << "a position behind the last was taken";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errInvalidArgument);
        EXPECT_EQ(error.Source(), "EntryList.Item");
    }
    EXPECT_THROW((void)reader.RuleList().Item(3), cError);
}

TEST_F(StandaloneApplicationFileTest, TheRulesNeedNoOpenApplication) {
    ASSERT_EQ(reader.RuleList().Count(), 2);
    EXPECT_EQ(reader.RuleList().Item(1).RuleEntryName(), "X");
    EXPECT_EQ(reader.RuleList().Item(2).RuleEntryName(), "Y");
}

TEST_F(StandaloneApplicationFileTest, AFileWithANumberThatNoViewCanHaveIsNoView) {
    files.Put("/a/plant.kdt", "");
    files.Put("/a/plant.V32767", "");
    files.Put("/a/plant.V32768", "");
    files.Put("/a/plant.V99999999999", "");
    EXPECT_EQ(ViewsOf("/a/plant.kdt"), (Views{{32767, "View 32767"}}));
}

TEST_F(StandaloneApplicationFileTest, TheBytesOfEachFileThatItHasReadAreHandedOverOnce) {
    using Bytes = std::optional<std::string>;
    files.Put("/a/plant.kdt", "[APPLICATION]\r\n");
    files.Put("/a/plant.V1", "[FIELD]\r\n");
    files.Put("/a/plant.V2", "unreadable");
    files.SetUnreadable("/a/plant.V2");
    reader.OpenFile("/a/plant.kdt");
    EXPECT_EQ(reader.TakeBytes("/a/other.kdt"), std::nullopt);
    EXPECT_EQ(reader.TakeBytes("/a/plant.V2"), std::nullopt);
    EXPECT_EQ(reader.TakeBytes("/a/plant.kdt"), Bytes("[APPLICATION]\r\n"));
    EXPECT_EQ(reader.TakeBytes("/a/plant.kdt"), std::nullopt);
    EXPECT_EQ(reader.TakeBytes("/a/plant.V1"), Bytes("[FIELD]\r\n"));
    EXPECT_EQ(reader.TakeBytes("/a/plant.V1"), std::nullopt);
}

TEST_F(StandaloneApplicationFileTest, NoBytesAreLeftOfAnApplicationThatIsClosed) {
    files.Put("/a/plant.kdt", "[VIEWS]\r\n");
    reader.OpenFile("/a/plant.kdt");
    reader.CloseFile();
    EXPECT_EQ(reader.TakeBytes("/a/plant.kdt"), std::nullopt);
    reader.OpenFile("/a/plant.kdt");
    EXPECT_NE(ErrorOfOpen("/a/missing.kdt"), 0);
    EXPECT_EQ(reader.TakeBytes("/a/plant.kdt"), std::nullopt);
}

TEST_F(StandaloneApplicationFileTest, AnApplicationWhoseFolderCannotBeListedCannotBeOpened) {
    files.Put("/a/plant.kdt", "");
    files.FailOn("FolderEntries", "", errPermissionDenied);
    EXPECT_EQ(ErrorOfOpen("/a/plant.kdt"), errPermissionDenied);
    EXPECT_EQ(reader.ApplicationTitle(), "");
    files.Put("/a/listed.kdt", "[VIEWS]\r\nVIEW = 1,Lab\r\n");
    EXPECT_EQ(ViewsOf("/a/listed.kdt"), (Views{{1, "Lab"}})) << "with a list the folder is not asked";
}

}  // namespace
}  // namespace kd
