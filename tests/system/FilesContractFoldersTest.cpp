#include "system/FilesContract.h"

namespace kd {
namespace {

TEST_P(FilesContractTest, AFolderIsMeantByItsExactName) {
    if (!scene->TellsCaseApart()) {
        GTEST_SKIP() << "the file system itself takes one for the other";
    }
    MakeFolderAt("Plant");
    Put("Plant/a.kdt", "text");
    EXPECT_EQ(ErrorOf([&] { (void)Get("plant/a.kdt"); }), errPathNotFound);
}

TEST_P(FilesContractTest, FolderEntriesListsNamesAlone) {
    Put("a.kdt", "");
    Put(".hidden", "");
    MakeFolderAt("folder/inner");
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", ".hidden", "folder"}));
    EXPECT_EQ(Names(At("folder")), std::set<Text>{"inner"});
    EXPECT_EQ(Names(At("folder/inner")), std::set<Text>{});
    EXPECT_EQ(ErrorAt(At("none"), [&] { (void)files.FolderEntries(At("none")); }), errPathNotFound);
    EXPECT_EQ(ErrorOf([&] { (void)files.FolderEntries(At("a.kdt")); }), errPathNotFound);
}

TEST_P(FilesContractTest, MakeFolderMakesTheMissingOnesAbove) {
    MakeFolderAt("a/b/c");
    MakeFolderAt("a/b/c");
    MakeFolderAt("a/b/");
    EXPECT_TRUE(files.Exists(At("a/b/c")));
    Put("file", "");
    EXPECT_EQ(ErrorOf([&] { MakeFolderAt("file"); }), errPermissionDenied);
    EXPECT_NE(ErrorOf([&] { MakeFolderAt("file/a"); }), 0);
    EXPECT_EQ(Names(), (std::set<Text>{"a", "file"}));
    files.RemoveFolder(At("a/b/c"));
    files.DeleteFile(Put("a/b/file", ""));
    EXPECT_TRUE(files.Exists(At("a/b"))) << "a folder stays though nothing is left in it";
}

TEST_P(FilesContractTest, ArchiveCopiesKeepTheirNamesBytesAndReadOnlyMarks) {
    MakeFolderAt("archive");
    int lived = 0;
    files.Meanwhile = [&] { ++lived; };
    files.CopyAllForArchive({Put("a.kdt", "one"), PutReadOnly("a.V1", "two")}, At("archive"));
    files.Meanwhile = {};
    EXPECT_GE(lived, 2) << "behind each copy";
    files.CopyForArchive(At("a.V1"), At("alone"));
    EXPECT_EQ(Names(At("archive")), (std::set<Text>{"a.kdt", "a.V1"}));
    EXPECT_EQ(Get("archive/a.kdt"), "one");
    EXPECT_EQ(Get("archive/a.V1"), "two");
    EXPECT_EQ(Get("alone"), "two");
    EXPECT_FALSE(scene->IsReadOnly(At("archive/a.kdt")));
    EXPECT_TRUE(scene->IsReadOnly(At("archive/a.V1")));
    EXPECT_TRUE(scene->IsReadOnly(At("alone")));
}

TEST_P(FilesContractTest, ArchiveCopyOfAFailure) {
    const Text source = Put("a.kdt", "text");
    Put("there", "old");
    MakeFolderAt("folder");
    struct Case {
        const char* label;
        Text from;
        Text to;
        std::int32_t number;
    };
    const Case cases[] = {{"missing", At("none"), At("copy"), errFileNotFound},
                          {"no file", scene->MakeSpecial(At("special")), At("copy"), errPermissionDenied},
                          {"folder", At("folder"), At("copy"), errPermissionDenied},
                          {"target folder missing", source, At("none/copy"), errPathNotFound},
                          {"target is there", source, At("there"), errDevice}};
    const auto names = Names();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorOf([&] { files.CopyForArchive(c.from, c.to); }), c.number);
        EXPECT_EQ(Names(), names);
    }
    EXPECT_EQ(Get("there"), "old");
}

TEST_P(FilesContractTest, AFailureAmongSeveralArchiveCopiesNamesItsSource) {
    MakeFolderAt("archive");
    const Text good = Put("a.kdt", "one");
    EXPECT_EQ(ErrorAt(At("a.V1"),
                      [&] {
                          files.CopyAllForArchive({good, At("a.V1")}, At("archive"));
                      }),
              errFileNotFound);
}

TEST_P(FilesContractTest, RenameGivesAFolderItsNewNameAndTakesNothingAway) {
    MakeFolderAt("old");
    Put("old/a", "text");
    files.Rename(At("old"), At("new"));
    EXPECT_EQ(Names(), std::set<Text>{"new"});
    EXPECT_EQ(Get("new/a"), "text");
    MakeFolderAt("full");
    Put("full/a", "other");
    Put("file", "text");
    EXPECT_EQ(ErrorOf([&] { files.Rename(At("new"), At("full")); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files.Rename(At("new"), At("file")); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files.Rename(At("none"), At("other")); }), errFileNotFound);
    EXPECT_EQ(ErrorAt(At("none/file"), [&] { files.Rename(At("file"), At("none/file")); }), errPathNotFound);
    EXPECT_EQ(Names(), (std::set<Text>{"new", "full", "file"}));
    EXPECT_EQ(Get("full/a"), "other");
    MakeFolderAt("empty");
    files.Rename(At("new"), At("empty"));
    EXPECT_EQ(Names(), (std::set<Text>{"empty", "full", "file"}));
    EXPECT_EQ(Get("empty/a"), "text");
    files.Rename(At("file"), At("renamed"));
    EXPECT_EQ(Get("renamed"), "text");
}

TEST_P(FilesContractTest, FlushFolderNeedsAFolder) {
    Put("file", "");
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(scene->Folder()); }), 0);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(""); }), 0) << "the root";
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(At("none")); }), errPathNotFound);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(At("file")); }), errPathNotFound);
}

TEST_P(FilesContractTest, WhatIsLeftToSettleIsThereAndSettlesOnce) {
    MakeFolderAt("archive");
    const Text target = Put("a.kdt", "old");
    const auto file = files.OpenForOutput(At("a.temp"));
    file->Write("new");
    const FileState seen = file->TakeRightsOf(target);
    file->CloseForSettling();
    files.CopyAllForArchive({target}, At("archive"));
    files.Settle();
    EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, seen));
    files.Settle();
    EXPECT_EQ(files.Read(target), "new");
    EXPECT_EQ(Get("archive/a.kdt"), "old");
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "archive"}));
}

TEST_P(FilesContractTest, ASettledTextTakesNoPlaceOfAFileThatHasChangedSinceItWasSeen) {
    const Text target = Put("a.kdt", "old");
    const auto file = files.OpenForOutput(At("a.temp"));
    file->Write("new");
    const FileState seen = file->TakeRightsOf(target);
    const FileState none = file->TakeRightsOf(At("none"));
    file->CloseForSettling();
    files.Settle();
    Put("a.kdt", "another's");
    EXPECT_FALSE(files.MoveSettled(At("a.temp"), target, seen));
    EXPECT_FALSE(files.MoveSettled(At("a.temp"), target, none)) << "nor of one that has come since";
    EXPECT_FALSE(files.MoveSettled(At("a.temp"), At("none"), seen)) << "nor of one that has gone";
    EXPECT_EQ(Get("a.kdt"), "another's");
    EXPECT_EQ(Get("a.temp"), "new");
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "a.temp"}));
}

TEST_P(FilesContractTest, AFolderThatIsBeingFilledIsNotAbandonedAndAFullOneIsNotEmpty) {
    files.MakeKeptFolder(At("archives/filled"));
    Put("archives/filled/a", "text");
    files.DeleteAbandonedFolder(At("archives/filled"));
    EXPECT_EQ(Get("archives/filled/a"), "text");
    files.RemoveEmptyFolder(At("archives/filled"));
    EXPECT_EQ(Get("archives/filled/a"), "text");
    files.RemoveFolder(At("archives/filled"));
    files.RemoveEmptyFolder(At("archives"));
    files.RemoveEmptyFolder(At("none"));
    EXPECT_EQ(Names(), std::set<Text>{});
}

TEST_P(FilesContractTest, RemoveFolderTakesAllThatIsInIt) {
    MakeFolderAt("a/b/c");
    PutReadOnly("a/b/file", "");
    files.RemoveFolder(At("a"));
    files.RemoveFolder(At("a"));
    EXPECT_EQ(Names(), std::set<Text>{});
}

TEST_P(FilesContractTest, RemoveFolderTakesAFileInItsPlaceThatMayNotBeWritten) {
    PutReadOnly("a", "text");
    Put("ab", "another");
    files.RemoveFolder(At("a"));
    EXPECT_EQ(Names(), std::set<Text>{"ab"});
}

}  // namespace
}  // namespace kd
