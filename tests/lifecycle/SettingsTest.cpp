#include "lifecycle/Settings.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fakes/TestMachine.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

constexpr const char* Path = "/home/anna/kd6/KDLimitDesk.IKD";

class SettingsTest : public testing::Test {
protected:
    SettingsTest() { desk.files.MakeFolder("/home/anna/kd6"); }

    void Read(std::string bytes) {
        desk.files.Put(Path, std::move(bytes));
        ReadSettings(desk.g, Path);
    }
    std::string Written() {
        WriteSettings(desk.g, Path);
        return desk.files.Get(Path);
    }
    void AddRecent(Text criteria) {
        (void)desk.g.gRecents->Add(std::move(criteria));  // the record is not needed
    }
    void AddFile(Text path, bool enabled = true) {
        (void)desk.g.gMasterFiles->Add(std::move(path), enabled);  // the record is not needed
    }
    std::vector<Text> Recents() const {
        std::vector<Text> criteria;
        for (const auto& recent : *desk.g.gRecents) {
            criteria.push_back(recent->Criteria());
        }
        return criteria;
    }
    std::vector<Text> Files() const {
        std::vector<Text> paths;
        for (const auto& file : *desk.g.gMasterFiles) {
            EXPECT_TRUE(file->Enabled()) << file->Filename();
            paths.push_back(file->Filename());
        }
        return paths;
    }

    TestMachine desk;
};

using Texts = std::vector<Text>;

// --- writing
// -------------------------------------------------------------------------------------------------

TEST_F(SettingsTest, WrittenFileByteForByte) {
    AddRecent("plant=3");
    AddRecent("Line");
    AddFile("C:\\data\\a.kdt");
    AddFile("C:\\data\\b.kdt6", false);
    EXPECT_EQ(Written(),
              "[KDLIMITDESK]\r\n"
              "\r\n"
              "[RECENTS]\r\n"
              "   Recent = plant=3\r\n"
              "   Recent = Line\r\n"
              "\r\n"
              "[FILES]\r\n"
              "   File   = C:\\data\\a.kdt\r\n"
              "   File   = C:\\data\\b.kdt6\r\n");
}

TEST_F(SettingsTest, EmptyListsLeaveTheSectionsAlone) {
    EXPECT_EQ(Written(), "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n");
}

TEST_F(SettingsTest, EmptyValueEndsInTheEqualSign) {
    AddRecent("");
    AddFile("  ");
    EXPECT_EQ(Written(), "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n   Recent =\r\n\r\n[FILES]\r\n   File   =\r\n");
}

TEST_F(SettingsTest, WritingKeepsTheOrderOfTheLists) {
    AddFile("z.kdt");
    AddFile("a.kdt");
    AddFile("z.kdt");
    EXPECT_NE(Written().find("File   = z.kdt\r\n   File   = a.kdt\r\n   File   = z.kdt\r\n"),
              std::string::npos);
    EXPECT_EQ(desk.g.gMasterFiles->Item(1)->Filename(), "z.kdt") << "the list itself stays as it is";
}

TEST_F(SettingsTest, CharactersOfTheCodePageAreSingleBytes) {
    AddFile("/data/W\u00E4rme.kdt");
    EXPECT_EQ(Written(),
              "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n   File   = /data/W\xE4rme.kdt\r\n");
}

TEST_F(SettingsTest, PathOutsideTheCodePageMakesTheFileUtf8WithAMark) {
    AddRecent("W\u00E4rme");
    AddFile("/data/\u0416\u4E2D.kdt");
    EXPECT_EQ(Written(),
              "\xEF\xBB\xBF[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n   Recent = W\xC3\xA4rme\r\n\r\n[FILES]\r\n"
              "   File   = /data/\xD0\x96\xE4\xB8\xAD.kdt\r\n");
    ReadSettings(desk.g, Path);
    EXPECT_EQ(Files(), (Texts{"/data/\u0416\u4E2D.kdt"}));
    EXPECT_EQ(Recents(), (Texts{"W\u00E4rme"}));
    desk.g.gMasterFiles = std::make_shared<cMasterFiles>();
    EXPECT_EQ(Written(), "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n   Recent = W\xE4rme\r\n\r\n[FILES]\r\n")
        << "back to the code page when that path is gone";
}

TEST_F(SettingsTest, EarlierFileIsReplacedWhole) {
    desk.files.Put(Path, std::string(5000, 'x') + "\r\n[OTHER]\r\n   Key = value\r\n");
    EXPECT_EQ(Written(), "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n");
}

TEST_F(SettingsTest, FileThatCannotBeWrittenIsNotMentionedAndStays) {
    desk.files.Put(Path, "old");
    desk.files.SetReadOnly(Path);
    AddFile("a.kdt");
    EXPECT_EQ(Written(), "old");
    desk.files.SetReadOnly(Path, false);

    std::string left = "old";
    for (int failAt = 1; left == "old"; ++failAt) {
        ASSERT_LT(failAt, 100);
        desk.files.Put(Path, "old");
        desk.files.FailAt(failAt, errDiskFull);
        left = Written();
        EXPECT_TRUE(left == "old" || left.ends_with("a.kdt\r\n"))
            << "operation " << failAt << " left " << left;
    }
    EXPECT_TRUE(desk.toolkit.log.empty());
    EXPECT_EQ(desk.files.OpenFiles(), 0);
}

TEST_F(SettingsTest, MissingFolderIsNotMentioned) {
    WriteSettings(desk.g, "/nowhere/at/all.IKD");
    EXPECT_FALSE(desk.files.Has("/nowhere/at/all.IKD"));
    EXPECT_TRUE(desk.toolkit.log.empty());
}

// --- reading
// -------------------------------------------------------------------------------------------------

TEST_F(SettingsTest, ReadingFillsBothLists) {
    Read(
        "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n   Recent = two\r\n   Recent = one\r\n\r\n[FILES]\r\n"
        "   File   = b.kdt\r\n   File   = a.kdt\r\n   File   = D.kdt\r\n");
    EXPECT_EQ(Recents(), (Texts{"two", "one"})) << "in the file's order";
    EXPECT_EQ(Files(), (Texts{"D.kdt", "a.kdt", "b.kdt"})) << "sorted by code units";
}

TEST_F(SettingsTest, ReadingTakesNewListsEvenFromAMissingFile) {
    AddRecent("old");
    AddFile("old.kdt");
    (void)desk.g.gFiles->Add("old.kdt", "t", "v", 0);  // to be gone
    const auto files = desk.g.gFiles;
    const auto masters = desk.g.gMasterFiles;
    const auto recents = desk.g.gRecents;
    ReadSettings(desk.g, "/home/anna/kd6/missing.IKD");
    EXPECT_EQ(desk.g.gFiles->Count() + desk.g.gMasterFiles->Count() + desk.g.gRecents->Count(), 0);
    EXPECT_NE(desk.g.gFiles, files);
    EXPECT_NE(desk.g.gMasterFiles, masters);
    EXPECT_NE(desk.g.gRecents, recents);
    EXPECT_EQ(files->Count() + masters->Count() + recents->Count(), 3) << "the old ones are not emptied";
    EXPECT_TRUE(desk.toolkit.log.empty());
}

TEST_F(SettingsTest, UnreadableFileCountsAsMissing) {
    desk.files.Put(Path, "[FILES]\r\nFile=a.kdt\r\n");
    desk.files.SetUnreadable(Path);
    ReadSettings(desk.g, Path);
    EXPECT_EQ(desk.g.gMasterFiles->Count(), 0);
    EXPECT_TRUE(desk.toolkit.log.empty());
}

TEST_F(SettingsTest, WhichLinesCount) {
    struct Case {
        const char* label;
        const char* bytes;
        Texts recents;
        Texts files;
    };
    const Case cases[] = {
        {"any case",
         "[recents]\r\nRECENT=r\r\n[Files]\r\nfile=a\r\nFILE=b\r\nFile=c\r\n",
         {"r"},
         {"a", "b", "c"}},
        {"any order of the sections", "[FILES]\r\nFile=a\r\n[RECENTS]\r\nRecent=r\r\n", {"r"}, {"a"}},
        {"a section twice",
         "[FILES]\r\nFile=b\r\n[RECENTS]\r\nRecent=r\r\n[FILES]\r\nFile=a\r\n",
         {"r"},
         {"a", "b"}},
        {"the value keeps its equal signs", "[RECENTS]\r\nRecent = a=b = c\r\n", {"a=b = c"}, {}},
        {"line without an equal sign", "[FILES]\r\nFile\r\nFile a.kdt\r\nFile=b\r\n", {}, {"b"}},
        {"blanks and tabs around", "[FILES]\r\n\t File\t =\t a b \t\r\n", {}, {"a b"}},
        {"unknown section", "[OTHER]\r\nFile=a\r\nRecent=r\r\n[FILES]\r\nFile=b\r\n", {}, {"b"}},
        {"unknown key", "[FILES]\r\nFiles=a\r\nRecent=r\r\nFile1=x\r\n[RECENTS]\r\nFile=b\r\n", {}, {}},
        {"keys of the program's section", "[KDLIMITDESK]\r\nFile=a\r\nRecent=r\r\n", {}, {}},
        {"keys before any section", "File=a\r\nRecent=r\r\n", {}, {}},
        {"section name without its bracket", "[FILES\r\nFile=a\r\n", {}, {}},
        {"last line without a line end", "[FILES]\r\nFile=a\r\nFile=b", {}, {"a"}},
        {"line feeds alone", "[FILES]\nFile=a\nFile=b\n", {}, {}},
        {"empty values", "[RECENTS]\r\nRecent=\r\n[FILES]\r\nFile = \r\n", {""}, {""}},
        {"duplicates",
         "[RECENTS]\r\nRecent=r\r\nRecent=r\r\n[FILES]\r\nFile=a\r\nFile=a\r\n",
         {"r", "r"},
         {"a", "a"}},
        {"no key for the section itself", "[RECENTS]\r\n[FILES]\r\n", {}, {}},
        {"empty file", "", {}, {}},
        {"code page", "[FILES]\r\nFile=W\xE4rme.kdt\r\n", {}, {"W\u00E4rme.kdt"}},
        {"mark of UTF-8", "\xEF\xBB\xBF[FILES]\r\nFile=W\xC3\xA4rme.kdt\r\n", {}, {"W\u00E4rme.kdt"}},
    };
    for (const Case& c : cases) {
        Read(c.bytes);
        EXPECT_EQ(Recents(), c.recents) << c.label;
        EXPECT_EQ(Files(), c.files) << c.label;
    }
}

TEST_F(SettingsTest, WhatIsWrittenIsReadBack) {
    AddRecent("b = c");
    AddRecent("a");
    AddFile("/data/a.kdt");
    AddFile("/data/b \u00DF.kdt6");
    const std::string first = Written();
    ReadSettings(desk.g, Path);
    EXPECT_EQ(Recents(), (Texts{"b = c", "a"}));
    EXPECT_EQ(Files(), (Texts{"/data/a.kdt", "/data/b \u00DF.kdt6"}));
    EXPECT_EQ(Written(), first);
}

TEST_F(SettingsTest, DisabledApplicationIsWrittenAndComesBackEnabled) {
    AddFile("a.kdt", false);
    AddFile("b.kdt", true);
    (void)Written();  // read back below
    ReadSettings(desk.g, Path);
    EXPECT_EQ(Files(), (Texts{"a.kdt", "b.kdt"}));
    EXPECT_EQ(desk.g.gMasterFiles->TotalFilesEnabled(), 2);
}

TEST_F(SettingsTest, UnknownSectionsAndKeysAreLostAtTheNextWrite) {
    Read("[OTHER]\r\nKey=value\r\n[FILES]\r\nExtra=1\r\nFile=a\r\n");
    EXPECT_EQ(Written(), "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n   File   = a\r\n");
}

TEST_F(SettingsTest, ALineEndInTheNameOfAFileListsNoOtherApplication) {
    AddFile("/a\r\n[FILES]\r\nFile = /planted.kdt");
    (void)Written();
    ReadSettings(desk.g, Path);
    EXPECT_EQ(Files(), (Texts{"/a  [FILES]  File = /planted.kdt"}));
}

TEST_F(SettingsTest, ALineEndInACriterionListsNoApplication) {
    AddRecent("x\r\n[FILES]\r\nFile = /planted.kdt");
    (void)Written();
    ReadSettings(desk.g, Path);
    EXPECT_EQ(Files(), Texts{});
    EXPECT_EQ(Recents(), (Texts{"x  [FILES]  File = /planted.kdt"}));
}

TEST_F(SettingsTest, ReadingTellsWhetherThereWasAFileToRead) {
    EXPECT_FALSE(ReadSettings(desk.g, Path));
    desk.files.Put(Path, "");
    EXPECT_TRUE(ReadSettings(desk.g, Path));
}

TEST_F(SettingsTest, AFileThatIsSetAsideTakesThePlaceOfAnEarlierOne) {
    const Text aside = Text(Path) + ".old";
    desk.files.Put(Path, "first");
    EXPECT_TRUE(SetAside(desk.files, Path));
    EXPECT_EQ(desk.files.Get(aside), "first");
    EXPECT_FALSE(desk.files.Has(Path));
    desk.files.Put(Path, "second");
    EXPECT_TRUE(SetAside(desk.files, Path));
    EXPECT_EQ(desk.files.Get(aside), "second");
    desk.files.ClearLog();
    EXPECT_FALSE(SetAside(desk.files, Path)) << "nothing is in the way";
    EXPECT_TRUE(desk.files.Log().empty()) << "nor is the earlier one touched";
    EXPECT_EQ(desk.files.Get(aside), "second");
    EXPECT_EQ(desk.files.Paths().size(), 1U) << "nothing else is left";
}

TEST_F(SettingsTest, FilesThatMayBeNeitherReadNorWrittenAreSetAsideAsOftenAsTheyCome) {
    const Text aside = Text(Path) + ".old";
    const auto put = [&](const Text& path, const char* text) {
        desk.files.Put(path, text);
        desk.files.SetUnreadable(path);
        desk.files.SetReadOnly(path);
    };
    put(aside + ".temp", "of a run that was cut off");
    for (const char* const own : {"first", "second", "third"}) {
        put(Path, own);
        EXPECT_TRUE(SetAside(desk.files, Path));
        EXPECT_EQ(desk.files.Get(aside), own);
        EXPECT_FALSE(desk.files.Has(Path));
    }
    EXPECT_EQ(desk.files.Paths().size(), 1U);
}

TEST_F(SettingsTest, AFileIsSetAsideAlsoWhereTheEarlierOneDoesNotGo) {
    const Text aside = Text(Path) + ".old";
    desk.files.Put(Path, "own");
    desk.files.Put(aside, "earlier");
    int removals = 0;
    desk.files.onStep = [&](const Text& step) {
        if (step.starts_with("RemoveFolder") && ++removals == 2) {
            throw cError(errDevice, "Test");
        }
    };
    EXPECT_TRUE(SetAside(desk.files, Path));
    EXPECT_EQ(desk.files.Get(aside), "own");
}

TEST_F(SettingsTest, WhereverSettingAsideFailsNoFileIsLost) {
    const Text aside = Text(Path) + ".old";
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        desk.files.Put(Path, "own");
        desk.files.Put(aside, "earlier");
        desk.files.FailAt(failAt);
        const bool isAside = SetAside(desk.files, Path);
        done = isAside && desk.files.Operations() < failAt;
        desk.files.FailNoMore();
        EXPECT_EQ(desk.files.Get(isAside ? aside : Text(Path)), "own") << failAt;
        EXPECT_TRUE(!desk.files.Has(Path) || desk.files.Get(aside) == "earlier") << failAt;
    }
}

TEST_F(SettingsTest, AFileIsPutBackUnlessAnotherHasItsName) {
    desk.files.Put(Path, "own");
    SetAside(desk.files, Path);
    PutBack(desk.files, Path);
    EXPECT_EQ(desk.files.Get(Path), "own");
    SetAside(desk.files, Path);
    desk.files.Put(Path, "new");
    PutBack(desk.files, Path);
    EXPECT_EQ(desk.files.Get(Path), "new");
    EXPECT_EQ(desk.files.Get(Text(Path) + ".old"), "own");
}

TEST_F(SettingsTest, WritingTellsWhetherTheFileWasWritten) {
    EXPECT_TRUE(WriteSettings(desk.g, Path));
    desk.files.FailOn("ReplaceFile", ".IKD", errDiskFull);
    EXPECT_FALSE(WriteSettings(desk.g, Path));
}

TEST_F(SettingsTest, AFileThatCannotBeSetAsideStays) {
    desk.files.Put(Path, "own");
    desk.files.onStep = [](const Text& step) {
        if (step.starts_with("Rename") || step.starts_with("CopyFile")) {
            throw cError(errDevice, "Test");
        }
    };
    SetAside(desk.files, Path);
    EXPECT_EQ(desk.files.Get(Path), "own");
}

}  // namespace
}  // namespace kd
