#include "system/windows/WindowsFixture.h"

namespace kd {
namespace {

std::string AllBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST_F(SystemFilesTest, TheDelimiterIsTheBackslash) {
    EXPECT_EQ(files.Delimiter(), '\\');
}

TEST_F(SystemFilesTest, BytesAreReadAndWrittenAsTheyStand) {
    EXPECT_EQ(files.Read(Put("a.kdt", AllBytes())), AllBytes());
    EXPECT_EQ(files.Read(Put("empty.kdt", "")), "");
    files.ReplaceFile(At("b.kdt"), AllBytes());
    EXPECT_EQ(Get(At("b.kdt")), AllBytes());
    const auto file = files.OpenForOutput(At("c.kdt"));
    file->Write(AllBytes());
    file->Close();
    EXPECT_EQ(Get(At("c.kdt")), AllBytes());
}

TEST_F(SystemFilesTest, ReadTakesLargeFilesWholeAndReplacesWhatIsInTheBuffer) {
    std::string large;
    while (large.size() < 3000000) {
        large += "line " + std::to_string(large.size()) + "\r\n";
    }
    std::string bytes = "something else";
    files.Read(Put("large.kdt", large), bytes);
    EXPECT_EQ(bytes, large);
}

TEST_F(SystemFilesTest, EveryFailureHasItsNumberAndPath) {
    Put("a.kdt", "text");
    MakeFolderAt("folder");
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"missing", At("b.kdt"), errFileNotFound},
                          {"folder missing", At("none\\b.kdt"), errPathNotFound},
                          {"a file in the folder's place", At("a.kdt\\b.kdt"), errPathNotFound},
                          {"folder", At("folder"), errPermissionDenied},
                          {"device", "NUL", errPermissionDenied},
                          {"device in a folder", At("NUL"), errPermissionDenied},
                          {"pipe", "\\\\.\\pipe\\kd-none", errPermissionDenied},
                          {"name too long", At(Text(300, 'a')), errDevice},
                          {"name that cannot be", At("a?b"), errDevice},
                          {"empty path", "", errFileNotFound}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        try {
            (void)files.Read(c.path);
            ADD_FAILURE() << "nothing raised";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), c.number);
            EXPECT_EQ(error.Source(), "SystemFiles.Read");
            EXPECT_EQ(error.Path(), c.path);
        }
    }
}

TEST_F(SystemFilesTest, WritingRefusesWhatMayNotBeWrittenOrIsNoFile) {
    const Text source = Put("source", "new");
    Put("readonly", "old", FILE_ATTRIBUTE_READONLY);
    MakeFolderAt("folder");
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"read-only", At("readonly"), errPermissionDenied},
                          {"folder", At("folder"), errPermissionDenied},
                          {"device", At("NUL"), errPermissionDenied},
                          {"folder missing", At("none\\a"), errPathNotFound},
                          {"name too long", At(Text(300, 'a')), errDevice}};
    const auto names = Names();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(c.path, "new"); }), c.number);
        EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, c.path); }), c.number);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(c.path); }), c.number);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForAppend(c.path); }), c.number);
        EXPECT_EQ(Names(), names);
    }
    EXPECT_EQ(Get(At("readonly")), "old");
}

TEST_F(SystemFilesTest, NamesOutsideTheCodePageAndInAnotherCaseAreTheFileMeant) {
    const Text name = "Prüfung Łódź Проба.kdt";
    Put(name, "old");
    EXPECT_EQ(files.Read(At(name)), "old");
    files.ReplaceFile(At("PRÜFUNG ŁÓDŹ ПРОБА.KDT"), "new");
    EXPECT_EQ(Get(At(name)), "new");
    EXPECT_EQ(Names(), std::set<Text>{name});
    EXPECT_EQ(files.FolderEntries(folder), std::vector<Text>{name});
}

TEST_F(SystemFilesTest, BothDelimitersLeadToAFile) {
    MakeFolderAt("folder");
    Put("folder\\a.kdt", "text");
    EXPECT_EQ(files.Read(folder + "/folder/a.kdt"), "text");
    files.ReplaceFile(folder + "/folder/a.kdt", "new");
    EXPECT_EQ(Get(At("folder\\a.kdt")), "new");
}

TEST_F(SystemFilesTest, PathsBeyondTheOldLimitWork) {
    Text deep = folder;
    while (deep.size() < 400) {
        deep += "\\a folder with quite a long name";
    }
    files.MakeFolder(deep);
    const Text path = deep + "\\a.kdt";
    files.ReplaceFile(path, "old");
    files.CopyFile(path, deep + "\\b.kdt");
    files.OpenForAppend(path)->Write("er");
    EXPECT_EQ(files.Read(path), "older");
    EXPECT_TRUE(files.IsRegularFile(path));
    EXPECT_EQ(files.FolderEntries(deep).size(), 2U);
    files.CopyForArchive(path, deep + "\\c.kdt");
    files.Rename(deep, deep + " again");
    EXPECT_EQ(files.Read(deep + " again\\c.kdt"), "older");
    files.DeleteFile(deep + " again\\c.kdt");
    files.RemoveFolder(folder + "\\a folder with quite a long name");
    EXPECT_EQ(Names(), std::set<Text>{});
}

TEST_F(SystemFilesTest, ReplaceLeavesNothingBesideAndKeepsAttributesAndTheTimeOfCreation) {
    const Text path = Put("a.kdt", "old and longer", FILE_ATTRIBUTE_HIDDEN);
    FILETIME made{0x12345678, 0x01C00000};
    {
        const windows::Handle file = HeldOpen(path, 0, GENERIC_WRITE);
        ASSERT_NE(::SetFileTime(file.Get(), &made, nullptr, nullptr), 0);
    }
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(AttributesOf(path) & FILE_ATTRIBUTE_HIDDEN, DWORD{FILE_ATTRIBUTE_HIDDEN});
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    FILETIME kept{};
    const windows::Handle file = HeldOpen(path, 0);
    ASSERT_NE(::GetFileTime(file.Get(), &kept, nullptr, nullptr), 0);
    if (::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) {
        EXPECT_EQ(::CompareFileTime(&kept, &made), 0);  // wine has nowhere to keep it
    }
}

TEST_F(SystemFilesTest, ReplacePutsAWholeNewFileInPlaceOfTheOldOne) {
    const Text path = Put("a.kdt", "old");
    const auto number = [&] {
        BY_HANDLE_FILE_INFORMATION information{};
        EXPECT_NE(::GetFileInformationByHandle(HeldOpen(path, 0).Get(), &information), 0);
        return information.nFileIndexLow;
    };
    const auto before = number();
    files.ReplaceFile(path, "new");
    EXPECT_NE(number(), before);
    EXPECT_EQ(Get(path), "new");
}

TEST_F(SystemFilesTest, AFileThatSomebodyReadsIsReplaced) {
    const Text path = Put("a.kdt", "old");
    const windows::Handle reader = HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, AFileThatIsBusyForAMomentIsReplacedInTheEnd) {
    const Text path = Put("a.kdt", "old");
    windows::Handle scanner = HeldOpen(path, 0);
    duringPause = [&] {
        if (pauses == 3) {
            (void)scanner.Close();
        }
    };
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(pauses, 3);
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, AFileThatStaysBusyIsRefusedAfterAFewAttempts) {
    const Text path = Put("a.kdt", "old");
    {
        const windows::Handle holder = HeldOpen(path, 0);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), errPermissionDenied);
        EXPECT_EQ(pauses, AllPauses);
        EXPECT_EQ(ErrorOf([&] { (void)files.Read(path); }), errPermissionDenied);
        EXPECT_EQ(ErrorOf([&] { files.DeleteFile(path); }), errPermissionDenied);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForAppend(path); }), errPermissionDenied);
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
    EXPECT_EQ(Get(path), "old");
}

TEST_F(SystemFilesTest, AFileThatMayNotBeReplacedWhileItIsOpenIsWrittenInPlace) {
    const Text path = Put("a.kdt", "old");
    for (const char* content : {"new and longer than before", "new", ""}) {
        const windows::Handle reader = HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE);
        files.ReplaceFile(path, content);
        EXPECT_EQ(Get(path), content);
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
}

TEST_F(SystemFilesTest, AllNamesOfAFileSeeTheNewContent) {
    const Text path = Put("a.kdt", "old");
    if (::CreateHardLinkW(Wide(At("b.kdt")).c_str(), Wide(path).c_str(), nullptr) == 0) {
        GTEST_SKIP() << "this file system has no second names";
    }
    for (const char* content : {"new and longer than before", "new", ""}) {
        files.ReplaceFile(path, content);
        EXPECT_EQ(Get(path), content);
        EXPECT_EQ(Get(At("b.kdt")), content);
    }
    files.OpenForOutput(path)->Write("own");
    EXPECT_EQ(Get(path), "own");
    EXPECT_EQ(Get(At("b.kdt")), "");
}

TEST_F(SystemFilesTest, CopyOfAMissingSourceLeavesTheTarget) {
    const Text target = Put("a.kdt", "old");
    EXPECT_EQ(ErrorOf([&] { files.CopyFile(At("a.temp"), target); }), errFileNotFound);
    EXPECT_EQ(ErrorOf([&] { files.CopyFile(At("none\\a.temp"), target); }), errPathNotFound);
    EXPECT_EQ(Get(target), "old");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, OutputReplacesWhatStoodThereAndOthersMayReadIt) {
    const Text path = Put("a.temp", "something longer");
    const auto file = files.OpenForOutput(path);
    EXPECT_EQ(Get(path), "");
    file->Write("new");
    file->Write(" text");
    file->Flush();
    EXPECT_EQ(files.Read(path), "new text");
    file->Close();
    file->Close();
    EXPECT_EQ(Get(path), "new text");
}

TEST_F(SystemFilesTest, AppendAddsAtTheEndWhereverThatIsByThen) {
    const Text path = Put("a.KDL", "old\r\n");
    const auto first = files.OpenForAppend(path);
    const auto second = files.OpenForAppend(path);
    first->Write("one\r\n");
    second->Write("two\r\n");
    first->Write("three\r\n");
    first->Flush();
    first->Close();
    second->Close();
    EXPECT_EQ(Get(path), "old\r\none\r\ntwo\r\nthree\r\n");
    files.OpenForAppend(At("new.KDL"))->Write("made");
    EXPECT_EQ(Get(At("new.KDL")), "made");
}

TEST_F(SystemFilesTest, DeleteTakesAFileAwayAndRefusesOthers) {
    Put("a.kdt", "old");
    files.DeleteFile(At("a.kdt"));
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"missing", At("none"), errFileNotFound},
                          {"folder missing", At("none\\a"), errPathNotFound},
                          {"read-only", Put("readonly", "old", FILE_ATTRIBUTE_READONLY), errPermissionDenied},
                          {"folder", MakeFolderAt("folder"), errPermissionDenied},
                          {"device", At("NUL"), errPermissionDenied}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorOf([&] { files.DeleteFile(c.path); }), c.number);
    }
    EXPECT_EQ(Names(), (std::set<Text>{"readonly", "folder"}));
}

TEST_F(SystemFilesTest, ExistsSeesFilesAndFoldersButOnlyFilesAreRegular) {
    Put("a.kdt", "");
    MakeFolderAt("folder");
    EXPECT_TRUE(files.Exists(At("a.kdt")));
    EXPECT_TRUE(files.Exists(At("folder")));
    EXPECT_TRUE(files.Exists(At("folder\\")));
    EXPECT_TRUE(files.Exists("C:\\"));
    EXPECT_FALSE(files.Exists(At("b.kdt")));
    EXPECT_FALSE(files.Exists(At("none\\b.kdt")));
    EXPECT_FALSE(files.Exists(""));
    EXPECT_TRUE(files.IsRegularFile(At("a.kdt")));
    EXPECT_FALSE(files.IsRegularFile(At("folder")));
    EXPECT_FALSE(files.IsRegularFile(At("NUL")));
    EXPECT_FALSE(files.IsRegularFile(At("b.kdt")));
    EXPECT_FALSE(files.IsRegularFile(""));
}

TEST_F(SystemFilesTest, FolderEntriesListsNamesAlone) {
    Put("a.kdt", "");
    Put("hidden", "", FILE_ATTRIBUTE_HIDDEN);
    MakeFolderAt("folder\\inner");
    const auto names = files.FolderEntries(folder);
    EXPECT_EQ(std::set<Text>(names.begin(), names.end()), (std::set<Text>{"a.kdt", "hidden", "folder"}));
    EXPECT_EQ(files.FolderEntries(At("folder\\inner")), std::vector<Text>{});
    EXPECT_EQ(ErrorOf([&] { (void)files.FolderEntries(At("none")); }), errPathNotFound);
    EXPECT_EQ(ErrorOf([&] { (void)files.FolderEntries(At("a.kdt")); }), errPathNotFound);
}

TEST_F(SystemFilesTest, MakeFolderMakesTheMissingOnesAbove) {
    files.MakeFolder(At("a\\b/c"));
    files.MakeFolder(At("a\\b\\c"));
    files.MakeFolder(At("a\\b\\"));
    EXPECT_TRUE(std::filesystem::is_directory(Wide(At("a\\b\\c"))));
    files.MakeFolder("C:\\");
    Put("file", "");
    EXPECT_EQ(ErrorOf([&] { files.MakeFolder(At("file")); }), errPermissionDenied);
    EXPECT_NE(ErrorOf([&] { files.MakeFolder(At("file\\a")); }), 0);
    EXPECT_EQ(Names(), (std::set<Text>{"a", "file"}));
}

TEST_F(SystemFilesTest, ArchiveCopyKeepsBytesTimesAndTheReadOnlyMark) {
    const Text source = Put("a.kdt", "text");
    FILETIME written{0x12345600, 0x01C00000};
    {
        const windows::Handle file = HeldOpen(source, 0, GENERIC_WRITE);
        ASSERT_NE(::SetFileTime(file.Get(), nullptr, nullptr, &written), 0);
    }
    ASSERT_NE(::SetFileAttributesW(Wide(source).c_str(), FILE_ATTRIBUTE_READONLY), 0);
    files.CopyForArchive(source, At("copy"));
    EXPECT_EQ(Get(At("copy")), "text");
    EXPECT_NE(AttributesOf(At("copy")) & FILE_ATTRIBUTE_READONLY, 0U);
    const windows::Handle copy = HeldOpen(At("copy"), FILE_SHARE_READ);
    FILETIME kept{};
    ASSERT_NE(::GetFileTime(copy.Get(), nullptr, nullptr, &kept), 0);
    EXPECT_EQ(::CompareFileTime(&kept, &written), 0);
}

TEST_F(SystemFilesTest, ArchiveCopyOfAFailure) {
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
                          {"folder", At("folder"), At("copy"), errPermissionDenied},
                          {"target folder missing", source, At("none\\copy"), errPathNotFound},
                          {"target is there", source, At("there"), errDevice}};
    const auto names = Names();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorOf([&] { files.CopyForArchive(c.from, c.to); }), c.number);
        EXPECT_EQ(Names(), names);
    }
    EXPECT_EQ(Get(At("there")), "old");
}

TEST_F(SystemFilesTest, SeveralArchiveCopiesKeepTheirNamesBytesAndMarks) {
    MakeFolderAt("archive");
    files.CopyAllForArchive({Put("a.kdt", "one"), Put("a.V1", "two", FILE_ATTRIBUTE_READONLY)},
                            At("archive"));
    EXPECT_EQ(Names(At("archive")), (std::set<Text>{"a.kdt", "a.V1"}));
    EXPECT_EQ(Get(At("archive\\a.kdt")), "one");
    EXPECT_EQ(Get(At("archive\\a.V1")), "two");
    EXPECT_EQ(AttributesOf(At("archive\\a.kdt")) & FILE_ATTRIBUTE_READONLY, 0U);
    EXPECT_NE(AttributesOf(At("archive\\a.V1")) & FILE_ATTRIBUTE_READONLY, 0U);
}

TEST_F(SystemFilesTest, AFailureAmongSeveralArchiveCopiesNamesItsSource) {
    MakeFolderAt("archive");
    const Text good = Put("a.kdt", "one");
    try {
        files.CopyAllForArchive({good, At("a.V1")}, At("archive"));
        FAIL() << "a missing file was copied";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errFileNotFound);
        EXPECT_EQ(error.Path(), At("a.V1"));
    }
}

TEST_F(SystemFilesTest, RenameGivesAFolderItsNewNameAndTakesNothingAway) {
    MakeFolderAt("old");
    Put("old\\a", "text");
    files.Rename(At("old"), At("new"));
    EXPECT_EQ(Get(At("new\\a")), "text");
    MakeFolderAt("full");
    Put("full\\a", "other");
    Put("file", "text");
    EXPECT_EQ(ErrorOf([&] { files.Rename(At("new"), At("full")); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files.Rename(At("new"), At("file")); }), errPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files.Rename(At("none"), At("other")); }), errFileNotFound);
    EXPECT_EQ(Names(), (std::set<Text>{"new", "full", "file"}));
    EXPECT_EQ(Get(At("full\\a")), "other");
    MakeFolderAt("empty");
    files.Rename(At("new"), At("empty"));
    EXPECT_EQ(Names(), (std::set<Text>{"empty", "full", "file"}));
    EXPECT_EQ(Get(At("empty\\a")), "text");
    try {
        files.Rename(At("file"), At("none\\file"));
        ADD_FAILURE() << "renamed into a folder that is missing";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errPathNotFound);
        EXPECT_EQ(error.Path(), At("none\\file"));
    }
}

TEST_F(SystemFilesTest, FlushFolderNeedsAFolder) {
    Put("file", "");
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(folder); }), 0);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(At("none")); }), errPathNotFound);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(At("file")); }), errPathNotFound);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(""); }), 0);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder("."); }), 0);
}

TEST_F(SystemFilesTest, RemoveFolderTakesAllThatIsInIt) {
    MakeFolderAt("a\\b\\c");
    Put("a\\b\\file", "", FILE_ATTRIBUTE_READONLY);
    files.RemoveFolder(At("a"));
    files.RemoveFolder(At("a"));
    EXPECT_EQ(Names(), std::set<Text>{});
}

}  // namespace
}  // namespace kd
